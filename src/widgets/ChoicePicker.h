#pragma once

#include <QComboBox>
#include <QStringList>
#include <functional>

/// A drop-down list of what the catalogue offers. A searched one narrows its list as one types, over the whole of each
/// text, names before labels; whatever was typed, it shows one of its choices or nothing when it is left.
class ChoicePicker : public QComboBox {
public:
    enum class Kind { Plain, Searched };

    ChoicePicker(const QString& name, Kind kind, QWidget* parent);

    /// The user has chosen another entry.
    std::function<void(int index)> onChosen;
    /// Keys that write are offered here first and refused otherwise; without one they search. @return true if it was
    /// taken
    std::function<bool(int key)> onKey;

    void setChoices(const QStringList& choices);
    /// Shows an entry without a notification. @param index -1 for none
    void showChoice(int index);
    void setPrompt(const QString& text);
    /// Whether the chosen text has room; where it has none it ends in dots.
    bool showsWhole() const;
    std::function<void()> onResized;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void initStyleOption(QStyleOptionComboBox* option) const override;

private:
    QStringList choices_;
    int shown_ = -1;

    int roomForText() const;
    void choose(int index);
    void chooseTyped();
    void restore();
    void selectLine();
    bool isUntouched() const;
};
