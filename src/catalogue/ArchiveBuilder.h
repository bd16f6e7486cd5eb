#pragma once

#include <QString>
#include <QStringList>

#include <functional>

/// What to build, and where.
struct BuildRequest {
    QString catalogue;    ///< file to be made; the case files come beside it
    QString description;  ///< archive description in JSON
    bool replace = false; ///< a catalogue and case files of that name may be there: they are replaced as a whole
    /// Called with the share done (0 to 1) now and then; false ends the build, which then fails.
    std::function<bool(double)> progress;
};

/// What a build did, in the user's language.
struct BuildReport {
    int studies = 0, cases = 0, variables = 0, categories = 0, assignments = 0;
    QStringList facts;    ///< one fact a line, for every study and at the end for the whole
    QStringList warnings; ///< what works only in part, with its place in the description
};

/// Makes a whole catalogue with its case files from a description (docs/file-formats.md), or leaves
/// everything as it was.
///
/// The archive is built in a folder of its own and moved into place at the end, because a transaction spans
/// no more than ten files; an archive may have any number.
/// @throws ImportError for whatever the description or a file in it has wrong, with the place; dao::Error
BuildReport buildArchive(const BuildRequest& request);
