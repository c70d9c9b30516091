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
      : file_(file), tables_(tables), out_(file, tables) {
    for (std::size_t i = 0; i < places.size(); ++i) {
      if (!document.story(i).wasEdited() || document.isGone(i)) continue;
      tasks_.push_back({places[i].bytes, &places[i], &document.story(i)});
      for (const StoryPlace& twin : places[i].twins)
        tasks_.push_back({twin.bytes, &twin, &document.story(i)});
      for (const Extent& bytes : places[i].forOlder) tasks_.push_back({bytes, nullptr, nullptr});
    }
    std::ranges::sort(tasks_, {}, [](const Task& task) { return task.bytes.begin; });
  }

  void write(base::Output& out) {
    writeIn({0, file_.size()});
    out_.write(out);
  }

 private:
  struct Task {
    Extent bytes;
    const StoryPlace* place;  ///< none where the bytes go
    const document::Story* story;
  };

  /// Makes the changes within bytes that stay, front to back.
  void writeIn(Extent bytes) {
    skipTo(bytes.begin);
    while (next_ < tasks_.size() && tasks_[next_].bytes.begin < bytes.end) {
      const Task task = tasks_[next_++];
      if (task.place == nullptr) {
        out_.copyTo(task.bytes.begin, *this);
        out_.leaveOutTo(task.bytes.end);
      } else {
        const bool isMainText = task.place->kind == word::wdMainTextStory;
        const OldStory old{task.place->map, isMainText ? nullptr : &task.place->beginning};
        StoryWriter(file_, tables_, old, *task.story, out_, [this](Extent stays) { writeIn(stays); }).write();
      }
      skipTo(task.bytes.end);
    }
  }

  /// Bytes in front of a place went with the group they lay in.
  void skipTo(std::size_t at) {
    while (next_ < tasks_.size() && tasks_[next_].bytes.begin < at) ++next_;
  }

  std::string_view file_;
  Tables tables_;
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
