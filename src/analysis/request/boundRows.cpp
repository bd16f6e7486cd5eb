#include "analysis/request/boundRows.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/CDaoPersistance.h"
#include "diagnostics/errors.h"

dao::RecordsetPtr queryRows(const QString& statement) {
    return CDaoPersistance().GetRecordset(gDatabase.CurrentDatabase(), statement, dao::dbOpenDynaset);
}

bool hasRows(const dao::RecordsetPtr& recordset) {
    return recordset && !(recordset->Bof() && recordset->Eof());
}

bool findRow(const dao::RecordsetPtr& recordset, const QString& criteria) {
    if (!hasRows(recordset))
        return false;
    return attempt([&] { recordset->FindFirst(criteria); }) && !recordset->NoMatch();
}

std::vector<BoundPicker> rowList(const dao::RecordsetPtr& recordset, const QString& key, const QString& text) {
    std::vector<BoundPicker> list;
    if (!hasRows(recordset))
        return list;
    for (recordset->MoveFirst(); !recordset->Eof(); recordset->MoveNext())
        list.push_back({recordset->text(key), recordset->text(text)});
    recordset->MoveFirst();
    return list;
}

bool isWholeNumber(const QString& text) {
    bool good = false;
    text.toLongLong(&good);
    return good;
}
