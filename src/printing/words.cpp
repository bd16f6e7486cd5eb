#include "printing/words.h"

#include "app/globals.h"
#include "language/CText.h"

QString reportWord(const QString& german, int language) {
    return language == 2 ? gTextObject.TLE(german) : german;
}
