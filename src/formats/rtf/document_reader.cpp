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
    // A table of colours after text holds for what follows it.
    if (read_.tables.hasColours && firstAt < read_.tables.coloursAt) {
      uncolouredTo_ = read_.tables.coloursAt;
      read_ = {};
      readMainText();
    }
    const std::vector<GroupInText> groups = std::move(groups_);
    readStoriesIn(groups, 0, 1);
    sort();
    return std::move(read_);
  }

 private:
  static constexpr std::size_t kMostStories = 65'536;

  std::size_t readMainText() {
    TextReader reader(file_, {file_.size(), allStories_, uncolouredTo_});
    Walker walker(file_, reader);
    reader.follow(walker);
    walker.walk();
    ReadText text = reader.finish();
    groups_ = std::move(text.groups);
    read_.stories.push_back(std::move(text.content));
    read_.places.push_back({word::wdMainTextStory, {0, file_.size()}, {}, std::move(text.map), {}});
    read_.tables = walker.tables();
    read_.protection = reader.protection();
    return reader.firstAt();
  }

  void readStoriesIn(const std::vector<GroupInText>& groups, std::size_t holder, int depth) {
    if (depth > kDeepestStory) return;
    for (const GroupInText& group : groups) {
      const StoryGroups found = storyGroupsIn(file_, group.group);
      for (const StoryGroup& story : found.stories) {
        if (read_.stories.size() == kMostStories) {
          throw errors::DocumentError(errors::Problem::tooLarge,
                                      "The document has more than 65,535 headers, footers, notes, comments "
                                      "and text boxes; divide it.");
        }
        readStory(story, group, found.forOlder, holder, depth);
      }
    }
  }

  void readStory(const StoryGroup& story, const GroupInText& group, const std::vector<Extent>& forOlder,
                 std::size_t holder, int depth) {
    const StoryBeginning beginning{story.inside, group.fallback};
    const std::size_t uncolouredTo = story.inside < uncolouredTo_ ? uncolouredTo_ : 0;
    TextReader reader(file_, {story.bytes.end - story.inside, true, uncolouredTo});
    Walker walker(file_, beginning, read_.tables, reader);
    reader.follow(walker);
    walker.walk();
    ReadText text = reader.finish();
    text.content.kind = story.kind;
    if (group.anchor) text.content.anchors.push_back({holder, *group.anchor});
    const std::size_t number = read_.stories.size();
    read_.stories.push_back(std::move(text.content));
    read_.places.push_back({story.kind, story.bytes, beginning, std::move(text.map), forOlder});
    readStoriesIn(text.groups, number, depth + 1);
  }

  /// By place, and there by where they stand.
  void sort() {
    const auto& places = read_.places;
    std::vector<std::size_t> order(places.size());
    std::iota(order.begin(), order.end(), 0U);
    std::ranges::sort(order, {}, [&](std::size_t i) {
      return std::pair(document::placeOf(places[i].kind), places[i].bytes.begin);
    });
    std::vector<std::size_t> numbers(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) numbers[order[i]] = i;
    ReadDocument sorted;
    for (const std::size_t i : order) {
      for (document::StoryAnchor& anchor : read_.stories[i].anchors) anchor.story = numbers[anchor.story];
      sorted.stories.push_back(std::move(read_.stories[i]));
      sorted.places.push_back(std::move(read_.places[i]));
    }
    read_.stories = std::move(sorted.stories);
    read_.places = std::move(sorted.places);
  }

  std::string_view file_;
  bool allStories_;
  std::size_t uncolouredTo_ = 0;
  ReadDocument read_;
  std::vector<GroupInText> groups_;
};

}  // namespace

ReadDocument readDocument(std::string_view file, bool allStories) {
  return DocumentReader(file, allStories).read();
}

}  // namespace pluvo::rtf
