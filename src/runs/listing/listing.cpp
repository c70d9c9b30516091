#include "runs/listing.h"

#include "base/ascii.h"
#include "base/names.h"
#include "errors/context.h"
#include "listing/tree_folders.h"
#include "runs/slice_keys.h"
#include "scanner/clsDirParsing.h"

#include <algorithm>
#include <array>
#include <functional>
#include <system_error>
#include <unordered_set>

namespace pluvo::runs {
namespace {

using files::FileKind;

std::string nameIn(const std::string& path) { return path.substr(path.rfind('/') + 1); }

std::string typeOf(const std::string& path) {
  const std::size_t dot = path.find_last_of("./");
  return dot == std::string::npos || path[dot] == '/' ? "" : base::asciiLower(path.substr(dot + 1));
}

std::string withoutSeparators(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

/// The place in an output folder of a path that came in a list: the part after "/./", else all of it. Steps
/// that would lead out of the folder are left out.
std::string placeOfListed(const std::string& path) {
  const std::size_t mark = path.find("/./");
  const std::string kept = mark == std::string::npos ? path : path.substr(mark + 3);
  std::string place;
  std::size_t from = 0;
  while (from <= kept.size()) {
    const std::size_t to = std::min(kept.find('/', from), kept.size());
    const std::string step = kept.substr(from, to - from);
    if (!step.empty() && step != "." && step != "..") place += (place.empty() ? "" : "/") + step;
    from = to + 1;
  }
  return place;
}

/// The name of a folder that its tree gets in an output folder.
std::string nameOfTree(const std::string& folder) {
  const std::string name = nameIn(withoutSeparators(folder));
  return name.empty() || name == "." || name == ".." ? "" : name + "/";
}

struct HashOfIdentity {
  std::size_t operator()(const Identity& identity) const {
    return std::hash<std::uint64_t>()(identity.number ^ identity.device << 32U);
  }
};

class Lister {
 public:
  Lister(files::FileSystem& system, const Selection& selection, const std::vector<std::string>& avoided,
         const Sentences& sentences)
      : system_(system), selection_(selection), sentences_(sentences) {
    if (selection.slice) keys_.emplace(system, *selection.slice);
    for (const std::string& path : avoided) {
      try {
        avoided_.insert(identityOf(system.statusAt(path).stamp));
      } catch (const std::system_error&) {
        // Not there yet, so nothing leads to it.
      }
    }
  }

  Listing listing() {
    for (const std::string& path : selection_.paths) addNamed(path, nameIn(path));
    if (selection_.listed) {
      for (const std::string& path : *selection_.listed) addNamed(path, placeOfListed(path));
    }
    if (keys_) leaveToOtherSlices();
    return std::move(listing_);
  }

 private:
  void addNamed(const std::string& path, const std::string& place) {
    try {
      const files::FileStatus status = system_.statusAt(path);
      if (isAttributesFile(path)) {
        leaveOut(path, Reason::attributesFile);
      } else if (status.kind != FileKind::folder) {
        addFile({path, place, {}}, identityOf(status.stamp), status.stamp.modifiedSeconds);
      } else if (selection_.recursive) {
        addTree(path);
      } else if (seen_.insert(identityOf(status.stamp)).second) {
        listing_.documents.push_back({path, place, failure(Trouble::isFolder)});
      }
    } catch (const std::system_error&) {
      if (!seenMissing_.insert(path).second) return;
      // Opening it will tell the fault of any other.
      listing_.documents.push_back(
          {path, place, path.empty() ? std::optional(failure(Trouble::noName)) : std::nullopt});
    }
  }

  /// Where a disk has no place for a file's attributes, macOS keeps them in another file, in the format of
  /// AppleDouble: "._" and the name.
  bool isAttributesFile(const std::string& path) {
    if (!nameIn(path).starts_with("._")) return false;
    constexpr std::array<std::uint8_t, 4> kMark = {0x00, 0x05, 0x16, 0x07};
    std::array<std::uint8_t, 4> front = {};
    try {
      const files::OpenFile file(system_, system_.openToRead(path));
      return system_.read(file.handle(), 0, front) == front.size() && front == kMark;
    } catch (const std::system_error&) {
      return false;  // opening it will tell the fault
    }
  }

  void addTree(const std::string& root) {
    const std::string base = root.back() == '/' ? root : root + "/";
    const std::u16string baseText = base::nameText(base);
    TreeFolders folders(system_, selection_, baseText.size(), avoided_, sentences_, listing_);
    errors::Context context;
    scanner::clsDirParsing scanner(context, folders, u"/");
    scanner.RootDirectory(baseText);
    scanner.MasksCSstr(u"");
    scanner.ProcessSubDirectories(selection_.levels > 0);
    scanner.DirectoriesDeep(selection_.levels);
    scanner.ProcessItems();
    const std::string tree = nameOfTree(root);
    const auto& items = scanner.ProcessedItems();
    seen_.reserve(seen_.size() + items.size());
    listing_.documents.reserve(listing_.documents.size() + items.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
      if (!items[i].empty()) addFound(items[i], scanner.identities()[i], tree, baseText.size());
    }
  }

  void addFound(const std::u16string& item, const std::optional<Identity>& identity, const std::string& tree,
                std::size_t baseLength) {
    std::string path = base::nameBytes(item);
    const std::u16string_view below = std::u16string_view(item).substr(baseLength);
    const auto& types = selection_.types;
    const auto& masks = selection_.masks;
    if (!masks.empty() && std::ranges::none_of(masks, [&](auto& mask) { return mask.takesFile(below); }))
      return leaveOut(path, Reason::notNamed);
    if (std::find(types.begin(), types.end(), typeOf(path)) == types.end())
      return leaveOut(path, Reason::otherType);
    if (isAttributesFile(path)) return leaveOut(path, Reason::attributesFile);
    std::string place = tree;
    place += base::nameBytes(below);
    NamedDocument document{path, place, {}};
    if (!selection_.follow) document.folderLength = path.size() - base::nameBytes(below).size();
    try {
      // To ask for every file would take longer than all else.
      if (identity && !selection_.newerThan) return addFile(std::move(document), *identity, {});
      const files::Stamp stamp = system_.statusAt(path).stamp;
      addFile(std::move(document), identityOf(stamp), stamp.modifiedSeconds);
    } catch (const std::system_error&) {
      listing_.documents.push_back(std::move(document));
    }
  }

  void addFile(NamedDocument document, const Identity& identity,
               std::optional<std::int64_t> modifiedSeconds) {
    const std::string& path = document.path;
    if (keys_) {
      document.key = keys_->keyOf(path);
      if (!keys_->takes(document.key)) return;
      if (keys_->isLink(path, document.key)) {
        document.failure = {errors::Problem::io,
                            "It is a link, and what it leads to may belong to another slice; name the "
                            "document itself."};
        listing_.documents.push_back(std::move(document));
        return;
      }
    }
    if (avoided_.contains(identity)) {
      leaveOut(path, Reason::writtenByRun);
    } else if (selection_.newerThan && modifiedSeconds < selection_.newerThan) {
      leaveOut(path, Reason::unchanged);
    } else if (!seen_.insert(identity).second) {
      leaveOut(path, Reason::otherName);
    } else {
      listing_.documents.push_back(std::move(document));
    }
  }

  /// A name that is no document, or is missing, has a slice, too.
  void leaveToOtherSlices() {
    std::erase_if(listing_.leftOut, [&](auto& each) { return !keys_->takes(keys_->keyOf(each.path)); });
    for (NamedDocument& each : listing_.documents)
      if (each.key.empty()) each.key = keys_->keyOf(each.path);
    std::erase_if(listing_.documents, [&](auto& each) { return !keys_->takes(each.key); });
  }

  void leaveOut(const std::string& path, Reason reason) { listing_.leftOut.push_back({path, reason}); }

  Failure failure(Trouble trouble) const { return {errors::Problem::io, sentences_(trouble)}; }

  files::FileSystem& system_;
  const Selection& selection_;
  const Sentences& sentences_;
  std::set<Identity> avoided_;
  std::unordered_set<Identity, HashOfIdentity> seen_;
  std::set<std::string> seenMissing_;
  Listing listing_;
  std::optional<SliceKeys> keys_;
};

}  // namespace

Listing listDocuments(files::FileSystem& system, const Selection& selection,
                      const std::vector<std::string>& avoided, const Sentences& sentences) {
  return Lister(system, selection, avoided, sentences).listing();
}

std::string_view wordsOf(Reason reason) {
  switch (reason) {
    case Reason::notNamed:
      return "name not asked for";
    case Reason::otherType:
      return "kind not asked for";
    case Reason::attributesFile:
      return "attributes that macOS keeps of another file";
    case Reason::writtenByRun:
      return "written by this run";
    case Reason::unchanged:
      return "not changed since";
    case Reason::otherName:
      return "another name of a document above";
    case Reason::excluded:
      return "excluded";
    case Reason::link:
      return "a link";
    case Reason::hiddenFolder:
      return "hidden folder";
    case Reason::tooDeep:
      return "below the levels asked for";
    case Reason::stopped:
      return "not opened before the run was stopped";
    case Reason::missing:
      return "not worked on yet";
  }
  return {};
}

std::string listedPath(const NamedDocument& document) {
  const std::string& path = document.path;
  const std::string& place = document.place;
  if (path.size() <= place.size() || path.compare(path.size() - place.size(), place.size(), place) != 0)
    return path;
  const std::string before = path.substr(0, path.size() - place.size());
  return before.back() == '/' ? before + "./" + place : path;
}

}  // namespace pluvo::runs
