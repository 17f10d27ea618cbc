#include "drawing/surface_peinte.h"

#include <QPaintDevice>
#include <QPainterPath>
#include <QPdfWriter>

#include <cmath>

namespace {
constexpr double DeuxPi = 6.283185307179586;
constexpr double DegParRad = 57.29577951308232;
} // namespace

SurfacePeinte::SurfacePeinte(GenreSurface genre, double largeurPx, double hauteurPx,
                             double mmParPixel, FournisseurPage page, double echelle,
                             bool antialias)
    : Surface(genre, largeurPx, hauteurPx, mmParPixel), fournisseur_(std::move(page)),
      echelle_(echelle), antialias_(antialias) {
    Ouvre();
}

SurfacePeinte::~SurfacePeinte() { EndDoc(); }

void SurfacePeinte::Ouvre() {
    ++page_;
    device_ = fournisseur_(page_);
    if (!device_) return;
    painter_ = std::make_unique<QPainter>(device_);
    painter_->setRenderHint(QPainter::Antialiasing, antialias_);
    painter_->setRenderHint(QPainter::TextAntialiasing, true);
    painter_->setRenderHint(QPainter::SmoothPixmapTransform, true);
    painter_->scale(echelle_, echelle_);
}

void SurfacePeinte::EndDoc() {
    if (painter_) painter_->end();
    painter_.reset();
}

// Wide pens: round ends and round joins, for lines, circles
// and polygons alike.
QPen SurfacePeinte::Stylo(const QColor& c, int w) const {
    QPen pen(c);
    pen.setWidthF(std::max(1, w));
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::RoundJoin);
    return pen;
}

void SurfacePeinte::DevLigne(QPointF a, QPointF b, const QColor& c, int w) {
    if (!painter_) return;
    painter_->setPen(Stylo(c, w));
    if (a == b) {
        painter_->drawPoint(a);
        return;
    }
    painter_->drawLine(a, b);
}

void SurfacePeinte::DevBoiteMasque(const QRectF& r, const QColor& c) {
    if (!painter_) return;
    painter_->save();
    // The mask pen ANDs the colour with what is there; on white and light
    // drawings multiplying gives the same grey.
    painter_->setCompositionMode(QPainter::CompositionMode_Multiply);
    painter_->fillRect(r, c);
    painter_->restore();
}

void SurfacePeinte::DevEllipse(QPointF centre, double rx, double ry, std::optional<double> debut,
                               std::optional<double> fin, const QColor& c, int w,
                               std::optional<QColor> remp) {
    if (!painter_) return;
    const QRectF rect(centre.x() - rx, centre.y() - ry, 2 * rx, 2 * ry);
    painter_->setPen(Stylo(c, w));
    painter_->setBrush(remp ? QBrush(*remp) : Qt::NoBrush);
    if (!debut && !fin) {
        painter_->drawEllipse(rect);
        return;
    }
    // A negative angle draws a radius line to that end: the side of a pie.
    // -0 is not negative there: it draws no radius.
    const double a0 = debut.value_or(0.0), a1 = fin.value_or(DeuxPi);
    const bool rayon0 = a0 < 0, rayon1 = a1 < 0;
    double d = std::abs(a0), f = std::abs(a1);
    // Counter-clockwise from start to end; a start equal to the end is the
    // whole turn (a full-turn scale holds its two angles equal).
    double balayage = f - d;
    if (balayage <= 0) balayage += DeuxPi;
    QPainterPath chemin;
    const QPointF p0(centre.x() + rx * std::cos(d), centre.y() - ry * std::sin(d));
    if (rayon0) {
        chemin.moveTo(centre);
        chemin.lineTo(p0);
    } else {
        chemin.moveTo(p0);
    }
    chemin.arcTo(rect, d * DegParRad, balayage * DegParRad);
    if (rayon1) chemin.lineTo(centre);
    if (rayon0 && rayon1) chemin.closeSubpath();
    // Only closed figures are filled: a full turn or a pie with both radius
    // lines. An open arc is stroked only, whatever FillStyle says.
    if (remp && rayon0 && rayon1) painter_->drawPath(chemin);
    else painter_->strokePath(chemin, Stylo(c, w));
}

void SurfacePeinte::DevPoint(QPointF p, const QColor& c) {
    if (!painter_) return;
    painter_->setPen(QPen(c, 1));
    painter_->drawPoint(p);
}

void SurfacePeinte::DevPolygone(const QVector<QPointF>& pts, const QColor& c, int w,
                                std::optional<QColor> remp) {
    if (!painter_) return;
    // The pen joins round: a sharp corner of a band of a
    // gradient stays under the shape's outline of the same width instead of
    // spiking out of it (a miter join would poke past it).
    painter_->setPen(Stylo(c, w));
    painter_->setBrush(remp ? QBrush(*remp) : Qt::NoBrush);
    painter_->drawPolygon(pts.constData(), int(pts.size()));
}

void SurfacePeinte::DevTexte(QPointF p, double angle, const QString& texte, const QFont& f,
                             const QColor& c) {
    if (!painter_) return;
    // The font's size is meant at the Surface's own resolution; the painter's
    // scale then brings it to the device, as it does every other coordinate.
    // It is drawn at the etalon size and scaled, so that no whole-pixel
    // rounding of the size comes in (surface.h, TailleEtalonPx).
    QFont fd = f;
    fd.setPixelSize(TailleEtalonPx);
    const double k = f.pointSizeF() * (25.4 / MmParPixel()) / 72.0 / TailleEtalonPx;
    painter_->save();
    painter_->setFont(fd);
    painter_->setPen(c);
    painter_->translate(p);
    painter_->rotate(-angle);
    painter_->scale(k, k);
    painter_->drawText(QPointF(0, 0), texte);
    painter_->restore();
}

void SurfacePeinte::DevImage(const QRectF& r, const QImage& im) {
    if (!painter_) return;
    painter_->drawImage(r, im);
}

void SurfacePeinte::DevEffacer() {
    if (!painter_) return;
    painter_->save();
    painter_->resetTransform();
    painter_->setCompositionMode(QPainter::CompositionMode_Source);
    painter_->fillRect(QRectF(0, 0, device_->width(), device_->height()), Qt::white);
    painter_->restore();
}

void SurfacePeinte::DevNouvellePage() {
    if (auto* pdf = dynamic_cast<QPdfWriter*>(device_)) {
        pdf->newPage();
        return;
    }
    EndDoc();
    Ouvre();
}
