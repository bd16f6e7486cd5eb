#include "language/CSys.h"

using namespace Qt::StringLiterals;

qint16 CSys::GetFormStatus() {
    return readSetting(u"qdfSysForm"_s, u"GetFormStatus"_s, 1);
}

void CSys::SetFormStatus(qint16 value) {
    writeSetting(u"ShowForm"_s, value, u"SetFormStatus"_s);
}

qint16 CSys::GetLanguage() {
    return readSetting(u"qdfSysLanguage"_s, u"GetLanguage"_s, 0);
}

void CSys::SetLanguage(qint16 value) {
    writeSetting(u"Language"_s, value, u"SetLanguage"_s);
}

qint16 CSys::readSetting(const QString& query, const QString& procedure, qint16 byDefault) {
    const dao::DatabasePtr database = open(DatabaseName);
    if (!database)
        return byDefault;
    try {
        const dao::RecordsetPtr setting = database->OpenRecordset(query, dao::dbOpenSnapshot);
        const auto value = static_cast<qint16>(setting->value(u"wert"_s).toInteger());
        setting->Close();
        database->Close();
        return value;
    } catch (const dao::Error& error) {
        fail(SystemTable::errorText(procedure, error));
        return byDefault;
    }
}

void CSys::writeSetting(const QString& key, qint16 value, const QString& procedure) {
    const dao::DatabasePtr database = open(DatabaseName);
    if (!database)
        return;
    try {
        database->Execute(u"update sys set wert = "_s + QString::number(value) + u" where key "_s + u" = '"_s + key +
                              u"'"_s,
                          dao::dbFailOnError);
        if (database->RecordsAffected() == 0)
            fail(u"Es wurden keine Änderungen des Wertes "_s + key + u" vorgenommen!"_s);
        database->Close();
    } catch (const dao::Error& error) {
        fail(SystemTable::errorText(procedure, error));
    }
}
