#pragma once

#include "member.h"
#include "memory/application.h"
#include "word/word_processor.h"

#include <string>

namespace pluvo::memory {

class MemoryOptions : public word::Options {
 public:
  explicit MemoryOptions(const MemoryApplication& application) : application_(application) {}
  std::u16string DefaultFilePath(word::WdDefaultFilePath kind) override {
    return member(u"Options.DefaultFilePath", [&] { return application_.defaultFilePath(kind); });
  }

 private:
  const MemoryApplication& application_;
};

}  // namespace pluvo::memory
