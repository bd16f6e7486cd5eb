#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <vector>

struct CatalogueNode;

/// What the user's answers rest on: rows of the catalogue as they were when the questions were asked. To be filled
/// before the first question and given to PlannedEdit::stillSo, which compares it inside the transaction: another
/// program may have written while a dialog was open.
///
/// Keys are those of nodes, with the view's letter; that of a root stands for no row. Every reading throws dao::Error.
class EditBasis {
public:
    /// An entry: its names, descriptions and parent.
    EditBasis& entry(const QString& key);
    /// The entries right below one, each with its names, in their order.
    EditBasis& children(const QString& key);
    /// An entry and all that stands below it, with names and parents. What is not reached from the entry, because an
    /// entry stands below itself, is no part of it.
    EditBasis& subtree(const QString& key);
    /// An entry as a window shows it: its text and its parent. A node that was shown without text is as good as any.
    EditBasis& shown(const CatalogueNode& node, bool english);
    /// Whatever a SELECT gives, row by row.
    EditBasis& rows(const QString& statement);

    /// Reads everything again. @return false if anything is otherwise, be it by a letter's case
    bool stillSo() const;

private:
    struct Part {
        std::function<QByteArray()> read; ///< a digest
        QByteArray was;
    };
    std::vector<Part> parts_;

    EditBasis& keep(std::function<QByteArray()> read);
};
