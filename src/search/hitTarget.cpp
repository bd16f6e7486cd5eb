#include "search/hitTarget.h"

#include "explorer/CatalogueTree.h"

using namespace Qt::StringLiterals;

std::optional<HitTarget> hitTarget(const QString& key) {
    if (key.size() < 2)
        return std::nullopt;
    HitTarget target;
    const QChar kind = key[0];
    target.view = viewOfKey(key.mid(1));
    if (target.view < 1)
        return std::nullopt;
    if (kind == u'S' || kind == u'B') {
        target.window = kind == u'B' ? HitTarget::Window::Description : HitTarget::Window::Explorer;
        target.entryKey = key.mid(2);
        target.nodeKey = key.mid(1);
        return target;
    }
    // A name may hold the sign, a number doesn't.
    const qsizetype sign = key.lastIndexOf(u"@@"_s);
    if (kind != u'V' || sign < 2)
        return std::nullopt;
    target.variable = key.mid(2, sign - 2);
    target.study = key.mid(sign + 2);
    target.nodeKey = viewLetter(target.view) + target.study;
    return target;
}
