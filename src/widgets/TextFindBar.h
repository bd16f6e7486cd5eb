#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QTextEdit;
class QToolButton;

/// The line below a text in which words are looked for in it; out of sight until Ctrl+F asks for it. Enter goes to the
/// next place, Shift+Enter to the one before, past the end to the other; Escape puts the line away.
class TextFindBar : public QWidget {
public:
    TextFindBar(QTextEdit& text, QWidget* parent);

    /// Shows the line, with what is selected in the text to be looked for, and gives it the keyboard.
    void open();
    void refreshTexts();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QTextEdit& text_;
    QLineEdit* txtSuchen_;
    QToolButton *cmdBack_, *cmdNext_, *cmdClose_;
    QLabel* lblNotFound_;

    QToolButton* button(const QString& name, const QString& icon);
    void find(bool backward, bool fromHere);
    void sayFound(bool found);
    void close();
};
