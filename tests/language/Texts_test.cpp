#include "language/CText.h"
#include "language/SystemDatabase.h"
#include "support/KeptTexts.h"
#include "support/TestHome.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QString root = QStringLiteral(VARIDEX_SOURCE_ROOT);

QString unescaped(QString literal) {
    literal.replace(u"\\\\"_s, QChar(1)).replace(u"\\\""_s, u"\""_s).replace(u"\\r"_s, u"\r"_s);
    return literal.replace(u"\\n"_s, u"\n"_s).replace(QChar(1), u'\\');
}

/// Where the call ends whose opening bracket stands before `start`.
qsizetype endOfCall(const QString& source, qsizetype start) {
    int depth = 1;
    for (qsizetype i = start; i < source.size(); ++i) {
        if (source[i] == u'"') {
            for (++i; i < source.size() && source[i] != u'"'; ++i)
                if (source[i] == u'\\')
                    ++i;
        } else if (source[i] == u'(') {
            ++depth;
        } else if (source[i] == u')' && --depth == 0) {
            return i;
        }
    }
    return start;
}

/// What stands between the brackets of each call of a function.
QStringList callsOf(const QString& function, const QString& source) {
    QStringList calls;
    const QRegularExpression call(u"\\b"_s + function + u"\\("_s);
    for (auto found = call.globalMatch(source); found.hasNext();) {
        const qsizetype start = found.next().capturedEnd();
        calls << source.mid(start, endOfCall(source, start) - start);
    }
    return calls;
}

/// The literals of a piece of code; literals that stand beside each other are one.
QStringList literalsIn(const QString& code) {
    static const QRegularExpression literal(u"u\"((?:[^\"\\\\]|\\\\.)*)\"(?:\\s*u?\"((?:[^\"\\\\]|\\\\.)*)\")*"_s);
    static const QRegularExpression piece(u"\"((?:[^\"\\\\]|\\\\.)*)\""_s);
    QStringList found;
    for (auto literals = literal.globalMatch(code); literals.hasNext();) {
        QString text;
        for (auto pieces = piece.globalMatch(literals.next().captured()); pieces.hasNext();)
            text += pieces.next().captured(1);
        found << unescaped(text);
    }
    return found;
}

/// The literals that a variable is made with.
QStringList literalsOfVariable(const QString& name, const QString& source) {
    const QRegularExpression definition(u"\\bconst [\\w:<>, ]+\\b"_s + name + u"(\\s*=\\s*|\\{)([^;]*);"_s);
    return literalsIn(definition.match(source).captured(2));
}

/// The literals that a function hands on to TranslateText as its parameter `name`; the function is the last
/// one before the call.
QStringList literalsHandedOn(const QString& name, const QString& source, qsizetype call) {
    const QRegularExpression parameter(u"\\b(\\w+)(?:\\s*=\\s*\\[[^\\]]*\\]\\s*)?\\([^()]*\\bQString&?\\s+"_s + name +
                                       u"\\b[^()]*\\)\\s*(?:const\\s*)?\\{"_s);
    QString function;
    for (auto found = parameter.globalMatch(source.left(call)); found.hasNext();)
        function = found.next().captured(1);
    if (function.isEmpty())
        return literalsOfVariable(name, source);
    QStringList literals;
    static const QRegularExpression word(u"\\b[a-zA-Z]\\w*\\b"_s);
    for (const QString& arguments : callsOf(function, source)) {
        literals << literalsIn(arguments);
        for (const QString& argument : arguments.split(u','))
            if (word.match(argument.trimmed()).captured() == argument.trimmed())
                literals << literalsOfVariable(argument.trimmed(), source);
    }
    return literals;
}

/// Keys, fields and names of icons stand beside the texts in tables and argument lists; nobody reads them.
bool isName(const QString& literal) {
    static const QRegularExpression name(u"^(?:[A-Z]{1,4}|[a-z]+[A-Za-z0-9_-]*)$"_s);
    return name.match(literal).hasMatch();
}

/// Every literal that reaches TranslateText or reportWord in the sources of a folder: in the call itself, as the
/// argument of a function that hands its parameter on, or in a constant.
QStringList translatedLiterals(const QString& source) {
    static const QRegularExpression variable(u"\\bTranslateText\\((\\w+)[\\[)]"_s);
    static const QRegularExpression kept(u"\\b(?:Refusal|TableNote)\\{([^}]*)\\}"_s);
    QStringList found;
    for (const QString& function : {u"TranslateText"_s, u"reportWord"_s})
        for (const QString& arguments : callsOf(function, source))
            found << literalsIn(arguments);
    // What is kept in these is translated when it is shown.
    for (auto sentences = kept.globalMatch(source); sentences.hasNext();)
        found << literalsIn(sentences.next().captured(1));
    for (auto calls = variable.globalMatch(source); calls.hasNext();) {
        const QRegularExpressionMatch match = calls.next();
        QStringList ofVariable = source[match.capturedEnd() - 1] == u'['
                                     ? literalsOfVariable(match.captured(1), source)
                                     : literalsHandedOn(match.captured(1), source, match.capturedStart());
        ofVariable.removeIf(isName);
        found << ofVariable;
    }
    return found;
}

/// All sources of a folder as one text.
QMap<QString, QString> sourcesByFolder() {
    QMap<QString, QString> folders;
    QDirIterator sources(root + u"/src"_s, {u"*.cpp"_s, u"*.h"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (sources.hasNext()) {
        QFile file(sources.next());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        folders[QFileInfo(file).path()] += QString::fromUtf8(file.readAll());
    }
    return folders;
}

} // namespace

TEST(Texts, EveryRowIsFoundAlsoInOtherCaseAndWithBlanksAround) {
    const TestHome home;
    SystemRows rows = keptRows();
    ASSERT_EQ(makeSystemDatabase(home.path(u"Vx.mdb"_s), rows), QStringList());
    CText table;
    table.DatabaseName = home.path(u"Vx.mdb"_s);
    table.LoadTextTable();
    ASSERT_EQ(table.Status(), 0) << qPrintable(table.ErrorMessage());
    for (const TextRow& row : rows.texts) {
        QString otherCase = row.german;
        for (QChar& c : otherCase)
            c = c.isUpper() ? c.toLower() : c.toUpper();
        EXPECT_EQ(table.TLE(row.german), row.english) << qPrintable(row.origin);
        EXPECT_EQ(table.TLE(otherCase), row.english) << qPrintable(row.origin);
        EXPECT_EQ(table.TLE(u"  "_s + row.german + u" "_s), row.english) << qPrintable(row.origin);
    }
    EXPECT_EQ(table.TLE(u"Steht in keiner Tabelle "_s), u"Steht in keiner Tabelle "_s);
}

TEST(Texts, EveryLiteralThatIsTranslatedHasItsRow) {
    QSet<QString> known;
    for (const TextRow& row : keptRows().texts)
        known.insert(SystemTable::searchForm(row.german));
    int literals = 0;
    const QMap<QString, QString> folders = sourcesByFolder();
    for (auto folder = folders.begin(); folder != folders.end(); ++folder) {
        for (const QString& text : translatedLiterals(*folder)) {
            const QString searched = SystemTable::searchForm(text);
            ++literals;
            EXPECT_TRUE(searched.isEmpty() || known.contains(searched))
                << qPrintable(folder.key()) << ": no English for \"" << qPrintable(text) << '"';
        }
    }
    EXPECT_GT(literals, 20) << "the search for literals finds nothing any more";
}

TEST(Texts, ATextIsPickedByTheLanguageInOnePlaceOnly) {
    static const QRegularExpression pick(
        u"(?:gLanguage *[!=]= *[01]|\\bgerman) *\\? *u?\"|\\bif \\(gLanguage *[!=]= *[01]\\)\\s*return[^;]*\""_s);
    const QMap<QString, QString> folders = sourcesByFolder();
    for (auto folder = folders.begin(); folder != folders.end(); ++folder)
        EXPECT_EQ(pick.match(*folder).captured().toStdString(), "") << qPrintable(folder.key()) << ": see said()";
}

TEST(Texts, TextsThatTheSearchTakesForTheSameAreOneRowOrAFault) {
    std::vector<TextRow> same = {
        {u"Größe "_s, u"Size"_s, u"a:1"_s}, {u"GRÖßE"_s, u"Size"_s, u"b:1"_s}, {u"Grosse"_s, u"Large"_s, u"b:2"_s}};
    EXPECT_EQ(mergeTexts(same), QStringList());
    EXPECT_EQ(same.size(), 2u);
    const TestHome home;
    const QString path = home.path(u"Vx.mdb"_s);
    SystemRows rows;
    rows.texts = {{u"Summe"_s, u"Sum"_s, u"a:1"_s}, {u"summe "_s, u"Total"_s, u"b:7"_s}};
    const QStringList faults = makeSystemDatabase(path, rows);
    ASSERT_EQ(faults.size(), 1);
    EXPECT_TRUE(faults[0].contains(u"a:1"_s) && faults[0].contains(u"b:7"_s));
    EXPECT_FALSE(QFile::exists(path));
}

TEST(Texts, ABadRowFileIsRefusedWithFileAndLine) {
    const TestHome home;
    const auto faultsOf = [&](const QByteArray& content, bool controls) {
        QFile file(home.path(u"rows.tsv"_s));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        SystemRows rows;
        const QStringList faults =
            controls ? readControlRows(file.fileName(), rows) : readTextRows(file.fileName(), rows);
        return faults.join(u'\n').remove(home.path() + u'/');
    };
    EXPECT_EQ(faultsOf("a\tb\nonly one\n", false), u"rows.tsv:2: 2 fields expected"_s);
    EXPECT_EQ(faultsOf("a\t\n", false), u"rows.tsv:1: empty text"_s);
    EXPECT_EQ(faultsOf("\xE4\tb\n", false), u"rows.tsv: is not UTF-8"_s);
    EXPECT_EQ(faultsOf("frmMain\tMenu\tmnFile\tCaption\tx\tDatei\tFile\n", true),
              u"rows.tsv:1: the index is no number"_s);
    EXPECT_EQ(faultsOf("a\\nb\tc\\nd\r\n", false), QString());
}
