#include "VdxRunner.h"

#include "support/Poppler.h"
#include "support/PrintQt.h"
#include "vdx/StopSignal.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace {

/// Reports on the standing example, written by the program itself: this process has no fonts. Nor has the program a
/// screen.
class Report : public VdxArchive {
protected:
    QString file_ = home_.path(u"report.pdf"_s);

    VdxResult run(const QStringList& arguments) const {
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
        environment.insert(u"LC_ALL"_s, u"de_DE.UTF-8"_s);
        environment.remove(u"DISPLAY"_s);
        program.setProcessEnvironment(environment);
        QStringList all{u"report"_s, catalogue_};
        all += arguments;
        if (!arguments.contains(u"--language"_s))
            all << u"--language"_s << u"de"_s;
        if (!arguments.contains(u"--out"_s))
            all << u"--out"_s << file_;
        program.start(QStringLiteral(VARIDEX_BINARIES "/vdx"), all);
        EXPECT_TRUE(program.waitForFinished(60'000));
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        return {program.exitCode(), QString::fromUtf8(program.readAllStandardOutput()),
                QString::fromUtf8(program.readAllStandardError())};
    }
    static QByteArray content(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// The words of the report that is made with these arguments.
    QString wordsOf(const QStringList& arguments) const {
        QFile::remove(file_);
        const VdxResult result = run(arguments);
        EXPECT_EQ(result.status, 0) << arguments.join(u' ').toStdString() << ": " << result.err.toStdString();
        EXPECT_EQ(result.err, QString());
        const QString pages = poppler::info(file_).value(u"Pages"_s);
        EXPECT_TRUE(result.out.contains(u'\n' + pages + u' ')) << result.out.toStdString();
        return poppler::text(file_).simplified();
    }
};

} // namespace

TEST_F(Report, EachSourceGivesWhatItNamesInTheLanguageThatIsAskedFor) {
    SKIP_WITHOUT_POPPLER();
    const QByteArray before = content(catalogue_);
    const QStringList english{u"--contents"_s, u"english"_s}, both{u"--contents"_s, u"both"_s};
    const struct {
        QStringList arguments, has, hasNot;
    } cases[] = {
        {{u"--variable"_s, u"QX1919/V5"_s},
         {u"V5"_s, u"Zufriedenheit"_s, u"Wie zufrieden sind Sie?"_s},
         {u"Satisfaction"_s, u"Geschlecht"_s}},
        {{u"--variable"_s, u"qx1919/v5"_s}, {u"V5"_s, u"Zufriedenheit"_s}, {}},
        {english + QStringList{u"--variable"_s, u"QX1919/V5"_s}, {u"Satisfaction"_s}, {u"Zufriedenheit"_s}},
        {both + QStringList{u"--variable"_s, u"QX1919/V5"_s}, {u"Satisfaction"_s, u"Zufriedenheit"_s}, {}},
        {{u"--study"_s, u"QX1919"_s}, {u"Erhebung 1919"_s, u"Gewicht"_s, u"Beruf"_s, u"Alter"_s}, {u"Erhebung 2020"_s}},
        {{u"--study"_s, u"AQX2020"_s}, {u"Erhebung 2020"_s}, {u"Beruf"_s}},
        {{u"--study"_s, u"G001"_s}, {u"Erhebung 1919"_s, u"Beruf"_s}, {u"Erhebung 2020"_s}},
        {{u"--category"_s, u"2/1"_s},
         {u"Einstellungen"_s, u"QX1919"_s, u"QX2020"_s, u"Zufriedenheit"_s},
         {u"Geschlecht"_s}},
        {{u"--category"_s, u"category/2"_s}, {u"Demographie"_s, u"Geschlecht"_s}, {u"Zufriedenheit"_s}},
        {{u"--names"_s, u"1"_s}, {u"Gruppe"_s, u"Erhebung 1919"_s, u"Erhebung 2020"_s}, {u"Zufriedenheit"_s}},
        {{u"--names"_s, u"2"_s}, {u"Demographie"_s, u"Einstellungen"_s, u"Vertrauen"_s}, {u"Erhebung 1919"_s}},
        {{u"--names"_s, u"2/B1"_s}, {u"Einstellungen"_s, u"Vertrauen"_s}, {u"Demographie"_s}},
        {english + QStringList{u"--names"_s, u"Category"_s}, {u"Demography"_s, u"Trust"_s}, {u"Demographie"_s}},
        {{u"--description"_s, u"1/QX1919"_s}, {u"Erhebung 1919"_s, u"Beschreibung"_s}, {u"Zufriedenheit"_s}},
        {{u"--description"_s, u"2/2"_s}, {u"Person und Haushalt"_s}, {}},
    };
    for (const auto& c : cases) {
        const QString words = wordsOf(c.arguments);
        for (const QString& word : c.has)
            EXPECT_TRUE(words.contains(word))
                << word.toStdString() << " of " << c.arguments.join(u' ').toStdString() << ": " << words.toStdString();
        for (const QString& word : c.hasNot)
            EXPECT_FALSE(words.contains(word)) << word.toStdString() << " of " << c.arguments.join(u' ').toStdString();
    }
    EXPECT_TRUE(content(catalogue_) == before) << "a report writes nothing to the catalogue";
    EXPECT_EQ(QDir(QFileInfo(catalogue_).path()).entryList({u"*-journal"_s, u"*-wal"_s}), QStringList());
}

TEST_F(Report, PaperOptionsAndLanguageAreThoseThatAreTyped) {
    SKIP_WITHOUT_POPPLER();
    const QStringList one{u"--variable"_s, u"QX1919/V5"_s};
    EXPECT_TRUE(wordsOf(one + QStringList{u"--paper"_s, u"a4"_s}).contains(u"Seite 1"_s));
    EXPECT_TRUE(poppler::info(file_).value(u"Page size"_s).startsWith(u"841.89 x 595"_s)) << "landscape by default";
    const QString english =
        wordsOf(one + QStringList{u"--paper"_s, u"Letter"_s, u"--set"_s, u"Landscape=0"_s, u"--language"_s, u"en"_s,
                                  u"--set"_s, u"PrintDatePosition=none"_s});
    EXPECT_TRUE(poppler::info(file_).value(u"Page size"_s).startsWith(u"612 x 792"_s));
    EXPECT_TRUE(english.contains(u"Page 1"_s)) << "our words";
    EXPECT_TRUE(english.contains(u"Zufriedenheit"_s)) << "the contents";
    EXPECT_FALSE(wordsOf(one + QStringList{u"--set"_s, u"ReportIncludeQuestionText=0"_s}).contains(u"Wie zufrieden"_s));
}

TEST_F(Report, WhatIsNoReportLeavesNoFile) {
    const QString kept = home_.path(u"kept.pdf"_s), none = home_.path(u"none.pdf"_s);
    QFile old(kept);
    ASSERT_TRUE(old.open(QIODevice::WriteOnly) && old.write("kept") == 4);
    old.close();
    const QStringList v5{u"--variable"_s, u"QX1919/V5"_s};
    const struct {
        QStringList arguments;
        int status;
        QString words;
    } cases[] = {
        {{}, 2, u"gebraucht wird eines davon"_s},
        {v5 + QStringList{u"--study"_s, u"QX1919"_s}, 2, u"gebraucht wird eines davon"_s},
        {{u"--variable"_s, u"QX1919"_s}, 2, u"STUDIE/NAME"_s},
        {{u"--category"_s, u"2"_s}, 2, u"ANSICHT/NUMMER"_s},
        {{u"--description"_s, u"2"_s}, 2, u"ANSICHT/SCHLÜSSEL"_s},
        {v5 + QStringList{u"--paper"_s, u"B99"_s}, 2, u"--paper B99"_s},
        {v5 + QStringList{u"--contents"_s, u"all"_s}, 2, u"--contents"_s},
        {v5 + QStringList{u"--set"_s, u"FontSize=abc"_s}, 2, u"--set FontSize=abc"_s},
        {{u"--variable"_s, u"QX1919/V77"_s}, 1, u"Variable nicht gefunden: QX1919/V77"_s},
        {{u"--study"_s, u"QX18"_s}, 1, u"keine Studie oder Gruppe QX18"_s},
        {{u"--category"_s, u"4/1"_s}, 1, u"keine Ansicht 4"_s},
        {{u"--category"_s, u"2/99"_s}, 1, u"Ansicht 2 hat keinen Eintrag 99"_s},
        {{u"--category"_s, u"2/0"_s}, 1, u"die Ansicht selbst"_s},
        {{u"--names"_s, u"Sorts"_s}, 1, u"keine Ansicht Sorts"_s},
        {{u"--description"_s, u"1/X"_s}, 1, u"Ansicht 1 hat keinen Eintrag X"_s},
    };
    for (const auto& c : cases)
        for (const QString& out : {none, kept}) {
            const VdxResult result = run(c.arguments + QStringList{u"--out"_s, out});
            EXPECT_EQ(result.status, c.status) << c.words.toStdString() << result.err.toStdString();
            EXPECT_TRUE(result.err.contains(c.words)) << result.err.toStdString();
            EXPECT_EQ(result.out, QString());
        }
    EXPECT_FALSE(QFile::exists(none));
    EXPECT_EQ(content(kept), QByteArray("kept"));
}

TEST_F(Report, AFileIsReplacedWholeAndNothingElseIs) {
    const QStringList v5{u"--variable"_s, u"QX1919/V5"_s};
    const QString folder = home_.path(u"folder.pdf"_s), device = home_.path(u"device.pdf"_s);
    ASSERT_TRUE(QDir().mkdir(folder) && QFile::link(u"/dev/null"_s, device));
    const QByteArray before = content(catalogue_);
    const QString disguised = home_.path(u"catalogue.pdf"_s);
    ASSERT_TRUE(QFile::link(catalogue_, disguised));
    for (const QString& out : {folder, device, disguised, home_.path(u"nowhere/report.pdf"_s)}) {
        const VdxResult result = run(v5 + QStringList{u"--out"_s, out});
        EXPECT_EQ(result.status, 1) << out.toStdString();
        EXPECT_TRUE(result.err.startsWith(out + u": "_s)) << result.err.toStdString();
        EXPECT_EQ(result.out, QString());
    }
    const VdxResult ending = run(v5 + QStringList{u"--out"_s, home_.path(u"report.txt"_s)});
    EXPECT_EQ(ending.status, 2);
    EXPECT_TRUE(QFileInfo(folder).isDir() && QFileInfo(device).symLinkTarget() == u"/dev/null");
    EXPECT_TRUE(content(catalogue_) == before);

    QFile old(file_);
    ASSERT_TRUE(old.open(QIODevice::WriteOnly) && old.write("old") == 3);
    old.close();
    EXPECT_EQ(run(v5).status, 0);
    EXPECT_TRUE(content(file_).startsWith("%PDF"));
    EXPECT_EQ(QDir(QFileInfo(file_).path()).entryList({u"report*"_s}, QDir::Files | QDir::Hidden),
              QStringList{u"report.pdf"_s});
}

TEST(StopSignal, AsksForAnEndAndLeavesTheSignalAsItWas) {
    static int heard = 0;
    const auto before = std::signal(SIGTERM, [](int) { ++heard; });
    {
        const StopSignal stop;
        EXPECT_FALSE(stop.wanted());
        std::raise(SIGTERM);
        EXPECT_TRUE(stop.wanted());
    }
    EXPECT_EQ(heard, 0);
    EXPECT_FALSE(StopSignal().wanted());
    std::raise(SIGTERM);
    EXPECT_EQ(heard, 1);
    std::signal(SIGTERM, before);
}
