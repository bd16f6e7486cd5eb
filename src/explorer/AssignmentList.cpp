#include "explorer/AssignmentList.h"

#include "app/globals.h"
#include "catalogue/CDaoPersistance.h"
#include "catalogue/StudyRows.h"
#include "diagnostics/errors.h"
#include "explorer/VariableList.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int lastView = 9;

/// All categories of one variable, with the columns of both tables.
QString statement(const QString& table, const QString& columns, const QString& condition) {
    const QString relation = u"trel_Variable"_s + table;
    const QString entries = u"tkey_"_s + table;
    return u"Select "_s + columns + u" from "_s + relation + u" INNER JOIN "_s + entries + u" ON "_s + relation +
           u".fid = "_s + entries + u".id Where "_s + condition;
}

void addCategoriesOfView(std::vector<Assignment>& list, const dao::DatabasePtr& catalogue, int view,
                         const QString& study, const QString& variable, bool english) {
    const QString table = gViews.at(view, ViewTable::Table);
    CDaoPersistance persistance;
    const dao::RecordsetPtr recordset = persistance.GetRecordset(
        catalogue,
        statement(table, u"*"_s, u"fi_StudyNo = "_s + quoted(study) + u" And fi_VariableNo = "_s + quoted(variable)),
        dao::dbOpenDynaset);
    if (!recordset)
        return;
    for (; !recordset->Eof(); recordset->MoveNext())
        list.push_back({viewLetter(view) + recordset->text(u"trel_Variable"_s + table + u".fid"_s),
                        recordset->text(english ? u"dt_EnIndicatorName"_s : u"dt_IndicatorName"_s), 2 * view + 4});
    recordset->Close();
}

} // namespace

void Fill(std::vector<Assignment>& list, const dao::DatabasePtr& catalogue, const QString& study,
          const QString& variable, bool english) {
    const ProcedureScope scope(u"[frmExplorer.Fill]"_s);
    list.clear();
    for (int view = 1; view <= gCatalogueOptions.NumberOfFrmExplorers; ++view)
        if (gViews.at(view, ViewTable::Type) != u"1")
            attempt([&] { addCategoriesOfView(list, catalogue, view, study, variable, english); });
}

QString categoriesStatement(const QString& table, const QString& study, const QStringList& variables) {
    QStringList names;
    for (const QString& variable : variables)
        names << quoted(variable);
    return statement(table, u"fi_VariableNo, dt_IndicatorName, dt_EnIndicatorName, [order]"_s,
                     u"fi_StudyNo = "_s + quoted(study) + u" And fi_VariableNo In ("_s + names.join(u", "_s) +
                         u") Order By [order]"_s);
}

Jump jumpOf(const QString& key, int ownView, const CatalogueTree& ownTree, const std::function<bool(int)>& isViewOpen) {
    const int view = viewOfKey(key);
    if (view == ownView)
        return {ownTree.find(key) ? Jump::To::NodeHere : Jump::To::Nowhere, view};
    if (view < 1)
        return {};
    if (isViewOpen(view))
        return {Jump::To::OtherWindow, view};
    return view <= lastView ? Jump{Jump::To::NewWindow, view} : Jump{};
}
