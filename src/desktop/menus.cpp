#include "menus.h"

#include "recent.h"
#include "theme.h"

#include <QGuiApplication>
#include <QMessageBox>
#include <utility>

namespace pluvo::desktop {

Menus::Menus(QMenuBar& bar, Place place) : place_(std::move(place)) {
  buildFile(*bar.addMenu(tr("&File")));
  buildEdit(*bar.addMenu(tr("&Edit")));
  runs_ = bar.addMenu(tr("&Runs"));
  buildView(*bar.addMenu(tr("&View")));
  QMenu& help = *bar.addMenu(tr("&Help"));
  instructions_ = add(help, tr("&Instructions"), QKeySequence::HelpContents, place_.instructions);
  add(help, tr("&About"), {}, [this] { about(); });
  updateRecent();
}

QAction* Menus::add(QMenu& menu, const QString& text, const QKeySequence& keys, std::function<void()> done) {
  auto* const action = menu.addAction(text);
  action->setShortcut(keys);
  connect(action, &QAction::triggered, this, [done = std::move(done)] { done(); });
  return action;
}

void Menus::buildFile(QMenu& file) {
  DocumentFiles& files = place_.files;
  open_ = add(file, tr("&Open …"), QKeySequence::Open, [&files] { files.chooseAndOpen(); });
  recent_ = file.addMenu(tr("Open &Recent"));
  connect(recent_, &QMenu::aboutToShow, this, &Menus::updateRecent);
  file.addSeparator();
  save_ = add(file, tr("&Save"), QKeySequence::Save, [&files] { files.saveCurrent(); });
  saveAs_ = add(file, tr("Save &As …"), tr("Ctrl+Shift+S"), [&files] { files.saveCurrentAs(); });
  reopen_ = add(file, tr("Reopen in Another &Encoding …"), {}, [&files] { files.reopenInEncoding(); });
  file.addSeparator();
  close_ = add(file, tr("&Close"), tr("Ctrl+W"), [&files] { files.closeCurrent(); });
  add(file, tr("&Quit"), tr("Ctrl+Q"), [this] { place_.window.close(); });
}

void Menus::buildEdit(QMenu& edit) {
  undo_ = add(edit, tr("&Undo Last Pass"), QKeySequence::Undo, place_.undo);
  redo_ = add(edit, tr("&Redo Pass"), tr("Ctrl+Shift+Z"), place_.redo);
  edit.addSeparator();
  copy_ = add(edit, tr("&Copy"), QKeySequence::Copy, [this] { view().copy(); });
  selectAll_ = add(edit, tr("Select &All"), QKeySequence::SelectAll, [this] { view().selectAll(); });
  edit.addSeparator();
  cancel_ = add(edit, tr("Ca&ncel"), Qt::Key_Escape, place_.cancel);
}

void Menus::buildView(QMenu& view) {
  const auto zoom = [&](const QString& text, const QList<QKeySequence>& keys, auto&& done) {
    add(view, text, {}, [this, done] {
      if (place_.documents.current() != nullptr) done(this->view());
    })->setShortcuts(keys);
  };
  zoom(tr("Zoom &In"), {QKeySequence::ZoomIn, tr("Ctrl+=")}, [](auto& shown) { shown.zoomBy(1); });
  zoom(tr("Zoom &Out"), {QKeySequence::ZoomOut}, [](auto& shown) { shown.zoomBy(-1); });
  zoom(tr("&Normal Size"), {tr("Ctrl+0")}, [](auto& shown) { shown.setZoom(1); });
  view.addSeparator();
  fieldCodes_ = view.addAction(tr("&Field Codes"));
  fieldCodes_->setCheckable(true);
  connect(fieldCodes_, &QAction::triggered, this, [this](bool on) {
    if (place_.documents.held()) return;
    place_.documents.current()->document()->showFieldCodes(on);
    place_.documents.current()->refresh();
  });
  buildColours(*view.addMenu(tr("&Colours")));
  view.addSeparator();
  place_.panel.setText(tr("&Panel"));
  place_.panel.setShortcut(QKeySequence(Qt::Key_F9));
  view.addAction(&place_.panel);
  place_.places.setText(tr("P&laces"));
  view.addAction(&place_.places);
  place_.blocks.setText(tr("&Blocks Found"));
  view.addAction(&place_.blocks);
  add(view, tr("Go to the P&anel"), Qt::Key_F6, [this] {
    const bool isElsewhere = place_.documents.current() != nullptr && !this->view().hasFocus();
    if (isElsewhere) return this->view().setFocus();
    place_.goToPanel();
  });
  add(view, tr("Ne&xt Document"), tr("Ctrl+PgDown"), [this] { place_.documents.next(1); });
  add(view, tr("Pre&vious Document"), tr("Ctrl+PgUp"), [this] { place_.documents.next(-1); });
}

void Menus::buildColours(QMenu& themes) {
  for (const auto& [theme, text] :
       {std::pair{Theme::system, tr("As the &System")}, std::pair{Theme::light, tr("&Light")},
        std::pair{Theme::dark, tr("&Dark")}}) {
    QAction* const entry = themes.addAction(text);
    entry->setCheckable(true);
    entry->setChecked(theme == chosenTheme());
    themes_.addAction(entry);
    connect(entry, &QAction::triggered, this, [theme = theme] { chooseTheme(theme); });
  }
}

void Menus::update(const State& state) {
  const OpenDocument* const document = place_.documents.current();
  const bool works = state.works;
  const bool held = works || state.confirms;
  const bool open = document != nullptr;
  open_->setEnabled(!held);
  recent_->setEnabled(!held);
  instructions_->setEnabled(!works);
  save_->setEnabled(open && !works && document->changed());
  saveAs_->setEnabled(open && !works);
  reopen_->setEnabled(open && !held && !document->file().stored().encoding().empty());
  close_->setEnabled(open && !held);
  undo_->setEnabled(!held && ((open && document->canUndo()) || state.filesChanged));
  redo_->setEnabled(open && !held && document->canRedo());
  copy_->setEnabled(open);
  selectAll_->setEnabled(open);
  fieldCodes_->setEnabled(open && !held);
  fieldCodes_->setChecked(open && document->shown().view() == text::View::codes);
  cancel_->setEnabled(works);
}

void Menus::updateRecent() {
  recent_->clear();
  for (const std::string& path : recentFiles()) {
    const QString text = QString::fromStdString(path).replace(QLatin1Char('&'), QStringLiteral("&&"));
    add(*recent_, text, {}, [this, path] { place_.files.open({path}); });
  }
  if (recent_->isEmpty()) recent_->addAction(tr("None yet"))->setEnabled(false);
}

void Menus::about() {
  QMessageBox::about(
      &place_.window, tr("About %1").arg(QGuiApplication::applicationDisplayName()),
      tr("<h3>%1 %2</h3><p>Finds blocks of text in documents, and inserts, replaces, deletes or "
         "highlights on them.</p><p>Licence: Apache-2.0</p>")
          .arg(QGuiApplication::applicationDisplayName(), QCoreApplication::applicationVersion()));
}

}  // namespace pluvo::desktop
