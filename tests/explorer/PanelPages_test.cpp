#include "explorer/PanelPages.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "charts/StoredGraph.h"
#include "explorer/ExplorerModel.h"
#include "explorer/showCardFile.h"
#include "platform/system/Paths.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

const QString storedTable = u"\"Alter \"\"heute\"\" nach Ort\";Xtab;S;;3;3;\"\";\"\";\"1\";\"\";\"\";\"jung\";\"\";"
                            u"\"A\";\"50,0%\";V3;"_s;
const QString storedLayout = u"3;3;1000;2000;3000;240;240;240;0;0;0;0;0;0;0;0;6;1;1;1;"_s;

QByteArray png(int width, int height, Qt::GlobalColor colour = Qt::blue) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return buffer.data();
}

void write(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(Paths::folderOf(path));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

class Pages : public testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue{home.path(u"archive"_s)};
    PanelPages pages{VariablePanel::Place::A};

    QString folder() const { return home.path(u"archive"_s); }

    void SetUp() override {
        catalogue.fill();
        catalogue.addStudy(u"QX3"_s, u"Karten"_s);
        add(u"CARD"_s, {{"dt_FileNameShowCard", u"Karten\\eins.png"_s}});
        add(u"BOTH"_s,
            {{"dt_FileNameShowCard", u"karten/eins.png"_s}, {"dt_FileNameEnShowCard", u"karten\\one.png"_s}});
        add(u"STORED"_s, {{"dt_Table", storedTable},
                          {"dt_TableLayout", storedLayout},
                          {"dt_Graph", memoOf(png(30, 20))},
                          {"dt_GraphLayout", u"\"Titel \"x\" y\";10205;6236;\"1 = ja; 2 = \"nein\"\r\n3 = gar\";"_s}});
        add(u"DAMAGED"_s, {{"dt_FileNameShowCard", u"karten\\half.png"_s},
                           {"dt_Table", u"Fehler"_s},
                           {"dt_Graph", memoOf(png(30, 20).left(60))},
                           {"dt_GraphLayout", u"kein Titel"_s}});
        add(u"NONE"_s, {{"dt_FileNameShowCard", u""_s}, {"dt_Table", u""_s}});
        write(folder() + u"/karten/eins.png"_s, png(40, 30));
        write(folder() + u"/karten/one.png"_s, png(50, 30, Qt::red));
        write(folder() + u"/karten/half.png"_s, png(40, 30).left(50));
        ASSERT_EQ(catalogue.open(), 1);
    }

    void add(const QString& name, TestCatalogue::Row more) { catalogue.addVariable(u"QX3"_s, name, u"QX3_1"_s, more); }

    void fill(const QString& variable, bool english = false) { pages.fill(u"QX3"_s, variable, english); }

    QString enabled() const {
        QString tabs;
        for (int page = 0; page < PanelPages::pageCount; ++page)
            tabs += pages.isEnabled(page) ? u'1' : u'0';
        return tabs;
    }
};

TEST_F(Pages, TheCardIsThatOfThePanelsLanguageAndNoOther) {
    fill(u"CARD"_s);
    EXPECT_EQ(pages.Tag(), folder() + u"/Karten/eins.png"_s) << "as the catalogue spells it";
    EXPECT_EQ(pages.picSC().size(), QSize(40, 30));
    fill(u"CARD"_s, true);
    EXPECT_EQ(enabled(), u"000"_s);
    EXPECT_TRUE(pages.picSC().isNull() && pages.Tag().isEmpty() && pages.fault() == PictureFault::None);
    fill(u"BOTH"_s, true);
    EXPECT_EQ(pages.picSC().size(), QSize(50, 30));
    fill(u"BOTH"_s, false);
    EXPECT_EQ(pages.picSC().size(), QSize(40, 30));
    pages.view.setSlider(2000);
    fill(u"NONE"_s);
    EXPECT_EQ(enabled(), u"000"_s) << "an empty text is no name and no table";
    EXPECT_EQ(pages.page(), PanelPages::ShowCard) << "stays in view";
    fill(u"BOTH"_s);
    EXPECT_EQ(pages.view.slider(), 2000) << "the zoom stays with the next variable";
}

TEST_F(Pages, ANameLeadsToAFileBelowTheCataloguesFolderOrNowhere) {
    write(home.path(u"archive2/outside.png"_s), png(9, 9));
    write(home.path(u"outside.png"_s), png(9, 9));
    write(folder() + u"/Tief/Er/Karte.PNG"_s, png(8, 8));
    QFile::link(home.path(u"outside.png"_s), folder() + u"/link.png"_s);
    QFile::link(home.path(u"archive2"_s), folder() + u"/linked"_s);
    QFile::link(folder() + u"/karten/eins.png"_s, folder() + u"/inside.png"_s);
    ASSERT_EQ(mkfifo((folder() + u"/pipe.png"_s).toUtf8().constData(), 0600), 0);
    const QString catalogueFile = gDatabase.Database();
    const struct {
        QString name, file;
    } rows[] = {{u"tief\\er\\KARTE.png"_s, u"/Tief/Er/Karte.PNG"_s},
                {u"karten/../karten\\eins.png"_s, u"/karten/eins.png"_s},
                {u"\\karten\\eins.png"_s, u"/karten/eins.png"_s},
                {u"inside.png"_s, u"/karten/eins.png"_s},
                {u"../outside.png"_s, {}},
                {u"..\\archive2\\outside.png"_s, {}},
                {u"karten\\..\\..\\outside.png"_s, {}},
                {home.path(u"outside.png"_s), {}},
                {u"link.png"_s, {}},
                {u"linked\\outside.png"_s, {}},
                {u"pipe.png"_s, {}},
                {u"karten"_s, {}},
                {u"."_s, {}},
                {u":/icons/varidex.svg"_s, {}},
                {QString(5000, u'x'), {}},
                {u"karten/eins.png"_s + QChar(QChar::Null) + u"x"_s, {}}};
    for (const auto& row : rows)
        EXPECT_EQ(showCardFile(catalogueFile, row.name), row.file.isEmpty() ? QString() : folder() + row.file)
            << qPrintable(row.name);
    EXPECT_TRUE(showCardFile(Paths::fileOf(catalogueFile), u"karten\\eins.png"_s).isEmpty()) << "a bare name";
    EXPECT_TRUE(showCardPath(u"catalogue.mdb"_s, u"karten\\eins.png"_s).isEmpty());
    // A catalogue that is opened by a link elsewhere has its cards where it is itself.
    QFile::link(catalogueFile, home.path(u"link.mdb"_s));
    EXPECT_EQ(showCardFile(home.path(u"link.mdb"_s), u"karten\\eins.png"_s), folder() + u"/karten/eins.png"_s);
}

TEST_F(Pages, AStoredTableIsShownWithItsCodesInView) {
    fill(u"STORED"_s);
    EXPECT_EQ(enabled(), u"011"_s);
    EXPECT_EQ(pages.Tag(), QString()) << "the page in view has nothing";
    pages.turnTo(PanelPages::Table);
    fill(u"STORED"_s);
    ASSERT_TRUE(pages.table());
    EXPECT_EQ(pages.Tag(), u"Table"_s);
    EXPECT_EQ(pages.lblTableTitle(), u"Alter "_s) << "up to the first quote, its fields go on behind the first \";";
    EXPECT_EQ(pages.lblTableValues(), u"Spaltenprozente"_s);
    EXPECT_EQ(pages.table()->FixedRows, 2);
    EXPECT_EQ(pages.table()->FixedCols, 2);
    EXPECT_EQ(pages.table()->Cell(2, 2), u"50,0%"_s);
    EXPECT_EQ(pages.table()->ColWidth(2), 3000);
    EXPECT_EQ(pages.table()->CellAlignment(2, 2), 6);
    fill(u"CARD"_s);
    EXPECT_FALSE(pages.table());
    EXPECT_EQ(pages.page(), PanelPages::Table);
    EXPECT_TRUE(asker.boxes.empty());
}

TEST_F(Pages, AStoredGraphHasItsTitleAndItsExplanationBesideIt) {
    pages.turnTo(PanelPages::Graph);
    fill(u"STORED"_s);
    EXPECT_EQ(pages.Tag(), u"Graph"_s);
    EXPECT_EQ(pages.picSC().size(), QSize(30, 20));
    EXPECT_EQ(pages.lblTableTitle(), u"Titel "_s);
    EXPECT_EQ(pages.lblGraphExplain(), u"1 = ja; 2 = \"nein\"\r\n3 = gar"_s);
    EXPECT_EQ(pages.lblTableValues(), QString());
    pages.empty();
    EXPECT_EQ(enabled(), u"000"_s);
    EXPECT_TRUE(pages.picSC().isNull() && pages.lblGraphExplain().isEmpty() && pages.Tag().isEmpty());
}

TEST_F(Pages, WhatIsDamagedSaysSoOnItsPageAndATableInABoxOnce) {
    fill(u"DAMAGED"_s);
    EXPECT_EQ(pages.fault(), PictureFault::Damaged);
    pages.turnTo(PanelPages::Graph);
    fill(u"DAMAGED"_s);
    EXPECT_EQ(pages.fault(), PictureFault::Damaged);
    EXPECT_EQ(pages.lblTableTitle(), QString());
    EXPECT_TRUE(asker.boxes.empty());
    pages.turnTo(PanelPages::Table);
    for (int time = 0; time < 2; ++time) {
        fill(u"DAMAGED"_s);
        EXPECT_EQ(asker.texts(), QStringList(u"Fehler"_s));
        EXPECT_FALSE(pages.table());
        EXPECT_EQ(pages.fault(), PictureFault::Damaged);
        fill(u"CARD"_s);
    }
    pages.turnTo(PanelPages::ShowCard);
    QFile::remove(folder() + u"/karten/eins.png"_s);
    fill(u"CARD"_s);
    EXPECT_EQ(pages.fault(), PictureFault::Missing);
    EXPECT_EQ(pages.Tag(), folder() + u"/Karten/eins.png"_s);
}

TEST_F(Pages, AnOlderCatalogueWithoutTheColumnsHasNothingThere) {
    dao::Database& database = *gDatabase.CurrentDatabase();
    database.TableDefs().Delete(u"tkey_Variable"_s);
    const dao::TableDefPtr table = database.CreateTableDef(u"tkey_Variable"_s);
    for (const QString& name : {u"fi_StudyNo"_s, u"id_VarName"_s, u"DT_FILENAMESHOWCARD"_s})
        table->Fields.push_back({name, dao::dbText});
    database.TableDefs().Append(table);
    database.Execute(u"INSERT INTO tkey_Variable VALUES ('QX3', 'CARD', 'karten\\eins.png');"_s);
    fill(u"CARD"_s);
    EXPECT_EQ(enabled(), u"100"_s);
    EXPECT_EQ(pages.picSC().size(), QSize(40, 30));
    fill(u"CARD"_s, true);
    EXPECT_EQ(enabled(), u"000"_s);
    EXPECT_TRUE(asker.boxes.empty());
}

TEST_F(Pages, WhatIsOutOfSightIsReadWhenItComesIntoView) {
    pages.setInSight(false);
    fill(u"CARD"_s);
    EXPECT_TRUE(pages.picSC().isNull() && !pages.isEnabled(0));
    pages.setInSight(true);
    pages.catchUp();
    EXPECT_EQ(pages.picSC().size(), QSize(40, 30));
    EXPECT_FALSE(pages.refresh()) << "nothing has changed";
    write(folder() + u"/karten/eins.png"_s, png(41, 31));
    EXPECT_TRUE(pages.refresh());
    EXPECT_EQ(pages.picSC().size(), QSize(41, 31));
    pages.turnTo(PanelPages::Table);
    fill(u"CARD"_s);
    gDatabase.CurrentDatabase()->Execute(u"UPDATE tkey_Variable SET dt_Table = '"_s + storedTable +
                                         u"' WHERE id_VarName = 'CARD';"_s);
    EXPECT_TRUE(pages.refresh());
    EXPECT_TRUE(pages.table());
    pages.empty();
    EXPECT_FALSE(pages.refresh()) << "no variable is shown";
}

TEST_F(Pages, APanelThatShowsAnotherVariableWithoutFillHasNoCardOfTheOneBefore) {
    ExplorerModel model;
    model.open(1);
    ASSERT_TRUE(model.select(u"AQX3"_s));
    ASSERT_TRUE(model.showRow(0, true));
    ASSERT_TRUE(model.showRowInB(1));
    EXPECT_FALSE(model.pagesA.picSC().isNull());
    ASSERT_TRUE(model.showRow(1, false));
    EXPECT_TRUE(model.pagesA.picSC().isNull());
    model.fillA();
    EXPECT_FALSE(model.pagesA.picSC().isNull());
    // Panel B goes its own way, in its own language.
    EXPECT_EQ(model.pagesB.picSC().size(), QSize(40, 30));
    EXPECT_TRUE(model.switchLanguageB());
    EXPECT_EQ(model.pagesB.picSC().size(), QSize(50, 30));
    ASSERT_TRUE(model.moveB(ExplorerModel::Step::Back));
    EXPECT_TRUE(model.pagesB.picSC().isNull()) << "no English card";
    model.pagesB.view.setSlider(700);
    EXPECT_EQ(model.pagesA.view.slider(), 500);
    // Another entry in the tree fills the panel without its pages.
    ASSERT_TRUE(model.select(u"AQX2020"_s));
    ASSERT_TRUE(model.select(u"AQX3"_s));
    EXPECT_TRUE(model.pagesA.picSC().isNull());
}

} // namespace
