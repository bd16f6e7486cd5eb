#include "widgets/ElidedLabel.h"

#include <QPainter>
#include <QStyle>

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
}

QSize ElidedLabel::sizeHint() const {
    // A text of any length is asked for no more than a line of it.
    const QString start = text().left(200);
    return {fontMetrics().horizontalAdvance(start) + fontMetrics().averageCharWidth(), fontMetrics().height() + 2};
}

QSize ElidedLabel::minimumSizeHint() const {
    // A text that is to stay as a whole needs its own width: broad letters take more than the average.
    const int width = text().size() <= leastCharacters ? fontMetrics().horizontalAdvance(text()) + 1
                                                       : fontMetrics().averageCharWidth() * leastCharacters;
    return {width, sizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QString line = text().left(2000).simplified();
    const QString cut = fontMetrics().elidedText(line, Qt::ElideRight, width());
    style()->drawItemText(&painter, rect(),
                          QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter), palette(),
                          isEnabled(), cut, foregroundRole());
}
