#pragma once

#include "documents/support/notation.h"
#include "engine/asked.h"
#include "engine/engine.h"
#include "memory/application.h"

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::engine {

/// Writes down the blocks that are found and the faults, each fault as "number tag", and decides as it was
/// told to.
struct Watch : Observer {
  Answer searching() override { return --searches == 0 ? Answer::stop : Answer::goOn; }
  Answer found(const Block& block) override {
    const char name = static_cast<char>('a' + blocks.size());
    blocks[name] = {block.whole.Start(), block.whole.End()};
    return blocks.size() < most ? Answer::goOn : Answer::stop;
  }
  Decision decide(const Block& block) override {
    deciding(block);
    if (decisions.empty()) return Observer::decide(block);
    const Decision decision = decisions.front();
    decisions.pop_front();
    return decision;
  }
  void failed(const errors::Fault& fault, errors::Tag tag) override {
    faults.push_back(std::to_string(fault.number) + ' ' + std::string(tag.text.begin(), tag.text.end()));
  }

  notation::Ranges blocks;
  std::size_t most = 26;
  int searches = 0;  ///< how many are to be made, one less; 0 and less: all
  std::deque<Decision> decisions;
  std::function<void(const Block&)> deciding = [](const Block&) {};
  std::vector<std::string> faults;
};

/// An engine before one document, which is written in the notation of documents/support.
struct Desk {
  explicit Desk(std::string_view notation) : sample(notation) { application.add(sample.document); }

  PassResult pass(const Asked& asked) { return engine.pass(asked.request()); }
  /// The document, with the blocks found marked a, b, c … and so on as they were found.
  std::string found() { return notation::print(sample.model(), watch.blocks); }
  std::string text() { return notation::print(sample.model()); }

  notation::Sample sample;
  memory::MemoryApplication application;
  Watch watch;
  Engine engine{application, watch};
};

}  // namespace pluvo::engine
