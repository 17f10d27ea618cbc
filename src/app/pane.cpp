#include "app/pane.h"

#include "drawing/surface_peinte.h"

#include <QMouseEvent>
#include <QPainter>

#include <cmath>

Pane::Pane(QWidget* parent) : QWidget(parent) {
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::ClickFocus);
    setCursor(Qt::CrossCursor);
}

Pane::~Pane() = default;

Surface* Pane::surface() const { return surface_.get(); }

double Pane::MmParPixel() const { return 25.4 / logicalDpiX(); }

bool Pane::Prepare() {
    const QSize taille = size().expandedTo(QSize(1, 1));
    const double dpr = devicePixelRatioF();
    if (surface_ && taille_ == taille && dpr_ == dpr) return false;
    taille_ = taille;
    dpr_ = dpr;
    surface_.reset(); // ends the painter on the old image
    image_ = QImage(QSize(int(std::ceil(taille.width() * dpr)), int(std::ceil(taille.height() * dpr))),
                    QImage::Format_RGB32);
    image_.setDevicePixelRatio(dpr);
    const int dpm = int(std::lround(logicalDpiX() / 0.0254));
    image_.setDotsPerMeterX(dpm);
    image_.setDotsPerMeterY(dpm);
    image_.fill(Qt::white);
    surface_ = std::make_unique<SurfacePeinte>(
        GenreSurface::Ecran, taille.width(), taille.height(), MmParPixel(),
        [this](int) -> QPaintDevice* { return &image_; }, 1.0, true);
    return true;
}

void Pane::paintEvent(QPaintEvent* ev) {
    QPainter p(this);
    p.fillRect(ev->rect(), Qt::white);
    if (!image_.isNull()) p.drawImage(QPointF(0, 0), image_);
}

void Pane::mouseMoveEvent(QMouseEvent* ev) {
    emit sourisBouge(ev->position(), ev->buttons(), ev->modifiers());
}

void Pane::mousePressEvent(QMouseEvent* ev) {
    emit sourisClic(ev->position(), ev->button(), ev->modifiers());
}

void Pane::mouseDoubleClickEvent(QMouseEvent* ev) {
    emit sourisDoubleClic(ev->position(), ev->modifiers());
}
