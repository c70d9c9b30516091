#include "runs/saved_requests.h"

#include "base/suggest.h"
#include "runs/written_request.h"

#define TOML_EXCEPTIONS 1
#include <toml++/toml.h>

#include <algorithm>
#include <array>

namespace pluvo::runs {
namespace {

using Text = std::optional<std::string> WrittenRequest::*;
using Flag = bool WrittenRequest::*;

/// A key of a request: where its value goes, and which operations it has a meaning with.
struct Key {
  std::string_view name;
  Text text;  ///< none for a flag
  Flag flag;
  unsigned operations;
};

constexpr unsigned setOf(engine::OperationCode operation) { return 1U << static_cast<unsigned>(operation); }
constexpr unsigned kAll = 0x1F;

using W = WrittenRequest;
constexpr std::array kKeys = {
    Key{"begin", &W::begin, nullptr, kAll},
    Key{"end", &W::end, nullptr, kAll},
    Key{"inside", &W::inside, nullptr, kAll},
    Key{"apart", &W::apart, nullptr, kAll},
    Key{"unit", &W::unit, nullptr, kAll},
    Key{"in", &W::in, nullptr, kAll},
    Key{"on", &W::on, nullptr, kAll},
    Key{"text", &W::text, nullptr, setOf(engine::kInsert) | setOf(engine::kReplace)},
    Key{"before", nullptr, &W::before, setOf(engine::kInsert)},
    Key{"after", nullptr, &W::after, setOf(engine::kInsert)},
    Key{"extra-space", nullptr, &W::extraSpace, setOf(engine::kInsert)},
    Key{"color", &W::color, nullptr, setOf(engine::kHighlight)},
    Key{"match-case", nullptr, &W::matchCase, kAll},
    Key{"whole-words", nullptr, &W::wholeWords, kAll},
    Key{"field-codes", nullptr, &W::fieldCodes, kAll}};
/// The command line takes these from files of its user's.
constexpr std::array<std::string_view, 4> kFileWords = {"begin-file", "end-file", "inside-file", "text-file"};

/// Where something stands in the file, for messages.
std::string placeOf(const std::string& path, const toml::source_region& source) {
  return path + ", line " + std::to_string(source.begin.line) + ": ";
}

toml::table parsed(const std::string& text, const std::string& path) {
  try {
    return toml::parse(text, path);
  } catch (const toml::parse_error& error) {
    throw RequestError(placeOf(path, error.source()) + std::string(error.description()));
  }
}

/// A file of requests may come from another person, so it names no files of its user's.
void refuseFileKey(const std::string& place, std::string_view key) {
  if (std::ranges::find(kFileWords, key) == kFileWords.end()) return;
  const std::string text(key.substr(0, key.rfind('-')));
  throw RequestError(place + "saved requests read no other files, so there is no key '" + std::string(key) +
                     "'; put the text itself here, as " + text + " = \"...\". 'pluvo save' with --" +
                     std::string(key) + " does so.");
}

[[noreturn]] void refuseKey(const std::string& place, std::string_view key) {
  refuseFileKey(place, key);
  std::vector<std::string_view> names = {"command"};
  for (const Key& each : kKeys) names.push_back(each.name);
  const std::string hint = base::didYouMean(key, names);
  throw RequestError(place + "there is no key '" + std::string(key) + "' in a request." +
                     (hint.empty() ? " The keys are command and " +
                                         base::joinedWithOr({names.begin() + 1, names.end()}) + "."
                                   : hint));
}

void store(const std::string& place, const Key& key, const toml::node& value, WrittenRequest& written) {
  if (key.text == nullptr) {
    const auto set = value.value_exact<bool>();
    if (!set) throw RequestError(place + std::string(key.name) + " is true or false.");
    written.*key.flag = *set;
  } else if (const auto text = value.value_exact<std::string>()) {
    written.*key.text = *text;
  } else if (const auto number = value.value_exact<std::int64_t>()) {
    written.*key.text = std::to_string(*number);
  } else {
    throw RequestError(place + std::string(key.name) + " is a text between quotation marks.");
  }
}

engine::OperationCode operationIn(const std::string& path, const toml::table& table) {
  const toml::node* const node = table.get("command");
  const std::string place = placeOf(path, node != nullptr ? node->source() : table.source());
  const auto typed = node != nullptr ? node->value_exact<std::string>() : std::nullopt;
  std::vector<std::string_view> names;
  for (const auto operation :
       {engine::kNone, engine::kInsert, engine::kReplace, engine::kDelete, engine::kHighlight}) {
    names.push_back(nameOf(operation));
    if (typed && *typed == names.back()) return operation;
  }
  throw RequestError(place + "a request has a command, which is " + base::joinedWithOr(names) + "." +
                     (typed ? base::didYouMean(*typed, names) : ""));
}

engine::Request requestIn(const std::string& path, const toml::table& table) {
  const engine::OperationCode operation = operationIn(path, table);
  WrittenRequest written;
  for (const auto& [name, value] : table) {
    if (name == "command") continue;
    const std::string place = placeOf(path, name.source());
    const auto key = std::ranges::find(kKeys, name.str(), &Key::name);
    if (key == kKeys.end()) refuseKey(place, name.str());
    if ((key->operations & setOf(operation)) == 0)
      throw RequestError(place + std::string(key->name) + " has no meaning with " +
                         std::string(nameOf(operation)) + ".");
    store(place, *key, value, written);
  }
  try {
    return requestFrom(operation, written);
  } catch (const RequestError& refused) {
    const auto wrong = table.find(refused.key());
    throw RequestError(placeOf(path, wrong != table.end() ? wrong->first.source() : table.source()) +
                       refused.what());
  }
}

}  // namespace

std::vector<engine::Request> savedRequests(const std::string& toml, const std::string& path) {
  const toml::table file = parsed(toml, path);
  for (const auto& [key, value] : file) {
    if (key != "request")
      throw RequestError(placeOf(path, key.source()) + "'" + std::string(key.str()) +
                         "' stands outside of any request; a request begins with the line [[request]].");
  }
  const toml::node* const node = file.get("request");
  const toml::array* const tables = node != nullptr ? node->as_array() : nullptr;
  if (tables == nullptr || tables->empty())
    throw RequestError(path +
                       " has no request; one begins with the line [[request]], and 'pluvo save' writes one.");
  std::vector<engine::Request> requests;
  for (const toml::node& each : *tables) {
    if (!each.is_table())
      throw RequestError(placeOf(path, each.source()) + "a request begins with the line [[request]].");
    requests.push_back(requestIn(path, *each.as_table()));
  }
  return requests;
}

}  // namespace pluvo::runs
