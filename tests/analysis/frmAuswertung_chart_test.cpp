#include "AnalysisWindow.h"

#include "charts/frmGraphicOptions.h"
#include "widgets/ChartView.h"

#include <QImage>
#include <QImageReader>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QToolTip>

namespace {

/// The third tab: its picture and what is done with it.
class AnalysisChart : public AnalysisWindow {
protected:
    ChartView* picture() { return the<ChartView>(u"picChart"_s); }
    const ChartModel& chart() { return window->model().chart().model(); }
    /// GESCHL of SV2014 has 1 "männlich" and 2 "weiblich"; 9 is missing.
    void openChart(const QString& variable = u"GESCHL"_s) {
        open();
        chooseStudy(u"SV2014"_s);
        type(u"dbcVariableUni"_s, variable);
        goTo(2);
    }
    template<class Widget>
    static Widget& in(QDialog& dialog, const QString& name) {
        auto* found = dialog.findChild<Widget*>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return *found;
    }
    static void clickIn(QDialog& dialog, const QString& name) {
        QTest::mouseClick(&in<QAbstractButton>(dialog, name), Qt::LeftButton, {}, QPoint(8, 8));
    }
    QPoint placeOf(size_t hit) {
        const ChartLayout& layout = picture()->shownLayout();
        const QRectF page = picture()->page();
        return (page.topLeft() + layout.hits[hit].area.boundingRect().center() * page.width() / layout.size.width())
            .toPoint();
    }
};

} // namespace

TEST_F(AnalysisChart, TurningToTheChartComputesAndDrawsItOnAWhitePageWhateverThePalette) {
    openChart();
    EXPECT_EQ(window->model().facts().outcome, RunOutcome::Computed);
    EXPECT_TRUE(picture()->isVisibleTo(window));
    EXPECT_EQ(the<QLabel>(u"UniLabel1"_s)->text(), window->model().result().lblLabel);
    EXPECT_FALSE(the<QWidget>(u"cbChartValues"_s)->isVisibleTo(window));
    EXPECT_FALSE(the<QWidget>(u"cmdFirstValue"_s)->isVisibleTo(window));
    EXPECT_EQ(picture()->accessibleName(), u"Grafik: "_s + window->model().result().lblLabel);
    const QImage light = picture()->grab().toImage();
    EXPECT_EQ(light.pixelColor(picture()->page().topLeft().toPoint() + QPoint(8, 8)), QColor(Qt::white));
    QPalette dark(Qt::black);
    picture()->setPalette(dark);
    const QRect inside = picture()->page().toRect().adjusted(3, 3, -3, -3);
    EXPECT_EQ(picture()->grab().toImage().copy(inside), light.copy(inside));
    // The layout is that of the files, whatever the size of the window.
    const size_t texts = picture()->shownLayout().texts.size();
    const QPointF first = picture()->shownLayout().texts[0].at;
    window->resize(500, 400);
    settle();
    EXPECT_EQ(picture()->shownLayout().texts.size(), texts);
    EXPECT_EQ(picture()->shownLayout().texts[0].at, first);
    EXPECT_TRUE(QRectF(picture()->rect()).contains(picture()->page()));
}

TEST_F(AnalysisChart, WhatLiesUnderThePointerIsSaidAndTheKeysSayTheSame) {
    openChart();
    picture()->setFocus();
    EXPECT_TRUE(picture()->accessibleDescription().contains(u"weiblich"_s));
    for (const auto& [key, label] : {std::pair(Qt::Key_Right, u"männlich"_s),
                                     {Qt::Key_Right, u"weiblich"_s},
                                     {Qt::Key_Right, u"weiblich"_s},
                                     {Qt::Key_Left, u"männlich"_s},
                                     {Qt::Key_End, u"weiblich"_s},
                                     {Qt::Key_Home, u"männlich"_s}}) {
        QTest::keyClick(picture(), key);
        EXPECT_TRUE(picture()->accessibleDescription().contains(label)) << label.toStdString();
        EXPECT_TRUE(QToolTip::text().contains(label)) << label.toStdString();
    }
    size_t second = 0;
    while (picture()->shownLayout().hits[second].category != 1)
        ++second;
    QHelpEvent help(QEvent::ToolTip, placeOf(second), picture()->mapToGlobal(placeOf(second)));
    QApplication::sendEvent(picture(), &help);
    EXPECT_TRUE(QToolTip::text().contains(u"weiblich"_s));
    EXPECT_TRUE(QToolTip::text().contains(chart().values[0][1].text));
    QToolTip::hideText();
}

TEST_F(AnalysisChart, ItsOptionsChangeTitleLabelColourAndAxisAndCancelNothing) {
    openChart();
    const QString own = chart().caption;
    const auto edit = [&](QDialog& dialog, const QString& title) {
        in<QLineEdit>(dialog, u"Titel"_s).setText(title);
        in<QComboBox>(dialog, u"cmbSerie"_s).setFocus();
        QTest::keyClick(&in<QComboBox>(dialog, u"cmbSerie"_s), Qt::Key_Down);
        EXPECT_EQ(in<QComboBox>(dialog, u"cmbSerie2"_s).currentText(), u"weiblich"_s);
        asker.input(u"Frauen"_s).color(0xff0000);
        clickIn(dialog, u"cmdChangeLabel"_s);
        EXPECT_EQ(in<QComboBox>(dialog, u"cmbSerie2"_s).currentText(), u"Frauen"_s);
        clickIn(dialog, u"cmd_Color"_s);
        EXPECT_EQ(in<QSpinBox>(dialog, u"colorred"_s).value(), 255);
        EXPECT_FALSE(in<QCheckBox>(dialog, u"autocolor"_s).isChecked());
        EXPECT_EQ(in<QComboBox>(dialog, u"cmbPattern"_s).currentText(), u"(kein Muster)"_s);
        clickIn(dialog, u"chkFromToAuto"_s);
        in<QLineEdit>(dialog, u"Minimum"_s).setText(u"9000"_s);
    };
    inDialog([&](QDialog& dialog) { edit(dialog, u"Anderes"_s); });
    QTest::mouseDClick(picture(), Qt::LeftButton, {}, picture()->rect().center());
    EXPECT_EQ(chart().caption, own) << "left with Cancel";
    EXPECT_FALSE(chart().styles[1].color);

    inDialog([&](QDialog& dialog) {
        edit(dialog, u"Meine Grafik"_s);
        clickIn(dialog, u"cmdOK"_s);
        EXPECT_EQ(asker.lastText(), u"Das Minimum der Achse muss kleiner sein als das Maximum."_s);
        EXPECT_TRUE(dialog.isVisible()) << "with what was typed";
        in<QLineEdit>(dialog, u"Minimum"_s).setText(u"0"_s);
        clickIn(dialog, u"cmdOK"_s);
    });
    click(u"cmd_ShowOptions"_s);
    EXPECT_EQ(the<QLabel>(u"UniLabel1"_s)->text(), u"Meine Grafik"_s);
    EXPECT_EQ(chart().categories[1].level1, u"Frauen"_s);
    EXPECT_EQ(chart().styles[1].color, 0xffff0000);
    EXPECT_FALSE(chart().scale.automatic);
    goTo(1);
    EXPECT_EQ(the<QLabel>(u"lblLabel"_s)->text(), own);
    goTo(2);
    EXPECT_EQ(the<QLabel>(u"UniLabel1"_s)->text(), u"Meine Grafik"_s);
}

TEST_F(AnalysisChart, MissingInItsOptionsComputesAnewWithoutAQuestionAndStaysAtTheChart) {
    openChart();
    inDialog([&](QDialog& dialog) {
        clickIn(dialog, u"missing"_s);
        clickIn(dialog, u"cmdOK"_s);
    });
    click(u"cmd_ShowOptions"_s);
    EXPECT_EQ(the<QTabWidget>(u"SSTab"_s)->currentIndex(), 2);
    EXPECT_EQ(chart().categoryCount(), 1);
    EXPECT_EQ(chart().categories[0].code, u"2"_s);
    EXPECT_EQ(asker.texts(), QStringList());
    goTo(1);
    EXPECT_EQ(row(1).section(u'|', 0, 2), u"1|männlich|X"_s);
    goTo(0);
    press(u"Option2"_s);
    type(u"dbcVariable2Uni"_s, u"GESUND"_s);
    goTo(2);
    the<QComboBox>(u"cbChartValues"_s)->setFocus();
    QTest::keyClick(the<QComboBox>(u"cbChartValues"_s), Qt::Key_Down);
    EXPECT_TRUE(chart().percent);
    EXPECT_EQ(the<QComboBox>(u"cbValues"_s)->currentIndex(), 1);
    inDialog([&](QDialog& dialog) { EXPECT_FALSE(in<QCheckBox>(dialog, u"missing"_s).isEnabled()); });
    click(u"cmd_ShowOptions"_s);
}

TEST_F(AnalysisChart, ItIsCopiedAsAPictureOfItsSizeWithTitleAndBox) {
    openChart();
    gOptions.TellOfCopies = true;
    QSize copied;
    QByteArray drawing;
    asker.onPicture = [&](const QImage& image, const QByteArray& svg) {
        copied = image.size();
        drawing = svg;
    };
    window->copy();
    // 180 x 110 mm at 300 dots to the inch.
    EXPECT_NEAR(copied.width(), 180 / 25.4 * 300, 1);
    EXPECT_NEAR(copied.height(), 110 / 25.4 * 300, 1);
    EXPECT_TRUE(drawing.contains("<svg") && drawing.contains("180mm"));
    EXPECT_EQ(asker.lastText(), u"Grafik in die Zwischenablage kopiert."_s);
    // What is selected is meant itself.
    the<QLabel>(u"UniLabel1"_s)->setFocus();
    the<QLabel>(u"UniLabel1"_s)->setSelection(0, 6);
    copied = {};
    window->copy();
    EXPECT_EQ(asker.clipboardText, u"SV2014"_s);
    EXPECT_TRUE(copied.isEmpty());
    // Statistics have none.
    goTo(0);
    press(u"Option4(3)"_s);
    gOptions.AskMissing = false;
    goTo(2);
    EXPECT_EQ(the<QLabel>(u"lblNoChart"_s)->text(), u"Für deskriptive Statistiken gibt es keine Grafik."_s);
    EXPECT_FALSE(picture()->isVisibleTo(window));
    for (const QString& name : {u"cmd_ShowOptions"_s, u"cmdCopyChart"_s, u"cmdSaveChartAs"_s})
        EXPECT_FALSE(the<QPushButton>(name)->isEnabled()) << name.toStdString();
    copied = {};
    window->copy();
    EXPECT_TRUE(copied.isEmpty());
}

TEST_F(AnalysisChart, ItIsSavedInTheSizeThatIsTypedWhichTheWindowRemembers) {
    openChart();
    const auto save = [&](const QString& width, const QString& file) {
        inDialog([&](QDialog& dialog) {
            in<QDoubleSpinBox>(dialog, u"txtWidth"_s).selectAll();
            QTest::keyClicks(&in<QWidget>(dialog, u"txtWidth"_s), width);
            in<QSpinBox>(dialog, u"txtDpi"_s).setValue(100);
            clickIn(dialog, u"cmdOK"_s);
        });
        asker.file(home.path(file));
        click(u"cmdSaveChartAs"_s);
        return home.path(file);
    };
    // The point is read as the comma is.
    const QImage saved = QImageReader(save(u"63.5"_s, u"a.jpg"_s)).read();
    EXPECT_EQ(saved.size(), QSize(250, 433)); // 63.5 x 110 mm at 100 dpi
    EXPECT_EQ(asker.texts(), QStringList());
    EXPECT_EQ(picture()->shownLayout().size, QSizeF(63.5, 110)) << "the window shows what was saved";
    save(u"90"_s, u"gibt/es/nicht/b.svg"_s);
    EXPECT_TRUE(asker.lastText().startsWith(u"Die Grafik konnte nicht gespeichert werden:"_s));
    EXPECT_EQ(asker.lastChoice.extension, u"jpg"_s) << "as the last file";
    EXPECT_TRUE(asker.lastChoice.filter.startsWith(u"JPEG-Bilder (*.jpg)|*.jpg|"_s));
    inDialog([&](QDialog& dialog) {
        EXPECT_EQ(in<QDoubleSpinBox>(dialog, u"txtWidth"_s).value(), 90);
        in<QDoubleSpinBox>(dialog, u"txtWidth"_s).setValue(5);
        clickIn(dialog, u"cmdOK"_s);
        EXPECT_TRUE(dialog.isVisible());
    });
    click(u"cmdSaveChartAs"_s);
    EXPECT_TRUE(asker.lastText().startsWith(u"Breite und Höhe müssen zwischen "_s));
}

TEST_F(AnalysisChart, OptionsThatAreAppliedTakeEffectOnTheChartInView) {
    openChart(u"LZUFR"_s);
    const int all = chart().categoryCount();
    gOptions.MaxItems = 3;
    gOptions.StartItem = 2;
    gOptions.GraphColor = false;
    window->optionsApplied();
    settle();
    EXPECT_EQ(chart().categoryCount(), 3);
    EXPECT_EQ(chart().rowsShown.of, all);
    EXPECT_TRUE(chart().styles[0].pattern);
    EXPECT_TRUE(the<QWidget>(u"cmdFirstValue"_s)->isVisibleTo(window));
    asker.input(u"1"_s);
    click(u"cmdFirstValue"_s);
    EXPECT_EQ(chart().firstRow(), 1);
}

TEST_F(AnalysisChart, ARunThatIsStoppedLeavesNoChartOfHalfANumber) {
    open();
    chooseStudy(u"SV2014"_s);
    type(u"dbcVariableUni"_s, u"GESCHL"_s);
    asker.onEventTurn = [this] {
        auto* stop = the<QPushButton>(u"cmdChartStop"_s);
        EXPECT_TRUE(stop->isVisibleTo(window));
        QTest::mouseClick(stop, Qt::LeftButton);
    };
    goTo(2);
    asker.onEventTurn = {};
    EXPECT_EQ(window->model().facts().outcome, RunOutcome::Cancelled);
    EXPECT_FALSE(picture()->isVisibleTo(window));
    EXPECT_TRUE(the<QPushButton>(u"cmdChartComputeAnew"_s)->isVisibleTo(window));
    click(u"cmdChartComputeAnew"_s);
    EXPECT_TRUE(picture()->isVisibleTo(window));
    EXPECT_EQ(chart().categoryCount(), 2);
    EXPECT_EQ(the<QTabWidget>(u"SSTab"_s)->currentIndex(), 2);
}
