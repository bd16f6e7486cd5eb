// What a description of an archive may say, and where a refusal points.

#include "app/globals.h"
#include "catalogue/ArchiveDescription.h"
#include "catalogue/CatalogueImport.h"
#include "support/PrintQt.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QString write(const TestHome& home, const QByteArray& json) {
    QFile file(home.path(u"archive.json"_s));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(json);
    return file.fileName();
}

/// The message that a description is refused with; empty if it is taken.
QString refusal(const QByteArray& json) {
    const TestHome home;
    try {
        archive::readDescription(write(home, json));
    } catch (const ImportError& error) {
        return error.text();
    }
    return {};
}

QByteArray withViews(const QByteArray& views) {
    return "{\"format\": 1,\n\"variableGroups\": [{\"key\": \"A\"}],\n\"views\": [\n" + views + "]}";
}

/// A description whose only view is a study view with these entries.
QByteArray withEntries(const QByteArray& entries) {
    return withViews(R"({"table": "Study", "kind": "study", "name": "Studien", "entries": [)"
                     "\n" +
                     entries + "]}");
}

struct Refused {
    const char* name;
    QByteArray json;
    const char16_t* message;
};

class DescriptionRefused : public testing::TestWithParam<Refused> {};

} // namespace

TEST_P(DescriptionRefused, NamesTheLineAndThePlace) {
    EXPECT_EQ(refusal(GetParam().json), QString::fromUtf16(GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(
    All, DescriptionRefused,
    testing::Values(
        Refused{"other_format", R"({"format": 2})", u"archive.json, Zeile 1 (format): 'format' muss 1 sein"},
        Refused{"misspelt_member", "{\"format\": 1,\n\n\"view\": []}",
                u"archive.json, Zeile 3 (view): unbekannte Angabe 'view'; bekannt sind: format, database, "
                u"options, "
                u"variableGroups, variables, views, questionnaires, dataSets"},
        // A JSON reader would take the last of the two without a word.
        Refused{"member_twice", "{\"format\": 1, \"variables\": {\n\"V1\": {},\n\"V\\u0031\": {}}}",
                u"archive.json, Zeile 2 (variables.V1): diese Angabe steht zweimal im selben Objekt"},
        Refused{"no_view", R"({"format": 1})", u"archive.json, Zeile 1 (views): ein Katalog hat 1 bis 9 Ansichten"},
        Refused{"category_view_first", withViews(R"({"table": "T", "kind": "category", "name": "T"})"),
                u"archive.json, Zeile 4 (views[0]): die erste Ansicht muss eine Studienansicht sein"},
        Refused{"view_in_a_fixed_table", withViews(R"({"table": "variable", "kind": "study", "name": "T"})"),
                u"archive.json, Zeile 4 (views[0].table): die Tabelle 'tkey_variable' ist vergeben"},
        // The view would be dropped when the catalogue is opened.
        Refused{"view_without_name", withViews(R"({"table": "T", "kind": "study", "name": " "})"),
                u"archive.json, Zeile 4 (views[0]): die Ansicht hat keinen Namen"},
        Refused{"option_of_a_view", R"({"format": 1, "options": {"frmExplorer1Name": "x"}})",
                u"archive.json, Zeile 1 (options.frmExplorer1Name): unbekannte Option; bekannt sind: "
                u"OpenFrmExplorerAtStart, DefaultEnglishContents, ShowVarGroupInfo, VarGroupInfoName, "
                u"VarGroupInfoNameEnglish, ReportVariable, RemoveTableLinksOnExitDB, VaridexCreationMode "
                u"(die der "
                u"Ansichten entstehen aus 'views')"},
        Refused{"group_number_with_umlaut", withEntries(R"({"group": "GÄ1"})"),
                u"archive.json, Zeile 5 (views[0].entries[0].group): 'GÄ1' ist hier nicht erlaubt: nur "
                u"Buchstaben (ohne Umlaute) und Ziffern, zuerst ein Buchstabe"},
        Refused{"number_with_from", withEntries(R"({"study": "QFROM1", "file": "a.sav"})"),
                u"archive.json, Zeile 5 (views[0].entries[0].study): Studiennummer 'QFROM1': 'FROM' darf nicht "
                u"darin vorkommen, die Abfragen suchen nach diesem Wort"},
        Refused{"study_twice",
                withEntries("{\"study\": \"QX1\", \"file\": \"a.sav\"},\n{\"study\": \"qx1\", \"file\": \"b.sav\"}"),
                u"archive.json, Zeile 6 (views[0].entries[1].study): 'qx1' kommt zweimal vor"},
        Refused{"study_named_like_a_group",
                withEntries("{\"group\": \"QX1\", \"entries\": [\n{\"study\": \"QX1\", \"file\": \"b.sav\"}]}"),
                u"archive.json, Zeile 6 (views[0].entries[0].entries[0].study): 'QX1' kommt zweimal vor"},
        Refused{"study_without_file", withEntries(R"({"study": "QX1"})"),
                u"archive.json, Zeile 5 (views[0].entries[0]): 'file' fehlt"},
        Refused{"neither_true_nor_a_list", withEntries(R"({"study": "QX1", "file": "a", "encode": "V1"})"),
                u"archive.json, Zeile 5 (views[0].entries[0].encode): hier wird true, false oder eine Liste von "
                u"Variablen erwartet"},
        Refused{"show_card_elsewhere",
                withEntries(R"({"study": "QX1", "file": "a", "variables": {"V1": {"showCard": "..\\x.png"}}})"),
                u"archive.json, Zeile 5 (views[0].entries[0].variables.V1.showCard): '..\\x.png' liegt nicht im "
                u"Ordner "
                u"des Katalogs"},
        Refused{"unknown_variable_group",
                withEntries(R"({"study": "QX1", "file": "a", "variables": {"V1": {"group": "B"}}})"),
                u"archive.json, Zeile 5 (views[0].entries[0].variables.V1.group): keine Variablengruppe 'B' in "
                u"'variableGroups'"},
        Refused{
            "part_without_criterion",
            withEntries(
                R"({"study": "QX1", "file": "a", "parts": [{"number": "1", "variable": "V1", "separateAnalysis": true}]})"),
            u"archive.json, Zeile 5 (views[0].entries[0].parts[0]): 'criterion' fehlt"},
        Refused{"text_of_another_kind", withEntries(R"({"study": "QX1", "file": "a", "title": {"original": 5}})"),
                u"archive.json, Zeile 5 (views[0].entries[0].title.original): hier wird ein Text erwartet"}),
    [](const auto& fault) { return std::string(fault.param.name); });

namespace {

struct Groups {
    const char* outer;
    const char* inner;
    bool readable;
};

} // namespace

// The rows of a study view come in the order of [fid], [order], and a member whose group has not come yet has
// no place in the tree.
TEST(Description, AGroupMustBeReadBeforeItsMembers) {
    for (const Groups& groups :
         {Groups{"G001", "G002", true}, Groups{"G002", "G001", false}, Groups{"G9", "G10", false},
          Groups{"g1", "G2", true}, Groups{"B", "a", false}, Groups{"a", "B", true}}) {
        const QString message =
            refusal(withEntries(QByteArray("{\"group\": \"") + groups.outer + "\", \"entries\": [\n{\"group\": \"" +
                                groups.inner + "\", \"entries\": [{\"study\": \"QX1\", \"file\": \"a\"}]}]}"));
        const QString expected =
            u"archive.json, Zeile 6 (views[0].entries[0].entries[0]): die Gruppe '%1' würde erst nach ihren "
            u"Mitgliedern "
            u"gelesen: ihre Nummer muss hinter der Nummer '%2' der Gruppe stehen, zu der sie gehört"_s.arg(
                QLatin1String(groups.inner), QLatin1String(groups.outer));
        EXPECT_EQ(message, groups.readable ? QString() : expected) << groups.outer << ' ' << groups.inner;
    }
}

TEST(Description, LevelsAreLimited) {
    QByteArray inner;
    for (int depth = archive::maxTreeDepth; depth > 0; --depth)
        inner = "{\"name\": \"n\", \"entries\": [" + inner + "]}";
    const QByteArray study = R"({"table": "Study", "kind": "study", "name": "S"}, )";
    const auto view = [&](const QByteArray& entries) {
        return withViews(study + R"({"table": "C", "kind": "category", "name": "C", "entries": [)" + entries + "]}");
    };
    // The innermost entry's list of entries is one level more.
    EXPECT_TRUE(refusal(view(inner)).endsWith(u"mehr als 50 Ebenen ineinander"_s));
    const QByteArray fitting = inner.mid(static_cast<int>(qstrlen("{\"name\": \"n\", \"entries\": [")));
    EXPECT_EQ(refusal(view(fitting.first(fitting.size() - 2))), QString());
    EXPECT_TRUE(refusal(QByteArray(5000, '[')).contains(u"kein gültiges JSON"_s));
}

TEST(Description, BrokenJsonIsToldWithItsLine) {
    const QString message = refusal("{\"format\": 1,\n\"views\": [}");
    EXPECT_TRUE(message.startsWith(u"archive.json, Zeile 2: kein gültiges JSON ("_s)) << message.toStdString();
}

TEST(Description, TextsAreLinesAndLanguages) {
    const TestHome home;
    const archive::Description description = archive::readDescription(
        write(home, R"({"format": 1, "database": {"title": "T", "description": {"english": ["a", "", "b"]}},
                        "options": {"ShowVarGroupInfo": true, "OpenFrmExplorerAtStart": 2},
                        "views": [{"table": "Study", "kind": "study", "name": "Studien"}]})"));
    EXPECT_EQ(description.title.original, u"T"_s);
    EXPECT_EQ(description.title.english, std::nullopt);
    EXPECT_EQ(description.description.original, std::nullopt);
    EXPECT_EQ(description.description.english, u"a\r\n\r\nb"_s);
    EXPECT_EQ(description.views[0].name.english, u"Studien"_s);
    const std::vector<std::pair<QString, QString>> options{{u"OpenFrmExplorerAtStart"_s, u"2"_s},
                                                           {u"ShowVarGroupInfo"_s, u"1"_s}};
    EXPECT_EQ(description.options, options);
}

TEST(Description, SpeaksTheLanguageOfTheUser) {
    const TestHome home;
    gLanguage = 1;
    QString text;
    try {
        archive::readDescription(write(home, R"({"format": 1})"));
    } catch (const ImportError& error) {
        text = error.text();
    }
    gLanguage = 0;
    EXPECT_EQ(text, u"archive.json, line 1 (views): a catalogue has 1 to 9 views"_s);
}
