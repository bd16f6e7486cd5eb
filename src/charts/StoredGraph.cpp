#include "charts/StoredGraph.h"

#include "platform/dao/Value.h"
#include "platform/system/NumberFormat.h"
#include "tables/storedText.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int singleDigits = 7;
constexpr double mostTwips = 1e6;

/// What Windows-1252 makes of the bytes 80 to 9F; 81, 8D, 8F, 90 and 9D stay what they are.
constexpr std::array<char16_t, 32> windowsCharacters = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                        0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                                        0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                        0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

QString singleField(float number) {
    const double rounded = QString::number(static_cast<double>(number), 'g', singleDigits).toDouble();
    return NumberFormat::plain(rounded) + u';';
}

std::optional<float> readSingle(StoredFields& fields) {
    const std::optional<QString> text = fields.plain();
    const std::optional<double> number = text ? dao::textToNumber(*text) : std::nullopt;
    if (!number || *number < 0 || *number > mostTwips)
        return std::nullopt;
    return static_cast<float>(*number);
}

} // namespace

QString BuildGraphString(const StoredGraph& graph) {
    return quotedField(graph.title) + singleField(graph.width) + singleField(graph.height) +
           quotedField(graph.explanation);
}

StoredGraph readGraphLayout(const QString& layout, bool* whole) {
    StoredFields fields(layout);
    StoredGraph graph;
    const std::optional<QString> title = fields.quoted();
    const std::optional<float> width = title ? readSingle(fields) : std::nullopt;
    const std::optional<float> height = width ? readSingle(fields) : std::nullopt;
    const std::optional<QString> explanation = height ? fields.quoted() : std::nullopt;
    graph.title = title ? title->section(u'"', 0, 0) : QString();
    graph.width = width.value_or(0.0F);
    graph.height = height.value_or(0.0F);
    graph.explanation = explanation.value_or(QString());
    if (whole)
        *whole = explanation && fields.left() == 0;
    return graph;
}

std::optional<StoredGraph> readStoredGraph(const QString& memo, const QString& layout) {
    bool whole = false;
    StoredGraph graph = readGraphLayout(layout, &whole);
    const std::optional<QByteArray> bytes = whole ? bytesOf(memo) : std::nullopt;
    if (!bytes || bytes->isEmpty())
        return std::nullopt;
    graph.jpeg = *bytes;
    return graph;
}

QString memoOf(const QByteArray& bytes) {
    return QString::fromLatin1(bytes);
}

std::optional<QByteArray> bytesOf(const QString& memo) {
    QByteArray bytes(memo.size(), Qt::Uninitialized);
    char* byte = bytes.data();
    for (const QChar c : memo) {
        char16_t code = c.unicode();
        if (code > 0xFF) {
            const auto found = std::ranges::find(windowsCharacters, code);
            if (found == windowsCharacters.end())
                return std::nullopt;
            code = static_cast<char16_t>(0x80 + (found - windowsCharacters.begin()));
        }
        *byte++ = static_cast<char>(code);
    }
    return bytes;
}
