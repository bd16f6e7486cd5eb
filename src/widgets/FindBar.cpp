#include "widgets/FindBar.h"

#include "app/globals.h"
#include "widgets/Form.h"
#include "widgets/Icons.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

using namespace Qt::StringLiterals;

FindBar::FindBar(QWidget* parent) : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    txtSuchen_ = withOwnText(new QLineEdit(this), u"txtSuchen"_s);
    txtSuchen_->setClearButtonEnabled(true);
    row->addWidget(txtSuchen_, 1);
    lblResult_ = withOwnText(new QLabel(this), u"lblNotFound"_s);
    lblResult_->setTextFormat(Qt::PlainText);
    lblResult_->hide();
    row->addWidget(lblResult_);
    row->addWidget(cmdBack_ = button(u"cmdSuchenBack"_s, u"go-back"_s));
    row->addWidget(cmdNext_ = button(u"cmdSuchenNext"_s, u"go-next"_s));
    row->addWidget(cmdClose_ = button(u"cmdSuchenClose"_s, u"dismiss"_s));
    connect(cmdBack_, &QToolButton::clicked, this, [this] { find(true, false); });
    connect(cmdNext_, &QToolButton::clicked, this, [this] { find(false, false); });
    connect(cmdClose_, &QToolButton::clicked, this, [this] { close(); });
    connect(txtSuchen_, &QLineEdit::textEdited, this, [this] { find(false, true); });
    hide();
}

QToolButton* FindBar::button(const QString& name, const QString& icon) {
    auto* made = withOwnText(new QToolButton(this), name);
    made->setIcon(Icons::get(icon));
    made->setAutoRaise(true);
    return made;
}

QString FindBar::text() const {
    return txtSuchen_->text();
}

void FindBar::open(const QString& text) {
    if (!text.isEmpty())
        txtSuchen_->setText(text);
    showResult();
    show();
    txtSuchen_->setFocus();
    txtSuchen_->selectAll();
}

/// Empty it takes no place: it would stand as a gap between the field and its buttons.
void FindBar::showResult() {
    const QString words = result();
    lblResult_->setText(words);
    lblResult_->setVisible(!words.isEmpty());
}

void FindBar::close() {
    hide();
    closed();
}

void FindBar::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        find(event->modifiers().testFlag(Qt::ShiftModifier), false);
    else
        QWidget::keyPressEvent(event);
}

void FindBar::refreshTexts() {
    const auto name = [](QToolButton& button, const QString& text) {
        button.setToolTip(text);
        button.setAccessibleName(text);
    };
    txtSuchen_->setPlaceholderText(prompt());
    txtSuchen_->setAccessibleName(prompt());
    name(*cmdBack_, TranslateText(u"Vorige Stelle (Umschalt+Eingabe)"_s));
    name(*cmdNext_, TranslateText(u"Nächste Stelle (Eingabe)"_s));
    name(*cmdClose_, TranslateText(u"Suchzeile schließen (Esc)"_s));
    showResult();
}
