#include "VdxRunner.h"

#include "support/PrintQt.h"
#include "support/TestCatalogue.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class Compare : public VdxArchive {
protected:
    VdxResult run(const QStringList& arguments) const {
        const QStringList plain{u"--set"_s, u"HeaderValAddVar=0"_s, u"--set"_s, u"HeaderGroup=0"_s};
        const QStringList common{u"--language"_s, u"de"_s,  u"--decimal"_s, u"comma"_s,
                                 u"--format"_s,   u"csv"_s, u"--plain"_s};
        QStringList all = QStringList{arguments[0], catalogue_} + arguments.mid(1) + common;
        if (arguments[0] == u"compare")
            all += plain + QStringList{u"--data"_s, data_};
        return runVdx(all);
    }

    QByteArray bytes() const {
        QFile file(catalogue_);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
};

// V5 of QX1919: 1 1 2 2 9 and one system-missing, of QX2020: 1 2 2; V7 is 1 in its first and third case.
const QString twoColumns = u"Wert;Ausprägung;Missing;QX1919, V5, 1919;QX2020, V5, 2020 (F. V7=1)\r\n"
                           u";SYSMIS;X;1;\r\n"
                           u"1;zufrieden;;2;1\r\n"
                           u"2;unzufrieden;;2;1\r\n"
                           u"9;keine Angabe;X;1;\r\n"
                           u";Summe;;6;2\r\n"
                           u";Gültige Fälle;;4;2\r\n"
                           u";;;;\r\n"_s;

} // namespace

TEST_F(Compare, StudiesSideBySideAreKeptLoadedAndDeletedByName) {
    const QStringList entries{u"compare"_s, u"--entry"_s, u"QX1919 V5"_s, u"--entry"_s,
                              u"QX2020 V5 weight=none filter=V7=1 "_s};
    const QByteArray before = bytes();
    EXPECT_EQ(run(entries).out, twoColumns);
    EXPECT_TRUE(bytes() == before) << "an analysis writes nothing";
    const QString quoted = u"V8 = 'x part=1' OR [V7] IN (1)"_s;
    EXPECT_TRUE(run({u"compare"_s, u"--entry"_s, u"QX1919 V5 filter=\""_s + quoted + u'"'}).out.contains(quoted))
        << "a text in quotes is none of the entry's keys";
    EXPECT_EQ(run(entries + QStringList{u"--show"_s, u"column"_s}).out.split(u"\r\n"_s)[2],
              u"1;zufrieden;;50,0;50,0"_s);

    EXPECT_EQ(run(entries + QStringList{u"--title"_s, u"Wie zufrieden"_s, u"--save"_s, u"Vergleich 1"_s}).status, 0);
    const VdxResult twice = run(entries + QStringList{u"--save"_s, u"vergleich 1"_s});
    EXPECT_EQ(twice.status, 1);
    EXPECT_TRUE(twice.err.contains(u"Name bereits vorhanden."_s)) << twice.err.toStdString();
    EXPECT_EQ(run({u"comparisons"_s}).out, u"name;title;entries\r\nVergleich 1;Wie zufrieden;QX1919, V5: "
                                           u"Zufriedenheit / QX2020, V5: Zufriedenheit "
                                           u"(ausgewählte Fälle: V7=1)\r\n"_s);
    EXPECT_EQ(run({u"compare"_s, u"--load"_s, u"Vergleich 1"_s}).out, twoColumns);
    EXPECT_EQ(run({u"compare"_s, u"--delete"_s, u"Vergleich 1"_s}).status, 0);
    const VdxResult gone = run({u"compare"_s, u"--load"_s, u"Vergleich 1"_s});
    EXPECT_EQ(gone.status, 1);
    EXPECT_TRUE(gone.err.contains(u"Vergleich nicht gefunden"_s));
    EXPECT_EQ(run({u"comparisons"_s}).out, u"name;title;entries\r\n"_s);
}

TEST_F(Compare, SaysWhatIsWrongWithAnEntry) {
    struct Case {
        QStringList arguments;
        int status;
        QString words;
    };
    for (const Case& c : {Case{{u"--entry"_s, u"QX1919"_s}, 2, u"STUDIE VARIABLE"_s},
                          Case{{u"--entry"_s, u"QX1919 V5 V7"_s}, 2, u"STUDIE VARIABLE"_s},
                          Case{{u"--entry"_s, u"QX1919 V5 filter=V7=1 part=1"_s}, 2, u"schließen einander aus"_s},
                          Case{{}, 2, u"--entry oder --load"_s},
                          Case{{u"--entry"_s, u"QX1919 V5"_s, u"--delete"_s, u"A"_s}, 2, u"--delete steht allein"_s},
                          Case{{u"--entry"_s, u"QX9 V5"_s}, 1, u"Studie QX9 nicht gefunden."_s},
                          Case{{u"--entry"_s, u"QX1919 V99"_s}, 1, u"Variable V99 nicht gefunden in Studie QX1919."_s},
                          Case{{u"--entry"_s, u"QX2020 V5 weight=re"_s}, 1, u"hat kein Repräsentativgewicht"_s},
                          Case{{u"--entry"_s, u"QX1919 V5 filter=V7&1"_s}, 1, u"Unerlaubtes Zeichen: &"_s}}) {
        const VdxResult result = run(QStringList{u"compare"_s} + c.arguments);
        EXPECT_EQ(result.status, c.status) << c.words.toStdString();
        EXPECT_TRUE(result.err.contains(c.words)) << result.err.toStdString();
        EXPECT_EQ(result.out, QString());
    }
}
