#pragma once

#include "forms/control.h"

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace pluvo::forms {

/// A list of texts, of which the user selects any number.
class ListBox : public Control {
 public:
  explicit ListBox(std::u16string name) : Control(ControlKind::listBox, std::move(name)) {}

  /// Whether several rows can be selected at a time.
  bool MultiSelect() const { return multiSelect_; }
  void MultiSelect(bool value) { set(multiSelect_, value); }

  std::size_t ListCount() const { return rows_.size(); }
  const std::u16string& List(std::size_t row) const { return rows_.at(row).text; }
  bool Selected(std::size_t row) const { return rows_.at(row).selected; }

  void Clear() { items({}); }
  /// Puts these in the place of all rows, none selected.
  void items(std::vector<std::u16string> texts);
  /// Keeps the rows that pass, in their order.
  void retain(const std::function<bool(bool selected)>& passes);

  /// The user selects a row, or undoes that.
  void select(std::size_t row, bool value = true);
  /// The user opens a row: a double click, or Enter on it.
  void open(std::size_t row) const {
    if (inReach() && row < rows_.size()) DblClick.raise(row);
  }
  Event<std::size_t> DblClick;

 private:
  struct Row {
    std::u16string text;
    bool selected = false;
  };
  std::vector<Row> rows_;
  bool multiSelect_ = false;
};

}  // namespace pluvo::forms
