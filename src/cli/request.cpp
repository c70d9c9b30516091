#include "request.h"

#include "base/suggest.h"
#include "colors.h"
#include "text_input.h"
#include "usage_error.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace pluvo::cli {
namespace {

constexpr int kMostApart = 32767;

/// The text that an option gives itself or in a file.
std::optional<std::u16string> textOf(const std::optional<std::string>& typed,
                                     const std::optional<std::string>& file, const std::string& option) {
  if (typed && file)
    throw UsageError(option + " and " + option + "-file both give the text; leave one out.", option);
  if (typed) return textFromArgument(*typed, option);
  if (file) return textFromFile(*file, option + "-file");
  return std::nullopt;
}

/// A text to look for. The engine would silently take an empty one for "no such text".
std::u16string soughtText(const std::optional<std::string>& typed, const std::optional<std::string>& file,
                          const std::string& option) {
  const auto text = textOf(typed, file, option);
  if (!text) return {};
  if (text->empty()) {
    throw UsageError(
        option + " is empty; " +
            (option == "--begin" ? "say what a block begins with." : "give it a text or leave it out."),
        option);
  }
  return *text;
}

template <class Value>
Value valueNamed(const std::string& typed, const std::string& option,
                 const std::vector<std::pair<std::string_view, Value>>& values) {
  std::vector<std::string_view> names;
  for (const auto& [name, value] : values) {
    if (name == typed) return value;
    names.push_back(name);
  }
  throw UsageError(option + " is " + base::joinedWithOr(names) + ", not '" + typed + "'.", option);
}

std::u16string apartFrom(const std::string& typed) {
  if (typed == "same" || typed == "Same") return u"Same";
  int number = -1;
  const char* const last = typed.data() + typed.size();
  const auto [stopped, error] = std::from_chars(typed.data(), last, number);
  if (error != std::errc{} || stopped != last || number < 0 || number > kMostApart) {
    throw UsageError("--apart is a number from 0 to 32767 or same, not '" + typed + "'.", "--apart");
  }
  return {typed.begin(), typed.end()};
}

word::WdColorIndex colorFrom(const std::string& typed) {
  if (const auto color = colorNamed(typed)) return *color;
  const std::string hint = base::didYouMean(typed, colorNames());
  throw UsageError("There is no highlight colour '" + typed + "'." +
                       (hint.empty() ? " 'pluvo highlight --help' lists them." : hint),
                   "--color");
}

void readBlock(const TypedOptions& typed, Request& request) {
  if (!typed.begin && !typed.beginFile) {
    throw UsageError("Say what a block begins with: --begin TEXT (or --begin-file FILE).");
  }
  request.begin = soughtText(typed.begin, typed.beginFile, "--begin");
  request.end = soughtText(typed.end, typed.endFile, "--end");
  request.inside = soughtText(typed.inside, typed.insideFile, "--inside");

  if (typed.unit) {
    request.unit = valueNamed<Unit>(*typed.unit, "--unit",
                                    {{"word", Unit::word},
                                     {"sentence", Unit::sentence},
                                     {"paragraph", Unit::paragraph},
                                     {"document", Unit::document}});
  }
  if (typed.apart) request.apart = apartFrom(*typed.apart);

  if (request.end.empty()) {
    if (!request.inside.empty()) {
      throw UsageError("--inside needs --end: it looks between a block's beginning and its ending.",
                       "--inside");
    }
    if (typed.apart || typed.unit) {
      const std::string option = typed.apart ? "--apart" : "--unit";
      throw UsageError(option + " needs --end: it limits how far the ending may be from the beginning.",
                       option);
    }
  }
  if (typed.apart && request.unit == Unit::document) {
    throw UsageError("--unit document sets no limit, so --apart has no meaning with it; leave one out.",
                     "--apart");
  }
}

void readPlace(const TypedOptions& typed, Request& request) {
  if (typed.on) {
    request.place = valueNamed<Place>(
        *typed.on, "--on",
        {{"block", Place::block}, {"begin", Place::begin}, {"end", Place::end}, {"inside", Place::inside}});
  }
  if (request.place == Place::end && request.end.empty()) {
    throw UsageError("--on end needs --end: say what a block ends with.", "--on");
  }
  if (request.place == Place::inside && request.inside.empty()) {
    throw UsageError("--on inside needs --inside: say what a block must contain.", "--on");
  }
  // A block without an ending is its beginning.
  if (request.place == Place::block && request.end.empty()) request.place = Place::begin;
}

void readChange(const TypedOptions& typed, Request& request) {
  const auto text = textOf(typed.text, typed.textFile, "--text");
  if (!text && request.command == Command::insert) {
    throw UsageError("Say what to insert: --text TEXT (or --text-file FILE).");
  }
  if (!text && request.command == Command::replace) {
    throw UsageError(
        "Say what to replace with: --text TEXT (or --text-file FILE); to take it out, use delete.");
  }
  request.text = text.value_or(u"");
  if (typed.before && typed.after) {
    throw UsageError("--before and --after exclude each other; for both, insert twice.", "--after");
  }
  request.after = typed.after;
  request.extraSpace = typed.extraSpace;
  if (typed.color) request.color = colorFrom(*typed.color);
}

}  // namespace

Request requestFrom(Command command, const TypedOptions& typed) {
  Request request;
  request.command = command;
  readBlock(typed, request);
  readPlace(typed, request);
  readChange(typed, request);
  request.wholeWords = typed.wholeWords;
  request.matchCase = typed.matchCase;
  request.fieldCodes = typed.fieldCodes;
  return request;
}

}  // namespace pluvo::cli
