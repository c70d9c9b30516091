#include "story_groups.h"

#include <utility>

namespace pluvo::rtf {

namespace {

Tokens within(std::string_view file, const SkippedGroup& group) {
  return Tokens(file.substr(0, group.bytes.end), group.inside);
}

bool isEndnote(std::string_view file, const SkippedGroup& group) {
  constexpr int kNear = 16;
  Tokens tokens = within(file, group);
  for (int i = 0; i < kNear; ++i) {
    const Token token = tokens.next();
    if (token.kind == Token::Kind::word && token.word == Word::ftnalt) return true;
    if (token.kind == Token::Kind::text || token.kind == Token::Kind::end) return false;
  }
  return false;
}

/// The texts of a shape. Those of what it is to older programs count only where it has no others.
StoryGroups boxesIn(std::string_view file, const SkippedGroup& shape) {
  StoryGroups found;
  Tokens tokens = within(file, shape);
  std::size_t brace = shape.bytes.begin;
  std::size_t olderTo = 0;
  for (Token token = tokens.next(); token.kind != Token::Kind::end; token = tokens.next()) {
    if (token.kind == Token::Kind::open) brace = token.extent.begin;
    if (token.kind != Token::Kind::word || (token.word != Word::shptxt && token.word != Word::shprslt))
      continue;
    const std::size_t inside = tokens.at();
    if (token.word == Word::shprslt && inside < olderTo) continue;
    if (!tokens.skipGroup()) break;
    const StoryGroup box{word::wdTextFrameStory, {brace, tokens.at()}, inside};
    if (token.word == Word::shptxt) {
      (inside < olderTo ? found.older : found.stories).push_back(box);
    } else {
      found.forOlder.push_back(box.bytes);
      olderTo = box.bytes.end;
      tokens.goTo(inside);
    }
  }
  if (found.stories.empty()) return {std::move(found.older), {}, {}};
  return found;
}

}  // namespace

StoryGroups storyGroupsIn(std::string_view file, const SkippedGroup& group) {
  const auto all = [&](word::WdStoryType kind) {
    return StoryGroups{{{kind, group.bytes, group.inside}}, {}, {}};
  };
  switch (group.word) {
    case Word::header:
      return all(word::wdPrimaryHeaderStory);
    case Word::headerLeft:
      return all(word::wdEvenPagesHeaderStory);
    case Word::headerFirst:
      return all(word::wdFirstPageHeaderStory);
    case Word::footer:
      return all(word::wdPrimaryFooterStory);
    case Word::footerLeft:
      return all(word::wdEvenPagesFooterStory);
    case Word::footerFirst:
      return all(word::wdFirstPageFooterStory);
    case Word::footnote:
      return all(isEndnote(file, group) ? word::wdEndnotesStory : word::wdFootnotesStory);
    case Word::annotation:
      return all(word::wdCommentsStory);
    case Word::shp:
      return boxesIn(file, group);
    default:
      return {};
  }
}

}  // namespace pluvo::rtf
