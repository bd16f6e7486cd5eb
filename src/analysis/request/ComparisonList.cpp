#include "analysis/request/ComparisonList.h"

#include "analysis/request/comparisonEntries.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "diagnostics/errors.h"
#include "platform/ui/Asker.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

void say(const QString& text) {
    ui::asker().messageBox({.text = TranslateText(text), .icon = ui::Icon::Exclamation});
}

/// @param byDefault what keeps the work that is there
bool agreed(const QString& question, const QString& name = QString(), ui::Answer byDefault = ui::Answer::No) {
    const QString of = name.isEmpty() ? QString() : u"\r\n("_s + name + u')';
    return ui::asker().messageBox({TranslateText(question) + of, QString(), ui::Icon::Question, ui::Buttons::YesNo,
                                   byDefault}) == ui::Answer::Yes;
}

} // namespace

ComparisonList::ComparisonList(RequestEditor& editor) : editor_(editor) {
    editor_.followCases([this] { ApplyComparisonEntryChange(true); });
}

ComparisonList::~ComparisonList() {
    editor_.followCases({});
}

template<class Steps>
void ComparisonList::quietly(Steps&& steps) {
    const bool armed = std::exchange(armed_, false);
    steps();
    armed_ = armed;
}

/// Weight and filter of the window as an entry keeps them. @return false where a weight is asked for and none is picked
bool ComparisonList::writeChoices(ComparisonEntry& entry) const {
    const AnalysisRequest& r = editor_.request();
    if (r.Option3 == WeightKind::WeightUser && r.weightVariable().isEmpty())
        return false;
    static const QString kinds[] = {QString(), u"RE"_s, u"HH"_s, u"user"_s};
    entry.column[ComparisonEntry::Weight] = r.weightVariable();
    entry.column[ComparisonEntry::WeightInfo] = kinds[static_cast<int>(r.Option3)];
    for (const auto column : {ComparisonEntry::Filter, ComparisonEntry::FilterInfo, ComparisonEntry::PartText})
        entry.column[column].clear();
    if (r.optFilter == FilterKind::FilterUser) {
        entry.column[ComparisonEntry::Filter] = r.txtFilter;
        entry.column[ComparisonEntry::FilterInfo] = u"user"_s;
    } else if (r.optFilter == FilterKind::FilterParts && !r.dbcParts.isEmpty()) {
        entry.column[ComparisonEntry::Filter] = r.txtFilter;
        entry.column[ComparisonEntry::FilterInfo] = r.dbcParts.value;
        entry.column[ComparisonEntry::PartText] = r.dbcParts.text;
    }
    entry.text = entryText(entry);
    return true;
}

bool ComparisonList::cmd_AddTrend() {
    const AnalysisRequest& r = editor_.request();
    if (r.dtTable.isEmpty() || r.dtField.isEmpty()) {
        say(u"Keine Variable ausgewählt"_s);
        return false;
    }
    ComparisonEntry entry;
    entry.column[ComparisonEntry::Study] = r.dbcStudy.value;
    entry.column[ComparisonEntry::Variable] = r.dbcVariable.value;
    entry.column[ComparisonEntry::Table] = r.dtTable;
    entry.column[ComparisonEntry::Field] = r.dtField;
    entry.column[ComparisonEntry::Missing] = r.dtMissing;
    entry.column[ComparisonEntry::Year] = r.dtYear;
    entry.column[ComparisonEntry::Group] = r.dtVarGroup;
    entry.column[ComparisonEntry::VarLabel] = r.dbcVariableUni;
    if (!writeChoices(entry)) {
        say(u"Gewichtungsvariable auswählen"_s);
        return false;
    }
    editor_.change(RequestPart::Entries, [&](AnalysisRequest& changed) { changed.lst_TrendVars.append(entry); });
    return true;
}

bool ComparisonList::addVariable(const QString& study, const QString& variable) {
    bool added = false;
    quietly([&] {
        if (!editor_.StudyClick(study) || !editor_.chooseVariable(variable))
            return;
        editor_.chooseFilter(FilterKind::noFilter);
        const WeightKind wanted = gOptions.ComparisonWeight == 1   ? WeightKind::WeightRE
                                  : gOptions.ComparisonWeight == 2 ? WeightKind::WeightHH
                                                                   : WeightKind::noWeight;
        if (!editor_.chooseWeight(wanted))
            editor_.chooseWeight(WeightKind::noWeight);
        added = cmd_AddTrend();
    });
    return added;
}

void ComparisonList::cmd_DeleteFromTrend() {
    if (selected_.isEmpty() || !agreed(u"Möchten Sie die ausgewählte Variable aus dem Vergleich löschen?"_s))
        return;
    std::ranges::sort(selected_, std::greater());
    const QList<int> rows = std::exchange(selected_, {});
    armed_ = false;
    editor_.change(RequestPart::Entries, [&](AnalysisRequest& changed) {
        for (const int row : rows)
            changed.lst_TrendVars.removeAt(row);
    });
}

void ComparisonList::cmd_ClearTrend() {
    if (entries().isEmpty() || !agreed(u"Möchten Sie den Vergleich leeren?"_s))
        return;
    setEntries({}, QString());
}

void ComparisonList::select(const QList<int>& rows) {
    selected_.clear();
    for (const int row : rows)
        if (row >= 0 && row < entries().size() && !selected_.contains(row))
            selected_.append(row);
    std::ranges::sort(selected_);
    armed_ = false;
    if (selected_.isEmpty())
        return;
    const ComparisonEntry entry = entries().at(selected_.first());
    bool whole = false;
    quietly([&] { whole = takeBack(entry); });
    // An entry that the window cannot show must not follow what the window shows.
    armed_ = whole;
}

/// Sets the window's choices from an entry. @return false if its study or variable has gone; the window keeps what it
/// can
bool ComparisonList::takeBack(const ComparisonEntry& entry) {
    if (!editor_.StudyClick(entry.at(ComparisonEntry::Study)) ||
        !editor_.chooseVariable(entry.at(ComparisonEntry::Variable)))
        return false;
    const QString& weight = entry.at(ComparisonEntry::Weight);
    if (weight.isEmpty())
        editor_.chooseWeight(WeightKind::noWeight);
    else if (weight == editor_.request().dt_WeightHH)
        editor_.chooseWeight(WeightKind::WeightHH);
    else if (weight == editor_.request().dt_WeightRE)
        editor_.chooseWeight(WeightKind::WeightRE);
    else
        editor_.chooseWeight(WeightKind::WeightUser, weight);
    const QString& kind = entry.at(ComparisonEntry::FilterInfo);
    if (!kind.isEmpty() && kind != "user"_L1)
        return editor_.choosePart(kind);
    if (entry.at(ComparisonEntry::Filter).isEmpty())
        editor_.chooseFilter(FilterKind::noFilter);
    else
        editor_.chooseFilterText(entry.at(ComparisonEntry::Filter));
    return true;
}

void ComparisonList::ApplyComparisonEntryChange(bool ask) {
    if (!armed_ || selected_.isEmpty() || editor_.request().mode != AnalysisMode::Comparison)
        return;
    const int row = selected_.first();
    const ComparisonEntry& entry = entries()[row];
    // The window has gone on to another study: its weights and parts are not the entry's.
    if (entry.at(ComparisonEntry::Study) != editor_.request().dbcStudy.value)
        return;
    ComparisonEntry changed = entry;
    const bool complete = writeChoices(changed);
    // The user's filter without a text is none.
    const auto unfiltered = [](const ComparisonEntry& e) {
        const QString& kind = e.at(ComparisonEntry::FilterInfo);
        return e.at(ComparisonEntry::Filter).isEmpty() && (kind.isEmpty() || kind == "user"_L1);
    };
    if (complete && unfiltered(changed) && unfiltered(entry))
        changed.column[ComparisonEntry::FilterInfo] = entry.at(ComparisonEntry::FilterInfo);
    if (complete && std::ranges::equal(changed.column, entry.column))
        return;
    if (ask && !agreed(u"Möchten Sie den ausgewählten Eintrag in der Vergleichsauswertung ändern?"_s))
        return;
    if (!complete) {
        say(u"Gewichtungsvariable auswählen"_s);
        return;
    }
    editor_.change(RequestPart::Entries, [&](AnalysisRequest& request) { request.lst_TrendVars[row] = changed; });
}

void ComparisonList::setTitle(const QString& title) {
    editor_.change(RequestPart::Entries, [&](AnalysisRequest& changed) { changed.txtTitle = title; });
}

void ComparisonList::setEntries(const QList<ComparisonEntry>& entries, const QString& title) {
    selected_.clear();
    armed_ = false;
    editor_.change(RequestPart::Entries, [&](AnalysisRequest& changed) {
        changed.lst_TrendVars = entries;
        changed.txtTitle = title;
    });
}

bool ComparisonList::tablesExist() const {
    return gDatabase.TableExist(u"tsys_Comparison"_s) && gDatabase.TableExist(u"tsys_VariableComparison"_s);
}

void ComparisonList::RefreshSavedComparisons() {
    if (!tablesExist())
        return;
    saved_.clear();
    attempt([this] {
        const dao::RecordsetPtr rows =
            gDatabase.CurrentDatabase()->OpenRecordset(u"tsys_Comparison"_s, dao::dbOpenSnapshot);
        for (; !rows->Eof(); rows->MoveNext())
            saved_.append({u"ID"_s + rows->text(u"ID"_s), rows->text(u"dt_CompName"_s)});
        rows->Close();
    });
}

bool ComparisonList::cmd_SaveTrend() {
    if (entries().isEmpty())
        return false;
    bool stored = false;
    if (agreed(u"Möchten Sie diesen Vergleich speichern?"_s, {}, ui::Answer::Yes)) {
        QString name = editor_.request().txtTitle;
        for (;;) {
            const std::optional<QString> given =
                ui::asker().inputBox(TranslateText(u"Bitte einen Namen eingeben:"_s), {}, name);
            if (!given || given->isEmpty())
                break;
            name = *given;
            if (comparisonNamed(name)) {
                say(u"Name bereits vorhanden."_s);
                continue;
            }
            stored = attempt([&] { storeComparison(name, editor_.request().txtTitle, entries()); });
            break;
        }
    }
    RefreshSavedComparisons();
    return stored;
}

bool ComparisonList::save(const QString& name) {
    if (comparisonNamed(name)) {
        say(u"Name bereits vorhanden."_s);
        return false;
    }
    const bool stored = attempt([&] { storeComparison(name, editor_.request().txtTitle, entries()); });
    RefreshSavedComparisons();
    return stored;
}

bool ComparisonList::cmd_LoadTrend(int row) {
    const ui::Answer byDefault = entries().isEmpty() ? ui::Answer::Yes : ui::Answer::No;
    if (row < 0 || row >= saved_.size() ||
        !agreed(u"Möchten Sie einen Vergleich laden?"_s, saved_[row].name, byDefault))
        return false;
    return load(saved_[row]);
}

bool ComparisonList::load(const Saved& saved) {
    std::optional<StoredComparison> stored;
    if (!tablesExist() || !attempt([&] { stored = readComparison(saved.key.mid(2), editor_.englishContents()); }))
        return false;
    if (!stored) {
        say(u"Vergleich nicht gefunden"_s);
        return false;
    }
    setEntries(stored->entries, stored->title);
    return true;
}

bool ComparisonList::cmd_DelSavedTrend(int row) {
    if (row < 0 || row >= saved_.size() ||
        !agreed(u"Möchten Sie einen gespeicherten Vergleich löschen?"_s, saved_[row].name))
        return false;
    return remove(Saved(saved_[row]));
}

bool ComparisonList::remove(const Saved& saved) {
    bool deleted = false;
    if (tablesExist() && attempt([&] { deleted = deleteComparison(saved.key.mid(2)); }) && !deleted)
        say(u"Vergleich nicht gefunden"_s);
    RefreshSavedComparisons();
    return deleted;
}

std::optional<ComparisonList::Saved> ComparisonList::savedNamed(const QString& name) {
    RefreshSavedComparisons();
    const auto found =
        std::ranges::find_if(saved_, [&](const Saved& s) { return dao::compareTexts(s.name, name) == 0; });
    if (found != saved_.end())
        return *found;
    say(u"Vergleich nicht gefunden"_s);
    return std::nullopt;
}

bool ComparisonList::load(const QString& name) {
    const std::optional<Saved> saved = savedNamed(name);
    return saved && load(*saved);
}

bool ComparisonList::remove(const QString& name) {
    const std::optional<Saved> saved = savedNamed(name);
    return saved && remove(*saved);
}
