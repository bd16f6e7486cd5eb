#include "StatementFile.h"

#include "platform/dao/Error.h"
#include "platform/dao/Parser.h"
#include "platform/dao/TreeText.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// Number of the error that reading the line raises, 0 if none.
int syntaxError(const StatementLine& line) {
    try {
        if (line.isCriteria())
            dao::parseCriteria(line.text);
        else
            dao::parseStatement(line.text);
    } catch (const dao::Error& error) {
        return error.number();
    }
    return 0;
}

TEST(StatementsOfTheSystem, AreReadOrRefusedBySyntaxAlone) {
    const std::vector<StatementLine> lines = readStatementFile();
    EXPECT_GT(lines.size(), 150U);
    for (const StatementLine& line : lines) {
        if (line.isBareName())
            continue;
        const bool isBroken = line.argument == u"3075" || line.argument == u"3077";
        EXPECT_EQ(syntaxError(line), isBroken ? line.argument.toInt() : 0) << line.where();
    }
}

TEST(StatementsOfTheSystem, MeanTheSameWhenWrittenFromTheirTree) {
    for (const StatementLine& line : readStatementFile()) {
        if (line.isBareName() || syntaxError(line) != 0)
            continue;
        const auto rewrite = [&line](const QString& text) {
            return line.isCriteria() ? dao::toText(*dao::parseCriteria(text)) : dao::toText(dao::parseStatement(text));
        };
        const QString written = rewrite(line.text);
        EXPECT_EQ(rewrite(written), written) << line.where();
    }
}

} // namespace
