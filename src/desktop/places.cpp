#include "places.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace pluvo::desktop {

namespace {

std::u16string folder(QStandardPaths::StandardLocation location) {
  return QStandardPaths::writableLocation(location).toStdU16String();
}

/// Beside the program, in a build as when installed.
std::u16string componentFolder() {
  const QDir program(QCoreApplication::applicationDirPath());
  for (const char* relative : {"../share/pluvo", "../share"}) {
    const QString candidate = QDir::cleanPath(program.filePath(QLatin1String(relative)));
    if (QFileInfo::exists(candidate + QStringLiteral("/Readme.txt"))) return candidate.toStdU16String();
  }
  return QDir::cleanPath(program.path()).toStdU16String();
}

}  // namespace

Places machinePlaces() {
  const Places places{folder(QStandardPaths::DocumentsLocation), folder(QStandardPaths::GenericDataLocation),
                      componentFolder()};
  QDir().mkpath(QString::fromStdU16String(places.templates) + QStringLiteral("/PLUVO"));
  return places;
}

}  // namespace pluvo::desktop
