#include "other_texts.h"

#include "document/kept.h"
#include "document/place.h"
#include "drawings.h"
#include "earlier_texts.h"
#include "property_sets.h"
#include "reader.h"
#include "stories.h"
#include "string_tables.h"

#include <algorithm>
#include <functional>
#include <set>

namespace pluvo::doc {

using formats::Opaque;
using formats::OtherStory;
using formats::Unreached;

namespace {

/// Other stories are told in the order of places, of which main text is the first.
OtherStory kindOf(word::WdStoryType kind) {
  return static_cast<OtherStory>(static_cast<int>(document::placeOf(kind)) - 1);
}

/// Gathers a text as it lies in the file.
class Gatherer final : public Events {
 public:
  void text(text::Position, std::u16string_view units, const CharacterLook&) override { all += units; }
  void mark(text::Position, Mark, std::int32_t, const CharacterLook&) override {
    all += text::kParagraphMark;
  }

  std::u16string all;
};

/// Looks at the pictures in a text.
class PictureFinder final : public Events {
 public:
  PictureFinder(const Text& text, const DrawingTexts& drawings) : text_(text), drawings_(drawings) {}
  bool found() const { return found_; }

  void text(text::Position, std::u16string_view units, const CharacterLook& look) override {
    if (!look.special || !look.picture || look.isData || units.find(text::kPicture) == units.npos) return;
    found_ = true;
    // Characters may share a picture.
    if (seen_.insert(*look.picture).second)
      tellDrawings(pictureRecords(text_.data, *look.picture), drawings_);
  }
  void mark(text::Position, Mark, std::int32_t, const CharacterLook&) override {}

 private:
  const Text& text_;
  const DrawingTexts& drawings_;
  std::set<std::uint32_t> seen_;
  bool found_ = false;
};

class Teller {
 public:
  Teller(const Opened& opened, const document::Story& mainText, formats::OtherTexts& texts)
      : opened_(opened), text_(opened.text), mainText_(mainText), texts_(texts) {}

  void tell() {
    stories();
    pictures();
    properties();
    variables();
    glossary();
    objects();
    forEachEarlierText(text_, [&](std::u16string_view text) { texts_.unreached(Unreached::earlier, text); });
  }

 private:
  void stories() {
    const document::Kept kept(mainText_);
    Walker walker(text_);
    for (const StoryPlace& place : storiesOf(text_)) {
      if (place.kind == word::wdMainTextStory) continue;
      const bool isGone = std::ranges::all_of(place.anchors, [&](const document::StoryAnchor& anchor) {
        return anchor.story == 0 && !kept.holds(anchor.position);
      });
      if (isGone && !place.anchors.empty()) continue;
      texts_.story(kindOf(place.kind), TextReader(walker).read(place));
    }
  }

  void pictures() {
    const DrawingTexts drawings = {
        [&](std::u16string_view text) { texts_.unreached(Unreached::wordArt, text); },
        [&](std::u16string_view text) { texts_.unreached(Unreached::pictureTexts, text); }};
    const base::ByteSpan shapes = text_.in(Table::drawings);
    tellDrawings(shapes, drawings);
    PictureFinder finder(text_, drawings);
    Walker(text_).walk(0, text_.pieces.length(), finder);
    if (finder.found()) texts_.notLookedInto(Opaque::pictures);
  }

  void properties() {
    std::set<std::u16string, std::less<>> told;
    const auto tell = [&](std::u16string_view text) {
      if (text.empty() || !told.emplace(text).second) return;
      texts_.unreached(Unreached::properties, text);
    };
    const auto tellSet = [&](base::ByteSpan bytes) {
      tellPropertySet(bytes, {[&](const PropertyText& property) { tell(property.text); },
                              [&] { texts_.notLookedInto(Opaque::thumbnail); }});
    };
    const Streams& streams = opened_.streams;
    for (const char* const name : {kSummary, kDocumentSummary}) {
      try {
        if (const auto stream = streams.file.stream(name)) tellSet(streams.file.read(*stream).view);
      } catch (const errors::DocumentError& broken) {
        texts_.damaged(name + 1, broken.what());
      }
    }
    try {
      if (streams.encrypted)
        for (const base::Bytes& set : streams.encrypted->propertySets(streams.file)) tellSet(set.view);
    } catch (const errors::DocumentError& broken) {
      texts_.damaged("encrypted properties", broken.what());
    }
    // Title, subject, key words and the like a second time; the password among them is not shown.
    constexpr std::size_t kFirst = 2, kAfterLast = 8;
    const auto titles = stringsIn(text_.in(Table::titles));
    for (std::size_t i = kFirst; i < std::min(kAfterLast, titles.size()); ++i) tell(titles[i]);
    // Who saved the document last, and under which paths.
    for (const std::u16string& name : stringsIn(text_.in(Table::savedBy))) tell(name);
  }

  void variables() {
    const base::ByteSpan bytes = text_.in(Table::variables);
    std::size_t at = 0;
    const std::size_t count = stringsIn(bytes, &at).size();
    for (std::size_t i = 0; i < count && at < bytes.size(); ++i)
      texts_.unreached(Unreached::variables, nextString(bytes, at));
  }

  /// A template's glossary is a document of its own in the same streams.
  void glossary() {
    constexpr std::size_t kSector = 512;
    if (!text_.fib.has(Fib::kTemplate) || text_.fib.glossary() == 0) return;
    try {
      const Text glossary(opened_.streams, text_.fib.glossary() * kSector);
      Gatherer gatherer;
      Walker(glossary).walk(0, glossary.pieces.length(), gatherer);
      texts_.unreached(Unreached::glossary, gatherer.all);
    } catch (const errors::DocumentError& broken) {
      texts_.damaged("AutoText", broken.what());
    }
  }

  void objects() {
    const cfb::CompoundFile& file = opened_.streams.file;
    if (file.find("ObjectPool")) {
      const cfb::Id pool = *file.find("ObjectPool");
      if (std::ranges::any_of(file.entries().subspan(1), [&](const cfb::Entry& entry) {
            return entry.kind == cfb::Entry::Kind::storage && entry.storage == pool;
          }))
        texts_.notLookedInto(Opaque::objects);
    }
    if (file.find("Macros")) texts_.notLookedInto(Opaque::macros);
  }

  const Opened& opened_;
  const Text& text_;
  const document::Story& mainText_;
  formats::OtherTexts& texts_;
};

}  // namespace

void tellOtherTexts(const Opened& opened, const document::Story& mainText, formats::OtherTexts& texts) {
  Teller(opened, mainText, texts).tell();
}

}  // namespace pluvo::doc
