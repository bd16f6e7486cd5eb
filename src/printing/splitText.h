#pragma once

#include "printing/Block.h"

/// A text that is short enough to be laid out at once.
struct TextPart {
    TextBlock block;
    bool newParagraph = false; ///< the part before ended in a paragraph's end
};

/// Divides a text so that each part is laid out in a few milliseconds, however long the whole is: at the ends of
/// paragraphs, else of sentences, else of words.
std::vector<TextPart> splitText(TextBlock block);
