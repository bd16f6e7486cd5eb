#include "app/ToolbarModel.h"

#include "app/globals.h"
#include "config/Options.h"

using namespace Qt::StringLiterals;

namespace {

QString viewName(int view) {
    return gViews.at(view, gLanguage == 0 ? ViewTable::Name : ViewTable::NameEnglish);
}

} // namespace

void ToolbarModel::build() {
    buttons_.clear();
    buttons_.push_back({u"ODB"_s, TranslateText(u"Datenbank öffnen"_s), u"mnFileOpen"_s, u"open"_s});
    buttons_.push_back(
        {u"DBD"_s, TranslateText(u"Datenbankbeschreibung"_s), u"mnuDBBeschreibung"_s, u"catalogue-description"_s});
    addSeparator();
    addViews();
    addFixed();
}

void ToolbarModel::addViews() {
    const int views = gCatalogueOptions.NumberOfFrmExplorers;
    for (int view = 1; view <= views; ++view)
        buttons_.push_back({.key = u"EXPL"_s + QString::number(view),
                            .tooltip = viewName(view),
                            .command = u"mnuViewExplorers(%1)"_s.arg(view),
                            .view = view});
    addSeparator();
    int number = 0;
    for (int view = 1; view <= views; ++view) {
        if (gViews.at(view, ViewTable::DescName).isEmpty())
            continue;
        ++number;
        buttons_.push_back({u"DESC"_s + QString::number(number),
                            gViews.at(view, gLanguage == 0 ? ViewTable::DescName : ViewTable::DescNameEnglish),
                            u"mnuViewDescriptions(%1)"_s.arg(view), u"description"_s});
        buttons_.back().view = view;
    }
    addSeparator();
}

void ToolbarModel::addFixed() {
    const auto add = [this](const QString& key, const QString& tooltip, const QString& command, const QString& icon) {
        buttons_.push_back({key, TranslateText(tooltip), command, icon});
    };
    add(u"A"_s, u"Auswertung"_s, u"mnuAuswertungsansicht"_s, u"analysis"_s);
    add(u"F"_s, u"Fragebogen"_s, u"mnuFragebogenansicht"_s, u"questionnaire"_s);
    add(u"SPSS"_s, u"SPSS Datensatz"_s, u"mnuSPSSAnsicht"_s, u"dataset"_s);
    addSeparator();
    add(u"D"_s, u"Drucken"_s, u"mnuFilePrint"_s, u"print"_s);
    addSeparator();
    add(u"E"_s, u"Erweiterte Suche"_s, u"mnuErweiterteSuche"_s, u"search-extended"_s);
    addSeparator();
    add(u"V"_s, u"Variablenfenster"_s, u"mnu1VarWindow"_s, u"panel"_s);
    buttons_.back().check = true;
    add(u"VV"_s, u"Doppeltes Variablenfenster"_s, u"mnu2VarWindow"_s, u"panels"_s);
    buttons_.back().check = true;
    addSeparator();
    add(u"SCON"_s, u"ShowCards"_s, u"mnuShowCards"_s, u"showcard"_s);
    buttons_.back().check = true;
    buttons_.back().pressed = gOptions.ShowCards;
    addSeparator();
    add(u"EL"_s, u"Englische Inhalte"_s, u"mnuEnglishLanguage"_s, u"contents-english"_s);
    buttons_.back().check = true;
    buttons_.back().pressed = gOptions.EnglishLanguage;
    addSeparator();
    add(u"O"_s, u"Optionen"_s, u"mnuViewOptions"_s, u"options"_s);
    addSeparator();
    addSeparator();
    add(u"H"_s, u"Hilfe"_s, u"mnuHelpContents"_s, u"help"_s);
}

int ToolbarModel::index(const QString& key) const {
    if (key.isEmpty())
        return 0;
    for (size_t i = 0; i < buttons_.size(); ++i)
        if (buttons_[i].key == key)
            return static_cast<int>(i) + 1;
    return 0;
}
