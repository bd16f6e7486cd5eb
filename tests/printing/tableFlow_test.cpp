#include "printing/flows.h"
#include "printing/fonts.h"
#include "printing/tablePlan.h"

#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <random>

using namespace Qt::StringLiterals;

namespace {

PageSetup tablePage() {
    PageSetup setup;
    setup.page = QSizeF(16838, 11906);
    setup.margins = QMarginsF(567, 1701, 567, 850);
    setup.fontFamily = setup.tableFamily = u"Arial"_s;
    return setup;
}

ResultTable cellsOf(int columns, int rows, TableKind kind, const std::function<QString(int, int)>& cell) {
    ResultTable table;
    table.Tag = kind;
    table.setRows(rows);
    table.setCols(columns);
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column)
            table.setCell(column, row, cell(column, row));
    table.FixedRows = table.FixedCols = 1;
    return table;
}

/// What stands on pages of a height that break where a flowable lets them.
struct TablePages {
    /// How often each line of each text stands there.
    std::map<QString, std::map<int, int>> lines;
    std::vector<QString> order; ///< texts by their first line
    double right = 0;
    int pages = 1, heads = 0;

    TablePages(const Flowable& flow, double pageHeight) {
        double y = 0;
        for (int row = 0; row < flow.rows();) {
            int last = row;
            double block = flow.height(row);
            while (last + 1 < flow.rows() && !flow.mayEndAfter(last))
                block += flow.height(++last);
            if (y > 0 && y + block > pageHeight)
                y = begin(flow, row);
            for (; row <= last; ++row) {
                if (y > 0 && y + flow.height(row) > pageHeight)
                    y = begin(flow, row);
                y = y + flow.height(row) <= pageHeight ? whole(flow, row, y) : pieces(flow, row, y, pageHeight);
            }
        }
    }

    int count(const QString& text) const {
        const auto found = lines.find(text);
        if (found == lines.end())
            return 0;
        for (const auto& [line, times] : found->second)
            EXPECT_EQ(times, found->second.begin()->second) << qPrintable(text) << " line " << line;
        return found->second.begin()->second;
    }

private:
    double begin(const Flowable& flow, int row) {
        ++pages;
        const double head = flow.headHeight(row);
        heads += head > 0;
        return head;
    }
    double whole(const Flowable& flow, int row, double y) {
        ReportPage page;
        flow.place(page, row, {0, y});
        take(page, y, y + flow.height(row));
        return y + flow.height(row);
    }
    double pieces(const Flowable& flow, int row, double y, double pageHeight) {
        for (double from = 0; from < flow.height(row) - 0.02;) {
            double part = flow.piece(row, from, pageHeight - y);
            if (part <= 0) {
                EXPECT_GT(y, 0) << "not even a line fits onto a page";
                if (y <= 0)
                    return 0;
                y = 0;
                ++pages;
                continue;
            }
            ReportPage page;
            flow.placePiece(page, row, from, part, {0, y});
            take(page, y, y + part);
            EXPECT_LE(y + part, pageHeight + 0.1);
            from += part;
            y += part;
        }
        return y;
    }
    void take(const ReportPage& page, double top, double bottom) {
        for (const ReportPage::Piece& piece : page.pieces)
            if (const auto* line = std::get_if<ReportPage::Line>(&piece)) {
                const QTextLine set = line->text->lineAt(line->line);
                const double y = line->at.y() + set.y() * line->scale, height = set.height() * line->scale;
                EXPECT_GE(y, top - 1) << qPrintable(line->text->text());
                EXPECT_LE(y + height, bottom + 1) << qPrintable(line->text->text());
                const QRectF rect = set.naturalTextRect();
                EXPECT_GE(line->at.x() + rect.left() * line->scale, -1) << qPrintable(line->text->text());
                right = std::max(right, line->at.x() + rect.right() * line->scale);
                if (line->line == 0)
                    order.push_back(line->text->text());
                ++lines[line->text->text()][line->line];
            }
    }
};

QString shown(QString text) {
    return printable(text).trimmed().replace(u'\n', QChar::LineSeparator);
}

} // namespace

TEST(TableFlow, RandomTablesComeOutWholeHoweverTheyBreak) {
    std::mt19937 random(20261125);
    const auto upTo = [&](int most) { return static_cast<int>(random() % static_cast<unsigned>(most + 1)); };
    int split = 0, broken = 0;
    for (int round = 0; round < 120; ++round) {
        const int columns = 1 + upTo(round % 3 == 0 ? 40 : 7), rows = 1 + upTo(60);
        const int words = upTo(12);
        const QStringList signs = {u"Ärzte"_s, u"x\ny"_s, u"\u0639\u0631\u0628\u064A"_s,          u"\u4E2D\u6587"_s,
                                   u"-"_s,     u"wort"_s, u"Donaudampfschifffahrtsgesellschaft"_s};
        ResultTable table = cellsOf(columns, rows, TableKind::Frequency, [&](int column, int row) {
            QString text = u"r%1c%2"_s.arg(row).arg(column);
            for (int i = column % 3 == 1 ? upTo(words) : 0; i > 0; --i)
                text += u' ' + signs[upTo(static_cast<int>(signs.size()) - 1)];
            return text;
        });
        table.FixedRows = std::min(rows, upTo(2));
        table.FixedCols = std::min(columns, upTo(2));
        for (int column = 0; column < columns; ++column)
            if (const int kept = upTo(9); kept < 3)
                table.giveColWidth(column, kept * 1500);
        for (int row = 0; row < rows; ++row)
            if (const int kept = upTo(19); kept < 2)
                table.setRowHeight(row, kept * 900);
        PageSetup setup = tablePage();
        setup.tableZoom = 0.5 + upTo(4) * 0.5;
        const double room = 5000 + upTo(10000), pageHeight = 1500 + upTo(8000);
        const auto flow = tableFlow({u"Titel"_s, table, {u"Notiz eins"_s}}, room, setup);
        const TablePages pages(*flow, pageHeight);
        EXPECT_LE(pages.right, room + 1);
        EXPECT_LE(flow->width(), room + 1);
        EXPECT_EQ(pages.count(u"Titel"_s) > 0, true);
        EXPECT_EQ(pages.count(u"Notiz eins"_s), 1);

        bool anyColumn = false;
        for (int column = 0; column < columns; ++column)
            anyColumn = anyColumn || table.ColWidth(column) != 0;
        int parts = 0;
        int lastRow = -1;
        for (int row = table.FixedRows; row < rows; ++row)
            for (int column = 0; column < columns; ++column) {
                const int times = pages.count(shown(table.Cell(column, row)));
                const bool visible = anyColumn && table.ColWidth(column) != 0 && table.RowHeight(row) != 0;
                if (!visible) {
                    EXPECT_EQ(times, 0) << round << ": " << column << ' ' << row;
                } else if (column < table.FixedCols) {
                    parts = parts == 0 ? times : parts;
                    EXPECT_TRUE(times == parts || times == 1) << round << ": " << column << ' ' << row;
                } else {
                    EXPECT_EQ(times, 1) << round << ": " << column << ' ' << row;
                    lastRow = row;
                }
            }
        for (int row = 0; row < table.FixedRows; ++row)
            for (int column = table.FixedCols; column < columns; ++column)
                if (table.ColWidth(column) != 0 && table.RowHeight(row) != 0) {
                    EXPECT_GE(pages.count(shown(table.Cell(column, row))), 1);
                }
        // Rows of a column follow each other.
        std::map<QString, qsizetype> at;
        for (size_t i = 0; i < pages.order.size(); ++i)
            at[pages.order[i]] = static_cast<qsizetype>(i);
        for (int column = table.FixedCols; column < columns; ++column) {
            qsizetype before = -1;
            for (int row = table.FixedRows; row < rows; ++row)
                if (const auto found = at.find(shown(table.Cell(column, row))); found != at.end()) {
                    EXPECT_GT(found->second, before) << round;
                    before = found->second;
                }
        }
        split += parts > 1;
        broken += lastRow >= 0 && pages.pages > 1;
    }
    EXPECT_GT(split, 5);
    EXPECT_GT(broken, 40);
}

TEST(TableFlow, HeadsComeAgainOnEveryPageWithAWordThatItGoesOn) {
    const ResultTable table =
        cellsOf(3, 200, TableKind::Frequency, [](int column, int row) { return u"%1/%2"_s.arg(column).arg(row); });
    const auto flow = tableFlow({u"Titel"_s, table, {}}, 14000, tablePage());
    EXPECT_EQ(flow->headHeight(0), 0);
    EXPECT_FALSE(flow->mayEndAfter(0)) << "heads alone at the foot of a page";
    EXPECT_FALSE(flow->mayEndAfter(1));
    EXPECT_FALSE(flow->mayEndAfter(flow->rows() - 2)) << "one row alone on the last page";
    ReportPage page;
    flow->placeHead(page, 100, {});
    QStringList texts;
    for (const ReportPage::Piece& piece : page.pieces)
        if (const auto* line = std::get_if<ReportPage::Line>(&piece))
            texts << line->text->text();
    EXPECT_EQ(texts, (QStringList{u"Titel"_s, u"(Fortsetzung)"_s, u"0/0"_s, u"1/0"_s, u"2/0"_s}));
    const TablePages pages(*flow, 3000);
    EXPECT_EQ(pages.heads, pages.pages - 1);
}

TEST(TablePlan, TypeGetsSmallerBeforeColumnsArePartedAndNeverBelowSixPoints) {
    const struct {
        int columns;
        double zoom, smallest, largest; ///< points
        bool parted;
    } cases[] = {
        {4, 1, 9.9, 9.9, false},  {4, 2, 19.8, 19.8, false},  {4, 0.01, 6, 6, false},     {4, 0, 9.9, 9.9, false},
        {4, 1000, 20, 36, false}, {20, 1, 6.01, 9.89, false}, {20, 3, 6.01, 9.89, false}, {60, 1, 6, 6, true},
        {60, 1000, 6, 6, true},   {60, 0.01, 6, 6, true},
    };
    for (const auto& c : cases) {
        ResultTable table = cellsOf(c.columns, 6, TableKind::Crosstab, [](int column, int row) {
            return row == 0 || column == 0 ? u"Kopf %1"_s.arg(column + row) : u"123456"_s;
        });
        table.FixedCols = 2;
        const PageSetup setup = tablePage();
        const TableType type = TableType::of(setup);
        const TablePlan plan = TablePlan::of(table, type, 15704, c.zoom);
        EXPECT_GE(plan.scale * type.points, c.smallest - 1e-6) << c.columns << " x " << c.zoom;
        EXPECT_LE(plan.scale * type.points, c.largest + 1e-6) << c.columns << " x " << c.zoom;
        EXPECT_EQ(plan.parts.size() > 1, c.parted) << c.columns << " x " << c.zoom;
        for (const TablePlan::Part& part : plan.parts) {
            EXPECT_LE(part.width * plan.scale, 15704 + 1e-6);
            ASSERT_GE(part.columns.size(), 3u);
            EXPECT_EQ(part.columns[0].index, 0);
            EXPECT_EQ(part.columns[1].index, 1);
        }
    }
}

TEST(TablePlan, FixedColumnsThatLeaveNoRoomAreNotRepeated) {
    for (const int fixed : {1, 2, 15, 30, 31}) {
        ResultTable table =
            cellsOf(31, 4, TableKind::Frequency, [](int, int) { return u"Donaudampfschifffahrtsgesellschaft"_s; });
        table.FixedCols = fixed;
        const TablePlan plan = TablePlan::of(table, TableType::of(tablePage()), 4000, 1);
        std::map<int, int> times;
        for (const TablePlan::Part& part : plan.parts) {
            EXPECT_LE(part.width * plan.scale, 4001);
            for (const TablePlan::Column& column : part.columns)
                ++times[column.index];
        }
        EXPECT_EQ(times.size(), 31u) << fixed;
        EXPECT_EQ(times[30], 1);
        EXPECT_EQ(times[0], fixed <= 2 ? static_cast<int>(plan.parts.size()) : 1) << fixed;
    }
}

TEST(TablePlan, LeavesOutWhatIsHiddenAndMarksWithoutAny) {
    const auto made = [](TableKind kind, const QString& mark) {
        return cellsOf(5, 5, kind, [&](int column, int row) {
            if (column == markColumn && row == (kind == TableKind::Crosstab ? markRow : 0))
                return u"Missing"_s;
            if (column == markColumn || (row == markRow && kind == TableKind::Crosstab))
                return row == 3 || column == 3 ? mark : QString();
            return u"1"_s;
        });
    };
    const auto shownOf = [](const ResultTable& table) {
        const TablePlan plan = TablePlan::of(table, TableType::of(tablePage()), 15000, 1);
        QString text;
        for (const int row : plan.heads)
            text += QString::number(row);
        text += u'/';
        for (const int row : plan.body)
            text += QString::number(row);
        text += u'/';
        for (const TablePlan::Part& part : plan.parts)
            for (const TablePlan::Column& column : part.columns)
                text += QString::number(column.index);
        return text;
    };
    EXPECT_EQ(shownOf(made(TableKind::Frequency, {})), u"0/1234/0134"_s);
    EXPECT_EQ(shownOf(made(TableKind::Frequency, u"X"_s)), u"0/1234/01234"_s);
    EXPECT_EQ(shownOf(made(TableKind::Crosstab, {})), u"0/134/0134"_s);
    EXPECT_EQ(shownOf(made(TableKind::Crosstab, u"X"_s)), u"0/1234/01234"_s);
    EXPECT_EQ(shownOf(made(TableKind::Descriptives, {})), u"0/1234/01234"_s);
    ResultTable percents = made(TableKind::Crosstab, u"X"_s);
    for (int row = 0; row < 5; ++row)
        percents.setCell(4, row, row == 0 ? u"Summe"_s : QString());
    percents.FixedRows = percents.FixedCols = 2;
    EXPECT_EQ(shownOf(percents), u"01/234/0123"_s);
    for (const QString& category : {u"4"_s, u"Ost"_s}) {
        percents.setCell(4, 0, category);
        EXPECT_EQ(shownOf(percents), u"01/234/01234"_s) << "a category without cases";
    }
    ResultTable hidden = made(TableKind::Frequency, u"X"_s);
    hidden.giveColWidth(0, 0);
    hidden.giveColWidth(4, 0);
    hidden.setRowHeight(0, 0);
    hidden.setRowHeight(2, 0);
    hidden.setColWidth(1, -1);
    hidden.setRowHeight(3, -1);
    EXPECT_EQ(shownOf(hidden), u"/134/123"_s);
}

/// A code of 16 digits that goes on in a second line reads like two.
TEST(TableFlow, FiguresAreNeverBroken) {
    for (const int fixed : {0, 1, 2, 3})
        for (const double room : {3200.0, 4000.0, 9000.0}) {
            ResultTable table = cellsOf(8, 6, TableKind::Crosstab, [](int column, int row) {
                const QString id = QString::number(10000 + 100 * row + column);
                return row == 2 && column > 3 ? u"-7777777"_s + id
                       : column < 4           ? u"33333"_s + id
                                              : u'-' + id + u",25 (4,5%)"_s;
            });
            table.FixedCols = fixed;
            const TablePages pages(*tableFlow({{}, table, {}}, room, tablePage()), 9000);
            for (int column = 0; column < 8; ++column)
                for (int row = 0; row < 6; ++row) {
                    const auto found = pages.lines.find(table.Cell(column, row));
                    ASSERT_NE(found, pages.lines.end()) << column << ' ' << row;
                    EXPECT_EQ(found->second.size(), 1u) << fixed << ": " << qPrintable(found->first);
                }
        }
}

TEST(TableFlow, SaysWhereThereIsNothingToShow) {
    const auto wordsOf = [](const ResultTable& table) {
        QStringList words;
        for (const QString& text : TablePages(*tableFlow({{}, table, {}}, 9000, tablePage()), 9000).order)
            words << text;
        return words.join(u'|');
    };
    EXPECT_EQ(wordsOf(ResultTable()), u"Die Tabelle ist leer."_s);
    ResultTable table = cellsOf(2, 1, TableKind::Frequency, [](int column, int) { return QString::number(column); });
    EXPECT_EQ(wordsOf(table), u"0|1|Die Tabelle hat keine Zeilen."_s);
    table.giveColWidth(0, 0);
    table.giveColWidth(1, 0);
    EXPECT_EQ(wordsOf(table), u"Alle Zeilen oder Spalten der Tabelle sind ausgeblendet."_s);
}

TEST(TableFlow, SeparatorsOfAColumnOfNumbersStandOneBelowTheOther) {
    const QStringList numbers = {u"1,5"_s, u"-1111,25"_s, u"7"_s, u"1.125"_s, QString()};
    const ResultTable table = cellsOf(2, 6, TableKind::Descriptives, [&](int column, int row) {
        return row == 0 ? u"Wert"_s : column == 0 ? u"Zeile"_s : numbers[row - 1];
    });
    const auto flow = tableFlow({{}, table, {}}, 9000, tablePage());
    std::vector<double> places, rights;
    for (int row = 1; row < flow->rows(); ++row) {
        ReportPage page;
        flow->place(page, row, {});
        for (const ReportPage::Piece& piece : page.pieces)
            if (const auto* line = std::get_if<ReportPage::Line>(&piece);
                line && numbers.contains(line->text->text())) {
                const QString text = line->text->text();
                const qsizetype at = std::max(text.indexOf(u','), text.indexOf(u'.'));
                const QTextLine set = line->text->lineAt(0);
                places.push_back(line->at.x() +
                                 line->scale * set.cursorToX(static_cast<int>(at < 0 ? text.size() : at)));
                rights.push_back(line->at.x() + line->scale * set.naturalTextRect().right());
            }
    }
    ASSERT_EQ(places.size(), 4u);
    for (const double place : places)
        EXPECT_NEAR(place, places.front(), 1);
    EXPECT_LE(*std::ranges::max_element(rights), flow->width());
}

TEST(TableFlow, ARowHigherThanAPageGoesOnWithWholeLines) {
    QString novel, word(50'000, u'x');
    for (int i = 0; i < 20'000; ++i)
        novel += QString::number(i) + u' ';
    ResultTable table = cellsOf(4, 3, TableKind::Frequency, [&](int column, int row) {
        return row != 1 ? u"%1.%2"_s.arg(column).arg(row) : column == 1 ? novel : column == 2 ? word : u"9"_s;
    });
    for (const double height : {700.0, 4000.0, 9000.0}) {
        const TablePages pages(*tableFlow({u"T"_s, table, {}}, 12000, tablePage()), height);
        EXPECT_GT(pages.pages, 10);
        QString together;
        qsizetype letters = 0;
        for (const QString& text : pages.order) {
            EXPECT_EQ(pages.count(text) > 0, true);
            if (text.contains(u' '))
                together += text.trimmed() + u' ';
            else if (text.startsWith(u'x'))
                letters += text.size();
        }
        EXPECT_EQ(together.simplified(), novel.simplified()) << "nothing lost, in order";
        EXPECT_EQ(letters, word.size());
    }
}
