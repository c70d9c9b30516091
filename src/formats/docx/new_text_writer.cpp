#include "new_text_writer.h"

#include <algorithm>
#include <string>
#include <vector>

namespace pluvo::docx {

void NewTextWriter::openGuide(const Tag& ruby) {
  const Tag run = runs_.becomesContainer();
  guide_ = opens_.size();
  const auto guide =
      std::lower_bound(part_.map.guides.begin(), part_.map.guides.end(), ruby.extent.begin,
                       [](const BodyMap::Guide& g, Offset offset) { return g.offset < offset; });
  keptGuided_ = part_.script.keptOf({guide->from, guide->to});
  opens_.push(OpenElement(run, ruby.extent.begin));
  opens_.push(OpenElement(ruby));
}

void NewTextWriter::put(const Step& step) {
  opens_.back().touched = opens_.back().textChanged = true;
  opens_.holdLineBreaks(step.units);
  if (!part_.map.hasDeletions) return putPart(step, false);
  forEachFate(part_.story, step.at, step.units, [&](std::size_t at, std::size_t count, bool deleted) {
    Step part = step;
    part.at += static_cast<Position>(at);
    part.units = step.units.substr(at, count);
    putPart(part, deleted);
  });
}

void NewTextWriter::putInNewRun(const Step& step, std::string_view runProperties) {
  runs_.beginNew(runProperties);
  put(step);
  runs_.endNew();
}

/// Living text leaves a tracked deletion, and deleted text that stands in none brings one along.
void NewTextWriter::putPart(const Step& step, bool deleted) {
  const std::size_t deletion = trackedDeletion();
  std::size_t outside = guideToLeave(step);
  if (!deleted) outside = std::min(outside, deletion);
  const bool stays = deletion < outside;
  const bool moves = stays && opens_[deletion].tag.name == Name::moveFrom;
  std::string tag = opens_.markup().element;
  tag += textName(part_, deleted && !moves);
  const bool alone = deleted && !stays;
  if (alone) runs_.interrupt();
  runs_.deleteEach(alone);
  const auto writeAll = [&] {
    write(step, tag, deleted);
    if (alone) runs_.interrupt();
    runs_.deleteEach(false);
  };
  if (outside == opens_.size()) return writeAll();

  runs_.interrupt();
  opens_.closeFrom(outside);
  std::vector<bool> bare;
  for (std::size_t i = outside; i < opens_.size(); ++i) {
    bare.push_back(opens_[i].bare);
    opens_[i].bare = true;
  }
  writeAll();
  runs_.interrupt();
  for (std::size_t i = outside; i < opens_.size(); ++i) {
    opens_[outside - 1].kept = opens_[outside - 1].kept || opens_[i].kept;
    opens_[i].bare = bare[i - outside];
  }
  opens_.openAgainFrom(outside);
}

void NewTextWriter::write(const Step& step, std::string_view tag, bool deleted) {
  forEachColour(part_.story, step.at, step.units,
                [&](std::size_t at, std::size_t count, std::uint8_t colour) {
                  std::u16string_view units = step.units.substr(at, count);
                  while (true) {
                    const std::size_t mark = units.find(text::kParagraphMark);
                    runs_.write(units.substr(0, mark), colour, tag);
                    if (mark == std::u16string_view::npos) return;
                    runs_.interrupt();
                    paragraphs_.divide(colour, deleted);
                    units.remove_prefix(mark + 1);
                  }
                });
}

/// The outermost tracked deletion open in the paragraph, as an index; the number of open elements outside
/// all.
std::size_t NewTextWriter::trackedDeletion() const {
  for (std::size_t i = opens_.firstInParagraph(); i < opens_.size(); ++i) {
    if (isTrackedDeletion(opens_[i].tag.name) && !opens_[i].bare) return i;
  }
  return opens_.size();
}

/// The guide that new text is not put into, as an index: one of which nothing stays before or after it. The
/// number of open elements where there is none.
std::size_t NewTextWriter::guideToLeave(const Step& step) const {
  const Position place = step.original + (step.after ? 1 : 0);
  if (guide_ == 0 || opens_.size() <= guide_ || opens_[guide_].bare) return opens_.size();
  return keptGuided_.from < place && place < keptGuided_.to ? opens_.size() : guide_;
}

}  // namespace pluvo::docx
