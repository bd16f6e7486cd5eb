#include "platform/ui/TerminalAsker.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using ui::Answer;
using ui::Buttons;
using ui::Icon;

namespace {

/// A terminal with typed lines; `shown` is what came out.
struct Terminal {
    QString typed, shown;
    QTextStream in, out;
    ui::TerminalAsker asker;

    Terminal(const QString& lines, bool interactive)
        : typed(lines), in(&typed), out(&shown), asker(in, out, interactive) {}
};

} // namespace

TEST(TerminalAsker, WithoutATerminalAQuestionIsAnsweredWithTheButtonThatChangesNothing) {
    const std::pair<Buttons, Answer> cases[] = {
        {Buttons::Ok, Answer::Ok},
        {Buttons::OkCancel, Answer::Cancel},
        {Buttons::YesNo, Answer::No},
        {Buttons::YesNoCancel, Answer::Cancel},
        {Buttons::AbortRetryIgnore, Answer::Abort},
        {Buttons::RetryCancel, Answer::Cancel},
    };
    for (const auto& [buttons, answer] : cases) {
        Terminal terminal(u"Ja\nOK\nWiederholen\n"_s, false);
        EXPECT_EQ(terminal.asker.messageBox({u"Text"_s, u"Titel"_s, Icon::None, buttons}), answer);
        EXPECT_EQ(terminal.shown, u"Titel: Text\n"_s);
    }
    Terminal terminal(u"x\n"_s, false);
    EXPECT_EQ(terminal.asker.inputBox(u"Name"_s, u"Neu"_s, u"a"_s), std::nullopt);
    EXPECT_EQ(terminal.asker.chooseFolder(u"Ordner"_s, {}), std::nullopt);
}

TEST(TerminalAsker, OnATerminalTheTypedWordDecidesAndAnUnknownOneIsAskedAgain) {
    const TestHome home;
    Terminal terminal(u"vielleicht\nj\n"_s, true);
    EXPECT_EQ(terminal.asker.messageBox({u"Weiter?\r\n"_s, {}, Icon::Question, Buttons::YesNo}), Answer::Yes);
    EXPECT_EQ(terminal.shown, u"Varidex: Weiter?\nJa / Nein? Ja / Nein? "_s);
    Terminal ended(QString(), true);
    EXPECT_EQ(ended.asker.messageBox({u"Weiter?"_s, {}, Icon::Question, Buttons::YesNo}), Answer::No);
    Terminal color(u"blau\n0A7fff\n\n"_s, true);
    EXPECT_EQ(color.asker.chooseColor(u"Farbe"_s, 0x102030), 0x0a7fffu);
    EXPECT_EQ(color.shown, u"Farbe (RRGGBB) [102030] Farbe (RRGGBB) [102030] "_s);
    EXPECT_EQ(color.asker.chooseColor(u"Farbe"_s, 0x102030), std::nullopt);
    Terminal input(u"\nneu\n"_s, true);
    EXPECT_EQ(input.asker.inputBox(u"Name"_s, u"Titel"_s, u"alt"_s), u"alt"_s);
    EXPECT_EQ(input.asker.inputBox(u"Name"_s, u"Titel"_s, u"alt"_s), u"neu"_s);
}

TEST(TerminalAsker, OnlyErrorsMarkTheRunAsFailed) {
    struct Case {
        Icon icon;
        Buttons buttons;
        bool failed;
    };
    const Case cases[] = {
        {Icon::Information, Buttons::Ok, false}, {Icon::None, Buttons::Ok, false},
        {Icon::Question, Buttons::YesNo, false}, {Icon::Exclamation, Buttons::Ok, true},
        {Icon::Critical, Buttons::Ok, true},     {Icon::None, Buttons::AbortRetryIgnore, true},
    };
    for (const Case& c : cases) {
        Terminal terminal({}, false);
        terminal.asker.messageBox({u"Text"_s, {}, c.icon, c.buttons});
        EXPECT_EQ(terminal.asker.failed(), c.failed);
    }
    Terminal terminal({}, false);
    terminal.asker.isFailure = [](const ui::Box& box) { return box.text == u"Bitte wählen"_s; };
    terminal.asker.messageBox({u"Fehler"_s, {}, Icon::Critical, Buttons::Ok});
    EXPECT_FALSE(terminal.asker.failed());
    terminal.asker.messageBox({u"Bitte wählen"_s, {}, Icon::None, Buttons::Ok});
    terminal.asker.messageBox({u"Danach"_s, {}, Icon::None, Buttons::Ok});
    EXPECT_TRUE(terminal.asker.failed());
}
