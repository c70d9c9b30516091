#include "containers/xml/events.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

/// The scanner and expat read the same out of the same bytes, or both refuse them.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pluvo::xml;
  if (size > 1U << 16U) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto ours = eventsOfScanner(bytes);
  const auto theirs = eventsOfExpat(bytes);
  const bool agreed = mayDiffer(bytes) ? !ours || !theirs || *ours == *theirs : ours == theirs;
  if (agreed) return 0;
  std::fprintf(stderr, "scanner:\n%s\nexpat:\n%s\n", ours ? ours->c_str() : "refused",
               theirs ? theirs->c_str() : "refused");
  std::abort();
}
