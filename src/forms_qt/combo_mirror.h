#pragma once

#include "forms/combo_box.h"
#include "mirror.h"

#include <QComboBox>

namespace pluvo::forms_qt {

/// The edit of a text is done with when the focus leaves, Enter is pressed or a row is taken. A refused edit
/// keeps the focus.
class ComboMirror final : public Mirror {
 public:
  ComboMirror(forms::ComboBox& box, UserActions& userActions, QWidget& parent);
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void refreshKind() override;
  void dress() override;
  void typed(const QString& text);
  void chosen(int row);
  /// Whether the edit stands.
  bool commit();

  forms::ComboBox& box_;
  QComboBox* shown_;
  std::vector<forms::ComboBox::Row> rows_;
};

}  // namespace pluvo::forms_qt
