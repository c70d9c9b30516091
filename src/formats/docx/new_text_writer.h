#pragma once

#include "paragraph_writer.h"

#include <cstddef>
#include <string_view>

namespace pluvo::docx {

/// Writes new text into the run of the character it is put beside. Living text stands outside a tracked
/// deletion, and no new text in a phonetic guide of which nothing stays on one side of it.
class NewTextWriter {
 public:
  NewTextWriter(EditedPart& part, OpenElements& opens, RunWriter& runs, ParagraphWriter& paragraphs)
      : part_(part), opens_(opens), runs_(runs), paragraphs_(paragraphs) {}

  /// A run with a guide is no run any more but what holds the runs that are guided.
  void openGuide(const Tag& ruby);
  bool closesGuide() const { return guide_ != 0 && opens_.size() == guide_ + 1; }
  void closeGuide() { guide_ = 0; }

  /// Into the run at hand, or beside it where the text may not stand there.
  void put(const Step& step);
  void putInNewRun(const Step& step, std::string_view runProperties = {});

 private:
  void putPart(const Step& step, bool deleted);
  void write(const Step& step, std::string_view tag, bool deleted);
  std::size_t trackedDeletion() const;
  std::size_t guideToLeave(const Step& step) const;

  EditedPart& part_;
  OpenElements& opens_;
  RunWriter& runs_;
  ParagraphWriter& paragraphs_;
  std::size_t guide_ = 0;  ///< index of the run that is open around a phonetic guide; 0: none
  text::Span keptGuided_;  ///< what stays of its text
};

}  // namespace pluvo::docx
