#pragma once

#include "forms/event.h"

#include <cstdint>
#include <string>
#include <utility>

namespace pluvo::forms {

enum class ControlKind { label, commandButton, textBox, checkBox, comboBox, listBox, picture, multiPage };

/// A box that is transparent is greyed, whether or not it is off.
enum class BackStyle { transparent = 0, opaque = 1 };

/// Red in the lowest byte, then green, then blue.
using Color = std::uint32_t;
inline constexpr Color kWhite = 0xFFFFFF;

struct Font {
  std::u16string name = u"Tahoma";
  int size = 8;  ///< in points
  bool operator==(const Font&) const = default;
};

/// Where a control stands on its page, in a grid of twelve columns of equal width and as many rows as are
/// used. Rows are as high as their controls ask for; those with multi-line text or a list share the rest.
/// Without columns: on a line of its own, below the control before it.
struct Cell {
  int row = 0;
  int column = 0;
  int rows = 1;
  int columns = 0;
  bool operator==(const Cell&) const = default;
};

/// One control of a form: plain values that handlers read and write, and that a renderer mirrors. The user's
/// userActions arrive as calls from the renderer, or from a test; a control that is off or hidden ignores
/// them.
///
/// A call that stands for the user's doing lets a Fault out only where the reporter itself failed; see
/// unreported.h.
class Control {
 public:
  Control(ControlKind kind, std::u16string name, std::u16string caption = {})
      : kind_(kind), name_(std::move(name)), caption_(std::move(caption)) {}
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;
  virtual ~Control() = default;

  ControlKind kind() const { return kind_; }
  const std::u16string& Name() const { return name_; }

  /// "&" stands before the letter that presses a button; two are one "&".
  const std::u16string& Caption() const { return caption_; }
  void Caption(std::u16string caption) { set(caption_, std::move(caption)); }
  bool Enabled() const { return enabled_; }
  void Enabled(bool value) { set(enabled_, value); }
  bool Visible() const { return visible_; }
  void Visible(bool value) { set(visible_, value); }
  /// Shown while the pointer rests on the control, letter for letter.
  const std::u16string& ControlTipText() const { return tip_; }
  void ControlTipText(std::u16string tip) { set(tip_, std::move(tip)); }
  forms::BackStyle BackStyle() const { return backStyle_; }
  void BackStyle(forms::BackStyle style) { set(backStyle_, style); }
  Color BackColor() const { return backColor_; }
  void BackColor(Color color) { set(backColor_, color); }
  const forms::Font& Font() const { return font_; }
  void Font(forms::Font font) { set(font_, std::move(font)); }
  const forms::Cell& Cell() const { return cell_; }
  void Cell(forms::Cell cell) { set(cell_, cell); }

  /// Whether it stays below a page that is too high for its window and scrolls; decided before it is shown.
  bool StaysInSight() const { return staysInSight_; }
  void StaysInSight(bool value) { staysInSight_ = value; }

  /// The Tab key goes by this number; among equals by the order in which controls were added.
  int TabIndex() const { return tabIndex_; }
  void TabIndex(int index) { tabIndex_ = index; }

  /// For the renderer: something about the control is to be shown anew.
  Event<> changed;

 protected:
  template <class Value>
  void set(Value& field, Value value) {
    if (field == value) return;
    field = std::move(value);
    changed.raise();
  }
  /// Whether the user can do anything with it.
  bool inReach() const { return enabled_ && visible_; }

 private:
  ControlKind kind_;
  std::u16string name_;
  std::u16string caption_;
  std::u16string tip_;
  bool enabled_ = true;
  bool visible_ = true;
  forms::BackStyle backStyle_ = forms::BackStyle::opaque;
  Color backColor_ = kWhite;
  forms::Font font_;
  forms::Cell cell_;
  bool staysInSight_ = false;
  int tabIndex_ = 0;
};

class Label final : public Control {
 public:
  explicit Label(std::u16string name, std::u16string caption = {})
      : Control(ControlKind::label, std::move(name), std::move(caption)) {}

  /// A link is drawn as one, and can be reached and pressed with the keyboard.
  bool IsLink() const { return isLink_; }
  void IsLink(bool value) { set(isLink_, value); }
  /// The user clicks the label.
  void press() const {
    if (inReach()) Click.raise();
  }
  Event<> Click;

 private:
  bool isLink_ = false;
};

class CommandButton final : public Control {
 public:
  explicit CommandButton(std::u16string name, std::u16string caption = {})
      : Control(ControlKind::commandButton, std::move(name), std::move(caption)) {}

  /// Whether Enter presses the button, where it is shown and the control with the focus has no use for the
  /// key.
  bool Default() const { return default_; }
  void Default(bool value) { set(default_, value); }
  /// The user presses the button.
  void press() const {
    if (inReach()) Click.raise();
  }
  Event<> Click;

 private:
  bool default_ = false;
};

/// One character drawn as large as its place allows, in whatever face the system has for it.
class Picture final : public Control {
 public:
  explicit Picture(std::u16string name, std::u16string symbol = {})
      : Control(ControlKind::picture, std::move(name)), symbol_(std::move(symbol)) {}

  const std::u16string& Symbol() const { return symbol_; }

 private:
  std::u16string symbol_;
};

}  // namespace pluvo::forms
