#include "widgets/textFields.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTextEdit>
#include <algorithm>

namespace {

bool isKeyOfText(const QKeyEvent& key) {
    static constexpr QKeySequence::StandardKey keys[] = {
        QKeySequence::Undo,  QKeySequence::Redo,   QKeySequence::Cut,      QKeySequence::Copy,
        QKeySequence::Paste, QKeySequence::Delete, QKeySequence::SelectAll};
    return std::ranges::any_of(keys, [&](QKeySequence::StandardKey name) { return key.matches(name); });
}

class TextKeys : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override {
        if (event->type() != QEvent::ShortcutOverride || !isKeyOfText(*static_cast<QKeyEvent*>(event)) ||
            !isTextField(qobject_cast<QWidget*>(receiver)))
            return false;
        event->accept();
        return true;
    }
};

QString plain(const QTextCursor& cursor) {
    return cursor.selectedText().replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
}

} // namespace

bool isTextField(const QWidget* widget) {
    if (const auto* list = qobject_cast<const QComboBox*>(widget))
        return list->isEditable();
    if (const auto* label = qobject_cast<const QLabel*>(widget))
        return label->textInteractionFlags() & (Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QTextEdit*>(widget) ||
           qobject_cast<const QPlainTextEdit*>(widget) || qobject_cast<const QAbstractSpinBox*>(widget);
}

QString selectedText(const QWidget* widget) {
    // An editable list has the focus in place of its line.
    if (const auto* list = qobject_cast<const QComboBox*>(widget))
        return selectedText(list->lineEdit());
    if (const auto* line = qobject_cast<const QLineEdit*>(widget))
        return line->selectedText();
    if (const auto* label = qobject_cast<const QLabel*>(widget))
        return label->selectedText();
    if (const auto* text = qobject_cast<const QPlainTextEdit*>(widget))
        return plain(text->textCursor());
    if (const auto* text = qobject_cast<const QTextEdit*>(widget))
        return plain(text->textCursor());
    return {};
}

void keepKeysOfTextFields() {
    static QPointer<TextKeys> keys;
    if (keys)
        return;
    keys = new TextKeys(qApp);
    qApp->installEventFilter(keys);
}
