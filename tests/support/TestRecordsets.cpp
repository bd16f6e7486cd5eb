#include "support/TestRecordsets.h"

TestRecordsets::TestRecordsets(const QString& path)
    : file_(dao::DBEngine::instance().Workspaces(0).CreateDatabase(path)) {}

dao::RecordsetPtr TestRecordsets::make(const QString& name, const Fields& fields, const Rows& rows) {
    if (file_->TableDefs().contains(name))
        file_->TableDefs().Delete(name);
    const dao::TableDefPtr table = file_->CreateTableDef(name);
    QStringList names;
    for (const auto& [field, type] : fields) {
        table->Fields.push_back(dao::TableDef::CreateField(field, type));
        names << field;
    }
    file_->TableDefs().Append(table);
    dao::Workspace& workspace = dao::DBEngine::instance().Workspaces(0);
    workspace.BeginTrans();
    const auto appender = file_->openAppender(name, names);
    for (const std::vector<dao::Value>& row : rows) {
        for (size_t i = 0; i < row.size(); ++i) {
            if (row[i].isNull())
                continue;
            if (fields[i].second == dao::dbText || fields[i].second == dao::dbMemo)
                appender->setText(static_cast<int>(i), row[i].toText());
            else
                appender->setNumber(static_cast<int>(i), row[i].toDouble());
        }
        appender->appendRow();
    }
    workspace.CommitTrans();
    return file_->OpenRecordset(name, dao::dbOpenSnapshot);
}
