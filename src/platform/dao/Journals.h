#pragma once

#include "platform/dao/DatabaseLocation.h"

#include <QString>

namespace dao {

/// What the opener of a file knows of it.
struct Surroundings {
    QString mainFolder;      ///< of the database that reaches the file as a link; empty for the database itself
    bool isOriginal = false; ///< known to be no copy of the file that was changed
};

/// A change of several files is committed as one by a super-journal: a file beside the main one that lists the journals
/// of all, is named at the end of each of them, and commits by being removed. A journal names it by the absolute path
/// that it had, and SQLite believes the name: a super-journal that isn't there means "committed", also where only the
/// folder was moved, and one that is there is removed after the journal was played back, whatever file it is. So what
/// lies beside a database file is settled here, before SQLite sees it, by what lies in the folders as they are now.
///
/// A journal that names a super-journal is made to stand for itself, to be played back by SQLite, when the
/// super-journal is there; it is removed when the super-journal is gone and its main file there. In another folder than
/// the main file's that only holds for the original: a copy may be older than the day when the change was taken back.
/// A journal that names none is left to SQLite. Nothing is done where somebody is writing right now.
/// @throws Error 3049 in words for what no commit can have left, such as a journal that is a pipe or a link or names
///         any other file; 3051 in words where it can't be settled because nothing may be written; 3050 for a lock
void settleJournals(const DatabaseLocation& file, const Surroundings& around = {});

/// Makes every journal stand for itself that names this super-journal, and removes it. It stays when one of its files
/// is out of reach. For one that is known to come from a killed process of one's own; does nothing to what has not the
/// name of a super-journal.
void settleSuperJournal(const QString& path);

} // namespace dao
