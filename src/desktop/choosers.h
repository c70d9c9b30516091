#pragma once

#include <QStringList>
#include <QWidget>
#include <functional>
#include <optional>

namespace pluvo::desktop {

/// How the user names files; replaced in tests.
struct Choosers {
  std::function<QStringList(QWidget* owner, const QString& folder)> open;
  /// A name for a document, proposed as this path. The caller sees to names that are taken.
  std::function<std::optional<QString>(QWidget* owner, const QString& path)> saveAs;
  /// Empty: none was chosen.
  std::function<QString(QWidget* owner, const QString& folder)> folder;
};

Choosers fileDialogs();

}  // namespace pluvo::desktop
