#pragma once

#include <QDate>
#include <QMarginsF>
#include <QRectF>
#include <QSizeF>
#include <QString>

struct ReportRequest;

/// Twips (1/1440 inch) are the unit of everything on a page.
inline constexpr double twipsPerPoint = 20;
inline constexpr double twipsPerMillimetre = 1440 / 25.4;

/// How the pages of a report look: everything of the request that bears on layout.
struct PageSetup {
    QSizeF page;       ///< twips, as it is read (landscape is wide)
    QMarginsF margins; ///< twips; what stands at the foot and at the head lies within the page's text area
    QString fontFamily;
    QString tableFamily;                    ///< for tables, values and texts that somebody has written
    double fontSize = 11;                   ///< points
    int pageNumberPlace = 2, datePlace = 2; ///< 1 to 7 as in the request
    int language = 1;                       ///< of our words: 1 German, 2 English
    double tableZoom = 1, graphZoom = 1, picZoom = 0.6;
    QDate date;              ///< that stands on the pages
    int firstPageNumber = 1; ///< number of the first page

    QRectF textArea() const;
    static PageSetup of(const ReportRequest& request);
};
