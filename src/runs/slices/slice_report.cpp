#include "runs/slice_report.h"

#include "journal/journal.h"
#include "runs/run.h"
#include "runs/slice_keys.h"
#include "slices/source.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

namespace pluvo::runs {
namespace {

std::unique_ptr<SliceReport::Source> sourceOf(files::FileSystem& system, const std::string& source,
                                              const std::optional<std::string>& journalFolder) {
  try {
    if (system.statusAt(source).kind == files::FileKind::regular) return sourceInFile(system, source);
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): then it is no file
  }
  const auto folder = journalFolder ? journal::folderBelow(*journalFolder) : journal::defaultFolder();
  if (!folder)
    throw CannotBegin(CannotBegin::Reason::stateFolder, "Neither XDG_STATE_HOME nor HOME names a folder.");
  try {
    return sourceInJournal(system, *folder, source);
  } catch (const errors::DocumentError& refused) {
    throw SlicesRefused(refused.what());
  }
}

/// Done, failed, missing; and of equals the later. No two documents of the sources have one rank.
std::uint64_t rankOf(const std::optional<Outcome>& outcome, std::size_t source, std::uint64_t number) {
  constexpr unsigned kState = 62;
  constexpr unsigned kSource = 40;
  const std::uint64_t state = !outcome ? 0 : outcome->failure ? 1 : 2;
  return state << kState | static_cast<std::uint64_t>(source) << kSource | number;
}
/// Without what became of it, which may change while slices are going on.
std::uint64_t placeOf(std::uint64_t rank) { return rank << 2U; }

/// Attempts at one slice count as one, and slices without a record were never begun.
std::vector<SliceTold> combined(const std::vector<SliceTold>& read) {
  using Key = std::tuple<std::string, std::uint32_t, std::uint32_t>;
  std::vector<SliceTold> slices;
  std::map<Key, std::size_t> places;
  for (const SliceTold& each : read) {
    const auto [place, isNew] = places.try_emplace({each.run, each.count, each.number}, slices.size());
    if (isNew) {
      slices.push_back(each);
      continue;
    }
    SliceTold& whole = slices[place->second];
    whole.stage = std::min(whole.stage, each.stage);
    if (whole.machines.empty()) whole.machines = each.machines;
    whole.attempts += each.attempts;
    whole.documents += each.documents;
    whole.done += each.done;
    whole.failed += each.failed;
    whole.missing += each.missing;
  }
  const std::vector<SliceTold> begun = slices;
  for (const SliceTold& each : begun) {
    for (std::uint32_t number = 1; number <= each.count; ++number)
      if (places.try_emplace({each.run, each.count, number}, slices.size()).second)
        slices.push_back({each.run, number, each.count});
  }
  std::ranges::stable_sort(slices, {},
                           [](const SliceTold& each) { return std::pair(each.run, each.number); });
  return slices;
}

}  // namespace

std::string_view wordsOf(SliceTold::Stage stage) {
  switch (stage) {
    case SliceTold::Stage::ended:
      return "ended";
    case SliceTold::Stage::going:
      return "going on";
    case SliceTold::Stage::brokenOff:
      return "broken off";
    case SliceTold::Stage::neverBegun:
      break;
  }
  return "never begun";
}

SliceReport::SliceReport(files::FileSystem& system, const std::vector<std::string>& sources,
                         const std::optional<std::string>& journalFolder,
                         std::optional<std::vector<std::string>> list)
    : system_(system), list_(std::move(list)) {
  for (const std::string& source : sources) sources_.push_back(sourceOf(system, source, journalFolder));
  requireOneRequest();
  command_ = sources_.front()->command();
  request_ = sources_.front()->request();
}

SliceReport::~SliceReport() = default;

void SliceReport::requireOneRequest() {
  const Source& first = *sources_.front();
  for (const auto& each : sources_) {
    if (each->request() == first.request()) continue;
    const auto told = [](const Source& source) {
      return source.name() + (source.command().empty() ? "" : " ('" + source.command() + "')");
    };
    throw SlicesRefused(told(first) + " and " + told(*each) +
                        " are of different requests; make a report of each.");
  }
}

/// Which of the places where a document stands is told. Needed only where one may stand in several.
void SliceReport::rank() {
  best_.clear();
  if (sources_.size() == 1 && sources_.front()->isOnceEach() && !list_) return;
  for (std::size_t i = 0; i < sources_.size(); ++i) {
    std::uint64_t number = 0;
    sources_[i]->read([&](SliceTold&, const std::string& key, const std::string&, const auto& outcome) {
      Rank& best = best_[stableHash(key)];
      best = std::max(best, rankOf(outcome, i, number++));
    });
  }
}

void SliceReport::tell(const std::vector<Observer*>& observers) {
  const auto tellAll = [&](auto telling) { std::ranges::for_each(observers, telling); };
  const auto tellMissing = [&](const std::string& name) {
    ++missing_;
    ++totals_.leftOut;
    tellAll([&](Observer* each) { each->leftOut({name, Reason::missing}); });
  };
  rank();
  std::vector<SliceTold> read;
  for (std::size_t i = 0; i < sources_.size(); ++i) {
    std::uint64_t number = 0;
    const auto slices =
        sources_[i]->read([&](SliceTold& slice, const std::string& key, const std::string& name,
                              const std::optional<Outcome>& outcome) {
          const Rank here = rankOf(outcome, i, number++);
          const auto best = best_.find(stableHash(key));
          if (best != best_.end() && placeOf(best->second) != placeOf(here)) return;
          ++slice.documents;
          if (!outcome) {
            ++slice.missing;
            return tellMissing(name);
          }
          ++(outcome->failure ? slice.failed : slice.done);
          totals_.add(*outcome);
          tellAll([&](Observer* each) { each->document(*outcome); });
        });
    read.insert(read.end(), slices.begin(), slices.end());
  }
  if (list_) {
    SliceKeys keys(system_, {});
    for (const std::string& name : *list_)
      if (best_.try_emplace(stableHash(keys.keyOf(name))).second) tellMissing(name);
  }
  slices_ = combined(read);
  tellAll([&](Observer* each) { each->ends(totals_); });
}

bool SliceReport::isWhole() const {
  return missing_ == 0 && totals_.failed == 0 &&
         std::ranges::all_of(slices_, [](auto& slice) { return slice.stage == SliceTold::Stage::ended; });
}

}  // namespace pluvo::runs
