#pragma once

#include "printing/Block.h"
#include "printing/ReportLanguages.h"
#include "tables/VariableValues.h"

#include <QByteArray>

class Spool;

/// Everything that a report shows of a variable, as it was read: texts as they stand in the catalogue, pictures by
/// their place in the spool.
struct VariableRecord {
    /// A file or a memo with a picture.
    struct Picture {
        QString name;      ///< of its file
        QString mark;      ///< language, where there is one for each
        qint64 bytes = -1; ///< place in the spool
        QString fault;     ///< why it can't be shown, in words
        bool operator==(const Picture&) const = default;
    };
    /// The categories of a view that it is assigned to.
    struct Assigned {
        QString view, categories;
        bool operator==(const Assigned&) const = default;
    };

    QString name, study, year;
    BothTexts title; ///< of the study
    BothTexts label; ///< as it was when the report was asked for
    QString groupWord;
    BothTexts group;
    BothTexts question;
    std::vector<DocumentedValue> values; ///< codes with their labels
    bool valuesCut = false;
    QString missing;
    std::vector<Assigned> assigned;
    QString table, tableLayout, graphLayout;
    bool hasGraph = false;
    qint64 graph = -1; ///< place in the spool
    std::vector<Picture> cards;
    QString fault; ///< why nothing else is known of it, in words; empty if all is

    QByteArray toBytes() const;
    static VariableRecord fromBytes(const QByteArray& bytes);
};

/// What a report prints of a variable. @param catalogue name of its file, for where stored results come from
std::vector<Block> blocksOf(const VariableRecord& variable, const ReportLanguages& languages, const QString& catalogue,
                            const Spool& spool);
