#pragma once

#include <QFrame>
#include <functional>

class PictureView;
class ScaledPicture;

/// Shows a picture in the size and at the place that its view has, and hands the gestures of mouse and keyboard on to
/// the view. In place of a picture that cannot be shown there are words that say why.
class PictureSurface : public QFrame {
public:
    /// @param view not owned
    PictureSurface(PictureView& view, QWidget* parent);

    /// The zoom has changed by a gesture.
    std::function<void()> onZoom;

    /// Shows a picture (not owned), null for none.
    void show(const ScaledPicture* picture);
    /// Shows words and a sign that a picture is missing.
    void showFault(const QString& words);
    /// Says why there is nothing to show; empty: says nothing.
    void showEmpty(const QString& words);
    /// Zooms so that all of the picture is in view.
    void fit();
    /// Zoom and place as at the start.
    void reset();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    PictureView& view_;
    const ScaledPicture* picture_ = nullptr;
    QString fault_, empty_;

    QPointF inView(const QPointF& position) const { return position - contentsRect().topLeft(); }
    void measure();
    void viewChanged();
    void zoomAboutMiddle(double factor);
    void stopDragging();
    void paintFault(QPainter& painter);
};
