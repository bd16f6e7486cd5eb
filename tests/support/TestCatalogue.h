#pragma once

#include "platform/dao/DBEngine.h"

#include <QString>
#include <functional>
#include <initializer_list>
#include <utility>
#include <vector>

/// A small catalogue with its case files in a folder of the test's own.
///
/// Made empty; fill() gives it the standing example, the add operations whatever a test needs besides. Names
/// of fields are those of the tables. Everything is in the files as soon as an operation returns; the
/// catalogue is opened for the system with open().
///
/// The standing example:
///  - views: 1 "Studien" (`Study`, study view), 2 "Kategorien" (`Category`), 3 "Trends" (`Trend`, with
///  CompAnalysis);
///  - group G001 with QX1919 (year 1919, weight V3 as `dt_WeightRE`) in it; QX2020 (year 2020, no weights) at
///  the top;
///  - QX1919.mdb: QX1919_1 (dt_CaseID, V3 Double weight, V5, V7 Double, V8 Text) and QX1919_2 (V6, V9
///  Double), six cases;
///  - QX2020.mdb: QX2020_1 (V5, V7), three cases;
///  - variable groups 1 "Welle 1" and 2 "Welle 2", value labels, one part of QX1919 for separate analysis.
class TestCatalogue {
public:
    using Row = std::initializer_list<std::pair<const char*, dao::Value>>;

    /// Sets the options and views of the process back to their defaults. Makes the folder `data` and the
    /// catalogue `name` with all its tables in the folder.
    explicit TestCatalogue(const QString& folder, const QString& name = QStringLiteral("catalogue.mdb"));
    /// Closes the catalogue if it is still open for the system.
    ~TestCatalogue();

    QString path() const { return path_; }
    QString dataFolder() const { return dataFolder_; }
    QString caseFile(const QString& study) const;

    void fill();
    /// Runs several add operations in one transaction: a test should not wait for the disk after each row.
    void together(const std::function<void()>& adds);

    /// One row in a table of the catalogue; fields not named are Null, Yes/No fields No.
    void add(const QString& table, Row row);
    void addStudy(const QString& number, const QString& title, Row more = {});
    /// A variable at the next free position, in the table and field named.
    void addVariable(const QString& study, const QString& name, const QString& table, Row more = {});
    void addValue(const QString& study, const QString& variable, const QString& code, const QString& label);
    void addOption(const QString& name, const dao::Value& value);
    /// A category of a view; `id` is taken as given.
    void addCategory(const QString& view, int id, int parent, int order, const QString& name, Row more = {});
    void addAssignment(const QString& view, int category, const QString& study, const QString& variable);

    /// Adds a table of cases to a study's case file (made if missing). Each row gives the values of the
    /// fields in their order; cases are numbered from 1.
    void addCases(const QString& study, const QString& table, const std::vector<dao::FieldDefinition>& fields,
                  const std::vector<std::vector<dao::Value>>& rows);

    /// Runs a statement that changes the catalogue.
    void execute(const QString& statement);

    /// Points gOptions.DataPath at the case files and opens the catalogue as a user would. @return the state
    /// reached
    qint16 open();

private:
    using Cells = std::vector<std::pair<QString, dao::Value>>;

    QString path_, dataFolder_;
    int position_ = 0;
    dao::DatabasePtr filling_;

    void append(const QString& table, const Cells& start, Row more);
    void addStudies();
    void addVariables();
    void addTrees();
    void addCaseTables();
};
