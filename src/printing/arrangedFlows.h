#pragma once

#include "printing/Flowable.h"
#include "printing/PageSetup.h"

/// A flow that stands further to the right.
std::shared_ptr<const Flowable> shifted(std::shared_ptr<const Flowable> flow, double x);

/// A flow that stands with the first rows of the next one, and whole itself; as it is where it is higher than `most`.
std::shared_ptr<const Flowable> keptWithNext(std::shared_ptr<const Flowable> flow, double most);

/// A flow right of the column of labels, with its caption in that column.
/// @param x how far it is shifted; less than 0: past the column
std::shared_ptr<const Flowable> labelled(std::shared_ptr<const Flowable> flow, const QString& label,
                                         const PageSetup& setup, double x = -1);

/// Flows one below the other, and another to their right, as one row that no page breaks.
/// @param x where the right one stands @return null where one of them needs more than one page
std::shared_ptr<const Flowable> sideBySide(std::vector<std::shared_ptr<const Flowable>> left,
                                           std::shared_ptr<const Flowable> right, double x);
