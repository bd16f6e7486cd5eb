#include "platform/dao/Lexer.h"

#include "platform/dao/Error.h"

#include <QDate>
#include <QRegularExpression>
#include <QTime>
#include <optional>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

using Kind = Token::Kind;

constexpr bool isDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

/// yyyy-mm-dd as it is, m/d/yyyy (month first, wherever the system runs) as yyyy-mm-dd, either with a time behind it.
std::optional<QString> isoDate(const QString& text) {
    static const QRegularExpression form(u"^(?:([0-9]{4})-([0-9]{2})-([0-9]{2})|([0-9]{1,2})/([0-9]{1,2})/([0-9]{4}))"
                                         "(?:[ T]([0-9]{1,2}):([0-9]{2})(?::([0-9]{2}))?)?$"_s);
    const QRegularExpressionMatch match = form.match(text);
    const auto number = [&](int group) { return match.captured(group).toInt(); };
    const bool iso = match.hasCaptured(1);
    const QDate date = iso ? QDate(number(1), number(2), number(3)) : QDate(number(6), number(4), number(5));
    const bool timed = match.hasCaptured(7);
    const QTime time(number(7), number(8), number(9));
    if (!match.hasMatch() || !date.isValid() || !time.isValid())
        return std::nullopt;
    if (iso)
        return text;
    return date.toString(Qt::ISODate) + (timed ? time.toString(u"'T'HH:mm:ss"_s) : QString());
}

/// Reads the tokens from left to right; every read... function begins at the token's first character.
class Reader {
public:
    Reader(const QString& statement, int errorNumber) : statement_(statement), errorNumber_(errorNumber) {}

    std::vector<Token> readAll() {
        std::vector<Token> tokens;
        do {
            tokens.push_back(readToken());
        } while (tokens.back().kind != Kind::End);
        return tokens;
    }

private:
    char16_t at(qsizetype offset) const { return offset < statement_.size() ? statement_[offset].unicode() : u'\0'; }

    char32_t codePointAt(qsizetype offset) const {
        const char16_t unit = at(offset);
        if (QChar::isHighSurrogate(unit) && QChar::isLowSurrogate(at(offset + 1)))
            return QChar::surrogateToUcs4(unit, at(offset + 1));
        return unit;
    }

    /// Length in code units of the name character at the offset, 0 if there is none.
    int nameCharacterAt(qsizetype offset, bool first) const {
        const char32_t c = codePointAt(offset);
        const bool fits = QChar::isLetter(c) || c == U'_' ||
                          (!first && (QChar::isNumber(c) || QChar::isMark(c) || c == U'$' || c == U'@'));
        return !fits ? 0 : QChar::requiresSurrogates(c) ? 2 : 1;
    }

    Token take(Kind kind, qsizetype end, QString text = QString()) {
        Token token{kind, static_cast<int>(offset_), static_cast<int>(end), std::move(text)};
        offset_ = end;
        afterName_ = kind == Kind::Name || kind == Kind::BracketedName;
        return token;
    }

    [[noreturn]] void fail(const QString& what, qsizetype offset) const {
        raiseEngineError(errorNumber_, u"%1 at position %2"_s.arg(what, QString::number(offset + 1)));
    }

    Token readToken() {
        const qsizetype previousEnd = offset_;
        while (offset_ < statement_.size() && statement_[offset_].isSpace())
            ++offset_;
        if (offset_ >= statement_.size())
            return take(Kind::End, offset_);
        if (nameCharacterAt(offset_, true))
            return readName();
        const char16_t c = at(offset_);
        // "T.5" is a name and a dot, ".5" a number.
        const bool separator = c == u'.' && afterName_ && offset_ == previousEnd;
        if (isDigit(c) || (c == u'.' && isDigit(at(offset_ + 1)) && !separator))
            return readNumber();
        switch (c) {
        case u'\'':
        case u'"':
            return readText(c);
        case u'#':
            return readDate();
        case u'[':
            return readBracketedName();
        default:
            return readSign(c);
        }
    }

    Token readName() {
        qsizetype end = offset_;
        while (const int length = nameCharacterAt(end, false))
            end += length;
        return take(Kind::Name, end, statement_.mid(offset_, end - offset_));
    }

    /// Digits that go on with "_" are a name: case tables are called after their study, and "1919_1" is one.
    Token readNumber() {
        qsizetype end = offset_;
        while (isDigit(at(end)))
            ++end;
        if (at(end) == u'_')
            return readName();
        if (at(end) == u'.') {
            ++end;
            while (isDigit(at(end)))
                ++end;
        }
        if (at(end) == u'e' || at(end) == u'E') {
            qsizetype exponent = end + 1;
            if (at(exponent) == u'+' || at(exponent) == u'-')
                ++exponent;
            if (isDigit(at(exponent))) {
                end = exponent;
                while (isDigit(at(end)))
                    ++end;
            }
        }
        return take(Kind::Number, end, statement_.mid(offset_, end - offset_));
    }

    Token readText(char16_t quote) {
        QString text;
        for (qsizetype begin = offset_ + 1;;) {
            const qsizetype closing = statement_.indexOf(QChar(quote), begin);
            if (closing < 0)
                fail(u"a text has no closing %1; it begins"_s.arg(QChar(quote)), offset_);
            text += QStringView(statement_).mid(begin, closing - begin);
            if (at(closing + 1) != quote)
                return take(Kind::Text, closing + 1, std::move(text));
            text += QChar(quote);
            begin = closing + 2;
        }
    }

    /// #...# becomes the text in which the files hold dates.
    Token readDate() {
        const qsizetype closing = statement_.indexOf(u'#', offset_ + 1);
        if (closing < 0)
            fail(u"a date has no closing #; it begins"_s, offset_);
        const std::optional<QString> text = isoDate(statement_.mid(offset_ + 1, closing - offset_ - 1).trimmed());
        if (!text)
            fail(u"no date of the form yyyy-mm-dd or m/d/yyyy"_s, offset_);
        return take(Kind::Text, closing + 1, *text);
    }

    Token readBracketedName() {
        const qsizetype closing = statement_.indexOf(u']', offset_);
        if (closing < 0)
            fail(u"a name has no closing ]; it begins"_s, offset_);
        const QString name = statement_.mid(offset_ + 1, closing - offset_ - 1);
        if (name.trimmed().isEmpty())
            fail(u"a name in brackets is empty"_s, offset_);
        return take(Kind::BracketedName, closing + 1, name);
    }

    Token readSign(char16_t c) {
        const char16_t second = at(offset_ + 1);
        switch (c) {
        case u'=':
            return take(Kind::Equal, offset_ + 1);
        case u'<':
            return second == u'>'   ? take(Kind::NotEqual, offset_ + 2)
                   : second == u'=' ? take(Kind::LessOrEqual, offset_ + 2)
                                    : take(Kind::Less, offset_ + 1);
        case u'>':
            return second == u'=' ? take(Kind::GreaterOrEqual, offset_ + 2) : take(Kind::Greater, offset_ + 1);
        case u'+':
            return take(Kind::Plus, offset_ + 1);
        case u'-':
            return take(Kind::Minus, offset_ + 1);
        case u'*':
            return take(Kind::Star, offset_ + 1);
        case u'/':
            return take(Kind::Slash, offset_ + 1);
        case u'\\':
            return take(Kind::Backslash, offset_ + 1);
        case u'^':
            return take(Kind::Caret, offset_ + 1);
        case u'&':
            return take(Kind::Ampersand, offset_ + 1);
        case u',':
            return take(Kind::Comma, offset_ + 1);
        case u'.':
            return take(Kind::Dot, offset_ + 1);
        case u'!':
            return take(Kind::Exclamation, offset_ + 1);
        case u'(':
            return take(Kind::Open, offset_ + 1);
        case u')':
            return take(Kind::Close, offset_ + 1);
        case u';':
            return take(Kind::Semicolon, offset_ + 1);
        default:
            fail(u"the character %1 has no meaning here,"_s.arg(
                     statement_.mid(offset_, QChar::isHighSurrogate(c) ? 2 : 1)),
                 offset_);
        }
    }

    const QString& statement_;
    int errorNumber_;
    qsizetype offset_ = 0;
    bool afterName_ = false;
};

} // namespace

std::vector<Token> tokenize(const QString& statement, int errorNumber) {
    return Reader(statement, errorNumber).readAll();
}

} // namespace dao
