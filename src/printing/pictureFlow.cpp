#include "charts/pictures.h"
#include "printing/flows.h"
#include "printing/look.h"
#include "printing/setRow.h"
#include "printing/words.h"

#include <QCryptographicHash>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <list>

using namespace Qt::StringLiterals;

namespace {

constexpr double twipsPerPixel = 15;           ///< at 96 to the inch
constexpr double pixelsPerTwip = 300 / 1440.0; ///< more than that no paper shows
constexpr double mostForPicture =
    0.78; ///< of its height that a picture takes with its title: heads and feet need the rest
constexpr double smallestSide = 20 * twipsPerMillimetre; ///< of a picture made smaller, on its longer side
constexpr int unbrokenLines = 8;
/// Of its size that is left of a picture which would otherwise leave the rest of a page empty: what is written in it
/// must stay readable, and a card stands on paper smaller than on a screen as it is.
constexpr double smallestGraph = 0.6, smallestCard = 0.75;

/// Pictures as they are painted, the last few of them: one card often stands with many variables, and a page is laid
/// out more than once.
class Shown {
public:
    std::shared_ptr<const QImage> of(const QByteArray& bytes, const QSize& most, PictureFault& fault) {
        const QByteArray key = QCryptographicHash::hash(bytes, QCryptographicHash::Sha1) + '/' +
                               QByteArray::number(most.width()) + 'x' + QByteArray::number(most.height());
        const auto found = std::ranges::find(kept_, key, &Kept::key);
        if (found != kept_.end()) {
            kept_.splice(kept_.begin(), kept_, found);
        } else {
            kept_.push_front({key, {}, PictureFault::None});
            Picture picture = readPicture(bytes, most);
            kept_.front().fault = picture.fault;
            if (picture)
                kept_.front().image = std::make_shared<const QImage>(onPaper(std::move(picture.image)));
            forget();
        }
        fault = kept_.front().fault;
        return kept_.front().image;
    }

private:
    struct Kept {
        QByteArray key;
        std::shared_ptr<const QImage> image;
        PictureFault fault;
    };
    static constexpr qint64 mostBytes = 24 << 20;
    std::list<Kept> kept_;

    /// Paper knows no transparency.
    static QImage onPaper(QImage image) {
        if (!image.hasAlphaChannel())
            return image;
        QImage paper(image.size(), QImage::Format_RGB32);
        paper.fill(Qt::white);
        QPainter(&paper).drawImage(0, 0, image);
        return paper;
    }

    void forget() {
        qint64 bytes = 0;
        for (auto kept = kept_.begin(); kept != kept_.end();) {
            bytes += kept->image ? kept->image->sizeInBytes() : 1000;
            kept = bytes > mostBytes && kept != kept_.begin() ? kept_.erase(kept) : std::next(kept);
        }
    }
};

/// A picture with its title above and its explanation below.
class PictureFlow : public Flowable {
public:
    PictureFlow(const PictureBlock& block, double room, const PageSetup& setup);

    int rows() const override { return 1 + static_cast<int>(below_.size()); }
    double height(int row) const override {
        return row == 0 ? pictureTop_ + size_.height() : below_[static_cast<size_t>(row - 1)].height();
    }
    bool mayEndAfter(int row) const override;
    double spaceBefore() const override { return look::blockSpace(setup_); }
    double width() const override { return width_; }
    std::shared_ptr<const Flowable> fitted(double room) const override;
    void place(ReportPage& page, int row, const QPointF& at) const override;
    /// A title of many lines may be longer than a page; the picture stays whole.
    double piece(int row, double from, double room) const override;
    void placePiece(ReportPage& page, int row, double from, double pieceHeight, const QPointF& at) const override;

private:
    PageSetup setup_;
    QByteArray bytes_;
    QSizeF size_; ///< on the page; empty where there is a fault
    SetRow text_; ///< title, and why there is no picture
    double pictureTop_ = 0, width_ = 0, smallest_ = 1;
    std::vector<SetText> below_; ///< one line each

    QSizeF sizeFor(const PictureBlock& block, const QSize& pixels, double room, double high) const;
    void setExplanation(const QString& explanation, double room);
    void placePicture(ReportPage& page, const QPointF& at) const;
};

PictureFlow::PictureFlow(const PictureBlock& block, double room, const PageSetup& setup)
    : setup_(setup), bytes_(block.bytes) {
    const double em = look::em(setup), most = std::min(room, look::measure(setup));
    if (const QString title = printable(block.title).trimmed(); !title.isEmpty()) {
        const std::vector<SetText> lines =
            setStretches(title, reportFont(setup.fontFamily, look::captionSize(setup), true), most);
        pictureTop_ += text_.add(lines, {0, 0}) + 0.3 * em;
        for (const SetText& text : lines)
            width_ = std::max(width_, text.width);
    }
    QString fault = block.fault;
    QSize pixels;
    if (fault.isEmpty()) {
        const PictureHead head = bytes_.isEmpty() ? PictureHead{{}, PictureFault::Missing} : readPictureHead(bytes_);
        if (head.fault != PictureFault::None)
            fault = reportWord(faultWords(head.fault), setup.language);
        pixels = head.size;
    }
    if (fault.isEmpty()) {
        const double page = mostForPicture * setup.textArea().height();
        size_ = sizeFor(block, pixels, room, std::max(page / 3, page - pictureTop_));
        smallest_ = block.kind == PictureBlock::Kind::Graph ? smallestGraph : smallestCard;
    } else {
        const std::vector<SetText> words =
            setStretches(printable(fault), reportFont(setup.fontFamily, setup.fontSize, false, true), most);
        pictureTop_ += text_.add(words, {0, pictureTop_}, 1, look::quietColor);
        for (const SetText& text : words)
            width_ = std::max(width_, text.width);
    }
    width_ = std::min(room, std::max(width_, size_.width()));
    text_.height = pictureTop_;
    setExplanation(block.explanation, most);
}

/// As large as it was kept or as it is on a screen, by the zoom; never beyond the page, and made smaller only as far as
/// something can be seen.
QSizeF PictureFlow::sizeFor(const PictureBlock& block, const QSize& pixels, double room, double high) const {
    const bool graph = block.kind == PictureBlock::Kind::Graph;
    const double asked = graph ? setup_.graphZoom : setup_.picZoom, usual = graph ? 1 : 0.6;
    const double zoom = std::isfinite(asked) && asked > 0 ? std::min(asked, 100.0) : usual;
    QSizeF size = QSizeF(pixels) * twipsPerPixel;
    if (block.size.width() > 0 && block.size.height() > 0)
        size.scale(block.size, Qt::KeepAspectRatio);
    const double longer = std::max(size.width(), size.height());
    size *= std::max(zoom, std::min(1.0, smallestSide / longer));
    if (size.width() > room || size.height() > high)
        size.scale(QSizeF(room, high), Qt::KeepAspectRatio);
    return size;
}

std::shared_ptr<const Flowable> PictureFlow::fitted(double room) const {
    const double high = room - pictureTop_;
    if (size_.isEmpty() || high < smallest_ * size_.height() || high >= size_.height())
        return nullptr;
    const QSizeF smaller = size_ * (high / size_.height());
    if (std::max(smaller.width(), smaller.height()) < smallestSide)
        return nullptr;
    auto flow = std::make_shared<PictureFlow>(*this);
    flow->size_ = smaller;
    return flow;
}

void PictureFlow::setExplanation(const QString& explanation, double room) {
    const QFont font = reportFont(setup_.fontFamily, look::noteSize(setup_));
    for (const QString& line : printable(explanation).split(u'\n'))
        if (!line.trimmed().isEmpty())
            for (SetText& text : setStretches(line.trimmed(), font, room)) {
                width_ = std::max(width_, text.width);
                below_.push_back(std::move(text));
            }
}

bool PictureFlow::mayEndAfter(int row) const {
    const int last = rows() - 1;
    if (row == last)
        return true;
    return last > unbrokenLines && row > 1 && row + 1 < last;
}

/// Damage that only reading shows is said where the picture would stand.
void PictureFlow::placePicture(ReportPage& page, const QPointF& at) const {
    if (size_.isEmpty())
        return;
    static Shown shown;
    const QRectF rect(at, size_);
    const QSize most(std::max(1, static_cast<int>(std::ceil(size_.width() * pixelsPerTwip))),
                     std::max(1, static_cast<int>(std::ceil(size_.height() * pixelsPerTwip))));
    PictureFault fault = PictureFault::None;
    if (const std::shared_ptr<const QImage> image = shown.of(bytes_, most, fault)) {
        page.pieces.emplace_back(ReportPage::Image{rect, image});
        return;
    }
    const QPointF corners[] = {rect.topLeft(), rect.topRight(), rect.bottomRight(), rect.bottomLeft()};
    for (size_t i = 0; i < 4; ++i)
        page.pieces.emplace_back(ReportPage::Rule{{corners[i], corners[(i + 1) % 4]}, look::hairline, look::ruleColor});
    const SetText words =
        setText(printable(reportWord(faultWords(fault), setup_.language)),
                reportFont(setup_.fontFamily, look::noteSize(setup_), false, true), size_.width(), Qt::AlignHCenter);
    const double room = std::max(0.0, (size_.height() - words.height()) / 2);
    words.place(page, at + QPointF(0, room), look::quietColor);
}

void PictureFlow::place(ReportPage& page, int row, const QPointF& at) const {
    if (row > 0) {
        below_[static_cast<size_t>(row - 1)].place(page, at, look::quietColor);
        return;
    }
    text_.place(page, at);
    placePicture(page, at + QPointF(0, pictureTop_));
}

double PictureFlow::piece(int row, double from, double room) const {
    if (row > 0)
        return 0;
    if (from + room >= height(0) - 0.01)
        return height(0) - from;
    // Behind a title that goes on for pages the picture goes whole onto the next one; others stay with it.
    if (pictureTop_ < setup_.textArea().height() / 4)
        return 0;
    return from + room >= pictureTop_ ? std::max(0.0, pictureTop_ - from) : text_.piece(from, room);
}

void PictureFlow::placePiece(ReportPage& page, int row, double from, double pieceHeight, const QPointF& at) const {
    if (row > 0)
        return;
    text_.placePiece(page, from, pieceHeight, at);
    if (from + pieceHeight >= height(0) - 0.01)
        placePicture(page, at + QPointF(0, pictureTop_ - from));
}

} // namespace

std::unique_ptr<Flowable> pictureFlow(const PictureBlock& block, double width, const PageSetup& setup) {
    return std::make_unique<PictureFlow>(block, width, setup);
}
