#include "editing/CopyCommands.h"

#include "app/globals.h"
#include "diagnostics/errors.h"
#include "editing/Drop.h"
#include "explorer/EntryColumns.h"
#include "explorer/iconNames.h"
#include "platform/ui/Asker.h"

#include <list>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// The tree of a view in one language: as a window shows it, or read now.
class ViewTree {
public:
    /// @param first the window that is asked before others
    ViewTree(int view, bool english, ExplorerModel* first, bool read = true) {
        const auto shows = [&](const ExplorerModel* model) {
            return model && model->state.ltreetype == view && model->state.bELTree == english;
        };
        if (shows(first)) {
            window = first;
        } else {
            const auto other = std::ranges::find_if(ExplorerModel::open(), shows);
            window = other == ExplorerModel::open().end() ? nullptr : *other;
        }
        if (window)
            return;
        read_ = std::make_unique<CatalogueTree>();
        if (read)
            Update_TreeView(*read_, view, english);
        else
            read_->addRoot(viewLetter(view) + u"0"_s, viewName(view));
    }
    const CatalogueTree& tree() const { return window ? window->tree : *read_; }
    ExplorerModel* window = nullptr; ///< null if no window shows it

private:
    std::unique_ptr<CatalogueTree> read_;
};

/// The trees of all views as a choice of where something is to go.
class TargetChoice {
public:
    TargetChoice(const DropSource& source, ExplorerModel& model) : source_(source) {
        addView(model.state.ltreetype, model);
        for (int view = 1; view <= gViews.lastRow(); ++view)
            if (view != model.state.ltreetype)
                addView(view, model);
        // The way begins where the user is.
        const auto here = std::ranges::find(targets_, model.state.selectedKey, &DropTarget::key);
        choice_.current = here == targets_.end() ? 0 : static_cast<int>(here - targets_.begin());
        const auto current = [this] { return choice_.entries[static_cast<size_t>(choice_.current)]; };
        while (!choice_.entries.empty() && !current().selectable && current().parent >= 0)
            choice_.current = current().parent;
    }

    /// @return nothing if the user wants none
    std::optional<DropTarget> ask(const QString& title) {
        choice_.title = title;
        const std::optional<int> chosen = ui::asker().chooseFromTree(choice_);
        if (!chosen || *chosen < 0 || *chosen >= static_cast<int>(targets_.size()))
            return std::nullopt;
        return targets_[static_cast<size_t>(*chosen)];
    }

private:
    const DropSource& source_;
    std::list<ViewTree> trees_;
    std::vector<DropTarget> targets_;
    ui::TreeChoice choice_;

    /// Of a view that takes nothing of the kind the root says why, and the rest is not worth reading.
    bool takesNone(int view) const {
        return source_.isList ? isStudyView(view) : isStudyView(view) != isStudyView(viewOfKey(source_.key));
    }

    void addView(int view, ExplorerModel& model) {
        const bool english = model.state.bELTree;
        const ViewTree& shown = trees_.emplace_back(view, english, &model, !takesNone(view));
        if (const CatalogueNode* root = shown.tree().root())
            addNode(*root, -1, {&shown.tree(), {}, false, english, shown.window});
    }

    void addNode(const CatalogueNode& node, int parent, DropTarget target) {
        target.key = node.Key;
        const Refusal refusal = refusalOf(source_, target);
        const QString why = refusal.refused && refusal.text.isEmpty()
                                ? TranslateText(u"Von hier stammen die Variablen."_s)
                                : refusal.text;
        const int place = static_cast<int>(targets_.size());
        targets_.push_back(target);
        choice_.entries.push_back({node.Text, parent, !refusal.refused, why, iconName(node.Image)});
        if (!takesNone(viewOfKey(node.Key)))
            for (const CatalogueNode* child : node.Children)
                addNode(*child, place, target);
    }
};

bool transferTo(ExplorerModel& model, const std::optional<DropSource>& source, TransferMode mode) {
    if (!source)
        return false;
    // What a study's list gives is a copy.
    if (source->isList && isStudyView(viewOfKey(source->key)))
        mode = TransferMode::Copy;
    TargetChoice choice(*source, model);
    const std::optional<DropTarget> target =
        choice.ask(TranslateText(mode == TransferMode::Move ? u"Verschieben nach"_s : u"Kopieren nach"_s));
    return target && drop(*source, *target, mode);
}

std::optional<DropSource> selectedEntry(const ExplorerModel& model) {
    return DropSource::entry(model.tree, model.state.selectedKey, model.state.bELTree);
}

bool transferHere(ExplorerModel& model, TransferMode mode) {
    const QString key = ClipboardNode.key();
    const CatalogueNode* here = model.selectedNode();
    if (key.isEmpty() || !here)
        return false;
    const ViewTree from(viewOfKey(key), ClipboardNode.english(), &model);
    const std::optional<DropSource> source = DropSource::entry(from.tree(), key, ClipboardNode.english());
    if (source)
        return drop(*source, DropTarget::in(model, here->Key, false), mode);
    ui::asker().messageBox(
        {.text = TranslateText(u"Den kopierten Eintrag gibt es nicht mehr."_s), .icon = ui::Icon::Exclamation});
    return false;
}

} // namespace

bool copyTo(ExplorerModel& model) {
    return transferTo(model, selectedEntry(model), TransferMode::Copy);
}

bool moveTo(ExplorerModel& model) {
    return transferTo(model, selectedEntry(model), TransferMode::Move);
}

bool copyTo(ExplorerModel& model, const std::vector<int>& rows) {
    return transferTo(model, DropSource::rows(model, rows), TransferMode::Copy);
}

bool moveTo(ExplorerModel& model, const std::vector<int>& rows) {
    return transferTo(model, DropSource::rows(model, rows), TransferMode::Move);
}

void rememberSource(const ExplorerModel& model) {
    const CatalogueNode* node = model.selectedNode();
    if (!node)
        return;
    SourceNode.set(node->Key, model.state.bELTree);
    ClipboardNode = SourceNode;
    MoveOrCopyMode = u"Copy"_s;
    ClipboardKind = u"Kategorie"_s;
}

QString whyNotHere(const ExplorerModel& model) {
    const QString key = ClipboardNode.key();
    if (key.isEmpty())
        return TranslateText(u"Es ist kein Eintrag kopiert."_s);
    const CatalogueNode* here = model.selectedNode();
    if (!here)
        return TranslateText(u"Es ist kein Eintrag gewählt."_s);
    for (const ExplorerModel* other : ExplorerModel::open())
        if (other->state.ltreetype == viewOfKey(key) && !other->tree.find(key))
            return TranslateText(u"Den kopierten Eintrag gibt es nicht mehr."_s);
    return refusalOf({key, false, false, {}, {}}, {&model.tree, here->Key, false, false, nullptr}).text;
}

bool copyHere(ExplorerModel& model) {
    return transferHere(model, TransferMode::Copy);
}

bool moveHere(ExplorerModel& model) {
    return transferHere(model, TransferMode::Move);
}
