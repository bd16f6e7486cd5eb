#pragma once

#include <QComboBox>
#include <QStringList>
#include <functional>

/// A drop-down list of what the catalogue offers. A searched one narrows its list as one types, over the whole of each
/// text, names before labels. What was typed is taken by finish() if it can mean one choice only; else it stays in the
/// line, marked, until it is set right or Escape brings the choice back.
class ChoicePicker : public QComboBox {
public:
    enum class Kind { Plain, Searched };

    ChoicePicker(const QString& name, Kind kind, QWidget* parent);
    ~ChoicePicker() override;

    /// The user has chosen another entry.
    std::function<void(int index)> onChosen;
    /// Keys that write are offered here first and refused otherwise; without one they search. @return true if it was
    /// taken
    std::function<bool(int key)> onKey;
    /// The field was left, by whatever way, with something typed in it: finish() is to be called once the control that
    /// takes the focus has got it. Who only turns to another window or a menu is not through with half a word: then it
    /// is called for what can be taken.
    std::function<void()> onLeft;

    void setChoices(const QStringList& choices);
    /// Shows an entry without a notification; what is being typed stays as long as the choice is the same.
    /// @param index -1 for none
    void showChoice(int index);
    /// Takes what was typed: the choice that has this name, text or label, or the only one that holds it.
    /// @return false if it is none of them, or could be several
    bool finish();
    /// What is wrong with what was typed; empty if nothing is.
    QString objection() const;
    /// Shows the choice again, whatever stands in the line.
    void restore();
    void setPrompt(const QString& text);
    /// Whether the chosen text has room; where it has none it ends in dots.
    bool showsWhole() const;
    std::function<void()> onResized;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void initStyleOption(QStyleOptionComboBox* option) const override;

private:
    /// What the words in the line amount to.
    enum class Typed { Nothing, Search, NoChoice, SeveralChoices };

    QStringList choices_;
    int shown_ = -1;
    Typed typed_ = Typed::Nothing;
    QAction* mark_ = nullptr;

    int roomForText() const;
    void choose(int index);
    void chooseTyped();
    int onlyMatch(const QString& typed, Typed& otherwise) const;
    void setTyped(Typed typed);
    void leave(const QWidget* now);
    void closeLists();
    void selectLine();
    bool isUntouched() const;
};
