#include "places.h"

#include <QCoreApplication>
#include <QStandardPaths>

namespace pluvo::desktop {

namespace {

std::u16string folder(QStandardPaths::StandardLocation location) {
  return QStandardPaths::writableLocation(location).toStdU16String();
}

}  // namespace

Places machinePlaces() {
  return {folder(QStandardPaths::DocumentsLocation), folder(QStandardPaths::GenericDataLocation),
          QCoreApplication::applicationDirPath().toStdU16String()};
}

}  // namespace pluvo::desktop
