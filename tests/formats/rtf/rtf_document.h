#pragma once

#include "formats/opened.h"
#include "rtf/rtf_format.h"

#include <string>
#include <string_view>

namespace pluvo::rtf {

inline formats::OpenedFile open(std::string_view file) { return formats::openAll(RtfFormat(), file); }

/// What a document begins with: a font for Greek, one for Japanese, one of symbols and one in UTF-8; red and
/// yellow.
inline std::string head() {
  return R"({\rtf1\ansi\deff0{\fonttbl{\f0\fcharset0 A;}{\f1\fcharset161 G;}{\f2\fcharset128 J;})"
         R"({\f3\fcharset2 S;}{\f4\cpg65001 U;}}{\colortbl;\red255\green0\blue0;\red255\green255\blue0;})";
}

}  // namespace pluvo::rtf
