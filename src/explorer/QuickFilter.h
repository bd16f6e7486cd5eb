#pragma once

#include "platform/dao/Recordset.h"

#include <QByteArray>
#include <QString>
#include <vector>

/// Finds variables by words of their name, their labels and their question texts, in either language and without regard
/// to case. The texts are kept folded, one behind the other, so that a search is one walk through memory.
class QuickFilter {
public:
    /// Takes in the variables of a recordset, which is then again at the row where it was.
    void read(dao::Recordset& recordset);
    /// Takes in the current row of a recordset behind those that are there.
    class Source;
    void add(const Source& source);
    void clear();
    bool isRead() const { return read_; }
    /// For each row of the recordset, by its place, whether every word occurs somewhere in its texts. Empty, which
    /// stands for all, if there is no word.
    std::vector<bool> matching(const QString& words) const;

private:
    QByteArray texts_;
    std::vector<qsizetype> ends_; ///< of each row's texts
    bool read_ = false;

    void keepRowsWith(const QByteArray& word, std::vector<bool>& rows) const;
};

/// A recordset with the places of the texts that are searched.
class QuickFilter::Source {
public:
    explicit Source(const dao::Recordset& recordset);

private:
    friend class QuickFilter;
    const dao::Recordset& recordset_;
    std::vector<int> columns_;
};
