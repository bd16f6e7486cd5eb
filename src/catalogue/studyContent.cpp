#include "catalogue/studyContent.h"

#include "catalogue/importTexts.h"

#include <QHash>
#include <QSet>
#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

// What the fields of a stored comparison hold.
constexpr int maxComparedName = 8;
constexpr int maxComparedMissing = 50;

/// Variables about which the same is to be said.
struct Findings {
    QStringList renamed, fields, longNames, bracketed, longMissing, missingTexts, missingDates, missingShapes,
        missingInexact, blankLabels, systemLabels, twiceLabels, inexactLabels, calendars, dateLetters, encoded;
    int measures = 0;

    QStringList facts() const {
        QStringList lines;
        const auto tell = [&](const QStringList& what, const QString& german, const QString& english) {
            if (!what.isEmpty())
                lines << said(german, english).arg(what.size()) + u": "_s + what.join(u", "_s);
        };
        tell(renamed, u"Geänderte Variablennamen (%1)"_s, u"Variable names that had to change (%1)"_s);
        tell(fields, u"Abweichende Feldnamen in den Falltabellen (%1)"_s,
             u"Fields of other names in the case tables (%1)"_s);
        tell(longNames, u"Namen über 8 Zeichen, die eine gespeicherte Vergleichsauswertung nicht aufnimmt (%1)"_s,
             u"Names over 8 characters, which a stored comparison cannot hold (%1)"_s);
        tell(bracketed, u"Namen, die ein Filter in eckigen Klammern nennt (%1)"_s,
             u"Names that a filter has in square brackets (%1)"_s);
        tell(longMissing,
             u"Missing-Definitionen über 50 Zeichen, die eine gespeicherte Vergleichsauswertung nicht aufnimmt (%1)"_s,
             u"Missing definitions over 50 characters, which a stored comparison cannot hold (%1)"_s);
        tell(missingTexts,
             u"Nicht übernommen, fehlende Werte, die Text sind und ohne --encode als gültige Codes stehen (%1)"_s,
             u"Not taken over, missing codes that are text and without --encode stand as valid codes (%1)"_s);
        tell(missingDates,
             u"Datums- und Zeitvariablen, deren fehlende Werte in keine Definition passen und als gültige "
             u"Codes "
             "stehen (%1)"_s,
             u"Date and time variables whose missing codes fit no definition and stand as valid codes (%1)"_s);
        tell(missingShapes, u"Nicht übernommen, fehlende Werte, die in keine Definition passen (%1)"_s,
             u"Not taken over, missing codes that fit no definition (%1)"_s);
        tell(missingInexact,
             u"Fehlende Werte mit mehr als 15 Ziffern, deren Definition die Werte der Fälle nicht trifft (%1)"_s,
             u"Missing codes of more than 15 digits, whose definition does not meet the cases' values (%1)"_s);
        tell(blankLabels, u"Nicht übernommen, Labels eines leeren Codes (%1)"_s,
             u"Not taken over, labels of a blank code (%1)"_s);
        tell(systemLabels, u"Nicht übernommen, Labels des systembedingt fehlenden Wertes (%1)"_s,
             u"Not taken over, labels of the system-missing value (%1)"_s);
        tell(twiceLabels, u"Nicht übernommen, zweite Labels desselben Codes (%1)"_s,
             u"Not taken over, second labels of the same code (%1)"_s);
        tell(inexactLabels, u"Nicht übernommen, Labels von Codes mit mehr als 15 Ziffern (%1)"_s,
             u"Not taken over, labels of codes of more than 15 digits (%1)"_s);
        tell(calendars, u"Tage eines Geschäftskalenders, als Zahlen übernommen (%1)"_s,
             u"Days of a business calendar, taken over as numbers (%1)"_s);
        tell(dateLetters, u"Datumsvariablen, deren fehlende Werte mit Buchstaben als gültige Codes stehen (%1)"_s,
             u"Date variables whose lettered missing values stand as valid codes (%1)"_s);
        lines << encoded;
        if (measures > 0)
            lines << said(u"Nicht übernommen: Messniveaus von %1 Variablen"_s,
                          u"Not taken over: measurement levels of %1 variables"_s)
                         .arg(measures);
        return lines;
    }
};

/// Turns one variable after the other into entries.
class ContentBuilder {
public:
    ContentBuilder(const SurveyFile& file, const TaggedCodes& codes, const TextCodes& texts)
        : file_(file), codes_(codes), texts_(texts) {}

    void add(int index, const VariableNames& names, const QString& table) {
        const SurveyVariable& variable = file_.variables[static_cast<size_t>(index)];
        time_ = variable.isText ? TimeFormat() : timeFormat(variable.format, file_.stata);
        noteNames(names);
        if (time_.unit == TimeFormat::Unit::StataBusiness)
            findings_.calendars << names.name;
        findings_.measures += variable.hasMeasure;
        if (texts_.encodes(index)) {
            addEncoded(index, variable, names, table);
            return;
        }
        const QString missing = missingOf(index, variable, names.name);
        content_.variables.push_back(
            {names.name, variable.label, table, names.field, variable.format, missing, index + 1});
        if (variable.labelSet >= 0)
            addLabels(index, variable, names.name);
    }

    StudyContent take() {
        content_.facts = findings_.facts();
        return std::move(content_);
    }

private:
    const SurveyFile& file_;
    const TaggedCodes& codes_;
    const TextCodes& texts_;
    StudyContent content_;
    Findings findings_;
    TimeFormat time_;

    void noteNames(const VariableNames& names) {
        const auto change = [](const QString& from, const QString& to) { return from + u" → "_s + to; };
        if (names.name != names.original)
            findings_.renamed << change(names.original, names.name);
        if (names.field != names.name)
            findings_.fields << change(names.name, names.field);
        if (names.name.size() > maxComparedName)
            findings_.longNames << names.name;
        if (!isFilterWord(names.name))
            findings_.bracketed << names.name;
    }

    QString missingOf(int index, const SurveyVariable& variable, const QString& name) {
        if (variable.missingTexts && texts_.whyStillText(index).isEmpty())
            findings_.missingTexts << name;
        std::vector<MissingRange> missing = variable.missing;
        if (codes_.used(index)) {
            if (time_.isTime())
                missing = codes_.singleCodes(index);
            else
                missing.push_back(codes_.range(index));
        }
        if (missing.empty())
            return {};
        QString definition = missingDefinition(missing);
        // Dates are text, of which a range of numbers would leave none.
        if (time_.isTime() &&
            !std::all_of(missing.begin(), missing.end(), [](const MissingRange& range) { return range.single(); }))
            definition.clear();
        if (definition.isEmpty())
            (!time_.isTime()      ? findings_.missingShapes
             : codes_.used(index) ? findings_.dateLetters
                                  : findings_.missingDates)
                << name;
        else if (!definitionIsExact(missing))
            findings_.missingInexact << name;
        if (definition.size() > maxComparedMissing)
            findings_.longMissing << name;
        return definition;
    }

    QString codeOf(int index, const SurveyVariable& variable, const SurveyLabel& label) const {
        switch (label.kind) {
        case SurveyLabel::Text:
            return textCode(label.code);
        case SurveyLabel::Letter:
            return codeText(codes_.code(index, label.letter));
        case SurveyLabel::Number:
            return std::isfinite(label.number) ? storedCode(label.number, time_, variable) : QString();
        case SurveyLabel::SystemMissing:
            break;
        }
        return {};
    }

    /// A variable whose texts became numbers; each label begins with the text that its number stands for.
    void addEncoded(int index, const SurveyVariable& variable, const VariableNames& names, const QString& table) {
        const QStringList codes = texts_.codes(index);
        QHash<QString, QString> labels;
        if (variable.labelSet >= 0)
            for (const SurveyLabel& label : file_.labelSets[static_cast<size_t>(variable.labelSet)]) {
                const QString code = textCode(label.code);
                if (code.isEmpty())
                    findings_.blankLabels << u"%1 '%2'"_s.arg(names.name, label.label);
                else if (labels.contains(code))
                    findings_.twiceLabels << u"%1 %2 '%3'"_s.arg(names.name, code, label.label);
                else
                    labels.insert(code, label.label);
            }
        std::vector<MissingRange> missing;
        QStringList missingTexts;
        for (const QString& declared : variable.missingCodes)
            if (const double number = static_cast<double>(codes.indexOf(textCode(declared)) + 1); number > 0) {
                missing.push_back({number, number});
                missingTexts << textCode(declared);
            }
        const QString definition = missingDefinition(missing);
        if (variable.otherMissingTexts || (!missing.empty() && definition.isEmpty()))
            findings_.missingShapes << names.name;
        const QString format = file_.stata ? u"%9.0g"_s : u"F%1"_s.arg(QString::number(codes.size()).size());
        content_.variables.push_back({names.name, variable.label, table, names.field, format, definition, index + 1});
        qsizetype withoutLabel = 0;
        for (qsizetype i = 0; i < codes.size(); ++i) {
            const QString label = labels.value(codes[i]);
            withoutLabel += label.isEmpty();
            content_.labels.push_back(
                {names.name, QString::number(i + 1), label.isEmpty() ? codes[i] : codes[i] + u' ' + label, codes[i]});
        }
        findings_.encoded << encodedFact(
            names.name, codes.size(), withoutLabel,
            definition.isEmpty() ? definition : definition + u" ("_s + missingTexts.join(u", "_s) + u')',
            variable.format + u" → "_s + format);
    }

    static QString encodedFact(const QString& name, qsizetype codes, qsizetype withoutLabel, const QString& missing,
                               const QString& formats) {
        if (codes == 0)
            return said(u"%1: Texte in Zahlen umgesetzt; sie sind alle leer (Format %2)"_s,
                        u"%1: texts encoded as numbers; they are all blank (format %2)"_s)
                .arg(name, formats);
        const QString missingWords =
            missing.isEmpty() ? QString() : said(u"fehlend: %1; "_s, u"missing: %1; "_s).arg(missing);
        return said(u"%1: Texte in Zahlen umgesetzt, 1 bis %2 in der Reihenfolge der Codes (%3 ohne Label; "
                    u"%4Format %5)"_s,
                    u"%1: texts encoded as numbers, 1 to %2 in the order of the codes (%3 without a label; "
                    u"%4format %5)"_s)
            .arg(name, QString::number(codes), QString::number(withoutLabel), missingWords, formats);
    }

    void addLabels(int index, const SurveyVariable& variable, const QString& name) {
        QSet<QString> seen;
        for (const SurveyLabel& label : file_.labelSets[static_cast<size_t>(variable.labelSet)]) {
            const QString code = codeOf(index, variable, label);
            const QString about = u"%1 '%2'"_s.arg(name, label.label);
            const QString aboutCode = u"%1 %2 '%3'"_s.arg(name, code, label.label);
            if (label.kind == SurveyLabel::Number && !time_.isTime() && !codeIsExact(label.number)) {
                findings_.inexactLabels << aboutCode;
                continue; // the code's text is that of other codes too
            }
            if (label.kind == SurveyLabel::SystemMissing)
                findings_.systemLabels << about;
            else if (code.trimmed().isEmpty())
                findings_.blankLabels << about;
            else if (seen.contains(code.toCaseFolded()))
                findings_.twiceLabels << aboutCode;
            else
                content_.labels.push_back({name, code, label.label});
            seen.insert(code.toCaseFolded());
        }
    }
};

} // namespace

StudyContent studyContent(const SurveyFile& file, const std::vector<VariableNames>& names,
                          const std::vector<CaseTable>& tables, const TaggedCodes& codes, const TextCodes& texts) {
    std::vector<QString> tableOf(names.size());
    for (const CaseTable& table : tables)
        for (const int index : table.variables)
            tableOf[static_cast<size_t>(index)] = table.name;
    ContentBuilder builder(file, codes, texts);
    for (size_t i = 0; i < names.size(); ++i)
        builder.add(static_cast<int>(i), names[i], tableOf[i]);
    return builder.take();
}
