#include "tables/storedText.h"

#include <algorithm>

namespace {

constexpr QChar quote = u'"', fieldEnd = u';', joiner = QChar(0x2060);
constexpr qsizetype mostDigits = 9;

/// Where the word joiners end that stand behind a quote in front of ";"; the place itself where there are none or
/// something else follows them.
qsizetype behindJoiners(QStringView text, qsizetype quoteAt) {
    qsizetype at = quoteAt + 1;
    while (at < text.size() && text[at] == joiner)
        ++at;
    return at < text.size() && text[at] == fieldEnd ? at : -1;
}

/// A text with one joiner more, or one less, wherever a quote and ";" belong to it.
QString withJoiners(QStringView text, bool more) {
    QString result;
    result.reserve(text.size() + 2);
    for (qsizetype i = 0; i < text.size(); ++i) {
        result += text[i];
        if (text[i] != quote || behindJoiners(text, i) < 0)
            continue;
        if (more)
            result += joiner;
        else
            ++i; // a quote directly in front of ";" would have ended the field
    }
    return result;
}

} // namespace

QString quotedField(const QString& text) {
    return quote + withJoiners(text, true) + quote + fieldEnd;
}

QString numberField(int number) {
    return QString::number(number) + fieldEnd;
}

std::optional<QString> StoredFields::quoted() {
    if (left_.isEmpty() || left_[0] != quote)
        return std::nullopt;
    for (qsizetype at = left_.indexOf(quote, 1); at >= 0; at = left_.indexOf(quote, at + 1)) {
        if (at + 1 >= left_.size() || left_[at + 1] != fieldEnd)
            continue;
        const QStringView text = left_.sliced(1, at - 1);
        left_ = left_.sliced(at + 2);
        return withJoiners(text, false);
    }
    return std::nullopt;
}

std::optional<QString> StoredFields::plain() {
    const qsizetype end = left_.indexOf(fieldEnd);
    if (end < 0)
        return std::nullopt;
    const QString text = left_.first(end).toString();
    left_ = left_.sliced(end + 1);
    return text;
}

std::optional<int> StoredFields::number() {
    const std::optional<QString> text = plain();
    if (!text)
        return std::nullopt;
    const QStringView digits = QStringView(*text).sliced(text->startsWith(u'-') ? 1 : 0);
    if (digits.isEmpty() || digits.size() > mostDigits ||
        !std::ranges::all_of(digits, [](QChar c) { return c >= u'0' && c <= u'9'; }))
        return std::nullopt;
    return text->toInt();
}
