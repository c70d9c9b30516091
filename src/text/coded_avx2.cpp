// Compiled with -mavx2 -mpopcnt; see CMakeLists.txt.

#include "coded_scan.h"

#if defined(__AVX2__)

#include "coded_kernel.h"

namespace pluvo::text {

const CodedLooks kCodedAvx2 = kLooks;

}  // namespace pluvo::text

#endif
