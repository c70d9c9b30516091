#include "cuts.h"

#include <algorithm>
#include <utility>

namespace pluvo::formats::html {

void Cuts::addWithin(Extent holder) {
  for (Cut& cut : others_)
    if (cut.bytes.begin >= holder.begin && cut.bytes.end <= holder.end) cuts_.push_back(std::move(cut));
}

void Cuts::writeOut(Markup& markup) {
  std::ranges::sort(cuts_, {}, [](const Cut& cut) { return cut.bytes.begin; });
  for (const Cut& cut : cuts_) {
    const bool isInOneBefore = cut.bytes.begin < markup.copied();
    markup.copyTo(cut.bytes.begin);
    if (cut.divides) markup.put("<div></div>");
    if (!isInOneBefore) markup.put(cut.in);
    markup.leaveOutTo(cut.bytes.end);
  }
  cuts_.clear();
}

}  // namespace pluvo::formats::html
