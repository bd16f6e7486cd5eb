#include "printing/outlets.h"

#include <QPainter>

namespace {

struct Painting {
    QPainter& painter;

    void operator()(const ReportPage::Line& line) const {
        if (line.line >= line.text->lineCount())
            return;
        painter.setPen(line.color);
        if (line.scale == 1)
            return line.text->lineAt(line.line).draw(&painter, line.at);
        painter.save();
        painter.translate(line.at);
        painter.scale(line.scale, line.scale);
        line.text->lineAt(line.line).draw(&painter, QPointF());
        painter.restore();
    }
    void operator()(const ReportPage::Rule& rule) const {
        painter.setPen(QPen(rule.color, rule.width, Qt::SolidLine, Qt::FlatCap));
        painter.drawLine(rule.line);
    }
    void operator()(const ReportPage::Box& box) const { painter.fillRect(box.rect, box.fill); }
    void operator()(const ReportPage::Image& image) const {
        if (image.image)
            painter.drawImage(image.rect, *image.image);
    }
};

} // namespace

void paintPage(QPainter& painter, const ReportPage& page) {
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
    painter.setBrush(Qt::NoBrush);
    for (const ReportPage::Piece& piece : page.pieces)
        std::visit(Painting{painter}, piece);
    painter.restore();
}
