#include "catalogue/importTexts.h"

#include "platform/dao/Value.h"

#include <cmath>

using namespace Qt::StringLiterals;

QString codeText(double code) {
    return dao::numberToText(code, u'.');
}

namespace {

QString boundText(double bound) {
    if (std::isinf(bound))
        return bound < 0 ? u"lowest"_s : u"highest"_s;
    return dao::numberToText(bound, u',');
}

} // namespace

bool codeIsExact(double code) {
    return std::isinf(code) || dao::textToNumber(codeText(code)) == code;
}

QString missingDefinition(const std::vector<MissingRange>& missing) {
    QStringList ranges, values;
    for (const MissingRange& range : missing) {
        // A value beyond every number: some writers put one in place of the range's real beginning.
        if (range.single() && std::isinf(range.low))
            return {};
        if (range.single())
            values << boundText(range.low);
        else
            ranges << boundText(range.low) + u" thru "_s + boundText(range.high);
    }
    // One definition holds no more than three values, or one range and one value.
    if (ranges.size() > 1 || values.size() > (ranges.isEmpty() ? 3 : 1))
        return {};
    return (ranges + values).join(u';');
}

bool definitionIsExact(const std::vector<MissingRange>& missing) {
    for (const MissingRange& range : missing)
        if (!codeIsExact(range.low) || !codeIsExact(range.high))
            return false;
    return true;
}

QString countNotKept(qint64 saidCases, qint64 heldCases) {
    return said(u"Die Datei ist abgeschnitten oder beschädigt: Sie gibt %1 Fälle an und enthält %2"_s,
                u"The file is cut off or damaged: it says that it has %1 cases and holds %2"_s)
        .arg(saidCases)
        .arg(heldCases);
}

int lengthWithoutTrailingBlanks(const char* text, int bytes) {
    while (bytes > 0 && text[bytes - 1] == ' ')
        --bytes;
    return bytes;
}
