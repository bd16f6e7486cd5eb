#pragma once

#include <QString>
#include <QStringList>
#include <array>
#include <vector>

/// What an extended search looks for, and where.
struct SearchRequest {
    enum class Join { None = -1, And = 0, Or = 1 };
    /// Places among the boxes: names of view 1 at 0, descriptions of view 1 at 9, then what is searched of variables.
    static constexpr int descriptions = 9, names = 18, labels = 19, questions = 20, boxes = 21;

    QString sFind, sFind2; ///< as they were typed
    Join join = Join::None;
    bool english = false; ///< contents in English
    std::array<bool, boxes> chkSearch{};

    /// The terms that are searched: one, or two.
    QStringList terms() const;
    /// True if some box of the variables is set.
    bool searchesVariables() const;
};

/// What keeps a request from being searched.
enum class SearchFault { None, NoTerm, NoJoin };
SearchFault faultOf(const SearchRequest& request);
/// In words; empty for none.
QString faultText(SearchFault fault);

/// One statement of a search.
struct SearchPass {
    enum class Kind { Names, Descriptions, Variables };
    Kind kind = Kind::Names;
    int view = 0; ///< 0 for variables
    QString statement;
    QStringList columns; ///< that hits are made of: key and text, or study, name and the texts in the order of a hit's
};

/// The statements of a request in the open catalogue, in their order. Terms go in as they are.
std::vector<SearchPass> searchPasses(const SearchRequest& request);

/// Why a statement with these terms was most likely refused; empty if nothing in them explains it.
QString refusalHint(const SearchRequest& request);
