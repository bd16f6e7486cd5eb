#include "analysis/caseData.h"

#include "app/globals.h"
#include "config/Options.h"
#include "platform/system/Paths.h"

using namespace Qt::StringLiterals;

QString caseFileOf(const QString& table, const QString& study, const QString& folder) {
    const QString suffix = table.mid(table.lastIndexOf(u'_') + 1);
    const QString first = Paths::join(folder, study + u'-' + suffix + u".mdb"_s);
    return Paths::exists(first) ? first : Paths::join(folder, study + u".mdb"_s);
}

QString caseFolderOf(const dao::Database& catalogue, const QString& study) {
    const QString file = study + u".mdb"_s;
    if (!gOptions.DataPath.isEmpty() && Paths::exists(Paths::join(gOptions.DataPath, file)))
        return gOptions.DataPath;
    const QString own = Paths::folderOf(catalogue.Name());
    return Paths::exists(Paths::join(own, file)) ? own : QString();
}

bool liesWhereItLay(const dao::Database& catalogue, const AttachedTable& attached) {
    const QString folder = caseFolderOf(catalogue, attached.home);
    return !folder.isEmpty() && caseFileOf(attached.table, attached.study, folder) == attached.file;
}

QString AttachCaseTable(dao::Database& catalogue, const QString& table, const QString& study, const QString& path) {
    const QString file = caseFileOf(table, study, path.isEmpty() ? gOptions.DataPath : path);
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
