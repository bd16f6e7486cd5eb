#pragma once

#include "language/SystemTable.h"

/// The settings in the system database: language and whether the start window shows.
///
/// A failure stays in Status until the object goes, so that one test after several calls finds it.
class CSys : public ObjectStatus {
public:
    QString DatabaseName;

    /// 1 if the start window shows; 1 too if that cannot be read.
    qint16 GetFormStatus();
    void SetFormStatus(qint16 value);
    /// 0 German, 1 English; 0 if it cannot be read.
    qint16 GetLanguage();
    void SetLanguage(qint16 value);

private:
    qint16 readSetting(const QString& query, const QString& procedure, qint16 byDefault);
    void writeSetting(const QString& key, qint16 value, const QString& procedure);
};
