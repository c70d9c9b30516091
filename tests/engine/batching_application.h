#pragma once

#include "memory/application.h"

#include <memory>
#include <string>

namespace pluvo::engine {

/// Writes down what begins and ends: [ and ] a step to undo, ( and ) edits that nobody sees, < and > edits
/// that the user sees.
class BatchingApplication : public memory::MemoryApplication {
 public:
  std::unique_ptr<word::Batch> beginUndoStep() override { return begun('[', ']'); }
  std::unique_ptr<word::Batch> beginEdits(bool seen) override {
    return seen ? begun('<', '>') : begun('(', ')');
  }
  std::string told;

 private:
  std::unique_ptr<word::Batch> begun(char begin, char end) {
    struct Open : word::Batch {
      Open(std::string& out, char at) : told(out), end(at) {}
      ~Open() override { told += end; }
      std::string& told;
      char end;
    };
    told += begin;
    return std::make_unique<Open>(told, end);
  }
};

}  // namespace pluvo::engine
