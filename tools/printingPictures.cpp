#include "printingPictures.h"

#include "app/frmMain.h"
#include "widgets/QtAsker.h"

using namespace Qt::StringLiterals;

namespace {

/// A system with two printers.
class TwoPrinters : public QtAsker {
public:
    std::vector<ui::Printer> printers() const override {
        return {{.name = u"Archiv_Flur_2"_s, .place = u"Flur 2, neben der Poststelle"_s, .paper = 9, .isDefault = true},
                {.name = u"Plakate"_s, .place = u"Plakate"_s, .paper = 8, .color = true}};
    }
};

} // namespace

void PrintingWalk::dialogs() {
    frmMain window;
    window.load();
    window.show();
    window.resize(1280, 800);
    settle();
    TwoPrinters dialogs;
    ui::Asker* const before = ui::setAsker(&dialogs);
    window.perform(u"mnuViewExplorers(2)"_s);
    settle();
    modal(u"print-nothing-selected"_s, [&] { window.mnuFilePrint_Click(); });
    frmExplorer& topics = explorer();
    for (const CatalogueNode& node : topics.model().tree.nodes())
        if (node.id() != u"0" && topics.model().list.rows.empty())
            topics.showNode(node.Key);
    settle();
    if (topics.model().list.rows.empty() || !selectVariable(topics, topics.model().list.rows.front().Text))
        throw std::runtime_error("no topic with variables");
    modal(u"print-variable"_s, [&] { window.mnuFilePrint_Click(); });
    modal(u"print-without-printer"_s, [&] { window.mnuFilePreview_Click(); });
    window.perform(u"mnuDBBeschreibung"_s);
    settle();
    modal(u"print-description"_s, [&] { window.mnuFilePrint_Click(); });
    ui::setAsker(before);
}
