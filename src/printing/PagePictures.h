#pragma once

#include "printing/ReportPage.h"

#include <QImage>
#include <list>

class ReportLayout;

/// The pages that were looked at last, laid out and painted: a few, so that scrolling paints none of them twice.
class PagePictures {
public:
    /// Lays a page out, unless it is one of the few. @param page from 0, one that is known
    const ReportPage& page(const ReportLayout& layout, int page);
    /// A page on white. Null where it would take more room than the pictures may; it is painted in parts then.
    /// @param size of the picture in dots
    const QImage& picture(const ReportLayout& layout, int page, const QSize& size);
    void clear() { kept_.clear(); }

private:
    struct Kept {
        int number = 0;
        ReportPage page;
        QImage picture;
    };
    std::list<Kept> kept_; ///< the last one in front

    Kept& keep(const ReportLayout& layout, int page);
    void makeRoom();
};
