#pragma once

#include "platform/dao/Recordset.h"
#include "tables/Marks.h"
#include "tables/missing.h"

#include <QHash>
#include <QSet>
#include <optional>
#include <vector>

/// One axis of a crosstab: the values that occur, sorted, with their labels and marks. Texts that differ in case only
/// are one value, as for the engine; it shows as it was spelled first.
class CrosstabAxis {
public:
    struct Rules {
        int field = 0;                  ///< of the value in the records
        std::optional<QString> missing; ///< definition
        bool IncludeMissingXTab = false;
        bool noLabels = false;
        /// A missing value is taken all the same where it has no label.
        bool takesUnlabelled = false;
        const AxisMarks* marks = nullptr; ///< set by hand: they decide for the values that they hold; may be null
    };
    struct Entry {
        QString value; ///< empty for system-missing
        QString label;
        QString mark; ///< "X" when missing
        bool null = false;
        bool marked() const { return isMark(mark); }
    };

    /// @throws dao::Error or shows the standard box for a definition that doesn't read; see MissingDefinition
    CrosstabAxis(dao::Recordset& counts, dao::Recordset& labels, const Rules& rules);

    /// Takes the value of the current record in its place, unless it is there or is left out as missing.
    /// Shows a failed look-up. @return false for Abort
    bool takeRecord();

    int size() const { return static_cast<int>(order_.size()); }
    const Entry& at(int position) const { return entry(order_[static_cast<size_t>(position)]); }
    /// To be called when all values are taken.
    void finish();
    /// Position of the value of the current record, -1 if it was left out.
    int positionOfRecord();

private:
    struct Sortable {
        Entry entry;
        double leading = 0; ///< the number that its text starts with
    };

    dao::Recordset& counts_;
    dao::Recordset& labels_;
    Rules rules_;
    QString ofVariable_;
    MissingDefinition definition_;
    std::vector<Sortable> entries_; ///< as they arrived; the place is the entry's id
    std::vector<int> order_;        ///< ids, sorted
    std::vector<int> positions_;    ///< of each id
    QHash<QString, int> ids_;       ///< by key
    QSet<QString> leftOut_;         ///< keys
    QHash<double, int> positionsOfNumbers_;

    const Entry& entry(int id) const { return entries_[static_cast<size_t>(id)].entry; }
    bool isMissing(const dao::Value& value) const;
    bool isTaken(const dao::Value& value, bool labelled) const;
    void add(const dao::Value& value, const QString& key, const std::optional<QString>& label);
    void insertSorted(const dao::Value& value);
};
