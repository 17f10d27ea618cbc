// Sectors: the outline of a band along the scale, to 0.001 mm.
#include "outils.h"

#include <QTransform>

#include <cmath>

namespace {

constexpr double K = 0.017453293;
constexpr double PI = 3.14159265358979;

// Distance from the drawn centre, offset D below the needle's axis, of the
// needle point at radius r and deviation a (degrees).
double Dist(double d, double r, double a) {
    return std::sqrt(d * d + r * r - 2 * d * r * std::cos((a + 90) * K));
}

// The closed outline of an arc band in n steps: edge 1 at needle radius d1
// from deviation A1 to A2, edge 2 back at d2; the scale starts at a1 and is
// turned by rot degrees. A point's direction b from the drawn centre is
// (pi - A) - ArcSin(D cos A / r).
QPolygonF Bande(double D, double a1, double A1, double A2, double d1, double d2, int n, double rot = 0) {
    QPolygonF p;
    for (const auto& [r, de, a] : {std::tuple{Dist(D, d1, a1), A1, A2}, std::tuple{Dist(D, d2, a1), A2, A1}}) {
        const double b1 = PI - de * K - std::asin(D * std::cos(de * K) / r);
        const double b2 = PI - a * K - std::asin(D * std::cos(a * K) / r);
        for (int i = 0; i <= n; ++i) {
            const double b = b1 + i * (b2 - b1) / n;
            p << QPointF(r * std::cos(b), -D + r * std::sin(b));
        }
    }
    p << p.first();
    return QTransform().rotate(rot).map(p);
}

// The outline of a band on a straight scale from a1 to a2 along it, d1 to d2
// across it; a DroiteV swaps the axes.
QPolygonF Bord(double a1, double a2, double d1, double d2, bool v = false) {
    QPolygonF p = {{a1, d1}, {a2, d1}, {a2, d2}, {a1, d2}, {a1, d1}};
    return v ? QTransform(0, 1, 1, 0, 0, 0).map(p) : p;
}

// What the run drew: the journal without the clearing of the pane.
QVector<OpSurface> Dessin(const Session& s) {
    QVector<OpSurface> r;
    for (const OpSurface& op : s.journal)
        if (op.genre != OpSurface::Effacement) r.append(op);
    return r;
}

} // namespace

// The lines of a sector are the outline's consecutive pairs. On an arc the
// edges take n = 2 |b1 - b2| d2 steps, at least 25 and at most 500.
TEST(Sect, Outlines) {
    const QPointF c1(-45, 77.94229), c2(45, 77.94229), c3(50, 86.60254), c4(-50, 86.60254);
    const struct { const char* prog; QPolygonF p; } cas[] = {
        {"Arc = 0, 180, 50\nSect = 0, 100, 2, 2", Bande(0, 0, 0, 180, 2, 2, 25)},  // one circle
        {"Arc = -45, 225, 10\nSect = 0, 100, 1, 1.5", Bande(0, -45, -45, 225, 1, 1.5, 25)},
        {"Arc = 0, 180, 200\nSect = 0, 100, 190, 200", Bande(0, 0, 0, 180, 190, 200, 500)},
        {"Arc = 0, 180, 50\nSect = 0, 100, 10, 20", Bande(0, 0, 0, 180, 10, 20, 126)},
        // Mixed forms: degrees for the start, percent for the end.
        {"Arc = 0, 180, 50\nSect = 30°, 50, 40, 45", Bande(0, 0, 30, 90, 40, 45, 94)},
        {"Arc = 0, 180§30, 50\nSect = 0, 100, 40, 45", Bande(0, 0, 0, 180, 40, 45, 283, 30)},
        // A decentred arc: both edges are circles about the drawn centre.
        {"Decal = -200, N\nArc = 60, 120, 100, N\nSect = 0, 100, 100, 110",
         Bande(200, 60, 60, 120, 100, 110, 76)},
        // The straight limit: four corners on the projection of the needle.
        {"Decal = 10000, N\nArc = 60, 120, 100, N\nSect = 0, 100, 90, 100", {c1, c2, c3, c4, c1}},
        // Straight scales: above y = R on a Droite, right of x = R on a DroiteV.
        {"Droite = 0, 100, 10, N\nSect = 20, 60, 2, 5", Bord(20, 60, 12, 15)},
        {"DroiteV = 0, 100, 10, N\nSect = 20, 60, 2, 5", Bord(20, 60, 12, 15, true)},
        {"Droite = 0, 100, 10, N\nSect = 20, 60, 2", Bord(20, 60, 12, 12)},  // no d2: no width
        {"Droite = 0, 100, , N\nSect = 50, 50, 0, 5", Bord(50, 50, 0, 5)},  // no length: a line
        {"Droite = 0, 200, , N\nSect = 50, 30°, 0, 5", Bord(100, 30, 0, 5)},  // "°": millimetres
        {"Exposant = L, 2\nDroite = 0, 100, , N\nSect = 10, 100, 0, 5", Bord(50, 100, 0, 5)},
        {"Exposant = 2\nDroite = 0, 100, , N\nSect = 50, 100, 0, 5", Bord(25, 100, 0, 5)},
    };
    for (const auto& c : cas) {
        SCOPED_TRACE(c.prog);
        const auto l = Lignes(*Lance(c.prog));
        ASSERT_EQ(l.size(), c.p.size() - 1);
        for (int i = 0; i < l.size(); ++i) {
            SCOPED_TRACE(i);
            EXPECT_MM(l[i].x1, c.p[i].x());
            EXPECT_MM(l[i].y1, c.p[i].y());
            EXPECT_MM(l[i].x2, c.p[i + 1].x());
            EXPECT_MM(l[i].y2, c.p[i + 1].y());
        }
    }
}

// The pen ends on the outline's first point, unturned; colour N draws nothing
// but moves it there, as the base of the next R-relative coordinate.
TEST(Sect, PenEndsOnTheFirstPoint) {
    const double A = 36 * K;  // 20 % of 0..180
    for (const char* prog : {"Arc = 0, 180§30, 50\nSect = 20, 60, 40, 45",
                             "Arc = 0, 180, 50\nSect = 20, 60, 40, 45, N",
                             "Arc = 0, 180, 50\nSectP = 20, 60, 40, 45, N"}) {
        SCOPED_TRACE(prog);
        auto s = Lance(prog);
        EXPECT_TRUE(Messages(*s).isEmpty());
        EXPECT_MM(s->etat.Repere.PointX, -40 * std::cos(A));
        EXPECT_MM(s->etat.Repere.PointY, 40 * std::sin(A));
        if (QString(prog).endsWith(u'N')) EXPECT_EQ(Dessin(*s).size(), 1);  // the arc alone
    }
    const auto l = Lignes(*Lance("Arc = 0, 180, 50\nSect = 0, 100, 40, 45, N\nCadre = R, R, 10R, 10R"));
    ASSERT_FALSE(l.isEmpty());
    EXPECT_MM(l[0].x1, -40);
    EXPECT_MM(l[0].y1, 0);
}

// SectP: the pen's PSet off the page, then one filled polygon of the outline in
// whole device pixels, turned with the scale; no outline.
TEST(SectP, FilledPolygonWithoutOutline) {
    auto s = Lance("Arc = 0, 180§30, 50, N\nSectP = 0, 100, 40, 45, ROUGE");
    const auto ops = Dessin(*s);
    ASSERT_EQ(ops.size(), 2);
    EXPECT_EQ(ops[0].genre, OpSurface::Point);
    EXPECT_EQ(ops[0].couleur, 255);
    EXPECT_MM(ops[0].x1, s->pane->ScaleLeft - 1000);
    EXPECT_MM(ops[0].y1, s->pane->ScaleTop + 1000);
    const OpSurface& poly = ops[1];
    EXPECT_EQ(poly.genre, OpSurface::Polygone);
    EXPECT_EQ(poly.couleur, 255);
    EXPECT_EQ(poly.remplissage.value_or(-1), 255);
    const QPolygonF p = Bande(0, 0, 0, 180, 40, 45, 283, 30);
    ASSERT_EQ(poly.points.size(), p.size());
    const double px = s->etat.Repere.MmParPixelE;
    for (int i = 0; i < p.size(); ++i) {
        EXPECT_NEAR(poly.points[i].x(), p[i].x(), px);
        EXPECT_NEAR(poly.points[i].y(), p[i].y(), px);
    }
    EXPECT_EQ(s->pane->FillStyle, 1);
}

// The command's own thickness, restored afterward.
TEST(Sect, OwnThicknessIsRestored) {
    auto s = Lance("Droite = 0, 100\nSect = 0, 100, 0, 5, , 1mm\nGrad = 1, 3");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 1 + 4 + 2);
    const int w = int(std::nearbyint(1 / s->etat.Repere.MmParPixelE));
    for (int i = 1; i <= 4; ++i) EXPECT_EQ(l[i].largeur, w);
    EXPECT_EQ(l[5].largeur, 1);
    EXPECT_EQ(l[1].couleur, 0);
}
