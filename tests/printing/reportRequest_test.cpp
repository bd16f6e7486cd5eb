#include "config/Options.h"
#include "printing/PrintChoices.h"
#include "printing/ReportSelection.h"
#include "printing/reportRequest.h"
#include "support/PrintQt.h"

#include <QRandomGenerator>
#include <functional>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using Window = PrintSource::Window;
using enum PrintChoice;

const PrintSource studies{.window = Window::Explorer,
                          .database = u"/k/a.mdb"_s,
                          .view = 1,
                          .isStudy = true,
                          .viewName = u"Studien"_s,
                          .sourceTable = u"Study"_s};
const PrintSource topics{.window = Window::Explorer,
                         .database = u"/k/a.mdb"_s,
                         .view = 2,
                         .viewName = u"Themen"_s,
                         .sourceTable = u"Category"_s};

PrintSource with(PrintSource source, const std::function<void(PrintSource&)>& change) {
    change(source);
    return source;
}

PrintSource row(PrintSource source, const QString& nodeId, const QString& nodeText) {
    source.study = u"S 1"_s;
    source.variable = u"V1"_s;
    source.rowNodeId = nodeId;
    source.rowNodeText = nodeText;
    return source;
}

PrintSource node(PrintSource source, const QString& id, const QString& text) {
    source.nodeId = id;
    source.nodeText = text;
    return source;
}

/// The choices that can be set, in the order of their numbers.
QString enabledOf(const PrintChoices& choices) {
    QString numbers;
    for (int i = 0; i < 10; ++i)
        if (choices.isEnabled(static_cast<PrintChoice>(i)))
            numbers += QString::number(i);
    return numbers;
}

} // namespace

TEST(ReportRequests, EachSourceSelectionAndChoiceGivesItsKindItsSelectionAndItsTables) {
    const PrintSource study = node(studies, u"S 1"_s, u"Leben"_s), topic = node(topics, u"17"_s, u"Arbeit & @ Beruf"_s);
    const PrintSource document = with(study, [](PrintSource& s) { s.window = Window::Document; });
    const PrintSource described = with(topic, [](PrintSource& s) { s.window = Window::Document; });
    const PrintSource catalogue{.window = Window::Document, .database = u"/k/a.mdb"_s};
    const PrintSource analysis{.window = Window::Analysis,
                               .database = u"/k/a.mdb"_s,
                               .study = u"S 1"_s,
                               .variable = u"V1"_s,
                               .tablePage = true};
    struct Case {
        const char* what;
        PrintSource source;
        int P;
        QString enabled;
        PrintChoice choice;
        int kind = -1; ///< none: there is no report of that choice
        QString studies = {}, variable = {}, table = {};
    };
    const QString allOfTopic = u"@17 Arbeit & @ Beruf@"_s;
    const Case cases[] = {
        {"studies, nothing", studies, 1, u"0"_s, Names, 10, {}, {}, u"Study"_s},
        {"studies, nothing", studies, 1, u"0"_s, NoReport},
        {"studies, nothing", studies, 1, u"0"_s, Variable},
        {"a study", study, 4, u"049"_s, NodeVariables, 0, u"@S 1@"_s},
        {"a study", study, 4, u"049"_s, Description, 5, u"@S 1@"_s},
        {"a study", study, 4, u"049"_s, Names, 10, u"@S 1 @"_s, {}, u"Study"_s},
        {"a study", study, 4, u"049"_s, Variable},
        {"its variable", row(study, u"S 1"_s, u"Leben"_s), 3, u"0349"_s, Variable, 0, u"@S 1@"_s, u"V1"_s},
        {"its variable", row(study, u"S 1"_s, u"Leben"_s), 3, u"0349"_s, NodeVariables, 0, u"@S 1@"_s},
        // the filter has found it in a study below the selected group
        {"a variable of a group's study", row(node(studies, u"G001"_s, u"Wellen"_s), u"S 1"_s, u"Leben"_s), 3,
         u"0349"_s, Variable, 0, u"@S 1@"_s, u"V1"_s},
        {"its group", row(node(studies, u"G001"_s, u"Wellen"_s), u"S 1"_s, u"Leben"_s), 3, u"0349"_s, NodeVariables, 0,
         u"@G001@"_s},
        {"its group", row(node(studies, u"G001"_s, u"Wellen"_s), u"S 1"_s, u"Leben"_s), 3, u"0349"_s, Description, 5,
         u"@G001@"_s},
        {"a variable found from the root", row(studies, u"S 1"_s, u"Leben"_s), 3, u"039"_s, Description, 5, u"@S 1@"_s},
        {"a variable found from the root",
         row(studies, u"S 1"_s, u"Leben"_s),
         3,
         u"039"_s,
         Names,
         10,
         {},
         {},
         u"Study"_s},
        {"topics, nothing", topics, 1, u"0"_s, Names, 9, {}, {}, u"Category"_s},
        {"a topic", topic, 4, u"049"_s, NodeVariables, 2, allOfTopic},
        {"a topic", topic, 4, u"049"_s, Description, 6, allOfTopic},
        {"a topic", topic, 4, u"049"_s, Names, 9, allOfTopic, {}, u"Category"_s},
        {"its variable", row(topic, u"17"_s, topic.nodeText), 3, u"0349"_s, Variable, 0, u"@S 1@"_s, u"V1"_s},
        {"a variable found from the root", row(topics, u"4"_s, u"Geld"_s), 3, u"039"_s, Description, 6, u"@4 Geld@"_s},
        {"a variable of no topic", row(topics, {}, {}), 3, u"03"_s, Description},
        {"the catalogue's description", catalogue, 9, u"9"_s, Description, 4},
        {"the catalogue's description", catalogue, 9, u"9"_s, Names},
        {"a study's description", document, 9, u"9"_s, Description, 5, u"@S 1@"_s},
        {"a topic's description", described, 9, u"9"_s, Description, 6, allOfTopic},
        {"no description", with(document, [](PrintSource& s) { s.nodeId.clear(); }), -1, {}, Description},
        {"a table", analysis, 3, u"3"_s, Variable, 0, u"@S 1@"_s, u"V1"_s},
        {"another page", with(analysis, [](PrintSource& s) { s.tablePage = false; }), -1, {}, Variable},
        {"no window", {}, -1, {}, Variable},
    };
    Options options;
    options.PrintMaxLevels = 3;
    for (const Case& c : cases) {
        PrintChoices choices(c.source);
        EXPECT_EQ(choices.P(), c.P) << c.what;
        EXPECT_EQ(enabledOf(choices), c.enabled) << c.what;
        choices.choose(c.choice);
        EXPECT_EQ(choices.isReport() && choices.chosen() == c.choice, c.kind >= 0) << c.what;
        if (c.kind < 0)
            continue;
        const ReportRequest request = reportRequest(c.source, {.choice = c.choice, .paper = 9}, options);
        EXPECT_EQ(static_cast<int>(request.ReportType), c.kind) << c.what;
        EXPECT_EQ(request.Studies, c.studies) << c.what;
        EXPECT_EQ(request.variable, c.variable) << c.what;
        EXPECT_EQ(request.table, c.table) << c.what;
        EXPECT_EQ(request.MaxLevels, c.table.isEmpty() ? 0 : 3) << c.what;
        EXPECT_EQ(request.sourceTable, c.source.sourceTable) << c.what;
    }
}

TEST(ReportRequests, TheFieldsThatDoNotGoByTheChoiceAreThoseOfTheOptionsAndTheDialog) {
    const PrintSource source = row(node(studies, u"S 1"_s, u"Leben"_s), u"S 1"_s, {});
    ReportRequest usual;
    usual.MarginTop = 30;
    usual.MarginBottom = 15;
    usual.MarginLeft = usual.MarginRight = 10;
    usual.LANGUAGE = 1;
    usual.DatabaseFile = u"/k/a.mdb"_s;
    usual.Studies = u"@S 1@"_s;
    usual.variable = u"V1"_s;
    usual.CompleteQuestionText = usual.AnalysisTable = usual.AnalysisGraph = usual.ShowCards = true;
    usual.ReportFontSize = 11;
    usual.PageNumberLocation = usual.DateLocation = 2;
    usual.ReportLanguage = 2;
    usual.TableFontName = u"Arial"_s;
    usual.Orientation = 2;
    usual.PicZoom = 0.6;
    usual.PaperSize = 9;
    usual.TableZoom = usual.GraphZoom = 1;
    usual.sourceTable = u"Study"_s;
    struct Dialog {
        PrintSource source;
        PrintOrder order;
        Options options;
        ReportRequest expected;
    };
    struct Case {
        const char* what;
        void (*set)(Dialog& d);
    };
    for (const Case& c : {
             Case{"all as installed", [](Dialog&) {}},
             {"English words", [](Dialog& d) { d.source.language = 2, d.expected.LANGUAGE = 2; }},
             {"both languages", [](Dialog& d) { d.order.english = true, d.expected.ReportLanguage = 1; }},
             {"English alone",
              [](Dialog& d) {
                  d.order = {Variable, false, true, 9}, d.expected.ReportLanguage = 3;
              }},
             {"neither language", [](Dialog& d) { d.order.original = false, d.expected.ReportLanguage = 3; }},
             {"fixed font", [](Dialog& d) { d.source.fixedFont = true, d.expected.TableFontName = u"Courier New"_s; }},
             {"another fixed font",
              [](Dialog& d) {
                  d.source.fixedFont = true;
                  d.expected.TableFontName = d.options.FixedFont = u"F"_s;
              }},
             {"another proportional font", [](Dialog& d) { d.expected.TableFontName = d.options.PropFont = u"P"_s; }},
             {"a font that nobody reads", [](Dialog& d) { d.options.FontName = u"N"_s; }},
             {"upright", [](Dialog& d) { d.options.Landscape = false, d.expected.Orientation = 1; }},
             {"no paper", [](Dialog& d) { d.order.paper = d.expected.PaperSize = 0; }},
             {"half the size",
              [](Dialog& d) {
                  d.options.ZoomFactor = 50;
                  d.expected.PicZoom = 0.3;
                  d.expected.TableZoom = d.expected.GraphZoom = 0.5;
              }},
             {"no size",
              [](Dialog& d) {
                  d.options.ZoomFactor = 0;
                  d.expected.PicZoom = d.expected.TableZoom = d.expected.GraphZoom = 0;
              }},
             {"no question texts",
              [](Dialog& d) { d.options.ReportIncludeQuestionText = d.expected.CompleteQuestionText = false; }},
             {"no tables", [](Dialog& d) { d.options.ReportIncludeTables = d.expected.AnalysisTable = false; }},
             {"no graphs", [](Dialog& d) { d.options.ReportIncludeGraphs = d.expected.AnalysisGraph = false; }},
             {"no show cards", [](Dialog& d) { d.options.ReportIncludeShowCards = d.expected.ShowCards = false; }},
             {"show cards of explorers", [](Dialog& d) { d.options.ShowCards = false; }},
             {"levels", [](Dialog& d) { d.options.PrintMaxLevels = 4; }},
         }) {
        Dialog dialog{source, {.choice = Variable, .paper = 9}, {}, usual};
        c.set(dialog);
        const ReportRequest made = reportRequest(dialog.source, dialog.order, dialog.options);
        EXPECT_DOUBLE_EQ(made.PicZoom, dialog.expected.PicZoom) << c.what;
        dialog.expected.PicZoom = made.PicZoom;
        EXPECT_TRUE(made == dialog.expected) << c.what;
    }
    for (const auto& [set, given] : {std::pair{5, 10}, {6, 6}, {7, 7}, {12, 12}, {13, 10}, {0, 10}, {-8, 10}}) {
        Options options;
        options.FontSize = set;
        EXPECT_EQ(reportRequest(source, {}, options).ReportFontSize, given) << set;
    }
}

TEST(ReportRequests, APlaceOnThePageHasItsCodeAndTheNumberAtTheFootStandsOnTop) {
    struct Case {
        QString word;
        int date, page;
    };
    for (const Case& c : {Case{u"topleft"_s, 1, 1},
                          {u"topmiddle"_s, 2, 2},
                          {u"topright"_s, 3, 3},
                          {u"botleft"_s, 4, 4},
                          {u"botmiddle"_s, 5, 2},
                          {u"botright"_s, 6, 6},
                          {u"none"_s, 7, 7},
                          {u""_s, 4, 6},
                          {u"TopLeft"_s, 4, 6},
                          {u"oben, mitte"_s, 4, 6}}) {
        Options options;
        options.PrintDatePosition = options.PrintPageNumberPosition = c.word;
        const ReportRequest request = reportRequest(studies, {.choice = Names}, options);
        EXPECT_EQ(request.DateLocation, c.date) << qPrintable(c.word);
        EXPECT_EQ(request.PageNumberLocation, c.page) << qPrintable(c.word);
    }
}

TEST(ReportRequests, TheSelectedIdIsReadBackWhateverStandsInItsName) {
    QRandomGenerator random(20);
    const QString letters = u"aZ09@ \n\"'&[]*%äß語"_s;
    const auto text = [&](const QString& from, int least) {
        QString made;
        for (int i = least + int(random.bounded(6)); i > 0; --i)
            made += from[random.bounded(int(from.size()))];
        return made;
    };
    for (int i = 0; i < 2000; ++i) {
        const QString study = text(letters, 1), category = u'7' + text(letters, 0).remove(u' ');
        const PrintSource ofStudy = row(node(studies, study, text(letters, 0)), study, {});
        const PrintSource ofTopic = node(topics, category, text(letters, 0));
        for (const PrintChoice choice : {NodeVariables, Description, Names}) {
            EXPECT_EQ(selectedKey(reportRequest(ofStudy, {.choice = choice}, {})), study);
            EXPECT_EQ(selectedKey(reportRequest(ofTopic, {.choice = choice}, {})), category);
        }
    }
    EXPECT_EQ(selectedKey(reportRequest(studies, {.choice = Names}, {})), QString());
    ReportRequest damaged;
    for (const QString& selection : {u""_s, u"@"_s, u"@@"_s})
        for (const ReportKind kind : {ReportKind::Variables, ReportKind::CategoryNames, ReportKind::StudyNames}) {
            damaged.Studies = selection;
            damaged.ReportType = kind;
            EXPECT_EQ(selectedKey(damaged), QString());
        }
}

TEST(PrintDialogChoices, SayWhatIsSelectedInTheLanguageOfTheWords) {
    const PrintSource topic = row(node(topics, u"17"_s, u"Arbeit & Beruf"_s), u"17"_s, {});
    const PrintSource english = with(topic, [](PrintSource& s) { s.language = 2; });
    const PrintSource catalogue{.window = Window::Document};
    struct Case {
        PrintSource source;
        PrintChoice choice;
        QString caption;
    };
    for (const Case& c :
         {Case{topic, Variable, u"Ausgewählte &Variable"_s},
          {topic, NodeVariables, u"V&ariablen der ausgewählten Ansicht (Arbeit && Beruf)"_s},
          {topic, Description, u"Ausgewählte &Beschreibung (Arbeit && Beruf)"_s},
          {topic, Names, u"&Namen der Themen"_s},
          {english, NodeVariables, u"V&ariables in selected view (Arbeit && Beruf)"_s},
          {english, Description, u"Selected &Description (Arbeit && Beruf)"_s},
          {english, Names, u"&Names of Themen"_s},
          {topics, NodeVariables, u"V&ariablen der ausgewählten Ansicht"_s},
          {catalogue, Description, u"Daten&bankbeschreibung"_s},
          {with(catalogue, [](PrintSource& s) { s.language = 2; }), Description, u"Data&base Description"_s}})
        EXPECT_EQ(PrintChoices(c.source).caption(c.choice, 40), c.caption);
    const PrintSource longName = node(topics, u"1"_s, u"A\r\nB "_s + QString(60, u'x') + u"\U0001F600"_s);
    EXPECT_EQ(PrintChoices(longName).caption(Description, 20),
              u"Ausgewählte &Beschreibung (A B "_s + QString(15, u'x') + u"…)"_s);
    const PrintChoices choices(topic);
    EXPECT_EQ((QStringList{choices.stno, choices.varno, choices.Cat_id, choices.kategorie, choices.kategorie_2}),
              (QStringList{u"S 1"_s, u"V1"_s, u"17"_s, u"17"_s, u"17"_s}));
    EXPECT_TRUE(PrintChoices::listsPrinters(1) && PrintChoices::listsPrinters(9));
    EXPECT_FALSE(PrintChoices::listsPrinters(7) || PrintChoices::listsPrinters(8));
}
