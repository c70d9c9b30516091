#pragma once

#include "forms/control.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pluvo::forms {

/// One page of a multi-page: controls that show together.
class Page {
 public:
  Page(std::u16string name, std::u16string caption, std::u16string tip)
      : name_(std::move(name)), caption_(std::move(caption)), tip_(std::move(tip)) {}

  const std::u16string& Name() const { return name_; }
  const std::u16string& Caption() const { return caption_; }
  const std::u16string& ControlTipText() const { return tip_; }

  /// In the order in which they were added.
  const std::vector<Control*>& controls() const { return controls_; }
  /// The control outlives the page.
  void add(Control& control) { controls_.push_back(&control); }

 private:
  std::u16string name_;
  std::u16string caption_;
  std::u16string tip_;
  std::vector<Control*> controls_;
};

/// Pages behind tabs.
class MultiPage final : public Control {
 public:
  explicit MultiPage(std::u16string name) : Control(ControlKind::multiPage, std::move(name)) {}

  const std::vector<std::unique_ptr<Page>>& Pages() const { return pages_; }
  Page& add(std::u16string name, std::u16string caption, std::u16string tip);
  /// Nothing where there is none of that name.
  Page* page(std::u16string_view name) const;

  /// The page in front, counted from 0.
  std::size_t Value() const { return value_; }
  void Value(std::size_t page);
  /// The user takes a tab.
  void choose(std::size_t page) {
    if (inReach()) Value(page);
  }
  Event<> Change;

 private:
  std::vector<std::unique_ptr<Page>> pages_;
  std::size_t value_ = 0;
};

}  // namespace pluvo::forms
