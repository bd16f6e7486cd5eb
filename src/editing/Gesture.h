#pragma once

#include "editing/Drop.h"
#include "explorer/Dragging.h"

/// The dragging of entries and variables between explorers, without widgets: the left button copies, the right one
/// moves. It begins once the mouse has gone some way with a button held, and ends with the button.
class Gesture : public DragFollower {
public:
    /// How long the mouse has to rest on a closed node until that opens, in milliseconds.
    static constexpr int opensAfter = 700;
    /// Between two rows that are scrolled by.
    static constexpr int scrollsEvery = 100;

    /// @param distance that the mouse has to go, in pixels
    explicit Gesture(int distance) : distance_(distance) {}

    bool press(const DragPlace& place, Button button, QPoint where) override;
    bool move(QPoint where) override;
    DragView hover(const DragPlace& place, int edge, bool closed, qint64 now) override;
    bool release(const DragPlace& place) override;
    void cancel() override;
    bool isDragging() const override { return Dragging_; }

private:
    int distance_;
    bool pressed_ = false, Dragging_ = false;
    TransferMode mode_ = TransferMode::Copy;
    QPoint begun_;
    DragPlace place_; ///< where the button went down
    DropSource source_;
    QString restsOn_; ///< key of the closed node under the mouse
    const ExplorerModel* restsIn_ = nullptr;
    qint64 restsSince_ = 0, scrolled_ = 0;

    bool begin();
    bool isAlive() const;
    std::optional<DropTarget> targetAt(const DragPlace& place) const;
};
