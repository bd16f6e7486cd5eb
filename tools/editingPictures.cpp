#include "editingPictures.h"

#include "app/frmMain.h"
#include "editing/frmDocument.h"

#include <QLineEdit>
#include <QTextEdit>

using namespace Qt::StringLiterals;

void EditingWalk::documents() {
    frmMain window;
    window.load();
    window.show();
    window.resize(1280, 800);
    settle();
    frmExplorer& first = explorer();
    first.showNode(u"ASV2018"_s);
    settle();
    modal(u"questionnaires"_s, [&] { window.perform(u"F"_s); });
    modal(u"datasets"_s, [&] { window.perform(u"SPSS"_s); });
    window.perform(u"DESC1"_s);
    settle();
    auto* document = dynamic_cast<frmDocument*>(desktop().activeForm());
    if (!document || !document->showEntry(u"SV2018"_s))
        throw std::runtime_error("no description in front");
    take(window, u"document"_s);
    press(*document->textEdit(), Qt::Key_F, {}, Qt::ControlModifier);
    in<QLineEdit>(*document, u"txtSuchen"_s).setText(u"2018"_s);
    press(in<QLineEdit>(*document, u"txtSuchen"_s), Qt::Key_Return);
    take(window, u"document-find"_s);
    window.perform(u"DBD"_s);
    take(window, u"document-catalogue"_s);
}
