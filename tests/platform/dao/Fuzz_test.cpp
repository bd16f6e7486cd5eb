#include "StatementCatalogue.h"
#include "StatementFile.h"

#include "platform/dao/Error.h"
#include "platform/dao/Parser.h"
#include "platform/dao/TreeText.h"

#include <gtest/gtest.h>

#include <random>

using namespace Qt::StringLiterals;

namespace {

/// Damages statements, the same way in every run: words dropped, doubled, exchanged or taken from another
/// statement, stray characters, brackets without end.
class Vandal {
public:
    explicit Vandal(std::vector<StatementLine> lines) {
        for (const StatementLine& line : lines)
            statements_.push_back(split(line.text));
    }

    template<typename List>
    typename List::const_reference any(const List& list) {
        return list[static_cast<typename List::size_type>(pick(static_cast<qsizetype>(list.size())))];
    }

    QString next(int most) {
        QStringList words = any(statements_);
        for (qsizetype damage = pick(most); damage >= 0 && !words.isEmpty(); --damage)
            harm(words);
        return words.join(QString());
    }

private:
    static QStringList split(const QString& text) {
        QStringList words;
        for (const QChar c : text) {
            const bool continues = c.isLetterOrNumber() && !words.isEmpty() && words.back().back().isLetterOrNumber();
            if (continues)
                words.back() += c;
            else
                words.append(c);
        }
        return words;
    }

    qsizetype pick(qsizetype below) { return static_cast<qsizetype>(random_() % static_cast<quint64>(below)); }

    void harm(QStringList& words) {
        static const QStringList pieces = {u"("_s,          u")"_s,        u"["_s,     u"]"_s,         u"'"_s,
                                           u"\""_s,         u"#"_s,        u";"_s,     u","_s,         u"."_s,
                                           u"1E999"_s,      u" Not "_s,    u" And "_s, u"-"_s,         u" SELECT "_s,
                                           u" FROM "_s,     u" UNION "_s,  u"*"_s,     u"\\"_s,        u"^"_s,
                                           u"!"_s,          u" Null "_s,   u" In "_s,  u" Between "_s, u" LEFT "_s,
                                           u" GROUP BY "_s, u"Count(*)"_s, u"0"_s,     u"%1"_s};
        const qsizetype place = pick(words.size());
        switch (pick(9)) {
        case 0:
            words.removeAt(place);
            break;
        case 1:
            words.insert(place, words[place]);
            break;
        case 2:
            words.swapItemsAt(place, pick(words.size()));
            break;
        case 3:
            words.insert(place, any(any(statements_)));
            break;
        case 4:
            words.insert(place, any(pieces));
            break;
        case 5:
            words[place] = QChar(static_cast<char16_t>(random_()));
            break;
        case 6:
            words.insert(place, QChar(static_cast<char16_t>(pick(128))));
            break;
        case 7:
            words = words.mid(0, place);
            break;
        default:
            words.insert(place, any(pieces).repeated(pick(20) == 0 ? 3000 : pick(300)));
            break;
        }
    }

    std::vector<QStringList> statements_;
    std::mt19937_64 random_{20240229};
};

/// False if reading it failed; anything but the engine's own syntax error is let through.
bool reads(const QString& text, bool criteria) {
    try {
        if (criteria)
            dao::toText(*dao::parseCriteria(text));
        else
            dao::toText(dao::parseStatement(text));
        return true;
    } catch (const dao::Error& error) {
        EXPECT_EQ(error.number(), criteria ? 3077 : 3075);
        return false;
    }
}

TEST(DamagedStatements, AreReadOrRefused) {
    Vandal vandal(readStatementFile());
    int read = 0;
    constexpr int count = 6000;
    for (int i = 0; i < count; ++i) {
        const QString text = vandal.next(4);
        SCOPED_TRACE(text.left(300).toStdString());
        read += reads(text, i % 4 == 0);
    }
    // Both ways are walked often enough for the test to mean something.
    EXPECT_GT(read, count / 20);
    EXPECT_LT(read, count / 2);
}

TEST(DamagedStatements, RunOrFailAsTheEngineFails) {
    StatementCatalogue catalogue;
    dao::DBEngine& engine = dao::DBEngine::instance();
    int steps = 0;
    engine.setProgress([&steps] { return ++steps > 1000; });
    Vandal vandal(readStatementFile());
    int ran = 0;
    for (int i = 0; i < 3000; ++i) {
        const QString text = vandal.next(2);
        SCOPED_TRACE(text.left(300).toStdString());
        steps = 0;
        engine.Workspaces(0).BeginTrans();
        try {
            if (i % 4 == 0)
                catalogue.database().OpenRecordset(u"tkey_Value"_s)->FindFirst(text);
            else if (text.startsWith(u"SELECT", Qt::CaseInsensitive))
                catalogue.database().OpenRecordset(text, dao::dbOpenSnapshot);
            else
                catalogue.database().Execute(text, dao::dbFailOnError);
            ++ran;
        } catch (const dao::Error& error) {
            EXPECT_NE(error.number(), 3059) << "a damaged statement that doesn't end";
            EXPECT_NE(error.number(), 3000) << "the binder let it through and SQLite doesn't read it: " << error.what();
        }
        engine.Workspaces(0).Rollback();
    }
    engine.setProgress({});
    EXPECT_GT(ran, 100);
    EXPECT_EQ(catalogue.database().OpenRecordset(u"tkey_Variable"_s)->RecordCount(), 7);
}

} // namespace
