#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/CDaoPersistance.h"
#include "catalogue/mdDataBase.h"
#include "config/Options.h"
#include "diagnostics/errors.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int maxViews = 9;
const QString viewPrefix = u"frmExplorer"_s;

double val(const dao::Value& value) {
    return dao::leadingNumber(value.toText(), false);
}

qint16 toShort(double number) {
    const qint64 whole = dao::Value(number).toInteger();
    if (whole < std::numeric_limits<qint16>::min() || whole > std::numeric_limits<qint16>::max())
        dao::raiseRuntimeError(6);
    return static_cast<qint16>(whole);
}

void resetBeforeReading() {
    gCatalogueOptions.OpenFrmExplorerAtStart = 0;
    gCatalogueOptions.NumberOfFrmExplorers = 1;
    gCatalogueOptions.VaridexCreationMode = false;
}

void readViewCount(const dao::Value& value) {
    const double wanted = value.isNull() ? 1 : val(value);
    gCatalogueOptions.NumberOfFrmExplorers = toShort(std::clamp(wanted, 1.0, double{maxViews}));
    if (gCatalogueOptions.OpenFrmExplorerAtStart > gCatalogueOptions.NumberOfFrmExplorers)
        gCatalogueOptions.OpenFrmExplorerAtStart = 1;
    gViews.resize(gCatalogueOptions.NumberOfFrmExplorers);
}

/// Column of the view table that an option's suffix names, 0 for none.
int viewColumn(const QString& suffix) {
    static const std::pair<QString, int> columns[] = {
        {u"Name"_s, ViewTable::Name},
        {u"Table"_s, ViewTable::Table},
        {u"Type"_s, ViewTable::Type},
        {u"NameEnglish"_s, ViewTable::NameEnglish},
        {u"DescName"_s, ViewTable::DescName},
        {u"DescNameEnglish"_s, ViewTable::DescNameEnglish},
        {u"DescReport"_s, ViewTable::DescReport},
        {u"Report"_s, ViewTable::Report},
        {u"CompAnalysis"_s, ViewTable::CompAnalysis},
    };
    for (const auto& [name, column] : columns)
        if (name == suffix)
            return column;
    return 0;
}

void readViewCell(const QString& name, const dao::Value& value) {
    const int view = toShort(dao::leadingNumber(name.mid(viewPrefix.size(), 1), false));
    const int column = viewColumn(name.mid(viewPrefix.size() + 1));
    if (view < 1 || view > gCatalogueOptions.NumberOfFrmExplorers || column == 0)
        return;
    // Without a count among the options the table keeps its size; only one that has no views at all is sized
    // here.
    if (view > gViews.lastRow())
        gViews.resize(gCatalogueOptions.NumberOfFrmExplorers);
    const QString text = value.toText();
    const bool isFlag = column == ViewTable::Type || column == ViewTable::CompAnalysis;
    if (!isFlag || text == u"1")
        gViews.set(view, column, text);
}

/// A switch or text that a Null leaves as it is.
void readPlainOption(const QString& name, const dao::Value& value) {
    CatalogueOptions& options = gCatalogueOptions;
    if (value.isNull())
        return;
    if (name == u"ShowVarGroupInfo")
        options.ShowVarGroupInfo = val(value) != 0;
    else if (name == u"VarGroupInfoName")
        options.VarGroupInfoName = value.toText();
    else if (name == u"VarGroupInfoNameEnglish")
        options.VarGroupInfoNameEnglish = value.toText();
    else if (name == u"ReportVariable")
        options.ReportVariable = value.toText();
    else if (name == u"RemoveTableLinksOnExitDB")
        options.RemoveTableLinksOnExitDB = value.toText() == u"1";
    else if (name == u"VaridexCreationMode")
        options.VaridexCreationMode = val(value) != 0;
}

void readOption(const QString& name, const dao::Value& value) {
    if (name == u"OpenFrmExplorerAtStart")
        gCatalogueOptions.OpenFrmExplorerAtStart = toShort(val(value));
    else if (name == u"NumberOfFrmExplorers")
        readViewCount(value);
    else if (name == u"DefaultEnglishContents")
        gOptions.EnglishLanguage = value.toText() == u"1";
    else if (name.startsWith(viewPrefix))
        readViewCell(name, value);
    else
        readPlainOption(name, value);
}

void readOptions(const dao::RecordsetPtr& recordset) {
    if (!recordset)
        dao::raiseRuntimeError(91);
    const int name = recordset->indexOf(u"dt_OptionName"_s);
    const int value = recordset->indexOf(u"dt_OptionValue"_s);
    for (; !recordset->Eof(); recordset->MoveNext())
        attempt([&] { readOption(recordset->value(name).toText(), recordset->value(value)); }, reportProgramError);
}

/// Takes out the views that have no name or no table; what follows moves to a lower number.
void closeGapsBetweenViews() {
    if (gViews.lastRow() < 0)
        return;
    qint16& count = gCatalogueOptions.NumberOfFrmExplorers;
    for (int view = 1; view <= (count = static_cast<qint16>(std::min<int>(count, gViews.lastRow())));) {
        if (gViews.at(view, ViewTable::Name).isEmpty() || gViews.at(view, ViewTable::Table).isEmpty())
            gViews.removeRow(view);
        else
            ++view;
    }
}

} // namespace

namespace mdDataBase {

bool GetDefaultDatabaseOptions() {
    const ProcedureScope scope(u"[mdDatabase.GetDefaultDatabaseOptions]"_s);
    resetBeforeReading();
    gViews.resize(1);
    gOptions.EnglishLanguage = true;
    gCatalogueOptions.ShowVarGroupInfo = false;
    gCatalogueOptions.VarGroupInfoNameEnglish.clear();
    gCatalogueOptions.VarGroupInfoName.clear();
    gCatalogueOptions.ReportVariable.clear();
    gCatalogueOptions.RemoveTableLinksOnExitDB = true;
    gViews.set(1, ViewTable::Name, u"Studien"_s);
    gViews.set(1, ViewTable::NameEnglish, u"Studies"_s);
    gViews.set(1, ViewTable::DescName, u"Studienbeschreibungen"_s);
    gViews.set(1, ViewTable::DescNameEnglish, u"Study Descriptions"_s);
    gViews.set(1, ViewTable::Table, u"Study"_s);
    gViews.set(1, ViewTable::Type, u"1"_s);
    gViews.set(1, ViewTable::CompAnalysis, u"0"_s);
    return true;
}

bool GetDatabaseOptions() {
    const ProcedureScope scope(u"[mdDatabase.GetDatabaseOptions]"_s);
    resetBeforeReading();
    CDaoPersistance persistance;
    // Descending, so that the start view and the count of views are known when the rows of the views arrive.
    const dao::RecordsetPtr recordset = persistance.GetRecordset(
        gDatabase.CurrentDatabase(), u"SELECT * FROM tsys_Options ORDER BY dt_OptionName DESC;"_s, dao::dbOpenDynaset);
    attempt([&] { readOptions(recordset); }, reportProgramError);
    closeGapsBetweenViews();
    if (recordset)
        attempt([&] { recordset->Close(); }, reportProgramError);
    return true;
}

} // namespace mdDataBase
