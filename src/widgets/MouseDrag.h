#pragma once

#include "explorer/Dragging.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <vector>

class DropMark;
class QAbstractItemView;
class QMouseEvent;

/// Hands what the mouse does in a tree or list of an explorer on to the follower, and shows what comes of it: the
/// pointer, the mark of the place under it, what scrolls and what opens.
class MouseDrag : public QObject {
public:
    /// @param view owns this @param part which of the two it is @param model that it shows; not owned
    MouseDrag(QAbstractItemView& view, DragPlace::Part part, ExplorerModel& model,
              std::function<std::vector<int>()> selectedRows = {});
    ~MouseDrag() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QAbstractItemView& view_;
    const QObject* const port_; ///< the viewport, which outlives what makes the view one
    DragPlace place_;
    bool pressed_ = false; ///< the button that went down here is held, whatever has become of the drag
    bool shown_ = false;   ///< something is being dragged from here
    QPoint where_;         ///< on the screen
    QTimer ticks_;
    QElapsedTimer clock_;
    QPointer<DropMark> mark_;

    static std::vector<MouseDrag*>& all();
    static MouseDrag* under(const QPoint& where);
    DragPlace placeAt(const QPoint& where) const;
    QModelIndex nodeAt(const QPoint& where) const;
    int edgeAt(const QPoint& where) const;

    bool press(const QMouseEvent& event);
    bool move(const QMouseEvent& event);
    bool release(const QMouseEvent& event);
    bool ofProgram(QObject* watched, QEvent& event);
    void begin();
    void follow();
    void markTarget(MouseDrag* target);
    void end();
    void giveUp();
};
