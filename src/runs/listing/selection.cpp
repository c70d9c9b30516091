#include "runs/selection.h"

#include "formats/registry.h"
#include "store/store.h"

namespace pluvo::runs {

std::vector<std::string> documentTypes() {
  return {formats::kDocumentExtensions.begin(), formats::kDocumentExtensions.end()};
}

std::vector<std::string> everyType() {
  std::vector<std::string> types = documentTypes();
  const auto known = store::knownExtensions();
  types.insert(types.end(), known.begin(), known.end());
  return types;
}

}  // namespace pluvo::runs
