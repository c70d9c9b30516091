#include "found_blocks.h"

#include "document/place_names.h"
#include "runs/excerpt.h"

#include <QPainter>
#include <QStringList>
#include <QStyledItemDelegate>
#include <algorithm>
#include <utility>

namespace pluvo::desktop {

namespace {

// A row's text in three pieces: before the block, the block, after it.
constexpr int kPieces = Qt::UserRole;

/// Draws the block itself in bold letters. What stands before it has at most a third of the row.
class RowPainter final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& given, const QModelIndex& index) const override {
    QStyleOptionViewItem option = given;
    initStyleOption(&option, index);
    option.text.clear();
    const QWidget* const widget = option.widget;
    widget->style()->drawControl(QStyle::CE_ItemViewItem, &option, painter, widget);
    painter->save();
    const bool chosen = option.state.testFlag(QStyle::State_Selected);
    painter->setPen(option.palette.color(chosen ? QPalette::HighlightedText : QPalette::Text));
    QRect room = option.rect.adjusted(kMargin, 0, -kMargin, 0);
    const QStringList pieces = index.data(kPieces).toStringList();
    draw(*painter, option.font, pieces[0], room, Qt::ElideLeft, room.width() / 3);
    QFont bold = option.font;
    bold.setBold(true);
    draw(*painter, bold, pieces[1], room, Qt::ElideMiddle, room.width());
    draw(*painter, option.font, pieces[2], room, Qt::ElideRight, room.width());
    painter->restore();
  }

 private:
  static constexpr int kMargin = 4;  ///< pixels

  static void draw(QPainter& painter, const QFont& font, const QString& text, QRect& room,
                   Qt::TextElideMode cut, int width) {
    const QFontMetrics metrics(font);
    const QString shown = metrics.elidedText(text, cut, width);
    painter.setFont(font);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
    room.setLeft(std::min(room.left() + metrics.horizontalAdvance(shown), room.right()));
  }
};

}  // namespace

FoundBlocks::FoundBlocks(Documents& documents) : QDockWidget(tr("Blocks Found")), documents_(documents) {
  setObjectName(QStringLiteral("blocks"));
  setAllowedAreas(Qt::BottomDockWidgetArea | Qt::TopDockWidgetArea);
  view_ = new QListView;
  view_->setObjectName(QStringLiteral("foundBlocks"));
  view_->setAccessibleName(tr("Blocks that the last pass found"));
  view_->setFrameShape(QFrame::NoFrame);
  view_->setUniformItemSizes(true);
  view_->setItemDelegate(new RowPainter(view_));
  view_->setModel(&rows_);
  setWidget(view_);
  connect(view_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& now) { show(now.row()); });
  // Also the row chosen already, after the user has looked elsewhere.
  connect(view_, &QListView::clicked, this, [this](const QModelIndex& row) { show(row.row()); });
}

void FoundBlocks::clear() {
  disconnect(closes_);
  rows_.set(nullptr, {});
  setWindowTitle(tr("Blocks Found"));
}

void FoundBlocks::list(OpenDocument& document, std::vector<BlockPlace> blocks, bool comesIntoSight) {
  clear();
  if (document.view() == nullptr) return;
  closes_ = connect(document.view(), &QObject::destroyed, this, &FoundBlocks::clear);
  const auto count = static_cast<int>(blocks.size());
  setWindowTitle(tr("Blocks Found in %1 (%2)").arg(document.name()).arg(count));
  rows_.set(&document, std::move(blocks));
  if (comesIntoSight && count > 0) QDockWidget::show();
}

void FoundBlocks::show(int row) {
  if (row < 0) return;
  OpenDocument& document = *rows_.document();
  const BlockPlace& block = rows_.block(row);
  documents_.bringToFront(document);
  document.goTo(static_cast<std::size_t>(block.story), block.span);
  document.view()->reveal(block.span);
}

void FoundBlocks::Rows::set(OpenDocument* document, std::vector<BlockPlace> blocks) {
  beginResetModel();
  document_ = document;
  blocks_ = std::move(blocks);
  places_.clear();
  if (document_ != nullptr) {
    for (const document::StoryName& name : document::storyNames(document_->shown().stories()))
      places_.push_back(wordsOf(name));
  }
  endResetModel();
}

int FoundBlocks::Rows::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(blocks_.size());
}

QVariant FoundBlocks::Rows::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != kPieces)) return {};
  const BlockPlace& place = block(index.row());
  const runs::Excerpt excerpt =
      runs::excerptOf(document_->shown(), place.story, place.span.from, place.span.to);
  QString before = QString::fromStdString(excerpt.lead);
  if (place.story != 0) {
    QString story = QString::fromStdString(places_[static_cast<std::size_t>(place.story)]);
    story.front() = story.front().toUpper();
    before = tr("%1: %2").arg(story, before);
  }
  const QStringList pieces = {before, QString::fromStdString(excerpt.piece),
                              QString::fromStdString(excerpt.trail)};
  return role == kPieces ? QVariant(pieces) : pieces.join(QString());
}

}  // namespace pluvo::desktop
