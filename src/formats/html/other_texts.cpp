#include "other_texts.h"

#include "base/ascii.h"
#include "base/utf.h"
#include "document/kept.h"
#include "errors/document_error.h"
#include "references.h"

#include <algorithm>
#include <array>
#include <string>

namespace pluvo::formats::html {

using formats::Opaque;
using formats::OtherStory;
using formats::Unreached;

namespace {

/// Whether a script calls a function that writes text.
bool writesText(std::string_view script) {
  constexpr std::array<std::string_view, 7> kWords = {"document.write", "innerHTML",   "outerHTML",
                                                      "innerText",      "textContent", "createTextNode",
                                                      "insertAdjacent"};
  return std::ranges::any_of(kWords, [&](std::string_view word) { return script.find(word) != script.npos; });
}

class Teller final : public Events {
 public:
  /// Kept is null where all of the text is there.
  Teller(const Page& page, const OldDocument& old, const document::Kept* kept, formats::OtherTexts& texts)
      : page_(page), old_(old), kept_(kept), texts_(texts), walker_(page, *this, old.mainText.partOf(page)) {}

  void tell() {
    walker_.walk();
    tellStories();
    for (std::size_t i = 0; i < opaque_.size(); ++i)
      if (opaque_[i]) texts_.notLookedInto(static_cast<Opaque>(i));
  }

  void text(Extent bytes) override { position_ += static_cast<text::Position>(bytes.size()); }
  void rowEnds() override { ++position_; }
  void paragraphEnds(const Paragraph& paragraph) override { position_ += paragraph.hasMark ? 1 : 0; }

  void character(const Character& character) override {
    const bool stays = kept_ == nullptr || kept_->holds(position_);
    position_ += character.count;
    if (character.kind != Character::Kind::ordinary || character.count != 1) return;
    if (character.units[0] == text::kPicture && stays) picture(character.bytes);
  }

  void aside(Aside kind, Extent bytes) override {
    switch (kind) {
      case Aside::comment:
        return unreached(Unreached::pageComments, part(inside(bytes, 4, 3)));
      case Aside::script:
        if (writesText(part(bytes))) set(Opaque::scriptedText);
        return unreached(Unreached::scripts, part(withinTags(page_, bytes)));
      case Aside::style:
        return unreached(Unreached::styleSheets, part(withinTags(page_, bytes)));
      case Aside::title:
        return unreached(Unreached::properties, part(withinTags(page_, bytes)));
      case Aside::meta:
        return unreached(Unreached::properties, attributesOf(part(bytes)).content);
      case Aside::content:
        return unreached(Unreached::templates, textIn(withinTags(page_, bytes)));
      default:
        return;
    }
  }

 private:
  std::string_view part(Extent extent) const { return page_.bytes().substr(extent.begin, extent.size()); }
  static Extent inside(Extent bytes, std::size_t front, std::size_t back) {
    return bytes.size() > front + back ? Extent{bytes.begin + front, bytes.end - back} : Extent{};
  }
  void set(Opaque kind) { opaque_[static_cast<std::size_t>(kind)] = true; }

  void unreached(Unreached kind, std::string_view bytes) {
    std::u16string units;
    for (std::size_t at = 0; at < bytes.size();) {
      const Reference reference = bytes[at] == '&' ? referenceAt(bytes.substr(at)) : Reference();
      for (std::size_t i = 0; i < reference.count; ++i) base::appendUtf16(units, reference.points[i]);
      at += reference.length;
      if (reference.count > 0) continue;
      const Decoded first = firstOf(page_.charset(), bytes.substr(at));
      base::appendUtf16(units, first.point);
      at += first.bytes;
    }
    if (!units.empty()) texts_.unreached(kind, units);
  }

  /// The text between the tags of a part that is no main text.
  std::string textIn(Extent extent) const {
    std::string text;
    Tokens tokens(page_.bytes(), extent.begin, extent.end);
    for (Token token = tokens.next(); token.kind != Token::Kind::end; token = tokens.next())
      if (token.kind == Token::Kind::text) text += part(token.extent);
    return text;
  }

  void picture(Extent bytes) {
    Tokens tokens(page_.bytes(), bytes.begin, bytes.end);
    const Token tag = tokens.next();
    const Attributes attributes = attributesOf(part(tag.extent));
    unreached(Unreached::pictureTexts, attributes.alt);
    unreached(Unreached::pictureTexts, attributes.title);
    switch (tag.name) {
      case Name::input:
      case Name::select:
      case Name::textarea:
        forEachAttribute(part(tag.extent), [&](std::string_view name, std::string_view value, const Extent&) {
          if (base::equalsIgnoringAsciiCase(name, "value")) unreached(Unreached::formFields, value);
        });
        return unreached(Unreached::formFields, textIn({tag.extent.end, bytes.end}));
      case Name::img:
        return set(Opaque::pictures);
      case Name::math:
        return unreached(Unreached::formulas, textIn({tag.extent.end, bytes.end}));
      case Name::svg:
        return unreached(Unreached::pictureTexts, textIn({tag.extent.end, bytes.end}));
      default:
        return set(Opaque::objects);
    }
  }

  /// Each text of which no program knows what it hangs on, and each whose place is still there.
  void tellStories() {
    StyleSheet sheet = old_.sheet;
    for (const StoryPlace& place : old_.places) {
      if (kept_ != nullptr && place.anchor && !kept_->holds(*place.anchor)) continue;
      // Both are in the same order, and one has main text before the others.
      const auto kind = static_cast<OtherStory>(static_cast<int>(document::placeOf(place.part.kind)) - 1);
      try {
        texts_.story(kind, readText(page_, place.partIn(sheet)).content);
      } catch (const errors::DocumentError& error) {
        texts_.damaged("a text beside main text", error.what());
      }
    }
  }

  const Page& page_;
  const OldDocument& old_;
  const document::Kept* kept_;
  formats::OtherTexts& texts_;
  Walker walker_;
  text::Position position_ = 0;
  std::array<bool, formats::kOpaque> opaque_{};
};

}  // namespace

void tellOtherTexts(const Page& page, const OldDocument& old, const document::Story& mainText,
                    formats::OtherTexts& texts) {
  const document::Kept kept(mainText);
  Teller(page, old, mainText.wasEdited() ? &kept : nullptr, texts).tell();
}

}  // namespace pluvo::formats::html
