#pragma once

#include "dispatch.h"
#include "word/word_processor.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace pluvo::word_com {

class ComView final : public word::View {
 public:
  explicit ComView(Object view) : view_(std::move(view)) {}
  void ShowFieldCodes(bool value) override { view_.put(L"ShowFieldCodes", Arguments().boolean(value)); }
  std::unique_ptr<word::Batch> keepFieldCodes() override;

 private:
  Object view_;
};

class ComWindow final : public word::Window {
 public:
  explicit ComWindow(Object window) : window_(std::move(window)) {}
  std::shared_ptr<word::View> View() override;

 private:
  Object window_;
};

class ComDocument final : public word::Document {
 public:
  explicit ComDocument(Object document) : document_(std::move(document)) {}

  std::shared_ptr<word::Range> Range(std::int32_t start, std::int32_t end) override;
  std::u16string Name() override { return document_.get(L"Name").toText(); }
  std::u16string Path() override { return document_.get(L"Path").toText(); }
  std::shared_ptr<word::Window> ActiveWindow() override;
  void Activate() override { document_.call(L"Activate"); }

  bool ReadOnly() override { return document_.get(L"ReadOnly").toBoolean(); }
  void WritePassword(const std::u16string& password) override;
  word::WdProtectionType ProtectionType() override;
  void Unprotect(const std::u16string& password) override;
  void Protect(word::WdProtectionType type, const std::u16string& password) override;
  std::shared_ptr<word::Range> StoryRanges(word::WdStoryType kind) override;

  bool Saved() override { return document_.get(L"Saved").toBoolean(); }
  void Saved(bool saved) override { document_.put(L"Saved", Arguments().boolean(saved)); }
  bool TrackRevisions() override { return document_.get(L"TrackRevisions").toBoolean(); }
  void Close(bool saveChanges) override;

 private:
  Object document_;
};

}  // namespace pluvo::word_com
