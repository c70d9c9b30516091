#include "forms_qt/machine.h"

#include "errors/fault.h"
#include "texts.h"

#include <QDesktopServices>

namespace pluvo::forms_qt {

namespace {

constexpr std::int32_t kFileNotFound = 53;

/// The address that a command line gives to "start", itself or after a shell; empty where there is none.
QString started(const QString& commandLine) {
  for (const QString& starter : {QStringLiteral("start "), QStringLiteral("cmd.exe /c start "),
                                 QStringLiteral("command.com /c start ")}) {
    if (!commandLine.startsWith(starter, Qt::CaseInsensitive)) continue;
    const QString address = commandLine.mid(starter.size()).trimmed();
    const bool isPage =
        address.startsWith(QLatin1String("http://")) || address.startsWith(QLatin1String("https://"));
    return isPage ? address : QString();
  }
  return {};
}

errors::Fault notOpened(const QString& what) {
  return {kFileNotFound, u16(what) +
                             u" could not be opened: there is no program for it on this desktop.  Open "
                             u"it in a program of your choice."};
}

}  // namespace

QtLauncher::QtLauncher() : opener_([](const QUrl& address) { return QDesktopServices::openUrl(address); }) {}

void QtLauncher::launchHidden(const std::u16string& commandLine) {
  const QString line = qt(commandLine).trimmed();
  const QString page = started(line);
  if (page.isEmpty() || !opener_(QUrl(page, QUrl::StrictMode))) throw notOpened(page.isEmpty() ? line : page);
}

void QtLauncher::openFile(const QString& path) {
  if (!opener_(QUrl::fromLocalFile(path))) throw notOpened(path);
}

}  // namespace pluvo::forms_qt
