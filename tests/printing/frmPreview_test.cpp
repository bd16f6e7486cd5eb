#include "printing/frmPreview.h"

#include "app/MainWindow.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "printing/HandmadeReport.h"
#include "printing/PrinterCTL.h"
#include "printing/frmPrintJob.h"
#include "widgets/PreviewArea.h"

#include <QComboBox>
#include <QDeadlineTimer>
#include <QFile>
#include <QLineEdit>
#include <QPdfWriter>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QToolButton>

namespace {

/// A preview of a handmade report in the frame with the sample archive.
class frmPreviewTest : public MainWindow {
protected:
    QPointer<frmPreview> window;
    PreviewArea* pages = nullptr;

    void SetUp() override { openWithArchive(); }
    void show(const HandmadeReport::Script& script, bool all = true) {
        show(HandmadeReport::run(script));
        if (all && window)
            wait();
    }
    void show(std::unique_ptr<ReportRun> run) {
        window = frmPreview::openReport(std::move(run));
        if (!window)
            return;
        pages = window->findChild<PreviewArea*>(u"pages"_s);
        pages->setFocus();
    }
    void wait() {
        for (QDeadlineTimer end(20000); model().state() == PreviewModel::State::Going && !end.hasExpired();)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        settle();
    }
    PreviewModel& model() { return window->model(); }
    int page() { return model().currentPage() + 1; }
    template<class Widget>
    Widget* find(const QString& name) const {
        return window->findChild<Widget*>(name);
    }
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
        settle();
    }
    void click(const QString& name) {
        QTest::mouseClick(find<QToolButton>(name), Qt::LeftButton);
        settle();
    }
    static frmPreview* inFront() { return dynamic_cast<frmPreview*>(desktop().activeForm()); }
    /// A PDF that takes what is printed.
    std::shared_ptr<QPagedPaintDevice> paper(const QString& name) {
        return std::make_shared<QPdfWriter>(home.path(name));
    }
    static bool isPdf(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) && file.read(5) == "%PDF-";
    }
};

TEST_F(frmPreviewTest, ShowsTheFirstPageAtOnceAndIsLedByKeys) {
    show({.variables = 9}, false);
    ASSERT_EQ(inFront(), window);
    EXPECT_EQ(window->windowTitle(), u"Vorschau: Handgemacht"_s);
    EXPECT_GE(model().pageCount(), 1);
    EXPECT_TRUE(pages->hasFocus());
    wait();
    EXPECT_EQ(find<QLabel>(u"lblCount"_s)->text(), u"von 9"_s);
    EXPECT_FALSE(find<QToolButton>(u"cmdStop"_s)->isVisible());
    struct Case {
        int key;
        Qt::KeyboardModifiers modifiers;
        int page;
    };
    for (const Case& step : {Case{Qt::Key_End, Qt::NoModifier, 9},
                             {Qt::Key_Home, Qt::NoModifier, 1},
                             {Qt::Key_PageDown, Qt::ControlModifier, 2},
                             {Qt::Key_F, Qt::NoModifier, 2},
                             {Qt::Key_PageDown, Qt::NoModifier, 3},
                             {Qt::Key_PageUp, Qt::NoModifier, 2},
                             {Qt::Key_Right, Qt::NoModifier, 3},
                             {Qt::Key_2, Qt::NoModifier, 3},
                             {Qt::Key_PageDown, Qt::NoModifier, 5}}) {
        press(step.key, step.modifiers);
        EXPECT_EQ(page(), step.page) << step.key;
        EXPECT_EQ(find<QSpinBox>(u"txtPage"_s)->value(), step.page);
    }
    EXPECT_TRUE(find<QToolButton>(u"cmdWhole"_s)->isChecked() && find<QToolButton>(u"cmdTwo"_s)->isChecked());
    press(Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(find<QSpinBox>(u"txtZoom"_s)->value(), 100);
    press(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_DOUBLE_EQ(model().zoom(), 1.1);
    press(Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_EQ(find<QSpinBox>(u"txtZoom"_s)->value(), 100);
    press(Qt::Key_G, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), u"7"_s);
    press(Qt::Key_Return);
    EXPECT_EQ(page(), 7);
    EXPECT_TRUE(pages->hasFocus()) << "the keys are those of the pages again";
    press(Qt::Key_G, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), u"2"_s);
    press(Qt::Key_Escape);
    EXPECT_TRUE(pages->hasFocus() && page() == 7) << "what was begun is forgotten";
    press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(page(), 5);
}

TEST_F(frmPreviewTest, FindsAVariableAndFollowsAClickOnTheContents) {
    show({.variables = 12, .label = u"Vertrauen"_s});
    press(Qt::Key_F, Qt::ControlModifier);
    auto* line = find<QLineEdit>(u"txtSuchen"_s);
    ASSERT_TRUE(line->hasFocus());
    QTest::keyClicks(line, u"vertr"_s);
    EXPECT_EQ(model().found(), 11);
    const int last = page();
    QTest::keyClicks(line, u"x"_s);
    EXPECT_EQ(find<QLabel>(u"lblNotFound"_s)->text(), u"Nicht gefunden"_s);
    line->selectAll();
    QTest::keyClicks(line, u"Label"_s);
    press(Qt::Key_Return);
    EXPECT_EQ(find<QLabel>(u"lblNotFound"_s)->text(), u"2 von 11"_s);
    press(Qt::Key_Escape);
    EXPECT_TRUE(pages->hasFocus() && model().found() < 0);

    press(Qt::Key_Home);
    press(Qt::Key_F);
    const ReportPage contents = model().run().layout().page(0);
    ASSERT_EQ(contents.links.size(), 12U);
    const QPointF place =
        model().pageRect(0).topLeft() - model().at() + contents.links.back().rect.center() * model().dotsPerTwip();
    QTest::mouseClick(pages->viewport(), Qt::LeftButton, Qt::NoModifier, place.toPoint());
    settle();
    EXPECT_EQ(page(), last);
}

TEST_F(frmPreviewTest, EscapeStopsItAndTheButtonGoesOn) {
    show({.variables = 400}, false);
    press(Qt::Key_Escape);
    ASSERT_EQ(model().state(), PreviewModel::State::Halted);
    const int known = model().pageCount();
    QTest::qWait(60);
    EXPECT_EQ(model().pageCount(), known);
    EXPECT_TRUE(find<QToolButton>(u"cmdStop"_s)->isVisible());
    click(u"cmdStop"_s);
    wait();
    EXPECT_EQ(model().state(), PreviewModel::State::Complete);
    EXPECT_GT(model().pageCount(), 400);
}

TEST_F(frmPreviewTest, WaitsWhileARunGoesOnAndGoesWithTheCatalogueInTheMiddle) {
    show({.variables = 400}, false);
    {
        const BusyScope run;
        const int known = model().pageCount();
        QTest::qWait(120);
        EXPECT_EQ(model().pageCount(), known);
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return model().pageCount() > 100; }, 20000));
    ASSERT_EQ(model().state(), PreviewModel::State::Going);
    asker.answer(ui::Answer::Yes);
    main->perform(u"mnFileClose"_s);
    settle();
    EXPECT_TRUE(window.isNull());
    EXPECT_EQ(gDatabase.State(), 0);
    openWithArchive();
    show({.variables = 400}, false);
    main->close();
    settle();
    EXPECT_TRUE(window.isNull()) << "leaving the program in the middle";
}

TEST_F(frmPreviewTest, SaysInABoxThatThereIsNothingAndInTheWindowThatItIsNotWhole) {
    const Form* before = desktop().activeForm();
    show({.why = u"Die Studie hat keine Variablen."_s});
    EXPECT_EQ(asker.lastText(), u"Die Studie hat keine Variablen."_s);
    EXPECT_TRUE(window.isNull());
    EXPECT_EQ(desktop().activeForm(), before);
    show({.variables = 9, .failsAfter = 4});
    EXPECT_EQ(find<QLabel>(u"lblState"_s)->text(), u"Der Bericht ist nicht vollständig: Die Datenbank ist fort."_s);
    EXPECT_FALSE(find<QToolButton>(u"cmdSave"_s)->isEnabled() || find<QToolButton>(u"cmdPrint"_s)->isEnabled());
}

TEST_F(frmPreviewTest, SavesAsPdfWholeOrSaysWhyNot) {
    show({.variables = 40}, false); // the rest is laid out on the way
    const QString path = home.path(u"bericht.pdf"_s);
    asker.file(path);
    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(isPdf(path));
    EXPECT_EQ(asker.lastChoice.name, u"Handgemacht.pdf"_s);
    EXPECT_TRUE(asker.boxes.empty());
    EXPECT_EQ(model().state(), PreviewModel::State::Complete);

    asker.file(home.path(u"fehlt/bericht.pdf"_s));
    click(u"cmdSave"_s);
    EXPECT_TRUE(asker.lastText().startsWith(u"Der Bericht konnte nicht gespeichert werden:\r\n"_s));
    EXPECT_FALSE(QFile::exists(home.path(u"fehlt"_s)));

    ReportRequest request = HandmadeReport::asked();
    request.DatabaseFile = home.path(u"solvarden.mdb"_s);
    show(HandmadeReport::run({}, request));
    asker.file(request.DatabaseFile);
    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(asker.lastText().endsWith(u"Das ist der Katalog selbst."_s));
    EXPECT_FALSE(isPdf(request.DatabaseFile));
}

/// A progress window in which the user presses Stop when a step with these words is reached.
class StopAt : public ui::ProgressView {
public:
    explicit StopAt(const QString& words) : words_(words) {}
    bool show(const QString& text, int, int) override { return !text.contains(words_); }

private:
    QString words_;
};

TEST_F(frmPreviewTest, LeavesNoFileWhereSavingIsStopped) {
    ui::Progress::patience = 0;
    for (const QString& step : {u"gesetzt"_s, u"gespeichert"_s}) {
        show({.variables = 60}, false);
        const QString path = home.path(step + u".pdf"_s);
        asker.file(path);
        asker.onProgress = [&](bool mayStop) {
            EXPECT_TRUE(mayStop);
            return std::make_unique<StopAt>(step);
        };
        press(Qt::Key_S, Qt::ControlModifier);
        EXPECT_FALSE(QFile::exists(path)) << qPrintable(step);
        EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
        wait();
        EXPECT_EQ(model().state(), PreviewModel::State::Complete) << "the preview itself goes on";
    }
    ui::Progress::patience = 1000;
}

TEST_F(frmPreviewTest, PrintsWhatTheJobSaysFromThePreviewAndWithoutOne) {
    show({.variables = 9});
    press(Qt::Key_P, Qt::ControlModifier);
    EXPECT_EQ(asker.lastText(), u"Kein Drucker vorhanden!"_s);
    asker.systemPrinters = {{.name = u"Laser"_s, .paper = 9, .isDefault = true}};
    gOptions.PrintStartPage = 3;
    gOptions.PrintPageCount = 2;
    gOptions.PrintStartPageNumber = 101;
    ui::PrintJob proposed;
    asker.onPrintJob = [&](const ui::PrintJob& proposal, int) {
        proposed = proposal;
        return std::optional(proposal);
    };
    press(Qt::Key_P, Qt::ControlModifier);
    EXPECT_EQ(asker.lastText(), u"Der Drucker ist nicht bereit oder nicht mehr da:\r\n"_s);
    EXPECT_EQ(std::tuple(proposed.title, proposed.firstPage, proposed.pageCount, proposed.firstPageNumber),
              std::tuple(u"Handgemacht"_s, 3, 2, 101));
    const size_t boxes = asker.boxes.size();
    asker.onOpenPrinter = [&](const ui::PrintJob&) {
        EXPECT_EQ(model().run().layout().numberOf(2), 3) << "asked before the numbers change";
        return paper(u"papier.pdf"_s);
    };
    main->PrinterCTL1()->Printer = u"Laser"_s;
    action(u"mnuFilePrint"_s)->trigger();
    EXPECT_EQ(proposed.printer, u"Laser"_s);
    EXPECT_EQ(asker.boxes.size(), boxes);
    EXPECT_TRUE(isPdf(home.path(u"papier.pdf"_s)));
    EXPECT_EQ(model().run().layout().numberOf(0), 1) << "the preview keeps its numbers";

    asker.onOpenPrinter = [&](const ui::PrintJob&) { return paper(u"beschreibung.pdf"_s); };
    gOptions.PrintStartPage = gOptions.PrintStartPageNumber = 1;
    PrinterCTL& report = *main->PrinterCTL1();
    report.Reset();
    static_cast<ReportRequest&>(report) = HandmadeReport::asked();
    report.DatabaseFile = gDatabase.Database();
    report.ReportType = ReportKind::Database;
    report.ReportLanguage = 2;
    report.PrintReport();
    EXPECT_EQ(asker.boxes.size(), boxes) << qPrintable(asker.lastText());
    EXPECT_TRUE(isPdf(home.path(u"beschreibung.pdf"_s)));
    EXPECT_EQ(inFront(), window);
}

TEST_F(frmPreviewTest, ShowsTheCatalogueAsItWasWhileOthersEditIt) {
    PrinterCTL& report = *main->PrinterCTL1();
    static_cast<ReportRequest&>(report) = HandmadeReport::asked();
    report.DatabaseFile = gDatabase.Database();
    report.Studies = u"@SV2018@"_s;
    report.sourceTable = gViews.at(1, ViewTable::Table);
    report.ReportLanguage = 2;
    report.Preview();
    window = inFront();
    ASSERT_TRUE(window) << qPrintable(asker.lastText());
    gDatabase.CurrentDatabase()->Execute(u"UPDATE tkey_Variable SET dt_VarLabel = 'geändert' "
                                         "WHERE fi_StudyNo = 'SV2018'"_s);
    wait();
    EXPECT_EQ(model().state(), PreviewModel::State::Complete) << qPrintable(model().status());
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
    const int count = model().pageCount();
    gDatabase.CurrentDatabase()->Execute(u"DELETE FROM tkey_Variable WHERE fi_StudyNo = 'SV2018'"_s);
    EXPECT_GT(count, 1);
    press(Qt::Key_End);
    EXPECT_EQ(page(), count);
    EXPECT_FALSE(model().run().layout().page(count - 1).pieces.empty());
    window->grab();
    action(u"mnLngE"_s)->trigger();
    EXPECT_TRUE(window->windowTitle().startsWith(u"Preview: "_s));
    EXPECT_EQ(find<QLabel>(u"lblCount"_s)->text(), u"of "_s + QString::number(count));
}

/// The dialog for a printout, by itself.
class frmPrintJobTest : public WindowTest {};

TEST_F(frmPrintJobTest, TellsWhatWillBePrintedAndTakesNoPageThatIsNotThere) {
    asker.systemPrinters = {{.name = u"Laser"_s, .place = u"Flur"_s, .paper = 1, .isDefault = true},
                            {.name = u"Farbe"_s, .paper = 9, .color = true}};
    frmPrintJob dialog({.title = u"T"_s, .firstPage = 13, .pageCount = 5, .paper = 9}, 12, nullptr);
    dialog.show();
    dialog.activateWindow();
    settle();
    auto* printer = dialog.findChild<QComboBox*>(u"cmbPrinter"_s);
    auto* told = dialog.findChild<QLabel*>(u"lblTold"_s);
    auto* first = dialog.findChild<QSpinBox*>(u"txtFirst"_s);
    EXPECT_EQ(printer->currentText(), u"Laser (Flur)"_s);
    EXPECT_EQ(dialog.findChild<QLabel*>(u"lblPaper"_s)->text(),
              u"Der Bericht ist für das Papier A4 gesetzt, der Drucker hat Letter."_s);
    EXPECT_FALSE(dialog.job().color) << "it has none";
    QTest::mouseClick(dialog.findChild<QPushButton*>(u"cmdOK"_s), Qt::LeftButton);
    EXPECT_EQ(asker.lastText(), u"Der Bericht hat nur 12 Seiten; eine Seite 13 gibt es nicht."_s);
    EXPECT_TRUE(dialog.isVisible() && first->hasFocus());
    QTest::keyClicks(first, u"4"_s);
    EXPECT_EQ(told->text(), u"Gedruckt werden 5 Seiten, von Seite 4 bis Seite 8."_s);
    printer->setCurrentIndex(1);
    EXPECT_TRUE(dialog.findChild<QLabel*>(u"lblPaper"_s)->text().isEmpty());
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    const ui::PrintJob job = dialog.job();
    EXPECT_EQ(std::tuple(job.printer, job.firstPage, job.pageCount, job.copies, job.color),
              std::tuple(u"Farbe"_s, 4, 5, 1, true));
}

TEST_F(frmPrintJobTest, WithoutAPrinterOfTheSystemOneIsToBeChosen) {
    asker.systemPrinters = {{.name = u"A"_s}, {.name = u"B"_s}};
    frmPrintJob dialog({.printer = u"fort"_s}, 3, nullptr);
    dialog.show();
    dialog.cmdOK_Click();
    EXPECT_EQ(asker.lastText(), u"Bitte einen Drucker wählen."_s);
    EXPECT_TRUE(dialog.isVisible());
}

} // namespace
