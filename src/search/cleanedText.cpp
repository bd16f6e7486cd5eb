#include "search/cleanedText.h"

QString cleanedText(const QString& text) {
    QString cleaned;
    cleaned.reserve(text.size());
    bool afterBlank = false;
    for (const QChar character : text) {
        if (character == u'\r' || character == u'\n') {
            if (character == u'\n')
                cleaned += u' ';
            afterBlank = false;
        } else if (character != u' ' || !afterBlank) {
            cleaned += character;
            afterBlank = character == u' ';
        }
    }
    return cleaned;
}
