// Scale definition: arcs, straight scales, Decal, Exposant, Inversion.
#include "outils.h"

#include <cmath>

namespace {

constexpr double K = 0.017453293;

// Every line of the run, to 0.001 mm.
void ExpectLignes(const Session& s, const QVector<QLineF>& attendu) {
    const auto l = Lignes(s);
    ASSERT_EQ(l.size(), attendu.size());
    for (int i = 0; i < l.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_MM(l[i].x1, attendu[i].x1());
        EXPECT_MM(l[i].y1, attendu[i].y1());
        EXPECT_MM(l[i].x2, attendu[i].x2());
        EXPECT_MM(l[i].y2, attendu[i].y2());
    }
}

// What the run drew: the journal without the clearing of the pane.
int NbDessins(const Session& s) {
    int n = 0;
    for (const OpSurface& op : s.journal) n += op.genre != OpSurface::Effacement;
    return n;
}

} // namespace

// The scale's own line and ticks at positions 0 to 100 % (or scale values).
TEST(Echelle, ScaleLinesAndTicks) {
    const QString g = QStringLiteral("\nArc = 0, 180, 50\nGrad1 = 50, 5");
    const QVector<QLineF> dehors = {{0, 50, 0, 55}}, dedans = {{0, 50, 0, 45}};
    const QVector<QLineF> droite10000 = {{-50, 86.60254, 50, 86.60254}, {0, 86.60254, 0, 95.26280}};
    const struct { QString prog; QVector<QLineF> l; } cas[] = {
        // Over the top from left to right, or from right to left.
        {"Arc = 0, 180, 50\nGrad1 = 0, 5, , , 100, 5", {{-50, 0, -55, 0}, {50, 0, 55, 0}}},
        {"Arc = 180, 0, 50\nGrad1 = 0, 5, , , 25, 5",
         {{50, 0, 55, 0}, {35.35534, 35.35534, 38.89087, 38.89087}}},
        {"Arc = 0, 180§30, 50\nGrad1 = 0, 5", {{-43.30127, -25, -47.63140, -27.5}}},
        {"Exposant = 2\nArc = 0, 180, 50\nGrad1 = 50, 5", {{-35.35534, 35.35534, -38.89087, 38.89087}}},
        {"Exposant = L, 2\nArc = 0, 180, 50\nGrad1 = 1, 5, , , 10, 5, , , 100, 5",
         {{-50, 0, -55, 0}, {0, 50, 0, 55}, {50, 0, 55, 0}}},
        {"Exposant = L, 0, 2, 8\nDroite = 0, 100\nGrad1 = 2, 5, , , 3, 5, , , 4, 5, , , 8, 5",
         {{0, 0, 100, 0}, {0, 0, 0, 5}, {29.24813, 0, 29.24813, 5}, {50, 0, 50, 5}, {100, 0, 100, 5}}},
        // Inversion with no parameter or any other than 1 and -1 flips the side.
        {"Inversion = 5" + g, dedans},
        {"Inversion" + g, dedans},
        {"Inversion\nInversion" + g, dehors},
        {"Inversion = -1\nInversion = -1" + g, dedans},
        {"Inversion = -1\nInversion = 1" + g, dehors},
        {"Droite = 10, 80R, 5", {{10, 5, 90, 5}}},
        {"Droite = 0, 100§90, 10", {{-10, 0, -10, 100}}},
        {"DroiteV = -20, 40, 30, N\nGrad1 = 50, 4", {{30, 10, 34, 10}}},
        // One form lives at a time: a straight scale ends the arc and its Decal.
        {"Decal = -50, N\nArc = 30, 150, 60\nDroite = 0, 50\nGrad1 = 50, 5", {{0, 0, 50, 0}, {25, 0, 25, 5}}},
        {"Droite = 0, 50\nArc = 30, 150, 60\nGrad1 = 50, 5", {{0, 0, 50, 0}, {0, 60, 0, 65}}},
        {"Decal = -50, N\nArc = 30, 150, 60\nDroite = 0, 50\nArc = 30, 150, 60\nGrad1 = 50, 5",
         {{0, 0, 50, 0}, {0, 60, 0, 65}}},
        // From an offset of 10000 either way the arc is straight: the ticks go
        // along the needle's ray to the line y = R sin(a1).
        {"Decal = 10000\nArc = 60, 120, 100\nGrad1 = 50, 10", droite10000},
        {"Decal = -10000\nArc = 60, 120, 100\nGrad1 = 50, 10", droite10000},
        {"Decal = 25000\nArc = 60, 120, 100\nGrad1 = 50, 10", droite10000},
        {"Decal = -25000\nArc = 60, 120, 100\nGrad1 = 50, 10", droite10000},
        {"Decal = 10000\nArc = 60, 120, 100, N\nGrad1 = 0, 10, , , 25, 10",
         {{-50, 86.60254, -55, 95.26280}, {-23.20508, 86.60254, -25.52559, 95.26280}}},
        // Decal's cross of half size 1 at the drawn centre, unless N.
        {"Decal = -200, rouge\nArc = 60, 120, 100", {{-1, -200, 1, -200}, {0, -201, 0, -199}}},
        {"Decal = -200, N\nArc = 60, 120, 100", {}},
    };
    for (const auto& c : cas) {
        SCOPED_TRACE(c.prog.toStdString());
        auto s = Lance(c.prog);
        EXPECT_TRUE(Messages(*s).isEmpty());
        ExpectLignes(*s, c.l);
    }
}

// The circle of an arc: centre, radius, start and end angles in degrees.
TEST(Echelle, ArcCircles) {
    struct Arc { double x, y, r, debut, fin; };
    const struct { const char* prog; QVector<Arc> c; } cas[] = {
        {"Arc = 0, 180, 50", {{0, 0, 50, 0, 180}}},
        {"Arc = 180, 0, 50", {{0, 0, 50, 0, 180}}},
        {"Arc = 0, 180§30, 50", {{0, 0, 50, 30, 210}}},
        // Angles stay within one turn: never a negative one (a radius line).
        {"Arc = 0, 600, 50", {{0, 0, 50, 300, 180}}},
        {"Arc = 250, 290§-300, 50", {{0, 0, 50, 310, 350}}},
        // A flatter arc about a centre below the needle's axis, through its ends.
        {"Decal = -200\nArc = 60, 120, 100", {{0, -200, 290.93129, 80.10391, 99.89609}}},
        // On a wide scale the centre stays within half the radius.
        {"Decal = -80\nArc = -30, 210, 100", {{0, -50, 86.60254, 0, 180}}},
        {"Decal = 80\nArc = -30, 210, 100", {{0, 50, 132.28756, 310.89339, 229.10661}}},
        {"Decal = 10000\nArc = 60, 120, 100", {}}, {"Decal = -25000\nArc = 60, 120, 100", {}},
    };
    for (const auto& c : cas) {
        SCOPED_TRACE(c.prog);
        auto s = Lance(c.prog);
        const auto o = Ops(*s, OpSurface::Cercle);
        ASSERT_EQ(o.size(), c.c.size());
        for (int i = 0; i < o.size(); ++i) {
            EXPECT_MM(o[i].x1, c.c[i].x);
            EXPECT_MM(o[i].y1, c.c[i].y);
            EXPECT_MM(o[i].r, c.c[i].r);
            ASSERT_TRUE(o[i].debut && o[i].fin);
            EXPECT_NEAR(std::remainder(*o[i].debut / K - c.c[i].debut, 360), 0, 1e-4);
            EXPECT_NEAR(std::remainder(*o[i].fin / K - c.c[i].fin, 360), 0, 1e-4);
        }
    }
}

// A straight scale leaves the pen at its middle; a turned one gives it back unturned.
TEST(Echelle, PenAtTheMiddleOfAStraightScale) {
    const struct { const char* prog; double cx, cy, px, py; } cas[] = {
        {"Droite = 10, 80R, 5", 50, 5, 50, 5}, {"Droite = 0, 100§90, 10", -10, 50, 50, 10}};
    for (const auto& c : cas) {
        auto s = Lance(c.prog);
        EXPECT_MM(s->pane->CurrentX, c.cx) << c.prog;
        EXPECT_MM(s->pane->CurrentY, c.cy) << c.prog;
        EXPECT_MM(s->etat.Repere.PointX, c.px) << c.prog;
        EXPECT_MM(s->etat.Repere.PointY, c.py) << c.prog;
    }
}

// "?" writes a decentred arc's circle into its line as a comment; a %CMD
// variable gets the command, another variable the arc's length. %DECAL holds
// the opposite of the offset written; the cross keeps its colour.
TEST(Echelle, DecalVariablesAndEquivalentCommand) {
    auto s = Lance("Decal = -200\nArc = 60, 120, 100, , ?");
    EXPECT_EQ(s->hote.TexteEditeur().split(QStringLiteral("\r\n"))[1],
              QStringLiteral("Arc = 60, 120, 100,   'Cercle = 0., -200.,  290.93, 80.1, 99.9"));
    auto v = Lance("Decal = -200\nArc = 60, 120, 100, , %CMDa\nArc = 60, 120, 100, , %Long");
    EXPECT_EQ(Variable(*v, "%CMDa"), QStringLiteral("Cercle = 0., -200.,  290.93, 80.1, 99.9"));
    EXPECT_NEAR(Variable(*v, "%Long").toDouble(), 100.49894, 1e-3);
    EXPECT_TRUE(Variable(*Lance("Arc = 60, 120, 100, , %Long"), "%Long").isEmpty());
    auto d = Lance("Decal = 10000\nArc = 60, 120, 100, , %CMD");
    EXPECT_EQ(Variable(*d, "%CMD"), QStringLiteral("Trait = -50., 86.6, 50., 86.6"));
    auto c = Lance("Decal = -200, rouge\nArc = 60, 120, 100");
    EXPECT_EQ(Variable(*c, "%DECAL"), QStringLiteral("200"));
    EXPECT_EQ(Variable(*c, "%CouleurDECAL").trimmed(), QStringLiteral("rouge"));
    EXPECT_EQ(Lignes(*c).value(0).couleur, 255);
}

// Decal and the scale side are reset at the start of a run.
TEST(Echelle, RunStartResetsDecalAndSide) {
    auto s = Lance("Decal = -200\nInversion");
    EXPECT_EQ(s->etat.Ech.D, 200);
    EXPECT_EQ(s->etat.Ech.CoteGrad, -1);
    s->hote.SetTexte(Programme("Arc = 0, 180, 50"));
    s->journal.clear();
    s->Execute();
    EXPECT_EQ(s->etat.Ech.D, 0);
    EXPECT_EQ(s->etat.Ech.CoteGrad, 1);
    EXPECT_MM(Ops(*s, OpSurface::Cercle).value(0).r, 50);
}

// The commands that draw on a scale fail on the order before any scale.
TEST(Echelle, ScaleCommandsBeforeAnyScaleFail) {
    for (const char* prog : {"Grad = 10, 5", "Grad1 = 50, 5", "Val = 5, 0, 100, 8", "ValR = , 5, 0, 100, 8",
                             "ValD = , 5, 0, 100, 8", "Val1 = 50, a, 8", "Val1R = , 50, a, 8",
                             "Val1D = , 50, a, 8", "Sect = 0, 100, 2", "SectP = 0, 100, 2"}) {
        SCOPED_TRACE(prog);
        auto s = Lance(prog);
        ASSERT_EQ(Messages(*s).size(), 1);
        EXPECT_TRUE(Messages(*s)[0].contains(QStringLiteral("Erreur ordre commandes / Error odre commands")));
        EXPECT_EQ(NbDessins(*s), 0);
    }
}

// A scale with equal ends has no form: the next command on it fails and the
// level ends there; the line width is back to 1.
TEST(Echelle, EqualEndsFail) {
    const struct { const char* prog; int lignes; } cas[] = {
        {"Arc = 30, 30, 50\nGrad = 10, 5", 0}, {"Arc = 0, 0, 50\nGrad = 2, 5", 0},
        {"Droite = 10, 10\nGrad = 10, 5", 1}, {"DroiteV = 5, 5\nGrad1 = 50, 5", 1},
        {"Arc = 30, 30, 50\nVal = 5, 0, 100, 8", 0},
        {"Arc = 30, 30, 50, N\nSect = 0, 100, 2, , , 1mm\nCadre = 0, 0, 10, 10", 0},
    };
    for (const auto& c : cas) {
        SCOPED_TRACE(c.prog);
        auto s = Lance(c.prog);
        EXPECT_EQ(Messages(*s).size(), 1);
        EXPECT_EQ(Lignes(*s).size(), c.lignes);
        EXPECT_TRUE(Ops(*s, OpSurface::Texte).isEmpty());
        EXPECT_EQ(s->pane->DrawWidth, 1);
    }
}
