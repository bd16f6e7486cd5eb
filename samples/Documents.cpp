#include "Documents.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QTextDocument>

#include <algorithm>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

void save(const QString& path, const QByteArray& bytes) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        throw std::runtime_error((path + u": "_s + file.errorString()).toStdString());
}

/// The question in the original language; a variable that no question stands behind has none.
QString questionText(const QJsonObject& texts, const QString& variable) {
    const QJsonValue question = texts.value(variable).toObject().value(u"question"_s);
    return question.isObject() ? question.toObject().value(u"original"_s).toString() : question.toString();
}

QString answerLines(const Question& question) {
    QString html;
    for (const Code& code : question.codes)
        html += u"<tr><td align=\"right\" width=\"50\">%1&nbsp;</td><td>%2</td></tr>"_s.arg(
            QString::number(code.value).replace(u'.', u','), QString::fromUtf8(code.label).toHtmlEscaped());
    return html.isEmpty() ? u"<p>&nbsp;&nbsp;&nbsp;______________________</p>"_s : u"<table>%1</table>"_s.arg(html);
}

} // namespace

void writeShowCard(const QString& path, const QString& heading, const QStringList& answers) {
    QImage card(1000, 180 + 90 * static_cast<int>(answers.size()), QImage::Format_RGB32);
    card.fill(QColor(0xff, 0xfd, 0xf4));
    QPainter painter(&card);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setPen(QPen(QColor(0x2b, 0x4a, 0x6f), 6));
    painter.drawRect(card.rect().adjusted(10, 10, -11, -11));
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(44);
    font.setBold(true);
    painter.setFont(font);
    painter.drawText(QRect(50, 40, 900, 80), Qt::AlignLeft | Qt::AlignVCenter, heading);
    font.setPixelSize(36);
    font.setBold(false);
    painter.setFont(font);
    painter.setPen(Qt::black);
    for (int i = 0; i < answers.size(); ++i)
        painter.drawText(QRect(80, 140 + 90 * i, 870, 80), Qt::AlignLeft | Qt::AlignVCenter, answers[i]);
    painter.end();
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    card.save(&buffer, "PNG");
    save(path, buffer.data());
}

void writeQuestionnaire(const QString& path, const QString& title, const Survey& survey, const QJsonObject& texts,
                        const QStringList& leaveOut) {
    QString html = u"<h1>%1</h1>"_s.arg(title.toHtmlEscaped());
    int number = 0;
    for (const Question& question : questionsOf(survey)) {
        const QString name = QString::fromUtf8(question.name);
        const QString text = questionText(texts, name);
        if (text.isEmpty() || leaveOut.contains(name))
            continue;
        html += u"<p><b>%1.</b> %2 <small>[%3]</small></p>%4"_s.arg(++number).arg(text.toHtmlEscaped(), name,
                                                                                  answerLines(question));
    }
    QTextDocument document;
    document.setHtml(html);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setTitle(title);
    document.print(&writer);
    save(path, buffer.data());
}
