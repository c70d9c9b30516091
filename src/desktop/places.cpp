#include "places.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

namespace pluvo::desktop {

namespace {

std::u16string folder(QStandardPaths::StandardLocation location) {
  return QStandardPaths::writableLocation(location).toStdU16String();
}

}  // namespace

Places machinePlaces() {
  Places places{folder(QStandardPaths::DocumentsLocation), folder(QStandardPaths::GenericDataLocation),
                QCoreApplication::applicationDirPath().toStdU16String()};
  QDir().mkpath(QString::fromStdU16String(places.templates) + QStringLiteral("/PLUVO"));
  return places;
}

}  // namespace pluvo::desktop
