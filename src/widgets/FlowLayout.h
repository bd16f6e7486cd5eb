#pragma once

#include <QLayout>
#include <vector>

/// Puts widgets beside each other as far as there is room and goes on in the next line where there is none. Those with
/// a stretch shrink to their least width and share what is left of their line; the others have the width that they ask
/// for.
class FlowLayout : public QLayout {
public:
    explicit FlowLayout(QWidget* parent = nullptr);
    ~FlowLayout() override;

    int lineSpacing = -1; ///< between lines; -1: as beside each other
    int hanging = 0;      ///< how far lines behind the first one stand in

    void add(QWidget* widget, int stretch = 0);
    void addStretch();

    void addItem(QLayoutItem* item) override { items_.push_back({item, 0}); }
    int count() const override { return static_cast<int>(items_.size()); }
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;

    Qt::Orientations expandingDirections() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSize() const override;
    void setGeometry(const QRect& rect) override;

private:
    struct Item {
        QLayoutItem* item;
        int stretch;

        int least() const { return stretch ? item->minimumSize().width() : item->sizeHint().width(); }
        int heightFor(int width) const;
    };
    struct Line {
        std::vector<const Item*> items;
        std::vector<int> widths;
        int height = 0;
    };
    std::vector<Item> items_;

    int betweenLines() const { return lineSpacing < 0 ? spacing() : lineSpacing; }
    std::vector<Line> linesFor(int width) const;
    void shareOut(Line& line, int left) const;
};
