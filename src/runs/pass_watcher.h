#pragma once

#include "asking.h"
#include "document/place_names.h"
#include "document_run.h"
#include "engine/observer.h"
#include "memory/document.h"
#include "paragraph_counter.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pluvo::runs {

/// A refusal by the word processor as a run tells of it.
Failure failureFrom(const errors::Fault& fault);
Failure failureFrom(const errors::DocumentError& error);

/// Hears of every block of a pass over one document. It hands blocks on and has questions about them
/// answered. It stops the pass where a change was refused, or the document cannot be saved.
class PassWatcher final : public engine::Observer {
 public:
  /// All of them outlive it. The obstacle is why the document may not be replaced, where it would be. Where
  /// counts by place are wanted it adds to them.
  PassWatcher(memory::MemoryDocument& document, const engine::Request& request,
              const std::optional<Failure>& obstacle, bool keepGoing, Asking& asking, const BlockSink& blocks,
              CountsByPlace* places)
      : document_(document),
        request_(request),
        obstacle_(obstacle),
        keepGoing_(keepGoing),
        asking_(asking),
        blocks_(blocks),
        places_(places) {}

  void enters(std::int32_t story) override;
  Next searching() override { return asking_.isCancelled() ? Next::stop : Next::goOn; }
  Next found(const engine::Block& block) override;
  Decision decide(const engine::Block& block) override;
  Next operated(const engine::Block& block, const errors::Fault* refusal) override;
  Next skipped(const engine::Block& block) override;
  void failed(const errors::Fault& fault, errors::Tag tag) override;

  /// Why the first change was refused, if one was.
  const std::optional<Failure>& firstRefusal() const { return firstRefusal_; }
  /// The failure that ended the pass before all blocks were found.
  const std::optional<Failure>& failure() const { return failure_ ? failure_ : lastFault_; }

 private:
  std::pair<std::int32_t, std::int32_t> changedSpan(word::Range& place) const;
  /// Whether anybody is shown the blocks; reading them costs.
  bool looks() const { return blocks_ != nullptr || request_.confirmEach; }
  PlaceCounts& counts() const { return places_->at(static_cast<std::size_t>(name_.place)); }
  Failure inPlace(const errors::Fault& fault) const;
  void leave(const engine::Block& block);

  memory::MemoryDocument& document_;
  const engine::Request& request_;
  const std::optional<Failure>& obstacle_;
  const bool keepGoing_;
  Asking& asking_;
  const BlockSink& blocks_;
  CountsByPlace* places_;
  std::int32_t story_ = 0;
  document::StoryName name_;
  std::string place_;                       ///< the story's name in words; empty for main text
  std::vector<document::StoryName> names_;  ///< of all stories, once the pass has left main text
  std::optional<Failure> firstRefusal_;
  std::optional<Failure> failure_;
  std::optional<Failure> lastFault_;  ///< unless it was that of a refused change
  ParagraphCounter paragraphs_;
  BlockReport current_;
  std::int32_t paragraphAfter_ = 0;  ///< at the block's end
  std::int32_t lengthBefore_ = 0;    ///< of the place, before the operation
};

}  // namespace pluvo::runs
