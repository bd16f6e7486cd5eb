#include "editing/EntryEdit.h"

using namespace Qt::StringLiterals;

namespace entryEdit {

std::optional<Content> contentOf(const ViewTables& tables, const QString& key) {
    const dao::RecordsetPtr row = tables.row(key);
    if (row->Eof())
        return std::nullopt;
    const QString group = u"dt_IsGroup"_s;
    const Content content{row->text(tables.columns.text), row->text(tables.columns.description),
                          row->hasField(group) && !row->value(group).isNull() && row->value(group).toBoolean()};
    row->Close();
    return content;
}

bool isRefused(int view) {
    const QString why = whyNotEditable(view);
    if (!why.isEmpty())
        ui::asker().messageBox({.text = why, .icon = ui::Icon::Exclamation});
    return !why.isEmpty();
}

QString storedDescription(const QString& text) {
    return text.isEmpty() ? u" "_s : text;
}

bool isAsShown(const CatalogueNode& node, const ViewTables& tables) {
    const bool asShown = EditBasis().shown(node, tables.english).stillSo();
    if (!asShown)
        tellChanged();
    return asShown;
}

void tellChanged() {
    perform({.name = {}, .tables = {}, .stillSo = [] { return false; }, .write = {}});
}

void tellNotFound() {
    QString text = TranslateText(u"Nicht gefunden!"_s);
    text[0] = text[0].toUpper(); // the table has the words for the end of a sentence
    ui::asker().messageBox({.text = text, .icon = ui::Icon::Exclamation});
}

void goTo(ExplorerModel& model, const QString& nodeKey) {
    attempt([&] { model.reveal(nodeKey); }); // the edit is written, whatever can be shown of it
}

} // namespace entryEdit
