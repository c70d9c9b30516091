#include "main_window_actions.h"

#include "recent.h"
#include "theme.h"

#include <QApplication>
#include <QDockWidget>
#include <QMenuBar>
#include <QMessageBox>

namespace pluvo::desktop {

QAction* MainWindow::action(QMenu& menu, const QString& text, const QKeySequence& keys,
                            void (MainWindow::*done)()) {
  auto* const result = menu.addAction(text);
  result->setShortcut(keys);
  connect(result, &QAction::triggered, this, done);
  return result;
}

void MainWindow::buildMenus() {
  QMenu& file = *menuBar()->addMenu(tr("&File"));
  actions_->open = action(file, tr("&Open …"), QKeySequence::Open, &MainWindow::chooseAndOpen);
  recent_ = file.addMenu(tr("Open &Recent"));
  connect(recent_, &QMenu::aboutToShow, this, &MainWindow::updateRecent);
  file.addSeparator();
  actions_->save = action(file, tr("&Save"), QKeySequence::Save, &MainWindow::saveCurrent);
  actions_->saveAs =
      action(file, tr("Save &As …"), QKeySequence(tr("Ctrl+Shift+S")), &MainWindow::saveCurrentAs);
  actions_->reopen = action(file, tr("Reopen in Another &Encoding …"), {}, &MainWindow::reopenInEncoding);
  file.addSeparator();
  actions_->close = action(file, tr("&Close"), QKeySequence(tr("Ctrl+W")), &MainWindow::closeCurrent);
  connect(file.addAction(tr("&Quit")), &QAction::triggered, this, &QWidget::close);
  file.actions().constLast()->setShortcut(QKeySequence(tr("Ctrl+Q")));

  QMenu& edit = *menuBar()->addMenu(tr("&Edit"));
  actions_->undo = action(edit, tr("&Undo Last Pass"), QKeySequence::Undo, &MainWindow::undo);
  actions_->redo = action(edit, tr("&Redo Pass"), QKeySequence(tr("Ctrl+Shift+Z")), &MainWindow::redo);
  edit.addSeparator();
  actions_->copy = edit.addAction(tr("&Copy"));
  actions_->copy->setShortcut(QKeySequence::Copy);
  connect(actions_->copy, &QAction::triggered, this, [this] { current()->view()->copy(); });
  actions_->selectAll = edit.addAction(tr("Select &All"));
  actions_->selectAll->setShortcut(QKeySequence::SelectAll);
  connect(actions_->selectAll, &QAction::triggered, this, [this] { current()->view()->selectAll(); });
  edit.addSeparator();
  actions_->cancel = action(edit, tr("Ca&ncel"), QKeySequence(Qt::Key_Escape), &MainWindow::cancelWork);

  runsMenu_ = menuBar()->addMenu(tr("&Runs"));

  QMenu& view = *menuBar()->addMenu(tr("&View"));
  buildViewMenu(view);

  QMenu& help = *menuBar()->addMenu(tr("&Help"));
  actions_->instructions =
      action(help, tr("&Instructions"), QKeySequence::HelpContents, &MainWindow::openInstructions);
  action(help, tr("&About"), {}, &MainWindow::about);
  updateRecent();
}

void MainWindow::buildViewMenu(QMenu& view) {
  const auto zoom = [&](const QString& text, const QList<QKeySequence>& keys, int steps) {
    QAction* const entry = view.addAction(text);
    entry->setShortcuts(keys);
    connect(entry, &QAction::triggered, this, [this, steps] {
      if (current() == nullptr) return;
      if (steps == 0) {
        current()->view()->setZoom(1);
      } else {
        current()->view()->zoomBy(steps);
      }
    });
  };
  zoom(tr("Zoom &In"), {QKeySequence::ZoomIn, QKeySequence(tr("Ctrl+="))}, 1);
  zoom(tr("Zoom &Out"), {QKeySequence::ZoomOut}, -1);
  zoom(tr("&Normal Size"), {QKeySequence(tr("Ctrl+0"))}, 0);
  view.addSeparator();
  actions_->fieldCodes = view.addAction(tr("&Field Codes"));
  actions_->fieldCodes->setCheckable(true);
  connect(actions_->fieldCodes, &QAction::triggered, this,
          [this](bool on) { current()->document()->showFieldCodes(on); });

  QMenu& themes = *view.addMenu(tr("&Colours"));
  for (const auto& [theme, text] :
       {std::pair{Theme::system, tr("As the &System")}, std::pair{Theme::light, tr("&Light")},
        std::pair{Theme::dark, tr("&Dark")}}) {
    QAction* const entry = themes.addAction(text);
    entry->setCheckable(true);
    entry->setChecked(theme == chosenTheme());
    actions_->themes.addAction(entry);
    connect(entry, &QAction::triggered, this, [theme = theme] { chooseTheme(theme); });
  }
  view.addSeparator();
  QAction* const panel = dock_->toggleViewAction();
  panel->setText(tr("&Panel"));
  panel->setShortcut(QKeySequence(Qt::Key_F9));
  view.addAction(panel);
  const auto go = [&](const QString& text, const QKeySequence& keys, auto&& done) {
    QAction* const entry = view.addAction(text);
    entry->setShortcut(keys);
    connect(entry, &QAction::triggered, this, done);
  };
  go(tr("Go to the P&anel"), QKeySequence(Qt::Key_F6), [this] {
    const bool inDocument = current() != nullptr && current()->view()->hasFocus();
    if (!inDocument && current() != nullptr) return current()->view()->setFocus();
    goToPanel();
  });
  go(tr("Ne&xt Document"), QKeySequence(tr("Ctrl+PgDown")), [this] { nextTab(1); });
  go(tr("Pre&vious Document"), QKeySequence(tr("Ctrl+PgUp")), [this] { nextTab(-1); });
}

void MainWindow::goToPanel() {
  dock_->show();
  auto* const begin = panel_->findChild<QWidget*>(QStringLiteral("txtBeginText"));
  if (begin == nullptr) return;
  if (panel_->isEnabled()) return begin->setFocus(Qt::ShortcutFocusReason);
  // When the work ends it gets what nobody has.
  if (QWidget* const now = focusWidget()) now->clearFocus();
  focusBefore_ = begin;
}

void MainWindow::updateActions() {
  if (actions_->open == nullptr) return;
  const OpenDocument* const document = current();
  const bool breathing = working_.breathing() || cancel_->isVisible();
  const bool held = breathing || (dialog_ && dialog_->confirming());
  const bool open = document != nullptr;
  actions_->open->setEnabled(!held);
  recent_->setEnabled(!held);
  actions_->instructions->setEnabled(!breathing);
  actions_->save->setEnabled(open && !breathing && document->changed());
  actions_->saveAs->setEnabled(open && !breathing);
  actions_->reopen->setEnabled(open && !held && !document->file().stored().encoding().empty());
  actions_->close->setEnabled(open && !held);
  actions_->undo->setEnabled(!held && ((open && document->canUndo()) || filesChanged_));
  actions_->redo->setEnabled(open && !held && document->canRedo());
  actions_->copy->setEnabled(open);
  actions_->selectAll->setEnabled(open);
  actions_->fieldCodes->setEnabled(open && !held);
  actions_->fieldCodes->setChecked(open && document->document()->view() == text::View::codes);
  actions_->cancel->setEnabled(breathing);
  if (runs_) runs_->update(held);
}

void MainWindow::updateRecent() {
  recent_->clear();
  for (const std::string& path : recentFiles()) {
    QAction* const entry =
        recent_->addAction(QString::fromStdString(path).replace(QLatin1Char('&'), QStringLiteral("&&")));
    connect(entry, &QAction::triggered, this, [this, path] { open(std::vector<std::string>{path}); });
  }
  if (recent_->isEmpty()) recent_->addAction(tr("None yet"))->setEnabled(false);
}

void MainWindow::about() {
  QMessageBox::about(
      this, tr("About %1").arg(QGuiApplication::applicationDisplayName()),
      tr("<h3>%1 %2</h3><p>Finds blocks of text in documents, and inserts, replaces, deletes or "
         "highlights on them.</p><p>Licence: Apache-2.0</p>")
          .arg(QGuiApplication::applicationDisplayName(), QCoreApplication::applicationVersion()));
}

}  // namespace pluvo::desktop
