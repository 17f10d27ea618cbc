// Graduations: tick ends to 0.001 mm on arcs, straight and log scales.
#include "outils.h"

#include "drawing/grad.h"

#include <cmath>

namespace {

constexpr double K = 0.017453293;

// Needle point at deviation a (degrees), radius r, about (0, 0): 0 left, 90 up.
QPointF Aiguille(double a, double r) { return {-r * std::cos(a * K), r * std::sin(a * K)}; }

// x of each tick's base along a straight scale (the scale's own line first).
QVector<double> XTraits(const Session& s) {
    QVector<double> r;
    const auto l = Lignes(s);
    for (int i = 1; i < l.size(); ++i) r << l[i].x1;
    return r;
}

// Positions of values on a log scale of `mm` per decade starting at `debut`.
QVector<double> Log(double mm, std::initializer_list<double> v, double debut = 1) {
    QVector<double> r;
    for (double x : v) r << mm * std::log10(x / debut);
    return r;
}

} // namespace

// Radial ticks on Arc = 0, 180, 50 from radius 50; one tip radius, or one per tick.
TEST(Grad, RadialTicksOnAnArc) {
    struct Cas { const char* prog; QVector<double> a, bouts; };
    const Cas cas[] = {
        {"Grad = 10, 5", {0, 18, 36, 54, 72, 90, 108, 126, 144, 162, 180}, {55}},
        {"Grad = 0, 5", {0, 180}, {55}},  // no interval is one
        {"Grad = 1, 5§30", {0, 180}, {55}},  // the tick angle acts on straight scales only
        {"Inversion\nGrad = 2, 5", {0, 90, 180}, {45}},
        {"Inversion\nGrad = 2, -5", {0, 90, 180}, {55}},  // a negative length flips back
        {"Exposant = 2\nGrad = 4, 5", {0, 11.25, 45, 101.25, 180}, {55}},
        {"Grad1 = 0, 5, , rouge, 50, 8, , , 100, 3, , bleu", {0, 90, 180}, {55, 58, 53}},
        {"Exposant = 2\nGrad1 = 45°, 5", {45}, {55}},  // "°": a deviation, not a percentage
        {"%L =< 0§25§100\nGrad1 = %L§%L, 5", {0, 45, 180}, {55}},
        {"%L = 30°,60°\nGrad1 = %L§%L, 5, , , 50, 2", {30, 60, 90}, {55, 55, 52}},
        {"Grad1 = 50§%Rien, 5", {90}, {55}},  // a missing list variable is no list
    };
    for (const Cas& c : cas) {
        SCOPED_TRACE(c.prog);
        QString prog = QString::fromUtf8(c.prog);
        const int i = prog.indexOf(QStringLiteral("Grad"));
        auto s = Lance(prog.insert(i, QStringLiteral("Arc = 0, 180, 50\n")));
        const auto l = Lignes(*s);
        ASSERT_EQ(l.size(), c.a.size());
        for (int k = 0; k < l.size(); ++k) {
            const QPointF p = Aiguille(c.a[k], 50), q = Aiguille(c.a[k], c.bouts.value(k, c.bouts[0]));
            EXPECT_MM(l[k].x1, p.x());
            EXPECT_MM(l[k].y1, p.y());
            EXPECT_MM(l[k].x2, q.x());
            EXPECT_MM(l[k].y2, q.y());
        }
        // The pen stays at the tip of the last tick; a list is done with.
        EXPECT_MM(s->etat.Repere.PointX, l.last().x2);
        EXPECT_MM(s->etat.Repere.PointY, l.last().y2);
        EXPECT_TRUE(s->etat.VarListeCourante.isEmpty());
    }
}

// Tick bases along a straight scale: first and last, power laws, log decades.
TEST(Grad, TickPositionsAlongAStraightScale) {
    const QString d = QStringLiteral("Droite = 0, 100\n");
    const struct { QString prog; QVector<double> x; } cas[] = {
        {d + "Grad = 10, 5, 2, 4", {20, 30, 40}},
        {d + "Grad = 10, 5, 2, 4.9", {20, 30, 40}},  // the last is truncated toward 0
        {d + "Grad = 10, 5, 6, 4", {}},
        {"Exposant = 0.5\n" + d + "Grad = 4, 5", {0, 50, 70.7107, 86.6025, 100}},
        {"Droite = 10, 60\nGrad1 = 30°, 5", {30}},  // "°": millimetres along the scale
        {"Exposant = L, 2\n" + d + "Grad = 1, 3",
         Log(50, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 20, 30, 40, 50, 60, 70, 80, 90, 100})},
        {"Exposant = L, 1\n" + d + "Grad = 0.5, 3",
         Log(100, {1, 1.5, 2, 2.5, 3, 3.5, 4, 4.5, 5, 5.5, 6, 6.5, 7, 7.5, 8, 8.5, 9, 9.5, 10})},
        {"Exposant = L, 3\nDroite = 0, 90\nGrad = 2, 3",
         Log(30, {1, 2, 4, 6, 8, 10, 20, 40, 60, 80, 100, 200, 400, 600, 800, 1000})},
        // An end of decade: 1 to 5 in each decade, then on to the next.
        {"Exposant = L, 2\n" + d + "Grad = 1§5, 3", Log(50, {1, 2, 3, 4, 5, 10, 20, 30, 40, 50, 100})},
        {"Exposant = L, 2\n" + d + "Grad = 1§-5, 3", Log(50, {1, 2, 3, 4, 5, 10, 20, 30, 40, 50, 100})},
        {"Exposant = L, 1\n" + d + "Grad = 0.1§1.2, 3, 1, 2.6", Log(100, {1, 1.1, 1.2})},
        {"Exposant = L, 1\n" + d + "Grad = 0.1§-1.2, 3, 1, 2.6", Log(100, {1, 1.1, 1.2})},
        // A start of decade: 1, 10 and 100 are passed over.
        {"Exposant = L, 2\n" + d + "Grad = 1§10§2, 3",
         Log(50, {2, 3, 4, 5, 6, 7, 8, 9, 20, 30, 40, 50, 60, 70, 80, 90})},
        // First and last as values on the scale.
        {"Exposant = L, 2\n" + d + "Grad = 1, 3, 3, 50",
         Log(50, {3, 4, 5, 6, 7, 8, 9, 10, 20, 30, 40, 50})},
        {"Exposant = L, 1\n" + d + "Grad = 2, 3, 3", Log(100, {4, 6, 8, 10})},
        {"Exposant = L, 0, 2, 8\n" + d + "Grad = 1, 3",
         Log(100 / std::log10(4.0), {2, 3, 4, 5, 6, 7, 8}, 2)},
        {"Exposant = L, 3\nDroite = 0, 90\nGrad1 = 20, 5", Log(30, {20})},
    };
    for (const auto& c : cas) {
        SCOPED_TRACE(c.prog.toStdString());
        const auto x = XTraits(*Lance(c.prog));
        ASSERT_EQ(x.size(), c.x.size());
        for (int i = 0; i < x.size(); ++i) EXPECT_MM(x[i], c.x[i]);
    }
}

// Past a negative end of decade the step climbs 0.1, 0.2, 0.5, 1 until the
// last value is passed; past a positive one it stays for the next decade.
TEST(Grad, NegativeEndOfDecadeCoarsensTheStep) {
    auto pas = [](const char* g) {
        return Lance(QStringLiteral("Exposant = L, 1\nDroite = 0, 100\n") + g)->etat.Grad.Pas;
    };
    EXPECT_FLOAT_EQ(pas("Grad = 0.1§-1.2, 3, 1, 2.6"), 1.0f);
    EXPECT_FLOAT_EQ(pas("Grad = 0.1§1.2, 3, 1, 2.6"), 0.1f);
}

// Tick ends: the tick angle leans counter-clockwise on straight scales, a
// turned scale turns the ticks, and on a decentred arc a tick lies on the
// needle's ray, from the flatter drawn arc to the circle through the needle's
// tick tip at the scale's start.
TEST(Grad, TickEnds) {
    const struct { const char* prog; QVector<QLineF> l; } cas[] = {
        {"Droite = 0, 100, 10, N\nGrad = 1, 5§30", {{0, 10, -2.5, 14.33013}, {100, 10, 97.5, 14.33013}}},
        {"DroiteV = 0, 100, 10, N\nGrad = 1, 5§30", {{10, 0, 14.33013, 2.5}, {10, 100, 14.33013, 102.5}}},
        {"Droite = 0, 100§90, , N\nGrad = 1, 5", {{0, 0, -5, 0}, {0, 100, -5, 100}}},
        {"Decal = -200, N\nArc = 60, 120, 100, N\nGrad = 2, 10",
         {{-50, 86.60254, -55, 95.26280}, {0, 90.93129, 0, 100.34167}, {50, 86.60254, 55, 95.26280}}},
    };
    for (const auto& c : cas) {
        SCOPED_TRACE(c.prog);
        const auto l = Lignes(*Lance(c.prog));
        ASSERT_EQ(l.size(), c.l.size());
        for (int i = 0; i < l.size(); ++i) {
            EXPECT_MM(l[i].x1, c.l[i].x1());
            EXPECT_MM(l[i].y1, c.l[i].y1());
            EXPECT_MM(l[i].x2, c.l[i].x2());
            EXPECT_MM(l[i].y2, c.l[i].y2());
        }
    }
}

// The tick index is 16-bit: past 32767 ticks the run fails on an overflow.
TEST(Grad, MoreThan32767TicksOverflow) {
    auto s = Lance("Droite = 0, 100, , N\nGrad = 40000, 1");
    EXPECT_EQ(Messages(*s).size(), 1);
    EXPECT_EQ(Lignes(*s).size(), 32768);
}

// Mantissa and decade with strict bounds: 0.1 lands on 1 and goes on to 10.
TEST(Grad, MantissaHasStrictBounds) {
    const struct { float v, m; int d; } cas[] = {{10, 10, 0}, {250, 2.5f, 2}, {0.1f, 10, -2}, {0.5f, 5, -1}};
    for (const auto& c : cas) {
        float m = 0;
        int d = 0;
        Mantisse(c.v, m, d);
        EXPECT_FLOAT_EQ(m, c.m) << c.v;
        EXPECT_EQ(d, c.d) << c.v;
    }
}

// Each group of Grad1 has its own colour and thickness; the width comes back after.
TEST(Grad1, EachGroupHasItsOwnColourAndThickness) {
    auto s = Lance("Arc = 0, 180, 50\nGrad1 = 0, 5, , rouge, 50, 8, , , 100, 3, 1mm, bleu");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 3);
    EXPECT_EQ(l[0].couleur, 255);
    EXPECT_EQ(l[1].couleur, 0);
    EXPECT_EQ(l[2].couleur, 16711680);
    EXPECT_EQ(l[0].largeur, 1);
    EXPECT_GT(l[2].largeur, 1);
    EXPECT_EQ(s->pane->DrawWidth, 1);
}

// A tick of length 0 isn't drawn, but the pen goes to its place for Val1.
TEST(Grad1, ZeroLengthMovesThePenOnly) {
    auto s = Lance("Arc = 0, 180§90, 50\nGrad1 = 50, 0");
    EXPECT_EQ(Lignes(*s).size(), 0);
    EXPECT_MM(s->pane->CurrentX, -50);  // deviation 90 is up; turned by 90, left
    EXPECT_MM(s->pane->CurrentY, 0);
    EXPECT_MM(s->etat.Repere.PointX, 0);
    EXPECT_MM(s->etat.Repere.PointY, 50);
}
