#include "widgets/ChoicePicker.h"

#include "widgets/BestFirst.h"
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
    // What is offered first is what Enter takes.
    auto* found = new BestFirst(model(), this);
    auto* completer = new QCompleter(found, this);
    completer->setFilterMode(Qt::MatchContains);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setMaxVisibleItems(visibleChoices);
    auto* offered = new QListView;
    offered->setUniformItemSizes(true);
    completer->setPopup(offered);
    setCompleter(completer);
    connect(lineEdit(), &QLineEdit::textEdited, this, [found](const QString& text) { found->fit(text.trimmed()); });
    lineEdit()->installEventFilter(this);
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

/// Enter takes the choice that fits what was typed best.
void ChoicePicker::chooseTyped() {
    const QString typed = lineEdit()->text().trimmed();
    if (typed.isEmpty() || isUntouched())
        return;
    int best = -1, least = BestFirst::noMatch;
    for (int i = 0; i < choices_.size() && least > 0; ++i)
        if (const int here = BestFirst::misfit(choices_[i], typed); here < least) {
            best = i;
            least = here;
        }
    if (best >= 0)
        choose(best);
}

/// Shows the choice again, whatever stands in the line.
void ChoicePicker::restore() {
    const QSignalBlocker quiet(this);
    setCurrentIndex(shown_);
    if (lineEdit()) {
        lineEdit()->setText(shown_ < 0 ? QString() : choices_[shown_]);
        if (hasFocus())
            selectLine();
        else
            lineEdit()->setCursorPosition(0);
    }
    setToolTip(shown_ < 0 ? QString() : plainToolTip(choices_[shown_]));
}

/// The first key of a search replaces what is shown, which is read from its beginning until then.
void ChoicePicker::selectLine() {
    const int length = static_cast<int>(lineEdit()->text().size());
    lineEdit()->setSelection(length, -length);
}

bool ChoicePicker::isUntouched() const {
    return shown_ >= 0 && lineEdit()->text().trimmed() == choices_[shown_].trimmed();
}

void ChoicePicker::focusInEvent(QFocusEvent* event) {
    QComboBox::focusInEvent(event);
    if (lineEdit() && event->reason() != Qt::PopupFocusReason)
        selectLine();
}

/// A click that puts the cursor into the line begins a search as well; what was typed or selected is left alone.
bool ChoicePicker::eventFilter(QObject* watched, QEvent* event) {
    if (watched == lineEdit() && event->type() == QEvent::MouseButtonRelease && !lineEdit()->hasSelectedText() &&
        isUntouched())
        QMetaObject::invokeMethod(
            this, [this] { selectLine(); }, Qt::QueuedConnection);
    return QComboBox::eventFilter(watched, event);
}

void ChoicePicker::keyPressEvent(QKeyEvent* event) {
    // The line has no focus of its own: its keys come here.
    if (lineEdit() && event->key() == Qt::Key_Escape) {
        restore();
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
