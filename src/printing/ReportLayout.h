#pragma once

#include "printing/PageSetup.h"
#include "printing/ReportOutline.h"
#include "printing/ReportPage.h"

#include <memory>

/// The pages of a report. A first pass through the blocks finds where each page begins and keeps no more than that;
/// any page can then be laid out again, to the letter as before.
class ReportLayout {
public:
    /// Both must outlive the layout.
    ReportLayout(const ReportOutline& outline, const BlockSource& source, const PageSetup& setup);
    ~ReportLayout();
    ReportLayout(const ReportLayout&) = delete;
    ReportLayout& operator=(const ReportLayout&) = delete;

    /// Goes on with the first pass for about that long, as far as blocks are there. @return true while there is more
    /// to do
    bool step(int milliseconds);
    /// All pages are known.
    bool complete() const;
    /// Pages that are known by now; they can be laid out.
    int pageCount() const;
    /// A page from 0. Numbers of pages that are not known yet are missing in contents until they are.
    ReportPage page(int index) const;
    /// Page from 0 on which an entry begins; -1 while it is not known.
    int pageOf(int entry) const;
    /// Pages of cover and contents in front of the first entry.
    int frontPages() const;

    const PageSetup& setup() const;
    const ReportOutline& outline() const;
    /// Another number for the first page, for a printout that is part of something else.
    void setFirstPageNumber(int number);
    /// The number that stands on a page from 0.
    int numberOf(int index) const;

private:
    struct State;
    std::unique_ptr<State> state_;
};
