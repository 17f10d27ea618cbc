#include "drawing/surface.h"
#include "language/constantes.h"
#include "language/erreur.h"

#include <QFontMetricsF>

#include <cmath>
#include <utility>

Surface::Surface(GenreSurface genre, double largeurPx, double hauteurPx, double mmParPixel)
    : largeurPx_(largeurPx), hauteurPx_(hauteurPx), genre_(genre), mmParPixel_(mmParPixel) {
    SetScaleMode(3);
}

Surface::~Surface() = default;

void Surface::SetScaleMode(int mode) {
    scaleMode_ = mode;
    ScaleLeft = 0;
    ScaleTop = 0;
    if (mode == 6) {
        ScaleWidth = largeurPx_ * mmParPixel_;
        ScaleHeight = hauteurPx_ * mmParPixel_;
    } else {
        ScaleWidth = largeurPx_;
        ScaleHeight = hauteurPx_;
    }
}

void Surface::SetOrientation(int o) {
    if (o != 1 && o != 2) return;
    const bool paysage = o == 2;
    const bool estPaysage = largeurPx_ > hauteurPx_;
    orientation_ = o;
    if (paysage != estPaysage) std::swap(largeurPx_, hauteurPx_);
    DevOrientation();
    SetScaleMode(scaleMode_);
}

QPointF Surface::VersPixel(double x, double y) const {
    return {(x - ScaleLeft) * largeurPx_ / ScaleWidth, (y - ScaleTop) * hauteurPx_ / ScaleHeight};
}

QPointF Surface::DepuisPixel(double px, double py) const {
    return {ScaleLeft + px * ScaleWidth / largeurPx_, ScaleTop + py * ScaleHeight / hauteurPx_};
}

namespace {
// Every number of an operation is finite: the commands fail a line whose
// point is beyond the 32-bit float range as an overflow, and this is the last
// defence behind them, so that no infinity or NaN ever reaches a device.
void VerifieFini(const OpSurface& op) {
    bool ok = std::isfinite(op.x1) && std::isfinite(op.y1) && std::isfinite(op.x2) &&
              std::isfinite(op.y2) && std::isfinite(op.r) && std::isfinite(op.aspect) &&
              std::isfinite(op.angle) && std::isfinite(op.debut.value_or(0)) &&
              std::isfinite(op.fin.value_or(0));
    for (const QPointF& p : op.points) ok = ok && std::isfinite(p.x()) && std::isfinite(p.y());
    if (!ok) throw ErreurExecution("Overflow");
}
} // namespace

bool Surface::Enregistre(OpSurface op) {
    VerifieFini(op);
    if (veille_ && ++depuisVeille_ >= PasVeille) {
        depuisVeille_ = 0;
        veille_();
    }
    if (limite_ > 0 && ++operations_ > limite_) {
        // Past the limit nothing more is drawn or kept: memory stays bounded
        // while the run is being stopped.
        if (operations_ == limite_ + 1 && surLimite_) surLimite_();
        operations_ = limite_ + 1;
        return false;
    }
    if (op.genre != OpSurface::Effacement) peintDepuisEffacement_ = true;
    if (!journal_) return true;
    if (op.genre == OpSurface::Ligne || op.genre == OpSurface::Cercle ||
        op.genre == OpSurface::Polygone) {
        op.largeur = DrawWidth;
        op.largeurMm = DrawWidth * mmParPixel_;
    }
    journal_->append(std::move(op));
    return true;
}

void Surface::LimiteOperations(qsizetype limite, std::function<void()> surLimite) {
    limite_ = limite;
    operations_ = 0;
    surLimite_ = std::move(surLimite);
}

void Surface::Line(double x1, double y1, double x2, double y2, int couleur) {
    OpSurface op;
    op.genre = OpSurface::Ligne;
    op.x1 = x1; op.y1 = y1; op.x2 = x2; op.y2 = y2;
    op.couleur = couleur;
    if (Enregistre(op) && Encre(couleur)) DevLigne(VersPixel(x1, y1), VersPixel(x2, y2), VersQColor(couleur), DrawWidth);
    CurrentX = x2;
    CurrentY = y2;
}

void Surface::BoiteMasque(double x1, double y1, double x2, double y2, int couleur) {
    OpSurface op;
    op.genre = OpSurface::Polygone;
    op.points = {{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}};
    op.couleur = couleur;
    op.remplissage = couleur;
    if (Enregistre(op) && Encre(couleur)) DevBoiteMasque(QRectF(VersPixel(x1, y1), VersPixel(x2, y2)).normalized(), VersQColor(couleur));
    CurrentX = x2;
    CurrentY = y2;
}

namespace {
// The fill a device paints: none for a figure not filled, or filled in the
// colour N.
std::optional<QColor> Remplissage(bool rempli, int couleur) {
    if (rempli && Encre(couleur)) return VersQColor(couleur);
    return std::nullopt;
}
} // namespace

void Surface::Circle(double x, double y, double r, int couleur, std::optional<double> debut,
                     std::optional<double> fin, std::optional<double> aspect) {
    OpSurface op;
    op.genre = OpSurface::Cercle;
    op.x1 = x; op.y1 = y; op.r = r;
    op.debut = debut; op.fin = fin;
    op.aspect = aspect.value_or(1.0);
    op.couleur = couleur;
    // Only closed figures are filled: a full turn, or a pie whose two angles
    // are negative (both radius lines). -0 is not negative.
    const bool ferme = (!debut && !fin) || (debut.value_or(0.0) < 0 && fin.value_or(0.0) < 0);
    const bool rempli = FillStyle == 0 && ferme;
    if (rempli) op.remplissage = FillColor;
    CurrentX = x;
    CurrentY = y;
    const std::optional<QColor> remp = Remplissage(rempli, FillColor);
    if (!Enregistre(op) || (!Encre(couleur) && !remp)) return;
    // The radius is measured in horizontal units; the aspect is the ratio of
    // the vertical radius to the horizontal one.
    const double a = aspect.value_or(1.0);
    const double rPx = std::abs(r * PixelsParUniteX());
    double rx = rPx, ry = rPx;
    if (a < 1) ry = rPx * a;
    else if (a > 1) rx = rPx / a;
    DevEllipse(VersPixel(x, y), rx, ry, debut, fin, VersQColor(couleur), DrawWidth, remp);
}

void Surface::PSet(double x, double y, int couleur) {
    OpSurface op;
    op.genre = OpSurface::Point;
    op.x1 = x; op.y1 = y;
    op.couleur = couleur;
    if (Enregistre(op) && Encre(couleur)) DevPoint(VersPixel(x, y), VersQColor(couleur));
    CurrentX = x;
    CurrentY = y;
}

void Surface::Polygon(const QVector<QPointF>& pixels) {
    OpSurface op;
    op.genre = OpSurface::Polygone;
    // Only a journal keeps the points in millimetres; without one the pixels
    // are checked as they are, saving a copy per polygon of a large chart.
    if (journal_) {
        op.points.reserve(pixels.size());
        for (const QPointF& p : pixels) op.points.append(DepuisPixel(p.x(), p.y()));
    } else {
        for (const QPointF& p : pixels)
            if (!std::isfinite(p.x()) || !std::isfinite(p.y())) throw ErreurExecution("Overflow");
    }
    op.couleur = ForeColor;
    if (FillStyle == 0) op.remplissage = FillColor;
    const std::optional<QColor> remp = Remplissage(FillStyle == 0, FillColor);
    if (!Enregistre(op) || (!Encre(ForeColor) && !remp)) return;
    DevPolygone(pixels, VersQColor(ForeColor), DrawWidth, remp);
}

void Surface::PolygonUnites(const QVector<QPointF>& points) {
    QVector<QPointF> px;
    px.reserve(points.size());
    for (const QPointF& p : points) px.append(VersPixel(p.x(), p.y()));
    Polygon(px);
}

namespace {
// A QFont of a name, a size in points (at least 1 when not above 0) and the
// styles, as unhinted outlines: the same advances on every target and
// resolution.
QFont PoliceContours(const QString& nom, double points, bool gras, bool italique, bool souligne,
                     bool barre) {
    QFont f(nom);
    f.setPointSizeF(points > 0 ? points : 1);
    f.setBold(gras);
    f.setItalic(italique);
    f.setUnderline(souligne);
    f.setStrikeOut(barre);
    f.setHintingPreference(QFont::PreferNoHinting);
    f.setStyleStrategy(QFont::StyleStrategy(QFont::ForceOutline | QFont::PreferQuality));
    f.setKerning(false);
    return f;
}
} // namespace

QFont Surface::PoliceQt() const {
    return PoliceContours(Font.Name, Font.Size, Font.Bold, Font.Italic, Font.Underline,
                          Font.Strikethrough);
}

QFontMetricsF Surface::MesureEtalon(const QFont& f, double& k) const {
    // The em in device pixels of the target, from the size in points.
    k = f.pointSizeF() * (25.4 / mmParPixel_) / 72.0 / TailleEtalonPx;
    QFont g = f;
    g.setPixelSize(TailleEtalonPx);
    return QFontMetricsF(g);
}

MetriquesPolice Surface::Metriques() const {
    double k = 1;
    const QFontMetricsF fm = MesureEtalon(PoliceQt(), k);
    MetriquesPolice m;
    m.Ascent = fm.ascent() * k;
    m.Height = (fm.ascent() + fm.descent()) * k;
    const double em = (Font.Size > 0 ? Font.Size : 1) * (25.4 / mmParPixel_) / 72.0;
    m.InternalLeading = std::max(0.0, m.Height - em);
    return m;
}

double Surface::TextWidth(const QString& texte) const {
    double k = 1;
    const QFontMetricsF fm = MesureEtalon(PoliceQt(), k);
    return fm.horizontalAdvance(texte) * k * ScaleWidth / largeurPx_;
}

double Surface::TextHeight(const QString& texte) const {
    double k = 1;
    const QFontMetricsF fm = MesureEtalon(PoliceQt(), k);
    const int lignes = std::max<int>(1, int(texte.count(u'\n')) + (texte.endsWith(u'\n') ? 0 : 1));
    return (fm.ascent() + fm.descent()) * k * lignes * ScaleHeight / hauteurPx_;
}

void Surface::TextOut(double x, double y, double angle, const QString& texte, bool haut) {
    QPointF p = VersPixel(x, y);
    if (haut) {
        const MetriquesPolice m = Metriques();
        const double a = angle * Litteraux::DegRad;
        // Down the text's normal (pixel y grows downward) by the ascent.
        p += QPointF(m.Ascent * std::sin(a), m.Ascent * std::cos(a));
    }
    OpSurface op;
    op.genre = OpSurface::Texte;
    const QPointF base = DepuisPixel(p.x(), p.y());
    op.x1 = base.x(); op.y1 = base.y();
    op.angle = angle;
    op.texte = texte;
    op.police = Font.Name;
    op.taille = Font.Size;
    op.gras = Font.Bold; op.italique = Font.Italic; op.souligne = Font.Underline;
    op.couleur = ForeColor;
    if (!Enregistre(op) || !Encre(ForeColor)) return;
    DevTexte(p, angle, texte, PoliceQt(), VersQColor(ForeColor));
}

void Surface::PaintPicture(const QImage& image, const QString& fichier, double x, double y,
                           double w, double h) {
    OpSurface op;
    op.genre = OpSurface::Image;
    op.fichier = fichier;
    op.x1 = x; op.y1 = y; op.x2 = w; op.y2 = h;
    if (!Enregistre(op)) return;
    DevImage(QRectF(VersPixel(x, y), VersPixel(x + w, y + h)).normalized(), image);
}

void Surface::Cls() {
    OpSurface op;
    op.genre = OpSurface::Effacement;
    if (Enregistre(op)) DevEffacer();
    CurrentX = 0;
    CurrentY = 0;
}

void Surface::NewPage() {
    OpSurface op;
    op.genre = OpSurface::NouvellePage;
    if (Enregistre(op)) DevNouvellePage();
    CurrentX = 0;
    CurrentY = 0;
}

// --- The device's text calls: device fonts, alignment, Print, TextOutA.

QFont Surface::PoliceQtDevice(const PoliceDevice& p) const {
    const double pt = p.HauteurPx * 72.0 * mmParPixel_ / 25.4;
    return PoliceContours(p.Name, pt, p.Bold, p.Italic, p.Underline, p.Strikethrough);
}

std::optional<PoliceDevice> Surface::SelectFont(std::optional<PoliceDevice> police) {
    std::swap(policeChoisie_, police);
    return police;
}

void Surface::EcritTexteDevice(QPointF p, const QString& texte) {
    if (texte.isEmpty()) return; // a text of no character leaves no mark
    const QFont f = policeChoisie_ ? PoliceQtDevice(*policeChoisie_) : PoliceQt();
    const double angle = policeChoisie_ ? policeChoisie_->Escapement : 0.0;
    if (alignementTexte_ == 0) {
        // Top of the cell on the point: the baseline lies one ascent down the
        // text's normal (device y grows downward).
        double k = 1;
        const double asc = MesureEtalon(f, k).ascent() * k;
        const double a = angle * Litteraux::DegRad;
        p += QPointF(asc * std::sin(a), asc * std::cos(a));
    }
    OpSurface op;
    op.genre = OpSurface::Texte;
    const QPointF base = DepuisPixel(p.x(), p.y());
    op.x1 = base.x(); op.y1 = base.y();
    op.angle = angle;
    op.texte = texte;
    if (policeChoisie_) {
        op.police = policeChoisie_->Name;
        op.taille = policeChoisie_->HauteurPx * 72.0 * mmParPixel_ / 25.4;
        op.gras = policeChoisie_->Bold;
        op.italique = policeChoisie_->Italic;
        op.souligne = policeChoisie_->Underline;
    } else {
        op.police = Font.Name;
        op.taille = Font.Size;
        op.gras = Font.Bold; op.italique = Font.Italic; op.souligne = Font.Underline;
    }
    op.couleur = ForeColor;
    if (!Enregistre(op) || !Encre(ForeColor)) return;
    DevTexte(p, angle, texte, f, VersQColor(ForeColor));
}

void Surface::Print(const QString& texte) {
    EcritTexteDevice(VersPixel(CurrentX, CurrentY), texte);
    const QFont f = policeChoisie_ ? PoliceQtDevice(*policeChoisie_) : PoliceQt();
    double k = 1;
    CurrentX += MesureEtalon(f, k).horizontalAdvance(texte) * k * ScaleWidth / largeurPx_;
}

void Surface::TextOutA(int xd, int yd, const QString& texte) {
    EcritTexteDevice(QPointF(xd, yd), texte);
}
