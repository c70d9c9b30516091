#pragma once

#include "scanner/folders.h"
#include "working.h"

#include <memory>

namespace pluvo::desktop {

/// The machine's folders, with a breath at each entry; a search that was cancelled finds no more.
class BreathingFolders final : public scanner::Folders {
 public:
  explicit BreathingFolders(Working& working) : working_(working) {}

  std::error_code forEachEntry(const std::u16string& folder, const Visit& visit) override {
    return folders_->forEachEntry(folder, [&](const scanner::Entry& entry) {
      working_.breathe();
      if (working_.cancels() == 0) visit(entry);
    });
  }
  std::u16string resolved(const std::u16string& folder) override { return folders_->resolved(folder); }
  bool isFolder(const std::u16string& path) override { return folders_->isFolder(path); }
  std::vector<std::u16string> drives() override { return folders_->drives(); }

 private:
  Working& working_;
  std::unique_ptr<scanner::Folders> folders_ = scanner::machineFolders();
};

}  // namespace pluvo::desktop
