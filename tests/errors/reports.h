#pragma once

#include "errors/clsErrorLogging.h"
#include "errors/context.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::errors {

/// A context whose reports are kept, each as "number tag".
struct WatchedContext : MessageSink {
  WatchedContext() { context.reporter = std::make_shared<clsErrorLogging>(context.currentFault, *this); }
  void show(const std::u16string&, const std::optional<std::u16string>&) override {
    reports.push_back(std::to_string(context.currentFault.number) + ' ' +
                      std::string(context.locationTag.begin(), context.locationTag.end()));
  }

  Context context;
  std::vector<std::string> reports;
};

}  // namespace pluvo::errors
