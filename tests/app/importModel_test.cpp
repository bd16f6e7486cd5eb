#include "app/ImportModel.h"
#include "app/SampleArchive.h"
#include "platform/system/Paths.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class ImportChoice : public testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue{home.path()};

    ImportChoice() { catalogue.fill(); }
    QString file(const QString& name) const {
        QFile made(home.path(name));
        EXPECT_TRUE(made.open(QIODevice::WriteOnly));
        made.write("$FL2");
        return made.fileName();
    }
};

} // namespace

TEST_F(ImportChoice, TheStudyNumberIsMadeOfTheFilesNameAndIsItsOwn) {
    const QStringList taken = {u"qx1919"_s, u"Allbus"_s, u"Allbus2"_s};
    const std::pair<QString, QString> cases[] = {
        {u"/a/sv2018.sav"_s, u"sv2018"_s},
        {u"/a/ESS-9e03_2.por"_s, u"ESS9e032"_s},
        {u"/a/2018 Umfrage.sav"_s, u"S2018Umfrage"_s},
        {u"/a/Häuser & Gärten.dta"_s, u"HaeuserGaerten"_s},
        {u"/a/café.sav"_s, u"cafe"_s},
        {u"/a/설문.sav"_s, u"S"_s},
        {u"/a/ALLBUS.zsav"_s, u"ALLBUS3"_s},
        {u"/a/QX1919.sav"_s, u"QX1919x2"_s},
        {u"/a/from_here.sav"_s, u"Studie"_s}, // a word that statements are searched for
        {u"/a/einsehrlangernameeinerumfrage.sav"_s, u"einsehrlangernameein"_s}};
    for (const auto& [path, number] : cases)
        EXPECT_EQ(ImportModel::proposedStudy(path, taken), number) << qPrintable(path);

    ImportModel model(file(u"QX2020.sav"_s), catalogue.path());
    model.setFile(file(u"QX2020.sav"_s));
    EXPECT_EQ(model.study(), u"QX2020x2"_s) << "the catalogue has one";
    model.setCatalogue(home.path(u"neu.mdb"_s));
    EXPECT_EQ(model.study(), u"QX2020"_s);
    model.setStudy(u"EIGENE"_s);
    model.setFile(file(u"b.sav"_s));
    EXPECT_EQ(model.study(), u"EIGENE"_s) << "what was typed stays";
    ImportModel fresh(QString(), home.path(u"neu.mdb"_s));
    fresh.setFile(file(u"neu.sav"_s));
    EXPECT_EQ(fresh.study(), u"neu2"_s) << "its case file would be the catalogue itself";
}

TEST_F(ImportChoice, WhatKeepsItFromBeingRunIsSaidBesideItsField) {
    ImportModel model{QString(), QString()};
    EXPECT_FALSE(model.mayRun());
    EXPECT_EQ(model.fileFault() + model.catalogueFault() + model.studyFault(), QString()) << "nothing is typed yet";
    const QString survey = file(u"a.sav"_s);
    const struct {
        QString file, catalogue, study, fault;
        bool replace = false;
    } cases[] = {{home.path(u"gone.sav"_s), catalogue.path(), u"A"_s, u"nicht gefunden"_s},
                 {catalogue.path(), catalogue.path(), u"A"_s, u"keine Datei mit der Endung"_s},
                 {survey, home.path(u"gone/x.mdb"_s), u"A"_s, u"Diesen Ordner gibt es nicht"_s},
                 {survey, home.path(u"x.sav"_s), u"A"_s, u"Endung .mdb oder .klor"_s},
                 {survey, home.path(), u"A"_s, u"ein Ordner"_s},
                 {survey, catalogue.caseFile(u"QX1919"_s), u"A"_s, u"eine Falldatei"_s},
                 {survey, catalogue.path(), u"1A"_s, u"am Anfang ein Buchstabe"_s},
                 {survey, catalogue.path(), u"qx1919"_s, u"gibt es schon"_s},
                 {survey, catalogue.path(), u"qx1919"_s, {}, true},
                 {survey, catalogue.path(), u"A"_s, {}},
                 {survey, home.path(u"neu.klor"_s), u"A"_s, {}}};
    for (const auto& c : cases) {
        model.setFile(c.file);
        model.setCatalogue(c.catalogue);
        model.setStudy(c.study);
        model.replace = c.replace;
        const QString faults = model.fileFault() + model.catalogueFault() + model.studyFault();
        EXPECT_TRUE(c.fault.isEmpty() ? faults.isEmpty() : faults.contains(c.fault)) << qPrintable(faults);
        EXPECT_EQ(model.mayRun(), c.fault.isEmpty()) << qPrintable(c.fault);
    }
    EXPECT_EQ(model.catalogueNote(), u"Der Katalog wird neu angelegt."_s);
    model.setCatalogue(catalogue.path());
    EXPECT_EQ(model.catalogueNote(), u"Studien und Gruppen im Katalog: 3"_s);
    model.title = u"--ein Titel"_s;
    EXPECT_EQ(model.arguments(),
              (QStringList{u"import"_s, catalogue.path(), survey, u"--study"_s, u"A"_s, u"--title=--ein Titel"_s}));
    EXPECT_TRUE(asker.boxes.empty());
}

TEST_F(ImportChoice, TheSampleArchiveIsFoundWhereABuildAndWhereAnInstallationHasIt) {
    QDir().mkpath(home.path(u"p/bin"_s));
    const auto found = [&] { return SampleArchive::find(home.path(u"p/bin"_s)); };
    EXPECT_FALSE(found().isThere());
    EXPECT_TRUE(found().questionnaires.isEmpty());
    for (const QString& folder : {u"p/samples"_s, u"p/share/varidex/samples"_s}) {
        QDir().mkpath(home.path(folder));
        file(folder + u"/archive.json"_s);
        EXPECT_EQ(found().description, home.path(folder + u"/archive.json"_s));
        EXPECT_EQ(found().questionnaires, home.path(folder + u"/fragebogen"_s));
        EXPECT_EQ(found().dataSets, home.path(folder + u"/daten"_s));
    }
    EXPECT_FALSE(found().isBuilt());
    EXPECT_TRUE(found().catalogue.startsWith(home.path(u"home"_s))) << "the user's own folder";
    QDir().mkpath(Paths::folderOf(found().catalogue));
    QFile(found().catalogue).open(QIODevice::WriteOnly);
    EXPECT_TRUE(found().isBuilt());
}
