#include "editing/Gesture.h"

#include "explorer/EntryColumns.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isOpen(const ExplorerModel* model) {
    return std::ranges::find(ExplorerModel::open(), model) != ExplorerModel::open().end();
}

} // namespace

/// Notes where the button went down; on a node that is the entry that is dragged.
bool Gesture::press(const DragPlace& place, Button button, QPoint where) {
    cancel();
    pressed_ = place.part != DragPlace::Part::Elsewhere && place.model;
    place_ = place;
    begun_ = where;
    mode_ = button == Button::Right ? TransferMode::Move : TransferMode::Copy;
    if (place.part == DragPlace::Part::Tree) {
        pressed_ = pressed_ && !place.key.isEmpty();
        if (pressed_)
            SourceNode.set(place.key, place.model->state.bELTree);
    }
    return pressed_;
}

bool Gesture::move(QPoint where) {
    if (Dragging_ || !pressed_)
        return Dragging_;
    if ((where - begun_).manhattanLength() >= distance_)
        pressed_ = Dragging_ = begin();
    return Dragging_;
}

bool Gesture::begin() {
    if (!isAlive())
        return false;
    const std::optional<DropSource> source =
        place_.part == DragPlace::Part::Tree
            ? DropSource::entry(place_.model->tree, SourceNode.key(), SourceNode.english())
            : DropSource::rows(*place_.model, place_.selectedRows ? place_.selectedRows() : std::vector<int>());
    if (!source)
        return false;
    source_ = *source;
    MoveOrCopyMode = mode_ == TransferMode::Move ? u"Move"_s : u"Copy"_s;
    restsOn_.clear();
    scrolled_ = 0;
    return true;
}

/// A window that closes takes what is dragged from it along.
bool Gesture::isAlive() const {
    return isOpen(place_.model);
}

std::optional<DropTarget> Gesture::targetAt(const DragPlace& place) const {
    if (place.part == DragPlace::Part::Elsewhere || !isOpen(place.model))
        return std::nullopt;
    const bool isList = place.part == DragPlace::Part::List;
    const QString key = isList ? place.model->state.selectedKey : place.key;
    if (key.isEmpty())
        return std::nullopt;
    return DropTarget::in(*place.model, key, isList);
}

DragView Gesture::hover(const DragPlace& place, int edge, bool closed, qint64 now) {
    DragView view;
    if (!isAlive())
        cancel();
    if (!Dragging_)
        return view;
    view.variables = source_.isList;
    // What a study's list gives is a copy, whatever the button.
    const bool moves = mode_ == TransferMode::Move && !(source_.isList && isStudyView(viewOfKey(source_.key)));
    view.pointer = moves ? DragView::Pointer::Move : DragView::Pointer::Copy;
    if (const std::optional<DropTarget> target = targetAt(place)) {
        view.marksTarget = !refusalOf(source_, *target).refused;
        if (!view.marksTarget)
            view.pointer = DragView::Pointer::No;
    }
    const QString rests = closed && edge == 0 ? place.key : QString();
    if (rests != restsOn_ || place.model != restsIn_) {
        restsOn_ = rests;
        restsIn_ = place.model;
        restsSince_ = now;
    } else if (!rests.isEmpty() && now - restsSince_ >= opensAfter) {
        view.open = rests;
        restsSince_ = now;
    }
    if (edge != 0 && now - scrolled_ >= scrollsEvery) {
        view.scroll = edge;
        scrolled_ = now;
    }
    return view;
}

bool Gesture::release(const DragPlace& place) {
    const bool wasDragging = Dragging_ && isAlive();
    const std::optional<DropTarget> target = wasDragging ? targetAt(place) : std::nullopt;
    cancel();
    if (target)
        drop(DropSource(source_), *target, mode_);
    return wasDragging;
}

void Gesture::cancel() {
    pressed_ = Dragging_ = false;
}
