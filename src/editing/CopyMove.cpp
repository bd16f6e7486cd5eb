#include "editing/CopyMove.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "explorer/CatalogueTree.h"
#include "platform/dao/Value.h"

using namespace Qt::StringLiterals;

QString MoveOrCopyMode;
QString ClipboardKind;
bool ShowDuplicateMessage = true;
RememberedEntry SourceNode;
RememberedEntry ClipboardNode;

void RememberedEntry::set(const QString& key, bool english) {
    key_ = key;
    english_ = english;
    catalogue_ = gDatabase.CurrentDatabase();
}

QString RememberedEntry::key() const {
    const dao::DatabasePtr catalogue = catalogue_.lock();
    return catalogue && catalogue == gDatabase.CurrentDatabase() ? key_ : QString();
}

bool isSameEntry(const QString& key, const QString& other) {
    const auto table = [](const QString& of) { return gViews.at(viewOfKey(of), ViewTable::Table); };
    return dao::compareTexts(QStringView(key).mid(1), QStringView(other).mid(1)) == 0 &&
           dao::compareTexts(table(key), table(other)) == 0;
}
