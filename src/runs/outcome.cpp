#include "runs/outcome.h"

#include "base/shown.h"
#include "document/place_names.h"
#include "elsewhere/words.h"

namespace pluvo::runs {

std::string failureLine(const std::string& path, const Failure& failure) {
  return (path.empty() ? "''" : path) + ": " + std::string(errors::nameOf(failure.problem)) + ": " +
         failure.message;
}

std::string foundInWords(std::int64_t found, const std::optional<CountsByPlace>& places) {
  std::string words = base::counted(found, "block");
  if (!places || found == 0) return words;
  std::string list;
  for (const document::Place place : document::kAllPlaces) {
    const std::int64_t there = places->at(static_cast<std::size_t>(place)).found;
    if (there == 0) continue;
    list += (list.empty() ? "" : ", ") + std::to_string(there) + " in " + std::string(wordsOf(place));
  }
  return words + " (" + list + ")";
}

void Totals::add(const Outcome& outcome) {
  ++files;
  found += outcome.found;
  operated += outcome.lasting();
  skipped += outcome.skipped;
  tooFar += outcome.tooFar;
  if (outcome.changed && !outcome.failure) ++changed;
  if (outcome.failure && outcome.failure->problem != errors::Problem::temporary) ++failed;
  if (outcome.earlier) ++earlier;
  if (outcome.places) {
    if (!places) places.emplace();
    for (std::size_t i = 0; i < places->size(); ++i) {
      const PlaceCounts& counts = outcome.places->at(i);
      places->at(i).found += counts.found;
      if (outcome.lasting() > 0) places->at(i).operated += counts.operated;
      places->at(i).skipped += counts.skipped;
    }
  }
  elsewhere += outcome.elsewhere;
  if (needsCare(outcome.elsewhere)) ++notReached;
}

}  // namespace pluvo::runs
