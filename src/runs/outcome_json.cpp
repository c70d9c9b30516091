#include "runs/outcome_json.h"

#include "document/place_names.h"
#include "elsewhere/words.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace pluvo::runs {
namespace {

using document::keyOf;
using elsewhere::keyOf;

/// An object of counts, by the names of their kinds.
template <class Kind, class Counts>
void addCounts(base::JsonObject& object, std::string_view name, const Counts& counts) {
  base::JsonObject members;
  for (std::size_t i = 0; i < counts.size(); ++i) {
    if (counts.at(i) != 0) members.number(keyOf(static_cast<Kind>(i)), counts.at(i));
  }
  if (!members.empty()) object.json(name, members.str());
}

void addCounts(base::JsonObject& object, const elsewhere::Elsewhere& found) {
  addCounts<document::Place>(object, "elsewhere", found.stories);
  addCounts<formats::Unreached>(object, "unreached", found.unreached);
}

void addNotReached(base::JsonObject& object, const elsewhere::Elsewhere& found) {
  base::JsonArray parts;
  for (const auto& [part, why] : found.damaged)
    parts.add(base::JsonObject().text("part", part).text("message", why).str());
  addCounts(object, found);
  if (!parts.empty()) object.json("unreadable", parts.str());
  base::JsonArray opaque;
  for (std::size_t i = 0; i < found.notLookedInto.size(); ++i) {
    if (found.notLookedInto.at(i)) opaque.add(base::jsonQuoted(keyOf(static_cast<formats::Opaque>(i))));
  }
  if (!opaque.empty()) object.json("notLookedInto", opaque.str());
}

/// `"places":{"headers":{"found":2,"operated":2,"skipped":0,"stories":{"header 1":2}}}`
void addPlaces(base::JsonObject& object, const std::optional<CountsByPlace>& places) {
  if (!places) return;
  base::JsonObject members;
  for (const document::Place place : document::kAllPlaces) {
    const PlaceCounts& counts = places->at(static_cast<std::size_t>(place));
    if (counts.found == 0) continue;
    base::JsonObject there;
    there.number("found", counts.found).number("operated", counts.operated).number("skipped", counts.skipped);
    base::JsonObject stories;
    for (const auto& [number, found] : counts.stories)
      stories.number(wordsOf(document::StoryName{place, number}), found);
    if (!stories.empty()) there.json("stories", stories.str());
    members.json(keyOf(place), there.str());
  }
  object.json("places", members.str());
}

std::optional<CountsByPlace> placesFrom(const base::JsonValue& json) {
  if (!json.isObject()) return std::nullopt;
  CountsByPlace places;
  for (const document::Place place : document::kAllPlaces) {
    const base::JsonValue& there = json[keyOf(place)];
    PlaceCounts& counts = places.at(static_cast<std::size_t>(place));
    counts = {there["found"].number(), there["operated"].number(), there["skipped"].number()};
    for (const auto& [name, found] : there["stories"].members())
      counts.stories[std::strtoul(name.c_str() + name.rfind(' ') + 1, nullptr, 10)] += found.number();
  }
  return places;
}

constexpr int kProblems = static_cast<int>(errors::Problem::io) + 1;

errors::Problem problemNamed(const std::string& name) {
  for (int i = 0; i < kProblems; ++i)
    if (errors::nameOf(static_cast<errors::Problem>(i)) == name) return static_cast<errors::Problem>(i);
  return errors::Problem::io;
}

/// Counts or marks by the names of their kinds.
template <class Kind, class Counts, class Value>
void readKinds(Counts& counts, Value value) {
  for (std::size_t i = 0; i < counts.size(); ++i) counts.at(i) = value(keyOf(static_cast<Kind>(i)));
}

void readElsewhere(const base::JsonValue& json, elsewhere::Elsewhere& found) {
  using Key = std::string_view;
  readKinds<document::Place>(found.stories, [&](Key key) { return json["elsewhere"][key].number(); });
  readKinds<formats::Unreached>(found.unreached, [&](Key key) { return json["unreached"][key].number(); });
  for (const base::JsonValue& each : json["unreadable"].items())
    found.damaged.push_back({each["part"].text(), each["message"].text()});
  readKinds<formats::Opaque>(found.notLookedInto, [&](Key key) {
    return std::ranges::any_of(json["notLookedInto"].items(), [&](auto& each) { return each.text() == key; });
  });
}

}  // namespace

void addResult(base::JsonObject& object, const Outcome& outcome) {
  object.number("found", outcome.found)
      .number("operated", outcome.operated)
      .number("skipped", outcome.skipped)
      .truth("saved", outcome.saved);
  addPlaces(object, outcome.places);
  if (outcome.failure) {
    base::JsonObject error;
    error.text("code", errors::nameOf(outcome.failure->problem)).text("message", outcome.failure->message);
    object.json("error", error.str());
  } else {
    object.none("error");
  }
  if (outcome.encoding.empty()) {
    object.none("encoding");
  } else {
    object.text("encoding", outcome.encoding);
  }
  if (outcome.isTemplate) object.truth("template", true);
  addNotReached(object, outcome.elsewhere);
}

base::JsonObject summaryInJson(const Totals& totals) {
  base::JsonObject summary;
  summary.number("files", totals.files)
      .number("found", totals.found)
      .number("operated", totals.operated)
      .number("skipped", totals.skipped)
      .number("changed", totals.changed)
      .number("failed", totals.failed)
      .number("left_out", totals.leftOut);
  addPlaces(summary, totals.places);
  if (totals.notReached != 0) {
    addCounts(summary, totals.elsewhere);
    summary.number("not_reached", totals.notReached);
  }
  if (totals.earlier != 0) summary.number("earlier", totals.earlier);
  if (totals.unfinished != 0) summary.number("unfinished", totals.unfinished);
  return summary;
}

std::string inJson(const Outcome& outcome) {
  base::JsonObject line;
  line.text("file", outcome.path);
  addResult(line, outcome);
  if (outcome.refused > 0) line.number("refused", outcome.refused);
  if (outcome.tooFar > 0) line.number("too_far", outcome.tooFar);
  if (outcome.changed && !outcome.saved) line.truth("changed", true);
  if (outcome.guessed) line.truth("guessed", true);
  if (outcome.recommendsReading) line.truth("recommends_reading", true);
  if (!outcome.savedAs.empty()) line.text("saved_as", outcome.savedAs);
  if (!outcome.backup.empty()) line.text("backup", outcome.backup);
  if (outcome.earlier) line.truth("earlier", true);
  if (outcome.cutShort) line.truth("unfinished", true);
  return line.str();
}

std::optional<Outcome> outcomeFrom(const base::JsonValue& json) {
  if (!json["file"].isText() || !json.has("found")) return std::nullopt;
  Outcome outcome;
  outcome.path = json["file"].text();
  outcome.found = json["found"].number();
  outcome.operated = json["operated"].number();
  outcome.skipped = json["skipped"].number();
  outcome.saved = json["saved"].isTrue();
  outcome.places = placesFrom(json["places"]);
  if (json["error"].isObject())
    outcome.failure = {problemNamed(json["error"]["code"].text()), json["error"]["message"].text()};
  outcome.encoding = json["encoding"].text();
  outcome.isTemplate = json["template"].isTrue();
  readElsewhere(json, outcome.elsewhere);
  outcome.refused = json["refused"].number();
  outcome.tooFar = json["too_far"].number();
  outcome.changed = outcome.saved || json["changed"].isTrue();
  outcome.guessed = json["guessed"].isTrue();
  outcome.recommendsReading = json["recommends_reading"].isTrue();
  outcome.savedAs = json["saved_as"].text();
  outcome.backup = json["backup"].text();
  return outcome;
}

std::string inJson(const SliceTold& slice) {
  return base::JsonObject()
      .text("run", slice.run)
      .number("number", slice.number)
      .number("of", slice.count)
      .text("stage", wordsOf(slice.stage))
      .text("machines", slice.machines)
      .number("attempts", slice.attempts)
      .number("documents", slice.documents)
      .number("done", slice.done)
      .number("failed", slice.failed)
      .number("missing", slice.missing)
      .str();
}

}  // namespace pluvo::runs
