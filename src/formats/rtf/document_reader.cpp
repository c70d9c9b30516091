#include "document_reader.h"

#include "document/place.h"
#include "errors/document_error.h"

#include <algorithm>
#include <numeric>

namespace pluvo::rtf {

using document::Content;

namespace {

class DocumentReader {
 public:
  DocumentReader(std::string_view file, bool allStories) : file_(file), allStories_(allStories) {}

  ReadDocument read() {
    const std::size_t firstAt = readMainText();
    // A table of colours after text holds for the text after it.
    if (read_.old.tables.hasColours && firstAt < read_.old.tables.coloursAt) {
      uncolouredTo_ = read_.old.tables.coloursAt;
      read_ = {};
      readMainText();
    }
    if (!allStories_) return std::move(read_);
    if (read_.old.hasMoreGroups) tooMany();
    const std::vector<GroupInText> groups = read_.old.groups;
    readStoriesIn(groups, 0, 1);
    sort();
    return std::move(read_);
  }

 private:
  [[noreturn]] static void tooMany() {
    throw errors::DocumentError(errors::Problem::tooLarge,
                                "The document has more than 65,535 headers, footers, notes, comments and "
                                "text boxes; divide it.");
  }

  std::size_t readMainText() {
    TextReader reader(file_, {file_.size(), uncolouredTo_});
    Walker walker(file_, reader);
    reader.follow(walker);
    walker.walk();
    ReadText text = reader.finish();
    read_.old.groups = std::move(text.groups);
    read_.old.hasMoreGroups = text.hasMoreGroups;
    read_.stories.push_back(std::move(text.content));
    read_.old.places.push_back({word::wdMainTextStory, {0, file_.size()}, {}, std::move(text.map), {}, {}});
    read_.old.tables = walker.tables();
    read_.protection = reader.protection().protection();
    read_.reservation = reader.protection().reservation();
    return reader.firstAt();
  }

  void readStoriesIn(const std::vector<GroupInText>& groups, std::size_t holder, int depth) {
    if (depth > kDeepestStory) return;
    for (const GroupInText& group : groups) {
      const StoryGroups found = storyGroupsIn(file_, group.group);
      const std::size_t first = read_.stories.size();
      std::vector<std::vector<GroupInText>> inner;
      for (const StoryGroup& story : found.stories) {
        if (read_.stories.size() > kMostGroups) tooMany();
        auto [content, place, groupsIn] = readStory(story, group.fallback);
        if (group.anchor) {
          content.anchors.push_back({holder, *group.anchor});
        } else {
          content.anchors = read_.stories[holder].anchors;
        }
        read_.stories.push_back(std::move(content));
        read_.old.places.push_back(std::move(place));
        inner.push_back(std::move(groupsIn));
      }
      pairWithOlder(found, first, group.fallback);
      for (std::size_t i = 0; i < inner.size(); ++i) readStoriesIn(inner[i], first + i, depth + 1);
    }
  }

  struct ReadStory {
    Content content;
    StoryPlace place;
    std::vector<GroupInText> groups;
  };
  ReadStory readStory(const StoryGroup& story, std::uint16_t fallback) {
    const StoryBeginning beginning{story.inside, fallback};
    const std::size_t uncolouredTo = story.inside < uncolouredTo_ ? uncolouredTo_ : 0;
    TextReader reader(file_, {story.bytes.end - story.inside, uncolouredTo});
    Walker walker(file_, beginning, read_.old.tables, reader);
    reader.follow(walker);
    walker.walk();
    ReadText text = reader.finish();
    text.content.kind = story.kind;
    return {std::move(text.content),
            {story.kind, story.bytes, beginning, std::move(text.map), {}, {}},
            std::move(text.groups)};
  }

  /// Boxes from a number on, and what older programs see in their place.
  void pairWithOlder(const StoryGroups& found, std::size_t first, std::uint16_t fallback) {
    if (found.forOlder.empty()) return;
    bool areSame = found.older.size() == found.stories.size();
    std::vector<StoryPlace> twins;
    for (std::size_t i = 0; areSame && i < found.older.size(); ++i) {
      ReadStory twin = readStory(found.older[i], fallback);
      areSame = isSame(twin.content, read_.stories[first + i]);
      twins.push_back(std::move(twin.place));
    }
    for (std::size_t i = 0; i < found.stories.size(); ++i) {
      StoryPlace& place = read_.old.places[first + i];
      if (areSame) {
        place.twins.push_back(std::move(twins[i]));
      } else {
        place.forOlder = found.forOlder;
      }
    }
  }

  static bool isSame(const Content& a, const Content& b) {
    const auto unitsOf = [](const Content& content) {
      std::u16string units(static_cast<std::size_t>(content.text.length()), u'\0');
      content.text.copy(0, content.text.length(), units.data());
      return units;
    };
    const auto sameRuns = [](const auto& x, const auto& y) {
      for (const auto& run : x.runs()) {
        if (y.runAt(run.from) != run) return false;
      }
      return true;
    };
    return unitsOf(a) == unitsOf(b) && sameRuns(a.structure, b.structure) &&
           sameRuns(a.visibility, b.visibility);
  }

  /// By place, and there by where they stand.
  void sort() {
    const std::vector<StoryPlace>& places = read_.old.places;
    std::vector<std::size_t> order(places.size());
    std::iota(order.begin(), order.end(), 0U);
    std::ranges::sort(order, {}, [&](std::size_t i) {
      return std::pair(document::placeOf(places[i].kind), places[i].bytes.begin);
    });
    std::vector<std::size_t> numbers(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) numbers[order[i]] = i;
    std::vector<Content> stories;
    std::vector<StoryPlace> sorted;
    for (const std::size_t i : order) {
      for (document::StoryAnchor& anchor : read_.stories[i].anchors) anchor.story = numbers[anchor.story];
      stories.push_back(std::move(read_.stories[i]));
      sorted.push_back(std::move(read_.old.places[i]));
    }
    read_.stories = std::move(stories);
    read_.old.places = std::move(sorted);
  }

  std::string_view file_;
  bool allStories_;
  std::size_t uncolouredTo_ = 0;
  ReadDocument read_;
};

}  // namespace

ReadDocument readDocument(std::string_view file, bool allStories) {
  return DocumentReader(file, allStories).read();
}

}  // namespace pluvo::rtf
