#include "checks.h"
#include "doc/doc_format.h"
#include "elsewhere/elsewhere.h"
#include "encryption/kept_password.h"
#include "encryption/package_encryption.h"
#include "formats/doc/encrypted_doc.h"

#include <algorithm>
#include <cstdlib>
#include <string>

namespace {

using namespace pluvo;
using fuzz::require;

base::Bytes copyOf(base::ByteSpan bytes) { return base::Bytes::of({bytes.begin(), bytes.end()}); }

/// Under whatever a header tells, bytes are encrypted and decrypted again, and so they are under its renewal.
void streams(base::ByteSpan header, base::ByteSpan bytes) {
  const auto encryption = encryption::BinaryEncryption::from(header);
  (void)encryption->keyBy(u"password");
  const auto renewed = encryption->renewed(u"password");
  const auto again = encryption::BinaryEncryption::from(renewed.header);
  const auto key = again->keyBy(u"password");
  require(key && key->text() == renewed.key.text(), "the key of the renewal");
  std::vector<std::uint8_t> both(bytes.begin(), bytes.end());
  for (int times = 0; times < 2; ++times) again->apply(key->text(), header.size(), both);
  require(std::ranges::equal(both, bytes), "encrypted and decrypted");
}

/// A document whose stream of encrypted property sets is any: it is read, changed, written and read again.
void propertySets(base::ByteSpan sets) {
  const doc::Encrypter encrypter({"", encryption::fromHex(encryption::kRc4Header128)});
  doc::DocBuilder builder;
  for (const char16_t unit : std::u16string_view(u"text\r")) builder.append(unit);
  builder.streams = {{"encryption", encrypter.listed({sets.begin(), sets.end()})}};
  const std::string file = encrypter.build(builder, "");
  formats::Hint hint;
  hint.key =
      std::make_shared<const formats::Key>(base::SecretText(std::u16string(encryption::kVectorPassword)));
  const auto read = [&](base::ByteSpan bytes) { return doc::DocFormat().read(copyOf(bytes), hint); };
  formats::Opened opened = read({reinterpret_cast<const std::uint8_t*>(file.data()), file.size()});
  document::Document model(std::move(opened.stories), opened.source);
  engine::Request request;
  request.begin = u"e";
  elsewhere::lookElsewhere(*opened.source, model, {&request, 1});
  fuzz::edit(model, std::vector<std::uint8_t>{1, 0, 1, 1, 0});
  base::MemoryOutput out;
  opened.source->write(model, out);
  const document::Document again(read(out.bytes()).stories, opened.source);
  require(fuzz::textsOf(again) == fuzz::textsOf(model), "the text that was meant");
}

template <class Work>
void refusedOrNot(const Work& work) {
  try {
    work();
  } catch (const errors::DocumentError&) {  // NOLINT(bugprone-empty-catch): it need not be sound
  }
}

}  // namespace

/// What tells an encryption is read in bounds, or refused; under whatever it tells, a package or stream is
/// written and read again. The first byte says where the package begins, in steps of 16 bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::uint64_t kFew = 1000;
  if (size < 1 || size > 1U << 16U) return 0;
  const base::ByteSpan all(data + 1, size - 1);
  const std::size_t split = std::min<std::size_t>(std::size_t{16} * data[0], all.size());
  const base::ByteSpan package = all.subspan(split);
  refusedOrNot([&] { streams(all.first(split), package); });
  refusedOrNot([&] { propertySets(all); });
  try {
    const auto encryption = encryption::PackageEncryption::from(copyOf(all.first(split)));
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
      const auto again = encryption::PackageEncryption::from(copyOf(written.info));
      if (!std::ranges::equal(again->decrypted(key, written.package).view, package)) std::abort();
    }
  } catch (const errors::DocumentError&) {  // NOLINT(bugprone-empty-catch): it need not be sound
  }
  return 0;
}
