#pragma once

#include "base/text.h"
#include "base/utf.h"
#include "dialog/clsProcessFind.h"
#include "engine/desk.h"
#include "errors/reports.h"
#include "forms/doubles.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pluvo::dialog {

using engine::Request;

/// A clsProcessFind, what it works with, and nobody else. Quiet, unless said otherwise.
class Workplace : public errors::WatchedContext {
 public:
  explicit Workplace(const std::shared_ptr<word::Application>& application)
      : engine({[application] { return application; }, context, boxes, forms}) {
    engine.QuiteModeSetting(true);
  }

  void ask(const Request& asked) {
    engine.BeginBlock(asked.begin);
    engine.EndBlock(asked.end);
    engine.InsideBlock(asked.inside);
    engine.UnitsApart(base::decimal(asked.distance));
    engine.UnitsApartType(asked.unit);
    engine.Operation(asked.operation);
    engine.OperationLocation(asked.location);
    engine.BeforeOrAfter(asked.place);
    engine.ReplaceInsertTextString(asked.text);
    engine.HighlightColorSetting(asked.highlightColour);
    engine.ExtraSpaceSetting(asked.extraSpace);
    engine.MatchOnlyWholeWords(asked.wholeWords);
    engine.MatchTextCaseSetting(asked.matchCase);
    engine.StartFindsAtBeginningSetting(asked.startAtTop);
    engine.ConfirmEachOperationsetting(asked.confirmEach);
    engine.LiftLimitsSetting(asked.liftLimits);
    engine.ShowFieldCodes(asked.showFieldCodes);
  }
  void pass(const Request& asked) {
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

/// A workplace with one document, written in the notation of support.
class Desk {
 public:
  explicit Desk(std::string_view notation)
      : sample(notation), application(std::make_shared<engine::BatchingApplication>()), work(application) {
    application->add(sample.document);
  }

  std::string text() { return notation::print(sample.mainText()); }

  notation::Sample sample;
  std::shared_ptr<engine::BatchingApplication> application;
  Workplace work;
};

}  // namespace pluvo::dialog
