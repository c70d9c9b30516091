// Shows the whole dialog beside a document in memory, to be looked at:
//
//     forms_qt_gallery [--dark] [--alone] [--tip] [--shot FILE]
//     [find|filled|files|options|about|stats|picker|password|confirm|question|report]
//
// With --shot a picture of the screen is taken and the program ends.
#include "host/gallery.h"

#include "forms_qt/boxes.h"
#include "forms_qt/forms.h"
#include "forms_qt/machine.h"
#include "host/tips.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QPlainTextEdit>
#include <QScreen>
#include <QSplitter>
#include <QStyleFactory>
#include <QTimer>
#include <QWindow>
#include <cstdlib>
#include <memory>

namespace {

using namespace pluvo;

QPalette darkPalette() {
  QPalette palette;
  const QColor window(45, 45, 48);
  const QColor base(30, 30, 32);
  palette.setColor(QPalette::Window, window);
  palette.setColor(QPalette::WindowText, Qt::white);
  palette.setColor(QPalette::Base, base);
  palette.setColor(QPalette::AlternateBase, window);
  palette.setColor(QPalette::Text, Qt::white);
  palette.setColor(QPalette::Button, QColor(60, 60, 64));
  palette.setColor(QPalette::ButtonText, Qt::white);
  palette.setColor(QPalette::ToolTipBase, base);
  palette.setColor(QPalette::ToolTipText, Qt::white);
  palette.setColor(QPalette::PlaceholderText, Qt::gray);
  palette.setColor(QPalette::Link, QColor(100, 170, 255));
  palette.setColor(QPalette::Highlight, QColor(53, 116, 240));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, QColor(130, 130, 130));
  return palette;
}

class Shown {
 public:
  explicit Shown(bool alone) : forms_(boxes_) {
    splitter_.setWindowTitle(QStringLiteral("Minutes.docx"));
    auto* document = new QPlainTextEdit(&splitter_);
    document->setPlainText(QString::fromUtf8(host::Gallery::kDocument).replace(u'¶', u'\n'));
    auto* side = new QWidget(&splitter_);
    splitter_.addWidget(document);
    splitter_.addWidget(side);
    splitter_.setStretchFactor(0, 1);
    splitter_.resize(1366, 720);
    splitter_.show();
    splitter_.activateWindow();
    forms_.owner(&splitter_);
    forms_.helpIs(u"lblInstructions");
    forms_.leavesOthersUsable(u"frmFAR");
    if (!alone) forms_.standsIn(u"frmFAR", *side);
  }

  void run(const std::string& scene) {
    const auto random = host::machineRandomSource();
    const auto clock = forms::machineClock();
    host::Surroundings surroundings{
        [this] { return gallery_.word; }, forms_, boxes_, inputs_, *clock, yielding_, launcher_, *random,
        gallery_.path("program")};
    dialog_ = std::make_unique<host::frmFAR>(surroundings);
    QTimer::singleShot(0, &splitter_, [&] {
      gallery_.scene(scene == "link" ? "options" : scene, *dialog_, forms_, boxes_);
      if (scene != "link") return;
      QTimer::singleShot(200, widget("lblReadMe"),
                         [this] { widget("lblReadMe")->setFocus(Qt::TabFocusReason); });
    });
    dialog_->ShowModal();
    dialog_.reset();
  }

  /// Rests the pointer on the control.
  void pointAt(const char* control) const {
    const QWidget* on = widget(control);
    splitter_.windowHandle()->requestActivate();
    QCursor::setPos(on->mapToGlobal(on->rect().center()) + QPoint(1, 1));
    QTimer::singleShot(100, on, [on] { QCursor::setPos(on->mapToGlobal(on->rect().center())); });
  }

 private:
  QWidget* widget(const char* name) const {
    return forms_.windowOf(*dialog_)->findChild<QWidget*>(QString::fromLatin1(name));
  }

  host::Gallery gallery_{std::make_shared<memory::MemoryApplication>()};
  QSplitter splitter_;
  forms_qt::QtMessageBoxes boxes_;
  forms_qt::QtInputBoxes inputs_;
  forms_qt::QtForms forms_;
  forms_qt::QtYielding yielding_;
  forms_qt::QtLauncher launcher_;
  std::unique_ptr<host::frmFAR> dialog_;
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationDisplayName(QStringLiteral("Pluvorama"));
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  QCommandLineParser options;
  options.addOptions({{QStringLiteral("dark"), QString()},
                      {QStringLiteral("alone"), QString()},
                      {QStringLiteral("tip"), QString(), QStringLiteral("control")},
                      {QStringLiteral("shot"), QString(), QStringLiteral("file")}});
  options.process(application);
  if (options.isSet(QStringLiteral("dark"))) QApplication::setPalette(darkPalette());
  const QString scene = options.positionalArguments().value(0);

  Shown shown(options.isSet(QStringLiteral("alone")));
  constexpr int kSettled = 700;
  if (options.isSet(QStringLiteral("shot"))) {
    QTimer::singleShot(kSettled, &application, [&] {
      const QString tip = options.value(QStringLiteral("tip"));
      if (!tip.isEmpty()) shown.pointAt(tip.toLatin1().constData());
      QTimer::singleShot(tip.isEmpty() ? kSettled : 3 * kSettled, &application, [&] {
        QGuiApplication::primaryScreen()->grabWindow(0).save(options.value(QStringLiteral("shot")));
        std::_Exit(0);
      });
    });
  }
  shown.run(scene.toStdString());
  return 0;
}
