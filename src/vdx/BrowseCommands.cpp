#include "analysis/request/boundRows.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "explorer/ExplorerModel.h"
#include "vdx/Command.h"
#include "vdx/StudyRequest.h"

using namespace Qt::StringLiterals;

namespace {

QString contentsField(const dao::RecordsetPtr& rows, const QString& original, const QString& english) {
    return rows->text(gOptions.EnglishLanguage ? english : original);
}

/// vdx studies: the studies that can be analysed.
class StudiesCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override {
        CLI::App* command = program.add_subcommand("studies", "The studies of a catalogue");
        command->add_option("CATALOGUE", catalogue_, "catalogue file")->required();
        return command;
    }
    int run(Session& session) override;

private:
    std::string catalogue_;
};

int StudiesCommand::run(Session& session) {
    if (!session.open(QString::fromStdString(catalogue_)))
        return 1;
    const dao::RecordsetPtr studies = hasStudies(session) ? queryRows(studyQuerySource()) : nullptr;
    if (session.failed() || !studies)
        return 1;
    std::vector<QStringList> rows;
    if (studies->RecordCount() > 0)
        studies->MoveFirst();
    for (; !studies->Eof(); studies->MoveNext())
        rows.push_back({studies->text(u"id_StudyNo"_s), studies->text(u"dt_StudyTitle"_s),
                        studies->text(u"dt_EnStudyTitle"_s), studies->text(u"dt_Year"_s), studies->text(u"fid"_s),
                        studies->text(u"dt_WeightRE"_s), studies->text(u"dt_WeightHH"_s)});
    session.printer().print(
        {u"study"_s, u"title"_s, u"title_en"_s, u"year"_s, u"group"_s, u"weight_re"_s, u"weight_hh"_s}, rows);
    return 0;
}

/// vdx variables: the variables of a study in their order.
class VariablesCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override {
        CLI::App* command = program.add_subcommand("variables", "The variables of a study");
        command->add_option("CATALOGUE", catalogue_, "catalogue file")->required();
        command->add_option("STUDY", study_, "study number")->required();
        return command;
    }
    int run(Session& session) override;

private:
    std::string catalogue_, study_;
};

/// Names of the catalogue's variable groups by key, in the language of the contents.
QHash<QString, QString> groupNames() {
    QHash<QString, QString> names;
    if (!gDatabase.TableExist(u"tkey_VarGroups"_s))
        return names;
    const dao::RecordsetPtr groups = gDatabase.CurrentDatabase()->OpenRecordset(u"SELECT * FROM tkey_VarGroups;"_s);
    for (; !groups->Eof(); groups->MoveNext())
        names.insert(groups->text(u"id_VarGroup"_s),
                     contentsField(groups, u"dt_VarGroupName"_s, u"dt_VarGroupNameEn"_s));
    return names;
}

int VariablesCommand::run(Session& session) {
    if (!session.open(QString::fromStdString(catalogue_)))
        return 1;
    TypedCases cases;
    cases.study = QString::fromStdString(study_);
    RequestEditor editor;
    editor.open();
    if (!cases.chooseStudy(session, editor))
        return 1;
    const dao::RecordsetPtr variables = queryRows(variableQuerySource(editor.request().dbcStudy.value));
    if (session.failed() || !variables)
        return 1;
    const QHash<QString, QString> groups = groupNames();
    std::vector<QStringList> rows;
    if (variables->RecordCount() > 0)
        variables->MoveFirst();
    for (; !variables->Eof(); variables->MoveNext())
        rows.push_back({variables->text(u"dt_Position"_s), variables->text(u"id_VarName"_s),
                        variables->text(u"dt_VarLabel"_s), variables->text(u"dt_EnVarLabel"_s),
                        variables->text(u"dt_TableName"_s), variables->text(u"dt_FieldName"_s),
                        variables->text(u"dt_Missing"_s), groups.value(variables->text(u"dt_VarGroup"_s))});
    session.printer().print(
        {u"position"_s, u"name"_s, u"label"_s, u"label_en"_s, u"table"_s, u"field"_s, u"missing"_s, u"group"_s}, rows,
        {0});
    return 0;
}

/// A view by its number; a message on standard error if the catalogue has no such view.
bool openView(Session& session, ExplorerModel& explorer, int view) {
    const int last = gCatalogueOptions.NumberOfFrmExplorers;
    if (view < 1 || view > last || gViews.at(view, ViewTable::Table).isEmpty()) {
        session.say(said(u"Der Katalog hat keine Ansicht %1."_s, u"The catalogue has no view %1."_s)
                        .arg(QString::number(view)));
        return false;
    }
    session.takeWarningsAsFailures();
    explorer.open(view);
    return !session.failed();
}

/// vdx tree: the entries of a view.
class TreeCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override {
        CLI::App* command = program.add_subcommand("tree", "The tree of a view: studies or categories");
        command->add_option("CATALOGUE", catalogue_, "catalogue file")->required();
        command->add_option("--view", view_, "number of the view (default: 1)")->type_name("N");
        return command;
    }
    int run(Session& session) override;

private:
    std::string catalogue_;
    int view_ = 1;
};

int levelOf(const CatalogueNode& node) {
    int level = 0;
    for (const CatalogueNode* above = node.Parent; above; above = above->Parent)
        ++level;
    return level;
}

void collect(const CatalogueNode& node, TablePrinter::Format format, std::vector<QStringList>& rows) {
    const int level = levelOf(node);
    const QString parent = node.Parent ? node.Parent->Key : QString();
    if (format == TablePrinter::Format::Text)
        rows.push_back({node.Key, QString(2 * level, u' ') + node.Text});
    else
        rows.push_back({node.Key, parent, QString::number(level), node.Text});
    for (const CatalogueNode* child : node.Children)
        collect(*child, format, rows);
}

int TreeCommand::run(Session& session) {
    if (!session.open(QString::fromStdString(catalogue_)))
        return 1;
    ExplorerModel explorer;
    const bool built = openView(session, explorer, view_);
    if (!built || !explorer.tree.root())
        return 1;
    std::vector<QStringList> rows;
    const TablePrinter::Format format = session.printer().format();
    collect(*explorer.tree.root(), format, rows);
    if (format == TablePrinter::Format::Text)
        session.printer().print({u"key"_s, u"text"_s}, rows);
    else
        session.printer().print({u"key"_s, u"parent"_s, u"level"_s, u"text"_s}, rows);
    for (const UnreachedEntry& entry : unreachedEntries(explorer.tree, view_, gOptions.EnglishLanguage))
        session.say(said(u"Nicht im Baum, da kein Weg von der Wurzel dorthin führt: %1 (%2)"_s,
                         u"Not in the tree, since no way from the root leads there: %1 (%2)"_s)
                        .arg(entry.key, entry.text));
    return 0;
}

/// vdx list: the variables of an entry.
class ListCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override {
        CLI::App* command = program.add_subcommand("list", "The variables of an entry of a view");
        command->add_option("CATALOGUE", catalogue_, "catalogue file")->required();
        command->add_option("--view", view_, "number of the view")->required()->type_name("N");
        command->add_option("--node", node_, "key of the entry, as vdx tree prints it")->required()->type_name("KEY");
        return command;
    }
    int run(Session& session) override;

private:
    std::string catalogue_, node_;
    int view_ = 1;
};

int ListCommand::run(Session& session) {
    if (!session.open(QString::fromStdString(catalogue_)))
        return 1;
    ExplorerModel explorer;
    if (!openView(session, explorer, view_))
        return 1;
    const QString key = QString::fromStdString(node_);
    if (!explorer.select(key)) {
        session.say(said(u"Ansicht %1 hat keinen Eintrag %2."_s, u"View %1 has no entry %2."_s)
                        .arg(QString::number(view_), key));
        return 1;
    }
    if (session.failed())
        return 1;
    QStringList header;
    for (const ListColumn& column : explorer.list.columns)
        header << (session.printer().format() == TablePrinter::Format::Text ? column.Heading : column.Key);
    std::vector<QStringList> rows;
    for (const VariableRow& row : explorer.list.rows) {
        QStringList cells;
        for (qsizetype c = 0; c < header.size(); ++c)
            cells << row.cell(static_cast<int>(c));
        rows.push_back(cells);
    }
    session.printer().print(header, rows);
    return 0;
}

} // namespace

std::unique_ptr<Command> makeStudiesCommand() {
    return std::make_unique<StudiesCommand>();
}

std::unique_ptr<Command> makeVariablesCommand() {
    return std::make_unique<VariablesCommand>();
}

std::unique_ptr<Command> makeTreeCommand() {
    return std::make_unique<TreeCommand>();
}

std::unique_ptr<Command> makeListCommand() {
    return std::make_unique<ListCommand>();
}
