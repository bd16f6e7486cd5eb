#pragma once

#include "printing/ReportOutline.h"

#include <random>

/// A report whose content is made from a seed: chapters, variables with questions, values and tables of all sizes.
class SeededReport : public BlockSource {
public:
    ReportOutline made;
    int ready_ = 1 << 30;

    explicit SeededReport(int variables, unsigned seed = 1, int studies = 2) : random_(seed) {
        made.title = QStringLiteral("Codebook of a seed");
        for (int study = 0; study < studies; ++study) {
            chapter(0, QStringLiteral("%1").arg(4700 + study),
                    QStringLiteral("A survey of attitudes, wave %1").arg(study + 1));
            for (int i = 0; i < variables / studies; ++i) {
                if (i % 25 == 0)
                    chapter(1, {}, QStringLiteral("Group ") + words(2));
                variable(QStringLiteral("v%1").arg(i + 1));
            }
        }
    }

    int ready() const override { return std::min(ready_, static_cast<int>(blocks_.size())); }
    std::vector<Block> blocks(int entry) const override { return blocks_[static_cast<size_t>(entry)]; }

    int number(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }
    QString words(int count) {
        static const char* const some[] = {"trust", "in",      "the",       "national", "parliament", "how",
                                           "often", "do",      "you",       "discuss",  "political",  "matters",
                                           "with",  "friends", "household", "income"};
        QString text;
        for (int i = 0; i < count; ++i)
            text += (i ? QStringLiteral(" ") : QString()) + QString::fromLatin1(some[number(16)]);
        return text;
    }
    static TextBlock text(TextBlock::Style style, const QString& words, int level = 0) {
        TextBlock block;
        block.style = style;
        block.level = level;
        block.runs = {{words, false, false}};
        return block;
    }
    void add(const ReportEntry& entry, std::vector<Block> blocks) {
        made.entries.push_back(entry);
        blocks_.push_back(std::move(blocks));
    }
    void chapter(int level, const QString& name, const QString& title) {
        add({ReportEntry::Kind::Chapter, level, name, title, level == 0},
            {text(TextBlock::Style::Chapter, title, level), text(TextBlock::Style::Body, words(number(60)))});
    }
    void variable(const QString& name);
    static TableBlock table(int rows, int columns, const QString& title);

private:
    std::mt19937 random_;
    std::vector<std::vector<Block>> blocks_;
};

inline void SeededReport::variable(const QString& name) {
    const QString label = words(3 + number(8));
    TextBlock heading = text(TextBlock::Style::Entry, label);
    heading.name = name;
    std::vector<Block> blocks{heading,
                              FactsBlock{{{QStringLiteral("Study"), QStringLiteral("4700, A survey of attitudes")},
                                          {QStringLiteral("Group"), words(3)}}}};
    if (number(2) == 0) {
        blocks.emplace_back(text(TextBlock::Style::Caption, QStringLiteral("Question text")));
        blocks.emplace_back(text(TextBlock::Style::Question, words(5 + number(90))));
    } else {
        for (const char* mark : {"Original", "English"}) {
            TextBlock question = text(TextBlock::Style::Question, words(5 + number(60)));
            question.mark = QString::fromLatin1(mark);
            blocks.emplace_back(question);
        }
    }
    ValuesBlock values;
    values.title = QStringLiteral("Values");
    const int count = number(4) == 0 ? number(40) : 2 + number(8);
    for (int i = 0; i < count; ++i)
        values.rows.push_back(
            {QString::number(i < count - 2 ? i + 1 : 96 + i - count), words(1 + number(4)), i >= count - 2});
    if (count > 0)
        blocks.emplace_back(values);
    if (number(2) == 0)
        blocks.emplace_back(FactsBlock{{{QStringLiteral("Missing values"), QStringLiteral("-1; 96 to 99")},
                                        {QStringLiteral("Topics"), words(6)}}});
    if (number(3) > 0)
        blocks.emplace_back(table(count + 2, 4, name + QStringLiteral(": ") + label));
    add({ReportEntry::Kind::Variable, 2, name, label, false}, std::move(blocks));
}

inline TableBlock SeededReport::table(int rows, int columns, const QString& title) {
    TableBlock block;
    block.title = title;
    block.table.setRows(rows);
    block.table.setCols(columns);
    block.table.FixedRows = block.table.FixedCols = 1;
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column)
            block.table.setCell(column, row,
                                row == 0      ? QStringLiteral("Percent %1").arg(column)
                                : column == 0 ? QStringLiteral("Value %1").arg(row)
                                              : QStringLiteral("%1.%2").arg(row * 7 % 100).arg(column));
    block.notes << QStringLiteral("Source: kept in the catalogue");
    return block;
}
