#include "editing/frmEdit.h"

#include "app/globals.h"
#include "editing/lineBreaks.h"
#include "language/mdLanguage.h"
#include "platform/ui/Asker.h"
#include "widgets/okCancelRow.h"

#include <QApplication>
#include <QPlainTextEdit>
#include <QShortcut>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

frmEdit::frmEdit(const QString& caption, const QString& text, const QString& kept, QWidget* parent)
    : QDialog(parent), Form(*this, u"frmEdit"_s), caption_(caption), before_(text), kept_(kept),
      txtText_(new QPlainTextEdit(this)) {
    build();
    mdLanguage::SetCtrlProps(*this);
    refreshTitles();
    txtText_->setPlainText(withPlainBreaks(text));
    txtText_->setFocus();
}

frmEdit::~frmEdit() = default;

std::optional<QString> frmEdit::ask(const QString& caption, const QString& text, const QString& kept) {
    frmEdit window(caption, text, kept, QApplication::activeWindow());
    if (window.exec() != QDialog::Accepted)
        return std::nullopt;
    return window.text();
}

void frmEdit::build() {
    withOwnText(txtText_, u"txtText"_s);
    // From here the keyboard gets to the buttons; a description has no tabs.
    txtText_->setTabChangesFocus(true);
    auto* column = new QVBoxLayout(this);
    column->addWidget(txtText_, 1);
    column->addLayout(okCancelRow(this));
    for (const int key : {Qt::Key_Return, Qt::Key_Enter})
        connect(new QShortcut(QKeySequence(Qt::CTRL | key), this), &QShortcut::activated, this,
                [this] { cmdOK_Click(); });
    resize(fontMetrics().averageCharWidth() * 80, fontMetrics().lineSpacing() * 20);
}

void frmEdit::refreshTitles() {
    setWindowTitle(caption_);
    txtText_->setAccessibleName(caption_);
}

QString frmEdit::text() const {
    if (!txtText_->document()->isModified())
        return before_;
    // The plain text would have other blanks where the text has protected ones.
    const QString edited = withPlainBreaks(txtText_->document()->toRawText());
    return edited == withPlainBreaks(before_) ? before_ : withBreaksOf(before_, edited);
}

void frmEdit::cmdOK_Click() {
    accept();
}

void frmEdit::cmdCancel_Click() {
    if (text() != kept_ &&
        ui::asker().messageBox({.text = TranslateText(u"Wollen Sie den geänderten Text verwerfen?"_s),
                                .icon = ui::Icon::Question,
                                .buttons = ui::Buttons::YesNo,
                                .defaultButton = ui::Answer::No}) != ui::Answer::Yes)
        return;
    done(QDialog::Rejected);
}
