// The drawing pane of `Form1`: the whole client area, the editor standing
// over its right side, so the drawing keeps its full width when the editor
// is hidden.
//
// No retained drawing: a run paints through a `SurfacePeinte` into an image of
// the pane (at the screen's device pixel ratio, anti-aliased), and the pane
// shows that image. A resize does not rerun: the image of the last run stays
// as it was drawn, and the next run makes a new one at the new size.
#pragma once

#include <QImage>
#include <QWidget>

#include <memory>

class Surface;
class SurfacePeinte;

class Pane : public QWidget {
    Q_OBJECT
public:
    explicit Pane(QWidget* parent = nullptr);
    ~Pane() override;

    // The Surface of the last run; made anew by `Prepare` when the size or the
    // pixel ratio changed since.
    Surface* surface() const;
    // Makes the Surface fit the pane (before a run). True when it was remade.
    bool Prepare();
    const QImage& image() const { return image_; }
    // Millimetres per logical pixel of the screen (MmParPixelE).
    double MmParPixel() const;

signals:
    void sourisBouge(QPointF pixel, Qt::MouseButtons boutons, Qt::KeyboardModifiers mods);
    void sourisClic(QPointF pixel, Qt::MouseButton bouton, Qt::KeyboardModifiers mods);
    void sourisDoubleClic(QPointF pixel, Qt::KeyboardModifiers mods);

protected:
    void paintEvent(QPaintEvent* ev) override;
    void mouseMoveEvent(QMouseEvent* ev) override;
    void mousePressEvent(QMouseEvent* ev) override;
    void mouseDoubleClickEvent(QMouseEvent* ev) override;

private:
    QImage image_;
    QSize taille_;
    double dpr_ = 1;
    std::unique_ptr<SurfacePeinte> surface_;
};
