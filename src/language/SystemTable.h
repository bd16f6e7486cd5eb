#pragma once

#include "platform/dao/DBEngine.h"
#include "platform/dao/Error.h"

#include <QString>

/// What the classes over the system database (CSys, CText, CCtrl) share.
namespace SystemTable {

/// Path of the system database in the application folder.
QString path();
/// The message for a system database that is not there.
QString missingText(const QString& path);
/// The message for a system database that does not open, in both languages.
QString notOpenedText(const QString& path);
/// What an object says of an error: procedure, number, description.
QString errorText(const QString& procedure, const dao::Error& error);

/// A text without blanks at its ends, in upper case letter by letter: what the text table is ordered and
/// searched by.
QString searchForm(const QString& text);
/// Order of two search forms, the engine's own.
int compareSearchForms(const QString& a, const QString& b);

} // namespace SystemTable

/// Status and message of one of these objects: -1 after a failure, with the message to show.
class ObjectStatus {
public:
    qint16 Status() const { return status_; }
    QString ErrorMessage() const { return message_; }
    /// The last message, the same as ErrorMessage.
    QString Message() const { return message_; }

protected:
    void fail(const QString& message) {
        status_ = -1;
        message_ = message;
    }
    void succeed() {
        status_ = 0;
        message_.clear();
    }
    /// Opens the system database. @return nothing when it is not there or does not open; then the failure is
    /// set
    dao::DatabasePtr open(const QString& path);

private:
    qint16 status_ = 0;
    QString message_;
};
