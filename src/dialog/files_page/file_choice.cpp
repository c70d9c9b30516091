#include "file_choice.h"

#include "base/text.h"
#include "errors/context.h"
#include "errors/numbers.h"

#include <algorithm>
#include <utility>

namespace pluvo::dialog {

namespace {

constexpr const char16_t* kAllLevels = u"All";
constexpr std::int16_t kMostLevels = 32000;

struct FileType {
  forms::CheckBox FilesPage::*box;
  const char16_t* mask;
};
constexpr FileType kFileTypes[] = {{&FilesPage::chkFTdoc, u"*.doc,"},
                                   {&FilesPage::chkFTdot, u"*.dot,"},
                                   {&FilesPage::chkFTtxt, u"*.txt,"},
                                   {&FilesPage::chkFTrtf, u"*.rtf,"},
                                   {&FilesPage::chkFThtm, u"*.htm,"}};

/// A scan that finds nothing lists one empty name.
bool isNothing(const std::vector<std::u16string>& files) {
  return files.size() == 1 && files.front().empty();
}

}  // namespace

FileChoice::FileChoice(forms::Form& form, FilesPage& page, clsProcessFind& engine, errors::Context& context)
    : form_(form), page_(page), context_(context), engine_(engine) {
  page_.cmdBrowse.Click.handledBy([this] { cmdBrowse_Click(); });
  page_.cmdChooseFiles.Click.handledBy([this] { cmdChooseFiles_Click(); });
  page_.cmdGetPotentialFiles.Click.handledBy([this] { cmdGetPotentialFiles_Click(); });
  page_.cmdRemoveFiles.Click.handledBy([this] { cmdRemoveFiles_Click(); });
  page_.txtFilePath.Change.handledBy([this] { txtFilePath_Change(); });
}

void FileChoice::cmdBrowse_Click() {
  errors::guarded(engine_.context(), u"FF:04", [&] {
    const auto options = engine_.application().Options();
    if (options == nullptr) throw errors::objectNotSet();
    engine_.BrowseStart(options->DefaultFilePath(word::wdDocumentsPath));
    const std::u16string chosen = engine_.BrowseForFolder();
    if (!chosen.empty()) page_.txtFilePath.Text(chosen);
  });
}

void FileChoice::cmdGetPotentialFiles_Click() {
  bool searches = false;
  errors::guarded(engine_.context(), u"FF:07", [&] {
    if (page_.txtFilePath.Text().empty()) return;
    page_.lblPleaseWait.Caption(u"\r\n\r\nSearching through Directories...");
    page_.lblPleaseWait.Visible(true);
    page_.lbxPotentialFiles.Clear();
    showCount({});
    form_.Repaint();
    searches = true;
  });
  if (!searches) return Listed.raise();
  ListPotentialFiles([this] {
    errors::guardedOn(engine_.context(), [this] {
      if (!isNothing(potentialFiles_)) page_.lbxPotentialFiles.items(potentialFiles_);
      page_.lblPleaseWait.Visible(false);
      showCount(base::decimal(static_cast<std::int64_t>(page_.lbxPotentialFiles.ListCount())));
    });
    Listed.raise();
  });
}

void FileChoice::showCount(const std::u16string& count) { page_.lblFound.Caption(u"Files Found: " + count); }

void FileChoice::ListPotentialFiles(const std::function<void()>& then) {
  bool searches = false;
  const bool subFolders = page_.chkSubDirectories.Value();
  std::int16_t levels = 0;
  errors::guarded(engine_.context(), u"FF:06", [&] {
    potentialFiles_.clear();  // no run may take the files of an earlier search
    engine_.StartingDirectory(folder());
    engine_.Masks(masks());
    levels = depth();
    searches = true;
  });
  if (!searches) return then();
  engine_.labour().run([this, subFolders, levels] { potentialFiles_ = engine_.GetFiles(subFolders, levels); },
                       [this, then](const std::exception_ptr& thrown) {
                         errors::guardedOn(engine_.context(), [&] {
                           if (thrown) std::rethrow_exception(thrown);
                         });
                         then();
                       });
}

std::u16string FileChoice::folder() {
  const std::u16string separator = engine_.application().PathSeparator();
  const std::u16string& path = page_.txtFilePath.Text();
  return path.ends_with(separator) ? path : path + separator;
}

std::u16string FileChoice::masks() const {
  std::u16string masks;
  for (const FileType& type : kFileTypes) {
    if ((page_.*type.box).Value()) masks += type.mask;
  }
  if (page_.chkFTother.Value()) masks += u"*." + page_.txtFileTypeOther.Text() + u',';
  if (!masks.empty()) masks.pop_back();
  return masks;
}

std::int16_t FileChoice::depth() const {
  const std::u16string& text = page_.cboxLevelsDeep.Text();
  return text == kAllLevels ? kMostLevels : errors::toInteger(text);
}

void FileChoice::LocateFilesForRun(const std::function<void(std::vector<std::u16string> files)>& then) {
  ListPotentialFiles(
      [this, then] { then(isNothing(potentialFiles_) ? std::vector<std::u16string>() : potentialFiles_); });
}

void FileChoice::show(const std::vector<std::u16string>& files) {
  const std::u16string separator = engine_.application().PathSeparator();
  std::u16string common = files.empty() ? std::u16string() : files.front();
  for (const std::u16string& file : files) {
    const auto end = std::mismatch(common.begin(), common.end(), file.begin(), file.end()).first;
    common.erase(end, common.end());
  }
  common.resize(std::min(common.rfind(separator), common.size()));
  potentialFiles_ = files;
  page_.txtFilePath.Text(common.empty() ? separator : common);
  page_.lbxPotentialFiles.items(potentialFiles_);
  showCount(base::decimal(static_cast<std::int64_t>(files.size())));
}

void FileChoice::cmdRemoveFiles_Click() {
  errors::guarded(context_, u"FF:08",
                  [&] { page_.lbxPotentialFiles.retain([](bool selected) { return !selected; }); });
}

void FileChoice::cmdChooseFiles_Click() {
  errors::guarded(context_, u"FF:05",
                  [&] { page_.lbxPotentialFiles.retain([](bool selected) { return selected; }); });
}

void FileChoice::txtFilePath_Change() {
  errors::guarded(context_, u"FF:36", [&] {
    page_.lbxPotentialFiles.Clear();
    // As file managers copy a path.
    auto& box = page_.txtFilePath;
    const std::u16string& path = box.Text();
    const bool quoted =
        path.size() > 2 && (path.front() == u'"' || path.front() == u'\'') && path.back() == path.front();
    if (quoted) box.Text(path.substr(1, path.size() - 2));
  });
}

}  // namespace pluvo::dialog
