#pragma once

#include "app/globals.h"
#include "language/CText.h"
#include "language/SystemDatabase.h"
#include "language/SystemTable.h"

#include <QDir>
#include <gtest/gtest.h>

/// The rows of the system database that are kept beside the sources.
inline SystemRows keptRows() {
    const QString resources = QStringLiteral(VARIDEX_SOURCE_ROOT "/resources/");
    const QStringList rowFiles{QStringLiteral("*.tsv")};
    SystemRows rows;
    for (const QFileInfo& file : QDir(resources + QStringLiteral("texts")).entryInfoList(rowFiles))
        EXPECT_EQ(readTextRows(file.filePath(), rows), QStringList());
    for (const QFileInfo& file : QDir(resources + QStringLiteral("controls")).entryInfoList(rowFiles))
        EXPECT_EQ(readControlRows(file.filePath(), rows), QStringList());
    EXPECT_GT(rows.texts.size(), 0u);
    return rows;
}

/// Makes them the system database of the test's home, and reads its text table.
inline void loadKeptTexts() {
    EXPECT_EQ(makeSystemDatabase(SystemTable::path(), keptRows()), QStringList());
    gTextObject.DatabaseName = SystemTable::path();
    gTextObject.LoadTextTable();
    EXPECT_EQ(gTextObject.Status(), 0) << qPrintable(gTextObject.ErrorMessage());
}
