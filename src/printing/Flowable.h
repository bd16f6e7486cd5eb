#pragma once

#include "printing/ReportPage.h"

/// A block that was laid out for a width: rows one below the other, between which a page may end. Lengths in twips.
class Flowable {
public:
    virtual ~Flowable() = default;

    virtual int rows() const = 0;
    /// Height of a row, what separates it from the one before included.
    virtual double height(int row) const = 0;
    /// Whether a page may end behind a row; behind the last it always may, unless keepsWithNext().
    virtual bool mayEndAfter(int /*row*/) const { return true; }
    /// Height of what is repeated above a row that begins a page; 0 in front of the first.
    virtual double headHeight(int /*row*/) const { return 0; }
    /// A page must begin in front of this row (another part of a table that was too wide).
    virtual bool beginsPart(int /*row*/) const { return false; }
    /// The block stands with the first rows of the next one: a heading, a caption.
    virtual bool keepsWithNext() const { return false; }
    /// Room in front of the block, unless it begins a page.
    virtual double spaceBefore() const { return 0; }
    /// Width that it takes at most.
    virtual double width() const = 0;

    /// The same block with a lower first row, for one that can be made smaller (a picture). The rows below stay as they
    /// are. @param room that the first row may take; null where the block would suffer from it
    virtual std::shared_ptr<const Flowable> fitted(double /*room*/) const { return nullptr; }

    /// Adds a row to a page, its upper left corner at `at`.
    virtual void place(ReportPage& page, int row, const QPointF& at) const = 0;
    /// Adds what is repeated above a row that begins a page.
    virtual void placeHead(ReportPage& /*page*/, int /*row*/, const QPointF& /*at*/) const {}

    /// A row that is higher than a page can be placed in pieces. @return height of the piece from `from` on that fits
    /// into `room`; 0 if none does
    virtual double piece(int /*row*/, double /*from*/, double /*room*/) const { return 0; }
    virtual void placePiece(ReportPage& /*page*/, int /*row*/, double /*from*/, double /*height*/,
                            const QPointF& /*at*/) const {}
};
