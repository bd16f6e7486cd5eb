#include "support/Poppler.h"

#include <QProcess>
#include <QStandardPaths>
#include <QXmlStreamReader>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

QString output(const QString& program, const QStringList& arguments) {
    QProcess process;
    QProcessEnvironment plain = QProcessEnvironment::systemEnvironment();
    plain.insert(u"LC_ALL"_s, u"C"_s);
    process.setProcessEnvironment(plain);
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(60000)) << qPrintable(program);
    EXPECT_EQ(process.exitCode(), 0) << qPrintable(program) << process.readAllStandardError().constData();
    return QString::fromUtf8(process.readAllStandardOutput());
}

QXmlStreamReader::Error read(const QString& xml, const std::function<void(QXmlStreamReader&)>& element) {
    QXmlStreamReader reader(xml);
    while (!reader.atEnd())
        if (reader.readNext(); reader.isStartElement() || reader.isEndElement())
            element(reader);
    return reader.error();
}

} // namespace

QString poppler::missingPrograms() {
    QStringList missing;
    for (const QString& program : {u"pdftotext"_s, u"pdffonts"_s, u"pdfinfo"_s, u"pdftohtml"_s})
        if (QStandardPaths::findExecutable(program).isEmpty())
            missing << program;
    return missing.join(u", "_s);
}

QString poppler::text(const QString& file, const QStringList& options) {
    return output(u"pdftotext"_s, options + QStringList{u"-enc"_s, u"UTF-8"_s, file, u"-"_s});
}

QStringList poppler::pages(const QString& file, const QStringList& options) {
    QStringList all = text(file, options).split(u'\f');
    all.removeLast();
    return all;
}

std::vector<poppler::Word> poppler::words(const QString& file) {
    std::vector<Word> words;
    int page = 0;
    const auto error = read(text(file, {u"-bbox"_s}), [&](QXmlStreamReader& reader) {
        if (!reader.isStartElement())
            return;
        page += reader.name() == u"page" ? 1 : 0;
        if (reader.name() != u"word")
            return;
        const QXmlStreamAttributes at = reader.attributes();
        const auto number = [&](const QString& name) { return at.value(name).toDouble(); };
        const QPointF from(number(u"xMin"_s), number(u"yMin"_s)), to(number(u"xMax"_s), number(u"yMax"_s));
        words.push_back({page, QRectF(from, to), reader.readElementText()});
    });
    EXPECT_EQ(error, QXmlStreamReader::NoError);
    return words;
}

std::vector<poppler::Font> poppler::fonts(const QString& file) {
    std::vector<Font> fonts;
    // Two lines of heads; types have blanks, so the columns are counted from behind.
    for (const QString& line : output(u"pdffonts"_s, {file}).split(u'\n', Qt::SkipEmptyParts).mid(2)) {
        const QStringList columns = line.split(u' ', Qt::SkipEmptyParts);
        const qsizetype last = columns.size();
        fonts.push_back({columns.front(), columns.at(last - 5) == u"yes", columns.at(last - 3) == u"yes"});
    }
    return fonts;
}

QMap<QString, QString> poppler::info(const QString& file) {
    QMap<QString, QString> info;
    for (const QString& line : output(u"pdfinfo"_s, {file}).split(u'\n', Qt::SkipEmptyParts))
        info[line.section(u':', 0, 0)] = line.section(u':', 1).trimmed();
    return info;
}

poppler::Navigation poppler::navigation(const QString& file) {
    Navigation found;
    const QString xml = output(u"pdftohtml"_s, {u"-xml"_s, u"-i"_s, u"-stdout"_s, file});
    int level = -1, page = 0;
    const auto error = read(xml, [&](QXmlStreamReader& reader) {
        const bool begins = reader.isStartElement();
        if (reader.name() == u"outline")
            level += begins ? 1 : -1;
        else if (begins && reader.name() == u"page")
            ++page;
        else if (begins && reader.name() == u"item") {
            const int target = reader.attributes().value(u"page"_s).toInt();
            found.bookmarks.push_back({level, target, reader.readElementText()});
        } else if (begins && reader.name() == u"a") {
            const int target = reader.attributes().value(u"href"_s).toString().section(u'#', 1).toInt();
            found.links.push_back({page, target, reader.readElementText(QXmlStreamReader::IncludeChildElements)});
        }
    });
    EXPECT_EQ(error, QXmlStreamReader::NoError);
    return found;
}
