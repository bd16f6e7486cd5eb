#pragma once

#include <QColor>
#include <QImage>
#include <QLineF>
#include <QPointF>
#include <QRectF>
#include <QTextLayout>
#include <memory>
#include <variant>
#include <vector>

/// What stands on a page, in twips from its upper left corner; whoever paints it needs nothing else.
struct ReportPage {
    /// One line of a text that was laid out as a whole.
    struct Line {
        std::shared_ptr<const QTextLayout> text; ///< made in twips at scale 1
        int line = 0;
        QPointF at;       ///< where the origin of the layout would come to lie
        double scale = 1; ///< of the text, about `at`
        QColor color = Qt::black;
    };
    struct Rule {
        QLineF line;
        double width = 0; ///< twips
        QColor color = Qt::black;
    };
    struct Box {
        QRectF rect;
        QColor fill;
    };
    struct Image {
        QRectF rect;
        std::shared_ptr<const QImage> image; ///< no transparency
    };
    using Piece = std::variant<Line, Rule, Box, Image>;
    /// A place that leads to an entry of the outline.
    struct Link {
        QRectF rect;
        int entry = 0;
    };
    /// Where an entry begins.
    struct Anchor {
        int entry = 0;
        double y = 0;
    };

    QSizeF size;
    std::vector<Piece> pieces;
    std::vector<Link> links;
    std::vector<Anchor> anchors;
};
