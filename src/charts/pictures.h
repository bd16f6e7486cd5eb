#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

/// Why a picture cannot be shown.
enum class PictureFault {
    None,
    Missing,     ///< there is no such file, or it cannot be read
    Unknown,     ///< none of the formats that are read
    Unsupported, ///< one of them, but this system lacks what reads it
    Damaged,
    TooLarge ///< more than 50 megapixels, or a file beyond all measure
};

/// A picture that was read, or why it was not.
struct Picture {
    QImage image; ///< turned as its file says; 32 bits a pixel
    PictureFault fault = PictureFault::None;

    explicit operator bool() const { return fault == PictureFault::None; }
};

/// Reads a picture that may come from a stranger: JPEG, PNG, GIF, BMP or TIFF, told apart by content alone, of a file
/// with several the first. Nothing that could load other files.
Picture readPicture(const QByteArray& bytes);
/// The same, made smaller where it is larger than a size, in proportion; of what can be read so no more is held.
Picture readPicture(const QByteArray& bytes, const QSize& most);
/// Size of a picture, turned as its file says, as its head gives it; where that can't be had the picture is read.
/// Damage behind the head is seen by readPicture() only.
struct PictureHead {
    QSize size;
    PictureFault fault = PictureFault::None;
};
PictureHead readPictureHead(const QByteArray& bytes);
/// A picture in a file. A folder, a pipe or anything else that is no file counts as missing.
Picture readPictureFile(const QString& path);

/// Why a picture is not shown, in German, as the texts are kept; empty for none.
QString faultWords(PictureFault fault);

/// Whether charts can be kept as pictures; a window asks when it opens.
class PictureSupport {
public:
    /// @param available whether pictures can be read and written; by default whether JPEG can
    explicit PictureSupport(bool (*available)() = nullptr);

    /// Says so in a box where it fails.
    void start();
    bool started() const { return started_; }

private:
    bool (*available_)();
    bool started_ = false;
};
