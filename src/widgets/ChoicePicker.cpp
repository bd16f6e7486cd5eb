#include "widgets/ChoicePicker.h"

#include "app/globals.h"
#include "widgets/BestFirst.h"
#include "widgets/Icons.h"
#include "widgets/toolTips.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QStyleOptionComboBox>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int visibleChoices = 18;

/// A list that is open has windows of its own within the picker.
bool belongsTo(const QWidget* picker, const QWidget* widget) {
    while (widget && widget != picker)
        widget = widget->parentWidget();
    return widget != nullptr;
}

} // namespace

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
    connect(lineEdit(), &QLineEdit::textEdited, this, [this, found](const QString& text) {
        found->fit(text.trimmed());
        setTyped(Typed::Search);
    });
    lineEdit()->installEventFilter(this);
    // The completer keeps it from the line that it has lost the focus while its list is open.
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget* old, const QWidget* now) {
        if (old == this)
            leave(now);
    });
}

ChoicePicker::~ChoicePicker() {
    // The focus leaves it once more when it is no picker any longer.
    disconnect(qApp, nullptr, this, nullptr);
}

void ChoicePicker::setChoices(const QStringList& choices) {
    if (choices == choices_)
        return;
    choices_ = choices;
    shown_ = -1;
    {
        const QSignalBlocker quiet(this);
        clear();
        addItems(choices);
    }
    restore();
}

void ChoicePicker::showChoice(int index) {
    const int wanted = index < choices_.size() ? index : -1;
    if (typed_ != Typed::Nothing && wanted == shown_)
        return;
    shown_ = wanted;
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
    if (typed.isEmpty() || isUntouched()) {
        restore();
        return;
    }
    int best = -1, least = BestFirst::noMatch;
    for (int i = 0; i < choices_.size() && least > 0; ++i)
        if (const int here = BestFirst::misfit(choices_[i], typed); here < least) {
            best = i;
            least = here;
        }
    if (best >= 0)
        choose(best);
    else
        setTyped(Typed::NoChoice);
}

bool ChoicePicker::finish() {
    if (typed_ == Typed::Nothing)
        return true;
    const QString typed = lineEdit()->text().trimmed();
    Typed otherwise = Typed::Nothing;
    const int match = typed.isEmpty() || isUntouched() ? shown_ : onlyMatch(typed, otherwise);
    closeLists();
    if (match >= 0 || typed.isEmpty())
        choose(match);
    else
        setTyped(otherwise);
    return typed_ == Typed::Nothing;
}

/// A name or a whole text goes before a label, and that before what is found in the middle. @param otherwise what
/// the text amounts to if it is not one choice
int ChoicePicker::onlyMatch(const QString& typed, Typed& otherwise) const {
    const auto isSame = [&](QStringView text) { return text.compare(typed, Qt::CaseInsensitive) == 0; };
    const std::function<bool(const QString&)> degrees[] = {
        [&](const QString& choice) { return isSame(choice) || isSame(QStringView(choice).left(choice.indexOf(u':'))); },
        [&](const QString& choice) { return isSame(QStringView(choice).mid(choice.indexOf(u':') + 1).trimmed()); },
        [&](const QString& choice) { return choice.contains(typed, Qt::CaseInsensitive); }};
    for (const auto& fits : degrees) {
        const auto first = std::ranges::find_if(choices_, fits);
        if (first == choices_.end())
            continue;
        if (std::find_if(first + 1, choices_.end(), fits) == choices_.end())
            return static_cast<int>(first - choices_.begin());
        otherwise = Typed::SeveralChoices;
        return -1;
    }
    otherwise = Typed::NoChoice;
    return -1;
}

QString ChoicePicker::objection() const {
    const QString words = typed_ == Typed::NoChoice         ? u"\"%1\" ist nicht in der Liste."_s
                          : typed_ == Typed::SeveralChoices ? u"\"%1\" passt auf mehrere Einträge der Liste."_s
                                                            : QString();
    return words.isEmpty() ? QString() : TranslateText(words).arg(lineEdit()->text().trimmed());
}

/// A sign in the line tells what is wrong with it, in any palette, and to a reader of the screen.
void ChoicePicker::setTyped(Typed typed) {
    typed_ = typed;
    const QString words = objection();
    if (words.isEmpty())
        delete std::exchange(mark_, nullptr);
    else if (!mark_)
        mark_ = lineEdit()->addAction(Icons::get(u"warning"_s), QLineEdit::TrailingPosition);
    setAccessibleDescription(words);
    if (mark_) {
        mark_->setToolTip(plainToolTip(words));
        setToolTip(plainToolTip(words));
    }
}

/// Shows the choice again, whatever stands in the line.
void ChoicePicker::restore() {
    const QSignalBlocker quiet(this);
    setCurrentIndex(shown_);
    setTyped(Typed::Nothing);
    if (lineEdit()) {
        lineEdit()->setText(shown_ < 0 ? QString() : choices_[shown_]);
        if (hasFocus())
            selectLine();
        else
            lineEdit()->setCursorPosition(0);
    }
    setToolTip(shown_ < 0 ? QString() : plainToolTip(choices_[shown_]));
}

void ChoicePicker::closeLists() {
    if (completer())
        completer()->popup()->hide();
    hidePopup();
}

void ChoicePicker::leave(const QWidget* now) {
    if (belongsTo(this, now) || (completer() && belongsTo(completer()->popup(), now)))
        return;
    closeLists();
    const bool aside = !now || now->inherits("QMenuBar") || now->inherits("QMenu");
    Typed otherwise = Typed::Nothing;
    if (typed_ == Typed::Nothing)
        lineEdit()->setCursorPosition(0);
    else if (onLeft && (!aside || onlyMatch(lineEdit()->text().trimmed(), otherwise) >= 0))
        onLeft();
}

/// What was typed in a field that can't be used counts for nothing.
void ChoicePicker::changeEvent(QEvent* event) {
    QComboBox::changeEvent(event);
    if (event->type() == QEvent::EnabledChange && !isEnabled() && typed_ != Typed::Nothing)
        restore();
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
    // The line has no focus of its own: its keys come here. What it has no use for is the window's.
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (lineEdit() && (enter || event->key() == Qt::Key_Escape)) {
        if (typed_ == Typed::Nothing) {
            event->ignore();
            return;
        }
        closeLists();
        if (enter)
            chooseTyped();
        else
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
