#include "catalogue/CatalogueImport.h"
#include "catalogue/SurveyReader.h"
#include "catalogue/dtaCharacteristics.h"
#include "support/SurveyFileMaker.h"
#include "support/TestHome.h"

#include <QFile>
#include <QScopeGuard>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// Keeps every row as one text.
struct Rows : RowReceiver {
    QStringList rows{QString()};
    void add(const QString& cell) { rows.last() += cell + u'|'; }
    void number(int variable, double value) override { add(u"%1=%2"_s.arg(variable).arg(value)); }
    void letter(int variable, char letter) override { add(u"%1=.%2"_s.arg(variable).arg(QLatin1Char(letter))); }
    void text(int variable, const char* utf8, int bytes) override {
        add(u"%1='%2'"_s.arg(variable).arg(QString::fromUtf8(utf8, bytes)));
    }
    void endRow() override { rows << QString(); }
};

QString errorOf(const QString& path, const QString& encoding = {}, int* count = nullptr) {
    try {
        SurveyReader reader(path, encoding);
        const SurveyFile head = reader.readHead();
        Rows rows;
        reader.readRows(head, rows, {});
        if (count)
            *count = static_cast<int>(rows.rows.size()) - 1;
    } catch (const ImportError& error) {
        return error.text();
    }
    return {};
}

} // namespace

// The zero before a point, the digits after it, the one length of an empty text and the order of missing
// values differ by writer; a table may give one character two meanings.
TEST(SurveyReader, ReadsPortableFilesHoweverTheirNumbersAreWritten) {
    TestHome home;
    QByteArray table = QByteArray(64, '0') + "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz "
                                             ".<(+|&[]!$*);^-/|,%_>?`:$@'=\"000000~-0000123456789000-()0{}\\";
    table = table.leftJustified(256, '0');
    const QByteArray content = QByteArray(200, ' ') + table + "SPSSPORTA8/202601016/00000011/_42/5B/" +
                               "70/2/V15/2/0/5/2/0/" + "83/BF/A0/" + "75/1/TA/5/0/A/5/0/" + "C3//.F" +
                               "F.F/3//.F-.F/0/ 5./1/a*.1/bZ";
    const QString path = home.path(u"written.por"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    for (qsizetype at = 0; at < content.size(); at += 80)
        file.write(content.mid(at, 80).leftJustified(80, at + 80 > content.size() ? 'Z' : ' ') + "\r\n");
    file.close();

    // There need be no room on disk for a second copy: nobody can make a file there.
    const QByteArray temporary = qgetenv("TMPDIR");
    qputenv("TMPDIR", "/proc");
    const auto restore = qScopeGuard([&] { temporary.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", temporary); });
    SurveyReader reader(path, {});
    const SurveyFile head = reader.readHead();
    ASSERT_EQ(head.variables.size(), 2u);
    ASSERT_EQ(head.variables[0].missing.size(), 2u);
    EXPECT_EQ(head.variables[0].missing[0].low, 15.0);
    EXPECT_EQ(head.variables[0].missing[0].high, 10.0 * 30);
    EXPECT_EQ(head.variables[0].missing[1].low, 3.0);
    EXPECT_EQ(head.variables[1].label, u"/.F"_s);
    Rows rows;
    reader.readRows(head, rows, {});
    EXPECT_EQ(rows.rows.mid(0, 4), (QStringList{u"0=0.5|1='/.F'|"_s, u"0=-0.5|1=''|"_s, u"0=5|1='a'|"_s, u"1='b'|"_s}));
}

TEST(SurveyReader, ReadsHeadAndRowsOfEachKind) {
    TestHome home;
    for (const QString& kind : {u"sav"_s, u"zsav"_s, u"por"_s, u"dta"_s}) {
        const QString path = home.path(u"file."_s + kind);
        SurveyFileMaker maker;
        readstat_variable_t* v1 = maker.number("V1", "First");
        maker.text("NAME", 5);
        maker.label(v1, {{1.0, "yes"}});
        maker.write(path, {{1.0, "ab  "}, {std::monostate(), "   "}, {-2.5, "  c"}});
        SurveyReader reader(path, {});
        const SurveyFile head = reader.readHead();
        ASSERT_EQ(head.variables.size(), 2u) << kind.toStdString();
        EXPECT_EQ(head.variables[0].label, u"First"_s);
        EXPECT_FALSE(head.variables[0].isText);
        EXPECT_TRUE(head.variables[1].isText);
        ASSERT_EQ(head.labelSets.size(), 1u);
        EXPECT_EQ(head.labelSets[0].at(0).label, u"yes"_s);
        Rows rows;
        reader.readRows(head, rows, {});
        EXPECT_EQ(rows.rows, (QStringList{u"0=1|1='ab'|"_s, u"1=''|"_s, u"0=-2.5|1='  c'|"_s, QString()}))
            << kind.toStdString();
    }
}

TEST(SurveyReader, TellsItsProgressRowByRow) {
    TestHome home;
    for (const QString& kind : {u"sav"_s, u"zsav"_s, u"dta"_s}) {
        const QString path = home.path(u"file."_s + kind);
        SurveyFileMaker maker;
        maker.number("V1");
        maker.write(path, 500, [](int i) { return SurveyFileMaker::Row{double(i)}; });
        SurveyReader reader(path, {});
        const SurveyFile head = reader.readHead();
        Rows rows;
        std::vector<double> shares;
        reader.readRows(head, rows, [&](double share) {
            shares.push_back(share);
            return true;
        });
        EXPECT_EQ(shares.size(), 100u) << kind.toStdString();
        for (size_t i = 0; i < shares.size(); ++i)
            EXPECT_DOUBLE_EQ(shares[i], static_cast<double>(i) / 100);
    }
}

TEST(SurveyReader, NamesTheVariableWhoseTextIsUnreadableAndTheOption) {
    TestHome home;
    enum Place { VariableLabel, ValueLabel, Cell };
    for (const Place place : {VariableLabel, ValueLabel, Cell}) {
        // Bytes of Windows-1252 in a file that says UTF-8.
        const QString path = home.path(u"lies.sav"_s);
        SurveyFileMaker maker;
        maker.number("GOOD", "fine");
        readstat_variable_t* v = maker.text("STREET", 12,
                                            place == VariableLabel ? "Stra\xDF"
                                                                     "e"
                                                                   : "ok");
        maker.label(v, {{"x", place == ValueLabel ? "Stra\xDF"
                                                    "e 1"
                                                  : "ok"}});
        maker.write(path, {{1.0, "fine"},
                           {2.0, place == Cell ? "Stra\xDF"
                                                 "e"
                                               : "x"}});
        const QString error = errorOf(path);
        EXPECT_TRUE(error.contains(u"STREET"_s) && error.contains(u"--encoding"_s)) << place << error.toStdString();
        EXPECT_EQ(errorOf(path, u"WINDOWS-1252"_s), QString()) << place;

        // A byte that Windows-1252, the encoding of old Stata files, has not got.
        const QString old = home.path(u"old.dta"_s);
        SurveyFileMaker stata;
        stata.stataVersion(114);
        stata.number("good");
        stata.text("street", 12,
                   place == VariableLabel ? "a\x81"
                                            "b"
                                          : "ok");
        stata.write(old, {{1.0, "ok"},
                          {2.0, place == Cell ? "a\x81"
                                                "b"
                                              : "ok"}});
        if (place == ValueLabel)
            continue;
        const QString oldError = errorOf(old);
        EXPECT_TRUE(oldError.contains(u"street"_s) && oldError.contains(u"--encoding"_s))
            << place << oldError.toStdString();
        EXPECT_EQ(errorOf(old, u"CP850"_s), QString()) << place;
    }
}

TEST(SurveyReader, TakesTheEncodingThatASystemFileNames) {
    TestHome home;
    const QString path = home.path(u"named.sav"_s);
    for (const QByteArray& name : {QByteArray("windows-1252"), QByteArray("no-such-encoding"), QByteArray("utf8")}) {
        // Bytes of Windows-1252 in a file whose code page says UTF-8.
        SurveyFileMaker maker;
        maker.text("STREET", 12,
                   "Stra\xDF"
                   "e");
        maker.write(path, {{"\xD6st"}});
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        QByteArray content = file.readAll();
        const auto whole = [](qint32 number) {
            return QByteArray(reinterpret_cast<const char*>(&number), sizeof number);
        };
        const qsizetype end = content.indexOf(whole(999) + whole(0));
        ASSERT_GT(end, 0);
        content.insert(end, whole(7) + whole(20) + whole(1) + whole(static_cast<qint32>(name.size())) + name);
        file.seek(0);
        file.write(content);
        file.close();
        const QString error = errorOf(path);
        if (name != "windows-1252") {
            EXPECT_TRUE(error.contains(u"--encoding"_s)) << name.constData() << error.toStdString();
            continue;
        }
        ASSERT_EQ(error, QString());
        SurveyReader reader(path, {});
        const SurveyFile head = reader.readHead();
        EXPECT_EQ(head.variables[0].label, u"Straße"_s);
        Rows rows;
        reader.readRows(head, rows, {});
        EXPECT_EQ(rows.rows.front(), u"0='Öst'|"_s);
    }
}

// Format 114 has them behind head (109 bytes), types, names, sort order, formats, names of labels and labels
// of its variables (1 + 33 + 2 + 49 + 33 + 81 bytes each) and the end of the sort order (2); format 118
// between tags.
TEST(SurveyReader, TellsWhatStatasCharacteristicsHold) {
    TestHome home;
    for (const bool tagged : {true, false}) {
        SCOPED_TRACE(tagged);
        const QString path = home.path(u"chars.dta"_s);
        SurveyFileMaker maker;
        maker.stataVersion(tagged ? 118 : 114);
        maker.number("v1");
        maker.number("v2");
        maker.note("of the file, taken over");
        maker.write(path, {{1.0, 2.0}});
        EXPECT_EQ(SurveyReader(path, {}).readHead().extras, QStringList());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        QByteArray content = file.readAll(), added;
        const int nameBytes = tagged ? 129 : 33;
        for (const auto& [owner, name, text] : {std::tuple("v1", "note0", "2"),
                                                {"v1", "note1", "a"},
                                                {"v1", "note2", "b"},
                                                {"_dta", "_lang_list", "de en"},
                                                {"v1", "_lang_v_en", "x"},
                                                {"_dta", "source", "y"}}) {
            const QByteArray entry = QByteArray(owner).leftJustified(nameBytes, '\0') +
                                     QByteArray(name).leftJustified(nameBytes, '\0') + text + '\0';
            const quint32 size = static_cast<quint32>(entry.size());
            const QByteArray length(reinterpret_cast<const char*>(&size), 4);
            added += tagged ? "<ch>" + length + entry + "</ch>" : '\1' + length + entry;
        }
        content.insert(tagged ? content.indexOf("</characteristics>") : 109 + 2 * 199 + 2, added);
        file.seek(0);
        file.write(content);
        file.close();
        const QStringList found = tagged ? dtaCharacteristics(path) : SurveyReader(path, {}).readHead().extras;
        ASSERT_EQ(found.size(), 3) << found.join(u'\n').toStdString();
        EXPECT_TRUE(found[0].startsWith(u"2 "_s));
        EXPECT_TRUE(found[1].contains(u"de en"_s));
        EXPECT_TRUE(found[2].startsWith(u"1 "_s));
    }
}

TEST(SurveyReader, TellsTextsWhoseCharactersAPortableFileDidNotKeep) {
    TestHome home;
    const QString path = home.path(u"old.por"_s);
    SurveyFileMaker maker;
    maker.text("NAME", 8, "plain");
    maker.write(path, {{"plainly"}, {"strXse"}, {"again"}});
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    QByteArray content = file.readAll();
    content.replace("strXse", "str\xDF"
                              "se");
    file.seek(0);
    file.write(content);
    file.close();
    EXPECT_TRUE(errorOf(path, u"WINDOWS-1252"_s).contains(u".por"_s));
    SurveyReader reader(path, {});
    const SurveyFile head = reader.readHead();
    for (int round = 0; round < 2; ++round) {
        Rows rows;
        reader.readRows(head, rows, {});
        EXPECT_EQ(rows.rows.value(0), u"0='plainly'|"_s);
        EXPECT_EQ(reader.lostTexts(), 1) << rows.rows.value(1).toStdString();
    }
}

TEST(SurveyReader, RefusesWhatItCannotReadWithAReason) {
    TestHome home;
    const QString path = home.path(u"file.sav"_s);
    const auto make = [&](const QString& to) {
        SurveyFileMaker maker;
        maker.number("V1");
        maker.text("T", 200);
        maker.write(to, 400, [](int i) { return SurveyFileMaker::Row{double(i), "abc"}; });
    };
    for (const QString& kind : {u"sav"_s, u"zsav"_s, u"por"_s, u"dta"_s}) {
        const QString cut = home.path(u"cut."_s + kind);
        for (const double share : {0.0, 0.005, 0.3, 0.7, 0.99}) {
            make(cut);
            truncateTo(cut, static_cast<qint64>(share * static_cast<double>(QFile(cut).size())));
            int rows = 0;
            const QString error = errorOf(cut, {}, &rows);
            EXPECT_TRUE(!error.isEmpty() || rows == 400) << kind.toStdString() << ' ' << share << ' ' << rows;
            EXPECT_TRUE(error.isEmpty() == (kind == u"por"_s && share == 0.99)) << "padding alone was cut off";
        }
    }
    make(path);
    EXPECT_TRUE(errorOf(home.path(u"none.sav"_s)).contains(u"none.sav"_s));
    EXPECT_TRUE(errorOf(path, u"KLINGON-1"_s).contains(u"KLINGON-1"_s));
    EXPECT_FALSE(errorOf(home.path(u"file.xls"_s)).isEmpty());
    QFile::copy(path, home.path(u"file.dta"_s));
    EXPECT_FALSE(errorOf(home.path(u"file.dta"_s)).isEmpty());
}
