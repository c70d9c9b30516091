#include "stories.h"

#include "asides.h"
#include "document/place.h"
#include "page_parts.h"
#include "story_finder.h"

#include <algorithm>
#include <map>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>

namespace pluvo::docx {

using document::Content;
using word::WdStoryType;

namespace {

/// The reference to a story of such elements, and its kind.
struct Kind {
  Name element;
  WdStoryType story;
  Name reference = Name::other;
};
constexpr Kind kNotes[] = {{Name::footnote, word::wdFootnotesStory, Name::footnoteReference},
                           {Name::endnote, word::wdEndnotesStory, Name::endnoteReference},
                           {Name::comment, word::wdCommentsStory, Name::commentReference}};

/// Brings the stories found in all parts into one order, and says what each hangs on.
class Assembly {
 public:
  explicit Assembly(Stories& stories) : stories_(stories) {}

  void addPart(const std::string& name, xml::Utf8Part part, FoundStories found,
               const std::vector<document::PageUse>& uses) {
    parts_.push_back(std::move(found.sites));
    const std::size_t index = stories_.parts.size();
    stories_.parts.push_back({name, std::move(part), {}});
    for (const FoundStory& story : found.stories) {
      const std::size_t first = entries_.size();
      addStory(index, story, first);
      Content& content = entries_[first].content;
      const document::Place place = document::placeOf(content.kind);
      if (place != document::Place::headers && place != document::Place::footers) continue;
      content.part = name;
      for (const document::PageUse& use : uses)
        if (document::placeOf(use.kind) == place) content.uses.push_back(use);
      if (!content.uses.empty()) content.kind = content.uses.front().kind;
    }
  }

  void finish() {
    findReferences();
    number();
    for (std::size_t i = 0; i < parts_.size(); ++i)
      for (FoundSite& found : parts_[i]) stories_.parts[i].sites.push_back(std::move(found.site));
    stories_.contents.resize(entries_.size());
    for (Entry& entry : entries_) {
      for (std::size_t& rival : entry.content.rivals) rival = entries_[rival].number;
      for (document::StoryAnchor& anchor : entry.content.anchors)
        anchor.story = entries_[anchor.story].number;
      stories_.contents[entry.number] = std::move(entry.content);
    }
  }

 private:
  /// A story; what its content says of others are their entries until these have numbers.
  struct Entry {
    Content content;
    Name element = Name::document;
    std::string id;
    std::size_t root = 0;  ///< the entry of the story that stands in none and has this in it
    std::size_t number = 0;
    const BodyMap* map = nullptr;
  };

  FoundSite& found(std::size_t part, std::size_t site) { return parts_[part][site]; }

  void addStory(std::size_t part, const FoundStory& story, std::size_t root) {
    addVersions(part, story, root);
    for (const FoundStory& inner : story.within) addStory(part, inner, root);
  }

  void addVersions(std::size_t part, const FoundStory& story, std::size_t root) {
    const std::size_t first = entries_.size();
    for (const std::vector<std::size_t>& sites : story.versions) {
      const std::size_t own = entries_.size();
      FoundSite& shown = found(part, sites.front());
      Entry entry;
      entry.content = std::move(shown.content);
      entry.element = shown.kind;
      entry.id = shown.id;
      entry.root = root;
      entry.map = &shown.site.map;
      entry.content.kind = kindOfStory(shown.kind);
      for (std::size_t i = first; story.versions.size() > 1 && i < first + story.versions.size(); ++i)
        if (i != own) entry.content.rivals.push_back(i);
      for (const std::size_t at : sites) {
        const FoundSite& site = found(part, at);
        parts_[part][at].site.story = own;
        const std::size_t around = site.anchor ? found(part, site.site.around).site.story : Site::kNone;
        if (around != Site::kNone) addAnchor(entry, {around, *site.anchor});
      }
      entries_.push_back(std::move(entry));
    }
  }

  static WdStoryType kindOfStory(Name element) {
    if (element == Name::document) return word::wdMainTextStory;
    if (element == Name::header || element == Name::footer) return kindOnPages(element == Name::header, {});
    for (const Kind& kind : kNotes)
      if (kind.element == element) return kind.story;
    return word::wdTextFrameStory;
  }

  static void addAnchor(Entry& entry, document::StoryAnchor anchor) {
    std::vector<document::StoryAnchor>& all = entry.content.anchors;
    const bool isKnown = std::any_of(all.begin(), all.end(), [&](const document::StoryAnchor& known) {
      return known.story == anchor.story && known.position == anchor.position;
    });
    if (!isKnown) all.push_back(anchor);
  }

  void findReferences() {
    std::map<std::pair<Name, std::string>, std::vector<std::size_t>> notes;
    for (std::size_t i = 0; i < entries_.size(); ++i)
      for (const Kind& kind : kNotes)
        if (kind.element == entries_[i].element) notes[{kind.reference, entries_[i].id}].push_back(i);
    if (notes.empty()) return;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      for (const BodyMap::Reference& reference : entries_[i].map->references) {
        const auto known = notes.find({reference.kind, reference.id});
        if (known == notes.end()) continue;
        for (const std::size_t note : known->second)
          entries_[note].content.anchors.push_back({i, reference.position});
      }
    }
  }

  /// Notes and comments come in the order of their references, boxes after the stories that they are in.
  void number() {
    using Key = std::tuple<document::Place, std::size_t, std::size_t, Position>;
    std::vector<std::pair<Key, std::size_t>> order;
    const auto numberFrom = [&](std::size_t next) {
      std::sort(order.begin(), order.end());
      for (const auto& [key, entry] : order) entries_[entry].number = next++;
      order.clear();
      return next;
    };
    const auto placeOf = [&](std::size_t i) { return document::placeOf(entries_[i].content.kind); };
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      const document::Place place = placeOf(i);
      if (place == document::Place::boxes) continue;
      const bool isNote = place > document::Place::footers;
      const std::vector<document::StoryAnchor>& anchors = entries_[i].content.anchors;
      const std::size_t last = entries_.size();
      order.push_back({{place,
                        !isNote           ? 0
                        : anchors.empty() ? last
                                          : anchors.front().story,
                        0, anchors.empty() ? 0 : anchors.front().position},
                       i});
    }
    const std::size_t next = numberFrom(0);
    for (std::size_t i = 0; i < entries_.size(); ++i)
      if (placeOf(i) == document::Place::boxes)
        order.push_back({{document::Place::boxes, entries_[entries_[i].root].number, i, 0}, i});
    numberFrom(next);
    for (auto& part : parts_)
      for (FoundSite& found : part)
        if (found.site.story != Site::kNone) found.site.story = entries_[found.site.story].number;
  }

  Stories& stories_;
  std::vector<std::vector<FoundSite>> parts_;  ///< as many as the stories have
  std::vector<Entry> entries_;
};

/// Main text, and the boxes in it so far as they can be read.
FoundStories findInMainPart(const xml::Utf8Part& part, const std::string& name, ReadBody mainText,
                            const Styles& styles) {
  FoundStories found;
  const base::ByteSpan bytes = part.utf8.view;
  const std::string_view view(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  std::vector<Offset> places;
  if (view.find("txbxContent") != view.npos) places = placesWithText(bytes, mainText.map);
  if (!places.empty()) {
    try {
      found = StoryFinder(bytes, name, styles, xml::Swept::yes).findBeside(mainText.map, places);
    } catch (const errors::DocumentError&) {
      found = {};
    }
  }
  if (found.sites.empty()) {
    found.sites.emplace_back();
    found.stories.push_back({{{0}}, {}});
  }
  FoundSite& main = found.sites.front();
  main.site.extent = {0, static_cast<Offset>(bytes.size())};
  main.site.map = std::move(mainText.map);
  main.site.highlight = mainText.content.highlight;
  main.content = std::move(mainText.content);
  return found;
}

}  // namespace

std::string standingAlone(const Site& site, base::ByteSpan part) {
  const std::string_view bytes(reinterpret_cast<const char*>(part.data()), part.size());
  std::string alone = *site.scope;
  alone += bytes.substr(site.extent.begin, site.extent.end - site.extent.begin);
  return alone += kScopeEnd;
}

Stories withMainTextAlone(std::string partName, xml::Utf8Part part, ReadBody mainText) {
  Stories stories;
  Site main;
  main.story = 0;
  main.extent = {0, static_cast<Offset>(part.utf8.view.size())};
  main.map = std::move(mainText.map);
  main.highlight = mainText.content.highlight;
  stories.contents.push_back(std::move(mainText.content));
  stories.parts.push_back({std::move(partName), std::move(part), {}});
  stories.parts.back().sites.push_back(std::move(main));
  return stories;
}

Stories withAllStories(const Package& package, xml::Utf8Part part, ReadBody mainText, const Styles& styles) {
  std::vector<PagePart> others = pageParts(package, part.utf8.view, mainText.map);
  for (const Role role : {Role::footnotes, Role::endnotes, Role::comments})
    if (const zip::Member* const member = package.member(role))
      others.push_back({std::string(member->name), {}});

  Stories stories;
  Assembly assembly(stories);
  FoundStories inMainPart = findInMainPart(part, package.mainPart, std::move(mainText), styles);
  assembly.addPart(package.mainPart, std::move(part), std::move(inMainPart), {});
  Budget budget(package.archive.bytes().size());
  std::set<std::string_view> seen = {package.mainPart};
  for (const PagePart& other : others) {
    const zip::Member* const member = package.archive.find(other.part);
    if (member == nullptr || !seen.insert(member->name).second) continue;
    try {
      budget.take(member->size);
      xml::Utf8Part read = xml::toUtf8(package.archive.read(*member), other.part);
      FoundStories found = StoryFinder(read.utf8.view, other.part, styles).find();
      assembly.addPart(other.part, std::move(read), std::move(found), other.uses);
    } catch (const errors::DocumentError&) {  // tellOtherTexts says so
    }
  }
  assembly.finish();
  return stories;
}

}  // namespace pluvo::docx
