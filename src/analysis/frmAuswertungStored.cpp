#include "analysis/frmAuswertungStored.h"

#include "analysis/frmAuswertung.h"
#include "app/globals.h"
#include "widgets/Desktop.h"
#include "widgets/FlowLayout.h"

#include <QPushButton>

using namespace Qt::StringLiterals;

frmAuswertungStored::frmAuswertungStored(frmAuswertung& window, Kind kind, std::function<void()> changed,
                                         QWidget* parent)
    : QWidget(parent), window_(window), kind_(kind), changed_(std::move(changed)) {
    auto* row = new FlowLayout(this);
    const bool table = kind == Kind::Table;
    const auto button = [&](const QString& command, const QString& text) {
        auto* made = new QPushButton(text, this);
        made->setObjectName(u"cmd"_s + (table ? u"Table"_s : u"Graph"_s) + command);
        made->setAutoDefault(false);
        row->add(made);
        return made;
    };
    save_ = button(u"Save"_s, u"Im Kata&log ablegen"_s);
    load_ = button(u"Load"_s, u"Aus dem Katalog zeigen"_s);
    delete_ = button(u"Delete"_s, u"Aus dem Katalog l&öschen..."_s);
    carryOutBy(*save_, table ? &StoredResults::cmdTableSave : &StoredResults::cmdGraphSave,
               table ? u"Tabelle im Katalog abgelegt."_s : u"Grafik im Katalog abgelegt."_s);
    carryOutBy(*load_, table ? &StoredResults::cmdTableLoad : &StoredResults::cmdGraphLoad,
               table ? u"Gespeicherte Tabelle gezeigt."_s : u"Gespeicherte Grafik gezeigt."_s);
    carryOutBy(*delete_, table ? &StoredResults::cmdTableDelete : &StoredResults::cmdGraphDelete,
               table ? u"Tabelle im Katalog gelöscht."_s : u"Grafik im Katalog gelöscht."_s);
    hide();
}

/// @param done what the status bar says then
void frmAuswertungStored::carryOutBy(QPushButton& button, Command command, const QString& done) {
    connect(&button, &QPushButton::clicked, this, [this, command, done] {
        window_.act([&] {
            if ((window_.model().stored().*command)())
                desktop().mention(TranslateText(done));
            changed_();
        });
    });
}

void frmAuswertungStored::showOffered() {
    const AnalysisModel& model = window_.model();
    const bool table = kind_ == Kind::Table;
    const StoredResults::Offered offered = table ? model.stored().table() : model.stored().graph();
    setVisible(model.request().bCreationMode);
    save_->setEnabled(offered.save);
    load_->setEnabled(offered.load);
    delete_->setEnabled(offered.remove);
}
