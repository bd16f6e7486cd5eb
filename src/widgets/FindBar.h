#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QToolButton;

/// A line in which one types what is to be found in what stands above it; out of sight until it is asked for. Enter
/// goes to the next place, Shift+Enter to the one before; Escape puts the line away.
class FindBar : public QWidget {
public:
    explicit FindBar(QWidget* parent);

    /// Shows the line and gives it the keyboard. @param text to look for; empty: what was looked for last
    void open(const QString& text = QString());
    /// Goes on to the next place, or the one before.
    void again(bool backward) { find(backward, false); }
    virtual void refreshTexts();

protected:
    /// Goes to a place. @param fromHere the one that is shown may be found again, as the text grows
    virtual void find(bool backward, bool fromHere) = 0;
    /// The line has been put away.
    virtual void closed() = 0;
    /// What the line asks for, and what is said of it behind it.
    virtual QString prompt() const = 0;
    virtual QString result() const = 0;

    QString text() const;
    void showResult();
    void keyPressEvent(QKeyEvent* event) override;

private:
    QLineEdit* txtSuchen_;
    QLabel* lblResult_;
    QToolButton *cmdBack_, *cmdNext_, *cmdClose_;

    QToolButton* button(const QString& name, const QString& icon);
    void close();
};
