#include "StatementCatalogue.h"
#include "StatementFile.h"

#include "platform/dao/Error.h"
#include "platform/system/NumberFormat.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QString rowOf(const dao::Recordset& rows) {
    QStringList cells;
    for (int column = 0; column < static_cast<int>(rows.Fields().size()); ++column) {
        const dao::Value value = rows.value(column);
        cells.append(value.isNull() ? u"Null"_s : value.toText());
    }
    return cells.join(u'|');
}

QString columnsOf(const dao::Recordset& rows) {
    QStringList names;
    for (const dao::Field& field : rows.Fields())
        names.append(field.Name);
    return names.join(u'|');
}

/// The notes are set with blanks around their "|".
std::string plain(const QString& note) {
    QStringList cells;
    for (const QString& cell : note.split(u'|'))
        cells.append(cell.trimmed());
    return cells.join(u'|').toStdString();
}

class StatementRun : public testing::Test {
protected:
    void SetUp() override { NumberFormat::setDecimalSeparator(u'.'); }

    dao::Database& database() const { return catalogue_.database(); }

    /// Calls `run` for every line of the sections, storing the queries between them on the way.
    template<typename Run>
    void forEach(QStringView section, Run run) {
        for (const StatementLine& line : readStatementFile()) {
            if (line.section == u"query")
                catalogue_.setQuery(line.argument, line.text);
            if (line.section != section)
                continue;
            SCOPED_TRACE(line.where());
            try {
                run(line);
            } catch (const dao::Error& error) {
                ADD_FAILURE() << "error " << error.number() << ": " << error.what();
            }
        }
    }

    void expectResult(const StatementLine& line, int type) {
        const dao::RecordsetPtr rows = database().OpenRecordset(line.text, type);
        ASSERT_TRUE(line.rows.has_value());
        EXPECT_EQ(rows->RecordCount(), *line.rows);
        if (!line.columns.isEmpty()) {
            EXPECT_EQ(plain(columnsOf(*rows)), plain(line.columns));
        }
        QStringList found;
        for (; !rows->Eof(); rows->MoveNext())
            found.append(rowOf(*rows));
        EXPECT_EQ(found.size(), *line.rows);
        if (line.values.isEmpty())
            return;
        ASSERT_EQ(found.size(), line.values.size());
        for (qsizetype row = 0; row < found.size(); ++row)
            EXPECT_EQ(plain(found[row]), plain(line.values[row]));
    }

    /// Runs a line in the way that its first word asks for.
    void runAny(const StatementLine& line) {
        if (line.isCriteria())
            database().OpenRecordset(line.source, dao::dbOpenDynaset)->FindFirst(line.text);
        else if (line.text.startsWith(u"SELECT", Qt::CaseInsensitive) || line.isBareName())
            database().OpenRecordset(line.text, dao::dbOpenSnapshot);
        else
            database().Execute(line.text, dao::dbFailOnError);
    }

    StatementCatalogue catalogue_;
};

TEST_F(StatementRun, SelectsGiveTheRowsWorkedByHand) {
    forEach(u"select", [this](const StatementLine& line) {
        expectResult(line, dao::dbOpenSnapshot);
        expectResult(line, dao::dbOpenDynaset);
    });
}

TEST_F(StatementRun, ChangesAffectTheRowsWorkedByHand) {
    dao::Workspace& workspace = dao::DBEngine::instance().Workspaces(0);
    forEach(u"execute", [&](const StatementLine& line) {
        ASSERT_TRUE(line.rows.has_value());
        workspace.BeginTrans();
        database().Execute(line.text, dao::dbFailOnError);
        EXPECT_EQ(database().RecordsAffected(), *line.rows);
        workspace.Rollback();
    });
}

TEST_F(StatementRun, ConditionsFindTheFirstRowThatSatisfiesThem) {
    forEach(u"criteria", [this](const StatementLine& line) {
        ASSERT_TRUE(line.rows.has_value());
        for (const int type : {dao::dbOpenDynaset, dao::dbOpenSnapshot}) {
            const dao::RecordsetPtr rows = database().OpenRecordset(line.argument, type);
            rows->FindFirst(line.text);
            EXPECT_EQ(rows->NoMatch(), *line.rows == 0);
            if (!rows->NoMatch()) {
                EXPECT_EQ(rows->AbsolutePosition() + 1, *line.rows);
            }
        }
    });
}

TEST_F(StatementRun, FaultsHaveTheEnginesNumbers) {
    forEach(u"error", [this](const StatementLine& line) {
        try {
            runAny(line);
            ADD_FAILURE() << "no error";
        } catch (const dao::Error& error) {
            EXPECT_EQ(error.number(), line.argument.toInt()) << error.what();
            ASSERT_EQ(dao::DBEngine::instance().errors().Count(), 1);
            EXPECT_EQ(dao::DBEngine::instance().errors().Item(0).number, error.number());
        }
    });
}

} // namespace
