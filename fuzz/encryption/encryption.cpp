#include "encryption/kept_password.h"
#include "encryption/package_encryption.h"

#include <algorithm>
#include <cstdlib>

/// What tells an encryption is read in bounds, or refused; under whatever it tells, a package is written and
/// read again. The first byte says where the package begins, in steps of 16 bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pluvo;
  constexpr std::uint64_t kFew = 1000;
  if (size < 1 || size > 1U << 16U) return 0;
  const base::ByteSpan all(data + 1, size - 1);
  const std::size_t split = std::min<std::size_t>(std::size_t{16} * data[0], all.size());
  const auto copy = [](base::ByteSpan bytes) { return base::Bytes::of({bytes.begin(), bytes.end()}); };
  const base::ByteSpan package = all.subspan(split);
  try {
    const auto encryption = encryption::PackageEncryption::from(copy(all.first(split)));
    if (encryption->hashes() > encryption::kMostTurns + split) std::abort();
    if (encryption->hashes() <= kFew) (void)encryption->keyBy(u"password");
    for (const std::size_t length : {16U, 24U, 32U}) {
      const std::vector<std::uint8_t> key(length, 0x5A);
      try {
        (void)encryption->decrypted(key, package);
      } catch (const errors::DocumentError&) {  // NOLINT(bugprone-empty-catch): it need not be sound
      }
      encryption::PackageEncryption::Encrypted written;
      try {
        written = encryption->encrypted(key, package);
      } catch (const errors::DocumentError&) {
        continue;  // no key of this length
      }
      const auto again = encryption::PackageEncryption::from(copy(written.info));
      if (!std::ranges::equal(again->decrypted(key, written.package).view, package)) std::abort();
    }
  } catch (const errors::DocumentError&) {  // NOLINT(bugprone-empty-catch): it need not be sound
  }
  return 0;
}
