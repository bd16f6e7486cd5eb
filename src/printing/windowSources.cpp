#include "printing/windowSources.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "editing/DescriptionModel.h"
#include "explorer/ExplorerModel.h"
#include "explorer/iconNames.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

PrintSource sourceOfView(PrintSource::Window window, int view) {
    PrintSource source;
    source.window = window;
    // A path as it was typed leads elsewhere once the working folder is another.
    source.database = QFileInfo(gDatabase.Database()).absoluteFilePath();
    source.language = gLanguage == 0 ? 1 : 2;
    source.view = view;
    if (view > 0) {
        source.isStudy = gViews.at(view, ViewTable::Type) == u"1";
        source.viewName = viewName(view);
        source.sourceTable = gViews.at(view, ViewTable::Table);
    }
    return source;
}

bool isEntry(const CatalogueNode* node) {
    return node && node->id() != u"0";
}

} // namespace

PrintSource sourceOf(const ExplorerModel& explorer, const std::vector<int>& selectedRows) {
    PrintSource source = sourceOfView(PrintSource::Window::Explorer, explorer.state.ltreetype);
    if (!selectedRows.empty()) {
        const VariableRow& row = explorer.list.rows[static_cast<size_t>(selectedRows.front())];
        source.study = row.cell(1);
        source.variable = row.Text;
        if (const CatalogueNode* node = explorer.nodeOf(row); isEntry(node)) {
            source.rowNodeId = node->id();
            source.rowNodeText = node->Text;
        }
    }
    if (const CatalogueNode* node = explorer.selectedNode(); isEntry(node)) {
        source.nodeId = node->id();
        source.nodeText = node->Text;
    }
    return source;
}

PrintSource sourceOf(const DescriptionModel& descriptions) {
    PrintSource source = sourceOfView(PrintSource::Window::Document, descriptions.ltreetype);
    source.nodeId = descriptions.txtStudyNo();
    source.nodeText = source.nodeId.isEmpty() ? QString() : descriptions.title();
    return source;
}

PrintSource sourceOfAnalysis(const QString& study, const QString& variable, bool tablePage) {
    PrintSource source = sourceOfView(PrintSource::Window::Analysis, 0);
    source.study = study;
    source.variable = variable;
    source.tablePage = tablePage;
    return source;
}
