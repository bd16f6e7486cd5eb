#include "search/QuickSearch.h"

#include "app/globals.h"
#include "explorer/ExplorerModel.h"
#include "explorer/iconNames.h"
#include "platform/ui/Asker.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString searched;

bool matches(const QString& text) {
    return text.contains(searched, Qt::CaseInsensitive);
}

/// Every text of a row counts, in view or not, up to the fifth beside its name.
bool matches(const VariableRow& row) {
    constexpr int subItems = 5;
    for (int column = 0; column <= subItems; ++column)
        if (matches(row.cell(column)))
            return true;
    return false;
}

/// Index of the next row that matches; -1 without one.
int nextRow(const VariableList& list, const std::vector<int>& selectedRows) {
    size_t place = 0;
    for (const int row : selectedRows)
        place = std::max(place, static_cast<size_t>(list.placeOf(row) + 1));
    for (; place < list.shown.size(); ++place)
        if (matches(list.rows[static_cast<size_t>(list.shown[place])]))
            return list.shown[place];
    return -1;
}

/// Key of the next node that matches, as they were added; empty without one. Where nothing is selected the root is
/// where the search begins.
QString nextNode(const ExplorerModel& model) {
    const CatalogueNode* from = model.selectedNode() ? model.selectedNode() : model.tree.root();
    bool behind = false;
    for (const CatalogueNode& node : model.tree.nodes()) {
        if (behind && matches(node.Text))
            return node.Key;
        behind = behind || &node == from;
    }
    return {};
}

} // namespace

namespace QuickSearch {

const QString& text() {
    return searched;
}

void setText(const QString& text) {
    searched = text;
}

void mnuSuchen_Click(ExplorerModel& model, In in, const std::vector<int>& selectedRows) {
    const QString title = in == In::List ? TranslateText(u"In Variablen suchen"_s)
                                         : said(u"Suchen in "_s, u"Find in "_s) + viewName(model.state.ltreetype);
    searched = ui::asker().inputBox(TranslateText(u"Suchtext:"_s) + u' ', title, searched).value_or(QString());
    mnuWeitersuchen_Click(model, in, selectedRows);
}

void mnuWeitersuchen_Click(ExplorerModel& model, In in, const std::vector<int>& selectedRows) {
    if (searched.isEmpty())
        return;
    bool found = false;
    if (in == In::List) {
        const int row = nextRow(model.list, selectedRows);
        found = row >= 0 && model.revealRow(row);
    } else {
        const QString node = nextNode(model);
        found = !node.isEmpty() && model.reveal(node);
    }
    if (found)
        return;
    ui::asker().messageBox({.text = TranslateText(u"Keine weiteren Elemente mit"_s) + u' ' + searched + u' ' +
                                    TranslateText(u"gefunden!"_s),
                            .icon = ui::Icon::Exclamation});
    if (in == In::List)
        model.focusList();
    else
        model.focusTree();
}

} // namespace QuickSearch
