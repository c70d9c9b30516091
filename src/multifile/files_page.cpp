#include "multifile/files_page.h"

#include "base/text.h"
#include "errors/context.h"
#include "errors/numbers.h"

#include <algorithm>
#include <utility>

namespace pluvo::multifile {

namespace {

using forms::CheckBox;
using forms::CommandButton;
using forms::ListBox;
using forms::TextBox;

constexpr const char16_t* kAllLevels = u"All";
constexpr std::int16_t kMostLevels = 32000;

struct FileType {
  const char16_t* box;
  const char16_t* mask;
};
constexpr FileType kFileTypes[] = {{u"chkFTdoc", u"*.doc,"},
                                   {u"chkFTdot", u"*.dot,"},
                                   {u"chkFTtxt", u"*.txt,"},
                                   {u"chkFTrtf", u"*.rtf,"},
                                   {u"chkFThtm", u"*.htm,"}};

/// A scan that finds nothing lists one empty name.
bool isNothing(const std::vector<std::u16string>& files) {
  return files.size() == 1 && files.front().empty();
}

}  // namespace

FilesPage::FilesPage(forms::Form& form, dialog::clsProcessFind& engine) : form_(form), engine_(engine) {
  form.get<CommandButton>(u"cmdBrowse").Click.handledBy([this] { cmdBrowse_Click(); });
  form.get<CommandButton>(u"cmdChooseFiles").Click.handledBy([this] { cmdChooseFiles_Click(); });
  form.get<CommandButton>(u"cmdGetPotentialFiles").Click.handledBy([this] { cmdGetPotentialFiles_Click(); });
  form.get<CommandButton>(u"cmdRemoveFiles").Click.handledBy([this] { cmdRemoveFiles_Click(); });
  form.get<TextBox>(u"txtFilePath").Change.handledBy([this] { txtFilePath_Change(); });
}

void FilesPage::cmdBrowse_Click() {
  errors::guarded(engine_.context(), u"FF:04", [&] {
    const auto options = engine_.application().Options();
    if (options == nullptr) throw errors::objectNotSet();
    engine_.BrowseStart(options->DefaultFilePath(word::wdDocumentsPath));
    const std::u16string chosen = engine_.BrowseForFolder();
    if (!chosen.empty()) form_.get<TextBox>(u"txtFilePath").Text(chosen);
  });
}

void FilesPage::cmdGetPotentialFiles_Click() {
  errors::guarded(engine_.context(), u"FF:07", [&] {
    if (form_.get<TextBox>(u"txtFilePath").Text().empty()) return;
    auto& notice = form_.get<forms::Label>(u"lblPleaseWait");
    auto& list = form_.get<ListBox>(u"lbxPotentialFiles");
    notice.Caption(u"\r\n\r\nSearching through Directories...");
    notice.Visible(true);
    list.Clear();
    showCount({});
    form_.Repaint();
    ListPotentialFiles();
    if (!isNothing(potentialFiles_)) list.items(potentialFiles_);
    notice.Visible(false);
    showCount(base::decimal(static_cast<std::int64_t>(list.ListCount())));
  });
}

void FilesPage::showCount(const std::u16string& count) {
  form_.get<forms::Label>(u"lblFound").Caption(u"Files Found: " + count);
}

void FilesPage::ListPotentialFiles() {
  errors::guarded(engine_.context(), u"FF:06", [&] {
    potentialFiles_.clear();  // no run may take the files of an earlier search
    engine_.StartingDirectory(folder());
    engine_.Masks(masks());
    const std::int16_t levels = depth();
    potentialFiles_ = engine_.GetFiles(form_.get<CheckBox>(u"chkSubDirectories").Value(), levels);
  });
}

std::u16string FilesPage::folder() {
  const std::u16string separator = engine_.application().PathSeparator();
  const std::u16string& path = form_.get<TextBox>(u"txtFilePath").Text();
  return path.ends_with(separator) ? path : path + separator;
}

std::u16string FilesPage::masks() const {
  std::u16string masks;
  for (const FileType& type : kFileTypes) {
    if (form_.get<CheckBox>(type.box).Value()) masks += type.mask;
  }
  if (form_.get<CheckBox>(u"chkFTother").Value())
    masks += u"*." + form_.get<TextBox>(u"txtFileTypeOther").Text() + u',';
  if (!masks.empty()) masks.pop_back();
  return masks;
}

std::int16_t FilesPage::depth() const {
  const std::u16string& text = form_.get<forms::ComboBox>(u"cboxLevelsDeep").Text();
  return text == kAllLevels ? kMostLevels : errors::toInteger(text);
}

std::vector<std::u16string> FilesPage::LocateFilesForRun() {
  ListPotentialFiles();
  return isNothing(potentialFiles_) ? std::vector<std::u16string>() : potentialFiles_;
}

void FilesPage::show(const std::vector<std::u16string>& files) {
  const std::u16string separator = engine_.application().PathSeparator();
  std::u16string common = files.empty() ? std::u16string() : files.front();
  for (const std::u16string& file : files) {
    const auto end = std::mismatch(common.begin(), common.end(), file.begin(), file.end()).first;
    common.erase(end, common.end());
  }
  common.resize(std::min(common.rfind(separator), common.size()));
  potentialFiles_ = files;
  form_.get<TextBox>(u"txtFilePath").Text(common.empty() ? separator : common);
  form_.get<ListBox>(u"lbxPotentialFiles").items(potentialFiles_);
  showCount(base::decimal(static_cast<std::int64_t>(files.size())));
}

void FilesPage::cmdRemoveFiles_Click() {
  errors::guarded(engine_.context(), u"FF:08", [&] {
    form_.get<ListBox>(u"lbxPotentialFiles").retain([](bool selected) { return !selected; });
  });
}

void FilesPage::cmdChooseFiles_Click() {
  errors::guarded(engine_.context(), u"FF:05", [&] {
    form_.get<ListBox>(u"lbxPotentialFiles").retain([](bool selected) { return selected; });
  });
}

void FilesPage::txtFilePath_Change() {
  errors::guarded(engine_.context(), u"FF:36", [&] {
    form_.get<ListBox>(u"lbxPotentialFiles").Clear();
    // As file managers copy a path.
    auto& box = form_.get<TextBox>(u"txtFilePath");
    const std::u16string& path = box.Text();
    const bool quoted =
        path.size() > 2 && (path.front() == u'"' || path.front() == u'\'') && path.back() == path.front();
    if (quoted) box.Text(path.substr(1, path.size() - 2));
  });
}

}  // namespace pluvo::multifile
