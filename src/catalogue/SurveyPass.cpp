#include "catalogue/SurveyPass.h"

#include "catalogue/importTexts.h"

using namespace Qt::StringLiterals;

void SurveyPass::formatIs(int format) {
    if (format < 104) // of another kind of file, whose names end with a zero
        return;
    setBytesOfVariable = format >= 118 ? 129 : format >= 110 ? 33 : 9;
    setBytesOfLabels = format >= 118 ? 129 : format >= 105 ? 33 : 12;
}

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
