#include "analysis/request/Instruction.h"

#include "analysis/request/RequestEditor.h"
#include "app/globals.h"
#include "config/Options.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr QChar fieldEnd = u';';
constexpr qsizetype modeLength = 4;

const std::array<QString, 3> filterWords{u"noFilter"_s, u"FilterParts"_s, u"FilterUser"_s};
const std::array<QString, 4> weightWords{u"noWeight"_s, u"WeightRE"_s, u"WeightHH"_s, u"WeightUser"_s};
const std::array<QString, 4> valueWords{u"A"_s, u"S"_s, u"Z"_s, u"G"_s};
const QString flipped = u"FlipXtab=True"_s, notFlipped = u"FlipXtab=False"_s;

/// The place of a word; the first one for any other.
template<size_t count>
int placeOf(const std::array<QString, count>& words, const QString& word) {
    const auto found = std::ranges::find(words, word);
    return found == words.end() ? 0 : static_cast<int>(found - words.begin());
}

QString modeText(const Instruction& instruction) {
    switch (instruction.mode) {
    case AnalysisMode::Crosstab:
        return u"Xtab"_s;
    case AnalysisMode::Descriptives:
        return u"Desc"_s + instruction.dtDesc;
    default:
        return u"Freq"_s;
    }
}

bool isInStudy(const RequestEditor& editor, const QString& variable) {
    return std::ranges::any_of(editor.variables(),
                               [&](const StudyVariable& one) { return dao::compareTexts(one.name, variable) == 0; });
}

QString named(const QString& sentence, const QString& name) {
    return TranslateText(sentence) + (name.isEmpty() ? QString() : u": "_s + name);
}

/// What an instruction names and the study has not; empty if it has all.
QString lackOf(RequestEditor& editor, const Instruction& instruction) {
    const bool crosstab = instruction.mode == AnalysisMode::Crosstab;
    if ((crosstab || !instruction.second.isEmpty()) && !isInStudy(editor, instruction.second))
        return named(u"Zweite Variable nicht gefunden"_s, instruction.second);
    if (instruction.weight != WeightKind::noWeight && !isInStudy(editor, instruction.weightValue))
        return named(u"Gewichtungsvariable nicht gefunden"_s, instruction.weightValue);
    const std::vector<BoundPicker> parts = editor.parts();
    if (instruction.filter == FilterKind::FilterParts &&
        std::ranges::find(parts, instruction.filterValue, &BoundPicker::value) == parts.end())
        return named(u"Datensatz-Teil nicht gefunden"_s, instruction.filterValue);
    return {};
}

void loadMode(RequestEditor& editor, const Instruction& instruction) {
    editor.chooseMode(instruction.mode);
    if (!instruction.second.isEmpty())
        editor.chooseVariable2(instruction.second);
    if (instruction.mode != AnalysisMode::Descriptives)
        return;
    editor.change(RequestPart::Mode,
                  [&](AnalysisRequest& request) { request.chkDescGroup = !instruction.second.isEmpty(); });
    editor.change(RequestPart::Statistics, [&](AnalysisRequest& request) {
        request.dtDesc = instruction.dtDesc;
        // Without digits the statistics would count as not chosen.
        if (request.dtDescDigits.isEmpty())
            request.dtDescDigits = gOptions.DescriptivesDigits;
    });
}

void loadFilter(RequestEditor& editor, const Instruction& instruction) {
    switch (instruction.filter) {
    case FilterKind::noFilter:
        editor.chooseFilter(FilterKind::noFilter);
        break;
    case FilterKind::FilterParts:
        editor.choosePart(instruction.filterValue);
        break;
    case FilterKind::FilterUser:
        editor.chooseFilterText(instruction.filterValue);
        break;
    }
}

} // namespace

Instruction Instruction::read(const QString& text) {
    const QStringList fields = text.split(fieldEnd);
    const QString mode = fields[0].left(modeLength);
    Instruction read;
    if (mode == "Xtab"_L1)
        read.mode = AnalysisMode::Crosstab;
    else if (mode == "Desc"_L1)
        read.mode = AnalysisMode::Descriptives;
    if (read.mode == AnalysisMode::Descriptives)
        read.dtDesc = fields[0].mid(modeLength);
    if (read.mode != AnalysisMode::Frequency)
        read.second = fields.value(1);
    read.filter = static_cast<FilterKind>(placeOf(filterWords, fields.value(2)));
    if (read.filter != FilterKind::noFilter)
        read.filterValue = fields.value(3);
    read.weight = static_cast<WeightKind>(placeOf(weightWords, fields.value(4)));
    if (read.weight != WeightKind::noWeight)
        read.weightValue = fields.value(5);
    read.values = placeOf(valueWords, fields.value(6));
    if (const QString flip = fields.value(7); flip == flipped || flip == notFlipped)
        read.flip = flip == flipped;
    return read;
}

QString Instruction::text() const {
    QStringList fields{modeText(*this),
                       second,
                       filterWords[static_cast<size_t>(filter)],
                       filterValue,
                       weightWords[static_cast<size_t>(weight)],
                       weightValue,
                       valueWords[static_cast<size_t>(values)]};
    if (flip)
        fields << (*flip ? flipped : notFlipped);
    return fields.join(fieldEnd) + fieldEnd;
}

std::optional<Instruction> instructionOf(const AnalysisRequest& r, QString& reason) {
    Instruction made;
    made.mode = r.mode;
    if (r.mode == AnalysisMode::Comparison)
        reason = TranslateText(u"Für einen Vergleich gibt es keine Anweisung."_s);
    else if (r.groupsByTwo() && (r.dtTable2.isEmpty() || r.dtField2.isEmpty()))
        reason = TranslateText(u"Bitte eine zweite Variable auswählen"_s);
    else if (r.optFilter == FilterKind::FilterUser && r.txtFilter.isEmpty())
        reason = TranslateText(u"Der Filter ist leer."_s);
    else if (r.optFilter == FilterKind::FilterParts && (r.txtFilter.isEmpty() || r.dbcParts.isEmpty()))
        reason = TranslateText(u"Datensatz-Teil nicht gefunden"_s);
    else if (r.Option3 != WeightKind::noWeight && r.weightVariable().isEmpty())
        reason = TranslateText(u"Gewichtungsvariable auswählen"_s);
    if (!reason.isEmpty())
        return std::nullopt;
    if (r.groupsByTwo())
        made.second = r.dbcVariable2.value;
    if (r.mode == AnalysisMode::Descriptives)
        made.dtDesc = r.dtDesc;
    made.filter = r.optFilter;
    if (r.optFilter != FilterKind::noFilter)
        made.filterValue = r.optFilter == FilterKind::FilterParts ? r.dbcParts.value : r.txtFilter;
    made.weight = r.Option3;
    made.weightValue = r.weightVariable();
    made.values =
        r.cbValuesInstruct >= 0 && r.cbValuesInstruct < static_cast<int>(valueWords.size()) ? r.cbValuesInstruct : 0;
    made.flip = r.chkFlipXtab;
    for (const QString& value : {made.second, made.filterValue, made.weightValue, made.dtDesc})
        if (value.contains(fieldEnd)) {
            // Whoever reads it would take what stands behind it for the next field.
            reason = TranslateText(u"Eine Anweisung kann kein Semikolon enthalten:"_s) + u' ' + value;
            return std::nullopt;
        }
    return made;
}

QString loadInstruction(RequestEditor& editor, const Instruction& instruction) {
    if (QString lack = lackOf(editor, instruction); !lack.isEmpty())
        return lack;
    loadMode(editor, instruction);
    loadFilter(editor, instruction);
    if (instruction.weight == WeightKind::WeightRE || instruction.weight == WeightKind::WeightHH)
        editor.chooseNamedWeight(instruction.weight, instruction.weightValue);
    else
        editor.chooseWeight(instruction.weight, instruction.weightValue);
    editor.change(RequestPart::Values,
                  [&](AnalysisRequest& request) { request.cbValuesInstruct = instruction.values; });
    if (instruction.flip)
        editor.change(RequestPart::Mode, [&](AnalysisRequest& request) { request.chkFlipXtab = *instruction.flip; });
    editor.dbcVariable_Change();
    return {};
}
