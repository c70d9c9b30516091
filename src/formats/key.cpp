#include "formats/key.h"

namespace pluvo::formats {

errors::DocumentError encryptedDocument() {
  return {errors::Problem::password, "The document is encrypted with a password.",
          "Give the password with --password-file, or save the document without one in a word processor."};
}

SharedKey keyOf(const Lock& lock, const SharedKey& known, const KeyFinder& finder) {
  if (known != nullptr && std::holds_alternative<base::SecretBytes>(*known)) return known;
  SharedKey found;
  if (known != nullptr)
    found = lock.keyBy(std::get<base::SecretText>(*known));
  else if (finder)
    found = finder(lock);
  if (found == nullptr) throw encryptedDocument();
  return found;
}

}  // namespace pluvo::formats
