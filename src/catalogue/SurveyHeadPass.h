#pragma once

#include "catalogue/SurveyEncoding.h"
#include "catalogue/SurveyFile.h"
#include "catalogue/SurveyPass.h"

#include <QHash>
#include <QSet>

/// Reads what a file says of itself, its variables and their labels.
struct SurveyHeadPass : SurveyPass {
    SurveyFile file;
    QByteArray encoding; ///< of the file, empty if it does not say
    QHash<QByteArray, int> sets;
    int unreadableSet = -1; ///< its variables may be known only later
    QSet<int> usedSets;
    qint64 labels = 0, noteCharacters = 0;
    qint64 lostTexts = 0; ///< with characters that the file did not keep

    QString text(const char* utf8, const QString& where);
    int setOf(const QByteArray& name);
    void metadata(readstat_metadata_t* meta);
    void note(int index, const char* text_);
    void variable(readstat_variable_t* source, const QByteArray& labelSet);
    int widthOf(const readstat_variable_t* source, const QString& format) const;
    static void missing(const readstat_variable_t* source, SurveyVariable& variable);
    static void missingText(const char* low, const char* high, SurveyVariable& variable);
    void weight(const readstat_variable_t* source) { file.weight = readstat_variable_get_index(source); }
    void valueLabel(const QByteArray& set, const readstat_value_t& value, const char* label);
    QStringList unusedSets() const;
    void checkLabels() const;
};

/// Reads the head once more without conversion to find a text that a conversion chokes on: the reader cuts
/// some of them off without a word.
struct SurveyTextCheck : SurveyPass {
    EncodingCheck check;
    QString found;
    QHash<QByteArray, QString> owners; ///< first variable of each label set
    QByteArrayList badSets;

    explicit SurveyTextCheck(const QByteArray& encoding) : check(encoding) {}

    bool bad(const char* text) const { return text && !check.reads(text); }

    void variable(readstat_variable_t* source, const QByteArray& labelSet);
    void valueLabel(const QByteArray& set, const readstat_value_t& value, const char* label);
    /// The first variable with such a text; labels come before variables in some files, after them in others.
    QString variableName() const;
};
