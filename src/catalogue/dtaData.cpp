#include "catalogue/dtaData.h"

#include "catalogue/DtaFile.h"
#include "catalogue/importTexts.h"

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

const QByteArray dataTag = "<data>", dataEnd = "</data>";

QString brokenStrings() {
    return said(u"Die Datei ist beschädigt: Ihre langen Texte (strL) sind nicht in Ordnung"_s,
                u"The file is damaged: its long texts (strL) are not in order"_s);
}

QString brokenLabels(qint64 rows) {
    return said(u"Die Datei ist abgeschnitten oder beschädigt, oder es sind nicht %1 Fälle, wie sie angibt: Was "
                u"hinter ihnen steht, sind keine ganzen Wertelabels"_s,
                u"The file is cut off or damaged, or has other than the %1 cases that it says: what stands behind "
                u"them is no whole set of value labels"_s)
        .arg(rows);
}

/// How a table of value labels begins, and what its length counts: bytes, or labels of ten bytes.
struct LabelTable {
    int lengthBytes, nameBytes, paddingBytes, unit = 1;
};

constexpr LabelTable usual{4, 33, 3};

/// What tables of labels look like in an old file. Formats before 110 write names of nine bytes; the library takes
/// them to be longer, and so do files that it wrote.
std::vector<LabelTable> tablesOf(int format) {
    if (format >= 110)
        return {usual};
    if (format >= 108)
        return {usual, {4, 9, 3}};
    return {usual, {2, 12, 2}, {2, 9, 1, 10}};
}

/// Passes one table of labels. @return false unless it is whole
bool passTable(DtaFile& dta, const LabelTable& layout) {
    const auto length = dta.number(layout.lengthBytes);
    if (!length || !dta.skip(layout.nameBytes + layout.paddingBytes))
        return false;
    if (layout.lengthBytes == 2)
        return dta.skip(*length * layout.unit);
    const auto labels = dta.number(4), textBytes = dta.number(4);
    if (!labels || !textBytes || *length < 8 || !dta.skip(*length - 8))
        return false;
    const qint64 unused = *length - 8 - 8 * *labels - *textBytes;
    return unused == 0 || (unused > 0 && layout.nameBytes >= usual.nameBytes);
}

bool passStrings(DtaFile& dta) {
    constexpr qint64 text = 130;
    if (!dta.file().seek(dta.placeOf(DtaFile::Strings)) || !dta.expect("<strls>"))
        return false;
    while (dta.file().peek(3) == "GSO") {
        dta.skip(3 + 4 + (dta.format() >= 118 ? 8 : 4));
        const auto kind = dta.number(1), length = dta.number(4);
        if (kind != text || !length || *length < 1 || !dta.skip(*length - 1) || dta.number(1) != 0)
            return false;
    }
    return dta.expect("</strls>");
}

QString faultOfTagged(DtaFile& dta, qint64 rowBytes) {
    const qint64 data = dta.placeOf(DtaFile::Data), strings = dta.placeOf(DtaFile::Strings);
    const bool isCutOff = strings < 0;
    const qint64 end = isCutOff ? dta.file().size() : strings - dataEnd.size();
    const qint64 room = data < 0 ? 0 : std::max<qint64>(end - data - dataTag.size(), 0);
    if (isCutOff ? room / rowBytes < dta.rows() : room / rowBytes != dta.rows())
        return countNotKept(dta.rows(), room / rowBytes);
    if (isCutOff || room % rowBytes != 0)
        return brokenLabels(dta.rows());
    if (!passStrings(dta))
        return brokenStrings();
    if (!dta.file().seek(dta.placeOf(DtaFile::ValueLabels)) || !dta.expect("<value_labels>"))
        return brokenLabels(dta.rows());
    while (dta.file().peek(5) == "<lbl>")
        if (!dta.skip(5) || !passTable(dta, {4, dta.nameBytes(), 3}) || !dta.expect("</lbl>"))
            return brokenLabels(dta.rows());
    return dta.expect("</value_labels></stata_dta>") ? QString() : brokenLabels(dta.rows());
}

bool labelsReachTheEnd(DtaFile& dta, qint64 from, const LabelTable& layout) {
    dta.file().seek(from);
    while (!dta.file().atEnd())
        if (!passTable(dta, layout))
            return false;
    return true;
}

QString faultOfOld(DtaFile& dta, qint64 rowBytes) {
    if (!dta.goToCharacteristics())
        return brokenLabels(dta.rows());
    while (dta.nextCharacteristic()) {
    }
    const qint64 room = dta.file().size() - dta.file().pos();
    if (room / rowBytes < dta.rows())
        return countNotKept(dta.rows(), room / rowBytes);
    const qint64 labelsAt = dta.file().pos() + dta.rows() * rowBytes;
    for (const LabelTable& layout : tablesOf(dta.format()))
        if (labelsReachTheEnd(dta, labelsAt, layout))
            return {};
    return room % rowBytes == 0 ? countNotKept(dta.rows(), room / rowBytes) : brokenLabels(dta.rows());
}

} // namespace

std::optional<QString> dtaDataFault(const QString& path) {
    DtaFile dta(path);
    const std::optional<qint64> rowBytes = dta.isGood() ? dta.rowBytes() : std::nullopt;
    if (!rowBytes || *rowBytes <= 0)
        return std::nullopt;
    return dta.isTagged() ? faultOfTagged(dta, *rowBytes) : faultOfOld(dta, *rowBytes);
}
