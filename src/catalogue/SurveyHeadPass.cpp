#include "catalogue/SurveyHeadPass.h"

#include "catalogue/CatalogueImport.h"
#include "catalogue/importTexts.h"

#include <QStringDecoder>
#include <algorithm>
#include <climits>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

// What a file may claim; more than any statistics program writes.
constexpr int maxVariables = 120'000;
constexpr qint64 maxLabels = 5'000'000;
constexpr qint64 maxNoteCharacters = 10'000'000;
constexpr qint64 maxRows = 2'000'000'000;

constexpr int firstUnicodeStata = 118;

/// Decodes strictly; nothing for bytes that are no UTF-8.
std::optional<QString> decoded(const char* utf8, qsizetype bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(QByteArrayView(utf8, bytes));
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

SurveyLabel labelCode(const readstat_value_t& value) {
    SurveyLabel label;
    if (readstat_value_type_class(value) == READSTAT_TYPE_CLASS_STRING) {
        label.kind = SurveyLabel::Text;
    } else if (readstat_value_is_tagged_missing(value)) {
        label.kind = SurveyLabel::Letter;
        label.letter = readstat_value_tag(value);
    } else if (readstat_value_is_system_missing(value)) {
        label.kind = SurveyLabel::SystemMissing;
    } else {
        label.number = readstat_double_value(value);
    }
    return label;
}

} // namespace

QString SurveyHeadPass::text(const char* utf8, const QString& where) {
    if (!utf8)
        return {};
    const std::optional<QString> result = decoded(utf8, static_cast<qsizetype>(strlen(utf8)));
    if (!result)
        throw ImportError(unreadableText(where));
    lostTexts += result->contains(QChar::ReplacementCharacter);
    return *result;
}

int SurveyHeadPass::setOf(const QByteArray& name) {
    const auto found = sets.constFind(name);
    if (found != sets.constEnd())
        return *found;
    sets.insert(name, static_cast<int>(file.labelSets.size()));
    file.labelSets.emplace_back();
    return static_cast<int>(file.labelSets.size()) - 1;
}

void SurveyHeadPass::metadata(readstat_metadata_t* meta) {
    file.rows = readstat_get_row_count(meta);
    file.saysRows = file.rows >= 0;
    encoding = readstat_get_file_encoding(meta);
    if (encoding.isEmpty() && file.stata)
        encoding = readstat_get_file_format_version(meta) < firstUnicodeStata ? "WINDOWS-1252" : "UTF-8";
    if (readstat_get_var_count(meta) > maxVariables || file.rows > maxRows)
        throw ImportError(said(u"Die Datei behauptet mehr Variablen oder Fälle, als gelesen werden"_s,
                               u"The file claims more variables or cases than are read"_s));
    file.label = text(readstat_get_file_label(meta), said(u"Dateibezeichnung"_s, u"File label"_s)).trimmed();
}

void SurveyHeadPass::note(int index, const char* text_) {
    // Stata's note 0 is the number of notes.
    if (file.stata && index == 0)
        return;
    const QString line = text(text_, said(u"Anmerkungen der Datei"_s, u"Notes of the file"_s));
    noteCharacters += line.size();
    if (noteCharacters > maxNoteCharacters)
        throw ImportError(said(u"Die Anmerkungen der Datei sind zu lang"_s, u"The notes of the file are too long"_s));
    file.notes << line;
}

void SurveyHeadPass::variable(readstat_variable_t* source, const QByteArray& labelSet) {
    if (file.variables.size() >= maxVariables)
        throw ImportError(said(u"Die Datei hat zu viele Variablen"_s, u"The file has too many variables"_s));
    SurveyVariable variable;
    variable.name = text(readstat_variable_get_name(source),
                         said(u"Name der Variable %1"_s, u"Name of variable %1"_s).arg(file.variables.size() + 1));
    variable.label = text(readstat_variable_get_label(source), variableWord(variable.name));
    variable.format = text(readstat_variable_get_format(source), variableWord(variable.name));
    variable.isText = readstat_variable_get_type_class(source) == READSTAT_TYPE_CLASS_STRING;
    if (variable.isText && readstat_variable_get_type(source) != READSTAT_TYPE_STRING_REF)
        variable.width = widthOf(source, variable.format);
    variable.hasMeasure = readstat_variable_get_measure(source) != READSTAT_MEASURE_UNKNOWN;
    if (!labelSet.isNull()) {
        variable.labelSet = setOf(labelSet);
        usedSets.insert(variable.labelSet);
    }
    missing(source, variable);
    file.variables.push_back(std::move(variable));
}

int SurveyHeadPass::widthOf(const readstat_variable_t* source, const QString& format) const {
    const int stored = static_cast<int>(std::min<size_t>(readstat_variable_get_storage_width(source), INT_MAX));
    if (file.stata)
        return stored - 1; // a zero ends each string
    // An SPSS file's own width is in the format; the storage is rounded up.
    const int exact = format.mid(1).toInt();
    return exact > 0 ? exact : stored;
}

void SurveyHeadPass::missing(const readstat_variable_t* source, SurveyVariable& variable) {
    for (int i = 0; i < readstat_variable_get_missing_ranges_count(source); ++i) {
        const readstat_value_t low = readstat_variable_get_missing_range_lo(source, i);
        const readstat_value_t high = readstat_variable_get_missing_range_hi(source, i);
        if (readstat_value_type_class(low) == READSTAT_TYPE_CLASS_STRING)
            missingText(readstat_string_value(low), readstat_string_value(high), variable);
        else
            variable.missing.push_back({readstat_double_value(low), readstat_double_value(high)});
    }
}

void SurveyHeadPass::missingText(const char* low, const char* high, SurveyVariable& variable) {
    variable.missingTexts = true;
    const std::optional<QString> code =
        low && high && strcmp(low, high) == 0 ? decoded(low, static_cast<qsizetype>(strlen(low))) : std::nullopt;
    if (code)
        variable.missingCodes << *code;
    else
        variable.otherMissingTexts = true;
}

void SurveyHeadPass::valueLabel(const QByteArray& set, const readstat_value_t& value, const char* label) {
    if (++labels > maxLabels)
        throw ImportError(said(u"Die Datei hat zu viele Wertelabels"_s, u"The file has too many value labels"_s));
    const int index = setOf(set);
    const auto read = [&](const char* utf8) {
        if (!utf8)
            return QString(); // a damaged file's label may have no code
        const std::optional<QString> result = decoded(utf8, static_cast<qsizetype>(strlen(utf8)));
        if (!result)
            unreadableSet = index;
        else
            lostTexts += result->contains(QChar::ReplacementCharacter);
        return result.value_or(QString());
    };
    SurveyLabel entry = labelCode(value);
    if (entry.kind == SurveyLabel::Text)
        entry.code = read(readstat_string_value(value));
    entry.label = read(label);
    file.labelSets[static_cast<size_t>(index)].push_back(std::move(entry));
}

QStringList SurveyHeadPass::unusedSets() const {
    QStringList names;
    for (auto set = sets.begin(); set != sets.end(); ++set)
        if (!usedSets.contains(*set))
            names << QString::fromUtf8(set.key());
    names.sort();
    if (names.isEmpty())
        return {};
    return {
        said(u"Wertelabel-Sätze, die keine Variable benutzt: %1"_s, u"sets of value labels that no variable uses: %1"_s)
            .arg(names.join(u", "_s))};
}

void SurveyHeadPass::checkLabels() const {
    if (unreadableSet < 0)
        return;
    QString name;
    for (const SurveyVariable& variable : file.variables)
        if (variable.labelSet == unreadableSet && name.isEmpty())
            name = variable.name;
    throw ImportError(
        unreadableText(said(u"Wertelabels der Variable %1"_s, u"Value labels of variable %1"_s).arg(name)));
}

void SurveyTextCheck::variable(readstat_variable_t* source, const QByteArray& labelSet) {
    const char* name = readstat_variable_get_name(source);
    const QString plain = QString::fromLatin1(name);
    if (!labelSet.isNull() && !owners.contains(labelSet))
        owners.insert(labelSet, plain);
    if (found.isEmpty() && (bad(name) || bad(readstat_variable_get_label(source))))
        found = plain;
}

void SurveyTextCheck::valueLabel(const QByteArray& set, const readstat_value_t& value, const char* label) {
    const bool text = readstat_value_type_class(value) == READSTAT_TYPE_CLASS_STRING;
    if (bad(label) || (text && bad(readstat_string_value(value))))
        badSets << set;
}

QString SurveyTextCheck::variableName() const {
    if (found.isEmpty())
        for (const QByteArray& set : badSets)
            if (owners.contains(set))
                return owners.value(set);
    return found;
}
