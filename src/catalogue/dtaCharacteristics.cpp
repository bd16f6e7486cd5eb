#include "catalogue/dtaCharacteristics.h"

#include "catalogue/DtaFile.h"
#include "catalogue/importTexts.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 maxSection = 64'000'000;

QString textOf(const QByteArray& bytes) {
    return QString::fromUtf8(bytes.constData(), qstrnlen(bytes.constData(), static_cast<size_t>(bytes.size())));
}

/// Calls `each` with variable ("_dta" for the file), name and content of each characteristic.
template<class Each>
void walk(const QString& path, Each&& each) {
    DtaFile dta(path);
    if (!dta.goToCharacteristics())
        return;
    const int name = dta.nameBytes();
    for (qint64 total = 0; total < maxSection;) {
        const std::optional<QByteArray> entry = dta.nextCharacteristic();
        if (!entry || entry->size() < 2 * name)
            return;
        total += entry->size();
        each(textOf(entry->left(name)), textOf(entry->mid(name, name)), textOf(entry->mid(2 * name)));
    }
}

} // namespace

QStringList dtaCharacteristics(const QString& path) {
    static const QRegularExpression note(u"\\Anote\\d+\\z"_s);
    int notes = 0, others = 0;
    QString languages;
    walk(path, [&](const QString& variable, const QString& name, const QString& content) {
        const bool ofFile = variable == u"_dta"_s;
        if (name == u"note0"_s) // the number of notes
            return;
        if (ofFile && name == u"_lang_list"_s)
            languages = content.simplified();
        else if (note.match(name).hasMatch())
            notes += !ofFile; // the file's own notes are taken over
        else if (!name.startsWith(u"_lang_"_s))
            ++others;
    });
    QStringList found;
    if (notes > 0)
        found << said(u"%1 Anmerkungen zu Variablen"_s, u"%1 notes on variables"_s).arg(notes);
    if (languages.contains(u' '))
        found << said(u"Labels in anderen Sprachen als der eingestellten (%1)"_s,
                      u"labels in languages other than the current one (%1)"_s)
                     .arg(languages);
    if (others > 0)
        found << said(u"%1 eigene Merkmale (characteristics) der Datei oder ihrer Variablen"_s,
                      u"%1 characteristics of the file or its variables"_s)
                     .arg(others);
    return found;
}
