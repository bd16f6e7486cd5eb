#include "analysis/frmAuswertungInstructions.h"

#include "analysis/frmAuswertung.h"
#include "app/globals.h"
#include "widgets/Desktop.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

frmAuswertungInstructions::frmAuswertungInstructions(frmAuswertung& window)
    : frmAuswertungPart(window), commands_(model_.edit()) {
    build();
    connectAll();
}

void frmAuswertungInstructions::build() {
    fraInstruction_ = control<QGroupBox>(u"fraInstruction"_s, u"Anweisungen"_s, nullptr);
    QGroupBox* frame = fraInstruction_;
    const auto button = [frame](const QString& name, const QString& text) {
        auto* made = control<QPushButton>(u"cmdInstruction"_s + name, text, frame);
        made->setAutoDefault(false);
        return made;
    };
    save_ = button(u"Save"_s, u"Speichern"_s);
    load_ = button(u"Load"_s, u"Laden"_s);
    delete_ = button(u"Delete"_s, u"Löschen..."_s);
    saveForAll_ = button(u"SaveForAll"_s, u"Für alle speichern..."_s);
    deleteForAll_ = button(u"DeleteForAll"_s, u"Für alle löschen..."_s);
    runTables_ = button(u"RunTableForAll"_s, u"Alle Tabellen erzeugen..."_s);
    runGraphs_ = button(u"RunGraphForAll"_s, u"Alle Grafiken erzeugen..."_s);
    cbValuesInstruct_ = valuesPicker(u"cbValuesInstruct"_s, frame);
    lblValuesInstruct_ = caption(u"lblValuesInstruct"_s, u"Werte der Kreuztabelle:"_s, cbValuesInstruct_, frame);
    chkPreserveLayout_ = control<QCheckBox>(u"chkPreserveLayout"_s, u"Layout beibehalten"_s, frame);
    lblBatch_ = factLabel(u"lblBatch"_s, frame);
    cmdStopBatch_ = withOwnText(new QPushButton(frame), u"cmdStopBatch"_s);
    auto* rows = new QVBoxLayout(frame);
    addRow(rows, {{lblValuesInstruct_, 0}, {cbValuesInstruct_, 0}});
    addRow(rows, {{save_, 0}, {load_, 0}, {delete_, 0}});
    addRow(rows, {{saveForAll_, 0}, {deleteForAll_, 0}});
    addRow(rows, {{runTables_, 0}, {runGraphs_, 0}, {chkPreserveLayout_, 0}});
    addRow(rows, {{lblBatch_, 1}, {cmdStopBatch_, 0}});
    lblBatch_->hide();
    cmdStopBatch_->hide();
}

void frmAuswertungInstructions::connectAll() {
    onClick(save_, &Instructions::cmdInstructionSave, u"Anweisung gespeichert."_s);
    onClick(load_, &Instructions::cmdInstructionLoad, u"Anweisung geladen."_s);
    onClick(delete_, &Instructions::cmdInstructionDelete, u"Anweisung gelöscht."_s);
    onClick(saveForAll_, &Instructions::cmdInstructionSaveForAll, u"Anweisung für alle Variablen gespeichert."_s);
    onClick(deleteForAll_, &Instructions::cmdInstructionDeleteForAll, u"Anweisungen aller Variablen gelöscht."_s);
    connect(runTables_, &QPushButton::clicked, this,
            [this] { runForAll(&Instructions::cmdInstructionRunTableForAll); });
    connect(runGraphs_, &QPushButton::clicked, this,
            [this] { runForAll(&Instructions::cmdInstructionRunGraphForAll); });
    connect(cmdStopBatch_, &QPushButton::clicked, this, [this] { stop(); });
    connect(cbValuesInstruct_, &QComboBox::activated, this, [this](int view) {
        act([&] {
            model_.edit().change(RequestPart::Values, [view](AnalysisRequest& r) { r.cbValuesInstruct = view; });
        });
    });
    connect(chkPreserveLayout_, &QCheckBox::clicked, this, [this](bool on) {
        act([&] { model_.edit().change(RequestPart::Mode, [on](AnalysisRequest& r) { r.chkPreserveLayout = on; }); });
    });
}

void frmAuswertungInstructions::onClick(QPushButton* button, Command command, const QString& done) {
    connect(button, &QPushButton::clicked, this, [this, command, done] {
        act([&] {
            if ((commands_.*command)())
                desktop().mention(TranslateText(done));
        });
    });
}

void frmAuswertungInstructions::runForAll(bool (Instructions::*command)(const TextWidth&,
                                                                        const Instructions::Progress&)) {
    touch();
    window_.runBatch([&] {
        (commands_.*command)(textWidth,
                             [this](const QString& text, int done, int total) { showProgress(text, done, total); });
    });
}

void frmAuswertungInstructions::stop() {
    commands_.stop();
    showStop();
}

/// The status bar may be out of view; here is also the button.
void frmAuswertungInstructions::showProgress(const QString& text, int done, int total) {
    desktop().showProgress(text);
    const QString place = u" ("_s + TranslateText(u"%1 von %2"_s).arg(done + 1).arg(total) + u')';
    lblBatch_->setText(text.isEmpty() ? QString() : text + place);
    lblBatch_->setVisible(!text.isEmpty());
    cmdStopBatch_->setVisible(!text.isEmpty());
    showStop();
}

/// The button has room for both of its texts, so that it stays where it is under the pointer.
void frmAuswertungInstructions::showStop() {
    const QString first = TranslateText(u"Anhalten (Esc)"_s), second = TranslateText(u"Sofort abbrechen (Esc)"_s);
    int width = 0;
    for (const QString& text : {first, second, commands_.stops() ? second : first}) {
        cmdStopBatch_->setText(text);
        width = std::max(width, cmdStopBatch_->sizeHint().width());
    }
    cmdStopBatch_->setMinimumWidth(width);
    cmdStopBatch_->setToolTip(TranslateText(commands_.stops()
                                                ? u"Der Lauf endet nach dieser Variablen."_s
                                                : u"Hält nach der Variablen an, die gerade berechnet wird."_s));
}

bool frmAuswertungInstructions::concerns(RequestPart part) const {
    return part == RequestPart::Study || part == RequestPart::Variables || part == RequestPart::Mode ||
           part == RequestPart::Values;
}

void frmAuswertungInstructions::showChanges(const Changes&) {
    const AnalysisRequest& r = model_.request();
    const KeptWithVariable& kept = model_.edit().kept();
    fraInstruction_->setVisible(r.bCreationMode);
    load_->setEnabled(kept.instruction);
    delete_->setEnabled(kept.instruction);
    cbValuesInstruct_->setCurrentIndex(r.cbValuesInstruct);
    chkPreserveLayout_->setChecked(r.chkPreserveLayout);
}

void frmAuswertungInstructions::nameForReaders() {
    cbValuesInstruct_->setAccessibleName(TranslateText(u"Werte der Tabelle"_s));
    save_->setAccessibleName(TranslateText(u"Anweisung speichern"_s));
    load_->setAccessibleName(TranslateText(u"Anweisung laden"_s));
    delete_->setAccessibleName(TranslateText(u"Anweisung löschen"_s));
    lblBatch_->setAccessibleName(TranslateText(u"Fortschritt"_s));
    chkPreserveLayout_->setToolTip(
        TranslateText(u"Breiten, Höhen und Ausrichtung der gespeicherten Tabelle gelten auch für die neue."_s));
    showStop();
}
