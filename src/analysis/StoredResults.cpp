#include "analysis/StoredResults.h"

#include "analysis/AnalysisModel.h"
#include "analysis/keptBoxes.h"
#include "analysis/request/variableFields.h"
#include "analysis/result/storedForm.h"
#include "app/globals.h"
#include "charts/chartFile.h"
#include "diagnostics/errors.h"
#include "platform/system/Paths.h"
#include "platform/ui/Asker.h"

#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

/// A picture on its way through a file, in a folder that is made for this step alone and gone on every way out: no
/// other window, and no older picture, can come between. Empty where that fails.
QByteArray throughFile(const QString& name, const QByteArray& picture) {
    const QTemporaryDir folder;
    QFile file(Paths::join(folder.path(), name));
    if (!folder.isValid() || !file.open(QIODevice::WriteOnly) || file.write(picture) != picture.size() || !file.flush())
        return {};
    file.close();
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

const QString otherVariable = u"Was gezeigt wird, ist nicht von der gewählten Variablen."_s;

} // namespace

/// One of the two results: the fields that it is kept in, and what is asked before it is lost.
struct StoredResults::Kind {
    QString content, layout, overwrite, remove, none;
};

const StoredResults::Kind StoredResults::tables{
    u"dt_Table"_s, u"dt_TableLayout"_s, u"Möchten Sie die gespeicherte Tabelle überschreiben?"_s,
    u"Möchten Sie die gespeicherte Tabelle löschen?"_s, u"Für diese Variable ist keine Tabelle gespeichert."_s};
const StoredResults::Kind StoredResults::graphs{
    u"dt_Graph"_s, u"dt_GraphLayout"_s, u"Möchten Sie die gespeicherte Grafik überschreiben?"_s,
    u"Möchten Sie die gespeicherte Grafik löschen?"_s, u"Für diese Variable ist keine Grafik gespeichert."_s};

bool StoredResults::hasVariable() const {
    return !model_.request().dtTable.isEmpty() && !model_.request().dtField.isEmpty();
}

StoredResults::Offered StoredResults::offered(bool kept, bool made) const {
    if (!model_.request().bCreationMode || AnalysisModel::running())
        return {};
    return {made, kept && hasVariable(), kept && hasVariable()};
}

StoredResults::Offered StoredResults::table() const {
    return offered(model_.kept().table, model_.result().hasTable());
}

StoredResults::Offered StoredResults::graph() const {
    return offered(model_.kept().graph, shownGraph_ || model_.chart().state() == WindowChart::State::Drawn);
}

/// What the catalogue has now, both fields as of one moment. @throws dao::Error
StoredResults::Texts StoredResults::kept(const Kind& kind) const {
    const AnalysisRequest& r = model_.request();
    const QStringList texts = textsOf(r.dbcStudy.value, r.dbcVariable.value, {kind.content, kind.layout});
    return {texts[0], texts[1]};
}

/// Why the table that was computed, and the chart of it, can't be kept with the variable: numbers of one never stand
/// with another one. Empty where they can.
QString StoredResults::notToKeep() const {
    const std::optional<TableFacts>& facts = model_.result().facts;
    if (const QString words = stateText(model_.tableState()); !facts || !words.isEmpty())
        return words.isEmpty() ? u"Es gibt keine Tabelle."_s : words;
    const AnalysisRequest& r = model_.request();
    return isOf(*facts, r.dbcStudy.value, r.dbcVariable.value) ? QString() : otherVariable;
}

StoredResults::Texts StoredResults::tableTexts() const {
    const TableResult& result = model_.result();
    const AnalysisRequest& r = model_.request();
    const QString layout = BuildTableLayoutString(result.mfgGrid);
    if (result.stored) {
        const bool same = result.stored->study == r.dbcStudy.value && result.stored->variable == r.dbcVariable.value;
        return same ? Texts{result.stored->text, layout} : Texts{{}, {}, otherVariable};
    }
    if (const QString reason = notToKeep(); !reason.isEmpty())
        return {{}, {}, reason};
    return {BuildTableString(storedTableOf(result, r.cbValues)), layout};
}

StoredResults::Texts StoredResults::graphTexts() const {
    const AnalysisRequest& r = model_.request();
    if (shownGraph_) {
        const bool same = shownGraph_->study == r.dbcStudy.value && shownGraph_->variable == r.dbcVariable.value;
        return same ? Texts{shownGraph_->content, shownGraph_->layout} : Texts{{}, {}, otherVariable};
    }
    if (const QString reason = notToKeep(); !reason.isEmpty())
        return {{}, {}, reason};
    if (model_.chart().state() != WindowChart::State::Drawn)
        return {{}, {}, model_.chart().reason()};
    const StoredGraph graph = model_.pictures().started()
                                  ? storedGraphOf(model_.chart().model(), model_.chart().picture.millimetres)
                                  : StoredGraph();
    const QByteArray picture = throughFile(u"picture.jpg"_s, graph.jpeg);
    if (graph.jpeg.isEmpty() || picture != graph.jpeg)
        return {{}, {}, u"Das Bild konnte nicht erzeugt werden."_s};
    return {memoOf(picture), BuildGraphString(graph)};
}

bool StoredResults::save(const Kind& kind, const Texts& texts) {
    bool saved = false;
    if (texts.content.isEmpty() || texts.content.startsWith(storedFailure))
        tellFailure(TranslateText(texts.reason));
    else
        attempt([&] {
            if (kept(kind).content.isEmpty() || agreed(kind.overwrite))
                saved = write(kind, texts);
        });
    model_.edit().dbcVariable_Change();
    return saved;
}

bool StoredResults::remove(const Kind& kind) {
    bool removed = false;
    attempt([&] {
        if (!hasVariable() || kept(kind).content.isEmpty())
            tellFailure(TranslateText(kind.none));
        else if (agreed(kind.remove))
            removed = write(kind, {});
    });
    model_.edit().dbcVariable_Change();
    return removed;
}

/// @throws dao::Error
bool StoredResults::write(const Kind& kind, const Texts& texts) {
    const AnalysisRequest& r = model_.request();
    QStringList gone;
    model_.edit().besideFields([&] {
        gone = writeVariableFields(
            r.dbcStudy.value,
            {{r.dbcVariable.value, {{kind.content, orNull(texts.content)}, {kind.layout, orNull(texts.layout)}}}});
    });
    if (!gone.isEmpty())
        tellFailure(TranslateText(u"Variable nicht gefunden"_s));
    return gone.isEmpty();
}

bool StoredResults::cmdTableSave() {
    const ProcedureScope scope(u"[frmAuswertung.cmdTableSave]"_s);
    return save(tables, tableTexts());
}

bool StoredResults::cmdTableDelete() {
    const ProcedureScope scope(u"[frmAuswertung.cmdTableDelete]"_s);
    return remove(tables);
}

bool StoredResults::cmdTableLoad() {
    const ProcedureScope scope(u"[frmAuswertung.cmdTableLoad]"_s);
    Texts texts;
    if (hasVariable() && !attempt([&] { texts = kept(tables); }))
        return false;
    const std::optional<StoredTable> stored = readStoredTable(texts.content, texts.layout);
    if (!stored) {
        tellFailure(
            TranslateText(texts.content.isEmpty() ? tables.none : u"Die gespeicherte Tabelle ist beschädigt."_s));
        return false;
    }
    const AnalysisRequest& r = model_.request();
    model_.showStored(
        *stored, {r.dbcStudy.value, r.dbcVariable.value, r.dbcVariableUni, stored->weight, std::move(texts.content)});
    return true;
}

bool StoredResults::cmdGraphSave() {
    const ProcedureScope scope(u"[frmAuswertung.cmdGraphSave]"_s);
    return save(graphs, graphTexts());
}

bool StoredResults::cmdGraphDelete() {
    const ProcedureScope scope(u"[frmAuswertung.cmdGraphDelete]"_s);
    return remove(graphs);
}

bool StoredResults::cmdGraphLoad() {
    const ProcedureScope scope(u"[frmAuswertung.cmdGraphLoad]"_s);
    Texts texts;
    if (hasVariable() && !attempt([&] { texts = kept(graphs); }))
        return false;
    if (texts.content.isEmpty() || texts.layout.isEmpty()) {
        tellFailure(TranslateText(graphs.none));
        return false;
    }
    std::optional<StoredGraph> graph = readStoredGraph(texts.content, texts.layout);
    const Picture picture = graph && model_.pictures().started()
                                ? readPicture(throughFile(u"picture.tmp"_s, graph->jpeg))
                                : Picture{{}, PictureFault::Unsupported};
    if (!picture) {
        tellFailure(TranslateText(model_.pictures().started() ? u"Die gespeicherte Grafik ist beschädigt."_s
                                                              : u"Bilder können hier nicht gelesen werden."_s));
        return false;
    }
    const AnalysisRequest& r = model_.request();
    shownGraph_ = Shown{*std::move(graph),        picture.image,          r.dbcStudy.value, r.dbcVariable.value,
                        std::move(texts.content), std::move(texts.layout)};
    ui::asker().messageBox(
        {.text = TranslateText(u"Die gespeicherte Grafik wird temporär in ihrer Originalgröße angezeigt!"_s),
         .icon = ui::Icon::Information});
    return true;
}
