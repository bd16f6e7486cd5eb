#include "analysis/frmAuswertung.h"
#include "app/frmMain.h"
#include "app/globals.h"
#include "editing/frmDocument.h"
#include "explorer/frmExplorer.h"
#include "platform/ui/Asker.h"
#include "printing/PrintChoices.h"
#include "printing/frmPreview.h"
#include "printing/frmPrint.h"
#include "printing/windowSources.h"

// What of the window in front is printed.

using namespace Qt::StringLiterals;

PrintSource frmMain::printSource() const {
    constexpr int tablePage = 1;
    PrintSource source;
    Form* form = activeForm();
    if (const frmExplorer* explorer = activeExplorer()) {
        source = sourceOf(explorer->model(), explorer->selectedRows());
        source.fixedFont = explorer->showsFixedFont();
    } else if (const auto* document = dynamic_cast<const frmDocument*>(form)) {
        source = sourceOf(document->model());
        source.fixedFont = document->showsFixedFont();
    } else if (auto* analysis = dynamic_cast<frmAuswertung*>(form)) {
        const AnalysisRequest& request = analysis->model().request();
        source =
            sourceOfAnalysis(request.dbcStudy.value, request.dbcVariable.value, analysis->model().tab() == tablePage);
    }
    return source;
}

void frmMain::print(bool withPrinter) {
    if (auto* preview = dynamic_cast<frmPreview*>(activeForm())) {
        preview->cmdPrint_Click();
        return;
    }
    const PrintSource source = printSource();
    if (PrintChoices(source).P() < 0) {
        ui::asker().messageBox({TranslateText(u"Keine Ansicht gefunden!"_s)});
        return;
    }
    frmPrint::showPrint(this, source, withPrinter ? frmPrint::For::Printing : frmPrint::For::Viewing);
}

void frmMain::addPrintingCommands() {
    printerCTL1_.show = frmPreview::Preview;
    printerCTL1_.print = frmPreview::PrintReport;
    commands_[u"mnuFilePrint"_s] = [this] { mnuFilePrint_Click(); };
    commands_[u"mnuFilePreview"_s] = [this] { mnuFilePreview_Click(); };
}
