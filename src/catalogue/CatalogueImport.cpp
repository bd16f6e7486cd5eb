#include "catalogue/CatalogueImport.h"

#include "catalogue/CaseTables.h"
#include "catalogue/ImportGuard.h"
#include "catalogue/StudyWriter.h"
#include "catalogue/SurveyReader.h"
#include "catalogue/fileRights.h"
#include "catalogue/importTexts.h"
#include "catalogue/newCatalogue.h"
#include "catalogue/schema.h"
#include "platform/dao/Transaction.h"
#include "platform/system/Paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <map>

using namespace Qt::StringLiterals;

ImportError importCancelled() {
    return ImportError(said(u"Der Import wurde abgebrochen"_s, u"The import was cancelled"_s));
}

/// One survey file on its way into the catalogue.
struct SurveyImporter::Job {
    ImportSettings settings;
    QString study, folder, fileWeight;
    const std::unique_ptr<OpenSurvey> survey;
    SurveyReader& reader;
    const SurveyFile& head;
    std::vector<VariableNames> names;
    std::vector<CaseTable> tables;
    TaggedCodes codes;
    TextCodes textCodes;
    CaseWriter writer;
    std::map<QString, std::unique_ptr<dao::Companion>> files; ///< by path
    QStringList emptied;                                      ///< case files that have no table any more, by path
    bool isElsewhere = false;                                 ///< analyses do not find it by themselves
    qint64 cutTexts = 0;

    Job(std::unique_ptr<OpenSurvey> opened, const ImportSettings& wishes, const QHash<QString, QString>& fieldsBefore)
        : settings(wishes), survey(std::move(opened)), reader(survey->reader), head(survey->head), codes(head),
          textCodes(head), writer(head, codes, textCodes) {
        QStringList originals;
        for (const SurveyVariable& variable : head.variables)
            originals << variable.name;
        names = variableNames(originals, fieldsBefore);
        if (head.weight >= 0 && isNumeric(head, head.weight))
            fileWeight = names[static_cast<size_t>(head.weight)].name;
    }

    dao::Companion& fileOf(const CaseTable& table) { return *files.at(caseFileOf(folder, study, table)); }

    /// The weight as the catalogue will call it. @throws ImportError unless it is a numeric variable of the
    /// file
    void resolveWeight(std::optional<QString>& weight) const {
        if (!weight || weight->isEmpty())
            return;
        const std::optional<size_t> found = positionOf(names, *weight);
        if (!found)
            throw ImportError(said(u"Gewicht %1: Die Datei hat keine solche Variable"_s,
                                   u"Weight %1: The file has no such variable"_s)
                                  .arg(*weight));
        if (!isNumeric(head, static_cast<int>(*found)))
            throw ImportError(
                said(u"Gewicht %1 ist keine Zahlenvariable"_s, u"Weight %1 is not a numeric variable"_s).arg(*weight));
        weight = names[*found].name;
    }

    void chooseTextCodes();
    void checkPlace(const QString& home);
    void dropOldTables();
    void fill(dao::Database& catalogue, const std::function<bool(double)>& progress);
    QStringList textCodeFacts() const;
    QStringList facts(const ImportReport& report, const StudyContent& content, const QStringList& studyFacts) const;
};

namespace {

/// Names of the study's case files that are in the folder: "<study>.mdb" and "<study>-<number>.mdb".
QStringList presentCaseFiles(const QString& folder, const QString& study) {
    const QRegularExpression name(u"^%1(-\\d+)?\\.mdb$"_s.arg(study), QRegularExpression::CaseInsensitiveOption);
    QStringList paths;
    for (const QFileInfo& entry : QDir(folder).entryInfoList(QDir::Files | QDir::Hidden))
        if (name.match(entry.fileName()).hasMatch() && entry.size() > 0)
            paths << Paths::join(folder, entry.fileName());
    return paths;
}

bool sameFile(const QString& a, const QString& b) {
    return QFileInfo(a).absoluteFilePath().compare(QFileInfo(b).absoluteFilePath(), Qt::CaseInsensitive) == 0 ||
           (QFileInfo::exists(a) && QFileInfo(a).canonicalFilePath() == QFileInfo(b).canonicalFilePath());
}

/// Closes a database however the scope ends.
struct Closing {
    dao::DatabasePtr database;
    explicit Closing(dao::DatabasePtr opened) : database(std::move(opened)) {}
    ~Closing() { database->Close(); }
    Closing(const Closing&) = delete;
    Closing& operator=(const Closing&) = delete;
};

} // namespace

/// Analyses look beside the catalogue, `home`, unless they are given another folder. What lies there would be
/// counted in place of the cases that are written elsewhere.
void SurveyImporter::Job::checkPlace(const QString& home) {
    isElsewhere = !sameFile(folder, home);
    if (!isElsewhere)
        return;
    if (const QStringList there = presentCaseFiles(home, study); !there.isEmpty())
        throw ImportError(said(u"Neben dem Katalog liegt schon eine Falldatei der Studie (%1), die Auswertungen "
                               u"anstelle der neuen nehmen würden. Bringen Sie sie weg, oder importieren Sie "
                               u"ohne --data"_s,
                               u"There is a case file of the study beside the catalogue already (%1), which "
                               u"analyses would take in place of the new one. Move it away, or import without "
                               u"--data"_s)
                              .arg(there.front()));
}

/// @throws EncodeError for a name that no text variable of the file bears
void SurveyImporter::Job::chooseTextCodes() {
    for (const QString& name : std::as_const(settings.encode)) {
        const std::optional<size_t> found = positionOf(names, name);
        if (!found)
            throw EncodeError(said(u"In Zahlen umsetzen, %1: Die Datei hat keine solche Variable"_s,
                                   u"Encode as numbers, %1: The file has no such variable"_s)
                                  .arg(name));
        if (!head.variables[*found].isText)
            throw EncodeError(said(u"In Zahlen umsetzen, %1: Die Variable ist in der Datei kein Text"_s,
                                   u"Encode as numbers, %1: The variable is no text in the file"_s)
                                  .arg(name));
        textCodes.encode(static_cast<int>(*found), true);
    }
    if (settings.encodeAll)
        for (int i = 0; i < static_cast<int>(names.size()); ++i)
            if (textCodes.hasCodes(i))
                textCodes.encode(i, false);
}

void SurveyImporter::Job::dropOldTables() {
    const QRegularExpression own(u"^%1_\\d+$"_s.arg(study), QRegularExpression::CaseInsensitiveOption);
    for (const auto& [path, companion] : files)
        for (const QString& table : companion->tableNames())
            if (own.match(table).hasMatch())
                companion->dropTable(table);
}

void SurveyImporter::Job::fill(dao::Database& catalogue, const std::function<bool(double)>& progress) {
    QStringList hadTables;
    for (const auto& [path, companion] : files)
        if (!companion->tableNames().isEmpty())
            hadTables << path;
    for (bool isSettled = false; !isSettled;) {
        writer.reset();
        dropOldTables();
        for (const CaseTable& table : tables) {
            const schema::Table description = schema::cases(table.name, writer.fields(table, names));
            fileOf(table).createTable(*schema::definition(catalogue, description));
        }
        for (const CaseTable& table : tables)
            writer.addTable(
                table, fileOf(table).openAppender(table.name,
                                                  schema::cases(table.name, writer.fields(table, names)).fieldNames()));
        cutTexts = readCases(reader, head, writer, progress);
        const bool movedLetters = codes.settle();
        isSettled = !textCodes.settle() && !movedLetters;
    }
    for (const auto& [path, companion] : files)
        if (companion->tableNames().isEmpty() && hadTables.contains(path))
            emptied << path;
}

/// What became of text variables whose codes were to be numbers, apart from the codes themselves.
QStringList SurveyImporter::Job::textCodeFacts() const {
    QStringList lines;
    bool hasAny = false;
    for (size_t i = 0; i < names.size(); ++i) {
        const QString reason = textCodes.whyStillText(static_cast<int>(i));
        hasAny = hasAny || !reason.isEmpty() || textCodes.encodes(static_cast<int>(i));
        if (!reason.isEmpty())
            lines << said(u"%1: bleibt Text, %2"_s, u"%1: stays text, %2"_s).arg(names[i].name, reason) +
                         (head.variables[i].missingTexts
                              ? said(u"; die als fehlend erklärten stehen als gültige Codes"_s,
                                     u"; those declared missing stand as valid codes"_s)
                              : QString());
        if (const qint64 blanks = writer.blanks()[i]; blanks > 0)
            lines << said(u"%1: %2 leere Texte sind systembedingt fehlend"_s,
                          u"%1: %2 blank texts are system-missing"_s)
                         .arg(names[i].name)
                         .arg(blanks);
    }
    if (settings.encodeAll && !hasAny)
        lines << said(u"In Zahlen umzusetzen: keine Textvariable, deren Codes Labels haben oder als fehlend gelten"_s,
                      u"To be encoded as numbers: no text variable whose codes have labels or are declared missing"_s);
    return lines;
}

QStringList SurveyImporter::Job::facts(const ImportReport& report, const StudyContent& content,
                                       const QStringList& studyFacts) const {
    QStringList tableNames;
    for (const CaseTable& table : tables)
        tableNames << table.name;
    QStringList lines{
        said(u"Studie: %1"_s, u"Study: %1"_s).arg(study), said(u"Fälle: %1"_s, u"Cases: %1"_s).arg(report.cases),
        said(u"Variablen: %1"_s, u"Variables: %1"_s).arg(report.variables),
        said(u"Tabellen: %1 (%2)"_s, u"Tables: %1 (%2)"_s).arg(report.tables).arg(tableNames.join(u", "_s)),
        said(u"Wertelabels: %1"_s, u"Value labels: %1"_s).arg(report.labels)};
    if (isElsewhere)
        lines << said(u"Die Fälle liegen nicht neben dem Katalog; Auswertungen brauchen --data %1"_s,
                      u"The cases do not lie beside the catalogue; analyses need --data %1"_s)
                     .arg(Paths::native(folder));
    lines << studyFacts << content.facts;
    for (const QString& extra : head.extras)
        lines << said(u"Nicht übernommen: %1"_s, u"Not taken over: %1"_s).arg(extra);
    const auto counted = [&](const std::vector<qint64>& counts, const QString& german, const QString& english) {
        for (size_t i = 0; i < counts.size(); ++i)
            if (counts[i] > 0)
                lines << said(german, english).arg(names[i].name).arg(counts[i]);
    };
    counted(writer.noDates(), u"%1: %2 Werte sind kein Datum und stehen als Zahl da"_s,
            u"%1: %2 values are no date and stand as numbers"_s);
    counted(writer.rounded(), u"%1: %2 Zeiten sind auf Millisekunden gerundet"_s,
            u"%1: %2 times are rounded to milliseconds"_s);
    counted(writer.infinite(), u"%1: %2 unendliche Werte sind leer"_s, u"%1: %2 infinite values are empty"_s);
    lines << textCodeFacts();
    QStringList inexact;
    for (size_t i = 0; i < names.size(); ++i)
        if (reader.isInexact(i))
            inexact << names[i].name;
    if (!inexact.isEmpty())
        lines << said(u"Zahlen einfacher Genauigkeit, genau wie in der Datei (4,3 ist 4,30000019073486); ein "
                      u"Filter trifft sie mit einem Bereich wie %1>4,29 AND %1<4,31, nicht mit %1=4,3 (%2): %3"_s,
                      u"Numbers of single precision, exactly as in the file (4.3 is 4.30000019073486); a filter "
                      u"meets them by a range such as %1>4.29 AND %1<4.31, not by %1=4.3 (%2): %3"_s)
                     .arg(inexact.front(), QString::number(inexact.size()), inexact.join(u", "_s));
    if (cutTexts > 0)
        lines << said(u"%1 Texte waren mitten in einem Zeichen abgeschnitten; das halbe Zeichen fehlt"_s,
                      u"%1 texts were cut off within a character; the half character is left out"_s)
                     .arg(cutTexts);
    if (reader.lostTexts() > 0)
        lines << said(u"%1 Texte enthalten Zeichen, die eine .por-Datei nicht bewahrt; nehmen Sie .sav"_s,
                      u"%1 texts hold characters that a .por file does not keep; use .sav"_s)
                     .arg(reader.lostTexts());
    if (head.weight >= 0 && !isNumeric(head, head.weight))
        lines << said(u"Nicht übernommen: Gewicht der Datei %1, es ist keine Zahlenvariable"_s,
                      u"Not taken over: the file's weight %1, it is not a numeric variable"_s)
                     .arg(names[static_cast<size_t>(head.weight)].name);
    if (!head.saysRows)
        lines << said(u"Die Datei nennt keine Fallzahl, es wurde bis zu ihrem Ende gelesen: %1 Fälle"_s,
                      u"The file does not say how many cases it has, it was read to its end: %1 cases"_s)
                     .arg(report.cases);
    return lines;
}

SurveyImporter::SurveyImporter(const dao::DatabasePtr& catalogue, ImportGuard& guard, const QString& studyTable)
    : catalogue_(catalogue), guard_(guard), studyTable_(studyTable) {}

SurveyImporter::~SurveyImporter() = default;

void SurveyImporter::add(std::unique_ptr<OpenSurvey> survey, const ImportSettings& settings) {
    if (const QString fault = studyNumberFault(settings.study); !fault.isEmpty())
        throw ImportError(fault);
    const StudyWriter entries(*catalogue_, studyTable_, settings.study);
    if (entries.isGroup())
        throw ImportError(said(u"%1 ist eine Gruppe"_s, u"%1 is a group"_s).arg(entries.study()));
    const bool added = std::any_of(jobs_.begin(), jobs_.end(), [&](const auto& other) {
        return other->study.compare(settings.study, Qt::CaseInsensitive) == 0;
    });
    if (added || (entries.exists() && !settings.replace))
        throw ImportError(said(u"Die Studie %1 gibt es schon; mit --replace wird sie ersetzt"_s,
                               u"There is a study %1 already; --replace replaces it"_s)
                              .arg(entries.study()));
    if (settings.group && !settings.group->isEmpty() && *settings.group != u"0"_s &&
        !entries.groupExists(*settings.group))
        throw ImportError(said(u"Die Gruppe %1 gibt es nicht"_s, u"There is no group %1"_s).arg(*settings.group));

    auto job = std::make_unique<Job>(std::move(survey), settings, entries.fieldsBefore());
    job->study = entries.study();
    job->resolveWeight(job->settings.weightRe);
    job->resolveWeight(job->settings.weightHh);
    job->chooseTextCodes();
    job->tables = shareOutVariables(job->study, job->names, settings.furtherTables);
    job->folder = settings.dataFolder.isEmpty() ? QFileInfo(catalogue_->Name()).absolutePath()
                                                : Paths::native(settings.dataFolder);
    if (!QFileInfo(job->folder).isDir())
        throw ImportError(said(u"Den Ordner %1 gibt es nicht"_s, u"There is no folder %1"_s).arg(job->folder));

    const QStringList present = presentCaseFiles(job->folder, job->study);
    QStringList paths = present;
    for (const CaseTable& table : job->tables)
        if (const QString path = caseFileOf(job->folder, job->study, table); !paths.contains(path))
            paths << path;
    for (const QString& path : std::as_const(paths))
        if (sameFile(path, catalogue_->Name()))
            throw ImportError(said(u"Die Falldatei der Studie wäre der Katalog selbst (%1). Wählen Sie eine "
                                   u"andere Nummer oder mit --data einen "
                                   "anderen Ordner"_s,
                                   u"The study's case file would be the catalogue itself (%1). Choose "
                                   u"another number, or another folder "
                                   "with --data"_s)
                                  .arg(path));
    if (!present.isEmpty() && !settings.replace)
        throw ImportError(said(u"Die Datei %1 ist schon da; mit --replace wird sie überschrieben"_s,
                               u"There is a file %1 already; --replace overwrites it"_s)
                              .arg(present.front()));
    job->checkPlace(QFileInfo(catalogue_->Name()).absolutePath());
    for (const QString& path : std::as_const(paths)) {
        // What cannot be opened has nothing to be cleared away, and must not stand in the next run's way.
        const bool isThere = QFileInfo(path).size() > 0;
        if (!isThere)
            guard_.willWrite(path);
        const bool isNew = !QFileInfo::exists(path);
        job->files.emplace(path, catalogue_->openCompanion(path));
        if (isNew)
            giveRights(catalogue_->Name(), path);
        if (isThere)
            guard_.willWrite(path);
    }
    jobs_.push_back(std::move(job));
}

std::vector<ImportReport> SurveyImporter::write() {
    std::vector<ImportReport> reports;
    for (const auto& job : jobs_) {
        const double before = static_cast<double>(reports.size()) / static_cast<double>(jobs_.size());
        const auto progress = [&](double share) {
            return !job->settings.progress ||
                   job->settings.progress(before + share / static_cast<double>(jobs_.size()));
        };
        job->fill(*catalogue_, progress);
        for (const QString& path : std::as_const(job->emptied))
            guard_.removeIfEmpty(path);
        const StudyContent content = studyContent(job->head, job->names, job->tables, job->codes, job->textCodes);
        StudyWriter entries(*catalogue_, studyTable_, job->study);
        QStringList studyFacts =
            entries.writeStudy(job->head, job->settings, job->fileWeight, content.variables, job->tables);
        studyFacts << entries.writeContent(content);
        if (!entries.vanished().isEmpty())
            studyFacts << said(u"Variablen, die es nicht mehr gibt (%1)"_s, u"Variables that are gone (%1)"_s)
                                  .arg(entries.vanished().size()) +
                              u": "_s + entries.vanished().join(u", "_s);
        for (const QString& pointer : StudyReferences(*catalogue_, entries.study()).toVanished(entries.vanished()))
            studyFacts << said(u"Zeigt ins Leere: %1"_s, u"Points to a variable that is gone: %1"_s).arg(pointer);

        ImportReport report;
        report.study = job->study;
        report.cases = job->writer.rows();
        report.variables = static_cast<int>(content.variables.size());
        report.tables = static_cast<int>(job->tables.size());
        report.labels = static_cast<int>(content.labels.size());
        report.facts = job->facts(report, content, studyFacts);
        // The statements must be gone before the transaction can end.
        job->writer.reset();
        reports.push_back(std::move(report));
    }
    return reports;
}

void SurveyImporter::finish() {
    for (const auto& job : jobs_) {
        for (const auto& [path, companion] : job->files)
            companion->close();
        job->files.clear();
        for (const QString& path : job->emptied)
            QFile::remove(path);
    }
    jobs_.clear();
}

/// A catalogue's entries lie in its own file: behind a link of such a name they would be written into somebody else's.
static void refuseLinkedEntries(dao::Database& catalogue, const QString& path) {
    const dao::TableDefs& tables = catalogue.TableDefs();
    for (int i = 0; i < tables.Count(); ++i) {
        const dao::TableDefPtr table = tables.Item(i);
        if (table->Attributes() != dao::dbAttachedTable)
            continue;
        for (const QString& prefix : {u"tkey_"_s, u"trel_"_s, u"tsys_"_s})
            if (table->Name().startsWith(prefix, Qt::CaseInsensitive))
                throw ImportError(said(u"%1: Die Tabelle %2 liegt in einer anderen Datei"_s,
                                       u"%1: The table %2 lies in another file"_s)
                                      .arg(path, table->Name()));
    }
}

ImportReport importSurvey(const ImportRequest& request) {
    const QString path = Paths::resolved(request.catalogue);
    if (const QString folder = QFileInfo(path).absolutePath(); !QFileInfo(folder).isDir())
        throw ImportError(said(u"Den Ordner %1 gibt es nicht"_s, u"There is no folder %1"_s).arg(folder));
    // Before anything is touched, so that a wrong number or file leaves no trace at all.
    if (const QString fault = studyNumberFault(request.settings.study); !fault.isEmpty())
        throw ImportError(fault);
    auto survey = std::make_unique<OpenSurvey>(request.file, request.settings.encoding);

    ImportGuard guard(path);
    guard.willWrite(path);
    dao::Workspace& workspace = dao::DBEngine::instance().Workspaces(0);
    const Closing catalogue(QFileInfo::exists(path) ? workspace.OpenDatabase(path) : workspace.CreateDatabase(path));
    dao::Database& database = *catalogue.database;
    if (database.readOnly())
        throw ImportError(
            said(u"%1: Die Datei kann nicht geschrieben werden"_s, u"%1: The file cannot be written"_s).arg(path));
    const bool isNew = database.TableDefs().Count() == 0;
    const QString studyTable = studyTableOf(database, request.settings.study);
    if (!isNew)
        for (const QString& table : {studyTable, u"tkey_Variable"_s, u"tkey_Value"_s})
            if (!database.TableDefs().contains(table))
                throw ImportError(said(u"%1 ist kein Katalog (es gibt keine Tabelle %2)"_s,
                                       u"%1 is no catalogue (there is no table %2)"_s)
                                      .arg(path, table));

    refuseLinkedEntries(database, path);

    SurveyImporter importer(catalogue.database, guard, studyTable);
    importer.add(std::move(survey), request.settings);
    std::vector<ImportReport> reports;
    {
        dao::Transaction transaction(workspace);
        if (isNew)
            makeCatalogue(database);
        reports = importer.write();
        transaction.commit();
    }
    importer.finish();
    guard.done();
    return reports.front();
}
