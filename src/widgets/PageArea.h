#pragma once

#include <QScrollArea>
#include <QScrollBar>

/// A page that scrolls up and down where the room is too low for it. It is never narrower than the page can be, so
/// nobody has to scroll sideways.
class PageArea : public QScrollArea {
public:
    explicit PageArea(QWidget* page) {
        setWidget(page);
        setWidgetResizable(true);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setFrameShape(QFrame::NoFrame);
        setFocusPolicy(Qt::NoFocus);
        page->setAutoFillBackground(false);
        viewport()->setAutoFillBackground(false);
    }
    QSize sizeHint() const override { return widget()->sizeHint() + barWidth(); }
    QSize minimumSizeHint() const override {
        return QSize(widget()->minimumSizeHint().width(), fontMetrics().height() * 4) + barWidth();
    }

private:
    QSize barWidth() const { return {verticalScrollBar()->sizeHint().width(), 0}; }
};
