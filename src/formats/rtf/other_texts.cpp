#include "other_texts.h"

#include "document/kept.h"
#include "reader.h"

#include <optional>
#include <string>

namespace pluvo::rtf {

using document::Content;
using formats::Opaque;
using formats::OtherStory;
using formats::Unreached;

namespace {

Content contentOf(std::string_view file, Tables& tables, const SkippedGroup& group) {
  TextReader reader(file, group.bytes.end - group.inside);
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
    switch (group.word) {
      case Word::header:
        return story(OtherStory::headers, group);
      case Word::footer:
        return story(OtherStory::footers, group);
      case Word::footnote:
        return storyOfCharacter(isEndnote(group) ? OtherStory::endnotes : OtherStory::footnotes, group);
      case Word::annotation:
        return storyOfCharacter(OtherStory::comments, group);
      case Word::shp:
        return goes() ? void() : boxes(group);
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
  static constexpr int kDeepest = 8;

  /// Whether the character that was told last went from main text.
  bool goes() const { return kept_ != nullptr && position_ > 0 && !kept_->holds(position_ - 1); }

  void storyOfCharacter(OtherStory kind, const SkippedGroup& group) {
    if (!goes()) story(kind, group);
  }

  void story(OtherStory kind, const SkippedGroup& group) {
    if (depth_ == kDeepest) return texts_.damaged("a text within others", "It is nested more than 8 deep.");
    texts_.story(kind, contentOf(file_, tables_, group));
    Teller inner(file_, tables_, nullptr, texts_, depth_ + 1);
    Walker(file_, {group.inside, 1}, tables_, inner).walk();
  }

  Tokens within(const SkippedGroup& group) const {
    return Tokens(file_.substr(0, group.bytes.end), group.inside);
  }

  bool isEndnote(const SkippedGroup& group) const {
    constexpr int kNear = 16;
    Tokens tokens = within(group);
    for (int i = 0; i < kNear; ++i) {
      const Token token = tokens.next();
      if (token.kind == Token::Kind::word && token.word == Word::ftnalt) return true;
      if (token.kind == Token::Kind::text || token.kind == Token::Kind::end) return false;
    }
    return false;
  }

  /// The texts of a shape, but for those of its picture for older programs.
  void boxes(const SkippedGroup& group) {
    Tokens tokens = within(group);
    for (Token token = tokens.next(); token.kind != Token::Kind::end; token = tokens.next()) {
      if (token.kind != Token::Kind::word) continue;
      if (token.word == Word::pict) texts_.notLookedInto(Opaque::pictures);
      if (token.word != Word::shptxt && token.word != Word::shprslt) continue;
      const std::size_t inside = tokens.at();
      if (!tokens.skipGroup()) return;
      if (token.word == Word::shptxt) story(OtherStory::boxes, {token.word, inside, {inside, tokens.at()}});
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
