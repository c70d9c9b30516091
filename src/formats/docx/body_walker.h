#pragma once

#include "run_walker.h"

#include <string>
#include <vector>

namespace pluvo::docx {

/// Walks the body of a main part, or the element of another story. It alone knows which of its bytes are
/// characters of the text.
///
/// Hyperlinks, content controls, smart tags, tracked changes and the chosen one of alternative contents are
/// transparent: their runs are text. Text boxes, the inside of drawings, and elements of other vocabularies
/// are not. A formula is one character, like a picture. Of text with a phonetic guide the base is text. A run
/// that holds nothing else is opened as a run, and its inside (ruby) as a container.
class BodyWalker {
 public:
  BodyWalker(base::ByteSpan part, const std::string& partName, BodyEvents& events,
             Reach reach = Reach::mainText, xml::Swept swept = xml::Swept::no, Told told = Told::units);
  BodyWalker(const BodyWalker&) = delete;
  BodyWalker& operator=(const BodyWalker&) = delete;

  /// Takes one token, or a few that belong together; false at the end of the body.
  bool step();

  Position position() const { return walk_.position; }
  Offset offset() const { return walk_.scanner.end(); }
  /// Directly in the body and in no field: from such a place a walk can jump to another.
  bool betweenBlocks() const {
    return walk_.stack.size() == blocks_ && walk_.fields.empty() && suspended_.empty();
  }
  /// While a paragraph opens: whether the place before it is of that kind, in the story at hand.
  bool opensBetweenBlocks() const { return walk_.stack.size() == blocks_ + 1 && walk_.fields.empty(); }
  /// Whether text where the walk has come to keeps its blanks.
  bool preserves() const { return !walk_.stack.empty() && walk_.stack.back().preserves; }
  /// Jumps forward to such a place.
  void resumeAt(Offset offset, Position position);

  const xml::Scanner& scanner() const { return walk_.scanner; }
  /// The listener needs of each text only what a search reads.
  void isForSearch() { runs_.isForSearch(); }
  /// From here on the walk tells its events to this.
  void tell(BodyEvents& events) { walk_.events = &events; }

 private:
  using Context = Walk::Context;
  /// A story around the one at hand.
  struct Suspended {
    Position position;
    OpenFields fields;
    std::size_t blocks;
  };

  void take(Name name, xml::Token token);
  void takeInRun(Name name, xml::Token token);
  void takeOutside(Name name, xml::Token token);
  void enter(Name name, xml::Token token, Context within);
  void enterAlternative(Name name, xml::Token token, Context within);
  void enterSimpleField(xml::Token token);
  void enterOutside(Name name, xml::Token token);
  void enterStory(Name name, xml::Token token);
  void enterBody(xml::Token token);
  void leave(Extent endTag);
  void leaveStory();
  void control(xml::Token token);
  void formula(xml::Token token);
  void marker(Name name, xml::Token token);
  Walk::Open& blockContainer();

  Walk walk_;
  TextReader text_{walk_};
  PropertiesReader properties_{walk_};
  RunWalker runs_{walk_, properties_, text_};
  std::vector<Suspended> suspended_;
  std::vector<bool> alternatives_;  ///< per open alternative content: one was chosen
  std::size_t blocks_ = 2;          ///< elements around the blocks of the story at hand
  bool finished_ = false;
};

}  // namespace pluvo::docx
