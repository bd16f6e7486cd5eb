#include "catalogue/ArchiveFiles.h"

#include "catalogue/CatalogueImport.h"
#include "catalogue/importTexts.h"
#include "platform/dao/DBEngine.h"
#include "platform/system/Paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>

using namespace Qt::StringLiterals;

namespace archive {

namespace {

QString folderOf(const QString& path) {
    return QFileInfo(path).absolutePath();
}

ImportError thereAlready(const QString& path) {
    return ImportError(
        said(u"'%1' ist schon da; mit --replace wird es ersetzt."_s, u"'%1' is there already; --replace replaces it."_s)
            .arg(Paths::native(path)));
}

/// What is replaced must be a catalogue. Opening it also brings an unfinished transaction to its end and
/// finds out whether another program is writing.
void checkReplaced(const QString& catalogue) {
    const dao::DatabasePtr old = dao::DBEngine::instance().Workspaces(0).OpenDatabase(catalogue);
    const bool isCatalogue = old->TableDefs().contains(u"tsys_Options"_s) || old->TableDefs().contains(u"tkey_Study"_s);
    old->Close();
    if (!isCatalogue)
        throw ImportError(
            said(u"'%1' ist kein Katalog und wird nicht ersetzt."_s, u"'%1' is no catalogue and is not replaced."_s)
                .arg(Paths::native(catalogue)));
}

/// Case files of a study beside the catalogue: "<number>.mdb" and those of single tables, "<number>-2.mdb".
/// One of these that the build does not write would be taken for the table's file.
QStringList caseFilesThere(const QDir& folder, const QString& number) {
    const QRegularExpression pattern(u"^%1(-[0-9]+)?\\.mdb$"_s.arg(number), QRegularExpression::CaseInsensitiveOption);
    return folder.entryList({number + u"*.mdb"_s}, QDir::Files).filter(pattern);
}

/// Files of every show card of the description, each once, with the place that names it first.
std::vector<std::pair<QString, QString>> showCards(const Description& description) {
    std::vector<std::pair<QString, QString>> cards;
    QSet<QString> seen;
    const auto take = [&](const std::vector<VariableTexts>& variables) {
        for (const VariableTexts& variable : variables)
            for (const auto& card : {variable.showCard.original, variable.showCard.english}) {
                const QString file = QString(card.value_or(QString())).replace(u'\\', u'/');
                if (!file.isEmpty() && !seen.contains(file)) {
                    seen.insert(file);
                    cards.emplace_back(file, variable.place + u".showCard"_s);
                }
            }
    };
    take(description.variables);
    for (const View& view : description.views)
        for (const Study& study : view.studies)
            take(study.variables);
    return cards;
}

bool sameContent(const QString& a, const QString& b) {
    QFile first(a), second(b);
    return first.open(QIODevice::ReadOnly) && second.open(QIODevice::ReadOnly) && first.readAll() == second.readAll();
}

/// The questionnaires that the opener looks for: one for each part if the study has parts, else one for the
/// study.
QStringList questionnairesOf(const Study& study) {
    if (study.parts.empty())
        return {study.number + u".pdf"_s};
    QStringList files;
    for (const Part& part : study.parts)
        files << study.number + part.number + u".pdf"_s;
    return files;
}

} // namespace

QString pathOf(const Description& description, const QString& path) {
    return QDir(folderOf(description.file)).absoluteFilePath(QString(path).replace(u'\\', u'/'));
}

QStringList checkFiles(const Description& description, const BuildRequest& request) {
    if (QFileInfo::exists(request.catalogue)) {
        if (!request.replace)
            throw thereAlready(request.catalogue);
        checkReplaced(request.catalogue);
    }
    const QDir folder(folderOf(request.catalogue));
    QStringList outdated;
    for (const View& view : description.views)
        for (const Study& study : view.studies) {
            if (study.isGroup)
                continue;
            if (!QFileInfo(pathOf(description, study.file)).isFile())
                throw ImportError(description.at(study.place + u".file"_s,
                                                 said(u"die Datei '%1' ist nicht da"_s, u"the file '%1' is not there"_s)
                                                     .arg(Paths::native(pathOf(description, study.file)))));
            const QStringList there = caseFilesThere(folder, study.number);
            if (!there.isEmpty() && !request.replace)
                throw thereAlready(folder.absoluteFilePath(there.first()));
            outdated << there;
            if (QFileInfo(request.catalogue).fileName().compare(study.number + u".mdb"_s, Qt::CaseInsensitive) == 0)
                throw ImportError(description.at(study.place, said(u"die Studie heißt wie der Katalog"_s,
                                                                   u"the study is named like the catalogue"_s)));
        }
    return outdated;
}

void bringPictures(const Description& description, const BuildRequest& request, const QString& folder,
                   BuildReport& report) {
    const QDir target(folderOf(request.catalogue));
    const bool sameFolder = target.canonicalPath() == QDir(folderOf(description.file)).canonicalPath();
    for (const auto& [file, place] : showCards(description)) {
        const QString source = pathOf(description, file);
        if (!QFileInfo(source).isFile()) {
            report.warnings << description.at(
                place, said(u"das Bild '%1' ist nicht da"_s, u"the picture '%1' is not there"_s).arg(file));
            continue;
        }
        const QString there = target.absoluteFilePath(file);
        if (sameFolder || sameContent(source, there))
            continue;
        if (QFileInfo::exists(there) && !request.replace)
            throw thereAlready(there);
        const QString copy = folder + u'/' + file;
        QFile from(source);
        if (!QDir().mkpath(folderOf(copy)) || !from.copy(copy))
            throw ImportError(description.at(place, said(u"das Bild '%1' kann nicht kopiert werden: %2"_s,
                                                         u"the picture '%1' cannot be copied: %2"_s)
                                                        .arg(file, from.errorString())));
    }
}

void checkDocuments(const Description& description, BuildReport& report) {
    const auto require = [&](const QString& folder, const QString& file, const QString& place, const QString& message) {
        if (!folder.isEmpty() && !QFileInfo(pathOf(description, folder + u'/' + file)).isFile())
            report.warnings << description.at(place, message.arg(file));
    };
    for (const View& view : description.views)
        for (const Study& study : view.studies) {
            if (study.isGroup)
                continue;
            for (const QString& file : questionnairesOf(study))
                require(description.questionnaires, file, study.place,
                        said(u"der Fragebogen '%1' ist nicht da"_s, u"the questionnaire '%1' is not there"_s));
            require(description.dataSets, study.number + u".sav"_s, study.place,
                    said(u"der Datensatz '%1' ist nicht da"_s, u"the data set '%1' is not there"_s));
        }
}

} // namespace archive
