#include "dialog/folder_list.h"

#include "errors/fault.h"

#include <utility>

namespace pluvo::dialog {

FolderList::FolderList(std::u16string name, scanner::Folders& folders, std::u16string separator)
    : ListBox(std::move(name)), folders_(folders), separator_(std::move(separator)) {
  DblClick.handledBy([this](std::size_t row) {
    if (folders_.isFolder(paths_.at(row))) Path(std::u16string(paths_[row]));
  });
}

void FolderList::Path(const std::u16string& folder) {
  if (!folders_.isFolder(folder)) throw errors::Fault(errors::kPathNotFound, u"Path not found");
  std::u16string path = folder;
  // A root without its separator names no folder.
  while (path.ends_with(separator_) && path.find(separator_) + separator_.size() < path.size())
    path.resize(path.size() - separator_.size());
  path_ = std::move(path);
  Refresh();
}

void FolderList::Refresh() {
  paths_.clear();
  std::vector<std::u16string> texts;
  std::size_t depth = 0;
  std::size_t from = 0;
  for (std::size_t at = path_.find(separator_); at != std::u16string::npos;
       at = path_.find(separator_, from)) {
    const std::size_t end = from == 0 ? at + separator_.size() : at;  // a root keeps its separator
    addRow(texts, path_.substr(0, end), std::u16string_view(path_).substr(from, end - from), depth++);
    from = at + separator_.size();
  }
  if (from < path_.size()) addRow(texts, path_, std::u16string_view(path_).substr(from), depth++);
  const std::u16string inside = path_.ends_with(separator_) ? path_ : path_ + separator_;
  folders_.forEachEntry(path_, [&](const scanner::Entry& entry) {
    if (entry.isFolder && !entry.isHidden && !entry.name.starts_with(u'.'))
      addRow(texts, inside + entry.name, entry.name, depth);
  });
  items(std::move(texts));
}

void FolderList::addRow(std::vector<std::u16string>& texts, std::u16string path, std::u16string_view name,
                        std::size_t depth) {
  constexpr std::size_t kIndent = 2;
  texts.push_back(std::u16string(depth * kIndent, u' ') + std::u16string(name));
  paths_.push_back(std::move(path));
}

}  // namespace pluvo::dialog
