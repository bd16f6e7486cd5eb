#pragma once

#include <QProxyStyle>

/// The desktop's own style, with what it lacks here: air beside the text of a button; title bars of child windows,
/// icons and marks of boxes that grow with the font; a frame around the list or table that has the keyboard, and a
/// paler selection in those that don't; an ellipsis where a box of choices has no room for its text; boxes that are
/// seen on a dark ground, and texts of prompts that can be read on any; the program's own pictures in its message
/// boxes.
class ProgramStyle : public QProxyStyle {
public:
    using QProxyStyle::QProxyStyle;

    using QProxyStyle::polish;
    void polish(QPalette& palette) override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    QIcon standardIcon(StandardPixmap picture, const QStyleOption* option, const QWidget* widget) const override;
};
