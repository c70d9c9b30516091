#include "recent.h"

#include <QByteArray>
#include <QSettings>
#include <QStringList>
#include <filesystem>

namespace pluvo::desktop {

namespace {

constexpr qsizetype kMost = 12;

QString key() { return QStringLiteral("recent"); }

/// Names are bytes; settings hold texts.
QString encoded(const std::string& path) {
  return QString::fromLatin1(QByteArray::fromStdString(path).toPercentEncoding("/"));
}

}  // namespace

std::vector<std::string> recentFiles() {
  std::vector<std::string> paths;
  for (const QString& entry : QSettings().value(key()).toStringList()) {
    const std::string path = QByteArray::fromPercentEncoding(entry.toLatin1()).toStdString();
    std::error_code ignored;
    if (std::filesystem::exists(path, ignored)) paths.push_back(path);
  }
  return paths;
}

void rememberRecent(const std::string& path) {
  QSettings settings;
  QStringList entries = settings.value(key()).toStringList();
  entries.removeAll(encoded(path));
  entries.prepend(encoded(path));
  while (entries.size() > kMost) entries.removeLast();
  settings.setValue(key(), entries);
}

}  // namespace pluvo::desktop
