#include "listing/listing.h"

#include "base/names.h"
#include "errors/context.h"
#include "listing/names_from.h"
#include "listing/tree_folders.h"
#include "multifile/clsDirParsing.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <functional>
#include <system_error>
#include <unordered_set>

namespace pluvo::cli {
namespace {

using files::FileKind;

std::string nameIn(const std::string& path) { return path.substr(path.rfind('/') + 1); }

std::string typeOf(const std::string& path) {
  const std::size_t dot = path.find_last_of("./");
  std::string type = dot == std::string::npos || path[dot] == '/' ? "" : path.substr(dot + 1);
  for (char& c : type) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return type;
}

std::string withoutSeparators(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

/// The place in an output folder of a path that came in a list: what stands behind "/./", else all of it, in
/// both without what would lead out of the folder.
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
  Lister(files::FileSystem& system, const Selection& selection, const std::vector<std::string>& avoided)
      : system_(system), selection_(selection) {
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
    for (const std::string& path : namesFrom(selection_)) addNamed(path, placeOfListed(path));
    return std::move(listing_);
  }

 private:
  void addNamed(const std::string& path, const std::string& place) {
    try {
      const files::FileStatus status = system_.statusAt(path);
      if (isAttributesFile(path)) {
        leaveOut(path, kAttributesFile);
      } else if (status.kind != FileKind::folder) {
        addFile({path, place, {}}, identityOf(status.stamp), status.stamp.modifiedSeconds);
      } else if (selection_.recursive) {
        addTree(path);
      } else if (seen_.insert(identityOf(status.stamp)).second) {
        listing_.documents.push_back({path, place, kFolder});
      }
    } catch (const std::system_error&) {
      if (!seenMissing_.insert(path).second) return;
      // Opening it will say what is wrong with any other.
      listing_.documents.push_back({path, place, path.empty() ? std::optional(kNoName) : std::nullopt});
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
    TreeFolders folders(system_, selection_, baseText.size(), avoided_, listing_);
    errors::Context context;
    multifile::clsDirParsing scanner(context, folders, u"/");
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
      return leaveOut(path, "name not asked for");
    if (std::find(types.begin(), types.end(), typeOf(path)) == types.end())
      return leaveOut(path, "kind not asked for");
    if (isAttributesFile(path)) return leaveOut(path, kAttributesFile);
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
    if (avoided_.contains(identity)) {
      leaveOut(path, kWrittenByRun);
    } else if (selection_.newerThan && modifiedSeconds < selection_.newerThan) {
      leaveOut(path, "not changed since");
    } else if (!seen_.insert(identity).second) {
      leaveOut(path, "another name of a document above");
    } else {
      listing_.documents.push_back(std::move(document));
    }
  }

  void leaveOut(const std::string& path, std::string_view reason) {
    listing_.leftOut.push_back({path, reason});
  }

  static constexpr std::string_view kAttributesFile = "attributes that macOS keeps of another file";
  static inline const Failure kNoName{
      files::Problem::io, "The name is empty, as an unset variable makes it in a script; name the document."};
  static inline const Failure kFolder{
      files::Problem::io, "It is a folder; add --recursive to work on the documents in it and below."};

  files::FileSystem& system_;
  const Selection& selection_;
  std::set<Identity> avoided_;
  std::unordered_set<Identity, HashOfIdentity> seen_;
  std::set<std::string> seenMissing_;
  Listing listing_;
};

}  // namespace

Listing listDocuments(files::FileSystem& system, const Selection& selection,
                      const std::vector<std::string>& avoided) {
  return Lister(system, selection, avoided).listing();
}

std::string listedPath(const NamedDocument& document) {
  const std::string& path = document.path;
  const std::string& place = document.place;
  if (path.size() <= place.size() || path.compare(path.size() - place.size(), place.size(), place) != 0)
    return path;
  const std::string before = path.substr(0, path.size() - place.size());
  return before.back() == '/' ? before + "./" + place : path;
}

}  // namespace pluvo::cli
