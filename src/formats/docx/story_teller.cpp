#include "story_teller.h"

#include "text_decoding.h"

#include <algorithm>
#include <functional>

namespace pluvo::docx {

using formats::OtherStory;
using formats::Unreached;

namespace {

std::u16string wide(std::string_view utf8) {
  std::u16string units;
  appendUtf8(units, utf8);
  return units;
}

std::u16string unitsOf(const text::OriginalText& text, text::Span span) {
  std::u16string units(static_cast<std::size_t>(span.length()), u'\0');
  text.stretch(span.from, span.to).copyTo(units.data());
  return units;
}

std::optional<OtherStory> storyOf(Name kind) {
  switch (kind) {
    case Name::header:
      return OtherStory::headers;
    case Name::footer:
      return OtherStory::footers;
    case Name::footnote:
      return OtherStory::footnotes;
    case Name::endnote:
      return OtherStory::endnotes;
    case Name::comment:
      return OtherStory::comments;
    case Name::boxContent:
      return OtherStory::boxes;
    default:
      return std::nullopt;
  }
}

}  // namespace

StoryTeller::StoryTeller(base::ByteSpan part, const std::string& partName, const Telling& telling,
                         xml::Swept swept)
    : StoryReader(part, partName, telling.styles, document::Purpose::search, swept), telling_(telling) {}

void StoryTeller::tellBesideMainText(const BodyMap& map, const std::vector<Offset>& places,
                                     const document::Story& story) {
  kept_.emplace(story);
  mainText_ = &story.text().original();
  readBesideMainText(map, places);
}

bool StoryTeller::isGone(Position position) const {
  return gone_ || goneNote_ || (isMainText() && kept_ && !kept_->holds(position));
}

bool StoryTeller::isNoteGone(Name kind) const {
  if (telling_.departed == nullptr) return false;
  const std::string id = valueOf(scanner(), Name::id);
  switch (kind) {
    case Name::footnote:
      return telling_.departed->footnotes.contains(id);
    case Name::endnote:
      return telling_.departed->endnotes.contains(id);
    case Name::comment:
      return telling_.departed->comments.contains(id);
    default:
      return false;
  }
}

/// An alternative that was passed goes with the one that was chosen.
bool StoryTeller::isElementGone(const Tag& tag) const {
  if (tag.name != Name::choice && tag.name != Name::fallback)
    return level().lastElement == tag.extent.begin && isGone(level().lastPosition);
  const Position from = alternatives_.empty() ? walker().position() : alternatives_.back().from;
  return walker().position() > from && isGone(walker().position() - 1);
}

void StoryTeller::story(Name kind) {
  StoryReader::story(kind);
  if (!inStory()) goneNote_ = isNoteGone(kind);
  if (kind != Name::comment) return;
  for (const Name name : {Name::author, Name::initials})
    tell(Unreached::people, wide(valueOf(scanner(), name)));
}

void StoryTeller::storyBegins(const Level&) { controls_.emplace_back(); }

void StoryTeller::open(const Tag& tag) {
  StoryReader::open(tag);
  if (tag.name == Name::sdt) controls_.back().open.push_back({{}, walker().position()});
  openAlternatives(tag.name);
}

void StoryTeller::close(const Tag& tag, Extent endTag) {
  closeAlternatives(tag.name);
  if (tag.name == Name::sdt) closeControl();
  StoryReader::close(tag, endTag);
}

void StoryTeller::storyEnds(Level level, Offset) {
  const Controls controls = std::move(controls_.back());
  controls_.pop_back();
  if (level.reader != nullptr && !gone_ && !goneNote_) tellStory(std::move(level), controls);
  if (!inStory()) goneNote_ = false;
}

void StoryTeller::tellStory(Level level, const Controls& controls) {
  document::Content content = level.reader->finish().content;
  for (const BoundControl& bound : controls.bound) bind(bound.binding, content.text, bound.span);
  const std::optional<OtherStory> kind = storyOf(level.kind);
  const bool canBeTwin = !alternatives_.empty();
  if (!kind || canBeTwin) {
    const std::u16string units = unitsOf(content.text, {0, content.text.length()});
    if (!kind) return tell(Unreached::glossary, units);
    if (isTwin(units)) return;
  }
  telling_.texts.story(*kind, std::move(content));
}

void StoryTeller::openOutside(const Tag& tag) {
  if (isMainText() && level().outside == 0) gone_ = isElementGone(tag);
  StoryReader::openOutside(tag);
  if (tag.name == Name::drawing) pictureText_ = pictureTitle_ = {};
  openAlternatives(tag.name);
  if (tag.name == Name::drawingParagraph) tellDrawn();
  if (tag.name == Name::pictureName || scanner().space() == kVml) tellPictureTexts(tag);
  if (tag.name == Name::textPath) tell(Unreached::wordArt, wide(valueOf(scanner(), Name::pathText)));
}

void StoryTeller::closeOutside(const Tag& tag) {
  closeAlternatives(tag.name);
  if (tag.name == Name::drawingParagraph) tellDrawn();
  StoryReader::closeOutside(tag);
  if (isMainText() && level().outside == 0) gone_ = false;
}

void StoryTeller::tellDrawn() {
  tell(Unreached::wordArt, drawn_);
  drawn_.clear();
}

/// Many programs give a picture the texts of its frame once more.
void StoryTeller::tellPictureTexts(const Tag& tag) {
  if (tag.name != Name::pictureName) {
    tell(Unreached::pictureTexts, wide(valueOf(scanner(), Name::alternativeText)));
    return tell(Unreached::pictureTexts, wide(valueOf(scanner(), Name::title)));
  }
  const std::string text = valueOf(scanner(), Name::description);
  const std::string title = valueOf(scanner(), Name::title);
  const bool isFrame = scanner().space() == kWordDrawing;
  if (isFrame || text != pictureText_) tell(Unreached::pictureTexts, wide(text));
  if (isFrame || title != pictureTitle_) tell(Unreached::pictureTexts, wide(title));
  if (!isFrame) return;
  pictureText_ = text;
  pictureTitle_ = title;
}

void StoryTeller::openAlternatives(Name name) {
  if (name == Name::alternateContent) alternatives_.push_back({walker().position(), 0, {}});
  if ((name == Name::choice || name == Name::fallback) && !alternatives_.empty())
    ++alternatives_.back().number;
}

void StoryTeller::closeAlternatives(Name name) {
  if (name == Name::alternateContent) alternatives_.pop_back();
}

/// Whether an alternative before this one held the same. Few alternatives around it are asked, since a
/// document may nest them deeply.
bool StoryTeller::isTwin(std::u16string_view text) {
  constexpr std::size_t kMostAsked = 4;
  std::u16string key;
  for (const char16_t unit : text) {
    if (unit != text::kPicture && unit != text::kFloatingPicture) key.push_back(unit);
  }
  while (!key.empty() && key.back() == text::kParagraphMark) key.pop_back();
  const std::size_t hash = std::hash<std::u16string>()(key);
  const auto begin =
      alternatives_.end() - static_cast<std::ptrdiff_t>(std::min(alternatives_.size(), kMostAsked));
  const bool twin = std::any_of(begin, alternatives_.end(), [&](const Alternatives& around) {
    return around.number > 1 && around.told.contains(hash);
  });
  if (!twin)
    std::for_each(begin, alternatives_.end(), [&](Alternatives& around) { around.told.insert(hash); });
  return twin;
}

void StoryTeller::tell(Unreached kind, std::u16string_view text) {
  if (text.empty() || gone_ || goneNote_ || (!alternatives_.empty() && isTwin(text))) return;
  telling_.texts.unreached(kind, text);
}

void StoryTeller::guide(std::u16string_view text) {
  if (!isGone(walker().position())) tell(Unreached::guides, text);
}

void StoryTeller::formula(const Formula& formula) {
  if (!isGone(walker().position())) tell(Unreached::formulas, formula.text);
  StoryReader::formula(formula);
}

void StoryTeller::control(const ControlProperties& properties) {
  controls_.back().open.back().binding = properties.binding;
  StoryReader::control(properties);
}

void StoryTeller::closeControl() {
  Controls& controls = controls_.back();
  const OpenControl control = std::move(controls.open.back());
  controls.open.pop_back();
  if (control.binding.path.empty()) return;
  const text::Span span{control.from, walker().position()};
  if (!isMainText()) {
    controls.bound.push_back({control.binding, span});
  } else if (kept_ && kept_->hold(span)) {
    bind(control.binding, *mainText_, span);
  }
}

void StoryTeller::bind(const Binding& binding, const text::OriginalText& text, text::Span span) {
  telling_.bindings.add(binding, unitsOf(text, span));
}

}  // namespace pluvo::docx
