#include "runs/plan.h"

#include "store/encodings.h"

#include <algorithm>

namespace pluvo::runs {

bool Plan::findsOnly() const {
  return std::ranges::all_of(requests, [](auto& request) { return request.operation == engine::kNone; });
}

bool Plan::worksBeyondMainText() const {
  return std::ranges::any_of(requests, [](auto& request) { return request.stories != word::kMainTextAlone; });
}

std::string knownEncoding(const std::string& name) { return store::encodingNamed(name); }

}  // namespace pluvo::runs
