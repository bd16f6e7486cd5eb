#include "diagnostics/LogFile.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>

namespace {

/// The last lines that fit into `most` bytes, but the last one whatever its length.
QByteArray newestLines(const QByteArray& text, qsizetype most) {
    const qsizetype firstThatFits = text.indexOf('\n', text.size() - most - 1) + 1;
    if (firstThatFits > 0 && firstThatFits < text.size())
        return text.mid(firstThatFits);
    return text.mid(text.lastIndexOf('\n', text.size() - 2) + 1);
}

} // namespace

void LogFile::append(const QString& path, const QString& entry) {
    const QByteArray added = entry.toUtf8();
    if (QFileInfo(path).size() + added.size() <= mostBytes) {
        QFile log(path);
        if (log.open(QIODevice::WriteOnly | QIODevice::Append))
            log.write(added);
        return;
    }
    // Of a log that grew without a limit no more is read than can stay.
    QFile before(path);
    if (!before.open(QIODevice::ReadOnly) || !before.seek(std::max<qint64>(0, before.size() - mostBytes / 2 - 1)))
        return;
    const QByteArray kept = newestLines(before.read(mostBytes) + added, mostBytes / 2);
    QSaveFile log(path);
    if (log.open(QIODevice::WriteOnly) && log.write(kept) == kept.size())
        log.commit();
}
