#include "other_texts.h"

#include "document/kept.h"
#include "document/place.h"
#include "document_reader.h"

#include <optional>
#include <string>

namespace pluvo::rtf {

using document::Content;
using formats::Opaque;
using formats::OtherStory;
using formats::Unreached;

namespace {

Content contentOf(std::string_view file, Tables& tables, const SkippedGroup& group) {
  TextReader reader(file, {group.bytes.end - group.inside});
  Walker walker(file, {group.inside, 1}, tables, reader);
  reader.follow(walker);
  walker.walk();
  return reader.finish().content;
}

std::u16string unitsOf(const Content& content) {
  // The last paragraph's end is no part of a text in a field of a form.
  std::u16string units(static_cast<std::size_t>(content.text.length()), u'\0');
  content.text.copy(0, content.text.length(), units.data());
  units.pop_back();
  return units;
}

OtherStory otherStoryOf(word::WdStoryType kind) {
  // Both are in the same order, and one has main text before the others.
  return static_cast<OtherStory>(static_cast<int>(document::placeOf(kind)) - 1);
}

/// Tells the groups that a walk over main text, or another story, skips.
class Teller final : public Events {
 public:
  /// Kept is null in other stories, of which all is told.
  Teller(std::string_view file, Tables& tables, const document::Kept* kept, formats::OtherTexts& texts,
         int depth)
      : file_(file), tables_(tables), kept_(kept), texts_(texts), depth_(depth) {}

  void text(Extent bytes) override { position_ += static_cast<text::Position>(bytes.end - bytes.begin); }
  void character(const Character& character) override { position_ += character.units(); }
  void group(const SkippedGroup& group) override {
    if (holdsStories(group.word)) return stories(group);
    switch (group.word) {
      case Word::mmath:
        return goes() ? void() : formula(group);
      case Word::info:
        return properties(group);
      case Word::docvar:
        return variable(group);
      case Word::object:
        return texts_.notLookedInto(Opaque::objects);
      case Word::pict:
      case Word::shppict:
        return texts_.notLookedInto(Opaque::pictures);
      default:
        return;
    }
  }

 private:
  /// Whether the character that was told last went from main text.
  bool goes() const { return kept_ != nullptr && position_ > 0 && !kept_->holds(position_ - 1); }

  void stories(const SkippedGroup& group) {
    if (isOneCharacter(group.word) && goes()) return;
    if (group.word == Word::shp) pictures(group);
    for (const StoryGroup& found : storyGroupsIn(file_, group).stories) {
      if (depth_ == kDeepestStory)
        return texts_.damaged("a text within others", "It is nested more than 8 deep.");
      const SkippedGroup story{group.word, found.inside, found.bytes};
      texts_.story(otherStoryOf(found.kind), contentOf(file_, tables_, story));
      Teller inner(file_, tables_, nullptr, texts_, depth_ + 1);
      Walker(file_, {found.inside, 1}, tables_, inner).walk();
    }
  }

  Tokens within(const SkippedGroup& group) const {
    return Tokens(file_.substr(0, group.bytes.end), group.inside);
  }

  /// Of a shape, but for those of what it is to older programs.
  void pictures(const SkippedGroup& shape) {
    Tokens tokens = within(shape);
    for (Token token = tokens.next(); token.kind != Token::Kind::end; token = tokens.next()) {
      if (token.kind != Token::Kind::word) continue;
      if (token.word == Word::pict) texts_.notLookedInto(Opaque::pictures);
      if ((token.word == Word::shptxt || token.word == Word::shprslt) && !tokens.skipGroup()) return;
    }
  }

  void formula(const SkippedGroup& group) {
    std::u16string all;
    Tokens tokens = within(group);
    for (Token token = tokens.next(); token.kind != Token::Kind::end; token = tokens.next()) {
      if (token.kind != Token::Kind::word || token.word != Word::mr) continue;
      const std::size_t inside = tokens.at();
      if (!tokens.skipGroup()) break;
      all += unitsOf(contentOf(file_, tables_, {token.word, inside, {inside, tokens.at()}}));
    }
    texts_.unreached(Unreached::formulas, all);
  }

  /// The groups directly in one, each with its first word, if it begins with one.
  template <class Visit>
  void forEachGroup(const SkippedGroup& group, Visit visit) {
    Tokens tokens = within(group);
    for (Token token = tokens.nextThing(); token.kind != Token::Kind::end; token = tokens.nextThing()) {
      if (token.kind != Token::Kind::open) continue;
      const std::size_t begin = tokens.at();
      Token first = tokens.nextThing();
      if (first.kind == Token::Kind::symbol && first.unit == u'*') first = tokens.nextThing();
      const bool isWord = first.kind == Token::Kind::word;
      const std::size_t inside = isWord ? first.extent.end : begin;
      tokens.goTo(begin);
      if (!tokens.skipGroup()) return;
      visit(SkippedGroup{isWord ? first.word : Word::unknown, inside, {begin, tokens.at()}});
    }
  }

  void properties(const SkippedGroup& group) {
    forEachGroup(group, [&](const SkippedGroup& property) {
      if (property.word == Word::password) return;
      const std::u16string units = unitsOf(contentOf(file_, tables_, property));
      if (!units.empty()) texts_.unreached(Unreached::properties, units);
    });
  }

  void variable(const SkippedGroup& group) {
    bool isName = true;
    forEachGroup(group, [&](const SkippedGroup& part) {
      if (!isName) texts_.unreached(Unreached::variables, unitsOf(contentOf(file_, tables_, part)));
      isName = false;
    });
  }

  std::string_view file_;
  Tables& tables_;
  const document::Kept* kept_;
  formats::OtherTexts& texts_;
  int depth_;
  text::Position position_ = 0;
};

}  // namespace

void tellOtherTexts(std::string_view file, Tables tables, const document::Story& mainText,
                    formats::OtherTexts& texts) {
  const document::Kept kept(mainText);
  Teller teller(file, tables, mainText.changed() ? &kept : nullptr, texts, 0);
  Walker(file, teller).walk();
}

}  // namespace pluvo::rtf
