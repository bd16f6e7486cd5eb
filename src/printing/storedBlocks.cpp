#include "printing/storedBlocks.h"

#include "charts/StoredGraph.h"
#include "charts/pictures.h"
#include "printing/words.h"
#include "tables/StoredTable.h"

using namespace Qt::StringLiterals;

TableBlock tableBlockOf(const StoredTable& stored, int language) {
    StoredTable fixed = stored;
    fixHeads(fixed);
    TableBlock block{.title = stored.title.trimmed(), .table = std::move(fixed.table), .notes = {}};
    if (const QString view = storedViewWords(stored); !view.isEmpty()) {
        QString words = reportWord(view, language);
        words[0] = words[0].toUpper();
        block.notes << words;
    }
    if (!stored.weight.isEmpty())
        block.notes << reportWord(u"Gewicht:"_s, language) + u' ' + stored.weight;
    return block;
}

Block storedTableBlock(const QString& text, const QString& layout, int language) {
    if (const std::optional<StoredTable> stored = readStoredTable(text, layout))
        return tableBlockOf(*stored, language);
    const QString words = reportWord(u"Die gespeicherte Tabelle ist beschädigt."_s, language);
    return TextBlock{.style = TextBlock::Style::Fault, .runs = {TextRun{.text = words}}};
}

PictureBlock storedGraphBlock(const QString& memo, const QString& layout, int language) {
    const StoredGraph beside = readGraphLayout(layout);
    PictureBlock block{.kind = PictureBlock::Kind::Graph,
                       .title = beside.title.trimmed(),
                       .bytes = {},
                       .size = {},
                       .explanation = beside.explanation,
                       .fault = {}};
    if (beside.width > 0 && beside.height > 0)
        block.size = QSizeF(static_cast<double>(beside.width), static_cast<double>(beside.height));
    if (std::optional<QByteArray> bytes = bytesOf(memo); bytes && !bytes->isEmpty())
        block.bytes = std::move(*bytes);
    else
        block.fault = reportWord(faultWords(bytes ? PictureFault::Missing : PictureFault::Damaged), language);
    return block;
}
