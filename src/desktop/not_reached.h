#pragma once

#include "elsewhere/elsewhere.h"
#include "engine/request.h"
#include "open_document.h"
#include "work.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pluvo::desktop {

/// Looks where the request of a pass did not work, or hears it of the files of a run. Keeps what it finds
/// until the run has ended.
class NotReached {
 public:
  explicit NotReached(Work& work) : work_(work) {}

  void passBegins(const std::shared_ptr<memory::MemoryDocument>& document, engine::Request request);
  /// The document of the pass that nothing was looked for since; null where there is none or it is closed.
  std::shared_ptr<memory::MemoryDocument> awaited() const { return document_.lock(); }
  /// Looks in the document that is awaited; then is called in the end.
  void look(const OpenDocument& document, std::function<void()> then);
  /// The findings of a run over files in one of them.
  void add(std::u16string name, const elsewhere::Elsewhere& found);

  /// A sentence about the run that has ended, which is forgotten; empty where everything was reached.
  std::u16string takeWords();

 private:
  Work& work_;
  std::weak_ptr<memory::MemoryDocument> document_;
  engine::Request request_;
  elsewhere::Elsewhere found_;
  std::size_t documents_ = 0;
  std::vector<std::u16string> names_;  ///< of those in which something was not reached
};

}  // namespace pluvo::desktop
