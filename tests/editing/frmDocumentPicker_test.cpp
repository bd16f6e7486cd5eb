#include "app/globals.h"
#include "config/Options.h"
#include "editing/frmDatensatz.h"
#include "editing/frmFragebogen.h"
#include "explorer/frmExplorer.h"
#include "support/PrintQt.h"
#include "support/WindowTest.h"
#include "widgets/VariableListView.h"

#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

/// The pickers on the sample archive: SV2014, SV2018 (questionnaire in parts A and B), SV2022 and, in a view of its
/// own, SVP2013.
class DocumentPicker : public WindowTest {
protected:
    const QString samples = QStringLiteral(VARIDEX_SAMPLES);

    void SetUp() override {
        openSampleArchive();
        gOptions.QuestionnairePath = samples + u"/fragebogen"_s;
        gOptions.SPSSPath = samples + u"/daten"_s;
    }

    static QListWidget* listOf(const QDialog& picker) { return picker.findChild<QListWidget*>(u"lstAuswahl"_s); }
    static QString current(const QDialog& picker) {
        const QListWidgetItem* item = listOf(picker)->currentItem();
        return item ? item->text().section(u':', 0, 0) : u"-"_s;
    }

    /// Shows a picker as the menu does, and does something in it.
    template<class Picker>
    void inPicker(const frmExplorer* active, const std::function<void(Picker&)>& steps) {
        bool seen = false;
        QTimer::singleShot(0, qApp, [&] {
            auto* picker = dynamic_cast<Picker*>(QApplication::activeModalWidget());
            ASSERT_TRUE(picker);
            settle();
            seen = true;
            steps(*picker);
            if (picker->isVisible())
                picker->reject();
        });
        Picker::showPicker(nullptr, active);
        EXPECT_TRUE(seen);
    }
};

TEST_F(DocumentPicker, TheStudyThatTheUserIsAtIsTheCurrentLine) {
    frmExplorer* window = frmExplorer::OpenExplorerView(1);
    auto* tree = window->findChild<QTreeView*>(u"tvTreeView"_s);
    auto* list = window->findChild<VariableListView*>(u"lvListView"_s);
    window->resize(900, 600);
    window->activateWindow();
    const auto expect = [&](const frmExplorer* active, const QString& study) {
        inPicker<frmDatensatz>(active, [&](frmDatensatz& picker) { EXPECT_EQ(current(picker), study); });
        window->activateWindow();
        settle();
    };
    expect(nullptr, u"SV2014"_s);
    window->showNode(u"ASV2022"_s);
    settle();
    ASSERT_TRUE(tree->hasFocus());
    expect(window, u"SV2022"_s);
    expect(nullptr, u"SV2014"_s);
    window->showNode(window->model().tree.find(u"ASV2014"_s)->Parent->Key);
    expect(window, u"SV2014"_s); // a group is no study
    window->showNode(u"ASV2018"_s);
    settle();
    list->setFocus();
    settle();
    expect(window, u"SV2018"_s);
    // In the list it is the row's study that counts, in the tree of categories there is none.
    frmExplorer* topics = window = frmExplorer::OpenExplorerView(2);
    topics->activateWindow();
    for (const CatalogueNode& node : topics->model().tree.nodes())
        if (topics->showNode(node.Key) && topics->model().list.rows.size() > 1 &&
            topics->model().list.rows.back().cell(1) == u"SV2022")
            break;
    settle();
    expect(topics, u"SV2014"_s);
    auto* rows = topics->findChild<VariableListView*>(u"lvListView"_s);
    rows->setFocus();
    rows->selectOnly(static_cast<int>(topics->model().list.rows.size()) - 1);
    settle();
    expect(topics, u"SV2022"_s);
}

TEST_F(DocumentPicker, EnterDoubleClickAndOkOpenTheDocumentAndNothingElseDoes) {
    inPicker<frmFragebogen>(nullptr, [&](frmFragebogen& picker) {
        listOf(picker)->setCurrentRow(2);
        QTest::keyClick(listOf(picker), Qt::Key_Return);
        EXPECT_FALSE(picker.isVisible());
    });
    inPicker<frmFragebogen>(nullptr, [&](frmFragebogen& picker) {
        const QRect line = listOf(picker)->visualItemRect(listOf(picker)->item(1));
        QTest::mouseClick(listOf(picker)->viewport(), Qt::LeftButton, {}, line.center());
        QTest::mouseDClick(listOf(picker)->viewport(), Qt::LeftButton, {}, line.center());
        EXPECT_FALSE(picker.isVisible());
    });
    inPicker<frmDatensatz>(nullptr, [&](frmDatensatz& picker) {
        picker.goTo(u"SVP2013"_s);
        QTest::mouseClick(picker.findChild<QPushButton*>(u"cmdOK"_s), Qt::LeftButton);
        EXPECT_FALSE(picker.isVisible());
    });
    inPicker<frmDatensatz>(nullptr, [&](frmDatensatz& picker) { QTest::keyClick(&picker, Qt::Key_Escape); });
    EXPECT_EQ(asker.opened, (QStringList{samples + u"/fragebogen/SV2018B.pdf"_s, samples + u"/fragebogen/SV2018A.pdf"_s,
                                         samples + u"/daten/SVP2013.sav"_s}));
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
}

TEST_F(DocumentPicker, TypingNarrowsTheListAndAnEmptyChoiceIsAskedFor) {
    inPicker<frmDatensatz>(nullptr, [&](frmDatensatz& picker) {
        auto* filter = picker.findChild<QLineEdit*>(u"txtFilter"_s);
        const auto shown = [&] {
            QStringList studies;
            for (int i = 0; i < listOf(picker)->count(); ++i)
                if (!listOf(picker)->item(i)->isHidden())
                    studies << listOf(picker)->item(i)->text().section(u':', 0, 0);
            return studies;
        };
        EXPECT_TRUE(listOf(picker)->hasFocus());
        QTest::keyClicks(listOf(picker), u"2"_s);
        EXPECT_TRUE(filter->hasFocus());
        QTest::keyClicks(filter, u"0 LEBEN 2"_s);
        EXPECT_EQ(shown(), (QStringList{u"SV2014"_s, u"SV2018"_s, u"SV2022"_s}));
        QTest::keyClick(filter, Qt::Key_Down);
        EXPECT_EQ(current(picker), u"SV2018"_s);
        QTest::keyClicks(filter, u"022"_s);
        EXPECT_EQ(current(picker), u"SV2022"_s) << "the current line is one that is seen";
        QTest::keyClicks(filter, u"xyz"_s);
        EXPECT_EQ(current(picker), u"-"_s);
        QTest::keyClick(filter, Qt::Key_Return);
        EXPECT_TRUE(picker.isVisible());
        EXPECT_EQ(asker.lastText(), u"Bitte einen Eintrag aus der Liste auswählen"_s);
        filter->clear();
        EXPECT_EQ(shown().size(), 4);
        EXPECT_EQ(current(picker), u"SV2014"_s);
    });
    EXPECT_TRUE(asker.opened.isEmpty());
}

TEST_F(DocumentPicker, TheLineOfALongListStandsAtItsTop) {
    inPicker<frmDatensatz>(nullptr, [&](frmDatensatz& picker) {
        QListWidget* list = listOf(picker);
        list->setFixedHeight(list->sizeHintForRow(0) * 2 + 2 * list->frameWidth());
        settle();
        picker.goTo(u"SV2018"_s);
        EXPECT_EQ(list->visualItemRect(list->currentItem()).top(), 0);
    });
}

} // namespace
