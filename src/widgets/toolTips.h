#pragma once

#include <QString>
#include <QTextDocument>

/// A tooltip that shows a text as it stands: long ones wrap, and none is read as markup.
inline QString plainToolTip(const QString& text) {
    return text.trimmed().isEmpty() ? QString() : Qt::convertFromPlainText(text);
}

/// The same for a short text: it stays as it is unless it would be read as markup.
inline QString asToolTip(const QString& text) {
    return Qt::mightBeRichText(text) ? plainToolTip(text) : text;
}
