// Polygons, regular polygons, crescents and Bezier curves: outlines, fills, point files, failures.
#include "outils.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cmath>

namespace {

void ExpectCoins(const QVector<OpSurface>& l, const QVector<QPointF>& attendus) {
    ASSERT_EQ(l.size(), attendus.size());
    for (int i = 0; i < l.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_MM(l[i].x1, attendus[i].x());
        EXPECT_MM(l[i].y1, attendus[i].y());
        // Closed: each line ends where the next one starts.
        EXPECT_MM(l[i].x2, attendus[(i + 1) % attendus.size()].x());
        EXPECT_MM(l[i].y2, attendus[(i + 1) % attendus.size()].y());
    }
}

// The kinds of the operations in order, lines counted once per run of lines.
QString Ordre(const Session& s) {
    QString r;
    for (const OpSurface& op : s.journal) {
        const QChar c = op.genre == OpSurface::Ligne      ? u'L'
                        : op.genre == OpSurface::Polygone ? u'P'
                        : op.genre == OpSurface::Cercle   ? u'C'
                                                          : u'.';
        if (c != u'.' && (r.isEmpty() || r.back() != c)) r += c;
    }
    return r;
}

} // namespace

TEST(Formes, PolygonOutlines) {
    const double h = 10 / std::tan(3.14159265358979 / 6) / 2;
    struct Cas { const char* programme; QVector<QPointF> coins; } cas[] = {
        {"Poly = 10,10, 50,10, 30,40", {{10, 10}, {50, 10}, {30, 40}}},
        {"Poly = 10,10, 40R,0R, -20R,30R", {{10, 10}, {50, 10}, {30, 40}}},
        // Scale factors behind x1, also on relative values.
        {"Poly = 10§2§3, 10, 20R, 0R, 0R, 10R", {{20, 30}, {60, 30}, {60, 60}}},
        // The polygon's own turn about point 1 (clockwise), then about 0,0.
        {"Poly = 0,0§90, 10,0, 0,10", {{0, 0}, {0, -10}, {10, 0}}},
        {"Poly = 0,0§§90, 10,0, 0,10", {{0, 0}, {0, 10}, {-10, 0}}},
        // A negative count starts the first side at the point; -radius is the side.
        {"PolyR = 0, 0, -4, -10", {{0, 0}, {10, 0}, {10, 10}, {0, 10}}},
        {"PolyR = 0, 0, -4, -10, 90", {{0, 0}, {0, -10}, {10, -10}, {10, 0}}},
        // A positive count centres it; the first side and its opposite take L1.
        {"PolyR = 0, 0, 4, -10§20", {{-10, -5}, {10, -5}, {10, 5}, {-10, 5}}},
        {"PolyR = 0, 0, 6, 10", {{-5, -h}, {5, -h}, {10, 0}, {5, h}, {-5, h}, {-10, 0}}},
    };
    for (const Cas& c : cas) {
        SCOPED_TRACE(c.programme);
        auto s = Lance(c.programme);
        EXPECT_TRUE(Messages(*s).isEmpty());
        ExpectCoins(Lignes(*s), c.coins);
    }
}

TEST(Formes, ColourFillAndOrder) {
    // An odd count of parameters starts with the colour and its line style.
    auto s = Lance("PolyP = ROUGE§1mm, 10,10, 50,10, 30,40");
    EXPECT_EQ(Ordre(*s), "PL");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 3);
    EXPECT_TRUE(l[0].couleur == RGB(255, 0, 0) && l[0].largeur > 1);
    EXPECT_EQ(Ops(*s, OpSurface::Polygone)[0].remplissage, RGB(255, 0, 0));
    // PolyRP: the fill colour behind the line colour.
    s = Lance("PolyRP = 0, 0, -4, -10, , BLEU§JAUNE");
    EXPECT_EQ(Ordre(*s), "PL");
    EXPECT_EQ(Ops(*s, OpSurface::Polygone)[0].remplissage, RGB(255, 255, 0));
    EXPECT_EQ(Lignes(*s)[0].couleur, RGB(0, 0, 255));
    // Nothing drawn with the colour N, and nothing for an empty Poly.
    EXPECT_TRUE(Lance("PolyP = N, 10,10, 50,10, 30,40")->journal.size() <= 2);
    EXPECT_EQ(Ordre(*Lance("Poly =")), "");
}

TEST(Formes, PointFile) {
    QTemporaryDir d;
    QFile f(d.filePath("pts.txt"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    // "'EOD" at a line's start is a comment; after it, it ends the points.
    f.write("' the outline\r\n0,5;0\r\n1\r\n'EOD\r\n10;0R\n5;10\r\n 'EOD\r\n99;99\r\n");
    f.close();
    auto s = std::make_unique<Session>(Programme("Poly = FIC§2, pts"));
    s->etat.FichierPrincipal = d.filePath("panneau.dat");
    s->Execute();
    EXPECT_TRUE(Messages(*s).isEmpty());
    ExpectCoins(Lignes(*s), {{1, 0}, {20, 0}, {10, 10}});
}

TEST(Formes, FailuresOfTheLine) {
    QString mille = "Poly = 0,0";
    for (int i = 0; i < 1000; ++i) mille += ", 1R, 0";
    const QString cas[] = {"Poly = 0,0, 10,0", "PolyR = 0,0,2", "PolyR = 0,0,-2",
                           "Poly = 0, FIC, absent", mille,
                           "BezierP = , , , 0,0, , , 20000,0, ,"};
    for (const QString& p : cas) {
        SCOPED_TRACE(p.left(40).toStdString());
        auto s = Lance(p);
        ASSERT_EQ(Messages(*s).size(), 1);
        EXPECT_TRUE(Messages(*s)[0].startsWith("Erreur dans la ligne : 1: " + p.left(20)));
    }
    EXPECT_TRUE(Messages(*Lance("Poly = 0, FIC, absent"))[0].contains("absent.txt : fichier non trouvé"));
}

TEST(Formes, Crescent) {
    // Width 0: both edges on the radius; a tiny one still has 25 steps a side.
    for (auto [r, n] : {std::pair{20, 31}, {1, 25}}) {
        const auto l = Lignes(*Lance(QStringLiteral("DemiLune = 0,0, %1, 0, 90, 0").arg(r)));
        EXPECT_EQ(l.size(), 2 * (n + 1)) << r;
        for (const OpSurface& op : l) EXPECT_NEAR(std::hypot(op.x1, op.y1), r, 1e-4);
    }
    // Clockwise on the sheet: the edges meet at the end angle (90: below the centre), apart at the start.
    const auto l = Lignes(*Lance("DemiLune = 0,0, 20, 0, 90, 4"));
    ASSERT_GE(l.size(), 32);
    EXPECT_MM(l[0].x1, 0);
    EXPECT_MM(l[0].y1, -20);
    EXPECT_MM(l[30].x2, 22);
    EXPECT_MM(l[31].x2, 18);
    // A negative width: the fill alone, and nothing without P.
    for (auto [p, ordre] : {std::pair{"DemiLuneP = 0,0, 20, 0, 90, 4", "PL"}, {"DemiLuneP = 0,0, 20, 0, 90, -4", "P"},
                            {"DemiLune = 0,0, 20, 0, 90, -4", ""}})
        EXPECT_EQ(Ordre(*Lance(p)), ordre) << p;
}

TEST(Formes, BezierChain) {
    // No direction points: a straight line in at least 50 unbroken steps.
    for (auto [p, fin] : {std::pair{"Bezier = , , , 0,0, , , 100,0, ,", 100}, {"Bezier = , , , 0,0, , , 10,0, ,", 10},
                          {"Bezier = , , NOIR§0§1§-5, 5,0, , , 15,0, ,", 10}}) {
        SCOPED_TRACE(p);
        auto s = Lance(p);
        const auto l = Lignes(*s);
        EXPECT_GE(l.size(), 50);
        EXPECT_MM(l.front().x1, 0);
        EXPECT_MM(l.back().x2, fin);
        for (int i = 1; i < l.size(); ++i) EXPECT_EQ(l[i].x1, l[i - 1].x2);
        EXPECT_EQ(Ordre(*s), "L");
        EXPECT_MM(s->etat.Repere.PointX, l.back().x2);
    }
    // The end points' marks and the lines to their direction points; empty
    // parameters after a curve start no other.
    auto s = Lance("Bezier = ROUGE, , , 0,0, 0,10, 10,0, 10,10, , , , , ,");
    EXPECT_EQ(Ops(*s, OpSurface::Cercle).size(), 2);
    EXPECT_EQ(Lignes(*s).back().couleur, RGB(255, 0, 0));
    // A second curve from the last arrival; the fill comes after the outline.
    s = Lance("BezierP = , , VERT, 0,0, 0,10, 10,0, 10,10, 20R,0R, 20,0, 20,-10");
    EXPECT_EQ(Ordre(*s), "LP");
    EXPECT_MM(Lignes(*s).back().x2, 20);
    EXPECT_EQ(Ops(*s, OpSurface::Polygone)[0].remplissage, RGB(0, 255, 0));
}

TEST(Formes, BezierGraduations) {
    // A half circle from pi to 0 about 0,0: five 5 mm radial marks at their angles; "S" leaves the curve out.
    auto s = Lance("Bezier_aGr = , , NOIR§§§§§§4§5S, -50,0, -50,66.667, 50,0, 50,66.667");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 5);
    for (int i = 0; i < 5; ++i) {
        SCOPED_TRACE(i);
        const double cible = 3.14159265358979 * (4 - i) / 4;
        EXPECT_NEAR(std::atan2(l[i].y1, l[i].x1), cible, 0.002);
        EXPECT_MM(l[i].x2 - l[i].x1, 5 * std::cos(cible));
        EXPECT_MM(l[i].y2 - l[i].y1, 5 * std::sin(cible));
    }
    EXPECT_GT(Lignes(*Lance("Bezier_aGr = , , NOIR§§§§§§4§5, -50,0, -50,66.667, 50,0, 50,66.667")).size(), 55);
    // A curve from below the negative x axis over the top, and one across the negative x axis: each
    // mark stands on the curve at its angle, from the start's angle to the arrival's.
    struct Cas { const char* courbe; double debut, fin; };
    for (const Cas& c : {Cas{"-35.3553,-35.3553, -100,60, 35.3553,-35.3553, 100,60", 225, -45},
                         Cas{"-50,20, -70,20, -50,-20, -70,-20", 158.199, 201.801}}) {
        SCOPED_TRACE(c.courbe);
        const auto m = Lignes(*Lance(QString("Bezier_aGr = , , NOIR§§§§§§4§5S, ") + c.courbe));
        ASSERT_EQ(m.size(), 5);
        for (int i = 0; i < 5; ++i) {
            const double cible = (c.debut + (c.fin - c.debut) * i / 4) * 3.14159265358979 / 180;
            EXPECT_NEAR(std::remainder(std::atan2(m[i].y1, m[i].x1) - cible, 2 * 3.14159265358979), 0, 0.002) << i;
            EXPECT_MM(m[i].x2 - m[i].x1, 5 * std::cos(cible));
        }
    }
    // Percentages and angles: a target outside the run is skipped; the texts go to the targets in order.
    s = Lance("Separateur = ;\nBezier_aGr = ; ; NOIR§§§§§§0,50,200°§5S§§A,B§8; -50;0; -50;66.667; 50;0; 50;66.667");
    EXPECT_EQ(Lignes(*s).size(), 2);
    const auto t = Ops(*s, OpSurface::Texte);
    ASSERT_EQ(t.size(), 2);
    EXPECT_TRUE(t[0].texte == "A" && t[1].texte == "B");
}
