#include "analysis/run/filterGrammar.h"

#include "analysis/request/filterTokens.h"
#include "analysis/request/filterWords.h"
#include "app/globals.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Kind = FilterToken::Kind;

constexpr qsizetype mostCharacters = 10'000;
constexpr int mostDepth = 50;

bool isOperator(const FilterToken& token) {
    return token.kind == Kind::Word && isFilterOperator(token.text);
}

/// Reads from left to right; every read... function answers whether all is well so far.
class FilterParser {
public:
    explicit FilterParser(const QString& text) : text_(text), tokens_(filterTokens(text)) {}

    ParsedFilter read() {
        if (text_.size() > mostCharacters)
            fail(FilterFault::TooMuch, tokens_.back());
        else if (isAt(Kind::End))
            fail(FilterFault::Empty, now());
        else if (tokensAreWhole() && readAlternatives(true) && !isAt(Kind::End))
            failBehind();
        return std::move(result_);
    }

private:
    const QString& text_;
    std::vector<FilterToken> tokens_;
    size_t at_ = 0;
    qsizetype written_ = 0; ///< up to where the text stands in the pieces
    int depth_ = 0;
    ParsedFilter result_;

    const FilterToken& now() const { return tokens_[at_]; }
    const FilterToken& next(size_t ahead = 1) const { return tokens_[std::min(at_ + ahead, tokens_.size() - 1)]; }
    bool isAt(Kind kind) const { return now().kind == kind; }
    bool isAt(QStringView word) const { return now().is(word); }
    bool isAtOperand() const { return now().isOperand() && !isOperator(now()); }

    bool fail(FilterFault fault, const FilterToken& where, const QStringList& about) {
        result_.fault = fault;
        result_.about = about;
        result_.position = where.position;
        result_.length = where.length;
        return false;
    }
    bool fail(FilterFault fault, const FilterToken& where) { return fail(fault, where, {written(where)}); }

    QString written(const FilterToken& token) const { return text_.mid(token.position, token.length); }

    /// What makes the rest unreadable is said first, wherever it stands.
    bool tokensAreWhole() {
        for (const FilterToken& token : tokens_)
            switch (token.kind) {
            case Kind::Illegal:
                return fail(FilterFault::IllegalCharacter, token);
            case Kind::OpenText:
                return fail(FilterFault::OpenText, token);
            case Kind::OpenName:
                return fail(FilterFault::OpenName, token);
            case Kind::Name:
                if (token.text.isEmpty())
                    return fail(FilterFault::EmptyName, token);
                break;
            default:
                break;
            }
        return true;
    }

    // ---- what is read becomes pieces

    void write(const QString& text) {
        if (result_.pieces.empty() || result_.pieces.back().variable)
            result_.pieces.push_back({text});
        else
            result_.pieces.back().text += text;
    }
    /// Whatever blanks stand before the token are plain ones.
    void writeGap() {
        if (now().position > written_)
            write(QString(now().position - written_, u' '));
        written_ = now().end();
    }
    bool take(const QString& text) {
        writeGap();
        write(text);
        ++at_;
        return true;
    }
    bool take() { return take(now().text); }

    // ---- grammar

    bool readAlternatives(bool outermost) {
        if (!readJoined())
            return false;
        while (isAt(u"OR")) {
            result_.alternatives = result_.alternatives || outermost;
            if (!readBehind(take()) || !readJoined())
                return false;
        }
        return true;
    }

    bool readJoined() {
        if (!readCondition())
            return false;
        while (isAt(u"AND"))
            if (!readBehind(take()) || !readCondition())
                return false;
        return true;
    }

    /// Behind AND, OR and NOT there is to be a condition.
    bool readBehind(bool) {
        const FilterToken& word = tokens_[at_ - 1];
        if (isAt(Kind::End) || isAt(Kind::Close))
            return fail(FilterFault::NoCondition, word);
        if (isAt(u"AND") || isAt(u"OR"))
            return fail(FilterFault::NoConditionBetween, now(), {written(word), written(now())});
        return true;
    }

    bool readCondition() {
        while (isAt(u"NOT"))
            if (!readBehind(take()))
                return false;
        if (isAt(u"AND") || isAt(u"OR"))
            return fail(FilterFault::NoConditionBefore, now());
        return isAt(Kind::Open) ? readBrackets() : readComparison();
    }

    bool readBrackets() {
        const FilterToken opening = now();
        if (++depth_ > mostDepth)
            return fail(FilterFault::TooMuch, opening);
        take();
        if (isAt(Kind::Close))
            return fail(FilterFault::EmptyBrackets, opening);
        if (isAt(Kind::End))
            return fail(FilterFault::OpenBracket, opening);
        if (!readAlternatives(false))
            return false;
        if (isAt(Kind::End))
            return fail(FilterFault::OpenBracket, opening);
        if (!isAt(Kind::Close))
            return failBehind();
        --depth_;
        return take();
    }

    /// A condition is at its end, and something else follows than what joins it to another.
    bool failBehind() {
        return fail(isAt(Kind::Close)   ? FilterFault::ClosingBracket
                    : isAt(Kind::Comma) ? FilterFault::IllegalCharacter
                                        : FilterFault::NoOperator,
                    now());
    }

    bool readComparison() {
        if (isAt(Kind::Sign) || isAt(Kind::Close) || isAt(Kind::Comma) || isAt(Kind::End))
            return fail(isAt(Kind::Sign)    ? FilterFault::NoVariable
                        : isAt(Kind::Close) ? FilterFault::ClosingBracket
                                            : FilterFault::IllegalCharacter,
                        now());
        const FilterToken left = now();
        readOperand();
        if (isAt(u"IN") || (isAt(u"NOT") && next().is(u"IN")))
            return readList(left);
        if (!isAt(Kind::Sign))
            return fail(FilterFault::NoComparison, left);
        const FilterToken sign = now();
        if (!QStringList{u"="_s, u"<>"_s, u"<"_s, u">"_s, u"<="_s, u">="_s}.contains(sign.text))
            return fail(FilterFault::NoSuchSign, sign);
        take();
        if (isAt(Kind::Sign))
            return fail(FilterFault::TwoSigns, now(), {written(sign), written(now())});
        if (!isAtOperand())
            return fail(FilterFault::NoValue, sign);
        noteComparison(left, now());
        noteComparison(now(), left);
        readOperand();
        return true;
    }

    void noteComparison(const FilterToken& variable, const FilterToken& value) {
        if ((variable.kind == Kind::Name || variable.kind == Kind::Word) &&
            (value.kind == Kind::Number || value.kind == Kind::Text))
            result_.comparisons.push_back({variable.text, value.text, value.kind == Kind::Text});
    }

    void readOperand() {
        switch (now().kind) {
        case Kind::Number:
            readNumber();
            break;
        case Kind::Text:
            readText();
            break;
        default:
            writeGap();
            result_.pieces.push_back({now().text, true, now().position, now().length});
            ++at_;
        }
    }

    void readText() { take(u'\'' + QString(now().text).replace(u'\'', u"''"_s) + u'\''); }

    /// "1,5" is one number where no list is.
    void readNumber() {
        const auto isWhole = [](const QString& digits) { return std::ranges::all_of(digits, isFilterDigit); };
        const FilterToken& comma = next();
        const FilterToken& decimals = next(2);
        const QString& whole = now().text;
        const bool one = comma.kind == Kind::Comma && decimals.kind == Kind::Number && comma.position == now().end() &&
                         decimals.position == comma.end() && isWhole(whole.startsWith(u'-') ? whole.mid(1) : whole) &&
                         isWhole(decimals.text);
        if (!one) {
            take();
            return;
        }
        const QString point = whole + u'.' + decimals.text;
        writeGap();
        write(point);
        written_ = decimals.end();
        at_ += 3;
    }

    bool readList(const FilterToken& left) {
        if (isAt(u"NOT"))
            take();
        const FilterToken in = now();
        take();
        if (!isAt(Kind::Open))
            return fail(FilterFault::NoList, in);
        const FilterToken opening = now();
        take();
        if (isAt(Kind::Close))
            return fail(FilterFault::EmptyList, opening);
        for (;;) {
            if (isAt(Kind::End))
                return fail(FilterFault::OpenBracket, opening);
            noteComparison(left, now());
            if (isAt(Kind::Number))
                take();
            else if (isAt(Kind::Text))
                readText();
            else
                return fail(FilterFault::NoListValue, now());
            if (isAt(Kind::Close))
                return take();
            if (isAt(Kind::End))
                return fail(FilterFault::OpenBracket, opening);
            if (!isAt(Kind::Comma))
                return fail(FilterFault::NoListValue, now());
            take();
        }
    }
};

} // namespace

ParsedFilter parseFilter(const QString& text) {
    return FilterParser(text).read();
}

QString faultText(FilterFault fault, const QStringList& about) {
    QString words;
    switch (fault) {
    case FilterFault::None:
        return {};
    case FilterFault::IllegalCharacter:
        return TranslateText(u"Unerlaubtes Zeichen:"_s) + u' ' + about.value(0);
    case FilterFault::Empty:
        words = u"Der Filter ist leer."_s;
        break;
    case FilterFault::OpenBracket:
        words = u"Eine Klammer ist nicht geschlossen."_s;
        break;
    case FilterFault::ClosingBracket:
        words = u"Eine Klammer wird geschlossen, die nicht geöffnet ist."_s;
        break;
    case FilterFault::EmptyBrackets:
        words = u"Zwischen den Klammern fehlt eine Bedingung."_s;
        break;
    case FilterFault::OpenText:
        words = u"Ein Anführungszeichen ist nicht geschlossen."_s;
        break;
    case FilterFault::OpenName:
        words = u"Eine eckige Klammer ist nicht geschlossen."_s;
        break;
    case FilterFault::EmptyName:
        words = u"Zwischen den eckigen Klammern fehlt ein Name."_s;
        break;
    case FilterFault::NoValue:
        words = u"Hinter %1 fehlt ein Wert."_s;
        break;
    case FilterFault::NoCondition:
        words = u"Hinter %1 fehlt eine Bedingung."_s;
        break;
    case FilterFault::NoConditionBefore:
        words = u"Vor %1 fehlt eine Bedingung."_s;
        break;
    case FilterFault::NoConditionBetween:
        words = u"Zwischen %1 und %2 fehlt eine Bedingung."_s;
        break;
    case FilterFault::TwoSigns:
        words = u"Zwischen %1 und %2 fehlt ein Wert."_s;
        break;
    case FilterFault::NoSuchSign:
        words = u"Ein Vergleichszeichen %1 gibt es nicht."_s;
        break;
    case FilterFault::NoComparison:
        words = u"Hinter %1 fehlt ein Vergleich."_s;
        break;
    case FilterFault::NoVariable:
        words = u"Vor %1 fehlt eine Variable."_s;
        break;
    case FilterFault::NoOperator:
        words = u"Vor %1 fehlt AND oder OR."_s;
        break;
    case FilterFault::NoList:
        words = u"Hinter %1 fehlt eine Liste in Klammern."_s;
        break;
    case FilterFault::EmptyList:
        words = u"Die Liste der Werte ist leer."_s;
        break;
    case FilterFault::NoListValue:
        words = u"In einer Liste stehen nur Werte mit Kommas dazwischen, nicht %1."_s;
        break;
    case FilterFault::TooMuch:
        words = u"Der Filter ist zu lang oder zu tief verschachtelt."_s;
        break;
    }
    words = TranslateText(words);
    // At once, so that nothing in a text is taken for a place.
    return about.size() > 1 && words.contains("%2"_L1) ? words.arg(about[0], about[1])
           : words.contains("%1"_L1)                   ? words.arg(about.value(0))
                                                       : words;
}
