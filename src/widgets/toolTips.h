#pragma once

#include <QString>
#include <QTextDocument>

/// A tooltip that shows a text as it stands: long ones wrap, and none is read as markup.
inline QString plainToolTip(const QString& text) {
    return text.trimmed().isEmpty() ? QString() : Qt::convertFromPlainText(text);
}
