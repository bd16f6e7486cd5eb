#pragma once

#include "printing/PagePictures.h"
#include "printing/ReportRun.h"

#include <QRectF>
#include <QStringList>
#include <optional>
#include <vector>

/// What a preview shows of a report: how large, which pages, what is looked for, while the pages are still being laid
/// out. Pages stand one below the other, or in pairs. Lengths are in pixels of the window system, those of the pages'
/// place from the upper left corner of the first one's surroundings. Pages and entries count from 0.
class PreviewModel {
public:
    enum class State { Going, Halted, Complete, Failed };
    enum class Fit { None, Width, Page };

    static constexpr double leastZoom = 0.1, mostZoom = 5;
    static constexpr double gap = 12; ///< around a page

    /// @param percent zoom at the start; one that nobody could work with is put right
    PreviewModel(std::unique_ptr<ReportRun> run, int percent);

    // ---- the pages as they come
    /// Opens the report. @return why there is nothing to show; empty if there is
    QString open() { return run_->open(); }
    /// Goes on for about that long. @return true while there is more to do
    bool goOn(int milliseconds);
    /// Goes on until the first page is there, or that long.
    void showFirst(int milliseconds);
    void halt() { halted_ = true; }
    void resume() { halted_ = false; }
    State state() const;
    ReportRun& run() { return *run_; }
    const ReportRun& run() const { return *run_; }
    int pageCount() const { return run_->layout().pageCount(); }
    /// What is to be told of it in a line, in the language of the words.
    QString status() const;

    // ---- size
    /// @param room for the pages @param dotsPerInch of the window system's pixels
    void setRoom(const QSizeF& room, double dotsPerInch);
    double zoom() const { return zoom_; } ///< 1 is the size on paper
    Fit fit() const { return fit_; }
    bool twoPages() const { return columns_ == 2; }
    void setZoom(double zoom);
    /// The same, with what is at a place of the room staying there.
    void zoomAbout(const QPointF& place, double zoom);
    void zoomIn();
    void zoomOut();
    bool canZoomIn() const { return zoom_ < mostZoom; }
    bool canZoomOut() const { return zoom_ > leastZoom; }
    void resetZoom() { setZoom(firstZoom_); }
    void setFit(Fit fit);
    void setTwoPages(bool two);
    double dotsPerTwip() const { return zoom_ * dotsPerInch_ / 1440; }

    // ---- place
    QSizeF contentSize() const;
    QRectF pageRect(int page) const;
    /// Upper left corner of what is in view.
    QPointF at() const { return at_; }
    void scrollTo(const QPointF& at);
    /// Pages of which something is in view, first and last; the last is before the first where there are none.
    std::pair<int, int> inView() const;
    /// The page that commands start from: the one gone to last, or that which what is in view begins with.
    int currentPage() const { return current_; }
    /// Goes to a page, once it is there; behind the last one, to that.
    void goToPage(int page);
    /// The same as a jump, from which one can go back.
    void jumpToPage(int page);
    void nextPage();
    void previousPage();
    /// A view further, or back; in view as a whole, pages are turned.
    void turn(bool forward);
    bool hasNext() const;
    bool hasPrevious() const { return current_ > 0; }
    /// Page or entry that is to be shown as soon as it is laid out.
    bool isWaiting() const { return awaitedPage_ >= 0 || awaitedEntry_ >= 0; }
    void goToEntry(int entry);
    /// Entry that a place in view leads to; nothing for a plain one.
    std::optional<int> linkAt(const QPointF& place);
    /// Goes where one was before the last jump.
    void back();
    bool canGoBack() const { return !before_.empty(); }

    // ---- search
    /// Looks for a variable, or another entry with a title, by its name or label, without regard to case, and goes to
    /// the one that fits best. An empty text marks nothing.
    void find(const QString& text);
    /// Goes to the next one that fits, or the one before; past the end to the other.
    void findNext(bool backwards);
    int matches() const { return static_cast<int>(matches_.size()); }
    /// Which of them is shown, from 0; -1 for none.
    int match() const { return match_; }
    /// The entry that was found; -1 for none.
    int found() const;

    PagePictures& pictures() { return pictures_; }

private:
    struct Place {
        int page = 0;
        double twips = 0; ///< from the page's top to that of the view
    };
    std::unique_ptr<ReportRun> run_;
    PagePictures pictures_;
    bool halted_ = false, ended_ = false;

    QSizeF room_;
    double dotsPerInch_ = 96, firstZoom_, zoom_;
    Fit fit_ = Fit::None;
    int columns_ = 1;
    QPointF at_;
    int current_ = 0, awaitedPage_ = -1, awaitedEntry_ = -1;
    std::vector<Place> before_;

    QStringList names_, labels_; ///< of the entries, folded
    QString sought_;
    std::vector<int> matches_;
    int match_ = -1;

    QSizeF pageSize() const;
    int rows() const { return (pageCount() + columns_ - 1) / columns_; }
    QPointF within(const QPointF& at) const;
    void change(const QPointF& place, double zoom, int columns);
    void applyFit();
    void showPage(int page, double twipsFromTop);
    void showEntry(int entry);
    void remember();
    void goWhereAwaited();
};
