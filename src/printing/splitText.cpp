#include "printing/splitText.h"

#include <QTextBoundaryFinder>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Characters of a part; breaking one long word takes time by the square of its length.
constexpr qsizetype usualLength = 12'000, lengthOfLongWords = 2'000, longWord = 400;

bool hasLongWord(const std::vector<TextRun>& runs) {
    qsizetype length = 0;
    for (const TextRun& run : runs)
        for (const QChar sign : run.text) {
            length = sign.isSpace() || (sign >= u'\u2e80' && !sign.isSurrogate()) ? 0 : length + 1;
            if (length > longWord)
                return true;
        }
    return false;
}

/// Where to end a part of a text that begins at `start`.
qsizetype endOf(const QString& text, qsizetype start, qsizetype length) {
    const qsizetype most = start + length, least = start + length / 2;
    if (text.size() <= most)
        return text.size();
    const qsizetype paragraph = text.lastIndexOf(u'\n', most - 1);
    if (paragraph >= least)
        return paragraph + 1;
    const qsizetype sentence = text.lastIndexOf(u". "_s, most - 2);
    if (sentence >= least)
        return sentence + 2;
    const qsizetype blank = text.lastIndexOf(u' ', most - 1);
    if (blank >= least)
        return blank + 1;
    const QString around = text.mid(most - 100, 200);
    QTextBoundaryFinder letters(QTextBoundaryFinder::Grapheme, around);
    letters.setPosition(100);
    const qsizetype end = letters.isAtBoundary() ? 100 : letters.toPreviousBoundary();
    return end > 0 ? most - 100 + end : most;
}

/// The runs of a stretch of their common text.
std::vector<TextRun> stretch(const std::vector<TextRun>& runs, qsizetype start, qsizetype end) {
    std::vector<TextRun> found;
    qsizetype before = 0;
    for (const TextRun& run : runs) {
        const qsizetype from = std::max(start - before, qsizetype(0)), to = std::min(end - before, run.text.size());
        if (from < to)
            found.push_back({run.text.mid(from, to - from), run.bold, run.italic});
        before += run.text.size();
    }
    return found;
}

/// Makes a block the rest of another one: what is longer than a heading goes on as text.
void goOn(TextBlock& block) {
    using enum TextBlock::Style;
    block.mark.clear();
    block.name.clear();
    if (block.style == Chapter || block.style == Entry || block.style == Caption)
        block.style = Body;
}

} // namespace

std::vector<TextPart> splitText(TextBlock block) {
    qsizetype size = 0;
    for (const TextRun& run : block.runs)
        size += run.text.size();
    std::vector<TextPart> parts;
    if (size <= lengthOfLongWords) {
        parts.push_back({std::move(block), true});
        return parts;
    }
    const qsizetype length = hasLongWord(block.runs) ? lengthOfLongWords : usualLength;
    QString text;
    text.reserve(size);
    for (const TextRun& run : block.runs)
        text += run.text;
    for (qsizetype start = 0, end = 0; start < size; start = end) {
        end = endOf(text, start, length);
        TextPart part{block, start == 0 || text[start - 1] == u'\n'};
        part.block.runs = stretch(block.runs, start, end);
        if (start > 0)
            goOn(part.block);
        parts.push_back(std::move(part));
    }
    return parts;
}
