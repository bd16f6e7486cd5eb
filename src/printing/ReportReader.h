#pragma once

#include "app/globals.h"
#include "printing/EntryTree.h"
#include "printing/ReportContent.h"
#include "printing/VariableBatch.h"

#include <QElapsedTimer>
#include <optional>

/// The content of a report of a catalogue. open() reads what the outline needs: names and labels. Everything else is
/// read once, in short statements between which nothing of the catalogue is held, and kept in a temporary file; the
/// catalogue is closed again when all is read.
class ReportReader : public ReportContent {
public:
    /// Takes the views and options of the open catalogue along; nothing process-wide is asked later but the texts.
    explicit ReportReader(const ReportRequest& request);
    ~ReportReader() override;

    QString open() override;
    const ReportOutline& outline() const override { return outline_; }
    bool read(int milliseconds) override;
    QString fault() const override { return fault_; }
    int ready() const override { return ready_; }
    std::vector<Block> blocks(int entry) const override;

private:
    /// What an entry of the outline is read from.
    struct Source {
        enum class What {
            Made,     ///< its blocks were made with the outline
            Study,    ///< chapter of a study
            Variable, ///< of the study `key`
        };
        What what = What::Made;
        QString key;       ///< study number
        qint64 place = -1; ///< in the spool; -1 as long as it is not read
    };
    /// A variable as the outline lists it.
    struct Listed {
        QString study, name, group;
        BothTexts label;
    };
    struct Study {
        QString number, year, weights;
        BothTexts title;
    };

    ReportRequest request_;
    ReportLanguages languages_;
    ViewTable views_;
    CatalogueOptions options_;
    ReportCatalogue catalogue_;
    Spool spool_;
    VariableWishes wishes_;
    QHash<QString, Study> studies_; ///< by their folded number, those of the report
    QString databaseTitle_;

    ReportOutline outline_;
    std::vector<Source> sources_;
    std::vector<BothTexts> labels_; ///< of the variables, by entry
    int ready_ = 0, next_ = 0;
    std::optional<VariableBatch> batch_;
    std::vector<int> batchEntries_;
    size_t together_ = 8; ///< variables that the next batch takes
    int failures_ = 0;
    size_t singly_ = 0; ///< variables that have failed together and are read one by one
    QElapsedTimer locked_;
    QString fault_;

    // ReportReader_outline.cpp
    QString makeOutline();
    QString outlineVariables();
    QString outlineCategory();
    QString outlineNames(bool study);
    QString outlineDatabase();
    QString outlineDescription(bool study);
    QString addDescription(const BothTexts& name, const QString& key, FactsBlock facts, const BothTexts& description);
    QString studyTable() const;
    void readDatabaseTitle();
    void readGroups();
    void readStudies(const QString& table, const QStringList& numbers);
    void findAssignmentViews();
    std::vector<Listed> listed(const QString& statement);
    QString emptyCondition(const QString& prefix);
    void addEntry(const ReportEntry& entry, const Source& source);
    void addMade(const ReportEntry& entry, const std::vector<Block>& blocks);
    void addStudyChapter(const QString& number);
    void addVariables(const std::vector<Listed>& variables, int level);
    void addVariable(const Listed& variable, int level);
    void makeCover(const QString& kind, const QString& title, const QString& other, FactsBlock facts);
    QString contentsWords() const;
    QString notThere(const QString& german, const QString& key) const;

    // Reading
    void readNext();
    void beginBatch();
    void finishBatch();
    void readStudyChapter(Source& source);
    void keep(int entry, const QByteArray& bytes);
    bool tryAgain(const dao::Error& error);
    QString word(const QString& german) const { return languages_.word(german); }
    Study study(const QString& number) const;
};
