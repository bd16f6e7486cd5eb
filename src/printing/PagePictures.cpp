#include "printing/PagePictures.h"

#include "printing/ReportLayout.h"
#include "printing/outlets.h"

#include <QPainter>
#include <algorithm>

namespace {

constexpr int mostPages = 12;
constexpr qsizetype mostBytes = 64 << 20;
/// A picture beyond this would push out all others.
constexpr qint64 mostDots = 6'000'000;

} // namespace

PagePictures::Kept& PagePictures::keep(const ReportLayout& layout, int page) {
    const auto found = std::ranges::find(kept_, page, &Kept::number);
    if (found != kept_.end()) {
        kept_.splice(kept_.begin(), kept_, found);
        return kept_.front();
    }
    kept_.push_front({page, layout.page(page), {}});
    makeRoom();
    return kept_.front();
}

/// What was not looked at for longest goes; the one in front stays.
void PagePictures::makeRoom() {
    qsizetype bytes = 0;
    size_t pages = 0;
    const auto tooMany = [&](const Kept& kept) {
        bytes += kept.picture.sizeInBytes();
        return ++pages > mostPages || (bytes > mostBytes && pages > 1);
    };
    kept_.erase(std::ranges::find_if(kept_, tooMany), kept_.end());
}

const ReportPage& PagePictures::page(const ReportLayout& layout, int page) {
    return keep(layout, page).page;
}

const QImage& PagePictures::picture(const ReportLayout& layout, int page, const QSize& size) {
    static const QImage none;
    Kept& kept = keep(layout, page);
    if (kept.picture.size() == size)
        return kept.picture;
    if (qint64(size.width()) * size.height() > mostDots)
        return none;
    kept.picture = QImage(size, QImage::Format_RGB32);
    if (kept.picture.isNull())
        return none;
    kept.picture.fill(Qt::white);
    QPainter painter(&kept.picture);
    painter.scale(size.width() / kept.page.size.width(), size.height() / kept.page.size.height());
    paintPage(painter, kept.page);
    painter.end();
    makeRoom();
    return kept.picture;
}
