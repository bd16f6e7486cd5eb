#include "analysis/AnalysisWindow.h"

#include "support/RemovableMedium.h"

#include <QDir>
#include <QFile>

/// The window and the medium with its case files.
class AnalysisMedium : public AnalysisWindow {
protected:
    const QString folder = home.path(u"Medium"_s);
    const RemovableMedium medium{folder};

    void openComparison() {
        open();
        QDir().mkpath(folder);
        for (const QString& study : {u"SV2018"_s, u"SV2022"_s})
            QFile::copy(gOptions.DataPath + u'/' + study + u".mdb"_s, folder + u'/' + study + u".mdb"_s);
        gOptions.DataPath = folder;
        chooseStudy(u"SV2018"_s);
        type(u"dbcVariableUni"_s, u"LZUFR:"_s);
        for (const QString& study : {u"SV2018"_s, u"SV2022"_s})
            window->comparison().addVariable(study, u"LZUFR"_s);
    }
    AnalysisModel& model() { return window->model(); }
    /// Goes back to the request, chooses a mode and runs it, with the table of before thrown away.
    QString tableOf(const QString& mode) {
        goTo(0);
        press(mode);
        the<QPushButton>(u"cmdComputeAnew"_s)->click();
        settle();
        return clipText(model().result().mfgGrid);
    }
    /// What a person finds who was left without a table.
    void expectUsable(const QString& mode, const QString& table) {
        EXPECT_EQ(the<QTabWidget>(u"SSTab"_s)->currentIndex(), 0);
        EXPECT_EQ(the<ResultTableView>(u"mfgGrid"_s)->table().Rows(), 0) << "no number without its table";
        EXPECT_EQ(asker.pointer(), ui::Pointer::Default);
        EXPECT_FALSE(AnalysisModel::running());
        RemovableMedium::putIn();
        goTo(1);
        EXPECT_EQ(clipText(model().result().mfgGrid), table) << mode.toStdString();
        EXPECT_EQ(model().tableState(), TableState::Current);
    }
};

TEST_F(AnalysisMedium, AskedForWhenItIsGonePutInWhileTheBoxIsOpenAndCountedToTheEnd) {
    openComparison();
    for (const QString& mode : {u"Option1"_s, u"Option5"_s}) {
        const QString table = tableOf(mode);
        ASSERT_EQ(model().tableState(), TableState::Current);
        // Gone before the run; put in at the second time of asking.
        RemovableMedium::takeOut();
        asker.boxes.clear();
        asker.answer(ui::Answer::Ok).answer(ui::Answer::Ok, RemovableMedium::putIn);
        EXPECT_EQ(tableOf(mode), table);
        ASSERT_EQ(asker.boxes.size(), 2U);
        for (const ui::Box& box : asker.boxes) {
            EXPECT_EQ(box.text, u"Bitte legen Sie die CD-ROM mit den Auswertungsdateien ein und klicken Sie 'OK'.");
            EXPECT_EQ(box.title, u"Datenträger- oder Laufwerksfehler");
            EXPECT_EQ(box.buttons, ui::Buttons::OkCancel);
        }
        EXPECT_EQ(model().tableState(), TableState::Current);
        EXPECT_EQ(the<QTabWidget>(u"SSTab"_s)->currentIndex(), 1);

        RemovableMedium::takeOut();
        asker.answer(ui::Answer::Cancel);
        tableOf(mode);
        expectUsable(mode, table);
    }
}

TEST_F(AnalysisMedium, GoneBetweenTwoEntriesOfAComparisonLeavesNoHalfOfIt) {
    openComparison();
    const QString table = tableOf(u"Option5"_s);
    const RunHooks quiet = model().hooks();
    RunHooks hooks = quiet;
    hooks.onStatement = [](const QString& name, const QString& statement) {
        if (name == u"counts" && statement.contains(u"SV2022"_s))
            RemovableMedium::takeOut();
    };
    model().setHooks(hooks);
    asker.answer(ui::Answer::Ok, RemovableMedium::putIn);
    EXPECT_EQ(tableOf(u"Option5"_s), table);
    asker.answer(ui::Answer::Cancel);
    tableOf(u"Option5"_s);
    model().setHooks(quiet);
    expectUsable(u"Option5"_s, table);
}

TEST_F(AnalysisMedium, CaseFilesThatAreGoneAreToldAndTheNextTryWorksOnceTheyAreBack) {
    open();
    chooseStudy(u"SV2018"_s);
    type(u"dbcVariableUni"_s, u"GESCHL"_s);
    const QString data = home.path(u"Fälle"_s);
    QDir().mkpath(data);
    QFile::copy(gOptions.DataPath + u"/SV2018.mdb"_s, data + u"/SV2018.mdb"_s);
    gOptions.DataPath = data;
    goTo(1);
    EXPECT_EQ(model().tableState(), TableState::Current);
    goTo(0);
    QDir().rename(data, data + u"-weg"_s);
    type(u"dbcVariableUni"_s, u"LZUFR:"_s);
    goTo(1);
    EXPECT_TRUE(asker.lastText().endsWith(u"SV2018.mdb' nicht gefunden."_s)) << asker.lastText().toStdString();
    EXPECT_EQ(the<QTabWidget>(u"SSTab"_s)->currentIndex(), 0);
    QDir().rename(data + u"-weg"_s, data);
    goTo(1);
    EXPECT_EQ(model().tableState(), TableState::Current);
}
