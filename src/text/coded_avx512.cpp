// Compiled for AVX-512 with look-ups of bytes; see CMakeLists.txt.

#include "coded_scan.h"

#if defined(__AVX512VBMI__)

#include "coded_kernel.h"

namespace pluvo::text {

const CodedLooks kCodedAvx512 = kLooks;

}  // namespace pluvo::text

#endif
