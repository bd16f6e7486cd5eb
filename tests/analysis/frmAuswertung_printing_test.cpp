#include "analysis/AnalysisWindow.h"
#include "analysis/request/variableFields.h"
#include "analysis/result/provenance.h"
#include "app/frmMain.h"
#include "printing/PrinterCTL.h"
#include "printing/RawReport.h"
#include "printing/frmPreview.h"
#include "widgets/Desktop.h"

#include <QMenu>

namespace {

/// The report writer as the window knows it, which notes what it is told to show and to print.
class NotingDesktop : public Desktop {
public:
    NotingDesktop() {
        control.show = [this](const ReportRequest& request) { shown.push_back(request); };
        control.print = [this](const ReportRequest& request) { printed.push_back(request); };
        setDesktop(this);
    }
    ~NotingDesktop() override { setDesktop(nullptr); }
    PrinterCTL* PrinterCTL1() override { return &control; }

    PrinterCTL control;
    std::vector<ReportRequest> shown, printed;
};

/// Tables and charts of the window on their way to the report writer.
class PrintedFromWindow : public AnalysisWindow {
protected:
    NotingDesktop desktop_;

    bool enabled(const QString& button) { return the<QPushButton>(button)->isEnabled(); }
    QString kept(const QString& field) {
        const AnalysisRequest& r = window->model().request();
        return textsOf(r.dbcStudy.value, r.dbcVariable.value, {field}).first();
    }
    /// What a report shows of a request.
    static std::vector<Block> blocksOf(const ReportRequest& request) {
        RawReport report(request);
        EXPECT_EQ(report.open(), QString());
        return report.ready() > 0 ? report.blocks(0) : std::vector<Block>();
    }
    /// The table in front goes to the report with all its cells, and says what it stands on.
    void expectTableHandedOver(bool crosstab) {
        desktop_.shown.clear();
        press(u"cmdPreview"_s);
        ASSERT_EQ(desktop_.shown.size(), 1u);
        const std::vector<Block> blocks = blocksOf(desktop_.shown[0]);
        ASSERT_EQ(blocks.size(), 1u);
        const TableBlock table = std::get<TableBlock>(blocks[0]);
        EXPECT_EQ(table.title, window->model().result().lblLabel);
        EXPECT_EQ(tableRows(table.table), tableRows(window->model().result().mfgGrid));
        EXPECT_EQ(table.table.FixedRows, crosstab ? 2 : 1);
        EXPECT_EQ(table.notes.mid(crosstab ? 1 : 0), provenanceLines(window->model().result()));
        EXPECT_TRUE(desktop_.shown[0].GraphRawString.isEmpty());
    }
};

} // namespace

TEST_F(PrintedFromWindow, TheTableOfEveryModeIsHandedOverWithoutCreationMode) {
    openTable();
    EXPECT_FALSE(window->model().request().bCreationMode);
    EXPECT_TRUE(enabled(u"cmdPreview"_s) && enabled(u"cmdPrint"_s));
    expectTableHandedOver(false);
    const ReportRequest& request = desktop_.shown[0];
    EXPECT_TRUE(request.TableRawString.startsWith(u'"' + window->model().result().lblLabel + u"\";Freq;;;7;"_s));
    EXPECT_TRUE(request.TableRawString.contains(u";<TableEnd>7;"_s));
    EXPECT_EQ(request.TableFontName, u"Arial"_s);
    EXPECT_EQ(request.LANGUAGE, 1);
    EXPECT_EQ(request.DatabaseFile, QString()) << "no catalogue is read";
    EXPECT_EQ(request.PageNumberLocation, 2);

    goTo(0);
    press(u"Option2"_s);
    type(u"dbcVariable2Uni"_s, u"LZUFR:"_s);
    goTo(1);
    the<QComboBox>(u"cbValues"_s)->setFocus();
    QTest::keyClick(the<QComboBox>(u"cbValues"_s), Qt::Key_Down);
    settle();
    expectTableHandedOver(true);
    EXPECT_TRUE(desktop_.shown[0].TableRawString.contains(u"\";Xtab;S;"_s)) << "the view that is shown";

    goTo(0);
    press(u"Option4(3)"_s);
    gOptions.AskMissing = false;
    goTo(1);
    expectTableHandedOver(false);
    goTo(2);
    EXPECT_FALSE(enabled(u"cmdChartPreview"_s) || enabled(u"cmdChartPrint"_s)) << "statistics have no chart";

    setLanguage(1);
    goTo(1);
    press(u"cmdPrint"_s);
    ASSERT_EQ(desktop_.printed.size(), 1u);
    EXPECT_EQ(desktop_.printed[0].LANGUAGE, 2);
}

TEST_F(PrintedFromWindow, BeforeATableIsThereNothingIsOfferedAndWithoutAWriterNothingHappens) {
    open();
    for (const QString& button : {u"cmdPreview"_s, u"cmdPrint"_s, u"cmdChartPreview"_s, u"cmdChartPrint"_s})
        EXPECT_FALSE(enabled(button)) << button.toStdString();
    window->cmdPrint(frmAuswertung::Printed::Table); // as a key on its way would
    EXPECT_EQ(asker.lastText(), u"Fehler"_s);
    EXPECT_TRUE(desktop_.printed.empty());
    chooseStudy(u"SV2014"_s);
    type(u"dbcVariableUni"_s, u"GESCHL"_s);
    goTo(1);
    EXPECT_TRUE(enabled(u"cmdPrint"_s));
    setDesktop(nullptr);
    press(u"cmdPrint"_s);
    EXPECT_TRUE(desktop_.printed.empty());
}

TEST_F(PrintedFromWindow, AChartIsHandedOverAsItIsShownAndAStoredOneInGreyWithoutColour) {
    openTable();
    window->model().edit().change(RequestPart::Mode, [](AnalysisRequest& r) { r.bCreationMode = true; });
    goTo(2);
    press(u"cmdChartPrint"_s);
    ASSERT_EQ(desktop_.printed.size(), 1u);
    EXPECT_TRUE(desktop_.printed[0].TableRawString.isEmpty());
    const std::vector<Block> blocks = blocksOf(desktop_.printed[0]);
    ASSERT_FALSE(blocks.empty());
    const PictureBlock graph = std::get<PictureBlock>(blocks[0]);
    EXPECT_EQ(graph.title, window->model().chart().model().caption);
    EXPECT_NEAR(graph.size.width(), 180 / 25.4 * 1440, 2);
    const QImage picture = QImage::fromData(graph.bytes);
    EXPECT_NEAR(picture.width(), 180 / 25.4 * 300, 2) << "sharp on paper";
    EXPECT_FALSE(picture.allGray());

    press(u"cmdGraphSave"_s);
    press(u"cmdGraphLoad"_s);
    const auto pictureOf = [&] {
        press(u"cmdChartPreview"_s);
        const std::vector<Block> stored = blocksOf(desktop_.shown.back());
        EXPECT_EQ(std::get<TextBlock>(stored.at(1)).runs.front().text,
                  u"Das ist die gespeicherte Grafik; sie wurde nicht neu gezeichnet."_s);
        return std::get<PictureBlock>(stored.at(0)).bytes;
    };
    EXPECT_EQ(memoOf(pictureOf()), kept(u"dt_Graph"_s)) << "in colours its own bytes";
    gOptions.GraphColor = false;
    const QImage grey = QImage::fromData(pictureOf());
    EXPECT_EQ(grey.size(), QImage::fromData(*bytesOf(kept(u"dt_Graph"_s))).size());
    EXPECT_TRUE(grey.allGray());
    gOptions.GraphColor = true;
}

TEST_F(AnalysisWindow, APreviewOfATableShowsItOnOnePageWithWhatItStandsOn) {
    frmMain frame;
    frame.load();
    frame.show();
    openTable();
    for (const QString& button : {u"cmdPreview"_s, u"cmdChartPreview"_s}) {
        frame.activate(*window);
        goTo(button == u"cmdPreview" ? 1 : 2);
        press(button);
        auto* preview = dynamic_cast<frmPreview*>(frame.activeForm());
        ASSERT_NE(preview, nullptr) << button.toStdString();
        QTRY_COMPARE(preview->model().state(), PreviewModel::State::Complete);
        EXPECT_EQ(preview->model().pageCount(), 1);
        QString texts;
        for (const ReportPage::Piece& piece : preview->model().run().layout().page(0).pieces)
            if (const auto* line = std::get_if<ReportPage::Line>(&piece); line && line->line == 0)
                texts += line->text->text() + u'\n';
        EXPECT_TRUE(texts.contains(u"GESCHL: Geschlecht"_s)) << texts.toStdString();
        EXPECT_TRUE(texts.contains(u"Filter: keiner · Gewicht: keines"_s)) << texts.toStdString();
        EXPECT_EQ(texts.contains(u"männlich"_s), button == u"cmdPreview") << texts.toStdString();
        preview->close();
        settle();
    }
    delete std::exchange(window, nullptr);
}

TEST_F(PrintedFromWindow, AStoredTableThatIsShownIsPrintedWithItsOwnTextAndTheMenuOffersBoth) {
    openTable();
    window->model().edit().change(RequestPart::Mode, [](AnalysisRequest& r) { r.bCreationMode = true; });
    goTo(0);
    goTo(1);
    press(u"cmdTableSave"_s);
    press(u"cmdTableLoad"_s);
    press(u"cmdPreview"_s);
    ASSERT_EQ(desktop_.shown.size(), 1u);
    EXPECT_EQ(desktop_.shown[0].TableRawString.section(u"<TableEnd>"_s, 0, 0), kept(u"dt_Table"_s));
    EXPECT_TRUE(desktop_.shown[0].RawNotes.first().startsWith(u"Gespeicherte Tabelle, nicht neu gerechnet"_s));

    QStringList entries;
    QTimer::singleShot(0, window, [&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        for (const QAction* action : menu->actions())
            entries << action->text();
        menu->close();
    });
    QTest::keyClick(the<ResultTableView>(u"mfgGrid"_s), Qt::Key_Menu);
    settle();
    EXPECT_TRUE(entries.contains(u"&Vorschau"_s) && entries.contains(u"Dr&ucken..."_s))
        << entries.join(u',').toStdString();
}
