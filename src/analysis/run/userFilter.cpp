#include "analysis/run/userFilter.h"

#include "analysis/request/filterTokens.h"
#include "analysis/request/filterWords.h"
#include "app/globals.h"
#include "platform/dao/Error.h"
#include "platform/dao/Parser.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isDelimiter(QChar c) {
    return u" ()<=>"_s.contains(c);
}

/// Adds the join of a variable's table where it needs one. @return false when the run is over
bool joinTable(FilterResult& result, const QString& table, const FilterSurroundings& around) {
    if (around.joinedAlready.contains(table, Qt::CaseInsensitive) || result.joins.contains(table))
        return true;
    result.joins.add(table, u" INNER JOIN "_s + table + u" ON q.ID = "_s + table + u".dt_CaseID) "_s);
    return around.attach(table);
}

class FilterPass {
public:
    FilterPass(const QString& text, const FilterSurroundings& surroundings) : text_(text), around_(surroundings) {}

    FilterResult run() {
        for (qsizetype i = 0; i < text_.size() && result_.failure == FilterResult::Failure::None; ++i)
            take(i);
        if (result_.failure == FilterResult::Failure::None && tokenStart_ >= 0)
            lose();
        return result_;
    }

private:
    const QString& text_;
    const FilterSurroundings& around_;
    FilterResult result_;
    qsizetype tokenStart_ = -1;
    bool inValue_ = false;

    /// The order of the tests is the grammar.
    void take(qsizetype i) {
        const QChar c = text_[i];
        if (isDelimiter(c))
            inValue_ = false;
        if (inValue_) {
            result_.filterSql += c;
        } else if (beginsFilterName(c)) {
            if (tokenStart_ < 0)
                tokenStart_ = i;
        } else if (isFilterDigit(c)) {
            if (tokenStart_ < 0)
                result_.filterSql += c;
        } else if (!isDelimiter(c)) {
            fail(FilterResult::Failure::IllegalCharacter, c.isHighSurrogate() ? text_.mid(i, 2) : QString(c), i);
        } else {
            if (tokenStart_ >= 0 && !takeWord(text_.mid(tokenStart_, i - tokenStart_)))
                return;
            tokenStart_ = -1;
            result_.filterSql += c;
        }
    }

    void lose() {
        result_.lost = text_.mid(tokenStart_);
        result_.position = tokenStart_;
        result_.length = result_.lost.size();
    }

    bool fail(FilterResult::Failure failure, const QString& culprit, qsizetype position) {
        result_.position = position;
        result_.length = culprit.size();
        result_.failure = failure;
        result_.culprit = culprit;
        return false;
    }

    bool takeWord(const QString& word) {
        if (isFilterOperator(word)) {
            result_.filterSql += word;
            return true;
        }
        inValue_ = true;
        bool ended = false;
        const std::optional<VariablePlace> place = around_.find(word, ended);
        if (ended)
            return fail(FilterResult::Failure::Ended, word, tokenStart_);
        if (!place)
            return fail(FilterResult::Failure::UnknownVariable, word, tokenStart_);
        result_.filterSql += place->table + u'.' + place->field;
        return joinTable(result_, place->table, around_) || fail(FilterResult::Failure::Ended, word, tokenStart_);
    }
};

/// True if the engine can read the condition where it will stand; what it says otherwise is nobody's error.
bool isReadable(const QString& condition, bool grouped) {
    const dao::KeptErrors kept;
    try {
        dao::parseStatement(u"SELECT T.F FROM T WHERE "_s + condition + (grouped ? u" GROUP BY T.F;"_s : QString()));
        return true;
    } catch (const dao::Error&) {
        return false;
    }
}

QString columnOf(const VariablePlace& place) {
    const auto isNameCharacter = [](QChar c) { return c.isLetterOrNumber() || c == u'_'; };
    const bool plain =
        std::ranges::all_of(place.field, isNameCharacter) && !place.field.isEmpty() && !place.field[0].isNumber();
    return place.table + u'.' + (plain ? place.field : u'[' + place.field + u']');
}

/// The condition by the wider grammar.
FilterResult readWidely(const QString& text, const FilterSurroundings& around) {
    const ParsedFilter parsed = parseFilter(text);
    FilterResult result;
    const auto fail = [&result](FilterResult::Failure failure, const QString& culprit, const auto& spot) {
        result.failure = failure;
        result.culprit = culprit;
        result.position = spot.position;
        result.length = spot.length;
        return result;
    };
    if (parsed.fault != FilterFault::None) {
        result.fault = parsed.fault;
        result.about = parsed.about;
        const bool character = parsed.fault == FilterFault::IllegalCharacter;
        return fail(character ? FilterResult::Failure::IllegalCharacter : FilterResult::Failure::Syntax,
                    character ? parsed.about.value(0) : QString(), parsed);
    }
    for (const ParsedFilter::Piece& piece : parsed.pieces) {
        if (!piece.variable) {
            result.filterSql += piece.text;
            continue;
        }
        bool ended = false;
        const std::optional<VariablePlace> place = around.find(piece.text, ended);
        if (ended)
            return fail(FilterResult::Failure::Ended, piece.text, piece);
        if (!place)
            return fail(FilterResult::Failure::UnknownVariable, piece.text, piece);
        result.filterSql += columnOf(*place);
        if (!joinTable(result, place->table, around))
            return fail(FilterResult::Failure::Ended, piece.text, piece);
    }
    // What the statement adds must not go to the last alternative alone.
    if (parsed.alternatives)
        result.filterSql = u'(' + result.filterSql + u')';
    if (!isReadable(result.filterSql, around.grouped)) {
        result.fault = FilterFault::TooMuch;
        return fail(FilterResult::Failure::Syntax, QString(), parsed);
    }
    return result;
}

/// The variable whose name holds a character that the pass refuses, as it should have been written.
QString bracketedName(const QString& text, qsizetype position, const FilterSurroundings& around) {
    qsizetype start = position, end = position;
    while (start > 0 && !isDelimiter(text[start - 1]))
        --start;
    while (end < text.size() && !isDelimiter(text[end]))
        ++end;
    const QString name = text.mid(start, end - start);
    bool ended = false;
    return filterName(name) != name && around.find(name, ended) ? filterName(name) : QString();
}

/// A name right behind a comparison is a column to the pass and to the engine; it may as well be a variable, whose
/// column has another name or lies in another table.
bool comparesWithName(const QString& text) {
    const std::vector<FilterToken> tokens = filterTokens(text);
    for (size_t i = 1; i < tokens.size(); ++i)
        if (tokens[i - 1].kind == FilterToken::Kind::Sign &&
            (tokens[i].kind == FilterToken::Kind::Name || tokens[i].kind == FilterToken::Kind::Word))
            return true;
    return false;
}

/// Whether what the pass said of a text holds: it knows neither the signs of the wider grammar nor its words.
bool passIsRight(const QString& text, const FilterResult& pass) {
    if (pass.failure == FilterResult::Failure::IllegalCharacter)
        return !u"[]'\".,"_s.contains(pass.culprit);
    for (const FilterToken& token : filterTokens(text))
        if (token.position <= pass.position && pass.position < token.end())
            return token.kind == FilterToken::Kind::Word && !token.is(u"IN");
    return false;
}

} // namespace

FilterResult translateFilter(const QString& text, const FilterSurroundings& surroundings) {
    return FilterPass(text, surroundings).run();
}

FilterResult readFilter(const QString& text, const FilterSurroundings& surroundings) {
    FilterResult pass = translateFilter(text, surroundings);
    switch (pass.failure) {
    case FilterResult::Failure::None:
        if (!isReadable(pass.filterSql, surroundings.grouped))
            break;
        if (!(text.contains(u'[') || comparesWithName(text)) || !surroundings.knowsNames ||
            surroundings.knowsNames(pass))
            return pass;
        // A word that is no variable either was meant as a text, which the run says.
        if (FilterResult wide = readWidely(text, surroundings); wide.failure == FilterResult::Failure::None ||
                                                                wide.failure == FilterResult::Failure::Ended ||
                                                                text.contains(u'['))
            return wide;
        return pass;
    case FilterResult::Failure::Ended:
        return pass;
    default:
        pass.bracketed = bracketedName(text, pass.position, surroundings);
        if (!pass.bracketed.isEmpty() || passIsRight(text, pass))
            return pass;
    }
    return readWidely(text, surroundings);
}

QString FilterResult::objection() const {
    QString words;
    switch (failure) {
    case Failure::None:
    case Failure::Ended:
        return {};
    case Failure::IllegalCharacter:
        words = faultText(FilterFault::IllegalCharacter, {culprit});
        break;
    case Failure::UnknownVariable:
        words = culprit + u' ' + TranslateText(u"nicht gefunden"_s);
        break;
    case Failure::Syntax:
        return faultText(fault, about);
    }
    return bracketed.isEmpty()
               ? words
               : words + u'\n' + TranslateText(u"Der Name gehört in eckige Klammern:"_s) + u' ' + bracketed;
}

QString FilterResult::notice() const {
    if (lost.isEmpty())
        return {};
    if (isFilterOperator(lost))
        return faultText(FilterFault::NoCondition, {lost});
    return TranslateText(u"Ein Name am Ende zählt nur, wenn ein Leerzeichen folgt:"_s) + u' ' + lost;
}
