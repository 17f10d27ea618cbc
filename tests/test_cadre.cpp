// Frames: outlines to 0.001 mm; fills within one device pixel, since polygons take whole pixels.
#include "outils.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace {

constexpr double K = 0.017453293;
constexpr double PI = 3.14159265358979;
constexpr double MmPointI = 25.4 / 600; // a dot of the virtual printer
using Points = QVector<QPointF>;

bool Proche(QPointF a, QPointF b, double t = 0.001) { return qAbs(a.x() - b.x()) <= t && qAbs(a.y() - b.y()) <= t; }
QPointF Pointe(const Session& s) { return {s.etat.Repere.PointX, s.etat.Repere.PointY}; }

// Checks that the lines join the points in order, the last back to the first.
void VerifieContour(const QVector<OpSurface>& l, const Points& p) {
    ASSERT_EQ(l.size(), p.size());
    for (int i = 0; i < l.size(); ++i)
        EXPECT_TRUE(Proche({l[i].x1, l[i].y1}, p[i]) && Proche({l[i].x2, l[i].y2}, p[(i + 1) % p.size()]))
            << i << ": (" << l[i].x1 << ", " << l[i].y1 << ") to (" << l[i].x2 << ", " << l[i].y2 << ")";
}

Points Rectangle(double x1, double y1, double x2, double y2) { return {{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}}; }
// The points turned by a about c.
Points Tourne(Points p, QPointF c, double a) {
    for (QPointF& q : p) {
        const double dx = q.x() - c.x(), dy = q.y() - c.y();
        q = {c.x() + dx * std::cos(a) - dy * std::sin(a), c.y() + dx * std::sin(a) + dy * std::cos(a)};
    }
    return p;
}

// One rounded corner about Q with the screen's step (h = 1 / rho): from debut by steps of h, then fin.
Points Coin(QPointF Q, double rho, double debut, double fin) {
    const double h = 1 / rho, sens = fin > debut ? 1 : -1;
    Points p{Q + QPointF(rho * std::cos(debut), rho * std::sin(debut))};
    for (int i = 1; i * h < std::abs(fin - debut) - 1e-9; ++i) {
        const double t = debut + sens * i * h;
        p << Q + QPointF(rho * std::cos(t), rho * std::sin(t));
    }
    return p << Q + QPointF(rho * std::cos(fin), rho * std::sin(fin));
}

// The outline of 0..w x 0..h rounded outward by rho, or hollowed by rho about each corner.
Points Arrondi(double w, double h, double rho) {
    return Coin({rho, rho}, rho, PI, 1.5 * PI) + Coin({w - rho, rho}, rho, 1.5 * PI, 2 * PI) +
           Coin({w - rho, h - rho}, rho, 0, 0.5 * PI) + Coin({rho, h - rho}, rho, 0.5 * PI, PI);
}
Points Creux(double w, double h, double rho) {
    return Coin({0, 0}, rho, 0.5 * PI, 0) + Coin({w, 0}, rho, PI, 0.5 * PI) + Coin({w, h}, rho, 1.5 * PI, PI) +
           Coin({0, h}, rho, 2 * PI, 1.5 * PI);
}

// What the run drew, without the clearing of the pane.
QVector<OpSurface> Dessin(const Session& s) {
    QVector<OpSurface> r = s.journal;
    r.removeIf([](const OpSurface& op) { return op.genre == OpSurface::Effacement; });
    return r;
}

// Checks that a fill has the points, each within tol.
void VerifieRemplissage(const OpSurface& poly, const Points& p, double tol) {
    ASSERT_EQ(poly.genre, OpSurface::Polygone);
    ASSERT_EQ(poly.points.size(), p.size());
    for (int i = 0; i < p.size(); ++i) EXPECT_TRUE(Proche(poly.points[i], p[i], tol)) << i;
}

} // namespace

// The outline each frame draws, and the current point it leaves (NAN: not checked).
TEST(Cadre, OutlinesOfTheFrames) {
    struct Cas { QString prog; Points contour; double px = NAN, py = NAN; int depuis = 0; };
    const Points coins = Coin({5, 5}, 5, PI, 1.5 * PI), coins2 = Coin({35, 15}, 5, 0, 0.5 * PI);
    const std::vector<Cas> cas = {
        // x1 = x2, or x2 empty: a vertical line.
        {"Cadre = 10, 10, 10, 40", Rectangle(10, 10, 10, 40)},
        {"Cadre = 10, 10, , 40", Rectangle(10, 10, 10, 40)},
        // Rounded outward about one point a millimetre of arc; the pen on the end point.
        {"CadreA = 0, 0, 40, 20, 5", Arrondi(40, 20, 5), 40, 20},
        // A radius over half the side is cut, width first then height; a negative one hollows the corners.
        {"CadreA = 0, 0, 20, 20, 15", Arrondi(20, 20, 10)},
        {"CadreA = 0, 0, 20, 40, 15", Arrondi(20, 40, 10)}, {"CadreA = 0, 0, 40, 20, 15", Arrondi(40, 20, 10)},
        {"CadreA = 0, 0, 20, 40, -15", Creux(20, 40, 10)},
        // D rounds only the corners at (x1, y1) and (x2, y2).
        {"CadreA = 0, 0, 40, 20, 5§D", coins + Points{{40, 0}} + coins2 + Points{{0, 20}}},
        {"CadreA = 40, 20, 0, 0, 5§d", coins2 + Points{{0, 20}} + coins + Points{{40, 0}}},
        // The frame's own angle, negated, turns it about its centre (C, default),
        // (x1, y1) (1) or (x2, y2) (2); the end point stays the unturned (x2, y2).
        {"Cadre = 0, 0, 40, 20, , , 90", Tourne(Rectangle(0, 0, 40, 20), {20, 10}, -90 * K), 40, 20},
        {"Cadre = 0, 0, 40, 20, , , 90 1", Tourne(Rectangle(0, 0, 40, 20), {0, 0}, -90 * K), 40, 20},
        {"Cadre = 0, 0, 40, 20, , , 90§2", Tourne(Rectangle(0, 0, 40, 20), {40, 20}, -90 * K), 40, 20},
        {"Cadre = 10, 10, 50, 30, , , 0 2", Rectangle(10, 10, 50, 30)},
        {"CadreA = 0, 0, 40, 20, 5, , , 30§1", Tourne(Arrondi(40, 20, 5), {0, 0}, -30 * K)},
        // The § of y1 and AngRot turn the whole about 0,0, after the frame's own turn.
        {"Cadre = 10, 0§90, 30, 20", Tourne(Rectangle(10, 0, 30, 20), {0, 0}, 90 * K), 30, 20},
        {"AngRot = 45\nCadre = 10, 0, 30, 20, , , 10",
         Tourne(Tourne(Rectangle(10, 0, 30, 20), {20, 10}, -10 * K), {0, 0}, 45 * K)},
        // Corners relative (R) or polar about the first; the first relative to the last frame's end point.
        {"Cadre = 10, 10, 45°, 20", Rectangle(10, 10, 10 + 20 * std::cos(45 * K), 10 + 20 * std::sin(45 * K))},
        {"Cadre = 0, 0, 5, 5\nCadre = 1R, 1R, 3R, 2R", Rectangle(6, 6, 9, 8), NAN, NAN, 4},
        {"Cadre = 10, 10, 20, 20\nCadre = , , 5R, 5R", Rectangle(20, 20, 25, 25), NAN, NAN, 4},
        // C centres on the smaller coordinate, x2 and y2 giving the size.
        {"Cadre = 50§C, 40, 20R, 10R", Rectangle(40, 35, 60, 45), 60, 45},
        {"Cadre = 50§c, 40, 40, 60", Rectangle(45, 30, 35, 50)},
    };
    for (const Cas& c : cas) {
        SCOPED_TRACE(c.prog.toStdString());
        auto s = Lance(c.prog);
        VerifieContour(Lignes(*s).mid(c.depuis), c.contour);
        EXPECT_TRUE(std::isnan(c.px) || Proche(Pointe(*s), {c.px, c.py}));
    }
}

TEST(CadreP, FillComesBeforeTheOutline) {
    // A negative radius fills the hollowed shape; the outline follows in the same colour.
    for (auto [prog, contour, couleur] : {std::tuple{"CadreP = 0, 0, 40, 20, VERT", Rectangle(0, 0, 40, 20), 65280},
                                          {"CadreAP = 0, 0, 40, 20, -5, ROUGE", Creux(40, 20, 5), 255}}) {
        auto s = Lance(prog);
        const auto ops = Dessin(*s);
        const auto l = Lignes(*s);
        ASSERT_EQ(ops.size(), 1 + l.size()) << prog;
        EXPECT_TRUE(ops[0].couleur == couleur && ops[0].remplissage == couleur && l[0].couleur == couleur);
        VerifieRemplissage(ops[0], contour, s->etat.Repere.MmParPixelE);
        VerifieContour(l, contour);
        EXPECT_EQ(s->pane->FillStyle, 1);
    }
}

TEST(CadreP, ColourNWithAFinalColourOnlyMovesThePen) {
    auto s = Lance("CadreP = 10, 10, 50, 30, N§ROUGE");
    EXPECT_TRUE(Dessin(*s).isEmpty());
    EXPECT_TRUE(Proche(Pointe(*s), {50, 30}) && Proche({s->pane->CurrentX, s->pane->CurrentY}, {50, 30}));
    // Turned, the pen stands on the turned end point; the current point is given back unturned.
    s = Lance("CadreAP = 10, 10§30, 50, 30, 4, N§BLEU");
    EXPECT_TRUE(Dessin(*s).isEmpty());
    EXPECT_TRUE(Proche({s->pane->CurrentX, s->pane->CurrentY}, Tourne({{50, 30}}, {0, 0}, 30 * K)[0]));
    EXPECT_TRUE(Proche(Pointe(*s), {50, 30}));
}

// On the printer a fill first sets the page mark, once a page; outlines need none.
TEST(CadreP, PrinterPageMarkOnceAPage) {
    auto s = LanceImprimante("CadreP = 0, 0, 40, 20, VERT\nCadreP = 50, 0, 40R, 20R, ROUGE\nNPage\n"
                             "CadreAP = 0, 0, 40, 20, 5, BLEU§BLANC");
    QVector<OpSurface::Genre> genres;
    for (const OpSurface& op : s->journal)
        if (op.genre == OpSurface::Point || op.genre == OpSurface::NouvellePage) genres << op.genre;
    EXPECT_EQ(genres, (QVector<OpSurface::Genre>{OpSurface::Point, OpSurface::NouvellePage, OpSurface::Point}));
    EXPECT_EQ(Dessin(*s).value(1).genre, OpSurface::Polygone);
    EXPECT_TRUE(Ops(*LanceImprimante("Cadre = 0, 0, 40, 20"), OpSurface::Point).isEmpty());
}

// max(|dR|, |dG|, |dB|) + 1 equal bands from the top, the colour rounded; the outline last, in the first colour.
TEST(CadreP, GradientHasEqualBands) {
    auto s = LanceImprimante("CadreP = 10, 10, 50, 32, NOIR§RVB 0 0 10");
    const auto polys = Ops(*s, OpSurface::Polygone);
    ASSERT_EQ(polys.size(), 11);
    float b = 0;
    for (int i = 0; i < 11; ++i) {
        SCOPED_TRACE(i);
        const int bleu = int(std::nearbyint(b));
        b += 10.0f / 11;
        EXPECT_TRUE(polys[i].couleur == bleu * 65536 && polys[i].remplissage == bleu * 65536);
        const double haut = 32 - 2.0 * i, bas = haut - 2;
        VerifieRemplissage(polys[i], {{50, haut}, {50, bas}, {10, bas}, {10, haut}}, MmPointI);
    }
    VerifieContour(Lignes(*s), Rectangle(10, 10, 50, 32));
    EXPECT_TRUE(Lignes(*s).value(0).couleur == 0 && s->journal.last().genre == OpSurface::Ligne);
    // Equal colours give one band; Cadre without P ignores the second colour.
    EXPECT_EQ(Ops(*Lance("CadreP = 10, 10, 50, 32, ROUGE§ROUGE"), OpSurface::Polygone).size(), 1);
    EXPECT_TRUE(Ops(*Lance("Cadre = 10, 10, 50, 32, ROUGE§BLEU"), OpSurface::Polygone).isEmpty());
}

// With rounded corners every band stays inside the outline (0..50 x 0..30 rounded out or hollowed by 6, or two
// corners only); the bands span top to bottom, each top edge ending on points of the band above.
TEST(CadreAP, GradientBandsFollowTheCorners) {
    // A band point may pass the line by the outline's own rounding to device pixels: half a dot each way.
    const double t = MmPointI * std::sqrt(0.5) + 1e-6;
    auto dansCadre = [t](QPointF p) { return p.x() > -t && p.x() < 50 + t && p.y() > -t && p.y() < 30 + t; };
    auto distance = [](QPointF p, QPointF c) { return std::hypot(p.x() - c.x(), p.y() - c.y()); };
    auto dansArrondi = [&](QPointF p) {
        return dansCadre(p) && distance(p, {std::clamp(p.x(), 6.0, 44.0), std::clamp(p.y(), 6.0, 24.0)}) <= 6 + t;
    };
    auto horsCreux = [&](QPointF p) {
        for (const QPointF& c : Rectangle(0, 0, 50, 30))
            if (distance(p, c) < 6 - t) return false;
        return dansCadre(p);
    };
    const std::pair<QString, std::function<bool(QPointF)>> cas[] = {
        {"6", dansArrondi}, {"-6", horsCreux}, {"6§D", dansCadre}};
    for (const auto& [r, dedans] : cas) {
        auto s = LanceImprimante("CadreAP = 10, 10, 50R, 30R, " + r + ", ROUGE§BLEU");
        const auto polys = Ops(*s, OpSurface::Polygone);
        ASSERT_EQ(polys.size(), 256);
        double yMax = -1e9, yMin = 1e9;
        for (int i = 0; i < polys.size(); ++i) {
            const Points& p = polys[i].points;
            for (const QPointF& q : p) {
                yMax = std::max(yMax, q.y());
                yMin = std::min(yMin, q.y());
                EXPECT_TRUE(dedans(q - QPointF(10, 10))) << r.toStdString() << " " << i;
            }
            const Points& dessus = polys[std::max(i - 1, 0)].points;
            EXPECT_TRUE(dessus.contains(p.first()) && dessus.contains(p.last())) << i;
        }
        EXPECT_TRUE(std::abs(yMax - 40) < MmPointI && std::abs(yMin - 10) < MmPointI) << yMin << " " << yMax;
    }
}

TEST(Cadre, CommandOwnLineStyleIsGivenBack) {
    auto s = Lance("Cadre = 0, 0, 10, 10, , 1mm\nCadre = 0, 0, 10, 10");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 8);
    const int w = int(std::nearbyint(1 / s->etat.Repere.MmParPixelE));
    for (int i = 0; i < 8; ++i) EXPECT_EQ(l[i].largeur, i < 4 ? w : 1) << i;
    // Dashes and gaps of 2 round the 40 mm outline, a gap ending on a corner taken again: 3 + 2 + 2 + 2.
    EXPECT_EQ(Lignes(*Lance("Cadre = 0, 0, 10, 10, , 1§§2")).size(), 9);
}

