#include "multi_page_mirror.h"

#include "cell_layout.h"
#include "keys.h"
#include "texts.h"

#include <QKeyEvent>
#include <QScrollArea>
#include <QStyle>
#include <algorithm>

namespace pluvo::forms_qt {

namespace {

/// Scrolls up and down; it asks for the width of its contents.
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

/// A page in its tab. Where it is too low for all of the page, the page scrolls. Controls that stay in sight
/// stand below it.
class PageView final : public QWidget {
 public:
  PageView(PagePanel& panel, QWidget* parent) : QWidget(parent), panel_(panel), scroll_(*new Scroll(this)) {
    scroll_.setWidget(&panel);
    // The page's colour is the tab's own, which styles paint behind it.
    panel.setAutoFillBackground(false);
    scroll_.viewport()->setAutoFillBackground(false);
  }
  void keepInSight() { kept_ = panel_.lendKept(*this); }
  QSize sizeHint() const override { return scroll_.sizeHint(); }
  QSize minimumSizeHint() const override { return scroll_.minimumSizeHint() + QSize(0, stripHeight(0)); }

 protected:
  void resizeEvent(QResizeEvent*) override { arrange(); }
  bool event(QEvent* event) override {
    if (event->type() == QEvent::LayoutRequest) arrange();
    return QWidget::event(event);
  }

 private:
  /// Next to each other, of one height; 0 for the width: as wide as they are.
  int stripHeight(int width) const {
    int height = 0;
    for (const QWidget* widget : kept_)
      height =
          std::max(height, width > 0 ? widget->heightForWidth(width) : widget->minimumSizeHint().height());
    return height > 0 ? height + fontMetrics().height() / 2 : 0;
  }

  void arrange() {
    CellLayout& cells = panel_.cells();
    const bool low = !kept_.empty() && cells.wholeHeightFor(width()) > height();
    cells.holdLent(low);
    const int gap = fontMetrics().height() / 2;
    const int count = std::max(static_cast<int>(kept_.size()), 1);
    const int each = (width() - (count + 1) * gap) / count;
    const int strip = low ? stripHeight(each) : 0;
    scroll_.setGeometry(0, 0, width(), height() - strip);
    panel_.updateGeometry();
    if (!low) {
      cells.activate();
      cells.setGeometry(panel_.rect());
    }
    int left = gap;
    for (QWidget* widget : kept_) {
      widget->raise();
      if (low) widget->setGeometry(left, height() - strip + gap / 2, each, strip - gap);
      left += each + gap;
    }
  }

  PagePanel& panel_;
  Scroll& scroll_;
  std::vector<QWidget*> kept_;
};

MultiPageMirror::MultiPageMirror(forms::MultiPage& pages, UserActions& userActions, QWidget& parent)
    : Mirror(pages, userActions), pages_(pages), shown_(new QTabWidget(&parent)) {
  for (const auto& page : pages.Pages()) {
    auto* panel = new PagePanel(page->controls(), userActions, nullptr);
    auto* view = new PageView(*panel, shown_);
    panels_.emplace_back(panel);
    views_.push_back(view);
    const int tab = shown_->addTab(view, marked(page->Caption()));
    view->setObjectName(qt(page->Name()));
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

void MultiPageMirror::keepInSight() {
  for (PageView* view : views_) view->keepInSight();
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
  userActions().decides([&] { pages_.choose(static_cast<std::size_t>(page)); });
  refresh();
}

void MultiPageMirror::refreshKind() {
  const QSignalBlocker quiet(shown_);
  shown_->setCurrentIndex(static_cast<int>(pages_.Value()));
}

}  // namespace pluvo::forms_qt
