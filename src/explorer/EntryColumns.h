#pragma once

#include "app/globals.h"

#include <QString>

/// Whether the entries of a view are studies and their groups; else they are categories.
inline bool isStudyView(int view) {
    return gViews.at(view, ViewTable::Type) == u"1";
}

/// Columns of a view's entries, by the kind of view and the language of the contents.
struct EntryColumns {
    QString key, parent = QStringLiteral("fid"), text, description;

    EntryColumns(bool study, bool english)
        : key(study ? QStringLiteral("id_StudyNo") : QStringLiteral("id")),
          text((english ? QStringLiteral("dt_En") : QStringLiteral("dt_")) +
               (study ? QStringLiteral("StudyTitle") : QStringLiteral("IndicatorName"))),
          description((english ? QStringLiteral("dt_En") : QStringLiteral("dt_")) +
                      (study ? QStringLiteral("StudyDescription") : QStringLiteral("IndicatorDescription"))) {}
};
