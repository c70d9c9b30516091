#pragma once

namespace pluvo::formats::html {

/// All of them, a blank after each; see reference_names.cpp.
extern const char* const kReferenceNames;

}  // namespace pluvo::formats::html
