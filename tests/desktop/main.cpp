#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>

/// What the system's font library keeps until the process ends.
extern "C" const char* __lsan_default_suppressions();   // NOLINT(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier)
  return "leak:libfontconfig\nleak:libdbus\nleak:libQt6DBus\n";
}

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  // Nobody's settings and data are touched.
  const QTemporaryDir home;
  for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR"})
    qputenv(name, home.path().toUtf8());
  const QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("PLUVO"));
  QApplication::setOrganizationName(QStringLiteral("PLUVO"));
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setStyle(QStringLiteral("Fusion"));
  return RUN_ALL_TESTS();
}
