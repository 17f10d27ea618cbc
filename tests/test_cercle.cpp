// Circles, ellipses, arcs, sectors and their gradients; dashed arcs.
#include "outils.h"

#include "app/core/rendu.h"

#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>

namespace {

constexpr double DegRad = 0.017453293;
constexpr double MmPointI = 25.4 / 600; // a dot of the virtual printer
constexpr double MmPixelE = 25.4 / 96;  // a pixel of the headless screen

QVector<OpSurface> Polygones(const Session& s) { return Ops(s, OpSurface::Polygone); }
// The ops of the run in order, without the clears of the set-up.
QVector<OpSurface> Dessin(const Session& s) {
    QVector<OpSurface> r = s.journal;
    r.removeIf([](const OpSurface& op) { return op.genre == OpSurface::Effacement; });
    return r;
}

// The angle swept by a chain of lines about the origin (radians, signed), radius lines left out.
double Balayage(const QVector<OpSurface>& lignes) {
    double total = 0;
    for (const OpSurface& l : lignes) {
        if (std::hypot(l.x1, l.y1) < 1e-6 || std::hypot(l.x2, l.y2) < 1e-6) continue;
        total += std::remainder(std::atan2(l.y2, l.x2) - std::atan2(l.y1, l.x1), 2 * M_PI);
    }
    return total;
}

bool Proche(QPointF a, QPointF b, double t = 0.001) { return qAbs(a.x() - b.x()) <= t && qAbs(a.y() - b.y()) <= t; }
QPointF Debut(const OpSurface& op) { return {op.x1, op.y1}; }
QPointF Fin(const OpSurface& op) { return {op.x2, op.y2}; }
QPointF Pointe(const Session& s) { return {s.etat.Repere.PointX, s.etat.Repere.PointY}; }

// A point rounded to its printer dot and back (A4 portrait, 600 dpi), as fills hold them.
QPointF PixelImprimante(QPointF p) {
    const double px = std::nearbyint(p.x() / float(MmPointI)), py = std::nearbyint((297 - p.y()) / float(MmPointI));
    return {px * MmPointI, 297 - py * MmPointI};
}

} // namespace

// A full turn is one Circle and leaves the pen at the centre; CercleP fills it in the colour.
TEST(Cercle, FullTurnIsOneCircle) {
    for (auto [prog, remplissage] : {std::pair{"Cercle = 20,30,10", -2}, {"CercleP = 20,30,10,,,ROUGE", 255}}) {
        auto s = Lance(prog);
        const auto d = Dessin(*s);
        ASSERT_EQ(d.size(), 1) << prog;
        EXPECT_TRUE(d[0].genre == OpSurface::Cercle && !d[0].debut && !d[0].fin);
        EXPECT_TRUE(Proche(Debut(d[0]), {20, 30}) && std::abs(d[0].r - 10) < 0.001);
        EXPECT_TRUE(d[0].remplissage.value_or(-2) == remplissage && d[0].couleur == std::max(remplissage, 0));
        EXPECT_TRUE(Proche(Pointe(*s), {20, 30}) && s->pane->FillStyle == 1); // FillStyle given back
    }
}

// Where an arc's chain of lines starts and ends, the angle it sweeps and where the pen stays.
TEST(Cercle, ArcEndsRadiusLinesAndPen) {
    struct Cas { const char* prog; double x1, y1, x2, y2, balayage = NAN, px = NAN, py = NAN; };
    const Cas cas[] = {
        {"Cercle = 0,0,10,0,90", 10, 0, 0, 10, 90, 0, 10},
        // A negative angle asks for a radius line at that end; "-0" counts.
        {"Cercle = 0,0,10,-30,90", 0, 0, 0, 10, 60, 0, 10},
        {"Cercle = 0,0,10, -0 ,-90", 0, 0, 0, 0, 90},
        {"Cercle = 0,0,10,0,720", 10, 0, 10, 0, 720},
        // CercleI joins the points the other way and leaves the pen at the start.
        {"CercleI = 0,0,10,0,90", 0, 10, 10, 0, -90, 10, 0},
        // A dash pattern starts from the first point joined.
        {"Cercle = 0,0,10,0,90,,1§§3", 10, 0, NAN, NAN}, {"CercleI = 0,0,10,0,90,,1§§3", 0, 10, NAN, NAN},
        // The coefficient of an ellipse below 1 scales the height, above 1 the width.
        {"Cercle = 0,0,10§0.5,90,91", 0, 5, NAN, NAN}, {"Cercle = 0,0,10§2,0,1", 5, 0, NAN, NAN},
        // Parameter 8 turns the ellipse about its centre; the command's angle and AngRot turn it about 0,0.
        {"Cercle = 0,0,10§0.5,0,1,,,90", 0, 10, NAN, NAN},
        {"Cercle = 20,0§90,10§0.5,0,1", 0, 30, NAN, NAN},
        {"AngRot = 90\nCercle = 20,0§0,10§0.5,0,1", 30, 0, NAN, NAN},
    };
    for (const Cas& c : cas) {
        SCOPED_TRACE(c.prog);
        auto s = Lance(QString::fromUtf8(c.prog));
        const auto l = Lignes(*s);
        ASSERT_FALSE(l.isEmpty());
        EXPECT_TRUE(Proche(Debut(l[0]), {c.x1, c.y1}));
        EXPECT_TRUE(std::isnan(c.x2) || Proche(Fin(l.back()), {c.x2, c.y2}));
        EXPECT_TRUE(std::isnan(c.balayage) || std::abs(Balayage(l) / DegRad - c.balayage) < 0.01);
        EXPECT_TRUE(std::isnan(c.px) || Proche(Pointe(*s), {c.px, c.py}));
    }
    // The radius line of "-30" runs from the centre to the start of the arc.
    const auto l = Lignes(*Lance("Cercle = 0,0,10,-30,90"));
    EXPECT_TRUE(Proche(Fin(l.value(0)), {10 * std::cos(30 * DegRad), 10 * std::sin(30 * DegRad)}));
    // The dash pattern was the command's own.
    EXPECT_EQ(Lance("Cercle = 0,0,10,0,90,,1§§3")->etat.Styles.TiretL1, 0);
}

// How many pieces a command draws: the angular step of the outline, and the bands of a gradient.
TEST(Cercle, NumberOfLinesAndBands) {
    struct Cas { const char* prog; bool imprimante; float zoom; OpSurface::Genre genre; int n; };
    const Cas cas[] = {
        // Screen: h = 1 / r; printer below r = 10: h = 0.1 / r; zoom z: h = 1 / (sqrt(z) r).
        {"Cercle = 100,100,5,0,90", false, 1, OpSurface::Ligne, 8},
        {"Cercle = 100,100,5,0,90", true, 1, OpSurface::Ligne, 79},
        {"Cercle = 100,100,10,0,90", true, 1, OpSurface::Ligne, 16},
        {"Cercle = 10,10,5,0,90", false, 4, OpSurface::Ligne, 16},
        {"Cercle = 0,0,10,0,720", false, 1, OpSurface::Ligne, 126}, // two turns
        // Gradient bands: the largest step between the colours, plus one.
        {"CercleP = 0,0,10,,,ROUGE§BLEU§C", false, 1, OpSurface::Polygone, 256},
        {"CercleP = 0,0,10,,,ROUGE§RVB 155 0 0§ c ", false, 1, OpSurface::Polygone, 101},
        {"CercleP = 0,0,10,,,ROUGE§ROUGE", false, 1, OpSurface::Polygone, 1},
        // Cercle without P ignores a second colour.
        {"Cercle = 0,0,10,,,ROUGE§BLEU", false, 1, OpSurface::Polygone, 0},
    };
    for (const Cas& c : cas) {
        auto s = std::make_unique<Session>(Programme(QString::fromUtf8(c.prog)));
        c.imprimante ? s->ExecuteImprimante() : s->Execute(c.zoom);
        EXPECT_EQ(Ops(*s, c.genre).size(), c.n) << c.prog << " zoom " << c.zoom;
    }
}

TEST(Cercle, ColourNAndZeroRadius) {
    // Colour N, with or without a second colour or a letter C.
    auto s = Lance("CercleP = 5,5,10,0,90,N§BLEU§C\nCercle = 5,5,10,,,N\nCercleP = 5,5,10,0,90,N§BLEU");
    EXPECT_TRUE(Dessin(*s).isEmpty() && Proche(Pointe(*s), {5, 15}));
    // A radius of 0 draws nothing and leaves the pen where it was.
    s = Lance("Trait = 0,0,3,4\nCercleP = 10,10,0,,,ROUGE§BLEU");
    EXPECT_TRUE(Dessin(*s).size() == 1 && Messages(*s).isEmpty() && Proche(Pointe(*s), {3, 4}));
    // A second colour N gives a plain fill.
    auto d = Dessin(*Lance("CercleP = 0,0,10,,,ROUGE§N§C12"));
    ASSERT_EQ(d.size(), 1);
    EXPECT_TRUE(d[0].genre == OpSurface::Cercle && d[0].remplissage == 255);
    // A sector: one polygon from the centre, filled and outlined in the colour.
    s = Lance("CercleP = 50,50,20,30,120,ROUGE§N");
    d = Dessin(*s);
    ASSERT_EQ(d.size(), 1);
    EXPECT_TRUE(d[0].genre == OpSurface::Polygone && d[0].couleur == 255 && d[0].remplissage == 255);
    EXPECT_TRUE(Proche(d[0].points.first(), {50, 50}, MmPixelE) && s->pane->FillStyle == 1);
}

TEST(Cercle, ConicGradientHasEqualWedgesFromZeroDegrees) {
    const auto p = Polygones(*LanceImprimante("CercleP = 100,100,10,,,ROUGE§BLEU§C12"));
    ASSERT_EQ(p.size(), 12);
    for (int k = 0; k < 12; ++k) {
        const QPointF a = p[k].points[1] - QPointF(100, 100), b = p[k].points.last() - QPointF(100, 100);
        const double a1 = std::atan2(a.y(), a.x()), a2 = std::atan2(b.y(), b.x());
        EXPECT_TRUE(Proche(p[k].points.first(), {100, 100}, MmPointI)) << k; // from the centre, 30 degrees each
        EXPECT_TRUE(std::abs(std::remainder(a2 - a1, 2 * M_PI) - 30 * DegRad) < 0.01 &&
                    std::abs(std::remainder(a1 - k * 30 * DegRad, 2 * M_PI)) < 0.01) << k;
    }
    EXPECT_TRUE(p[0].couleur == 255 && p[0].remplissage == 255 && p[1].couleur == RGB(234, 0, 21)); // 255 - 21.25
}

// Linear gradient slices from the top down in the ellipse's frame turned by 25 degrees: neighbours share
// exactly the two ends of their common edge, on equally spaced levels (2 x 14 / 9).
TEST(Cercle, LinearGradientSlicesShareTheirEdges) {
    auto p = Polygones(*LanceImprimante("CercleP = 100,100,20§0.7,,,ROUGE§BLEU§9,,25"));
    ASSERT_EQ(p.size(), 9);
    const double c = std::cos(-25 * DegRad), sn = std::sin(-25 * DegRad);
    auto v = [&](QPointF q) { return (q.x() - 100) * sn + (q.y() - 100) * c; };
    for (int k = 0; k + 1 < 9; ++k) {
        SCOPED_TRACE(k);
        std::set<std::pair<double, double>> a, b, communs;
        for (const QPointF& q : p[k].points) a.insert({q.x(), q.y()});
        for (const QPointF& q : p[k + 1].points) b.insert({q.x(), q.y()});
        std::set_intersection(a.begin(), a.end(), b.begin(), b.end(), std::inserter(communs, communs.begin()));
        ASSERT_EQ(communs.size(), 2u);
        const double niveau = 14 - (k + 1) * 28.0 / 9;
        for (const auto& q : communs) EXPECT_NEAR(v({q.first, q.second}), niveau, MmPointI);
        for (const QPointF& q : p[k].points) EXPECT_GE(v(q), niveau - MmPointI);
        for (const QPointF& q : p[k + 1].points) EXPECT_LE(v(q), niveau + MmPointI);
    }
    // From red, by 255 / 256 of a unit a band, toward blue.
    p = Polygones(*Lance("CercleP = 50,50,20,,,ROUGE§BLEU"));
    ASSERT_EQ(p.size(), 256);
    EXPECT_TRUE(p[0].couleur == 255 && p[0].remplissage == 255 && p[255].couleur == RGB(1, 0, 254));
    EXPECT_EQ(p[128].couleur, RGB(128, 0, 128)); // 255 - 127.5 rounds to even
}

TEST(Cercle, OutlineIsDrawnAfterTheBands) {
    // A sector's outline joins its points, both radius lines included.
    auto s = Lance("CercleP = 50,50,20,30,120,ROUGE§BLEU§C3");
    const auto d = Dessin(*s);
    ASSERT_EQ(d.size(), 3 + Lignes(*s).size());
    EXPECT_TRUE(d[3].genre == OpSurface::Ligne && Proche(Debut(d[3]), {50, 50}) && Proche(Fin(d.last()), {50, 50}));
    // A filled arc from 0 keeps its radius line.
    const auto l = Lignes(*Lance("CercleP = 50,50,20,0,90,ROUGE§BLEU§C3"));
    EXPECT_TRUE(Proche(Debut(l.value(0)), {50, 50}) && Proche(Fin(l.value(0)), {70, 50}));
}

TEST(Cercle, FillPolygonIsTheOutlinesPolygon) {
    auto contour = LanceImprimante("Cercle = 50,50,20§0.6,-30,-250,,,10");
    const auto l = Lignes(*contour);
    const auto p = Polygones(*LanceImprimante("CercleP = 50,50,20§0.6,30,250,,,10"));
    ASSERT_EQ(p.size(), 1);
    ASSERT_EQ(p[0].points.size(), l.size() + 1);
    for (qsizetype i = 0; i < l.size(); ++i)
        EXPECT_TRUE(Proche(p[0].points[i], PixelImprimante({l[i].x1, l[i].y1}), 1e-6)) << i;
    // The bands of a gradient take their outer points from the outline too.
    auto degrade = LanceImprimante("CercleP = 50,50,20§0.6,30,250,ROUGE§BLEU§7,,10");
    QVector<QPointF> bandes;
    for (const OpSurface& b : Polygones(*degrade)) bandes += b.points;
    const auto bord = Lignes(*degrade);
    ASSERT_EQ(bord.size(), l.size());
    for (qsizetype i = 1; i < bord.size(); ++i)
        EXPECT_TRUE(std::any_of(bandes.begin(), bandes.end(), [&](QPointF c) {
            return Proche(c, PixelImprimante({bord[i].x1, bord[i].y1}), 1e-6);
        })) << i;
}

TEST(Cercle, DashedCircleIsDrawnAsArcs) {
    // Dash 2, gap 1 on radius 10: arcs of 0.2 rad every 0.3 rad, 21 over 62.83 mm.
    auto s = Lance("EpaisT = 1§§2§1\nCercle = 0,0,10");
    const auto c = Ops(*s, OpSurface::Cercle);
    EXPECT_TRUE(Lignes(*s).isEmpty());
    ASSERT_EQ(c.size(), 21);
    EXPECT_TRUE(std::abs(*c[20].debut - 6) < 1e-6 && std::abs(*c[20].fin - 6.2) < 1e-6);
    // A dash that runs over the end is cut there.
    const auto coupe = Ops(*Lance("EpaisT = 1§§4§1\nCercle = 0,0,10"), OpSurface::Cercle);
    EXPECT_NEAR(coupe.value(coupe.size() - 1).fin.value_or(0), 6.283185, 1e-6);
}

// Too many points for the outline, or more than 1000 for one band, is an error on the line.
TEST(Cercle, TooManyPointsFailTheLine) {
    for (const char* prog : {"Cercle = 0,0,6000,0,359", "CercleP = 150,100,200,,,ROUGE§ROUGE"}) {
        auto s = Lance(prog);
        EXPECT_TRUE(Dessin(*s).isEmpty()) << prog;
        ASSERT_EQ(Messages(*s).size(), 1);
        EXPECT_TRUE(Messages(*s)[0].startsWith(QStringLiteral("Erreur dans la ligne : 1: ") + QString::fromUtf8(prog)));
        EXPECT_EQ(s->pane->FillStyle, 1); // given back on the way out
    }
}

// Painted on paper; a plain filled sector's fill and outline come from one device call, on the same pixels.
TEST(Cercle, RenderedOnPaper) {
    const char* secteur = "CercleP = 50,50,20,30,120,VERT,5\n";
    const QString programme = Programme(QString::fromUtf8(secteur) +
        "CercleP = 30,210,15,,,ROUGE§BLEU,0.5mm\n"
        "CercleP = 110,210,15,30,300,VERT§BLEU\n"
        "CercleP = 30,160,15,,,ROUGE§BLEU§C\n");
    QTemporaryDir dir;
    for (const char* f : {"feuille.png", "feuille.pdf"}) {
        const ResultatRendu r = RendProgramme(programme, QString(), dir.filePath(f), OptionsRendu(), Reglages());
        ASSERT_EQ(r.statut, 0) << r.messages.join(u'\n').toStdString();
    }
    QImage im(dir.filePath("feuille.png")); // 300 dpi
    ASSERT_FALSE(im.isNull());
    auto pixel = [&](double x, double y) {
        return im.pixelColor(int(std::lround(x / 25.4 * 300 - 0.5)), int(std::lround((297 - y) / 25.4 * 300 - 0.5)));
    };
    auto polaire = [&](double cx, double cy, double r, double a) {
        return pixel(cx + r * std::cos(a * DegRad), cy + r * std::sin(a * DegRad));
    };
    auto blanc = [](const QColor& c) { return c.red() > 245 && c.green() > 245 && c.blue() > 245; };
    auto rouge = [](const QColor& c) { return c.red() > 200 && c.blue() < 60; };
    auto bleu = [](const QColor& c) { return c.red() < 60 && c.blue() > 200; };
    // Linear gradient: red at the top, blue at the bottom.
    EXPECT_TRUE(rouge(pixel(30, 224)) && bleu(pixel(30, 196)));
    // The 0.5 mm red outline lies over the blue bands at the bottom.
    EXPECT_TRUE(rouge(pixel(30, 195.05)) && blanc(pixel(30, 194.4)));
    // Sector gradient: nothing in the missing wedge (300 to 30 degrees).
    EXPECT_TRUE(blanc(pixel(120, 210)) && !blanc(pixel(100, 210)));
    // Conic gradient: red just above its start at 0 degrees, blue just below.
    EXPECT_TRUE(rouge(pixel(40, 160.6)) && bleu(pixel(40, 159.4)));
    const QColor vert(0, 255, 0);
    // The plain sector: green on the arc at 75 degrees and on the radius at 30; white 0.3 mm outside.
    EXPECT_TRUE(polaire(50, 50, 20, 75) == vert && blanc(polaire(50, 50, 20.3, 75)) && polaire(50, 50, 10, 30) == vert);
    EXPECT_TRUE(blanc(polaire(50 + 0.3 * std::sin(30 * DegRad), 50 - 0.3 * std::cos(30 * DegRad), 10, 30)));
    // Its SVG path, fill and stroke in one element, holds the printer's device points.
    const auto d = Dessin(*LanceImprimante(secteur));
    ASSERT_TRUE(d.size() == 2 && d[1].remplissage == 65280); // the page mark, then the polygon
    ASSERT_EQ(RendProgramme(Programme(secteur), {}, dir.filePath("s.svg"), OptionsRendu(), Reglages()).statut, 0);
    QFile svg(dir.filePath("s.svg"));
    ASSERT_TRUE(svg.open(QIODevice::ReadOnly));
    const QString texte = QString::fromUtf8(svg.readAll());
    const qsizetype debut = texte.indexOf(" d=\"", texte.indexOf("fill=\"#00ff00\"")) + 4;
    ASSERT_GE(debut, 4);
    QVector<QPointF> points;
    static const QRegularExpression nombres(QStringLiteral("(-?[0-9.]+),(-?[0-9.]+)"));
    for (auto it = nombres.globalMatch(texte.mid(debut, texte.indexOf(u'"', debut) - debut)); it.hasNext();) {
        const auto m = it.next();
        points.append({m.captured(1).toDouble() * MmPointI, 297 - m.captured(2).toDouble() * MmPointI});
    }
    ASSERT_EQ(points.size(), d[1].points.size());
    for (qsizetype i = 0; i < points.size(); ++i) EXPECT_TRUE(Proche(points[i], d[1].points[i], 1e-6)) << i;
}
