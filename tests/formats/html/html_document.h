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
      : document(std::move(opened.stories)), source(std::move(opened.source)) {}

  std::string written() const {
    base::MemoryOutput out;
    source->write(document, out);
    return {out.bytes().begin(), out.bytes().end()};
  }

  document::Document document;
  document::Story& model = document.mainText();
  std::shared_ptr<const formats::Source> source;
};

inline OpenedPage open(std::string_view file) { return OpenedPage(HtmlFormat().read(bytesOf(file))); }

}  // namespace pluvo::formats::html
