#pragma once

#include "elsewhere/elsewhere.h"
#include "engine/request.h"
#include "open_document.h"
#include "working.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace pluvo::desktop {

/// Looks where the requests of passes did not work, and keeps what it finds until the run has ended: a run is
/// one pass over one document, or one over each of many files.
class NotReached {
 public:
  explicit NotReached(Working& working) : working_(working) {}

  void passBegins(const std::shared_ptr<memory::MemoryDocument>& document, engine::Request request);
  /// Whether the pass that began last was made over this document, and nothing was looked for since.
  bool awaits(const memory::MemoryDocument& document) const { return document_.lock().get() == &document; }
  /// The document of the pass that nothing was looked for since; null where there is none or it is closed.
  std::shared_ptr<memory::MemoryDocument> awaited() const { return document_.lock(); }
  /// Looks in the document that is awaited, in another thread.
  void look(const OpenDocument& document);

  /// A sentence about the run that has ended, which is forgotten; empty where everything was reached.
  std::u16string takeWords();

 private:
  Working& working_;
  std::weak_ptr<memory::MemoryDocument> document_;
  engine::Request request_;
  elsewhere::Elsewhere found_;
  std::size_t documents_ = 0;
  std::vector<std::u16string> names_;  ///< of those in which something was not reached
};

}  // namespace pluvo::desktop
