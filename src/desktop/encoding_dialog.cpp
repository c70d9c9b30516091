#include "encoding_dialog.h"

#include "errors/document_error.h"
#include "store/encodings.h"

#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>

namespace pluvo::desktop {

namespace {

QString text(const char* source) { return QCoreApplication::translate("EncodingDialog", source); }

class EncodingDialog final : public QDialog {
 public:
  EncodingDialog(QWidget* owner, const QString& name, const QString& sentence, store::EncodingSample sample)
      : QDialog(owner), sample_(std::move(sample)) {
    setObjectName(QStringLiteral("EncodingDialog"));
    setWindowTitle(text("Encoding of “%1”").arg(name));
    auto* const why = new QLabel(sentence, this);
    why->setWordWrap(true);
    why->setTextFormat(Qt::PlainText);
    auto* const listLabel = new QLabel(text("Read the text &as:"), this);
    listLabel->setBuddy(list_);
    auto* const sampleLabel = new QLabel(text("&Lines by which to tell:"), this);
    sampleLabel->setBuddy(shown_);
    list_->setObjectName(QStringLiteral("encodings"));
    shown_->setObjectName(QStringLiteral("sample"));
    shown_->setReadOnly(true);
    shown_->setTabChangesFocus(true);
    for (const store::LikelyEncoding& likely : store::likelyEncodings())
      list_->addItem(QString::fromStdString(likely.name + " – " + likely.texts));
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Open | QDialogButtonBox::Cancel, this);
    auto* const grid = new QGridLayout(this);
    grid->addWidget(why, 0, 0, 1, 2);
    grid->addWidget(listLabel, 1, 0);
    grid->addWidget(sampleLabel, 1, 1);
    grid->addWidget(list_, 2, 0);
    grid->addWidget(shown_, 2, 1);
    grid->addWidget(buttons, 3, 0, 1, 2);
    grid->setColumnStretch(0, 2);
    grid->setColumnStretch(1, 3);
    resize(820, 420);
    connect(list_, &QListWidget::currentRowChanged, this, &EncodingDialog::showSample);
    connect(list_, &QListWidget::itemActivated, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    list_->setFocus();
  }

  void choose(const std::string& encoding) {
    list_->setCurrentRow(0);
    const auto& all = store::likelyEncodings();
    for (std::size_t row = 0; row < all.size(); ++row)
      if (all[row].name == encoding) list_->setCurrentRow(static_cast<int>(row));
  }
  const std::string& chosen() const {
    return store::likelyEncodings()[static_cast<std::size_t>(std::max(list_->currentRow(), 0))].name;
  }

 private:
  void showSample() {
    try {
      shown_->setPlainText(QString::fromStdU16String(sample_.in(chosen())));
    } catch (const errors::DocumentError& unusable) {
      shown_->setPlainText(QString::fromUtf8(unusable.what()));
    }
  }

  store::EncodingSample sample_;
  QListWidget* list_ = new QListWidget(this);
  QPlainTextEdit* shown_ = new QPlainTextEdit(this);
};

}  // namespace

std::optional<std::string> askForEncoding(QWidget* owner, const std::string& path, const QString& sentence,
                                          const std::string& encoding) {
  const QString name = QFileInfo(QString::fromStdString(path)).fileName();
  EncodingDialog dialog(owner, name, sentence, store::EncodingSample(path));
  dialog.choose(encoding);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return dialog.chosen();
}

}  // namespace pluvo::desktop
