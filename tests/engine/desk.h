#pragma once

#include "engine/engine.h"
#include "memory/application.h"
#include "support/notation.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::engine {

/// Writes down the blocks that are found and the faults, each as "number tag", and does as it was told to.
struct Watch : Observer {
  Next searching() override { return --searches == 0 ? Next::stop : Next::goOn; }
  Next found(const Block& block) override {
    blocks.push_back({block.whole.Start(), block.whole.End()});
    return blocks.size() < most ? Next::goOn : Next::stop;
  }
  Decision decide(const Block& block) override {
    deciding();
    EXPECT_EQ(block.whole.Start(), blocks.back().from);
    if (decisions.empty()) return Observer::decide(block);
    const Decision decision = decisions.front();
    decisions.pop_front();
    return decision;
  }
  Next operated(const Block&, const errors::Fault* refusal) override {
    if (refusal != nullptr) refusals.push_back(refusal->number);
    return Next::goOn;
  }
  Next skipped(const Block&) override {
    ++skips;
    return Next::goOn;
  }
  void failed(const errors::Fault& fault, errors::Tag tag) override {
    faults.push_back(std::to_string(fault.number) + ' ' + std::string(tag.text.begin(), tag.text.end()));
  }

  std::vector<text::Span> blocks;
  std::size_t most = 1000;
  int searches = 0;  ///< how many are to be made, one less; 0 and less: all
  std::deque<Decision> decisions;
  std::function<void()> deciding = [] {};
  std::vector<std::int32_t> refusals;
  std::vector<std::string> faults;
  int skips = 0;
};

/// Writes down what begins and ends: [ and ] a step to undo, ( and ) edits that nobody sees, < and > edits
/// that the user sees.
struct BatchingApplication : memory::MemoryApplication {
  struct Open : word::Batch {
    Open(std::string& out, char begin, char end) : told(out), at(end) { told += begin; }
    ~Open() override { told += at; }
    std::string& told;
    char at;
  };
  std::unique_ptr<word::Batch> beginUndoStep() override { return std::make_unique<Open>(told, '[', ']'); }
  std::unique_ptr<word::Batch> beginEdits(bool seen) override {
    return std::make_unique<Open>(told, seen ? '<' : '(', seen ? '>' : ')');
  }
  std::string told;
};

/// An engine before one document, which is written in the notation of support.
template <class Application>
struct DeskOver {
  explicit DeskOver(std::string_view notation) : sample(notation) { application.add(sample.document); }

  PassResult pass(const Request& request) { return engine.pass(request); }
  std::string text() { return notation::print(sample.mainText()); }
  /// The document, with the blocks found marked a, b, c … as they were found.
  std::string found() {
    notation::Ranges ranges;
    for (const text::Span& block : watch.blocks) ranges[static_cast<char>('a' + ranges.size())] = block;
    return notation::print(sample.mainText(), ranges);
  }

  notation::Sample sample;
  Application application;
  Watch watch;
  Engine engine{application, watch};
};
using Desk = DeskOver<BatchingApplication>;

}  // namespace pluvo::engine
