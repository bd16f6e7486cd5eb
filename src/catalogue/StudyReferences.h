#pragma once

#include "catalogue/studyContent.h"
#include "platform/dao/Database.h"

#include <vector>

/// Where else in a catalogue a study's variables are named: stored comparisons, the study's query,
/// categories, parts. What a replaced study means for them.
class StudyReferences {
public:
    /// Where a variable lay before.
    struct Place {
        QString name, table, field;
    };

    StudyReferences(dao::Database& catalogue, const QString& study) : catalogue_(catalogue), study_(study) {}

    /// Brings the copies that comparisons hold in line with the variables. @return facts about what was not
    QStringList updateComparisons(const std::vector<VariableEntry>& variables);
    /// Facts about fields that the study's query names and that are other variables' now.
    static QStringList movedInQuery(const QString& query, const std::vector<Place>& before,
                                    const std::vector<VariableEntry>& variables);
    /// What still names variables that went: assignments, comparisons with their weights and filters, parts;
    /// one a line.
    QStringList toVanished(const QStringList& vanished) const;
    /// What stands on the codes of variables: comparisons with their weights and filters, parts; one a line.
    QStringList onCodesOf(const QStringList& variables) const;

private:
    dao::Database& catalogue_;
    QString study_;

    QStringList inCategories(const QStringList& vanished) const;
    QStringList inComparisons(const QStringList& vanished) const;
    QStringList inParts(const QStringList& vanished) const;
};

/// The variable of that name, null if there is none.
const VariableEntry* entryOf(const std::vector<VariableEntry>& variables, const QString& name);
