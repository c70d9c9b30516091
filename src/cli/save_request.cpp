#include "save_request.h"

#include "errors/document_error.h"
#include "plan.h"
#include "request.h"
#include "runs/saved_requests.h"
#include "usage_error.h"

#include <system_error>

namespace pluvo::cli {

void saveRequest(const TypedCommandLine& line, files::FileSystem& system) {
  const engine::Request request = requestFrom(*line.command, line.options);
  const std::string& path = *line.saveTo;
  try {
    // A request after others that are wrong would never be reached.
    if (system.exists(path)) (void)requestsIn(path);
    runs::addRequest(system, path, request);
  } catch (const errors::DocumentError& refused) {
    throw UsageError(path + ": " + refused.what());
  } catch (const std::system_error& refused) {
    throw UsageError(path + " cannot be written: " + refused.code().message() + ".");
  }
}

}  // namespace pluvo::cli
