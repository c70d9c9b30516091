#include "cipher.h"

#include <nettle/aes.h>
#include <nettle/cbc.h>
#include <nettle/cfb.h>
#include <nettle/des.h>
#include <nettle/nettle-meta.h>

#include <algorithm>
#include <stdexcept>

namespace pluvo::encryption {

namespace {

constexpr std::size_t kDesKey = 8;

void encryptTripleDes(const void* context, std::size_t length, std::uint8_t* to, const std::uint8_t* from) {
  des3_encrypt(static_cast<const des3_ctx*>(context), length, to, from);
}

void decryptTripleDes(const void* context, std::size_t length, std::uint8_t* to, const std::uint8_t* from) {
  des3_decrypt(static_cast<const des3_ctx*>(context), length, to, from);
}

const nettle_cipher& aesFor(std::size_t keySize) {
  return keySize == AES128_KEY_SIZE   ? nettle_aes128
         : keySize == AES192_KEY_SIZE ? nettle_aes192
                                      : nettle_aes256;
}

}  // namespace

/// A key as the library works with it, one for each direction.
struct Cipher::Contexts {
  union Context {
    aes256_ctx aes;  // the largest
    des3_ctx des;
  };
  Context encrypting = {};
  Context decrypting = {};
  nettle_cipher_func* encrypt = nullptr;
  nettle_cipher_func* decrypt = nullptr;

  ~Contexts() {
    base::wipe(&encrypting, sizeof encrypting);
    base::wipe(&decrypting, sizeof decrypting);
  }
};

bool Cipher::takesKeyOf(Algorithm algorithm, std::size_t bytes) {
  if (algorithm == Algorithm::tripleDes) return bytes == 2 * kDesKey || bytes == 3 * kDesKey;
  return bytes == AES128_KEY_SIZE || bytes == AES192_KEY_SIZE || bytes == AES256_KEY_SIZE;
}

Cipher::Cipher(Algorithm algorithm, Chaining chaining, base::ByteSpan key)
    : algorithm_(algorithm), chaining_(chaining), contexts_(std::make_unique<Contexts>()) {
  if (!takesKeyOf(algorithm, key.size())) throw std::invalid_argument("no key of this cipher");
  Contexts& its = *contexts_;
  if (algorithm == Algorithm::aes) {
    const nettle_cipher& aes = aesFor(key.size());
    aes.set_encrypt_key(&its.encrypting, key.data());
    aes.set_decrypt_key(&its.decrypting, key.data());
    its.encrypt = aes.encrypt;
    its.decrypt = aes.decrypt;
    return;
  }
  // Of two keys the first is the third, too.
  std::array<std::uint8_t, DES3_KEY_SIZE> whole = {};
  for (std::size_t i = 0; i < whole.size(); ++i) whole[i] = key[i % key.size()];
  des3_set_key(&its.encrypting.des, whole.data());
  its.decrypting = its.encrypting;
  base::wipe(whole.data(), whole.size());
  its.encrypt = encryptTripleDes;
  its.decrypt = decryptTripleDes;
}

Cipher::~Cipher() = default;

Cipher::Vector Cipher::copied(base::ByteSpan vector) {
  Vector copy = {};
  std::copy_n(vector.begin(), std::min(vector.size(), copy.size()), copy.begin());
  return copy;
}

void Cipher::encrypt(base::ByteSpan vector, base::ByteSpan from, std::uint8_t* to) const {
  Vector mixed = copied(vector);
  const std::size_t block = blockSize(algorithm_);
  const Contexts& its = *contexts_;
  if (chaining_ == Chaining::none) its.encrypt(&its.encrypting, from.size(), to, from.data());
  if (chaining_ == Chaining::blocks)
    cbc_encrypt(&its.encrypting, its.encrypt, block, mixed.data(), from.size(), to, from.data());
  if (chaining_ == Chaining::bytes)
    cfb8_encrypt(&its.encrypting, its.encrypt, block, mixed.data(), from.size(), to, from.data());
}

void Cipher::decrypt(base::ByteSpan vector, base::ByteSpan from, std::uint8_t* to) const {
  Vector mixed = copied(vector);
  const std::size_t block = blockSize(algorithm_);
  const Contexts& its = *contexts_;
  if (chaining_ == Chaining::none) its.decrypt(&its.decrypting, from.size(), to, from.data());
  if (chaining_ == Chaining::blocks)
    cbc_decrypt(&its.decrypting, its.decrypt, block, mixed.data(), from.size(), to, from.data());
  // Chained by bytes, a cipher only ever encrypts.
  if (chaining_ == Chaining::bytes)
    cfb8_decrypt(&its.encrypting, its.encrypt, block, mixed.data(), from.size(), to, from.data());
}

}  // namespace pluvo::encryption
