#include "runs/outcome_json.h"

#include "elsewhere/words.h"

#include <string_view>

namespace pluvo::runs {
namespace {

/// An object of what is counted, by the names of the kinds.
template <class Kind, class Counts>
void addCounts(base::JsonObject& object, std::string_view name, const Counts& counts) {
  base::JsonObject members;
  for (std::size_t i = 0; i < counts.size(); ++i) {
    if (counts.at(i) != 0) members.number(elsewhere::keyOf(static_cast<Kind>(i)), counts.at(i));
  }
  if (!members.empty()) object.json(name, members.str());
}

void addCounts(base::JsonObject& object, const elsewhere::Elsewhere& found) {
  addCounts<formats::OtherStory>(object, "elsewhere", found.stories);
  addCounts<formats::Unreached>(object, "unreached", found.unreached);
}

}  // namespace

void addErrorAndEncoding(base::JsonObject& object, const Outcome& outcome) {
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
}

void addNotReached(base::JsonObject& object, const elsewhere::Elsewhere& found) {
  base::JsonArray parts;
  for (const auto& [part, why] : found.damaged)
    parts.add(base::JsonObject().text("part", part).text("message", why).str());
  addCounts(object, found);
  if (!parts.empty()) object.json("unreadable", parts.str());
}

void addNotLookedInto(base::JsonObject& object, const elsewhere::Elsewhere& found) {
  base::JsonArray names;
  for (std::size_t i = 0; i < found.notLookedInto.size(); ++i) {
    if (found.notLookedInto.at(i))
      names.add(base::jsonQuoted(elsewhere::keyOf(static_cast<formats::Opaque>(i))));
  }
  if (!names.empty()) object.json("notLookedInto", names.str());
}

std::string summaryInJson(const Totals& totals) {
  base::JsonObject summary;
  summary.number("files", totals.files)
      .number("found", totals.found)
      .number("operated", totals.operated)
      .number("skipped", totals.skipped)
      .number("changed", totals.changed)
      .number("failed", totals.failed)
      .number("left_out", totals.leftOut);
  if (totals.notReached != 0) {
    addCounts(summary, totals.elsewhere);
    summary.number("not_reached", totals.notReached);
  }
  return summary.str();
}

}  // namespace pluvo::runs
