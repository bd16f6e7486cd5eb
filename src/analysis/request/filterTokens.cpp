#include "analysis/request/filterTokens.h"

#include "analysis/request/filterWords.h"

#include <QRegularExpression>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Kind = FilterToken::Kind;

/// Reads the tokens from left to right; every read... function begins at the token's first character.
class Reader {
public:
    explicit Reader(const QString& text) : text_(text) {}

    std::vector<FilterToken> readAll() {
        std::vector<FilterToken> tokens;
        do {
            while (at_ < text_.size() && text_[at_].isSpace())
                ++at_;
            tokens.push_back(readToken(!tokens.empty() && followsValue(tokens.back())));
        } while (tokens.back().kind != Kind::End);
        return tokens;
    }

private:
    const QString& text_;
    qsizetype at_ = 0;

    static bool followsValue(const FilterToken& last) {
        const bool operatorWord = isFilterOperator(last.text) || last.is(u"IN");
        return last.kind == Kind::Close || (last.isOperand() && !(last.kind == Kind::Word && operatorWord));
    }

    QChar charAt(qsizetype offset) const { return offset < text_.size() ? text_[offset] : QChar(); }
    bool digitAt(qsizetype offset) const { return isFilterDigit(charAt(offset)); }
    /// A digit, or a point before one.
    bool numberAt(qsizetype offset) const { return digitAt(offset) || (charAt(offset) == u'.' && digitAt(offset + 1)); }

    FilterToken take(Kind kind, qsizetype end, QString text = QString()) {
        FilterToken token{kind, at_, end - at_, std::move(text)};
        if (token.text.isNull())
            token.text = text_.mid(at_, end - at_);
        at_ = end;
        return token;
    }

    FilterToken readToken(bool behindValue) {
        if (at_ >= text_.size())
            return take(Kind::End, at_, u""_s);
        const QChar c = text_[at_];
        if (numberAt(at_) || (c == u'-' && !behindValue && numberAt(at_ + 1)))
            return readNumber();
        if (beginsFilterName(c))
            return take(Kind::Word, endOf(isInFilterName));
        if (c == u'\'' || c == u'"')
            return readText(c);
        if (c == u'<' || c == u'=' || c == u'>')
            return take(Kind::Sign, endOf([](QChar one) { return one == u'<' || one == u'=' || one == u'>'; }));
        switch (c.unicode()) {
        case u'[':
            return readName();
        case u'(':
            return take(Kind::Open, at_ + 1);
        case u')':
            return take(Kind::Close, at_ + 1);
        case u',':
            return take(Kind::Comma, at_ + 1);
        default:
            return take(Kind::Illegal, at_ + (c.isHighSurrogate() ? 2 : 1));
        }
    }

    template<class Belongs>
    qsizetype endOf(Belongs&& belongs, qsizetype from = -1) const {
        qsizetype end = from < 0 ? at_ : from;
        while (end < text_.size() && belongs(text_[end]))
            ++end;
        return end;
    }

    FilterToken readNumber() {
        qsizetype end = endOf(isFilterDigit, charAt(at_) == u'-' ? at_ + 1 : at_);
        if (charAt(end) == u'.')
            end = endOf(isFilterDigit, end + 1);
        if (charAt(end).toLower() == u'e') {
            const bool sign = charAt(end + 1) == u'+' || charAt(end + 1) == u'-';
            if (digitAt(end + (sign ? 2 : 1)))
                end = endOf(isFilterDigit, end + (sign ? 2 : 1));
        }
        return take(Kind::Number, end);
    }

    FilterToken readText(QChar quote) {
        QString held = u""_s;
        for (qsizetype begin = at_ + 1;;) {
            const qsizetype closing = text_.indexOf(quote, begin);
            if (closing < 0)
                return take(Kind::OpenText, text_.size(), text_.mid(at_ + 1));
            held += QStringView(text_).mid(begin, closing - begin);
            if (charAt(closing + 1) != quote)
                return take(Kind::Text, closing + 1, held);
            held += quote;
            begin = closing + 2;
        }
    }

    FilterToken readName() {
        const qsizetype closing = text_.indexOf(u']', at_);
        if (closing < 0)
            return take(Kind::OpenName, text_.size(), text_.mid(at_ + 1));
        const QString name = text_.mid(at_ + 1, closing - at_ - 1).trimmed();
        return take(Kind::Name, closing + 1, name.isNull() ? u""_s : name);
    }
};

bool isVariable(const FilterToken& token) {
    return token.kind == Kind::Name || (token.kind == Kind::Word && !isFilterOperator(token.text) && !token.is(u"IN"));
}

/// The variable with which the value is compared that stands at, or would stand before, a token: "V7=1",
/// "V7 IN (1, 2".
QString comparedWith(const std::vector<FilterToken>& tokens, size_t place) {
    size_t at = place;
    while (at > 0 && (tokens[at - 1].kind == Kind::Comma || tokens[at - 1].kind == Kind::Number ||
                      tokens[at - 1].kind == Kind::Text))
        --at;
    if (at > 1 && tokens[at - 1].kind == Kind::Open && tokens[at - 2].is(u"IN"))
        at -= at > 2 && tokens[at - 3].is(u"NOT") ? 3 : 2;
    else if (at == place && at > 0 && tokens[at - 1].kind == Kind::Sign)
        at -= 1;
    else
        return {};
    return at > 0 && isVariable(tokens[at - 1]) ? tokens[at - 1].text : QString();
}

} // namespace

QString filterName(const QString& name) {
    const bool plain = !name.isEmpty() && beginsFilterName(name[0]) && name[0] != u'-' &&
                       std::ranges::all_of(name, isInFilterName) && !isFilterOperator(name) &&
                       name.compare("IN"_L1, Qt::CaseInsensitive) != 0;
    return plain ? name : u'[' + name + u']';
}

QString filterValue(const QString& value) {
    static const QRegularExpression number(u"\\A-?(?:0|[1-9][0-9]*)(?:\\.[0-9]*[1-9])?\\z"_s);
    return number.match(value).hasMatch() ? value : u'\'' + QString(value).replace(u'\'', u"''"_s) + u'\'';
}

std::vector<FilterToken> filterTokens(const QString& text) {
    return Reader(text).readAll();
}

FilterPlace filterPlace(const QString& text, qsizetype cursor) {
    const std::vector<FilterToken> tokens = filterTokens(text);
    FilterPlace place;
    place.start = cursor;
    // The token that the cursor is in or right behind.
    size_t at = 0;
    while (tokens[at].kind != Kind::End && tokens[at].end() < cursor)
        ++at;
    const FilterToken& token = tokens[at];
    const bool touched = token.kind != Kind::End && token.position < cursor;
    const bool opensName = token.kind == Kind::OpenName || token.kind == Kind::Name;
    if (touched &&
        (token.kind == Kind::Word || (opensName && (token.kind == Kind::OpenName || cursor < token.end())))) {
        place.start = token.position;
        const qsizetype from = token.position + (opensName ? 1 : 0);
        place.name = text.mid(from, cursor - from);
    }
    const bool valued = token.kind == Kind::Number || token.kind == Kind::Text || token.kind == Kind::OpenText;
    const bool inValue = touched && (valued || token.kind == Kind::Word);
    // What is to come stands behind the token that the cursor touches.
    place.variable = comparedWith(tokens, touched && !inValue ? at + 1 : at);
    if (!place.variable.isEmpty()) {
        place.value = inValue ? token.position : cursor;
        place.valueLength = inValue ? token.length : 0;
        return place;
    }
    // Else the last variable up to here.
    for (size_t i = 0; i <= at && tokens[i].position < cursor; ++i)
        if (isVariable(tokens[i]))
            place.variable = tokens[i].text;
    return place;
}
