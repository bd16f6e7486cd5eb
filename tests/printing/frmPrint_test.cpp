#include "analysis/frmAuswertung.h"
#include "app/MainWindow.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "config/frmOptions.h"
#include "editing/frmDocument.h"
#include "explorer/frmExplorer.h"
#include "printing/PrinterCTL.h"
#include "printing/ReportSelection.h"
#include "printing/frmPrint.h"
#include "printing/paperNames.h"
#include "widgets/VariableListView.h"

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>

namespace {

/// The print dialog as people come to it, and what the report writer is handed.
class PrintDialog : public MainWindow {
protected:
    std::vector<ReportRequest> shown; ///< reports that came into view

    void SetUp() override {
        openWithArchive();
        watchReports();
        asker.systemPrinters = {{.name = u"Keller"_s, .place = u"Raum 1"_s, .paper = 1},
                                {.name = u"Büro"_s, .place = u"ipp://b"_s, .paper = 9, .isDefault = true}};
    }
    void watchReports() {
        main->PrinterCTL1()->show = [this](const ReportRequest& request) {
            EXPECT_FALSE(QApplication::activeModalWidget()) << "the dialog is closed first";
            shown.push_back(request);
        };
        main->PrinterCTL1()->print = [](const ReportRequest&) { ADD_FAILURE() << "nobody asked for paper"; };
    }

    frmExplorer* explorer() { return dynamic_cast<frmExplorer*>(main->activeForm()); }
    void openView(int view) {
        press(u"EXPL"_s + QString::number(view));
        ASSERT_TRUE(explorer());
    }
    /// Selects the node of an id, and rows of its list by their places.
    void select(const QString& id, const QList<int>& places = {}) {
        for (const CatalogueNode& node : explorer()->model().tree.nodes())
            if (node.id() == id)
                explorer()->showNode(node.Key);
        settle();
        auto* list = explorer()->findChild<VariableListView*>(u"lvListView"_s);
        list->clearSelection();
        if (!places.isEmpty())
            list->setFocus();
        for (const int place : places)
            list->selectionModel()->select(list->model()->index(place, 0),
                                           QItemSelectionModel::Select | QItemSelectionModel::Rows);
        settle();
    }

    template<class Widget>
    static Widget* in(QWidget& dialog, const QString& name) {
        auto* found = dialog.findChild<Widget*>(name);
        EXPECT_TRUE(found) << qPrintable(name);
        return found;
    }
    static void click(QWidget& dialog, const QString& button) {
        QTest::mouseClick(in<QPushButton>(dialog, button), Qt::LeftButton);
    }
    static bool checked(QWidget& dialog, const QString& box) { return in<QAbstractButton>(dialog, box)->isChecked(); }
    /// A button shows for a moment that a key has pressed it.
    static void mnemonic(QWidget& dialog, Qt::Key key) {
        QTest::keyClick(&dialog, key, Qt::AltModifier);
        QTest::qWait(150);
    }
    /// The choices in sight, one letter each: set (x), free (o), off (-).
    static QString choices(QWidget& dialog) {
        QString states;
        for (int i = 0; i < 10; ++i)
            if (const auto* button = dialog.findChild<QRadioButton*>(arrayName(u"opt1"_s, i)))
                states += QString::number(i) + (!button->isEnabled() ? u'-' : button->isChecked() ? u'x' : u'o');
        return states;
    }

    /// Gives a command and does something in the dialog that it opens; the dialog may be left open, it is closed then.
    void inDialog(const QString& command, const std::function<void(frmPrint&)>& steps) {
        bool seen = false;
        QTimer::singleShot(0, qApp, [&] {
            auto* dialog = dynamic_cast<frmPrint*>(QApplication::activeModalWidget());
            ASSERT_TRUE(dialog);
            settle();
            seen = true;
            steps(*dialog);
            if (Form::isOpen(dialog) && dialog->isVisible())
                dialog->reject();
        });
        action(command)->trigger();
        settle();
        EXPECT_TRUE(seen);
    }
};

} // namespace

TEST_F(PrintDialog, OffersWhatIsSelectedAndHandsOverWhatIsChosen) {
    openView(1);
    select(u"SV2018"_s, {2, 1});
    const QString first = explorer()->model().list.rows[size_t(explorer()->model().list.shown[1])].Text;
    inDialog(u"mnuFilePrint"_s, [&](frmPrint& dialog) {
        EXPECT_EQ(dialog.windowTitle(), u"Drucken"_s);
        EXPECT_EQ(choices(dialog), u"0o3x4o9o"_s);
        EXPECT_EQ(in<QLabel>(dialog, u"variable"_s)->text(), first) << "the first in the list, whichever was first";
        EXPECT_EQ(in<QLineEdit>(dialog, u"stno"_s)->text(), u"SV2018"_s);
        EXPECT_EQ(in<QLabel>(dialog, u"printername"_s)->text(), u"A4 auf ipp://b   Büro"_s);
        EXPECT_TRUE(checked(dialog, u"chkLanguage(0)"_s) && !checked(dialog, u"chkLanguage(1)"_s));
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    ASSERT_EQ(shown.size(), 1u);
    const PrintSource source{.window = PrintSource::Window::Explorer,
                             .database = gDatabase.Database(),
                             .isStudy = true,
                             .sourceTable = u"Study"_s,
                             .study = u"SV2018"_s,
                             .variable = first};
    EXPECT_TRUE(shown[0] == reportRequest(source, {.paper = 9}, gOptions));

    // Another choice leaves nothing of the one before.
    inDialog(u"D"_s, [&](frmPrint& dialog) {
        mnemonic(dialog, Qt::Key_N);
        mnemonic(dialog, Qt::Key_E);
        in<QComboBox>(dialog, u"cmbPrinter"_s)->setFocus();
        QTest::keyClick(in<QComboBox>(dialog, u"cmbPrinter"_s), Qt::Key_Up);
        EXPECT_EQ(in<QLabel>(dialog, u"printername"_s)->text(), u"Letter auf Raum 1   Keller"_s);
        click(dialog, u"cmd_OK"_s);
    });
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[1].ReportType, ReportKind::StudyNames);
    EXPECT_EQ(shown[1].Studies, u"@SV2018 @"_s);
    EXPECT_EQ(shown[1].variable, QString());
    EXPECT_EQ(shown[1].ReportLanguage, 1);
    EXPECT_EQ(shown[1].PaperSize, 1);

    inDialog(u"mnuFilePrint"_s, [&](frmPrint& dialog) {
        mnemonic(dialog, Qt::Key_A);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    EXPECT_EQ(shown.size(), 2u);
    EXPECT_EQ(main->PrinterCTL1()->ReportType, ReportKind::StudyNames) << "cancelled, nothing is as much as set";
    EXPECT_EQ(asker.texts(), QStringList());
}

TEST_F(PrintDialog, WithNothingSelectedOkSaysThatThereIsNoReportAndTheNamesAreOneClickAway) {
    openView(1);
    inDialog(u"mnuFilePrint"_s, [&](frmPrint& dialog) {
        EXPECT_EQ(choices(dialog), u"0o3-4-9-"_s);
        QTest::keyClick(&dialog, Qt::Key_Return);
        EXPECT_EQ(asker.texts(), QStringList{u"Bitte wählen Sie das Drucken-Icon im Formular!"_s});
        EXPECT_TRUE(dialog.isVisible());
        mnemonic(dialog, Qt::Key_V);
        EXPECT_EQ(choices(dialog), u"0o3-4-9-"_s) << "what is off has no key";
        QTest::mouseClick(in<QRadioButton>(dialog, u"opt1(0)"_s), Qt::LeftButton, {}, QPoint(8, 8));
        EXPECT_EQ(choices(dialog), u"0x3-4-9-"_s);
        click(dialog, u"cmd_OK"_s);
    });
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].Studies, QString()) << "all of the view";
    EXPECT_EQ(shown[0].table, u"Study"_s);
}

TEST_F(PrintDialog, OptionsThatAreAppliedFromItAreThoseOfTheReport) {
    openView(2);
    const QString id = explorer()->model().tree.root()->Children.front()->id();
    select(id);
    inDialog(u"mnuFilePrint"_s, [&](frmPrint& dialog) {
        QTimer::singleShot(0, qApp, [&] {
            auto* options = dynamic_cast<frmOptions*>(QApplication::activeModalWidget());
            ASSERT_TRUE(options);
            auto* tabs = in<QTabWidget>(*options, u"tbsOptions"_s);
            EXPECT_EQ(tabs->tabText(tabs->currentIndex()), u"Bericht"_s);
            QTest::mouseClick(in<QCheckBox>(*options, u"chkLandscape"_s), Qt::LeftButton, {}, QPoint(8, 8));
            options->cmdOK_Click();
        });
        click(dialog, u"cmd_ShowOptions"_s);
        EXPECT_TRUE(dialog.isVisible());
        click(dialog, u"cmd_OK"_s);
    });
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].Orientation, 1);
    EXPECT_EQ(shown[0].ReportType, ReportKind::Category);
    EXPECT_EQ(selectedKey(shown[0]), id);
    gOptions = {};
}

TEST_F(PrintDialog, WithoutAPrinterItSaysSoAndTheOtherEntryAsksForNone) {
    openView(1);
    select(u"SV2018"_s);
    asker.systemPrinters.clear();
    gOptions.EnglishLanguage = true;
    action(u"mnuFilePrint"_s)->trigger();
    EXPECT_EQ(asker.texts(), QStringList{u"Kein Drucker vorhanden!"_s});
    asker.printersAsked = 0;
    inDialog(u"mnuFilePreview"_s, [&](frmPrint& dialog) {
        EXPECT_EQ(dialog.windowTitle(), u"Vorschau und PDF"_s);
        EXPECT_FALSE(in<QWidget>(dialog, u"cmbPrinter"_s)->isVisible());
        EXPECT_FALSE(in<QWidget>(dialog, u"printername"_s)->isVisible());
        EXPECT_TRUE(!checked(dialog, u"chkLanguage(0)"_s) && checked(dialog, u"chkLanguage(1)"_s));
        mnemonic(dialog, Qt::Key_E);
        click(dialog, u"cmd_OK"_s);
    });
    EXPECT_EQ(asker.printersAsked, 0);
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].ReportLanguage, 3) << "neither box is set";
    EXPECT_EQ(shown[0].PaperSize, Paper::byLocale());
    gOptions = {};
}

TEST_F(PrintDialog, ADefaultPrinterThatIsNotThereLeavesTheListWithoutASelection) {
    openView(1);
    asker.systemPrinters.pop_back();
    inDialog(u"mnuFilePrint"_s, [&](frmPrint& dialog) {
        EXPECT_EQ(in<QComboBox>(dialog, u"cmbPrinter"_s)->currentIndex(), -1);
        EXPECT_EQ(in<QLabel>(dialog, u"printername"_s)->text(), QString());
        mnemonic(dialog, Qt::Key_N);
        click(dialog, u"cmd_OK"_s);
    });
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].PaperSize, 0);
    asker.systemPrinters = {{.name = u"X"_s, .place = u"Y"_s, .paper = 42, .isDefault = true}};
    inDialog(u"mnuFilePrint"_s, [&](frmPrint& dialog) {
        EXPECT_EQ(in<QLabel>(dialog, u"printername"_s)->text(), u"(Default Paper Size) auf Y   X"_s);
    });
}

TEST_F(PrintDialog, ADescriptionPrintsItselfAndAnAnalysisOnlyFromItsTable) {
    press(u"DBD"_s);
    inDialog(u"mnuFilePreview"_s, [&](frmPrint& dialog) {
        EXPECT_EQ(choices(dialog), u"0-3-4-9x"_s);
        EXPECT_EQ(in<QRadioButton>(dialog, u"opt1(9)"_s)->text().remove(u'&'), u"Datenbankbeschreibung"_s);
        click(dialog, u"cmd_OK"_s);
    });
    press(u"DESC1"_s);
    auto* document = dynamic_cast<frmDocument*>(main->activeForm());
    ASSERT_TRUE(document);
    document->ChangeFont();
    gOptions.FixedFont = u"Courier New"_s;
    inDialog(u"mnuFilePrint"_s, [&](frmPrint& dialog) { click(dialog, u"cmd_OK"_s); });
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[0].ReportType, ReportKind::Database);
    EXPECT_EQ(shown[1].ReportType, ReportKind::StudyDescription);
    EXPECT_EQ(shown[1].Studies, u'@' + document->model().txtStudyNo() + u'@');
    EXPECT_EQ(shown[1].TableFontName, u"Courier New"_s);

    openView(1);
    select(u"SV2018"_s, {0});
    const QString variable = explorer()->model().list.rows[size_t(explorer()->model().list.shown[0])].Text;
    gOptions.AskMissing = false;
    press(u"A"_s);
    EXPECT_TRUE(enabled(u"mnuFilePrint"_s));
    action(u"mnuFilePrint"_s)->trigger();
    EXPECT_EQ(asker.texts(), QStringList{u"Keine Ansicht gefunden!"_s});
    main->activeForm()->widget().findChild<QTabWidget*>(u"SSTab"_s)->setCurrentIndex(1);
    settle();
    ASSERT_EQ(asker.texts().size(), 1) << qPrintable(asker.lastText());
    inDialog(u"mnuFilePrint"_s, [&](frmPrint& dialog) {
        EXPECT_EQ(choices(dialog), u"0-3x4-9-"_s);
        click(dialog, u"cmd_OK"_s);
    });
    ASSERT_EQ(shown.size(), 3u);
    EXPECT_EQ(shown[2].Studies, u"@SV2018@"_s);
    EXPECT_EQ(shown[2].variable, variable);
    EXPECT_EQ(shown[2].TableFontName, gOptions.PropFont);
    gOptions = {};
}

TEST_F(PrintDialog, IsReadWithoutSightAndLedByKeysInBothLanguages) {
    openView(1);
    select(u"SV2018"_s, {0});
    for (const QString& language : {u"mnLngE"_s, u"mnLngG"_s}) {
        action(language)->trigger();
        settle();
        inDialog(u"mnuFilePrint"_s, [&](frmPrint& dialog) {
            QStringList letters;
            for (const auto* control : dialog.findChildren<QWidget*>()) {
                const QString text = control->property("text").toString();
                const QString key = QKeySequence::mnemonic(text).toString();
                if (control->isVisible() && !key.isEmpty())
                    letters << key;
                if (!control->isVisible() || control->focusPolicy() == Qt::NoFocus)
                    continue;
                const QAccessibleInterface* heard =
                    QAccessible::queryAccessibleInterface(const_cast<QWidget*>(control));
                EXPECT_NE(heard->text(QAccessible::Name), QString()) << qPrintable(control->objectName());
            }
            EXPECT_EQ(letters.size(), 8) << qPrintable(letters.join(u' '));
            EXPECT_EQ(letters.removeDuplicates(), 0) << qPrintable(letters.join(u' '));
            const bool english = language == u"mnLngE";
            EXPECT_EQ(in<QRadioButton>(dialog, u"opt1(0)"_s)->text(),
                      english ? u"&Names of Studies"_s : u"&Namen der Studien"_s);
            EXPECT_EQ(in<QLabel>(dialog, u"printername"_s)->text(),
                      english ? u"A4 on ipp://b   Büro"_s : u"A4 auf ipp://b   Büro"_s);
        });
    }
}
