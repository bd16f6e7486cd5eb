#pragma once

#include "platform/dao/Recordset.h"

#include <QString>
#include <vector>

/// The long descriptions of one view's entries, one at a time, or that of the catalogue, without the window. Everything
/// is read anew at each move, so that what was edited meanwhile is followed.
class DescriptionModel {
public:
    enum class Move { First, Next, Previous, Same };
    /// An entry that can be chosen. One whose description is a blank has no line, though it is walked over.
    struct Line {
        QString key, title;
    };

    /// @param view its number; 0 for the description of the catalogue
    explicit DescriptionModel(int view);

    const int ltreetype;
    const bool bIsStudy;
    std::vector<Line> cmbAuswahl;

    /// Shows contents in English.
    bool bEL() const { return bEL_; }
    /// The description as it is stored; see textRuns().
    const QString& txtText() const { return txtText_; }
    /// Key of the entry in view; empty for the catalogue, and where there is none.
    const QString& txtStudyNo() const { return txtStudyNo_; }
    const QString& title() const { return title_; }
    /// Line of the entry in view; -1 if it has none.
    int line() const;
    /// Place of the entry in view among all that are walked over, from 0, and their number; -1 and 0 without any.
    int position() const { return position_; }
    int count() const { return count_; }

    /// Shows another entry, or the same as it is now; past an end the last or the first. Where the entry in view is
    /// gone, the first is shown. A failure is reported, and leaves everything as it is.
    /// @return position()
    int FillDescriptionForm(Move move);
    /// @param position rows from the first
    int FillDescriptionForm(int position);
    /// Shows the entry of a line; the first, if the entry is gone.
    void cmbAuswahl_Click(int line);
    /// Shows an entry by its key. @return false, and nothing changes, if it has no description in the language in force
    bool showEntry(const QString& key);
    /// Changes the language, and keeps the entry if it has a description in that too.
    void setEnglish(bool english);

private:
    struct Target {
        Move move = Move::First;
        int position = -1; ///< from 0 on it counts, not the move
        QString key;       ///< of the entry that the move begins at
        bool mustBeThere = false;
    };

    bool bEL_;
    QString txtText_, txtStudyNo_, title_;
    int position_ = -1, count_ = 0;

    bool fill(const Target& target);
    bool fillFromCatalogue();
    bool fillFromView(const Target& target);
    QString statement() const;
    void take(const dao::Recordset& rows, const QString& key, const QString& title, const QString& description);
};
