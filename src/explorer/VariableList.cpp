#include "explorer/VariableList.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/CDaoPersistance.h"
#include "config/Options.h"
#include "diagnostics/errors.h"
#include "platform/ui/Asker.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int narrowColumn = 850;
constexpr int labelColumn = 4000;

QString heading(const QString& key) {
    if (key == u"VN")
        return u"Variable"_s;
    if (key == u"SN")
        return TranslateText(u"Studie"_s);
    if (key == u"WE")
        return said(gCatalogueOptions.VarGroupInfoName, gCatalogueOptions.VarGroupInfoNameEnglish);
    if (key == u"SY")
        return TranslateText(u"Jahr"_s);
    if (key == u"VL")
        return TranslateText(u"Label (Originalsprache)"_s);
    if (key == u"EL")
        return TranslateText(u"Label (Englisch)"_s);
    return {};
}

/// Field that a column shows; empty for a key that the list does not know.
QString sourceField(const QString& key, bool english) {
    static const std::pair<QString, QString> fields[] = {
        {u"SN"_s, u"fi_StudyNo"_s},        {u"VL"_s, u"dt_VarLabel"_s},   {u"EL"_s, u"dt_EnVarLabel"_s},
        {u"SY"_s, u"dt_Year"_s},           {u"ST"_s, u"dt_StudyTitle"_s}, {u"QT"_s, u"dt_QuestionText"_s},
        {u"EQ"_s, u"dt_EnQuestionText"_s},
    };
    if (key == u"WE")
        return english ? u"dt_VarGroupNameEn"_s : u"dt_VarGroupName"_s;
    for (const auto& [column, field] : fields)
        if (column == key)
            return field;
    return {};
}

/// Study, year and wave are mostly those of the row before: one copy serves both.
void shareEqualTexts(const VariableRow& before, VariableRow& row) {
    for (size_t i = 0; i < row.SubItems.size(); ++i)
        if (row.SubItems[i] == before.SubItems[i])
            row.SubItems[i] = before.SubItems[i];
}

/// Fills the rows in the statement's order. @return the greatest length of a variable name
qsizetype fillRows(VariableList& list, dao::Recordset& recordset, bool english) {
    const RowReader reader(list, recordset, english);
    const int count = recordset.RecordCount();
    qsizetype longest = 0;
    list.rows.clear();
    list.rows.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i, recordset.MoveNext()) {
        VariableRow& row = list.rows.emplace_back(reader.current(i));
        longest = std::max(longest, row.Text.size());
        if (i > 0)
            shareEqualTexts(list.rows[static_cast<size_t>(i) - 1], row);
    }
    return longest;
}

void setWidthByOption(ListColumn& column, int width) {
    column.Width = width;
    column.widthBy = ListColumn::By::Option;
}

void fill(VariableList& list, dao::Recordset& recordset, bool english) {
    list.filterBy({});
    const qsizetype longest = fillRows(list, recordset, english);
    list.sort();
    list.selectedRow = list.rows.empty() ? -1 : 0;
    if (gOptions.AutomaticVariableColumnWidth && longest != 0 && !list.columns.empty())
        setWidthByOption(list.columns.front(), static_cast<int>(longest) * 150 + 400);
}

} // namespace

const QString& VariableRow::cell(int column) const {
    static const QString nothing;
    if (column == 0)
        return Text;
    const size_t subItem = static_cast<size_t>(column) - 1;
    return column > 0 && subItem < SubItems.size() ? SubItems[subItem] : nothing;
}

RowReader::RowReader(const VariableList& list, const dao::Recordset& recordset, bool english)
    : recordset_(recordset), name_(recordset.indexOf(u"fi_VariableNo"_s)) {
    for (size_t i = 1; i < list.columns.size(); ++i) {
        const QString field = sourceField(list.columns[i].Key, english);
        places_.push_back(!field.isEmpty() && recordset.hasField(field) ? recordset.indexOf(field) : -1);
    }
}

VariableRow RowReader::current(int position) const {
    VariableRow row;
    row.Position = position;
    row.Text = recordset_.value(name_).toText();
    row.SubItems.reserve(places_.size());
    for (const int place : places_)
        row.SubItems.push_back(place < 0 ? QString() : recordset_.value(place).toText());
    return row;
}

void VariableList::makeColumns(bool english) {
    columns.clear();
    const auto add = [this](const QString& key, int width) { columns.push_back({key, width, heading(key)}); };
    add(u"VN"_s, narrowColumn);
    add(u"SN"_s, narrowColumn);
    if (gCatalogueOptions.ShowVarGroupInfo)
        add(u"WE"_s, narrowColumn);
    add(u"SY"_s, narrowColumn);
    add(english ? u"EL"_s : u"VL"_s, labelColumn);
    add(english ? u"VL"_s : u"EL"_s, labelColumn);
}

int VariableList::columnOf(const QString& key) const {
    const auto found = std::ranges::find(columns, key, &ListColumn::Key);
    return found == columns.end() ? -1 : static_cast<int>(found - columns.begin());
}

void VariableList::headerClicked(int column) {
    const bool again = sorted && column == sortKey;
    if (again && descending && column == 0) {
        sorted = false;
    } else {
        descending = again && !descending;
        sorted = true;
    }
    sortKey = column;
    sort();
}

void VariableList::sort() {
    std::ranges::sort(rows, {}, &VariableRow::Position);
    if (sorted)
        std::ranges::stable_sort(rows, [this](const VariableRow& a, const VariableRow& b) {
            const int order = dao::compareTexts(a.cell(sortKey), b.cell(sortKey));
            return descending ? order > 0 : order < 0;
        });
    findShown();
}

void VariableList::filterBy(std::vector<bool> matching) {
    matching_ = std::move(matching);
    findShown();
    if (placeOf(selectedRow) < 0)
        selectedRow = -1;
}

void VariableList::findShown() {
    shown.clear();
    shown.reserve(rows.size());
    for (size_t i = 0; i < rows.size(); ++i) {
        const auto position = static_cast<size_t>(rows[i].Position);
        if (matching_.empty() || (position < matching_.size() && matching_[position]))
            shown.push_back(static_cast<int>(i));
    }
}

int VariableList::placeOf(int row) const {
    const auto found = std::ranges::lower_bound(shown, row);
    return found != shown.end() && *found == row ? static_cast<int>(found - shown.begin()) : -1;
}

void Update_Listview(const CatalogueNode& node, bool force, ExplorerState& state, VariableList& list,
                     ListviewHost& host, int view) {
    const ui::WaitPointer wait;
    const ProcedureScope scope(u"[Module1.Update_Listview]"_s);
    attempt([&] {
        const QString before = std::exchange(state.sel_id, node.id());
        if (!force && state.sel_id == before)
            return;
        state.selectionTitle = node.Text;
        state.selectedKey = node.Key;
        list.Tag = node.Key;
        host.nodeShown(node);
        list.recordset.reset();

        const bool varGroups = gDatabase.TableExist(u"tkey_VarGroups"_s);
        CDaoPersistance persistance;
        const dao::RecordsetPtr recordset = persistance.GetRecordset(
            gDatabase.CurrentDatabase(), nodeVariablesStatement(state.bIsStudy, view, state.sel_id, varGroups),
            dao::dbOpenDynaset);
        if (!recordset)
            return;
        fill(list, *recordset, state.bELTree);
        list.recordset = recordset;
        host.listFilled();
        host.clearPanelA();
        host.itemClick();
        // The list of assignments stays empty until the user clicks a row.
        host.clearAssignmentList();
    });
}
