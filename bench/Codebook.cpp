#include "Archives.h"

#include "charts/StoredGraph.h"
#include "platform/dao/DBEngine.h"
#include "platform/dao/Transaction.h"
#include "tables/StoredTable.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <random>

using namespace Qt::StringLiterals;

namespace {

constexpr int values = 10;
constexpr QSize plotPixels(1361, 831), plotTwips(10205, 6236);

QString labelOf(int value) {
    return value > 8 ? u"keine Angabe (%1)"_s.arg(value) : u"auf der Skala von 0 bis 10 Stufe %1"_s.arg(value);
}

ResultTable frequencies(std::mt19937& random) {
    ResultTable table;
    table.FixedRows = table.FixedCols = 1;
    table.setRows(values + 2);
    table.setCols(6);
    const QStringList heads = {u"Wert"_s,    u"Ausprägung"_s,       u"Anzahl"_s,
                               u"Prozent"_s, u"Gültige Prozente"_s, u"Kumulierte Prozente"_s};
    for (int column = 0; column < heads.size(); ++column)
        table.setCell(column, 0, heads[column]);
    for (int row = 1; row <= values + 1; ++row) {
        table.setCell(0, row, row > values ? u"Summe"_s : QString::number(row));
        table.setCell(1, row, row > values ? QString() : labelOf(row));
        table.setCell(2, row, QString::number(random() % 5000));
        for (int column = 3; column < heads.size(); ++column)
            table.setCell(column, row,
                          QString::number(static_cast<int>(random() % 1000) / 10.0, 'f', 1).replace(u'.', u','));
    }
    return table;
}

/// Bars on white, as a chart is stored.
QByteArray plot(std::mt19937& random) {
    QImage image(plotPixels, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    for (int i = 0; i < values; ++i) {
        const int height = 20 + static_cast<int>(random() % 700);
        painter.fillRect(60 + 128 * i, 800 - height, 90, height, QColor(70, 110, 160));
    }
    painter.drawLine(40, 800, 1340, 800);
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "jpeg", 100);
    return bytes;
}

void addValues(dao::Database& catalogue, int variables) {
    const auto rows =
        catalogue.openAppender(u"tkey_Value"_s, {u"fi_StudyNo"_s, u"fi_VarName"_s, u"dt_Value"_s, u"dt_Label"_s});
    for (int v = 1; v <= variables; ++v)
        for (int value = 1; value <= values; ++value) {
            rows->setText(0, u"S0001"_s);
            rows->setText(1, u"V%1"_s.arg(v));
            rows->setText(2, QString::number(value));
            rows->setText(3, labelOf(value));
            rows->appendRow();
        }
}

} // namespace

QString Archives::makeCodebook(const QString& folder, int variables, bool graphs) {
    const QString path = makeCatalogue(folder, 1, variables);
    const dao::DatabasePtr catalogue = dao::DBEngine::instance().Workspaces(0).OpenDatabase(path);
    std::mt19937 random(20180331);
    dao::Transaction transaction;
    addValues(*catalogue, variables);
    const dao::RecordsetPtr rows = catalogue->OpenRecordset(u"SELECT * FROM tkey_Variable WHERE true"_s);
    for (; !rows->Eof(); rows->MoveNext()) {
        StoredTable stored;
        stored.title = u"Häufigkeiten, gewichtet mit W, N = 15.000"_s;
        stored.table = frequencies(random);
        stored.weight = u"W"_s;
        rows->Edit();
        rows->setValue(u"dt_Missing"_s, dao::Value(u"9;10"_s));
        rows->setValue(u"dt_Table"_s, BuildTableString(stored));
        rows->setValue(u"dt_TableLayout"_s, BuildTableLayoutString(stored.table));
        if (graphs) {
            const StoredGraph graph{u"Häufigkeiten"_s, plotTwips.width(), plotTwips.height(), {}, plot(random)};
            rows->setValue(u"dt_Graph"_s, memoOf(graph.jpeg));
            rows->setValue(u"dt_GraphLayout"_s, BuildGraphString(graph));
        }
        rows->Update();
    }
    transaction.commit();
    rows->Close();
    catalogue->Close();
    return path;
}
