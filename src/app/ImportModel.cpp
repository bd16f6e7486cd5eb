#include "app/ImportModel.h"

#include "app/globals.h"
#include "catalogue/fileKind.h"
#include "catalogue/importNames.h"
#include "platform/system/Paths.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

constexpr int mostLetters = 20; ///< of a proposed number, which stands in the names of tables

/// Letters and digits of a text, those with marks without them.
QString plainLetters(const QString& text) {
    QString spelled = text;
    for (const auto& [letter, letters] :
         {std::pair(u"ä"_s, u"ae"_s), std::pair(u"ö"_s, u"oe"_s), std::pair(u"ü"_s, u"ue"_s),
          std::pair(u"ß"_s, u"ss"_s), std::pair(u"Ä"_s, u"Ae"_s), std::pair(u"Ö"_s, u"Oe"_s),
          std::pair(u"Ü"_s, u"Ue"_s)})
        spelled.replace(letter, letters);
    QString plain;
    for (const QChar c : spelled.normalized(QString::NormalizationForm_D))
        if (c.unicode() < 128 && c.isLetterOrNumber())
            plain += c;
    return plain;
}

} // namespace

ImportModel::ImportModel(const QString& file, const QString& catalogue) : file_(file), fileFault_(faultOfFile()) {
    setCatalogue(catalogue);
}

void ImportModel::setFile(const QString& file) {
    file_ = file.trimmed();
    fileFault_ = faultOfFile();
    propose();
}

void ImportModel::setCatalogue(const QString& catalogue) {
    catalogue_ = catalogue.trimmed();
    taken_.clear();
    catalogueFault_.clear();
    isNew_ = !catalogue_.isEmpty() && !Paths::exists(catalogue_);
    if (isNew_ && !QFileInfo(Paths::onDisk(Paths::folderOf(catalogue_))).isDir())
        catalogueFault_ = TranslateText(u"Diesen Ordner gibt es nicht."_s);
    else if (isNew_ && !catalogue_.endsWith(u".mdb"_s, Qt::CaseInsensitive) &&
             !catalogue_.endsWith(u".klor"_s, Qt::CaseInsensitive))
        catalogueFault_ = TranslateText(u"Ein Katalog hat die Endung .mdb oder .klor."_s);
    else if (!isNew_ && QFileInfo(Paths::onDisk(catalogue_)).isDir() && !catalogue_.isEmpty())
        catalogueFault_ = TranslateText(u"Das ist ein Ordner."_s);
    else if (!isNew_ && !catalogue_.isEmpty()) {
        if (const QString words = kindWords(kindOfFile(catalogue_, true)); words.isEmpty())
            taken_ = studyNumbersIn(catalogue_);
        else
            catalogueFault_ = TranslateText(u"Die Datei"_s) + u' ' + words;
    }
    propose();
}

void ImportModel::setStudy(const QString& study) {
    study_ = study.trimmed();
    typed_ = !study_.isEmpty();
}

void ImportModel::propose() {
    if (typed_)
        return;
    QStringList taken = taken_;
    // A case file that lies there, or the catalogue itself, would be in the way of the study's own.
    for (const QFileInfo& file : QDir(Paths::onDisk(Paths::folderOf(catalogue_))).entryInfoList({u"*.mdb"_s}))
        taken << file.completeBaseName().section(u'-', 0, 0);
    if (isNew_)
        taken << QFileInfo(catalogue_).completeBaseName();
    study_ = file_.isEmpty() ? QString() : proposedStudy(file_, taken);
}

/// Asked for once for each text: the file may lie far away.
QString ImportModel::faultOfFile() const {
    if (file_.isEmpty())
        return {};
    if (!QFileInfo(Paths::onDisk(file_)).isFile())
        return TranslateText(u"Datei nicht gefunden."_s);
    return kindOfFile(file_, true).canBeImported
               ? QString()
               : TranslateText(u"Das ist keine Datei mit der Endung .sav, .zsav, .por "
                               u"oder .dta."_s);
}

QString ImportModel::studyFault() const {
    if (study_.isEmpty())
        return {};
    if (const QString fault = studyNumberFault(study_); !fault.isEmpty())
        return fault;
    return isTaken() && !replace ? TranslateText(u"Eine Studie dieser Nummer gibt es schon."_s) : QString();
}

QString ImportModel::catalogueNote() const {
    if (catalogue_.isEmpty() || !catalogueFault_.isEmpty())
        return {};
    if (isNew_)
        return TranslateText(u"Der Katalog wird neu angelegt."_s);
    return TranslateText(u"Studien und Gruppen im Katalog: %1"_s).arg(taken_.size());
}

bool ImportModel::mayRun() const {
    return !file_.isEmpty() && !catalogue_.isEmpty() && !study_.isEmpty() && fileFault().isEmpty() &&
           catalogueFault().isEmpty() && studyFault().isEmpty();
}

QStringList ImportModel::arguments() const {
    QStringList all{u"import"_s, QFileInfo(Paths::onDisk(catalogue_)).absoluteFilePath(),
                    QFileInfo(Paths::onDisk(file_)).absoluteFilePath(), u"--study"_s, study_};
    // In one piece, so that a title may begin with any sign.
    if (!title.trimmed().isEmpty())
        all << u"--title="_s + title.trimmed();
    if (replace)
        all << u"--replace"_s;
    if (encode)
        all << u"--encode"_s;
    return all;
}

QString ImportModel::proposedStudy(const QString& file, const QStringList& taken) {
    QString stem = plainLetters(QFileInfo(file).completeBaseName()).left(mostLetters);
    if (stem.isEmpty() || !stem.front().isLetter())
        stem.prepend(u'S');
    if (!studyNumberFault(stem).isEmpty())
        stem = u"Studie"_s;
    QString number = stem;
    for (int i = 2; taken.contains(number, Qt::CaseInsensitive); ++i)
        number = stem + (stem.back().isDigit() ? u"x"_s : QString()) + QString::number(i);
    return number;
}
