#include "catalogue/savDictionary.h"

#include <QtEndian>
#include <cstdlib>

namespace {

constexpr qint64 headerSize = 176;
constexpr qint64 layoutCodeAt = 64, compressionAt = 72, casesAt = 80;
constexpr qint64 maxRecord = 16'000'000;

enum Record {
    Variable = 2,
    ValueLabels = 3,
    LabelledVariables = 4,
    Documents = 6,
    ExtensionRecord = 7,
    EndOfDictionary = 999
};

} // namespace

SavDictionary::SavDictionary(const QString& path, const Extension& extension) : file_(path) {
    if (!file_.open(QIODevice::ReadOnly))
        return;
    fileBytes_ = file_.size();
    if (!head())
        return;
    while (const std::optional<qint32> type = number()) {
        if (*type == EndOfDictionary) {
            if (number()) // four bytes of no meaning
                dataAt_ = file_.pos();
            break;
        }
        if (!record(*type, extension))
            break;
    }
    file_.close();
}

bool SavDictionary::head() {
    if (!file_.seek(layoutCodeAt))
        return false;
    const std::optional<qint32> layout = number();
    if (!layout)
        return false;
    swapped_ = *layout != 2 && *layout != 3;
    if (!file_.seek(compressionAt))
        return false;
    const std::optional<qint32> compression = number();
    // The library takes the number in either order of bytes.
    const auto is = [&](qint32 kind) { return compression == kind || compression == qbswap(kind); };
    compression_ = is(1) ? Compression::Codes : is(2) ? Compression::Blocks : Compression::None;
    if (!file_.seek(casesAt))
        return false;
    cases_ = number().value_or(-1);
    return file_.seek(headerSize);
}

bool SavDictionary::skip(qint64 bytes) {
    return bytes >= 0 && bytes <= fileBytes_ - file_.pos() && file_.seek(file_.pos() + bytes);
}

std::optional<qint32> SavDictionary::number() {
    qint32 value = 0;
    if (file_.read(reinterpret_cast<char*>(&value), sizeof value) != sizeof value)
        return std::nullopt;
    return swapped_ ? qbswap(value) : value;
}

bool SavDictionary::variable() {
    ++fieldsPerCase_; // a longer string has a record for each eight bytes
    const auto type = number(), hasLabel = number(), missing = number();
    if (!type || !hasLabel || !missing || !skip(4 + 4 + 8))
        return false;
    if (*hasLabel) {
        const auto length = number();
        if (!length || *length < 0 || !skip((qint64{*length} + 3) / 4 * 4))
            return false;
    }
    return skip(std::abs(qint64{*missing}) * 8);
}

bool SavDictionary::valueLabels() {
    const auto count = number();
    for (qint32 i = 0; count && i < *count; ++i) {
        unsigned char length = 0;
        if (!skip(8) || file_.read(reinterpret_cast<char*>(&length), 1) != 1 || !skip((length + 8) / 8 * 8 - 1))
            return false;
    }
    return count.has_value();
}

bool SavDictionary::counted(qint64 size) {
    const auto count = number();
    return count && skip(*count * size);
}

bool SavDictionary::extensionRecord(const Extension& extension) {
    const auto subtype = number(), size = number(), count = number();
    if (!subtype || !size || !count || *size < 0 || *count < 0)
        return false;
    const qint64 bytes = qint64{*size} * *count;
    if (bytes > maxRecord || !extension)
        return skip(bytes);
    extension(*subtype, file_.read(bytes));
    return true;
}

bool SavDictionary::record(qint32 type, const Extension& extension) {
    switch (type) {
    case Variable:
        return variable();
    case ValueLabels:
        return valueLabels();
    case LabelledVariables:
        return counted(4);
    case Documents:
        return counted(80);
    case ExtensionRecord:
        return extensionRecord(extension);
    default:
        return false;
    }
}
