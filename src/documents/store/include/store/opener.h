#pragma once

#include "memory/opener.h"
#include "store/store.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace pluvo::store {

/// Asks where a document that may not be saved under its own path is to be saved; nothing when the user
/// changed their mind. The name must be free.
using SaveAsChooser = std::function<std::optional<std::string>(const std::string& path)>;

/// Opens stored documents for the word processor of documents in memory. What goes wrong with a file is a
/// Fault: 5174 (no such file, or unreadable), 5408 (a password for opening or changing it),
/// 5792 (no sound document of a known kind); on
/// saving 5155 (may not be written) and 5356 (could not be written). Its description says what to do.
class StoreOpener : public memory::DocumentOpener {
 public:
  StoreOpener(Store store, SaveAsChooser chooser);
  /// Also opens temporary files and protected documents: the user is asked about them.
  memory::OpenedFile open(const std::string& path) override;

 private:
  Store store_;
  SaveAsChooser chooser_;
};

}  // namespace pluvo::store
