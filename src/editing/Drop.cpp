#include "editing/Drop.h"

#include "app/globals.h"
#include "diagnostics/errors.h"
#include "editing/ViewEntries.h"
#include "explorer/EntryColumns.h"
#include "explorer/iconNames.h"
#include "platform/ui/Asker.h"

using namespace Qt::StringLiterals;

namespace {

/// True if the node or one of those above it is the entry.
bool isBelow(const CatalogueNode* node, const QString& entry) {
    for (; node; node = node->Parent)
        if (isSameEntry(node->Key, entry))
            return true;
    return false;
}

Refusal refused(const QString& text) {
    return {true, text};
}

/// In the order in which the refusals of an entry on a node are looked for.
Refusal ofEntryOnNode(const DropSource& source, const CatalogueNode& node) {
    const bool fromStudies = isStudyView(viewOfKey(source.key)), toStudies = isStudyView(viewOfKey(node.Key));
    if (toStudies && !fromStudies)
        return refused(TranslateText(u"Kategorien/Trends können nicht in Studien verschoben werden"_s));
    if (fromStudies && !toStudies)
        return refused(TranslateText(u"Studien können nicht in Kategorien/Trends verschoben werden"_s));
    if (!isBelow(&node, source.key))
        return {};
    return refused(TranslateText(toStudies ? u"Studie kann nicht in sich selbst kopiert werden!"_s
                                           : u"Kategorie kann nicht in sich selbst kopiert werden!"_s));
}

/// The same for the list of a node, which has words of its own.
Refusal ofEntryOnList(const DropSource& source, const CatalogueNode& node) {
    const QString name = viewName(viewOfKey(source.key));
    if (isStudyView(viewOfKey(node.Key)))
        return refused(name + said(u" können nicht in Studien verschoben werden"_s, u" cannot be moved to studies"_s));
    if (isStudyView(viewOfKey(source.key)))
        return refused(TranslateText(u"Studien können nicht verschoben werden"_s));
    if (isBelow(&node, source.key))
        return refused(name + u' ' + TranslateText(u"kann nicht in sich selbst kopiert werden!"_s));
    return {};
}

Refusal ofVariables(const DropSource& source, const CatalogueNode& node) {
    if (isStudyView(viewOfKey(node.Key)))
        return refused(TranslateText(u"Variablen können nicht in Studien verschoben werden"_s));
    const auto isHere = [&](const MovedVariable& variable) { return isSameEntry(variable.entry, node.Key); };
    const bool onItself =
        source.variables.empty() ? isSameEntry(source.key, node.Key) : std::ranges::all_of(source.variables, isHere);
    return {onItself, {}};
}

bool isWanted(const DropSource& source, const QString& target, TransferMode mode) {
    const bool moves = mode == TransferMode::Move;
    const QString from = askedName(source.text), to = askedName(target);
    const QString question = said(u"Möchten Sie die ausgewählten Variablen aus '"_s + from + u"' in '"_s + to +
                                      u"' "_s + (moves ? u"verschieben?"_s : u"kopieren?"_s),
                                  u"Do you want to "_s + (moves ? u"move "_s : u"copy "_s) +
                                      u"the selected variables from '"_s + from + u"' to '"_s + to + u"'?"_s);
    return ui::asker().messageBox({.text = question, .icon = ui::Icon::Question, .buttons = ui::Buttons::OkCancel}) ==
           ui::Answer::Ok;
}

/// The node that was dropped on is opened and selected, and what is new there is in view.
void show(const DropTarget& target, const QString& newKey) {
    if (!target.window)
        return;
    target.window->reveal(target.key);
    target.window->tree.setExpanded(target.key, true);
    target.window->bringIntoView(newKey);
}

} // namespace

std::optional<DropSource> DropSource::entry(const CatalogueTree& tree, const QString& key, bool english) {
    const CatalogueNode* node = tree.find(key);
    if (!node)
        return std::nullopt;
    return DropSource{node->Key, false, english, node->Text, {}};
}

std::optional<DropSource> DropSource::rows(const ExplorerModel& model, const std::vector<int>& rows) {
    const CatalogueNode* listed = model.selectedNode();
    if (!listed)
        return std::nullopt;
    DropSource source{listed->Key,
                      true,
                      model.state.bELTree,
                      model.state.selectionTitle,
                      {},
                      static_cast<int>(model.list.shown.size())};
    for (const int row : rows) {
        const VariableRow& variable = model.list.rows[static_cast<size_t>(row)];
        if (const CatalogueNode* node = model.nodeOf(variable))
            source.variables.push_back({node->Key, variable.Text, variable.cell(1)});
    }
    return source;
}

DropTarget DropTarget::in(ExplorerModel& model, const QString& key, bool isList) {
    return {&model.tree, key, isList, model.state.bELTree, &model};
}

Refusal refusalOf(const DropSource& source, const DropTarget& target) {
    const CatalogueNode* node = target.tree ? target.tree->find(target.key) : nullptr;
    if (!node)
        return {true, {}};
    const Refusal refusal = source.isList   ? ofVariables(source, *node)
                            : target.isList ? ofEntryOnList(source, *node)
                                            : ofEntryOnNode(source, *node);
    if (refusal.refused)
        return refusal;
    const QString reason = whyNotEditable(viewOfKey(node->Key));
    return {!reason.isEmpty(), reason};
}

bool drop(const DropSource& source, const DropTarget& target, TransferMode mode) {
    const ProcedureScope scope(u"[Module1.Drop]"_s);
    if (const Refusal refusal = refusalOf(source, target); refusal.refused) {
        if (!refusal.text.isEmpty())
            ui::asker().messageBox({.text = refusal.text, .icon = ui::Icon::Exclamation});
        return false;
    }
    // What is listed of a study stays there.
    if (source.isList && isStudyView(viewOfKey(source.key)))
        mode = TransferMode::Copy;
    MoveOrCopyMode = mode == TransferMode::Move ? u"Move"_s : u"Copy"_s;
    const CatalogueNode& node = *target.tree->find(target.key);
    const ShownEntry to{node.Key, node.Text, target.english};
    EditBasis basis;
    basis.shown(node, target.english);
    bool written = false;
    attempt([&] {
        if (source.isList) {
            VariableTransfer transfer(source.variables, source.listed, to, mode, std::move(basis));
            ShowDuplicateMessage = true;
            written = isWanted(source, to.text, mode) && transfer.run() == EditOutcome::Done;
            return;
        }
        EntryTransfer transfer({source.key, source.text, source.english}, to, mode, std::move(basis));
        written = isWanted(source, to.text, mode) && transfer.run() == EditOutcome::Done;
        if (written)
            show(target, transfer.newKey());
    });
    return written;
}
