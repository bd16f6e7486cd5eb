#include "explorer/QuickFilter.h"

#include <QStringList>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

/// Parts the texts of a row, so that no word is found across two of them.
constexpr QChar parting(1);

QByteArray folded(const QString& text) {
    return text.toCaseFolded().toUtf8();
}

} // namespace

void QuickFilter::clear() {
    texts_ = QByteArray();
    ends_ = {};
    read_ = false;
}

void QuickFilter::read(dao::Recordset& recordset) {
    clear();
    read_ = true;
    std::vector<int> columns;
    for (const QString& name : {u"fi_VariableNo"_s, u"dt_VarLabel"_s, u"dt_EnVarLabel"_s, u"dt_QuestionText"_s,
                                u"dt_EnQuestionText"_s})
        if (recordset.hasField(name))
            columns.push_back(recordset.indexOf(name));
    if (recordset.RecordCount() == 0)
        return;
    const int place = recordset.AbsolutePosition();
    ends_.reserve(static_cast<size_t>(recordset.RecordCount()));
    for (recordset.MoveFirst(); !recordset.Eof(); recordset.MoveNext()) {
        QString row;
        for (const int column : columns)
            row += recordset.value(column).toText() + parting;
        texts_ += folded(row);
        ends_.push_back(texts_.size());
    }
    recordset.MoveFirst();
    if (place > 0)
        recordset.Move(place);
}

std::vector<bool> QuickFilter::matching(const QString& words) const {
    const QStringList all = words.simplified().split(u' ', Qt::SkipEmptyParts);
    if (all.isEmpty())
        return {};
    std::vector<bool> rows(ends_.size(), true);
    for (const QString& word : all)
        keepRowsWith(folded(word), rows);
    return rows;
}

void QuickFilter::keepRowsWith(const QByteArray& word, std::vector<bool>& rows) const {
    const char* const begin = texts_.constData();
    const char* const end = begin + texts_.size();
    const char* from = begin;
    size_t row = 0;
    while (row < rows.size()) {
        const void* found = memmem(from, static_cast<size_t>(end - from), word.constData(),
                                   static_cast<size_t>(word.size()));
        const qsizetype place = found ? static_cast<const char*>(found) - begin : texts_.size();
        for (; row < rows.size() && ends_[row] <= place; ++row)
            rows[row] = false;
        if (row < rows.size())
            from = begin + ends_[row++];
    }
}
