#include "printing/RawReport.h"

#include "charts/pictures.h"
#include "printing/storedBlocks.h"
#include "printing/words.h"
#include "tables/StoredTable.h"
#include "tables/storedText.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView behindTable = u"<TableEnd>", behindGraph = u"<GraphEnd>";

/// Where the layout of a graph ends. Its title, its explanation and its picture may have the mark themselves, so the
/// fields are read. @return -1 where they are not whole, or no mark follows them
qsizetype endOfGraphLayout(const QString& raw) {
    StoredFields fields(raw);
    if (!fields.quoted() || !fields.plain() || !fields.plain() || !fields.quoted())
        return -1;
    const qsizetype end = raw.size() - fields.left();
    return QStringView(raw).sliced(end).startsWith(behindGraph) ? end : -1;
}

} // namespace

QString RawReport::open() {
    outline_ = {};
    blocks_.clear();
    QString reason = request_.TableRawString.isEmpty() ? QString() : addTable();
    if (reason.isEmpty() && !request_.GraphRawString.isEmpty())
        reason = addGraph();
    if (!reason.isEmpty())
        return reason;
    if (blocks_.empty())
        return reportWord(u"Es gibt nichts zu drucken."_s, request_.LANGUAGE);
    outline_.title = outline_.title.simplified();
    ReportEntry entry;
    entry.title = outline_.title;
    outline_.entries = {entry};
    return {};
}

/// A cell may have the mark itself, a layout of numbers never does: the last one counts.
QString RawReport::addTable() {
    const QString& raw = request_.TableRawString;
    const qsizetype mark = raw.lastIndexOf(behindTable);
    std::optional<StoredTable> stored = mark < 0 ? std::nullopt : readStoredTable(raw.left(mark), {});
    if (!stored)
        return reportWord(u"Die Tabelle, die gedruckt werden soll, ist beschädigt."_s, request_.LANGUAGE);
    const bool whole = layLayoutOn(stored->table, raw.mid(mark + behindTable.size()));
    if (!request_.RawNotes.isEmpty())
        stored->weight.clear(); // the notes say it
    TableBlock table = tableBlockOf(*stored, request_.LANGUAGE);
    table.notes << request_.RawNotes;
    if (!whole)
        table.notes << reportWord(
            u"Breiten und Ausrichtung der Tabelle sind beschädigt; Zahlen und Texte sind es nicht."_s,
            request_.LANGUAGE);
    outline_.title = table.title;
    blocks_.push_back(std::move(table));
    return {};
}

QString RawReport::addGraph() {
    const QString& raw = request_.GraphRawString;
    const qsizetype end = endOfGraphLayout(raw);
    PictureBlock graph;
    if (end >= 0)
        graph = storedGraphBlock(raw.mid(end + behindGraph.size()), raw.left(end), request_.LANGUAGE);
    if (end < 0 || !readPicture(graph.bytes))
        return reportWord(u"Die Grafik, die gedruckt werden soll, ist beschädigt."_s, request_.LANGUAGE);
    outline_.title = graph.title;
    blocks_.push_back(std::move(graph));
    for (const QString& note : request_.RawNotes)
        blocks_.push_back(TextBlock{.style = TextBlock::Style::Note, .runs = {TextRun{note}}});
    return {};
}
