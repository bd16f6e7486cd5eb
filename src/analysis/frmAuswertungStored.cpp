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
    save_ =
        button(u"Save"_s, u"Im Kata&log ablegen"_s, table ? &StoredResults::cmdTableSave : &StoredResults::cmdGraphSave,
               table ? u"Tabelle im Katalog abgelegt."_s : u"Grafik im Katalog abgelegt."_s);
    load_ = button(u"Load"_s, u"Aus dem Katalog zeigen"_s,
                   table ? &StoredResults::cmdTableLoad : &StoredResults::cmdGraphLoad, {});
    delete_ = button(u"Delete"_s, u"Aus dem Katalog l&öschen..."_s,
                     table ? &StoredResults::cmdTableDelete : &StoredResults::cmdGraphDelete,
                     table ? u"Tabelle im Katalog gelöscht."_s : u"Grafik im Katalog gelöscht."_s);
    for (QPushButton* one : {save_, load_, delete_})
        row->add(one);
    hide();
}

QPushButton* frmAuswertungStored::button(const QString& command, const QString& text, Command run,
                                         const QString& mention) {
    auto* made = new QPushButton(text, this);
    made->setObjectName(u"cmd"_s + (kind_ == Kind::Table ? u"Table"_s : u"Graph"_s) + command);
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this, [this, run, mention] {
        window_.act([&] {
            if ((window_.model().stored().*run)() && !mention.isEmpty())
                desktop().mention(TranslateText(mention));
            changed_();
        });
    });
    return made;
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
