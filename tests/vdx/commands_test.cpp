#include "VdxRunner.h"

#include "support/PrintQt.h"
#include "support/TestCatalogue.h"
#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class Commands : public VdxArchive {
protected:
    VdxResult run(QStringList arguments) const {
        arguments.replaceInStrings(u"@"_s, catalogue_);
        arguments << u"--language"_s << u"de"_s << u"--decimal"_s << u"comma"_s;
        if (arguments[0] == u"frequency" || arguments[0] == u"crosstab")
            arguments << u"--data"_s << data_ << u"--plain"_s;
        return runVdx(arguments);
    }
};

} // namespace

TEST_F(Commands, aFrequencyTableIsTheOneWorkedByHand) {
    // V5: 1 1 2 2 9 and one system-missing; 9 is missing by definition. The weights of V3 add up to the same counts.
    const QString table = u"Wert;Ausprägung;Missing;Anzahl;Prozent;Gült.Prozent;Kumul.Prozent\r\n"
                          u";SYSMIS;X;1;16,7; ;\r\n"
                          u"1;zufrieden;;2;33,3;50,0;50,0\r\n"
                          u"2;unzufrieden;;2;33,3;50,0;100,0\r\n"
                          u"9;keine Angabe;X;1;16,7; ;\r\n"
                          u";Summe;;6;100,0;100,0;\r\n"
                          u";;;;;;\r\n"
                          u";Gültige Fälle;;4;;;\r\n"_s;
    const QStringList request{u"frequency"_s, u"@"_s, u"QX1919"_s, u"V5"_s, u"--format"_s, u"csv"_s};
    EXPECT_EQ(run(request).out, table);
    EXPECT_EQ(run(request + QStringList{u"--weight"_s, u"re"_s}).out, table);
    EXPECT_EQ(run(request + QStringList{u"--weight"_s, u"V3"_s}).out, table);

    const VdxResult filtered = run({u"frequency"_s, u"@"_s, u"QX1919"_s, u"V5"_s, u"V7"_s, u"--filter"_s, u"V9<60"_s,
                                    u"--missing"_s, u"none"_s, u"--format"_s, u"json"_s, u"--sql"_s});
    EXPECT_EQ(filtered.status, 0);
    EXPECT_EQ(filtered.out.count(u'\n'), 2);
    EXPECT_TRUE(filtered.out.contains(u"QX1919, V5: Zufriedenheit (N=3) (ausgewählte Fälle: V9<60)"_s))
        << filtered.out.toStdString();
    EXPECT_TRUE(filtered.err.contains(u"q: SELECT QX1919_1.dt_CaseID AS ID FROM QX1919_1;"_s));
    EXPECT_TRUE(filtered.err.contains(
        u"counts: SELECT QX1919_1.V5 AS [Value], Count(q.ID) AS Count FROM ((q INNER JOIN QX1919_1 "
        u"ON q.ID = QX1919_1.dt_CaseID) INNER JOIN QX1919_2 ON q.ID = QX1919_2.dt_CaseID)  WHERE "
        u"QX1919_2.V9<60 GROUP BY QX1919_1.V5 ORDER BY QX1919_1.V5;"_s));
}

TEST_F(Commands, listsShowWhatTheWindowsWillShow) {
    EXPECT_TRUE(run({u"studies"_s, u"@"_s, u"--format"_s, u"csv"_s})
                    .out.startsWith(u"study;title;title_en;year;group;weight_re;"_s));
    const QString variables = run({u"variables"_s, u"@"_s, u"QX1919"_s, u"--format"_s, u"csv"_s}).out;
    EXPECT_TRUE(variables.startsWith(u"position;name;label;label_en;table;field;missing;group\r\n"_s));
    EXPECT_TRUE(variables.contains(u"V5;Zufriedenheit;Satisfaction;QX1919_1;V5;9;Welle 1\r\n"_s))
        << variables.toStdString();
    EXPECT_EQ(run({u"tree"_s, u"@"_s, u"--view"_s, u"2"_s, u"--format"_s, u"csv"_s}).out,
              u"key;parent;level;text\r\nB0;;0;Kategorien\r\nB2;B0;1;Demographie\r\nB1;B0;1;Einstellungen\r\n"
              u"B3;B1;2;Vertrauen\r\n"_s);
    const QString list =
        run({u"list"_s, u"@"_s, u"--view"_s, u"2"_s, u"--node"_s, u"B1"_s, u"--format"_s, u"csv"_s}).out;
    EXPECT_EQ(list, u"VN;SN;WE;SY;VL;EL\r\nV5;QX1919;Welle 1;1919;Zufriedenheit;Satisfaction\r\n"
                    u"V5;QX2020;;2020;Zufriedenheit;Satisfaction\r\n"_s);
}

TEST_F(Commands, searchFindsATermWhereItIsTold) {
    const QString head = u"key;view;study;variable;text\r\n"_s;
    const auto found = [&](const QStringList& more) {
        const VdxResult result = run(QStringList{u"search"_s, u"@"_s} + more + QStringList{u"--format"_s, u"csv"_s});
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.err, QString());
        return result.out;
    };
    EXPECT_EQ(found({u"v7"_s, u"--in"_s, u"variables"_s}), head + u"VAV7@@QX1919;1;QX1919;V7;QX1919, V7, V7\r\n"
                                                                  "VAV7@@QX2020;1;QX2020;V7;QX2020, V7, V7\r\n"_s);
    EXPECT_EQ(found({u"v*"_s, u"--and"_s, u"?6"_s, u"--in"_s, u"variables"_s}),
              head + u"VAV6@@QX1919;1;QX1919;V6;QX1919, V6, V6\r\n"_s);
    EXPECT_EQ(found({u"v8"_s, u"--or"_s, u"v9"_s, u"--in"_s, u"names,variables"_s}).count(u"\r\n"_s), 3);
    EXPECT_EQ(found({u"v7"_s, u"--in"_s, u"names,descriptions"_s}), head);

    const VdxResult refused = run({u"search"_s, u"@"_s, u"O'Neill"_s});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.out, QString());
    EXPECT_TRUE(refused.err.contains(u"Anführungszeichen (')"_s)) << refused.err.toStdString();
    EXPECT_EQ(run({u"search"_s, u"@"_s, u""_s}).status, 2);
    EXPECT_EQ(run({u"search"_s, u"@"_s, u"a"_s, u"--and"_s, u"b"_s, u"--or"_s, u"c"_s}).status, 2);
    EXPECT_EQ(run({u"search"_s, u"@"_s, u"a"_s, u"--in"_s, u"titles"_s}).status, 2);
}

TEST_F(Commands, badInputIsRefusedInTheSystemsWords) {
    QFile noDatabase(home_.path(u"text.mdb"_s));
    ASSERT_TRUE(noDatabase.open(QIODevice::WriteOnly));
    noDatabase.write(QByteArray(4096, 'x'));
    noDatabase.close();
    struct Case {
        QStringList arguments;
        int status;
        QString words;
    };
    const QStringList v5{u"frequency"_s, u"@"_s, u"QX1919"_s, u"V5"_s};
    const Case cases[] = {
        {{u"studies"_s, home_.path(u"none.mdb"_s)}, 1, u"kann nicht gefunden werden."_s},
        {{u"studies"_s, noDatabase.fileName()}, 1, u"text.mdb"_s},
        {{u"variables"_s, u"@"_s, u"QX1"_s}, 1, u"Studie QX1 nicht gefunden."_s},
        {{u"tree"_s, u"@"_s, u"--view"_s, u"7"_s}, 1, u"Der Katalog hat keine Ansicht 7."_s},
        {{u"list"_s, u"@"_s, u"--view"_s, u"2"_s, u"--node"_s, u"B77"_s}, 1, u"Ansicht 2 hat keinen Eintrag B77."_s},
        {{u"frequency"_s, u"@"_s, u"QX1919"_s, u"V55"_s}, 1, u"Variable V55 nicht gefunden in Studie QX1919."_s},
        {{u"frequency"_s, u"@"_s, u"QX2020"_s, u"V5"_s, u"--weight"_s, u"re"_s},
         1,
         u"Studie QX2020 hat kein Repräsentativgewicht."_s},
        {v5 + QStringList{u"--filter"_s, u"V99=1"_s}, 1, u"V99 nicht gefunden"_s},
        {v5 + QStringList{u"--filter"_s, u"V7 = 1;"_s}, 1, u"Unerlaubtes Zeichen: ;"_s},
        {v5 + QStringList{u"--filter"_s, u"(V7=1"_s}, 1, u"Eine Klammer ist nicht geschlossen."_s},
        // The title would repeat the whole text.
        {v5 + QStringList{u"--filter"_s, u"V7=1 garbage"_s}, 1, u"Das Ende des Filters zählt nicht: garbage"_s},
        {v5 + QStringList{u"--filter"_s, u"V5>=1e2"_s}, 1, u"Das Ende des Filters zählt nicht: e2"_s},
        {v5 + QStringList{u"--filter"_s, u"V5>=18-90"_s}, 1, u"Das Ende des Filters zählt nicht: -90"_s},
        {{u"compare"_s, u"@"_s, u"--entry"_s, u"QX1919 V5 filter=V7=1 x"_s, u"--data"_s, data_},
         1,
         u"Das Ende des Filters zählt nicht: x"_s},
        {v5 + QStringList{u"--minutes"_s, u"0"_s}, 1, u"länger als 0 Minuten"_s},
        {v5 + QStringList{u"--missing"_s, u"neun"_s}, 1, u"13"_s},
        {v5 + QStringList{u"--weight"_s, u"V8"_s}, 1, u"Data type mismatch in criteria expression: W2"_s}, // a text
        {v5 + QStringList{u"--set"_s, u"NoSuchKey=1"_s}, 2, u"NoSuchKey"_s},
        {v5 + QStringList{u"--format"_s, u"xml"_s}, 2, u"xml"_s},
        // What stands for a choice from a list is a name, whatever signs it has.
        {{u"frequency"_s, u"@"_s, u"x' OR '1'='1"_s, u"V5"_s}, 1, u"Studie x' OR '1'='1 nicht gefunden."_s},
        {{u"frequency"_s, u"@"_s, u"QX1919"_s, u"x' OR '1'='1"_s},
         1,
         u"Variable x' OR '1'='1 nicht gefunden in Studie QX1919."_s},
        {v5 + QStringList{u"--weight"_s, u"x' OR 'a'='a"_s}, 1, u"Gewichtungsvariable x' OR 'a'='a nicht gefunden"_s},
        {v5 + QStringList{u"--part"_s, u"9"_s}, 1, u"keinen Datensatz-Teil 9.\nTeil 1: Teil A\n"_s},
        {{u"bogus"_s}, 2, u"There is no command bogus"_s},
        {{u"frequency"_s, u"@"_s}, 2, u""_s},
        {{u"crosstab"_s, u"@"_s, u"QX1919"_s, u"V5"_s, u"V5"_s}, 1, u"Doppelte Variablen"_s},
        {{u"crosstab"_s, u"@"_s, u"QX1919"_s, u"V5"_s, u"V55"_s},
         1,
         u"Variable V55 nicht gefunden in Studie QX1919."_s},
        {{u"crosstab"_s, u"@"_s, u"QX1919"_s, u"V5"_s}, 2, u"COLVAR"_s},
        {{u"crosstab"_s, u"@"_s, u"QX1919"_s, u"V5"_s, u"V7"_s, u"--show"_s, u"n"_s}, 2, u"--show"_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.arguments.join(u' ').toStdString());
        const VdxResult result = run(c.arguments);
        EXPECT_EQ(result.status, c.status);
        EXPECT_TRUE(result.out.isEmpty()) << result.out.toStdString();
        EXPECT_FALSE(result.err.isEmpty());
        EXPECT_TRUE(result.err.contains(c.words)) << result.err.toStdString();
    }
}

// The first name is shown in a box, the next on a line, the others as wrong usage.
TEST_F(Commands, namesGiveTheTerminalNoCommandsOnStandardErrorEither) {
    const QString turned = u"\u061C\u200E\u200F\u202A\u202B\u202C\u202D\u202E\u2066\u2067\u2068\u2069"_s;
    const QString bell = u"\x1b]2;title\x07"_s + turned;
    for (const QStringList& arguments :
         {QStringList{u"studies"_s, home_.path(bell + u".mdb"_s)},
          QStringList{u"import"_s, home_.path(u"new.mdb"_s), home_.path(bell + u".sav"_s), u"--study"_s, u"QX1"_s},
          QStringList{u"a"_s + bell}, QStringList{u"studies"_s, u"@"_s, u"--"_s + bell},
          QStringList{u"studies"_s, u"@"_s, u"--set"_s, bell}}) {
        QString words = runVdx(arguments).err;
        EXPECT_TRUE(words.contains(u" ]2;title "_s)) << words.toStdString();
        for (const QChar c : words.remove(u'\n'))
            EXPECT_TRUE(c.category() != QChar::Other_Control && !turned.contains(c)) << words.toStdString();
    }
}

TEST_F(Commands, whatAReaderHasToKnowOfTheNumbersIsSaidOnStandardError) {
    {
        TestCatalogue more(home_.path(u"more"_s));
        more.fill();
        more.addStudy(u"N1"_s, u"Nahe Werte"_s);
        more.addVariable(u"N1"_s, u"A"_s, u"N1_1"_s);
        more.addCases(u"N1"_s, u"N1_1"_s, {dao::TableDef::CreateField(u"A"_s, dao::dbDouble)}, {{1.0}, {1.0 + 1e-15}});
        catalogue_ = more.path();
        data_ = more.dataFolder();
    }
    const VdxResult result = run({u"frequency"_s, u"@"_s, u"N1"_s, u"A"_s});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, u"N1, A:  (N=2): Mehrere Werte sehen in der Tabelle gleich aus, sind in den Daten aber "
                          "verschieden.\n"_s);
}

TEST_F(Commands, casesThatLieElsewhereThanInTheTypedFolderAreNamed) {
    const QString beside = home_.path(u"QX2020.mdb"_s), empty = home_.path(u"empty"_s), none = home_.path(u"none"_s);
    ASSERT_TRUE(QFile::copy(data_ + u"/QX2020.mdb"_s, beside));
    QDir().mkpath(empty);
    for (const QStringList& command : {QStringList{u"frequency"_s, catalogue_, u"QX2020"_s, u"V5"_s},
                                       QStringList{u"compare"_s, catalogue_, u"--entry"_s, u"QX2020 V5"_s}}) {
        SCOPED_TRACE(command[0].toStdString());
        const auto from = [&](const QString& folder) {
            return runVdx(command + QStringList{u"--language"_s, u"de"_s, u"--data"_s, folder});
        };
        EXPECT_EQ(from(data_).err, QString());
        EXPECT_EQ(from(empty).err, u"Die Fälle von QX2020 liegen nicht in %1; gezählt wird %2.\n"_s.arg(empty, beside));
        EXPECT_EQ(from(empty).status, 0);
        const VdxResult refused = from(none);
        EXPECT_EQ(refused.status, 2);
        EXPECT_EQ(refused.out, QString());
        EXPECT_TRUE(refused.err.startsWith(u"vdx: --data %1: Den Ordner gibt es nicht\n"_s.arg(none)))
            << refused.err.toStdString();
    }
}

TEST_F(Commands, aCrosstabIsShownInTheViewsAskedFor) {
    // V5 by V7, which is 1 and 2 in turn; the labelled missing 9 of V5 is left out, its system-missing is shown as
    // missing.
    const QStringList request{u"crosstab"_s, u"@"_s, u"QX1919"_s, u"V5"_s, u"V7"_s, u"--format"_s, u"csv"_s};
    const QString absolute = u";V7;;1;2;Summe;Gült. Summe\r\n"
                             u"V5;;;männlich;weiblich;;\r\n"
                             u";;Missing;;;;\r\n"
                             u";SYSMIS;X;;1;1;\r\n"
                             u"1;zufrieden;;1;1;2;2\r\n"
                             u"2;unzufrieden;;1;1;2;2\r\n"
                             u"Summe;;;2;3;5;\r\n"
                             u"Gült. Summe;;;2;2;;4\r\n"_s;
    EXPECT_EQ(run(request).out, absolute);
    const VdxResult all = run(request + QStringList{u"--show"_s, u"all"_s});
    EXPECT_TRUE(all.out.startsWith(absolute + u"\r\n"_s));
    EXPECT_EQ(all.out.count(u"V5;;;"_s), 4);
    EXPECT_TRUE(all.out.contains(u"Gült. Summe;;;50,0%;50,0%;;100,0%\r\n"_s));
    const VdxResult flipped = run(QStringList{request} << u"--flip"_s << u"--set"_s << u"IncludeMissingXTab=1"_s);
    EXPECT_TRUE(flipped.out.contains(u";;Missing;X;;;X;;\r\n1;männlich;;;1;1;1;3;2\r\n"_s))
        << flipped.out.toStdString();
    const VdxResult text =
        run({u"crosstab"_s, u"@"_s, u"QX1919"_s, u"V5"_s, u"V7"_s, u"--weight"_s, u"re"_s, u"--show"_s, u"row"_s});
    EXPECT_EQ(text.status, 0);
    EXPECT_TRUE(
        text.out.startsWith(u"QX1919, V5: Zufriedenheit nach V7: Geschlecht (gewichtet nach V3), Zeilenprozente\n"_s))
        << text.out.toStdString();
}

TEST_F(Commands, aReadOnlyCatalogueIsAnalysedAndNoRunChangesAFile) {
    QFile file(catalogue_);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    file.close();
    ASSERT_TRUE(file.setPermissions(QFileDevice::ReadOwner));
    EXPECT_EQ(run({u"frequency"_s, u"@"_s, u"QX1919"_s, u"V5"_s, u"--weight"_s, u"re"_s}).status, 0);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), before);
}

TEST_F(Commands, helpTellsWhatToTypeOnEveryLevel) {
    const VdxResult program = runVdx({u"--help"_s});
    EXPECT_EQ(program.status, 0);
    for (const QString& command :
         {u"import"_s, u"build"_s, u"studies"_s, u"variables"_s, u"tree"_s, u"list"_s, u"frequency"_s, u"crosstab"_s}) {
        EXPECT_TRUE(program.out.contains(command));
        const VdxResult help = runVdx({command, u"--help"_s});
        EXPECT_EQ(help.status, 0);
        EXPECT_TRUE(help.out.contains(u"CATALOGUE"_s));
        EXPECT_LE(help.out.count(u'\n'), 40) << "more than a screen";
    }
}
