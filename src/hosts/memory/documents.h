#pragma once

#include "base/names.h"
#include "member.h"
#include "memory/application.h"
#include "word/word_processor.h"

#include <memory>
#include <string>

namespace pluvo::memory {

class MemoryDocuments : public word::Documents {
 public:
  explicit MemoryDocuments(MemoryApplication& application) : application_(application) {}
  std::int32_t Count() override { return application_.count(); }
  std::shared_ptr<word::Document> Item(std::int32_t index) override {
    return member(u"Documents.Item", [&] { return application_.document(index); });
  }
  std::shared_ptr<word::Document> Open(const std::u16string& fileName) override {
    return member(u"Documents.Open", [&] { return application_.open(base::nameBytes(fileName)); });
  }

 private:
  MemoryApplication& application_;
};

}  // namespace pluvo::memory
