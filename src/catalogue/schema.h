#pragma once

#include "platform/dao/Database.h"

#include <QString>
#include <QStringList>
#include <vector>

/// The tables of a catalogue and of its case files: names, fields, keys and the indexes that serve the
/// statements which read them.
///
/// Text and memo fields have no size limit, except in the two comparison tables. Counters give the keys of
/// entries and of assignments. Yes/No fields are never Null.
namespace schema {

/// One table as it is to be made.
struct Table {
    QString name;
    std::vector<dao::FieldDefinition> fields;
    QStringList primaryKey; ///< empty: the counter
    std::vector<dao::TableDef::Index> indexes;

    QStringList fieldNames() const;
};

/// "tkey_" and the suffix: the entries of a view.
QString entryTableName(const QString& suffix);
/// "trel_Variable" and the suffix: the assignments of variables to the entries of a category view.
QString assignmentTableName(const QString& suffix);

/// Entries of a study view: studies and study groups, by number (`id_StudyNo`).
Table studyEntries(const QString& suffix);
/// Entries of a category or trend view, by counter (`id`).
Table categoryEntries(const QString& suffix);
/// Variables in the categories of a view.
Table assignments(const QString& suffix);
Table variables();
Table values();
Table varGroups();
Table parts();
Table database();
Table options();
/// The comparison tables exist only once a comparison has been saved.
Table comparisons();
Table comparisonVariables();
/// A table of case data: `dt_CaseID` (whole number, primary key), then the fields given.
Table cases(const QString& name, const std::vector<dao::FieldDefinition>& fields);

/// The definition of a table, ready to be appended to a database or handed to a companion file.
dao::TableDefPtr definition(dao::Database& database, const Table& table);
/// Makes a table. @throws dao::Error 3010 if there is one of that name, 3027
void create(dao::Database& database, const Table& table);
/// Makes a table unless there is one of that name. @return true if it was made
bool ensure(dao::Database& database, const Table& table);

/// Makes the tables of one view that are not there yet.
void createStudyView(dao::Database& database, const QString& suffix);
void createCategoryView(dao::Database& database, const QString& suffix);
/// Makes every table of a catalogue that is not there yet, the comparison tables apart.
void createCatalogueTables(dao::Database& database, const QStringList& studyViews = {QStringLiteral("Study")},
                           const QStringList& categoryViews = {});

} // namespace schema
