#include "previewPictures.h"

#include "app/frmMain.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "printing/frmPreview.h"
#include "printing/frmPrintJob.h"
#include "printing/paperNames.h"
#include "printing/printJob.h"
#include "printing/reportRequest.h"
#include "widgets/PreviewArea.h"
#include "widgets/QtAsker.h"

#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace {

/// The printers of an office that has some.
class OfficeAsker : public QtAsker {
public:
    std::vector<ui::Printer> printers() const override {
        return {{u"Laser"_s, u"Flur"_s, Paper::letter, false, false, true},
                {u"Farbdrucker"_s, u"Raum 12"_s, Paper::a4, true, false, false}};
    }
};

} // namespace

void PreviewWalk::preview() {
    frmMain window;
    window.load();
    window.show();
    window.resize(1280, 800);
    settle();
    PrintSource source;
    source.window = PrintSource::Window::Explorer;
    source.database = gDatabase.Database();
    source.language = gLanguage == 0 ? 1 : 2;
    source.view = 1;
    source.isStudy = true;
    source.sourceTable = gViews.at(1, ViewTable::Table);
    source.nodeId = u"SV2018"_s;
    PrintOrder order;
    order.choice = PrintChoice::NodeVariables;
    order.paper = Paper::a4;
    order.english = true;
    static_cast<ReportRequest&>(*window.PrinterCTL1()) = reportRequest(source, order, gOptions);
    window.PrinterCTL1()->Preview();
    auto* preview = dynamic_cast<frmPreview*>(desktop().activeForm());
    if (!preview)
        throw std::runtime_error("no preview in front");
    take(window, u"preview-first"_s);
    waitUntil([&] { return preview->model().state() != PreviewModel::State::Going; }, 30000);
    QWidget& pages = in<PreviewArea>(*preview, u"pages"_s);
    press(pages, Qt::Key_F);
    press(pages, Qt::Key_PageDown);
    take(window, u"preview-contents"_s);
    press(pages, Qt::Key_W);
    preview->askForEntry();
    auto& line = in<QLineEdit>(*preview, u"txtSuchen"_s);
    line.setText(u"VERTR"_s.chopped(1));
    press(line, Qt::Key_R, u"r"_s);
    take(window, u"preview-found"_s);
    press(line, Qt::Key_Escape);
    press(pages, Qt::Key_2);
    press(pages, Qt::Key_F);
    take(window, u"preview-two"_s);
    window.resize(640, 480);
    take(window, u"preview-narrow"_s);
}

void PreviewWalk::printJob() {
    OfficeAsker office;
    office.printJobChooser = frmPrintJob::ask;
    ui::Asker* const before = ui::setAsker(&office);
    ui::PrintJob proposal = printJob::proposed(u"SV2018"_s, 34);
    proposal.paper = Paper::a4;
    modal(u"print-job"_s, [&] { office.choosePrintJob(proposal, 34); });
    ui::setAsker(before);
}
