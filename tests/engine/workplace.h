#pragma once

#include "base/utf.h"
#include "documents/support/notation.h"
#include "engine/clsProcessFind.h"
#include "errors/reports.h"
#include "forms/doubles.h"
#include "memory/application.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pluvo::engine {

/// What a test asks of an engine. Quiet, and from the top, unless said otherwise.
struct Asked {
  std::u16string begin = {};
  std::u16string end = {};
  std::u16string inside = {};
  std::u16string apart = u"Same";
  std::int32_t unit = kEntireDocument;
  OperationCode operation = kNone;
  LocationCode on = kSelection;
  PlaceCode place = kBefore;
  std::u16string text = {};
  bool wholeWords = false;
  bool matchCase = true;
  bool atTop = true;
  bool confirm = false;
  bool lift = false;
  bool fieldCodes = false;
};

/// An engine, what it works with, and nobody else.
class Workplace : public errors::WatchedContext {
 public:
  explicit Workplace(const std::shared_ptr<word::Application>& application)
      : engine({[application] { return application; }, context, boxes, forms}) {
    engine.QuiteModeSetting(true);
  }

  void ask(const Asked& asked) {
    engine.BeginBlock(asked.begin);
    engine.EndBlock(asked.end);
    engine.InsideBlock(asked.inside);
    engine.UnitsApart(asked.apart);
    engine.UnitsApartType(asked.unit);
    engine.Operation(asked.operation);
    engine.OperationLocation(asked.on);
    engine.BeforeOrAfter(asked.place);
    engine.ReplaceInsertTextString(asked.text);
    engine.HighlightColorSetting(word::wdYellow);
    engine.MatchOnlyWholeWords(asked.wholeWords);
    engine.MatchTextCaseSetting(asked.matchCase);
    engine.StartFindsAtBeginningSetting(asked.atTop);
    engine.ConfirmEachOperationsetting(asked.confirm);
    engine.LiftLimitsSetting(asked.lift);
    engine.ShowFieldCodes(asked.fieldCodes);
  }
  void pass(const Asked& asked) {
    ask(asked);
    engine.GoGetEmFARBOT();
  }
  /// The operated count, from the summary.
  std::string lastSummary() const {
    const std::u16string& summary = context.runSummary;
    const std::size_t line = summary.rfind(u"\r\n");
    return line == std::u16string::npos ? "" : base::utf8(summary.substr(line + 2));
  }

  forms::ScriptedBoxes boxes;
  forms::ScriptedForms forms;
  clsProcessFind engine;
};

/// A workplace with one document, written in the notation of documents/support.
class Desk {
 public:
  explicit Desk(std::string_view notation)
      : sample(notation), application(std::make_shared<memory::MemoryApplication>()), work(application) {
    application->add(sample.document);
    work.engine.observer(&watch);
  }

  /// The document, with the blocks found marked a, b, c … and so on as they were found.
  std::string found() { return notation::print(sample.model(), watch.blocks); }
  std::string text() { return notation::print(sample.model()); }

  struct Watch : PassObserver {
    Answer searching() override { return --searches == 0 ? Answer::stop : Answer::goOn; }
    Answer found(const Block& block) override {
      const char name = static_cast<char>('a' + blocks.size());
      blocks[name] = {block.whole.Start(), block.whole.End()};
      return blocks.size() < most ? Answer::goOn : Answer::stop;
    }
    notation::Ranges blocks;
    std::size_t most = 26;
    int searches = 0;  ///< how many are to be made, one less; 0 and less: all
  };

  notation::Sample sample;
  std::shared_ptr<memory::MemoryApplication> application;
  Workplace work;
  Watch watch;
};

}  // namespace pluvo::engine
