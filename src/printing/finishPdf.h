#pragma once

#include <QRectF>
#include <QString>
#include <functional>
#include <map>
#include <vector>

class QIODevice;

/// What a PDF has besides what is drawn on its pages. Lengths are twips from a page's upper left corner, pages count
/// from 0.
struct PdfMarks {
    struct Place {
        int page = -1; ///< -1: nowhere
        double y = 0;
    };
    struct Link {
        int page = 0;
        QRectF rect;
        int place = 0; ///< where it leads
    };
    struct Bookmark {
        int place = 0;
        int level = 0;
        QString title;
    };
    QSizeF page;               ///< of all pages
    int drawnHeight = 0;       ///< points from the page's upper edge to where the drawing has its zero
    QString language;          ///< of the words
    std::vector<int> numbers;  ///< that stand on the pages
    std::vector<Place> places; ///< where links and bookmarks lead
    std::vector<Link> links;
    std::vector<Bookmark> bookmarks;
    /// Characters beyond the first 65,536, in the order in which they were first drawn with a font; by its name
    std::map<QString, std::vector<char32_t>> rareCharacters;
};

/// Takes what a PDF writer has written and writes it with its marks: links, bookmarks, page labels and sizes, and with
/// tables in its fonts that give plain letters. Nothing in it is newer than PDF 1.4.
/// @param write takes the bytes; what it throws ends the writing
/// @throws std::exception what kept it
void finishPdf(QIODevice& written, const PdfMarks& marks,
               const std::function<void(const unsigned char*, size_t)>& write);
