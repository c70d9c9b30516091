#pragma once

#include "base/bytes.h"
#include "base/utf.h"
#include "document/story.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace pluvo::formats {

/// For libreoffice.py, where PLUVO_EDITED names a folder: the file, and beside it the text with field results
/// that it should have, hidden text too.
inline void leave(const std::string& name, const base::Bytes& written, const document::Story& model) {
  const char* const folder = std::getenv("PLUVO_EDITED");
  if (folder == nullptr) return;
  std::u16string shown;
  std::vector<bool> inCode;
  for (text::Position i = 0; i < model.length(); ++i) {
    const char16_t unit = model.text().at(i);
    if (!model.isFieldMark(i)) {
      if (std::ranges::count(inCode, true) == 0) shown += unit;
    } else if (unit == text::kFieldBegin) {
      inCode.push_back(true);
    } else if (unit == text::kFieldSeparator) {
      inCode.back() = false;
    } else {
      inCode.pop_back();
    }
  }
  const std::filesystem::path path = std::filesystem::path(folder) / name;
  std::ofstream(path, std::ios::binary) << std::string(written.view.begin(), written.view.end());
  std::ofstream(path.string() + ".txt", std::ios::binary) << base::utf8(shown);
}

}  // namespace pluvo::formats
