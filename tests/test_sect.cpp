// Part 2.6: sectors. Expected outlines are worked out here from the spec's
// formulas (Parts 2.3 and 2.6), to 0.001 mm.
#include "outils.h"

#include "drawing/echelle.h"

#include <cmath>

namespace {

constexpr double K = 0.017453293;
constexpr double PI = 3.14159265358979;

// The spec's ArcSinus and DistDecal, written out again.
double ArcSin(double v) {
    if (v >= 1) return PI / 2;
    if (v <= -1) return -PI / 2;
    return std::atan(v / std::sqrt(1 - v * v));
}
double Dist(double d, double r, double a) {
    return std::sqrt(d * d + r * r - 2 * d * r * std::cos((a + 90) * K));
}

// Direction b of deviation A (radians) on the circle of radius r about the
// centre decentred by D (Part 2.6 step 2.1).
double Dir(double D, double A, double r) {
    return r == 0 ? PI - A : (PI - A) - ArcSin(D * std::cos(A) / r);
}

// The outline of an arc band as the spec builds it: edge 1 from p1 to p2 at
// needle radius d1, edge 2 back at d2, closed. Deviations A1, A2 in degrees.
QVector<QPointF> BandeArc(double D, double a1, double A1, double A2, double d1, double d2,
                          int n) {
    QVector<QPointF> p;
    const double r1 = Dist(D, d1, a1), r2 = Dist(D, d2, a1);
    const double b1 = Dir(D, A1 * K, r1), b2 = Dir(D, A2 * K, r1);
    for (int i = 0; i <= n; ++i) {
        const double b = b1 + i * (b2 - b1) / n;
        p << QPointF(r1 * std::cos(b), -D + r1 * std::sin(b));
    }
    const double c1 = Dir(D, A2 * K, r2), c2 = Dir(D, A1 * K, r2);
    for (int i = 0; i <= n; ++i) {
        const double b = c1 + i * (c2 - c1) / n;
        p << QPointF(r2 * std::cos(b), -D + r2 * std::sin(b));
    }
    p << p.first();
    return p;
}

// n of step 2.2.
int Pas(double D, double a1, double A1, double A2, double d1, double d2) {
    const double r1 = Dist(D, d1, a1);
    const double b1 = Dir(D, A1 * K, r1), b2 = Dir(D, A2 * K, r1);
    const int n = int(std::nearbyint(2 * std::abs(b1 - b2) * d2));
    return std::clamp(n, 25, 500);
}

// The lines of a run are the outline's consecutive pairs.
void VerifieContour(const QVector<OpSurface>& l, const QVector<QPointF>& p) {
    ASSERT_EQ(l.size(), p.size() - 1);
    for (int i = 0; i < l.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_MM(l[i].x1, p[i].x());
        EXPECT_MM(l[i].y1, p[i].y());
        EXPECT_MM(l[i].x2, p[i + 1].x());
        EXPECT_MM(l[i].y2, p[i + 1].y());
    }
}

QPointF Tourne(QPointF p, double degres) {
    const double a = degres * K;
    return {p.x() * std::cos(a) - p.y() * std::sin(a), p.x() * std::sin(a) + p.y() * std::cos(a)};
}

// What the run drew: the journal without the clearing of the pane.
QVector<OpSurface> Dessin(const Session& s) {
    QVector<OpSurface> r;
    for (const OpSurface& op : s.journal)
        if (op.genre != OpSurface::Effacement) r.append(op);
    return r;
}

bool Contient(const QStringList& l, const QString& t) {
    for (const QString& m : l)
        if (m.contains(t)) return true;
    return false;
}

} // namespace

// Edge case: Sect = 0, 100, 2, 2 on an arc is one thin closed band along a
// single circle; both edges coincide.
TEST(Sect, BandeMinceUnSeulCercle) {
    auto s = Lance("Arc = 0, 180, 50\nSect = 0, 100, 2, 2");
    const auto l = Lignes(*s);
    const double a1 = 0.000001;
    const int n = Pas(0, a1, a1, 180, 2, 2);
    EXPECT_EQ(n, 25); // 2 pi 2 = 12.6 steps, raised to 25
    VerifieContour(l, BandeArc(0, a1, a1, 180, 2, 2, n));
    for (const OpSurface& op : l) {
        EXPECT_MM(std::hypot(op.x1, op.y1), 2);
        EXPECT_MM(std::hypot(op.x2, op.y2), 2);
    }
    // Both edges on the same circle: edge 2 runs back over edge 1's points.
    for (int i = 0; i <= n; ++i) {
        EXPECT_MM(l[i].x1, l[2 * n + 1 - i].x1);
        EXPECT_MM(l[i].y1, l[2 * n + 1 - i].y1);
    }
    // Closed: the last stroke ends where the first began.
    EXPECT_MM(l.last().x2, l.first().x1);
    EXPECT_MM(l.last().y2, l.first().y1);
}

// Edge case: a wide band with a small distance takes 25 steps, a long one never
// more than 500; in between n = 2 |b1 - b2| d2.
TEST(Sect, VingtCinqAuMoinsCinqCentsAuPlus) {
    auto s = Lance("Arc = -45, 225, 10\nSect = 0, 100, 1, 1.5");
    EXPECT_EQ(Lignes(*s).size(), 2 * 25 + 2);
    VerifieContour(Lignes(*s), BandeArc(0, -45, -45, 225, 1, 1.5, 25));
    auto s2 = Lance("Arc = 0, 180, 200\nSect = 0, 100, 190, 200");
    EXPECT_EQ(Lignes(*s2).size(), 2 * 500 + 2);
    const double a1 = 0.000001;
    const int n = Pas(0, a1, a1, 180, 10, 20);
    EXPECT_EQ(n, 126);
    auto s3 = Lance("Arc = 0, 180, 50\nSect = 0, 100, 10, 20");
    VerifieContour(Lignes(*s3), BandeArc(0, a1, a1, 180, 10, 20, n));
}

// Edge case: colour N draws nothing and leaves the pen where the outline
// would have ended, its first point.
TEST(Sect, CouleurNDeplaceLaPlume) {
    for (const QString mot : {"Sect", "SectP"}) {
        SCOPED_TRACE(mot.toStdString());
        auto s = Lance("Arc = 0, 180, 50\n" + mot + " = 20, 60, 40, 45, N");
        ASSERT_EQ(Dessin(*s).size(), 1); // the arc alone
        EXPECT_EQ(Dessin(*s)[0].genre, OpSurface::Cercle);
        const double A = (0.000001 + 0.2 * (180 - 0.000001)) * K;
        EXPECT_MM(s->etat.Repere.PointX, -40 * std::cos(A));
        EXPECT_MM(s->etat.Repere.PointY, 40 * std::sin(A));
        EXPECT_TRUE(Messages(*s).isEmpty());
    }
    // The pen is the base of the next R-relative coordinate.
    auto s = Lance("Arc = 0, 180, 50\nSect = 0, 100, 40, 45, N\nCadre = R, R, 10R, 10R");
    const auto l = Lignes(*s);
    ASSERT_FALSE(l.isEmpty());
    EXPECT_MM(l[0].x1, -40 * std::cos(0.000001 * K));
    EXPECT_MM(l[0].y1, 40 * std::sin(0.000001 * K));
}

// Edge case: mixed forms, Sect = 30°, 50: degrees for the start, percent for
// the end.
TEST(Sect, FormesMelangees) {
    auto s = Lance("Arc = 0, 180, 50\nSect = 30°, 50, 40, 45");
    const double a1 = 0.000001, A2 = a1 + 0.5 * (180 - a1);
    const int n = Pas(0, a1, 30, A2, 40, 45);
    VerifieContour(Lignes(*s), BandeArc(0, a1, 30, A2, 40, 45, n));
    const auto l = Lignes(*s);
    EXPECT_MM(l[0].x1, -40 * std::cos(30 * K));
    EXPECT_MM(l[0].y1, 40 * std::sin(30 * K));
    EXPECT_MM(l[n - 1].x2, 0);  // 50 % of 0..180 is straight up
    EXPECT_MM(l[n - 1].y2, 40);
    // The other way round, on a Droite: "°" is millimetres along the scale.
    auto s2 = Lance("Droite = 0, 200\nSect = 50, 30°, 0, 5");
    VerifieContour(Lignes(*s2).mid(1), {{100, 0}, {30, 0}, {30, 5}, {100, 5}, {100, 0}});
}

// Straight scales: four corners, the band above y = R on a Droite, right of
// x = R on a DroiteV.
TEST(Sect, DroiteEtDroiteV) {
    auto s = Lance("Droite = 0, 100, 10\nSect = 20, 60, 2, 5");
    VerifieContour(Lignes(*s).mid(1), {{20, 12}, {60, 12}, {60, 15}, {20, 15}, {20, 12}});
    auto s2 = Lance("DroiteV = 0, 100, 10\nSect = 20, 60, 2, 5");
    VerifieContour(Lignes(*s2).mid(1), {{12, 20}, {12, 60}, {15, 60}, {15, 20}, {12, 20}});
    // d2 left out is d1: a band of no width.
    auto s3 = Lance("Droite = 0, 100, 10\nSect = 20, 60, 2");
    VerifieContour(Lignes(*s3).mid(1), {{20, 12}, {60, 12}, {60, 12}, {20, 12}, {20, 12}});
}

// A band of zero length is drawn as a line.
TEST(Sect, LongueurNulleUneLigne) {
    auto s = Lance("Droite = 0, 100\nSect = 50, 50, 0, 5");
    VerifieContour(Lignes(*s).mid(1), {{50, 0}, {50, 0}, {50, 5}, {50, 5}, {50, 0}});
}

// A decentred arc: the edges are circles about the drawn centre, 200 below.
TEST(Sect, ArcDecentre) {
    auto s = Lance("Decal = -200, N\nArc = 60, 120, 100, N\nSect = 0, 100, 100, 110");
    const double D = 200;
    const int n = Pas(D, 60, 60, 120, 100, 110);
    const auto p = BandeArc(D, 60, 60, 120, 100, 110, n);
    VerifieContour(Lignes(*s), p);
    // Edge 1 at the needle radius runs through the needle's points.
    EXPECT_MM(p.first().x(), -100 * std::cos(60 * K));
    EXPECT_MM(p.first().y(), 100 * std::sin(60 * K));
    EXPECT_MM(p[n].x(), -100 * std::cos(120 * K));
    EXPECT_MM(p[n].y(), 100 * std::sin(120 * K));
}

// The straight limit of an arc: four corners on the projection of the needle.
TEST(Sect, LimiteDroiteDecal) {
    auto s = Lance("Decal = 10000, N\nArc = 60, 120, 100, N\nSect = 0, 100, 90, 100");
    auto coin = [](double a, double d) {
        const double f = PI - a * K, sy = d * std::sin(60 * K);
        return QPointF(sy * std::tan(PI / 2 - f), sy);
    };
    VerifieContour(Lignes(*s), {coin(60, 90), coin(120, 90), coin(120, 100), coin(60, 100),
                                coin(60, 90)});
}

// Internal values on a log scale; percent after Exposant.
TEST(Sect, PositionsLogEtExposant) {
    auto s = Lance("Exposant = L, 2\nDroite = 0, 100\nSect = 10, 100, 0, 5");
    VerifieContour(Lignes(*s).mid(1), {{50, 0}, {100, 0}, {100, 5}, {50, 5}, {50, 0}});
    auto s2 = Lance("Exposant = 2\nDroite = 0, 100\nSect = 50, 100, 0, 5");
    VerifieContour(Lignes(*s2).mid(1), {{25, 0}, {100, 0}, {100, 5}, {25, 5}, {25, 0}});
}

// The scale's rotation turns the band; the pen ends on the first point, given
// back unturned.
TEST(Sect, RotationDeLEchelle) {
    auto s = Lance("Arc = 0, 180§30, 50\nSect = 0, 100, 40, 45");
    const double a1 = 0.000001;
    const int n = Pas(0, a1, a1, 180, 40, 45);
    auto p = BandeArc(0, a1, a1, 180, 40, 45, n);
    for (QPointF& q : p) q = Tourne(q, 30);
    VerifieContour(Lignes(*s), p);
    EXPECT_MM(s->etat.Repere.PointX, -40 * std::cos(a1 * K));
    EXPECT_MM(s->etat.Repere.PointY, 40 * std::sin(a1 * K));
}

// SectP: the pen's PSet off the page, then one filled polygon of the outline in
// device pixels, turned by the scale's rotation; no outline.
TEST(SectP, PolygonePleinSansContour) {
    auto s = Lance("Arc = 0, 180§30, 50, N\nSectP = 0, 100, 40, 45, ROUGE");
    const auto ops = Dessin(*s);
    ASSERT_EQ(ops.size(), 2);
    const OpSurface& pset = ops[0];
    EXPECT_EQ(pset.genre, OpSurface::Point);
    EXPECT_EQ(pset.couleur, 255);
    EXPECT_MM(pset.x1, s->pane->ScaleLeft - 1000);
    EXPECT_MM(pset.y1, s->pane->ScaleTop + 1000);
    const OpSurface& poly = ops[1];
    EXPECT_EQ(poly.genre, OpSurface::Polygone);
    EXPECT_EQ(poly.couleur, 255);
    ASSERT_TRUE(poly.remplissage.has_value());
    EXPECT_EQ(*poly.remplissage, 255);
    const double a1 = 0.000001;
    auto p = BandeArc(0, a1, a1, 180, 40, 45, Pas(0, a1, a1, 180, 40, 45));
    ASSERT_EQ(poly.points.size(), p.size());
    const double px = s->etat.Repere.MmParPixelE; // whole device pixels
    for (int i = 0; i < p.size(); ++i) {
        const QPointF q = Tourne(p[i], 30);
        EXPECT_NEAR(poly.points[i].x(), q.x(), px);
        EXPECT_NEAR(poly.points[i].y(), q.y(), px);
    }
    EXPECT_EQ(s->pane->FillStyle, 1);
}

// The command's own line style, restored afterward.
TEST(Sect, EpaisseurLocale) {
    auto s = Lance("Droite = 0, 100\nSect = 0, 100, 0, 5, , 1mm\nGrad = 1, 3");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 1 + 4 + 2);
    const int w = int(std::nearbyint(1 / s->etat.Repere.MmParPixelE));
    for (int i = 1; i <= 4; ++i) EXPECT_EQ(l[i].largeur, w);
    EXPECT_EQ(l[5].largeur, 1);
    EXPECT_EQ(l[1].couleur, 0);
}

// Before a scale, the order failure; with a scale of equal ends, a failure.
TEST(Sect, AvantEchelleErreurOrdre) {
    for (const QString mot : {"Sect", "SectP"}) {
        auto s = Lance(mot + " = 0, 100, 2");
        EXPECT_TRUE(Contient(Messages(*s), QStringLiteral("Erreur ordre commandes / Error odre commands")));
        EXPECT_TRUE(Dessin(*s).isEmpty());
    }
    auto s = Lance("Arc = 30, 30, 50, N\nSect = 0, 100, 2\nCadre = 0, 0, 10, 10");
    EXPECT_FALSE(Messages(*s).isEmpty());
    EXPECT_TRUE(Lignes(*s).isEmpty()); // the level ended at Sect
    EXPECT_EQ(s->pane->DrawWidth, 1);
}
