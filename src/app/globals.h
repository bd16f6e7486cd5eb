#pragma once

#include <QString>
#include <array>
#include <vector>

/// The process-wide state that every floor may read. Objects are declared only; each is defined by its owner.

class CErrHandler;
class CText;
class CDaoDatabase;
struct Options;

/// Language of labels and messages: 0 German, 1 English.
extern qint16 gLanguage;
/// On from the reading of the options to the end of the process; event handlers install their trap only if it is on.
extern bool gErrorTrapping;
/// Above 0 while windows are being refilled, a run goes on, or the program starts: event handlers that would change or
/// read what is in the making leave at once.
extern int gBusy;
/// Counts in gBusy for as long as it lives.
struct BusyScope {
    BusyScope() { ++gBusy; }
    ~BusyScope() { --gBusy; }
    BusyScope(const BusyScope&) = delete;
    BusyScope& operator=(const BusyScope&) = delete;
};
/// Serial numbers of the older window kinds.
extern std::array<qint32, 7> gWindowSerials;

/// View definitions of the open catalogue: rows 0 to NumberOfFrmExplorers (row 0 stays empty), columns 0 to 9.
class ViewTable {
public:
    enum Column { Unused, Name, Table, Type, NameEnglish, DescName, DescNameEnglish, DescReport, Report, CompAnalysis };
    static constexpr int columns = 10;

    /// Sizes the table to rows 0 to `last` and empties every cell.
    void resize(int last);
    int lastRow() const { return static_cast<int>(rows_.size()) - 1; }
    /// A cell; empty text for a row that is not there.
    QString at(int row, int column) const;
    void set(int row, int column, const QString& text);
    void removeRow(int row);
    void clear() { rows_.clear(); }

private:
    std::vector<std::array<QString, columns>> rows_;
};
extern ViewTable gViews;

/// Options that the open catalogue carries; see mdDataBase::GetDatabaseOptions().
struct CatalogueOptions {
    qint16 OpenFrmExplorerAtStart = 0;
    qint16 NumberOfFrmExplorers = 1;
    bool ShowVarGroupInfo = false;
    QString VarGroupInfoName;
    QString VarGroupInfoNameEnglish;
    QString ReportVariable;
    bool RemoveTableLinksOnExitDB = false;
    bool VaridexCreationMode = false;
};
extern CatalogueOptions gCatalogueOptions;

extern CErrHandler gErrHandler;
extern CText gTextObject;
extern CDaoDatabase gDatabase;
extern Options gOptions;

/// The one of two texts that gLanguage asks for: for the words of import, build and vdx, which have no row in the text
/// table, and for what must be said before that is read or when it cannot be read. All others go through TranslateText.
inline QString said(const QString& german, const QString& english) {
    return gLanguage == 0 ? german : english;
}
/// The English of a German literal when gLanguage is not 0, and the text itself else or where the table lacks it.
QString TranslateText(const QString& text);

/// Unloads every open window but the main one. The windowed program sets it; without windows it does nothing.
extern void (*gUnloadWindows)();
