#pragma once

#include "word_com/application.h"

#include <windows.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace pluvo::word_com {

/// Word's version and the members it refused, for a user to send: `word.log`, a line each, in UTF-8. It has
/// names of members, numbers and lengths; texts of documents only where they are asked for. It takes what it
/// is told before it has a place, and lines that cannot be written are lost silently.
class WordLog {
 public:
  explicit WordLog(Logging logging) : logging_(logging) {}

  bool isOn() const { return logging_ != Logging::off; }
  bool hasTexts() const { return logging_ == Logging::withTexts; }
  /// From now on it is written into that folder, which is made where it is missing.
  void beginIn(const std::u16string& folder) noexcept;
  void line(std::u16string_view text) noexcept;
  /// "Range.Delete refused: 800A17EC".
  void refused(std::wstring_view member, HRESULT status) noexcept;

 private:
  struct Closes {
    void operator()(HANDLE file) const { CloseHandle(file); }
  };

  Logging logging_;
  std::string waiting_;
  std::unique_ptr<void, Closes> file_;
};

}  // namespace pluvo::word_com
