#include "summary.h"

#include "base/text.h"
#include "dialog/frmStats.h"

#include <limits>

namespace pluvo::dialog {

namespace {

constexpr const char16_t* kLineEnd = u"\r\n";
constexpr const char16_t* kProduct = u"P.L.U.V.O.";

/// Throws Fault kOverflow.
std::int32_t foundBy(const engine::PassResult& done) {
  const std::int64_t found = std::int64_t{done.operated} + done.skipped;
  if (found > std::numeric_limits<std::int32_t>::max()) throw errors::overflow();
  return static_cast<std::int32_t>(found);
}

}  // namespace

std::u16string summaryLine(const engine::PassResult& done,
                           const std::optional<std::u16string>& documentName) {
  std::u16string line = kLineEnd + std::u16string(u"   ") + base::decimal(done.operated);
  if (documentName) line += u"\t\t" + *documentName;
  return line;
}

void showSummary(const engine::PassResult& done, forms::MessageBoxes& boxes, forms::FormHost& host,
                 bool& cancel) {
  const std::u16string end = kLineEnd;
  const std::u16string product = kProduct;
  const std::int32_t found = foundBy(done);
  if (found == 0) {
    boxes.show(
        product + u" was unable to find any occurances for the given parameters." + end + end +
            u"You might try extending the 'no farther apart than' parameters to Entire Document." + end +
            end +
            u"You can also try leaving off 'Ends with' and 'Inside Text' if you are certain the text is "
            u"within the document.",
        forms::Buttons::ok, u"Couldn't Find Text Block.");
    return;
  }
  frmStats stats(host);
  stats.GiveStats(end + u"Found:" + base::decimal(found) + end + end + u"Operated on:" +
                      base::decimal(done.operated) + end + end + u"Skipped:" + base::decimal(done.skipped),
                  product + u" Statistics:", cancel);
}

}  // namespace pluvo::dialog
