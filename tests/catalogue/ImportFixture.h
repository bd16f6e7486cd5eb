#pragma once

#include "catalogue/CatalogueImport.h"
#include "platform/dao/DBEngine.h"
#include "support/SurveyFileMaker.h"
#include "support/TestHome.h"

#include <QMap>
#include <gtest/gtest.h>

/// A folder with a catalogue to import into, and ways to look at what came out.
class ImportFixture : public ::testing::Test {
protected:
    TestHome home;
    QString catalogue = home.path(QStringLiteral("my.mdb"));

    ImportRequest request(const QString& file, const QString& study) const;
    /// Imports, and returns the message of a refusal or failure, empty if it went well.
    QString outcome(const ImportRequest& request);
    ImportReport report; ///< of the last import that went well

    /// Rows of a statement on a database file, fields separated by "|", Null as "NULL".
    static QStringList rows(const QString& file, const QString& statement);
    static void execute(const QString& file, const QString& statement);
    /// True if one of the last import's facts holds all the words.
    bool hasFact(const QStringList& words) const;

    /// Names and contents of all files in the folder.
    QMap<QString, QByteArray> folder() const;
};
