#include "coded_scan.h"

#include "coded_kernel.h"
#include "scan.h"

namespace pluvo::text {

void ByteSet::add(std::uint8_t byte) {
  const unsigned high = byte / 16U;
  std::uint8_t* const rows = high < 8 ? lower : upper;
  has[byte] = true;
  for (const unsigned half : {0U, 16U}) {
    std::uint8_t& row = rows[half + byte % 16U];
    row = static_cast<std::uint8_t>(row | 1U << high % 8);
  }
}

const CodedLooks kCodedAnywhere = kLooks;
#if !defined(__x86_64__)
const CodedLooks kCodedAvx2 = kLooks;
#endif

const CodedLooks& codedLooks() { return hasAvx2() ? kCodedAvx2 : kCodedAnywhere; }

}  // namespace pluvo::text
