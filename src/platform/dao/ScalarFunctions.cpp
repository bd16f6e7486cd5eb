#include "platform/dao/ScalarFunctions.h"

#include <array>

namespace dao {

namespace {

using Form = ScalarFunction::Form;
constexpr int ofArguments = 0;

constexpr std::array functions = {
    ScalarFunction{"iif", 3, 3, ofArguments, nullptr, Form::IIf},
    ScalarFunction{"nz", 1, 2, ofArguments, nullptr, Form::Nz},
    ScalarFunction{"isnull", 1, 1, dbBoolean, nullptr, Form::IsNull},
    ScalarFunction{"val", 1, 1, dbDouble, bodies::val},
    ScalarFunction{"cdbl", 1, 1, dbDouble, bodies::toDouble},
    ScalarFunction{"clng", 1, 1, dbLong, bodies::toLong},
    ScalarFunction{"cint", 1, 1, dbInteger, bodies::toInteger},
    ScalarFunction{"cbool", 1, 1, dbBoolean, bodies::toBoolean},
    ScalarFunction{"cstr", 1, 1, dbText, bodies::text},
    ScalarFunction{"str", 1, 1, dbText, bodies::str},
    ScalarFunction{"int", 1, 1, ofArguments, bodies::floorOf},
    ScalarFunction{"fix", 1, 1, ofArguments, bodies::truncated},
    ScalarFunction{"abs", 1, 1, ofArguments, bodies::absolute},
    ScalarFunction{"sgn", 1, 1, dbInteger, bodies::sign},
    ScalarFunction{"sqr", 1, 1, dbDouble, bodies::squareRoot},
    ScalarFunction{"exp", 1, 1, dbDouble, bodies::exponential},
    ScalarFunction{"log", 1, 1, dbDouble, bodies::logarithm},
    ScalarFunction{"round", 1, 2, dbDouble, bodies::rounded},
    ScalarFunction{"isnumeric", 1, 1, dbBoolean, bodies::isNumeric},
    ScalarFunction{"trim", 1, 1, dbText, bodies::trim},
    ScalarFunction{"ltrim", 1, 1, dbText, bodies::trimLeft},
    ScalarFunction{"rtrim", 1, 1, dbText, bodies::trimRight},
    ScalarFunction{"ucase", 1, 1, dbText, bodies::upper},
    ScalarFunction{"lcase", 1, 1, dbText, bodies::lower},
    ScalarFunction{"len", 1, 1, dbLong, bodies::length},
    ScalarFunction{"chr", 1, 1, dbText, bodies::character},
    ScalarFunction{"asc", 1, 1, dbLong, bodies::codePoint},
    ScalarFunction{"space", 1, 1, dbText, bodies::space},
    ScalarFunction{"left", 2, 2, dbText, bodies::left},
    ScalarFunction{"right", 2, 2, dbText, bodies::right},
    ScalarFunction{"mid", 2, 3, dbText, bodies::mid},
    ScalarFunction{"instr", 2, 3, dbLong, bodies::inStr},
    ScalarFunction{"replace", 3, 3, dbText, bodies::replace},
};

} // namespace

const ScalarFunction* findScalarFunction(const QString& name) {
    for (const ScalarFunction& function : functions)
        if (name.compare(QLatin1StringView(function.name), Qt::CaseInsensitive) == 0)
            return &function;
    return nullptr;
}

} // namespace dao
