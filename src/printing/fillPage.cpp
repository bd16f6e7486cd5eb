#include "printing/fillPage.h"

#include <algorithm>

namespace {

/// What rounding may add up to on a page.
constexpr double heightTolerance = 0.5;

class Filling {
public:
    Filling(const EntryAccess& entries, const PageStart& start, double height)
        : entries_(entries), at_(start), height_(height) {}

    FilledPage run() {
        while (at_.entry < entries_.count) {
            if (at_.entry >= entries_.ready) {
                page_.waiting = true;
                return std::move(page_);
            }
            if (!flows_ || entry_ != at_.entry) {
                flows_ = entries_.flows(at_.entry);
                entry_ = at_.entry;
            }
            const bool entryBegins = at_.item == 0 && at_.row == 0 && at_.from == 0;
            if (entryBegins && !page_.rows.empty() && !heading_ && entries_.newPage(at_.entry))
                break;
            if (at_.item >= flows_->count()) {
                at_ = {at_.entry + 1};
                continue;
            }
            if (!takeRow())
                break;
        }
        page_.next = at_;
        return std::move(page_);
    }

private:
    const EntryAccess& entries_;
    PageStart at_;
    double height_, y_ = 0;
    FilledPage page_;
    std::shared_ptr<EntryFlowList> flows_;
    int entry_ = -1;
    bool heading_ = false; ///< the last row stands with the next, even if that wants a page of its own
    /// The last place at which the page may end, and how many rows it has then.
    size_t rowsAtBreak_ = 0;
    PageStart break_;

    /// Moves behind a row. @return whether a page may end there
    bool advance(const Flowable& flow) {
        const bool last = at_.row + 1 >= flow.rows();
        const bool may = last ? !flow.keepsWithNext() : flow.mayEndAfter(at_.row);
        heading_ = last && flow.keepsWithNext();
        at_ = last ? PageStart{at_.entry, at_.item + 1} : PageStart{at_.entry, at_.item, at_.row + 1};
        return may;
    }

    bool endAtBreak() {
        page_.rows.resize(rowsAtBreak_);
        at_ = break_;
        return false;
    }

    /// What stands with the first row of a flow below it: the flow's other rows, and what it is kept with.
    double heightBelow(const Flowable& flow) {
        double height = 0;
        for (int row = 1; row < flow.rows(); ++row)
            height += flow.height(row);
        if (flow.keepsWithNext() && at_.item + 1 < flows_->count()) {
            const std::shared_ptr<const Flowable> next = flows_->flow(at_.item + 1);
            height += flows_->spaceBefore(at_.item + 1);
            for (int row = 0; row < next->rows(); ++row)
                height += next->height(row);
        }
        return height;
    }

    /// A picture that is a little too high for the rest of the page is made smaller: on a page of its own it would
    /// leave two pages half empty. @param room below what is in front of it
    void makeFit(std::shared_ptr<const Flowable>& flow, double room) {
        if (at_.row > 0 || at_.from > 0 || flow->height(0) <= room / 2)
            return;
        const double below = heightBelow(*flow);
        if (flow->height(0) + below <= room)
            return;
        if (std::shared_ptr<const Flowable> smaller = flow->fitted(room - below))
            flow = std::move(smaller);
    }

    /// Takes the next row. @return false where the page ends
    bool takeRow() {
        std::shared_ptr<const Flowable> flow = flows_->flow(at_.item);
        if (flow->rows() == 0) {
            at_ = {at_.entry, at_.item + 1};
            return true;
        }
        const bool first = page_.rows.empty();
        if (!first && flow->beginsPart(at_.row))
            return false;
        const double gap = first || at_.row > 0 ? 0 : flows_->spaceBefore(at_.item);
        const double head = first ? flow->headHeight(at_.row) : 0;
        if (!first)
            makeFit(flow, height_ - y_ - gap);
        const double whole = flow->height(at_.row), rest = whole - at_.from;
        const double room = height_ - y_ - gap - head;
        PlacedRow row{flow, at_.entry, at_.row, y_ + gap + head, head, at_.from, at_.from > 0 ? rest : 0};
        if (rest > room + heightTolerance)
            return takePiece(std::move(row), room);
        y_ = row.y + rest;
        page_.rows.push_back(std::move(row));
        if (advance(*flow)) {
            rowsAtBreak_ = page_.rows.size();
            break_ = at_;
        }
        return true;
    }

    /// For a row that is higher than what is left of the page. @return false: the page ends
    bool takePiece(PlacedRow row, double room) {
        const double whole = row.flow->height(row.row);
        const bool higherThanPage = whole > height_ - row.flow->headHeight(row.row) + heightTolerance;
        // Where the page may not end above the row, because of a heading that it would have to itself, the row breaks.
        if (higherThanPage || rowsAtBreak_ == 0) {
            const double least = rowsAtBreak_ > 0 ? std::min(height_ / 8, whole) : 0;
            const double piece = room > least ? row.flow->piece(row.row, row.from, room) : 0;
            if (piece > 0 && row.from + piece < whole) {
                row.height = piece;
                at_.from = row.from + piece;
                page_.rows.push_back(std::move(row));
                return false;
            }
        }
        if (rowsAtBreak_ > 0)
            return endAtBreak();
        if (page_.rows.empty()) { // nothing helps
            const std::shared_ptr<const Flowable> flow = row.flow;
            page_.rows.push_back(std::move(row));
            advance(*flow);
        }
        return false;
    }
};

} // namespace

FilledPage fillPage(const EntryAccess& entries, const PageStart& start, double height) {
    return Filling(entries, start, height).run();
}
