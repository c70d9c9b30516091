#include "encrypted_streams.h"

#include "base/little_endian.h"
#include "damage.h"
#include "encrypted_properties.h"
#include "fib.h"

#include <algorithm>
#include <utility>

namespace pluvo::doc {

using encryption::BinaryEncryption;

namespace {

/// The information block's beginning, which stays in plain.
constexpr std::size_t kOpenBlock = 68;
constexpr std::size_t kFlags = 0x0A, kKey = 0x0E;
constexpr std::string_view kPropertySets = "encryption";

using Octets = std::vector<std::uint8_t>;

std::unique_ptr<BinaryEncryption> encryptionOf(base::ByteSpan document, base::ByteSpan header) {
  if ((base::get16(document, kFlags) & Fib::kObfuscated) != 0)
    return BinaryEncryption::obfuscation(base::get32(document, kKey));
  return BinaryEncryption::from(header);
}

/// Keeps the key that was derived of the right password.
class StreamsLock final : public formats::Lock {
 public:
  explicit StreamsLock(const BinaryEncryption& encryption) : encryption_(encryption) {}

  std::uint64_t hashes() const override { return kHashes; }

  formats::SharedKey keyBy(const base::SecretText& password) const override {
    derived_ = encryption_.keyBy(password.text());
    return derived_ ? std::make_shared<const formats::Key>(password.copy()) : nullptr;
  }

  std::optional<base::SecretBytes> takeDerived() { return std::move(derived_); }

 private:
  static constexpr std::uint64_t kHashes = 4;

  const BinaryEncryption& encryption_;
  mutable std::optional<base::SecretBytes> derived_;
};

Octets joined(std::span<const base::ByteSpan> pieces) {
  Octets all;
  for (const base::ByteSpan piece : pieces) all.insert(all.end(), piece.begin(), piece.end());
  return all;
}

}  // namespace

bool EncryptedStreams::areOf(base::ByteSpan document) {
  return (base::get16(document, kFlags) & Fib::kEncrypted) != 0;
}

EncryptedStreams::EncryptedStreams(const cfb::CompoundFile& file, const StreamIds& ids,
                                   const formats::Hint& hint) {
  const base::Bytes document = file.read(ids.document);
  const base::Bytes tables = file.read(ids.tables);
  if (document.view.size() < kOpenBlock) throw damaged("information block is cut off");
  const bool isObfuscated = (base::get16(document.view, kFlags) & Fib::kObfuscated) != 0;
  const std::size_t header = isObfuscated ? 0 : base::get32(document.view, kKey);
  if (header > tables.view.size()) throw damaged("stream of tables is cut off");
  encryption_ = encryptionOf(document.view, tables.view.first(header));

  StreamsLock lock(*encryption_);
  password_ = formats::keyOf(lock, hint.key, hint.findKey);
  auto derived = lock.takeDerived();
  if (!derived) throw formats::encryptedDocument();  // a key of another kind of document
  key_ = *std::move(derived);

  const auto add = [&](cfb::Id id, std::size_t open, const base::Bytes& encrypted) {
    Octets bytes(encrypted.view.begin(), encrypted.view.end());
    encryption_->apply(key_.text(), open, std::span(bytes).subspan(open));
    streams_.push_back({id, open, base::Bytes::of(std::move(bytes))});
  };
  add(ids.document, kOpenBlock, document);
  add(ids.tables, header, tables);
  if (ids.data) add(*ids.data, 0, file.read(*ids.data));
}

const base::Bytes& EncryptedStreams::plain(cfb::Id id) const {
  return std::ranges::find(streams_, id, &Stream::id)->plain;
}

std::vector<base::Bytes> EncryptedStreams::propertySets(const cfb::CompoundFile& file) const {
  std::vector<base::Bytes> sets;
  const auto stream = encryption_->coversPropertySets() ? file.stream(kPropertySets) : std::nullopt;
  if (!stream) return sets;
  const base::Bytes bytes = file.read(*stream);
  Octets plain(bytes.view.begin(), bytes.view.end());
  for (const PropertyStretch& each : applyToProperties(*encryption_, key_.text(), plain)) {
    if (each.isList) continue;
    const auto from = plain.begin() + static_cast<std::ptrdiff_t>(each.at);
    sets.push_back(base::Bytes::of({from, from + static_cast<std::ptrdiff_t>(each.size)}));
  }
  return sets;
}

void EncryptedStreams::rewrite(const cfb::CompoundFile& file, std::span<const cfb::Change> changes,
                               base::Output& out) const {
  const auto& password = std::get<base::SecretText>(*password_);
  const BinaryEncryption::Renewed renewed = encryption_->renewed(password.text());
  std::vector<std::pair<cfb::Id, Octets>> encrypted;
  for (const Stream& stream : streams_) {
    const auto change = std::ranges::find(changes, stream.id, &cfb::Change::stream);
    const base::ByteSpan same[] = {stream.plain.view};
    Octets bytes = joined(change == changes.end() ? same : std::span<const base::ByteSpan>(change->pieces));
    const bool holdsHeader = stream.id == streams_[1].id;
    if (holdsHeader) std::ranges::copy(renewed.header, bytes.begin());
    encryption_->apply(renewed.key.text(), stream.open, std::span(bytes).subspan(stream.open));
    encrypted.emplace_back(stream.id, std::move(bytes));
  }
  if (const auto sets = encryption_->coversPropertySets() ? file.stream(kPropertySets) : std::nullopt) {
    const base::Bytes bytes = file.read(*sets);
    Octets anew(bytes.view.begin(), bytes.view.end());
    for (const PropertyStretch& each : applyToProperties(*encryption_, key_.text(), anew))
      encryption_->applyStretch(renewed.key.text(), each.block, 0,
                                std::span(anew).subspan(each.at, each.size));
    encrypted.emplace_back(*sets, std::move(anew));
  }
  std::vector<cfb::Change> all;
  all.reserve(encrypted.size() + changes.size());
  for (const auto& [id, bytes] : encrypted) all.push_back({id, {base::ByteSpan(bytes)}});
  for (const cfb::Change& change : changes) {
    if (std::ranges::find(all, change.stream, &cfb::Change::stream) == all.end()) all.push_back(change);
  }
  cfb::rewrite(file, all, out);
}

}  // namespace pluvo::doc
