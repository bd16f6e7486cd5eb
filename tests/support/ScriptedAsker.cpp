#include "support/ScriptedAsker.h"

#include <gtest/gtest.h>

namespace {
std::optional<QString> next(std::deque<QString>& queue, const QString& what) {
    if (queue.empty()) {
        ADD_FAILURE() << "no answer scripted for: " << qPrintable(what);
        return std::nullopt;
    }
    QString text = queue.front();
    queue.pop_front();
    return text;
}
} // namespace

ScriptedAsker::ScriptedAsker() : before_(ui::setAsker(this)) {}

ScriptedAsker::~ScriptedAsker() {
    ui::setAsker(before_);
    EXPECT_TRUE(answers_.empty()) << "answers were scripted for boxes that never came";
}

ScriptedAsker& ScriptedAsker::answer(ui::Answer answer, std::function<void()> meanwhile) {
    answers_.emplace_back(answer, std::move(meanwhile));
    return *this;
}

ScriptedAsker& ScriptedAsker::input(const QString& text) {
    inputs_.push_back(text);
    return *this;
}

ScriptedAsker& ScriptedAsker::file(const QString& path) {
    files_.push_back(path);
    return *this;
}

ScriptedAsker& ScriptedAsker::color(std::optional<unsigned> rgb) {
    colors_.push_back(rgb);
    return *this;
}

QStringList ScriptedAsker::texts() const {
    QStringList all;
    for (const ui::Box& box : boxes)
        all << box.text;
    return all;
}

ui::Answer ScriptedAsker::messageBox(const ui::Box& box) {
    boxes.push_back(box);
    if (box.checked && checks)
        *box.checked = *checks;
    boxes.back().checked = nullptr;
    if (box.buttons == ui::Buttons::Ok)
        return ui::Answer::Ok;
    if (answers_.empty()) {
        ADD_FAILURE() << "no answer scripted for the box: " << qPrintable(box.text);
        return ui::safeAnswer(box.buttons);
    }
    const auto [answer, meanwhile] = answers_.front();
    answers_.pop_front();
    if (meanwhile)
        meanwhile();
    return answer;
}

std::optional<QString> ScriptedAsker::inputBox(const QString& prompt, const QString&, const QString&) {
    return next(inputs_, prompt);
}

std::optional<QString> ScriptedAsker::chooseFile(const ui::FileChoice& choice) {
    lastChoice = choice;
    return next(files_, choice.title);
}

std::optional<QString> ScriptedAsker::chooseFolder(const QString& title, const QString& folder) {
    lastChoice = {.title = title, .filter = {}, .extension = {}, .folder = folder, .name = {}};
    return next(files_, title);
}

std::optional<unsigned> ScriptedAsker::chooseColor(const QString& title, unsigned) {
    if (colors_.empty()) {
        ADD_FAILURE() << "no colour scripted for: " << qPrintable(title);
        return std::nullopt;
    }
    const std::optional<unsigned> rgb = colors_.front();
    colors_.pop_front();
    return rgb;
}

void ScriptedAsker::setClipboard(const QString& text, const QString& html) {
    clipboardText = text;
    clipboardHtml = html;
}

void ScriptedAsker::eventTurn() {
    if (onEventTurn)
        onEventTurn();
}
