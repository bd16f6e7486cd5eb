#pragma once

#include "app/globals.h"
#include "printing/ReportCatalogue.h"
#include "printing/Spool.h"
#include "printing/VariableRecord.h"

#include <functional>
#include <optional>

/// A category view whose assignments are shown.
struct AssignmentView {
    QString table; ///< suffix of its tables
    QString name;  ///< in the language of the report's words
};

/// What a report wants of its variables.
struct VariableWishes {
    ReportLanguages languages;
    bool question = false, table = false, graph = false, cards = false;
    QString catalogue;                 ///< path
    std::vector<AssignmentView> views; ///< in their order
    QString groupWord;                 ///< what the groups of variables are called
    QHash<QString, BothTexts> groups;  ///< by the group's key
};

/// Variables of one study, read together: a statement for each would take many times as long. All that the catalogue
/// says of them is read in one step, so that no variable is a mixture of two states; their pictures follow.
class VariableBatch {
public:
    /// @param variables with name, study, its title and the label, in the order of the report
    VariableBatch(ReportCatalogue& catalogue, Spool& spool, const VariableWishes& wishes,
                  std::vector<VariableRecord> variables);

    /// Reads on. @return true while there is more to read @throws dao::Error
    bool step();
    const std::vector<VariableRecord>& asked() const { return asked_; }
    const std::vector<VariableRecord>& variables() const { return variables_; }
    /// Their values are too many for one step: nothing was read, fewer variables are to be tried.
    bool isTooLarge() const { return isTooLarge_; }
    /// Characters of what may be long: question texts, values, tables, graphs.
    qsizetype characters() const { return characters_; }

private:
    ReportCatalogue& catalogue_;
    Spool& spool_;
    const VariableWishes& wishes_;
    std::vector<VariableRecord> asked_, variables_;
    QHash<QString, std::vector<int>> byName_; ///< folded
    bool isRead_ = false, isTooLarge_ = false;
    size_t nextCard_ = 0;
    qsizetype characters_ = 0;

    void readCatalogue();
    void readRows();
    void readMemos(VariableRecord& variable, const dao::Recordset& row);
    bool readValues();
    void readAssignments(const AssignmentView& view);
    VariableRecord::Picture card(const QString& name, const QString& mark);
    QString condition(const QString& nameColumn) const;
    std::vector<qint64> version();
    VariableRecord* next(QHash<QString, size_t>& taken, const QString& name);
};
