#include "printing/VariableRecord.h"

#include "printing/textBlocks.h"

#include <QDataStream>
#include <QIODevice>

// The form in which a report keeps what it has read.

namespace {

QDataStream& operator<<(QDataStream& to, const BothTexts& text) {
    return to << text.original << text.english;
}
QDataStream& operator>>(QDataStream& from, BothTexts& text) {
    return from >> text.original >> text.english;
}
QDataStream& operator<<(QDataStream& to, const DocumentedValue& value) {
    return to << value.code << value.label;
}
QDataStream& operator>>(QDataStream& from, DocumentedValue& value) {
    return from >> value.code >> value.label;
}
QDataStream& operator<<(QDataStream& to, const VariableRecord::Picture& picture) {
    return to << picture.name << picture.mark << picture.bytes << picture.fault;
}
QDataStream& operator>>(QDataStream& from, VariableRecord::Picture& picture) {
    return from >> picture.name >> picture.mark >> picture.bytes >> picture.fault;
}
QDataStream& operator<<(QDataStream& to, const VariableRecord::Assigned& assigned) {
    return to << assigned.view << assigned.categories;
}
QDataStream& operator>>(QDataStream& from, VariableRecord::Assigned& assigned) {
    return from >> assigned.view >> assigned.categories;
}
QDataStream& operator<<(QDataStream& to, const TextRun& run) {
    return to << run.text << run.bold << run.italic;
}
QDataStream& operator>>(QDataStream& from, TextRun& run) {
    return from >> run.text >> run.bold >> run.italic;
}
QDataStream& operator<<(QDataStream& to, const std::pair<QString, QString>& fact) {
    return to << fact.first << fact.second;
}
QDataStream& operator>>(QDataStream& from, std::pair<QString, QString>& fact) {
    return from >> fact.first >> fact.second;
}

template<class T>
QDataStream& operator<<(QDataStream& to, const std::vector<T>& all) {
    to << static_cast<quint32>(all.size());
    for (const T& one : all)
        to << one;
    return to;
}
template<class T>
QDataStream& operator>>(QDataStream& from, std::vector<T>& all) {
    quint32 count = 0;
    from >> count;
    all.clear();
    for (; count > 0 && from.status() == QDataStream::Ok; --count)
        from >> all.emplace_back();
    return from;
}

/// The members of a record in one order for both ways.
template<class Record, class Each>
void eachMember(Record& record, Each&& each) {
    each(record.name);
    each(record.study);
    each(record.year);
    each(record.title);
    each(record.label);
    each(record.groupWord);
    each(record.group);
    each(record.question);
    each(record.values);
    each(record.valuesCut);
    each(record.missing);
    each(record.assigned);
    each(record.table);
    each(record.tableLayout);
    each(record.graphLayout);
    each(record.hasGraph);
    each(record.graph);
    each(record.cards);
    each(record.fault);
}

} // namespace

QByteArray VariableRecord::toBytes() const {
    QByteArray bytes;
    QDataStream to(&bytes, QIODevice::WriteOnly);
    eachMember(*this, [&](const auto& member) { to << member; });
    return bytes;
}

VariableRecord VariableRecord::fromBytes(const QByteArray& bytes) {
    VariableRecord record;
    QDataStream from(bytes);
    eachMember(record, [&](auto& member) { from >> member; });
    return record;
}

QByteArray toBytes(const std::vector<Block>& blocks) {
    QByteArray bytes;
    QDataStream to(&bytes, QIODevice::WriteOnly);
    for (const Block& block : blocks) {
        if (const auto* text = std::get_if<TextBlock>(&block))
            to << true << static_cast<qint32>(text->style) << text->level << text->name << text->runs << text->mark;
        else if (const auto* facts = std::get_if<FactsBlock>(&block))
            to << false << facts->facts;
    }
    return bytes;
}

std::vector<Block> blocksFrom(const QByteArray& bytes) {
    std::vector<Block> blocks;
    QDataStream from(bytes);
    while (!from.atEnd() && from.status() == QDataStream::Ok) {
        bool isText = false;
        from >> isText;
        if (isText) {
            TextBlock text;
            qint32 style = 0;
            from >> style >> text.level >> text.name >> text.runs >> text.mark;
            text.style = static_cast<TextBlock::Style>(style);
            blocks.push_back(std::move(text));
        } else {
            FactsBlock facts;
            from >> facts.facts;
            blocks.push_back(std::move(facts));
        }
    }
    return blocks;
}
