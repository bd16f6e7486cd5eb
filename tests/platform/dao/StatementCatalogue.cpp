#include "StatementCatalogue.h"

#include "StatementFile.h"

using namespace Qt::StringLiterals;

namespace {

QStringList cellsOf(const QString& line) {
    QStringList cells;
    for (const QString& cell : line.split(u'|'))
        cells.append(cell.trimmed());
    return cells;
}

/// "name type size", then "key" for a column of the primary key.
dao::FieldDefinition fieldOf(const QStringList& words) {
    static const std::map<QString, int> types = {{u"long"_s, dao::dbLong},     {u"counter"_s, dao::dbLong},
                                                 {u"double"_s, dao::dbDouble}, {u"text"_s, dao::dbText},
                                                 {u"memo"_s, dao::dbMemo},     {u"boolean"_s, dao::dbBoolean}};
    const int attributes = words[1] == u"counter" ? dao::dbAutoIncrField : 0;
    return dao::TableDef::CreateField(words[0], types.at(words[1]), words.value(2).toInt(), attributes);
}

} // namespace

StatementCatalogue::StatementCatalogue() {
    // One transaction a file: without, each row would wait for the disk.
    dao::Workspace& workspace = dao::DBEngine::instance().Workspaces(0);
    QString table;
    for (const auto& [text, number] : readLines(u"catalogue.txt"_s)) {
        const QStringList words = text.mid(1).section(u']', 0, 0).split(u' ');
        if (!text.startsWith(u'[')) {
            if (table.isEmpty())
                addRow(cellsOf(text));
            else
                beginTable(std::exchange(table, {}), cellsOf(text));
        } else if (words[0] == u"file") {
            finishFile();
            file_ = words[1];
            files_[file_] = workspace.CreateDatabase(folder_.filePath(file_ + u".mdb"_s));
            workspace.BeginTrans();
        } else if (words[0] == u"table") {
            appender_.reset();
            table = words[1];
        } else if (words[0] == u"link") {
            const dao::TableDefPtr link = database().CreateTableDef(words[1]);
            link->setSourceTableName(words[1]);
            link->setConnect(u";DATABASE="_s + folder_.filePath(words[2] + u".mdb"_s));
            database().TableDefs().Append(link);
        } else {
            setQuery(words[1], text.section(u']', 1).trimmed());
        }
    }
    finishFile();
}

void StatementCatalogue::finishFile() {
    appender_.reset();
    if (!file_.isEmpty())
        dao::DBEngine::instance().Workspaces(0).CommitTrans();
}

StatementCatalogue::~StatementCatalogue() {
    for (const auto& [name, file] : files_)
        file->Close();
}

void StatementCatalogue::setQuery(const QString& name, const QString& text) const {
    if (database().QueryDefs().contains(name))
        database().QueryDefs().Item(name)->setSQL(text);
    else
        database().CreateQueryDef(name, text);
}

void StatementCatalogue::beginTable(const QString& name, const Cells& fields) {
    const dao::TableDefPtr table = files_.at(file_)->CreateTableDef(name);
    QStringList names;
    for (const QString& field : fields) {
        const QStringList words = field.split(u' ');
        table->Fields.push_back(fieldOf(words));
        names.append(words[0]);
        if (words.back() == u"key")
            table->PrimaryKey.append(words[0]);
    }
    fields_ = table->Fields;
    files_.at(file_)->TableDefs().Append(table);
    appender_ = files_.at(file_)->openAppender(name, names);
}

void StatementCatalogue::addRow(const Cells& cells) {
    for (int column = 0; column < cells.size(); ++column) {
        if (cells[column] == u"Null")
            appender_->setNull(column);
        else if (dao::isTextType(fields_[static_cast<size_t>(column)].Type))
            appender_->setText(column, cells[column]);
        else
            appender_->setNumber(column, cells[column].toDouble());
    }
    appender_->appendRow();
}
