#include "app/pane.h"

#include "drawing/surface_peinte.h"

#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace {

constexpr double EchelleMin = 1.0 / 50, EchelleMax = 50;
// The part of the visible area a fitted drawing leaves free on each side.
constexpr double Marge = 0.04;

// The offsets that put the origin at (ox, oy) in a view of `u` units per
// pixel: when panned, a run puts it at ((W - E) / 2 - VueX, H / 2 - VueY).
ReglageVue Place(const CadreVue& c, double facteur, double ox, double oy) {
    const double u = c.unitesParPixel * facteur;
    ReglageVue r;
    r.facteur = facteur;
    r.vueX = (c.largeurPx - c.editeurPx) * u / 2 - ox;
    r.vueY = c.hauteurPx * u / 2 - oy;
    // Offsets that add up to exactly 0 read as "not panned", and the origin
    // would fall back to the sheet's corner.
    if (r.vueX + r.vueY == 0 && (ox != 0 || oy != 0)) r.vueX += 1e-9;
    return r;
}

} // namespace

ReglageVue ZoomAutour(const CadreVue& c, QPointF pixel, double facteur) {
    const double u = c.unitesParPixel, u2 = u * facteur;
    // The Surface point under the pixel moves with the scale; the origin with it.
    const double ox = c.origineX + pixel.x() * (u2 - u);
    const double oy = c.origineY + (c.hauteurPx - pixel.y()) * (u2 - u);
    return Place(c, facteur, ox, oy);
}

ReglageVue Glisse(const CadreVue& c, QPointF delta) {
    const double u = c.unitesParPixel;
    return Place(c, 1, c.origineX + delta.x() * u, c.origineY - delta.y() * u);
}

ReglageVue Ajuste(const CadreVue& c, const QRectF& encre, bool agrandir) {
    const double largeur = std::max(1.0, c.largeurPx - c.editeurPx);
    if (encre.isEmpty()) return Place(c, 1, c.origineX, c.origineY);
    double facteur = std::max(encre.width() / (largeur * (1 - 2 * Marge)),
                              encre.height() / (c.hauteurPx * (1 - 2 * Marge)));
    if (!agrandir) facteur = std::max(facteur, 1.0);
    const double u = c.unitesParPixel, u2 = u * facteur;
    // The ink's centre, about the origin, goes to the middle of the free part.
    const QPointF centre = encre.center();
    const double cx = centre.x() * u - c.origineX, cy = (c.hauteurPx - centre.y()) * u - c.origineY;
    return Place(c, facteur, largeur / 2 * u2 - cx, c.hauteurPx / 2 * u2 - cy);
}

double FacteurDepuisCoin(const CadreVue& c, const QRectF& encre) {
    const double largeur = std::max(1.0, c.largeurPx - c.editeurPx);
    if (encre.isEmpty() || (encre.right() <= largeur + 3 && encre.top() >= -3)) return 1;
    return std::max({1.0, encre.right() / (largeur * (1 - Marge)),
                     (c.hauteurPx - encre.top()) / (c.hauteurPx * (1 - Marge))});
}

Pane::Pane(QWidget* parent) : QWidget(parent) {
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::ClickFocus);
    setCursor(Qt::CrossCursor);
    etat_ = new QLabel(this);
    etat_->setObjectName(QStringLiteral("EtatApercu"));
    etat_->setAutoFillBackground(true);
    etat_->setMargin(3);
    QPalette p = etat_->palette();
    p.setColor(QPalette::Window, QColor(255, 235, 235));
    p.setColor(QPalette::WindowText, QColor(160, 0, 0));
    etat_->setPalette(p);
    etat_->hide();
}

Pane::~Pane() = default;

Surface* Pane::surface() const { return surface_.get(); }

double Pane::MmParPixel() const { return 25.4 / logicalDpiX(); }

void Pane::SetEchelleVue(double echelle) {
    if (std::isfinite(echelle)) echelle_ = std::clamp(echelle, EchelleMin, EchelleMax);
}

QRectF Pane::Encre() const { return surface_ ? surface_->Encre() : QRectF(); }

void Pane::EcritEtat(const QString& texte, int largeur) {
    // At the top left, cut to the width given; the whole text in its tip.
    const int marges = 2 * etat_->margin() + 2;
    etat_->setText(etat_->fontMetrics().elidedText(texte, Qt::ElideRight, std::max(40, largeur - marges)));
    etat_->setToolTip(texte);
    etat_->setVisible(!texte.isEmpty());
    etat_->adjustSize();
    etat_->move(0, 0);
}

QString Pane::TexteEtat() const { return etat_->isVisible() ? etat_->toolTip() : QString(); }

bool Pane::Prepare() {
    const QSize taille = size().expandedTo(QSize(1, 1));
    const double dpr = devicePixelRatioF();
    surface_.reset(); // ends the painter on the old image
    const QSize pixels(int(std::ceil(taille.width() * dpr)), int(std::ceil(taille.height() * dpr)));
    if (image_.size() != pixels || image_.devicePixelRatio() != dpr) {
        image_ = QImage(pixels, QImage::Format_RGB32);
        image_.setDevicePixelRatio(dpr);
        image_.fill(Qt::white);
    }
    // The image's resolution is the view's, so that text in points takes the
    // view's scale like every length.
    const int dpm = int(std::lround(1000.0 / MmParPixelVue()));
    image_.setDotsPerMeterX(dpm);
    image_.setDotsPerMeterY(dpm);
    surface_ = std::make_unique<SurfacePeinte>(
        GenreSurface::Ecran, taille.width(), taille.height(), MmParPixelVue(),
        [this](int) -> QPaintDevice* { return &image_; }, 1.0, true);
    decalage_ = {};
    return true;
}

void Pane::paintEvent(QPaintEvent* ev) {
    QPainter p(this);
    p.fillRect(ev->rect(), Qt::white);
    if (!image_.isNull()) p.drawImage(decalage_, image_);
}

void Pane::mouseMoveEvent(QMouseEvent* ev) {
    if (debutGlisse_ && (ev->buttons() & Qt::LeftButton)) {
        const QPointF d = ev->position() - *debutGlisse_;
        if (decalage_ != QPointF() || d.manhattanLength() >= QApplication::startDragDistance()) {
            decalage_ = d;
            update();
        }
    }
    emit sourisBouge(ev->position(), ev->buttons(), ev->modifiers());
}

void Pane::mousePressEvent(QMouseEvent* ev) {
    // Only a plain left press pans: Alt keeps its reference point, Ctrl and
    // Shift their double clicks.
    if (navigation_ && ev->button() == Qt::LeftButton && ev->modifiers() == Qt::NoModifier)
        debutGlisse_ = ev->position();
    emit sourisClic(ev->position(), ev->button(), ev->modifiers());
}

void Pane::mouseReleaseEvent(QMouseEvent* ev) {
    if (ev->button() == Qt::LeftButton && debutGlisse_) {
        debutGlisse_.reset();
        // The signal's run paints the image anew; without one it goes back.
        if (decalage_ != QPointF()) emit glisse(decalage_);
        decalage_ = {};
        update();
    }
}

void Pane::mouseDoubleClickEvent(QMouseEvent* ev) {
    debutGlisse_.reset();
    emit sourisDoubleClic(ev->position(), ev->modifiers());
}

void Pane::wheelEvent(QWheelEvent* ev) {
    const int pas = ev->angleDelta().y();
    if (!navigation_ || pas == 0) {
        ev->ignore();
        return;
    }
    // One notch (120) turned away from the user zooms in by a fifth.
    emit molette(ev->position(), std::pow(1.2, -pas / 120.0));
    ev->accept();
}

void Pane::resizeEvent(QResizeEvent* ev) {
    QWidget::resizeEvent(ev);
    emit tailleChangee();
}
