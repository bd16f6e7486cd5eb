#pragma once

#include "platform/dao/Database.h"

#include <QString>
#include <QStringList>

/// What a file is, as far as its content and its name tell, before it is opened as a catalogue.
struct FileKind {
    enum Kind {
        Catalogue,      ///< or nothing that speaks against one: what else is wrong shows when it is opened
        SurveyFile,     ///< of SPSS or Stata
        CaseFile,       ///< the cases of a study
        SystemDatabase, ///< the program's own texts
        OtherDatabase,  ///< a database without the study table of its first view
        AccessDatabase, ///< in a form that this program does not read
        Empty,
        NoDatabase,
    };
    Kind kind = Catalogue;
    /// A table of a case file, the program that a survey file comes from, the table that a database lacks.
    QString detail = {};
    /// What can be imported: a survey file whose name says which kind it is.
    bool canBeImported = false;
};

/// What its first bytes and its name tell; a database, of whatever kind, passes for a catalogue.
FileKind kindByHead(const QString& path);
/// What the tables of an open database tell.
FileKind kindOfDatabase(dao::Database& database);
/// Looks at a file that is there; opens it, where it is a database, as a catalogue would be.
FileKind kindOfFile(const QString& path, bool readOnly = false);

/// The numbers of the studies and groups of a catalogue; none where they cannot be read.
QStringList studyNumbersIn(const QString& path);

/// What the file is, in the user's language, as the end of a sentence that begins with it; empty for Catalogue.
QString kindWords(const FileKind& kind);

/// Why the file is refused as a catalogue, in the user's language; empty for Catalogue.
QString refusalOf(const QString& path, const FileKind& kind);
