#include "search/SearchTerms.h"

#include "config/CProfile.h"
#include "platform/system/Registry.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

const QString setting = u"SearchTerms"_s;
constexpr qsizetype longest = 200;

} // namespace

QStringList SearchTerms::stored() {
    QStringList terms;
    for (const QString& term : storedSetting(setting, QString()).toString().split(u' ', Qt::SkipEmptyParts))
        if (const QString decoded = QUrl::fromPercentEncoding(term.toUtf8()); !decoded.isEmpty() && terms.size() < most)
            terms << decoded;
    return terms;
}

/// No message if it fails: a lost term is no lost work.
void SearchTerms::remember(const QString& term) {
    if (term.trimmed().isEmpty() || term.size() > longest)
        return;
    QStringList terms = stored();
    terms.removeAll(term);
    terms.prepend(term);
    QStringList encoded;
    for (const QString& one : terms.mid(0, most))
        encoded << QString::fromLatin1(QUrl::toPercentEncoding(one));
    Registry::Entry entry;
    entry.text = encoded.join(u' ');
    Registry::write(Registry::CurrentUser, SettingsKeys::user, setting, entry);
}
