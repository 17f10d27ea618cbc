// Part 3.1: circles, ellipses, arcs, sectors and gradients; ArcPointille.
#include "outils.h"

#include "app/core/rendu.h"
#include "shapes/cercle.h"

#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <cmath>
#include <algorithm>
#include <iterator>
#include <set>

namespace {

constexpr double DegRad = 0.017453293;
constexpr double MmPointI = 25.4 / 600;  // a dot of the virtual printer
constexpr double MmPixelE = 25.4 / 96;   // a pixel of the headless screen

QVector<OpSurface> Polygones(const Session& s) { return Ops(s, OpSurface::Polygone); }
QVector<OpSurface> Cercles(const Session& s) { return Ops(s, OpSurface::Cercle); }

// The ops of the run in order, without the clears of the set-up.
QVector<OpSurface> Dessin(const Session& s) {
    QVector<OpSurface> r;
    for (const OpSurface& op : s.journal)
        if (op.genre != OpSurface::Effacement) r.append(op);
    return r;
}

// The angle swept by a chain of lines about a centre (radians, signed).
double Balayage(const QVector<OpSurface>& lignes, double cx, double cy) {
    double total = 0;
    for (const OpSurface& l : lignes) {
        const double a1 = std::atan2(l.y1 - cy, l.x1 - cx), a2 = std::atan2(l.y2 - cy, l.x2 - cx);
        if (std::hypot(l.x1 - cx, l.y1 - cy) < 1e-6 || std::hypot(l.x2 - cx, l.y2 - cy) < 1e-6)
            continue; // a radius line
        double d = a2 - a1;
        while (d > M_PI) d -= 2 * M_PI;
        while (d < -M_PI) d += 2 * M_PI;
        total += d;
    }
    return total;
}

bool Proche(QPointF a, QPointF b, double tol) {
    return std::abs(a.x() - b.x()) <= tol && std::abs(a.y() - b.y()) <= tol;
}

// A Surface point on the printer rounded to its device pixel and back (A4
// portrait, 600 dpi, zoom 1), as the fill's `PointsPixel` holds it.
QPointF PixelImprimante(QPointF p) {
    const double H = 297.0;
    const double px = std::nearbyint(p.x() / float(MmPointI));
    const double py = std::nearbyint((H - p.y()) / float(MmPointI));
    return {px * MmPointI, H - py * MmPointI};
}

} // namespace

// --- edge cases of Part 3.1

TEST(Cercle, PleinTourParCircleSansPoints) {
    auto s = Lance("Cercle = 0,0,10");
    const auto d = Dessin(*s);
    ASSERT_EQ(d.size(), 1);
    EXPECT_EQ(d[0].genre, OpSurface::Cercle);
    EXPECT_MM(d[0].x1, 0);
    EXPECT_MM(d[0].y1, 0);
    EXPECT_MM(d[0].r, 10);
    EXPECT_FALSE(d[0].debut.has_value());
    EXPECT_FALSE(d[0].fin.has_value());
    EXPECT_FALSE(d[0].remplissage.has_value());
    EXPECT_EQ(d[0].couleur, 0);
    // A full turn leaves the pen at the centre.
    EXPECT_MM(s->etat.Repere.PointX, 0);
    EXPECT_MM(s->etat.Repere.PointY, 0);
    EXPECT_EQ(s->etat.EtatOrdre & 64, 64);
}

TEST(Cercle, CerclePSansAnglesDisquePlein) {
    auto s = Lance("CercleP = 20,30,10,,,ROUGE");
    const auto d = Dessin(*s);
    ASSERT_EQ(d.size(), 1);
    EXPECT_EQ(d[0].genre, OpSurface::Cercle);
    EXPECT_FALSE(d[0].debut.has_value());
    ASSERT_TRUE(d[0].remplissage.has_value());
    EXPECT_EQ(*d[0].remplissage, 255);
    EXPECT_EQ(d[0].couleur, 255);
    EXPECT_EQ(s->pane->FillStyle, 1);
    EXPECT_MM(s->etat.Repere.PointX, 20);
    EXPECT_MM(s->etat.Repere.PointY, 30);
}

TEST(Cercle, DebutNegatifRayonAuDebutSeulement) {
    auto s = Lance("Cercle = 0,0,10,-30,90");
    const auto l = Lignes(*s);
    ASSERT_GE(l.size(), 3);
    // The first line runs from the centre to the start of the arc.
    EXPECT_MM(l[0].x1, 0);
    EXPECT_MM(l[0].y1, 0);
    EXPECT_MM(l[0].x2, 10 * std::cos(30 * DegRad));
    EXPECT_MM(l[0].y2, 10 * std::sin(30 * DegRad));
    // The last ends on the arc at 90°, not at the centre.
    EXPECT_MM(l.back().x2, 0);
    EXPECT_MM(l.back().y2, 10);
    for (qsizetype i = 1; i < l.size(); ++i) EXPECT_NEAR(std::hypot(l[i].x1, l[i].y1), 10, 0.001);
    EXPECT_NEAR(Balayage(l, 0, 0), 60 * DegRad, 1e-4);
    // The cursor is at the end of the arc.
    EXPECT_MM(s->etat.Repere.PointX, 0);
    EXPECT_MM(s->etat.Repere.PointY, 10);
}

TEST(Cercle, MoinsZeroDemandeUnRayon) {
    auto s = Lance("Cercle = 0,0,10, -0 ,-90");
    const auto l = Lignes(*s);
    ASSERT_GE(l.size(), 3);
    EXPECT_MM(l[0].x1, 0);
    EXPECT_MM(l[0].y1, 0);
    EXPECT_MM(l[0].x2, 10);
    EXPECT_MM(l[0].y2, 0);
    EXPECT_MM(l.back().x1, 0);
    EXPECT_MM(l.back().y1, 10);
    EXPECT_MM(l.back().x2, 0);
    EXPECT_MM(l.back().y2, 0);
    // "0" alone asks for none.
    auto t = Lance("Cercle = 0,0,10,0,90");
    EXPECT_MM(std::hypot(Lignes(*t)[0].x1, Lignes(*t)[0].y1), 10);
}

TEST(Cercle, DeuxiemeCouleurEgaleUneSeuleBande) {
    auto s = Lance("CercleP = 0,0,10,,,ROUGE§ROUGE");
    const auto p = Polygones(*s);
    ASSERT_EQ(p.size(), 1);
    EXPECT_EQ(p[0].couleur, 255);
    EXPECT_EQ(*p[0].remplissage, 255);
}

TEST(Cercle, LettreCSansNombreBandesCalculees) {
    // Red to blue: the largest step is 255, so 256 wedges.
    auto s = Lance("CercleP = 0,0,10,,,ROUGE§BLEU§C");
    EXPECT_EQ(Polygones(*s).size(), 256);
    // Red to a dark red: 100 steps of red, 101 wedges.
    auto t = Lance("CercleP = 0,0,10,,,ROUGE§RVB 155 0 0§ c ");
    EXPECT_EQ(Polygones(*t).size(), 101);
}

TEST(Cercle, C12DonneDouzeSecteurs) {
    auto s = LanceImprimante("CercleP = 100,100,10,,,ROUGE§BLEU§C12");
    const auto p = Polygones(*s);
    ASSERT_EQ(p.size(), 12);
    for (int k = 0; k < 12; ++k) {
        SCOPED_TRACE(k);
        // Each wedge starts at the centre and spans 30°.
        EXPECT_NEAR(p[k].points.first().x(), 100, MmPointI);
        EXPECT_NEAR(p[k].points.first().y(), 100, MmPointI);
        const QPointF a = p[k].points[1], b = p[k].points.last();
        const double a1 = std::atan2(a.y() - 100, a.x() - 100), a2 = std::atan2(b.y() - 100, b.x() - 100);
        double d = a2 - a1;
        if (d < 0) d += 2 * M_PI;
        EXPECT_NEAR(d, 30 * DegRad, 0.01);
        double debut = a1 - k * 30 * DegRad;
        debut -= 2 * M_PI * std::round(debut / (2 * M_PI));
        EXPECT_NEAR(debut, 0, 0.01);
    }
    // 12 wedges, 12 colours from red toward blue.
    EXPECT_EQ(p[0].couleur, 255);
    EXPECT_EQ(*p[0].remplissage, 255);
    EXPECT_EQ(p[1].couleur, RGB(234, 0, 21)); // 255 - 21.25, 21.25
}

TEST(Cercle, DouzeSeulDonneDouzeTranches) {
    auto s = LanceImprimante("CercleP = 100,100,10,,,ROUGE§BLEU§12");
    const auto p = Polygones(*s);
    ASSERT_EQ(p.size(), 12);
    for (int k = 0; k < 12; ++k) {
        SCOPED_TRACE(k);
        double haut = -1e9, bas = 1e9;
        for (const QPointF& q : p[k].points) {
            haut = std::max(haut, q.y());
            bas = std::min(bas, q.y());
        }
        // Slices of equal height, from top to bottom.
        EXPECT_NEAR(haut, 110 - k * 20.0 / 12, MmPointI);
        EXPECT_NEAR(bas, 110 - (k + 1) * 20.0 / 12, MmPointI);
    }
}

TEST(Cercle, Couleur2NDonneUnRemplissageSimple) {
    auto s = Lance("CercleP = 0,0,10,,,ROUGE§N§C12");
    const auto d = Dessin(*s);
    ASSERT_EQ(d.size(), 1);
    EXPECT_EQ(d[0].genre, OpSurface::Cercle);
    EXPECT_EQ(*d[0].remplissage, 255);
    // A sector: one polygon, filled and outlined in the colour.
    auto t = Lance("CercleP = 0,0,10,0,90,ROUGE§N");
    const auto dt = Dessin(*t);
    ASSERT_EQ(dt.size(), 1);
    EXPECT_EQ(dt[0].genre, OpSurface::Polygone);
    EXPECT_EQ(dt[0].couleur, 255);
    EXPECT_EQ(*dt[0].remplissage, 255);
}

TEST(Cercle, Fin720FaitDeuxTours) {
    auto s = Lance("Cercle = 0,0,10,0,720");
    const auto l = Lignes(*s);
    // h = 0.1 on the screen: t = 0, 0.1, ... 12.5, then 4 pi: 127 points.
    EXPECT_EQ(l.size(), 126);
    EXPECT_NEAR(Balayage(l, 0, 0), 4 * M_PI, 1e-3);
    EXPECT_MM(l.back().x2, 10);
    EXPECT_MM(l.back().y2, 0);
}

TEST(Cercle, CouleurNRienDessineCurseurBouge) {
    auto s = Lance("CercleP = 5,5,10,0,90,N§BLEU§C\nCercle = 5,5,10,,,N");
    EXPECT_TRUE(Dessin(*s).isEmpty());
    auto t = Lance("CercleP = 5,5,10,0,90,N§BLEU");
    EXPECT_TRUE(Dessin(*t).isEmpty());
    EXPECT_MM(t->etat.Repere.PointX, 5);
    EXPECT_MM(t->etat.Repere.PointY, 15);
}

// --- more of Part 3.1

TEST(Cercle, RayonZeroNeDessineRien) {
    auto s = Lance("Trait = 0,0,3,4\nCercleP = 10,10,0,,,ROUGE§BLEU");
    EXPECT_EQ(Dessin(*s).size(), 1);
    EXPECT_TRUE(Messages(*s).isEmpty());
    EXPECT_MM(s->etat.Repere.PointX, 3);
    EXPECT_MM(s->etat.Repere.PointY, 4);
}

TEST(Cercle, EllipseParCoef) {
    auto large = Lance("Cercle = 0,0,10§0.5");
    auto haute = Lance("Cercle = 0,0,10§2");
    auto etendue = [](const Session& s, double& mx, double& my) {
        mx = my = 0;
        for (const OpSurface& l : Lignes(s)) {
            mx = std::max(mx, std::abs(l.x1));
            my = std::max(my, std::abs(l.y1));
        }
    };
    double mx, my;
    etendue(*large, mx, my);
    EXPECT_MM(mx, 10);
    EXPECT_MM(my, 5);
    etendue(*haute, mx, my);
    EXPECT_MM(mx, 5);
    EXPECT_MM(my, 10);
}

TEST(Cercle, PasAngulaireEcranEtImprimante) {
    // Screen: h = 1 / r = 0.2; printer with r below 10: h = 0.1 / r = 0.02.
    auto e = Lance("Cercle = 100,100,5,0,90");
    EXPECT_EQ(Lignes(*e).size(), 8);
    auto i = LanceImprimante("Cercle = 100,100,5,0,90");
    EXPECT_EQ(Lignes(*i).size(), 79);
    // From 10 on, the printer takes one point per millimetre as the screen.
    auto g = LanceImprimante("Cercle = 100,100,10,0,90");
    EXPECT_EQ(Lignes(*g).size(), 16);
    // The zoom of the screen makes the step finer: h = 1 / (sqrt(4) r).
    auto s = std::make_unique<Session>(Programme("Cercle = 10,10,5,0,90"));
    s->Execute(4.0f);
    EXPECT_EQ(Lignes(*s).size(), 16);
}

TEST(Cercle, CurseurFinDeLArcEtDebutPourI) {
    auto s = Lance("Cercle = 0,0,10,0,90");
    EXPECT_MM(s->etat.Repere.PointX, 0);
    EXPECT_MM(s->etat.Repere.PointY, 10);
    auto i = Lance("CercleI = 0,0,10,0,90");
    EXPECT_MM(i->etat.Repere.PointX, 10);
    EXPECT_MM(i->etat.Repere.PointY, 0);
    // CercleI joins the points the other way.
    EXPECT_MM(Lignes(*i)[0].x1, 0);
    EXPECT_MM(Lignes(*i)[0].y1, 10);
    EXPECT_MM(Lignes(*i).back().x2, 10);
    EXPECT_MM(Lignes(*i).back().y2, 0);
}

TEST(Cercle, CercleIInverseLeSensDesTirets) {
    // Dash 3, gap 3 on a quarter of radius 10 (15.7 mm): the pattern starts at
    // the end of the arc for CercleI.
    auto s = Lance("CercleI = 0,0,10,0,90,,1§§3");
    const auto l = Lignes(*s);
    ASSERT_FALSE(l.isEmpty());
    EXPECT_MM(l[0].x1, 0);
    EXPECT_MM(l[0].y1, 10);
    auto t = Lance("Cercle = 0,0,10,0,90,,1§§3");
    EXPECT_MM(Lignes(*t)[0].x1, 10);
    EXPECT_MM(Lignes(*t)[0].y1, 0);
    // The line style is the command's own.
    EXPECT_EQ(t->etat.Styles.TiretL1, 0);
}

TEST(Cercle, SecteurRempliFermeParLesRayons) {
    auto s = Lance("CercleP = 50,50,20,30,120");
    const auto p = Polygones(*s);
    ASSERT_EQ(p.size(), 1);
    EXPECT_NEAR(p[0].points.first().x(), 50, MmPixelE);
    EXPECT_NEAR(p[0].points.first().y(), 50, MmPixelE);
    EXPECT_NEAR(p[0].points.last().x(), 50, MmPixelE);
    EXPECT_NEAR(p[0].points.last().y(), 50, MmPixelE);
    EXPECT_NEAR(p[0].points[1].x(), 50 + 20 * std::cos(30 * DegRad), MmPixelE);
    EXPECT_NEAR(p[0].points[1].y(), 50 + 20 * std::sin(30 * DegRad), MmPixelE);
    EXPECT_EQ(s->pane->FillStyle, 1);
}

TEST(Cercle, RotationDeLEllipse) {
    // Parameter 8 turns the ellipse about its centre; the command's own angle
    // turns the centre about 0,0 and the ellipse with it.
    auto s = Lance("Cercle = 0,0,10§0.5,0,1,,,90");
    EXPECT_MM(Lignes(*s)[0].x1, 0);
    EXPECT_MM(Lignes(*s)[0].y1, 10);
    auto t = Lance("Cercle = 20,0§90,10§0.5,0,1");
    EXPECT_MM(Lignes(*t)[0].x1, 0);
    EXPECT_MM(Lignes(*t)[0].y1, 30);
    auto u = Lance("AngRot = 90\nCercle = 20,0§0,10§0.5,0,1");
    EXPECT_MM(Lignes(*u)[0].x1, 30);
    EXPECT_MM(Lignes(*u)[0].y1, 0);
}

TEST(Cercle, DegradeLineaireTranchesPartagentLeursBords) {
    auto s = LanceImprimante("CercleP = 100,100,20§0.7,,,ROUGE§BLEU§9,,25");
    const auto p = Polygones(*s);
    ASSERT_EQ(p.size(), 9);
    // In the ellipse's frame, turned by 25°: a slice and the next one have the
    // two ends of their common edge in common, exactly, on the level between
    // them; the levels are equally spaced (2 x 14 / 9).
    const double c = std::cos(-25 * DegRad), sn = std::sin(-25 * DegRad);
    auto v = [&](QPointF q) { return (q.x() - 100) * sn + (q.y() - 100) * c; };
    for (int k = 0; k + 1 < 9; ++k) {
        SCOPED_TRACE(k);
        std::set<std::pair<double, double>> a, b, communs;
        for (const QPointF& q : p[k].points) a.insert({q.x(), q.y()});
        for (const QPointF& q : p[k + 1].points) b.insert({q.x(), q.y()});
        std::set_intersection(a.begin(), a.end(), b.begin(), b.end(),
                              std::inserter(communs, communs.begin()));
        ASSERT_EQ(communs.size(), 2u);
        const double niveau = 14 - (k + 1) * 28.0 / 9;
        for (const auto& q : communs) EXPECT_NEAR(v({q.first, q.second}), niveau, MmPointI);
        // Nothing of a slice lies beyond its levels.
        for (const QPointF& q : p[k].points) EXPECT_GE(v(q), niveau - MmPointI);
        for (const QPointF& q : p[k + 1].points) EXPECT_LE(v(q), niveau + MmPointI);
    }
}

TEST(Cercle, DegradeLineaireSecteurSansPontSurLEncoche) {
    // A sector whose missing wedge (around 300°) cuts some slices in two: those
    // bands are drawn as two polygons, and no band has a point in the wedge.
    auto s = LanceImprimante("CercleP = 100,100,20,330,270,ROUGE§BLEU§10");
    const auto p = Polygones(*s);
    EXPECT_GT(p.size(), 10);
    std::set<int> couleurs;
    for (const OpSurface& b : p) {
        couleurs.insert(b.couleur);
        for (qsizetype i = 0; i < b.points.size(); ++i) {
            // The middle of every edge stays out of the wedge.
            const QPointF m = (b.points[i] + b.points[(i + 1) % b.points.size()]) / 2;
            double a = std::atan2(m.y() - 100, m.x() - 100) / DegRad;
            if (a < 0) a += 360;
            if (std::hypot(m.x() - 100, m.y() - 100) > 0.5) {
                EXPECT_FALSE(a > 271 && a < 329) << a;
            }
        }
    }
    EXPECT_EQ(couleurs.size(), 10u);
}

TEST(Cercle, DegradeLineaireCouleurs) {
    auto s = Lance("CercleP = 50,50,20,,,ROUGE§BLEU");
    const auto p = Polygones(*s);
    ASSERT_EQ(p.size(), 256);
    // From red, by 255 / 256 of a unit per band, toward blue.
    EXPECT_EQ(p[0].couleur, RGB(255, 0, 0));
    EXPECT_EQ(*p[0].remplissage, RGB(255, 0, 0));
    EXPECT_EQ(p[128].couleur, RGB(128, 0, 128)); // 255 - 127.5 rounds to even
    EXPECT_EQ(p[255].couleur, RGB(1, 0, 254));
    // The top slice is the first.
    double haut = -1e9;
    for (const QPointF& q : p[0].points) haut = std::max(haut, q.y());
    EXPECT_NEAR(haut, 70, MmPixelE);
}

TEST(Cercle, ContourDessineEnDernier) {
    auto s = Lance("CercleP = 50,50,20,,,ROUGE§BLEU§4,3");
    const auto d = Dessin(*s);
    ASSERT_EQ(d.size(), 5);
    for (int k = 0; k < 4; ++k) EXPECT_EQ(d[k].genre, OpSurface::Polygone);
    EXPECT_EQ(d[4].genre, OpSurface::Cercle);
    EXPECT_EQ(d[4].couleur, 255);
    EXPECT_FALSE(d[4].remplissage.has_value());
    // A sector's outline is its points joined, both radius lines included.
    auto t = Lance("CercleP = 50,50,20,30,120,ROUGE§BLEU§C3");
    const auto dt = Dessin(*t);
    ASSERT_EQ(dt.size(), 3 + Lignes(*t).size());
    EXPECT_EQ(dt[3].genre, OpSurface::Ligne);
    EXPECT_MM(dt[3].x1, 50);
    EXPECT_MM(dt[3].y1, 50);
    EXPECT_MM(dt.last().x2, 50);
    EXPECT_MM(dt.last().y2, 50);
    // A filled arc from 0 keeps its radius line.
    auto u = Lance("CercleP = 50,50,20,0,90,ROUGE§BLEU§C3");
    EXPECT_MM(Lignes(*u).first().x1, 50);
    EXPECT_MM(Lignes(*u).first().y1, 50);
    EXPECT_MM(Lignes(*u).first().x2, 70);
}

TEST(Cercle, PolygoneDuRemplissageEstCeluiDuContour) {
    // The polygon of a plain fill is the outline's polygon, in device pixels.
    auto contour = LanceImprimante("Cercle = 50,50,20§0.6,-30,-250,,,10");
    auto plein = LanceImprimante("CercleP = 50,50,20§0.6,30,250,,,10");
    const auto l = Lignes(*contour);
    const auto p = Polygones(*plein);
    ASSERT_EQ(p.size(), 1);
    ASSERT_EQ(p[0].points.size(), l.size() + 1);
    for (qsizetype i = 0; i < l.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_TRUE(Proche(p[0].points[i], PixelImprimante({l[i].x1, l[i].y1}), 1e-6));
    }
    // The bands of a gradient take their outer points from the outline too:
    // every point of the outline is a corner of a band.
    auto degrade = LanceImprimante("CercleP = 50,50,20§0.6,30,250,ROUGE§BLEU§7,,10");
    const auto bandes = Polygones(*degrade);
    const auto bord = Lignes(*degrade);
    ASSERT_EQ(bandes.size(), 7);
    ASSERT_EQ(bord.size(), l.size());
    for (qsizetype i = 1; i < bord.size(); ++i) {
        SCOPED_TRACE(i);
        const QPointF q = PixelImprimante({bord[i].x1, bord[i].y1});
        bool trouve = false;
        for (const OpSurface& b : bandes)
            for (const QPointF& c : b.points) trouve = trouve || Proche(c, q, 1e-6);
        EXPECT_TRUE(trouve);
    }
}

TEST(Cercle, PointilleParArcPointille) {
    // Dash 2, gap 1 on a full circle of radius 10: each dash is a Circle arc of
    // 0.2 rad, every 0.3 rad.
    auto s = Lance("EpaisT = 1§§2§1\nCercle = 0,0,10");
    const auto c = Cercles(*s);
    EXPECT_TRUE(Lignes(*s).isEmpty());
    ASSERT_EQ(c.size(), 21); // 62.83 mm: 21 dashes, the last gap cut short
    for (int k = 0; k < 21; ++k) {
        SCOPED_TRACE(k);
        EXPECT_NEAR(*c[k].debut, k * 0.3, 1e-6);
        EXPECT_NEAR(*c[k].fin, k * 0.3 + 0.2, 1e-6);
        EXPECT_MM(c[k].r, 10);
    }
    // A dash that runs over the end is cut there.
    auto t = Lance("EpaisT = 1§§4§1\nCercle = 0,0,10");
    EXPECT_NEAR(*Cercles(*t).last().fin, 6.283185, 1e-6);
}

TEST(Cercle, ArcPointilleRayonsEtEnroulement) {
    auto s = Lance("EpaisT = 1§§5§5");
    Etat& e = s->etat;
    e.Surf = s->pane.get();
    s->journal.clear();
    // From 350° to 20° (wrapped), radius lines at both ends; 10 mm radius:
    // the arc is 5.236 mm, one dash of 5 mm, then the end falls in the gap.
    ArcPointille(e, 0, 0, 10, -350 * DegRad, -(380 * DegRad), 0, 1);
    const auto c = Cercles(*s);
    ASSERT_EQ(c.size(), 2);
    EXPECT_NEAR(*c[0].debut, -350 * DegRad, 1e-6);
    EXPECT_NEAR(*c[0].fin, 350 * DegRad + 0.5 - 6.283185, 1e-6);
    // The end's radius line, on a tiny arc.
    EXPECT_GT(*c[1].debut, 0);
    EXPECT_NEAR(*c[1].fin, -(20 * DegRad + 2 * M_PI - 6.283185), 1e-5);
    // Without a pattern, one Circle with the angles as given.
    s->journal.clear();
    e.Styles.TiretL1 = 0;
    ArcPointille(e, 0, 0, 10, 0, 0, 255, 1);
    ASSERT_EQ(Cercles(*s).size(), 1);
    EXPECT_FALSE(Cercles(*s)[0].debut.has_value());
}

TEST(Cercle, TropDePointsDebordement) {
    auto s = Lance("Cercle = 0,0,6000,0,359");
    EXPECT_TRUE(Lignes(*s).isEmpty());
    EXPECT_EQ(Messages(*s).size(), 1);
}

TEST(Cercle, BandeDePlusDeMillePointsHorsLimites) {
    // One band over an outline of more than 1000 points.
    auto s = Lance("CercleP = 150,100,200,,,ROUGE§ROUGE");
    EXPECT_TRUE(Polygones(*s).isEmpty());
    EXPECT_EQ(Messages(*s).size(), 1);
    // FillStyle and the style are restored on the way out.
    EXPECT_EQ(s->pane->FillStyle, 1);
}

TEST(Cercle, PlotAppelleLaRoutine) {
    // Part 2.8 calls the routine with its own keyword and parameters.
    auto s = Lance("Couleur = VERT");
    Etat& e = s->etat;
    e.Surf = s->pane.get();
    e.NiveauCourant = 1;
    s->journal.clear();
    Cercle(e, QStringLiteral("CERCLEP"), QStringLiteral("10,10,1"));
    const auto c = Cercles(*s);
    ASSERT_EQ(c.size(), 1);
    EXPECT_EQ(*c[0].remplissage, 65280);
}

// --- the sheet, rendered

TEST(Cercle, RenduPngDeToutesLesFormes) {
    const QString programme = Programme(
        "' every circle form and mark\n"
        "Cercle = 30,260,15\n"
        "Cercle = 70,260,15§0.5,,,BLEU,,30\n"
        "CercleI = 110,260,15,-30,120,ROUGE\n"
        "Cercle = 150,260,15,-0,-270,VERT,3\n"
        "Cercle = 190,260,15,,,,2§§2§1\n"
        "CercleP = 30,210,15,,,ROUGE§BLEU,0.5mm\n"
        "CercleP = 70,210,15,,,ROUGE§JAUNE§8,0.5mm\n"
        "CercleP = 110,210,15,30,300,VERT§BLEU\n"
        "CercleP = 150,210,15§2,,,BLEU§BLANC,2,30\n"
        "CercleP = 30,160,15,,,ROUGE§BLEU§C\n"
        "CercleP = 70,160,15,,,ROUGE§BLEU§C12\n"
        "CercleP = 110,160,15,45,315,JAUNE§ROUGE§C6\n"
        "CercleP = 150,160,15,,,MAGENTA\n"
        "CercleP = 190,160,15,0,90,CYAN\n"
        "Trait = 10,120,40,120,2,ROUGE,40,140,60,130\n"
        "Plus = 80,130,5\n"
        "+ = 100,130,5§2,BLEU,,30\n"
        "X = 120,130,5,VERT\n"
        "Percer = 140,130,8\n"
        "PercerX = 160,130,8,ROUGE\n"
        "Voyant = 20,90,10,1,ROUGE\n"
        "Voyant = 40,90,10,2,VERT\n"
        "Voyant = 60,90,10,3,BLEU\n"
        "Voyant = 80,90,10,4,ROUGE\n"
        "Voyant = 100,90,10,5,ROUGE\n"
        "Fleche = 130,90,0,10\n"
        "FlecheP = 160,90,90,10,2,40,ROUGE\n");
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString png = dir.filePath(QStringLiteral("feuille.png"));
    OptionsRendu o;
    o.dpi = 300;
    const ResultatRendu r = RendProgramme(programme, QString(), png, o, Reglages());
    ASSERT_EQ(r.statut, 0) << r.messages.join(u'\n').toStdString();
    QImage im(png);
    ASSERT_FALSE(im.isNull());
    auto pixel = [&](double x, double y) {
        return im.pixelColor(int(std::lround(x / 25.4 * 300)), int(std::lround((297 - y) / 25.4 * 300)));
    };
    auto blanc = [](const QColor& c) { return c.red() > 245 && c.green() > 245 && c.blue() > 245; };

    // Linear gradient: red at the top, blue at the bottom, no white between,
    // red falling and blue rising down the middle.
    int rouge = 256, bleu = -1;
    for (double y = 224.5; y >= 195.5; y -= 25.4 / 300) {
        const QColor c = pixel(30, y);
        ASSERT_FALSE(blanc(c)) << y;
        EXPECT_LE(c.red(), rouge + 2) << y;
        EXPECT_GE(c.blue(), bleu - 2) << y;
        rouge = std::min(rouge, c.red());
        bleu = std::max(bleu, c.blue());
    }
    EXPECT_GT(pixel(30, 224).red(), 230);
    EXPECT_LT(pixel(30, 224).blue(), 25);
    EXPECT_LT(pixel(30, 196).red(), 25);
    EXPECT_GT(pixel(30, 196).blue(), 230);
    // The outline is drawn last: at the bottom of the disc it is red (0.5 mm
    // wide) over the blue bands.
    EXPECT_GT(pixel(30, 195.05).red(), 200);
    EXPECT_LT(pixel(30, 195.05).blue(), 60);
    EXPECT_TRUE(blanc(pixel(30, 194.4)));
    // Eight bands red to yellow: band colours without gaps across a boundary.
    for (double y = 224; y > 196; y -= 0.05) ASSERT_FALSE(blanc(pixel(70, y))) << y;
    EXPECT_GT(pixel(70, 196.5).green(), 200); // the last band is near yellow

    // Sector gradient: nothing in the missing wedge (300° to 30°), colour inside.
    EXPECT_TRUE(blanc(pixel(110 + 10, 210)));
    EXPECT_FALSE(blanc(pixel(110 - 10, 210)));
    // Conic gradient: red just above the start (0°), blue just below it.
    const QColor haut = pixel(30 + 10, 160.6), basc = pixel(30 + 10, 159.4);
    EXPECT_GT(haut.red(), 200);
    EXPECT_LT(haut.blue(), 60);
    EXPECT_LT(basc.red(), 60);
    EXPECT_GT(basc.blue(), 200);
    // C12: the wedge about 15° is the first colour, about 195° the seventh.
    EXPECT_EQ(pixel(70 + 8 * std::cos(15 * DegRad), 160 + 8 * std::sin(15 * DegRad)), QColor(255, 0, 0));
    EXPECT_EQ(pixel(70 + 8 * std::cos(195 * DegRad), 160 + 8 * std::sin(195 * DegRad)),
              QColor(128, 0, 128)); // 255 - 6 x 21.25 = 127.5, to even
    // Plain fills and the cyan quarter.
    EXPECT_EQ(pixel(150, 160), QColor(255, 0, 255));
    EXPECT_EQ(pixel(195, 165), QColor(0, 255, 255));
    EXPECT_TRUE(blanc(pixel(185, 155)));
    // Voyant type 2: the quarters 0-90° and 180-270° filled, the others clear.
    EXPECT_EQ(pixel(42, 92), QColor(0, 255, 0));
    EXPECT_EQ(pixel(38, 88), QColor(0, 255, 0));
    EXPECT_TRUE(blanc(pixel(38, 92)));
    // The filled arrow tip.
    EXPECT_EQ(pixel(160, 85), QColor(255, 0, 0));
    // Ink on the marks.
    EXPECT_FALSE(blanc(pixel(80, 130)));
    EXPECT_FALSE(blanc(pixel(40, 130)));
}

TEST(Cercle, RemplissageEtContourMemesPixelsEcranPdfSvgPng) {
    // A plain filled sector is one polygon: the fill and its outline are drawn
    // by the same device call, so they land on the same pixels on every target.
    for (bool imprimante : {false, true}) {
        SCOPED_TRACE(imprimante);
        auto s = imprimante ? LanceImprimante("CercleP = 50,50,20,30,120,VERT,5")
                            : Lance("CercleP = 50,50,20,30,120,VERT,5");
        const auto d = Dessin(*s);
        ASSERT_EQ(d.size(), imprimante ? 2 : 1); // the page mark on paper
        const OpSurface& p = d.last();
        EXPECT_EQ(p.genre, OpSurface::Polygone);
        EXPECT_EQ(p.couleur, 65280);
        EXPECT_EQ(*p.remplissage, 65280);
    }
    // The files: the SVG path (fill and stroke in one element) has the very
    // device points of the journal; the PNG shows the outline on them; the PDF
    // is written by the same painting.
    const QString programme = Programme("CercleP = 50,50,20,30,120,VERT,5");
    auto journal = LanceImprimante("CercleP = 50,50,20,30,120,VERT,5");
    const OpSurface poly = Polygones(*journal).first();
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    for (const char* ext : {"pdf", "svg", "png"}) {
        const ResultatRendu r = RendProgramme(programme, QString(), dir.filePath(QStringLiteral("s.") + ext),
                                              OptionsRendu(), Reglages());
        ASSERT_EQ(r.statut, 0) << ext;
    }
    QFile svg(dir.filePath("s.svg"));
    ASSERT_TRUE(svg.open(QIODevice::ReadOnly));
    const QString texte = QString::fromUtf8(svg.readAll());
    const qsizetype g = texte.indexOf(QStringLiteral("fill=\"#00ff00\""));
    ASSERT_GE(g, 0);
    const qsizetype debut = texte.indexOf(QStringLiteral(" d=\""), g) + 4;
    const QString chemin = texte.mid(debut, texte.indexOf(u'"', debut) - debut);
    QVector<QPointF> points;
    static const QRegularExpression nombres(QStringLiteral("(-?[0-9.]+),(-?[0-9.]+)"));
    for (auto it = nombres.globalMatch(chemin); it.hasNext();) {
        const auto m = it.next();
        points.append({m.captured(1).toDouble(), m.captured(2).toDouble()});
    }
    ASSERT_EQ(points.size(), poly.points.size());
    for (qsizetype i = 0; i < points.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_NEAR(points[i].x(), poly.points[i].x() / MmPointI, 1e-6);
        EXPECT_NEAR(points[i].y(), (297 - poly.points[i].y()) / MmPointI, 1e-3);
    }
    QImage png(dir.filePath("s.png"));
    ASSERT_FALSE(png.isNull());
    auto pixel = [&](double x, double y) {
        return png.pixelColor(int(std::lround(x / 25.4 * 300 - 0.5)), int(std::lround((297 - y) / 25.4 * 300 - 0.5)));
    };
    // On the arc at 75° and on the radius at 30°: the shared outline, green;
    // outside by 0.3 mm, white.
    const double a = 75 * DegRad, b = 30 * DegRad;
    EXPECT_EQ(pixel(50 + 20 * std::cos(a), 50 + 20 * std::sin(a)), QColor(0, 255, 0));
    EXPECT_EQ(pixel(50 + 20.3 * std::cos(a), 50 + 20.3 * std::sin(a)), QColor(Qt::white));
    EXPECT_EQ(pixel(50 + 10 * std::cos(b), 50 + 10 * std::sin(b)), QColor(0, 255, 0));
    EXPECT_EQ(pixel(50 + 10 * std::cos(b) + 0.3 * std::sin(b), 50 + 10 * std::sin(b) - 0.3 * std::cos(b)),
              QColor(Qt::white));
}
