#include "forms_qt/machine.h"

#include "errors/fault.h"
#include "texts.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QEventLoop>
#include <QProcess>
#include <QScopedValueRollback>

namespace pluvo::forms_qt {

namespace {

constexpr std::int32_t kFileNotFound = 53;

/// What a command line gives to "start", itself or behind a shell; empty where it is another's.
QString started(const QString& commandLine) {
  for (const QString& starter : {QStringLiteral("start "), QStringLiteral("cmd.exe /c start "),
                                 QStringLiteral("command.com /c start ")}) {
    if (commandLine.startsWith(starter, Qt::CaseInsensitive))
      return commandLine.mid(starter.size()).trimmed();
  }
  return {};
}

errors::Fault notOpened(const QString& what) {
  return {kFileNotFound, u16(what) +
                             u" could not be opened: there is no program for it on this desktop.  Open "
                             u"it in a program of your choice."};
}

}  // namespace

void QtYielding::yield() {
  if (yields_) return;
  const QScopedValueRollback yields(yields_, true);
  constexpr int kMilliseconds = 20;
  QCoreApplication::processEvents(QEventLoop::AllEvents, kMilliseconds);
}

QtLauncher::QtLauncher() : opener_([](const QUrl& address) { return QDesktopServices::openUrl(address); }) {}

void QtLauncher::launchHidden(const std::u16string& commandLine) {
  const QString line = qt(commandLine).trimmed();
  if (const QString what = started(line); !what.isEmpty()) {
    const bool isPath = what.startsWith(u'/');
    if (!opener_(isPath ? QUrl::fromLocalFile(what) : QUrl(what, QUrl::StrictMode))) throw notOpened(what);
    return;
  }
  QStringList words = QProcess::splitCommand(line);
  const QString program = words.isEmpty() ? line : words.takeFirst();
  if (program.isEmpty() || !QProcess::startDetached(program, words)) {
    throw errors::Fault(
        kFileNotFound,
        u16(program) + u" could not be started: there is no such program, or it may not be run.");
  }
}

}  // namespace pluvo::forms_qt
