#include "parallel_rewriter.h"

#include "base/at_once.h"

#include <algorithm>
#include <exception>
#include <span>

namespace pluvo::docx {

using text::Span;

std::vector<base::ByteSpan> ParallelRewriter::rewrite(const Make& make, Identifiers& identifiers) {
  parts_.push_back({});
  parts_.front().rewriter = make(identifiers);
  Rewriter::Visits visits = parts_.front().rewriter->visits();
  parts_.front().visits = std::move(visits.spans);
  if (visits.areApart) divide();
  prepare(make, identifiers, visits.touches);
  base::atOnce(parts_.size(),
               [&](std::size_t i) { i == 0 ? makeVisits(0, *parts_[0].rewriter) : tryPart(i); });
  return joined(identifiers);
}

/// A part begins at the last place in front of a visit.
void ParallelRewriter::divide() {
  constexpr std::size_t kLarge = std::size_t{512} << 10U;
  constexpr std::size_t kMany = 256;
  const Rewriter& story = *parts_.front().rewriter;
  const std::vector<Span> visits = std::move(parts_.front().visits);
  const std::size_t count = visits.size();
  const std::size_t most = std::clamp<std::size_t>(count / kMany, 1, base::partsOf(story.size(), kLarge));
  for (std::size_t visit = 0, begun = 0; visit < count; ++visit) {
    if (visit > 0 && visit * most >= (begun + 1) * count) {
      const Rewriter::Place place = story.placeBefore(visits[visit].from);
      const Span last = visits[visit - 1];
      if (place.position > std::max(last.from, parts_.back().place.position)) {
        begun = visit * most / count;
        parts_.push_back({place});
        parts_.back().visits.push_back({place.position, std::max(last.to, place.position)});
      }
    }
    parts_.back().visits.push_back(visits[visit]);
  }
}

void ParallelRewriter::prepare(const Make& make, const Identifiers& identifiers, std::size_t touches) {
  // Growing the buffer little by little would copy it again and again.
  constexpr std::size_t kPerTouch = 512;
  constexpr std::size_t kNewPerTouch = 256;
  const std::size_t size = parts_.front().rewriter->size();
  const std::size_t expected = std::min(touches * kPerTouch, size + touches * kNewPerTouch);
  for (Part& part : parts_) {
    if (part.rewriter == nullptr) {
      part.identifiers = std::make_unique<Identifiers>(identifiers.apart());
      part.rewriter = make(*part.identifiers);
    }
    part.rewriter->output().text().reserve(expected / parts_.size());
  }
}

void ParallelRewriter::makeVisits(std::size_t of, Rewriter& by) {
  const bool isLast = of + 1 == parts_.size();
  by.endAt(isLast ? static_cast<Offset>(by.size()) : parts_[of + 1].place.offset);
  for (const Span& visit : parts_[of].visits) by.visit(visit);
}

/// What goes wrong here goes wrong again where the part in front goes on.
void ParallelRewriter::tryPart(std::size_t number) {
  Part& part = parts_[number];
  try {
    if (!part.rewriter->startAt(part.place)) return;
    makeVisits(number, *part.rewriter);
    part.isSound = part.rewriter->canBeJoined() && !part.identifiers->gaveAny();
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch)
  }
}

std::vector<base::ByteSpan> ParallelRewriter::joined(Identifiers& identifiers) {
  Rewriter& whole = *parts_.front().rewriter;
  std::vector<Rewriter*> used = {&whole};
  for (std::size_t i = 1; i < parts_.size(); ++i) {
    Rewriter& next = *parts_[i].rewriter;
    if (parts_[i].isSound && used.back()->leadsTo(next)) {
      used.back()->handOverTo(next);
      parts_[i].identifiers->goOnWith(identifiers);
      used.push_back(&next);
    } else {
      makeVisits(i, *used.back());
    }
  }
  used.back()->finish(static_cast<Offset>(whole.size()));
  for (Rewriter* const next : std::span(used).subspan(1)) whole.output().append(next->output());
  return whole.output().finish();
}

}  // namespace pluvo::docx
