#include "explorer/frmExplorer.h"

#include "app/globals.h"
#include "explorer/frmExplorerList.h"
#include "platform/dao/Value.h"
#include "widgets/Desktop.h"
#include "widgets/ExplorerPanel.h"
#include "widgets/VariableListView.h"

#include <QLineEdit>
#include <algorithm>

QPlainTextEdit* frmExplorer::questionText() const {
    return panelA_->txtQuestion;
}

bool frmExplorer::showVariable(const QString& study, const QString& variable, bool english) {
    const auto rowOf = [&] {
        const std::vector<VariableRow>& rows = model_.list.rows;
        const auto found = std::ranges::find_if(rows, [&](const VariableRow& row) {
            return dao::compareTexts(row.Text, variable) == 0 && dao::compareTexts(row.cell(1), study) == 0;
        });
        return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
    };
    int row = rowOf();
    if (model_.list.placeOf(row) < 0 && !model_.filter().isEmpty()) {
        list_->filter()->clear();
        row = rowOf();
    }
    const int place = model_.list.placeOf(row);
    if (place < 0)
        return false;
    if (model_.state.lVarWindow == 0)
        setPanels(1);
    ExplorerState& state = model_.state;
    state.bVarWindowForEnglishLanguage = english;
    showSwitches();
    {
        const BusyScope busy;
        list_->view()->selectOnly(place);
    }
    lvListView_ItemClick(true);
    desktop().panelsChanged();
    list_->view()->setFocus();
    return true;
}
