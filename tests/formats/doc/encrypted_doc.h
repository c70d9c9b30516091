#pragma once

#include "containers/encryption/vectors.h"
#include "encryption/binary_encryption.h"
#include "encryption/kept_password.h"
#include "formats/doc/doc_builder.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace pluvo::doc {

/// The ways of encrypting a binary document, each by its header; obfuscation has none.
struct Way {
  const char* name;
  std::string header;  ///< as bytes
};

/// Encrypts a document that is being built for encryption::kVectorPassword, with its property set, if that
/// may be.
class Encrypter {
 public:
  explicit Encrypter(const Way& way)
      : way_(way),
        encryption_(way.header.empty() ? encryption::BinaryEncryption::obfuscation(
                                             encryption::keyOf(encryption::kVectorPassword))
                                       : encryption::BinaryEncryption::from(bytesOf(way.header))),
        key_(*encryption_->keyBy(encryption::kVectorPassword)) {}

  std::string build(DocBuilder builder, const std::string& propertySet) const {
    builder.flags |= Fib::kEncrypted;
    if (way_.header.empty()) {
      builder.flags |= Fib::kObfuscated;
      builder.key = encryption::keyOf(encryption::kVectorPassword);
    } else {
      builder.key = static_cast<std::uint32_t>(way_.header.size());
      builder.front = way_.header;
    }
    const bool hasSets =
        std::ranges::any_of(builder.streams, [](const auto& each) { return each.first == "encryption"; });
    if (encryption_->coversPropertySets() && !hasSets)
      builder.streams.emplace_back("encryption", gathered(propertySet));
    builder.eachStream = [this](const std::string& name, std::string bytes) {
      const std::size_t open = name == "WordDocument" ? 68 : name == "1Table" ? way_.header.size() : 0;
      encryption_->apply(key_.text(), open, writable(bytes).subspan(open));
      return bytes;
    };
    return builder.build();
  }

  /// A stream of property sets whose list is encrypted where it says that it lies.
  std::string listed(std::string stream) const {
    if (stream.size() < 4) return stream;
    const std::size_t at = std::min<std::size_t>(base::get32(bytesOf(stream), 0), stream.size());
    return stream.substr(0, at) + under(0, stream.substr(at));
  }

 private:
  static base::ByteSpan bytesOf(const std::string& text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
  }
  static std::span<std::uint8_t> writable(std::string& text) {
    return {reinterpret_cast<std::uint8_t*>(text.data()), text.size()};
  }

  std::string under(std::uint32_t block, std::string bytes) const {
    encryption_->applyStretch(key_.text(), block, 0, writable(bytes));
    return bytes;
  }

  /// One property set, and the list of one.
  std::string gathered(const std::string& set) const {
    const auto size = static_cast<std::uint32_t>(set.size());
    const std::string list = number(1U) + number(8U) + number(size) + number(std::uint16_t{3}) + '\1' + '\1' +
                             number(0U) + number(u'\5') + number(u'\0');
    return number(8 + size) + number(static_cast<std::uint32_t>(list.size() - 4)) + under(3, set) +
           under(0, list);
  }

  Way way_;
  std::unique_ptr<encryption::BinaryEncryption> encryption_;
  base::SecretBytes key_;
};

}  // namespace pluvo::doc
