#include "catalogue/SurveyPass.h"

#include "catalogue/importTexts.h"

using namespace Qt::StringLiterals;

QString unreadableText(const QString& where) {
    return said(u"%1: Der Text kann nicht gelesen werden. Geben Sie die Zeichenkodierung der Datei mit "
                u"--encoding "
                "an, z.B. --encoding WINDOWS-1252"_s,
                u"%1: The text cannot be read. Name the file's character encoding with --encoding, for "
                u"example "
                "--encoding WINDOWS-1252"_s)
        .arg(where);
}

QString variableWord(const QString& name) {
    return said(u"Variable %1"_s, u"Variable %1"_s).arg(name);
}
