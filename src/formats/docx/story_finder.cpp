#include "story_finder.h"

#include "text_reader.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

namespace pluvo::docx {

namespace {

bool isAlternative(Name name) { return name == Name::choice || name == Name::fallback; }

/// A picture floats or stands in the line; old programs have but one way to say so.
char16_t withoutPlace(char16_t unit) { return unit == text::kFloatingPicture ? text::kPicture : unit; }

/// Whether one edit does the same to both. Controls may differ: they restrict edits of the first.
bool isSameText(const document::Content& a, const document::Content& b) {
  if (a.text.length() != b.text.length()) return false;
  for (Position i = 0; i < a.text.length(); ++i)
    if (withoutPlace(a.text[i]) != withoutPlace(b.text[i])) return false;
  for (Position at = 0; at < a.text.length();) {
    const auto x = a.structure.runAt(at);
    const auto y = b.structure.runAt(at);
    document::Structure same = y.value;
    same.control = x.value.control;
    if (same != x.value) return false;
    at = std::min(x.to, y.to);
  }
  return true;
}

void appendEscaped(std::string& out, std::string_view value) {
  for (const char c : value) {
    if (c == '&' || c == '<' || c == '"') {
      out += c == '&' ? "&amp;" : c == '<' ? "&lt;" : "&quot;";
    } else {
      out += c;
    }
  }
}

}  // namespace

StoryFinder::StoryFinder(base::ByteSpan part, const std::string& partName, const Styles& styles,
                         xml::Swept swept)
    : StoryReader(part, partName, styles, document::Purpose::edit, swept), holders_{{{{}}}} {}

FoundStories StoryFinder::find() {
  readPart();
  found_.stories = std::move(holders_.front().branches.front());
  return std::move(found_);
}

FoundStories StoryFinder::findBeside(const BodyMap& map, const std::vector<Offset>& places) {
  readBesideMainText(map, places);
  if (!open_.empty()) {
    List within = merged(std::move(holders_.back()));
    holders_.pop_back();
    closeStory(std::move(within), true);
  }
  found_.stories = std::move(holders_.front().branches.front());
  return std::move(found_);
}

void StoryFinder::story(Name kind) {
  StoryReader::story(kind);
  id_ = valueOf(scanner(), Name::id);
  const std::string type = valueOf(scanner(), Name::type);
  isSeparator_ = (kind == Name::footnote || kind == Name::endnote) &&
                 (type == "separator" || type == "continuationSeparator");
}

void StoryFinder::storyBegins(const Level& level) {
  FoundSite found;
  found.kind = level.kind;
  found.site.extent.begin = level.begin;
  if (level.kind != Name::document) found.site.scope = scope();
  if (!open_.empty()) found.site.around = open_.back().site;
  if (level.kind == Name::boxContent && !open_.empty()) found.anchor = open_.back().anchor;
  found.id = std::move(id_);
  open_.push_back({found_.sites.size(), {}, false, isSeparator_});
  holders_.push_back({{{}}});
  found_.sites.push_back(std::move(found));
}

void StoryFinder::storyEnds(Level level, Offset end) {
  List within = merged(std::move(holders_.back()));
  holders_.pop_back();
  FoundSite& found = found_.sites[open_.back().site];
  found.site.extent.end = end;
  bool isGiven = level.kind == Name::document;
  if (level.reader != nullptr) {
    ReadBody body = level.reader->finish();
    found.content = std::move(body.content);
    found.site.map = std::move(body.map);
    found.site.highlight = found.content.highlight;
    const bool passed = open_.size() > 1 && open_[open_.size() - 2].passed;
    isGiven = level.kind == Name::boxContent ? found.anchor || passed
                                             : open_.size() == 1 && !open_.back().isSeparator;
  }
  closeStory(std::move(within), isGiven);
}

void StoryFinder::closeStory(List within, bool isGiven) {
  const std::size_t site = open_.back().site;
  open_.pop_back();
  if (isGiven) here().push_back({{{site}}, std::move(within)});
}

StoryFinder::List& StoryFinder::here() {
  std::vector<List>& branches = holders_.back().branches;
  if (branches.empty()) branches.emplace_back();
  return branches.back();
}

void StoryFinder::open(const Tag& tag) {
  StoryReader::open(tag);
  openAlternative(tag, true);
}

void StoryFinder::close(const Tag& tag, Extent endTag) {
  if (tag.name == Name::alternateContent) closeAlternatives();
  StoryReader::close(tag, endTag);
}

void StoryFinder::openOutside(const Tag& tag) {
  if (inStory() && level().outside == 0) {
    OpenStory& around = open_.back();
    around.passed = isAlternative(tag.name);
    const bool isCharacter = level().lastElement == tag.extent.begin && !level().lastIsText;
    around.anchor = isCharacter ? std::optional(level().lastPosition) : std::nullopt;
  }
  StoryReader::openOutside(tag);
  if (inStory()) openAlternative(tag, false);
}

void StoryFinder::closeOutside(const Tag& tag) {
  if (inStory() && tag.name == Name::alternateContent) closeAlternatives();
  StoryReader::closeOutside(tag);
}

/// An alternative of a text is opened as such where it is shown, and from outside where it is not.
void StoryFinder::openAlternative(const Tag& tag, bool inBlocks) {
  if (tag.name == Name::alternateContent) {
    holders_.push_back({{}, 0, false, true, inBlocks});
  } else if (isAlternative(tag.name) && holders_.back().isAlternatives) {
    Holder& holder = holders_.back();
    const bool isKnown =
        tag.name == Name::fallback || understood(scanner(), valueOf(scanner(), Name::requires_));
    if (!holder.hasShown && (holder.inBlocks ? inBlocks : isKnown)) {
      holder.hasShown = true;
      holder.shown = holder.branches.size();
    }
    holder.branches.emplace_back();
  }
}

void StoryFinder::closeAlternatives() {
  List all = merged(std::move(holders_.back()));
  holders_.pop_back();
  std::move(all.begin(), all.end(), std::back_inserter(here()));
}

StoryFinder::List StoryFinder::merged(Holder holder) const {
  if (holder.branches.empty() || (holder.inBlocks && !holder.hasShown)) return {};
  List all = std::move(holder.branches[holder.shown]);
  for (std::size_t i = 0; i < holder.branches.size(); ++i)
    if (i != holder.shown) merge(all, std::move(holder.branches[i]), !holder.inBlocks);
  return all;
}

void StoryFinder::merge(List& into, List from, bool keepsAll) const {
  if (into.size() == from.size()) {
    for (std::size_t i = 0; i < from.size(); ++i) merge(into[i], from[i], keepsAll);
    return;
  }
  std::size_t next = 0;
  for (FoundStory& story : from) {
    std::size_t at = next;
    while (at < into.size() && !isSame(into[at], story)) ++at;
    if (at < into.size()) {
      merge(into[at], story, keepsAll);
      next = at + 1;
    } else if (keepsAll) {
      into.push_back(std::move(story));
    }
  }
}

bool StoryFinder::isSame(const FoundStory& a, const FoundStory& b) const {
  const auto textOf = [&](const FoundStory& story) -> const document::Content& {
    return found_.sites[story.versions.front().front()].content;
  };
  return isSameText(textOf(a), textOf(b));
}

/// False where nothing of it was taken.
bool StoryFinder::merge(FoundStory& into, FoundStory& from, bool keepsAll) const {
  bool any = false;
  for (std::vector<std::size_t>& version : from.versions) {
    const auto same = std::find_if(into.versions.begin(), into.versions.end(), [&](const auto& known) {
      return isSameText(found_.sites[known.front()].content, found_.sites[version.front()].content);
    });
    if (same != into.versions.end()) {
      same->insert(same->end(), version.begin(), version.end());
    } else if (keepsAll) {
      into.versions.push_back(std::move(version));
    } else {
      continue;
    }
    any = true;
  }
  if (any) merge(into.within, std::move(from.within), keepsAll);
  return any;
}

std::shared_ptr<const std::string> StoryFinder::scope() {
  std::shared_ptr<const std::string>& known = scopes_[scanner().scope()];
  if (known == nullptr || walker().preserves()) {
    std::map<std::string_view, std::string_view> declarations;
    scanner().forEachDeclaration(
        [&](std::string_view prefix, std::string_view uri) { declarations[prefix] = uri; });
    std::string tag = "<x";
    for (const auto& [prefix, uri] : declarations) {
      tag.append(prefix.empty() ? " xmlns" : " xmlns:").append(prefix).append("=\"");
      appendEscaped(tag, uri);
      tag += '"';
    }
    auto made =
        std::make_shared<const std::string>(tag + (walker().preserves() ? " xml:space=\"preserve\">" : ">"));
    if (walker().preserves()) return made;
    known = made;
  }
  return known;
}

}  // namespace pluvo::docx
