#include "printing/Spool.h"

#include <QDateTime>
#include <QFileInfo>
#include <QtEndian>

using namespace Qt::StringLiterals;

qint64 Spool::putFile(const QString& path) {
    const QFileInfo info(path);
    const QString stamp = u"%1|%2|%3"_s.arg(path).arg(info.size()).arg(info.lastModified().toMSecsSinceEpoch());
    if (const auto known = files_.constFind(stamp); known != files_.constEnd())
        return *known;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray bytes = file.readAll();
    const qint64 place = file.error() == QFileDevice::NoError ? put(bytes) : -1;
    if (place >= 0)
        files_.insert(stamp, place);
    return place;
}

qint64 Spool::put(const QByteArray& bytes) {
    char head[sizeof(quint32)];
    qToBigEndian(static_cast<quint32>(bytes.size()), head);
    const bool open = fault_.isEmpty() && (file_.isOpen() || file_.open());
    // What is only buffered has not been kept: a full disk shows when it is written.
    if (!open || !file_.seek(end_) || file_.write(head, sizeof head) != sizeof head ||
        file_.write(bytes) != bytes.size() || !file_.flush()) {
        if (fault_.isEmpty())
            fault_ = file_.errorString();
        return -1;
    }
    const qint64 place = end_;
    end_ += static_cast<qint64>(sizeof head) + bytes.size();
    return place;
}

QByteArray Spool::get(qint64 place) const {
    char head[sizeof(quint32)];
    if (place < 0 || !file_.seek(place) || file_.read(head, sizeof head) != sizeof head)
        return {};
    const auto size = static_cast<qint64>(qFromBigEndian<quint32>(head));
    QByteArray bytes = place + size > end_ ? QByteArray() : file_.read(size);
    return bytes.size() == size ? bytes : QByteArray();
}
