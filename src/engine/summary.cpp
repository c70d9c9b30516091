#include "summary.h"

#include "base/text.h"
#include "engine/frmStats.h"

namespace pluvo::engine {

namespace {

constexpr const char16_t* kLineEnd = u"\r\n";
constexpr const char16_t* kProduct = u"P.L.U.V.O.";

}  // namespace

std::u16string summaryLine(const Counts& counts, const std::optional<std::u16string>& documentName) {
  std::u16string line = kLineEnd + std::u16string(u"   ") + base::decimal(counts.operated());
  if (documentName) line += u"\t\t" + *documentName;
  return line;
}

void showSummary(const Counts& counts, forms::MessageBoxes& boxes, forms::FormHost& host, bool& cancel) {
  const std::u16string end = kLineEnd;
  const std::u16string product = kProduct;
  if (counts.found() == 0) {
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
  stats.GiveStats(end + u"Found:" + base::decimal(counts.found()) + end + end + u"Operated on:" +
                      base::decimal(counts.operated()) + end + end + u"Skipped:" +
                      base::decimal(counts.skipped()),
                  product + u" Statistics:", cancel);
}

}  // namespace pluvo::engine
