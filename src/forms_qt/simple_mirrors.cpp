#include "simple_mirrors.h"

#include "texts.h"

#include <QKeyEvent>
#include <QMouseEvent>

namespace pluvo::forms_qt {

namespace {

/// One whose link is where the keyboard is as soon as the label has the focus.
class LinkedLabel final : public QLabel {
 public:
  using QLabel::QLabel;

 protected:
  void focusInEvent(QFocusEvent* event) override {
    QLabel::focusInEvent(event);
    if (textFormat() == Qt::RichText && event->reason() != Qt::MouseFocusReason)
      QLabel::focusNextPrevChild(true);
  }
  void focusOutEvent(QFocusEvent* event) override {
    if (textFormat() == Qt::RichText) setSelection(0, 0);
    QLabel::focusOutEvent(event);
  }
};

}  // namespace

LabelMirror::LabelMirror(forms::Label& label, UserActions& userActions, QWidget& parent)
    : Mirror(label, userActions), label_(label), shown_(new LinkedLabel(&parent)) {
  shown_->setWordWrap(true);
  // The places to break words at are not to be copied; the form's Ctrl+C leaves them out.
  shown_->setContextMenuPolicy(Qt::NoContextMenu);
  // A label with hardly any room stands close to its box.
  if (label.Cell().columns == 1) shown_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  shown_->installEventFilter(this);
  connect(shown_, &QLabel::linkActivated, this, [this] { press(); });
  mirrors(*shown_);
}

bool LabelMirror::press() {
  userActions().decides([this] {
    if (userActions().admits(&label_)) label_.press();
  });
  return true;
}

bool LabelMirror::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() == QEvent::MouseButtonRelease &&
      static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton && !label_.IsLink())
    press();
  return false;
}

/// Line ends before the text push it down in a place of fixed size; here its place is as large as it is.
QString LabelMirror::text() const {
  QString text = lines(label_.Caption());
  while (text.startsWith(u'\n')) text.remove(0, 1);
  return text;
}

QString LabelMirror::keyText() const {
  return shown_->buddy() == nullptr ? QString() : text().replace(u'&', QStringLiteral("&&"));
}

void LabelMirror::refreshKind() {
  if (label_.IsLink()) {
    shown_->setTextFormat(Qt::RichText);
    shown_->setText(QStringLiteral("<a href='#'>%1</a>").arg(text().toHtmlEscaped()));
    shown_->setTextInteractionFlags(Qt::LinksAccessibleByKeyboard | Qt::LinksAccessibleByMouse);
    shown_->setFocusPolicy(Qt::StrongFocus);
    return;
  }
  shown_->setTextFormat(Qt::PlainText);
  // Only a label that leads to a box has marks.
  shown_->setText(shown_->buddy() == nullptr ? breakable(text()) : keyed());
  shown_->setTextInteractionFlags(shown_->buddy() == nullptr ? Qt::TextSelectableByMouse
                                                             : Qt::NoTextInteraction);
}

ButtonMirror::ButtonMirror(forms::CommandButton& button, UserActions& userActions, QWidget& parent)
    : Mirror(button, userActions), button_(button), shown_(new Wrapping<QPushButton>(&parent)) {
  shown_->setAutoDefault(false);
  shown_->installEventFilter(this);
  connect(shown_, &QPushButton::clicked, this, &ButtonMirror::press);
  mirrors(*shown_);
}

bool ButtonMirror::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return false;
  const auto& key = *static_cast<QKeyEvent*>(event);
  if (key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter) return false;
  // A key held down may have brought the focus here.
  if (!key.isAutoRepeat()) shown_->click();
  return true;
}

bool ButtonMirror::press() {
  userActions().decides([this] {
    if (userActions().admits(&button_)) button_.press();
  });
  return true;
}

QString ButtonMirror::keyText() const { return marked(button_.Caption()); }

void ButtonMirror::refreshKind() {
  shown_->setText(keyed());
  shown_->setDefault(button_.Default());
}

CheckBoxMirror::CheckBoxMirror(forms::CheckBox& box, UserActions& userActions, QWidget& parent)
    : Mirror(box, userActions), box_(box), shown_(new Wrapping<QCheckBox>(&parent)) {
  connect(shown_, &QCheckBox::clicked, this, [this](bool value) {
    this->userActions().decides([this, value] { box_.tick(value); });
    refresh();
  });
  mirrors(*shown_);
}

QString CheckBoxMirror::keyText() const { return marked(box_.Caption()); }

void CheckBoxMirror::refreshKind() {
  shown_->setText(keyed());
  shown_->setChecked(box_.Value());
}

PictureMirror::PictureMirror(forms::Picture& picture, UserActions& userActions, QWidget& parent)
    : Mirror(picture, userActions) {
  auto* symbol = new Symbol(qt(picture.Symbol()), &parent);
  mirrors(*symbol);
}

}  // namespace pluvo::forms_qt
