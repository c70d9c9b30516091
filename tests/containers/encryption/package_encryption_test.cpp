#include "encryption/package_encryption.h"

#include "base64.h"
#include "containers/encryption/vectors.h"
#include "encryption/kept_password.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pluvo::encryption {
namespace {

using errors::DocumentError;
using errors::Problem;

constexpr const char* kStandardInfo =

    "BAACACQAAAA8AAAAJAAAAAAAAAAOZgAABIAAAIAAAAAYAAAAAAAAAAAAAABTAG8AbQBlACAAUAByAG8AdgBpAGQAZQByAAAAE"
    "AAAAGJ8LlmvLqN6vIRnCtPE02twkI+z1p2za/7zJXrDIoKQFAAAAPL0aCZ7HNvfyMMHIW03BLQf19PaoqyR1lTtNW9+8ijQ";
constexpr const char* kStandardPackage = "FgAAAAAAAADpYMYdqC1MytU9yrmN58l9qiywUjRZtVol/zTx9vY/ew==";

std::string textOf(base::ByteSpan bytes) { return {bytes.begin(), bytes.end()}; }

base::Bytes bytesOf(std::string_view text) { return base::Bytes::of({text.begin(), text.end()}); }

std::string standardInfo() { return textOf(*decoded(kStandardInfo)); }

std::unique_ptr<PackageEncryption> encryptionBy(std::string_view info) {
  return PackageEncryption::from(bytesOf(info));
}

TEST(PackageEncryption, OpensWhatOthersEncryptedAndWritesItAnew) {
  const std::string larger(10'000, 'x');
  auto all = vectors();
  all.push_back({standardInfo(), kStandardPackage});
  for (const auto& [info, package] : all) {
    const auto encryption = encryptionBy(info);
    EXPECT_LE(encryption->hashes(), 50'000U);
    EXPECT_FALSE(encryption->keyBy(u"password"));
    const auto key = encryption->keyBy(kVectorPassword);
    ASSERT_TRUE(key) << info;
    EXPECT_EQ(textOf(encryption->decrypted(key->text(), *decoded(package)).view), kVectorPackage);

    const auto written = encryption->encrypted(key->text(), bytesOf(larger).view);
    const std::string newInfo = textOf(written.info);
    const auto again = encryptionBy(newInfo);
    const auto sameKey = again->keyBy(kVectorPassword);
    ASSERT_TRUE(sameKey) << newInfo;
    EXPECT_EQ(sameKey->text(), key->text());
    EXPECT_EQ(textOf(again->decrypted(key->text(), written.package).view), larger);
    const std::size_t encryptors = info.find("<keyEncryptors>");
    if (encryptors == std::string::npos) {
      EXPECT_EQ(newInfo, info) << "its salt goes with the password";
      continue;
    }
    ASSERT_EQ(newInfo.size(), info.size());
    EXPECT_EQ(newInfo.substr(encryptors), info.substr(encryptors));
    for (const char* value : {"saltValue=", "encryptedHmacKey=", "encryptedHmacValue="}) {
      const std::size_t at = info.find(value);
      EXPECT_NE(newInfo.substr(at, 30), info.substr(at, 30)) << value;
    }
    EXPECT_NE(encryption->encrypted(key->text(), bytesOf(larger).view).package, written.package);
  }
}

TEST(PackageEncryption, TellsWhereAnybodyTouchedWhatWasEncrypted) {
  const std::string info = vectors().front().info;
  const std::string package = textOf(*decoded(vectors().front().package));
  const auto encryption = encryptionBy(info);
  const auto key = encryption->keyBy(kVectorPassword);
  const auto problemOf = [&](const std::string& bytes) {
    try {
      encryption->decrypted(key->text(), bytesOf(bytes).view);
    } catch (const DocumentError& error) {
      return error.problem();
    }
    return Problem::io;
  };
  for (std::size_t at = 0; at < package.size(); ++at) {
    std::string touched = package;
    touched[at] = static_cast<char>(touched[at] ^ 1);
    EXPECT_EQ(problemOf(touched), Problem::damaged) << at;
    EXPECT_EQ(problemOf(package.substr(0, at)), Problem::damaged) << at;
  }
}

TEST(PackageEncryption, RefusesByNameWhatIsNotWorkedOn) {
  const std::string agile = vectors().front().info;
  const std::string standard = standardInfo();
  const auto with = [](std::string info, std::string_view old, std::string_view now) {
    return info.replace(info.find(old), old.size(), now);
  };
  const auto numbered = [](std::string info, std::size_t at, char value) {
    info[at] = value;
    return info;
  };
  struct Case {
    std::string info;
    Problem problem;
    const char* says;
  };
  const Case cases[] = {
      {numbered(agile, 2, 3), Problem::unsupported, "extensible encryption"},
      {numbered(agile, 0, 9), Problem::unsupported, "version 9.4"},
      {with(agile, "\"AES\"", "\"RC2\""), Problem::unsupported, "the cipher \"RC2\""},
      {with(agile, "ChainingModeCBC", "ChainingModeXTS"), Problem::unsupported, "\"ChainingModeXTS\""},
      {with(agile, "\"SHA512\"", "\"WHIRLPOOL\""), Problem::unsupported, "\"WHIRLPOOL\""},
      {with(agile, "spinCount=\"10\"", "spinCount=\"10000000\""), Problem::unsupported, "1,000,000 times"},
      {with(agile, "spinCount=\"10\"", "spinCount=\"99999999999\""), Problem::unsupported, "1,000,000 times"},
      {with(agile, "<p:encryptedKey", "<p:otherKey"), Problem::unsupported, "no password"},
      {with(agile, "keyBits=\"256\"", "keyBits=\"4096\""), Problem::damaged, "length"},
      {with(agile, "hashSize=\"64\"", "hashSize=\"20\""), Problem::damaged, "length"},
      {with(agile, "<dataIntegrity", "<dataIntegrities"), Problem::damaged, "integrity"},
      {with(agile, "<dataIntegrity", "<keyData/><dataIntegrity"), Problem::damaged, "in order"},
      {with(agile, "saltValue=\"", "saltValue=\"="), Problem::damaged, "a value is missing"},
      {with(agile, "spinCount=\"10\"", "spinCount=\"ten\""), Problem::damaged, "a number is missing"},
      {agile.substr(0, 5), Problem::damaged, "cut off"},
      {numbered(standard, 12, 0x34), Problem::unsupported, "external provider"},
      {with(standard, "\x0E\x66", "\x01\x68"), Problem::unsupported, "RC4"},
      {with(standard, "\x0E\x66", "\x02\x66"), Problem::unsupported, "cipher 26114"},
      {numbered(standard, 8, 4), Problem::damaged, "too short"},
      {numbered(standard, 11, 1), Problem::damaged, "cut off"},
      {standard.substr(0, standard.size() - 1), Problem::damaged, "cut off"},
  };
  for (const Case& it : cases) {
    try {
      encryptionBy(it.info);
      ADD_FAILURE() << it.says;
    } catch (const DocumentError& error) {
      EXPECT_EQ(error.problem(), it.problem) << error.what();
      EXPECT_THAT(error.what(), testing::HasSubstr(it.says));
    }
  }
}

}  // namespace
}  // namespace pluvo::encryption
