#pragma once

#include "document/document.h"

#include <QLabel>
#include <QToolButton>
#include <QWidget>
#include <cstddef>
#include <functional>

namespace pluvo::view {

/// Stands above a text that is not main text. Names it, as "Header 2 of 3", and leads to its neighbours in
/// the same place.
class StoryBar final : public QWidget {
 public:
  explicit StoryBar(QWidget* parent);

  /// The story of this number is shown; the bar is hidden over main text.
  void tell(const document::Document& document, std::size_t story);
  /// Its text.
  QString text() const { return name_->text(); }

  /// The user wants another one.
  std::function<void(std::size_t story)> asked = [](std::size_t) {};

 private:
  QToolButton* button(Qt::ArrowType arrow, const QString& name);

  QLabel* name_;
  QToolButton* previous_;
  QToolButton* next_;
  std::size_t before_ = 0;  ///< the neighbours; main text where there is none
  std::size_t after_ = 0;
};

}  // namespace pluvo::view
