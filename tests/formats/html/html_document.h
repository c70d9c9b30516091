#pragma once

#include "document/document.h"
#include "formats/format.h"
#include "html/html_format.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace pluvo::formats::html {

inline base::Bytes bytesOf(std::string_view text) { return base::Bytes::of({text.begin(), text.end()}); }

/// A page read from a file, to be edited and written.
struct OpenedPage {
  explicit OpenedPage(formats::Opened opened)
      : document(std::move(opened.stories), opened.source), source(std::move(opened.source)) {}

  std::string written() const {
    base::MemoryOutput out;
    source->write(document, out);
    return {out.bytes().begin(), out.bytes().end()};
  }

  document::Document document;
  document::Story& model = document.mainText();
  std::shared_ptr<const formats::Source> source;
};

/// With all its stories.
inline OpenedPage open(std::string_view file) {
  Hint all;
  all.allStories = true;
  return OpenedPage(HtmlFormat().read(bytesOf(file), all));
}

/// As Word writes it; the note has one to the reference.
inline std::string noteReference(const std::string& note, const std::string& here) {
  return "<a style='mso-footnote-id:" + note + "' href='#_" + note + "' name=_" + here +
         "><span style='mso-special-character:footnote'></span></a>";
}

}  // namespace pluvo::formats::html
