#pragma once

#include <QString>
#include <QStringList>
#include <vector>

/// A stretch of a text.
struct TermPlace {
    qsizetype start = 0, length = 0;
    friend bool operator==(const TermPlace&, const TermPlace&) = default;
};

/// Where the terms of a search stand in a text, in their order, none upon another; in a time that grows as the text
/// does.
///
/// A term matches as LIKE matches it, without regard to case. "?", "#" and a list in brackets are a place of the
/// stretch they stand in. What "*" stands for is marked nowhere: "a*b" gives each "a" with the next "b" behind it, as
/// two stretches. Of two quotes in a row, which are one in a statement, one is looked for. A term that LIKE refuses or
/// that is nothing but "*" has no place.
std::vector<TermPlace> termPlaces(const QString& text, const QString& term);
std::vector<TermPlace> termPlaces(const QString& text, const QStringList& terms);

/// A part of a one-line text around the first place of the first term that has one.
struct TermContext {
    QString text; ///< with dots where something was left out
    std::vector<TermPlace> places;
};
/// @param before, behind characters that are kept on the two sides, up to the ends of words
TermContext termContext(const QString& text, const QStringList& terms, int before, int behind);
