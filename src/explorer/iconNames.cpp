#include "explorer/iconNames.h"

#include "app/globals.h"
#include "explorer/VariableList.h"

using namespace Qt::StringLiterals;

QString iconName(int number) {
    constexpr int variableFound = 5;
    if (number == VariableRow::smallIcon || number == variableFound)
        return u"variable"_s;
    // Plain pairs begin at 6, described ones at 25, two numbers a view.
    const bool described = number > VariableRow::smallIcon;
    const int place = number - (described ? 25 : 6);
    const int view = place / 2 + 1;
    const bool study = gViews.at(view, ViewTable::Type) == u"1";
    const bool trend = !study && gViews.at(view, ViewTable::CompAnalysis) == u"1";
    return (study   ? u"study"_s
            : trend ? u"trend"_s
                    : u"category"_s) +
           (described ? u"-described"_s : QString()) + (place % 2 == 1 ? u"-open"_s : QString());
}

QString viewName(int view) {
    return gViews.at(view, gLanguage == 0 ? ViewTable::Name : ViewTable::NameEnglish);
}
