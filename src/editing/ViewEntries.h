#pragma once

#include "catalogue/StudyRows.h"
#include "explorer/EntryColumns.h"

#include <QHash>
#include <vector>

/// Where a view keeps its entries and what hangs on them, for who edits them.
struct ViewTables {
    int view;
    bool study, english;
    EntryColumns columns; ///< of the contents' language that the edit is about
    QString entries;      ///< table of the entries
    QString assignments;  ///< table of the assignments; that of the variables in a study view

    ViewTables(int viewNumber, bool englishContents);

    /// A key as statements write it: quoted in a study view, a bare number in a category view.
    /// @throws dao::Error 13 for what is no number there
    QString literal(const QString& key) const;
    /// A key or parent as it is stored.
    dao::Value stored(const QString& key) const;
    /// Key of the entry's node.
    QString nodeKey(const QString& key) const;
    /// The row of an entry, to be edited; at its end if there is none.
    dao::RecordsetPtr row(const QString& key) const;
    /// The rows below an entry in their order, to be edited; "0" for the top.
    dao::RecordsetPtr rowsBelow(const QString& parent) const;
};

/// An entry without its description.
struct EntryRow {
    QString key, parent; ///< "0" at the top
    QString name;        ///< as stored, in the language asked for
    qint64 order = 0;
    bool operator==(const EntryRow&) const = default;
};

/// The entries of a view as the catalogue has them at one moment, with the ways between them.
class ViewEntries {
public:
    /// @throws dao::Error if they cannot be read
    explicit ViewEntries(const ViewTables& tables);

    /// Null if there is none; keys are compared as the engine does.
    const EntryRow* find(const QString& key) const;
    /// Siblings in their order.
    std::vector<EntryRow> below(const QString& parent) const;
    /// An entry and all that stands below it, child before next sibling; each once, also where entries stand below
    /// themselves.
    std::vector<EntryRow> subtree(const QString& key) const;

private:
    std::vector<EntryRow> rows_;
    QHash<QString, size_t> byKey_;
    QHash<QString, std::vector<size_t>> below_;
};

/// Why a view's entries cannot be changed, in the user's language; empty if they can.
QString whyNotEditable(int view);

/// What the history calls an edit: "Löschen "…"", with a long name cut and on one line.
QString editName(const QString& what, const QString& entry);

/// A name for the middle of a question: longer than anyone reads it is cut.
QString askedName(const QString& name);
