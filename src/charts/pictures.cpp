#include "charts/pictures.h"

#include "app/globals.h"
#include "charts/chartFile.h"
#include "platform/ui/Asker.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <algorithm>
#include <array>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 mostPixels = 50'000'000;
constexpr qint64 mostFileBytes = 512LL << 20;
/// Eight bytes a pixel, which is what sixteen bits a colour take.
constexpr int allocationMegabytes = static_cast<int>(mostPixels * 8 / (1 << 20)) + 1;

struct Format {
    QByteArray name, start;
};

/// The formats that are read, by what their files begin with.
QByteArray formatOf(const QByteArray& bytes) {
    static const std::array<Format, 7> formats = {Format{"jpeg", "\xFF\xD8\xFF"},
                                                  {"png", "\x89PNG\r\n\x1A\n"},
                                                  {"gif", "GIF87a"},
                                                  {"gif", "GIF89a"},
                                                  {"bmp", "BM"},
                                                  {"tiff", QByteArray("II*\0", 4)},
                                                  {"tiff", QByteArray("MM\0*", 4)}};
    const auto found = std::ranges::find_if(formats, [&](const Format& f) { return bytes.startsWith(f.start); });
    return found == formats.end() ? QByteArray() : found->name;
}

uchar byteAt(const QByteArray& bytes, qsizetype at) {
    return at < bytes.size() ? static_cast<uchar>(bytes[at]) : 0;
}

/// True if a JPEG file reaches to its end marker. The library fills up what is missing with grey and says nothing.
bool isWholeJpeg(const QByteArray& bytes) {
    qsizetype at = 2;
    while (at + 1 < bytes.size()) {
        if (byteAt(bytes, at) != 0xFF) {
            ++at; // within the compressed data
            continue;
        }
        const uchar marker = byteAt(bytes, at + 1);
        if (marker == 0xD9)
            return true;
        if (marker == 0xFF)
            ++at;
        else if (marker == 0 || marker == 1 || (marker >= 0xD0 && marker <= 0xD7))
            at += 2;
        else
            at += 2 + std::max(2, byteAt(bytes, at + 2) * 256 + byteAt(bytes, at + 3));
    }
    return false;
}

/// True if a GIF file reaches to the end of its first picture, whose rest would stay empty without a word.
bool isWholeGif(const QByteArray& bytes) {
    const auto colours = [&](qsizetype at) {
        return (byteAt(bytes, at) & 0x80) != 0 ? 3 * (2 << (byteAt(bytes, at) & 7)) : 0;
    };
    qsizetype at = 13 + colours(10);
    bool picture = false;
    while (at < bytes.size() && byteAt(bytes, at) != 0x3B) {
        picture = byteAt(bytes, at) == 0x2C;
        if (!picture && byteAt(bytes, at) != 0x21)
            return false;
        at += picture ? 11 + colours(at + 9) : 2;
        while (at < bytes.size() && byteAt(bytes, at) != 0)
            at += 1 + byteAt(bytes, at);
        ++at;
        if (picture)
            return at <= bytes.size();
    }
    return false;
}

/// True if a BMP file whose pixels aren't compressed has them all.
bool isWholeBmp(const QByteArray& bytes, const QSize& size) {
    const auto number = [&](qsizetype at) {
        return byteAt(bytes, at) + 256LL * byteAt(bytes, at + 1) + 65536LL * byteAt(bytes, at + 2) +
               16777216LL * byteAt(bytes, at + 3);
    };
    const bool old = number(14) == 12;
    const qint64 bits = old ? number(24) & 0xFFFF : number(28) & 0xFFFF;
    const qint64 compression = old ? 0 : number(30);
    if (compression == 1 || compression == 2)
        return true;
    return number(10) + (size.width() * bits + 31) / 32 * 4 * size.height() <= bytes.size();
}

bool isWhole(const QByteArray& bytes, const QByteArray& format, const QSize& size) {
    return format == "jpeg"  ? isWholeJpeg(bytes)
           : format == "gif" ? isWholeGif(bytes)
           : format == "bmp" ? isWholeBmp(bytes, size)
                             : true;
}

bool isTooLarge(const QSize& size) {
    return qint64{size.width()} * size.height() > mostPixels;
}

} // namespace

namespace {

/// A picture whose head was read.
class Opened {
public:
    explicit Opened(const QByteArray& bytes) : format_(formatOf(bytes)) {
        static const bool limitSet = [] {
            QImageReader::setAllocationLimit(std::max(QImageReader::allocationLimit(), allocationMegabytes));
            return true;
        }();
        (void)limitSet;
        if (format_.isEmpty())
            fault_ = PictureFault::Unknown;
        else if (!QImageReader::supportedImageFormats().contains(format_))
            fault_ = PictureFault::Unsupported;
        if (fault_ != PictureFault::None)
            return;
        buffer_.setData(bytes);
        buffer_.open(QIODevice::ReadOnly);
        reader_.setDevice(&buffer_);
        reader_.setFormat(format_);
        reader_.setAutoDetectImageFormat(false);
        reader_.setAutoTransform(true);
        size_ = reader_.size();
        if (size_.isValid() && isTooLarge(size_))
            fault_ = PictureFault::TooLarge;
        else if (!isWhole(bytes, format_, size_))
            fault_ = PictureFault::Damaged;
    }

    PictureFault fault() const { return fault_; }
    /// As the picture is shown; invalid where the head doesn't say.
    QSize size() const { return isTurned() ? size_.transposed() : size_; }

    Picture read(const QSize& most = {}) {
        if (fault_ != PictureFault::None)
            return {{}, fault_};
        const QSize room = isTurned() ? most.transposed() : most;
        if (room.isValid() && size_.isValid() && (size_.width() > room.width() || size_.height() > room.height()))
            reader_.setScaledSize(size_.scaled(room, Qt::KeepAspectRatio).expandedTo({1, 1}));
        QImage image = reader_.read();
        if (image.isNull())
            return {{}, PictureFault::Damaged};
        if (isTooLarge(image.size()))
            return {{}, PictureFault::TooLarge};
        // Other formats take many times as long to paint.
        image.convertTo(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
        return {image, PictureFault::None};
    }

private:
    QByteArray format_;
    QBuffer buffer_;
    QImageReader reader_;
    QSize size_;
    PictureFault fault_ = PictureFault::None;

    bool isTurned() const {
        return fault_ == PictureFault::None &&
               reader_.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    }
};

} // namespace

Picture readPicture(const QByteArray& bytes) {
    return Opened(bytes).read();
}

Picture readPicture(const QByteArray& bytes, const QSize& most) {
    return Opened(bytes).read(most);
}

PictureHead readPictureHead(const QByteArray& bytes) {
    Opened opened(bytes);
    if (opened.fault() != PictureFault::None || !opened.size().isEmpty())
        return {opened.size(), opened.fault()};
    const Picture picture = opened.read();
    return {picture.image.size(), picture.fault};
}

Picture readPictureFile(const QString& path) {
    const QFileInfo info(path);
    if (!info.isFile())
        return {{}, PictureFault::Missing};
    if (info.size() > mostFileBytes)
        return {{}, PictureFault::TooLarge};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {{}, PictureFault::Missing};
    const QByteArray bytes = file.readAll();
    return file.error() == QFileDevice::NoError ? readPicture(bytes) : Picture{{}, PictureFault::Missing};
}

QString faultWords(PictureFault fault) {
    switch (fault) {
    case PictureFault::None:
        return {};
    case PictureFault::Missing:
        return u"Das Bild ist nicht da."_s;
    case PictureFault::Unknown:
        return u"Das ist kein Bild in einem Format, das gelesen wird."_s;
    case PictureFault::Unsupported:
        return u"Diesem System fehlt, was das Format des Bildes liest."_s;
    case PictureFault::Damaged:
        return u"Das Bild ist beschädigt."_s;
    case PictureFault::TooLarge:
        return u"Das Bild ist zu groß: Es hat mehr als 50 Megapixel."_s;
    }
    return {};
}

PictureSupport::PictureSupport(bool (*available)()) : available_(available ? available : &jpegSupported) {}

void PictureSupport::start() {
    started_ = available_();
    if (!started_)
        ui::asker().messageBox(
            {TranslateText(u"GDI+ not inizialized."_s), TranslateText(u"GDI Error"_s), ui::Icon::Exclamation});
}
