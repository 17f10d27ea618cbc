// The catenary, checked against the physics it must obey.
#include "outils.h"

#include <cmath>

static double LongueurTracee(const QVector<OpSurface>& l) {
    double n = 0;
    for (const OpSurface& o : l) n += std::hypot(o.x2 - o.x1, o.y2 - o.y1);
    return n;
}
static double Var(Session& s, const char* nom) { return Variable(s, nom).toDouble(); }

// A level span from the current point: the lowest point in the middle, the
// sag a ch(X/2a) - a, equal tensions at both ends.
TEST(Chaine, PorteeDeNiveauSymetrique) {
    auto s = Lance("Trait = 10, 20, 10, 20\nChain = 150, 0, 180, %a, , , , %T, %X0, %XS, %YS");
    auto l = Lignes(*s).mid(1);
    ASSERT_EQ(l.size(), 100);
    EXPECT_MM(l.first().x1, 10);
    EXPECT_MM(l.first().y1, 20);
    EXPECT_MM(l.last().x2, 160);
    EXPECT_MM(l.last().y2, 20);
    EXPECT_NEAR(LongueurTracee(l), 180, 0.01);
    const double a = Var(*s, "%a"), fleche = a * std::cosh(75 / a) - a;
    EXPECT_MM(l[49].y2, 20 - fleche);
    EXPECT_EQ(Variable(*s, "%X0"), "75");
    EXPECT_NEAR(Var(*s, "%YS"), fleche, 1e-3);
    const QStringList t = Variable(*s, "%T").split(", ");
    ASSERT_EQ(t.size(), 2);
    EXPECT_EQ(t[0], t[1]);
}

// Every mix of known values lands on the second end, DeltaY below the first,
// with the length asked for or handed back (L < 0: not checked).
TEST(Chaine, ChaqueMelangeDeDonneesAtteintLeSecondPoint) {
    const struct { const char* ligne; double X, Y; const char* varL; double L; } cas[] = {
        {"Chain = 100, 20, 150, %a", 100, 20, nullptr, 150},
        {"Chain = 100, -30, 130", 100, -30, nullptr, 130},
        {"Chain = 10, 60, 70", 10, 60, nullptr, 70}, // steep: Y / X above 4.85
        {"Chain = 10, -60, 61", 10, -60, nullptr, 61}, // as steep, the second end higher
        {"Chain = 1, -45.5, 50", 1, -45.5, nullptr, 50},
        {"Chain = 100, 20, %L, 40", 100, 20, "%L", 0},
        {"Chain = 100, %Y, 130, 40", 100, 0, nullptr, 130},
        {"Chain = 100, 10, %L, , 35", 100, 10, "%L", 0},
        {"Chain = -80, 0, 100", -80, 0, nullptr, 100},
        {"Chain = 50, 0, 60, , , 2, 1", 100, 0, nullptr, -1}, // the drawing scaled along x
    };
    for (const auto& c : cas) {
        SCOPED_TRACE(c.ligne);
        auto s = Lance(c.ligne);
        EXPECT_TRUE(Messages(*s).isEmpty()) << Messages(*s).join("|").toStdString();
        const auto l = Lignes(*s);
        ASSERT_EQ(l.size(), 100);
        const double Y = QString(c.ligne).contains("%Y") ? Var(*s, "%Y") : c.Y;
        const double L = c.varL ? Var(*s, c.varL) : c.L;
        EXPECT_MM(l.last().x2, c.X);
        EXPECT_NEAR(l.last().y2, -Y, std::abs(c.X) / 50000); // solved to X / 50000
        if (L > 0) EXPECT_NEAR(LongueurTracee(l), L, 0.02);
        for (const OpSurface& o : l) ASSERT_TRUE(std::isfinite(o.y2));
    }
}

// The largest slack below the chord, on a span that drops and on its mirror.
TEST(Chaine, PlusGrandeFlecheSousLaCorde) {
    for (const char* ligne : {"Chain = 100, 20, 130, , , , , , , %XS, %YS", "Chain = -100, 20, 130, , , , , , , %XS, %YS"}) {
        SCOPED_TRACE(ligne);
        auto s = Lance(ligne);
        double xs = 0, ys = 0;
        for (const OpSurface& o : Lignes(*s)) {
            const double v = -20 * std::abs(o.x2) / 100 - o.y2;
            if (v > ys) ys = v, xs = o.x2;
        }
        EXPECT_NEAR(Var(*s, "%YS"), ys, 0.01);
        EXPECT_NEAR(Var(*s, "%XS"), xs, 1); // the drawn points are 1 mm apart
    }
}

// A starting angle fixes the first slope; from 90 degrees on it is held at 573.
TEST(Chaine, AngleDeDepart) {
    auto s = Lance("Chain = 100, 0, %L, %a, 30\nChain = 100, 0, %L2, , 90\nChain = 100, 0, %L3, , 120");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 300);
    const double t30 = std::tan(30 * 0.017453293);
    EXPECT_NEAR((l[0].y2 - l[0].y1) / (l[0].x2 - l[0].x1), -t30, 0.01);
    EXPECT_NEAR(std::sinh(50 / Var(*s, "%a")), t30, 1e-3);
    EXPECT_EQ(Variable(*s, "%L2"), Variable(*s, "%L3"));
}

// A load: two curves of the two lengths meet at it, their vertical pulls carry
// its weight; a light load leaves the chain nearly as it hangs alone.
TEST(Chaine, ChargeEnEquilibre) {
    auto s = Lance("Chain = 100, 20, 150§40%§30, %a, , , , %T, , , , %XL, %YL\n"
                   "Chain = 100, 20, 150, %a0\nChain = 100, 20, 150§50§0.001, %a1");
    EXPECT_TRUE(Messages(*s).isEmpty()) << Messages(*s).join("|").toStdString();
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 500);
    const auto p1 = l.mid(0, 100), p2 = l.mid(100, 100);
    EXPECT_MM(p1.last().x2, Var(*s, "%XL"));
    EXPECT_MM(p1.last().y2, -Var(*s, "%YL"));
    EXPECT_MM(p2.last().x2, 100);
    EXPECT_MM(p2.last().y2, -20);
    EXPECT_NEAR(LongueurTracee(p1), 60, 0.02);
    EXPECT_NEAR(LongueurTracee(p2), 90, 0.02);
    // The slopes at the load, from the last two steps of each side.
    auto pente = [](const OpSurface& o) { return (o.y2 - o.y1) / (o.x2 - o.x1); };
    const double pente1 = 1.5 * pente(p1[99]) - 0.5 * pente(p1[98]), pente2 = 1.5 * pente(p2[0]) - 0.5 * pente(p2[1]);
    EXPECT_NEAR(Var(*s, "%a") * (pente2 - pente1), 30, 0.2);
    EXPECT_NEAR(Var(*s, "%a1"), Var(*s, "%a0"), 0.01);
    // Nearly taut, the load still hangs: at worst with the convergence warning, never a failure.
    s = Lance("Chain = 100, 0, 100.01§50§1000\n");
    EXPECT_EQ(Lignes(*s).size(), 200);
    for (const QString& m : Messages(*s)) EXPECT_TRUE(m.contains("mauvaise convergence")) << m.toStdString();
}

// Data without a solution fail the line and draw nothing.
TEST(Chaine, DonneesImpossibles) {
    for (const char* ligne : {"Chain = 100, 0, 100", "Chain = 100, 0, 90", "Chain = 100, 0",
                              "Chain = 100, 0, 150, , , , , T", "Chain = 100, 0, 150§160§5", "Chain = 0, 10, 150",
                              "Chain = 100, 0, %L", "Chain = 100, 0, 150, 10"}) {
        SCOPED_TRACE(ligne);
        auto s = Lance(ligne);
        ASSERT_EQ(Messages(*s).size(), 1);
        EXPECT_TRUE(Messages(*s)[0].startsWith("Erreur dans la ligne")) << Messages(*s)[0].toStdString();
        EXPECT_TRUE(Lignes(*s).isEmpty());
    }
}
