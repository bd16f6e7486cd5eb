#include "app/globals.h"
#include "config/Options.h"
#include "editing/frmDocument.h"
#include "explorer/frmExplorer.h"
#include "platform/ui/Asker.h"
#include "search/frmFind.h"
#include "widgets/Desktop.h"
#include "widgets/HitListView.h"
#include "widgets/gestures.h"
#include "widgets/termMarks.h"

#include <QApplication>
#include <QComboBox>
#include <QShortcut>
#include <QTextEdit>

using namespace Qt::StringLiterals;

namespace {

template<class Window>
Window* openWindowOf(int view) {
    for (Form* form : Form::open())
        if (auto* window = dynamic_cast<Window*>(form); window && window->viewNumber() == view)
            return window;
    return nullptr;
}

void say(const QString& text) {
    ui::asker().messageBox({.text = text});
}

} // namespace

void frmFind::openHit() {
    const int hit = hits_->hitAt(list_->currentRow());
    if (hit < 0)
        return;
    led_ = true;
    if (const std::optional<HitTarget> target = hitTarget(search_.hits().at(hit).key)) {
        try {
            lead(*target);
        } catch (const std::exception&) {
            say(TranslateText(
                u"Element nicht gefunden. Vielleicht wurde es in der Zwischenzeit gelöscht oder verschoben."_s));
        }
    }
}

void frmFind::openNextHit(bool backwards) {
    const int current = list_->currentRow();
    // A search leaves the first hit current, which is the next one as long as none was looked at.
    const bool isFirst = !led_ && !backwards && current == 0;
    const int row = isFirst ? current : current + (backwards ? -1 : 1);
    if (row < 0 || row >= hits_->rowCount()) {
        desktop().mention(
            TranslateText(backwards ? u"Das ist der erste Treffer."_s : u"Das ist der letzte Treffer."_s));
        return;
    }
    list_->goTo(row);
    openHit();
}

void frmFind::lead(const HitTarget& target) {
    Form* window = nullptr;
    if (target.window == HitTarget::Window::Description)
        window = leadToDescription(target);
    else
        window = leadToNode(target);
    if (window && gOptions.SortByPosition)
        desktop().arrangeBeside({this, window});
}

frmExplorer* frmFind::leadToNode(const HitTarget& target) {
    auto* explorer = openWindowOf<frmExplorer>(target.view);
    if (!explorer)
        explorer = frmExplorer::OpenExplorerView(target.view);
    desktop().activate(*explorer);
    if (!explorer->showNode(target.nodeKey)) {
        say(TranslateText(u"Element nicht gefunden"_s));
        return nullptr;
    }
    if (target.variable.isEmpty())
        return explorer;
    if (!explorer->showVariable(target.study, target.variable, cmbLanguage_->currentIndex() > 0))
        return nullptr;
    markTerms(*explorer->questionText(), search_.request().terms());
    return explorer;
}

frmDocument* frmFind::leadToDescription(const HitTarget& target) {
    auto* document = openWindowOf<frmDocument>(target.view);
    if (!document)
        document = frmDocument::openView(target.view);
    document->setEnglish(cmbLanguage_->currentIndex() > 0);
    const bool found = document->showEntry(target.entryKey);
    desktop().activate(*document);
    if (!found) {
        say(said(u"Nicht gefunden!"_s, u"Not found!"_s));
        return nullptr;
    }
    markTerms(*document->textEdit(), search_.request().terms());
    document->textEdit()->setFocus();
    return document;
}

/// From hit to hit, also while one is being looked at: the keys are taken in this window and in those that hits lead
/// to, and left to all others.
void frmFind::followKeys() {
    const auto add = [this](QKeyCombination keys, bool backwards) {
        auto* shortcut = new QShortcut(QKeySequence(keys), window(), nullptr, nullptr, Qt::ApplicationShortcut);
        connect(shortcut, &QShortcut::activated, this,
                [this, backwards] { onGesture([&] { openNextHit(backwards); }); });
        return shortcut;
    };
    nextHit_ = add(QKeyCombination(Qt::Key_F4), false);
    previousHit_ = add(Qt::SHIFT | Qt::Key_F4, true);
    // While windows come and go the focus wanders, and who tells of it last need not tell of the last place.
    const auto follow = [this] {
        const QWidget* now = QApplication::focusWidget();
        bool taken = false;
        for (const Form* form : Form::open())
            if (dynamic_cast<const frmFind*>(form) || dynamic_cast<const frmExplorer*>(form) ||
                dynamic_cast<const frmDocument*>(form))
                taken = taken || (now && form->widget().isAncestorOf(now));
        for (QShortcut* shortcut : {nextHit_.data(), previousHit_.data()})
            if (shortcut)
                shortcut->setEnabled(taken);
    };
    connect(qApp, &QApplication::focusChanged, this, follow, Qt::QueuedConnection);
    follow();
}
