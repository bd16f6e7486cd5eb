#include "analysis/request/variableFields.h"
#include "analysis/result/provenance.h"
#include "app/globals.h"
#include "charts/StoredGraph.h"
#include "charts/pictures.h"
#include "platform/system/wholeFile.h"
#include "tables/StoredTable.h"
#include "vdx/Command.h"
#include "vdx/StudyRequest.h"

using namespace Qt::StringLiterals;

namespace {

/// vdx stored: what the catalogue keeps with a variable, as it was when it was stored.
class StoredCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    int run(Session& session) override;

private:
    std::string catalogue_, study_, variable_, graph_;
    bool table_ = false;

    int printTable(Session& session, const AnalysisRequest& request) const;
    int writeGraph(Session& session, const AnalysisRequest& request) const;
};

CLI::App* StoredCommand::declare(CLI::App& program) {
    CLI::App* command =
        program.add_subcommand("stored", "The table or the chart that the catalogue keeps with a variable");
    command->add_option("CATALOGUE", catalogue_, "catalogue file")->required();
    command->add_option("STUDY", study_, "study number")->required();
    command->add_option("VARIABLE", variable_, "variable")->required();
    CLI::Option* table = command->add_flag("--table", table_, "print the table (the default)");
    command->add_option("--graph", graph_, "write the chart's picture to a file, byte by byte as it is kept (JPEG)")
        ->excludes(table)
        ->type_name("FILE");
    return command;
}

/// @return 1
int refuse(Session& session, const QString& words) {
    session.say(words);
    return 1;
}

int StoredCommand::run(Session& session) {
    if (!session.open(QString::fromStdString(catalogue_)))
        return 1;
    TypedCases cases;
    cases.study = QString::fromStdString(study_);
    RequestEditor editor;
    editor.open();
    if (!cases.chooseStudy(session, editor) ||
        !cases.chooseVariable(session, editor, QString::fromStdString(variable_)))
        return 1;
    if (!editor.canKeep())
        return refuse(session,
                      TranslateText(u"Dieser Katalog hat keine Felder für Anweisungen, Tabellen und Grafiken."_s));
    return graph_.empty() ? printTable(session, editor.request()) : writeGraph(session, editor.request());
}

int StoredCommand::printTable(Session& session, const AnalysisRequest& request) const {
    const QStringList texts = textsOf(request.dbcStudy.value, request.dbcVariable.value, {u"dt_Table"_s});
    if (texts[0].isEmpty())
        return refuse(session, TranslateText(u"Für diese Variable ist keine Tabelle gespeichert."_s));
    std::optional<StoredTable> stored = readStoredTable(texts[0], {});
    if (!stored)
        return refuse(session, TranslateText(u"Die gespeicherte Tabelle ist beschädigt."_s));
    ResultTable& table = stored->table;
    const bool crosstab = stored->kind == TableKind::Crosstab;
    fixHeads(*stored);
    TableResult shown;
    shown.stored = StoredOrigin{request.dbcStudy.value, request.dbcVariable.value, request.dbcVariableUni,
                                stored->weight, QString()};
    QStringList lines = linesBelow(shown);
    static const QString names[] = {u"absolute"_s, u"column"_s, u"row"_s, u"total"_s};
    if (crosstab)
        lines << TranslateText(storedViewWords(*stored));
    QJsonObject facts{{u"stored"_s, true},
                      {u"study"_s, request.dbcStudy.value},
                      {u"variable"_s, request.dbcVariable.value},
                      {u"weight"_s, stored->weight.isEmpty() ? QJsonValue() : QJsonValue(stored->weight)}};
    if (crosstab)
        facts.insert(u"values"_s, names[stored->values]);
    session.printer().print(stored->title, table, lines, facts);
    return 0;
}

int StoredCommand::writeGraph(Session& session, const AnalysisRequest& request) const {
    const QStringList texts =
        textsOf(request.dbcStudy.value, request.dbcVariable.value, {u"dt_Graph"_s, u"dt_GraphLayout"_s});
    if (texts[0].isEmpty())
        return refuse(session, TranslateText(u"Für diese Variable ist keine Grafik gespeichert."_s));
    const std::optional<QByteArray> bytes = bytesOf(texts[0]);
    if (!bytes || !readPicture(*bytes))
        return refuse(session, TranslateText(u"Die gespeicherte Grafik ist beschädigt."_s));
    const QString path = QString::fromStdString(graph_);
    if (const QString reason = saveBytes(path, *bytes); !reason.isEmpty())
        return refuse(session,
                      TranslateText(u"Die Grafik konnte nicht gespeichert werden:"_s) + u' ' + path + u", "_s + reason);
    const StoredGraph graph = readGraphLayout(texts[1]);
    QStringList lines{graph.title};
    lines << graph.explanation.split(u"\r\n"_s);
    lines.removeAll(QString());
    session.printer().printLines(lines);
    return 0;
}

} // namespace

std::unique_ptr<Command> makeStoredCommand() {
    return std::make_unique<StoredCommand>();
}
