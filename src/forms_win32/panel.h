#pragma once

#include "grid.h"
#include "mirror.h"
#include "module.h"

#include <memory>
#include <vector>

namespace pluvo::forms_win32 {

/// Controls that show together, in their grid. Where its window is too low for them it scrolls. Controls that
/// stay in sight stand on a strip below.
class Panel final : public Receiver {
 public:
  Panel(const std::vector<forms::Control*>& controls, Stage& stage, HWND parent);
  Panel(const Panel&) = delete;
  Panel& operator=(const Panel&) = delete;
  ~Panel() override;

  HWND window() const { return window_; }
  const std::vector<std::unique_ptr<Mirror>>& mirrors() const { return mirrors_; }
  int leastWidth() const { return grid().leastWidth(); }
  int heightFor(int width, bool least) const { return grid().heightFor(width, least); }
  void arrange();
  /// Scrolls so that the widget can be seen.
  void reveal(HWND widget);

  LRESULT receives(HWND window, UINT message, WPARAM wparam, LPARAM lparam) override;

 private:
  Grid grid(bool withoutKept = false) const { return {mirrors_, *stage_.look, withoutKept}; }
  std::vector<Mirror*> kept() const;
  /// Puts what stays in sight at the bottom, above all else; no room where all has its place.
  void placeKept(const RECT& strip);
  void scrollTo(int top);
  void scrolls(WORD how);

  Stage& stage_;
  HWND window_ = nullptr;
  HWND strip_ = nullptr;
  int stripHeight_ = 0;
  int top_ = 0;  ///< pixels scrolled out of sight above
  bool arranging_ = false;
  std::vector<std::unique_ptr<Mirror>> mirrors_;
};

}  // namespace pluvo::forms_win32
