#include "form_window.h"

#include "forms/default_button.h"
#include "forms_qt/forms.h"
#include "keys.h"
#include "texts.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDialog>
#include <QLabel>
#include <QMenuBar>
#include <QScreen>
#include <QVBoxLayout>

namespace pluvo::forms_qt {

namespace {

/// A window of its own for a form.
class Frame final : public QDialog {
 public:
  Frame(FormWindow& window, QWidget* owner) : QDialog(owner), window_(&window) {}
  void release() { window_ = nullptr; }
  void reject() override {
    if (window_ != nullptr) window_->closed();
  }

 protected:
  void closeEvent(QCloseEvent* event) override {
    event->ignore();
    reject();
  }

 private:
  FormWindow* window_;
};

/// Hears the keys of a form as a whole, wherever the focus is, and news of the system's looks.
class Listener final : public QObject {
 public:
  Listener(FormWindow& window, QObject* parent) : QObject(parent), window_(window) {}
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    switch (event->type()) {
      case QEvent::KeyPress:
        return window_.pressed(*static_cast<QKeyEvent*>(event));
      case QEvent::WindowActivate:
        window_.activated();
        return false;
      case QEvent::PaletteChange:
      case QEvent::ApplicationPaletteChange:
      case QEvent::ApplicationFontChange:
      case QEvent::StyleChange:
        window_.looksChanged();
        return false;
      default:
        return false;
    }
  }

 private:
  FormWindow& window_;
};

constexpr Qt::KeyboardModifiers kCommandKeys = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;

}  // namespace

FormWindow::FormWindow(QtForms& host, forms::Form& form)
    : host_(host), form_(form), userActions_(host.boxes_, [this](const forms::Control* control) {
        return !host_.admits || host_.admits(form_, control);
      }) {}

FormWindow::~FormWindow() {
  host_.windows_.erase(&form_);
  userActions_.listening(false);
  if (panel_) panel_->release();
  if (frame_) static_cast<Frame*>(frame_.data())->release();
  QWidget* widget = frame_ ? frame_.data() : panel_.data();
  if (widget == nullptr) return;
  for (QObject* child : widget->findChildren<QObject*>(QStringLiteral("listener"))) delete child;
  widget->hide();
  widget->deleteLater();
  if (status_) status_->deleteLater();
}

void FormWindow::build() {
  const auto container = host_.containers_.find(form_.Name());
  const bool standsIn = container != host_.containers_.end() && container->second;
  if (standsIn) {
    container_ = container->second;
    panel_ = new PagePanel(form_.controls(), userActions_, container_);
    if (container_->layout() == nullptr) {
      auto* layout = new QVBoxLayout(container_);
      layout->setContentsMargins(0, 0, 0, 0);
    }
    container_->layout()->addWidget(panel_);
    addStatus(*static_cast<QBoxLayout*>(container_->layout()));
  } else {
    frame_ = new Frame(*this, host_.owner_);
    frame_->setObjectName(qt(form_.Name()));
    // A dialog is neither put away nor made as large as the screen.
    frame_->setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    panel_ = new PagePanel(form_.controls(), userActions_, frame_);
    auto* layout = new QVBoxLayout(frame_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(panel_);
    const int margin = panel_->fontMetrics().height();
    panel_->layout()->setContentsMargins(margin, margin, margin, margin);
    addStatus(*layout);
  }
  TakenKeys taken;
  for (const QMenuBar* bar : panel_->window()->findChildren<QMenuBar*>()) {
    for (const QAction* menu : bar->actions()) taken.insert(markedKey(menu->text()));
  }
  std::vector<Mirror*> mirrors;
  for (const auto& mirror : panel_->mirrors()) mirrors.push_back(mirror.get());
  giveKeys(mirrors, taken);
  for (Mirror* mirror : mirrors) mirror->keepInSight();
  auto* listener = new Listener(*this, panel_);
  listener->setObjectName(QStringLiteral("listener"));
  panel_->installEventFilter(listener);
}

void FormWindow::addStatus(QBoxLayout& below) {
  status_ = new QLabel;
  status_->setObjectName(QStringLiteral("status"));
  status_->setTextFormat(Qt::PlainText);
  status_->setWordWrap(true);
  status_->setContextMenuPolicy(Qt::NoContextMenu);
  const int margin = status_->fontMetrics().height() / 3;
  status_->setContentsMargins(2 * margin, margin, 2 * margin, margin);
  below.addWidget(status_);
}

QWidget* FormWindow::window() const { return frame_ ? frame_.data() : panel_.data(); }

void FormWindow::show() {
  if (!panel_) build();
  userActions_.listening(true);
  refresh();
  if (container_) {
    panel_->show();
    container_->show();
  } else {
    const bool blocks = loop_ && !host_.modeless_.contains(form_.Name());
    frame_->setWindowModality(blocks ? Qt::ApplicationModal : Qt::NonModal);
    if (!wasShown_) frame_->resize(wholeSize());
    const QPoint place = frame_->pos();
    if (host_.placing) {
      host_.placing(form_, *frame_);
    } else if (wasShown_) {
      frame_->move(place);
    }
    frame_->show();
    frame_->raise();
    frame_->activateWindow();
  }
  // A form that comes back by itself, as for the next block, has the focus where the user left it.
  const bool keepsFocus = wasShown_ && !loop_ && panel_->focusWidget() != nullptr;
  wasShown_ = true;
  if (!keepsFocus) focus();
}

QSize FormWindow::wholeSize() const {
  const QSize wish = frame_->layout()->totalSizeHint();
  const QSize there = frame_->screen()->availableSize() * 9 / 10;
  return {qMin(wish.width(), there.width()),
          qMin(frame_->layout()->totalHeightForWidth(wish.width()), there.height())};
}

void FormWindow::hide() {
  userActions_.listening(false);
  userActions_.begun({});
  if (loop_) loop_->quit();
  if (container_) container_->hide();
  if (frame_) frame_->hide();
}

void FormWindow::run() {
  QEventLoop loop;
  const QPointer<QEventLoop> outer = std::exchange(loop_, &loop);
  show();
  if (form_.Visible()) loop.exec(QEventLoop::DialogExec);
  loop_ = outer;
  hide();
}

void FormWindow::repaint() {
  if (!window()) return;
  // Labels that came or grew have their places first.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  window()->repaint();
}

void FormWindow::refresh() {
  if (!panel_) return;
  if (frame_) frame_->setWindowTitle(qt(form_.Caption()));
  panel_->setAccessibleName(qt(form_.Caption()));
  if (status_) {
    status_->setText(breakable(qt(form_.StatusText())));
    status_->setVisible(!form_.StatusText().empty());
  }
  refreshWindowState();
  if (form_.Visible() && focused_ != form_.ActiveControl()) focus();
}

void FormWindow::refreshWindowState() {
  if (windowState_ == form_.WindowState()) return;
  windowState_ = form_.WindowState();
  if (host_.windowStateChanged) return host_.windowStateChanged(form_);
  if (frame_) frame_->setWindowState(windowState_ == 1 ? Qt::WindowMinimized : Qt::WindowNoState);
}

std::vector<Mirror*> FormWindow::all() const {
  std::vector<Mirror*> all;
  if (!panel_) return all;
  for (const auto& mirror : panel_->mirrors()) {
    all.push_back(mirror.get());
    const std::vector<Mirror*> inner = mirror->inner();
    all.insert(all.end(), inner.begin(), inner.end());
  }
  return all;
}

template <class Passes>
Mirror* FormWindow::find(Passes passes) const {
  for (Mirror* mirror : all()) {
    if (mirror->widget() != nullptr && passes(*mirror)) return mirror;
  }
  return nullptr;
}

void FormWindow::focus() {
  focused_ = form_.ActiveControl();
  const Mirror* wanted = find([&](const Mirror& mirror) { return &mirror.control() == focused_; });
  if (wanted == nullptr && focused_ == nullptr) {
    wanted = find([](const Mirror& mirror) {
      return mirror.widget()->isVisibleTo(mirror.widget()->window()) && mirror.widget()->isEnabled() &&
             (mirror.widget()->focusPolicy() & Qt::TabFocus) != 0;
    });
  }
  if (wanted != nullptr) wanted->widget()->setFocus(Qt::OtherFocusReason);
}

/// The focus goes on as by Tab, but stays in the form.
void FormWindow::moveOn() {
  QWidget* const now = QApplication::focusWidget();
  if (now == nullptr || !userActions_.endEdit()) return;
  for (QWidget* next = now->nextInFocusChain(); next != now; next = next->nextInFocusChain()) {
    const bool stops = panel_->isAncestorOf(next) && next->isVisible() && next->isEnabled() &&
                       next->focusProxy() == nullptr && (next->focusPolicy() & Qt::TabFocus) == Qt::TabFocus;
    if (stops) return next->setFocus(Qt::TabFocusReason);
  }
}

bool FormWindow::copies() const {
  QStringList texts;
  for (const Mirror* mirror : all()) {
    const auto* label = qobject_cast<QLabel*>(mirror->widget());
    if (label == nullptr || label->buddy() != nullptr || !label->isVisible()) continue;
    if (label->hasSelectedText()) {
      texts = {label->selectedText()};
      break;
    }
    texts += label->text();
  }
  if (texts.isEmpty()) return false;
  QGuiApplication::clipboard()->setText(
      unbroken(texts.join(u'\n').replace(QChar::ParagraphSeparator, u'\n')));
  return true;
}

bool FormWindow::pressed(const QKeyEvent& key) {
  // A small window's text is worth having elsewhere.
  if (frame_ && key.matches(QKeySequence::Copy)) return copies();
  if ((key.modifiers() & kCommandKeys) != 0) return false;
  switch (key.key()) {
    case Qt::Key_Escape:
      closed();
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter: {
      if (key.isAutoRepeat()) return true;
      const Mirror* button = find([](const Mirror& mirror) {
        return forms::isPressedByEnter(mirror.control()) && mirror.widget()->isVisible() &&
               mirror.widget()->isEnabled();
      });
      if (button == nullptr) {
        moveOn();
      } else {
        static_cast<QAbstractButton*>(button->widget())->click();
      }
      return true;
    }
    case Qt::Key_F1: {
      Mirror* help = find([&](const Mirror& mirror) { return &mirror.control() == form_.Help(); });
      return help != nullptr && help->press();
    }
    default:
      return false;
  }
}

void FormWindow::closed() {
  if (!userActions_.admits(nullptr)) return;
  // An edit that is refused is undone, and the form goes all the same.
  userActions_.endEdit();
  userActions_.does([this] { form_.close(); });
}

void FormWindow::activated() {
  userActions_.does([this] { form_.activate(); });
}

void FormWindow::admissionChanged() {
  for (Mirror* mirror : all()) mirror->admissionChanged();
}

void FormWindow::looksChanged() {
  for (Mirror* mirror : all()) mirror->looksChanged();
}

}  // namespace pluvo::forms_qt
