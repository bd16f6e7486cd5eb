#include "app/globals.h"
#include "catalogue/StudyRows.h"
#include "explorer/VariableList.h"

using namespace Qt::StringLiterals;

namespace {

/// From where the variables of a study or a category are listed, and in which order.
QString studySource(const QString& table, const QString& id, bool varGroups) {
    const QString study = u"tkey_"_s + table;
    QString sql = u" FROM (tkey_Variable LEFT JOIN "_s + study + u" ON tkey_Variable.fi_StudyNo = "_s + study +
                  u".id_StudyNo) "_s;
    if (varGroups)
        sql += u"LEFT JOIN tkey_VarGroups ON tkey_Variable.dt_VarGroup = tkey_VarGroups.id_VarGroup "_s;
    return sql + u"  WHERE [fi_StudyNo] = "_s + quoted(id) +
           u" ORDER BY tkey_Variable.fi_StudyNo, tkey_Variable.dt_Position;"_s;
}

QString categorySource(const QString& table, const QString& studyTable, const QString& id, bool varGroups) {
    const QString relation = u"trel_Variable"_s + table;
    const QString study = u"tkey_"_s + studyTable;
    QString sql = u"FROM ((tkey_Variable LEFT JOIN "_s + study + u" ON tkey_Variable.fi_StudyNo = "_s + study +
                  u".id_StudyNo) "_s;
    // Without groups one bracket more is opened than closed; the engine takes the statement so.
    if (varGroups)
        sql += u"LEFT JOIN tkey_VarGroups ON tkey_Variable.dt_VarGroup = tkey_VarGroups.id_VarGroup) "_s;
    sql += u"LEFT JOIN "_s + relation + u" ON (tkey_Variable.id_VarName = "_s + relation +
           u".fi_VariableNo) AND (tkey_Variable.fi_StudyNo = "_s + relation + u".fi_StudyNo) "_s;
    return sql + u" WHERE "_s + relation + u".fid = "_s + id + u" ORDER BY "_s + relation + u".fid, "_s + relation +
           u".fi_StudyNo, tkey_Variable.dt_Position;"_s;
}

QString groupNames(bool varGroups) {
    return varGroups ? u"tkey_VarGroups.dt_VarGroupName, tkey_VarGroups.dt_VarGroupNameEn"_s
                     : u"'' AS dt_VarGroupName, '' AS dt_VarGroupNameEn"_s;
}

} // namespace

QString studyVariablesStatement(const QString& table, const QString& id, bool varGroups) {
    const QString study = u"tkey_"_s + table;
    return u"SELECT tkey_Variable.id_VarName AS fi_VariableNo, tkey_Variable.fi_StudyNo, "
           "tkey_Variable.dt_VarLabel, tkey_Variable.dt_QuestionText, "_s +
           study + u".dt_StudyTitle, "_s + study + u".dt_Year, "_s + study +
           u".dt_StudyDescription, tkey_Variable.dt_Position, tkey_Variable.dt_EnVarLabel, "
           "tkey_Variable.dt_EnQuestionText, "_s +
           groupNames(varGroups) + u", "_s + study + u".dt_EnStudyTitle"_s + studySource(table, id, varGroups);
}

QString categoryVariablesStatement(const QString& table, const QString& studyTable, const QString& id, bool varGroups) {
    const QString relation = u"trel_Variable"_s + table;
    return u"SELECT "_s + relation + u".fid, "_s + relation + u".fi_VariableNo, "_s + relation +
           u".fi_StudyNo, tkey_Variable.dt_VarLabel, tkey_Variable.dt_QuestionText, tkey_"_s + studyTable +
           u".dt_Year, tkey_Variable.dt_Position, tkey_Variable.dt_EnVarLabel, "
           "tkey_Variable.dt_EnQuestionText, "_s +
           groupNames(varGroups) + u" "_s + categorySource(table, studyTable, id, varGroups);
}

QString nodeVariablesStatement(bool study, int view, const QString& id, bool varGroups) {
    const QString table = gViews.at(view, ViewTable::Table);
    // The year comes from view 1's table, whichever view is shown.
    return study ? studyVariablesStatement(table, id, varGroups)
                 : categoryVariablesStatement(table, gViews.at(1, ViewTable::Table), id, varGroups);
}

QString searchedVariablesStatement(bool study, int view, const QString& id, bool varGroups) {
    const QString table = gViews.at(view, ViewTable::Table);
    const QString studyTable = study ? table : gViews.at(1, ViewTable::Table);
    return u"SELECT tkey_Variable.id_VarName AS fi_VariableNo, tkey_Variable.fi_StudyNo, tkey_Variable.dt_VarLabel, "
           "tkey_Variable.dt_EnVarLabel, tkey_Variable.dt_QuestionText, tkey_Variable.dt_EnQuestionText, tkey_"_s +
           studyTable + u".dt_Year, "_s + groupNames(varGroups) + u' ' +
           (study ? studySource(table, id, varGroups) : categorySource(table, studyTable, id, varGroups));
}
