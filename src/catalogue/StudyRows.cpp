#include "catalogue/StudyRows.h"

#include <algorithm>

using namespace Qt::StringLiterals;

void setFields(dao::Recordset& rows, const EntryFields& entry) {
    for (const auto& [name, value] : entry)
        if (rows.hasField(name))
            rows.setValue(name, value);
}

QString quoted(const QString& text) {
    return u'\'' + QString(text).replace(u"'"_s, u"''"_s) + u'\'';
}

bool hasColumns(dao::Database& catalogue, const QString& table, const QStringList& columns) {
    if (!catalogue.TableDefs().contains(table))
        return false;
    const auto present = catalogue.TableDefs().Item(table)->columns();
    return std::all_of(columns.begin(), columns.end(), [&](const QString& wanted) {
        return std::any_of(present.begin(), present.end(), [&](const dao::ColumnInfo& column) {
            return column.name.compare(wanted, Qt::CaseInsensitive) == 0;
        });
    });
}

dao::RecordsetPtr rowsOfStudy(dao::Database& catalogue, const QString& table, const QString& studyField,
                              const QString& study) {
    return catalogue.OpenRecordset(u"SELECT * FROM %1 WHERE %2 = %3;"_s.arg(table, studyField, quoted(study)));
}
