#include "catalogue/portableNumbers.h"

#include <QFile>
#include <QHash>
#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace {

constexpr int lineLength = 80;
constexpr int splashBytes = 200; ///< before the table of characters
constexpr int tableBytes = 256;
constexpr int signatureBytes = 8;
/// The characters that the structure is written in, from their first place in that table on.
constexpr int firstPlace = 64;
constexpr std::string_view structure = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz "
                                       ".<(+|&[]!$*);^-/";
constexpr qsizetype maxNumberLength = 98; ///< what the library takes
constexpr qint64 maxTextLength = 20'000, maxCount = 1'000'000;

/// The file is not what this reader knows.
struct NotUnderstood {};

/// A number of base 30, perhaps with an exponent ("1+3" is 27000); -1 unless it is a whole one that counts something.
qint64 wholeNumber(const QByteArray& text) {
    constexpr qint64 base = 30, most = 1'000'000'000;
    const qsizetype sign = text.indexOf('+');
    bool isWhole = false, isExponent = true;
    qint64 value = (sign < 0 ? text : text.left(sign)).toLongLong(&isWhole, base);
    qint64 exponent = sign < 0 ? 0 : text.mid(sign + 1).toLongLong(&isExponent, base);
    if (!isWhole || !isExponent || value < 0)
        return -1;
    for (; exponent > 0 && value > 0 && value <= most; --exponent)
        value *= base;
    return value;
}

/// Copies a portable file piece by piece; what has to be spelled out is changed on the way.
class PortableCopy {
public:
    explicit PortableCopy(QIODevice& from) : from_(from) { to_.reserve(from.size() + lineLength); }

    /// @throws NotUnderstood
    PortableText run();

private:
    QIODevice& from_;
    QByteArray to_;
    qint64 rows_ = 0;
    int readColumn_ = 0, missingBlanks_ = 0, writeColumn_ = 0;
    bool changed_ = false;
    std::array<char, tableBytes> plain_{}; ///< by the file's own character
    std::array<char, tableBytes> own_{};   ///< and back
    std::vector<bool> isText_;             ///< by variable
    QHash<QByteArray, bool> isTextByName_;
    QByteArray singleMissing_; ///< of the last variable, held back until its ranges are through
    QByteArray* held_ = nullptr;

    char next();
    char nextPlain() { return plain_[static_cast<unsigned char>(next())]; }
    void put(char character);
    void putPlain(char character) { put(own_[static_cast<unsigned char>(character)]); }
    void copyHead();
    void copyRecord(char tag);
    void copyMissing(char tag);
    void copyVariable();
    void copyLabels();
    void copyCases();
    qint64 copyNumber() { return copyNumber(nextPlain()); }
    qint64 copyNumber(char first);
    QByteArray copyText() { return copyText(nextPlain()); }
    QByteArray copyText(char first);
    void copyValue(bool isText, char first) { isText ? void(copyText(first)) : void(copyNumber(first)); }
    qint64 copyCount(qint64 limit);
    void passPadding();
};

char PortableCopy::next() {
    for (;;) {
        if (missingBlanks_ > 0) {
            --missingBlanks_;
            return own_[' '];
        }
        char character = 0;
        if (!from_.getChar(&character))
            throw NotUnderstood{};
        if (character == '\r')
            continue;
        if (character == '\n') {
            missingBlanks_ = lineLength - readColumn_; // blanks at a line's end are often cut off
            readColumn_ = 0;
            continue;
        }
        if (readColumn_++ == lineLength)
            throw NotUnderstood{};
        return character;
    }
}

void PortableCopy::put(char character) {
    if (held_) {
        held_->append(character);
        return;
    }
    if (writeColumn_ == lineLength) {
        to_ += "\r\n";
        writeColumn_ = 0;
    }
    to_ += character;
    ++writeColumn_;
}

void PortableCopy::copyHead() {
    own_[' '] = ' ';
    for (int i = 0; i < splashBytes; ++i)
        put(next());
    for (int i = 0; i < tableBytes; ++i) {
        const char character = next();
        char& plain = plain_[static_cast<unsigned char>(character)];
        const int place = i - firstPlace;
        const bool isStructure = place >= 0 && place < static_cast<int>(structure.size());
        // A character that stands for a second one, as for a raised digit, would lose its first meaning.
        if (!isStructure && plain != 0 && plain != '0') {
            put(own_['0']);
            changed_ = true;
            continue;
        }
        put(character);
        if (!isStructure)
            continue;
        const char meant = structure[static_cast<size_t>(place)];
        if (plain == 0) // what a table leaves out is written as a zero
            plain = meant;
        own_[static_cast<unsigned char>(meant)] = character;
    }
    for (int i = 0; i < signatureBytes; ++i)
        put(next());
    put(next()); // version, then date and time
    copyText();
    copyText();
}

qint64 PortableCopy::copyNumber(char first) {
    while (first == ' ') {
        changed_ = true;
        first = nextPlain();
    }
    QByteArray number(1, first);
    if (first == '*') { // system-missing, without a slash
        putPlain(first);
        putPlain(nextPlain());
        return -1;
    }
    while (number.back() != '/') {
        number.append(nextPlain());
        if (number.size() > maxNumberLength)
            throw NotUnderstood{};
    }
    const auto isDigit = [](char c) { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'T'); };
    const qsizetype dot = number.indexOf('.');
    if (dot >= 0) {
        const bool digitBefore = dot > 0 && isDigit(number[dot - 1]);
        const bool digitAfter = isDigit(number[dot + 1]);
        if (!digitBefore && !digitAfter)
            throw NotUnderstood{};
        if (!digitAfter)
            number.remove(dot, 1);
        else if (!digitBefore)
            number.insert(dot, '0');
        changed_ = changed_ || !digitBefore || !digitAfter;
    }
    for (const char character : number)
        putPlain(character);
    return wholeNumber(number.chopped(1));
}

QByteArray PortableCopy::copyText(char first) {
    // An empty text has no place in the library's reading; a blank stands for it.
    QByteArray length;
    QByteArray* const outer = std::exchange(held_, &length);
    const qint64 characters = copyNumber(first);
    held_ = outer;
    if (characters < 0 || characters > maxTextLength)
        throw NotUnderstood{};
    if (characters == 0) {
        changed_ = true;
        for (const char character : {'1', '/', ' '})
            putPlain(character);
        return {};
    }
    for (const char character : length)
        put(character);
    QByteArray text;
    for (qint64 i = 0; i < characters; ++i) {
        text.append(next());
        put(text.back());
    }
    return text;
}

qint64 PortableCopy::copyCount(qint64 limit) {
    const qint64 count = copyNumber();
    if (count < 0 || count > limit)
        throw NotUnderstood{};
    return count;
}

void PortableCopy::copyVariable() {
    const bool isText = copyCount(maxTextLength) > 0;
    isText_.push_back(isText);
    isTextByName_.insert(copyText(), isText);
    for (int format = 0; format < 6; ++format)
        copyNumber();
}

void PortableCopy::copyMissing(char tag) {
    if (isText_.empty())
        throw NotUnderstood{};
    const bool isSingle = tag == '8';
    if (!isSingle && !singleMissing_.isEmpty())
        changed_ = true;
    if (isSingle)
        held_ = &singleMissing_;
    putPlain(tag);
    for (int value = 0; value < (tag == 'B' ? 2 : 1); ++value)
        copyValue(isText_.back(), nextPlain());
    held_ = nullptr;
}

void PortableCopy::copyLabels() {
    bool isText = false;
    for (qint64 names = copyCount(maxCount); names > 0; --names)
        isText = isTextByName_.value(copyText());
    for (qint64 labels = copyCount(maxCount); labels > 0; --labels) {
        copyValue(isText, nextPlain());
        copyText();
    }
}

void PortableCopy::copyCases() {
    if (isText_.empty())
        throw NotUnderstood{};
    for (;; ++rows_)
        for (size_t variable = 0; variable < isText_.size(); ++variable) {
            const char first = nextPlain();
            if (first == 'Z' && variable == 0) {
                putPlain(first);
                return;
            }
            copyValue(isText_[variable], first);
        }
}

/// Behind the last case only its letter fills the line; anything else would be cases that nobody reads.
void PortableCopy::passPadding() {
    const QByteArray padding = QByteArray(1, own_['Z']) + own_[' '] + QByteArray("\r\n\x1A\0", 4);
    for (const char character : from_.readAll())
        if (!padding.contains(character))
            throw NotUnderstood{};
}

void PortableCopy::copyRecord(char tag) {
    if (tag == '8' || tag == '9' || tag == 'A' || tag == 'B') {
        copyMissing(tag);
        return;
    }
    for (const char character : std::exchange(singleMissing_, {}))
        put(character);
    putPlain(tag);
    switch (tag) {
    case '1':
    case '2':
    case '3': // who made the file
    case '6': // weight variable
    case 'C': // label of the last variable
        copyText();
        break;
    case '4':
    case '5': // how many variables, how many digits
        copyNumber();
        break;
    case '7':
        copyVariable();
        break;
    case 'D':
        copyLabels();
        break;
    case 'E':
        for (qint64 lines = copyCount(maxCount); lines > 0; --lines)
            copyText();
        break;
    case 'F':
        copyCases();
        break;
    default:
        throw NotUnderstood{};
    }
}

PortableText PortableCopy::run() {
    copyHead();
    char tag = 0;
    do {
        tag = nextPlain();
        copyRecord(tag);
    } while (tag != 'F');
    passPadding();
    while (writeColumn_ < lineLength)
        putPlain('Z');
    to_ += "\r\n";
    return {rows_, changed_ ? to_ : QByteArray()};
}

} // namespace

std::optional<PortableText> portableText(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    try {
        return PortableCopy(file).run();
    } catch (const NotUnderstood&) {
        return std::nullopt;
    }
}
