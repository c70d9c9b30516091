#include "encrypted_package.h"

#include <algorithm>
#include <array>
#include <utility>

namespace pluvo::docx {

namespace {

constexpr std::string_view kInfo = "EncryptionInfo";
constexpr std::string_view kPackage = "EncryptedPackage";

class PackageLock final : public formats::Lock {
 public:
  explicit PackageLock(const encryption::PackageEncryption& encryption) : encryption_(encryption) {}

  std::uint64_t hashes() const override { return encryption_.hashes(); }

  formats::SharedKey keyBy(const base::SecretText& password) const override {
    auto key = encryption_.keyBy(password.text());
    return key ? std::make_shared<const formats::Key>(*std::move(key)) : nullptr;
  }

 private:
  const encryption::PackageEncryption& encryption_;
};

/// Rights management names its part of the data spaces so.
bool isRightsManaged(const cfb::CompoundFile& file) {
  return std::ranges::any_of(file.entries(), [](const cfb::Entry& entry) {
    return entry.kind != cfb::Entry::Kind::unused && entry.name.starts_with(u"DRMEncrypted");
  });
}

}  // namespace

bool EncryptedPackage::isOne(base::ByteSpan bytes) { return cfb::hasStream(bytes, kPackage); }

EncryptedPackage::EncryptedPackage(base::Bytes compoundFile, const formats::Hint& hint)
    : file_(cfb::CompoundFile::open(std::move(compoundFile))) {
  if (isRightsManaged(file_)) throw encryption::rightsManaged();
  const auto info = file_.stream(kInfo);
  const auto package = file_.stream(kPackage);
  if (!info || !package) {
    throw errors::DocumentError(
        errors::Problem::damaged,
        "The encrypted document is damaged: it does not tell how it is encrypted; get "
        "an intact copy.");
  }
  info_ = *info;
  package_ = *package;
  encryption_ = encryption::PackageEncryption::from(file_.read(info_));
  key_ = formats::keyOf(PackageLock(*encryption_), hint.key, hint.findKey);
}

base::Bytes EncryptedPackage::decrypted() const {
  const base::Bytes encrypted = file_.read(package_);
  return encryption_->decrypted(keyBytes(), encrypted.view);
}

void EncryptedPackage::write(base::ByteSpan package, base::Output& out) const {
  const auto [info, encrypted] = encryption_->encrypted(keyBytes(), package);
  const std::array<cfb::Change, 2> changes = {
      {{info_, {base::ByteSpan(info)}}, {package_, {base::ByteSpan(encrypted)}}}};
  cfb::rewrite(file_, changes, out);
}

}  // namespace pluvo::docx
