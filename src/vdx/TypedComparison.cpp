#include "vdx/TypedComparison.h"

#include "app/globals.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

const QString quotedForm = u"\"((?:[^\"]|\"\")*)\""_s;

/// Takes what a form matches at the start of a text away. @return nothing if it matches nothing there
std::optional<QRegularExpressionMatch> takeAway(QString& text, const QString& form) {
    const QRegularExpression start(u"^\\s*"_s + form, QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = start.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    text.remove(0, match.capturedLength());
    return match;
}

std::optional<QString> takeQuoted(QString& text, const QString& behind) {
    const std::optional<QRegularExpressionMatch> match = takeAway(text, quotedForm + behind);
    return match ? std::optional(match->captured(1).replace(u"\"\""_s, u"\""_s)) : std::nullopt;
}

std::optional<QString> takeName(QString& text) {
    if (const std::optional<QString> name = takeQuoted(text, u"(?=\\s|$)"_s))
        return name;
    const std::optional<QRegularExpressionMatch> match = takeAway(text, u"(\\S+)"_s);
    return match ? std::optional(match->captured(1)) : std::nullopt;
}

} // namespace

TypedComparison::Entry TypedComparison::entryFrom(const QString& text) {
    const QString key = u"(weight|filter|part|missing)\\s*="_s;
    const QString toNextKey = u"(.*?)\\s*(?=\\s"_s + key + u"|$)"_s;
    QString rest = text;
    const std::optional<QString> study = takeName(rest), variable = takeName(rest);
    Entry entry;
    bool good = study && variable;
    while (good && !rest.trimmed().isEmpty()) {
        const std::optional<QRegularExpressionMatch> named = takeAway(rest, key);
        good = named.has_value();
        if (!good)
            break;
        const QString name = named->captured(1);
        std::optional<QString> value = takeQuoted(rest, u"\\s*(?=\\s"_s + key + u"|$)"_s);
        if (!value)
            value = takeAway(rest, toNextKey)->captured(1);
        if (name == u"missing")
            entry.missing = typedDefinition(*value);
        else
            (name == u"weight"   ? entry.cases.weight
             : name == u"filter" ? entry.cases.filter
                                 : entry.cases.part) = *value;
    }
    if (!good)
        throw UsageError{
            said(u"--entry \"%1\": erwartet wird STUDIE VARIABLE [weight=..] [filter=..] [part=..] [missing=..]"_s,
                 u"--entry \"%1\": expected is STUDY VARIABLE [weight=..] [filter=..] [part=..] [missing=..]"_s)
                .arg(text)};
    entry.cases.study = *study;
    entry.variable = *variable;
    if (!entry.cases.filter.isEmpty() && !entry.cases.part.isEmpty())
        throw UsageError{said(u"--entry \"%1\": filter und part schließen einander aus"_s,
                              u"--entry \"%1\": filter and part exclude each other"_s)
                             .arg(text)};
    return entry;
}

void TypedComparison::declare(CLI::App& command) {
    command
        .add_option(
            "--entry", entries_,
            "a column: 'STUDY VARIABLE [weight=re|hh|NAME] [filter=TEXT] [part=ID] [missing=TEXT]'; may be repeated")
        ->type_name("ENTRY")
        ->expected(1)
        ->take_all();
    command.add_option("--load", load_, "a comparison that the catalogue keeps, in place of --entry")
        ->type_name("NAME");
}

void TypedComparison::read() {
    typed_.clear();
    for (const std::string& entry : entries_)
        typed_.push_back(entryFrom(QString::fromStdString(entry)));
}

bool TypedComparison::addEntries(Session& session, RequestEditor& editor, ComparisonList& list) const {
    for (const Entry& entry : typed_) {
        editor.overrideMissing(entry.missing);
        if (!entry.cases.choose(session, editor) || !entry.cases.chooseVariable(session, editor, entry.variable) ||
            !list.cmd_AddTrend() || session.failed())
            return false;
        // The next entry begins without the filter of this one.
        editor.chooseFilter(FilterKind::noFilter);
    }
    return true;
}

bool TypedComparison::choose(Session& session, RequestEditor& editor, ComparisonList& list) const {
    if (hasName() ? !list.load(QString::fromStdString(load_)) : !addEntries(session, editor, list))
        return false;
    QStringList studies;
    for (const ComparisonEntry& e : editor.request().lst_TrendVars)
        studies << e.at(ComparisonEntry::Study);
    studies.removeDuplicates();
    tellCasesElsewhere(session, studies);
    return true;
}
