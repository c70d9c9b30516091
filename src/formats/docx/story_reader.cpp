#include "story_reader.h"

#include <utility>

namespace pluvo::docx {

StoryReader::StoryReader(base::ByteSpan part, const std::string& partName, const Styles& styles,
                         document::Purpose purpose, xml::Swept swept)
    : styles_(styles), purpose_(purpose), walker_(part, partName, *this, Reach::everyStory, swept) {
  if (purpose == document::Purpose::search) walker_.isForSearch();
}

void StoryReader::readPart() {
  while (walker_.step()) {
  }
}

void StoryReader::readBesideMainText(const BodyMap& map, const std::vector<Offset>& places) {
  const auto toNextBlock = [&] {
    while (!walker_.betweenBlocks() && walker_.step()) {
    }
  };
  for (const Offset aside : places) {
    if (walker_.offset() > aside) continue;
    toNextBlock();
    const auto place = map.places.beforeOffset(aside);
    if (walker_.betweenBlocks() && place.offset > walker_.offset())
      walker_.resumeAt(place.offset, place.position);
    while (walker_.offset() <= aside && walker_.step()) {
    }
  }
  toNextBlock();
}

void StoryReader::findReader() {
  reader_ = !inStory() || isMainText() ? &nobody_ : levels_.back().reader.get();
}

void StoryReader::story(Name kind) { next_ = kind; }

void StoryReader::open(const Tag& tag) {
  if (tag.name == Name::body) {
    Level level;
    level.begin = tag.extent.begin;
    if (next_ != Name::other) {
      level.kind = std::exchange(next_, Name::other);
      level.reader = std::make_unique<ContentReader>(0, styles_, purpose_);
      level.reader->follow(walker_);
    }
    levels_.push_back(std::move(level));
    findReader();
    storyBegins(levels_.back());
  }
  reader().open(tag);
}

void StoryReader::close(const Tag& tag, Extent endTag) {
  reader().close(tag, endTag);
  if (tag.name != Name::body) return;
  Level level = std::move(levels_.back());
  levels_.pop_back();
  findReader();
  storyEnds(std::move(level), endTag.end);
}

void StoryReader::openOutside(const Tag&) {
  if (inStory()) ++levels_.back().outside;
}

void StoryReader::closeOutside(const Tag&) {
  if (inStory()) --levels_.back().outside;
}

void StoryReader::note(Offset element, bool isText) {
  Level& level = levels_.back();
  level.lastElement = element;
  level.lastPosition = walker_.position();
  level.lastIsText = isText;
}

void StoryReader::character(char16_t unit, Extent extent, Name name, std::string_view reference) {
  note(extent.begin, false);
  reader().character(unit, extent, name, reference);
}

void StoryReader::text(const TextElement& element) {
  note(element.extent.begin, true);
  reader().text(element);
}

void StoryReader::formula(const Formula& formula) { reader().formula(formula); }
void StoryReader::control(const ControlProperties& properties) { reader().control(properties); }
void StoryReader::properties(Name kind, const Properties& properties) {
  reader().properties(kind, properties);
}
void StoryReader::marker(const Marker& marker) { reader().marker(marker); }
void StoryReader::nextRun(const Tag& left, Extent endTag, const Tag& tag, const Properties* properties) {
  reader().nextRun(left, endTag, tag, properties);
}
void StoryReader::simpleField(const Tag& tag, std::u16string_view instruction) {
  reader().simpleField(tag, instruction);
}
void StoryReader::endSimpleField(Extent endTag) { reader().endSimpleField(endTag); }
void StoryReader::paragraphMark(Extent endTag) { reader().paragraphMark(endTag); }
void StoryReader::missingParagraph(Name container, Extent endTag) {
  reader().missingParagraph(container, endTag);
}
void StoryReader::rowMark(Extent endTag) { reader().rowMark(endTag); }

}  // namespace pluvo::docx
