#pragma once

#include <QHash>
#include <QIcon>
#include <QMdiArea>
#include <QPointer>
#include <functional>

/// The area of the child windows. Everything about QMdiArea that would surprise a user is put right here: the frame
/// keeps its title and its menu bar when a child is maximised, the next one is maximised when a maximised one goes,
/// windows are arranged in the order of their opening, hidden ones stay reachable, a window keeps its keyboard focus
/// while another one is used, and the windows' own menus speak the user's language.
class ChildArea : public QMdiArea {
public:
    explicit ChildArea(QWidget* parent = nullptr);
    ~ChildArea() override;

    /// Another window came to the front, or none is left.
    std::function<void()> onActivated;
    /// What is written on the empty area.
    void setHint(const QString& hint);

    /// Shows a window in a frame of its own, which deletes both when it is closed. The first one fills the area, and so
    /// does one that comes while the one in front does.
    void adopt(QWidget& child);
    /// Brings a window to the front, from hidden or minimised too.
    void activate(QWidget& child);
    /// The window in front, null if all are hidden or none is there.
    QWidget* current() const;
    /// Takes the window in front out of sight; it stays loaded.
    void hideCurrent();
    static bool isHiddenChild(const QWidget& child);

    /// Minimises all windows in view but these, which then stand side by side.
    void arrangeBeside(const QList<QWidget*>& kept);
    void cascade();
    /// Side by side, and one above the other; many windows go into a grid.
    void tileVertically();
    void tileHorizontally();
    /// Puts minimised windows side by side at the lower edge.
    void arrangeIcons();
    /// The next window in the order of opening, or the one before.
    void activateNext(bool backwards);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QStyle* ownTitleBar_;
    QString hint_;
    QHash<const QMdiSubWindow*, QPointer<QWidget>> focusOf_;       ///< where the keyboard is in each window
    QHash<const QMdiSubWindow*, std::pair<QIcon, QIcon>> iconsOf_; ///< in front, and behind
    bool maximiseNext_ = false;

    QMdiSubWindow* frontFrame() const;
    QList<QMdiSubWindow*> framesInView() const;
    void fillIfMaximised(QMdiSubWindow* frame);
    QRect roomForWindows() const;
    void tile(int columns, int rows, int count);
    void followPalette();
    void showIcons(const QMdiSubWindow* front);
    void comeToRest(QMdiSubWindow* front);
    void restoreFocus(const QMdiSubWindow& frame);
    void keepInside(QMdiSubWindow& frame) const;
};
