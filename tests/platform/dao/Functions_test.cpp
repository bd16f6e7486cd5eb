#include "platform/dao/Error.h"
#include "platform/dao/Functions.h"
#include "platform/dao/SqliteValue.h"
#include "platform/system/NumberFormat.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

using namespace Qt::StringLiterals;
using dao::Value;

namespace {

class Functions : public testing::Test {
protected:
    Functions() {
        NumberFormat::setDecimalSeparator(u',');
        sqlite3_open(":memory:", &connection_);
        dao::registerFunctions(connection_);
    }
    ~Functions() override { sqlite3_close(connection_); }

    /// The value of an expression in SQLite; its error is the function's own.
    Value evaluate(const QString& expression) {
        sqlite3_stmt* statement = nullptr;
        const QByteArray sql = (u"SELECT "_s + expression).toUtf8();
        EXPECT_EQ(sqlite3_prepare_v2(connection_, sql.constData(), -1, &statement, nullptr), SQLITE_OK)
            << sql.constData() << ": " << sqlite3_errmsg(connection_);
        const bool row = sqlite3_step(statement) == SQLITE_ROW;
        const Value value = row ? dao::columnValue(statement, 0) : Value(u"(no row)"_s);
        sqlite3_finalize(statement);
        if (!row) {
            dao::raiseFunctionError();
        }
        return value;
    }

    sqlite3* connection_ = nullptr;
};

} // namespace

TEST_F(Functions, GiveWhatTheLanguageGives) {
    const std::pair<QString, Value> cases[] = {
        {u"vx_eq(8.5, '8,5')"_s, Value(1)},
        {u"vx_eq(1, 'x')"_s, Value(0)},
        {u"vx_ne(NULL, 1)"_s, Value()},
        {u"vx_lt('a', 'Ä')"_s, Value(1)},
        {u"vx_le('ä', 'Ä')"_s, Value(1)},
        {u"vx_gt('10', 9)"_s, Value(1)},
        {u"vx_ge('10', '9')"_s, Value(0)},
        {u"vx_like('Straße', 's*ß?')"_s, Value(1)},
        {u"vx_bool('0,0')"_s, Value(0)},
        {u"vx_key('1,50') = vx_key(1.5)"_s, Value(1)},
        {u"vx_key('ÄX') = vx_key('äx')"_s, Value(1)},
        {u"vx_text(0.5)"_s, Value(u"0,5"_s)},
        {u"vx_concat(NULL, 1.5)"_s, Value(u"1,5"_s)},
        {u"vx_concat(NULL, NULL)"_s, Value()},
        {u"vx_calc('+', '1', '2')"_s, Value(u"12"_s)},
        {u"vx_calc('+-*', '1,5', 2, 1.5, 1.75)"_s, Value(3.5)},
        {u"vx_calc('+', 9223372036854775807, 1)"_s, Value(9223372036854775808.0)},
        {u"vx_div(1, 4)"_s, Value(0.25)},
        {u"vx_idiv(-7, 2)"_s, Value(-3)},
        {u"vx_mod(-7, 2)"_s, Value(-1)},
        {u"vx_idiv(-9223372036854775807 - 1, -1)"_s, Value(9223372036854775808.0)},
        {u"vx_pow(2, 0.5) * vx_pow(2, 0.5) BETWEEN 1.999 AND 2.001"_s, Value(1)},
        {u"vx_neg('2,5')"_s, Value(-2.5)},
        {u"vx_val('12,5')"_s, Value(12.0)},
        {u"vx_val(NULL)"_s, Value()},
        {u"vx_cdbl('12,5') + vx_cdbl('12.5')"_s, Value(25.0)},
        {u"vx_clng(2.5)"_s, Value(2)},
        {u"vx_cbool(7)"_s, Value(-1)},
        {u"vx_int(-1.5)"_s, Value(-2.0)},
        {u"vx_fix(-1.5)"_s, Value(-1.0)},
        {u"vx_abs(-3)"_s, Value(3)},
        {u"vx_sgn(0) * 100 + vx_sgn(-2.5) * 10 + vx_sgn('3,5')"_s, Value(-9)},
        {u"vx_asc('äb')"_s, Value(228)},
        {u"vx_asc(NULL)"_s, Value()},
        {u"vx_round(2.5)"_s, Value(2.0)},
        {u"vx_nz(NULL)"_s, Value(u""_s)},
        {u"vx_nz(NULL, 5)"_s, Value(5)},
        {u"vx_trim('  a b ')"_s, Value(u"a b"_s)},
        {u"vx_ucase('straße ä')"_s, Value(u"STRAßE Ä"_s)},
        {u"vx_len('ä😀')"_s, Value(2)},
        {u"vx_left('😀ab', 2)"_s, Value(u"😀a"_s)},
        {u"vx_right('abc', 5)"_s, Value(u"abc"_s)},
        {u"vx_mid('abcdef', 3, 2)"_s, Value(u"cd"_s)},
        {u"vx_mid('abc', 4)"_s, Value(u""_s)},
        {u"vx_instr('aÄb', 'äB')"_s, Value(2)},
        {u"vx_instr(3, 'abab', 'ab')"_s, Value(3)},
        {u"vx_replace('aXbx', 'x', '--')"_s, Value(u"a--b--"_s)},
        {u"vx_isnumeric('1,5')"_s, Value(-1)},
        {u"vx_str(1.5)"_s, Value(u" 1.5"_s)},
        {u"'Ä' = 'ä' COLLATE VXTEXT"_s, Value(1)},
    };
    for (const auto& [expression, expected] : cases) {
        const Value value = evaluate(expression);
        EXPECT_TRUE(value == expected) << expression.toStdString() << " gives " << value.toText().toStdString();
    }
}

TEST_F(Functions, RaiseTheirOwnErrorsOnce) {
    const std::pair<QString, int> cases[] = {
        {u"vx_div(1, 0)"_s, 11},
        {u"vx_mod(1, '0')"_s, 11},
        {u"vx_cdbl('abc')"_s, 13},
        {u"vx_calc('-', 'a', 1)"_s, 13},
        {u"vx_calc('*', 1e300, 1e300)"_s, 6},
        {u"vx_clng(3e9)"_s, 6},
        {u"vx_left('a', -1)"_s, 5},
        {u"vx_mid('a', 0)"_s, 5},
        {u"vx_pow(-8, 0.5)"_s, 5},
        {u"vx_like('a', '[a')"_s, 93},
    };
    dao::errorList().clear();
    for (const auto& [expression, number] : cases) {
        try {
            evaluate(expression);
            ADD_FAILURE() << expression.toStdString();
        } catch (const dao::Error& error) {
            EXPECT_EQ(error.number(), number) << expression.toStdString();
        }
        EXPECT_NO_THROW(dao::raiseFunctionError());
    }
    EXPECT_EQ(dao::errorList().Count(), 0);
}

TEST_F(Functions, TextThatIsNoUtf8HasAnOrderToo) {
    EXPECT_TRUE(evaluate(u"CAST(x'41FF' AS TEXT) = CAST(x'61FF' AS TEXT) COLLATE VXTEXT"_s) == Value(1));
    EXPECT_TRUE(evaluate(u"CAST(x'E4' AS TEXT) = CAST(x'C3' AS TEXT) COLLATE VXTEXT"_s) == Value(0));
}
