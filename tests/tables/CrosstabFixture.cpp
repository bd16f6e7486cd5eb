#include "CrosstabFixture.h"

using namespace Qt::StringLiterals;

CrosstabTest::CrosstabTest()
    : labels_{{u"A"_s, u"1"_s, u"ja"_s},
              {u"A"_s, u"2.0"_s, u"nein"_s},
              {u"A"_s, u"9"_s, u"k.A."_s},
              {u"B"_s, u"1"_s, u"Ost"_s},
              {u"B"_s, u"2"_s, u"West"_s}},
      file_(dao::DBEngine::instance().Workspaces(0).CreateDatabase(home_.path(u"t.mdb"_s))) {}

void CrosstabTest::store(const QString& name, const QStringList& fields, const std::vector<int>& types,
                         const Rows& rows) {
    if (file_->TableDefs().contains(name))
        file_->TableDefs().Delete(name);
    const dao::TableDefPtr table = file_->CreateTableDef(name);
    for (int i = 0; i < 3; ++i)
        table->Fields.push_back(dao::TableDef::CreateField(fields[i], types[static_cast<size_t>(i)]));
    file_->TableDefs().Append(table);
    const auto appender = file_->openAppender(name, fields);
    for (const std::vector<dao::Value>& row : rows) {
        for (int i = 0; i < 3; ++i) {
            const dao::Value& value = row[static_cast<size_t>(i)];
            if (value.isNull())
                continue;
            if (types[static_cast<size_t>(i)] == dao::dbText)
                appender->setText(i, value.toText());
            else
                appender->setNumber(i, value.toDouble());
        }
        appender->appendRow();
    }
}

BuildOutcome CrosstabTest::build(const Rows& rows, int type) {
    dao::Workspace& workspace = dao::DBEngine::instance().Workspaces(0);
    workspace.BeginTrans();
    store(u"counts"_s, {u"A"_s, u"B"_s, u"Count"_s}, {type, type, dao::dbDouble}, rows);
    store(u"labels"_s, {u"fi_VarName"_s, u"dt_Value"_s, u"dt_Label"_s}, {dao::dbText, dao::dbText, dao::dbText},
          labels_);
    workspace.CommitTrans();
    const dao::RecordsetPtr counts = file_->OpenRecordset(u"counts"_s, dao::dbOpenSnapshot);
    const dao::RecordsetPtr labels = file_->OpenRecordset(u"labels"_s, dao::dbOpenSnapshot);
    const CrosstabInput input{.counts = *counts,
                              .labels = *labels,
                              .rowMissing = rowMissing_,
                              .columnMissing = columnMissing_,
                              .options = options_,
                              .textWidth = [](const QString& shown) { return static_cast<int>(shown.size()) * 100; },
                              .cancelled = cancelled_,
                              .onFailure = onFailure_,
                              .marks = marks_ ? &*marks_ : nullptr};
    return BuildCrosstabTable({shown_, column_, row_, total_, absolute_}, input);
}

QString CrosstabTest::text(const ResultTable& table) {
    const auto word = [](QString cell, const QString& label, const QString& mark) {
        cell.replace(u"Gült. Summe"_s, u"V"_s).replace(u"Summe"_s, u"S"_s);
        cell += label + (mark == "X"_L1 ? u"*"_s : QString());
        return cell.isEmpty() ? u"."_s : cell.replace(u' ', u'_');
    };
    QStringList rows(QString{});
    for (int column = 3; column < table.Cols(); ++column)
        rows[0] += (column > 3 ? u" "_s : QString()) +
                   word(table.Cell(column, 0), table.Cell(column, 1), table.Cell(column, 2));
    for (int row = 3; row < table.Rows(); ++row) {
        QStringList cells(word(table.Cell(0, row), table.Cell(1, row), table.Cell(2, row)));
        for (int column = 3; column < table.Cols(); ++column)
            cells << word(table.Cell(column, row), {}, {});
        rows << cells.join(u' ');
    }
    return rows.join(u" / "_s);
}
