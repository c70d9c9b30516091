#include "help_window.h"

#include "store/opener.h"

#include <QGuiApplication>
#include <QShortcut>

namespace pluvo::desktop {

namespace {

memory::OpenedFile opened(const std::string& path) {
  return store::StoreOpener(store::Store(), [](const std::string&) { return std::nullopt; }).open(path);
}

}  // namespace

HelpWindow::HelpWindow(const std::string& path) : document_(opened(path)) {
  view::DocumentView* const view = document_.makeView();
  setCentralWidget(view);
  setWindowTitle(document_.name() + QStringLiteral(" – ") + QGuiApplication::applicationDisplayName());
  constexpr QSize kSize(760, 800);
  resize(kSize);
  const auto key = [&](const QKeySequence& keys, auto&& done) {
    connect(new QShortcut(keys, this), &QShortcut::activated, view, done);
  };
  key(QKeySequence::Copy, [view] { view->copy(); });
  key(QKeySequence::SelectAll, [view] { view->selectAll(); });
  key(QKeySequence::ZoomIn, [view] { view->zoomBy(1); });
  key(QKeySequence::ZoomOut, [view] { view->zoomBy(-1); });
  key(QKeySequence(Qt::CTRL | Qt::Key_0), [view] { view->setZoom(1); });
  for (const QKeySequence& keys : {QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_W)})
    key(keys, [this] { close(); });
}

}  // namespace pluvo::desktop
