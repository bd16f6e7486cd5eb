#include "widgets/TextFindBar.h"

#include "app/globals.h"
#include "widgets/Form.h"
#include "widgets/Icons.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QShortcut>
#include <QTextEdit>
#include <QToolButton>

using namespace Qt::StringLiterals;

TextFindBar::TextFindBar(QTextEdit& text, QWidget* parent) : QWidget(parent), text_(text) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    txtSuchen_ = withOwnText(new QLineEdit(this), u"txtSuchen"_s);
    txtSuchen_->setClearButtonEnabled(true);
    row->addWidget(txtSuchen_, 1);
    lblNotFound_ = withOwnText(new QLabel(this), u"lblNotFound"_s);
    lblNotFound_->hide();
    row->addWidget(lblNotFound_);
    row->addWidget(cmdBack_ = button(u"cmdSuchenBack"_s, u"go-back"_s));
    row->addWidget(cmdNext_ = button(u"cmdSuchenNext"_s, u"go-next"_s));
    row->addWidget(cmdClose_ = button(u"cmdSuchenClose"_s, u"dismiss"_s));
    connect(cmdBack_, &QToolButton::clicked, this, [this] { find(true, false); });
    connect(cmdNext_, &QToolButton::clicked, this, [this] { find(false, false); });
    connect(cmdClose_, &QToolButton::clicked, this, [this] { close(); });
    connect(txtSuchen_, &QLineEdit::textEdited, this, [this] { find(false, true); });
    connect(new QShortcut(QKeySequence::Find, parent, nullptr, nullptr, Qt::WidgetWithChildrenShortcut),
            &QShortcut::activated, this, [this] { open(); });
    hide();
}

QToolButton* TextFindBar::button(const QString& name, const QString& icon) {
    auto* made = withOwnText(new QToolButton(this), name);
    made->setIcon(Icons::get(icon));
    made->setAutoRaise(true);
    return made;
}

void TextFindBar::open() {
    const QString selected = text_.textCursor().selectedText();
    if (!selected.isEmpty() && !selected.contains(QChar::ParagraphSeparator) &&
        !selected.contains(QChar::LineSeparator))
        txtSuchen_->setText(selected);
    sayFound(true);
    show();
    txtSuchen_->setFocus();
    txtSuchen_->selectAll();
}

/// @param fromHere what is found already may be found again, as it grows under the typing
void TextFindBar::find(bool backward, bool fromHere) {
    const QString wanted = txtSuchen_->text();
    sayFound(true);
    if (wanted.isEmpty())
        return;
    const QTextDocument::FindFlags flags = backward ? QTextDocument::FindBackward : QTextDocument::FindFlags();
    QTextCursor from = text_.textCursor();
    if (fromHere)
        from.setPosition(from.selectionStart());
    QTextCursor found = text_.document()->find(wanted, from, flags);
    if (found.isNull()) {
        from.movePosition(backward ? QTextCursor::End : QTextCursor::Start);
        found = text_.document()->find(wanted, from, flags);
    }
    sayFound(!found.isNull());
    if (!found.isNull())
        text_.setTextCursor(found);
}

/// Empty it takes no place: it would stand as a gap between the field and its buttons.
void TextFindBar::sayFound(bool found) {
    lblNotFound_->setText(found ? QString() : said(u"Nicht gefunden"_s, u"Not found"_s));
    lblNotFound_->setVisible(!found);
}

void TextFindBar::close() {
    hide();
    text_.setFocus();
}

void TextFindBar::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        find(event->modifiers().testFlag(Qt::ShiftModifier), false);
    else
        QWidget::keyPressEvent(event);
}

void TextFindBar::refreshTexts() {
    const auto name = [](QToolButton& button, const QString& text) {
        button.setToolTip(text);
        button.setAccessibleName(text);
    };
    txtSuchen_->setPlaceholderText(TranslateText(u"Im Text suchen"_s));
    txtSuchen_->setAccessibleName(TranslateText(u"Im Text suchen"_s));
    name(*cmdBack_, TranslateText(u"Vorige Stelle (Umschalt+Eingabe)"_s));
    name(*cmdNext_, TranslateText(u"Nächste Stelle (Eingabe)"_s));
    name(*cmdClose_, TranslateText(u"Suchzeile schließen (Esc)"_s));
    sayFound(lblNotFound_->text().isEmpty());
}
