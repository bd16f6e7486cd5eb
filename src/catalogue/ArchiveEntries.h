#pragma once

#include "catalogue/ArchiveBuilder.h"
#include "catalogue/ArchiveDescription.h"
#include "platform/dao/Database.h"

#include <QHash>

namespace archive {

/// The variables of one study as the catalogue has them after the import.
struct StudyVariables {
    QString study;
    QStringList names;  ///< in order of position
    QStringList tables; ///< tables of the cases, each once

    bool contains(const QString& name) const { return names.contains(name, Qt::CaseInsensitive); }
};

/// Writes what a description says of a catalogue into its tables, studies' files apart. Runs inside a
/// transaction of the caller's; failures are ImportError with the place in the description.
class EntryWriter {
public:
    EntryWriter(const Description& description, dao::DatabasePtr catalogue, BuildReport& report);

    /// Tables of all views, options, title, variable groups.
    void writeFrame();
    /// Rows of the groups of a study view; studies need them there.
    void writeGroups(const View& view);
    /// What the import of a study has not written: its place in the tree, its description, query, parts,
    /// texts of its variables.
    void completeStudy(const View& view, const Study& study);
    /// Categories and their variables; after all studies.
    void writeCategories(const View& view);
    /// Refuses texts for a variable that no study has; after all studies.
    void checkVariableTexts() const;

    const std::vector<StudyVariables>& studies() const { return studies_; }

private:
    const Description& description_;
    dao::DatabasePtr catalogue_;
    BuildReport& report_;
    std::vector<StudyVariables> studies_;
    QHash<QString, int> groupIds_;                ///< by case-folded key
    QHash<QString, const VariableTexts*> common_; ///< texts for every study, by case-folded name

    void writeOptions();
    void writeParts(const Study& study, const StudyVariables& variables);
    void writeVariableTexts(const Study& study);
    StudyVariables variablesOf(const QString& study) const;
    /// Study number and name of every variable that a category's pattern takes; at least one.
    std::vector<std::pair<QString, QString>> matching(const Category& category, qsizetype pattern) const;
};

} // namespace archive
