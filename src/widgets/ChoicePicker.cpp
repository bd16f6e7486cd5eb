#include "widgets/ChoicePicker.h"

#include "widgets/toolTips.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QStyleOptionComboBox>
#include <QWheelEvent>

namespace {
constexpr int visibleChoices = 18;
}

ChoicePicker::ChoicePicker(const QString& name, Kind kind, QWidget* parent) : QComboBox(parent) {
    setObjectName(name);
    setProperty("CtrlTyp", QString()); // its entries come from the catalogue
    // A list of thousands must not be measured entry by entry.
    auto* list = new QListView(this);
    list->setUniformItemSizes(true);
    list->setTextElideMode(Qt::ElideRight);
    setView(list);
    setMaxVisibleItems(visibleChoices);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(8);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QComboBox::activated, this, [this](int index) { choose(index); });
    if (kind == Kind::Plain)
        return;
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    auto* completer = new QCompleter(model(), this);
    completer->setFilterMode(Qt::MatchContains);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setMaxVisibleItems(visibleChoices);
    auto* found = new QListView;
    found->setUniformItemSizes(true);
    completer->setPopup(found);
    setCompleter(completer);
    connect(lineEdit(), &QLineEdit::returnPressed, this, [this] { chooseTyped(); });
    connect(lineEdit(), &QLineEdit::editingFinished, this, [this] { restore(); });
}

void ChoicePicker::setChoices(const QStringList& choices) {
    if (choices == choices_)
        return;
    choices_ = choices;
    shown_ = -1;
    const QSignalBlocker quiet(this);
    clear();
    addItems(choices);
    setCurrentIndex(-1);
}

void ChoicePicker::showChoice(int index) {
    shown_ = index < choices_.size() ? index : -1;
    restore();
}

void ChoicePicker::setPrompt(const QString& text) {
    if (lineEdit())
        lineEdit()->setPlaceholderText(text);
    else
        setPlaceholderText(text);
}

void ChoicePicker::choose(int index) {
    if (index < 0 || index >= choices_.size() || index == shown_) {
        restore();
        return;
    }
    shown_ = index;
    restore();
    if (onChosen)
        onChosen(index);
}

/// Enter takes the first choice that holds what was typed.
void ChoicePicker::chooseTyped() {
    const QString typed = lineEdit()->text().trimmed();
    if (typed.isEmpty() || (shown_ >= 0 && typed == choices_[shown_].trimmed()))
        return;
    for (int i = 0; i < choices_.size(); ++i)
        if (choices_[i].contains(typed, Qt::CaseInsensitive)) {
            choose(i);
            return;
        }
}

/// Shows the choice again, whatever stands in the line.
void ChoicePicker::restore() {
    const QSignalBlocker quiet(this);
    setCurrentIndex(shown_);
    if (lineEdit()) {
        lineEdit()->setText(shown_ < 0 ? QString() : choices_[shown_]);
        lineEdit()->setCursorPosition(0);
    }
    setToolTip(shown_ < 0 ? QString() : plainToolTip(choices_[shown_]));
}

/// The list is to be searched from an empty line: the first key replaces what is shown.
void ChoicePicker::focusInEvent(QFocusEvent* event) {
    QComboBox::focusInEvent(event);
    if (lineEdit() && event->reason() != Qt::PopupFocusReason)
        lineEdit()->selectAll();
}

void ChoicePicker::keyPressEvent(QKeyEvent* event) {
    // The line has no focus of its own: its keys come here.
    if (lineEdit() && event->key() == Qt::Key_Escape) {
        restore();
        lineEdit()->selectAll();
        return;
    }
    if (onKey && (event->key() == Qt::Key_Delete || !event->text().trimmed().isEmpty())) {
        if (!onKey(event->key()))
            event->ignore();
        return;
    }
    QComboBox::keyPressEvent(event);
}

void ChoicePicker::wheelEvent(QWheelEvent* event) {
    // Scrolling the page must not change a request.
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore();
}

int ChoicePicker::roomForText() const {
    QStyleOptionComboBox option;
    QComboBox::initStyleOption(&option);
    // The style leaves a pixel on either side of the text.
    return style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this).width() - 2;
}

bool ChoicePicker::showsWhole() const {
    return fontMetrics().horizontalAdvance(currentText()) <= roomForText();
}

void ChoicePicker::initStyleOption(QStyleOptionComboBox* option) const {
    QComboBox::initStyleOption(option);
    option->currentText = fontMetrics().elidedText(option->currentText, Qt::ElideRight, roomForText());
}

void ChoicePicker::resizeEvent(QResizeEvent* event) {
    QComboBox::resizeEvent(event);
    if (onResized)
        onResized();
}
