#include "platform/system/DesktopEntry.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUrl>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 largestKeyFile = 4 * 1024 * 1024;

/// The escapes that every value may have.
QString unescaped(const QString& value) {
    QString text;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != u'\\' || i + 1 == value.size()) {
            text += value[i];
            continue;
        }
        switch (value[++i].unicode()) {
        case u's':
            text += u' ';
            break;
        case u'n':
            text += u'\n';
            break;
        case u't':
            text += u'\t';
            break;
        case u'r':
            text += u'\r';
            break;
        case u'\\':
            text += u'\\';
            break;
        default: // one of the command's own
            text += u'\\';
            text += value[i];
        }
    }
    return text;
}

struct Word {
    QString text;
    bool quoted = false;
};

/// The words of a command line; nothing if a quote is not closed.
std::optional<std::vector<Word>> wordsOf(const QString& command) {
    std::vector<Word> words;
    std::optional<Word> word;
    QChar quote;
    for (qsizetype i = 0; i < command.size(); ++i) {
        const QChar c = command[i];
        if (quote.isNull() && c.isSpace()) {
            if (word)
                words.push_back(*word);
            word.reset();
            continue;
        }
        if (!word)
            word.emplace();
        if (c == quote) {
            quote = QChar();
        } else if (quote.isNull() && (c == u'"' || c == u'\'')) {
            quote = c;
            word->quoted = true;
        } else if (c == u'\\' && quote != u'\'' && i + 1 < command.size()) {
            word->text += command[++i];
        } else {
            word->text += c;
        }
    }
    if (word)
        words.push_back(*word);
    if (!quote.isNull())
        return std::nullopt;
    return words;
}

/// Puts a file and what the entry says of itself in the place of the field codes.
class FieldCodes {
public:
    FieldCodes(const QHash<QString, QString>& entry, const QString& entryFile, const QString& path)
        : entry_(entry), entryFile_(entryFile), path_(path) {}

    /// @return nothing if a word has a code where none may stand
    std::optional<QStringList> expand(const std::vector<Word>& words) {
        QStringList arguments;
        for (const Word& word : words) {
            if (word.text == u"%i") {
                if (const QString icon = unescaped(entry_.value(u"Icon"_s)); !icon.isEmpty())
                    arguments << u"--icon"_s << icon;
                continue;
            }
            const std::optional<QString> argument = expand(word);
            if (!argument)
                return std::nullopt;
            // A code that stands for nothing is no argument.
            if (!argument->isEmpty() || word.text.isEmpty())
                arguments << *argument;
        }
        if (!hasFile_)
            arguments << path_;
        return arguments;
    }

private:
    const QHash<QString, QString>& entry_;
    QString entryFile_, path_;
    bool hasFile_ = false;

    std::optional<QString> expand(const Word& word) {
        QString text;
        for (qsizetype i = 0; i < word.text.size(); ++i) {
            if (word.text[i] != u'%') {
                text += word.text[i];
                continue;
            }
            const QChar code = i + 1 < word.text.size() ? word.text[++i] : QChar();
            // Within a longer quoted word a path might be read anew, by a shell for instance.
            if (code != u'%' && word.quoted && word.text.size() > 2)
                return std::nullopt;
            const std::optional<QString> value = valueOf(code);
            if (!value)
                return std::nullopt;
            text += *value;
        }
        return text;
    }

    std::optional<QString> valueOf(QChar code) {
        switch (code.unicode()) {
        case u'%':
            return u"%"_s;
        case u'f':
        case u'F':
            hasFile_ = true;
            return path_;
        case u'u':
        case u'U':
            hasFile_ = true;
            return QString::fromLatin1(QUrl::fromLocalFile(path_).toEncoded());
        case u'c':
            return unescaped(entry_.value(u"Name"_s));
        case u'k':
            return entryFile_;
        case u'd': // these mean nothing any longer
        case u'D':
        case u'n':
        case u'N':
        case u'v':
        case u'm':
            return QString();
        default:
            return std::nullopt;
        }
    }
};

QString installedProgram(const QString& program) {
    if (!program.contains(u'/'))
        return program.isEmpty() ? QString() : QStandardPaths::findExecutable(program);
    const QFileInfo file(program);
    return file.isAbsolute() && file.isFile() && file.isExecutable() ? program : QString();
}

} // namespace

KeyFile readKeyFile(const QByteArray& content) {
    KeyFile groups;
    QString group;
    for (const QString& line : QString::fromUtf8(content).split(u'\n')) {
        const QString text = line.trimmed();
        const qsizetype equals = text.indexOf(u'=');
        if (text.startsWith(u'#'))
            continue;
        if (text.startsWith(u'[') && text.endsWith(u']'))
            group = text.mid(1, text.size() - 2);
        else if (equals > 0 && !groups[group].contains(text.left(equals).trimmed()))
            groups[group].insert(text.left(equals).trimmed(), text.mid(equals + 1).trimmed());
    }
    return groups;
}

KeyFile readKeyFile(const QString& path) {
    QFile file(path);
    if (!QFileInfo(path).isFile() || file.size() > largestKeyFile || !file.open(QIODevice::ReadOnly))
        return {};
    return readKeyFile(file.read(largestKeyFile));
}

std::optional<ProgramStart> startOf(const QString& entryFile, const QString& path) {
    const QHash<QString, QString> entry = readKeyFile(entryFile).value(u"Desktop Entry"_s);
    const QString tried = unescaped(entry.value(u"TryExec"_s));
    if (entry.value(u"Type"_s) != u"Application" || entry.value(u"Hidden"_s) == u"true" ||
        entry.value(u"Terminal"_s) == u"true" || (!tried.isEmpty() && installedProgram(tried).isEmpty()))
        return std::nullopt;
    const std::optional<std::vector<Word>> words = wordsOf(unescaped(entry.value(u"Exec"_s)));
    if (!words || words->empty())
        return std::nullopt;
    ProgramStart start;
    start.program = installedProgram(words->front().text);
    start.folder = unescaped(entry.value(u"Path"_s));
    const std::optional<QStringList> arguments =
        FieldCodes(entry, entryFile, path).expand({words->begin() + 1, words->end()});
    if (start.program.isEmpty() || !arguments)
        return std::nullopt;
    start.arguments = *arguments;
    return start;
}
