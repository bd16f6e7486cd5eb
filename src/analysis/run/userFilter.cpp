#include "analysis/run/userFilter.h"

#include "analysis/request/filterWords.h"

using namespace Qt::StringLiterals;

namespace {

bool isDelimiter(QChar c) {
    return u" ()<=>"_s.contains(c);
}
bool isWordCharacter(QChar c) {
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || c == u'_' || c == u'-';
}
bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

class FilterPass {
public:
    FilterPass(const QString& text, const FilterSurroundings& surroundings) : text_(text), around_(surroundings) {}

    FilterResult run() {
        for (qsizetype i = 0; i < text_.size() && result_.failure == FilterResult::Failure::None; ++i)
            take(i);
        if (result_.failure == FilterResult::Failure::None && tokenStart_ >= 0)
            result_.lost = text_.mid(tokenStart_);
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
        } else if (isWordCharacter(c)) {
            if (tokenStart_ < 0)
                tokenStart_ = i;
        } else if (isDigit(c)) {
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

    bool fail(FilterResult::Failure failure, const QString& culprit, qsizetype position) {
        result_.position = position;
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
        const QString& table = place->table;
        if (around_.joinedAlready.contains(table, Qt::CaseInsensitive) || result_.joins.contains(table))
            return true;
        result_.joins.add(table, u" INNER JOIN "_s + table + u" ON q.ID = "_s + table + u".dt_CaseID) "_s);
        return around_.attach(table) || fail(FilterResult::Failure::Ended, word, tokenStart_);
    }
};

} // namespace

FilterResult translateFilter(const QString& text, const FilterSurroundings& surroundings) {
    return FilterPass(text, surroundings).run();
}
