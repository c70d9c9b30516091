// Shows the whole dialog beside a document in memory, to be looked at:
//
//     forms_qt_gallery [--dark] [--alone] [--tip] [--shot FILE]
//     [find|filled|files|options|about|stats|picker|password|confirm|question|report]
//
// With --shot a picture of the screen is taken and the program ends.
#include "documents/support/notation.h"
#include "engine/frmStats.h"
#include "errors/context.h"
#include "errors/text.h"
#include "forms_qt/boxes.h"
#include "forms_qt/forms.h"
#include "forms_qt/machine.h"
#include "host/clsOpenPLUVO.h"
#include "memory/application.h"
#include "multifile/frmDirectoryBrowser.h"
#include "multifile/frmPassword.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QPlainTextEdit>
#include <QScreen>
#include <QSplitter>
#include <QStyleFactory>
#include <QTemporaryDir>
#include <QTimer>
#include <QWindow>
#include <cstdio>

namespace {

using namespace pluvo;

constexpr const char* kDocument =
    "Minutes of the board¶The meeting opened at nine.  \\[begin confidential\\]The supplier's price rises by "
    "18 "
    "per cent.\\[end confidential\\]  The board thanked the team.¶It was agreed to go on.¶";

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

class Gallery {
 public:
  explicit Gallery(bool alone)
      : word_(std::make_shared<memory::MemoryApplication>()), sample_(kDocument), forms_(boxes_) {
    QDir(folder_.path()).mkpath(QStringLiteral("templates/PLUVO"));
    for (const char* name : {"Contracts", "Letters", "Minutes 2024", "Minutes 2025"})
      QDir(folder_.path()).mkpath(QStringLiteral("Documents/") + QString::fromLatin1(name));
    for (const char* name : {"lease.doc", "offer & acceptance.doc", "agreement.rtf"}) {
      QFile file(folder_.path() + QStringLiteral("/Documents/Contracts/") + QString::fromLatin1(name));
      if (!file.open(QIODevice::WriteOnly)) std::perror(name);
    }
    word_->defaultFilePath(word::wdUserTemplatesPath, path("templates"));
    word_->defaultFilePath(word::wdDocumentsPath, path("Documents"));
    word_->add(sample_.document);
    splitter_.setWindowTitle(QStringLiteral("Minutes.docx"));
    auto* document = new QPlainTextEdit(&splitter_);
    document->setPlainText(QString::fromUtf8(kDocument).replace(u'¶', u'\n').remove(u'\\'));
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

  void run(const std::function<void(forms::Form&)>& whenShown) {
    random_ = host::machineRandomSource();
    clock_ = forms::machineClock();
    host::Surroundings surroundings{
        [this] { return word_; }, forms_, boxes_, inputs_, *clock_, yielding_, launcher_, *random_,
        path("program")};
    dialog_ = std::make_unique<host::frmFAR>(surroundings);
    QTimer::singleShot(0, &splitter_, [&] { whenShown(*dialog_); });
    dialog_->ShowModal();
    dialog_.reset();
  }

  std::u16string path(const char* name) const {
    return (folder_.path() + u'/' + QString::fromLatin1(name)).toStdU16String();
  }
  QWidget* widget(const char* name) const {
    return forms_.windowOf(*dialog_)->findChild<QWidget*>(QString::fromLatin1(name));
  }
  void scene(const QString& name);
  /// Rests the pointer on the control.
  void pointAt(const char* control) const {
    const QWidget* on = widget(control);
    splitter_.windowHandle()->requestActivate();
    QCursor::setPos(on->mapToGlobal(on->rect().center()) + QPoint(1, 1));
    QTimer::singleShot(100, on, [on] { QCursor::setPos(on->mapToGlobal(on->rect().center())); });
  }

 private:
  void fill();
  void page(std::size_t number) { dialog_->get<forms::MultiPage>(u"MultiPage1").choose(number); }

  QTemporaryDir folder_;
  std::shared_ptr<memory::MemoryApplication> word_;
  notation::Sample sample_;
  QSplitter splitter_;
  forms_qt::QtMessageBoxes boxes_;
  forms_qt::QtInputBoxes inputs_;
  forms_qt::QtForms forms_;
  forms_qt::QtYielding yielding_;
  forms_qt::QtLauncher launcher_;
  std::unique_ptr<forms::Clock> clock_;
  std::unique_ptr<host::RandomSource> random_;
  std::unique_ptr<host::frmFAR> dialog_;
};

void Gallery::fill() {
  dialog_->get<forms::TextBox>(u"txtBeginText").type(u"[begin confidential]");
  dialog_->get<forms::TextBox>(u"txtEndText").type(u"[end confidential]");
  dialog_->get<forms::ComboBox>(u"cboxProcOperation1").enter(u"Replace");
  dialog_->get<forms::TextBox>(u"txtTextToEnter").type(u"[withheld]");
  dialog_->get<forms::CommandButton>(u"cmdViewOperation").press();
}

void Gallery::scene(const QString& name) {
  errors::Context context;
  if (name == u"filled") fill();
  if (name == u"highlight") {
    fill();
    dialog_->get<forms::ComboBox>(u"cboxProcOperation1").enter(u"Highlight");
  }
  if (name == u"options") page(2);
  if (name == u"about") page(3);
  if (name == u"link") {
    page(2);
    QTimer::singleShot(200, widget("lblReadMe"),
                       [this] { widget("lblReadMe")->setFocus(Qt::TabFocusReason); });
  }
  if (name == u"files") {
    page(1);
    dialog_->get<forms::TextBox>(u"txtFilePath").type(path("Documents/Contracts"));
    dialog_->get<forms::CommandButton>(u"cmdGetPotentialFiles").press();
    dialog_->get<forms::ListBox>(u"lbxPotentialFiles").select(0);
  }
  if (name == u"stats") {
    fill();
    dialog_->get<forms::CommandButton>(u"cmdExecuteFAR").press();
  }
  if (name == u"picker") {
    page(1);
    dialog_->get<forms::CommandButton>(u"cmdBrowse").press();
  }
  if (name == u"password") {
    std::u16string password;
    multifile::frmPassword(context, forms_).RetrievePassword(password, u"Input Password to Unlock Form.");
  }
  if (name == u"confirm") {
    fill();
    dialog_->get<forms::CheckBox>(u"chkConfirmEach").tick(true);
    dialog_->get<forms::CommandButton>(u"cmdExecuteFAR").press();
  }
  if (name == u"question")
    boxes_.show(u"Insert Highlighted Data?", forms::Buttons::yesNo, u"Right-Click Paste Selection Operation");
  if (name == u"more") dialog_->get<forms::ComboBox>(u"cboxNumberDistanceApart").enter(u"(More...)");
  if (name == u"report") {
    dialog_->get<forms::ComboBox>(u"cboxNumberDistanceApart").enter(u"few");
    dialog_->get<forms::ComboBox>(u"cboxProcOperation1").type(u"");
    dialog_->get<forms::CommandButton>(u"cmdExecuteFAR").press();
  }
}

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

  Gallery gallery(options.isSet(QStringLiteral("alone")));
  constexpr int kSettled = 700;
  if (options.isSet(QStringLiteral("shot"))) {
    QTimer::singleShot(kSettled, &application, [&] {
      const QString tip = options.value(QStringLiteral("tip"));
      if (!tip.isEmpty()) gallery.pointAt(tip.toLatin1().constData());
      QTimer::singleShot(tip.isEmpty() ? kSettled : 3 * kSettled, &application, [&] {
        QGuiApplication::primaryScreen()->grabWindow(0).save(options.value(QStringLiteral("shot")));
        std::_Exit(0);
      });
    });
  }
  gallery.run([&](forms::Form&) { gallery.scene(scene); });
  return 0;
}
