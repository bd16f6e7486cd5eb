#include "printing/flows.h"

#include <QBuffer>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

PageSetup flowPage() {
    PageSetup setup;
    setup.page = QSizeF(16838, 11906);
    setup.margins = QMarginsF(567, 1701, 567, 850);
    setup.fontFamily = setup.tableFamily = u"Arial"_s;
    return setup;
}

/// The texts of a row from left to right, and where each begins.
std::vector<std::pair<QString, double>> textsOf(const Flowable& flow, int row) {
    ReportPage page;
    flow.place(page, row, {});
    std::vector<std::pair<QString, double>> texts;
    for (const ReportPage::Piece& piece : page.pieces)
        if (const auto* line = std::get_if<ReportPage::Line>(&piece); line && line->line == 0)
            texts.push_back({line->text->text(), line->at.x() + line->text->lineAt(0).naturalTextRect().left()});
    return texts;
}

ValuesBlock valuesOf(int count) {
    ValuesBlock block{.title = u"Werte"_s, .rows = {}};
    for (int i = 0; i < count; ++i)
        block.rows.push_back(
            {.code = QString::number(i * 7), .label = u"Label %1"_s.arg(i), .missing = i >= count - 2});
    return block;
}

QByteArray encoded(const QImage& image, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

QImage half(const QSize& size, QRgb left, QRgb right) {
    QImage image(size, QImage::Format_ARGB32);
    image.fill(QColor::fromRgba(right));
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width() / 2; ++x)
            image.setPixel(x, y, left);
    return image;
}

struct Laid {
    QRectF rect;
    std::shared_ptr<const QImage> image;
    QStringList texts;
};

Laid laid(const Flowable& flow) {
    Laid result;
    ReportPage page;
    double y = 0;
    for (int row = 0; row < flow.rows(); ++row) {
        flow.place(page, row, {0, y});
        y += flow.height(row);
    }
    for (const ReportPage::Piece& piece : page.pieces) {
        if (const auto* image = std::get_if<ReportPage::Image>(&piece)) {
            result.rect = image->rect;
            result.image = image->image;
        }
        if (const auto* line = std::get_if<ReportPage::Line>(&piece); line && line->line == 0)
            result.texts << line->text->text();
    }
    return result;
}

} // namespace

TEST(ValuesFlow, AListOfUpToEightNeverBreaksAndALongerOneKeepsTwoTogether) {
    for (const int count : {1, 2, 8, 9, 40}) {
        const auto flow = valuesFlow(valuesOf(count), 15000, flowPage());
        ASSERT_EQ(flow->rows(), count);
        for (int row = 0; row + 1 < count; ++row)
            EXPECT_EQ(flow->mayEndAfter(row), count > 8 && row > 0 && row < count - 2) << count << ": " << row;
        EXPECT_TRUE(flow->mayEndAfter(count - 1));
        EXPECT_EQ(flow->headHeight(0), 0);
        EXPECT_EQ(flow->headHeight(count - 1) > 0, count > 1);
    }
}

TEST(ValuesFlow, EveryValueStandsOnceCodesToTheRightMissingOnesMarked) {
    for (const double room : {15000.0, 3000.0}) {
        const auto flow = valuesFlow(valuesOf(12), room, flowPage());
        double labels = -1;
        for (int row = 0; row < 12; ++row) {
            auto texts = textsOf(*flow, row);
            if (row == 0) {
                EXPECT_EQ(texts.front().first, u"Werte"_s);
                texts.erase(texts.begin());
            }
            ASSERT_EQ(texts.size(), row >= 10 ? 3u : 2u);
            EXPECT_EQ(texts[0].first, QString::number(row * 7));
            EXPECT_EQ(texts[1].first, u"Label %1"_s.arg(row));
            EXPECT_EQ(texts.size() > 2 ? texts[2].first : QString(), row >= 10 ? u"Missing"_s : QString());
            EXPECT_LT(texts[0].second, texts[1].second);
            labels = labels < 0 ? texts[1].second : labels;
            EXPECT_NEAR(texts[1].second, labels, 0.5);
            ReportPage page;
            flow->place(page, row, {});
            const bool shaded = std::holds_alternative<ReportPage::Box>(page.pieces.front());
            EXPECT_EQ(shaded, row >= 10);
        }
        EXPECT_LE(flow->width(), room);
    }
}

TEST(ValuesFlow, LongLabelsAndCodesWrapBesideEachOther) {
    ValuesBlock block = valuesOf(3);
    for (int i = 0; i < 60; ++i)
        block.rows[1].label += u" und noch etwas"_s;
    block.rows[2].code = QString(90, u'k');
    const auto flow = valuesFlow(block, 9000, flowPage());
    EXPECT_GT(flow->height(1), 5 * flow->height(0));
    EXPECT_GT(flow->height(2), 2 * flow->height(0));
    EXPECT_LE(flow->width(), 9000);
}

TEST(PictureFlow, IsAsLargeAsItWasKeptByTheZoomAndNeverBeyondThePage) {
    const QByteArray bytes = encoded(half({400, 200}, qRgb(1, 2, 3), qRgb(200, 0, 0)), "PNG");
    using Kind = PictureBlock::Kind;
    const struct {
        Kind kind;
        QSizeF kept;
        double graphZoom, picZoom, width, height;
    } cases[] = {
        {Kind::Graph, {4000, 2000}, 1, 0.6, 4000, 2000},
        {Kind::Graph, {4000, 4000}, 1, 0.6, 4000, 2000},
        {Kind::Graph, {4000, 2000}, 0.5, 0.6, 2000, 1000},
        {Kind::Graph, {}, 1, 0.6, 6000, 3000},
        {Kind::ShowCard, {}, 1, 0.6, 3600, 1800},
        {Kind::ShowCard, {}, 1, 0, 3600, 1800},
        {Kind::Graph, {4000, 2000}, 0.0001, 0.6, 20 * twipsPerMillimetre, 10 * twipsPerMillimetre},
        {Kind::Graph, {4000, 2000}, 100'000, 0.6, 13000, 6500},
    };
    for (const auto& c : cases) {
        PageSetup setup = flowPage();
        setup.graphZoom = c.graphZoom;
        setup.picZoom = c.picZoom;
        const auto flow = pictureFlow({c.kind, {}, bytes, c.kept, {}, {}}, 13000, setup);
        const Laid page = laid(*flow);
        ASSERT_TRUE(page.image);
        EXPECT_NEAR(page.rect.width(), c.width, 1);
        EXPECT_NEAR(page.rect.height(), c.height, 1);
        EXPECT_EQ(flow->rows(), 1);
    }
    const auto high =
        pictureFlow({Kind::ShowCard, u"Karte"_s, encoded(half({100, 900}, 0, 0), "PNG"), {}, {}, {}}, 13000, [] {
            PageSetup setup = flowPage();
            setup.picZoom = 50;
            return setup;
        }());
    EXPECT_LT(high->height(0), 0.8 * flowPage().textArea().height());
}

TEST(PictureFlow, StandsOnWhiteAndNoFinerThanPaperShows) {
    const QByteArray clear = encoded(half({60, 40}, qRgba(0, 0, 0, 0), qRgba(255, 0, 0, 128)), "PNG");
    const Laid page = laid(*pictureFlow({PictureBlock::Kind::Graph, {}, clear, {}, {}, {}}, 13000, flowPage()));
    ASSERT_TRUE(page.image);
    EXPECT_FALSE(page.image->hasAlphaChannel());
    EXPECT_EQ(page.image->pixel(5, 5), qRgb(255, 255, 255));
    EXPECT_NEAR(qGreen(page.image->pixel(50, 5)), 127, 2);
    for (const char* format : {"PNG", "JPG"}) {
        const QByteArray large = encoded(
            half({3000, 1500}, qRgb(0, 0, 0), qRgb(255, 255, 255)).convertToFormat(QImage::Format_RGB32), format);
        const Laid inch =
            laid(*pictureFlow({PictureBlock::Kind::Graph, {}, large, QSizeF(1440, 720), {}, {}}, 13000, flowPage()));
        ASSERT_TRUE(inch.image);
        EXPECT_EQ(inch.image->size(), QSize(300, 150)) << format;
    }
}

TEST(PictureFlow, OneThatIsKeptWithManyVariablesIsHeldOnce) {
    const QByteArray bytes = encoded(half({60, 40}, qRgb(9, 9, 9), qRgb(99, 0, 0)), "PNG");
    const PictureBlock block{PictureBlock::Kind::ShowCard, {}, bytes, {}, {}, {}};
    EXPECT_EQ(laid(*pictureFlow(block, 13000, flowPage())).image, laid(*pictureFlow(block, 13000, flowPage())).image);
}

TEST(PictureFlow, SaysInItsPlaceWhyThereIsNone) {
    const QByteArray whole = encoded(half({300, 200}, qRgb(9, 9, 9), qRgb(99, 0, 0)), "PNG");
    const struct {
        QByteArray bytes;
        QString fault, said;
    } cases[] = {
        {{}, {}, u"Das Bild ist nicht da."_s},
        {{}, u"Verboten"_s, u"Verboten"_s},
        {"hello", {}, u"Das ist kein Bild in einem Format, das gelesen wird."_s},
        {whole.left(60), {}, u"Das Bild ist beschädigt."_s},
        {QByteArray("\xFF\xD8\xFF\xE0 no end", 11), {}, u"Das Bild ist beschädigt."_s},
        {QByteArray("BM") + QByteArray(24, '\x7f'), {}, {}},
    };
    for (const auto& c : cases) {
        const PictureBlock block{PictureBlock::Kind::Graph, u"Titel"_s, c.bytes, {}, u"1 eins\r\n2 zwei"_s, c.fault};
        const Laid page = laid(*pictureFlow(block, 13000, flowPage()));
        EXPECT_FALSE(page.image);
        ASSERT_EQ(page.texts.size(), 4);
        EXPECT_EQ(page.texts[0], u"Titel"_s);
        EXPECT_FALSE(page.texts[1].isEmpty());
        EXPECT_TRUE(c.said.isEmpty() || page.texts[1] == c.said) << qPrintable(page.texts[1]);
        EXPECT_EQ(page.texts[3], u"2 zwei"_s) << "the explanation stays";
    }
    // What only the pixels tell is said where they would be, in the same room.
    const PictureBlock sound{PictureBlock::Kind::Graph, {}, whole, {}, {}, {}};
    PictureBlock cut = sound;
    cut.bytes.chop(cut.bytes.size() / 2);
    EXPECT_EQ(laid(*pictureFlow(cut, 13000, flowPage())).texts, QStringList{u"Das Bild ist beschädigt."_s});
    for (qsizetype length = 0; length < whole.size(); length += 7) {
        cut.bytes = whole.left(length);
        const Laid page = laid(*pictureFlow(cut, 13000, flowPage()));
        EXPECT_TRUE(page.image || page.texts.size() == 1) << length;
    }
}

TEST(PictureFlow, AnExplanationOfManyLinesBreaksBehindThePictureOnly) {
    const QByteArray bytes = encoded(half({60, 40}, qRgb(9, 9, 9), qRgb(99, 0, 0)), "PNG");
    for (const int lines : {0, 8, 30}) {
        QStringList words;
        for (int i = 0; i < lines; ++i)
            words << u"%1 Wort"_s.arg(i);
        const auto flow =
            pictureFlow({PictureBlock::Kind::Graph, u"T"_s, bytes, {}, words.join(u"\r\n"_s), {}}, 13000, flowPage());
        ASSERT_EQ(flow->rows(), 1 + lines);
        for (int row = 0; row < lines; ++row)
            EXPECT_EQ(flow->mayEndAfter(row), lines > 8 && row > 1 && row < lines - 1) << lines << ": " << row;
    }
}
