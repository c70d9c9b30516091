#include "writer.h"

#include "story_writer.h"

#include <algorithm>

namespace pluvo::rtf {

namespace {

/// Writes stories where their bytes lie: those that did not change keep theirs.
class DocumentWriter {
 public:
  DocumentWriter(std::string_view file, const Tables& tables, const std::vector<StoryPlace>& places,
                 const document::Document& document)
      : file_(file), tables_(tables), places_(places), document_(document), out_(file, tables) {
    for (std::size_t i = 0; i < places.size(); ++i) {
      if (!document.story(i).changed() || document.isGone(i)) continue;
      tasks_.push_back({places[i].bytes, i});
      for (const Extent& bytes : places[i].forOlder) tasks_.push_back({bytes, kNone});
    }
    std::ranges::sort(tasks_, {}, [](const Task& task) { return task.bytes.begin; });
  }

  void write(base::Output& out) {
    writeIn({0, file_.size()});
    out_.write(out);
  }

 private:
  static constexpr auto kNone = static_cast<std::size_t>(-1);
  struct Task {
    Extent bytes;
    std::size_t story = kNone;  ///< none where the bytes go
  };

  /// What there is to be done in bytes that stay, front to back.
  void writeIn(Extent bytes) {
    skipTo(bytes.begin);
    while (next_ < tasks_.size() && tasks_[next_].bytes.begin < bytes.end) {
      const Task task = tasks_[next_++];
      if (task.story == kNone) {
        out_.copyTo(task.bytes.begin, *this);
        out_.leaveOutTo(task.bytes.end);
      } else {
        const StoryPlace& place = places_[task.story];
        const OldStory old{place.map, task.story == 0 ? nullptr : &place.beginning};
        StoryWriter(file_, tables_, old, document_.story(task.story), out_, [this](Extent stays) {
          writeIn(stays);
        }).write();
      }
      skipTo(task.bytes.end);
    }
  }

  /// What lies in front of a place went with what it lay in.
  void skipTo(std::size_t at) {
    while (next_ < tasks_.size() && tasks_[next_].bytes.begin < at) ++next_;
  }

  std::string_view file_;
  Tables tables_;
  const std::vector<StoryPlace>& places_;
  const document::Document& document_;
  NewDocument out_;
  std::vector<Task> tasks_;
  std::size_t next_ = 0;

 public:
  /// Before a group that goes anything may stand.
  static bool isOpenEnd(std::size_t /*at*/) { return true; }
};

}  // namespace

void writeDocument(std::string_view file, const Tables& tables, const std::vector<StoryPlace>& places,
                   const document::Document& document, base::Output& out) {
  DocumentWriter(file, tables, places, document).write(out);
}

}  // namespace pluvo::rtf
