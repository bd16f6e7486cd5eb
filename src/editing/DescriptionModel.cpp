#include "editing/DescriptionModel.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/CDaoPersistance.h"
#include "catalogue/schema.h"
#include "config/Options.h"
#include "diagnostics/errors.h"
#include "explorer/EntryColumns.h"
#include "platform/ui/Asker.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

dao::RecordsetPtr withDescriptions(const QString& statement) {
    // With the descriptions themselves: which of them are blank decides on the lines.
    return CDaoPersistance().GetRecordset(gDatabase.CurrentDatabase(), statement, dao::dbOpenSnapshot);
}

bool isBlank(const QString& description) {
    return std::ranges::all_of(description, [](QChar c) { return c == u' '; });
}

int placeOf(const std::vector<DescriptionModel::Line>& lines, const QString& key) {
    const auto found = std::ranges::find_if(
        lines, [&](const DescriptionModel::Line& line) { return dao::compareTexts(line.key, key) == 0; });
    return key.isEmpty() || found == lines.end() ? -1 : static_cast<int>(found - lines.begin());
}

} // namespace

DescriptionModel::DescriptionModel(int view)
    : ltreetype(view), bIsStudy(isStudyView(view)), bEL_(gOptions.EnglishLanguage) {}

int DescriptionModel::line() const {
    if (ltreetype == 0)
        return cmbAuswahl.empty() ? -1 : 0;
    return placeOf(cmbAuswahl, txtStudyNo_);
}

int DescriptionModel::FillDescriptionForm(Move move) {
    fill({.move = move, .key = txtStudyNo_});
    return position_;
}

int DescriptionModel::FillDescriptionForm(int position) {
    fill({.position = std::max(position, 0), .key = {}});
    return position_;
}

void DescriptionModel::cmbAuswahl_Click(int line) {
    if (line >= 0 && line < static_cast<int>(cmbAuswahl.size()))
        fill({.move = Move::Same, .key = cmbAuswahl[static_cast<size_t>(line)].key});
}

bool DescriptionModel::showEntry(const QString& key) {
    return fill({.move = Move::Same, .key = key, .mustBeThere = true});
}

void DescriptionModel::setEnglish(bool english) {
    if (english == bEL_)
        return;
    bEL_ = english;
    if (!fill({.move = Move::Same, .key = txtStudyNo_}))
        bEL_ = !english;
}

bool DescriptionModel::fill(const Target& target) {
    const ProcedureScope scope(u"[frmDocument.FillDescriptionForm]"_s);
    bool filled = false;
    attempt([&] { filled = ltreetype == 0 ? fillFromCatalogue() : fillFromView(target); });
    return filled;
}

bool DescriptionModel::fillFromCatalogue() {
    const dao::RecordsetPtr rows = withDescriptions(u"Select * from tkey_Database;"_s);
    if (!rows)
        return false;
    if (rows->Eof()) {
        cmbAuswahl.clear();
        take(*rows, {}, {}, {});
        ui::asker().messageBox({.text = TranslateText(u"Beschreibung nicht gefunden!"_s)});
        return true;
    }
    const QString title = rows->text(bEL_ ? u"dt_EnDatabaseTitle"_s : u"dt_DatabaseTitle"_s);
    const QString description = rows->text(bEL_ ? u"dt_EnDatabaseDescription"_s : u"dt_DatabaseDescription"_s);
    cmbAuswahl.clear();
    if (!isBlank(description))
        cmbAuswahl.push_back({{}, title});
    take(*rows, {}, cmbAuswahl.empty() ? QString() : title, description);
    return true;
}

QString DescriptionModel::statement() const {
    return u"Select * from "_s + schema::entryTableName(gViews.at(ltreetype, ViewTable::Table)) + u" Where ("_s +
           EntryColumns(bIsStudy, bEL_).description + u" <> '') Order By [fid], [order];"_s;
}

bool DescriptionModel::fillFromView(const Target& target) {
    const dao::RecordsetPtr rows = withDescriptions(statement());
    if (!rows)
        return false;
    const EntryColumns names(bIsStudy, bEL_);
    const int key = rows->indexOf(names.key), text = rows->indexOf(names.text);
    const int description = rows->indexOf(names.description);
    std::vector<Line> walked, lines;
    for (; !rows->Eof(); rows->MoveNext()) {
        walked.push_back({rows->value(key).toText(), rows->value(text).toText()});
        if (!isBlank(rows->value(description).toText()))
            lines.push_back(walked.back());
    }
    const int before = placeOf(walked, target.key), last = static_cast<int>(walked.size()) - 1;
    if (target.mustBeThere && before < 0)
        return false;
    int place = std::max(before, 0);
    if (target.position >= 0 || target.move == Move::First)
        place = std::max(target.position, 0);
    else if (before >= 0 && target.move != Move::Same)
        place = target.move == Move::Next ? before + 1 : std::max(before - 1, 0);
    place = std::min(place, last);

    cmbAuswahl = std::move(lines);
    if (place < 0) {
        take(*rows, {}, {}, {});
        return true;
    }
    rows->MoveFirst();
    rows->Move(place);
    const Line& shown = walked[static_cast<size_t>(place)];
    take(*rows, shown.key, shown.title, rows->value(description).toText());
    return true;
}

void DescriptionModel::take(const dao::Recordset& rows, const QString& key, const QString& title,
                            const QString& description) {
    txtStudyNo_ = key;
    title_ = title;
    txtText_ = description;
    count_ = rows.RecordCount();
    position_ = rows.Eof() ? -1 : rows.AbsolutePosition();
}
