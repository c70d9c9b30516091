#include "choosers.h"

#include "base/document_types.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>

namespace pluvo::desktop {

namespace {

QString text(const char* source) { return QCoreApplication::translate("Choosers", source); }

QString documentMasks() {
  QStringList masks;
  for (const std::string_view extension : base::kDocumentTypes)
    masks << "*." + QString::fromLatin1(extension.data(), static_cast<qsizetype>(extension.size()));
  return masks.join(' ');
}

QStringList chooseToOpen(QWidget* owner, const QString& folder) {
  return QFileDialog::getOpenFileNames(owner, text("Open"), folder,
                                       text("Documents (%1);;All files (*)").arg(documentMasks()));
}

/// A document stays of its kind: its extension is added where the name has another.
std::optional<QString> chooseToSave(QWidget* owner, const QString& path) {
  const QString suffix = QFileInfo(path).suffix();
  QFileDialog dialog(owner, text("Save As"), path);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  if (!suffix.isEmpty()) {
    dialog.setNameFilters({text("Same kind (*.%1)").arg(suffix), text("All files (*)")});
    dialog.setDefaultSuffix(suffix);
  }
  dialog.selectFile(path);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  return dialog.selectedFiles().constFirst();
}

QString chooseFolder(QWidget* owner, const QString& folder) {
  return QFileDialog::getExistingDirectory(owner, text("Choose a Folder"), folder);
}

}  // namespace

Choosers fileDialogs() { return {chooseToOpen, chooseToSave, chooseFolder}; }

}  // namespace pluvo::desktop
