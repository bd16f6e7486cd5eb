#pragma once

#include "explorer/VariableList.h"

#include <utility>
#include <vector>

/// Where one stands in a list of variables (which rows are selected, which is the current one, which is the first in
/// view), so that one stands there again once its rows were read anew. A row is known by its study and its variable.
class ListStanding {
public:
    ListStanding() = default;
    /// Places are those among the rows in view. @param current, top -1 for none
    ListStanding(const VariableList& list, std::vector<int> selected, int current, int top);

    struct Places {
        std::vector<int> selected;
        int current = -1, top = -1; ///< -1 where there is none
    };
    /// The same rows in the list as it is now. Where none that was selected is left, the row behind them is selected,
    /// else the one before.
    Places in(const VariableList& list) const;
    /// There was no row at all.
    bool wasEmpty() const { return rows_.empty(); }

private:
    using RowKey = std::pair<QString, QString>; ///< study, variable
    std::vector<RowKey> rows_;                  ///< that were in view
    std::vector<int> selected_;
    int current_ = -1, top_ = -1;

    static std::vector<RowKey> keysOf(const VariableList& list);
};
