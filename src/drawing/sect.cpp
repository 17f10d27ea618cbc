// Sectors: coloured bands along a scale.
#include "drawing/sect.h"

#include "drawing/echelle.h"
#include "drawing/grad.h"
#include "drawing/repere.h"
#include "drawing/styles.h"
#include "drawing/surface.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/para.h"
#include "language/vb.h"

#include <algorithm>
#include <cmath>

using namespace vb;

namespace {

constexpr double DegRad = DegRadEchelle;
constexpr double Pi = PiEchelle;


// Direction of the deviation A (radians) on the circle of radius r about the
// drawn centre: the formula of `PosEchelle` when r isn't 0, pi - A otherwise.
double Direction(const Etat& e, double A, double r) {
    if (r == 0) return Pi - A;
    return (Pi - A) - ArcSinus(e.Ech.D * std::cos(A) / r);
}

// The n + 1 points of an arc edge of radius r from direction b1 to b2, about
// the drawn centre (OrigineX + CTx, OrigineY + CTy - D).
void BordArc(const Etat& e, QVector<QPointF>& pts, double r, double b1, double b2, int n) {
    const double cx = e.Repere.OrigineX + e.Repere.CTx;
    const double cy = e.Repere.OrigineY + e.Repere.CTy - e.Ech.D;
    for (int i = 0; i <= n; ++i) {
        const double b = b1 + i * (b2 - b1) / n;
        pts.append(QPointF(float(cx + r * std::cos(b)), float(cy + r * std::sin(b))));
    }
}

// The point of a straight position at distance d: on the straight limit of an
// arc the needle's projection at radius d, on a Droite above y = R, on a
// DroiteV right of x = R.
QPointF PointDroitDistance(const Etat& e, FormeEchelle f, double v, double d) {
    if (f == FormeEchelle::Arc) {
        const PointEchelle p = PointArc(e, v * DegRad, d);
        return {float(p.x), float(p.y)};
    }
    PointEchelle p = PointDroit(e, f, v);
    if (f == FormeEchelle::Droite) p.y += d;
    else p.x += d;
    return {float(p.x), float(p.y)};
}

// A Surface point turned by the scale's rotation about the frame's 0,0, as
// TraitRot turns the ends of a line.
QPointF TourneEchelle(const Etat& e, QPointF p) {
    double x = p.x(), y = p.y();
    TourneAutourCentre(e, e.Ech.Rot, x, y);
    return {x, y};
}

void Sect(Etat& e, bool plein) {
    const QString l = e.LigneCourante;
    // 1.
    VerifieEchelle(e);
    e.EtatOrdre |= 64;
    bool brut1 = false, brut2 = false;
    const double p1 = LitPosition(e, l, 1, brut1);
    const double p2 = LitPosition(e, l, 2, brut2);
    const double d1 = ParaVal0(e, l, 3);
    const double d2 = ParaVal(e, l, 4).value_or(d1);
    const int couleur = CouleurParametre(e, ParaN(e, l, -5));
    const bool trace = !EstCouleurN(ParaN(e, l, 5));
    // The form is settled before the command's own style is taken, so that a
    // scale without a form fails with the style untouched.
    FormeEchelleCourante(e);
    EpaisLocal(e, ParaN(e, l, 6));
    // 2. to 4.
    int n = 0;
    const QVector<QPointF> pts = ContourSect(e, p1, brut1, p2, brut2, d1, d2, n);
    Surface* s = e.Surf;
    // 5.
    if (trace && s) {
        if (!plein) {
            for (int i = 0; i + 1 < pts.size(); ++i)
                TraitRot(e, pts[i].x(), pts[i].y(), pts[i + 1].x(), pts[i + 1].y(), e.Ech.Rot,
                         couleur);
        } else {
            QVector<QPointF> pixels;
            pixels.reserve(pts.size());
            for (const QPointF& p : pts) {
                const QPointF t = TourneEchelle(e, p);
                pixels.append(PixelDevice(e, t.x(), t.y()));
            }
            PSetHorsPage(e, couleur);
            PolygoneRempli(e, pixels, couleur);
            s->FillStyle = 1;
        }
    }
    // 6.
    EpaisRestaure(e);
    if (s && !pts.isEmpty()) {
        // Where the last stroke of the outline ends: the first point, turned.
        const QPointF p = TourneEchelle(e, pts.first());
        s->CurrentX = p.x();
        s->CurrentY = p.y();
    }
    MajPointCourant(e, -e.Ech.Rot);
}

} // namespace

QVector<QPointF> ContourSect(Etat& e, double p1, bool brut1, double p2, bool brut2, double d1,
                             double d2, int& n) {
    const Echelle& s = e.Ech;
    const FormeEchelle f = FormeEchelleCourante(e);
    const double v1 = ValeurEchelle(e, f, p1, brut1);
    const double v2 = ValeurEchelle(e, f, p2, brut2);
    QVector<QPointF> pts;
    if (f == FormeEchelle::Arc && s.D < 10000) {
        const double A1 = v1 * DegRad, A2 = v2 * DegRad;
        // 2.1
        const double r1 = DistDecal(s.D, d1, s.a1);
        const double b1 = Direction(e, A1, r1), b2 = Direction(e, A2, r1);
        // 2.2 The steps follow the length of the d2 edge, within 25 and 500.
        n = Entier16((long long)std::nearbyint(2 * std::abs(b1 - b2) * d2));
        n = std::clamp(n, 25, 500);
        pts.reserve(2 * n + 3);
        // 2.3
        BordArc(e, pts, r1, b1, b2, n);
        // 2.4
        const double r2 = DistDecal(s.D, d2, s.a1);
        BordArc(e, pts, r2, Direction(e, A2, r2), Direction(e, A1, r2), n);
    } else {
        // 3.
        n = 4;
        pts << PointDroitDistance(e, f, v1, d1) << PointDroitDistance(e, f, v2, d1)
            << PointDroitDistance(e, f, v2, d2) << PointDroitDistance(e, f, v1, d2);
    }
    // 4. The outline closes.
    pts.append(pts.first());
    return pts;
}

void CmdSect(Etat& e) { Sect(e, false); }
void CmdSectP(Etat& e) { Sect(e, true); }
