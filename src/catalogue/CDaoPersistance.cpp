#include "catalogue/CDaoPersistance.h"

#include "diagnostics/LogFile.h"
#include "diagnostics/errors.h"
#include "platform/system/Paths.h"
#include "platform/ui/Asker.h"

#include <QDate>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace {

bool isEmpty(const dao::RecordsetPtr& recordset) {
    return !recordset || (recordset->Bof() && recordset->Eof());
}

} // namespace

void CDaoPersistance::logStatement(const QString& statement) {
    const QString today = QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat);
    LogFile::append(Paths::join(Paths::applicationFolder(), u"Sql.log"_s), today + u"\r\n"_s + statement + u"\r\n"_s);
}

dao::RecordsetPtr CDaoPersistance::GetRecordset(const dao::DatabasePtr& database, const QString& statement, int type,
                                                const std::function<bool(const dao::Error&)>& callersOwn,
                                                const QStringList& columns) {
    sql_ = statement;
    const ui::WaitPointer wait;
    const ProcedureScope scope(u"[CDaoPersistance.GetRecordset]"_s);
    if (!database)
        return nullptr;
    try {
        dao::RecordsetPtr recordset =
            columns.isEmpty() ? database->OpenRecordset(statement, type) : database->OpenColumns(statement, columns);
        if (!isEmpty(recordset)) {
            recordset->MoveLast();
            recordset->MoveFirst();
        }
        return recordset;
    } catch (const std::exception& failure) {
        const dao::Error error = asError(failure);
        if (callersOwn && callersOwn(error))
            throw;
        logStatement(statement);
        reportError(error);
        return nullptr;
    }
}
