#pragma once

#include "document/document.h"
#include "formats/format.h"
#include "rtf/rtf_format.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace pluvo::rtf {

inline base::Bytes bytesOf(std::string_view text) { return base::Bytes::of({text.begin(), text.end()}); }

/// A document read from a file, to be edited and written.
struct Opened {
  explicit Opened(formats::Opened opened)
      : document(std::move(opened.stories)),
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
  std::shared_ptr<const formats::Source> source;
  std::optional<formats::Protection> protection;
  std::optional<formats::Reservation> reservation;
};

/// With all its stories.
inline Opened open(std::string_view file) {
  formats::Hint hint;
  hint.allStories = true;
  return Opened(RtfFormat().read(bytesOf(file), hint));
}

/// What a document begins with: a font for Greek, one for Japanese, one of symbols and one in UTF-8; red and
/// yellow.
inline std::string head() {
  return R"({\rtf1\ansi\deff0{\fonttbl{\f0\fcharset0 A;}{\f1\fcharset161 G;}{\f2\fcharset128 J;})"
         R"({\f3\fcharset2 S;}{\f4\cpg65001 U;}}{\colortbl;\red255\green0\blue0;\red255\green255\blue0;})";
}

}  // namespace pluvo::rtf
