#pragma once

#include "printing/ReportPage.h"

#include <algorithm>

/// A line of text on a page, and where its letters are.
struct PageText {
    QString text;
    QRectF rect;
};

inline std::vector<PageText> pageTexts(const ReportPage& page) {
    std::vector<PageText> found;
    for (const ReportPage::Piece& piece : page.pieces)
        if (const auto* line = std::get_if<ReportPage::Line>(&piece)) {
            const QTextLine set = line->text->lineAt(line->line);
            const QRectF natural = set.naturalTextRect();
            found.push_back({line->text->text().mid(set.textStart(), set.textLength()),
                             QRectF(line->at + natural.topLeft() * line->scale, natural.size() * line->scale)});
        }
    return found;
}

/// Everything on a page as text: two pages that look alike have the same.
inline QString dumped(const ReportPage& page) {
    QString all;
    const auto add = [&](const QRectF& rect, const QString& what) {
        all += QStringLiteral("%1 %2 %3 %4 %5\n")
                   .arg(rect.x())
                   .arg(rect.y())
                   .arg(rect.width())
                   .arg(rect.height())
                   .arg(what);
    };
    for (const PageText& text : pageTexts(page))
        add(text.rect, text.text);
    for (const ReportPage::Piece& piece : page.pieces) {
        if (const auto* rule = std::get_if<ReportPage::Rule>(&piece))
            add(QRectF(rule->line.p1(), rule->line.p2()), QStringLiteral("rule"));
        if (const auto* box = std::get_if<ReportPage::Box>(&piece))
            add(box->rect, QStringLiteral("box"));
    }
    for (const ReportPage::Link& link : page.links)
        add(link.rect, QStringLiteral("to %1").arg(link.entry));
    for (const ReportPage::Anchor& anchor : page.anchors)
        add(QRectF(0, anchor.y, 0, 0), QStringLiteral("entry %1").arg(anchor.entry));
    return all;
}
