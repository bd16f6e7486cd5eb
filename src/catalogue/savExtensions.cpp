#include "catalogue/savExtensions.h"

#include "catalogue/importTexts.h"
#include "catalogue/savDictionary.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

enum ExtensionType {
    VariableSets = 5,
    ResponseSets = 7,
    FileAttributes = 17,
    VariableAttributes = 18,
    NewResponseSets = 19,
    EncodingName = 20
};

QStringList namesBefore(const QString& text, QChar separator) {
    QStringList names;
    for (const QString& line : text.split(u'\n', Qt::SkipEmptyParts))
        if (const qsizetype end = line.indexOf(separator); end > 0)
            names << line.left(end).trimmed();
    return names;
}

} // namespace

QStringList savExtensions(const QString& path) {
    QStringList responseSets, variableSets;
    bool attributes = false;
    const SavDictionary walk(path, [&](qint32 type, const QByteArray& content) {
        const QString text = QString::fromUtf8(content);
        static const QRegularExpression role(u"\\$@Role\\([^)]*\\)"_s);
        switch (type) {
        case ResponseSets:
        case NewResponseSets:
            responseSets << namesBefore(text, u'=');
            break;
        case VariableSets:
            variableSets << namesBefore(text, u'=');
            break;
        case FileAttributes:
            attributes = attributes || text.contains(u'(');
            break;
        // The role of a variable in dialogs is no content.
        case VariableAttributes:
            attributes = attributes || QString(text).remove(role).contains(u'(');
            break;
        default:
            break;
        }
    });
    QStringList found;
    responseSets.removeDuplicates();
    if (!responseSets.isEmpty())
        found << said(u"Mehrfachantworten-Sets %1 (ihre Variablen sind übernommen)"_s,
                      u"multiple response sets %1 (their variables are taken over)"_s)
                     .arg(responseSets.join(u", "_s));
    if (!variableSets.isEmpty())
        found << said(u"Variablengruppen %1"_s, u"variable sets %1"_s).arg(variableSets.join(u", "_s));
    if (attributes)
        found << said(u"eigene Attribute der Datei oder ihrer Variablen"_s,
                      u"custom attributes of the file or its variables"_s);
    return found;
}

QByteArray savEncodingName(const QString& path) {
    QByteArray name;
    const SavDictionary walk(path, [&](qint32 type, const QByteArray& content) {
        if (type == EncodingName)
            name = QString::fromUtf8(content).trimmed().toLatin1();
    });
    return name;
}
