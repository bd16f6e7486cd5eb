#include "app/globals.h"
#include "config/Options.h"
#include "editing/Entries.h"
#include "editing/History.h"
#include "support/PrintQt.h"
#include "support/TestCatalogue.h"
#include "support/WindowTest.h"

using namespace Qt::StringLiterals;

namespace {

/// What the operations ask and say, in the language of the program; the texts come from the system database.
class EntryWords : public WindowTest {
protected:
    TestCatalogue catalogue{home.path()};
    ExplorerModel model;

    void SetUp() override {
        catalogue.fill();
        ASSERT_EQ(catalogue.open(), 1);
        gOptions.EditStudiesMode = true;
    }
    /// All texts since the last call: of prompts, editors and boxes.
    QStringList asked() {
        QStringList all;
        for (const auto& one : asker.prompts)
            all << one.prompt + u'|' + one.title + u'|' + one.proposal;
        for (const auto& one : asker.editors)
            all << one.first;
        for (const ui::Box& box : asker.boxes)
            all << box.text + u'|' + box.title;
        asker.prompts.clear();
        asker.editors.clear();
        asker.boxes.clear();
        return all;
    }
    void select(const QString& key) {
        model.open(key.front().unicode() - u'@');
        ASSERT_TRUE(model.select(key));
    }
};

TEST_F(EntryWords, AreThoseOfTheLanguage) {
    const struct {
        QString node;
        std::function<void(ScriptedAsker&)> answers;
        bool (*run)(ExplorerModel&);
        QStringList german, english;
    } cases[] = {
        {u"B2"_s,
         [](ScriptedAsker& script) { script.input(u"N"_s).edited(std::nullopt); },
         newEntry,
         {u"'Demographie'\r\nBitte geben Sie einen Namen ein:|Neuer Eintrag|Neuer Eintrag"_s,
          u"Beschreibung eingeben für 'N'"_s},
         {u"'Demographie'\r\nPlease enter a name:|New Entry|New Entry"_s, u"Enter the description of 'N'"_s}},
        {u"AG001"_s,
         [](ScriptedAsker& script) {
             script.input(u"N"_s).input(u"N1"_s).answer(ui::Answer::Yes).edited(std::nullopt);
         },
         newEntry,
         {u"Bitte geben Sie den Namen für die neue Studie oder Gruppe in 'Gruppe' ein:|Neue Studie|Neue Studie/Gruppe"_s,
          u"Welche Studiennummer soll diese Studie haben?|Neue Studie|G001"_s, u"Beschreibung eingeben für 'N'"_s,
          u"Wählen Sie 'ja', wenn es eine Studie und keine Gruppe ist:|Neue Studie"_s},
         {u"Please enter the name of the new study or group in: Gruppe|New Study|New Study/Group"_s,
          u"Which study number shall this study have?|New Study|G001"_s, u"Enter the description of 'N'"_s,
          u"Choose 'yes' if it is a study and not a group:|New Study"_s}},
        {u"B3"_s,
         [](ScriptedAsker& script) { script.input(QString()); },
         renameEntry,
         {u"'Vertrauen'\r\nBitte geben Sie den neuen Namen ein: |Umbenennen|Vertrauen"_s,
          u"Vertrauen nicht umbenannt!|"_s},
         {u"'Vertrauen'\r\nPlease enter the new name: |Rename|Vertrauen"_s, u"Vertrauen not renamed!|"_s}},
        {u"AQX1919"_s,
         [](ScriptedAsker& script) { script.answer(ui::Answer::Cancel); },
         deleteEntry,
         {u"Möchten Sie löschen:\r\n 'Erhebung 1919'\r\n(Achtung! Alle Unterkategorien und Variablenzuordnungen werden "
          "mitgelöscht!)|löschen"_s},
         {u"Do you want to delete:\r\n 'Erhebung 1919'\r\n(Attention! All subcategories and assignments of variables "
          "are deleted with it!)|Delete"_s}},
        {u"B1"_s,
         [](ScriptedAsker& script) { script.answer(ui::Answer::Cancel); },
         [](ExplorerModel& shown) { return deleteRows(shown, {0}); },
         {u"Möchten Sie die ausgewählten Variablen löschen:\r\n 'Einstellungen' ?|Löschen"_s},
         {u"Do you want to delete the selected variables:\r\n 'Einstellungen' ?|Delete"_s}},
        {u"AQX2020"_s,
         [](ScriptedAsker& script) { script.answer(ui::Answer::Cancel); },
         [](ExplorerModel& shown) { return deleteRows(shown, {0}); },
         {u"Möchten Sie die ausgewählten Variablen löschen:\r\n 'Erhebung 2020' löschen?|Löschen"_s},
         {u"Do you want to delete the selected variables:\r\n 'Erhebung 2020' delete?|Delete"_s}},
        {u"B0"_s,
         [](ScriptedAsker&) {},
         deleteEntry,
         {u"Oberster Eintrag kann nicht gelöscht werden|"_s},
         {u"The topmost entry cannot be deleted|"_s}},
    };
    for (const auto& one : cases)
        for (const bool english : {false, true}) {
            setLanguage(english ? 1 : 0);
            select(one.node);
            one.answers(asker);
            EXPECT_TRUE(!one.run(model) || history().undo());
            EXPECT_EQ(asked(), english ? one.english : one.german);
        }
}

TEST_F(EntryWords, NameTheStepForTheHistory) {
    setLanguage(1);
    select(u"B1"_s);
    asker.answer(ui::Answer::Ok);
    EXPECT_TRUE(deleteEntry(model));
    EXPECT_EQ(history().undoName(), u"Delete \"Einstellungen\""_s);
    EXPECT_TRUE(history().undo());
    setLanguage(0);
    select(u"B2"_s);
    asker.input(QString(500, u'n')).edited(std::nullopt);
    EXPECT_TRUE(renameEntry(model));
    EXPECT_EQ(history().undoName(), u"Umbenennen \"Demographie\""_s);
    asker.edited(u"Text"_s);
    EXPECT_TRUE(editDescription(model));
    EXPECT_LT(history().undoName().size(), 80);
}

} // namespace
