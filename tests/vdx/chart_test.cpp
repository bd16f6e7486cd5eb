#include "VdxRunner.h"

#include "support/PrintQt.h"
#include "support/TestCatalogue.h"

#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QProcess>
#include <QRegularExpression>
#include <cmath>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// Charts of the standing example, drawn by the program itself: this process has no fonts. Nor has the program a
/// screen.
class Chart : public VdxArchive {
protected:
    /// @param platform of Qt that the surroundings ask for
    VdxResult run(const QStringList& arguments, const QString& platform = u"xcb"_s) const {
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"QT_QPA_PLATFORM"_s, platform);
        environment.remove(u"DISPLAY"_s);
        program.setProcessEnvironment(environment);
        QStringList all{arguments[0], catalogue_};
        all += arguments.mid(1) + QStringList{u"--language"_s, u"de"_s, u"--decimal"_s, u"comma"_s, u"--data"_s, data_};
        program.start(QStringLiteral(VARIDEX_BINARIES "/vdx"), all);
        EXPECT_TRUE(program.waitForFinished(60'000));
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        return {program.exitCode(), QString::fromUtf8(program.readAllStandardOutput()),
                QString::fromUtf8(program.readAllStandardError())};
    }

    static QByteArray bytes(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// The texts of a chart that is drawn with these arguments.
    QStringList textsOf(const QStringList& arguments) const {
        const QString file = home_.path(u"chart.svg"_s);
        QFile::remove(file);
        const VdxResult result = run(QStringList{u"chart"_s} + arguments + QStringList{u"--out"_s, file});
        EXPECT_EQ(result.status, 0) << result.err.toStdString();
        EXPECT_EQ(result.err, QString());
        static const QRegularExpression form(u"<text[^>]*>\\s*([^<]*?)\\s*</text>"_s);
        QStringList texts;
        for (const QRegularExpressionMatch& match : form.globalMatch(QString::fromUtf8(bytes(file))))
            texts << match.captured(1);
        return texts;
    }

    /// True if all of them are among the texts, each as often.
    static testing::AssertionResult hasAll(QStringList texts, const QStringList& wanted) {
        for (const QString& text : wanted)
            if (!texts.removeOne(text))
                return testing::AssertionFailure()
                       << text.toStdString() << " is not in " << texts.join(u" | "_s).toStdString();
        return testing::AssertionSuccess();
    }
};

} // namespace

// V5 of QX1919: 1 1 2 2 9 and one system-missing, V7: 1 2 1 2 1 1 by the same cases; V5 of QX2020: 1 2 2.
TEST_F(Chart, EveryKindOfTableIsDrawnWithItsValues) {
    const QByteArray before = bytes(catalogue_);
    const QStringList v5{u"QX1919"_s, u"V5"_s};
    EXPECT_TRUE(hasAll(textsOf(v5), {u"zufrieden"_s, u"unzufrieden"_s, u"2"_s, u"2"_s, u"Anzahl"_s}));
    EXPECT_TRUE(hasAll(textsOf(v5 + QStringList{u"--show"_s, u"percent"_s}), {u"50,0"_s, u"50,0"_s, u"Prozent"_s}));
    EXPECT_TRUE(hasAll(textsOf(v5 + QStringList{u"--set"_s, u"IncludeMissing=1"_s, u"--title"_s, u"Wie zufrieden?"_s}),
                       {u"keine Angabe"_s, u"SYSMIS"_s, u"1"_s, u"1"_s, u"Wie zufrieden?"_s}));
    const QStringList both{u"QX1919"_s, u"V5"_s, u"V7"_s};
    const QStringList table = run(QStringList{u"crosstab"_s} + both +
                                  QStringList{u"--show"_s, u"row"_s, u"--format"_s, u"csv"_s, u"--plain"_s})
                                  .out.split(u"\r\n"_s);
    QStringList values;
    for (const QString& row : table.mid(3))
        if (const QStringList cells = row.split(u';'); cells.size() > 4 && cells[0].size() == 1)
            values << cells[3].chopped(1) << cells[4].chopped(1);
    ASSERT_EQ(values.size(), 4) << "two valid values by two";
    EXPECT_TRUE(
        hasAll(textsOf(both + QStringList{u"--show"_s, u"row"_s}), values + QStringList{u"männlich"_s, u"weiblich"_s}));
    EXPECT_TRUE(hasAll(textsOf({u"--entry"_s, u"QX1919 V5"_s, u"--entry"_s, u"QX2020 V5"_s, u"--show"_s, u"column"_s}),
                       {u"50,0"_s, u"50,0"_s, u"33,3"_s, u"66,7"_s}));
    EXPECT_TRUE(bytes(catalogue_) == before) << "a chart writes nothing to the catalogue";
}

TEST_F(Chart, FilesHaveTheSizeThatIsAskedFor) {
    const auto file = [this](const QString& ending) { return home_.path(u"chart."_s + ending); };
    const auto draw = [&](const QString& ending, const QStringList& more) {
        return run(QStringList{u"chart"_s, u"QX1919"_s, u"V5"_s, u"--out"_s, file(ending)} + more);
    };
    EXPECT_EQ(draw(u"png"_s, {u"--size"_s, u"100x50"_s, u"--dpi"_s, u"254"_s}).status, 0);
    EXPECT_EQ(QImageReader(file(u"png"_s)).size(), QSize(1000, 500));
    EXPECT_EQ(draw(u"jpg"_s, {u"--bw"_s}).status, 0);
    const QImage grey(file(u"jpg"_s));
    EXPECT_NEAR(grey.width(), 180 / 25.4 * 300, 1);
    EXPECT_NEAR(grey.height(), 110 / 25.4 * 300, 1);
    EXPECT_NEAR(grey.dotsPerMeterX(), 300 / 0.0254, 60);
    for (int x = 0; x < grey.width(); x += 7)
        for (int y = 0; y < grey.height(); y += 7)
            ASSERT_LT(QColor(grey.pixel(x, y)).hslSaturation() * std::abs(128 - qGray(grey.pixel(x, y))), 128 * 26)
                << "black and white has no colour";
    EXPECT_EQ(draw(u"pdf"_s, {u"--size"_s, u"120,5X80"_s}).status, 0);
    EXPECT_TRUE(bytes(file(u"pdf"_s)).startsWith("%PDF"));
    EXPECT_EQ(draw(u"png"_s, {u"--size"_s, u"2000x2000"_s}).status, 2) << "too many pixels";
    EXPECT_EQ(draw(u"svg"_s, {u"--size"_s, u"2000x2000"_s, u"--dpi"_s, u"9999"_s}).status, 0) << "lines have none";
    EXPECT_EQ(draw(u"svg"_s, {u"--size"_s, u"90x60"_s}).status, 0);
    EXPECT_TRUE(bytes(file(u"svg"_s)).contains("width=\"90mm\"")) << bytes(file(u"svg"_s)).left(400).constData();
}

TEST_F(Chart, WhatIsNoChartLeavesNoFile) {
    const QString file = home_.path(u"chart.svg"_s), there = home_.path(u"there.png"_s);
    QFile kept(there);
    ASSERT_TRUE(kept.open(QIODevice::WriteOnly) && kept.write("kept") == 4);
    kept.close();
    const QStringList v5{u"QX1919"_s, u"V5"_s};
    struct Case {
        QStringList arguments;
        int status;
        QString words;
    };
    const QStringList entry{u"--entry"_s, u"QX1919 V5"_s};
    for (const Case& c : {Case{{u"QX1919"_s}, 2, u"STUDY und VARIABLE"_s}, Case{{}, 2, u"STUDY und VARIABLE"_s},
                          Case{v5 + entry, 2, u"STUDY und VARIABLE"_s},
                          Case{entry + QStringList{u"--load"_s, u"A"_s}, 2, u"eines davon"_s},
                          Case{entry + QStringList{u"--weight"_s, u"re"_s}, 2, u"--weight"_s},
                          Case{entry + QStringList{u"--flip"_s}, 2, u"--flip"_s},
                          Case{v5 + QStringList{u"--mark2"_s, u"1"_s}, 2, u"--mark2 braucht eine zweite Variable"_s},
                          Case{v5 + QStringList{u"V7"_s, u"--cumulated"_s, u"1=2"_s}, 2, u"--cumulated"_s},
                          Case{v5 + QStringList{u"--show"_s, u"row"_s}, 2, u"--show row"_s},
                          Case{v5 + QStringList{u"V7"_s, u"--show"_s, u"percent"_s}, 2, u"--show percent"_s},
                          Case{entry + QStringList{u"--show"_s, u"total"_s}, 2, u"--show total"_s},
                          Case{v5 + QStringList{u"--size"_s, u"180"_s}, 2, u"BREITExHÖHE"_s},
                          Case{v5 + QStringList{u"--size"_s, u"1x1"_s}, 2, u"vdx:"_s},
                          Case{v5 + QStringList{u"--size"_s, u"99999999999999999999x80"_s}, 2, u"vdx:"_s},
                          Case{{u"QX1919"_s, u"V77"_s}, 1, u"Variable V77 nicht gefunden"_s},
                          Case{v5 + QStringList{u"--filter"_s, u"V7=99"_s}, 1, u"keinen Wert"_s}}) {
        for (const QString& out : {file, there}) {
            const VdxResult result = run(QStringList{u"chart"_s} + c.arguments + QStringList{u"--out"_s, out});
            EXPECT_EQ(result.status, c.status) << c.words.toStdString() << result.err.toStdString();
            EXPECT_TRUE(result.err.contains(c.words)) << result.err.toStdString();
            EXPECT_EQ(result.out, QString());
        }
    }
    EXPECT_FALSE(QFileInfo::exists(file));
    EXPECT_EQ(bytes(there), "kept") << "what stood there stays";
    EXPECT_EQ(run({u"chart"_s, u"QX1919"_s, u"V5"_s, u"--out"_s, home_.path(u"a.docx"_s)}).status, 2);
    const VdxResult nowhere = run({u"chart"_s, u"QX1919"_s, u"V5"_s, u"--out"_s, home_.path(u"no/folder/a.png"_s)});
    EXPECT_EQ(nowhere.status, 1);
    EXPECT_TRUE(nowhere.err.contains(u"a.png"_s)) << nowhere.err.toStdString();
}

TEST_F(Chart, OtherCommandsStartWithoutWhatDrawingNeeds) {
    // A platform that there is not ends a program that loads it.
    EXPECT_EQ(run({u"frequency"_s, u"QX1919"_s, u"V5"_s}, u"none-such"_s).status, 0);
    EXPECT_EQ(run({u"chart"_s, u"QX1919"_s, u"V5"_s, u"--out"_s, home_.path(u"a.png"_s)}, u"none-such"_s).status, 0);
}
