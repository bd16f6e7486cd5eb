#pragma once

#include <QImage>
#include <vector>

class QPainter;

/// A picture that is painted again and again in any size. Smaller than it is, it is painted from a copy that is hardly
/// larger than what is wanted: quick, and without losing thin lines that fall between two pixels. The copies are made
/// when they are first needed.
class ScaledPicture {
public:
    ScaledPicture() = default;
    explicit ScaledPicture(QImage picture);

    bool isNull() const { return levels_.empty(); }
    /// In pixels of the picture.
    QSize size() const { return isNull() ? QSize() : levels_.front().size(); }

    /// The picture itself, on white where it is transparent.
    QImage full() const { return isNull() ? QImage() : levels_.front(); }

    /// Paints all of the picture into a rectangle of the painter's coordinates, on white where it is transparent. Its
    /// corner goes to a whole pixel of the device, so that a picture that is moved doesn't change.
    void paint(QPainter& painter, QRectF target) const;

private:
    /// The picture, then each with half the pixels of the one before; null where it hasn't been needed.
    mutable std::vector<QImage> levels_;

    const QImage& level(int number) const;
    int levelFor(double scale) const;
};
