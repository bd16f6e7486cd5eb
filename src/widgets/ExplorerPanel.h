#pragma once

#include "explorer/AssignmentList.h"

#include <QWidget>
#include <functional>

class ElidedLabel;
class FactsStrip;
class QListWidget;
class QPlainTextEdit;
class QSplitter;
class QVBoxLayout;
class ValueList;
class VariablePanel;

/// What shows one variable: the entry's name, the question text and beside it the values, the strip of facts, the list
/// of assignments.
class ExplorerPanel : public QWidget {
public:
    /// @param suffix of the control names: nothing or "_B"
    explicit ExplorerPanel(const QString& suffix, QWidget* parent = nullptr);

    std::function<void(const QString& key)> jumped; ///< an assignment was opened

    ElidedLabel* fidName;
    QPlainTextEdit* txtQuestion;
    FactsStrip* sbStatusBarV;
    QListWidget* DBList1;
    ValueList* values;
    QSplitter* splValues; ///< between question and values

    void show(const VariablePanel& panel);
    void showAssignments(const std::vector<Assignment>& assignments);
    /// Tips of the assignments: the views, in the language of the labels.
    void nameAssignments();
    /// @param height of a shown assignment list, in twips
    void arrange(bool stripOnTop, bool assignments, int height);
    /// Gives the question text a font of that name, in the window's size.
    void setQuestionFont(const QString& family);
    QString questionFont() const { return questionFont_; }

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QVBoxLayout* column_;
    QString questionFont_;
    QString question_; ///< as the panel gave it; the control has other line ends

    void applyQuestionFont();
    void jump();
};
