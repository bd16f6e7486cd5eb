#include "platform/ui/TerminalAsker.h"

#include "app/globals.h"
#include "platform/system/ApplicationInfo.h"

#include <cstdio>
#include <vector>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace ui {

namespace {

struct Choice {
    Answer answer;
    QString german, english;

    QString word() const { return said(german, english); }
};

std::vector<Choice> choicesOf(Buttons buttons) {
    const Choice ok{Answer::Ok, u"OK"_s, u"OK"_s}, cancel{Answer::Cancel, u"Abbrechen"_s, u"Cancel"_s},
        yes{Answer::Yes, u"Ja"_s, u"Yes"_s}, no{Answer::No, u"Nein"_s, u"No"_s},
        abort{Answer::Abort, u"Abbrechen"_s, u"Abort"_s}, retry{Answer::Retry, u"Wiederholen"_s, u"Retry"_s},
        ignore{Answer::Ignore, u"Ignorieren"_s, u"Ignore"_s};
    switch (buttons) {
    case Buttons::Ok:
        return {ok};
    case Buttons::OkCancel:
        return {ok, cancel};
    case Buttons::YesNo:
        return {yes, no};
    case Buttons::YesNoCancel:
        return {yes, no, cancel};
    case Buttons::AbortRetryIgnore:
        return {abort, retry, ignore};
    case Buttons::RetryCancel:
        return {retry, cancel};
    }
    return {cancel};
}

bool defaultIsFailure(const Box& box) {
    return box.icon == Icon::Critical || box.icon == Icon::Exclamation || box.buttons == Buttons::AbortRetryIgnore;
}

bool terminalIsThere() {
#ifdef Q_OS_UNIX
    return isatty(STDIN_FILENO) != 0 && isatty(STDERR_FILENO) != 0;
#else
    return false;
#endif
}

} // namespace

TerminalAsker::TerminalAsker()
    : isFailure(defaultIsFailure), standardIn_(stdin), standardError_(stderr), in_(standardIn_), out_(standardError_),
      interactive_(terminalIsThere()) {}

TerminalAsker::TerminalAsker(QTextStream& in, QTextStream& out, bool interactive)
    : isFailure(defaultIsFailure), in_(in), out_(out), interactive_(interactive) {}

std::optional<QString> TerminalAsker::ask(const QString& prompt) {
    if (!interactive_)
        return std::nullopt;
    out_ << prompt << u' ' << Qt::flush;
    const QString line = in_.readLine();
    return line.isNull() ? std::nullopt : std::optional(line);
}

Answer TerminalAsker::messageBox(const Box& box) {
    failed_ = failed_ || isFailure(box);
    QString text = box.text;
    text.replace(u"\r\n"_s, u"\n"_s);
    while (text.endsWith(u'\n'))
        text.chop(1);
    if (!box.details.isEmpty())
        text += u'\n' + box.details;
    out_ << (box.title.isEmpty() ? ApplicationInfo::title : box.title) << u": "_s << text << u'\n' << Qt::flush;
    const std::vector<Choice> choices = choicesOf(box.buttons);
    if (choices.size() == 1)
        return choices.front().answer;
    QStringList words;
    for (const Choice& choice : choices)
        words << choice.word();
    // The wish is read from the first letters; a line that fits none is asked again.
    while (const std::optional<QString> line = ask(words.join(u" / "_s) + u'?')) {
        const QString wish = line->trimmed();
        for (const Choice& choice : choices)
            if (!wish.isEmpty() && choice.word().startsWith(wish, Qt::CaseInsensitive))
                return choice.answer;
    }
    return safeAnswer(box.buttons);
}

std::optional<QString> TerminalAsker::inputBox(const QString& prompt, const QString& title, const QString& proposal) {
    const std::optional<QString> line = ask(title + u": "_s + prompt + u" ["_s + proposal + u']');
    return line && line->isEmpty() ? std::optional(proposal) : line;
}

std::optional<QString> TerminalAsker::chooseFile(const FileChoice& choice) {
    const std::optional<QString> line = ask(choice.title + u':');
    return line && line->isEmpty() ? std::nullopt : line;
}

std::optional<QString> TerminalAsker::chooseFolder(const QString& title, const QString&) {
    const std::optional<QString> line = ask(title + u':');
    return line && line->isEmpty() ? std::nullopt : line;
}

std::optional<unsigned> TerminalAsker::chooseColor(const QString& title, unsigned proposal) {
    const QString now = QStringLiteral("%1").arg(proposal, 6, 16, QLatin1Char('0'));
    // A line that is no colour is asked again.
    while (const std::optional<QString> line = ask(title + u" (RRGGBB) ["_s + now + u']')) {
        if (line->trimmed().isEmpty())
            return std::nullopt;
        bool isNumber = false;
        const unsigned rgb = line->trimmed().toUInt(&isNumber, 16);
        if (isNumber && line->trimmed().size() == now.size())
            return rgb;
    }
    return std::nullopt;
}

TerminalAsker& terminalAsker() {
    static TerminalAsker terminal;
    return terminal;
}

} // namespace ui
