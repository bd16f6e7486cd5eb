#pragma once

#include "printing/Block.h"
#include "printing/PageSetup.h"
#include "printing/ReportOutline.h"
#include "printing/fillPage.h"

#include <optional>

/// The blocks of an entry as they stand one below the other. Each is laid out when a page needs it: what one text takes
/// does not depend on how much there is.
class EntryFlows final : public EntryFlowList {
public:
    /// @param body room that a page has for them, in twips
    EntryFlows(ReportEntry::Kind kind, std::vector<Block> blocks, const PageSetup& setup, const QSizeF& body);

    int count() const override { return static_cast<int>(items_.size()); }
    std::shared_ptr<const Flowable> flow(int item) override;
    double spaceBefore(int item) override;

private:
    /// A block, or the part of a long text, or what stands side by side.
    struct Item {
        Block block;
        QString label;                          ///< beside it in the column of labels
        bool indented = false;                  ///< stands right of that column where it is not too wide
        std::optional<double> space;            ///< in front, where it is not the flow's own
        std::shared_ptr<const Flowable> made{}; ///< kept for a while
        bool pinned = false;                    ///< made has no block
        double keptHeight = 0;                  ///< stands with the next one if it is no higher than this
    };

    ReportEntry::Kind kind_;
    PageSetup setup_;
    QSizeF body_;
    std::vector<Item> items_;
    int kept_ = 0;

    void add(Block block, QString label);
    void addText(TextBlock block, QString label);
    void keepTogether();
    /// Values and table of a variable in one row, if there is room.
    bool addBeside(const std::vector<Block>& blocks, size_t first, size_t last);
    std::shared_ptr<const Flowable> laidOut(const Item& item) const;
};
