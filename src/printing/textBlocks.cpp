#include "printing/textBlocks.h"

using namespace Qt::StringLiterals;

TextBlock textBlock(TextBlock::Style style, const QString& text) {
    return {.style = style, .runs = {{.text = text}}};
}

void addTexts(std::vector<Block>& blocks, TextBlock::Style style, const BothTexts& text,
              const ReportLanguages& languages) {
    for (const ReportLanguages::Shown& shown : languages.shown(text)) {
        qsizetype end = shown.text.size();
        while (end > 0 && (shown.text[end - 1].isSpace() || shown.text[end - 1].isNull()))
            --end;
        TextBlock block{.style = style, .runs = textRuns(shown.text.first(end))};
        block.mark = shown.mark;
        blocks.push_back(std::move(block));
    }
}

void addOtherName(std::vector<Block>& blocks, const QString& name, const ReportLanguages& languages) {
    if (name.isEmpty())
        return;
    // Stands beside its mark, as questions do.
    TextBlock block = textBlock(TextBlock::Style::Question, name);
    block.mark = languages.markOf(true);
    blocks.push_back(std::move(block));
}

QString studyName(const QString& number, const QString& title, const QString& year) {
    QString name = title.isEmpty() ? number : number + u", "_s + title;
    // A title that ends in its year says it already.
    if (!year.isEmpty() && !title.contains(year))
        name += u" ("_s + year + u')';
    return name;
}

TextBlock headingBlock(const QString& text, int level) {
    TextBlock block = textBlock(TextBlock::Style::Chapter, text);
    block.level = level;
    return block;
}

QString studyTitle(const ReportLanguages& languages, const QString& number, const BothTexts& title) {
    const QString name = languages.name(title);
    return name.isEmpty() ? number : name + u" ("_s + number + u')';
}
