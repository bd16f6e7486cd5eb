#include "search/EntryWays.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "explorer/EntryColumns.h"
#include "explorer/iconNames.h"
#include "platform/dao/TextOrder.h"
#include "search/cleanedText.h"

#include <QSet>
#include <QStringList>

using namespace Qt::StringLiterals;

const QHash<QString, EntryWays::Entry>& EntryWays::entriesOf(int view) {
    const auto known = views_.constFind(view);
    if (known != views_.constEnd())
        return *known;
    QHash<QString, Entry>& entries = views_[view];
    const EntryColumns columns(isStudyView(view), english_);
    try {
        const dao::RecordsetPtr rows = gDatabase.CurrentDatabase()->OpenColumns(
            u"SELECT "_s + columns.key + u", "_s + columns.parent + u", "_s + columns.text + u" FROM tkey_"_s +
                gViews.at(view, ViewTable::Table) + u';',
            {columns.key, columns.parent, columns.text});
        for (; !rows->Eof(); rows->MoveNext()) {
            const QString key = rows->value(0).toText();
            const QString name = cleanedText(rows->value(2).toText());
            entries.insert(dao::foldedText(key), {rows->value(1).toText(), name.isEmpty() ? key : name});
        }
    } catch (const dao::Error&) {
        // The hit itself is what was looked for; whoever opens it hears of the fault.
    }
    return entries;
}

QString EntryWays::way(int view, const QString& key, bool whole) {
    const QHash<QString, Entry>& entries = entriesOf(view);
    QStringList names;
    QSet<QString> passed; // an entry may stand below itself
    for (QString at = dao::foldedText(key); !passed.contains(at);) {
        const auto entry = entries.constFind(at);
        if (entry == entries.constEnd())
            break;
        names.prepend(entry->name);
        passed.insert(at);
        at = dao::foldedText(entry->parent);
    }
    if (!whole && !names.isEmpty())
        names.removeLast();
    return (QStringList{viewName(view)} + names).join(u" › "_s);
}
