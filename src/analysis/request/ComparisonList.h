#pragma once

#include "analysis/request/RequestEditor.h"

#include <QList>

/// The entries of a comparison and the comparisons that the catalogue keeps, as the analysis window works with them.
///
/// Entries live in the request; this knows which of them are selected, brings a selected one back into the
/// window, and lets it follow the window's weight and filter.
class ComparisonList {
public:
    explicit ComparisonList(RequestEditor& editor);
    ~ComparisonList();
    ComparisonList(const ComparisonList&) = delete;
    ComparisonList& operator=(const ComparisonList&) = delete;

    const QList<ComparisonEntry>& entries() const { return editor_.request().lst_TrendVars; }

    /// Adds the variable, weight and filter that the window shows. @return false after a message
    bool cmd_AddTrend();
    /// Adds a variable with the weight that the option ComparisonWeight names, if its study has it; the filter is none.
    /// @return false if study or variable are not there
    bool addVariable(const QString& study, const QString& variable);
    /// Removes the selected entries after a question.
    void cmd_DeleteFromTrend();
    /// Removes all entries and the title after a question.
    void cmd_ClearTrend();

    /// The title of the comparison.
    void setTitle(const QString& title);

    /// The selected rows, from 0. Selecting takes the first of them back into the window: study, variable, weight,
    /// filter.
    void select(const QList<int>& rows);
    const QList<int>& selected() const { return selected_; }
    bool deleteEnabled() const { return !selected_.isEmpty(); }

    /// Brings the selected entry in line with the window's weight and filter. @param ask false changes it without a
    /// question
    void ApplyComparisonEntryChange(bool ask);

    // ---- comparisons that the catalogue keeps
    struct Saved {
        QString key; ///< "ID" and the number
        QString name;
    };
    const QList<Saved>& lst_SavedTrends() const { return saved_; }
    /// Reads the list anew; it stays as it is where the catalogue has no tables for it.
    void RefreshSavedComparisons();
    /// Stores the entries under a name that is asked for, whole or not at all. @return true if they are stored
    bool cmd_SaveTrend();
    /// Stores under a name that is given; a name that is taken is refused with its message.
    bool save(const QString& name);
    /// Takes a stored comparison in place of the entries, after a question. @param row in lst_SavedTrends
    bool cmd_LoadTrend(int row);
    /// Deletes a stored comparison, after a question.
    bool cmd_DelSavedTrend(int row);
    /// Both without a question, by name; false after a message where there is none of that name.
    bool load(const QString& name);
    bool remove(const QString& name);

private:
    RequestEditor& editor_;
    QList<int> selected_;
    QList<Saved> saved_;
    bool armed_ = false; ///< an entry was selected, and nothing is being set by the program

    /// Runs steps that set the window's choices without the selected entry following them.
    template<class Steps>
    void quietly(Steps&& steps);
    void setEntries(const QList<ComparisonEntry>& entries, const QString& title);
    bool writeChoices(ComparisonEntry& entry) const;
    bool takeBack(const ComparisonEntry& entry);
    bool tablesExist() const;
    std::optional<Saved> savedNamed(const QString& name);
    bool load(const Saved& saved);
    bool remove(const Saved& saved);
};
