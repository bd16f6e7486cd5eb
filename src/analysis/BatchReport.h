#pragma once

#include <QString>
#include <QStringList>
#include <vector>

enum class BatchKind { Tables, Graphs };

/// What became of a batch, variable by variable.
struct BatchReport {
    struct Named {
        QString variable, words;
    };

    BatchKind kind = BatchKind::Tables;
    QString study;
    QStringList done;           ///< with a new table or graph
    std::vector<Named> failed;  ///< kept what they had
    QStringList deleted;        ///< had a table or graph, and have none now
    QStringList withoutChart;   ///< had no graph, and their table has no chart
    QStringList notReached;     ///< the batch was stopped, or given up, before
    std::vector<Named> remarks; ///< what was said of those that are done
    QString ended;              ///< why it was given up; empty if it was not

    /// A line for each kind of outcome, with the names of those that failed and why, in short; at most so many, and how
    /// many more.
    QString summary(int mostNames) const;
    /// Everything by name, and in all its words.
    QString text() const;

private:
    QString outcomes(qsizetype mostNames, bool whole) const;
};
