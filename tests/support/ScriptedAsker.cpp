#include "support/ScriptedAsker.h"

#include <gtest/gtest.h>

namespace {

/// The next answer of a queue; without one the test fails and the answer is that of Cancel.
template<class Scripted>
Scripted next(std::deque<Scripted>& queue, const QString& what) {
    if (queue.empty()) {
        ADD_FAILURE() << "no answer scripted for: " << qPrintable(what);
        return {};
    }
    Scripted answer{};
    std::swap(answer, queue.front());
    queue.pop_front();
    return answer;
}

template<class Answer>
Answer nextAfter(std::deque<std::pair<Answer, std::function<void()>>>& queue, const QString& what) {
    auto [answer, meanwhile] = next(queue, what);
    if (meanwhile)
        meanwhile();
    return answer;
}

} // namespace

ScriptedAsker::ScriptedAsker() : before_(ui::setAsker(this)) {}

ScriptedAsker::~ScriptedAsker() {
    ui::setAsker(before_);
    EXPECT_TRUE(answers_.empty()) << "answers were scripted for boxes that never came";
    EXPECT_TRUE(edited_.empty() && order_.empty() && fromTree_.empty())
        << "answers were scripted that nobody asked for";
}

ScriptedAsker& ScriptedAsker::answer(ui::Answer answer, std::function<void()> meanwhile) {
    answers_.emplace_back(answer, std::move(meanwhile));
    return *this;
}

ScriptedAsker& ScriptedAsker::input(const QString& text) {
    inputs_.push_back(text);
    return *this;
}

ScriptedAsker& ScriptedAsker::noInput() {
    inputs_.push_back(std::nullopt);
    return *this;
}

ScriptedAsker& ScriptedAsker::edited(std::optional<QString> text, std::function<void()> meanwhile) {
    edited_.emplace_back(std::move(text), std::move(meanwhile));
    return *this;
}

ScriptedAsker& ScriptedAsker::order(std::optional<std::vector<int>> places, std::function<void()> meanwhile) {
    order_.emplace_back(std::move(places), std::move(meanwhile));
    return *this;
}

ScriptedAsker& ScriptedAsker::fromTree(const QString& text) {
    fromTree_.push_back(text);
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
    return nextAfter(answers_, box.text);
}

std::optional<QString> ScriptedAsker::inputBox(const QString& prompt, const QString& title, const QString& proposal) {
    prompts.push_back({prompt, title, proposal});
    return next(inputs_, prompt);
}

std::optional<QString> ScriptedAsker::editText(const QString& caption, const QString& text, const QString& /*kept*/) {
    editors.emplace_back(caption, text);
    return nextAfter(edited_, caption);
}

std::optional<std::vector<int>> ScriptedAsker::orderLines(const ui::LineOrder& lines) {
    orders.push_back(lines);
    return nextAfter(order_, lines.lines.join(u'|'));
}

std::optional<int> ScriptedAsker::chooseFromTree(const ui::TreeChoice& choice) {
    trees.push_back(choice);
    const QString text = next(fromTree_, choice.title);
    for (int i = 0; i < static_cast<int>(choice.entries.size()) && !text.isEmpty(); ++i)
        if (choice.entries[static_cast<size_t>(i)].text == text)
            return i;
    EXPECT_TRUE(text.isEmpty()) << "not in the tree: " << qPrintable(text);
    return std::nullopt;
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
    return next(colors_, title);
}

void ScriptedAsker::setClipboard(const QString& text, const QString& html) {
    clipboardText = text;
    clipboardHtml = html;
}

void ScriptedAsker::eventTurn() {
    if (onEventTurn)
        onEventTurn();
}
