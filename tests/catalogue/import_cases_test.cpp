#include "ImportFixture.h"
#include "catalogue/SurveyReader.h"

#include <QFile>
#include <QtEndian>
#include <array>
#include <random>

using namespace Qt::StringLiterals;

namespace {

/// A kind of file; all of them hold the same cases of three fields.
struct Kind {
    const char* extension;
    bool compressRows = false;
    uint8_t stataVersion = 118;
    bool labelled = true;

    friend void PrintTo(const Kind& kind, std::ostream* out) {
        *out << kind.extension << (kind.compressRows ? " by codes" : "") << ' ' << int(kind.stataVersion);
    }
};

const std::vector<Kind> systemFiles = {{"sav"}, {"sav", true}, {"zsav"}};
const std::vector<Kind> stataFiles = {{"dta", false, 104}, {"dta", false, 108}, {"dta", false, 114},
                                      {"dta", false, 117}, {"dta", false, 118}, {"dta", false, 114, false}};

void write(const QString& path, const Kind& kind, int cases) {
    SurveyFileMaker maker;
    maker.stataVersion(kind.stataVersion);
    if (kind.compressRows)
        maker.compressRows();
    readstat_variable_t* v1 = maker.number("V1");
    if (kind.labelled)
        maker.label(v1, {{1.0, "one"}, {2.0, "two"}});
    maker.text("T", 9);
    maker.write(path, cases, [](int i) { return SurveyFileMaker::Row{i / 2.0, "abcdefghi"}; });
}

/// Puts another number of cases into the head.
void claim(const QString& path, qint32 cases) {
    rewrite(path, [&](QByteArray& content) {
        const bool isTagged = content.startsWith("<stata"), isStata = path.endsWith(u".dta"_s);
        const qsizetype at = isTagged ? content.indexOf("<N>") + 3 : isStata ? 6 : 80;
        qToLittleEndian(cases, content.data() + at);
    });
}

/// Counts the cases, and keeps the last number.
struct Counter : RowReceiver {
    int rows = 0;
    double last = -1;
    void number(int, double value) override { last = value; }
    void letter(int, char) override {}
    void text(int, const char*, int) override {}
    void endRow() override { ++rows; }
};

/// Words of a refusal, else empty.
QString reading(const QString& path, Counter& counter) {
    try {
        SurveyReader reader(path, {});
        const SurveyFile head = reader.readHead();
        reader.readRows(head, counter, {});
    } catch (const ImportError& error) {
        return error.text();
    }
    return {};
}

} // namespace

class CasesOfAFile : public ImportFixture {
protected:
    QString pathOf(const Kind& kind) const { return home.path(u"file."_s + QLatin1StringView(kind.extension)); }
};

// The library reads 65,536 bytes at a time; 30,000 cases of 24 bytes are many of these.
TEST_F(CasesOfAFile, AllComeInWhereTheHeadDoesNotSayHowMany) {
    for (const Kind& kind : systemFiles)
        for (const int cases : {0, 1, 20, 30'000}) {
            write(pathOf(kind), kind, cases);
            claim(pathOf(kind), -1);
            Counter counter;
            EXPECT_EQ(reading(pathOf(kind), counter), QString()) << testing::PrintToString(kind) << cases;
            EXPECT_EQ(counter.rows, cases) << testing::PrintToString(kind);
            EXPECT_EQ(counter.last, cases == 0 ? -1.0 : (cases - 1) / 2.0);
        }
    ASSERT_EQ(outcome(request(pathOf(systemFiles[0]), u"QX1"_s)), QString());
    EXPECT_TRUE(hasFact({u"nennt keine Fallzahl"_s, u"30000 Fälle"_s}));
}

TEST_F(CasesOfAFile, ACountThatIsNotKeptIsRefusedWithBothNumbers) {
    std::vector<Kind> kinds = systemFiles;
    kinds.insert(kinds.end(), {{"dta", false, 114, false}, {"dta"}});
    for (const Kind& kind : kinds)
        for (const int said : {-7, 0, 10, 19, 21, 400}) {
            write(pathOf(kind), kind, 20);
            claim(pathOf(kind), said);
            Counter counter;
            const QString words = reading(pathOf(kind), counter);
            EXPECT_TRUE(said < 0 ? !words.isEmpty() : words.contains(u" %1 "_s.arg(said)) && words.contains(u"20"_s))
                << testing::PrintToString(kind) << said << words.toStdString();
        }
    for (const uint8_t version : {uint8_t{117}, uint8_t{118}}) {
        const Kind cutOff{"dta", false, version};
        write(pathOf(cutOff), cutOff, 20);
        constexpr qsizetype caseBytes = 8 + 9;
        rewrite(pathOf(cutOff),
                [](QByteArray& content) { content.truncate(content.indexOf("<data>") + 6 + 12 * caseBytes + 5); });
        Counter counter;
        const QString words = reading(pathOf(cutOff), counter);
        EXPECT_TRUE(words.contains(u" 20 "_s) && words.endsWith(u" 12"_s)) << words.toStdString();
    }
}

TEST_F(CasesOfAFile, AFileThatBreaksOffOrGoesOnIsRefused) {
    std::vector<Kind> kinds = systemFiles;
    kinds.insert(kinds.end(), stataFiles.begin(), stataFiles.end());
    for (const Kind& kind : kinds)
        for (const bool counted : {true, false})
            for (const int change : {-25, -13, -8, -1, 1, 8, 25}) {
                const QString path = pathOf(kind);
                if (!counted && path.endsWith(u".dta"_s))
                    continue;
                write(path, kind, 5000);
                if (!counted)
                    claim(path, -1);
                rewrite(path, [&](QByteArray& content) {
                    content.resize(content.size() + std::min(change, 0));
                    content.append(QByteArray(std::max(change, 0), 'd'));
                });
                Counter counter;
                const bool isBehindTheEnd = change > 0 && kind.stataVersion >= 117 && path.endsWith(u".dta"_s);
                EXPECT_EQ(reading(path, counter).isEmpty(), isBehindTheEnd)
                    << testing::PrintToString(kind) << ' ' << counted << ' ' << change << ' ' << counter.rows;
            }
}

// The letter that ends a portable file may turn up where a case begins.
TEST_F(CasesOfAFile, APortableFileEndsOnceAndForAll) {
    const QString path = home.path(u"file.por"_s);
    write(path, {"por"}, 20);
    Counter counter;
    EXPECT_EQ(reading(path, counter), QString());
    EXPECT_EQ(counter.rows, 20);
    rewrite(path, [](QByteArray& content) {
        const QByteArray lastText = "9/abcdefghi";
        content[content.lastIndexOf(lastText, content.lastIndexOf(lastText) - 1) + lastText.size()] = 'Z';
    });
    EXPECT_FALSE(reading(path, counter).isEmpty());
}

// A name as long as its field has no zero behind it: of 9, 33 and 129 bytes with the variable, of 12, 33 and 129
// with the labels, by the format.
TEST_F(CasesOfAFile, ANameOfLabelsEndsWithItsField) {
    for (const auto& [version, ofVariable, ofLabels] :
         {std::tuple(104, 9, 12), {108, 9, 33}, {114, 33, 33}, {118, 129, 129}}) {
        const Kind kind{"dta", false, static_cast<uint8_t>(version)};
        const QString path = pathOf(kind);
        SurveyFileMaker maker;
        maker.stataVersion(kind.stataVersion);
        maker.label(maker.number("v1"), {{1.0, "one"}});
        maker.label(maker.number("v2"), {{2.0, "two"}});
        maker.write(path, {{1.0, 2.0}});
        rewrite(path, [&, variableBytes = ofVariable, labelBytes = ofLabels](QByteArray& content) {
            for (const char digit : {'1', '2'}) {
                const QByteArray name = QByteArray("set") + digit;
                const qsizetype first = content.indexOf(name), second = content.lastIndexOf(name);
                ASSERT_GT(second, first);
                content.replace(first, variableBytes, QByteArray(variableBytes, digit));
                content.replace(second, labelBytes, QByteArray(labelBytes, digit));
            }
        });
        const SurveyFile head = SurveyReader(path, {}).readHead();
        for (int i = 0; i < 2 && ofVariable == ofLabels; ++i) {
            ASSERT_EQ(head.variables.at(i).labelSet, i) << version;
            EXPECT_EQ(head.labelSets.at(i).size(), 1u) << version;
        }
    }
}

TEST_F(CasesOfAFile, ALongTextWithoutItsZeroIsRefused) {
    const QString path = home.path(u"file.dta"_s);
    for (const bool ends : {true, false}) {
        SurveyFileMaker maker;
        maker.number("v1");
        maker.longText("story", "once upon");
        maker.write(path, {{1.0, "-"}, {2.0, "-"}});
        if (!ends)
            rewrite(path, [](QByteArray& content) { content[content.indexOf("once upon") + 9] = '!'; });
        Counter counter;
        EXPECT_EQ(reading(path, counter).isEmpty(), ends);
        EXPECT_EQ(counter.rows, ends ? 2 : 0);
    }
}

namespace {

/// Damage to a file of twelve cases.
class Damage {
public:
    /// One in four rounds goes for the head, one in five cuts the file off, one in seven adds to it.
    void to(QByteArray& content, int round, bool changesLength) {
        for (qsizetype i = below(4); i >= 0; --i) {
            const qsizetype at = round % 4 == 0 ? 70 + below(20) : below(content.size());
            content[at] = static_cast<char>(std::array<qsizetype, 3>{255, below(25), below(256)}[random_() % 3]);
        }
        if (round % 5 == 0 && changesLength)
            content.resize(below(content.size()));
        if (round % 7 == 0 && changesLength)
            content.append(below(50), static_cast<char>(below(256)));
    }

private:
    std::mt19937 random_{1919};

    qsizetype below(qsizetype limit) { return static_cast<qsizetype>(random_() % static_cast<size_t>(limit)); }
};

} // namespace

// What is done to a file may be refused, but never loses one of its cases unsaid. Only a file that does not say how
// many it has may be cut off between two of them.
TEST_F(CasesOfAFile, DamageIsRefusedOrLosesNoCase) {
    Damage damage;
    std::vector<Kind> kinds = systemFiles;
    kinds.insert(kinds.end(), systemFiles.begin(), systemFiles.end());
    kinds.insert(kinds.end(), stataFiles.begin(), stataFiles.end());
    kinds.push_back({"por"});
    int taken = 0;
    for (size_t i = 0; i < kinds.size(); ++i) {
        const QString path = pathOf(kinds[i]);
        write(path, kinds[i], 12);
        const bool isUncounted = i < systemFiles.size();
        if (isUncounted)
            claim(path, -1);
        QByteArray whole;
        rewrite(path, [&](QByteArray& content) { whole = content; });
        for (int round = 0; round < 200; ++round) {
            rewrite(path, [&](QByteArray& content) { damage.to(content = whole, round, !isUncounted); });
            Counter counter;
            if (!reading(path, counter).isEmpty())
                continue;
            EXPECT_EQ(counter.rows, 12) << testing::PrintToString(kinds[i]) << ' ' << isUncounted << ' ' << round;
            if (taken++ % 32 != 0)
                continue;
            ImportRequest wish = request(path, u"QX1"_s);
            wish.settings.replace = true;
            if (outcome(wish).isEmpty()) {
                EXPECT_EQ(report.cases, 12);
                EXPECT_EQ(rows(home.path(u"QX1.mdb"_s), u"SELECT Count(*) AS N FROM QX1_1"_s), QStringList{u"12"_s});
            }
        }
    }
    EXPECT_GT(taken, 100);
}
