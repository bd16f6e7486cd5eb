#pragma once

#include <QString>
#include <QStringList>

namespace archive {

/// Where a catalogue is built before it takes its place: a hidden folder beside it, named after it.
///
/// Whatever lies in files() at the end goes to the same place beside the catalogue in one go. Everything
/// moves by renaming; the old catalogue goes first and the new one comes last, so that a catalogue never
/// stands beside case files that are not its own. What fails on the way is put back. A run that was killed
/// before it had everything leaves a folder that the next one removes; one killed while moving is finished by
/// the next. Notes in the folder tell which files of this folder here it is about; a folder that was copied
/// or unpacked, or put there by somebody, is left alone.
class BuildFolder {
public:
    /// Makes the folder, unless somebody else's is in its place. To be called under the catalogue's
    /// ImportGuard, which sees to what a killed run left.
    /// @throws ImportError
    explicit BuildFolder(const QString& catalogue);
    /// Removes the folder.
    ~BuildFolder();
    BuildFolder(const BuildFolder&) = delete;
    BuildFolder& operator=(const BuildFolder&) = delete;

    /// The folder that stands for the catalogue's own.
    QString files() const;
    /// Notes what will be moved: from here on a killed run is finished by the next. @throws ImportError
    void settle(const QStringList& outdated);
    /// Settles, and puts everything into place. @param outdated  names of files beside the catalogue that go
    /// away or are replaced
    /// @throws ImportError when a file cannot be moved; everything is as it was then
    void moveIntoPlace(const QStringList& outdated);

private:
    QString catalogue_, folder_;
    bool inPlace_ = false;
};

/// True if a killed build had everything and its catalogue is not in place yet.
bool waitsForItsMove(const QString& catalogue);

/// Finishes what a killed build had begun to move, or removes what it had built so far. Does nothing if there
/// is neither. To be called under the catalogue's ImportGuard.
/// @throws ImportError when a file cannot be moved
void finishInterruptedBuild(const QString& catalogue);

} // namespace archive
