#pragma once

#include "errors/fault.h"
#include "word/faults.h"
#include "word/word_processor.h"

#include <memory>
#include <string>

/// For word processors of tests about one document: the members that have to do with files, refused.
namespace pluvo::word {

[[noreturn]] inline void unused() { throw errors::Fault(kNotAvailable, u"Not in this test."); }

class OneDocument : public Document {
 public:
  std::u16string Path() override { unused(); }
  void Activate() override { unused(); }
  bool ReadOnly() override { unused(); }
  void WritePassword(const std::u16string&) override { unused(); }
  WdProtectionType ProtectionType() override { unused(); }
  void Unprotect(const std::u16string&) override { unused(); }
  void Protect(WdProtectionType, const std::u16string&) override { unused(); }
  std::shared_ptr<word::Range> StoryRanges(WdStoryType) override { unused(); }
  bool Saved() override { unused(); }
  void Close(bool) override { unused(); }
};

class OneDocumentApplication : public Application {
 public:
  std::shared_ptr<word::Documents> Documents() override { unused(); }
  std::shared_ptr<word::Options> Options() override { unused(); }
  std::u16string PathSeparator() override { unused(); }
};

}  // namespace pluvo::word
