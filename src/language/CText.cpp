#include "language/CText.h"

using namespace Qt::StringLiterals;

CText gTextObject;

void CText::LoadTextTable() {
    succeed();
    rows_.clear();
    const dao::DatabasePtr database = open(DatabaseName);
    if (!database)
        return;
    try {
        readRows(database);
        database->Close();
    } catch (const dao::Error& error) {
        rows_.clear();
        fail(u"PROC: LoadTextTable\r\nNR.: "_s + QString::number(error.number()) + u"\r\nDESC: "_s +
             error.description());
    }
}

void CText::readRows(const dao::DatabasePtr& database) {
    const dao::RecordsetPtr texts = database->OpenRecordset(u"qdfTblText"_s, dao::dbOpenSnapshot);
    if (texts->RecordCount() == 0) {
        fail(u"The TextTable\r\ncould not be opened!"_s);
        return;
    }
    rows_.reserve(static_cast<size_t>(texts->RecordCount()));
    for (; !texts->Eof(); texts->MoveNext()) {
        Row row{texts->value(0).toText(), texts->value(1).toText(), {}};
        row.searched = SystemTable::searchForm(row.german);
        rows_.push_back(std::move(row));
    }
    texts->Close();
}

int CText::m_BinarySearchVariant(const QString& text) const {
    const QString wanted = SystemTable::searchForm(text);
    int low = 0, high = static_cast<int>(rows_.size()) - 1;
    while (low <= high) {
        const int middle = (low + high) / 2;
        const int order = SystemTable::compareSearchForms(rows_[static_cast<size_t>(middle)].searched, wanted);
        if (order == 0)
            return middle;
        if (order < 0)
            low = middle + 1;
        else
            high = middle - 1;
    }
    return -1;
}

QString CText::TLE(const QString& text) const {
    const int row = m_BinarySearchVariant(text);
    return row < 0 ? text : rows_[static_cast<size_t>(row)].english;
}
