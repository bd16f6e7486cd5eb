#include "widgets/ProgramStyle.h"

#include "widgets/contrast.h"

#include <QImage>
#include <QPainter>
#include <QStyleOption>
#include <gtest/gtest.h>
#include <utility>

namespace {

/// A title bar of the window in use, `paper` being the colour of windows and `ink` that of their texts.
QImage titleBar(const QString& title, Qt::GlobalColor paper, Qt::GlobalColor ink) {
    QStyleOptionTitleBar bar;
    bar.rect = QRect(0, 0, 300, 24);
    bar.text = title;
    bar.titleBarState = static_cast<int>(Qt::WindowActive) | QStyle::State_Active;
    bar.titleBarFlags = Qt::WindowTitleHint;
    bar.palette = QPalette(ink, paper, Qt::white, Qt::black, Qt::gray, ink, Qt::white, paper, paper);
    bar.palette.setColor(QPalette::Highlight, QColor(60, 120, 190));
    QImage image(bar.rect.size(), QImage::Format_RGB32);
    QPainter painter(&image);
    ProgramStyle(QStringLiteral("Fusion")).drawComplexControl(QStyle::CC_TitleBar, &bar, &painter, nullptr);
    return image;
}

} // namespace

TEST(ProgramStyle, setsATitleOffFromItsBarByAShadowOnLightAndDark) {
    for (const auto& [paper, ink] : {std::pair{Qt::white, Qt::black}, std::pair{Qt::black, Qt::white}}) {
        const QImage with = titleBar(QStringLiteral("HHHH"), paper, ink);
        const QImage without = titleBar(QString(), paper, ink);
        int lighter = 0;
        int darker = 0;
        for (int y = 0; y < with.height(); ++y)
            for (int x = 0; x < with.width(); ++x) {
                const int step = qGray(with.pixel(x, y)) - qGray(without.pixel(x, y));
                lighter += step > 20 ? 1 : 0;
                darker += step < -20 ? 1 : 0;
            }
        EXPECT_GT(lighter, 0) << "paper " << paper;
        EXPECT_GT(darker, 0) << "paper " << paper;
    }
}

TEST(ProgramStyle, leavesWhatIsOutOfUseReadableAndPalerThanTheRest) {
    for (const auto& [paper, ink] : {std::pair{Qt::white, Qt::black}, std::pair{Qt::black, Qt::white}})
        for (const QColor& given : {QColor(paper), QColor(Qt::gray)}) {
            QPalette palette(ink, paper, paper, paper, paper, ink, ink, paper, paper);
            palette.setColor(QPalette::Disabled, QPalette::ButtonText, given);
            ProgramStyle(QStringLiteral("Fusion")).polish(palette);
            const double seen = contrast(palette.color(QPalette::Disabled, QPalette::ButtonText), paper);
            EXPECT_GE(seen, 3) << "paper " << paper;
            EXPECT_LT(seen, 10) << "paper " << paper;
        }
}
