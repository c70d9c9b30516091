#pragma once

#include "document_run.h"
#include "engine/observer.h"
#include "paragraph_counter.h"
#include "run_opener.h"

#include <optional>
#include <string>
#include <utility>

namespace pluvo::cli {

/// Hears of every block of a pass over one document: counts, hands blocks on, and stops the pass
/// where going on makes no sense: a document that cannot be saved, a change that was refused.
class PassWatcher final : public engine::PassObserver {
 public:
  PassWatcher(const RunFile& file, const Surroundings& around, const engine::Request& request,
              const BlockSink& blocks, Outcome& outcome)
      : file_(file),
        document_(*file.stored().document()),
        around_(around),
        request_(request),
        blocks_(blocks),
        outcome_(outcome) {}

  void tooFar() override { ++outcome_.tooFar; }
  Answer found(const engine::Block& block) override;
  Answer operated(const engine::Block& block, const errors::Fault* refusal) override;
  Answer skipped(const engine::Block& block) override;

  /// Changes that were refused and passed over, with --keep-going.
  std::int64_t refused() const { return refused_; }
  const std::optional<Failure>& firstRefusal() const { return firstRefusal_; }

  /// The block the pass stands at, for whoever asks about it.
  const BlockReport& current() const { return current_; }

 private:
  std::pair<std::int32_t, std::int32_t> changedSpan(word::Range& place) const;
  /// Whether anybody is shown the blocks; reading them costs.
  bool looks() const;
  void leave(const engine::Block& block);
  Excerpt excerpt(std::int32_t start, std::int32_t end) const;

  const RunFile& file_;
  word::Document& document_;
  const Surroundings& around_;
  const engine::Request& request_;
  const BlockSink& blocks_;
  Outcome& outcome_;
  std::int64_t refused_ = 0;
  std::optional<Failure> firstRefusal_;
  ParagraphCounter paragraphs_;
  BlockReport current_;
  std::int32_t paragraphBehind_ = 0;  ///< at the block's end
  std::int32_t lengthBefore_ = 0;     ///< of the place, before the operation
};

}  // namespace pluvo::cli
