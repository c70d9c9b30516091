#pragma once

#include "forms/control.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pluvo::forms {

/// A text with a list of rows to choose it from. A row is its text, and after it, unseen, a code.
///
/// A list that shows a row's text has that row's code. The code is looked up when it is read, so text and
/// rows may come in any order.
class ComboBox : public Control {
 public:
  struct Row {
    std::u16string text;
    std::u16string code;
    bool operator==(const Row&) const = default;
  };
  /// Which column is the value.
  enum class Bound { text, code };

  explicit ComboBox(std::u16string name, Bound bound = Bound::code)
      : Control(ControlKind::comboBox, std::move(name)), bound_(bound) {}

  /// Whether the user may type a text that is not in the list; a handler may refuse it all the same.
  bool TypingAllowed() const { return typingAllowed_; }
  void TypingAllowed(bool value) { set(typingAllowed_, value); }

  const std::vector<Row>& rows() const { return rows_; }
  std::size_t ListCount() const { return rows_.size(); }
  /// Column 0 is the text, 1 the code.
  const std::u16string& List(std::size_t row, std::size_t column) const;
  void AddItem(std::u16string text, std::u16string code = {});
  void Clear();

  const std::u16string& Text() const { return text_; }
  /// Raises Change where the text is another.
  void Text(std::u16string text);

  /// The value of the row whose text is shown. A text that is in no row is its own value where the text is
  /// bound; else, and without a text, there is none.
  std::optional<std::u16string> Value() const;
  /// Shows the row of this value, or, where there is none, the value itself if the text is bound and nothing
  /// if the code is.
  void Value(const std::u16string& value);

  // The user's edit: Change comes with every text typed, BeforeUpdate once, when the edit is done with.
  /// The text is now this one, and the user is not done yet.
  void type(std::u16string text);
  /// The user is done, since the focus is to leave or Enter was pressed. Whether the edit stands; if not, the
  /// value from before it is back in force, and the focus is to stay.
  bool commit();
  /// Both: the user types a text and goes on, or takes a row of the list.
  bool enter(std::u16string text);
  bool choose(std::size_t row);

  Event<> Change;
  /// To set true is to refuse the edit.
  Event<bool&> BeforeUpdate;

 private:
  const std::u16string& bound(const Row& row) const { return bound_ == Bound::text ? row.text : row.code; }

  Bound bound_;
  bool typingAllowed_ = true;
  std::vector<Row> rows_;
  std::u16string text_;
  /// The text before the user's edit, while there is one.
  std::optional<std::u16string> before_;
};

}  // namespace pluvo::forms
