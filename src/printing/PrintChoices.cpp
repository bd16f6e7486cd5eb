#include "printing/PrintChoices.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// A name as part of a caption: on one line, not longer than it may be, no half of a character at its end.
QString inCaption(const QString& name, int longest) {
    QString shown = name.simplified();
    if (shown.size() > longest) {
        shown.truncate(std::max(1, longest - 1));
        shown.chop(shown.back().isHighSurrogate() ? 1 : 0);
        shown += u'…';
    }
    return shown.replace(u'&', u"&&"_s);
}

QString withName(const QString& caption, const QString& name) {
    return name.isEmpty() ? caption : caption + u" ("_s + name + u')';
}

} // namespace

PrintEntry describedEntry(const PrintSource& source) {
    if (!source.nodeId.isEmpty())
        return {source.nodeId, source.nodeText};
    if (source.window != PrintSource::Window::Explorer || source.variable.isEmpty())
        return {};
    // A study describes its variables wherever they are listed in its view.
    if (source.isStudy)
        return {source.study, source.rowNodeId == source.study ? source.rowNodeText : source.study};
    return {source.rowNodeId, source.rowNodeText};
}

PrintChoices::PrintChoices(const PrintSource& source) : source_(source) {
    switch (source.window) {
    case PrintSource::Window::None:
        break;
    case PrintSource::Window::Explorer:
        ofExplorer();
        break;
    case PrintSource::Window::Document:
        ofDocument();
        break;
    case PrintSource::Window::Analysis:
        ofAnalysis();
        break;
    }
    label();
    if (P_ >= 0)
        chosen_ = static_cast<PrintChoice>(P_);
}

void PrintChoices::ofExplorer() {
    const bool row = !source_.variable.isEmpty(), node = !source_.nodeId.isEmpty();
    enable(PrintChoice::Names);
    if (row)
        enable(PrintChoice::Variable);
    if (node)
        enable(PrintChoice::NodeVariables);
    if (!describedEntry(source_).id.isEmpty())
        enable(PrintChoice::Description);
    P_ = static_cast<int>(row ? PrintChoice::Variable : node ? PrintChoice::NodeVariables : PrintChoice::NoReport);
}

/// A window of a view that shows none has nothing to print.
void PrintChoices::ofDocument() {
    if (source_.view > 0 && source_.nodeId.isEmpty())
        return;
    enable(PrintChoice::Description);
    P_ = static_cast<int>(PrintChoice::Description);
}

void PrintChoices::ofAnalysis() {
    if (!source_.tablePage || source_.study.isEmpty() || source_.variable.isEmpty())
        return;
    enable(PrintChoice::Variable);
    P_ = static_cast<int>(PrintChoice::Variable);
}

void PrintChoices::label() {
    const QString entry = describedEntry(source_).id;
    studie = source_.study;
    varno = variable = source_.variable;
    if (source_.isStudy)
        studie_2 = source_.nodeId;
    else
        Cat_id = kategorie = source_.nodeId;
    stno = varno.isEmpty() ? studie_2 : studie;
    kategorie_2 = entry;
}

void PrintChoices::choose(PrintChoice choice) {
    if (isEnabled(choice))
        chosen_ = choice;
}

bool PrintChoices::isReport() const {
    return std::ranges::find(shown, chosen_) != shown.end() && isEnabled(chosen_);
}

QString PrintChoices::caption(PrintChoice choice, int longest) const {
    const auto said = [this](const QString& german, const QString& english) {
        return source_.language == 2 ? english : german;
    };
    switch (choice) {
    case PrintChoice::Variable:
        return said(u"Ausgewählte &Variable"_s, u"Selected &variable"_s);
    case PrintChoice::NodeVariables:
        return withName(said(u"V&ariablen der ausgewählten Ansicht"_s, u"V&ariables in selected view"_s),
                        inCaption(source_.nodeText, longest));
    case PrintChoice::Description:
        if (source_.window == PrintSource::Window::Document && source_.view == 0)
            return said(u"Daten&bankbeschreibung"_s, u"Data&base Description"_s);
        return withName(said(u"Ausgewählte &Beschreibung"_s, u"Selected &Description"_s),
                        inCaption(describedEntry(source_).text, longest));
    case PrintChoice::Names:
        // An analysis and the catalogue's description are of no view.
        return said(u"&Namen der "_s, u"&Names of "_s) +
               (source_.viewName.isEmpty() ? said(u"Ansicht"_s, u"view"_s) : inCaption(source_.viewName, longest));
    case PrintChoice::NoReport:
        break;
    }
    return {};
}
