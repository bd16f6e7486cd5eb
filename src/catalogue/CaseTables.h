#pragma once

#include "catalogue/BlockQueue.h"
#include "catalogue/CatalogueImport.h"
#include "catalogue/SurveyFile.h"
#include "catalogue/SurveyReader.h"
#include "catalogue/TaggedCodes.h"
#include "catalogue/TextCodes.h"
#include "catalogue/importNames.h"
#include "catalogue/surveyDates.h"
#include "platform/dao/Database.h"
#include "platform/dao/RowBlock.h"

#include <QSet>
#include <memory>
#include <vector>

/// One case table of a study: its name and the variables it holds, as indexes into the survey file.
struct CaseTable {
    QString name;
    bool ownFile = false;
    std::vector<int> variables;
};

/// Shares the variables out among tables of at most 254: the wishes are tables 2, 3, ..., all others fill
/// table 1 and the tables after these.
/// @throws ImportError for a wish with too many variables, or for one that the file has not got
std::vector<CaseTable> shareOutVariables(const QString& study, const std::vector<VariableNames>& names,
                                         const std::vector<CaseTableWish>& wishes);

/// Name of the file that a case table lies in: "<study>-<number>.mdb" where there is such a file in the
/// folder or the table is to have its own, else "<study>.mdb". It is the choice that an analysis makes.
QString caseFileOf(const QString& folder, const QString& study, const CaseTable& table);

/// Writes the rows of a survey file into its case tables. What takes the rows only collects them, in blocks,
/// and may run in a thread of its own while another writes the blocks.
class CaseWriter : public RowReceiver {
public:
    CaseWriter(const SurveyFile& file, TaggedCodes& codes, TextCodes& textCodes);

    /// The fields of a table in order, `dt_CaseID` not among them.
    std::vector<dao::FieldDefinition> fields(const CaseTable& table, const std::vector<VariableNames>& names) const;
    /// Adds a table whose first column is `dt_CaseID` and whose others are those of fields().
    void addTable(const CaseTable& table, std::unique_ptr<dao::Appender> appender);
    /// Lets all tables go, with what was not yet written, and begins counting anew.
    void reset();
    /// Where endRow() and finish() put what is to be written.
    void collectInto(BlockQueue& queue) { queue_ = &queue; }
    /// To be called after the last row.
    void finish();
    /// Writes a block that the queue gave. @throws dao::Error
    void write(size_t table, const dao::RowBlock& rows) { tables_[table]->appender->appendRows(rows); }

    void number(int variable, double value) override;
    void letter(int variable, char letter) override;
    void text(int variable, const char* utf8, int bytes) override;
    void endRow() override;

    int rows() const { return rows_; }
    /// Numbers that are no date of a calendar, by variable; they are kept as they are.
    const std::vector<qint64>& noDates() const { return noDates_; }
    /// Values that are infinite, by variable; they become Null.
    const std::vector<qint64>& infinite() const { return infinite_; }
    /// Times with fractions below a millisecond, by variable; they are rounded.
    const std::vector<qint64>& rounded() const { return rounded_; }
    /// Blank texts of variables whose texts become numbers, by variable; they become Null.
    const std::vector<qint64>& blanks() const { return blanks_; }

private:
    struct Table {
        std::unique_ptr<dao::Appender> appender;
        dao::RowBlock rows;
    };
    struct Place {
        dao::RowBlock* rows = nullptr;
        int column = 0;
        TimeFormat time;
        bool isEncoded = false; ///< texts that become numbers
    };
    const SurveyFile& file_;
    TaggedCodes& codes_;
    TextCodes& textCodes_;
    std::vector<Place> places_;
    std::vector<std::unique_ptr<Table>> tables_;
    BlockQueue* queue_ = nullptr;
    std::vector<qint64> noDates_, infinite_, rounded_, blanks_;
    int rows_ = 0;

    void writeTime(Place& place, int variable, double value);
};

/// Reads all cases of a file into the tables of a writer: reading in a thread of its own, writing and
/// `progress` in the calling one. @return and @throws as SurveyReader::readRows(); dao::Error
qint64 readCases(SurveyReader& reader, const SurveyFile& head, CaseWriter& writer,
                 const std::function<bool(double)>& progress);

/// A code of a variable as its case table holds it: ISO text for dates that are not declared missing, else
/// the number.
QString storedCode(double code, TimeFormat time, const SurveyVariable& variable);
