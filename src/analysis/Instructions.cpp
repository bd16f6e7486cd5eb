#include "analysis/Instructions.h"

#include "analysis/keptBoxes.h"
#include "analysis/request/Instruction.h"
#include "app/globals.h"
#include "diagnostics/errors.h"
#include "platform/ui/Asker.h"

#include <QScopeGuard>

using namespace Qt::StringLiterals;

namespace {

const QString instructionField = u"dt_Instruction"_s;
/// How many names a box has room for; the others stand in its details.
constexpr int mostNames = 10;

} // namespace

bool Instructions::hasVariable() const {
    return !editor_.request().dtTable.isEmpty() && !editor_.request().dtField.isEmpty();
}

/// As the catalogue has it now. @throws dao::Error 3021 where the variable has gone
QString Instructions::keptText() const {
    const AnalysisRequest& r = editor_.request();
    return variableRow(r.dbcStudy.value, r.dbcVariable.value, {instructionField})->text(instructionField);
}

bool Instructions::hasStudy() const {
    const bool chosen = !editor_.request().dbcStudy.isEmpty();
    if (!chosen)
        tellFailure(TranslateText(u"Bitte eine Studie auswählen"_s));
    return chosen;
}

bool Instructions::cmdInstructionSave() {
    const ProcedureScope scope(u"[frmAuswertung.cmdInstructionSave]"_s);
    const AnalysisRequest& r = editor_.request();
    QString reason;
    std::optional<Instruction> instruction;
    if (!hasVariable())
        reason = TranslateText(u"Bitte eine Variable auswählen"_s);
    else
        instruction = instructionOf(r, reason);
    bool written = false;
    QStringList gone;
    if (!instruction)
        tellFailure(reason);
    else
        attempt([&] {
            if (!keptText().isEmpty() && !agreed(u"Möchten Sie die gespeicherte Anweisung überschreiben?"_s))
                return;
            editor_.besideFields([&] {
                gone = writeVariableFields(r.dbcStudy.value,
                                           {{r.dbcVariable.value, {{instructionField, instruction->text()}}}});
            });
            written = gone.isEmpty();
        });
    if (!gone.isEmpty())
        tellFailure(TranslateText(u"Variable nicht gefunden"_s));
    editor_.dbcVariable_Change();
    return written;
}

bool Instructions::cmdInstructionLoad() {
    const ProcedureScope scope(u"[frmAuswertung.cmdInstructionLoad]"_s);
    QString text, reason;
    if (hasVariable() && !attempt([&] { text = keptText(); }))
        return false;
    if (text.isEmpty())
        reason = TranslateText(u"Für diese Variable ist keine Anweisung gespeichert."_s);
    else
        reason = loadInstruction(editor_, Instruction::read(text));
    if (!reason.isEmpty())
        tellFailure(reason);
    return reason.isEmpty();
}

bool Instructions::cmdInstructionDelete() {
    const ProcedureScope scope(u"[frmAuswertung.cmdInstructionDelete]"_s);
    const AnalysisRequest& r = editor_.request();
    QString text;
    if (hasVariable() && !attempt([&] { text = keptText(); }))
        return false;
    if (text.isEmpty()) {
        tellFailure(TranslateText(u"Für diese Variable ist keine Anweisung gespeichert."_s));
        return false;
    }
    bool deleted = false;
    if (agreed(u"Möchten Sie die gespeicherte Anweisung löschen?"_s))
        deleted = attempt([&] {
            editor_.besideFields([&] {
                writeVariableFields(r.dbcStudy.value, {{r.dbcVariable.value, {{instructionField, {}}}}});
            });
        });
    editor_.dbcVariable_Change();
    return deleted;
}

bool Instructions::writeToAll(const dao::Value& value) {
    const bool written = attempt([&] {
        editor_.besideFields([&] { writeToAllVariables(editor_.request().dbcStudy.value, instructionField, value); });
    });
    editor_.dbcVariable_Change();
    return written;
}

bool Instructions::cmdInstructionSaveForAll() {
    const ProcedureScope scope(u"[frmAuswertung.cmdInstructionSaveForAll]"_s);
    if (!hasStudy())
        return false;
    QString reason;
    std::optional<Instruction> instruction = instructionOf(editor_.request(), reason);
    if (!instruction) {
        tellFailure(reason);
        return false;
    }
    instruction->flip.reset();
    return agreed(
               u"Möchten Sie für alle Variablen dieser Studie die gewählte Anweisung speichern (und vorhandene überschreiben)?"_s) &&
           writeToAll(instruction->text());
}

bool Instructions::cmdInstructionDeleteForAll() {
    const ProcedureScope scope(u"[frmAuswertung.cmdInstructionDeleteForAll]"_s);
    return hasStudy() &&
           agreed(u"Möchten Sie für alle Variablen dieser Studie die gespeicherten Anweisungen löschen?"_s) &&
           writeToAll({});
}

bool Instructions::cmdInstructionRunTableForAll(const TextWidth& textWidth, const Progress& progress) {
    const ProcedureScope scope(u"[frmAuswertung.cmdInstructionRunTableForAll]"_s);
    return runForAll(
        {.kind = BatchKind::Tables, .textWidth = textWidth, .progress = progress},
        u"Möchten Sie für alle Variablen dieser Studie die gespeicherten Anweisungen ausführen und die Tabelle speichern?"_s);
}

bool Instructions::cmdInstructionRunGraphForAll(const TextWidth& textWidth, const Progress& progress) {
    const ProcedureScope scope(u"[frmAuswertung.cmdInstructionRunGraphForAll]"_s);
    return runForAll(
        {.kind = BatchKind::Graphs, .textWidth = textWidth, .progress = progress},
        u"Möchten Sie für alle Variablen dieser Studie die gespeicherten Anweisungen ausführen und die Grafik speichern?"_s);
}

bool Instructions::runForAll(BatchRequest request, const QString& question) {
    if (!hasStudy())
        return false;
    const AnalysisRequest& r = editor_.request();
    request.study = r.dbcStudy.value;
    request.preserveLayout = r.chkPreserveLayout;
    request.chkFlipXtab = r.chkFlipXtab;
    request.englishContents = editor_.englishContents();
    batch_ = std::make_unique<BatchRun>(std::move(request));
    const auto end = qScopeGuard([this] { batch_.reset(); }); // it holds rows of the catalogue
    if (const QString obstacle = batch_->obstacle(); !obstacle.isEmpty()) {
        ui::asker().messageBox({.text = obstacle, .icon = ui::Icon::Exclamation});
        return false;
    }
    if (!agreed(question))
        return false;
    const BatchReport report = batch_->run();
    if (!editor_.variables().empty())
        editor_.chooseVariable(QString(editor_.variables().front().name));
    ui::asker().messageBox(
        {.text = report.summary(mostNames),
         .icon = report.failed.empty() && report.ended.isEmpty() ? ui::Icon::Information : ui::Icon::Exclamation,
         .details = report.text()});
    return true;
}

void Instructions::stop() {
    if (batch_)
        batch_->stop();
}
