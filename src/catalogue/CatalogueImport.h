#pragma once

#include "platform/dao/DBEngine.h"

#include <QString>
#include <QStringList>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class ImportGuard;
struct OpenSurvey;

/// Why a survey file could not be taken in, in the user's language.
class ImportError : public std::exception {
public:
    explicit ImportError(const QString& text) : text_(text), utf8_(text.toUtf8()) {}
    const QString& text() const { return text_; }
    const char* what() const noexcept override { return utf8_.constData(); }

private:
    QString text_;
    QByteArray utf8_;
};

/// Why a text variable that was asked for cannot be stored as numbers.
class EncodeError : public ImportError {
public:
    using ImportError::ImportError;
};

/// The failure of an import that its user ended.
ImportError importCancelled();

/// A case table beyond the first, made up of certain variables.
struct CaseTableWish {
    QStringList variables; ///< names as in the file, without regard to case
    bool ownFile = false;  ///< in "<study>-<number>.mdb" instead of "<study>.mdb"
};

/// How one survey file becomes a study. What is not set comes from the file, or stays as it is when a study
/// is replaced.
struct ImportSettings {
    QString study;      ///< study number: letters and digits, a letter first
    QString dataFolder; ///< folder of the case file; empty: beside the catalogue
    std::optional<QString> title, titleEnglish, year;
    std::optional<QString> group;              ///< number of the group that the study belongs to
    std::optional<QString> weightRe, weightHh; ///< variables; an empty text: none
    QString encoding;                          ///< of the texts in a file that says wrong or nothing about it
    bool replace = false;                      ///< a study of that number may be there already
    bool encodeAll = false; ///< text variables whose codes have labels or are declared missing become numbers
    QStringList encode;     ///< and so do these text variables, or the import fails
    /// Tables 2, 3, ... All other variables fill table 1 and, beyond 254, the tables after these.
    std::vector<CaseTableWish> furtherTables;
    /// Called with the share done (0 to 1) now and then; false ends the import, which then fails.
    std::function<bool(double)> progress;
};

/// What an import did.
struct ImportReport {
    QString study;
    int cases = 0, variables = 0, tables = 0, labels = 0;
    /// Everything above and everything that changed its name or was not taken over, one fact a line, in the
    /// user's language.
    QStringList facts;
};

/// Takes survey files into an open catalogue, any number of them in one transaction:
///
///     ImportGuard guard(cataloguePath);
///     SurveyImporter importer(catalogue, guard);
///     importer.add(std::make_unique<OpenSurvey>(file, encoding), settings);  // checks, opens the case files
///     workspace.BeginTrans();
///     reports = importer.write();    // on an exception: workspace.Rollback()
///     workspace.CommitTrans();
///     importer.finish();
///     guard.done();
///
/// A transaction spans at most nine case files.
class SurveyImporter {
public:
    /// `studyTable` is the table of the study view that takes the entries.
    SurveyImporter(const dao::DatabasePtr& catalogue, ImportGuard& guard,
                   const QString& studyTable = QStringLiteral("tkey_Study"));
    /// Lets the case files go.
    ~SurveyImporter();

    /// @throws ImportError for a bad number, group or weight, for a study or case file that is there and
    ///         not to be replaced; EncodeError for a name that is no text variable's; dao::Error when a case file
    ///         cannot be opened
    void add(std::unique_ptr<OpenSurvey> survey, const ImportSettings& settings);
    /// Writes the cases and the entries of every file added, inside a transaction of the catalogue's
    /// workspace.
    /// @throws ImportError for a file that cannot be read to its end or a cancelled import, EncodeError for a variable
    ///         that was asked for and has too many texts, dao::Error
    std::vector<ImportReport> write();
    /// After the commit: lets the case files go and removes those of a replaced study that hold no table any
    /// more.
    void finish();

private:
    struct Job;
    dao::DatabasePtr catalogue_;
    ImportGuard& guard_;
    QString studyTable_;
    std::vector<std::unique_ptr<Job>> jobs_;
};

/// Where and how to import one file.
struct ImportRequest {
    QString catalogue; ///< made, with one study view, if it is not there
    QString file;      ///< .sav, .zsav, .por or .dta
    ImportSettings settings;
};

/// Imports one file whole, or leaves catalogue and data folder exactly as they were.
/// @throws ImportError, dao::Error
ImportReport importSurvey(const ImportRequest& request);
