#pragma once

#include "analysis/request/ComparisonList.h"
#include "vdx/StudyRequest.h"

#include <optional>
#include <string>
#include <vector>

/// The columns of a comparison as typed: entries, or the name of one that the catalogue keeps.
class TypedComparison {
public:
    /// Declares --entry and --load.
    void declare(CLI::App& command);

    bool hasEntries() const { return !entries_.empty(); }
    bool hasName() const { return !load_.empty(); }
    /// Understands the entries, before any catalogue is opened. @throws UsageError
    void read();
    /// Makes the list that was typed. False after a message on standard error.
    bool choose(Session& session, RequestEditor& editor, ComparisonList& list) const;

private:
    /// One --entry: 'STUDY VARIABLE [weight=..] [filter=..] [part=..] [missing=..]'. A value reaches to the next key;
    /// one in double quotes to its end, and so does a name.
    struct Entry {
        TypedCases cases;
        QString variable;
        std::optional<QString> missing;
    };
    std::vector<std::string> entries_;
    std::string load_;
    std::vector<Entry> typed_;

    static Entry entryFrom(const QString& text);
    bool addEntries(Session& session, RequestEditor& editor, ComparisonList& list) const;
};
