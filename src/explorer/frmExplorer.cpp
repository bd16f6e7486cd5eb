#include "explorer/frmExplorer.h"

#include "widgets/Desktop.h"

using namespace Qt::StringLiterals;

frmExplorer* frmExplorer::OpenExplorerView(int view) {
    auto* window = new frmExplorer(view);
    desktop().adopt(*window);
    return window;
}

frmExplorer::frmExplorer(int view) : Form(*this, u"frmExplorer"_s) {
    model_.open(view);
}

frmExplorer::~frmExplorer() = default;

std::vector<int> frmExplorer::selectedRows() const {
    return {};
}

void frmExplorer::setPanels(int lVarWindow) {
    model_.state.lVarWindow = lVarWindow;
}

void frmExplorer::switchPanelLanguage() {}
void frmExplorer::Form_Resize() {}
void frmExplorer::ChangeFont() {}
void frmExplorer::refreshTitles() {}
