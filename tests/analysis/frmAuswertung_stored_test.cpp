#include "analysis/AnalysisWindow.h"
#include "analysis/request/variableFields.h"
#include "charts/chartFile.h"
#include "widgets/ChartView.h"

#include <QFile>
#include <QHeaderView>

using ui::Answer;

namespace {

/// The window in creation mode, with a frequency of LZUFR of the sample archive.
class StoredInWindow : public AnalysisWindow {
protected:
    void openInCreationMode() {
        open();
        if (HasFatalFailure())
            return;
        chooseStudy(u"SV2018"_s);
        type(u"dbcVariableUni"_s, u"LZUFR:"_s);
        window->model().edit().change(RequestPart::Mode, [](AnalysisRequest& r) { r.bCreationMode = true; });
        asker.checks = true;
    }
    QString kept(const QString& field) {
        const AnalysisRequest& r = window->model().request();
        return textsOf(r.dbcStudy.value, r.dbcVariable.value, {field}).first();
    }
    bool enabled(const QString& button) { return the<QPushButton>(button)->isEnabled(); }
    void turnTo(int tab) {
        the<QTabWidget>(u"SSTab"_s)->setCurrentIndex(tab);
        settle();
    }
};

} // namespace

TEST_F(StoredInWindow, ATableIsKeptWithTheWidthsThatTheUserHasDragged) {
    ASSERT_NO_FATAL_FAILURE(openInCreationMode());
    turnTo(1);
    auto* grid = the<ResultTableView>(u"mfgGrid"_s);
    EXPECT_TRUE(the<QPushButton>(u"cmdTableSave"_s)->isVisible());
    EXPECT_FALSE(enabled(u"cmdTableLoad"_s));
    // As a person drags them, by the edge of the heading.
    const auto drag = [&](QHeaderView* header, int section, int by) {
        const int edge = header->sectionViewportPosition(section) + header->sectionSize(section) - 1;
        const bool across = header->orientation() == Qt::Horizontal;
        const QPoint from = across ? QPoint(edge, header->height() / 2) : QPoint(header->width() / 2, edge);
        QWidget* const area = header->viewport();
        QTest::mousePress(area, Qt::LeftButton, {}, from);
        QTest::mouseMove(area, from + (across ? QPoint(by, 0) : QPoint(0, by)));
        QTest::mouseRelease(area, Qt::LeftButton, {}, from + (across ? QPoint(by, 0) : QPoint(0, by)));
        settle();
        return header->sectionSize(section);
    };
    const int width = drag(grid->horizontalHeader(), 0, 60), height = drag(grid->verticalHeader(), 1, 25);
    press(u"cmdTableSave"_s);
    EXPECT_TRUE(kept(u"dt_Table"_s).contains(u"\";Freq;;;"_s));
    EXPECT_TRUE(enabled(u"cmdTableLoad"_s) && enabled(u"cmdTableDelete"_s));

    turnTo(0);
    turnTo(1);
    EXPECT_EQ(grid->horizontalHeader()->sectionSize(0), width) << "while the table is the same";
    press(u"cmdTableLoad"_s);
    EXPECT_NEAR(grid->horizontalHeader()->sectionSize(0), width, 1);
    EXPECT_NEAR(grid->verticalHeader()->sectionSize(1), height, 1);
    EXPECT_TRUE(the<QLabel>(u"lblFacts"_s)->text().startsWith(u"Gespeicherte Tabelle"_s));
    EXPECT_TRUE(the<QLabel>(u"lblState"_s)->isVisible());
    EXPECT_TRUE(enabled(u"cmdCopyTable"_s));
    EXPECT_FALSE(enabled(u"cmdSetMissing"_s) || enabled(u"cmdCopyCommand"_s));
    asker.answer(Answer::Cancel);
    press(u"cmdTableDelete"_s);
    EXPECT_NE(kept(u"dt_Table"_s), QString());
    press(u"cmdComputeAnew"_s);
    EXPECT_EQ(window->model().tableState(), TableState::Current);
}

TEST_F(StoredInWindow, AChartComesBackAsItWasStoredAndHandsItsOwnBytesOn) {
    ASSERT_NO_FATAL_FAILURE(openInCreationMode());
    turnTo(2);
    const ChartModel chart = window->model().chart().model();
    press(u"cmdGraphSave"_s);
    const QString memo = kept(u"dt_Graph"_s);
    EXPECT_EQ(bytesOf(memo), plotJpeg(chart)) << "the plot, as everybody makes it";
    EXPECT_TRUE(kept(u"dt_GraphLayout"_s).startsWith(u'"' + chart.caption + u"\";10205;6236;\""_s));
    press(u"cmdGraphLoad"_s);
    EXPECT_EQ(asker.lastText(), u"Die gespeicherte Grafik wird temporär in ihrer Originalgröße angezeigt!"_s);
    EXPECT_EQ(the<QLabel>(u"UniLabel1"_s)->text(), chart.caption);
    EXPECT_TRUE(the<QLabel>(u"lblChartState"_s)->isVisible());
    EXPECT_FALSE(enabled(u"cmd_ShowOptions"_s));
    EXPECT_FALSE(window->showsChart()) << "it has no options";
    window->resize(1600, 1200);
    settle();
    const auto* shown = the<ChartView>(u"picChart"_s);
    EXPECT_NEAR(shown->page().width(), 10205 / 1440.0 * shown->logicalDpiX(), 2);
    QImage copied;
    asker.onPicture = [&](const QImage& picture, const QByteArray&) { copied = picture; };
    press(u"cmdCopyChart"_s);
    EXPECT_EQ(copied, readPicture(*bytesOf(memo)).image);
    asker.file(home.path(u"chart.jpg"_s));
    press(u"cmdSaveChartAs"_s);
    QFile file(home.path(u"chart.jpg"_s));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), bytesOf(memo));
    asker.answer(Answer::Ok);
    press(u"cmdGraphSave"_s);
    EXPECT_TRUE(kept(u"dt_Graph"_s) == memo);

    press(u"cmdChartComputeAnew"_s);
    EXPECT_TRUE(enabled(u"cmd_ShowOptions"_s)) << "the window's own chart again";
    asker.answer(Answer::Ok);
    press(u"cmdGraphDelete"_s);
    EXPECT_EQ(kept(u"dt_Graph"_s) + kept(u"dt_GraphLayout"_s), QString());
    EXPECT_FALSE(enabled(u"cmdGraphLoad"_s));
}

TEST_F(StoredInWindow, APictureThatFailsIsFehlerAndNothingOlder) {
    ASSERT_NO_FATAL_FAILURE(openInCreationMode());
    turnTo(2);
    press(u"cmdGraphSave"_s);
    const QString memo = kept(u"dt_Graph"_s);
    // Nowhere to put a file: the folder for them is none.
    const QByteArray before = qgetenv("TMPDIR");
    QFile none(home.path(u"none"_s));
    ASSERT_TRUE(none.open(QIODevice::WriteOnly));
    qputenv("TMPDIR", none.fileName().toUtf8());
    press(u"cmdGraphSave"_s);
    EXPECT_EQ(asker.lastText(), u"Fehler"_s);
    press(u"cmdGraphLoad"_s);
    EXPECT_EQ(asker.lastText(), u"Fehler"_s);
    before.isEmpty() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", before);
    EXPECT_TRUE(kept(u"dt_Graph"_s) == memo);

    const AnalysisRequest& r = window->model().request();
    writeVariableFields(r.dbcStudy.value, {{r.dbcVariable.value, {{u"dt_Graph"_s, memo.first(memo.size() / 2)}}}});
    press(u"cmdGraphLoad"_s);
    EXPECT_EQ(asker.lastText(), u"Fehler"_s);
    EXPECT_EQ(asker.boxes.back().details, u"Die gespeicherte Grafik ist beschädigt."_s);
    EXPECT_TRUE(enabled(u"cmd_ShowOptions"_s)) << "what was in view stays";

    window->model().pictures() = PictureSupport([] { return false; });
    window->model().pictures().start();
    press(u"cmdGraphSave"_s);
    EXPECT_EQ(asker.lastText(), u"Fehler"_s);
    EXPECT_TRUE(kept(u"dt_Graph"_s) == memo.first(memo.size() / 2));
}
