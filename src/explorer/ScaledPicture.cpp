#include "explorer/ScaledPicture.h"

#include <QPaintDevice>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace {

/// The format that is painted without being converted each time.
QImage asPainted(QImage picture) {
    if (!picture.hasAlphaChannel()) {
        picture.convertTo(QImage::Format_RGB32);
        return picture;
    }
    QImage onWhite(picture.size(), QImage::Format_RGB32);
    if (onWhite.isNull())
        return {};
    onWhite.fill(Qt::white);
    picture.setDevicePixelRatio(1);
    QPainter(&onWhite).drawImage(0, 0, picture);
    return onWhite;
}

/// Most copies: the last is a thousandth as wide as the picture.
constexpr int mostLevels = 20;

/// Size of a copy in parts of the picture's.
double scaleOf(int level) {
    return std::pow(0.5, level / 2.0);
}

} // namespace

ScaledPicture::ScaledPicture(QImage picture) {
    picture = asPainted(std::move(picture));
    if (!picture.isNull())
        levels_.push_back(std::move(picture));
}

/// Each is made of the one of twice its width.
const QImage& ScaledPicture::level(int number) const {
    const auto place = static_cast<size_t>(number);
    if (levels_.size() <= place)
        levels_.resize(place + 1);
    if (levels_[place].isNull()) {
        const QSizeF exact = QSizeF(size()) * scaleOf(number);
        const QSize rounded(std::max(1, qRound(exact.width())), std::max(1, qRound(exact.height())));
        const QImage made =
            level(std::max(0, number - 2)).scaled(rounded, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        levels_[place] = made;
    }
    return levels_[place];
}

int ScaledPicture::levelFor(double scale) const {
    int number = 0;
    while (number < mostLevels && scaleOf(number + 1) >= scale * (1 - 1e-9))
        ++number;
    // At exactly half its size each pixel is the mean of four of the larger one anyway.
    const bool isMade = static_cast<size_t>(number) < levels_.size() && !levels_[static_cast<size_t>(number)].isNull();
    return number >= 2 && !isMade && std::abs(scale / scaleOf(number - 2) - 0.5) < 1e-6 ? number - 2 : number;
}

void ScaledPicture::paint(QPainter& painter, QRectF target) const {
    if (isNull() || target.isEmpty())
        return;
    const double ratio = painter.device()->devicePixelRatioF();
    target.moveTopLeft({std::round(target.x() * ratio) / ratio, std::round(target.y() * ratio) / ratio});
    const QImage& image = level(levelFor(target.width() * ratio / size().width()));
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform, target.size() * ratio != image.size());
    painter.drawImage(target, image);
    painter.restore();
}
