#include "base/secret_text.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <cstring>
#endif

namespace pluvo::base {

void wipe(void* memory, std::size_t size) {
  if (size == 0) return;
#ifdef _WIN32
  SecureZeroMemory(memory, size);
#else
  explicit_bzero(memory, size);
#endif
}

}  // namespace pluvo::base
