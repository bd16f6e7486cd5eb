#pragma once

#include "explorer/VariableList.h"

#include <QString>

/// How the user has set up an explorer: the places of its splitters, its columns and its sorting, kept for the windows
/// of the same kind of view in this and later runs.
struct ExplorerLayout {
    /// Shares of a thousand: of the tree in the width, of tree and list in the height, of panel A in the width.
    int tree = 300, list = 500, panelA = 500;
    int question = 550;               ///< and of the question in the width of a panel
    int besideA = 530, besideB = 530; ///< of each panel beside its pages
    struct Column {
        QString key;
        int width; ///< twips
    };
    std::vector<Column> columns; ///< those that the user has given a width
    QString sortKey;             ///< key of the column; empty for the statement's order
    bool descending = false;

    QString toText() const;
    /// What cannot be read keeps its default.
    static ExplorerLayout fromText(const QString& text);

    /// Takes widths and sorting from a list, and gives them to one that has its columns and no rows yet.
    void takeFrom(const VariableList& variables);
    void giveTo(VariableList& variables) const;

    /// Under the user's settings; study views and category views apart.
    static ExplorerLayout stored(bool study);
    void store(bool study) const;

    /// Number of panels that a new window opens with its first variable: as the user has left them in any window, one
    /// at first.
    static int storedPanels();
    static void storePanels(int panels);
};
