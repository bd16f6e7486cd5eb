#include "charts/pictures.h"
#include "support/ScriptedAsker.h"
#include "support/TestHome.h"

#include <QBuffer>
#include <QFile>
#include <QImageWriter>
#include <gtest/gtest.h>
#include <random>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// A picture that no format makes small: every pixel differs.
QImage noise(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    std::mt19937 random(1);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, static_cast<QRgb>(random()) | 0xFF000000U);
    return image;
}

QByteArray fileOf(const QImage& image, const QByteArray& format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(QImageWriter(&buffer, format).write(image)) << format.toStdString();
    return bytes;
}

/// A GIF of 2 x 2 pixels, red and blue in turn, worked by hand.
QByteArray smallGif() {
    return QByteArray::fromHex("47494638396102000200800000FF00000000FF2C000000000200020000"
                               "02038C0205003B");
}

struct Known {
    QByteArray format, bytes;
};

std::vector<Known> knownPictures() {
    std::vector<Known> known;
    for (const QByteArray format : {"jpeg", "png", "bmp", "tiff"})
        known.push_back({format, fileOf(noise(40, 30), format)});
    known.push_back({"gif", smallGif()});
    return known;
}

} // namespace

TEST(Pictures, AreToldApartByContentAndReadWholeOrNotAtAll) {
    for (const auto& [format, bytes] : knownPictures()) {
        const Picture picture = readPicture(bytes);
        EXPECT_TRUE(picture) << format.toStdString();
        EXPECT_EQ(picture.image.size(), format == "gif" ? QSize(2, 2) : QSize(40, 30)) << format.toStdString();
        EXPECT_TRUE(format == "gif" || format == "jpeg" || picture.image == noise(40, 30)) << format.toStdString();
        // Cut off, but for what stands behind the picture itself.
        const qsizetype most = bytes.size() - (format == "gif" ? 2 : 12);
        for (qsizetype size = 0; size < most; size += size < 60 ? 1 : 37)
            EXPECT_FALSE(readPicture(bytes.first(size))) << format.toStdString() << ", " << size;
    }
    const QByteArray svg = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>";
    for (const QByteArray& other : {QByteArray(), svg, QByteArray("P6 1 1 255 abc"), QByteArray("%PDF-1.4")})
        EXPECT_EQ(readPicture(other).fault, PictureFault::Unknown);
}

TEST(Pictures, DamagedBytesDoNoHarm) {
    std::mt19937 random(5);
    for (const auto& [format, bytes] : knownPictures())
        for (int times = 0; times < 300; ++times) {
            QByteArray damaged = bytes;
            for (int changes = 0; changes < 4; ++changes)
                damaged[static_cast<qsizetype>(random() % std::min<size_t>(200, static_cast<size_t>(bytes.size())))] =
                    static_cast<char>(random());
            const Picture picture = readPicture(damaged);
            EXPECT_EQ(picture.image.isNull(), !picture) << format.toStdString();
        }
}

TEST(Pictures, FiftyMegapixelsAreReadAndNoMore) {
    QImage large(10'000, 5'000, QImage::Format_Mono);
    large.fill(1);
    EXPECT_TRUE(readPicture(fileOf(large, "png")));
    QImage larger(10'000, 5'001, QImage::Format_Mono);
    larger.fill(1);
    EXPECT_EQ(readPicture(fileOf(larger, "png")).fault, PictureFault::TooLarge);
    // A head that promises more than there is.
    QByteArray bmp = fileOf(noise(4, 4), "bmp");
    bmp.replace(18, 8, QByteArray::fromHex("FFFFFF7FFFFFFF7F"));
    EXPECT_FALSE(readPicture(bmp));
}

TEST(Pictures, AreReadNoLargerThanAskedAndTheirHeadTellsTheSameSize) {
    // Behind the start of a JPEG file: a note that it is to be turned by a quarter (orientation 6).
    const QByteArray turned =
        QByteArray::fromHex("FFE100224578696600004949 2A0008000000 0100 1201 0300 01000000 06000000 00000000");
    for (const QByteArray& format : {QByteArray("png"), QByteArray("jpeg")}) {
        QByteArray bytes = fileOf(noise(400, 100), format);
        for (const bool upright : {true, false}) {
            if (!upright)
                bytes.insert(2, turned);
            if (!upright && format != "jpeg")
                continue;
            const QSize whole = upright ? QSize(400, 100) : QSize(100, 400);
            EXPECT_EQ(readPictureHead(bytes).size, whole) << format.toStdString();
            EXPECT_EQ(readPicture(bytes).image.size(), whole) << format.toStdString();
            EXPECT_EQ(readPicture(bytes, {50, 50}).image.size(), whole.scaled(50, 50, Qt::KeepAspectRatio));
            EXPECT_EQ(readPicture(bytes, {5000, 5000}).image.size(), whole) << "never enlarged";
        }
    }
    EXPECT_EQ(readPictureHead("nothing").fault, PictureFault::Unknown);
    EXPECT_EQ(readPictureHead(fileOf(noise(9, 9), "jpeg").left(99)).fault, PictureFault::Damaged);
}

TEST(Pictures, OfAFileOnlyWhatIsAFile) {
    const TestHome home;
    const QString path = home.path(u"card.PNG"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(fileOf(noise(3, 2), "jpeg"));
    file.close();
    EXPECT_EQ(readPictureFile(path).image.size(), QSize(3, 2)) << "whatever it is called";
    ASSERT_EQ(mkfifo(home.path(u"pipe"_s).toUtf8().constData(), 0600), 0);
    for (const QString& other : {home.path(QString()), home.path(u"none.png"_s), home.path(u"pipe"_s), QString()})
        EXPECT_EQ(readPictureFile(other).fault, PictureFault::Missing) << other.toStdString();
}

TEST(Pictures, SupportThatFailsIsSaidOnceAndRemembered) {
    ScriptedAsker asker;
    PictureSupport there, missing([] { return false; });
    there.start();
    EXPECT_TRUE(there.started());
    EXPECT_TRUE(asker.boxes.empty());
    missing.start();
    EXPECT_FALSE(missing.started());
    ASSERT_EQ(asker.boxes.size(), 1U);
    EXPECT_EQ(asker.boxes[0].text, u"GDI+ not inizialized."_s);
    EXPECT_EQ(asker.boxes[0].title, u"GDI Error"_s);
}
