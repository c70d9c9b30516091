#pragma once

#include "errors/fault.h"
#include "forms/control.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pluvo::forms {

/// One page of a multi-page: controls that show together. A page of a dialog is a struct of its controls,
/// made of this.
class Page {
 public:
  Page(std::u16string name, std::u16string caption, std::u16string tip)
      : name_(std::move(name)), caption_(std::move(caption)), tip_(std::move(tip)) {}
  Page(const Page&) = delete;
  Page& operator=(const Page&) = delete;

  const std::u16string& Name() const { return name_; }
  const std::u16string& Caption() const { return caption_; }
  const std::u16string& ControlTipText() const { return tip_; }

  /// In the order in which they were added.
  const std::vector<Control*>& controls() const { return controls_; }
  /// The control outlives the page.
  void add(Control& control) { controls_.push_back(&control); }
  /// Nothing where there is none of that name.
  Control* control(std::u16string_view name) const;
  /// The control of that name and kind. Throws Fault kObjectNotSet where there is none.
  template <class Kind>
  Kind& get(std::u16string_view name) const {
    auto* found = dynamic_cast<Kind*>(control(name));
    if (found == nullptr) throw errors::objectNotSet();
    return *found;
  }

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

  /// In the order of their tabs.
  const std::vector<Page*>& Pages() const { return pages_; }
  /// The page outlives the control.
  void add(Page& page) { pages_.push_back(&page); }

  /// The page in front, counted from 0.
  std::size_t Value() const { return value_; }
  void Value(std::size_t page);
  /// The user takes a tab.
  void choose(std::size_t page) {
    if (inReach()) Value(page);
  }
  Event<> Change;

 private:
  std::vector<Page*> pages_;
  std::size_t value_ = 0;
};

}  // namespace pluvo::forms
