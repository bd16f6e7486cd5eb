#include "platform/ui/CollectingAsker.h"

namespace ui {

void CollectingAsker::collect(const QString& text) {
    const QString words = QString(text).replace(QLatin1String("\r\n"), QLatin1String("\n")).trimmed();
    if (!words.isEmpty() && !texts_.contains(words))
        texts_ << words;
}

Answer CollectingAsker::messageBox(const Box& box) {
    collect(box.text);
    return safeAnswer(box.buttons);
}

std::optional<QString> CollectingAsker::inputBox(const QString& prompt, const QString&, const QString&) {
    collect(prompt);
    return std::nullopt;
}

std::optional<QString> CollectingAsker::chooseFile(const FileChoice& choice) {
    collect(choice.title);
    return std::nullopt;
}

std::optional<QString> CollectingAsker::chooseFolder(const QString& title, const QString&) {
    collect(title);
    return std::nullopt;
}

std::optional<unsigned> CollectingAsker::chooseColor(const QString& title, unsigned) {
    collect(title);
    return std::nullopt;
}

} // namespace ui
