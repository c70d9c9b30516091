#pragma once

#include "engine/observer.h"
#include "engine/pass_result.h"
#include "engine/request.h"
#include "errors/guarded.h"
#include "word/word_processor.h"

#include <memory>

namespace pluvo::engine {

/// Finds the blocks of a request in the active document, and operates on them: in one call, or block by
/// block.
///
/// Each procedure works under its own location tag. A fault goes to the observer, the procedure returns its
/// default result, and its caller goes on. Nothing is thrown but what Observer::failed throws.
class Engine {
 public:
  /// Both outlive the engine.
  Engine(word::Application& application, Observer& observer);
  ~Engine();
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  /// A whole pass: it is prepared, and made.
  PassResult pass(const Request& request);

  /// Prepares a pass. Where that fails there is nothing to find, make or skip.
  void InitializeFind(const Request& request);
  /// Makes the prepared pass over all blocks that are left; the search resumes after each block.
  void ProcessAllBlocks();

  // One block at a time; the search resumes after its beginning. All that such a pass changes is one step to
  // undo. It ends where FindNextItem finds no other block, with the next InitializeFind, and with endPass.
  /// Finds the next block, and selects it where that is asked for. The request's confirmEach does not matter.
  bool FindNextItem(bool selects = false);
  void MakeChanges();
  void SkipChanges();
  /// The pass is gone on with no more.
  void endPass();

  /// The result of the pass since InitializeFind.
  const PassResult& result() const;
  /// The tag of the procedure entered last.
  errors::Tag tag() const;

 private:
  struct State;

  std::unique_ptr<State> state_;
};

}  // namespace pluvo::engine
