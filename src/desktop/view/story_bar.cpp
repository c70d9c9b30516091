#include "story_bar.h"

#include "document/place_names.h"

#include <QHBoxLayout>

namespace pluvo::view {

StoryBar::StoryBar(QWidget* parent)
    : QWidget(parent),
      name_(new QLabel),
      previous_(button(Qt::LeftArrow, tr("Previous of its kind"))),
      next_(button(Qt::RightArrow, tr("Next of its kind"))) {
  constexpr int kMargin = 4;
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->addWidget(previous_);
  layout->addWidget(name_);
  layout->addWidget(next_);
  layout->addStretch();
  setAutoFillBackground(true);
  connect(previous_, &QToolButton::clicked, this, [this] { asked(before_); });
  connect(next_, &QToolButton::clicked, this, [this] { asked(after_); });
  hide();
}

QToolButton* StoryBar::button(Qt::ArrowType arrow, const QString& name) {
  auto* const button = new QToolButton;
  button->setArrowType(arrow);
  button->setAutoRaise(true);
  button->setToolTip(name);
  button->setAccessibleName(name);
  button->setFocusPolicy(Qt::TabFocus);
  return button;
}

void StoryBar::tell(const document::Document& document, std::size_t story) {
  setVisible(story != 0);
  if (story == 0) return;
  const auto names = document::storyNames(document);
  std::size_t last = 0;
  before_ = after_ = 0;
  for (std::size_t i = 1; i < names.size(); ++i) {
    if (names[i].place != names[story].place) continue;
    last = names[i].number;
    if (i == story || document.isGone(i)) continue;
    if (i < story) before_ = i;
    if (i > story && after_ == 0) after_ = i;
  }
  QString name = QString::fromStdString(wordsOf(names[story]));
  name.front() = name.front().toUpper();
  name_->setText(tr("%1 of %2").arg(name).arg(last));
  previous_->setEnabled(before_ != 0);
  next_->setEnabled(after_ != 0);
}

}  // namespace pluvo::view
