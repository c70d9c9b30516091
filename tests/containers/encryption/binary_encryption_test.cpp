#include "encryption/binary_encryption.h"

#include "base64.h"
#include "containers/encryption/vectors.h"
#include "encryption/kept_password.h"

#include <gtest/gtest.h>

namespace pluvo::encryption {
namespace {

constexpr std::uint64_t kPosition = 1000;
constexpr std::string_view kText = "in the third stretch!!!!!!!!!!!!!!!!!!!!!!!!";

Octets applied(const BinaryEncryption& encryption, const base::SecretBytes& key, Octets bytes) {
  encryption.apply(key.text(), kPosition, bytes);
  return bytes;
}

TEST(BinaryEncryption, OpensWhatOthersEncryptedAndRenewsItsSalt) {
  // The header, and the text from position 1,000 of a stream on, encrypted by other programs than ours.
  const std::pair<std::string_view, const char*> cases[] = {
      {kRc4Header, "Q2IVyuGxFWeDvblk8hcJ0ZSfrkAVwUV4LQ93uo+bskRbULkSvXmCkDi5F+U="},
      {kRc4Header40, "QQMS/QM2bfymSxxQ7FbM50SDVl5+aefWpwv2OW/sPVgIMZw8RKqGvs5OGZo="},
      {kRc4Header128, "BU7eOWFW/rtasAznOy8R4pQVaSm4JVDbH34zID5E9o0ee2b6ZPoI4fj+BCg="},
  };
  const Octets text(kText.begin(), kText.end());
  for (const auto& [hex, encrypted] : cases) {
    const std::string bytes = fromHex(hex);
    const Octets header(bytes.begin(), bytes.end());
    const auto encryption = BinaryEncryption::from(header);
    EXPECT_FALSE(encryption->keyBy(u"password"));
    const auto key = encryption->keyBy(kVectorPassword);
    ASSERT_TRUE(key) << hex;
    EXPECT_EQ(applied(*encryption, *key, *decoded(encrypted)), text);

    const auto renewed = encryption->renewed(kVectorPassword);
    EXPECT_EQ(renewed.header.size(), header.size());
    const auto again = BinaryEncryption::from(renewed.header);
    const auto newKey = again->keyBy(kVectorPassword);
    ASSERT_TRUE(newKey) << hex;
    EXPECT_EQ(newKey->text(), renewed.key.text());
    EXPECT_NE(newKey->text(), key->text());
    const Octets now = applied(*again, renewed.key, text);
    EXPECT_NE(now, *decoded(encrypted));
    EXPECT_EQ(applied(*again, *newKey, now), text);

    for (std::size_t size = 0; size < header.size(); ++size)
      EXPECT_THROW(BinaryEncryption::from(base::ByteSpan(header).first(size)), errors::DocumentError) << size;
  }
  std::string other = fromHex(kRc4Header40);
  other[20] = 2;
  EXPECT_THROW(BinaryEncryption::from(Octets(other.begin(), other.end())), errors::DocumentError);
}

TEST(BinaryEncryption, ObfuscatesBothWaysButForNothing) {
  const auto encryption = BinaryEncryption::obfuscation(keyOf(u"secret"));
  EXPECT_FALSE(encryption->keyBy(u"secrets"));
  const auto key = encryption->keyBy(u"secret");
  ASSERT_TRUE(key);
  EXPECT_EQ(key->text(), encryption->renewed(u"secret").key.text());
  Octets text(kText.begin(), kText.end());
  text[3] = 0;
  const Octets mixed = applied(*encryption, *key, text);
  EXPECT_NE(mixed, text);
  EXPECT_EQ(mixed[3], 0);
  EXPECT_EQ(applied(*encryption, *key, mixed), text);
  EXPECT_EQ(key->text().front(), 0x1f);
}

}  // namespace
}  // namespace pluvo::encryption
