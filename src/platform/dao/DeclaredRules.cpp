#include "platform/dao/DeclaredRules.h"

#include "platform/dao/Connection.h"
#include "platform/dao/SqlText.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

/// Words before a bracket inside a rule that are no functions, and functions that take no longer than their arguments
/// are long and give nothing longer.
constexpr std::array<QByteArrayView, 20> harmlessWords = {
    "and",   "or",  "not",    "in",     "between", "case",  "when",     "then",  "else",  "is",
    "check", "key", "length", "typeof", "abs",     "round", "coalesce", "lower", "upper", "where"};
/// Words that run a function without brackets.
constexpr std::array<QByteArrayView, 4> patternWords = {"like", "glob", "regexp", "match"};

template<size_t count>
bool isAmong(const std::array<QByteArrayView, count>& words, QByteArrayView word) {
    return std::any_of(words.begin(), words.end(),
                       [&](QByteArrayView one) { return one.compare(word, Qt::CaseInsensitive) == 0; });
}

bool isWordByte(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$' ||
           static_cast<unsigned char>(c) >= 0x80;
}

/// Where the text that begins at `at` with one of the quotes ' " ` [ ends; a doubled quote is part of it.
qsizetype behindQuoted(QByteArrayView sql, qsizetype at) {
    const char close = sql[at] == '[' ? ']' : sql[at];
    for (++at; at < sql.size(); ++at) {
        if (sql[at] == close) {
            if (close == ']' || at + 1 >= sql.size() || sql[at + 1] != close) {
                return at + 1;
            }
            ++at;
        }
    }
    return sql.size();
}

qsizetype behindComment(QByteArrayView sql, qsizetype at) {
    const bool toLineEnd = sql[at] == '-';
    const qsizetype end = toLineEnd ? sql.indexOf('\n', at) : sql.indexOf("*/", at + 2);
    return end < 0 ? sql.size() : end + (toLineEnd ? 1 : 2);
}

bool startsWithWords(QByteArrayView sql, std::initializer_list<QByteArrayView> words) {
    for (const QByteArrayView word : words) {
        sql = sql.trimmed();
        if (sql.size() <= word.size() || isWordByte(sql[word.size()]) ||
            sql.first(word.size()).compare(word, Qt::CaseInsensitive) != 0) {
            return false;
        }
        sql = sql.sliced(word.size());
    }
    return true;
}

} // namespace

bool callsFunctions(QByteArrayView sql) {
    // In a table's list of columns a bracket holds sizes, names or a rule; before it stands a type, a rule's or another
    // table's name. In an index all is expression but the list itself.
    const bool isIndex =
        startsWithWords(sql, {"create", "index"}) || startsWithWords(sql, {"create", "unique", "index"});
    const int insideRules = isIndex ? 0 : 2;
    bool listBegan = false;
    int depth = 0;
    bool afterName = false; // a bracket here would call it
    for (qsizetype at = 0; at < sql.size();) {
        const char c = sql[at];
        const bool isComment =
            at + 1 < sql.size() && ((c == '-' && sql[at + 1] == '-') || (c == '/' && sql[at + 1] == '*'));
        if (isComment) {
            at = behindComment(sql, at);
        } else if (c == '\'' || c == '"' || c == '`' || c == '[') {
            at = behindQuoted(sql, at);
            afterName = c != '\'';
        } else if (isWordByte(c)) {
            const qsizetype begin = at;
            while (at < sql.size() && isWordByte(sql[at])) {
                ++at;
            }
            const QByteArrayView word = sql.sliced(begin, at - begin);
            if (depth >= insideRules && listBegan && isAmong(patternWords, word)) {
                return true;
            }
            afterName = !isAmong(harmlessWords, word);
        } else if (c == '(') {
            if (depth >= insideRules && afterName && listBegan) {
                return true;
            }
            listBegan = true;
            ++depth;
            ++at;
            afterName = false;
        } else if (c == '|' && at + 1 < sql.size() && sql[at + 1] == '|') {
            return true;
        } else {
            depth -= c == ')' ? 1 : 0;
            afterName = afterName && (c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f');
            ++at;
        }
    }
    return false;
}

bool isComputedField(const Statement& field) {
    constexpr int hiddenColumn = 6, whenRead = 2, whenWritten = 3;
    const qint64 hidden = field.number(hiddenColumn);
    return hidden == whenRead || hidden == whenWritten;
}

bool isPlainTable(Connection& connection, const QString& schema, const QString& table) {
    Statement kind(connection, u"PRAGMA "_s + schema + u".table_list("_s + quotedName(table) + u')');
    if (!kind.step() || kind.text(2) != u"table"_s) {
        return false;
    }
    Statement fields(connection, u"PRAGMA "_s + schema + u".table_xinfo("_s + quotedName(table) + u')');
    while (fields.step()) {
        if (isComputedField(fields)) {
            return false;
        }
    }
    return true;
}

bool computesOnWriting(Connection& connection, const QString& schema, const QString& table) {
    Statement declarations(connection,
                           u"SELECT sql FROM "_s + schema +
                               u".sqlite_schema WHERE type IN ('table', 'index') AND tbl_name = ?1 COLLATE NOCASE"_s);
    declarations.bind(1, Value(table));
    while (declarations.step()) {
        if (callsFunctions(declarations.text(0).toUtf8())) {
            return true;
        }
    }
    return false;
}

} // namespace dao
