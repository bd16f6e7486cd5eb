#include "explorer/ViewSearch.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/CDaoPersistance.h"
#include "diagnostics/errors.h"
#include "platform/ui/Asker.h"
#include "platform/ui/Progress.h"

#include <QSet>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Separates the cells of a row; no text of a catalogue has it.
constexpr char cellEnd = 0;

QByteArray cellsOf(const VariableRow& row) {
    QByteArray cells = row.Text.toUtf8();
    for (const QString& cell : row.SubItems)
        cells += cellEnd + cell.toUtf8();
    return cells;
}

/// A variable is known by its study and its name, whatever their case.
QByteArray keyOf(const VariableRow& row) {
    return (row.cell(1) + QChar(u'\0') + row.Text).toCaseFolded().toUtf8();
}

} // namespace

void ViewSearch::clear() {
    *this = {};
}

void ViewSearch::read(const CatalogueTree& tree, const ExplorerState& state, const VariableList& list) {
    const ui::WaitPointer wait;
    clear();
    Outcome outcome = Outcome::Failed;
    attempt([&] { outcome = readAll(tree, state, list); });
    if (outcome != Outcome::Whole)
        clear();
    // What was stopped is tried again, what failed would fail again at each key.
    read_ = outcome != Outcome::Stopped;
}

ViewSearch::Outcome ViewSearch::readAll(const CatalogueTree& tree, const ExplorerState& state,
                                        const VariableList& list) {
    // By key: the reading gives event turns.
    std::vector<std::pair<QString, QString>> nodes;
    for (const CatalogueNode* node = tree.root(); node; node = nextWithin(*tree.root(), *node))
        if (node != tree.root())
            nodes.emplace_back(node->Key, node->Text);
    ui::Progress progress(ui::Progress::Stop::Allowed, [&] { return static_cast<int>(nodes.size()); });
    const bool varGroups = gDatabase.TableExist(u"tkey_VarGroups"_s);
    CDaoPersistance persistance;
    QSet<QByteArray> met;
    for (const auto& [node, name] : nodes) {
        if (!progress.next(TranslateText(u"Die Variablen der Sicht werden gelesen:"_s) + u' ' + name))
            return Outcome::Stopped;
        const dao::RecordsetPtr records = persistance.GetRecordset(
            gDatabase.CurrentDatabase(),
            searchedVariablesStatement(state.bIsStudy, state.ltreetype, node.mid(1), varGroups), dao::dbOpenSnapshot);
        // It has been reported, and would be that of every node.
        if (!records)
            return Outcome::Failed;
        const QuickFilter::Source source(*records);
        const RowReader reader(list, *records, state.bELTree);
        for (; !records->Eof(); records->MoveNext()) {
            const VariableRow row = reader.current(0);
            // A variable stands in one study, but in any number of categories.
            if (!state.bIsStudy) {
                const QByteArray key = keyOf(row);
                if (met.contains(key))
                    continue;
                met.insert(key);
            }
            texts_.add(source);
            cells_ += cellsOf(row);
            ends_.push_back(cells_.size());
        }
        stretches_.push_back({size(), node});
    }
    return Outcome::Whole;
}

int ViewSearch::find(const QString& words, std::vector<VariableRow>& rows) const {
    const std::vector<bool> matching = texts_.matching(words);
    int found = 0;
    for (size_t i = 0; i < matching.size() && i < ends_.size(); ++i)
        if (matching[i] && ++found <= mostRows)
            rows.push_back(rowAt(static_cast<int>(i)));
    return found;
}

VariableRow ViewSearch::rowAt(int position) const {
    const auto place = static_cast<size_t>(position);
    const qsizetype begin = place == 0 ? 0 : ends_[place - 1];
    const QList<QByteArray> cells = cells_.mid(begin, ends_[place] - begin).split(cellEnd);
    VariableRow row;
    row.Position = position;
    row.Text = QString::fromUtf8(cells.first());
    row.SubItems.reserve(static_cast<size_t>(cells.size()) - 1);
    for (qsizetype i = 1; i < cells.size(); ++i)
        row.SubItems.push_back(QString::fromUtf8(cells[i]));
    return row;
}

QString ViewSearch::nodeOf(int position) const {
    const auto found = std::ranges::upper_bound(stretches_, position, {}, &Stretch::end);
    return found == stretches_.end() ? QString() : found->node;
}
