#pragma once

#include <QPoint>
#include <QString>
#include <functional>
#include <vector>

class ExplorerModel;

/// Where the mouse is, as whoever follows it has to know.
struct DragPlace {
    enum class Part { Elsewhere, Tree, List };
    Part part = Part::Elsewhere;
    ExplorerModel* model = nullptr; ///< null elsewhere
    QString key = QString();        ///< Tree: of the node under the mouse, empty where there is none
    /// List: the selected rows, as indexes into the model's rows.
    std::function<std::vector<int>()> selectedRows = {};
};

/// What is shown while something is being dragged.
struct DragView {
    enum class Pointer { Copy, Move, No };
    Pointer pointer = Pointer::Copy;
    bool variables = false;   ///< what is dragged: variables, or an entry
    bool marksTarget = false; ///< the place under the mouse takes it
    QString open = QString(); ///< key of a closed node that is to be opened
    int scroll = 0;           ///< rows that the place is to be moved on by, upwards below 0
};

/// Follows the mouse over the trees and lists of all explorers. The program sets it; without one nothing is dragged.
class DragFollower {
public:
    enum class Button { Left, Right };

    virtual ~DragFollower() = default;
    /// @return true if something there can be dragged
    virtual bool press(const DragPlace& place, Button button, QPoint where) = 0;
    /// The mouse has moved with the button held. @return true while something is dragged
    virtual bool move(QPoint where) = 0;
    /// Every few milliseconds while something is dragged. @param edge -1 near the upper edge of a place that has more
    /// above, 1 near the lower one, else 0 @param closed the node under the mouse has children that are out of view
    /// @param now a clock in milliseconds
    virtual DragView hover(const DragPlace& place, int edge, bool closed, qint64 now) = 0;
    /// @return true if something was dragged, which is over now; it was dropped if the place takes it
    virtual bool release(const DragPlace& place) = 0;
    virtual void cancel() = 0;
    virtual bool isDragging() const = 0;
};

/// The follower in force; null for none. Not owned.
DragFollower*& dragFollower();
