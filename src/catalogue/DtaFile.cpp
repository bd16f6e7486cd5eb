#include "catalogue/DtaFile.h"

namespace {

constexpr int firstWithCharacteristics = 105;

qint64 labelBytes(int format) {
    return format >= 108 ? 81 : 32;
}

/// Bytes of an old head behind its first ten: label and date.
qint64 restOfOldHead(int format) {
    return labelBytes(format) + (format >= 105 ? 18 : 0);
}

} // namespace

DtaFile::DtaFile(const QString& path) : file_(path) {
    if (!file_.open(QIODevice::ReadOnly))
        return;
    fileBytes_ = file_.size();
    isGood_ = file_.peek(1) == "<" ? readTaggedHead() : readOldHead();
}

bool DtaFile::readTaggedHead() {
    if (!expect("<stata_dta><header><release>"))
        return false;
    format_ = file_.read(3).toInt();
    if (!isTagged() || !expect("</release><byteorder>"))
        return false;
    bigEndian_ = file_.read(3) == "MSF";
    const auto field = [&](const char* tag, int bytes) { return expect(tag) ? number(bytes) : std::nullopt; };
    const auto variables = field("</byteorder><K>", format_ >= 119 ? 4 : 2);
    const auto rows = field("</K><N>", format_ >= 118 ? 8 : 4);
    const auto label = field("</N><label>", format_ >= 118 ? 2 : 1);
    if (!variables || !rows || !label || !skip(*label))
        return false;
    const auto date = field("</label><timestamp>", 1);
    if (!date || !skip(*date) || !expect("</timestamp></header><map>"))
        return false;
    for (qint64& place : map_) {
        const auto at = number(8);
        if (!at)
            return false;
        place = *at <= fileBytes_ ? *at : -1;
    }
    variables_ = *variables;
    rows_ = *rows;
    if (!expect("</map><variable_types>"))
        return false;
    types_ = file_.read(2 * variables_);
    return types_.size() == 2 * variables_;
}

bool DtaFile::readOldHead() {
    const auto format = number(1), order = number(1), kind = number(1), unused = number(1);
    if (!format || !order || !kind || !unused || *format >= 117)
        return false;
    format_ = static_cast<int>(*format);
    bigEndian_ = *order == 1;
    const auto variables = number(2), rows = number(4);
    if (!variables || !rows || !skip(restOfOldHead(format_)))
        return false;
    variables_ = *variables;
    rows_ = *rows;
    types_ = file_.read(variables_);
    return types_.size() == variables_;
}

std::optional<qint64> DtaFile::number(int bytes) {
    const QByteArray raw = file_.read(bytes);
    if (raw.size() != bytes)
        return std::nullopt;
    quint64 value = 0;
    for (int i = 0; i < bytes; ++i)
        value = value << 8 | static_cast<uchar>(raw[bigEndian_ ? i : bytes - 1 - i]);
    return static_cast<qint64>(value);
}

bool DtaFile::skip(qint64 bytes) {
    return bytes >= 0 && bytes <= fileBytes_ - file_.pos() && file_.seek(file_.pos() + bytes);
}

qint64 DtaFile::bytesOfType(qint64 variable) const {
    const auto byte = [&](qint64 at) { return static_cast<uchar>(types_[at]); };
    if (isTagged()) {
        const int low = byte(2 * variable + (bigEndian_ ? 1 : 0)), high = byte(2 * variable + (bigEndian_ ? 0 : 1));
        switch (const int type = high << 8 | low) {
        case 65'526: // double
        case 32'768: // a string that stands in a section of its own
            return 8;
        case 65'527:
        case 65'528:
            return 4;
        case 65'529:
            return 2;
        case 65'530:
            return 1;
        default:
            return type;
        }
    }
    const int type = byte(variable);
    const int firstOfNumbers = 251;
    if (format_ >= 111)
        return type < firstOfNumbers ? type : std::array{1, 2, 4, 4, 8}[static_cast<size_t>(type - firstOfNumbers)];
    if (type >= 0x7F)
        return type - 0x7F;
    const QByteArray letters = "bilfd";
    const qsizetype letter = letters.indexOf(static_cast<char>(type));
    return letter < 0 ? -1 : std::array{1, 2, 4, 4, 8}[static_cast<size_t>(letter)];
}

std::optional<qint64> DtaFile::rowBytes() const {
    qint64 total = 0;
    for (qint64 i = 0; i < variables_; ++i) {
        const qint64 bytes = bytesOfType(i);
        if (bytes < 0)
            return std::nullopt;
        total += bytes;
    }
    return total;
}

bool DtaFile::goToCharacteristics() {
    if (!isGood_)
        return false;
    if (isTagged())
        return file_.seek(placeOf(Characteristics)) && expect("<characteristics>");
    const qint64 display = format_ >= 114 ? 49 : format_ >= 105 ? 12 : 7;
    // Of a variable: type, name, place in the sort order, display format, name of its labels, label.
    const qint64 perVariable = 1 + nameBytes() + 2 + display + nameBytes() + labelBytes(format_);
    return file_.seek(10 + restOfOldHead(format_) + variables_ * perVariable + 2);
}

std::optional<QByteArray> DtaFile::nextCharacteristic() {
    if (!isTagged() && format_ < firstWithCharacteristics)
        return std::nullopt;
    if (isTagged() ? !expect("<ch>") : !file_.isOpen())
        return std::nullopt;
    // An old file's list ends with a kind and a length of 0; 1 is the only other kind.
    const auto kind = isTagged() ? std::optional<qint64>(1) : number(1);
    const auto length = number(format_ >= 110 ? 4 : 2);
    if (kind != 1 || !length || *length > fileBytes_ - file_.pos())
        return std::nullopt;
    const QByteArray entry = file_.read(*length);
    return !isTagged() || expect("</ch>") ? std::optional(entry) : std::nullopt;
}
