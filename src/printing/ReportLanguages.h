#pragma once

#include "printing/words.h"

#include <QDate>
#include <QString>
#include <vector>

/// A text of the catalogue as it stands there: in the original language and in English.
struct BothTexts {
    QString original, english;
    bool operator==(const BothTexts&) const = default;
};

/// The languages of a report: that of its own words, and those of what it shows of the catalogue.
struct ReportLanguages {
    int words = 1; ///< 1 German, 2 English
    bool original = true, english = false;

    /// @param contents 1 both, 2 the original, 3 English; anything else is the original
    static ReportLanguages of(int words, int contents);

    QString word(const QString& german) const { return reportWord(german, words); }

    /// A text in one language of the contents, and the name of that language where both are shown; empty else.
    struct Shown {
        QString text, mark;
    };
    /// What is shown of a text, one below the other; nothing of an empty one. Equal texts are one.
    std::vector<Shown> shown(const BothTexts& text) const;
    /// The one by which an entry is known. A language that lacks it takes that of the other: an entry must be found.
    QString name(const BothTexts& text) const;
    /// The other one, where both are shown and there are two.
    QString otherName(const BothTexts& text) const;
    QString markOf(bool inEnglish) const;
};

/// A date as people write it in the language of the words.
QString reportDate(const QDate& date, int words);
