#pragma once

#include "cfb/compound_file.h"
#include "containers/cfb/compound_builder.h"
#include "containers/encryption/vectors.h"
#include "encryption/package_encryption.h"
#include "formats/docx/document_builder.h"

#include <string>

namespace pluvo::docx {

inline base::Bytes bytesIn(const std::string& text) { return base::Bytes::of({text.begin(), text.end()}); }

/// The package, encrypted for encryption::kVectorPassword, and somebody else's stream beside it, by whose
/// name another kind of document is known.
inline std::string encrypted(const std::string& package) {
  const auto encryption = encryption::PackageEncryption::from(bytesIn(encryption::vectors().front().info));
  const auto key = encryption->keyBy(encryption::kVectorPassword);
  const auto made = encryption->encrypted(key->text(), bytesIn(package).view);
  return cfb::compoundFile({{"WordDocument", "what others keep here"},
                            {"EncryptionInfo", {made.info.begin(), made.info.end()}},
                            {"EncryptedPackage", {made.package.begin(), made.package.end()}}});
}

/// A document that only who knows the password "right" may replace.
inline std::string reserved(const std::string& text) {
  return fileOf(text, settingsOf("<w:writeProtection w:algorithmName=\"SHA-256\" w:spinCount=\"0\" "
                                 "w:saltValue=\"AQIDBA==\" "
                                 "w:hashValue=\"RJfCpIt655peEKSTD8qVd/dzk7t0N4rkEZt+mT+DlxE=\"/>"));
}

inline std::string recommendingReading(const std::string& text) {
  return fileOf(text, settingsOf("<w:writeProtection w:recommended=\"1\"/>"));
}

/// A stream of a compound file.
inline std::string streamOf(const std::string& file, const char* name) {
  const cfb::CompoundFile opened = cfb::CompoundFile::open(bytesIn(file));
  const base::Bytes stream = opened.read(*opened.stream(name));
  return {stream.view.begin(), stream.view.end()};
}

/// The way back.
inline std::string decrypted(const std::string& file) {
  const auto encryption = encryption::PackageEncryption::from(bytesIn(streamOf(file, "EncryptionInfo")));
  const auto key = encryption->keyBy(encryption::kVectorPassword);
  const auto package = encryption->decrypted(key->text(), bytesIn(streamOf(file, "EncryptedPackage")).view);
  return {package.view.begin(), package.view.end()};
}

}  // namespace pluvo::docx
