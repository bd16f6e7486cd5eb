#include "analysis/result/saveTable.h"

#include "app/globals.h"
#include "platform/system/Paths.h"
#include "platform/system/wholeFile.h"
#include "tables/tableText.h"

using namespace Qt::StringLiterals;

QString saveTable(const QString& path, const QString& title, const ResultTable& table, const QStringList& notes) {
    const bool page = path.endsWith(u".html"_s, Qt::CaseInsensitive) || path.endsWith(u".htm"_s, Qt::CaseInsensitive);
    // Spreadsheets read a csv file as UTF-8 only when it begins with the mark.
    const auto csv = [&] {
        return csvText(tableRows(table), CsvReader::Spreadsheet) + csvComments(QStringList{title} + notes);
    };
    const QByteArray content = page ? htmlPage(title, table, notes).toUtf8() : "\xEF\xBB\xBF" + csv().toUtf8();
    return saveBytes(path, content);
}

QString tableFileName(const TableResult& result) {
    if (!result.stored)
        return tableFileName(result.facts->request);
    return Paths::asFileName(result.stored->study + u'-' + result.stored->variable);
}

QString tableFileName(const AnalysisRequest& request) {
    QStringList words;
    if (request.mode == AnalysisMode::Comparison)
        words << request.txtTitle;
    else
        words << request.dbcStudy.value << request.dbcVariable.value;
    if (request.mode == AnalysisMode::Crosstab || (request.mode == AnalysisMode::Descriptives && request.chkDescGroup))
        words << request.dbcVariable2.value;
    words.removeAll(QString());
    const QString name = Paths::asFileName(words.join(u'-'));
    return name.isEmpty() ? TranslateText(u"Vergleich"_s) : name;
}
