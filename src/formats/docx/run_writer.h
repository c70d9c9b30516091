#pragma once

#include "open_elements.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pluvo::docx {

/// Writes the run at hand. Leaves its bytes as they are until something in it is touched, and writes it anew
/// from there on. Divides it only where its highlight changes. A run that lost everything goes.
class RunWriter {
 public:
  RunWriter(EditedPart& part, OpenElements& opens) : part_(part), opens_(opens) {}

  void begin(const Tag& tag);
  void properties(const Properties& properties);
  void end(Extent endTag);
  /// The run turns out to be a container of others; returns its tag.
  Tag becomesContainer();
  /// No run is open any more.
  void forget();

  /// A run for new text that is beside none.
  void beginNew(std::string_view runProperties);
  void endNew();
  /// New text beside the contents of the run at hand, but in a run with other properties.
  template <class Put>
  void beside(std::string_view runProperties, Put put);

  /// The w:rPr of the run at hand.
  std::string_view properties() const { return run_.properties; }

  void touch();
  /// An element in the run that has this colour now.
  void keep(Extent extent, std::uint8_t colour);
  void keepAsItIs(Extent extent) { keep(extent, run_.colour); }
  void drop(Extent extent);

  /// A text element is written anew: the next bytes take its place.
  void beginText(const TextElement& element);
  void endText(const TextElement& element);
  /// The qualified name of that element.
  std::string_view textTag() const { return textTag_; }

  /// Text without paragraph marks, in elements of that name.
  void write(std::u16string_view units, std::uint8_t colour, std::string_view tag);
  /// Text of the document as it stands there, in bytes.
  void writeBytes(std::string_view bytes, std::uint8_t colour, std::string_view tag);
  void flush();
  /// Closes the run in the output. The next text opens it again.
  void interrupt();
  /// From here on each run is written into a tracked deletion of its own, or no longer.
  void deleteEach(bool deletes) { deletesEach_ = deletes; }

 private:
  struct Run {
    bool isNew = false;    ///< made for new text that is beside no run
    bool touched = false;  ///< written anew from here on
    Tag tag;
    std::string_view properties;
    std::string ownProperties;  ///< of new text
    Offset headerEnd = 0;
    Offset rawEnd = 0;  ///< after the bytes left as they are
    std::uint8_t colour = 0;
    bool numbered = false;                   ///< the properties hold a number that no other run may have
    std::optional<std::uint8_t> openColour;  ///< of the run now open in the output
    bool headerWritten = false;
    std::string gap;  ///< bytes between elements, until the run is open
  };

  void open(std::uint8_t colour);
  void append(std::uint8_t colour, std::string_view tag);
  void passBytesBefore(Extent extent);

  EditedPart& part_;
  OpenElements& opens_;
  Run run_;
  std::string pendingText_;  ///< as it is written
  std::string pendingTag_;
  std::u16string known_;  ///< the text written last, and as it is written: a pass puts in the same text
  std::string knownBytes_;
  std::string textTag_;
  std::string_view leadingBlanks_;  ///< of the element at hand, not yet written
  std::string_view trailingBlanks_;
  bool deletesEach_ = false;
  HighlightedProperties highlighted_{withHighlight};
};

template <class Put>
void RunWriter::beside(std::string_view runProperties, Put put) {
  interrupt();
  const Run atHand = run_;
  beginNew(runProperties);
  put();
  endNew();
  run_ = atHand;
  opens_.enterRun(run_.tag);
}

}  // namespace pluvo::docx
