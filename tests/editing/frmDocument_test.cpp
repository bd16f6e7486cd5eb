#include "editing/frmDocument.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "language/mdLanguage.h"
#include "support/PrintQt.h"
#include "support/WindowTest.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

/// The descriptions of the sample archive: a group, its first wave, two later ones, in this order.
class frmDocumentTest : public WindowTest {
protected:
    frmDocument* window = nullptr;
    QTextEdit* text = nullptr;

    void SetUp() override { openSampleArchive(); }

    void open(int view) {
        window = frmDocument::openView(view);
        text = window->textEdit();
        window->resize(window->sizeHint());
        window->activateWindow();
        settle();
    }
    template<class Widget>
    Widget* find(const QString& name) const {
        return window->findChild<Widget*>(name);
    }
    void press(const QString& key) const { QTest::mouseClick(find<QToolButton>(key), Qt::LeftButton); }
    QString id() const { return find<QLineEdit>(u"txtStudyNo"_s)->text(); }
    QString chosen() const { return find<QComboBox>(u"cmbAuswahl"_s)->currentText(); }
    QString place() const { return find<QLabel>(u"lblPosition"_s)->text(); }

    /// Gives an entry another description.
    static void describe(const QString& study, const QString& description) {
        const dao::RecordsetPtr rows = gDatabase.CurrentDatabase()->OpenRecordset(u"tkey_Study"_s);
        rows->FindFirst(u"id_StudyNo = '"_s + study + u'\'');
        rows->Edit();
        rows->setValue(u"dt_StudyDescription"_s, description.isEmpty() ? dao::Value() : dao::Value(description));
        rows->Update();
    }
};

TEST_F(frmDocumentTest, ButtonsKeysAndTheListLeadThroughTheDescriptions) {
    open(1);
    EXPECT_EQ(window->windowTitle(), gViews.at(1, ViewTable::DescName) + u" 1"_s);
    EXPECT_TRUE(text->toPlainText().startsWith(u"Alle Wellen der Bevölkerungsumfrage."_s));
    EXPECT_EQ(place(), u"1 von 4"_s);
    const QString first = id();
    press(u"weiter"_s);
    EXPECT_EQ(id(), u"SV2014"_s);
    EXPECT_EQ(place(), u"2 von 4"_s);
    QTest::keyClick(text, Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(id(), u"SV2018"_s);
    QTest::keyClick(text, Qt::Key_End, Qt::AltModifier);
    press(u"weiter"_s);
    EXPECT_EQ(id(), u"SV2022"_s) << "the last stays";
    QTest::keyClick(text, Qt::Key_Up, Qt::AltModifier);
    press(u"zurück"_s);
    EXPECT_EQ(id(), u"SV2014"_s);
    // Found by typing in the list.
    auto* list = find<QComboBox>(u"cmbAuswahl"_s);
    list->setFocus();
    QTest::keyClicks(list->lineEdit(), u"2022"_s);
    QTest::keyClick(list->lineEdit(), Qt::Key_Return);
    EXPECT_EQ(id(), u"SV2022"_s);
    EXPECT_EQ(chosen(), u"Leben in Solvarden 2022"_s);
    // What names none leaves the entry, and its title comes back.
    QTest::keyClicks(list->lineEdit(), u"xyz"_s);
    text->setFocus();
    settle();
    EXPECT_EQ(chosen(), u"Leben in Solvarden 2022"_s);
    QTest::keyClick(text, Qt::Key_Home, Qt::AltModifier);
    EXPECT_EQ(id(), first);
}

TEST_F(frmDocumentTest, ContentsAndTheWindowsTextsHaveLanguagesOfTheirOwn) {
    open(1);
    press(u"weiter"_s);
    press(u"english"_s);
    EXPECT_EQ(id(), u"SV2014"_s);
    EXPECT_EQ(chosen(), u"Living in Solvarden 2014"_s);
    EXPECT_TRUE(find<QToolButton>(u"english"_s)->isChecked());
    EXPECT_TRUE(window->windowTitle().startsWith(gViews.at(1, ViewTable::DescName)));
    setLanguage(1);
    mdLanguage::RefreshForms({window});
    EXPECT_EQ(window->windowTitle(), gViews.at(1, ViewTable::DescNameEnglish) + u" 1"_s);
    EXPECT_EQ(place(), u"2 of 4"_s);
    EXPECT_EQ(find<QToolButton>(u"weiter"_s)->toolTip(), u"Next description (Alt+Down)"_s);
    QTest::keyClick(text, Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(chosen(), u"Leben in Solvarden 2014"_s);
    EXPECT_FALSE(find<QToolButton>(u"english"_s)->isChecked());
}

TEST_F(frmDocumentTest, WindowsOfAViewAreNumberedAndTheCataloguesIsCalledByItsName) {
    open(1);
    frmDocument* const first = window;
    open(1);
    EXPECT_EQ(window->Tag, u"2"_s);
    delete first;
    open(1);
    EXPECT_EQ(window->Tag, u"3"_s) << "a gap is left";
    open(2);
    EXPECT_EQ(window->Tag, u"1"_s);
    window = frmDocument::openCatalogue();
    EXPECT_EQ(window->windowTitle(), u"Datenbankbeschreibung"_s);
    EXPECT_FALSE(window->textEdit()->toPlainText().isEmpty());
    EXPECT_FALSE(chosen().isEmpty());
    EXPECT_EQ(id(), QString());
    setLanguage(1);
    mdLanguage::RefreshForms({window});
    EXPECT_EQ(window->windowTitle(), u"Database Description"_s);
}

TEST_F(frmDocumentTest, TextIsShownAsItStandsAndDocumentsByTheirParagraphs) {
    struct Case {
        QString stored, shown;
        int blocks;
    };
    const Case cases[] = {{u"<b>fett</b> &amp;\r\n<script>x</script>"_s, u"<b>fett</b> &amp;\n<script>x</script>"_s, 2},
                          {uR"({\rtf1\ansi Eins\par {\b Zwei}\par})"_s, u"Eins\nZwei"_s, 2},
                          {uR"({\rtf kaputt {)"_s, u" kaputt "_s, 1},
                          {u" "_s, u" "_s, 1}};
    for (const Case& c : cases) {
        describe(u"SV2014"_s, c.stored);
        open(1);
        press(u"weiter"_s);
        EXPECT_EQ(text->toPlainText().trimmed(), c.shown.trimmed());
        EXPECT_EQ(text->document()->blockCount(), c.blocks);
        EXPECT_EQ(chosen(), u"Leben in Solvarden 2014"_s) << "its title is seen, line or not";
    }
    describe(u"SV2014"_s, cases[1].stored);
    open(1);
    press(u"weiter"_s);
    const QTextBlock second = text->document()->findBlockByNumber(1);
    EXPECT_EQ(second.begin().fragment().charFormat().fontWeight(), QFont::Bold);
    EXPECT_NE(text->document()->firstBlock().begin().fragment().charFormat().fontWeight(), QFont::Bold);
}

TEST_F(frmDocumentTest, TheFontChangesAndWhatIsSelectedStays) {
    gOptions.FixedFont = u"DejaVu Sans Mono"_s;
    gOptions.PropFont = u"DejaVu Sans"_s;
    open(1);
    QTextCursor cursor = text->textCursor();
    cursor.setPosition(5);
    cursor.setPosition(11, QTextCursor::KeepAnchor);
    text->setTextCursor(cursor);
    text->zoomIn(3);
    const double size = text->font().pointSizeF();
    const std::pair<std::function<void()>, QString> steps[] = {{[&] { press(u"mono"_s); }, u"DejaVu Sans Mono"_s},
                                                               {[&] { press(u"mono"_s); }, u"DejaVu Sans"_s},
                                                               {[&] { window->ChangeFont(); }, u"Courier New"_s},
                                                               {[&] { window->ChangeFont(); }, u"MS Sans Serif"_s},
                                                               {[&] { press(u"mono"_s); }, u"DejaVu Sans Mono"_s},
                                                               {[&] {
                                                                    gOptions.FixedFont = u"Liberation Mono"_s;
                                                                    window->optionsApplied();
                                                                },
                                                                u"Liberation Mono"_s}};
    for (const auto& [step, family] : steps) {
        step();
        EXPECT_EQ(text->font().family(), family);
        EXPECT_EQ(find<QToolButton>(u"mono"_s)->isChecked(), family == gOptions.FixedFont);
        EXPECT_EQ(text->font().pointSizeF(), size);
        EXPECT_EQ(text->textCursor().selectedText(), u"Wellen"_s);
    }
}

TEST_F(frmDocumentTest, WordsAreFoundInTheText) {
    describe(u"SV2014"_s, u"Welle um welle.\nKeine WELLE mehr."_s);
    open(1);
    press(u"weiter"_s);
    QTest::keyClick(text, Qt::Key_F, Qt::ControlModifier);
    auto* line = find<QLineEdit>(u"txtSuchen"_s);
    ASSERT_TRUE(line->isVisible());
    QTest::keyClicks(line, u"welle"_s);
    const auto at = [&] { return text->textCursor().selectionStart(); };
    EXPECT_EQ(at(), 0) << "grows where it is";
    const std::pair<Qt::KeyboardModifiers, int> steps[] = {
        {Qt::NoModifier, 9}, {Qt::NoModifier, 22}, {Qt::NoModifier, 0}, {Qt::ShiftModifier, 22}};
    for (const auto& [keys, place] : steps) {
        QTest::keyClick(line, Qt::Key_Return, keys);
        EXPECT_EQ(at(), place);
    }
    auto* notFound = find<QLabel>(u"lblNotFound"_s);
    EXPECT_FALSE(notFound->isVisible());
    QTest::keyClicks(line, u"x"_s);
    EXPECT_TRUE(notFound->isVisible());
    EXPECT_FALSE(notFound->text().isEmpty());
    QTest::keyClick(line, Qt::Key_Escape);
    EXPECT_FALSE(line->isVisible());
    EXPECT_EQ(id(), u"SV2014"_s);
}

} // namespace
