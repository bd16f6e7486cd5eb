#pragma once

#include "charts/StoredGraph.h"

#include <QImage>
#include <QString>
#include <optional>

class AnalysisModel;

/// The commands of the analysis window on what the catalogue keeps with the variable that is chosen: its table and its
/// chart. Failures of the catalogue are reported; what can't be done is told as "Fehler", with the reason behind it.
class StoredResults {
public:
    explicit StoredResults(AnalysisModel& model) : model_(model) {}

    /// What can be done now; nothing outside creation mode.
    struct Offered {
        bool save = false, load = false, remove = false;
    };
    Offered table() const;
    Offered graph() const;

    /// Keeps the table that is shown: a complete one of the variable that is chosen, with the widths and heights that
    /// it has now. Of a stored table that is shown only these can be others. @return whether the catalogue has it
    bool cmdTableSave();
    /// Shows the stored table in place of the one in view. @return whether it is shown
    bool cmdTableLoad();
    /// @return whether there was a table and is none any more
    bool cmdTableDelete();
    /// The same for the chart. One that is shown as it was stored is kept byte by byte.
    bool cmdGraphSave();
    bool cmdGraphLoad();
    bool cmdGraphDelete();

    /// A stored chart in view, in place of the window's own.
    struct Shown {
        StoredGraph graph;
        QImage picture;
        QString study, variable;
        QString content, layout; ///< as the catalogue has them
    };
    const std::optional<Shown>& shownGraph() const { return shownGraph_; }
    /// The window's own chart is shown again.
    void forgetGraph() { shownGraph_.reset(); }

private:
    AnalysisModel& model_;
    std::optional<Shown> shownGraph_;

    struct Kind;
    static const Kind tables, graphs;
    /// Both fields of a result, or why there is none to keep.
    struct Texts {
        QString content, layout;
        QString reason = QString();
    };
    bool hasVariable() const;
    Offered offered(bool kept, bool made) const;
    Texts kept(const Kind& kind) const;
    QString notToKeep() const;
    Texts tableTexts() const;
    Texts graphTexts() const;
    bool save(const Kind& kind, const Texts& texts);
    bool remove(const Kind& kind);
    bool write(const Kind& kind, const Texts& texts);
};
