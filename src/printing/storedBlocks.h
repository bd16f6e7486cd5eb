#pragma once

#include "printing/Block.h"

struct StoredTable;

/// What is kept with a variable, as blocks of a report. Words are in the report's language (1 German, 2 English);
/// titles and labels stay in the one language they were kept in.

/// A stored table with its heads fixed (two rows and columns of a crosstab, one of others), below it what its numbers
/// are: the view of a crosstab, the weight.
TableBlock tableBlockOf(const StoredTable& stored, int language);
/// The same from both texts; where the first is damaged a sentence that says so. An empty layout leaves the table its
/// own widths.
Block storedTableBlock(const QString& text, const QString& layout, int language);
/// A stored graph from its two fields. A damaged layout leaves the picture what could be read of it, a damaged
/// picture leaves its title and explanation.
PictureBlock storedGraphBlock(const QString& memo, const QString& layout, int language);
