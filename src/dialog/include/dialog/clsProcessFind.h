#pragma once

#include "dialog/file_stepper.h"
#include "dialog/labour.h"
#include "engine/engine.h"
#include "engine/observer.h"
#include "engine/request.h"
#include "errors/context.h"
#include "forms/form.h"
#include "forms/message_boxes.h"
#include "word/word_processor.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::dialog {

/// The distance that stands for none.
inline constexpr const char16_t* kSame = u"Same";

/// The engine as dialogs and scripts drive it: a request is given property by property, questions are asked
/// in boxes, and faults are reported.
///
/// A property stores its value and does nothing else; one that takes 32 bits and stores 16 throws Fault
/// kOverflow. No other member lets a fault out: each works under its own location tag, reports through the
/// context's reporter and returns its default result. Only a fault of the reporter's own, such as a log that
/// cannot be written, reaches the caller.
class clsProcessFind {
 public:
  /// The objects it works with. All outlive it.
  struct Services {
    /// Makes the word processor's global object; called at its first use, and then never again.
    std::function<std::shared_ptr<word::Application>()> application;
    errors::Context& context;
    forms::MessageBoxes& boxes;
    forms::FormHost& forms;
    /// Does long work; null where the callers do it themselves, at once.
    Labour* labour = nullptr;
  };

  explicit clsProcessFind(Services services);
  ~clsProcessFind();
  clsProcessFind(const clsProcessFind&) = delete;
  clsProcessFind& operator=(const clsProcessFind&) = delete;

  // The request. A distance is decimal text, or kSame; codes are those of engine/request.h.
  /// Whether the pass is one file of a multi-file run.
  bool MultiFileRun() const { return multiFileRun_; }
  void MultiFileRun(bool value) { multiFileRun_ = value; }
  /// Where a multi-file run looks for files; ends with the folder separator.
  const std::u16string& StartingDirectory() const { return startingDirectory_; }
  void StartingDirectory(std::u16string folder) { startingDirectory_ = std::move(folder); }
  /// Which files it takes: masks between commas.
  const std::u16string& Masks() const { return masks_; }
  void Masks(std::u16string masks) { masks_ = std::move(masks); }
  /// Stops a multi-file run after the current document.
  /// It may be set from any thread.
  bool CancelOperation() const { return cancelOperation_; }
  void CancelOperation(bool value) { cancelOperation_ = value; }
  bool ShowFieldCodes() const { return request_.showFieldCodes; }
  void ShowFieldCodes(bool value) { request_.showFieldCodes = value; }
  void BeginBlock(std::u16string text) { request_.begin = std::move(text); }
  void EndBlock(std::u16string text) { request_.end = std::move(text); }
  void InsideBlock(std::u16string text) { request_.inside = std::move(text); }
  void UnitsApart(std::u16string distance) { unitsApart_ = std::move(distance); }
  void UnitsApartType(std::int32_t code);
  void Operation(std::int32_t code);
  void BeforeOrAfter(std::int32_t code);
  void OperationLocation(std::int32_t code);
  void ReplaceInsertTextString(std::u16string text) { request_.text = std::move(text); }
  void MatchOnlyWholeWords(bool value) { request_.wholeWords = value; }
  void ExtraSpaceSetting(bool value) { request_.extraSpace = value; }
  void MatchTextCaseSetting(bool value) { request_.matchCase = value; }
  void StartFindsAtBeginningSetting(bool value) { request_.startAtTop = value; }
  void HighlightColorSetting(std::int16_t index) { request_.highlightColour = index; }
  bool QuiteModeSetting() const { return quiet_; }
  void QuiteModeSetting(bool value) { quiet_ = value; }
  bool ConfirmEachOperationsetting() const { return request_.confirmEach; }
  void ConfirmEachOperationsetting(bool value) { request_.confirmEach = value; }
  void LiftLimitsSetting(bool value) { request_.liftLimits = value; }
  /// The kinds of stories in which passes work; main text alone at first.
  void StoriesSetting(word::StoryKinds stories) { request_.stories = stories; }
  /// The values set; texts and distance are as the last pass took them.
  const engine::Request& request() const { return request_; }
  /// The request as the next pass takes it. Throws Fault where the distance is no number, or none of 16 bits.
  engine::Request preparedRequest();
  /// The text as a pass would search for it.
  engine::SearchedText searched(std::u16string_view text) const {
    return engine::searchedText(text, request_.liftLimits);
  }
  /// Whether insertions have the extra space although it is no longer asked for. Once a pass had it, it stays
  /// for the life of this object.
  bool keepsExtraSpace() const { return keepsExtraSpace_; }
  /// The folder in which the folder picker opens.
  void BrowseStart(std::u16string folder) { browseStart_ = std::move(folder); }

  // One block at a time. All that such a pass changes is one step to undo. It ends where FindNextItem finds
  // no other block, with the next InitializeFind, and with endPass. Where InitializeFind reports a fault
  // there is nothing to find, make or skip.
  void InitializeFind();
  /// Finds the next block. True where there is one and each operation is to be confirmed: this serves
  /// confirming callers only.
  bool FindNextItem();
  void MakeChanges();
  void SkipChanges();
  /// The user goes on with the pass no more.
  void endPass();
  /// Adds the pass's line to the run summary, and unless quiet shows what the pass did.
  void ChangesSummary();
  /// The result of the pass so far; nothing where none could be prepared.
  engine::PassResult result() const { return pass_ ? pass_->result() : engine::PassResult(); }

  // A whole pass over the active document.
  void GoGetEmFARBOT();

  // Many files.
  std::vector<std::u16string> GetFiles(bool subFolders, std::int16_t depth);
  void MultiPLUVO(const std::vector<std::u16string>& files);
  bool MultiPLUVO_OpenNextFile(const std::vector<std::u16string>& files, std::int32_t& index);
  void MultiPLUVO_CloseFile();
  /// The user goes on with the run no more.
  void abandonFiles();
  /// Adds a document's line to the run summary, of a pass that was made elsewhere.
  void summarize(const engine::PassResult& done, const std::u16string& documentName);
  std::u16string BrowseForFolder();

  /// Is told of every block of GoGetEmFARBOT, MakeChanges and SkipChanges; none where null.
  void observer(engine::PassObserver* observer) { observer_ = observer; }
  /// Gives it its way to files.
  void stepper(std::shared_ptr<FileStepper> stepper) { stepper_ = std::move(stepper); }

  errors::Context& context() const { return services_.context; }
  forms::MessageBoxes& boxes() const { return services_.boxes; }
  forms::FormHost& forms() const { return services_.forms; }
  /// Callers give it long work: passes, runs and searches for files.
  Labour& labour() { return services_.labour != nullptr ? *services_.labour : atOnce_; }
  /// The word processor. Throws Fault kObjectNotSet where there is none.
  word::Application& application();

 private:
  class Client;

  template <class Step>
  auto step(errors::Tag tag, Step step);
  void ProcessAllBlocks();
  FileStepper& requiredStepper() const;
  std::u16string documentName();

  Services services_;
  Labour atOnce_;
  std::shared_ptr<word::Application> application_;
  std::shared_ptr<FileStepper> stepper_;
  engine::PassObserver* observer_ = nullptr;

  /// As long as nothing is set, every code is 0 and every switch off.
  engine::Request request_{
      .unit = engine::kWords, .highlightColour = word::wdNoHighlight, .startAtTop = false};
  std::u16string unitsApart_;
  bool keepsExtraSpace_ = false;
  bool quiet_ = false;
  bool multiFileRun_ = false;
  std::atomic<bool> cancelOperation_ = false;
  std::u16string startingDirectory_;
  std::u16string masks_;
  std::u16string browseStart_;

  std::unique_ptr<Client> client_;
  /// That of the last InitializeFind; none where it could not be prepared.
  std::unique_ptr<engine::Engine> pass_;
};

}  // namespace pluvo::dialog
