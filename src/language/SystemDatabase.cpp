#include "language/SystemDatabase.h"

#include "language/SystemTable.h"

#include <QFile>
#include <QStringDecoder>
#include <algorithm>
#include <filesystem>

using namespace Qt::StringLiterals;

namespace {

/// Reads a file's lines, split at tabs.
QStringList readLines(const QString& path, qsizetype fields, std::vector<QStringList>& lines) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {path + u": cannot be read"_s};
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(file.readAll());
    if (decoder.hasError())
        return {path + u": is not UTF-8"_s};
    QStringList faults;
    int number = 0;
    for (QString line : text.split(u'\n')) {
        ++number;
        if (line.endsWith(u'\r'))
            line.chop(1);
        QStringList parts = line.split(u'\t');
        parts.replaceInStrings(u"\\n"_s, u"\r\n"_s);
        parts.append(path + u':' + QString::number(number));
        if (line.isEmpty())
            continue;
        if (parts.size() == fields + 1)
            lines.push_back(parts);
        else
            faults << parts.last() + u": "_s + QString::number(fields) + u" fields expected"_s;
    }
    return faults;
}

dao::TableDefPtr textTable(dao::Database& database, const QString& name, const QStringList& textFields) {
    const dao::TableDefPtr table = database.CreateTableDef(name);
    table->Fields.push_back(dao::TableDef::CreateField(u"ID"_s, dao::dbLong, 0, dao::dbAutoIncrField));
    for (const QString& field : textFields)
        table->Fields.push_back(dao::TableDef::CreateField(field, field == u"Index" ? dao::dbInteger : dao::dbMemo));
    return table;
}

const QStringList controlFields = {u"FormName"_s, u"CtrlTyp"_s, u"CtrlName"_s, u"Property"_s,
                                   u"Index"_s,    u"Deutsch"_s, u"Englisch"_s};

void makeTables(dao::Database& database) {
    for (const QString& name : {u"tblStat"_s, u"tblstatneu"_s})
        database.TableDefs().Append(textTable(database, name, controlFields));
    database.TableDefs().Append(textTable(database, u"tblText"_s, {u"Deutsch"_s, u"Englisch"_s}));
    const dao::TableDefPtr settings = database.CreateTableDef(u"sys"_s);
    settings->Fields = {dao::TableDef::CreateField(u"key"_s, dao::dbText, 50),
                        dao::TableDef::CreateField(u"wert"_s, dao::dbText, 50)};
    settings->PrimaryKey = QStringList{u"key"_s};
    database.TableDefs().Append(settings);

    database.CreateQueryDef(u"qdfTblText"_s, u"SELECT Deutsch, Englisch FROM tblText ORDER BY UCase(Trim(Deutsch));"_s);
    database.CreateQueryDef(u"qdfSysLanguage"_s, u"SELECT wert FROM sys WHERE key = 'Language';"_s);
    database.CreateQueryDef(u"qdfSysForm"_s, u"SELECT wert FROM sys WHERE key = 'ShowForm';"_s);
}

void fillTables(dao::Database& database, const SystemRows& rows) {
    auto texts = database.openAppender(u"tblText"_s, {u"Deutsch"_s, u"Englisch"_s});
    for (const TextRow& row : rows.texts) {
        texts->setText(0, row.german);
        texts->setText(1, row.english);
        texts->appendRow();
    }
    auto controls = database.openAppender(u"tblStat"_s, controlFields);
    for (const ControlRow& row : rows.controls) {
        const QStringList before = {row.formName, row.ctrlTyp, row.ctrlName, row.property};
        for (int column = 0; column < before.size(); ++column)
            controls->setText(column, before[column]);
        if (row.index)
            controls->setNumber(4, *row.index);
        controls->setText(5, row.german);
        controls->setText(6, row.english);
        controls->appendRow();
    }
    auto settings = database.openAppender(u"sys"_s, {u"key"_s, u"wert"_s});
    const std::pair<QString, QString> initial[] = {{u"Language"_s, u"0"_s}, {u"ShowForm"_s, u"1"_s}};
    for (const auto& [key, value] : initial) {
        settings->setText(0, key);
        settings->setText(1, value);
        settings->appendRow();
    }
}

} // namespace

QStringList readTextRows(const QString& file, SystemRows& rows) {
    std::vector<QStringList> lines;
    QStringList faults = readLines(file, 2, lines);
    for (const QStringList& line : lines) {
        if (SystemTable::searchForm(line[0]).isEmpty() || line[1].isEmpty())
            faults << line[2] + u": empty text"_s;
        rows.texts.push_back({line[0], line[1], line[2]});
    }
    return faults;
}

QStringList readControlRows(const QString& file, SystemRows& rows) {
    std::vector<QStringList> lines;
    QStringList faults = readLines(file, 7, lines);
    for (const QStringList& line : lines) {
        bool isNumber = true;
        ControlRow row{line[0], line[1], line[2], line[3], std::nullopt, line[5], line[6]};
        if (!line[4].isEmpty())
            row.index = line[4].toShort(&isNumber);
        if (!isNumber)
            faults << line[7] + u": the index is no number"_s;
        rows.controls.push_back(row);
    }
    return faults;
}

QStringList mergeTexts(std::vector<TextRow>& texts) {
    std::stable_sort(texts.begin(), texts.end(), [](const TextRow& a, const TextRow& b) {
        return SystemTable::compareSearchForms(SystemTable::searchForm(a.german), SystemTable::searchForm(b.german)) <
               0;
    });
    QStringList faults;
    std::vector<TextRow> merged;
    for (const TextRow& row : texts) {
        const bool same =
            !merged.empty() && SystemTable::compareSearchForms(SystemTable::searchForm(merged.back().german),
                                                               SystemTable::searchForm(row.german)) == 0;
        if (!same)
            merged.push_back(row);
        else if (merged.back().english != row.english)
            faults << row.origin + u": \""_s + row.german + u"\" has another English text at "_s + merged.back().origin;
    }
    texts = std::move(merged);
    return faults;
}

QStringList makeSystemDatabase(const QString& path, SystemRows rows) {
    const QStringList faults = mergeTexts(rows.texts);
    if (!faults.isEmpty())
        return faults;
    const QString unfinished = path + u".new"_s;
    QFile::remove(unfinished);
    try {
        const dao::DatabasePtr database = dao::DBEngine::instance().Workspaces(0).CreateDatabase(unfinished);
        makeTables(*database);
        fillTables(*database, rows);
        database->Close();
    } catch (const dao::Error& error) {
        QFile::remove(unfinished);
        return {path + u": "_s + error.description()};
    }
    // Replaces a file that is there in one step, which QFile::rename does not.
    std::error_code failure;
    std::filesystem::rename(unfinished.toStdU16String(), path.toStdU16String(), failure);
    if (failure)
        return {path + u": "_s + QString::fromStdString(failure.message())};
    return {};
}
