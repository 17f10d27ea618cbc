// Frames: rectangles, plain or rounded, outlined or filled.
#include "shapes/cadre.h"
#include "shapes/cercle.h"
#include "shapes/texte.h"

#include "drawing/repere.h"
#include "drawing/styles.h"
#include "drawing/surface.h"
#include "language/constantes.h"
#include "language/etat.h"
#include "language/para.h"
#include "language/vb.h"

#include <algorithm>
#include <cmath>
#include <optional>

using namespace vb;

namespace {

constexpr double DegRad = Litteraux::DegRad;
constexpr double Pi = Litteraux::Pi;

// The last parameter: the rectangle's angle in degrees and the letter of the
// point it turns about. The letter stands behind the second separator or a
// blank ("30§2", "30 2"), or is a final "C" ("30C"); without one it is C.
void LitAngleCadre(Etat& e, const QString& parametre, double& angle, QChar& lettre) {
    QString t = Trim(parametre);
    lettre = u'C';
    QString nombre = t;
    const int s2 = InStr(t, e.Separateur2);
    if (s2 > 0) {
        nombre = Left(t, s2 - 1);
        const QString l = Trim(Mid(t, s2 + Len(e.Separateur2))).toUpper();
        if (!l.isEmpty()) lettre = l.front();
    } else if (!t.isEmpty() && t.back().toUpper() == u'C') {
        nombre = Left(t, Len(t) - 1);
    } else {
        const int b = t.lastIndexOf(u' ');
        if (b > 0) {
            const QString l = t.mid(b + 1).toUpper();
            if (l == QLatin1String("1") || l == QLatin1String("2") || l == QLatin1String("C")) {
                lettre = l.front();
                nombre = t.left(b);
            }
        }
    }
    angle = ParaVal0(e, Trim(nombre), 1);
    if (lettre != u'1' && lettre != u'2') lettre = u'C';
}

// The frame in its own, unturned frame: corners as given (after centring) and
// the rounding.
struct Forme {
    double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    double r = 0;         // signed radius, clipped: > 0 rounds outward, < 0 hollows
    bool diagonale = false;
    double pas = 1;       // the arc's step angle, radians
    // Corner k of the outline: 0 (x1, y1), 1 (x2, y1), 2 (x2, y2), 3 (x1, y2).
    QPointF Coin(int k) const {
        return {(k == 0 || k == 3) ? x1 : x2, k < 2 ? y1 : y2};
    }
    bool Arrondi(int k) const { return r != 0 && (!diagonale || k == 0 || k == 2); }
};

// The points of one corner of the outline, in the order of the outline: the
// corner itself, or the arc from the incoming edge to the outgoing one.
QVector<QPointF> CoinArc(const Forme& f, int k) {
    const QPointF P = f.Coin(k);
    if (!f.Arrondi(k)) return {P};
    const double rho = std::abs(f.r);
    const QPointF avant = f.Coin((k + 3) % 4), apres = f.Coin((k + 1) % 4);
    auto unitaire = [](QPointF v) {
        const double l = std::hypot(v.x(), v.y());
        return QPointF(v.x() / l, v.y() / l);
    };
    const QPointF uin = unitaire(P - avant), uout = unitaire(apres - P);
    const QPointF A = P - rho * uin, B = P + rho * uout;
    // Outward rounding: about the inner corner point; hollowing: about the corner.
    const QPointF Q = f.r > 0 ? A + rho * uout : P;
    const double ta = std::atan2(A.y() - Q.y(), A.x() - Q.x());
    double delta = std::atan2(B.y() - Q.y(), B.x() - Q.x()) - ta;
    while (delta > Pi) delta -= 2 * Pi;
    while (delta <= -Pi) delta += 2 * Pi;
    QVector<QPointF> pts{A};
    const double sens = delta < 0 ? -1 : 1;
    for (int i = 1; i * f.pas < std::abs(delta) - 1e-9; ++i) {
        const double t = ta + sens * i * f.pas;
        pts.append(Q + QPointF(rho * std::cos(t), rho * std::sin(t)));
    }
    pts.append(B);
    return pts;
}

// The outline, open (the last point is joined to the first by the caller).
QVector<QPointF> Contour(const Forme& f) {
    QVector<QPointF> pts;
    for (int k = 0; k < 4; ++k) pts += CoinArc(f, k);
    return pts;
}

// The band of the gradient between heights bas < haut: the right-hand boundary
// downward, then the left-hand one upward. The ends of a band are cut at the
// corner arcs by the circle's equation, so that two bands meet on the same two
// points.
class Bandes {
public:
    explicit Bandes(const Forme& f) : f_(f) {
        xa_ = std::min(f.x1, f.x2);
        xb_ = std::max(f.x1, f.x2);
        ya_ = std::min(f.y1, f.y2);
        yb_ = std::max(f.y1, f.y2);
        rho_ = std::abs(f.r);
        // The arc points of each side, from the corners' own points.
        for (int k = 0; k < 4; ++k) {
            if (!f.Arrondi(k)) continue;
            const bool droite = f.Coin(k).x() == xb_;
            for (const QPointF& p : CoinArc(f, k)) (droite ? droite_ : gauche_).append(p);
        }
        auto parY = [](const QPointF& a, const QPointF& b) { return a.y() < b.y(); };
        std::sort(droite_.begin(), droite_.end(), parY);
        std::sort(gauche_.begin(), gauche_.end(), parY);
    }

    double Haut() const { return yb_; }
    double Bas() const { return ya_; }

    QVector<QPointF> Bande(double haut, double bas) const {
        QVector<QPointF> pts;
        pts.append({Bord(haut, true), haut});
        for (auto it = droite_.crbegin(); it != droite_.crend(); ++it)
            if (it->y() < haut && it->y() > bas) pts.append(*it);
        pts.append({Bord(bas, true), bas});
        pts.append({Bord(bas, false), bas});
        for (const QPointF& p : gauche_)
            if (p.y() > bas && p.y() < haut) pts.append(p);
        pts.append({Bord(haut, false), haut});
        return pts;
    }

private:
    // x of the right-hand or left-hand boundary at height y.
    double Bord(double y, bool droite) const {
        const double xc = droite ? xb_ : xa_;
        const double sx = droite ? -1 : 1; // toward the inside
        for (const double yc : {yb_, ya_}) {
            int k = 0;
            while (k < 4 && !(f_.Coin(k).x() == xc && f_.Coin(k).y() == yc)) ++k;
            if (k == 4 || !f_.Arrondi(k)) continue;
            const double dy = std::abs(y - yc);
            if (dy >= rho_) continue;
            if (f_.r > 0) {
                // Height above the arc's centre, then the arcsine.
                const double a = std::asin((rho_ - dy) / rho_);
                return xc + sx * (rho_ - rho_ * std::cos(a));
            }
            const double a = std::asin(dy / rho_);
            return xc + sx * rho_ * std::cos(a);
        }
        return xc;
    }

    const Forme& f_;
    double xa_ = 0, xb_ = 0, ya_ = 0, yb_ = 0, rho_ = 0;
    QVector<QPointF> droite_, gauche_;
};

// The points through AjoutePoint, then one Polygon of their pixels. The
// pixels are those of the frame's own conversion, so a gradient band reaches
// the outline exactly as a plain fill does, and two bands share the pixels of
// their common edge, whose points are the same.
void Polygone(Etat& e, const QVector<QPointF>& pts, double cx, double cy, double angle,
              double rotation, int couleur) {
    QVector<QPointF> pixels;
    pixels.reserve(pts.size());
    for (int i = 0; i < pts.size(); ++i) {
        AjoutePoint(e, i, pts[i].x(), pts[i].y(), cx, cy, angle, rotation);
        pixels.append(QPointF(e.Cadre.PointsPixel[i]));
    }
    PolygoneRempli(e, pixels, couleur);
}

} // namespace

void AjoutePoint(Etat& e, int index, double x, double y, double cx, double cy, double angle,
                 double rotation) {
    if (angle != 0) {
        const double dx = x - cx, dy = y - cy;
        x = cx + dx * std::cos(angle) - dy * std::sin(angle);
        y = cy + dx * std::sin(angle) + dy * std::cos(angle);
    }
    if (rotation != 0) Tourne(rotation, x, y);
    EtatCadre& c = e.Cadre;
    if (index >= c.Points.size()) {
        c.Points.resize(index + 1);
        c.PointsPixel.resize(index + 1);
    }
    c.Points[index] = QPointF(float(x), float(y));
    const QPointF p = PixelDevice(e, VersSurfaceX(e, float(x)), VersSurfaceY(e, float(y)));
    c.PointsPixel[index] = QPoint(int(p.x()), int(p.y()));
}

void Cadre(Etat& e, const QString& mot) {
    const QString l = e.LigneCourante;
    const bool arrondi = mot.startsWith(QLatin1String("CADREA"));
    const bool plein = mot.endsWith(u'P');
    const EtatRepere& rp = e.Repere;
    // 1.
    e.EtatOrdre |= 64;
    // 2. The second pair is read about the first, as the second corner.
    double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    ParaCoord(e, x1, y1, l, 1, rp.PointX, rp.PointY);
    ParaCoord(e, x2, y2, l, 3, x1, y1);
    // The command's rotation, applied point by point by AjoutePoint.
    double rx = 0, ry = 0;
    LitRotation(e, ParaN(e, l, 2), rx, ry);
    const double rotation = rp.RotationCmd;
    int nCouleur = arrondi ? 6 : 5;
    // 3.
    double angleDeg = 0;
    QChar lettre = u'C';
    LitAngleCadre(e, ParaN(e, l, nCouleur + 2), angleDeg, lettre);
    const double angle = -angleDeg * DegRad;
    // 4. Centring on the smaller coordinate, x2 and y2 giving the size.
    if (Trim(SousPara(e, ParaN(e, l, 1), 2)).toUpper() == QLatin1String("C")) {
        double a = std::min(x1, x2), w = x2 - x1;
        x1 = a - w / 2;
        x2 = a + w / 2;
        a = std::min(y1, y2);
        w = y2 - y1;
        y1 = a - w / 2;
        y2 = a + w / 2;
    }
    Forme f;
    f.x1 = x1; f.y1 = y1; f.x2 = x2; f.y2 = y2;
    // 5. The radius never exceeds half of the smaller side, and keeps its sign.
    if (arrondi) {
        const QString p5 = ParaN(e, l, 5);
        double r = ParaVal0(e, p5, 1);
        if (std::abs(r) > std::abs(x2 - x1) / 2) r = Sgn(r) * std::abs(x2 - x1) / 2;
        if (std::abs(r) > std::abs(y2 - y1) / 2) r = Sgn(r) * std::abs(y2 - y1) / 2;
        f.r = r;
        f.diagonale = Trim(SousPara(e, p5, 2)).toUpper().startsWith(u'D');
    }
    // The arc's step of the circles. A FacteurPolice of 0 or below counts as
    // 1, so that the step stays a finite number.
    if (f.r != 0) {
        const double fp = e.Txt.FacteurPolice > 0 ? double(e.Txt.FacteurPolice) : 1.0;
        f.pas = PasArc(e, f.r, fp);
    }
    // 6. Colour and the gradient's final colour.
    const QString pc = ParaN(e, l, nCouleur);
    const int couleur = CouleurParametre(e, pc);
    const std::optional<int> couleur2 = CouleurFinale(e, pc);
    // 7.
    EpaisLocal(e, ParaN(e, l, nCouleur + 1));
    // 8.
    const double finX = x2, finY = y2;
    // 9.
    double cx = (x1 + x2) / 2, cy = (y1 + y2) / 2;
    if (lettre == u'1') { cx = x1; cy = y1; }
    else if (lettre == u'2') { cx = x2; cy = y2; }

    Surface* s = e.Surf;
    const QVector<QPointF> contour = Contour(f);
    if (s && couleur != -1) {
        // Fill first.
        if (plein) {
            MarquePage(e, e.Surf->ForeColor);
            if (couleur2) {
                // The bands and colour steps of a circle's gradient; a frame
                // gives no band count.
                Teinte pas;
                const int n = NombreBandes(couleur, *couleur2, 0, pas);
                Teinte t(couleur);
                const Bandes bandes(f);
                const double haut = bandes.Haut(), bas = bandes.Bas();
                const double h = (haut - bas) / n;
                for (int i = 0; i < n; ++i) {
                    const double y0 = haut - i * h, y1b = i + 1 == n ? bas : haut - (i + 1) * h;
                    Polygone(e, bandes.Bande(y0, y1b), cx, cy, angle, rotation, t.Valeur());
                    t.Avance(pas);
                }
            } else {
                Polygone(e, contour, cx, cy, angle, rotation, couleur);
            }
            s->FillStyle = 1;
        }
        // The outline, last.
        for (int i = 0; i < contour.size(); ++i)
            AjoutePoint(e, i, contour[i].x(), contour[i].y(), cx, cy, angle, rotation);
        const QVector<QPointF>& pts = e.Cadre.Points;
        for (int i = 0; i < contour.size(); ++i) {
            const QPointF a = pts[i], b = pts[(i + 1) % contour.size()];
            TraitRot(e, VersSurfaceX(e, a.x()), VersSurfaceY(e, a.y()), VersSurfaceX(e, b.x()),
                     VersSurfaceY(e, b.y()), 0, couleur);
        }
    }
    // After drawing.
    if (s) {
        s->FillStyle = 1;
        if (e.Styles.CouleurDefaut != -1) s->ForeColor = e.Styles.CouleurDefaut;
    }
    EpaisRestaure(e);
    double ex = finX, ey = finY;
    Tourne(rotation, ex, ey);
    if (s) {
        s->CurrentX = VersSurfaceX(e, ex);
        s->CurrentY = VersSurfaceY(e, ey);
    }
    MajPointCourant(e, rotation);
}

void CmdCadre(Etat& e) { Cadre(e, QStringLiteral("CADRE")); }
void CmdCadreP(Etat& e) { Cadre(e, QStringLiteral("CADREP")); }
void CmdCadreA(Etat& e) { Cadre(e, QStringLiteral("CADREA")); }
void CmdCadreAP(Etat& e) { Cadre(e, QStringLiteral("CADREAP")); }
