#include "catalogue/ArchiveBuilder.h"

#include "catalogue/ArchiveDescription.h"
#include "catalogue/ArchiveEntries.h"
#include "catalogue/ArchiveFiles.h"
#include "catalogue/BuildFolder.h"
#include "catalogue/CatalogueImport.h"
#include "catalogue/ImportGuard.h"
#include "catalogue/QueryCheck.h"
#include "catalogue/SurveyReader.h"
#include "catalogue/importTexts.h"
#include "catalogue/schema.h"
#include "platform/dao/Transaction.h"
#include "platform/system/Paths.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace archive {

namespace {

/// One build, in the folder where the catalogue comes into being.
class Builder {
public:
    Builder(const BuildRequest& request, const Description& description, const QString& folder, BuildReport& report)
        : request_(request), description_(description), folder_(folder), report_(report),
          path_(folder + u'/' + QFileInfo(request.catalogue).fileName()), guard_(path_),
          catalogue_(makeCatalogue(guard_, path_)), entries_(description, catalogue_, report) {
        for (const View& view : description.views)
            for (const Study& study : view.studies)
                toDo_ += study.isGroup ? 0 : 1;
    }

    ~Builder() {
        if (catalogue_->isOpen())
            catalogue_->Close();
    }

    void run() {
        {
            dao::Transaction transaction;
            entries_.writeFrame();
            for (const View& view : description_.views)
                if (view.isStudyView)
                    entries_.writeGroups(view);
            transaction.commit();
        }
        for (const View& view : description_.views)
            for (const Study& study : view.studies)
                if (!study.isGroup)
                    takeIn(view, study);
        {
            dao::Transaction transaction;
            entries_.checkVariableTexts();
            for (const View& view : description_.views)
                if (!view.isStudyView)
                    entries_.writeCategories(view);
            transaction.commit();
        }
        checkQueries();
        catalogue_->Close();
        guard_.done();
    }

private:
    const BuildRequest& request_;
    const Description& description_;
    const QString folder_;
    BuildReport& report_;
    const QString path_;
    ImportGuard guard_;
    dao::DatabasePtr catalogue_;
    EntryWriter entries_;
    int toDo_ = 0;

    static dao::DatabasePtr makeCatalogue(ImportGuard& guard, const QString& path) {
        guard.willWrite(path);
        return dao::DBEngine::instance().Workspaces(0).CreateDatabase(path);
    }

    ImportSettings settingsOf(const Study& study) {
        ImportSettings settings;
        settings.study = study.number;
        settings.dataFolder = folder_;
        settings.title = study.title.original;
        settings.titleEnglish = study.title.english;
        settings.year = study.year;
        if (study.parent != u"0")
            settings.group = study.parent;
        settings.weightRe = study.weightRe;
        settings.weightHh = study.weightHh;
        settings.encoding = study.encoding;
        settings.encodeAll = study.encodeAll;
        settings.encode = study.encode;
        for (const CaseTable& table : study.tables)
            settings.furtherTables.push_back({table.variables, table.ownFile});
        if (request_.progress)
            settings.progress = [this](double share) { return request_.progress((report_.studies + share) / toDo_); };
        return settings;
    }

    void takeIn(const View& view, const Study& study) {
        SurveyImporter importer(catalogue_, guard_, schema::entryTableName(view.table));
        told(study, [&] {
            const ImportSettings settings = settingsOf(study);
            importer.add(std::make_unique<OpenSurvey>(pathOf(description_, study.file), settings.encoding), settings);
        });
        std::vector<ImportReport> written;
        {
            dao::Transaction transaction;
            told(study, [&] { written = importer.write(); });
            entries_.completeStudy(view, study);
            transaction.commit();
        }
        importer.finish();
        for (const ImportReport& one : written) {
            report_.cases += one.cases;
            report_.variables += one.variables;
            for (const QString& fact : one.facts)
                report_.facts << study.number + u": "_s + fact;
        }
        ++report_.studies;
    }

    /// What the import finds wrong gets the study's place in the description.
    template<typename Step>
    void told(const Study& study, Step step) {
        try {
            step();
        } catch (const EncodeError& error) {
            throw ImportError(description_.at(study.place + u".encode"_s, error.text()));
        } catch (const ImportError& error) {
            throw ImportError(description_.at(study.place, error.text()));
        }
    }

    /// Tries each study's own statement on its tables, and reports what analyses cannot do with it.
    void checkQueries() {
        for (const View& view : description_.views)
            for (const Study& study : view.studies) {
                const bool needsSelection = std::any_of(study.parts.begin(), study.parts.end(),
                                                        [](const Part& part) { return part.separateAnalysis; });
                if (study.query.value_or(QString()).trimmed().isEmpty()) {
                    if (needsSelection)
                        throw ImportError(description_.at(
                            study.place,
                            said(u"Teile mit 'separateAnalysis' brauchen eine 'query', die eine Spalte SE liefert"_s,
                                 u"parts with 'separateAnalysis' need a 'query' that supplies a column SE"_s)));
                    continue;
                }
                checkQuery(study, needsSelection);
            }
    }

    void checkQuery(const Study& study, bool needsSelection) {
        const QString place = study.place + u".query"_s;
        const auto variables = std::find_if(entries_.studies().begin(), entries_.studies().end(),
                                            [&study](const StudyVariables& one) { return one.study == study.number; });
        for (const QString& reason : queryWarnings(*study.query, variables->tables))
            report_.warnings << description_.at(place, reason);
        for (const QString& table : variables->tables)
            link(study.number, table);
        QString failure;
        try {
            const dao::RecordsetPtr rows = catalogue_->OpenRecordset(*study.query, dao::dbOpenSnapshot);
            for (const QString& column : needsSelection ? QStringList{u"ID"_s, u"SE"_s} : QStringList{u"ID"_s})
                if (!rows->hasField(column))
                    failure = said(u"die Abfrage liefert keine Spalte %1"_s, u"the query supplies no column %1"_s)
                                  .arg(column);
            rows->Close();
        } catch (const dao::Error& error) {
            failure = error.description();
        }
        for (const QString& table : variables->tables)
            catalogue_->TableDefs().Delete(table);
        if (!failure.isEmpty())
            throw ImportError(description_.at(place, failure));
    }

    void link(const QString& study, const QString& table) {
        const QString suffix = table.mid(table.lastIndexOf(u'_') + 1);
        const QString own = u"%1/%2-%3.mdb"_s.arg(folder_, study, suffix);
        const dao::TableDefPtr link = catalogue_->CreateTableDef(table);
        link->setSourceTableName(table);
        link->setConnect(u";DATABASE="_s + (QFileInfo::exists(own) ? own : u"%1/%2.mdb"_s.arg(folder_, study)));
        catalogue_->TableDefs().Append(link);
    }
};

void addSummary(const Description& description, BuildReport& report) {
    report.facts << said(u"Ansichten: %1"_s, u"views: %1"_s).arg(description.views.size());
    report.facts << said(u"Studien: %1"_s, u"studies: %1"_s).arg(report.studies);
    report.facts << said(u"Variablen: %1"_s, u"variables: %1"_s).arg(report.variables);
    report.facts << said(u"Fälle: %1"_s, u"cases: %1"_s).arg(report.cases);
    report.facts << said(u"Kategorien: %1"_s, u"categories: %1"_s).arg(report.categories);
    report.facts << said(u"Zuordnungen: %1"_s, u"assignments: %1"_s).arg(report.assignments);
}

} // namespace

} // namespace archive

BuildReport buildArchive(const BuildRequest& wish) {
    using namespace archive;
    BuildRequest request = wish;
    request.catalogue = Paths::resolved(wish.catalogue);
    const Description description = readDescription(request.description);
    BuildReport report;
    ImportGuard guard(request.catalogue);
    BuildFolder folder(request.catalogue);
    const QStringList outdated = checkFiles(description, request);
    Builder(request, description, folder.files(), report).run();
    bringPictures(description, request, folder.files(), report);
    checkDocuments(description, report);
    folder.moveIntoPlace(outdated);
    guard.done();
    addSummary(description, report);
    return report;
}
