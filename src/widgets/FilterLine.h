#pragma once

#include <QLineEdit>
#include <QStringList>

class BestFirst;
class QCompleter;
class QStringListModel;

/// A line for a condition over variables: offers their names as one types, found over name and label, and marks a spot.
/// A name that needs brackets gets them.
class FilterLine : public QLineEdit {
public:
    FilterLine(const QString& name, QWidget* parent);
    ~FilterLine() override;

    /// @param choices "<name>: <label>"
    void setChoices(const QStringList& choices);
    /// Underlines part of the text; a length of 0 removes the mark.
    void markSpot(int start, int length);

    /// The variable that the cursor is at, or whose value it is at; empty without one.
    QString variableAtCursor() const;
    /// Puts a value in where one of the variable stands or is to come, else a comparison with it.
    void putValue(const QString& variable, const QString& value);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;

private:
    QCompleter* completer_;
    QStringListModel* model_;
    BestFirst* found_;
    bool composing_ = false; ///< a character is being put together by the input method

    bool isName(const QString& word) const;
    void offer();
    void take(const QString& choice);
    void replace(qsizetype start, qsizetype length, const QString& by);
};
