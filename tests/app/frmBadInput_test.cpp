#include "analysis/frmAuswertung.h"
#include "app/frmMain.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/mdDataBase.h"
#include "config/Options.h"
#include "explorer/frmExplorer.h"
#include "language/mdLanguage.h"
#include "platform/system/Paths.h"
#include "support/AsNobody.h"
#include "support/PrintQt.h"
#include "support/TestCatalogue.h"
#include "support/WindowTest.h"
#include "widgets/ChoicePicker.h"

#include <QAbstractItemView>
#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTest>
#include <algorithm>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Answers every box as one who wants no harm done, or as the test says.
class BadInputAsker : public ScriptedAsker {
public:
    std::function<ui::Answer(const ui::Box&)> onBox;
    ui::Answer messageBox(const ui::Box& box) override {
        boxes.push_back(box);
        return onBox ? onBox(box) : ui::safeAnswer(box.buttons);
    }
};

class BadInput : public WindowTest {
protected:
    BadInputAsker boxes;
    std::unique_ptr<frmMain> main;

    void open() {
        main = std::make_unique<frmMain>();
        main->load();
        main->show();
        settle();
    }
    void press(const QString& key) {
        main->perform(key);
        settle();
    }
    template<class Window>
    Window* front() const {
        return dynamic_cast<Window*>(main->activeForm());
    }
    static QAbstractItemView* listOf(frmExplorer& explorer) {
        return explorer.findChild<QAbstractItemView*>(u"lvListView"_s);
    }
    /// Uses what there is to use, as one who has not noticed anything.
    void clickAround() {
        for (const QString& key : {u"EXPL1"_s, u"EXPL2"_s, u"VV"_s, u"A"_s, u"EL"_s})
            press(key);
        const std::vector<Form*> forms = Form::open();
        for (Form* form : forms)
            if (auto* explorer = dynamic_cast<frmExplorer*>(form)) {
                QStringList keys;
                for (const CatalogueNode& node : explorer->model().tree.nodes())
                    keys << node.Key;
                for (const QString& key : keys)
                    explorer->showNode(key);
                listOf(*explorer)->setCurrentIndex(listOf(*explorer)->model()->index(0, 0));
                QTest::keyClick(listOf(*explorer), Qt::Key_Return);
                settle();
            }
        if (auto* analysis = front<frmAuswertung>())
            analysis->findChild<QTabWidget*>(u"SSTab"_s)->setCurrentIndex(1);
        press(u"mnLngE"_s);
        press(u"mnLngG"_s);
    }
    void writeFile(const QString& path, const QByteArray& content) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(content);
    }
};

} // namespace

TEST_F(BadInput, ACatalogueThatGoesOrIsReplacedWhileItIsOpenIsToldAndAnotherOneOpens) {
    { const TestCatalogue other(home.path(), u"other.mdb"_s); }
    const auto remove = [](const QString& path) { QFile::remove(path); };
    const auto garble = [this](const QString& path) { writeFile(path, QByteArray(200'000, 'x')); };
    const auto empty = [this](const QString& path) { writeFile(path, {}); };
    const auto exchange = [this](const QString& path) {
        QFile::remove(path);
        ASSERT_TRUE(QFile::copy(home.path(u"other.mdb"_s), path));
    };
    const std::tuple<const char*, std::function<void(const QString&)>, bool> cases[] = {{"removed", remove, false},
                                                                                        {"garbled", garble, true},
                                                                                        {"emptied", empty, true},
                                                                                        {"exchanged", exchange, false}};
    for (const auto& [name, spoil, mustTell] : cases) {
        SCOPED_TRACE(name);
        const QString path = openSampleArchive();
        const QString data = gOptions.DataPath;
        open();
        mdDataBase::OpenQXDatabase(path);
        main->perform(u"mnLngE"_s);
        main->perform(u"mnLngG"_s);
        press(u"EXPL1"_s);
        boxes.boxes.clear();
        spoil(path);
        gOptions.DataPath = data;
        clickAround();
        EXPECT_TRUE(!mustTell || !boxes.boxes.empty());
        for (const ui::Box& box : boxes.boxes)
            EXPECT_FALSE(box.text.trimmed().isEmpty());
        boxes.onBox = [](const ui::Box& box) {
            return box.buttons == ui::Buttons::YesNo ? ui::Answer::Yes : ui::safeAnswer(box.buttons);
        };
        press(u"mnFileClose"_s);
        boxes.onBox = nullptr;
        EXPECT_EQ(gDatabase.State(), 0);
        EXPECT_EQ(Form::open().size(), 1u);
        QFile::remove(path);
        openSampleArchive();
        press(u"EXPL1"_s);
        EXPECT_TRUE(front<frmExplorer>());
        main->close();
        main.reset();
        QFile::remove(path);
    }
}

TEST_F(BadInput, EachGestureOnACatalogueThatWentBadShowsAtMostOneBoxAndTheProgramStaysUsable) {
    { const TestCatalogue other(home.path(), u"other.mdb"_s); }
    const std::pair<const char*, std::function<void(const QString&)>> cases[] = {
        {"garbled", [this](const QString& path) { writeFile(path, QByteArray(QFileInfo(path).size(), 'x')); }},
        {"emptied", [this](const QString& path) { writeFile(path, {}); }},
        {"replaced", [this](const QString& path) {
             QFile other(home.path(u"other.mdb"_s));
             ASSERT_TRUE(other.open(QIODevice::ReadOnly));
             writeFile(path, other.readAll());
         }}};
    for (const auto& [name, spoil] : cases) {
        SCOPED_TRACE(name);
        for (const ui::Answer answer : {ui::Answer::Abort, ui::Answer::Ignore}) {
            const QString path = openSampleArchive();
            open();
            mdDataBase::OpenQXDatabase(path);
            press(u"mnLngG"_s);
            press(u"EXPL1"_s);
            press(u"A"_s);
            auto* request = front<frmAuswertung>();
            ASSERT_TRUE(request);
            press(u"EXPL1"_s);
            press(u"VV"_s);
            auto* explorer = front<frmExplorer>();
            ASSERT_TRUE(explorer);
            spoil(path);
            boxes.onBox = [answer](const ui::Box& box) {
                return box.buttons == ui::Buttons::YesNo              ? ui::Answer::Yes
                       : box.buttons == ui::Buttons::AbortRetryIgnore ? answer
                                                                      : ui::safeAnswer(box.buttons);
            };
            size_t most = 0, told = 0;
            const auto gesture = [&](const char* what, const std::function<void()>& step) {
                boxes.boxes.clear();
                step();
                settle();
                const auto failures = static_cast<size_t>(std::ranges::count_if(
                    boxes.boxes, [](const ui::Box& box) { return box.buttons != ui::Buttons::YesNo; }));
                most = std::max(most, failures);
                told += failures;
                EXPECT_LE(failures, 1u) << what << ":\n" << boxes.texts().join(u"\n--\n"_s).toStdString();
            };
            auto* tree = explorer->findChild<QAbstractItemView*>(u"tvTreeView"_s);
            const QModelIndex first =
                tree->model()->index(0, 0, tree->model()->index(0, 0, tree->model()->index(0, 0)));
            ASSERT_TRUE(first.isValid());
            gesture("a node", [&] { tree->setCurrentIndex(first); });
            gesture("another node", [&] { tree->setCurrentIndex(first.siblingAtRow(1)); });
            gesture("a row", [&] { listOf(*explorer)->setCurrentIndex(listOf(*explorer)->model()->index(1, 0)); });
            gesture("a double click", [&] { QTest::keyClick(listOf(*explorer), Qt::Key_Return); });
            gesture("a step", [&] { QTest::keyClick(explorer, Qt::Key_Down, Qt::AltModifier); });
            gesture("panels", [&] { press(u"V"_s); });
            gesture("the language", [&] { press(u"mnLngE"_s); });
            gesture("the other language", [&] { press(u"mnLngG"_s); });
            gesture("a study of an analysis", [&] { request->findChild<ChoicePicker*>(u"dbcStudy_1"_s)->onChosen(1); });
            if (!request->model().edit().variables().empty())
                gesture("a variable of it",
                        [&] { request->findChild<ChoicePicker*>(u"dbcVariable_1"_s)->onChosen(0); });
            gesture("a view", [&] { press(u"EXPL2"_s); });
            gesture("an analysis", [&] { press(u"A"_s); });
            gesture("its table", [&] {
                if (auto* analysis = front<frmAuswertung>())
                    analysis->findChild<QTabWidget*>(u"SSTab"_s)->setCurrentIndex(1);
            });
            EXPECT_GT(told, 0u) << "what cannot be read is said";
            gesture("another catalogue", [&] {
                boxes.file(home.path(u"other.mdb"_s));
                press(u"ODB"_s);
            });
            EXPECT_EQ(gDatabase.State(), 1);
            press(u"EXPL1"_s);
            EXPECT_TRUE(front<frmExplorer>());
            gesture("closing", [&] { main->close(); });
            boxes.onBox = nullptr;
            main.reset();
            QFile::remove(path);
        }
    }
}

TEST_F(BadInput, AFolderOfCasesThatIsTakenAwayBetweenTwoRunsIsToldAndTheNextRunFindsItAgain) {
    const QString folder = home.path(u"daten"_s), away = home.path(u"weg"_s);
    ASSERT_TRUE(QDir().mkpath(folder));
    ASSERT_TRUE(QFile::copy(QStringLiteral(VARIDEX_SAMPLES "/SV2014.mdb"), folder + u"/SV2014.mdb"_s));
    openSampleArchive();
    gOptions.DataPath = folder;
    open();
    frmAuswertung* window = frmAuswertung::openFrom(nullptr);
    window->model().edit().StudyClick(u"SV2014"_s);
    auto* tabs = window->findChild<QTabWidget*>(u"SSTab"_s);
    for (const bool there : {true, false, true}) {
        tabs->setCurrentIndex(0);
        window->model().edit().chooseVariable(there ? u"GESCHL"_s : u"FAMST"_s);
        ASSERT_TRUE(there || QDir().rename(folder, away));
        boxes.boxes.clear();
        tabs->setCurrentIndex(1);
        settle();
        EXPECT_EQ(boxes.texts(),
                  there ? QStringList() : QStringList{u"'"_s + folder + u"/SV2014.mdb' nicht gefunden."_s});
        EXPECT_EQ(tabs->currentIndex(), there ? 1 : 0);
        EXPECT_TRUE(!there || window->model().result().mfgGrid.Rows() > 2);
        EXPECT_TRUE(there || QDir().rename(away, folder));
    }
}

TEST_F(BadInput, ACatalogueOfNineViewsOfNoneOrWithGapsShowsThoseThatItHas) {
    struct Case {
        const char* number;
        std::vector<int> defined;
    };
    // Those behind a gap move up.
    for (const Case& c :
         {Case{"9", {1, 2, 3, 4, 5, 6, 7, 8, 9}}, Case{"5", {1, 3, 5}}, Case{"0", {}}, Case{"12", {1}}}) {
        const int shown = static_cast<int>(c.defined.size());
        SCOPED_TRACE(c.number);
        TestCatalogue catalogue(home.path(), u"views%1.mdb"_s.arg(QLatin1String(c.number)));
        catalogue.addOption(u"NumberOfFrmExplorers"_s, QString::fromLatin1(c.number));
        for (const int view : c.defined) {
            const QString prefix = u"frmExplorer"_s + QString::number(view);
            catalogue.addOption(prefix + u"Name"_s, u"Sicht "_s + QString::number(view));
            catalogue.addOption(prefix + u"Table"_s, view == 1 ? u"Study"_s : u"Category"_s);
            if (view == 1)
                catalogue.addOption(prefix + u"Type"_s, u"1"_s);
        }
        open();
        ASSERT_EQ(catalogue.open(), 1);
        press(u"mnLngE"_s);
        press(u"mnLngG"_s);
        for (int view = 1; view <= 9; ++view) {
            const auto* entry = main->findChild<QAction*>(u"mnuViewExplorers(%1)"_s.arg(view));
            EXPECT_EQ(entry->isVisible(), view <= shown) << view;
            press(u"EXPL"_s + QString::number(view));
            const Form* front = main->activeForm();
            EXPECT_EQ(front ? front->viewNumber() : 0, std::min(view, shown));
            EXPECT_TRUE(view > shown ||
                        front->widget().windowTitle() == u"Sicht %1 1"_s.arg(c.defined[static_cast<size_t>(view) - 1]));
        }
        unloadChildWindows();
        mdDataBase::CloseDataBase();
        main.reset();
    }
}

TEST_F(BadInput, NamesInAnyScriptAndAQuestionOfTwoHundredKilobytesAreShownAsTheyStand) {
    const QString names[] = {u"استبيان الرضا"_s, u"שביעות רצון (א)"_s, u"満足度 👩‍👩‍👧"_s,
                             u"<b>&amp;</b> & \"it's\""_s};
    const QString longText = u"سؤال طويل – Frage & question <i>? "_s.repeated(6000).left(200'000);
    TestCatalogue catalogue(home.path());
    catalogue.fill();
    for (int i = 0; i < 4; ++i)
        catalogue.addVariable(u"QX2020"_s, u"Z%1"_s.arg(i), u"QX2020_1"_s,
                              {{"dt_VarLabel", names[i]}, {"dt_QuestionText", i == 3 ? longText : names[i]}});
    open();
    ASSERT_EQ(catalogue.open(), 1);
    press(u"mnLngE"_s);
    press(u"EXPL1"_s);
    auto* explorer = front<frmExplorer>();
    ASSERT_TRUE(explorer);
    explorer->setPanels(1);
    ASSERT_TRUE(explorer->showNode(u"AQX2020"_s));
    auto* list = listOf(*explorer);
    for (int i = 0; i < 4; ++i) {
        const QModelIndexList found =
            list->model()->match(list->model()->index(0, 0), Qt::DisplayRole, u"Z%1"_s.arg(i));
        ASSERT_FALSE(found.isEmpty());
        list->setCurrentIndex(found.first());
        settle();
        EXPECT_EQ(explorer->findChild<QPlainTextEdit*>(u"txtQuestion"_s)->toPlainText(), i == 3 ? longText : names[i]);
        EXPECT_TRUE(explorer->model().panelA.fact(u"Label"_s).text == names[i]);
    }
    EXPECT_TRUE(boxes.boxes.empty());
}

TEST_F(BadInput, ASystemDatabaseThatMayNotBeWrittenIsToldAndTheLanguageHoldsForThisRunOnly) {
    const QString file = Paths::join(Paths::applicationFolder(), u"Vx.mdb"_s);
    const auto everyone = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
    ASSERT_TRUE(QFile::setPermissions(file, everyone));
    ASSERT_TRUE(QFile::setPermissions(Paths::applicationFolder(),
                                      everyone | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther));
    open();
    {
        const AsNobody nobody;
        mdLanguage::SetLanguage(1);
        ASSERT_FALSE(boxes.boxes.empty());
        EXPECT_EQ(boxes.boxes.back().title, u"SysObject");
        EXPECT_EQ(boxes.boxes.back().icon, ui::Icon::Critical);
        EXPECT_EQ(gLanguage, 0) << "what could not be stored does not come into force";
        mdLanguage::SaveSysSettings(1, 0);
        EXPECT_EQ(boxes.boxes.back().title, u"CTextObject");
        EXPECT_EQ(gLanguage, 1) << "on the start window it holds all the same";
    }
    QFile::setPermissions(Paths::applicationFolder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_EQ(mdLanguage::GetFormStatus(), 1);
}
