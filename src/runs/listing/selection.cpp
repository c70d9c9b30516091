#include "runs/selection.h"

#include "base/document_types.h"
#include "store/store.h"

namespace pluvo::runs {

std::vector<std::string> documentTypes() {
  return {base::kDocumentTypes.begin(), base::kDocumentTypes.end()};
}

std::vector<std::string> everyType() {
  std::vector<std::string> types = documentTypes();
  const auto known = store::knownExtensions();
  types.insert(types.end(), known.begin(), known.end());
  return types;
}

}  // namespace pluvo::runs
