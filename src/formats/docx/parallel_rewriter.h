#pragma once

#include "rewriter.h"

#include <functional>
#include <memory>
#include <vector>

namespace pluvo::docx {

/// Carries an edit of one story over to its bytes. A large story is divided among the processors; the bytes
/// come out as from one walk.
class ParallelRewriter {
 public:
  /// Makes a rewriter for all of the story.
  using Make = std::function<std::unique_ptr<Rewriter>(Identifiers&)>;

  /// The new bytes; the spans hold as long as this.
  std::vector<base::ByteSpan> rewrite(const Make& make, Identifiers& identifiers);

 private:
  /// The visits from a place on, which one rewriter makes.
  struct Part {
    Rewriter::Place place = {};
    std::vector<text::Span> visits = {};
    std::unique_ptr<Identifiers> identifiers = {};
    std::unique_ptr<Rewriter> rewriter = {};
    bool isSound = false;
  };

  void divide();
  void prepare(const Make& make, const Identifiers& identifiers, std::size_t touches);
  void makeVisits(std::size_t of, Rewriter& by);
  void tryPart(std::size_t number);
  std::vector<base::ByteSpan> joined(Identifiers& identifiers);

  std::vector<Part> parts_;  ///< in the order of the text
};

}  // namespace pluvo::docx
