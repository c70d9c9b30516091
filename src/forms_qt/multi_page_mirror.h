#pragma once

#include "forms/multi_page.h"
#include "mirror.h"
#include "page_panel.h"

#include <QTabWidget>

namespace pluvo::forms_qt {

class PageView;

/// Pages behind tabs. A page that is larger than its place scrolls.
class MultiPageMirror final : public Mirror {
 public:
  MultiPageMirror(forms::MultiPage& pages, UserActions& userActions, QWidget& parent);
  ~MultiPageMirror() override;
  bool grows() const override { return true; }
  bool eventFilter(QObject* watched, QEvent* event) override;
  std::vector<Mirror*> inner() const override;
  void giveInnerKeys(std::set<QChar>& taken) override;
  void keepInSight() override;

 private:
  void refreshKind() override;
  void chosen(int page);

  forms::MultiPage& pages_;
  QTabWidget* shown_;
  std::vector<QPointer<PagePanel>> panels_;
  std::vector<PageView*> views_;
};

}  // namespace pluvo::forms_qt
