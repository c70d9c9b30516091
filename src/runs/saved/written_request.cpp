#include "runs/written_request.h"

#include "base/suggest.h"
#include "base/text.h"
#include "base/utf.h"
#include "document/place_names.h"
#include "runs/colors.h"

#include <charconv>
#include <span>
#include <vector>

namespace pluvo::runs {
namespace {

constexpr int kMostApart = 32767;
constexpr std::string_view kOperationNames[] = {"find", "insert", "replace", "delete", "highlight"};

[[noreturn]] void refuse(std::string_view key, const std::string& why) {
  throw RequestError("--" + std::string(key) + why, std::string(key));
}

std::u16string textFrom(const std::string& bytes, std::string_view key) {
  const std::size_t sound = base::wellFormedLength(bytes);
  if (sound < bytes.size())
    refuse(key, ": byte " + std::to_string(sound + 1) +
                    " of the text is not UTF-8; convert it first, with iconv for instance.");
  return base::withParagraphMarks(base::utf16(bytes));
}

/// A text to look for. The engine would silently take an empty one for "no such text".
std::u16string soughtText(const std::optional<std::string>& written, std::string_view key) {
  if (!written) return {};
  std::u16string text = textFrom(*written, key);
  if (text.empty())
    refuse(key, std::string(" is empty; ") +
                    (key == "begin" ? "say what a block begins with." : "give it a text or leave it out."));
  return text;
}

template <class Code>
Code codeNamed(const std::string& written, std::string_view key, std::span<const std::string_view> names) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (names[i] == written) return static_cast<Code>(i);
  }
  refuse(key, " is " + base::joinedWithOr({names.begin(), names.end()}) + ", not '" + written + "'.");
}

std::int16_t distanceFrom(const std::string& written) {
  if (written == "same" || written == "Same") return 0;
  int number = -1;
  const char* const last = written.data() + written.size();
  const auto [stopped, error] = std::from_chars(written.data(), last, number);
  if (error != std::errc{} || stopped != last || number < 0 || number > kMostApart)
    refuse("apart", " is a number from 0 to 32767 or same, not '" + written + "'.");
  return static_cast<std::int16_t>(number);
}

word::WdColorIndex colorFrom(const std::string& written) {
  if (const auto color = colorNamed(written)) return *color;
  const std::string hint = base::didYouMean(written, colorNames());
  throw RequestError("There is no highlight colour '" + written + "'." +
                         (hint.empty() ? " 'pluvo highlight --help' lists them." : hint),
                     "color");
}

void readBlock(const WrittenRequest& written, engine::Request& request) {
  if (!written.begin)
    throw RequestError("Say what a block begins with: --begin TEXT (or --begin-file FILE).");
  request.begin = soughtText(written.begin, "begin");
  request.end = soughtText(written.end, "end");
  request.inside = soughtText(written.inside, "inside");
  request.unit =
      written.unit ? codeNamed<engine::UnitCode>(*written.unit, "unit", kUnitNames) : engine::kParagraphs;
  if (written.apart) request.distance = distanceFrom(*written.apart);

  if (request.end.empty()) {
    if (!request.inside.empty())
      refuse("inside", " needs --end: it looks between a block's beginning and its ending.");
    if (written.apart || written.unit)
      refuse(written.apart ? "apart" : "unit",
             " needs --end: it limits how far the ending may be from the beginning.");
  }
  if (written.apart && request.unit == engine::kEntireDocument)
    throw RequestError("--unit document sets no limit, so --apart has no meaning with it; leave one out.",
                       "apart");
}

/// Without blanks around it.
std::string_view trimmed(std::string_view word) {
  const std::size_t from = word.find_first_not_of(" \t");
  if (from == std::string_view::npos) return {};
  return word.substr(from, word.find_last_not_of(" \t") + 1 - from);
}

document::Places placesNamed(std::string_view word) {
  if (word == "all") return document::Places::all();
  if (word == "notes") return {document::Place::footnotes, document::Place::endnotes};
  if (const auto place = document::placeNamed(word)) return {*place};
  std::vector<std::string_view> names;
  names.reserve(document::kPlaces + 2);
  for (const document::Place place : document::kAllPlaces) names.push_back(document::keyOf(place));
  names.insert(names.end(), {"notes", "all"});
  refuse("in", " takes " + base::joinedWithOr(names) + ", several with commas between, not '" +
                   std::string(word) + "'." + base::didYouMean(word, names));
}

word::StoryKinds storiesFrom(std::string_view written) {
  unsigned kinds = 0;
  while (true) {
    const std::size_t comma = written.find(',');
    kinds |= document::kindsIn(placesNamed(trimmed(written.substr(0, comma))));
    if (comma == std::string_view::npos) return static_cast<word::StoryKinds>(kinds);
    written.remove_prefix(comma + 1);
  }
}

void readLocation(const WrittenRequest& written, engine::Request& request) {
  if (written.on) request.location = codeNamed<engine::LocationCode>(*written.on, "on", kLocationNames);
  if (request.location == engine::kEnding && request.end.empty())
    refuse("on", " end needs --end: say what a block ends with.");
  if (request.location == engine::kInsideText && request.inside.empty())
    refuse("on", " inside needs --inside: say what a block must contain.");
  // A block without an ending is its beginning.
  if (request.location == engine::kSelection && request.end.empty()) request.location = engine::kBeginning;
}

void readChange(const WrittenRequest& written, engine::Request& request) {
  if (!written.text && request.operation == engine::kInsert)
    throw RequestError("Say what to insert: --text TEXT (or --text-file FILE).");
  if (!written.text && request.operation == engine::kReplace)
    throw RequestError(
        "Say what to replace with: --text TEXT (or --text-file FILE); to take it out, use delete.");
  if (written.text) request.text = textFrom(*written.text, "text");
  if (written.before && written.after)
    throw RequestError("--before and --after exclude each other; for both, insert twice.", "after");
  request.place = written.after ? engine::kAfter : engine::kBefore;
  request.extraSpace = written.extraSpace;
  request.highlightColour =
      static_cast<std::int16_t>(written.color ? colorFrom(*written.color) : word::wdYellow);
}

}  // namespace

engine::Request requestFrom(engine::OperationCode operation, const WrittenRequest& written) {
  engine::Request request;
  request.operation = operation;
  readBlock(written, request);
  if (written.in) request.stories = storiesFrom(*written.in);
  readLocation(written, request);
  readChange(written, request);
  request.wholeWords = written.wholeWords;
  request.matchCase = written.matchCase;
  request.showFieldCodes = written.fieldCodes;
  request.startAtTop = true;
  request.liftLimits = true;
  return request;
}

std::string placesIn(const engine::Request& request) {
  const document::Places places = document::placesOf(request.stories);
  if (places == document::Places::all()) return "all";
  std::string words;
  for (const document::Place place : document::kAllPlaces) {
    if (places.has(place)) words += (words.empty() ? "" : ",") + std::string(document::keyOf(place));
  }
  return words;
}

std::string_view nameOf(engine::OperationCode operation) {
  return kOperationNames[static_cast<std::size_t>(operation)];
}

}  // namespace pluvo::runs
