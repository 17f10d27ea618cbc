// Part 2.4: graduations. Expected tick ends are worked out here from the
// spec's formulas, to 0.001 mm.
#include "outils.h"

#include "drawing/grad.h"

#include <cmath>

namespace {

constexpr double K = 0.017453293;
constexpr double PI = 3.14159265358979;

// Needle point at deviation a (degrees), radius r, about (0, 0).
QPointF Aiguille(double a, double r) { return {-r * std::cos(a * K), r * std::sin(a * K)}; }

// Checks a radial tick from r1 to r2 at deviation a.
void TraitRadial(const OpSurface& l, double a, double r1, double r2) {
    const QPointF p = Aiguille(a, r1), q = Aiguille(a, r2);
    EXPECT_MM(l.x1, p.x());
    EXPECT_MM(l.y1, p.y());
    EXPECT_MM(l.x2, q.x());
    EXPECT_MM(l.y2, q.y());
}

// Deviation of a tick's base seen from (0, 0).
double Deviation(const OpSurface& l) { return (PI - std::atan2(l.y1, l.x1)) / K; }

// Ticks along a Droite = 0, 100 (R = 0): x of each tick's base.
QVector<double> XTraits(const Session& s) {
    QVector<double> r;
    const auto l = Lignes(s);
    for (int i = 1; i < l.size(); ++i) r << l[i].x1;
    return r;
}

bool Contient(const QStringList& l, const QString& t) {
    for (const QString& m : l)
        if (m.contains(t)) return true;
    return false;
}

} // namespace

// Grad = 10, 5 on Arc = 0, 180, 50: 11 ticks at 18 degree steps, radius 50 to 55.
TEST(Grad, OnzeTraitsDemiCercle) {
    auto s = Lance("Arc = 0, 180, 50\nGrad = 10, 5");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 11);
    for (int i = 0; i <= 10; ++i) {
        SCOPED_TRACE(i);
        TraitRadial(l[i], 0.000001 + i * (180 - 0.000001) / 10, 50, 55);
    }
    // The pen stays at the end of the last tick.
    EXPECT_MM(s->etat.Repere.PointX, 55);
    EXPECT_MM(s->etat.Repere.PointY, 0);
}

// Grad = 0, 5 draws 2 ticks: N becomes 1.
TEST(Grad, ZeroIntervallesDeuxTraits) {
    auto s = Lance("Arc = 0, 180, 50\nGrad = 0, 5");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 2);
    TraitRadial(l[0], 0.000001, 50, 55);
    TraitRadial(l[1], 180, 50, 55);
}

// Grad = 10, 5, 2, 4 draws numbers 2, 3 and 4.
TEST(Grad, PremDerDeuxAQuatre) {
    auto s = Lance("Droite = 0, 100\nGrad = 10, 5, 2, 4");
    EXPECT_EQ(XTraits(*s), (QVector<double>{20, 30, 40}));
    EXPECT_EQ(s->etat.Grad.Ind, 4);
    // Der is truncated toward 0; Prem beyond Der draws nothing.
    auto s2 = Lance("Droite = 0, 100\nGrad = 10, 5, 2, 4.9");
    EXPECT_EQ(XTraits(*s2).size(), 3);
    auto s3 = Lance("Droite = 0, 100\nGrad = 10, 5, 6, 4");
    EXPECT_EQ(XTraits(*s3).size(), 0);
}

// Exposant = 2, then Grad = 4, 5: ticks at 1/16, 4/16, 9/16 of the deviation.
TEST(Grad, ExposantDeuxQuatreIntervalles) {
    auto s = Lance("Exposant = 2\nArc = 0, 180, 50\nGrad = 4, 5");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 5);
    const double a1 = 0.000001, e = 180 - a1;
    const int carres[] = {0, 1, 4, 9, 16};
    for (int i = 0; i < 5; ++i) {
        SCOPED_TRACE(i);
        TraitRadial(l[i], a1 + e * carres[i] / 16, 50, 55);
    }
    // A power law on a straight scale.
    auto s2 = Lance("Exposant = 0.5\nDroite = 0, 100\nGrad = 4, 5");
    const auto x = XTraits(*s2);
    ASSERT_EQ(x.size(), 5);
    for (int i = 0; i <= 4; ++i) EXPECT_MM(x[i], 100 * std::sqrt(double(i)) / 2);
}

// Inversion flips a tick to the inner side; a negative length after it flips back.
TEST(Grad, InversionCoteInterieurLongueurNegative) {
    auto s = Lance("Arc = 0, 180, 50\nInversion\nGrad = 2, 5");
    auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 3);
    TraitRadial(l[1], 0.000001 + (180 - 0.000001) / 2, 50, 45);
    auto s2 = Lance("Arc = 0, 180, 50\nInversion\nGrad = 2, -5");
    l = Lignes(*s2);
    ASSERT_EQ(l.size(), 3);
    TraitRadial(l[1], 0.000001 + (180 - 0.000001) / 2, 50, 55);
}

// Grad = 1, 3 on Exposant = L, 2: ticks at 1, 2, ..., 10, 20, ..., 100.
TEST(Grad, LogDeuxDecadesIntervalleUn) {
    auto s = Lance("Exposant = L, 2\nDroite = 0, 100\nGrad = 1, 3");
    QVector<double> v;
    for (int d = 0; d < 2; ++d)
        for (int m = 1; m <= 9; ++m) v << m * std::pow(10.0, d);
    v << 100;
    const auto x = XTraits(*s);
    ASSERT_EQ(x.size(), v.size());
    for (int i = 0; i < v.size(); ++i) {
        SCOPED_TRACE(v[i]);
        EXPECT_MM(x[i], 100 * std::log(v[i]) / std::log(100.0));
    }
    const auto l = Lignes(*s);
    EXPECT_MM(l[1].y2, 3);
    EXPECT_EQ(s->etat.Grad.Ind, 10); // the loop's flag on the last tick
}

// One decade with an interval of 0.5: 1, 1.5, ..., 9.5, 10.
TEST(Grad, LogUneDecadeDemiIntervalle) {
    auto s = Lance("Exposant = L, 1\nDroite = 0, 100\nGrad = 0.5, 3");
    const auto x = XTraits(*s);
    ASSERT_EQ(x.size(), 19);
    for (int i = 0; i < 19; ++i) {
        const double v = 1 + 0.5 * i;
        SCOPED_TRACE(v);
        EXPECT_MM(x[i], 100 * std::log10(v));
    }
}

// Three decades with an interval of 2: starting at 1 the next value is 2.
TEST(Grad, LogTroisDecadesIntervalleDeux) {
    auto s = Lance("Exposant = L, 3\nDroite = 0, 90\nGrad = 2, 3");
    QVector<double> v;
    for (int d = 0; d < 3; ++d)
        for (double m : {1, 2, 4, 6, 8}) v << m * std::pow(10.0, d);
    v << 1000;
    const auto x = XTraits(*s);
    ASSERT_EQ(x.size(), v.size());
    for (int i = 0; i < v.size(); ++i) {
        SCOPED_TRACE(v[i]);
        EXPECT_MM(x[i], 90 * std::log10(v[i]) / 3);
    }
}

// Grad = 1§5, 3: 1 to 5 in each decade, then a jump to the next decade.
TEST(Grad, LogFinDecadeCinq) {
    auto s = Lance("Exposant = L, 2\nDroite = 0, 100\nGrad = 1§5, 3");
    const QVector<double> v = {1, 2, 3, 4, 5, 10, 20, 30, 40, 50, 100};
    const auto x = XTraits(*s);
    ASSERT_EQ(x.size(), v.size());
    for (int i = 0; i < v.size(); ++i) EXPECT_MM(x[i], 50 * std::log10(v[i]));
}

// With -5 the step is coarsened one rung at a time (1 -> 5) instead of the
// jump of 10; read as written, no value past 5 passes the drawing test of
// AvanceLog step 6, so the ticks drawn are those of 5 (see the report).
TEST(Grad, LogFinDecadeNegativeGrossitLePas) {
    auto s = Lance("Exposant = L, 2\nDroite = 0, 100\nGrad = 1§-5, 3");
    const QVector<double> v = {1, 2, 3, 4, 5, 10, 20, 30, 40, 50, 100};
    const auto x = XTraits(*s);
    ASSERT_EQ(x.size(), v.size());
    for (int i = 0; i < v.size(); ++i) EXPECT_MM(x[i], 50 * std::log10(v[i]));
    // Past 1.2 the step climbs 0.1, 0.2, 0.5, 1 until the last value 2.6 is
    // passed; with a positive end it jumps by 10 and the next decade resets it.
    auto s2 = Lance("Exposant = L, 1\nDroite = 0, 100\nGrad = 0.1§-1.2, 3, 1, 2.6");
    EXPECT_EQ(XTraits(*s2).size(), 3);
    EXPECT_FLOAT_EQ(s2->etat.Grad.Pas, 1.0f);
    auto s3 = Lance("Exposant = L, 1\nDroite = 0, 100\nGrad = 0.1§1.2, 3, 1, 2.6");
    EXPECT_EQ(XTraits(*s3).size(), 3);
    EXPECT_FLOAT_EQ(s3->etat.Grad.Pas, 0.1f);
}

// LogDebDecade: ticks begin at 2 in each decade; 1, 10 and 100 are passed over.
TEST(Grad, LogDebutDeDecade) {
    auto s = Lance("Exposant = L, 2\nDroite = 0, 100\nGrad = 1§10§2, 3");
    QVector<double> v;
    for (int d = 0; d < 2; ++d)
        for (int m = 2; m <= 9; ++m) v << m * std::pow(10.0, d);
    const auto x = XTraits(*s);
    ASSERT_EQ(x.size(), v.size());
    for (int i = 0; i < v.size(); ++i) EXPECT_MM(x[i], 50 * std::log10(v[i]));
}

// First and last as internal values, split by Mantisse.
TEST(Grad, LogPremDerValeursInternes) {
    auto s = Lance("Exposant = L, 2\nDroite = 0, 100\nGrad = 1, 3, 3, 50");
    QVector<double> v = {3, 4, 5, 6, 7, 8, 9, 10, 20, 30, 40, 50};
    const auto x = XTraits(*s);
    ASSERT_EQ(x.size(), v.size());
    for (int i = 0; i < v.size(); ++i) EXPECT_MM(x[i], 50 * std::log10(v[i]));
    // Interval 2 from 3: the first multiple at or above the start is 4.
    auto s2 = Lance("Exposant = L, 1\nDroite = 0, 100\nGrad = 2, 3, 3");
    EXPECT_MM(XTraits(*s2).value(0), 100 * std::log10(4.0));
}

// A log scale that doesn't start at 1: 2 to 8 in one decade.
TEST(Grad, LogDeuxAHuit) {
    auto s = Lance("Exposant = L, 0, 2, 8\nDroite = 0, 100\nGrad = 1, 3");
    const auto x = XTraits(*s);
    ASSERT_EQ(x.size(), 7);
    for (int i = 0; i < 7; ++i) EXPECT_MM(x[i], 100 * std::log((2.0 + i) / 2) / std::log(4.0));
}

// Mantisse: strict bounds.
TEST(Grad, MantisseBornesStrictes) {
    float m = 0;
    int d = 0;
    auto mant = [&](float v) { Mantisse(v, m, d); };
    mant(10);
    EXPECT_EQ(m, 10.0f);
    EXPECT_EQ(d, 0);
    mant(250);
    EXPECT_FLOAT_EQ(m, 2.5f);
    EXPECT_EQ(d, 2);
    mant(0.1f);
    EXPECT_FLOAT_EQ(m, 10.0f); // lands on 1 while multiplying: goes on to 10
    EXPECT_EQ(d, -2);
    mant(0.5f);
    EXPECT_FLOAT_EQ(m, 5.0f);
    EXPECT_EQ(d, -1);
}

// The tick angle on a Droite leans counter-clockwise, on a DroiteV 0 points right.
TEST(Grad, AngleDeTraitSurDroites) {
    auto s = Lance("Droite = 0, 100, 10\nGrad = 1, 5§30");
    auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 3);
    EXPECT_MM(l[1].x1, 0);
    EXPECT_MM(l[1].y1, 10);
    EXPECT_MM(l[1].x2, 5 * std::sin(-30 * K));
    EXPECT_MM(l[1].y2, 10 + 5 * std::cos(-30 * K));
    auto s2 = Lance("DroiteV = 0, 100, 10\nGrad = 1, 5§30");
    l = Lignes(*s2);
    ASSERT_EQ(l.size(), 3);
    EXPECT_MM(l[2].x1, 10);
    EXPECT_MM(l[2].y1, 100);
    EXPECT_MM(l[2].x2, 10 + 5 * std::cos(30 * K));
    EXPECT_MM(l[2].y2, 100 + 5 * std::sin(30 * K));
    // The angle isn't used on arcs.
    auto s3 = Lance("Arc = 0, 180, 50\nGrad = 1, 5§30");
    TraitRadial(Lignes(*s3)[0], 0.000001, 50, 55);
}

// Ticks on a decentred arc: base on the drawn arc, tip on the concentric
// circle of DistDecal(D, Rg + L, a1), both on the needle's ray.
TEST(Grad, ArcDecentre) {
    auto s = Lance("Decal = -200, N\nArc = 60, 120, 100, N\nGrad = 2, 10");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 3);
    const double D = 200;
    auto dist = [&](double r, double a) {
        return std::sqrt(D * D + r * r - 2 * D * r * std::cos((a + 90) * K));
    };
    const double rpBase = dist(100, 60), rpBout = dist(110, 60);
    for (int i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        const double A = (60 + 30 * i) * K;
        auto point = [&](double rp) {
            const double v = D * std::cos(A) / rp;
            const double b = (PI - A) - std::atan(v / std::sqrt(1 - v * v));
            return QPointF(rp * std::cos(b), -D + rp * std::sin(b));
        };
        const QPointF p = point(rpBase), q = point(rpBout);
        EXPECT_MM(l[i].x1, p.x());
        EXPECT_MM(l[i].y1, p.y());
        EXPECT_MM(l[i].x2, q.x());
        EXPECT_MM(l[i].y2, q.y());
        // On the needle's ray: the base is at deviation A seen from (0, 0).
        EXPECT_NEAR(Deviation(l[i]), 60 + 30 * i, 1e-4);
        // The base lies on the drawn arc.
        EXPECT_MM(std::hypot(l[i].x1, l[i].y1 + D), rpBase);
    }
    // The middle tick at deviation 90 is vertical, from the top of the drawn
    // arc (below the needle's radius: the arc is flatter) to the tip circle.
    EXPECT_MM(l[1].x1, 0);
    EXPECT_MM(l[1].y1, rpBase - D);
    EXPECT_MM(l[1].x2, 0);
    EXPECT_MM(l[1].y2, rpBout - D);
}

// Ind is 16-bit: more than 32767 ticks is an overflow failure.
TEST(Grad, IndSeizeBitsDepassement) {
    auto s = Lance("Droite = 0, 100, , N\nGrad = 40000, 1");
    EXPECT_EQ(Messages(*s).size(), 1);
    EXPECT_EQ(Lignes(*s).size(), 32768); // ticks 0 to 32767, then the overflow
}

// Grad on a rotated scale: the ticks turn with Rot.
TEST(Grad, EchelleTournee) {
    auto s = Lance("Droite = 0, 100§90\nGrad = 1, 5");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 3);
    EXPECT_MM(l[2].x1, 0);
    EXPECT_MM(l[2].y1, 100);
    EXPECT_MM(l[2].x2, -5);
    EXPECT_MM(l[2].y2, 100);
}

// Grad1 in groups of four: position, length, thickness, colour.
TEST(Grad1, GroupesDeQuatre) {
    auto s = Lance("Arc = 0, 180, 50\nGrad1 = 0, 5, , rouge, 50, 8, , , 100, 3, , bleu");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 3);
    TraitRadial(l[0], 0.000001, 50, 55);
    TraitRadial(l[1], 0.000001 + (180 - 0.000001) / 2, 50, 58);
    TraitRadial(l[2], 180, 50, 53);
    EXPECT_EQ(l[0].couleur, 255);
    EXPECT_EQ(l[1].couleur, 0);
    EXPECT_EQ(l[2].couleur, 16711680);
    // The pen at the tip of the last tick.
    EXPECT_MM(s->etat.Repere.PointX, 53);
}

// The "°" form: degrees of deviation, millimetres along a straight scale.
TEST(Grad1, FormeDegres) {
    auto s = Lance("Exposant = 2\nArc = 0, 180, 50\nGrad1 = 45°, 5");
    TraitRadial(Lignes(*s).value(0), 45, 50, 55);
    auto s2 = Lance("Droite = 10, 60\nGrad1 = 30°, 5");
    EXPECT_MM(Lignes(*s2).value(1).x1, 30);
}

// A list variable repeats the group for each item.
TEST(Grad1, ListeVariable) {
    auto s = Lance("%L =< 0§25§100\nArc = 0, 180, 50\nGrad1 = %L§%L, 5");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 3);
    TraitRadial(l[0], 0.000001, 50, 55);
    TraitRadial(l[1], 0.000001 + (180 - 0.000001) / 4, 50, 55);
    TraitRadial(l[2], 180, 50, 55);
    EXPECT_TRUE(s->etat.VarListeCourante.isEmpty());
    // Items of a list may carry "°"; a list with commas reads the same.
    auto s2 = Lance("%L = 30°,60°\nArc = 0, 180, 50\nGrad1 = %L§%L, 5, , , 50, 2");
    const auto l2 = Lignes(*s2);
    ASSERT_EQ(l2.size(), 3);
    TraitRadial(l2[0], 30, 50, 55);
    TraitRadial(l2[1], 60, 50, 55);
    TraitRadial(l2[2], 0.000001 + (180 - 0.000001) / 2, 50, 52);
}

// A list variable that doesn't exist counts as no list.
TEST(Grad1, ListeInexistante) {
    auto s = Lance("Arc = 0, 180, 50\nGrad1 = 50§%Rien, 5");
    ASSERT_EQ(Lignes(*s).size(), 1);
    TraitRadial(Lignes(*s)[0], 0.000001 + (180 - 0.000001) / 2, 50, 55);
}

// A tick of length 0 isn't drawn, but the pen goes to its place for Val1.
TEST(Grad1, LongueurZeroGardeLaPosition) {
    auto s = Lance("Arc = 0, 180§90, 50\nGrad1 = 50, 0");
    EXPECT_EQ(Lignes(*s).size(), 0);
    // Deviation 90 is up; turned by 90 it points left.
    EXPECT_MM(s->pane->CurrentX, -50);
    EXPECT_MM(s->pane->CurrentY, 0);
    EXPECT_MM(s->etat.Repere.PointX, 0);
    EXPECT_MM(s->etat.Repere.PointY, 50);
}

// Grad1's own thickness applies to its ticks; the width comes back after.
TEST(Grad1, EpaisseurLocale) {
    auto s = Lance("Arc = 0, 180, 50\nGrad1 = 50, 5, 1mm");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 1);
    EXPECT_GT(l[0].largeur, 1);
    EXPECT_EQ(s->pane->DrawWidth, 1);
}

// Grad1 on a log scale takes internal values.
TEST(Grad1, EchelleLogValeurInterne) {
    auto s = Lance("Exposant = L, 3\nDroite = 0, 90\nGrad1 = 20, 5");
    EXPECT_MM(Lignes(*s).value(1).x1, 90 * std::log10(20.0) / 3);
}

// Grad1 before any scale: the order failure.
TEST(Grad1, OrdreAvantEchelle) {
    auto s = Lance("Grad1 = 50, 5");
    EXPECT_TRUE(Contient(Messages(*s), QStringLiteral("Erreur ordre commandes / Error odre commands")));
}
