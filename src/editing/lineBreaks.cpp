#include "editing/lineBreaks.h"

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

bool isBreak(QChar c) {
    return c == u'\r' || c == u'\n' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
}

/// A line without its break, and the break behind it; the last line has none.
struct BrokenLine {
    QStringView text, end;
};

std::vector<BrokenLine> linesOf(QStringView text) {
    std::vector<BrokenLine> lines;
    qsizetype begin = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!isBreak(text[i]))
            continue;
        const qsizetype end = text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n' ? i + 2 : i + 1;
        lines.push_back({text.sliced(begin, i - begin), text.sliced(i, end - i)});
        begin = end;
        i = end - 1;
    }
    lines.push_back({text.sliced(begin), {}});
    return lines;
}

} // namespace

QString withPlainBreaks(const QString& text) {
    QString plain;
    plain.reserve(text.size());
    for (const BrokenLine& line : linesOf(text)) {
        plain += line.text;
        if (!line.end.isEmpty())
            plain += u'\n';
    }
    return plain;
}

QString withBreaksOf(const QString& before, const QString& edited) {
    const std::vector<BrokenLine> old = linesOf(before), now = linesOf(edited);
    const auto same = [](const BrokenLine& a, const BrokenLine& b) { return a.text == b.text; };
    const auto shorter = static_cast<std::ptrdiff_t>(std::min(old.size(), now.size()));
    const auto head = std::mismatch(old.begin(), old.begin() + shorter, now.begin(), same).first - old.begin();
    const auto tail =
        std::mismatch(old.rbegin(), old.rbegin() + (shorter - head), now.rbegin(), same).first - old.rbegin();
    const QStringView usual = old.front().end.isEmpty() ? QStringView(u"\r\n") : old.front().end;
    QString text;
    text.reserve(edited.size() + edited.size() / 32);
    for (size_t i = 0; i < now.size(); ++i) {
        text += now[i].text;
        if (i + 1 == now.size())
            break;
        const auto fromEnd = static_cast<std::ptrdiff_t>(now.size() - i);
        QStringView end;
        if (static_cast<std::ptrdiff_t>(i) < head)
            end = old[i].end;
        else if (fromEnd <= tail)
            end = old[old.size() - static_cast<size_t>(fromEnd)].end;
        text += end.isEmpty() ? usual : end;
    }
    return text;
}
