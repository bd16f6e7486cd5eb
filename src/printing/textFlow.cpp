#include "printing/LinesFlow.h"
#include "printing/flows.h"
#include "printing/look.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Style = TextBlock::Style;

/// A paragraph as it is printed, with what is bold or italic in it.
struct Paragraph {
    QString text;
    QList<QTextLayout::FormatRange> formats;
};

QTextLayout::FormatRange format(const TextRun& run, qsizetype start, qsizetype length) {
    QTextLayout::FormatRange range;
    range.start = static_cast<int>(start);
    range.length = static_cast<int>(length);
    if (run.bold)
        range.format.setFontWeight(QFont::Bold);
    if (run.italic)
        range.format.setFontItalic(true);
    return range;
}

std::vector<Paragraph> paragraphs(const std::vector<TextRun>& runs) {
    std::vector<Paragraph> found(1);
    for (const TextRun& run : runs) {
        const QString text = printable(run.text);
        const QStringList parts = text.split(u'\n');
        for (qsizetype i = 0; i < parts.size(); ++i) {
            if (i > 0)
                found.emplace_back();
            Paragraph& paragraph = found.back();
            if ((run.bold || run.italic) && !parts[i].isEmpty())
                paragraph.formats.push_back(format(run, paragraph.text.size(), parts[i].size()));
            paragraph.text += parts[i];
        }
    }
    while (!found.empty() && found.back().text.trimmed().isEmpty())
        found.pop_back();
    return found;
}

QString inOneLine(const std::vector<TextRun>& runs) {
    QString text;
    for (const TextRun& run : runs)
        text += run.text;
    return printableLine(text);
}

/// Text of a block below another, each paragraph in lines.
void addParagraphs(LinesFlow& flow, const TextBlock& block, const QFont& font, double x, double width,
                   const QColor& color = Qt::black) {
    double before = 0;
    const double between = 0.35 * font.pixelSize();
    for (const Paragraph& paragraph : paragraphs(block.runs)) {
        if (paragraph.text.trimmed().isEmpty()) {
            before = 0.8 * font.pixelSize(); // an empty line, or several
            continue;
        }
        const Qt::Alignment side = paragraph.text.isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft;
        flow.add(setText(paragraph.text, font, width, side, textSpacing, paragraph.formats), x, before, color);
        before = between;
    }
}

void addHeading(LinesFlow& flow, const TextBlock& block, double width, const PageSetup& setup) {
    static constexpr double sizes[] = {2.2, 1.6, 1.3, 1.12};
    const int level = std::clamp(block.level, -1, 2);
    const QFont font = reportFont(setup.fontFamily, setup.fontSize * sizes[level + 1], true);
    QString text = inOneLine(block.runs);
    if (!block.name.isEmpty())
        text = (printableLine(block.name) + u"  "_s + text).trimmed();
    flow.add(setText(text, font, width), 0, 0);
    flow.space = (level > 0 ? 1.4 : level == 0 ? 1.8 : 0.6) * look::em(setup);
    flow.keeps = true;
    LinesFlow::Row& last = flow.lines.back();
    if (level <= 0) {
        last.height += (level == 0 ? 0.35 : 0.8) * look::em(setup);
        last.rule = ReportPage::Rule{{0, last.height, width, last.height}, look::firmLine, Qt::black};
    }
    last.height += (level >= 0 ? 0.25 : 1.2) * look::em(setup);
}

/// A variable's name and label below a line across the page: what a reader who leafs through it looks for.
void addEntry(LinesFlow& flow, const TextBlock& block, double width, const PageSetup& setup) {
    const double em = look::em(setup), size = setup.fontSize * 1.12;
    const SetText name = setText(printableLine(block.name), reportFont(setup.fontFamily, size, true), width * 0.6);
    const QString label = inOneLine(block.runs);
    const double above = 0.35 * em;
    double x = look::labelColumn(setup);
    if (name.width + 0.6 * em > x)
        x = name.width + em;
    const double room = std::min(width - x, look::measure(setup));
    const QFont labelFont = reportFont(setup.fontFamily, size, block.name.isEmpty());
    if (block.name.isEmpty()) {
        flow.add(setText(label, labelFont, std::min(width, look::measure(setup))), 0, above);
    } else if (name.lines() > 1 || width - x < width / 3) {
        flow.add(name, 0, above);
        if (!label.isEmpty())
            flow.add(setText(label, labelFont, std::min(width, look::measure(setup))), 0, 0);
    } else if (label.isEmpty()) {
        flow.add(name, 0, above);
    } else {
        flow.add(setText(label, labelFont, room), x, above);
        flow.addBeside(0, name, 0, Qt::black);
    }
    flow.lines.front().rule = ReportPage::Rule{{0, 0, width, 0}, look::hairline * 1.5, Qt::black};
    flow.lines.back().height += 0.2 * em;
    flow.space = 1.5 * em;
    flow.keeps = true;
}

void addQuestion(LinesFlow& flow, const TextBlock& block, double width, const PageSetup& setup) {
    const double x = std::min(look::labelColumn(setup), width / 3);
    addParagraphs(flow, block, reportFont(setup.tableFamily, setup.fontSize), x,
                  std::min(width - x, look::measure(setup)));
    if (!block.mark.isEmpty() && !flow.lines.empty()) {
        const QFont font = reportFont(setup.fontFamily, setup.fontSize);
        flow.addBeside(0, setLine(printableLine(block.mark), font, x - 0.5 * look::em(setup)), 0, look::quietColor);
    }
    flow.space = 0.4 * look::em(setup);
}

void addBody(LinesFlow& flow, const TextBlock& block, double width, const PageSetup& setup) {
    if (!block.mark.isEmpty()) {
        const QFont font = reportFont(setup.fontFamily, look::captionSize(setup));
        flow.add(setLine(printableLine(block.mark), font, width), 0, 0, look::quietColor);
        flow.lines.back().mayEnd = false;
    }
    addParagraphs(flow, block, reportFont(setup.tableFamily, setup.fontSize), 0, std::min(width, look::measure(setup)));
    flow.space = look::blockSpace(setup);
}

/// A line of names: what hangs below another stands to the right of it, up to a depth at which there is room left.
void addName(LinesFlow& flow, const TextBlock& block, double width, const PageSetup& setup) {
    const double em = look::em(setup);
    const double most = std::min(width, look::measure(setup) + look::labelColumn(setup));
    const double indent = std::min(1.6 * em * std::max(block.level, 0), most / 2);
    const QString text = inOneLine(block.runs), id = printableLine(block.name);
    const SetText name =
        setText(id, reportFont(setup.fontFamily, setup.fontSize, block.level <= 0), std::max((most - indent) / 2, em));
    double x = indent;
    if (!id.isEmpty())
        x += std::max(name.lines() > 1 ? 0 : name.width + 0.8 * em, 3 * em);
    if (!id.isEmpty() && (name.lines() > 1 || text.isEmpty()))
        flow.add(name, indent, 0);
    if (!text.isEmpty() || id.isEmpty()) {
        const QFont font = reportFont(setup.fontFamily, setup.fontSize, block.level <= 0);
        flow.add(setText(text, font, std::max(most - x, em)), x, 0);
        if (!id.isEmpty() && name.lines() == 1)
            flow.addBeside(0, name, indent, look::quietColor);
    }
    flow.space = block.level <= 0 ? 0.5 * em : 0.1 * em;
}

void addCaption(LinesFlow& flow, const TextBlock& block, double width, const PageSetup& setup) {
    const QFont font = reportFont(setup.fontFamily, look::captionSize(setup), true);
    flow.add(setText(inOneLine(block.runs), font, std::min(width, look::measure(setup))), 0, 0);
    flow.lines.back().height += 0.15 * look::em(setup);
    flow.space = look::blockSpace(setup);
    flow.keeps = true;
}

void addNote(LinesFlow& flow, const TextBlock& block, double width, const PageSetup& setup) {
    const bool fault = block.style == Style::Fault;
    const QFont font = reportFont(setup.fontFamily, fault ? setup.fontSize : look::noteSize(setup), false, fault);
    addParagraphs(flow, block, font, 0, std::min(width, look::measure(setup)), look::quietColor);
    flow.space = 0.3 * look::em(setup);
}

} // namespace

std::unique_ptr<Flowable> textFlow(const TextBlock& block, double width, const PageSetup& setup) {
    auto flow = std::make_unique<LinesFlow>();
    switch (block.style) {
    case Style::Chapter:
        addHeading(*flow, block, width, setup);
        break;
    case Style::Entry:
        addEntry(*flow, block, width, setup);
        break;
    case Style::Caption:
        addCaption(*flow, block, width, setup);
        break;
    case Style::Body:
        addBody(*flow, block, width, setup);
        break;
    case Style::Question:
        addQuestion(*flow, block, width, setup);
        break;
    case Style::Name:
        addName(*flow, block, width, setup);
        break;
    case Style::Note:
    case Style::Fault:
        addNote(*flow, block, width, setup);
        break;
    }
    if (flow->keeps) // a heading of several lines stays whole
        for (LinesFlow::Row& row : flow->lines)
            row.mayEnd = false;
    return flow;
}
