#include "scanner/clsDirParsing.h"

#include "scanner/mask.h"

#include <algorithm>
#include <utility>

namespace pluvo::scanner {

clsDirParsing::clsDirParsing(errors::Context& context, Folders& folders, std::u16string separator)
    : context_(context), folders_(folders), separator_(std::move(separator)) {}

std::u16string clsDirParsing::MasksCSstr() const {
  std::u16string joined;
  for (const std::u16string& mask : masks_) joined += (&mask == masks_.data() ? u"" : u",") + mask;
  return joined;
}

void clsDirParsing::MasksCSstr(std::u16string_view masks) {
  masks_.clear();
  std::size_t from = 0;
  for (std::size_t comma = masks.find(u','); comma != masks.npos; comma = masks.find(u',', from)) {
    masks_.emplace_back(masks.substr(from, comma - from));
    from = comma + 1;
  }
  masks_.emplace_back(masks.substr(from));
}

void clsDirParsing::ProcessItems() {
  errors::guarded(context_, u"cdpar:13", [&] {
    dirs_ = {u""};
    FolderCollection folders;
    folders.reach(root_, folders_.resolved(root_), -1);
    if (subFolders_) {
      std::int16_t level = 0;
      GetSubdirs(root_, folders, level, deep_);
    }
    items_ = {u""};
    identities_ = {std::nullopt};
    if (itemsToProcess_ != 0) {
      items_ = dirs_;
      return;
    }
    std::size_t index = 0;
    for (const std::u16string& folder : folders.paths()) listFiles(folder, index);
  });
}

void clsDirParsing::listFiles(const std::u16string& folder, std::size_t& index) {
  for (const std::u16string& mask : masks_) {
    forEachMatching(folder + mask, [&](const Entry& entry) {
      if (entry.isFolder) return;
      items_.resize(std::max(items_.size(), index + 1));
      identities_.resize(items_.size());
      identities_[index] = entry.identity;
      items_[index++] = folder + entry.name;
    });
  }
}

void clsDirParsing::GetSubdirs(const std::u16string& folder, FolderCollection& folders, std::int16_t& level,
                               std::int16_t& maximumDepth) {
  errors::guarded(context_, u"cdpar:14", [&] {
    Descend descend;
    if (level < maximumDepth - 1) {
      descend = [&](const std::u16string& item) {
        auto next = static_cast<std::int16_t>(level + 1);
        GetSubdirs(item, folders, next, maximumDepth);
      };
    }
    addSubFolders(
        folder, folders, level, [](const Entry& entry) { return !entry.name.starts_with(u'.'); }, descend);
  });
}

void clsDirParsing::GetSubdirsOld2(const std::u16string& folder, FolderCollection& folders,
                                   std::int16_t& level, std::int16_t& maximumDepth) {
  errors::guarded(context_, u"cdpar:15", [&] {
    Descend descend;
    if (level < maximumDepth) {
      descend = [&](const std::u16string& item) {
        auto next = static_cast<std::int16_t>(level + 1);
        GetSubdirsOld2(item, folders, next, maximumDepth);
      };
    }
    addSubFolders(
        folder, folders, level, [](const Entry& entry) { return !entry.isHidden; }, descend);
  });
}

void clsDirParsing::addSubFolders(const std::u16string& folder, FolderCollection& folders, std::int16_t level,
                                  bool (*taken)(const Entry&), const Descend& descend) {
  forEachMatching(folder + u"*.*", [&](const Entry& entry) {
    if (!entry.isFolder || !taken(entry)) return;
    const std::u16string item = folder + entry.name + separator_;
    if (folders.reach(item, folders_.resolved(item), level) && descend) descend(item);
  });
}

/// As a search of the file system takes a pattern: the part after the last separator is the mask.
void clsDirParsing::forEachMatching(const std::u16string& pattern, const Folders::Visit& visit) {
  const std::size_t separator = pattern.rfind(separator_);
  const std::size_t name = separator == std::u16string::npos ? 0 : separator + separator_.size();
  const Mask mask(std::u16string_view(pattern).substr(name));
  folders_.forEachEntry(pattern.substr(0, name), [&](const Entry& entry) {
    if (mask.matches(entry.name)) visit(entry);
  });
}

}  // namespace pluvo::scanner
