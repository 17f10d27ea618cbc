#include "drawing/surface_peinte.h"

#include "language/erreur.h"

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainterPath>
#include <QPagedPaintDevice>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace {
constexpr double DeuxPi = 6.283185307179586;
constexpr double DegParRad = 57.29577951308232;

// True when the two polygons have an edge in common (the same two points, in
// either direction): two bands of one gradient.
bool CoteCommun(const QVector<QPointF>& a, const QVector<QPointF>& b) {
    for (qsizetype i = 0; i < a.size(); ++i) {
        const QPointF p = a[i], q = a[(i + 1) % a.size()];
        if (p == q) continue;
        for (qsizetype j = 0; j < b.size(); ++j) {
            const QPointF r = b[j], t = b[(j + 1) % b.size()];
            if ((p == r && q == t) || (p == t && q == r)) return true;
        }
    }
    return false;
}

// The rectangle of a polygon of four corners with its sides along the axes,
// the corners on whole pixels of the device painted on (`echelle` device
// pixels to a pixel of the Surface); none for any other polygon.
std::optional<QRectF> RectanglePixels(const QVector<QPointF>& p, double echelle) {
    if (p.size() != 4) return {};
    for (const QPointF& q : p) {
        const double x = q.x() * echelle, y = q.y() * echelle;
        if (x != std::nearbyint(x) || y != std::nearbyint(y)) return {};
    }
    const bool hv = p[0].y() == p[1].y() && p[1].x() == p[2].x() && p[2].y() == p[3].y() &&
                    p[3].x() == p[0].x();
    const bool vh = p[0].x() == p[1].x() && p[1].y() == p[2].y() && p[2].x() == p[3].x() &&
                    p[3].y() == p[0].y();
    if (!hv && !vh) return {};
    return QRectF(p[0], p[2]).normalized();
}

QPainterPath Chemin(const QVector<QPointF>& pts) {
    QPainterPath c;
    c.addPolygon(QPolygonF(pts));
    c.closeSubpath();
    return c;
}
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
    peintDepuisEffacement_ = true;
    ++page_;
    device_ = fournisseur_(page_);
    if (!device_) return;
    painter_ = std::make_unique<QPainter>(device_);
    if (!painter_->isActive()) {
        painter_.reset();
        pageRefusee_ = true;
        return;
    }
    raster_ = painter_->paintEngine() && painter_->paintEngine()->type() == QPaintEngine::Raster;
    painter_->setRenderHint(QPainter::Antialiasing, antialias_);
    painter_->setRenderHint(QPainter::TextAntialiasing, true);
    painter_->setRenderHint(QPainter::SmoothPixmapTransform, true);
    painter_->scale(echelle_, echelle_);
}

void SurfacePeinte::EndDoc() {
    Interrompt();
    if (painter_) painter_->end();
    painter_.reset();
}

// Wide pens: round ends and round joins, for lines, circles
// and polygons alike. No pen is thinner than one pixel of the device painted
// on: the printer's dot at 600 dpi is a quarter of a pixel at 150 dpi.
const QPen& SurfacePeinte::Stylo(const QColor& c, int w) {
    if (stylo_ && stylo_->couleur == c && stylo_->largeur == w) return stylo_->pen;
    // An outline in the colour N around a coloured fill: no pen at all, so that
    // no invisible stroke reaches an SVG or PDF.
    QPen pen = c.alpha() == 0 ? QPen(Qt::NoPen) : QPen(c);
    pen.setWidthF(std::max(double(std::max(1, w)), 1.0 / echelle_));
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::RoundJoin);
    stylo_ = StyloFait{c, w, pen};
    return stylo_->pen;
}

void SurfacePeinte::Interrompt() {
    dernier_.reset();
    if (!trace_) return;
    painter_->setPen(trace_->pen);
    painter_->drawPolyline(trace_->points);
    trace_.reset();
}

void SurfacePeinte::DevLigne(QPointF a, QPointF b, const QColor& c, int w) {
    if (!Pret()) return;
    const QPen& pen = Stylo(c, w);
    const double m = pen.widthF() / 2;
    Etend(QRectF(QPointF(std::min(a.x(), b.x()) - m, std::min(a.y(), b.y()) - m),
                 QPointF(std::max(a.x(), b.x()) + m, std::max(a.y(), b.y()) + m)),
          c);
    if (!raster_ && a != b) {
        if (trace_ && trace_->pen == pen && trace_->points.back() == a) {
            trace_->points << b;
            return;
        }
        Interrompt();
        trace_ = Trace{QPolygonF{a, b}, pen};
        return;
    }
    Interrompt();
    painter_->setPen(pen);
    if (a == b) {
        painter_->drawPoint(a);
        return;
    }
    painter_->drawLine(a, b);
}

void SurfacePeinte::DevBoiteMasque(const QRectF& r, const QColor& c) {
    if (!Pret()) return;
    Interrompt();
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
    if (!Pret()) return;
    Interrompt();
    const QRectF rect(centre.x() - rx, centre.y() - ry, 2 * rx, 2 * ry);
    const double m = Stylo(c, w).widthF() / 2;
    painter_->setPen(Stylo(c, w));
    painter_->setBrush(remp ? QBrush(*remp) : Qt::NoBrush);
    if (!debut && !fin) {
        Etend(rect.adjusted(-m, -m, m, m), c, remp);
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
    Etend(chemin.boundingRect().adjusted(-m, -m, m, m), c, remp);
    // Only closed figures are filled: a full turn or a pie with both radius
    // lines. An open arc is stroked only, whatever FillStyle says.
    if (remp && rayon0 && rayon1) painter_->drawPath(chemin);
    else painter_->strokePath(chemin, Stylo(c, w));
}

void SurfacePeinte::DevPoint(QPointF p, const QColor& c) {
    if (!Pret()) return;
    dernier_.reset(); // a band after it is no next band of a gradient
    // A point off the device shows nowhere; the page mark set 1000 mm off the
    // sheet would still stretch an SVG's or PDF's content far beyond its page.
    if (!QRectF(0, 0, device_->width(), device_->height()).contains(painter_->transform().map(p))) return;
    Interrompt();
    painter_->setPen(QPen(c, std::max(1.0, 1.0 / echelle_)));
    painter_->drawPoint(p);
}

void SurfacePeinte::DevPolygone(const QVector<QPointF>& pts, const QColor& c, int w,
                                std::optional<QColor> remp) {
    if (!Pret()) return;
    if (trace_) Interrompt(); // the lines drawn before it go first
    // The pen joins round: a sharp corner of a band of a
    // gradient stays under the shape's outline of the same width instead of
    // spiking out of it (a miter join would poke past it).
    const double m = Stylo(c, w).widthF() / 2;
    // A rectangle on whole pixels of a picture (the cells of a colour chart
    // on the pane) has no antialiased edge: its fill covers its pixels whole
    // and nothing beyond, so it is filled as a rectangle, much quicker than
    // a polygon and the same pixels. A vector file (PDF, SVG, a printer) keeps
    // its polygons and their seam mending: it is seen at any resolution.
    const std::optional<QRectF> rectangle = raster_ ? RectanglePixels(pts, echelle_) : std::nullopt;
    Etend((rectangle ? *rectangle : QPolygonF(pts).boundingRect()).adjusted(-m, -m, m, m), c, remp);
    // The next band of a gradient: the former band's colour goes under both
    // first, so that the new band's antialiased edge blends into it rather
    // than into the paper, and no light seam shows at any resolution.
    // Between two rectangles on whole pixels there is no such edge, and the
    // new one's fill covers all that this would paint.
    if (remp && dernier_ && !(rectangle && dernier_->rectangle) && CoteCommun(dernier_->points, pts))
        painter_->fillPath(Chemin(dernier_->points).united(Chemin(pts)), dernier_->remplissage);
    if (remp) {
        // A copy of the points into the buffer kept from the last polygon:
        // the caller's buffer is not shared, and a chart that fills the same
        // one again and again copies no buffer and allocates nothing.
        if (!dernier_) dernier_.emplace();
        dernier_->points.resize(pts.size());
        std::copy(pts.cbegin(), pts.cend(), dernier_->points.begin());
        dernier_->remplissage = *remp;
        dernier_->rectangle = rectangle.has_value();
    } else {
        dernier_.reset(); // an outline alone is no band of a gradient
    }
    painter_->setPen(Stylo(c, w));
    if (remp && rectangle) {
        if (!rectangle->isEmpty()) painter_->fillRect(*rectangle, *remp);
        painter_->setBrush(Qt::NoBrush);
    } else {
        painter_->setBrush(remp ? QBrush(*remp) : Qt::NoBrush);
    }
    painter_->drawPolygon(pts.constData(), int(pts.size()));
}

void SurfacePeinte::DevTexte(QPointF p, double angle, const QString& texte, const QFont& f,
                             const QColor& c) {
    if (!Pret()) return;
    Interrompt();
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
    QTransform t;
    t.translate(p.x(), p.y());
    t.rotate(-angle);
    t.scale(k, k);
    Etend(t.mapRect(QFontMetricsF(fd).boundingRect(texte)), c);
    if (contours_) {
        QPainterPath chemin;
        chemin.addText(QPointF(0, 0), fd, texte);
        painter_->fillPath(chemin, c);
    } else {
        painter_->drawText(QPointF(0, 0), texte);
    }
    painter_->restore();
}

void SurfacePeinte::DevImage(const QRectF& r, const QImage& im) {
    if (!Pret()) return;
    Interrompt();
    Etend(r);
    painter_->drawImage(r, im);
}

void SurfacePeinte::DevEffacer() {
    if (!painter_) return;
    // A second fill of a white picture with nothing drawn since would change
    // nothing (a run clears the pane as it starts and again when it sets up
    // its origin).
    if (raster_ && !peintDepuisEffacement_) return;
    Interrompt();
    painter_->save();
    painter_->resetTransform();
    painter_->setCompositionMode(QPainter::CompositionMode_Source);
    painter_->fillRect(QRectF(0, 0, device_->width(), device_->height()), Qt::white);
    painter_->restore();
    peintDepuisEffacement_ = false;
}

// The next sheet is begun by the next thing drawn on it, so that a document
// that ends with a new page has no blank sheet at its end. Two new pages in a
// row leave a blank sheet between them.
void SurfacePeinte::DevNouvellePage() {
    Interrompt();
    if (pageEnAttente_) Pret();
    pageEnAttente_ = true;
}

bool SurfacePeinte::Pret() {
    if (pageEnAttente_) {
        pageEnAttente_ = false;
        // A paged device (a PDF writer, a printer) takes the next sheet of
        // the same document; any other starts a new picture.
        if (auto* pages = dynamic_cast<QPagedPaintDevice*>(device_)) {
            if (!pages->newPage()) pageRefusee_ = true;
        } else {
            EndDoc();
            Ouvre();
        }
    }
    if (pageRefusee_ && panneImprimante_) throw ErreurImprimante();
    return painter_ != nullptr;
}
