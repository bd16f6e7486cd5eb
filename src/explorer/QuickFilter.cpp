#include "explorer/QuickFilter.h"

#include <QStringList>
#include <algorithm>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

/// Separates the texts of a row, so that no word is found across two of them.
constexpr char parting = 1;

/// Appends a text, folded. Most letters are plain ones, which need no table of Unicode.
void appendFolded(QByteArray& to, QStringView text) {
    const auto isPlain = [](QChar c) { return c.unicode() < 0x80; };
    for (auto at = text.begin(); at != text.end();) {
        for (; at != text.end() && isPlain(*at); ++at) {
            const auto c = static_cast<char>(at->unicode());
            to += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        }
        const auto end = std::find_if(at, text.end(), isPlain);
        if (at != end)
            to += QStringView(at, end).toString().toCaseFolded().toUtf8();
        at = end;
    }
}

} // namespace

void QuickFilter::clear() {
    texts_ = QByteArray();
    ends_ = {};
    read_ = false;
}

QuickFilter::Source::Source(const dao::Recordset& recordset) : recordset_(recordset) {
    for (const QString& name :
         {u"fi_VariableNo"_s, u"dt_VarLabel"_s, u"dt_EnVarLabel"_s, u"dt_QuestionText"_s, u"dt_EnQuestionText"_s})
        if (recordset.hasField(name))
            columns_.push_back(recordset.indexOf(name));
}

void QuickFilter::add(const Source& source) {
    read_ = true;
    for (const int column : source.columns_) {
        appendFolded(texts_, source.recordset_.value(column).toText());
        texts_ += parting;
    }
    ends_.push_back(texts_.size());
}

void QuickFilter::read(dao::Recordset& recordset) {
    clear();
    read_ = true;
    if (recordset.RecordCount() == 0)
        return;
    const Source source(recordset);
    const int place = recordset.AbsolutePosition();
    ends_.reserve(static_cast<size_t>(recordset.RecordCount()));
    for (recordset.MoveFirst(); !recordset.Eof(); recordset.MoveNext())
        add(source);
    texts_.squeeze();
    recordset.MoveFirst();
    if (place > 0)
        recordset.Move(place);
}

std::vector<bool> QuickFilter::matching(const QString& words) const {
    const QStringList all = words.simplified().split(u' ', Qt::SkipEmptyParts);
    if (all.isEmpty())
        return {};
    std::vector<bool> rows(ends_.size(), true);
    for (const QString& word : all) {
        QByteArray sought;
        appendFolded(sought, word);
        keepRowsWith(sought, rows);
    }
    return rows;
}

/// A row that an earlier word has ruled out is not searched again.
void QuickFilter::keepRowsWith(const QByteArray& word, std::vector<bool>& rows) const {
    const std::string_view all(texts_.constData(), static_cast<size_t>(texts_.size()));
    const std::string_view sought(word.constData(), static_cast<size_t>(word.size()));
    size_t begin = 0;
    for (size_t row = 0; row < rows.size(); ++row) {
        const auto end = static_cast<size_t>(ends_[row]);
        rows[row] = rows[row] && all.substr(begin, end - begin).find(sought) != sought.npos;
        begin = end;
    }
}
