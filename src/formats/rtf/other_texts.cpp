#include "other_texts.h"

#include "document/kept.h"
#include "document/place.h"
#include "document_reader.h"

#include <string>
#include <utility>

namespace pluvo::rtf {

using document::Content;
using formats::Opaque;
using formats::OtherStory;
using formats::Unreached;

namespace {

ReadText textOf(std::string_view file, Tables& tables, const SkippedGroup& group, std::uint16_t fallback) {
  TextReader reader(file, {group.bytes.end - group.inside});
  Walker walker(file, {group.inside, fallback}, tables, reader);
  reader.follow(walker);
  walker.walk();
  return reader.finish();
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

/// Tells the texts in groups that main text, or another story, skips.
class Teller {
 public:
  Teller(std::string_view file, Tables& tables, formats::OtherTexts& texts)
      : file_(file), tables_(tables), texts_(texts) {}

  /// The kept part of main text is null where all is kept, and in other stories.
  void tell(const std::vector<GroupInText>& groups, bool hasMore, const document::Kept* kept, int depth) {
    for (const GroupInText& group : groups) {
      if (group.anchor && kept != nullptr && !kept->holds(*group.anchor)) continue;
      tell(group, depth);
    }
    if (hasMore) texts_.damaged("texts beside others", "There are more than 65,535.");
  }

 private:
  void tell(const GroupInText& told, int depth) {
    const SkippedGroup& group = told.group;
    switch (group.word) {
      case Word::mmath:
        return formula(group);
      case Word::info:
        return properties(group);
      case Word::docvar:
        return variable(group);
      case Word::indexEntry:
        return tellAll(Unreached::fieldCodes, group);
      case Word::revtbl:
        return tellAll(Unreached::people, group);
      case Word::object:
        return texts_.notLookedInto(Opaque::objects);
      case Word::pict:
      case Word::shppict:
        return drawing(group);
      case Word::userprops:
        return forEachGroup(group, [&](const SkippedGroup& part) { tellAll(Unreached::properties, part); });
      case Word::formfield:
        return forEachGroup(group, [&](const SkippedGroup& field) {
          forEachGroup(field, [&](const SkippedGroup& part) { tellAll(Unreached::formFields, part); });
        });
      case Word::unknown:
        return tellAll(Unreached::otherPrograms, group);
      default:
        return stories(told, depth);
    }
  }

  void stories(const GroupInText& told, int depth) {
    if (told.group.word == Word::shp) drawing(told.group);
    if (told.group.word == Word::annotation) authors(told.group);
    for (const StoryGroup& found : storyGroupsIn(file_, told.group).stories) {
      if (depth == kDeepestStory)
        return texts_.damaged("a text within others", "It is nested more than 8 deep.");
      ReadText story = textOf(file_, tables_, {told.group.word, found.inside, found.bytes}, told.fallback);
      texts_.story(otherStoryOf(found.kind), std::move(story.content));
      tell(story.groups, story.hasMoreGroups, nullptr, depth + 1);
    }
  }

  Tokens within(const SkippedGroup& group) const {
    return Tokens(file_.substr(0, group.bytes.end), group.inside);
  }

  void tellAll(Unreached kind, const SkippedGroup& group) {
    const std::u16string units = unitsOf(textOf(file_, tables_, group, 1).content);
    if (!units.empty()) texts_.unreached(kind, units);
  }

  /// The words of a picture or shape besides its boxes: its descriptions, and drawn text. Its copy for older
  /// programs is left out.
  void drawing(const SkippedGroup& shape) {
    if (isOpaque(shape.word)) texts_.notLookedInto(Opaque::pictures);
    Tokens tokens = within(shape);
    std::string_view name;
    for (Token token = tokens.next(); token.kind != Token::Kind::end; token = tokens.next()) {
      if (token.kind != Token::Kind::word) continue;
      if (token.word == Word::pict) texts_.notLookedInto(Opaque::pictures);
      if (token.word == Word::sn) name = file_.substr(token.extent.end, kLongestName);
      const bool isValue = token.word == Word::sv;
      const std::size_t inside = tokens.at();
      if (!isValue && token.word != Word::shptxt && token.word != Word::shprslt) continue;
      if (!tokens.skipGroup()) return;
      const SkippedGroup value{Word::sv, inside, {inside, tokens.at()}};
      if (isValue && name.starts_with("wzDescription")) tellAll(Unreached::pictureTexts, value);
      if (isValue && name.starts_with("gtextUNICODE")) tellAll(Unreached::wordArt, value);
    }
  }
  static constexpr std::size_t kLongestName = 16;

  /// Who wrote a comment, in groups in front of it.
  void authors(const SkippedGroup& comment) {
    if (comment.goesFrom == 0) return;
    Tokens tokens(file_.substr(0, comment.inside), comment.goesFrom);
    for (Token token = tokens.next(); token.kind != Token::Kind::end; token = tokens.next()) {
      if (token.word != Word::atnid && token.word != Word::atnauthor) continue;
      const std::size_t inside = tokens.at();
      if (!tokens.skipGroup()) return;
      tellAll(Unreached::people, {token.word, inside, {inside, tokens.at()}});
    }
  }

  void formula(const SkippedGroup& group) {
    std::u16string all;
    Tokens tokens = within(group);
    for (Token token = tokens.next(); token.kind != Token::Kind::end; token = tokens.next()) {
      if (token.kind != Token::Kind::word || token.word != Word::mr) continue;
      const std::size_t inside = tokens.at();
      if (!tokens.skipGroup()) break;
      all += unitsOf(textOf(file_, tables_, {token.word, inside, {inside, tokens.at()}}, 1).content);
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
      tellAll(Unreached::properties, property);
    });
  }

  void variable(const SkippedGroup& group) {
    bool isName = true;
    forEachGroup(group, [&](const SkippedGroup& part) {
      if (!isName) texts_.unreached(Unreached::variables, unitsOf(textOf(file_, tables_, part, 1).content));
      isName = false;
    });
  }

  std::string_view file_;
  Tables& tables_;
  formats::OtherTexts& texts_;
};

}  // namespace

void tellOtherTexts(std::string_view file, const OldDocument& old, const document::Story& mainText,
                    formats::OtherTexts& texts) {
  const document::Kept kept(mainText);
  Tables tables = old.tables;
  Teller(file, tables, texts).tell(old.groups, old.hasMoreGroups, mainText.wasEdited() ? &kept : nullptr, 0);
}

}  // namespace pluvo::rtf
