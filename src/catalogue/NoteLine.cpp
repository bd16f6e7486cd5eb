#include "catalogue/NoteLine.h"

QByteArray NoteLine::text() const {
    return mark.toUtf8() + '\t' + identity.toUtf8() + '\t' + path.toUtf8().toPercentEncoding("/ ") + '\n';
}

QList<NoteLine> noteLines(const QByteArray& content) {
    QList<NoteLine> lines;
    for (const QByteArray& line : content.split('\n')) {
        const QList<QByteArray> parts = line.split('\t');
        if (parts.size() == 3)
            lines << NoteLine{QString::fromUtf8(parts[0]), QString::fromUtf8(parts[1]),
                              QString::fromUtf8(QByteArray::fromPercentEncoding(parts[2]))};
    }
    return lines;
}
