#pragma once

#include "base/bytes.h"
#include "base/utf.h"
#include "document/document.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace pluvo::formats {

/// The text with field results, hidden text too.
inline std::string shownText(const document::Story& model) {
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
  return base::utf8(shown);
}

inline const char* leftIn() { return std::getenv("PLUVO_EDITED"); }

/// For libreoffice.py, where PLUVO_EDITED names a folder: the file, and beside it the text that it should
/// have.
inline void leave(const std::string& name, const base::Bytes& written, const document::Story& model) {
  if (leftIn() == nullptr) return;
  const std::filesystem::path path = std::filesystem::path(leftIn()) / name;
  std::ofstream(path, std::ios::binary) << std::string(written.view.begin(), written.view.end());
  std::ofstream(path.string() + ".txt", std::ios::binary) << shownText(model);
}

/// The same with all stories: a line for each but main text, with the number of its kind.
inline void leave(const std::string& name, const base::Bytes& written, const document::Document& document) {
  if (leftIn() == nullptr) return;
  leave(name, written, document.mainText());
  std::ofstream stories((std::filesystem::path(leftIn()) / name).string() + ".stories.txt", std::ios::binary);
  for (std::size_t i = 1; i < document.count(); ++i) {
    if (document.isGone(i)) continue;
    std::string text = shownText(document.story(i));
    std::ranges::replace(text, '\n', ' ');
    std::ranges::replace(text, '\r', ' ');
    stories << document.story(i).kind() << ' ' << text << '\n';
  }
}

}  // namespace pluvo::formats
