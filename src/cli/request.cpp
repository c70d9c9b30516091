#include "request.h"

#include "text_input.h"
#include "usage_error.h"

namespace pluvo::cli {
namespace {

/// Reads the text where an option gives it in a file.
void readText(std::optional<std::string>& text, const std::optional<std::string>& file,
              const std::string& option) {
  if (!file) return;
  if (text) throw UsageError(option + " and " + option + "-file both give the text; leave one out.");
  text = textFromFile(*file, option + "-file");
}

}  // namespace

engine::Request requestFrom(Command command, const TypedOptions& typed) {
  runs::WrittenRequest written = typed;
  readText(written.begin, typed.beginFile, "--begin");
  readText(written.end, typed.endFile, "--end");
  readText(written.inside, typed.insideFile, "--inside");
  readText(written.text, typed.textFile, "--text");
  try {
    return runs::requestFrom(operationOf(command), written);
  } catch (const runs::RequestError& refused) {
    throw UsageError(refused.what());
  }
}

}  // namespace pluvo::cli
