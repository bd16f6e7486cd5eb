#include "catalogue/SurveyRowPass.h"

#include "catalogue/CatalogueImport.h"
#include "catalogue/importTexts.h"

#include <charconv>
#include <cmath>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

constexpr int maxTextBytes = 16'000'000; ///< more than any statistics program writes

/// Length without a last character that is not all there.
int lengthOfWholeCharacters(const char* text, int bytes) {
    int start = bytes;
    while (start > 0 && bytes - start < 3 && (text[start - 1] & 0xC0) == 0x80)
        --start;
    if (start == 0)
        return bytes;
    const unsigned char lead = static_cast<unsigned char>(text[start - 1]);
    const int needed = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    return bytes - start + 1 < needed ? start - 1 : bytes;
}

/// True if a number of single precision is another one than the shortest decimal that stands for it.
bool hasRemainder(float number) {
    if (!std::isfinite(number) || std::trunc(number) == number)
        return false;
    char text[32];
    const char* end = std::to_chars(text, text + sizeof text, number).ptr;
    double shortest = 0;
    std::from_chars(text, end, shortest);
    return shortest != static_cast<double>(number);
}

} // namespace

void SurveyRowPass::contradict() {
    throw ImportError(said(u"Die Datei widerspricht sich"_s, u"The file contradicts itself"_s));
}

void SurveyRowPass::otherNumber(int index, const readstat_value_t& value) {
    if (value.type == READSTAT_TYPE_FLOAT && !inexact[static_cast<size_t>(index)])
        inexact[static_cast<size_t>(index)] = hasRemainder(value.v.float_value);
    receiver.number(index, readstat_double_value(value));
}

void SurveyRowPass::text(int index, const char* utf8) {
    if (!utf8)
        return;
    const size_t size = strlen(utf8);
    const SurveyVariable& variable = head.variables[static_cast<size_t>(index)];
    if (size > maxTextBytes)
        throw ImportError(said(u"Variable %1, Fall %2: Der Text ist länger als %3 Zeichen"_s,
                               u"Variable %1, case %2: The text is longer than %3 characters"_s)
                              .arg(variable.name)
                              .arg(row + 1)
                              .arg(maxTextBytes));
    int bytes = static_cast<int>(size);
    if (!QByteArrayView(utf8, bytes).isValidUtf8()) {
        // A writer that fills the field to its last byte may have cut a character in two; nothing else is
        // forgiven.
        const int whole = bytes >= variable.width && variable.width > 0 ? lengthOfWholeCharacters(utf8, bytes) : bytes;
        if (whole == bytes || !QByteArrayView(utf8, whole).isValidUtf8())
            throw ImportError(unreadableText(
                said(u"Variable %1, Fall %2"_s, u"Variable %1, case %2"_s).arg(variable.name).arg(row + 1)));
        bytes = whole;
        ++cutTexts;
    }
    lostTexts += strstr(utf8, "\xEF\xBF\xBD") != nullptr;
    receiver.text(index, utf8, lengthWithoutTrailingBlanks(utf8, bytes));
}

void SurveyRowPass::progress(double share) {
    if (head.rows <= 0)
        tell(share);
}

void SurveyRowPass::tell(double share) {
    if (report && !report(share))
        throw importCancelled();
}
