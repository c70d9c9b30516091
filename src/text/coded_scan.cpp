#include "coded_scan.h"

#include "coded_kernel.h"
#include "scan.h"

namespace pluvo::text {

void ByteSet::add(std::uint8_t byte) {
  const unsigned high = byte / 16U;
  std::uint8_t* const rows = high < 8 ? lower : upper;
  for (const unsigned half : {0U, 16U}) {
    std::uint8_t& row = rows[half + byte % 16U];
    row = static_cast<std::uint8_t>(row | 1U << high % 8);
  }
}

void CodingTables::add(Fact fact, std::uint8_t byte) {
  (fact == kLead ? leads : fact == kUnclear ? unclear : nothing).add(byte);
  facts[byte] = static_cast<std::uint8_t>(facts[byte] | fact);
  if (fact == kLead) doubts[byte % 128U] = kDoubtful;
}

void CodingTables::addDoubtful(std::uint8_t second) {
  doubtful.add(second);
  facts[second] = static_cast<std::uint8_t>(facts[second] | kDoubtful);
}

void CodingTables::addDoubtful(std::size_t row, std::uint8_t second) {
  const unsigned bit = kDoubtful << (row + 1);
  std::uint8_t& ofLead = doubts[rows[row].lead % 128U];
  rows[row].doubtful.add(second);
  facts[second] = static_cast<std::uint8_t>(facts[second] | bit);
  ofLead = static_cast<std::uint8_t>(ofLead | bit);
}

const CodedLooks kCodedAnywhere = kLooks;
#if !defined(__x86_64__)
const CodedLooks kCodedAvx2 = kLooks;
const CodedLooks kCodedAvx512 = kLooks;
#endif

const CodedLooks& codedLooks() {
  static const CodedLooks& best = hasAvx512Tables() ? kCodedAvx512 : hasAvx2() ? kCodedAvx2 : kCodedAnywhere;
  return best;
}

}  // namespace pluvo::text
