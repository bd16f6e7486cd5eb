#pragma once

#include <QAbstractScrollArea>
#include <QPainter>

/// Writes into a list without rows what there would be to say or do.
inline void paintHint(QAbstractScrollArea& list, const QString& hint) {
    QPainter painter(list.viewport());
    painter.setPen(list.palette().color(QPalette::PlaceholderText));
    const int margin = list.fontMetrics().height();
    painter.drawText(list.viewport()->rect().adjusted(margin, margin, -margin, -margin),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, hint);
}
