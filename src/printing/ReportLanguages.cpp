#include "printing/ReportLanguages.h"

#include <QLocale>

using namespace Qt::StringLiterals;

ReportLanguages ReportLanguages::of(int words, int contents) {
    ReportLanguages languages;
    languages.words = words == 2 ? 2 : 1;
    languages.original = contents != 3;
    languages.english = contents == 1 || contents == 3;
    return languages;
}

QString ReportLanguages::markOf(bool inEnglish) const {
    return inEnglish ? word(u"Englisch"_s) : word(u"Original"_s);
}

std::vector<ReportLanguages::Shown> ReportLanguages::shown(const BothTexts& text) const {
    const bool first = original && !text.original.trimmed().isEmpty();
    const bool second = english && !text.english.trimmed().isEmpty();
    std::vector<Shown> texts;
    if (original && english) {
        if (first && second && text.original == text.english)
            return {{text.original, {}}};
        if (first)
            texts.push_back({text.original, second ? markOf(false) : QString()});
        if (second)
            texts.push_back({text.english, markOf(true)});
    } else if (first || second) {
        texts.push_back({first ? text.original : text.english, {}});
    }
    return texts;
}

QString ReportLanguages::name(const BothTexts& text) const {
    const QString& wanted = original ? text.original : text.english;
    return wanted.trimmed().isEmpty() ? (original ? text.english : text.original) : wanted;
}

QString ReportLanguages::otherName(const BothTexts& text) const {
    const bool two = original && english && !text.original.trimmed().isEmpty() && !text.english.trimmed().isEmpty();
    return two && text.original != text.english ? text.english : QString();
}

QString reportDate(const QDate& date, int words) {
    return words == 2 ? QLocale(QLocale::English).toString(date, u"d MMMM yyyy"_s)
                      : QLocale(QLocale::German).toString(date, u"d. MMMM yyyy"_s);
}
