#include "analysis/request/variableFields.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "platform/dao/Transaction.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int deletedMeanwhile = 3167;

dao::RecordsetPtr rowsOf(const QString& study, const QStringList& fields, const QString& more,
                         int type = dao::dbOpenDynaset) {
    return gDatabase.CurrentDatabase()->OpenRecordset(u"select fi_StudyNo, id_VarName, "_s + fields.join(u", "_s) +
                                                          u" from tkey_Variable where fi_StudyNo = "_s + quoted(study) +
                                                          more,
                                                      type);
}

/// @return false for a row that is not there, or no more
bool writeRow(dao::Recordset& row, const EntryFields& values) {
    if (row.Eof())
        return false;
    try {
        row.Edit();
        setFields(row, values);
        row.Update();
    } catch (const dao::Error& error) {
        if (error.number() != deletedMeanwhile)
            throw;
        return false;
    }
    return true;
}

} // namespace

dao::RecordsetPtr variableRow(const QString& study, const QString& variable, const QStringList& fields) {
    return rowsOf(study, fields, u" and id_VarName = "_s + quoted(variable));
}

QStringList textsOf(const QString& study, const QString& variable, const QStringList& fields) {
    // What can be edited leaves memos in the file, and each would be of its own moment.
    const dao::RecordsetPtr row =
        rowsOf(study, fields, u" and id_VarName = "_s + quoted(variable), dao::dbOpenSnapshot);
    QStringList texts;
    for (const QString& field : fields)
        texts << (row->Eof() ? QString() : row->text(field));
    return texts;
}

QStringList writeVariableFields(const QString& study, const std::vector<VariableFields>& rows) {
    QStringList gone;
    dao::Transaction transaction;
    for (const VariableFields& one : rows) {
        QStringList fields;
        for (const auto& [field, value] : one.values)
            fields << field;
        if (!writeRow(*variableRow(study, one.variable, fields), one.values))
            gone << one.variable;
    }
    transaction.commit();
    return gone;
}

void writeToAllVariables(const QString& study, const QString& field, const dao::Value& value) {
    dao::Transaction transaction;
    const dao::RecordsetPtr rows = rowsOf(study, {field}, u" order by dt_Position"_s);
    for (; !rows->Eof(); rows->MoveNext()) {
        rows->Edit();
        rows->setValue(field, value);
        rows->Update();
    }
    rows->Close();
    transaction.commit();
}

std::vector<KeptInstruction> readInstructions(const QString& study) {
    std::vector<KeptInstruction> instructions;
    const dao::RecordsetPtr rows = rowsOf(study, {u"dt_Instruction"_s}, u" order by dt_Position"_s);
    for (; !rows->Eof(); rows->MoveNext())
        instructions.push_back({rows->text(u"id_VarName"_s), rows->text(u"dt_Instruction"_s)});
    return instructions;
}
