#pragma once

#include "document/document.h"
#include "formats/format.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace pluvo::formats {

inline base::Bytes bytesOf(std::string_view text) { return base::Bytes::of({text.begin(), text.end()}); }

/// A document read from a file, to be edited and written.
struct OpenedFile {
  explicit OpenedFile(Opened opened)
      : document(std::move(opened.stories), opened.source),
        source(std::move(opened.source)),
        protection(std::move(opened.protection)),
        reservation(std::move(opened.reservation)) {}

  std::string written() const {
    base::MemoryOutput out;
    source->write(document, out);
    return {out.bytes().begin(), out.bytes().end()};
  }

  document::Document document;
  document::Story& model = document.mainText();
  std::shared_ptr<const Source> source;
  std::optional<Protection> protection;
  std::optional<Reservation> reservation;
};

/// With all its stories.
inline OpenedFile openAll(const Format& format, std::string_view file) {
  Hint all;
  all.allStories = true;
  return OpenedFile(format.read(bytesOf(file), all));
}

}  // namespace pluvo::formats
