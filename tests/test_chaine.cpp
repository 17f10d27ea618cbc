// The catenary: the solved curve checked against the physics it must obey
// (its drawn length, its ends, its lowest point, the balance at a load), the
// results handed back, and the data that fail the line.
#include "outils.h"

#include <cmath>

namespace {

double LongueurTracee(const QVector<OpSurface>& l) {
    double n = 0;
    for (const OpSurface& o : l) n += std::hypot(o.x2 - o.x1, o.y2 - o.y1);
    return n;
}

double Var(Session& s, const char* nom) { return Variable(s, nom).toDouble(); }

} // namespace

// A level span: the lowest point in the middle, a curve of the given length
// from the current point to the second end, and the results in the variables.
TEST(Chaine, PorteeDeNiveauSymetrique) {
    auto s = Lance("Trait = 10, 20, 10, 20\nChain = 150, 0, 180, %a, , , , %T, %X0, %XS, %YS");
    auto l = Lignes(*s);
    l.removeFirst();
    ASSERT_EQ(l.size(), 100);
    EXPECT_MM(l.first().x1, 10);
    EXPECT_MM(l.first().y1, 20);
    EXPECT_MM(l.last().x2, 160);
    EXPECT_MM(l.last().y2, 20);
    EXPECT_NEAR(LongueurTracee(l), 180, 0.01);
    // The lowest point is the end of the 50th step, the sag a ch(X/2a) - a.
    const double a = Var(*s, "%a");
    EXPECT_NEAR(2 * a * std::sinh(75 / a), 180, 1e-3);
    EXPECT_MM(l[49].y2, 20 - (a * std::cosh(75 / a) - a));
    EXPECT_EQ(Variable(*s, "%X0"), "75");
    EXPECT_NEAR(Var(*s, "%YS"), a * std::cosh(75 / a) - a, 1e-3);
    // The tensions at the two ends of a level span are equal.
    const QStringList t = Variable(*s, "%T").split(", ");
    ASSERT_EQ(t.size(), 2);
    EXPECT_EQ(t[0], t[1]);
}

// Every mix of known values that fixes the curve lands on the second end
// (drawn DeltaY below the first) with the length asked for or handed back.
TEST(Chaine, ChaqueMelangeDeDonneesAtteintLeSecondPoint) {
    struct Cas {
        const char* ligne;
        double X, Y;
        const char* varL; // the length, given or handed back
        double L;
    };
    const Cas cas[] = {
        {"Chain = 100, 20, 150, %a", 100, 20, nullptr, 150},
        {"Chain = 100, -30, 130", 100, -30, nullptr, 130},
        // Steep: Y / X above 4.85.
        {"Chain = 10, 60, 70", 10, 60, nullptr, 70},
        {"Chain = 100, 20, %L, 40", 100, 20, "%L", 0},
        {"Chain = 100, %Y, 130, 40", 100, 0, nullptr, 130},
        {"Chain = 100, 10, %L, , 35", 100, 10, "%L", 0},
        // Leftwards.
        {"Chain = -80, 0, 100", -80, 0, nullptr, 100},
        // Scaled twice along x: the drawing, not the solution.
        {"Chain = 50, 0, 60, , , 2, 1", 100, 0, nullptr, -1},
    };
    for (const Cas& c : cas) {
        SCOPED_TRACE(c.ligne);
        auto s = Lance(c.ligne);
        EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
        const auto l = Lignes(*s);
        ASSERT_EQ(l.size(), 100);
        double Y = c.Y;
        if (QString(c.ligne).contains("%Y")) Y = Var(*s, "%Y");
        EXPECT_MM(l.last().x2, c.X);
        // The lowest point is solved to X / 50000 of the drop.
        EXPECT_NEAR(l.last().y2, -Y, std::abs(c.X) / 50000);
        const double L = c.varL ? Var(*s, c.varL) : c.L;
        if (L > 0) EXPECT_NEAR(LongueurTracee(l), L, 0.02);
        for (const OpSurface& o : l) ASSERT_TRUE(std::isfinite(o.y2));
    }
}

// A starting angle fixes the slope at the first point; at 90 degrees or more
// the slope is held at 573, and a level span is lowered by 0.000001.
TEST(Chaine, AngleDeDepart) {
    auto s = Lance("Chain = 100, 0, %L, %a, 30\nChain = 100, 0, %L2, , 90\nChain = 100, 0, %L3, , 120");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 300);
    EXPECT_NEAR((l[0].y2 - l[0].y1) / (l[0].x2 - l[0].x1), -std::tan(30 * 0.017453293), 0.01);
    EXPECT_EQ(Variable(*s, "%L2"), Variable(*s, "%L3"));
    const double a = Var(*s, "%a");
    EXPECT_NEAR(std::sinh(50 / a), std::tan(30 * 0.017453293), 1e-3);
}

// A load: two curves meet at the load, of the two lengths, and the balance
// holds; a light load leaves the chain nearly as it hangs alone.
TEST(Chaine, ChargeEnEquilibre) {
    auto s = Lance("Chain = 100, 20, 150§40%§30, %a, , , , %T, , , , %XL, %YL\n"
                   "Chain = 100, 20, 150, %a0\n"
                   "Chain = 100, 20, 150§50§0.001, %a1");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 200 + 100 + 200);
    const auto p1 = l.mid(0, 100), p2 = l.mid(100, 100);
    const double XL = Var(*s, "%XL"), YL = Var(*s, "%YL");
    EXPECT_MM(p1.last().x2, XL);
    EXPECT_MM(p1.last().y2, -YL);
    EXPECT_MM(p2.last().x2, 100);
    EXPECT_MM(p2.last().y2, -20);
    EXPECT_NEAR(LongueurTracee(p1), 60, 0.02);
    EXPECT_NEAR(LongueurTracee(p2), 90, 0.02);
    // The vertical pulls of the two curves at the load carry its weight.
    const double a = Var(*s, "%a");
    // The slopes at the load, from the last two steps of each side.
    auto pente = [](const OpSurface& o) { return (o.y2 - o.y1) / (o.x2 - o.x1); };
    const double pente1 = 1.5 * pente(p1[99]) - 0.5 * pente(p1[98]);
    const double pente2 = 1.5 * pente(p2[0]) - 0.5 * pente(p2[1]);
    EXPECT_NEAR(a * (pente2 - pente1), 30, 0.2);
    EXPECT_NEAR(Var(*s, "%a1"), Var(*s, "%a0"), 0.01);
}

// Data that have no solution fail the line; nothing unsolved is drawn.
TEST(Chaine, DonneesImpossibles) {
    for (const char* ligne : {
             "Chain = 100, 0, 100",              // as long as the chord
             "Chain = 100, 0, 90",               // shorter
             "Chain = 100, 0",                   // fewer than 3 parameters
             "Chain = 100, 0, 150, , , , , T",   // not a variable where one is due
             "Chain = 100, 0, 150§160§5",        // the load beyond the length
             "Chain = 0, 10, 150",               // no span
             "Chain = 100, 0, %L",               // not enough to go on
             "Chain = 100, 0, 150, 10",          // too short for this a
         }) {
        SCOPED_TRACE(ligne);
        auto s = Lance(ligne);
        ASSERT_EQ(s->hote.Messages().size(), 1);
        EXPECT_TRUE(Messages(*s)[0].startsWith("Erreur dans la ligne")) << Messages(*s)[0].toStdString();
        EXPECT_TRUE(Lignes(*s).isEmpty());
    }
}
