#include "multi_page_mirror.h"

#include "keys.h"
#include "texts.h"

#include <QKeyEvent>
#include <QScrollArea>
#include <QStyle>

namespace pluvo::forms_qt {

namespace {

/// Scrolls up and down; it asks for the width of what it shows.
class Scroll final : public QScrollArea {
 public:
  explicit Scroll(QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
  }
  QSize sizeHint() const override { return widget()->sizeHint() + QSize(bar(), 0); }
  QSize minimumSizeHint() const override {
    return {widget()->minimumSizeHint().width() + bar(), QScrollArea::minimumSizeHint().height()};
  }

 private:
  int bar() const { return style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this); }
};

}  // namespace

MultiPageMirror::MultiPageMirror(forms::MultiPage& pages, Doings& doings, QWidget& parent)
    : Mirror(pages, doings), pages_(pages), shown_(new QTabWidget(&parent)) {
  for (const auto& page : pages.Pages()) {
    auto* scroll = new Scroll(shown_);
    auto* panel = new PagePanel(page->controls(), doings, nullptr);
    scroll->setWidget(panel);
    // The page's colour is the tab's own, which styles paint behind it.
    panel->setAutoFillBackground(false);
    scroll->viewport()->setAutoFillBackground(false);
    panels_.emplace_back(panel);
    const int tab = shown_->addTab(scroll, marked(page->Caption()));
    scroll->setObjectName(qt(page->Name()));
    shown_->setTabToolTip(tab, toolTip(page->ControlTipText()));
  }
  shown_->installEventFilter(this);
  connect(shown_, &QTabWidget::currentChanged, this, &MultiPageMirror::chosen);
  mirrors(*shown_);
}

MultiPageMirror::~MultiPageMirror() {
  for (const auto& panel : panels_) {
    if (panel) panel->release();
  }
}

std::vector<Mirror*> MultiPageMirror::inner() const {
  std::vector<Mirror*> all;
  for (const auto& panel : panels_) {
    if (!panel) continue;
    for (const auto& mirror : panel->mirrors()) all.push_back(mirror.get());
  }
  return all;
}

void MultiPageMirror::giveInnerKeys(std::set<QChar>& taken) {
  for (int tab = 0; tab < shown_->count(); ++tab) {
    const QString text = shown_->tabText(tab);
    shown_->setTabText(tab, withKey(text, takeKey(text, taken)));
  }
  for (const auto& panel : panels_) {
    std::vector<Mirror*> mirrors;
    for (const auto& mirror : panel->mirrors()) mirrors.push_back(mirror.get());
    giveKeys(mirrors, taken);
  }
}

bool MultiPageMirror::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return false;
  const auto& key = *static_cast<QKeyEvent*>(event);
  const int step = key.key() == Qt::Key_PageDown ? 1 : key.key() == Qt::Key_PageUp ? -1 : 0;
  if (step == 0 || key.modifiers() != Qt::ControlModifier) return false;
  shown_->setCurrentIndex((shown_->currentIndex() + step + shown_->count()) % shown_->count());
  return true;
}

void MultiPageMirror::chosen(int page) {
  doings().decides([&] { pages_.choose(static_cast<std::size_t>(page)); });
  refresh();
}

void MultiPageMirror::refreshKind() {
  const QSignalBlocker quiet(shown_);
  shown_->setCurrentIndex(static_cast<int>(pages_.Value()));
}

}  // namespace pluvo::forms_qt
