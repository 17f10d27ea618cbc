// Line marks: Trait, Plus, X, Percer, Voyant, Fleche.
#include "outils.h"

#include <array>
#include <cmath>
#include <vector>

namespace {

constexpr double DegRad = 0.017453293;
using Trait4 = std::array<double, 4>; // x1, y1, x2, y2

QVector<OpSurface> Dessin(const Session& s) {
    QVector<OpSurface> r = s.journal;
    r.removeIf([](const OpSurface& op) { return op.genre == OpSurface::Effacement; });
    return r;
}

bool Proche(double x, double y, double ex, double ey) { return std::abs(x - ex) <= 0.001 && std::abs(y - ey) <= 0.001; }
bool Pointe(const Session& s, double x, double y) { return Proche(s.etat.Repere.PointX, s.etat.Repere.PointY, x, y); }

} // namespace

// The lines each mark draws, and where it leaves the current point (NAN: not checked).
TEST(Marques, LinesOfTheMarksAndTheCurrentPoint) {
    const double c30 = 2 * std::cos(30 * DegRad), s30 = 2 * std::sin(30 * DegRad);
    const double d45 = 2 * std::cos(45 * DegRad), k45 = std::cos(45 * DegRad);
    const double f = 5 * std::cos(30 * DegRad);
    struct Cas { const char* prog; std::vector<Trait4> lignes; double px = NAN, py = NAN; };
    const Cas cas[] = {
        // Without x, y: the mark stands on the current point, the line goes on from it.
        {"Trait = 0,0,10,5\nPlus = , , 2", {{0, 0, 10, 5}, {8, 5, 12, 5}, {10, 3, 10, 7}}, 10, 5},
        {"Trait = 0,0,10,5\nTrait = , , 20, 5", {{0, 0, 10, 5}, {10, 5, 20, 5}}, 20, 5},
        // R chains from the last point; SFx 2 and SFy 3 scale the relative values, for this command only.
        {"Trait = 1§2§3, 1, 1R, 1R, , , 1R, 0R, 0R, 2R\nTrait = , , 1R, 1R",
         {{2, 3, 4, 6}, {4, 6, 6, 6}, {6, 6, 6, 12}, {6, 12, 7, 13}}, 7, 13},
        {"Trait = 0§0§2, 0, 1R, 1R", {{0, 0, 1, 2}}}, // a factor of 0 reads as 1
        {"Trait = 0, 0, 90°, 10", {{0, 0, 0, 10}}},
        {"Trait = 5, 5, 180°, 10, , , 270°, 2", {{5, 5, -5, 5}, {-5, 5, -5, 3}}},
        // A turned Trait: points about 0,0, the current point given back unturned.
        {"Trait = 10, 0§90, 20, 0, , , 20R, 0R", {{0, 10, 0, 20}, {0, 20, 0, 40}}, 40, 0},
        // Plus: width 4 and x / y ratio 2; "+" is the same command.
        {"Plus = 10,10,4§2,BLEU", {{6, 10, 14, 10}, {10, 8, 10, 12}}},
        {"+ = 10,10,4§2", {{6, 10, 14, 10}, {10, 8, 10, 12}}},
        // The sign turns counter-clockwise with its own angle or the command's.
        {"Plus = 0,0,2,,,30", {{c30, s30, -c30, -s30}, {s30, -c30, -s30, c30}}},
        {"Plus = 0,0§30,2", {{c30, s30, -c30, -s30}, {s30, -c30, -s30, c30}}},
        {"X = 0,0,2", {{d45, -d45, -d45, d45}, {-d45, -d45, d45, d45}}},
        {"PercerX = 0,0,4", {{d45, -d45, -d45, d45}, {-d45, -d45, d45, d45}}},
        {"Percer = 10,10,8,ROUGE", {{6, 10, 14, 10}, {10, 6, 10, 14}}},
        // An open arrow: barbs of 30 degrees back from the tip; parameter 6 opens it, length 1 by default.
        {"Fleche = 10,10,0,5", {{10, 10, 10 - f, 7.5}, {10, 10, 10 - f, 12.5}}, 10, 10},
        {"Fleche = 0,0,90,,,90", {{0, 0, k45, -k45}, {0, 0, -k45, -k45}}},
        {"AngRot = 90\nFleche = 0,0,0,5", {{0, 0, 2.5, -f}, {0, 0, -2.5, -f}}},
    };
    for (const Cas& c : cas) {
        SCOPED_TRACE(c.prog);
        auto s = Lance(QString::fromUtf8(c.prog));
        const auto l = Lignes(*s);
        ASSERT_EQ(size_t(l.size()), c.lignes.size());
        for (size_t i = 0; i < c.lignes.size(); ++i) {
            const Trait4& a = c.lignes[i];
            EXPECT_TRUE(Proche(l[i].x1, l[i].y1, a[0], a[1]) && Proche(l[i].x2, l[i].y2, a[2], a[3]))
                << i << ": (" << l[i].x1 << ", " << l[i].y1 << ") to (" << l[i].x2 << ", " << l[i].y2 << ")";
        }
        EXPECT_TRUE(std::isnan(c.px) || Pointe(*s, c.px, c.py));
    }
}

// A Percer, a Fleche or a Plus of size 0 (whatever its ratio) only moves the pen.
TEST(Marques, ZeroSizeMarksDrawNothingButMoveThePen) {
    for (const char* prog : {"Percer = 10,10,0\nPercerX = 12,12,0", "Fleche = 10,10,45,0\nFlecheP = 12,12,45,0",
                             "Plus = 10,10,0§0\nX = 12,12,0"}) {
        auto s = Lance(prog);
        EXPECT_TRUE(Dessin(*s).isEmpty() && Pointe(*s, 12, 12)) << prog;
    }
}

TEST(Marques, TraitStyleColourAndLengthVariable) {
    auto s = Lance("Trait = 0,0,10,0,13,ROUGE,10,10\nTrait = 0,0,1,0\nPlus = 10,10,4,BLEU");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 5);
    EXPECT_TRUE(l[0].couleur == 255 && l[1].couleur == 255 && l[0].largeur == 2);
    EXPECT_TRUE(l[2].couleur == 0 && l[2].largeur == 1); // style and colour were the command's own
    EXPECT_EQ(l[3].couleur, 16711680);
    // The length drawn goes into the variable behind the second "§".
    auto t = Lance("Trait = 0, 0§§%L, 3, 4, , , 3, 10");
    EXPECT_EQ(Variable(*t, "%L"), QStringLiteral("11"));
}

TEST(Marques, PercerCircleDashedByThePattern) {
    auto s = Lance("Percer = 10,10,8,ROUGE");
    const auto d = Dessin(*s);
    ASSERT_EQ(d.size(), 3);
    EXPECT_TRUE(d[0].genre == OpSurface::Cercle && d[0].couleur == 255);
    EXPECT_TRUE(Proche(d[0].x1, d[0].y1, 10, 10) && Proche(d[0].r, 0, 4, 0));
    // Dash 2, gap 1 on radius 10: arcs of 0.2 rad every 0.3 rad.
    const auto c = Ops(*Lance("Percer = 0,0,20,,1§§2§1"), OpSurface::Cercle);
    ASSERT_EQ(c.size(), 21);
    EXPECT_TRUE(Proche(*c[0].debut, *c[0].fin, 0, 0.2) && Proche(*c[1].debut, *c[1].fin, 0.3, 0.5));
}

TEST(Marques, VoyantFillsTheDiscOrTwoQuarters) {
    auto s = Lance("Couleur = BLEU\nVoyant = 10,10,8,1,ROUGE");
    auto d = Dessin(*s);
    ASSERT_EQ(d.size(), 2);
    EXPECT_TRUE(d[0].genre == OpSurface::Cercle && Proche(d[0].r, 0, 4, 0) && d[0].largeur == 1);
    EXPECT_TRUE(d[0].remplissage == 255 && d[0].couleur == 255);
    EXPECT_TRUE(d[1].couleur == 16711680 && !d[1].remplissage); // the outline, in the default colour
    EXPECT_TRUE(s->pane->FillStyle == 1 && Pointe(*s, 10, 10));
    // An empty y takes the current y.
    const auto c = Ops(*Lance("Trait = 0,0,3,7\nVoyant = 20, , 4, 1"), OpSurface::Cercle);
    EXPECT_TRUE(Proche(c.value(0).x1, c.value(0).y1, 20, 7));
    // Type 2: quarters 0-90 and 180-270 filled, a direction of 0 being -0.001 rad.
    d = Dessin(*Lance("Voyant = 10,10,8,2,VERT"));
    ASSERT_EQ(d.size(), 3);
    EXPECT_NEAR(*d[0].debut, -0.001, 1e-12);
    EXPECT_TRUE(Proche(*d[0].fin, *d[1].debut, -90 * DegRad, -180 * DegRad) && Proche(*d[1].fin, 0, -270 * DegRad, 0));
    EXPECT_EQ(d[1].remplissage, 65280);
    EXPECT_TRUE(!d[2].debut && d[2].couleur == 0);
    // Types 3, 4 and above start at 90, 45 and 135 degrees.
    for (auto [type, debut] : {std::pair{3, 90}, {4, 45}, {9, 135}})
        EXPECT_NEAR(*Dessin(*Lance(QStringLiteral("Voyant = 10,10,8,%1,VERT").arg(type)))[0].debut,
                    -debut * DegRad, 1e-9) << type;
    EXPECT_TRUE(Dessin(*Lance("Voyant = 10,10,8,2,N")).isEmpty());
}

TEST(Marques, FlechePFillsTheTipThenDrawsTheBarbs) {
    auto s = LanceImprimante("FlecheP = 10,10,0,5,,,ROUGE");
    const auto d = Dessin(*s);
    ASSERT_EQ(d.size(), 4); // the page mark, the tip, two barbs
    EXPECT_TRUE(d[0].genre == OpSurface::Point && d[2].genre == OpSurface::Ligne && d[3].couleur == 255);
    EXPECT_TRUE(d[1].genre == OpSurface::Polygone && d[1].remplissage == 255);
    ASSERT_EQ(d[1].points.size(), 3);
    const double point = 25.4 / 600;
    EXPECT_TRUE(std::abs(d[1].points[0].x() - 10) < point && std::abs(d[1].points[0].y() - 10) < point);
    EXPECT_NEAR(d[1].points[1].y(), 7.5, point);
}
