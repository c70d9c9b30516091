#include "multifile/file_driver.h"

#include "base/at_end.h"
#include "base/document_types.h"
#include "base/secret_text.h"
#include "base/text.h"
#include "base/utf.h"
#include "errors/context.h"
#include "errors/fault.h"
#include "host_faults.h"
#include "multifile/clsSorting.h"
#include "multifile/questions.h"
#include "saved_state.h"
#include "text/folding.h"
#include "word/faults.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace pluvo::multifile {

namespace {

/// Sorting costs the square of this.
constexpr std::size_t kMostSorted = 301;

/// The types that Windows takes with a mask as "*.doc" by short names, which keep three letters of a type.
std::u16string kinOf(std::u16string_view mask) {
  constexpr std::size_t kKept = 3;
  const std::u16string folded = text::foldCase(mask);
  std::u16string kin;
  for (const std::string_view type : base::kDocumentTypes) {
    const std::u16string all = base::utf16(type);
    if (all.size() > kKept && folded == u"*." + all.substr(0, kKept)) kin += u",*." + all;
  }
  return kin;
}

std::u16string withKin(std::u16string_view masks) {
  std::u16string all;
  for (std::size_t at = 0; at <= masks.size();) {
    const std::size_t end = std::min(masks.find(u',', at), masks.size());
    const std::u16string_view mask = masks.substr(at, end - at);
    if (at > 0) all += u',';
    all += mask;
    all += kinOf(mask);
    at = end + 1;
  }
  return all;
}

/// A file that two masks match is worked on once.
void dropRepeated(std::vector<std::u16string>& files) {
  std::unordered_set<std::u16string> seen;
  std::erase_if(files, [&](const std::u16string& file) { return !seen.insert(file).second; });
}

bool isTemporary(const std::u16string& path, const std::u16string& separator) {
  const std::size_t at = path.rfind(separator);
  const std::size_t name = at == std::u16string::npos ? 0 : at + separator.size();
  return path.substr(name).starts_with(u'~');
}

}  // namespace

FileDriver::FileDriver(std::unique_ptr<scanner::Folders> folders, PickerMaker makePicker)
    : folders_(std::move(folders)), makePicker_(std::move(makePicker)) {}

FileDriver::~FileDriver() { base::wipe(protectionPassword_); }

std::vector<std::u16string> FileDriver::GetFiles(dialog::clsProcessFind& engine, bool subFolders,
                                                 std::int16_t depth) {
  if (!scanner_) {
    scanner_ = std::make_unique<scanner::clsDirParsing>(engine.context(), *folders_,
                                                        engine.application().PathSeparator());
  }
  scanner_->RootDirectory(engine.StartingDirectory());
  scanner_->MasksCSstr(withKin(engine.Masks()));
  scanner_->ItemsToProcess(0);
  scanner_->DirectoriesDeep(depth);
  scanner_->ProcessSubDirectories(subFolders);
  scanner_->ProcessItems();
  std::vector<std::u16string> files = scanner_->ProcessedItems();
  dropRepeated(files);
  if (files.size() > kMostSorted) return files;
  clsSorting sorter(engine.context());
  sorter.SortType(0);
  sorter.Data(std::move(files));
  sorter.SortData();
  return sorter.Data();
}

void FileDriver::MultiPLUVO(dialog::clsProcessFind& engine, const std::vector<std::u16string>& files) {
  engine.CancelOperation(false);
  beginRun(engine);
  const base::AtEnd told([&] { summarize(engine); });
  for (std::size_t i = 0; i < files.size(); ++i) {
    if (engine.CancelOperation()) return;
    fileBegins(files[i], i + 1, files.size());
    processFile(engine, files[i]);
    document_.reset();
  }
}

void FileDriver::beginRun(dialog::clsProcessFind& engine) {
  tracked_ = 0;
  if (originals_) originals_->begin(engine.StartingDirectory());
}

/// The part of the summary below its lines of files.
void FileDriver::summarize(dialog::clsProcessFind& engine) const {
  std::u16string& summary = engine.context().runSummary;
  if (tracked_ > 0)
    summary += u"\r\n\r\nChanges are tracked in " + base::decimal(tracked_) +
               (tracked_ == 1 ? u" file" : u" files") + u": what was deleted there is still in the text.";
  if (const std::u16string originals = toldOfRun(); !originals.empty()) summary += u"\r\n\r\n" + originals;
}

void FileDriver::processFile(dialog::clsProcessFind& engine, const std::u16string& path) {
  const Step step = [&](const Work& work) { return stepWith(engine, document_, work); };
  if (!makeReady(engine, path, u"", step)) return;
  engine.GoGetEmFARBOT();
  if (!step([&] { protectAgain(); })) return;
  closeCurrentFile(engine);
}

/// Opens the file, has the user decide about it, and unlocks it. False: it is left out.
bool FileDriver::makeReady(dialog::clsProcessFind& engine, const std::u16string& path,
                           const std::u16string& joint, const Step& step) {
  document_.reset();
  if (isTemporary(path, engine.application().PathSeparator()) && skipTemporaryFile(engine.boxes()))
    return false;
  protectionType_ = word::wdNoProtection;
  path_ = path;
  if (!OpenDocumentFile(engine, document_, path)) return false;
  if (!step([&] { fileName_ = document_->Path() + joint + document_->Name(); })) return false;
  if (!step([&] { readOnly_ = document_->ReadOnly(); })) return false;
  if (readOnly_) {
    if (!step([&] { document_->WritePassword(u""); })) return false;
    if (!goOnReadOnly(engine.boxes())) {
      step([&] { document_->Close(false); });
      return false;
    }
  }
  if (!step([&] { document_->Activate(); })) return false;
  bool isProtected = false;
  if (!step([&] { isProtected = document_->ProtectionType() != word::wdNoProtection; })) return false;
  if (isProtected && !UnlockProtectedDocument(engine, document_, protectionPassword_, protectionType_))
    return false;
  faultOf([&] { tracked_ += document_->TrackRevisions() ? 1 : 0; });
  return true;
}

void FileDriver::protectAgain() {
  if (protectionType_ == word::wdNoProtection) return;
  document_->StoryRanges(word::wdMainTextStory)->Select();
  const bool isUnchanged = !readOnly_ && isSaved(*document_);
  document_->Protect(static_cast<word::WdProtectionType>(protectionType_), protectionPassword_);
  if (isUnchanged) keepSaved(*document_);
}

void FileDriver::closeCurrentFile(dialog::clsProcessFind& engine) {
  // A read-only file is saved elsewhere.
  if (originals_ && !readOnly_ && !isSaved(*document_) && !originals_->keep(path_)) {
    document_->Close(false);
    return;
  }
  if (!CloseDocumentFile(engine, document_, readOnly_, fileName_))
    tellOfDifficultiesClosing(engine.boxes(), fileName_);
}

bool FileDriver::MultiPLUVO_OpenNextFile(dialog::clsProcessFind& engine,
                                         const std::vector<std::u16string>& files, std::int32_t& index) {
  const Step step = [](const Work& work) {
    work();
    return true;
  };
  if (index == 0) beginRun(engine);
  for (; index < static_cast<std::int64_t>(files.size()); ++index) {
    const std::u16string& path = files.at(static_cast<std::size_t>(index));
    fileBegins(path, static_cast<std::size_t>(index) + 1, files.size());
    bool ready = false;
    const auto fault = errors::faultOf(engine.context(), u"cpf:45b", [&] {
      ready = makeReady(engine, path, engine.application().PathSeparator(), step);
    });
    if (ready) return true;
    if (fault) giveUp(engine, path);
  }
  summarize(engine);
  return false;
}

/// Closes a document that could not be made ready. One with changes is the user's, who had it open before.
void FileDriver::giveUp(dialog::clsProcessFind& engine, const std::u16string& path) {
  const auto fault = faultOf([&] {
    if (document_ && document_->Saved()) document_->Close(false);
  });
  document_.reset();
  if (fault) tellOfDifficultiesClosing(engine.boxes(), path);
}

void FileDriver::MultiPLUVO_CloseFile(dialog::clsProcessFind& engine) {
  if (!document_) throw errors::objectNotSet();
  protectAgain();
  closeCurrentFile(engine);
  document_.reset();
}

std::u16string FileDriver::BrowseForFolder(dialog::clsProcessFind& /*engine*/, const std::u16string& start) {
  const std::unique_ptr<dialog::FolderPicker> picker = makePicker_ ? makePicker_() : nullptr;
  if (!picker) throw errors::objectNotSet();
  picker->SetStartingDirectory(start);
  picker->choose();
  return picker->selected() ? picker->path() : std::u16string();
}

bool FileDriver::OpenDocumentFile(dialog::clsProcessFind& engine, Document& document,
                                  const std::u16string& path) {
  return guarded(engine.context(), u"cpf:44", [&] {
    return stepWith(engine, document, [&] { document = engine.application().Documents()->Open(path); });
  });
}

/// The work, again where the user wants it tried again. False: the file is left out.
bool FileDriver::stepWith(dialog::clsProcessFind& engine, Document& document, const Work& work) {
  for (;;) {
    const auto fault = faultOf(work);
    if (!fault) return true;
    switch (fault->number) {
      case word::kCommandFailed:
        return false;
      case word::kProtectionPasswordWrong:
        if (!skipWithWrongPassword(engine.boxes())) continue;
        if (document) document->Close(false);
        document.reset();
        return false;
      case word::kOpenPasswordWrong:
        if (!openAgain(engine.boxes())) return false;
        continue;
      default:
        throw errors::Fault(*fault);
    }
  }
}

bool FileDriver::CloseDocumentFile(dialog::clsProcessFind& engine, Document& document, bool readOnly,
                                   const std::u16string& fileName) {
  return guarded(engine.context(), u"cpf:43", [&] {
    const auto fault = faultOf([&] { document->Close(!document->Saved()); });
    if (!fault) return true;
    if (fault->number != word::kFileReadOnly) throw errors::Fault(*fault);
    if (!readOnly) return false;
    const auto documents = engine.application().Documents();
    for (std::int32_t i = 1; i <= documents->Count(); ++i) {
      const Document open = documents->Item(i);
      if (open->Path() + open->Name() != fileName || !cancelSaveAs(engine.boxes())) continue;
      document->Close(false);
      break;
    }
    return true;
  });
}

bool FileDriver::UnlockProtectedDocument(dialog::clsProcessFind& engine, Document& document,
                                         std::u16string& password, std::int16_t& protectionType) {
  return guarded(engine.context(), u"cpf:46", [&] {
    protectionType = static_cast<std::int16_t>(document->ProtectionType());
    if (!passwordPrompt_)
      passwordPrompt_ = std::make_unique<dialog::frmPassword>(engine.context(), engine.forms());
    for (;;) {
      if (!passwordForForm(*passwordPrompt_, engine.boxes(), password)) break;
      const bool wasSaved = isSaved(*document);
      const auto fault = faultOf([&] { document->Unprotect(password); });
      if (!fault && wasSaved) keepSaved(*document);
      if (!fault) return true;
      if (fault->number == word::kCommandFailed) return false;
      if (fault->number != word::kProtectionPasswordWrong) throw errors::Fault(*fault);
      if (skipWithWrongPassword(engine.boxes())) break;
    }
    document->Close(false);
    return false;
  });
}

}  // namespace pluvo::multifile
