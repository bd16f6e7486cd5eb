#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <functional>

class QAbstractButton;
class QAbstractItemView;
class QAction;
class QMenu;
class QWidget;

/// The menu of a view, or of a picture, at the right mouse button, at the menu key and at Shift+F10. It offers what
/// menus and buttons offer elsewhere, by their own actions.
class ContextMenu : public QObject {
public:
    /// What a right click does to the selection before. Where the selection follows the click something may be dragged
    /// by the button, so that the menu opens once it is let go, if the mouse has not moved meanwhile.
    enum class Selection { FollowsClick, Stays };

    /// @param view owns the menu @param fill puts the entries in, each time anew
    ContextMenu(QAbstractItemView& view, std::function<void(QMenu&)> fill,
                Selection selection = Selection::FollowsClick);
    /// @param picture owns the menu
    ContextMenu(QWidget& picture, std::function<void(QMenu&)> fill);

    /// Adds entries of the main window's menu by their names, an empty one for a line between them. Those without a
    /// function yet are left out.
    static void addCommands(QMenu& menu, const QStringList& names);
    /// Adds an entry that presses a button; none for one that is out of sight.
    static void addButton(QMenu& menu, QAbstractButton& button);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& widget_;         ///< that the places of the menu are in
    QAbstractItemView* view_; ///< null for a picture
    std::function<void(QMenu&)> fill_;
    Selection selection_;
    QPointer<QMenu> open_;
    enum class Right { Up, Down, Moved } right_ = Right::Up; ///< the right button, and what the mouse did with it
    QPoint pressedAt_;

    bool click(QEvent& event);
    void open(const QPoint& place);
    void openAtCurrent();
    static void addCommand(QMenu& menu, QAction& command);
};
