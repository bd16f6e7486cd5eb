#include "widgets/EntryFindBar.h"

#include "app/globals.h"
#include "printing/PreviewModel.h"
#include "widgets/gestures.h"

using namespace Qt::StringLiterals;

EntryFindBar::EntryFindBar(PreviewModel& model, QWidget* parent) : FindBar(parent), model_(model) {}

void EntryFindBar::find(bool backward, bool fromHere) {
    onGesture([&] {
        if (fromHere)
            model_.find(text());
        else
            model_.findNext(backward);
    });
    showResult();
    if (onFound)
        onFound();
}

void EntryFindBar::closed() {
    model_.find({});
    if (onFound)
        onFound();
    if (onClosed)
        onClosed();
}

QString EntryFindBar::prompt() const {
    return TranslateText(u"Name oder Label einer Variable"_s);
}

QString EntryFindBar::result() const {
    if (text().trimmed().isEmpty() || (model_.matches() == 0 && isHidden()))
        return {};
    if (model_.matches() == 0)
        return said(u"Nicht gefunden"_s, u"Not found"_s);
    return QString::number(model_.match() + 1) + u' ' + TranslateText(u"von"_s) + u' ' +
           QString::number(model_.matches());
}
