#pragma once

#include "platform/dao/DatabaseFile.h"
#include "platform/dao/EqualityIndex.h"
#include "platform/dao/Rows.h"

namespace dao {

/// The rows that a statement gives and the current one among them.
///
/// The rows of a whole table stay in the file until somebody walks through them: up to then the cursor fetches the
/// first, the last, or the row that a search or a bookmark names, one at a time.
///
/// Memos of rows that can be edited stay in the file until somebody asks for one, and are then what they are by then:
/// five hundred stored pictures would be too much to hold for a list of names.
class RowCursor {
public:
    struct Source {
        DatabaseFilePtr file;
        QString text; ///< the statement or name it was opened with
        bool editable = false;
        QString sort;             ///< an ORDER BY list for rows in memory, or empty
        QStringList columns = {}; ///< of the result, by name, that are read; empty for all. Not of rows to be edited
    };

    /// Reads the rows, or finds out that they can wait. @throws Error as Database::OpenRecordset()
    explicit RowCursor(Source source);

    const BoundStatement& statement() const { return bound_; }
    bool isEditable() const { return source_.editable; }

    bool isEmpty();
    int count();
    bool isBefore() { return place_ == Place::Before || (isEmpty() && place_ != Place::Deleted); }
    bool isBehind() { return place_ == Place::After || (isEmpty() && place_ != Place::Deleted); }
    int position();
    void moveFirst();
    void moveLast();
    void move(int rows);

    /// @throws Error 3021 no current row, 3167 the current row was deleted
    void requireCurrent();
    /// @throws Error also 3167 for a memo whose row is gone from the file meanwhile, 3420 for one of a closed file
    Value value(int column);
    /// The row's key if it can be edited, else its place.
    qint64 bookmark();
    void setBookmark(qint64 bookmark);

    /// Goes to the first row that satisfies the condition; false leaves the current row as it is.
    bool find(const QString& criteria);

    /// After changes in the file: of the current row, whose key is now `key`; of a new row; of the current row's end.
    void changed(qint64 key);
    void added(qint64 key);
    void removed();
    /// Reads the current row again before it is edited or deleted. @throws Error 3167 it is gone, or its row number
    /// belongs to another entry now
    void refresh();
    /// To be called before the current row is deleted in the file.
    void prepareRemoval();
    /// The table that the rows are of, attached.
    TableInfo reachTable(Attachments::Use& use);

private:
    static constexpr int recordDeleted = 3167;

    enum class Place {
        Before,
        At, ///< position_ in memory
        After,
        Deleted, ///< the current row is gone; position_ is that of the row behind it
        First,   ///< not in memory: the first row
        Last,    ///< not in memory: the last row
        Fetched  ///< not in memory but for the row in fetched_
    };

    /// Up to which change of the table the rows are current.
    struct Seen {
        quint64 own = 0;   ///< by this connection
        qint64 others = 0; ///< changes with what others write, as long as the file stays open
        int opening = 0;   ///< counts how often the file was opened
        friend bool operator==(const Seen&, const Seen&) = default;
    };

    void open();
    void narrow();
    void endUnlessOwn(Reading& reading) const;
    Seen seenNow() const;
    void readAll(const QString& sql);
    void load();
    void arriveAt(Place place, qint64 key);
    void sortRows();
    bool fetch(const QString& sql, std::optional<qint64> key = std::nullopt);
    bool fetchKey(qint64 key);
    void ensureFetched();
    QString orderedSql() const;
    size_t rowAt(size_t position) const { return hasOrder_ ? order_[position] : position; }
    size_t rowCount() const { return hasOrder_ ? order_.size() : rows_.size(); }
    void writeOrder();
    size_t positionOf(size_t row) const;
    bool findInFile(const QString& criteria);
    bool findInMemory(const QString& criteria);
    std::optional<size_t> search(const Criteria& criteria);
    bool readRow(qint64 key, const std::function<void(sqlite3_stmt*)>& take);
    bool isSameEntry(sqlite3_stmt* row, size_t known);
    Value contentOf(size_t row, int column);
    Value contentInFile(size_t row, int column);
    void catchUp();
    void forgetSearches();

    Source source_;
    BoundStatement bound_;
    bool loaded_ = false;
    Place place_ = Place::Before;
    size_t position_ = 0;
    Rows rows_;
    Seen seen_;
    bool hasOrder_ = false;
    std::vector<quint32> order_; ///< rows by position, once it is not the order in which they were read
    Rows fetched_;
    std::optional<bool> empty_; ///< what is known of a table that isn't in memory
    std::optional<int> count_;
    qint64 deletedKey_ = 0;

    QString compiledText_;
    std::unique_ptr<Criteria> compiled_;
    std::map<int, EqualityIndex> indexes_;
    std::map<int, int> searches_;
};

} // namespace dao
