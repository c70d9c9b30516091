#pragma once

#include "view/document_view.h"

#include <QAccessibleWidget>

namespace pluvo::view {

/// A document view as screen readers see it: one text, read-only, whose offsets are the document's positions.
class AccessibleDocument final : public QAccessibleWidget, public QAccessibleTextInterface {
 public:
  explicit AccessibleDocument(DocumentView& view)
      : QAccessibleWidget(&view, QAccessible::EditableText), view_(view) {}

  void* interface_cast(QAccessible::InterfaceType type) override;
  QAccessible::State state() const override;
  // Viewport and scroll bar are no objects of their own.
  int childCount() const override { return 0; }
  QAccessibleInterface* child(int) const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }

  using QAccessibleWidget::text;
  int characterCount() const override;
  QString text(int from, int to) const override;
  QString textBeforeOffset(int offset, QAccessible::TextBoundaryType type, int* from, int* to) const override;
  QString textAtOffset(int offset, QAccessible::TextBoundaryType type, int* from, int* to) const override;
  QString textAfterOffset(int offset, QAccessible::TextBoundaryType type, int* from, int* to) const override;
  /// None are told: the whole paragraph.
  QString attributes(int offset, int* from, int* to) const override;

  int cursorPosition() const override;
  void setCursorPosition(int position) override;
  int selectionCount() const override;
  void selection(int index, int* from, int* to) const override;
  void addSelection(int from, int to) override { setSelection(0, from, to); }
  void removeSelection(int index) override;
  void setSelection(int index, int from, int to) override;

  /// On the screen.
  QRect characterRect(int offset) const override;
  int offsetAtPoint(const QPoint& point) const override;
  void scrollToSubstring(int from, int to) override;

 private:
  bool isThere() const;
  int inText(int offset) const;
  text::Span unitAt(int offset, QAccessible::TextBoundaryType type) const;
  QString textOf(text::Span span, int* from, int* to) const;

  DocumentView& view_;
};

/// From now on every document view is seen so.
void installAccessibleDocuments();

}  // namespace pluvo::view
