#include "editing/studyNumbers.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/StudyRows.h"
#include "catalogue/importNames.h"
#include "editing/ViewEntries.h"
#include "editing/tableRows.h"
#include "explorer/CatalogueTree.h"

using namespace Qt::StringLiterals;

namespace {

bool isUsed(const QString& number, const QString& table, const QString& field) {
    const QString statement =
        u"SELECT "_s + field + u" FROM "_s + table + u" WHERE "_s + field + u" = "_s + quoted(number);
    return !openCatalogue().OpenRecordset(statement, dao::dbOpenSnapshot)->Eof();
}

} // namespace

bool isStudyNumberTaken(const QString& number) {
    for (int view = 1; view <= gViews.lastRow(); ++view)
        if (isStudyView(view) && isUsed(number, ViewTables(view, false).entries, u"id_StudyNo"_s))
            return true;
    return false;
}

bool hasStudyVariables(const QString& number) {
    return gDatabase.TableExist(u"tkey_Variable"_s) && isUsed(number, u"tkey_Variable"_s, u"fi_StudyNo"_s);
}

QString whyNotStudyNumber(const QString& number) {
    if (isStudyNumberTaken(number))
        return TranslateText(u"Die Studiennummer ist bereits vergeben."_s);
    if (const QString fault = studyNumberFault(number); !fault.isEmpty())
        return fault;
    if (hasStudyVariables(number))
        return TranslateText(
            u"Unter dieser Studiennummer stehen noch Variablen einer Studie, die es nicht mehr gibt."_s);
    return {};
}
