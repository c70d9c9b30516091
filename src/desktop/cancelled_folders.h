#pragma once

#include "scanner/folders.h"
#include "work.h"

#include <memory>

namespace pluvo::desktop {

/// The machine's folders, in which a search that was cancelled finds no more.
class CancelledFolders final : public scanner::Folders {
 public:
  explicit CancelledFolders(const Work& work) : work_(work) {}

  std::error_code forEachEntry(const std::u16string& folder, const Visit& visit) override {
    return folders_->forEachEntry(folder, [&](const scanner::Entry& entry) {
      if (work_.cancels() == 0) visit(entry);
    });
  }
  std::u16string resolved(const std::u16string& folder) override { return folders_->resolved(folder); }
  bool isFolder(const std::u16string& path) override { return folders_->isFolder(path); }
  std::vector<std::u16string> drives() override { return folders_->drives(); }

 private:
  const Work& work_;
  std::unique_ptr<scanner::Folders> folders_ = scanner::machineFolders();
};

}  // namespace pluvo::desktop
