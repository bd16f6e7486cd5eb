#pragma once

#include "catalogue/SurveyFile.h"

#include "catalogue/fileStamp.h"
#include "catalogue/portableNumbers.h"
#include "catalogue/savCases.h"

#include <QIODevice>
#include <functional>
#include <memory>
#include <optional>

/// Reads .sav, .zsav, .por and .dta files, one row at a time, with bounds on everything that a file may
/// claim.
///
/// Every failure is an ImportError that says what is wrong; a text that cannot be read names its variable and
/// the option that helps.
class SurveyReader {
public:
    /// @param encoding of the texts, by the name that iconv knows; empty: the file's own
    /// @throws ImportError for a file that is not there, of no known kind, or an encoding that does not exist
    SurveyReader(const QString& path, const QString& encoding);

    SurveyFile readHead();
    /// Hands every case to the receiver. `progress` gets the share done and ends the reading with false.
    /// @param head what readHead() gave
    /// @return number of texts that a writer had cut off within a character; the broken character is left out
    qint64 readRows(const SurveyFile& head, RowReceiver& receiver, const std::function<bool(double)>& progress);
    /// Texts, after readRows(), with characters that a .por file did not keep.
    qint64 lostTexts() const { return lostTexts_; }
    /// True, after readRows(), for a variable of single precision with numbers that show a binary remainder as
    /// a double: 4.3 is 4.30000019073486.
    bool isInexact(size_t variable) const { return inexact_[variable]; }

private:
    enum class Kind { Sav, Por, Dta };
    QString path_;
    QByteArray encoding_;
    Kind kind_ = Kind::Sav;
    std::optional<PortableText> portable_; ///< of a .por file that is understood
    std::optional<SavCases> savCases_;     ///< of a .sav file, once its head was read
    qint64 lostInHead_ = 0, lostTexts_ = 0;
    std::vector<bool> inexact_;
    FileStamp stamp_; ///< of the file whose head was read

    std::unique_ptr<QIODevice> source() const;
    /// @param rows that are read at most, where the file does not say how many it has
    template<class Pass>
    int parse(Pass& pass, bool convert, qint64 rows = 0) const;
    /// @throws ImportError if the file is no longer the one whose head was read
    void checkUnchanged() const;
    /// Holds what the file says of its rows against what lies in it, before they are read.
    void checkRows(SurveyFile& head);
    /// And against what was read. @throws ImportError
    void checkRows(const SurveyFile& head, qint64 read) const;
    [[noreturn]] void fail(int code, const QString& detail) const;
    [[noreturn]] void refuse(const QString& reason) const;
    /// Name of a variable whose texts cannot be read, empty if there is none.
    QString unreadableInHead(const QByteArray& fileEncoding) const;
    static QString stringAfter(const SurveyFile& head, int variable);
};

/// A survey file whose head was read.
struct OpenSurvey {
    SurveyReader reader;
    SurveyFile head;

    /// @throws ImportError as the reader's constructor and readHead()
    OpenSurvey(const QString& path, const QString& encoding) : reader(path, encoding), head(reader.readHead()) {}
};
