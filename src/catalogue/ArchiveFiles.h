#pragma once

#include "catalogue/ArchiveBuilder.h"
#include "catalogue/ArchiveDescription.h"

#include <QString>
#include <QStringList>

namespace archive {

/// A path of the description: relative ones start in its folder; either separator.
QString pathOf(const Description& description, const QString& path);

/// Refuses a catalogue, case files or pictures that are there already, unless they are to be replaced, and a
/// survey file that is not there.
/// @return names, beside the catalogue, of the case files of these studies that the build does away with or
/// replaces
/// @throws ImportError
QStringList checkFiles(const Description& description, const BuildRequest& request);

/// Takes the show cards into the folder that becomes the catalogue's, and reports those, and
/// questionnaires and data sets, that are missing. @throws ImportError
void bringPictures(const Description& description, const BuildRequest& request, const QString& folder,
                   BuildReport& report);
void checkDocuments(const Description& description, BuildReport& report);

} // namespace archive
