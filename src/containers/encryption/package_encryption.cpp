#include "encryption/package_encryption.h"

#include "base/little_endian.h"
#include "package_ways.h"

namespace pluvo::encryption {

using errors::DocumentError;
using errors::Problem;

DocumentError damagedEncryption(const std::string& what) {
  return {Problem::damaged, "The encrypted document is damaged: " + what + "; get an intact copy."};
}

DocumentError unknownEncryption(const std::string& what) {
  return {Problem::unsupported,
          "The document is encrypted by " + what +
              ", which is not worked on; open it in the program that wrote it, and save "
              "it with a password as word processors do, or with none."};
}

DocumentError tooManyTurns() {
  return {
      Problem::unsupported,
      "Each password for the document would have to be hashed more than 1,000,000 times, ten times as "
      "often as word processors do; that could take seconds or hours, so none is tried. Open it in a word "
      "processor, and save it with a password there."};
}

DocumentError wrongKey() {
  return {Problem::password, "The key does not open the encrypted document; give its password."};
}

DocumentError rightsManaged() {
  return {Problem::unsupported,
          "The document is under rights management (IRM): a server decides who may open it, and no password "
          "does; open it in the word processor that it was made for, and save it without restrictions."};
}

Stretch stretchOf(base::ByteSpan encrypted, std::size_t blockSize) {
  if (encrypted.size() < kLengthSize) throw damagedEncryption("it has no contents");
  const std::uint64_t length = base::get64(encrypted, 0);
  const base::ByteSpan blocks = encrypted.subspan(kLengthSize);
  if (length > blocks.size() || roundedUp(length, blockSize) > blocks.size())
    throw damagedEncryption("its contents are cut off");
  return {length, blocks.first(roundedUp(length, blockSize))};
}

std::vector<std::uint8_t> roomFor(std::uint64_t length, std::size_t blockSize) {
  std::vector<std::uint8_t> room(kLengthSize + roundedUp(length, blockSize));
  base::put(std::span(room), 0, length);
  return room;
}

std::unique_ptr<PackageEncryption> PackageEncryption::from(base::Bytes info) {
  const base::ByteSpan bytes = info.view;
  if (bytes.size() < kVersionSize) throw damagedEncryption("the description of its encryption is cut off");
  const unsigned major = base::get16(bytes, 0);
  const unsigned minor = base::get16(bytes, 2);
  if (major == 4 && minor == 4) return agileEncryption(info);
  if (major >= 2 && major <= 4 && minor == 2) return standardEncryption(std::move(info));
  if ((major == 3 || major == 4) && minor == 3)
    throw unknownEncryption("an extension (extensible encryption)");
  throw unknownEncryption("a way of version " + std::to_string(major) + "." + std::to_string(minor));
}

}  // namespace pluvo::encryption
