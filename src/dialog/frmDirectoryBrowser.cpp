#include "dialog/frmDirectoryBrowser.h"

#include "errors/fault.h"

#include <vector>

namespace pluvo::dialog {

namespace {

/// Does what can be done.
template <class Work>
void tolerant(Work work) {
  try {
    work();
  } catch (const errors::Fault&) {  // NOLINT(bugprone-empty-catch)
    // A folder that cannot be read is not listed.
  }
}

bool hasDrive(const std::u16string& path) { return path.size() >= 3 && path.substr(1, 2) == u":\\"; }

}  // namespace

frmDirectoryBrowser::frmDirectoryBrowser(forms::FormHost& host, scanner::Folders& folders,
                                         const std::u16string& separator)
    : Form(host, u"frmDirectoryBrowser", u"Choose a Folder"),
      Dir1(u"Dir1", folders, separator),
      separator_(separator) {
  Drive1.TypingAllowed(false);
  Drive1.ControlTipText(u"Choose a drive");
  Dir1.ControlTipText(u"Double-click a folder to see what is in it");
  cmdSelectDirectory.ControlTipText(u"Choose the folder shown above");
  cmdSelectDirectory.Default(true);
  add(Drive1);
  add(Dir1);
  add(lblPath);
  add(cmdSelectDirectory);
  const std::vector<std::u16string> drives = folders.drives();
  for (const std::u16string& drive : drives) Drive1.AddItem(drive);
  Drive1.Visible(!drives.empty());
  Dir1.changed.handledBy([this] { lblPath.Caption(Dir1.Path()); });
  tolerant([&] {
    if (!drives.empty()) Drive1.Text(drives.front());
    Dir1.Path(drives.empty() ? separator : drives.front() + separator);
  });
  Drive1.Change.handledBy([this] { Drive1_Change(); });
  cmdSelectDirectory.Click.handledBy([this] { cmdSelectDirectory_Click(); });
}

void frmDirectoryBrowser::SetStartingDirectory(const std::u16string& folder) {
  tolerant([&] {
    if (hasDrive(folder)) {
      for (const auto& drive : Drive1.rows()) {
        const char16_t letter = drive.text.empty() ? u'\0' : drive.text.front();
        if ((letter | 0x20) == (folder.front() | 0x20)) Drive1.Text(std::u16string(drive.text));
      }
      Dir1.Path(folder);
    } else if (Drive1.rows().empty() && folder.starts_with(separator_)) {
      Dir1.Path(folder);
    }
  });
}

void frmDirectoryBrowser::choose() {
  selected_ = false;
  ShowModal();
}

void frmDirectoryBrowser::Drive1_Change() {
  tolerant([&] { Dir1.Path(Drive1.Text() + separator_); });
}

void frmDirectoryBrowser::cmdSelectDirectory_Click() {
  selected_ = true;
  Hide();
}

}  // namespace pluvo::dialog
