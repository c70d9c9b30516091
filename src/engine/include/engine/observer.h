#pragma once

#include "errors/fault.h"
#include "errors/guarded.h"
#include "word/word_processor.h"

namespace pluvo::engine {

/// A block as a pass stands at it. The ranges are the pass's own, to be read only. A text is read only on
/// demand, since a block may be as long as the document.
struct Block {
  word::Range& whole;
  word::Range& begin;
  word::Range* end;       ///< none where the request has no ending
  word::Range* inside;    ///< none where the request has no inside text
  word::Range* operated;  ///< the one the operation acts on; none where it changes nothing
};

/// Is told of every block of a pass, before and after the operation.
class PassObserver {
 public:
  enum class Next { goOn, stop };

  virtual ~PassObserver() = default;

  /// A pass over the active document is prepared; nothing of it has changed yet.
  virtual void begins() {}
  /// The pass goes on in the story of that number; see word::Document. It comes to main text untold.
  virtual void enters(std::int32_t /*story*/) {}
  /// The engine is about to look for a beginning; stop ends the pass as if there were none. This comes often,
  /// also where no block is found, so that a program can answer its windows meanwhile.
  virtual Next searching() { return Next::goOn; }
  /// A beginning and an ending were found, and left because they are too far apart.
  virtual void tooFar() {}
  /// A block was found; stop ends the pass before anything is done with it.
  virtual Next found(const Block&) { return Next::goOn; }
  /// The operation was carried out, or refused with a fault that was given to the observer; stop ends the
  /// pass.
  virtual Next operated(const Block&, const errors::Fault* refusal) {
    static_cast<void>(refusal);
    return Next::goOn;
  }
  /// It was decided to pass the block by.
  virtual Next skipped(const Block&) { return Next::goOn; }
};

/// Whom an engine works for: hears of every block, decides about it where the request wants that, and takes
/// the faults.
class Observer : public PassObserver {
 public:
  enum class Decision { operate, skip, stop };

  /// The decision on the block, which is selected meanwhile. Asked where each is to be confirmed.
  virtual Decision decide(const Block&) { return Decision::stop; }
  /// A procedure ended with a fault, and its caller goes on. The tag is that of the procedure entered last.
  /// An exception from here counts as a fault of that caller, and leaves the engine where there is none.
  virtual void failed(const errors::Fault& fault, errors::Tag tag) = 0;
};

}  // namespace pluvo::engine
