#pragma once

#include "dialog/clsProcessFind.h"
#include "dialog/file_stepper.h"
#include "dialog/folder_picker.h"
#include "dialog/frmPassword.h"
#include "multifile/originals.h"
#include "scanner/clsDirParsing.h"
#include "scanner/folders.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace pluvo::multifile {

/// Takes an engine from file to file: finds the files of a folder, then opens, unlocks, processes, protects
/// and closes each. It serves one engine.
///
/// A failure with one file does not stop the run: the user is asked, or the fault is reported, and the
/// file is left out.
class FileDriver final : public dialog::FileStepper {
 public:
  using PickerMaker = std::function<std::unique_ptr<dialog::FolderPicker>()>;

  explicit FileDriver(std::unique_ptr<scanner::Folders> folders = scanner::machineFolders(),
                      PickerMaker makePicker = {});
  ~FileDriver() override;

  /// Sorted, where there are not more than 301.
  std::vector<std::u16string> GetFiles(dialog::clsProcessFind& engine, bool subFolders,
                                       std::int16_t depth) override;
  void MultiPLUVO(dialog::clsProcessFind& engine, const std::vector<std::u16string>& files) override;
  bool MultiPLUVO_OpenNextFile(dialog::clsProcessFind& engine, const std::vector<std::u16string>& files,
                               std::int32_t& index) override;
  void MultiPLUVO_CloseFile(dialog::clsProcessFind& engine) override;
  std::u16string BrowseForFolder(dialog::clsProcessFind& engine, const std::u16string& start) override;
  std::shared_ptr<word::Document> currentDocument() override { return document_; }
  /// From now on the original of each file is copied before the changed one is saved, and the summary of the
  /// run names their folder.
  void keepOriginals(std::unique_ptr<Originals> originals) { originals_ = std::move(originals); }
  /// A sentence about those of the last run; empty where there are none.
  std::u16string toldOfRun() const override { return originals_ ? originals_->told() : std::u16string(); }

 private:
  using Document = std::shared_ptr<word::Document>;
  using Work = std::function<void()>;
  /// Does one step of a file; false: on to the next file.
  using Step = std::function<bool(const Work& work)>;

  bool OpenDocumentFile(dialog::clsProcessFind& engine, Document& document, const std::u16string& path);
  bool CloseDocumentFile(dialog::clsProcessFind& engine, Document& document, bool readOnly,
                         const std::u16string& fileName);
  bool UnlockProtectedDocument(dialog::clsProcessFind& engine, Document& document, std::u16string& password,
                               std::int16_t& protectionType);

  void processFile(dialog::clsProcessFind& engine, const std::u16string& path);
  bool makeReady(dialog::clsProcessFind& engine, const std::u16string& path, const std::u16string& joint,
                 const Step& step);
  void giveUp(dialog::clsProcessFind& engine, const std::u16string& path);
  bool stepWith(dialog::clsProcessFind& engine, Document& document, const Work& work);
  void protectAgain();
  void closeCurrentFile(dialog::clsProcessFind& engine);
  void beginRun(dialog::clsProcessFind& engine);
  void summarize(dialog::clsProcessFind& engine) const;

  std::unique_ptr<scanner::Folders> folders_;
  PickerMaker makePicker_;
  std::unique_ptr<scanner::clsDirParsing> scanner_;
  std::unique_ptr<dialog::frmPassword> passwordPrompt_;

  Document document_;
  std::u16string path_;
  /// For messages, and to find the document again.
  std::u16string fileName_;
  bool readOnly_ = false;
  std::int16_t protectionType_ = word::wdNoProtection;
  /// Kept from file to file.
  std::u16string protectionPassword_;

  std::unique_ptr<Originals> originals_;
  /// In how many files of the run changes are tracked.
  std::int64_t tracked_ = 0;
};

}  // namespace pluvo::multifile
