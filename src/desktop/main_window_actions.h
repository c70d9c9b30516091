#pragma once

#include "main_window.h"

#include <QAction>
#include <QActionGroup>

namespace pluvo::desktop {

/// The actions that come and go with what is open and under way.
struct MainWindow::Actions {
  QAction* open = nullptr;
  QAction* save = nullptr;
  QAction* saveAs = nullptr;
  QAction* reopen = nullptr;
  QAction* close = nullptr;
  QAction* undo = nullptr;
  QAction* redo = nullptr;
  QAction* copy = nullptr;
  QAction* selectAll = nullptr;
  QAction* cancel = nullptr;
  QAction* fieldCodes = nullptr;
  QAction* instructions = nullptr;
  QActionGroup themes{nullptr};
};

}  // namespace pluvo::desktop
