#pragma once

#include <QString>

/// The sample archive that comes with the program: a description with its survey files, from which a catalogue is built
/// for the user at its first opening.
struct SampleArchive {
    QString description; ///< empty where none lies with the program
    QString catalogue;   ///< the user's own, to be built if it is not there yet
    /// Folders beside the description.
    QString questionnaires, dataSets;

    bool isThere() const { return !description.isEmpty() || isBuilt(); }
    bool isBuilt() const;

    /// Looks where a build and where an installation has it. @param programFolder of the program that runs
    static SampleArchive find(const QString& programFolder);
};
