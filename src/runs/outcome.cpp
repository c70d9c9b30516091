#include "runs/outcome.h"

#include "elsewhere/words.h"

namespace pluvo::runs {

std::string failureLine(const std::string& path, const Failure& failure) {
  return (path.empty() ? "''" : path) + ": " + std::string(errors::nameOf(failure.problem)) + ": " +
         failure.message;
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
  elsewhere += outcome.elsewhere;
  if (needsCare(outcome.elsewhere)) ++notReached;
}

}  // namespace pluvo::runs
