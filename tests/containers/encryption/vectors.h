#pragma once

#include <string>
#include <string_view>
#include <vector>

/// One package, encrypted for one password by other programs than ours.
namespace pluvo::encryption {

inline constexpr std::u16string_view kVectorPassword = u"p\u00E4ssword \u20AC";
inline constexpr std::string_view kVectorPackage = "A package of any kind.";

struct Vector {
  std::string info;
  const char* package;  ///< in Base64
};

/// What binary documents tell of their encryption, in hexadecimal: RC4, and that of the system's library with
/// keys of 40 and 128 bits.
inline constexpr std::string_view kRc4Header =
    "01000100a54dca182530bb1d6d132cded6237b2e13f6b5bcdbe0b83d1e11ffc2ae53a31aa2f03cc327cabf0b4012bccf"
    "3051152f";
inline constexpr std::string_view kRc4Header40 =
    "02000200040000002a000000040000000000000001680000048000002800000001000000000000000000000050007200"
    "6f0076000000100000003460be31201e69fedaa0eee8b9997f5c9b14e4dc3079abc826170224b3e00c3114000000c3f4"
    "7be622b059c7ae55648b88a57c792a159c42";
inline constexpr std::string_view kRc4Header128 =
    "02000200040000002a000000040000000000000001680000048000008000000001000000000000000000000050007200"
    "6f00760000001000000027a0aeb3fee9232f8af2211f9ee491c525e205fe769ceb005dbc376dea39b4c61400000011c9"
    "394b682ebb71ea8b33010d9a650448f5b0e0";

inline std::string fromHex(std::string_view text) {
  std::string bytes;
  for (; text.size() >= 2; text.remove_prefix(2))
    bytes += static_cast<char>(std::stoi(std::string(text.substr(0, 2)), nullptr, 16));
  return bytes;
}

/// As word processors lay it out.
inline std::string agileInfo(const std::string& manner, const std::vector<std::string>& values) {
  const auto is = [](const char* name, const std::string& value) {
    return std::string(" ") + name + "=\"" + value + "\"";
  };
  constexpr const char* kSchemas = "http://schemas.microsoft.com/office/2006/";
  return std::string("\4\0\4\0\x40\0\0\0", 8) +
         "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n<encryption" +
         is("xmlns", std::string(kSchemas) + "encryption") +
         is("xmlns:p", std::string(kSchemas) + "keyEncryptor/password") + "><keyData " + manner +
         is("saltValue", values[0]) + "/><dataIntegrity" + is("encryptedHmacKey", values[1]) +
         is("encryptedHmacValue", values[2]) + "/><keyEncryptors><keyEncryptor" +
         is("uri", std::string(kSchemas) + "keyEncryptor/password") + "><p:encryptedKey spinCount=\"10\" " +
         manner + is("saltValue", values[3]) + is("encryptedVerifierHashInput", values[4]) +
         is("encryptedVerifierHashValue", values[5]) + is("encryptedKeyValue", values[6]) +
         "/></keyEncryptor></keyEncryptors></encryption>";
}

/// Of agile encryption.
inline std::vector<Vector> vectors() {
  struct Agile {
    const char* cipher;
    int bits;
    int hashSize;
    const char* hash;
    const char* chaining;
    std::vector<std::string> values;
    const char* package;
  };
  const Agile all[] = {
      {"AES",
       256,
       64,
       "SHA512",
       "CBC",
       {"pU3KGCUwux1tEyze1iN7Lg==",
        "dpmp/I8PwqSERaJycyvg/WZkyl/aJ6u+PQeiQRMrbsOrruwcs6E9DH8KMbscmTYDW721MpHmkY8e7qmrqqkodA==",
        "3ei39eNlBtBkmPXll7C1dlHybWBmDQvXruoVBd6gLJbq/tzX7CZJn5p4IToeQ7/SUTg33d/wBrrk8Z53Ix7ARw==",
        "2R4/ch/LGXEXRJTWSTydXA==", "74F+vPjGumxtAqRWmrHkpQ==",
        "MP9/btqxRc72ESpH0Vi/MZMueV0R/s8SQUfEl5hz3XpNnrA9DxmW6yYmzKisJWdnkhgZv4AxEi8vNx3nulBSCw==",
        "LH6irG+0vAefRUJM6UkWqxTW1xsW7SkjNN1De/X1QsM="},
       "FgAAAAAAAACItDrQ+VqBLy4uf6Wcm7ySe6JNbUvUUT8pZ4jsBENXTw=="},
      {"AES",
       128,
       20,
       "SHA1",
       "CBC",
       {"TTO6DSRqwEyBsbryPjv57g==", "AvpfB3bZ9JjmfM+AuTuutUxnj4eJqO+zSjt2AwdH1ws=",
        "p9jcBaXzFQSf3+W74rWIpAYbZiC/rz4MBND3ReS10us=", "9fefK0k0r4f1UgtpuUsNmA==",
        "aeLaoorvTZSTqVCJZKbOfw==", "I0P7PkLMsSXyOjnOxYDGuzDyr5wNs1M5Qqsj1dE/Yko=",
        "UYy/wiCVPdk1AueDvFNb1w=="},
       "FgAAAAAAAAAZkRwsFno2SSrcogUKiqWJt9Y9P0yc8QmDpjevkHKScg=="},
      {"AES",
       192,
       48,
       "SHA384",
       "CBC",
       {"QQ5N7krys09DCgc0R95jbA==", "slNi/IFDdB0CXJpx1N3bnZ+lyQ4gO/Jp+UMFEPjJs9HMJlKRHtHRCSYO9ETDp9jI",
        "CCtuKGFcYmYxZ1WWnOtN81+tk1IGqQAeUihF8PrtvzjgXDPrAf34UgncIo6H/rVi", "DoBslXumhNZDH7Xq10JNCQ==",
        "geiDGNVA7e0n+cF8xYhELg==", "m4rpHBveOZ5aLld8CG/tS5Y4nNp2W/ULW57iGlgO1PHdYHfDvCUrsKeZ5hrwfkHz",
        "L2dhlpuriCTsAMJjCxj3c1BNzNOueJHLnNsAZdgkCDI="},
       "FgAAAAAAAADD1xDVwajI6Z6SggFWO897HJq8NcQt0D+Ms9tBKOjJLA=="},
      {"AES",
       256,
       32,
       "SHA256",
       "CFB",
       {"TP2nLY4dXdkliQgthSpxIg==", "9ngMdEP6jxdP52DDgo5/X9sbkqh5elSdPriUiZ0DXVs=",
        "tSJuu8tj28bcgfgN+PDXLajRfJYtyEKme6+jQgpxjn4=", "hz7oBa3ViUIWejhShhlcZw==",
        "Ur7s4lZw1qHVsWgn5d41+g==", "eHCM8eWRkSX5y6Kzq2QGPy0mTfEMJutDV6UJyidJ5C4=",
        "PosByC0PgS7r4VnBRnPCpEDhRjUpCayppi4SkqqQQtA="},
       "FgAAAAAAAABnbSMUvUsd+eqYXxHZ+8EbPvOo6daNUCL79RWbh6Llrw=="},
      {"3DES",
       192,
       20,
       "SHA1",
       "CBC",
       {"T8em/UyRShbbRwh1Kw8VRA==", "APsvlfSD403RGfJfQrOyd7dT2NAQlFN1", "d9GRnwSZioCPWLXNmqs2bof7WaryMnBx",
        "uDXA5xkJffqHAekjLyHygQ==", "u1UM8syRBXQSGiBQhgJUDg==", "5ggx/R15Q7CuLM8sdxf33tC4XotwV5/Q",
        "XKtSgIZyztchlq3Zpm8RBc8lhFf45WrC"},
       "FgAAAAAAAAD9qkt4XzZeO7pCTntIwE8FZ8i4mXzMURc="},
      {"3DES_112",
       128,
       16,
       "MD5",
       "CBC",
       {"UQH75s+aSNWwwKE9qQCmrQ==", "NNXhrwmdbEjgdIw8Ib9uUQ==", "+lS8NZPsoq+f1h1gVhRKPg==",
        "yz1kBpSBviHJxye424wYjw==", "8LwQIifRacYq737sgxUyFw==", "K+bl79PzvD2R8MpGcXNuVQ==",
        "PjOZl4jJbOV3ckBzblc58A=="},
       "FgAAAAAAAAAZ75udjehXsrrFazr0ZzSfGeIBZdAIw30="},
  };
  std::vector<Vector> vectors;
  for (const Agile& each : all) {
    const std::string manner = "saltSize=\"16\" blockSize=\"" +
                               std::string(each.cipher[0] == 'A' ? "16" : "8") + "\" keyBits=\"" +
                               std::to_string(each.bits) + "\" hashSize=\"" + std::to_string(each.hashSize) +
                               "\" cipherAlgorithm=\"" + each.cipher + "\" cipherChaining=\"ChainingMode" +
                               each.chaining + "\" hashAlgorithm=\"" + each.hash + "\"";
    vectors.push_back({agileInfo(manner, each.values), each.package});
  }
  return vectors;
}

}  // namespace pluvo::encryption
