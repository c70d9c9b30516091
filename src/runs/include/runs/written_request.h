#pragma once

#include "engine/request.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace pluvo::runs {

/// A request in words, as a command line or a file of saved requests has it. Texts are bytes, numbers are
/// texts, and nothing is checked yet.
struct WrittenRequest {
  std::optional<std::string> begin, end, inside, text;
  std::optional<std::string> apart, unit, in, on, color;
  bool before = false;
  bool after = false;
  bool extraSpace = false;
  bool wholeWords = false;
  bool matchCase = false;
  bool fieldCodes = false;
};

/// The words mean no request: one sentence, with the remedy.
class RequestError : public std::runtime_error {
 public:
  /// The key is that of the word that is wrong, as "apart"; none where one is missing.
  explicit RequestError(const std::string& sentence, std::string key = {})
      : std::runtime_error(sentence), key_(std::move(key)) {}
  const std::string& key() const { return key_; }

 private:
  std::string key_;
};

/// The request that the words mean: a pass over the whole document, with no limits on texts. In a text a line
/// end (CR LF or LF) is one paragraph mark. Throws RequestError, also for texts that are not UTF-8.
engine::Request requestFrom(engine::OperationCode operation, const WrittenRequest& written);

/// "find", "insert", "replace", "delete" and "highlight".
std::string_view nameOf(engine::OperationCode operation);

/// The places of a request, as "in" has them: "main", "headers,footers", "all".
std::string placesIn(const engine::Request& request);

// The words for the codes of a request, by their values.
inline constexpr std::string_view kUnitNames[] = {"word", "sentence", "paragraph", "document"};
inline constexpr std::string_view kLocationNames[] = {"block", "begin", "end", "inside"};

}  // namespace pluvo::runs
