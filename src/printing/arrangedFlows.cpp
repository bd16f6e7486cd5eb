#include "printing/arrangedFlows.h"

#include "printing/fonts.h"
#include "printing/look.h"

#include <algorithm>

namespace {

using Shared = std::shared_ptr<const Flowable>;

class Shifted : public Flowable {
public:
    Shifted(Shared flow, double x) : flow_(std::move(flow)), x_(x) {}

    int rows() const override { return flow_->rows(); }
    double height(int row) const override { return flow_->height(row); }
    bool mayEndAfter(int row) const override { return flow_->mayEndAfter(row); }
    double headHeight(int row) const override { return flow_->headHeight(row); }
    bool beginsPart(int row) const override { return flow_->beginsPart(row); }
    bool keepsWithNext() const override { return flow_->keepsWithNext(); }
    double spaceBefore() const override { return flow_->spaceBefore(); }
    double width() const override { return flow_->width() + x_; }
    Shared fitted(double room) const override {
        Shared smaller = flow_->fitted(room);
        return smaller ? std::make_shared<Shifted>(std::move(smaller), x_) : nullptr;
    }
    void place(ReportPage& page, int row, const QPointF& at) const override { flow_->place(page, row, moved(at)); }
    void placeHead(ReportPage& page, int row, const QPointF& at) const override {
        flow_->placeHead(page, row, moved(at));
    }
    double piece(int row, double from, double room) const override { return flow_->piece(row, from, room); }
    void placePiece(ReportPage& page, int row, double from, double height, const QPointF& at) const override {
        flow_->placePiece(page, row, from, height, moved(at));
    }

private:
    Shared flow_;
    double x_;

    QPointF moved(const QPointF& at) const { return at + QPointF(x_, 0); }
};

class KeptWithNext final : public Shifted {
public:
    explicit KeptWithNext(Shared flow) : Shifted(flow, 0), kept_(std::move(flow)) {}
    bool mayEndAfter(int /*row*/) const override { return false; }
    bool keepsWithNext() const override { return true; }
    Shared fitted(double room) const override {
        Shared smaller = kept_->fitted(room);
        return smaller ? std::make_shared<KeptWithNext>(std::move(smaller)) : nullptr;
    }

private:
    Shared kept_;
};

class Labelled final : public Shifted {
public:
    Labelled(Shared flow, double x, SetText label, double dy)
        : Shifted(std::move(flow), x), label_(std::move(label)), dy_(dy) {}

    Shared fitted(double /*room*/) const override { return nullptr; } // would lose its label
    double height(int row) const override {
        const double inner = Shifted::height(row);
        return row == 0 && rows() == 1 ? std::max(inner, label_.height() + dy_) : inner;
    }
    void place(ReportPage& page, int row, const QPointF& at) const override {
        if (row == 0)
            label_.place(page, at + QPointF(0, dy_));
        Shifted::place(page, row, at);
    }
    void placePiece(ReportPage& page, int row, double from, double height, const QPointF& at) const override {
        if (row == 0 && from == 0)
            label_.place(page, at + QPointF(0, dy_));
        Shifted::placePiece(page, row, from, height, at);
    }

private:
    SetText label_;
    double dy_;
};

double whole(const Flowable& flow) {
    double height = 0;
    for (int row = 0; row < flow.rows(); ++row)
        height += flow.height(row);
    return height;
}

void placeWhole(const Flowable& flow, ReportPage& page, QPointF at) {
    for (int row = 0; row < flow.rows(); ++row) {
        flow.place(page, row, at);
        at.ry() += flow.height(row);
    }
}

class SideBySide final : public Flowable {
public:
    SideBySide(std::vector<Shared> left, Shared right, double x)
        : left_(std::move(left)), right_(std::move(right)), x_(x) {
        for (const Shared& flow : left_) {
            leftHeight_ += whole(*flow) + (&flow == &left_.front() ? 0 : flow->spaceBefore());
            space_ = std::max(right_->spaceBefore(), left_.front()->spaceBefore());
        }
    }

    int rows() const override { return 1; }
    double height(int /*row*/) const override { return std::max(leftHeight_, whole(*right_)); }
    double spaceBefore() const override { return space_; }
    double width() const override { return x_ + right_->width(); }
    void place(ReportPage& page, int /*row*/, const QPointF& at) const override {
        QPointF corner = at;
        for (const Shared& flow : left_) {
            if (&flow != &left_.front())
                corner.ry() += flow->spaceBefore();
            placeWhole(*flow, page, corner);
            corner.ry() += whole(*flow);
        }
        placeWhole(*right_, page, at + QPointF(x_, 0));
    }

private:
    std::vector<Shared> left_;
    Shared right_;
    double x_, leftHeight_ = 0, space_ = 0;
};

} // namespace

Shared shifted(Shared flow, double x) {
    return std::make_shared<Shifted>(std::move(flow), x);
}

Shared keptWithNext(Shared flow, double most) {
    return flow->rows() > 0 && whole(*flow) <= most ? std::make_shared<KeptWithNext>(std::move(flow)) : flow;
}

Shared labelled(Shared flow, const QString& label, const PageSetup& setup, double x) {
    const double column = look::labelColumn(setup), at = x < 0 ? column : x;
    const QString text = printableLine(label);
    if (text.isEmpty() || flow->rows() == 0)
        return at > 0 ? shifted(std::move(flow), at) : flow;
    const QFont font = reportFont(setup.fontFamily, look::captionSize(setup), true);
    // As many lines as the first row is high, and no more: the next row has its own room.
    SetText set = setText(text, font, column - 0.5 * look::em(setup));
    if (flow->rows() > 1 && set.height() > flow->height(0) + flow->height(1))
        set = setLine(text, font, column - 0.5 * look::em(setup));
    return std::make_shared<Labelled>(std::move(flow), at, std::move(set), 0.1 * look::em(setup));
}

Shared sideBySide(std::vector<Shared> left, Shared right, double x) {
    const auto fits = [](const Shared& flow) {
        for (int row = 1; row < flow->rows(); ++row)
            if (flow->beginsPart(row))
                return false;
        return flow->rows() > 0;
    };
    if (!std::ranges::all_of(left, fits) || !fits(right))
        return nullptr;
    return std::make_shared<SideBySide>(std::move(left), std::move(right), x);
}
