#pragma once

#include "tables/Marks.h"
#include "vdx/Session.h"

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

/// Marks of missing values that stand in place of what the definitions say, as typed: of one variable, or of the rows
/// of a comparison.
class TypedMarks {
public:
    /// Declares --mark and --unmark. @param suffix behind their names, "2" for a second variable
    void declare(CLI::App& command, const std::string& suffix = {});
    /// Declares --cumulated, of frequency tables only.
    void declareCumulated(CLI::App& command);

    bool empty() const { return mark_.empty() && unmark_.empty() && cumulated_.empty(); }
    /// Sets the marks that are asked for. A value that the definition leaves out of the table is taken in.
    /// @throws UsageError for a percentage that is no number
    void applyTo(AxisMarks& marks) const;
    /// True if the table has all of them; a message on standard error for a value that it has not.
    bool standIn(Session& session, const AxisMarks& marks) const;

private:
    std::string suffix_;
    std::vector<std::string> mark_, unmark_, cumulated_;
};
