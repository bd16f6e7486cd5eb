#pragma once

#include "explorer/ExplorerModel.h"
#include "platform/dao/TextOrder.h"

#include <gtest/gtest.h>

/// Whether an entry without a text in the language of the tree may still be shown with an empty one, as a new one is
/// until the next reading.
enum class EmptyTexts { No, MayBe };

/// One line a node: its depth as blanks, key, text and the three icons.
inline QString drawn(const CatalogueTree& tree) {
    using namespace Qt::StringLiterals;
    QString text;
    for (const CatalogueNode* node = tree.root(); node; node = nextWithin(*tree.root(), *node)) {
        int depth = 0;
        for (const CatalogueNode* above = node->Parent; above; above = above->Parent)
            ++depth;
        text += QString(depth, u' ') + u"%1 %2 %3/%4/%5\n"_s.arg(node->Key, node->Text)
                                           .arg(node->Image)
                                           .arg(node->SelectedImage)
                                           .arg(node->ExpandedImage);
    }
    return text;
}

/// Whether parents, places, keys and order of a tree that has been changed in place agree with each other.
inline testing::AssertionResult isSound(const CatalogueTree& tree) {
    size_t walked = 0;
    for (const CatalogueNode* node = tree.root(); node; node = nextWithin(*tree.root(), *node)) {
        ++walked;
        if (tree.find(node->Key) != node)
            return testing::AssertionFailure() << qPrintable(node->Key) << " leads to another node";
        for (size_t i = 0; i < node->Children.size(); ++i)
            if (node->Children[i]->Parent != node || node->Children[i]->Place != static_cast<int>(i))
                return testing::AssertionFailure()
                       << "child " << i << " of " << qPrintable(node->Key) << " stands askew";
    }
    int index = 0;
    for (const CatalogueNode& node : tree.nodes())
        if (tree.Index(node) != ++index)
            return testing::AssertionFailure() << qPrintable(node.Key) << " has a stale index";
    if (walked != tree.nodes().size())
        return testing::AssertionFailure() << walked << " nodes of " << tree.nodes().size() << " hang together";
    return testing::AssertionSuccess();
}

/// Whether a tree shows what a fresh one does: the same nodes below each other in the same order, with the same texts
/// and icons. The order of adding and what is expanded are each tree's own.
inline testing::AssertionResult sameTree(const CatalogueTree& tree, const CatalogueTree& fresh,
                                         EmptyTexts empty = EmptyTexts::No) {
    if (const testing::AssertionResult sound = isSound(tree); !sound)
        return sound;
    const auto differ = [&](const CatalogueNode* node) {
        return testing::AssertionFailure() << "at " << (node ? qPrintable(node->Key) : "the end") << "\n"
                                           << qPrintable(drawn(tree)) << "where a fresh one has\n"
                                           << qPrintable(drawn(fresh));
    };
    const CatalogueNode *a = tree.root(), *b = fresh.root();
    while (a && b) {
        const bool text = a->Text == b->Text || (empty == EmptyTexts::MayBe && a->Text.isEmpty() && b->Text == b->id());
        const bool parent = !a->Parent == !b->Parent && (!a->Parent || a->Parent->Key == b->Parent->Key);
        if (!text || !parent || a->Key != b->Key || a->Image != b->Image || a->SelectedImage != b->SelectedImage ||
            a->ExpandedImage != b->ExpandedImage)
            return differ(a);
        a = nextWithin(*tree.root(), *a);
        b = nextWithin(*fresh.root(), *b);
    }
    return a || b ? differ(a ? a : b) : testing::AssertionSuccess();
}

/// Whether a model's tree shows what a reading of the open catalogue would, whose failures nobody is told of.
inline testing::AssertionResult sameAsFresh(const ExplorerModel& model, EmptyTexts empty = EmptyTexts::No) {
    CatalogueTree fresh;
    fresh.Told = model.tree.Faults;
    Update_TreeView(fresh, model.state.ltreetype, model.state.bELTree);
    return sameTree(model.tree, fresh, empty);
}
