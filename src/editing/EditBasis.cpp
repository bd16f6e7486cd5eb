#include "editing/EditBasis.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/StudyRows.h"
#include "catalogue/schema.h"
#include "explorer/CatalogueTree.h"
#include "explorer/EntryColumns.h"
#include "platform/dao/TextOrder.h"

#include <QCryptographicHash>
#include <QHash>
#include <QSet>

using namespace Qt::StringLiterals;

namespace {

/// The entries of a view as a table.
struct EntryTable {
    QString name;
    bool study;
    EntryColumns original, english;

    explicit EntryTable(int view)
        : name(schema::entryTableName(gViews.at(view, ViewTable::Table))), study(isStudyView(view)),
          original(study, false), english(study, true) {}
    const QString& key() const { return original.key; }
    QStringList names() const { return {original.text, english.text}; }
    QStringList texts() const { return names() + QStringList{original.description, english.description}; }
    /// The key goes into the statement as it stands, so nothing but a number may get there.
    QString literal(const QString& id) const { return study || !dao::textToNumber(id) ? quoted(id) : id; }
    QString row(const QString& id) const {
        return u"SELECT * FROM "_s + name + u" WHERE "_s + key() + u" = "_s + literal(id);
    }
};

class Digest {
public:
    void add(const dao::Value& value) {
        const QByteArray bytes = value.kind() == dao::Value::Kind::Bytes ? value.toBytes() : value.toText().toUtf8();
        const auto size = static_cast<quint64>(bytes.size());
        const auto kind = static_cast<char>(value.kind());
        hash_.addData(QByteArrayView(&kind, 1));
        hash_.addData(QByteArrayView(reinterpret_cast<const char*>(&size), sizeof size));
        hash_.addData(bytes);
    }
    QByteArray result() const { return hash_.result(); }

private:
    QCryptographicHash hash_{QCryptographicHash::Sha1};
};

/// Memos are read with their rows: a snapshot asks for no row a second time.
dao::RecordsetPtr opened(const QString& statement) {
    return gDatabase.CurrentDatabase()->OpenRecordset(statement, dao::dbOpenSnapshot);
}

/// Places of the columns that a table has; another program's may lack some. Without names those of all.
std::vector<int> placesOf(const dao::Recordset& rows, const QStringList& names) {
    std::vector<int> places;
    for (int place = 0; place < static_cast<int>(rows.Fields().size()); ++place)
        if (names.isEmpty() || names.contains(rows.Fields()[static_cast<size_t>(place)].Name, Qt::CaseInsensitive))
            places.push_back(place);
    return places;
}

QByteArray digestOf(const QString& statement, const QStringList& columns = {}) {
    const dao::RecordsetPtr rows = opened(statement);
    Digest digest;
    for (const std::vector<int> places = placesOf(*rows, columns); !rows->Eof(); rows->MoveNext())
        for (const int place : places)
            digest.add(rows->value(place));
    return digest.result();
}

QByteArray digestOfSubtree(const EntryTable& table, const QString& top) {
    const dao::RecordsetPtr rows = opened(u"SELECT * FROM "_s + table.name + u" ORDER BY "_s + table.key());
    const int key = rows->indexOf(table.key()), parent = rows->indexOf(u"fid"_s);
    std::vector<int> places{key, parent};
    for (const int place : placesOf(*rows, table.texts()))
        places.push_back(place);
    QHash<QString, std::vector<QString>> below; // by folded key, as the engine compares
    QHash<QString, std::vector<dao::Value>> cells;
    for (; !rows->Eof(); rows->MoveNext()) {
        const QString folded = dao::foldedText(rows->value(key).toText());
        below[dao::foldedText(rows->value(parent).toText())].push_back(folded);
        for (const int place : places)
            cells[folded].push_back(rows->value(place));
    }
    Digest digest;
    QSet<QString> seen;
    std::vector<QString> waiting{dao::foldedText(top)};
    while (!waiting.empty()) {
        const QString entry = waiting.back();
        waiting.pop_back();
        if (seen.contains(entry))
            continue;
        seen.insert(entry);
        for (const dao::Value& cell : cells.value(entry))
            digest.add(cell);
        for (const QString& child : below.value(entry))
            waiting.push_back(child);
    }
    return digest.result();
}

} // namespace

EditBasis& EditBasis::keep(std::function<QByteArray()> read) {
    QByteArray was = read();
    parts_.push_back({std::move(read), std::move(was)});
    return *this;
}

EditBasis& EditBasis::entry(const QString& key) {
    if (key.mid(1) == u"0")
        return *this;
    const EntryTable table(viewOfKey(key));
    return keep([table, id = key.mid(1)] {
        return digestOf(table.row(id), QStringList{table.key(), u"fid"_s} + table.texts());
    });
}

EditBasis& EditBasis::children(const QString& key) {
    const EntryTable table(viewOfKey(key));
    return keep([table, id = key.mid(1)] {
        return digestOf(u"SELECT * FROM "_s + table.name + u" WHERE fid = "_s + table.literal(id) +
                            u" ORDER BY [order]"_s,
                        QStringList{table.key(), u"order"_s} + table.names());
    });
}

EditBasis& EditBasis::subtree(const QString& key) {
    const EntryTable table(viewOfKey(key));
    return keep([table, id = key.mid(1)] { return digestOfSubtree(table, id); });
}

EditBasis& EditBasis::shown(const CatalogueNode& node, bool english) {
    if (!node.Parent)
        return *this;
    const EntryTable table(viewOfKey(node.Key));
    const QByteArray asShown = "as shown";
    const auto read = [table, english, asShown, id = node.id(), text = node.Text, above = node.Parent->id()] {
        const dao::RecordsetPtr rows = opened(table.row(id));
        if (rows->Eof())
            return QByteArray();
        const QString parent = rows->text(u"fid"_s), name = rows->text(table.names().at(english ? 1 : 0));
        const bool sameParent = dao::compareTexts(parent.isEmpty() ? u"0"_s : parent, above) == 0;
        return sameParent && (text.isEmpty() || text == name || (name.isEmpty() && text == id)) ? asShown
                                                                                                : QByteArray();
    };
    parts_.push_back({read, asShown});
    return *this;
}

EditBasis& EditBasis::rows(const QString& statement) {
    return keep([statement] { return digestOf(statement); });
}

bool EditBasis::stillSo() const {
    for (const Part& part : parts_)
        if (part.read() != part.was)
            return false;
    return true;
}
