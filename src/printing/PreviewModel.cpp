#include "printing/PreviewModel.h"

#include "app/globals.h"

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array steps = {0.1,  0.25, 0.33, 0.5, 0.67, 0.75, 0.9, 1.0, 1.1,
                              1.25, 1.5,  1.75, 2.0, 2.5,  3.0,  4.0, 5.0};
constexpr size_t mostPlaces = 50;
/// That stays in view above an entry that was gone to, in twips.
constexpr double spaceAbove = 200;
/// Two zooms that nobody can tell from each other.
constexpr double hair = 0.001;

/// A zoom of nothing was never set.
double startZoom(int percent) {
    return percent <= 0 ? 1 : std::clamp(percent / 100.0, PreviewModel::leastZoom, PreviewModel::mostZoom);
}

} // namespace

PreviewModel::PreviewModel(std::unique_ptr<ReportRun> run, int percent)
    : run_(std::move(run)), firstZoom_(startZoom(percent)), zoom_(firstZoom_) {}

// ---- the pages as they come

bool PreviewModel::goOn(int milliseconds) {
    const bool more = run_->step(milliseconds);
    if (!more && !ended_) {
        ended_ = true;
        // Contents have their numbers now.
        pictures_.clear();
    }
    goWhereAwaited();
    return more;
}

void PreviewModel::showFirst(int milliseconds) {
    constexpr int slice = 10;
    for (int spent = 0; spent < milliseconds && pageCount() == 0 && goOn(slice);)
        spent += slice;
}

PreviewModel::State PreviewModel::state() const {
    if (run_->complete())
        return State::Complete;
    if (ended_)
        return State::Failed;
    return halted_ ? State::Halted : State::Going;
}

QString PreviewModel::status() const {
    const QString pages = QString::number(pageCount());
    switch (state()) {
    case State::Complete:
        return {};
    case State::Failed:
        return TranslateText(u"Der Bericht ist nicht vollständig:"_s) + u' ' + run_->fault();
    case State::Halted:
        return TranslateText(u"Angehalten; Seiten bis hier:"_s) + u' ' + pages;
    case State::Going:
        break;
    }
    return isWaiting() ? TranslateText(u"Die gewünschte Seite wird noch gesetzt …"_s)
                       : TranslateText(u"Die Seiten werden gesetzt …"_s);
}

// ---- size

QSizeF PreviewModel::pageSize() const {
    const QSizeF size = run_->layout().setup().page * dotsPerTwip();
    return {std::max(1.0, std::round(size.width())), std::max(1.0, std::round(size.height()))};
}

void PreviewModel::setRoom(const QSizeF& room, double dotsPerInch) {
    if (room == room_ && dotsPerInch == dotsPerInch_)
        return;
    dotsPerInch_ = dotsPerInch;
    room_ = room;
    applyFit();
    at_ = within(at_);
}

/// Another zoom or order, with the same spot of the same page at a place of the room.
void PreviewModel::change(const QPointF& place, double zoom, int columns) {
    const int page = std::clamp(current_, 0, std::max(0, pageCount() - 1));
    const QRectF before = pageRect(page);
    const QPointF spot((at_.x() + place.x() - before.x()) / before.width(),
                       (at_.y() + place.y() - before.y()) / before.height());
    zoom_ = std::clamp(zoom, leastZoom, mostZoom);
    columns_ = columns;
    const QRectF after = pageRect(page);
    at_ = within({after.x() + spot.x() * after.width() - place.x(), after.y() + spot.y() * after.height() - place.y()});
}

void PreviewModel::zoomAbout(const QPointF& place, double zoom) {
    fit_ = Fit::None;
    change(place, zoom, columns_);
}

void PreviewModel::setZoom(double zoom) {
    zoomAbout({room_.width() / 2, 0}, zoom);
}

void PreviewModel::zoomIn() {
    const auto next = std::ranges::find_if(steps, [&](double step) { return step > zoom_ + hair; });
    if (next != steps.end())
        setZoom(*next);
}

void PreviewModel::zoomOut() {
    const auto next = std::ranges::find_if(steps, [&](double step) { return step >= zoom_ - hair; });
    if (next != steps.begin())
        setZoom(*(next - 1));
}

void PreviewModel::setFit(Fit fit) {
    fit_ = fit;
    applyFit();
}

void PreviewModel::applyFit() {
    if (fit_ == Fit::None || room_.isEmpty())
        return;
    const QSizeF paper = run_->layout().setup().page * dotsPerInch_ / 1440;
    double zoom = (room_.width() - (columns_ + 1) * gap) / (columns_ * paper.width());
    if (fit_ == Fit::Page)
        zoom = std::min(zoom, (room_.height() - 2 * gap) / paper.height());
    change({room_.width() / 2, 0}, zoom, columns_);
    if (fit_ == Fit::Page)
        at_ = within({at_.x(), pageRect(current_).y() - gap});
}

void PreviewModel::setTwoPages(bool two) {
    change({room_.width() / 2, 0}, zoom_, two ? 2 : 1);
    applyFit();
}

// ---- place

QSizeF PreviewModel::contentSize() const {
    const QSizeF page = pageSize();
    return {columns_ * page.width() + (columns_ + 1) * gap, rows() * (page.height() + gap) + gap};
}

QRectF PreviewModel::pageRect(int page) const {
    const QSizeF size = pageSize();
    const double width = columns_ * size.width() + (columns_ + 1) * gap;
    const double left = std::max(0.0, std::floor((room_.width() - width) / 2));
    return {{left + gap + page % columns_ * (size.width() + gap), gap + page / columns_ * (size.height() + gap)}, size};
}

QPointF PreviewModel::within(const QPointF& at) const {
    const QSizeF most = contentSize() - room_;
    return {std::round(std::clamp(at.x(), 0.0, std::max(0.0, most.width()))),
            std::round(std::clamp(at.y(), 0.0, std::max(0.0, most.height())))};
}

void PreviewModel::scrollTo(const QPointF& at) {
    const QPointF wanted = within(at);
    if (wanted == at_)
        return;
    at_ = wanted;
    awaitedPage_ = awaitedEntry_ = -1;
    // The page that has the upper third of the view.
    const double height = pageSize().height() + gap;
    const int row = static_cast<int>((at_.y() + std::min(room_.height(), height) / 3) / height);
    current_ = std::clamp(row * columns_, 0, std::max(0, pageCount() - 1));
}

std::pair<int, int> PreviewModel::inView() const {
    const double height = pageSize().height() + gap;
    const int first = std::max(0, static_cast<int>((at_.y() - gap) / height)) * columns_;
    const int last = (static_cast<int>((at_.y() + room_.height() - gap) / height) + 1) * columns_ - 1;
    return {first, std::min(last, pageCount() - 1)};
}

void PreviewModel::showPage(int page, double twipsFromTop) {
    current_ = page;
    const QRectF rect = pageRect(page);
    const double y = rect.y() - gap + (rect.height() + 2 * gap <= room_.height() ? 0 : twipsFromTop * dotsPerTwip());
    double x = at_.x();
    if (rect.left() < x || rect.right() > x + room_.width())
        x = rect.left() - gap;
    at_ = within({x, y});
}

void PreviewModel::goToPage(int page) {
    const bool there = page < pageCount();
    if (!there && state() == State::Going) {
        awaitedPage_ = page;
        awaitedEntry_ = -1;
        return;
    }
    awaitedPage_ = awaitedEntry_ = -1;
    showPage(std::clamp(page, 0, std::max(0, pageCount() - 1)), 0);
}

void PreviewModel::jumpToPage(int page) {
    remember();
    goToPage(page);
}

bool PreviewModel::hasNext() const {
    return current_ / columns_ + 1 < rows();
}

void PreviewModel::nextPage() {
    if (hasNext())
        goToPage((current_ / columns_ + 1) * columns_);
}

void PreviewModel::previousPage() {
    // Within a page one comes to its beginning at first.
    const double top = pageRect(current_).y() - gap;
    if (at_.y() > top + gap && pageSize().height() > room_.height())
        goToPage(current_);
    else
        goToPage(std::max(0, (current_ / columns_ - 1) * columns_));
}

void PreviewModel::turn(bool forward) {
    constexpr double share = 0.9;
    if (pageSize().height() + gap <= room_.height()) {
        if (forward)
            nextPage();
        else
            previousPage();
        return;
    }
    scrollTo(at_ + QPointF(0, (forward ? share : -share) * room_.height()));
}

void PreviewModel::goToEntry(int entry) {
    remember();
    showEntry(entry);
}

void PreviewModel::showEntry(int entry) {
    const int page = run_->layout().pageOf(entry);
    awaitedPage_ = -1;
    awaitedEntry_ = page < 0 && state() == State::Going ? entry : -1;
    if (page < 0 || page >= pageCount())
        return;
    double y = 0;
    for (const ReportPage::Anchor& anchor : pictures_.page(run_->layout(), page).anchors)
        if (anchor.entry == entry)
            y = std::max(0.0, anchor.y - spaceAbove);
    showPage(page, y);
}

void PreviewModel::goWhereAwaited() {
    if (awaitedEntry_ >= 0 && run_->layout().pageOf(awaitedEntry_) >= 0)
        showEntry(awaitedEntry_);
    else if (awaitedPage_ >= 0 && (awaitedPage_ < pageCount() || ended_))
        goToPage(awaitedPage_);
    if (ended_)
        awaitedPage_ = awaitedEntry_ = -1;
}

std::optional<int> PreviewModel::linkAt(const QPointF& place) {
    const QPointF at = at_ + place;
    const auto [first, last] = inView();
    for (int page = first; page <= last; ++page) {
        const QRectF rect = pageRect(page);
        if (!rect.contains(at))
            continue;
        for (const ReportPage::Link& link : pictures_.page(run_->layout(), page).links)
            if (link.rect.contains((at - rect.topLeft()) / dotsPerTwip()))
                return link.entry;
    }
    return std::nullopt;
}

void PreviewModel::remember() {
    if (before_.size() == mostPlaces)
        before_.erase(before_.begin());
    before_.push_back({current_, (at_.y() + gap - pageRect(current_).y()) / dotsPerTwip()});
}

void PreviewModel::back() {
    if (before_.empty())
        return;
    const Place place = before_.back();
    before_.pop_back();
    awaitedPage_ = awaitedEntry_ = -1;
    showPage(std::clamp(place.page, 0, std::max(0, pageCount() - 1)), place.twips);
}

// ---- search

void PreviewModel::find(const QString& text) {
    const std::vector<ReportEntry>& entries = run_->layout().outline().entries;
    if (names_.isEmpty())
        for (const ReportEntry& entry : entries) {
            names_ << entry.name.toCaseFolded();
            labels_ << entry.title.toCaseFolded();
        }
    const QString sought = text.trimmed().toCaseFolded();
    if (sought_.isEmpty() && !sought.isEmpty())
        remember();
    sought_ = sought;
    matches_.clear();
    match_ = -1;
    if (sought.isEmpty())
        return;
    // The name itself, what begins with it, what has it within, and a label that has it.
    int best = 4;
    for (int i = 0; i < names_.size(); ++i) {
        const int rank = names_[i] == sought            ? 0
                         : names_[i].startsWith(sought) ? 1
                         : names_[i].contains(sought)   ? 2
                         : labels_[i].contains(sought)  ? 3
                                                        : 4;
        if (rank == 4)
            continue;
        if (rank < best) {
            best = rank;
            match_ = matches();
        }
        matches_.push_back(i);
    }
    if (match_ >= 0)
        showEntry(found());
}

void PreviewModel::findNext(bool backwards) {
    if (matches_.empty())
        return;
    match_ = (match_ + (backwards ? matches() - 1 : 1)) % matches();
    showEntry(found());
}

int PreviewModel::found() const {
    return match_ < 0 ? -1 : matches_[static_cast<size_t>(match_)];
}
