#include "catalogue/ArchiveDescription.h"

#include "catalogue/CatalogueImport.h"
#include "catalogue/JsonNode.h"
#include "catalogue/JsonPlaces.h"
#include "catalogue/importNames.h"
#include "catalogue/importTexts.h"
#include "platform/dao/Value.h"
#include "platform/system/Paths.h"

#include <QFile>
#include <QJsonDocument>
#include <QSet>

using namespace Qt::StringLiterals;

namespace archive {

namespace {

/// Names that are one key in the catalogue: compared without regard to case.
class Keys {
public:
    void add(const JsonNode& node, const QString& key) {
        if (seen_.contains(key.toCaseFolded()))
            node.fail(said(u"'%1' kommt zweimal vor"_s, u"'%1' stands twice"_s).arg(key));
        seen_.insert(key.toCaseFolded());
    }
    bool contains(const QString& key) const { return seen_.contains(key.toCaseFolded()); }

private:
    QSet<QString> seen_;
};

void requireDepth(const JsonNode& node, int depth) {
    if (depth > maxTreeDepth)
        node.fail(
            said(u"mehr als %1 Ebenen ineinander"_s, u"more than %1 levels inside each other"_s).arg(maxTreeDepth));
}

/// Show cards lie below the catalogue's folder, which is where the explorer looks.
Text showCardOf(const JsonNode& node) {
    Text card = node.inBothLanguages(u"showCard"_s);
    for (const std::optional<QString>& file : {card.original, card.english}) {
        const QString path = QString(file.value_or(QString())).replace(u'\\', u'/');
        if (path.startsWith(u'/') || path.contains(u':') || path.split(u'/').contains(u".."_s))
            node[u"showCard"_s].fail(
                said(u"'%1' liegt nicht im Ordner des Katalogs"_s, u"'%1' does not lie in the catalogue's folder"_s)
                    .arg(*file));
    }
    return card;
}

std::vector<VariableTexts> readVariables(const JsonNode& node, const Keys& groups) {
    std::vector<VariableTexts> all;
    Keys names;
    node.eachMember(u"variables"_s, [&](const QString& name, const JsonNode& texts) {
        texts.onlyMembers({u"label"_s, u"question"_s, u"group"_s, u"showCard"_s, u"instruction"_s});
        names.add(texts, name);
        VariableTexts variable;
        variable.place = texts.place();
        variable.name = name;
        variable.label = texts.inBothLanguages(u"label"_s);
        variable.question = texts.inBothLanguages(u"question"_s);
        variable.showCard = showCardOf(texts);
        variable.group = texts.optionalText(u"group"_s);
        variable.instruction = texts.optionalText(u"instruction"_s);
        if (!variable.group.isEmpty() && !groups.contains(variable.group))
            texts[u"group"_s].fail(said(u"keine Variablengruppe '%1' in 'variableGroups'"_s,
                                        u"no variable group '%1' in 'variableGroups'"_s)
                                       .arg(variable.group));
        all.push_back(std::move(variable));
    });
    return all;
}

Part readPart(const JsonNode& node, Keys& numbers) {
    node.onlyMembers({u"number"_s, u"name"_s, u"variable"_s, u"criterion"_s, u"separateAnalysis"_s});
    Part part;
    part.place = node.place();
    part.number = node.requiredText(u"number"_s);
    numbers.add(node[u"number"_s], part.number);
    part.name = node.inBothLanguages(u"name"_s);
    part.separateAnalysis = node.flag(u"separateAnalysis"_s);
    part.variable = node.optionalText(u"variable"_s);
    part.criterion = node.optionalText(u"criterion"_s);
    if (part.separateAnalysis)
        for (const QString& member : {u"variable"_s, u"criterion"_s})
            node.requiredText(member);
    return part;
}

/// Reads the whole description; one reader for one file.
class Reader {
public:
    explicit Reader(Description& result) : result_(result) {}

    void read(const JsonNode& root) {
        root.onlyMembers({u"format"_s, u"database"_s, u"options"_s, u"variableGroups"_s, u"variables"_s, u"views"_s,
                          u"questionnaires"_s, u"dataSets"_s});
        if (!root.has(u"format"_s) || root[u"format"_s].optionValue() != u"1")
            root[u"format"_s].fail(said(u"'format' muss 1 sein"_s, u"'format' must be 1"_s));
        if (root.has(u"database"_s)) {
            const JsonNode database = root[u"database"_s];
            database.onlyMembers({u"title"_s, u"description"_s});
            result_.title = database.inBothLanguages(u"title"_s);
            result_.description = database.inBothLanguages(u"description"_s);
        }
        root.eachMember(u"options"_s, [this](const QString& name, const JsonNode& node) { option(name, node); });
        root.each(u"variableGroups"_s, [this](const JsonNode& node) { variableGroup(node); });
        result_.variables = readVariables(root, groupKeys_);
        result_.questionnaires = root.optionalText(u"questionnaires"_s);
        result_.dataSets = root.optionalText(u"dataSets"_s);
        root.each(u"views"_s, [this](const JsonNode& node) { view(node); });
        if (result_.views.empty() || result_.views.size() > 9)
            root[u"views"_s].fail(said(u"ein Katalog hat 1 bis 9 Ansichten"_s, u"a catalogue has 1 to 9 views"_s));
    }

private:
    Description& result_;
    Keys groupKeys_, viewTables_, studyNumbers_;

    void option(const QString& name, const JsonNode& node) {
        static const QStringList known{u"OpenFrmExplorerAtStart"_s,   u"DefaultEnglishContents"_s,
                                       u"ShowVarGroupInfo"_s,         u"VarGroupInfoName"_s,
                                       u"VarGroupInfoNameEnglish"_s,  u"ReportVariable"_s,
                                       u"RemoveTableLinksOnExitDB"_s, u"VaridexCreationMode"_s};
        if (!known.contains(name))
            node.fail(said(u"unbekannte Option; bekannt sind: %1 (die der Ansichten entstehen aus 'views')"_s,
                           u"unknown option; known are: %1 (those of views come from 'views')"_s)
                          .arg(known.join(u", "_s)));
        result_.options.emplace_back(name, node.optionValue());
    }

    void variableGroup(const JsonNode& node) {
        node.onlyMembers({u"key"_s, u"name"_s});
        VariableGroup group;
        group.place = node.place();
        group.key = node.requiredText(u"key"_s);
        groupKeys_.add(node[u"key"_s], group.key);
        group.name = node.inBothLanguages(u"name"_s);
        result_.groups.push_back(std::move(group));
    }

    void view(const JsonNode& node) {
        node.onlyMembers({u"table"_s, u"kind"_s, u"name"_s, u"descriptions"_s, u"comparison"_s, u"entries"_s});
        View view;
        view.place = node.place();
        view.table = node.requiredText(u"table"_s);
        requirePlainName(node[u"table"_s], view.table);
        static const QStringList taken{u"Variable"_s, u"Value"_s, u"VarGroups"_s, u"Parts"_s, u"Database"_s};
        if (taken.contains(view.table, Qt::CaseInsensitive))
            node[u"table"_s].fail(
                said(u"die Tabelle 'tkey_%1' ist vergeben"_s, u"the table 'tkey_%1' is taken"_s).arg(view.table));
        viewTables_.add(node[u"table"_s], view.table);
        const QString kind = node.requiredText(u"kind"_s);
        if (kind != u"study" && kind != u"category")
            node[u"kind"_s].fail(said(u"hier steht 'study' oder 'category'"_s, u"'study' or 'category' stands here"_s));
        view.isStudyView = kind == u"study";
        if (result_.views.empty() && !view.isStudyView)
            node.fail(
                said(u"die erste Ansicht muss eine Studienansicht sein"_s, u"the first view must be a study view"_s));
        view.name = node.forBothLanguages(u"name"_s);
        if (view.name.original.value_or(QString()).trimmed().isEmpty())
            node.fail(said(u"die Ansicht hat keinen Namen"_s, u"the view has no name"_s));
        view.descriptionsName = node.forBothLanguages(u"descriptions"_s);
        view.comparison = node.flag(u"comparison"_s);
        if (view.isStudyView) {
            Keys groups;
            studyEntries(view, node, u"0"_s, 1, groups);
            checkReadingOrder(result_, view);
        } else {
            categoryEntries(view, node, 0, 1);
        }
        result_.views.push_back(std::move(view));
    }

    void studyEntries(View& view, const JsonNode& parentNode, const QString& parent, int depth, Keys& groups) {
        requireDepth(parentNode, depth);
        int order = 0;
        parentNode.each(u"entries"_s, [&](const JsonNode& node) {
            Study entry = node.has(u"group"_s) ? group(node, groups) : study(node, groups);
            entry.place = node.place();
            entry.parent = parent;
            entry.order = ++order;
            const QString number = entry.number;
            const bool isGroup = entry.isGroup;
            view.studies.push_back(std::move(entry));
            if (isGroup)
                studyEntries(view, node, number, depth + 1, groups);
        });
    }

    static Study group(const JsonNode& node, Keys& groups) {
        node.onlyMembers({u"group"_s, u"title"_s, u"description"_s, u"entries"_s});
        Study entry;
        entry.isGroup = true;
        entry.number = node.requiredText(u"group"_s);
        requirePlainName(node[u"group"_s], entry.number);
        groups.add(node[u"group"_s], entry.number);
        entry.title = node.inBothLanguages(u"title"_s);
        entry.description = node.inBothLanguages(u"description"_s);
        return entry;
    }

    Study study(const JsonNode& node, Keys& groups) {
        node.onlyMembers({u"study"_s, u"file"_s, u"encoding"_s, u"encode"_s, u"title"_s, u"description"_s, u"year"_s,
                          u"weightRE"_s, u"weightHH"_s, u"query"_s, u"parts"_s, u"tables"_s, u"variables"_s});
        Study entry;
        entry.number = node.requiredText(u"study"_s);
        if (const QString fault = studyNumberFault(entry.number); !fault.isEmpty())
            node[u"study"_s].fail(fault);
        studyNumbers_.add(node[u"study"_s], entry.number);
        groups.add(node[u"study"_s], entry.number);
        entry.file = node.requiredText(u"file"_s);
        entry.encoding = node.optionalText(u"encoding"_s);
        if (node.has(u"encode"_s))
            readEncode(node[u"encode"_s], node, entry);
        entry.title = node.inBothLanguages(u"title"_s);
        entry.description = node.inBothLanguages(u"description"_s);
        if (node.has(u"year"_s))
            entry.year = node[u"year"_s].optionValue();
        entry.weightRe = node.textIfThere(u"weightRE"_s);
        entry.weightHh = node.textIfThere(u"weightHH"_s);
        entry.query = node.textIfThere(u"query"_s);
        Keys partNumbers;
        node.each(u"parts"_s, [&](const JsonNode& part) { entry.parts.push_back(readPart(part, partNumbers)); });
        node.each(u"tables"_s, [&](const JsonNode& table) {
            table.onlyMembers({u"variables"_s, u"ownFile"_s});
            CaseTable wish;
            wish.place = table.place();
            wish.variables = table.texts(u"variables"_s);
            wish.ownFile = table.flag(u"ownFile"_s);
            entry.tables.push_back(std::move(wish));
        });
        entry.variables = readVariables(node, groupKeys_);
        return entry;
    }

    static void readEncode(const JsonNode& encode, const JsonNode& study, Study& entry) {
        if (encode.isList())
            entry.encode = study.texts(u"encode"_s);
        else if (encode.isFlag())
            entry.encodeAll = study.flag(u"encode"_s);
        else
            encode.fail(said(u"hier wird true, false oder eine Liste von Variablen erwartet"_s,
                             u"true, false or a list of variables is expected here"_s));
    }

    static void categoryEntries(View& view, const JsonNode& parentNode, int parent, int depth) {
        requireDepth(parentNode, depth);
        int order = 0;
        parentNode.each(u"entries"_s, [&](const JsonNode& node) {
            node.onlyMembers({u"name"_s, u"description"_s, u"variables"_s, u"entries"_s});
            Category entry;
            entry.place = node.place();
            entry.id = static_cast<int>(view.categories.size()) + 1;
            entry.parent = parent;
            entry.order = ++order;
            entry.name = node.inBothLanguages(u"name"_s);
            entry.description = node.inBothLanguages(u"description"_s);
            Keys patterns;
            node.each(u"variables"_s, [&](const JsonNode& pattern) {
                const QString text = pattern.text();
                patterns.add(pattern, text);
                const qsizetype colon = text.indexOf(u':');
                entry.variables.emplace_back(colon < 0 ? u"*"_s : text.left(colon).trimmed(),
                                             text.mid(colon + 1).trimmed());
                entry.variablePlaces << pattern.place();
            });
            const int id = entry.id;
            view.categories.push_back(std::move(entry));
            categoryEntries(view, node, id, depth + 1);
        });
    }
};

QByteArray readWhole(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw ImportError(
            said(u"'%1' kann nicht gelesen werden: %2"_s, u"'%1' cannot be read: %2"_s).arg(path, file.errorString()));
    QByteArray content = file.read(maxDescriptionSize + 1);
    if (content.size() > maxDescriptionSize)
        throw ImportError(said(u"'%1' ist größer als 64 MB"_s, u"'%1' is larger than 64 MB"_s).arg(path));
    return content;
}

} // namespace

QString Description::at(const QString& place, const QString& message) const {
    const QString where =
        said(u"%1, Zeile %2"_s, u"%1, line %2"_s).arg(Paths::fileOf(file)).arg(JsonPlaces::lineOf(source, place));
    return place.isEmpty() ? where + u": "_s + message : u"%1 (%2): %3"_s.arg(where, place, message);
}

Description readDescription(const QString& path) {
    Description result;
    result.file = path;
    result.source = readWhole(path);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(result.source, &error);
    if (document.isNull())
        throw ImportError(said(u"%1, Zeile %2: kein gültiges JSON (%3)"_s, u"%1, line %2: no valid JSON (%3)"_s)
                              .arg(Paths::fileOf(path))
                              .arg(JsonPlaces::lineAt(result.source, error.offset))
                              .arg(error.errorString()));
    if (const QString repeated = JsonPlaces::repeatedMember(result.source); !repeated.isEmpty())
        throw ImportError(result.at(repeated, said(u"diese Angabe steht zweimal im selben Objekt"_s,
                                                   u"this member stands twice in the same object"_s)));
    const JsonNode root(result, document.isObject() ? QJsonValue(document.object()) : QJsonValue(document.array()), {});
    Reader(result).read(root);
    return result;
}

void checkReadingOrder(const Description& description, const View& view) {
    for (const Study& entry : view.studies)
        if (entry.isGroup && dao::compareTexts(entry.parent, entry.number) >= 0)
            throw ImportError(description.at(entry.place, said(u"die Gruppe '%1' würde erst nach ihren Mitgliedern "
                                                               u"gelesen: ihre Nummer muss hinter der Nummer '%2' "
                                                               u"der Gruppe stehen, zu der sie gehört"_s,
                                                               u"the group '%1' would be read after its members: its "
                                                               u"number must sort behind the number '%2' of the "
                                                               "group that holds it"_s)
                                                              .arg(entry.number, entry.parent)));
}

} // namespace archive
