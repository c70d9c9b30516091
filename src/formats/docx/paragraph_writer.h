#pragma once

#include "run_writer.h"
#include "under_way.h"

#include <cstdint>
#include <string>

namespace pluvo::docx {

/// Writes the paragraph at hand. A new mark ends it with a copy of its properties, and whatever is open in it
/// is closed and opened again. The rest of a paragraph that lost its mark goes into the next one.
class ParagraphWriter {
 public:
  ParagraphWriter(EditedPart& part, OpenElements& opens, RunWriter& runs, UnderWay& underWay)
      : part_(part), opens_(opens), runs_(runs), underWay_(underWay) {}

  void open(const Tag& tag);
  void properties(const Properties& properties);
  /// Puts the content under way at its beginning. To be called before anything in it is written.
  void enter();
  /// A new mark: ends the paragraph here and begins the rest of it. No run is open.
  void divide(std::uint8_t markColour, bool markDeleted);

  /// Carries the edit over to the mark: put(step, w:rPr) writes new text before it.
  template <class Put>
  void mark(Position at, Extent endTag, Put put);
  void close(Extent endTag);

 private:
  enum class Part : bool { front, rest };  // of a paragraph that is divided
  std::string startWith(const std::string& properties, Part part = Part::rest) const;
  bool keepsIdentityAtEnd() const;
  void replaceStart(const std::string& start);
  void writeWhatCame();
  void keep(Extent endTag);
  void merge(Extent endTag);
  void makeRoom(Extent endTag);
  std::string runProperties() const;
  void putAfterMark(const Step& put);

  EditedPart& part_;
  OpenElements& opens_;
  RunWriter& runs_;
  UnderWay& underWay_;
  HighlightedProperties highlighted_{withMarkHighlight};

  // Of the paragraph at hand.
  Tag tag_;
  Properties properties_;
  std::string start_;
  bool entered_ = false;   ///< the content under way stands in it
  bool splitOff_ = false;  ///< it is not the first of those it was divided into
  bool joins_ = false;     ///< its content joins the content under way, and its start waits
  bool markDropped_ = false;
  std::uint8_t markColour_ = 0;
};

template <class Put>
void ParagraphWriter::mark(Position at, Extent endTag, Put put) {
  enter();
  noteDeletion(part_, properties_);
  markDropped_ = false;
  part_.script.take(at + 1, [&](const Step& step) {
    switch (step.kind) {
      case Step::Kind::keep:
        markColour_ = part_.colourAt(step.at);
        break;
      case Step::Kind::drop:
        markDropped_ = true;
        break;
      case Step::Kind::put:
        if (step.after) return putAfterMark(step);
        makeRoom(endTag);
        put(step, runProperties());
        break;
    }
  });
}

}  // namespace pluvo::docx
