#include "editing/DocumentList.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using Kind = DocumentList::Kind;

class Documents : public testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue{home.path()};

    void SetUp() override { catalogue.fill(); }

    /// "text > file" of every line.
    static QStringList lines(const DocumentList& list) {
        QStringList texts;
        for (const DocumentList::Line& line : list.lines())
            texts << line.text + u" > "_s + line.file;
        return texts;
    }

    static DocumentList filled(Kind kind) {
        DocumentList list(kind);
        list.fill();
        return list;
    }

    void write(const QString& name) {
        QFile file(home.path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(name);
        file.write("x");
    }
};

TEST_F(Documents, EveryStudyHasALineAndEveryPartOfItsQuestionnaire) {
    catalogue.addStudy(u"QX3"_s, u"Drei"_s, {{"fid", u"0"_s}, {"Order", 3}, {"dt_EnStudyTitle", u"Three"_s}});
    for (const int part : {2, 3})
        catalogue.add(u"tkey_Parts"_s, {{"fi_StudyNo", u"qx1919"_s}, {"dt_PartNo", QString::number(part)}});
    catalogue.add(u"tkey_Parts"_s, {{"fi_StudyNo", u"QX3"_s}, {"dt_PartName", u"ohne Nummer"_s}});
    ASSERT_EQ(catalogue.open(), 1);
    const QStringList questionnaires = {
        u"QX1919: Erhebung 1919 - Teil A > QX19191.pdf"_s, u"QX1919: Erhebung 1919 -  > QX19192.pdf"_s,
        u"QX1919: Erhebung 1919 -  > QX19193.pdf"_s, u"QX2020: Erhebung 2020 > QX2020.pdf"_s, u"QX3: Drei > QX3.pdf"_s};
    EXPECT_EQ(lines(filled(Kind::Questionnaires)), questionnaires);
    EXPECT_EQ(lines(filled(Kind::DataSets)),
              (QStringList{u"QX1919: Erhebung 1919 > QX1919.sav"_s, u"QX2020: Erhebung 2020 > QX2020.sav"_s,
                           u"QX3: Drei > QX3.sav"_s}));
    gOptions.EnglishLanguage = true;
    EXPECT_EQ(lines(filled(Kind::Questionnaires)), questionnaires) << "asked in the original language";
    EXPECT_EQ(lines(filled(Kind::DataSets)).last(), u"QX3: Three > QX3.sav"_s);
    gDatabase.CurrentDatabase()->TableDefs().Delete(u"tkey_Parts"_s);
    EXPECT_EQ(lines(filled(Kind::Questionnaires)).first(), u"QX1919: Erhebung 1919 > QX1919.pdf"_s);
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
}

TEST_F(Documents, SeveralStudyViewsFollowEachOtherAndAnUnreadableOneHidesNone) {
    // A category view that is called a study view has no such columns.
    catalogue.addOption(u"frmExplorer2Type"_s, u"1"_s);
    catalogue.addOption(u"frmExplorer3Type"_s, u"1"_s);
    catalogue.execute(u"UPDATE tsys_Options SET dt_OptionValue = 'Study' WHERE dt_OptionName = 'frmExplorer3Table'"_s);
    ASSERT_EQ(catalogue.open(), 1);
    EXPECT_EQ(filled(Kind::DataSets).lines().size(), 4u);
    EXPECT_EQ(asker.boxes.size(), 1u);
}

TEST_F(Documents, StudiesInAFolderThatIsGoneSendTheUserToTheOptions) {
    const dao::DatabasePtr database = dao::DBEngine::instance().OpenDatabase(catalogue.path());
    database->TableDefs().Delete(u"tkey_Parts"_s);
    for (const QString& table : {u"tkey_Parts"_s, u"tkey_Other"_s}) {
        const dao::TableDefPtr link = database->CreateTableDef(table);
        link->setConnect(u";DATABASE="_s + home.path(u"gone/parts.mdb"_s));
        link->setSourceTableName(table);
        database->TableDefs().Append(link);
    }
    catalogue.addOption(u"frmExplorer3Type"_s, u"1"_s);
    catalogue.execute(u"UPDATE tsys_Options SET dt_OptionValue = 'Other' WHERE dt_OptionName = 'frmExplorer3Table'"_s);
    database->Close();
    ASSERT_EQ(catalogue.open(), 1);
    gOptions.DatabasePath = u"C:\\archive"_s;
    gOptions.DatabaseName = u"survey.mdb"_s;
    EXPECT_EQ(filled(Kind::Questionnaires).lines().size(), 2u) << "the studies are there all the same";
    EXPECT_EQ(asker.texts(), QStringList{u"Pfad zur Datenbank C:\\archive\\survey.mdb nicht gefunden!\r\n"
                                         "Geben Sie in den Optionen den korrekten Pfad an."_s})
        << "once, however much lies there";
}

TEST_F(Documents, TheLineOfAStudyIsTheFirstThatBeginsWithItsNumber) {
    catalogue.addStudy(u"QX19"_s, u"Neunzehn"_s, {{"fid", u"0"_s}});
    ASSERT_EQ(catalogue.open(), 1);
    const DocumentList list = filled(Kind::DataSets);
    const auto at = [&](const QString& study) {
        const int line = list.lineOf(study);
        return line < 0 ? u"-"_s : list.lines()[static_cast<size_t>(line)].file;
    };
    const QString first = list.lines().front().file;
    const std::pair<QString, QString> cases[] = {
        {u"QX2020"_s, u"QX2020.sav"_s},
        {u"qx2020"_s, u"QX2020.sav"_s},
        {u"QX19"_s, first},
        {u"QX1919"_s, u"QX1919.sav"_s},
        {u"G001"_s, u"-"_s},
        {u"QX20200"_s, u"-"_s},
        {QString(), u"-"_s},
    };
    for (const auto& [study, file] : cases)
        EXPECT_EQ(at(study), file) << qPrintable(study);
}

TEST_F(Documents, OpeningSaysWhatIsInTheWayAndStaysUnlessNothingCanBeDone) {
    QDir(home.path()).mkdir(u"pdf"_s);
    QDir(home.path()).mkdir(u"pdf/QX4.pdf"_s);
    write(u"pdf/qx2020.PDF"_s);
    write(u"out.pdf"_s);
    QFile::link(home.path(u"out.pdf"_s), home.path(u"pdf/QX5.pdf"_s));
    for (const QString& number : {u"QX4"_s, u"QX5"_s, u"../out"_s, u"..\\out"_s, home.path(u"out"_s)})
        catalogue.addStudy(number, u"x"_s, {{"fid", u"0"_s}});
    ASSERT_EQ(catalogue.open(), 1);
    const DocumentList list = filled(Kind::Questionnaires);
    const auto path = [&](const QString& name) { return home.path(u"pdf"_s) + u'/' + name; };
    const QString wrong =
        u"Die Einstellungen für den Pfad zu den Fragebogen-Dateien sind nicht korrekt. Überprüfen Sie "
        "die Optionen!"_s;
    const QString outside = u"Die Datei liegt nicht im eingestellten Ordner und wird nicht geöffnet: "_s;
    struct Case {
        QString study, folder;
        bool opens, closes;
        QString said, file;
    };
    const Case cases[] = {
        {u"none"_s, u"pdf"_s, true, false, u"Bitte einen Eintrag aus der Liste auswählen"_s, {}},
        {u"none"_s, {}, true, false, u"Bitte einen Eintrag aus der Liste auswählen"_s, {}},
        {u"QX2020"_s, {}, true, true, {}, {}},
        {u"QX1919"_s, u"pdf"_s, true, false, u"Datei "_s + path(u"QX19191.pdf"_s) + u" nicht gefunden!"_s, {}},
        {u"QX4"_s, u"pdf"_s, true, false, u"Datei "_s + path(u"QX4.pdf"_s) + u" nicht gefunden!"_s, {}},
        {u"QX2020"_s, u"pdf"_s, true, true, {}, path(u"qx2020.PDF"_s)},
        {u"QX2020"_s, u"pdf/"_s, true, true, {}, path(u"qx2020.PDF"_s)},
        {u"QX2020"_s, u"pdf"_s, false, true, wrong, path(u"qx2020.PDF"_s)},
        {u"QX5"_s, u"pdf"_s, true, false, outside + path(u"QX5.pdf"_s), {}},
        {u"../out"_s, u"pdf"_s, true, false, outside + path(u"../out.pdf"_s), {}},
        {u"..\\out"_s, u"pdf"_s, true, false, outside + path(u"../out.pdf"_s), {}},
        {home.path(u"out"_s), u"pdf"_s, true, false, outside + path(home.path(u"out.pdf"_s).mid(1)), {}},
    };
    for (const Case& c : cases) {
        asker.boxes.clear();
        asker.opened.clear();
        asker.opens = c.opens;
        gOptions.QuestionnairePath = c.folder.isEmpty() ? QString() : home.path(c.folder);
        EXPECT_EQ(list.open(list.lineOf(c.study)), c.closes) << qPrintable(c.study);
        EXPECT_EQ(asker.lastText(), c.said);
        EXPECT_EQ(asker.opened.value(0), c.file);
        EXPECT_EQ(asker.pointer(), ui::Pointer::Default);
    }
    // Data sets have a folder of their own; the words of a failure are the same.
    write(u"QX2020.sav"_s);
    gOptions.SPSSPath = home.path();
    gOptions.QuestionnairePath.clear();
    asker.opens = false;
    const DocumentList sets = filled(Kind::DataSets);
    EXPECT_TRUE(sets.open(sets.lineOf(u"QX2020"_s)));
    EXPECT_EQ(asker.lastText(), wrong);
}

} // namespace
