#include "saved/saved_requests.h"

#include "base/suggest.h"
#include "printer.h"
#include "saved/toml_text.h"
#include "text_input.h"
#include "usage_error.h"

#define TOML_EXCEPTIONS 1
#include <toml++/toml.h>

#include <algorithm>

namespace pluvo::cli {
namespace {

constexpr std::size_t kDashes = 2;

/// Where something stands in the file, for messages.
std::string placeOf(const std::string& path, const toml::source_region& source) {
  return path + ", line " + std::to_string(source.begin.line) + ": ";
}

toml::table parsed(const std::string& path) {
  const std::string bytes = bytesOfFile(path, "saved requests");
  try {
    return toml::parse(bytes, path);
  } catch (const toml::parse_error& error) {
    throw UsageError(placeOf(path, error.source()) + std::string(error.description()));
  }
}

/// The options that a request is made of, by the names that are their keys.
const Option* optionNamed(std::string_view name) {
  const auto& all = options();
  const auto found = std::find_if(all.begin(), all.end(), [&](const Option& option) {
    return name == option.name && isPartOfRequest(option);
  });
  return found == all.end() ? nullptr : &*found;
}

/// A file of requests may come from somebody else, so it names no files of its user's.
void refuseFileKey(const std::string& place, std::string_view key) {
  const auto& all = options();
  if (std::ranges::none_of(all, [&](auto& option) { return key == option.name && namesTextFile(option); }))
    return;
  const std::string text(key.substr(0, key.rfind('-')));
  throw UsageError(place + "saved requests read no other files, so there is no key '" + std::string(key) +
                   "'; put the text itself here, as " + text + " = \"...\". 'pluvo save' with --" +
                   std::string(key) + " does so.");
}

[[noreturn]] void refuseKey(const std::string& place, std::string_view key) {
  refuseFileKey(place, key);
  std::vector<std::string_view> names = {"command"};
  for (const Option& option : options()) {
    if (isPartOfRequest(option)) names.emplace_back(option.name);
  }
  const std::string hint = base::didYouMean(key, names);
  throw UsageError(place + "there is no key '" + std::string(key) + "' in a request." +
                   (hint.empty() ? " The keys are command and " +
                                       base::joinedWithOr({names.begin() + 1, names.end()}) + "."
                                 : hint));
}

void store(const std::string& place, const Option& option, const toml::node& value, TypedOptions& typed) {
  if (option.takes == Takes::nothing) {
    const auto set = value.value_exact<bool>();
    if (!set) throw UsageError(place + option.name + " is true or false.");
    if (*set) option.store(typed, "");
  } else if (const auto text = value.value_exact<std::string>()) {
    option.store(typed, *text);
  } else if (const auto number = value.value_exact<std::int64_t>()) {
    option.store(typed, std::to_string(*number));
  } else {
    throw UsageError(place + option.name + " is a text between quotation marks.");
  }
}

Command commandIn(const std::string& path, const toml::table& table) {
  const toml::node* const node = table.get("command");
  const std::string place = placeOf(path, node != nullptr ? node->source() : table.source());
  const auto typed = node != nullptr ? node->value_exact<std::string>() : std::nullopt;
  std::vector<std::string_view> names;
  for (const CommandName& each : commandNames()) {
    if ((setOf(each.command) & kBlockCommands) == 0) continue;
    if (typed && *typed == each.name) return each.command;
    names.push_back(each.name);
  }
  throw UsageError(place + "a request has a command, which is " + base::joinedWithOr(names) + "." +
                   (typed ? base::didYouMean(*typed, names) : ""));
}

Request requestIn(const std::string& path, const toml::table& table) {
  const Command command = commandIn(path, table);
  TypedOptions typed;
  for (const auto& [key, value] : table) {
    if (key == "command") continue;
    const std::string place = placeOf(path, key.source());
    const Option* const option = optionNamed(key.str());
    if (option == nullptr) refuseKey(place, key.str());
    if ((option->commands & setOf(command)) == 0)
      throw UsageError(place + option->name + " has no meaning with " + std::string(nameOf(command)) + ".");
    store(place, *option, value, typed);
  }
  try {
    return requestFrom(command, typed);
  } catch (const UsageError& refused) {
    // Without the two dashes it is the key.
    const auto wrong = table.find(refused.option().substr(std::min(refused.option().size(), kDashes)));
    throw UsageError(placeOf(path, wrong != table.end() ? wrong->first.source() : table.source()) +
                     refused.what());
  }
}

}  // namespace

std::vector<Request> savedRequests(const std::string& path) {
  const toml::table file = parsed(path);
  for (const auto& [key, value] : file) {
    if (key != "request")
      throw UsageError(placeOf(path, key.source()) + "'" + std::string(key.str()) +
                       "' stands outside of any request; a request begins with the line [[request]].");
  }
  const toml::node* const node = file.get("request");
  const toml::array* const tables = node != nullptr ? node->as_array() : nullptr;
  if (tables == nullptr || tables->empty())
    throw UsageError(path +
                     " has no request; one begins with the line [[request]], and 'pluvo save' writes one.");
  std::vector<Request> requests;
  for (const toml::node& each : *tables) {
    if (!each.is_table())
      throw UsageError(placeOf(path, each.source()) + "a request begins with the line [[request]].");
    requests.push_back(requestIn(path, *each.as_table()));
  }
  return requests;
}

}  // namespace pluvo::cli
