#pragma once

#include <QMap>
#include <QRectF>
#include <QString>
#include <QStringList>
#include <gtest/gtest.h>
#include <vector>

/// What poppler's programs read in a PDF: a second opinion on what ours have written. Pages count from 1, lengths are
/// points from a page's upper left corner.
namespace poppler {

/// Those of the programs that this machine lacks; to be skipped by name with SKIP_WITHOUT_POPPLER.
QString missingPrograms();

/// All text, a form feed behind each page. @param options of pdftotext
QString text(const QString& file, const QStringList& options = {});
/// The text of each page.
QStringList pages(const QString& file, const QStringList& options = {});

struct Word {
    int page = 0;
    QRectF box;
    QString text;
};
std::vector<Word> words(const QString& file);

struct Font {
    QString name;
    bool embedded = false, unicode = false;
};
std::vector<Font> fonts(const QString& file);

/// The document's properties by their English names, "Page size" and so on.
QMap<QString, QString> info(const QString& file);

struct Bookmark {
    int level = 0, page = 0;
    QString title;
    bool operator==(const Bookmark&) const = default;
};

/// A text that leads to a page.
struct Link {
    int page = 0, target = 0;
    QString text;
    bool operator==(const Link&) const = default;
};
struct Navigation {
    std::vector<Bookmark> bookmarks;
    std::vector<Link> links;
};
Navigation navigation(const QString& file);

} // namespace poppler

/// Compared in a message of a failed test.
inline void PrintTo(const poppler::Bookmark& mark, std::ostream* to) {
    *to << mark.level << ' ' << mark.title.toStdString() << " -> " << mark.page;
}
inline void PrintTo(const poppler::Link& link, std::ostream* to) {
    *to << link.page << ' ' << link.text.toStdString() << " -> " << link.target;
}

#define SKIP_WITHOUT_POPPLER()                                                                                         \
    if (const QString missing = poppler::missingPrograms(); !missing.isEmpty())                                        \
    GTEST_SKIP() << qPrintable(missing) << " is not installed"
