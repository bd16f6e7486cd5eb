#include "widgets/TextFindBar.h"

#include "app/globals.h"

#include <QShortcut>
#include <QTextEdit>

using namespace Qt::StringLiterals;

TextFindBar::TextFindBar(QTextEdit& text, QWidget* parent) : FindBar(parent), text_(text) {
    connect(new QShortcut(QKeySequence::Find, parent, nullptr, nullptr, Qt::WidgetWithChildrenShortcut),
            &QShortcut::activated, this, [this] { openWithSelection(); });
}

void TextFindBar::openWithSelection() {
    const QString selected = text_.textCursor().selectedText();
    const bool oneLine = !selected.contains(QChar::ParagraphSeparator) && !selected.contains(QChar::LineSeparator);
    found_ = true;
    open(oneLine ? selected : QString());
}

void TextFindBar::find(bool backward, bool fromHere) {
    const QString wanted = text();
    found_ = true;
    if (!wanted.isEmpty()) {
        const QTextDocument::FindFlags flags = backward ? QTextDocument::FindBackward : QTextDocument::FindFlags();
        QTextCursor from = text_.textCursor();
        if (fromHere)
            from.setPosition(from.selectionStart());
        QTextCursor found = text_.document()->find(wanted, from, flags);
        if (found.isNull()) {
            from.movePosition(backward ? QTextCursor::End : QTextCursor::Start);
            found = text_.document()->find(wanted, from, flags);
        }
        found_ = !found.isNull();
        if (found_)
            text_.setTextCursor(found);
    }
    showResult();
}

void TextFindBar::closed() {
    text_.setFocus();
}

QString TextFindBar::prompt() const {
    return TranslateText(u"Im Text suchen"_s);
}

QString TextFindBar::result() const {
    return found_ ? QString() : said(u"Nicht gefunden"_s, u"Not found"_s);
}
