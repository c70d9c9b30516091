#pragma once

#include "stories.h"
#include "story_reader.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace pluvo::docx {

/// A site as it was found, before it is known which stories there are.
struct FoundSite {
  Name kind = Name::document;
  std::string id;  ///< of a note or comment
  Site site;
  std::optional<Position> anchor;  ///< of a box: the character of the story around it that it hangs on
  document::Content content;
};

/// A story, as one or more versions, each with the sites at which it stands: the first is the one shown. The
/// versions of a box are what its alternatives hold, where that is not the same.
struct FoundStory {
  std::vector<std::vector<std::size_t>> versions;
  std::vector<FoundStory> within;
};

struct FoundStories {
  std::vector<FoundSite> sites;
  std::vector<FoundStory> stories;
};

/// Finds the stories of a part. Programs write the same boxes twice, for older and newer readers, so the
/// boxes of alternatives are paired. Where there are as many they are paired in order, elsewhere by their
/// text.
class StoryFinder : private StoryReader {
 public:
  StoryFinder(base::ByteSpan part, const std::string& partName, const Styles& styles,
              xml::Swept swept = xml::Swept::no);

  /// In a part that is no main part.
  FoundStories find();
  /// In a main part, within main text, which is the first site.
  FoundStories findBeside(const BodyMap& map, const std::vector<Offset>& places);

 private:
  using List = std::vector<FoundStory>;
  /// The holder of stories side by side: the part, a story, or alternatives.
  struct Holder {
    std::vector<List> branches;
    std::size_t shown = 0;
    bool hasShown = false;
    bool isAlternatives = false;
    bool inBlocks = false;  ///< alternatives of a text: an edit of that drops those that are not shown
  };
  struct OpenStory {
    std::size_t site = Site::kNone;
    std::optional<Position> anchor;  ///< of the element open outside the story's text
    bool passed = false;             ///< within an alternative that is not shown
    bool isSeparator = false;        ///< of notes
  };

  void story(Name kind) override;
  void open(const Tag& tag) override;
  void close(const Tag& tag, Extent endTag) override;
  void openOutside(const Tag& tag) override;
  void closeOutside(const Tag& tag) override;
  void storyBegins(const Level& level) override;
  void storyEnds(Level level, Offset end) override;

  void openAlternative(const Tag& tag, bool inBlocks);
  void closeAlternatives();
  void closeStory(List within, bool isGiven);
  List& here();
  List merged(Holder holder) const;
  void merge(List& into, List from, bool keepsAll) const;
  bool merge(FoundStory& into, FoundStory& from, bool keepsAll) const;
  bool isSame(const FoundStory& a, const FoundStory& b) const;
  std::shared_ptr<const std::string> scope();

  FoundStories found_;
  std::vector<Holder> holders_;
  std::vector<OpenStory> open_;
  std::string id_;
  bool isSeparator_ = false;
  std::unordered_map<xml::Scope, std::shared_ptr<const std::string>> scopes_;
};

}  // namespace pluvo::docx
