#pragma once

#include <QLabel>

/// One line of text as it stands, cut with dots where there is no room for it.
class ElidedLabel : public QLabel {
public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    int leastCharacters = 4; ///< of a text so many stay in view, if it has them

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent*) override;
};
