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

using namespace Qt::StringLiterals;

namespace {

/// Where the name ends that stands last in a text; -1 where something else does.
qsizetype endOfLastName(const QString& text) {
    const std::vector<FilterToken> tokens = filterTokens(text);
    const FilterToken* last = tokens.size() > 1 ? &tokens[tokens.size() - 2] : nullptr;
    const bool name = last && (last->kind == FilterToken::Kind::Word || last->kind == FilterToken::Kind::Name);
    return name && !isFilterOperator(last->text) ? last->end() : -1;
}

} // namespace

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
    // A bracket that was opened for the name is its own, and so is one behind it.
    const bool closed = text().mid(cursorPosition()).startsWith(u']') && name.endsWith(u']');
    replace(start, cursorPosition() - start + (closed ? 1 : 0), name);
}

/// As if it had been typed.
void FilterLine::replace(qsizetype start, qsizetype length, const QString& by) {
    setCursorPosition(static_cast<int>(start));
    setSelection(static_cast<int>(start), static_cast<int>(length));
    insert(by);
}

QString FilterLine::variableAtCursor() const {
    return filterPlace(text(), cursorPosition()).variable;
}

void FilterLine::putValue(const QString& variable, const QString& value) {
    const FilterPlace place = filterPlace(text(), cursorPosition());
    const QString written = filterValue(value);
    const bool same = place.variable.compare(variable, Qt::CaseInsensitive) == 0;
    const QString before = text().left(cursorPosition());
    if (same && place.value >= 0)
        replace(place.value, place.valueLength, written);
    else if (const qsizetype end = endOfLastName(before); same && end >= 0)
        replace(end, before.size() - end, u'=' + written);
    else
        replace(cursorPosition(), 0,
                (before.isEmpty() || before.back().isSpace() || before.endsWith(u'(') ? QString() : u" "_s) +
                    filterName(variable) + u'=' + written);
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
