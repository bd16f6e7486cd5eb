#include "analysis/run/caseData.h"

#include "platform/system/Paths.h"

using namespace Qt::StringLiterals;

QString caseFileOf(const QString& table, const QString& study, const QString& folder) {
    const QString suffix = table.mid(table.lastIndexOf(u'_') + 1);
    const QString first = Paths::join(folder, study + u'-' + suffix + u".mdb"_s);
    return Paths::exists(first) ? first : Paths::join(folder, study + u".mdb"_s);
}

QString caseFolderOf(const dao::Database& catalogue, const QString& study, const QString& dataPath) {
    const QString file = study + u".mdb"_s;
    if (!dataPath.isEmpty() && Paths::exists(Paths::join(dataPath, file)))
        return dataPath;
    const QString own = Paths::folderOf(catalogue.Name());
    return Paths::exists(Paths::join(own, file)) ? own : QString();
}

bool liesWhereItLay(const dao::Database& catalogue, const AttachedTable& attached, const QString& dataPath) {
    const QString folder = caseFolderOf(catalogue, attached.home, dataPath);
    return !folder.isEmpty() && caseFileOf(attached.table, attached.study, folder) == attached.file;
}

QString AttachCaseTable(dao::Database& catalogue, const QString& table, const QString& study, const QString& path) {
    const QString file = caseFileOf(table, study, path);
    const QString connect = u";DATABASE="_s + file;
    dao::TableDefs& tables = catalogue.TableDefs();
    if (tables.contains(table)) {
        const dao::TableDefPtr link = tables.Item(table);
        if (link->SourceTableName() != table)
            link->setSourceTableName(table);
        if (link->Connect() != connect)
            link->setConnect(connect);
        return file;
    }
    const dao::TableDefPtr link = catalogue.CreateTableDef(table);
    link->setSourceTableName(table);
    link->setConnect(connect);
    tables.Append(link);
    link->RefreshLink();
    return file;
}

void EnsureQueryQ(dao::Database& catalogue) {
    if (catalogue.QueryDefs().contains(u"q"_s))
        return;
    catalogue.CreateQueryDef(u"q"_s);
    catalogue.QueryDefs().Refresh();
}
