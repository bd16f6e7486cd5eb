#include "explorer/ExplorerLayout.h"

#include "config/CProfile.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

constexpr int widest = 100000; ///< twips; what is beyond was not set by a user

QString settingName(bool study) {
    return study ? u"ExplorerLayoutStudy"_s : u"ExplorerLayoutCategory"_s;
}

const QString panelSetting = u"ExplorerPanels"_s;

/// No message if it fails: a lost width is no lost work.
void storeText(const QString& name, const QString& text) {
    Registry::Entry entry;
    entry.text = text;
    Registry::write(Registry::CurrentUser, SettingsKeys::user, name, entry);
}

void readNumber(const QString& text, int least, int most, int& number) {
    bool isNumber = false;
    const int read = text.toInt(&isNumber);
    if (isNumber && read >= least && read <= most)
        number = read;
}

} // namespace

QString ExplorerLayout::toText() const {
    QStringList parts = {u"tree=%1"_s.arg(tree),         u"list=%1"_s.arg(list),       u"panelA=%1"_s.arg(panelA),
                         u"question=%1"_s.arg(question), u"besideA=%1"_s.arg(besideA), u"besideB=%1"_s.arg(besideB)};
    for (const Column& column : columns)
        parts << u"%1=%2"_s.arg(column.key).arg(column.width);
    if (!sortKey.isEmpty())
        parts << u"sort=%1"_s.arg(sortKey) << u"descending=%1"_s.arg(descending ? 1 : 0);
    return parts.join(u' ');
}

ExplorerLayout ExplorerLayout::fromText(const QString& text) {
    ExplorerLayout layout;
    for (const QString& part : text.split(u' ', Qt::SkipEmptyParts)) {
        const QString key = part.section(u'=', 0, 0);
        const QString value = part.section(u'=', 1);
        if (key == u"tree") {
            readNumber(value, 1, 999, layout.tree);
        } else if (key == u"list") {
            readNumber(value, 1, 999, layout.list);
        } else if (key == u"panelA") {
            readNumber(value, 1, 999, layout.panelA);
        } else if (key == u"question") {
            readNumber(value, 1, 999, layout.question);
        } else if (key == u"besideA") {
            readNumber(value, 1, 999, layout.besideA);
        } else if (key == u"besideB") {
            readNumber(value, 1, 999, layout.besideB);
        } else if (key == u"sort") {
            layout.sortKey = value;
        } else if (key == u"descending") {
            layout.descending = value == u"1";
        } else {
            int width = 0;
            readNumber(value, 1, widest, width);
            if (width > 0)
                layout.columns.push_back({key, width});
        }
    }
    return layout;
}

void ExplorerLayout::takeFrom(const VariableList& variables) {
    columns.clear();
    for (const ListColumn& column : variables.columns)
        if (column.widthBy == ListColumn::By::User)
            columns.push_back({column.Key, column.Width});
    const auto sorted = static_cast<size_t>(variables.sortKey);
    sortKey = variables.sorted && sorted < variables.columns.size() ? variables.columns[sorted].Key : QString();
    descending = variables.descending;
}

void ExplorerLayout::giveTo(VariableList& variables) const {
    for (const Column& column : columns)
        if (const int place = variables.columnOf(column.key); place >= 0) {
            ListColumn& given = variables.columns[static_cast<size_t>(place)];
            // Earlier versions stored a width for every column; one that nobody changed is none that a user has set.
            if (given.Width != column.width)
                given.widthBy = ListColumn::By::User;
            given.Width = column.width;
        }
    const int sorted = variables.columnOf(sortKey);
    variables.sorted = sorted >= 0;
    if (variables.sorted) {
        variables.sortKey = sorted;
        variables.descending = descending;
    }
}

ExplorerLayout ExplorerLayout::stored(bool study) {
    return fromText(storedSetting(settingName(study), QString()).toString());
}

void ExplorerLayout::store(bool study) const {
    storeText(settingName(study), toText());
}

int ExplorerLayout::storedPanels() {
    int panels = 1;
    readNumber(storedSetting(panelSetting, QString()).toString(), 0, 2, panels);
    return panels;
}

void ExplorerLayout::storePanels(int panels) {
    storeText(panelSetting, QString::number(panels));
}
