#include "catalogue/CaseTables.h"

#include "catalogue/importTexts.h"
#include "platform/system/Paths.h"

#include <QHash>
#include <QScopeGuard>
#include <cmath>
#include <future>

using namespace Qt::StringLiterals;

namespace {

/// A Jet table takes 255 columns, one of which is `dt_CaseID`.
constexpr int maxVariablesPerTable = 254;
constexpr int maxTextCharacters = 255;

} // namespace

std::vector<CaseTable> shareOutVariables(const QString& study, const std::vector<VariableNames>& names,
                                         const std::vector<CaseTableWish>& wishes) {
    QHash<QString, int> byName;
    for (size_t i = 0; i < names.size(); ++i) {
        byName.insert(names[i].original.toCaseFolded(), static_cast<int>(i));
        byName.insert(names[i].name.toCaseFolded(), static_cast<int>(i));
    }
    std::vector<CaseTable> tables(1);
    std::vector<bool> placed(names.size());
    for (const CaseTableWish& wish : wishes) {
        CaseTable table{{}, wish.ownFile, {}};
        for (const QString& name : wish.variables) {
            const auto found = byName.constFind(name.toCaseFolded());
            if (found == byName.constEnd())
                throw ImportError(
                    said(u"Variable %1 gibt es in der Datei nicht"_s, u"The file has no variable %1"_s).arg(name));
            if (!placed[static_cast<size_t>(*found)])
                table.variables.push_back(*found);
            placed[static_cast<size_t>(*found)] = true;
        }
        if (table.variables.size() > maxVariablesPerTable)
            throw ImportError(
                said(u"Eine Falltabelle fasst höchstens %1 Variablen"_s, u"A case table holds at most %1 variables"_s)
                    .arg(maxVariablesPerTable));
        tables.push_back(std::move(table));
    }
    size_t filling = 0;
    for (size_t i = 0; i < names.size(); ++i) {
        if (placed[i])
            continue;
        if (tables[filling].variables.size() == maxVariablesPerTable) {
            tables.emplace_back();
            filling = tables.size() - 1;
        }
        tables[filling].variables.push_back(static_cast<int>(i));
    }
    for (size_t i = 0; i < tables.size(); ++i)
        tables[i].name = study + u'_' + QString::number(i + 1);
    return tables;
}

QString caseFileOf(const QString& folder, const QString& study, const CaseTable& table) {
    const QString suffix = table.name.mid(table.name.lastIndexOf(u'_') + 1);
    const QString own = Paths::join(folder, study + u'-' + suffix + u".mdb"_s);
    if (table.ownFile || Paths::exists(own))
        return Paths::onDisk(own);
    return Paths::onDisk(Paths::join(folder, study + u".mdb"_s));
}

CaseWriter::CaseWriter(const SurveyFile& file, TaggedCodes& codes, TextCodes& textCodes)
    : file_(file), codes_(codes), textCodes_(textCodes), places_(file.variables.size()),
      noDates_(file.variables.size()), infinite_(file.variables.size()), rounded_(file.variables.size()),
      blanks_(file.variables.size()) {
    for (size_t i = 0; i < places_.size(); ++i)
        if (!file.variables[i].isText)
            places_[i].time = timeFormat(file.variables[i].format, file.stata);
}

std::vector<dao::FieldDefinition> CaseWriter::fields(const CaseTable& table,
                                                     const std::vector<VariableNames>& names) const {
    std::vector<dao::FieldDefinition> fields;
    for (const int index : table.variables) {
        const SurveyVariable& variable = file_.variables[static_cast<size_t>(index)];
        int type = dao::dbDouble;
        if (variable.isText && !textCodes_.encodes(index))
            type = variable.width > 0 && variable.width <= maxTextCharacters ? dao::dbText : dao::dbMemo;
        else if (places_[static_cast<size_t>(index)].time.isTime())
            type = dao::dbText;
        fields.push_back(dao::TableDef::CreateField(names[static_cast<size_t>(index)].field, type));
    }
    return fields;
}

void CaseWriter::addTable(const CaseTable& table, std::unique_ptr<dao::Appender> appender) {
    dao::RowBlock rows = appender->newBlock();
    tables_.push_back(std::make_unique<Table>(Table{std::move(appender), std::move(rows)}));
    for (size_t i = 0; i < table.variables.size(); ++i) {
        Place& place = places_[static_cast<size_t>(table.variables[i])];
        place.rows = &tables_.back()->rows;
        place.column = static_cast<int>(i) + 1;
        place.isEncoded = textCodes_.encodes(table.variables[i]);
    }
}

void CaseWriter::reset() {
    tables_.clear();
    for (Place& place : places_)
        place.rows = nullptr;
    std::fill(noDates_.begin(), noDates_.end(), 0);
    std::fill(infinite_.begin(), infinite_.end(), 0);
    std::fill(rounded_.begin(), rounded_.end(), 0);
    std::fill(blanks_.begin(), blanks_.end(), 0);
    rows_ = 0;
}

void CaseWriter::number(int variable, double value) {
    Place& place = places_[static_cast<size_t>(variable)];
    if (!std::isfinite(value)) {
        ++infinite_[static_cast<size_t>(variable)];
        return;
    }
    if (file_.stata)
        codes_.sawNumber(variable, value);
    if (place.time.isTime())
        writeTime(place, variable, value);
    else
        place.rows->setNumber(place.column, value);
}

void CaseWriter::writeTime(Place& place, int variable, double value) {
    // A code for "not known" is no moment; as a date it would pass for a valid answer.
    if (isDeclaredMissing(file_.variables[static_cast<size_t>(variable)], value)) {
        place.rows->setText(place.column, codeText(value));
        return;
    }
    if (const std::optional<QByteArray> iso = isoText(value, place.time)) {
        rounded_[static_cast<size_t>(variable)] += isFinerThanMillisecond(value, place.time);
        place.rows->setUtf8(place.column, iso->constData(), static_cast<int>(iso->size()));
        return;
    }
    ++noDates_[static_cast<size_t>(variable)];
    place.rows->setText(place.column, codeText(value));
}

void CaseWriter::letter(int variable, char letter) {
    if (letter < 'a' || letter > 'z')
        return;
    codes_.sawLetter(variable, letter);
    Place& place = places_[static_cast<size_t>(variable)];
    const double code = codes_.code(variable, letter);
    if (place.time.isTime())
        place.rows->setText(place.column, codeText(code));
    else
        place.rows->setNumber(place.column, code);
}

void CaseWriter::text(int variable, const char* utf8, int bytes) {
    Place& place = places_[static_cast<size_t>(variable)];
    if (!place.isEncoded) {
        place.rows->setUtf8(place.column, utf8, bytes);
        return;
    }
    const int code = textCodes_.sawText(variable, {utf8, static_cast<size_t>(bytes)});
    if (code > 0)
        place.rows->setNumber(place.column, code);
    else
        ++blanks_[static_cast<size_t>(variable)];
}

void CaseWriter::endRow() {
    ++rows_;
    for (size_t i = 0; i < tables_.size(); ++i) {
        dao::RowBlock& rows = tables_[i]->rows;
        rows.setNumber(0, rows_);
        rows.endRow();
        if (rows.isFull())
            queue_->put(i, rows);
    }
}

void CaseWriter::finish() {
    for (size_t i = 0; i < tables_.size(); ++i)
        queue_->put(i, tables_[i]->rows);
}

qint64 readCases(SurveyReader& reader, const SurveyFile& head, CaseWriter& writer,
                 const std::function<bool(double)>& progress) {
    BlockQueue queue;
    writer.collectInto(queue);
    const auto read = [&] {
        const qint64 cutTexts = reader.readRows(head, writer, [&](double share) {
            queue.report(share);
            return true;
        });
        writer.finish();
        return cutTexts;
    };
    // Leaving this scope waits for the reading to end.
    std::future<qint64> reading = std::async(std::launch::async, [&] {
        const auto finish = qScopeGuard([&] { queue.finish(); });
        return read();
    });
    const auto stop = qScopeGuard([&] { queue.stop(); });
    queue.passOn([&](size_t table, const dao::RowBlock& rows) { writer.write(table, rows); },
                 [&](double share) {
                     if (progress && !progress(share))
                         throw importCancelled();
                 });
    return reading.get();
}

QString storedCode(double code, TimeFormat time, const SurveyVariable& variable) {
    if (time.isTime() && !isDeclaredMissing(variable, code))
        if (const std::optional<QByteArray> iso = isoText(code, time))
            return QString::fromLatin1(*iso);
    return codeText(code);
}
