#pragma once

#include "forms/multi_page.h"
#include "mirror.h"
#include "panel.h"

#include <memory>
#include <vector>

namespace pluvo::forms_win32 {

/// Pages behind tabs.
class MultiPageMirror final : public Mirror {
 public:
  MultiPageMirror(forms::MultiPage& pages, Stage& stage, HWND parent);
  ~MultiPageMirror() override;
  bool grows() const override { return true; }
  int leastWidth() const override;
  int heightFor(int width) const override { return heightFor(width, false); }
  int leastHeightFor(int width) const override { return heightFor(width, true); }
  void place(const RECT& place) override;
  std::vector<Mirror*> inner() const override;
  LRESULT notified(NMHDR& notification) override;
  void lookChanged() override;
  /// The user goes to the next page, or the one before.
  void turn(int by);
  /// The widget's page, scrolled to it.
  void reveal(const Mirror& mirror);

 private:
  void refreshKind() override;
  int heightFor(int width, bool least) const;
  /// The room that the tabs take, at this width.
  SIZE frame(int width) const;
  void chosen(std::size_t page);
  TTTOOLINFOW tipOf(std::size_t page) const;

  forms::MultiPage& pages_;
  std::vector<std::unique_ptr<Panel>> panels_;
};

}  // namespace pluvo::forms_win32
