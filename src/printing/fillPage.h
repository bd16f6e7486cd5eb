#pragma once

#include "printing/Flowable.h"

#include <functional>

/// The flows of an entry, one below the other.
class EntryFlowList {
public:
    virtual ~EntryFlowList() = default;
    virtual int count() const = 0;
    virtual std::shared_ptr<const Flowable> flow(int item) = 0;
    /// Room in front of one, unless it begins a page.
    virtual double spaceBefore(int item) = 0;
};

/// Where something begins in a report: a row of a flow of an entry, or a place within a row that needs several pages.
struct PageStart {
    int entry = 0, item = 0, row = 0;
    double from = 0; ///< twips below the row's upper edge
    bool operator==(const PageStart&) const = default;
};

/// A row of a page.
struct PlacedRow {
    std::shared_ptr<const Flowable> flow;
    int entry = 0, row = 0;
    double y = 0; ///< of its upper edge from that of the page's body
    /// Room for the head that is repeated above it.
    double head = 0;
    double from = 0, height = 0; ///< of the piece of a row that needs several pages; 0: all of it
};

/// What a page holds.
struct FilledPage {
    std::vector<PlacedRow> rows;
    PageStart next;       ///< where the page behind it begins
    bool waiting = false; ///< an entry that it needs is not there yet; nothing else holds then
};

/// The entries as pages are filled with them.
struct EntryAccess {
    int count = 0, ready = 0;
    std::function<bool(int entry)> newPage;
    std::function<std::shared_ptr<EntryFlowList>(int entry)> flows;
};

/// Fills a page from a place on: as many rows as there is room for, and then back to the last place at which a page may
/// end. Every page takes at least a row, or a piece of one.
/// @param height of the page's body
FilledPage fillPage(const EntryAccess& entries, const PageStart& start, double height);
