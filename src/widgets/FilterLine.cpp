#include "widgets/FilterLine.h"

#include "analysis/request/filterTokens.h"
#include "analysis/request/filterWords.h"
#include "widgets/BestFirst.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QListView>
#include <QStringListModel>
#include <QTextCharFormat>
#include <algorithm>

FilterLine::FilterLine(const QString& name, QWidget* parent)
    : QLineEdit(parent), completer_(new QCompleter(this)), model_(new QStringListModel(this)),
      found_(new BestFirst(model_, this)) {
    setObjectName(name);
    setProperty("CtrlTyp", QString()); // its text is the user's
    completer_->setModel(found_);
    completer_->setFilterMode(Qt::MatchContains);
    completer_->setCaseSensitivity(Qt::CaseInsensitive);
    auto* list = new QListView;
    list->setUniformItemSizes(true);
    completer_->setPopup(list);
    // Not as the line's own completer: that would replace the whole text.
    completer_->setWidget(this);
    connect(completer_, qOverload<const QString&>(&QCompleter::activated), this,
            [this](const QString& choice) { take(choice); });
    connect(this, &QLineEdit::textEdited, this, [this] { offer(); });
    // While the list is open the completer keeps it from the line that it has lost the focus.
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget* old, const QWidget* now) {
        if (old == this && now != completer_->popup())
            completer_->popup()->hide();
    });
}

FilterLine::~FilterLine() {
    // The focus leaves it once more when it is no line any longer.
    disconnect(qApp, nullptr, this, nullptr);
}

void FilterLine::setChoices(const QStringList& choices) {
    model_->setStringList(choices);
}

void FilterLine::markSpot(int start, int length) {
    if (composing_)
        return;
    QList<QInputMethodEvent::Attribute> attributes;
    if (length > 0) {
        QTextCharFormat format;
        format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
        format.setUnderlineColor(palette().color(QPalette::Text));
        format.setFontWeight(QFont::Bold);
        attributes << QInputMethodEvent::Attribute(QInputMethodEvent::TextFormat, start - cursorPosition(), length,
                                                   format);
    }
    QInputMethodEvent event(QString(), attributes);
    QLineEdit::inputMethodEvent(&event);
}

void FilterLine::inputMethodEvent(QInputMethodEvent* event) {
    composing_ = !event->preeditString().isEmpty();
    QLineEdit::inputMethodEvent(event);
}

/// A word that is a name already needs no list, which would cover what is said about the filter.
bool FilterLine::isName(const QString& word) const {
    return std::ranges::any_of(model_->stringList(), [&](const QString& choice) {
        return choice.startsWith(word + u':', Qt::CaseInsensitive);
    });
}

void FilterLine::offer() {
    const QString word = filterPlace(text(), cursorPosition()).name;
    if (word.isEmpty() || isFilterOperator(word) || isName(word)) {
        completer_->popup()->hide();
        return;
    }
    found_->fit(word);
    completer_->setCompletionPrefix(word);
    completer_->complete();
}

void FilterLine::take(const QString& choice) {
    const qsizetype start = filterPlace(text(), cursorPosition()).start;
    const QString name = filterName(choice.left(choice.indexOf(u':')));
    QString all = text();
    // A bracket that was opened for the name is its own, and so is one behind it.
    const bool closed = all.mid(cursorPosition()).startsWith(u']') && name.endsWith(u']');
    all.replace(start, cursorPosition() - start + (closed ? 1 : 0), name);
    setText(all);
    setCursorPosition(static_cast<int>(start + name.size()));
    Q_EMIT textEdited(all);
}

void FilterLine::keyPressEvent(QKeyEvent* event) {
    // These belong to the list of names while it is open.
    if (completer_->popup()->isVisible())
        switch (event->key()) {
        case Qt::Key_Enter:
        case Qt::Key_Return:
        case Qt::Key_Escape:
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
            event->ignore();
            return;
        default:
            break;
        }
    QLineEdit::keyPressEvent(event);
}
