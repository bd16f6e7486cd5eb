#include "VdxRunner.h"

#include "support/PrintQt.h"
#include "support/TestCatalogue.h"
#include <QFile>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Studies whose catalogue entries and case files don't hold what they promise.
class BadInput : public ::testing::Test {
protected:
    BadInput() : made_(home_.path(u"Архив 档案"_s)) {
        made_.fill();
        made_.together([this] {
            made_.addStudy(u"QNONE"_s, u"ohne Falldatei"_s, {{"fid", u"0"_s}});
            made_.addVariable(u"QNONE"_s, u"V1"_s, u"QNONE_1"_s);
            made_.addVariable(u"QX1919"_s, u"NOTABLE"_s, u"QX1919_7"_s);
            made_.addVariable(u"QX1919"_s, u"NOFIELD"_s, u"QX1919_1"_s);
            made_.addStudy(u"QGONE"_s, u"Gewicht nicht da"_s, {{"fid", u"0"_s}, {"dt_WeightRE", u"GONE"_s}});
            made_.addVariable(u"QGONE"_s, u"V1"_s, u"QW_1"_s);
            made_.addStudy(u"QW"_s, u"Gewichte"_s, {{"fid", u"0"_s}});
            for (const QString& name :
                 {u"V1"_s, u"WTEXT"_s, u"WNULL"_s, u"WMINUS"_s, u"WZERO"_s, u"WSPLIT"_s, u"größe"_s})
                made_.addVariable(u"QW"_s, name, u"QW_1"_s);
            made_.addStudy(u"QMANY"_s, u"viele Werte"_s, {{"fid", u"0"_s}});
            made_.addVariable(u"QMANY"_s, u"MANY"_s, u"QMANY_1"_s);
            made_.addValue(u"QW"_s, u"V1"_s, u"1"_s, u"да, 是的, نعم"_s);
            int number = 0;
            for (const QString& query : queries_) {
                const QString study = u"QQ%1"_s.arg(++number);
                made_.addStudy(study, study, {{"fid", u"0"_s}, {"dt_query", query}});
                made_.addVariable(study, u"V1"_s, study + u"_1"_s);
                made_.addVariable(study, u"W1"_s, study + u"_1"_s);
            }
        });
        const auto number = [](const QString& name) { return dao::TableDef::CreateField(name, dao::dbDouble); };
        made_.addCases(u"QW"_s, u"QW_1"_s,
                       {number(u"V1"_s), dao::TableDef::CreateField(u"WTEXT"_s, dao::dbText), number(u"WNULL"_s),
                        number(u"WMINUS"_s), number(u"WZERO"_s), number(u"WSPLIT"_s), number(u"größe"_s)},
                       {{1, u"x"_s, {}, -2, 0, 1, 1}, {1, u"y"_s, {}, -2, 0, 1, 1}, {2, u"z"_s, {}, 3, 0, -2, 1}});
        std::vector<std::vector<dao::Value>> many;
        for (int i = 1; i <= 25'001; ++i)
            many.push_back({i});
        made_.addCases(u"QMANY"_s, u"QMANY_1"_s, {number(u"MANY"_s)}, many);
        for (int i = 1; i <= queries_.size(); ++i)
            made_.addCases(u"QQ%1"_s.arg(i), u"QQ%1_1"_s.arg(i), {number(u"V1"_s), number(u"W1"_s)}, {{1, 2}});
    }

    VdxResult run(const QString& line) const {
        QStringList arguments;
        for (QString word : line.split(u'|'))
            arguments << word.replace(u"@"_s, made_.path());
        if (!arguments.contains(u"--language"_s))
            arguments << u"--language"_s << u"de"_s;
        arguments << u"--decimal"_s << u"comma"_s;
        if (arguments[0] == u"frequency" && !arguments.contains(u"--format"_s))
            arguments << u"--format"_s << u"csv"_s << u"--plain"_s;
        if (arguments[0] == u"frequency")
            arguments << u"--data"_s << made_.dataFolder();
        return runVdx(arguments);
    }

    /// What is said, without the frame that the error reporter puts round it.
    static QString wordsOf(const QString& err) {
        QStringList lines = err.split(u'\n', Qt::SkipEmptyParts);
        if (lines.size() > 2 && lines[0].startsWith(u"Varidex: Folgender Fehler ist in der Prozedur"_s))
            lines.remove(0, 2);
        return lines.isEmpty() ? QString() : lines[0].trimmed();
    }

    VdxHome home_;
    TestCatalogue made_;
    const QStringList queries_{u"no statement"_s,
                               u"SELECT dt_CaseID AS ID FROM QQ2_1 WHERE V1 ="_s,
                               u"SELECT dt_CaseID AS ID FROM QQ99_1"_s,
                               u"SELECT NOFIELD AS ID FROM QQ4_1"_s,
                               u"SELECT V1 FROM QQ5_1"_s,
                               u"SELECT dt_CaseID AS ID FROM QQ6_1 WHERE V1 = 1"_s,
                               u"DELETE FROM QQ7_1"_s};
};

} // namespace

TEST_F(BadInput, getsTheSystemsWordsOrTheEnginesAndNoTable) {
    struct Case {
        QString line, words; ///< words on standard error, the frame of an error report left out
        int status = 1;
    };
    const QString syntax = u"Syntax error in query expression: "_s, few = u"Too few parameters. Expected 1. "_s;
    const QString folder = made_.dataFolder();
    for (const Case& c : std::initializer_list<Case>{
             {u"QNONE|V1"_s, u"Varidex: '%1/QNONE.mdb' nicht gefunden."_s.arg(folder)},
             {u"QX1919|NOTABLE"_s, u"The database engine could not find the object 'QX1919_7'."_s},
             {u"QX1919|NOFIELD"_s, few + u"('QX1919_1.NOFIELD')"_s},
             // weights
             {u"QGONE|V1|--weight|re"_s, u"Varidex: GONEnicht gefunden"_s},
             {u"QGONE|V1|--weight|hh"_s, u"Studie QGONE hat kein Haushaltsgewicht."_s},
             {u"QW|V1|--weight|GONE"_s, u"Gewichtungsvariable GONE nicht gefunden in Studie QW."_s},
             {u"QW|V1|--weight|WTEXT"_s, u"Data type mismatch in criteria expression: W2"_s},
             // filters
             {u"QW|V1|--filter|V99=1"_s, u"Varidex: V99 nicht gefunden"_s},
             {u"QW|V1|--filter|größe=1"_s, u"Varidex: Unerlaubtes Zeichen: ö"_s},
             {u"QW|V1|--filter|V1=1;"_s, u"Varidex: Unerlaubtes Zeichen: ;"_s},
             {u"QW|V1|--filter|V1 = 1;"_s, u"Varidex: Unerlaubtes Zeichen: ;"_s},
             {u"QW|V1|--filter|V1="_s, u"Varidex: Hinter = fehlt ein Wert."_s},
             {u"QW|V1|--filter|V1 1"_s, u"Varidex: Hinter V1 fehlt ein Vergleich."_s},
             {u"QW|V1|--filter|(V1=1"_s, u"Varidex: Eine Klammer ist nicht geschlossen."_s},
             {u"QW|V1|--filter|V1=1)"_s, u"Varidex: Eine Klammer wird geschlossen, die nicht geöffnet ist."_s},
             {u"QW|V1|--filter| "_s, u"Varidex: Der Filter ist leer."_s},
             {u"QW|V1|--part|9"_s, u"Studie QW hat keinen Datensatz-Teil 9."_s},
             // the study's query
             {u"QQ1|V1"_s, syntax + u"expected SELECT"_s},
             {u"QQ1|V1|--weight|W1"_s, u"Varidex: Fehler in Abfrage"_s},
             {u"QQ2|V1"_s, syntax + u"expected an expression, found the end"_s},
             {u"QQ3|V1"_s, u"Could not find file '%1/QQ99.mdb'."_s.arg(folder)},
             {u"QQ4|V1"_s, few + u"('NOFIELD')"_s},
             {u"QQ5|V1"_s, few + u"('q.ID')"_s},
             {u"QQ6|V1|--weight|W1"_s, syntax + u"expected an operator or the end of the statement, found 'WHERE'"_s},
             {u"QQ7|V1"_s, syntax + u"the query 'q' is no SELECT"_s},
             {u"QMANY|MANY"_s, u"Varidex: 25000 Zeilen erreicht, Abbruch"_s},
             // wrong usage, in the language of the run
             {u"QW|V1|--filter|V1=1|--part|1"_s, u"vdx: --filter und --part schließen einander aus"_s, 2},
             {u"QW|V1|--set|X=1"_s, u"vdx: --set X=1: Eine Option dieses Namens gibt es nicht (Form: KEY=VALUE)"_s, 2},
             {u"QW|V1|--set|IncludeMissing=maybe"_s,
              u"vdx: --set IncludeMissing=maybe: Die Option nimmt diesen Wert nicht an"_s, 2},
             {u"QW|V1|--format|xml"_s, u"--format: xml not in {text,csv,json}"_s, 2},
         }) {
        SCOPED_TRACE(c.line.toStdString());
        const VdxResult result = run(u"frequency|@|"_s + c.line);
        EXPECT_EQ(result.status, c.status);
        EXPECT_EQ(result.out, QString());
        EXPECT_TRUE(wordsOf(result.err).startsWith(c.words)) << result.err.toStdString();
    }
    EXPECT_TRUE(run(u"frequency|@|QW|V1|--set|X=1|--language|en"_s).err.startsWith(u"vdx: --set X=1: there is no"_s));
}

// Two cases of 1 and one of 2; weights -2, -2, 3; 0; 1, 1, -2; Null. What can be counted is, and a table without cases
// has no rows.
TEST_F(BadInput, isCountedWhereItCanBe) {
    const QString head = u"Wert;Ausprägung;Missing;Anzahl;Prozent;Gült.Prozent;Kumul.Prozent\r\n"_s;
    const QString label = u"1;да, 是的, نعم;;"_s;
    struct Case {
        QString line, out, words;
    };
    for (const Case& c : std::initializer_list<Case>{
             {u"V1"_s, head + label + u"2;66,7;66,7;66,7\r\n2;"_s, {}},
             {u"größe"_s, head + u"1;;;3;100,0;100,0;100,0\r\n;Summe;;3;"_s, {}},
             {u"V1|--weight|WMINUS"_s, head + label + u"-4;400,0;400,0;400,0\r\n2;;;3;-300,0"_s, {}},
             {u"V1|--weight|WZERO"_s, head + label + u"0;;;\r\n2;;;0;;;\r\n;Summe;;0;0,0;0,0;"_s, {}},
             {u"V1|größe|--weight|WSPLIT"_s,
              head + label + u"2;;;\r\n2;;;-2;;;\r\n;Summe;;0;0,0;0,0;\r\n;;;;;;\r\n;Gültige Fälle;;0;;;\r\n\r\n"_s +
                  head + u"1;;;0;;;\r\n"_s,
              u"V1, 1, Gült.Prozent ist nicht zu berechnen (11 Division by zero), die Zelle bleibt leer."_s},
             {u"V1|--weight|WNULL"_s, head + u";;;;;;\r\n"_s,
              u"Varidex: Warnung: unbekannte Anzahl fehlender Werte in Gewichtungsvariable."_s},
             {u"V1|--filter|V1>7"_s, head + u";;;;;;\r\n"_s, {}},
         }) {
        SCOPED_TRACE(c.line.toStdString());
        const VdxResult result = run(u"frequency|@|QW|"_s + c.line);
        EXPECT_EQ(result.status, 0);
        EXPECT_TRUE(result.out.startsWith(c.out)) << result.out.toStdString();
        EXPECT_EQ(wordsOf(result.err), c.words);
    }
}

TEST_F(BadInput, aCatalogueThatCannotBeReadIsRefused) {
    const QString cut = home_.path(u"cut.mdb"_s), zeros = home_.path(u"zeros.mdb"_s);
    ASSERT_TRUE(QFile::copy(made_.path(), cut));
    ASSERT_TRUE(QFile::resize(cut, QFile(cut).size() / 2 / 4096 * 4096));
    QFile empty(zeros);
    ASSERT_TRUE(empty.open(QIODevice::WriteOnly));
    empty.write(QByteArray(9000, '\0'));
    empty.close();
    // Another process keeps the catalogue to itself.
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t other = fork();
    if (other == 0) {
        const int file = open(QFile::encodeName(made_.path()).constData(), O_RDWR);
        constexpr off_t lockBytes = 0x40000000; // where SQLite has its locks
        struct flock lock {};
        lock.l_type = F_WRLCK;
        lock.l_start = lockBytes;
        lock.l_len = 512;
        const char got = fcntl(file, F_SETLK, &lock) == 0 ? 'y' : 'n';
        if (write(ready[1], &got, 1) == 1)
            pause();
        _exit(0);
    }
    char locked = 'n';
    ASSERT_EQ(read(ready[0], &locked, 1), 1);
    ASSERT_EQ(locked, 'y');
    struct Case {
        QString path, words;
    };
    for (const Case& c :
         std::initializer_list<Case>{{cut, u"Cannot open database '%1'."_s.arg(cut)},
                                     {zeros, zeros + u" ist keine Datenbank und kein Katalog."_s},
                                     {made_.path(), u"Could not lock file '%1'."_s.arg(made_.path())}}) {
        const VdxResult result = run(u"studies|"_s + c.path);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.out, QString());
        EXPECT_TRUE(QString(result.err).replace(u'\n', u' ').contains(c.words)) << result.err.toStdString();
    }
    kill(other, SIGKILL);
    waitpid(other, nullptr, 0);
    EXPECT_EQ(run(u"studies|@"_s).status, 0);
}

TEST_F(BadInput, withoutStudiesOrVariablesTheCauseIsToldAndNothingElse) {
    const QString damaged = home_.path(u"damaged.mdb"_s);
    ASSERT_TRUE(QFile::copy(made_.path(), damaged));
    made_.execute(u"DELETE FROM tsys_Options"_s);
    for (const QString& line : {u"studies|@"_s, u"variables|@|QW"_s, u"frequency|@|QW|V1"_s}) {
        const VdxResult result = run(line);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.err, u"Der Katalog hat keine Ansicht von Studien.\n"_s);
    }
    dao::DatabasePtr catalogue = dao::DBEngine::instance().OpenDatabase(damaged);
    catalogue->TableDefs().Delete(u"tkey_Variable"_s);
    catalogue->Close();
    const VdxResult result = run(u"frequency|%1|QW|V1"_s.arg(damaged));
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.err.contains(u"tkey_Variable"_s)) << result.err.toStdString();
    EXPECT_FALSE(result.err.contains(u"nicht gefunden"_s)) << result.err.toStdString();
}

TEST_F(BadInput, anErrorOutsideEveryProcedureNamesTheCommand) {
    const QString survey = QStringLiteral(VARIDEX_SOURCE_ROOT "/../shared/data/sav/edge_haven/iris.sav");
    if (!QFile::exists(survey))
        GTEST_SKIP() << survey.toStdString();
    QFile zeros(home_.path(u"zeros.mdb"_s));
    ASSERT_TRUE(zeros.open(QIODevice::WriteOnly));
    zeros.write(QByteArray(9000, '\0'));
    zeros.close();
    const VdxResult result = run(u"import|%1|%2|--study|A"_s.arg(zeros.fileName(), survey));
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.err.contains(u"[vdx import]"_s)) << result.err.toStdString();
}
