#pragma once

#include "language/SystemTable.h"

#include <QStringList>
#include <vector>

/// The table of free texts, German to English; held in memory, found by binary search.
class CText : public ObjectStatus {
public:
    QString DatabaseName;
    qint16 LANGUAGE = 0;

    /// Reads the table from the system database. After a failure Status is -1 and the table empty.
    void LoadTextTable();
    /// The English of a German text, found without regard to case and to blanks at its ends; the text itself
    /// if the table lacks it.
    QString TLE(const QString& text) const;

private:
    struct Row {
        QString german, english;
        QString searched; ///< the German text as the search compares it
    };
    std::vector<Row> rows_;

    void readRows(const dao::DatabasePtr& database);
    int m_BinarySearchVariant(const QString& text) const;
};
