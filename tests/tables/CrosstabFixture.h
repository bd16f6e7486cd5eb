#pragma once

#include "platform/dao/DBEngine.h"
#include "support/ScriptedAsker.h"
#include "support/TestHome.h"
#include "tables/Crosstab.h"

#include <gtest/gtest.h>

/// The tables of a crosstab with what they are made from. Rows are of variable A, columns of variable B.
class CrosstabTest : public testing::Test {
protected:
    using Rows = std::vector<std::vector<dao::Value>>;
    const dao::Value null{};

    TestHome home_;
    ScriptedAsker asker_;
    ResultTable shown_, column_, row_, total_, absolute_;
    CrosstabOptions options_{.ShowPercentSign = false, .AutoColWidth = false};
    std::optional<QString> rowMissing_, columnMissing_;
    std::optional<Marks> marks_; ///< set by hand
    std::function<bool()> cancelled_;
    std::function<void(const QString&, const dao::Error&)> onFailure_;
    /// Variable, code, label.
    Rows labels_;

    CrosstabTest();
    /// @param type of both variables
    BuildOutcome build(const Rows& rows, int type = dao::dbDouble);
    /// A table from its values on: the values of the columns, then each row, its value in front. A value has
    /// its label behind it and "*" for a mark. "S" is the sum, "V" the valid one, "." an empty cell, "_" a
    /// blank.
    static QString text(const ResultTable& table);

private:
    dao::DatabasePtr file_;

    void store(const QString& name, const QStringList& fields, const std::vector<int>& types, const Rows& rows);
};
