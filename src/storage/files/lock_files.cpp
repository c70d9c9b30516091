#include "files/lock_files.h"

#include "base/names.h"
#include "base/utf.h"
#include "files/reading.h"
#include "located.h"

#include <array>
#include <string_view>
#include <system_error>

namespace pluvo::files {

namespace {

constexpr std::string_view kOfWord = "~$";

std::size_t charactersIn(std::string_view name) { return base::nameText(name).size(); }

/// Without its first character, which may be several bytes.
std::string_view withoutFirst(std::string_view name) {
  std::size_t length = name.empty() ? 0 : 1;
  while (length < name.size() && base::isUtf8Follower(name[length])) ++length;
  return name.substr(length);
}

std::string_view withoutFirst(std::string_view name, std::size_t characters) {
  for (; characters > 0; --characters) name = withoutFirst(name);
  return name;
}

/// How many first characters Word drops of a name.
std::size_t droppedOf(std::string_view name) {
  constexpr std::size_t kAllKept = 6;
  constexpr std::size_t kOneDropped = 7;
  const std::size_t length = charactersIn(name.substr(0, name.rfind('.')));
  return length <= kAllKept ? 0 : length == kOneDropped ? 1 : 2;
}

/// Other versions and other programs drop other numbers of characters than Word does. The rest may
/// then be the lock file of the document that has the whole name.
bool isOfAnother(FileSystem& system, const OpenFolder& folder, std::string_view name, std::size_t dropped) {
  const std::string_view whole = withoutFirst(name, dropped);
  return dropped > 0 && dropped != droppedOf(name) && droppedOf(whole) == 0 &&
         system.exists(folder.at(std::string(whole)));
}

/// The owner's name as UTF-16 after that in the code page of the machine, each after its length.
std::string ownerForWord(base::ByteSpan bytes) {
  constexpr std::size_t kLengthAt = 54;
  constexpr std::size_t kLongest = 52;
  if (bytes.size() < kLengthAt + 2) return {};
  const std::size_t length = bytes[kLengthAt];
  const base::ByteSpan units = bytes.subspan(kLengthAt + 2);
  if (length > kLongest || units.size() < 2 * length) return {};
  std::u16string name;
  for (std::size_t i = 0; i < length; ++i)
    name += static_cast<char16_t>(units[2 * i] | units[2 * i + 1] << 8U);
  return base::utf8(name);
}

/// ",user,machine,…;": the first field that holds something, of which "\" escapes the next byte.
std::string ownerForOffice(base::ByteSpan bytes) {
  std::string name;
  for (std::size_t i = 0; i < bytes.size() && bytes[i] != ';'; ++i) {
    if (bytes[i] == ',' && !name.empty()) break;
    if (bytes[i] == ',') continue;
    if (bytes[i] == '\\' && i + 1 < bytes.size()) ++i;
    name += static_cast<char>(bytes[i]);
  }
  return base::utf8(base::utf16(name));
}

std::string ownerIn(FileSystem& system, const OpenFolder& folder, const std::string& name) {
  try {
    if (system.statusAt(folder.at(name)).kind != FileKind::regular) return {};
    const OpenFile file(system, system.openToRead(folder.at(name)));
    std::array<std::uint8_t, 512> buffer = {};
    const base::ByteSpan bytes = base::ByteSpan(buffer).first(system.read(file.handle(), 0, buffer));
    std::string owner = name.starts_with(kOfWord) ? ownerForWord(bytes) : ownerForOffice(bytes);
    std::erase_if(owner, [](unsigned char byte) { return byte < ' ' || byte == 0x7F; });
    return owner;
  } catch (const std::system_error&) {
    return {};  // that it is there says enough
  }
}

}  // namespace

std::optional<LockFile> lockFileOf(FileSystem& system, const OpenFolder& folder,
                                   const std::string& document) {
  const auto ifThere = [&](const std::string& name) -> std::optional<LockFile> {
    if (!system.exists(folder.at(name))) return std::nullopt;
    return LockFile{name, ownerIn(system, folder, name)};
  };
  if (auto lock = ifThere(".~lock." + document + "#")) return lock;
  for (const std::size_t dropped : {std::size_t{0}, std::size_t{1}, std::size_t{2}}) {
    const std::string name = std::string(kOfWord).append(withoutFirst(document, dropped));
    if (name == document) continue;
    if (auto lock = ifThere(name); lock && !isOfAnother(system, folder, document, dropped)) return lock;
  }
  return std::nullopt;
}

}  // namespace pluvo::files
