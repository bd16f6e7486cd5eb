#include "language/SystemTable.h"

#include "app/globals.h"
#include "diagnostics/errors.h"
#include "platform/dao/Value.h"
#include "platform/system/Paths.h"

using namespace Qt::StringLiterals;

QString SystemTable::path() {
    return Paths::join(Paths::applicationFolder(), u"Vx.mdb"_s);
}

QString SystemTable::missingText(const QString& path) {
    return said(u"Die Datenbankdatei "_s, u"The Database-File "_s) + path +
           said(u"\r\nkonnte nicht gefunden werden!"_s, u"\r\ncould not be found!"_s);
}

QString SystemTable::notOpenedText(const QString& path) {
    return u"The Database "_s + path + u"\r\ncould not be opened!"_s;
}

QString SystemTable::errorText(const QString& procedure, const dao::Error& error) {
    return procedureErrorText(error, procedure) + u"\r\n"_s;
}

QString SystemTable::searchForm(const QString& text) {
    qsizetype first = 0, last = text.size();
    while (first < last && text[first] == u' ')
        ++first;
    while (last > first && text[last - 1] == u' ')
        --last;
    QString form = text.mid(first, last - first);
    // Letter by letter: the engine's order knows simple pairs only, and "ß" stays one letter.
    for (QChar& c : form)
        c = c.toUpper();
    return form;
}

int SystemTable::compareSearchForms(const QString& a, const QString& b) {
    return dao::compareTexts(a, b);
}

dao::DatabasePtr ObjectStatus::open(const QString& path) {
    if (!Paths::exists(path)) {
        fail(SystemTable::missingText(path));
        return nullptr;
    }
    try {
        return dao::DBEngine::instance().OpenDatabase(Paths::onDisk(path));
    } catch (const dao::Error&) {
        fail(SystemTable::notOpenedText(path));
        return nullptr;
    }
}
