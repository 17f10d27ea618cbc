// Part 3.2: frames. Expected outlines are worked out here from the spec's
// formulas, to 0.001 mm; fills are compared within one device pixel, since
// `Polygon` takes whole pixels.
#include "outils.h"

#include "app/core/rendu.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <cmath>

namespace {

constexpr double K = 0.017453293;
constexpr double PI = 3.14159265358979;

// Checks that the lines join the points in order, the last back to the first.
void VerifieContour(const QVector<OpSurface>& l, const QVector<QPointF>& p) {
    ASSERT_EQ(l.size(), p.size());
    for (int i = 0; i < l.size(); ++i) {
        SCOPED_TRACE(i);
        const QPointF a = p[i], b = p[(i + 1) % p.size()];
        EXPECT_MM(l[i].x1, a.x());
        EXPECT_MM(l[i].y1, a.y());
        EXPECT_MM(l[i].x2, b.x());
        EXPECT_MM(l[i].y2, b.y());
    }
}

QVector<QPointF> Rectangle(double x1, double y1, double x2, double y2) {
    return {{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}};
}

// AjoutePoint's own turn: x' = cx + dx cos a - dy sin a, y' = cy + dx sin a + dy cos a.
QPointF TourneAutour(QPointF p, QPointF c, double a) {
    const double dx = p.x() - c.x(), dy = p.y() - c.y();
    return {c.x() + dx * std::cos(a) - dy * std::sin(a), c.y() + dx * std::sin(a) + dy * std::cos(a)};
}

// One rounded corner as Part 3.2 with the step of Part 3.1 (h = 1 / rho on the
// screen at zoom 1): from A by steps of h toward B, then B.
QVector<QPointF> Coin(QPointF Q, double rho, double debut, double fin) {
    const double h = 1 / rho;
    QVector<QPointF> p;
    const double sens = fin > debut ? 1 : -1;
    p << Q + QPointF(rho * std::cos(debut), rho * std::sin(debut));
    for (int i = 1; i * h < std::abs(fin - debut) - 1e-9; ++i) {
        const double t = debut + sens * i * h;
        p << Q + QPointF(rho * std::cos(t), rho * std::sin(t));
    }
    p << Q + QPointF(rho * std::cos(fin), rho * std::sin(fin));
    return p;
}

// What the run drew: the journal without the clearing of the pane.
QVector<OpSurface> Dessin(const Session& s) {
    QVector<OpSurface> r;
    for (const OpSurface& op : s.journal)
        if (op.genre != OpSurface::Effacement) r.append(op);
    return r;
}

bool Proche(QPointF a, QPointF b, double tol) {
    return std::abs(a.x() - b.x()) <= tol && std::abs(a.y() - b.y()) <= tol;
}

// Inside the frame 0..W x 0..H with corners rounded outward by rho, within tol.
bool DansArrondi(QPointF p, double W, double H, double rho, double tol) {
    if (p.x() < -tol || p.x() > W + tol || p.y() < -tol || p.y() > H + tol) return false;
    const double cx = std::clamp(p.x(), rho, W - rho), cy = std::clamp(p.y(), rho, H - rho);
    return std::hypot(p.x() - cx, p.y() - cy) <= rho + tol;
}

} // namespace

// Edge case: x1 = x2 draws a vertical line.
TEST(Cadre, XEgauxLigneVerticale) {
    for (const QString l : {"Cadre = 10, 10, 10, 40", "Cadre = 10, 10, , 40"}) {
        SCOPED_TRACE(l.toStdString());
        auto s = Lance(l);
        const auto lignes = Lignes(*s);
        VerifieContour(lignes, Rectangle(10, 10, 10, 40));
        for (const OpSurface& op : lignes) {
            EXPECT_MM(op.x1, 10);
            EXPECT_MM(op.x2, 10);
        }
    }
}

// Edge case: a radius above half the side is clipped; a square with a radius
// of half its side is a circle in outline. The sign is kept.
TEST(CadreA, RayonRogneCarreCercle) {
    auto s = Lance("CadreA = 0, 0, 20, 20, 15");
    const auto l = Lignes(*s);
    ASSERT_GT(l.size(), 20);
    for (const OpSurface& op : l) {
        EXPECT_MM(std::hypot(op.x1 - 10, op.y1 - 10), 10);
        EXPECT_MM(std::hypot(op.x2 - 10, op.y2 - 10), 10);
    }
    // Width first, then height: 20 x 40 with 15 gives 10.
    auto s2 = Lance("CadreA = 0, 0, 20, 40, 15");
    auto p = Coin({10, 10}, 10, PI, 1.5 * PI) + Coin({10, 10}, 10, 1.5 * PI, 2 * PI) +
             Coin({10, 30}, 10, 0, 0.5 * PI) + Coin({10, 30}, 10, 0.5 * PI, PI);
    VerifieContour(Lignes(*s2), p);
    // Negative: hollowed by 10 about each corner of the 20 x 40 frame.
    auto s3 = Lance("CadreA = 0, 0, 20, 40, -15");
    p = Coin({0, 0}, 10, 0.5 * PI, 0) + Coin({20, 0}, 10, PI, 0.5 * PI) +
        Coin({20, 40}, 10, 1.5 * PI, PI) + Coin({0, 40}, 10, 2 * PI, 1.5 * PI);
    VerifieContour(Lignes(*s3), p);
}

// Rounded outward: arcs about the inner corner points, about one point per
// millimetre of arc (h = 1 / r).
TEST(CadreA, ArrondiVersLExterieur) {
    auto s = Lance("CadreA = 0, 0, 40, 20, 5");
    const auto p = Coin({5, 5}, 5, PI, 1.5 * PI) + Coin({35, 5}, 5, 1.5 * PI, 2 * PI) +
                   Coin({35, 15}, 5, 0, 0.5 * PI) + Coin({5, 15}, 5, 0.5 * PI, PI);
    EXPECT_EQ(p.size(), 4 * 9); // 90 degrees by steps of 0.2 rad: 7 inner points
    VerifieContour(Lignes(*s), p);
    // The pen at the end point.
    EXPECT_MM(s->etat.Repere.PointX, 40);
    EXPECT_MM(s->etat.Repere.PointY, 20);
}

// "D": only the corners of (x1, y1) and (x2, y2) are rounded.
TEST(CadreA, CoinsDiagonaux) {
    auto s = Lance("CadreA = 0, 0, 40, 20, 5§D");
    const auto p = Coin({5, 5}, 5, PI, 1.5 * PI) + QVector<QPointF>{{40, 0}} +
                   Coin({35, 15}, 5, 0, 0.5 * PI) + QVector<QPointF>{{0, 20}};
    VerifieContour(Lignes(*s), p);
    // The other way round: (x1, y1) at the top right.
    auto s2 = Lance("CadreA = 40, 20, 0, 0, 5§d");
    const auto q = Coin({35, 15}, 5, 0, 0.5 * PI) + QVector<QPointF>{{0, 20}} +
                   Coin({5, 5}, 5, PI, 1.5 * PI) + QVector<QPointF>{{40, 0}};
    VerifieContour(Lignes(*s2), q);
}

// Edge case: CadreAP with a negative radius fills the hollow shape, then draws
// its outline.
TEST(CadreAP, RayonNegatifRemplitLeCreux) {
    auto s = Lance("CadreAP = 0, 0, 40, 20, -5, ROUGE");
    const auto ops = Dessin(*s);
    ASSERT_FALSE(ops.isEmpty());
    const OpSurface& poly = ops[0];
    ASSERT_EQ(poly.genre, OpSurface::Polygone);
    ASSERT_TRUE(poly.remplissage.has_value());
    EXPECT_EQ(*poly.remplissage, 255);
    const double px = s->etat.Repere.MmParPixelE;
    const auto p = Coin({0, 0}, 5, 0.5 * PI, 0) + Coin({40, 0}, 5, PI, 0.5 * PI) +
                   Coin({40, 20}, 5, 1.5 * PI, PI) + Coin({0, 20}, 5, 2 * PI, 1.5 * PI);
    ASSERT_EQ(poly.points.size(), p.size());
    for (int i = 0; i < p.size(); ++i) EXPECT_TRUE(Proche(poly.points[i], p[i], px)) << i;
    // No point of the fill comes into the hollowed corners.
    for (const QPointF& q : poly.points)
        for (const QPointF& c : Rectangle(0, 0, 40, 20))
            EXPECT_GE(std::hypot(q.x() - c.x(), q.y() - c.y()), 5 - px);
    // The outline follows, in the same colour.
    const auto l = Lignes(*s);
    VerifieContour(l, p);
    EXPECT_EQ(l[0].couleur, 255);
    EXPECT_EQ(ops.size(), 1 + l.size());
}

// Edge case: colour N with a final colour draws nothing; the current point
// still moves to the end point.
TEST(CadreP, CouleurNAvecFinaleRienQueLaPlume) {
    auto s = Lance("CadreP = 10, 10, 50, 30, N§ROUGE");
    EXPECT_TRUE(Dessin(*s).isEmpty());
    EXPECT_MM(s->etat.Repere.PointX, 50);
    EXPECT_MM(s->etat.Repere.PointY, 30);
    EXPECT_MM(s->pane->CurrentX, 50);
    EXPECT_MM(s->pane->CurrentY, 30);
    // Turned by the frame's rotation, the pen stands on the turned end point;
    // the current point is given back unturned.
    auto s2 = Lance("CadreAP = 10, 10§30, 50, 30, 4, N§BLEU");
    EXPECT_TRUE(Dessin(*s2).isEmpty());
    EXPECT_MM(s2->pane->CurrentX, 50 * std::cos(30 * K) - 30 * std::sin(30 * K));
    EXPECT_MM(s2->pane->CurrentY, 50 * std::sin(30 * K) + 30 * std::cos(30 * K));
    EXPECT_MM(s2->etat.Repere.PointX, 50);
    EXPECT_MM(s2->etat.Repere.PointY, 30);
}

// Edge case: a rotation of 0 with letter 2 behaves as no rotation.
TEST(Cadre, RotationZeroLettre2) {
    auto ref = Lance("Cadre = 10, 10, 50, 30");
    for (const QString l : {"Cadre = 10, 10, 50, 30, , , 0§2", "Cadre = 10, 10, 50, 30, , , 0 2"}) {
        SCOPED_TRACE(l.toStdString());
        auto s = Lance(l);
        VerifieContour(Lignes(*s), Rectangle(10, 10, 50, 30));
        EXPECT_EQ(Lignes(*s).size(), Lignes(*ref).size());
    }
}

// The rectangle's own angle, negated as the spec says, turns it about its
// centre (C, default), (x1, y1) (1) or (x2, y2) (2); the end point stays the
// unturned (x2, y2).
TEST(Cadre, RotationPropre) {
    const QPointF centres[] = {{20, 10}, {20, 10}, {0, 0}, {40, 20}};
    const char* lettres[] = {"", "C", " 1", "§2"};
    for (int k = 0; k < 4; ++k) {
        const QString l = QStringLiteral("Cadre = 0, 0, 40, 20, , , 90") + lettres[k];
        SCOPED_TRACE(l.toStdString());
        auto s = Lance(l);
        QVector<QPointF> p;
        for (const QPointF& c : Rectangle(0, 0, 40, 20)) p << TourneAutour(c, centres[k], -90 * K);
        VerifieContour(Lignes(*s), p);
        EXPECT_MM(s->etat.Repere.PointX, 40);
        EXPECT_MM(s->etat.Repere.PointY, 20);
    }
    // CadreA: the corner arcs turn with the frame.
    auto s = Lance("CadreA = 0, 0, 40, 20, 5, , , 30§1");
    auto p = Coin({5, 5}, 5, PI, 1.5 * PI) + Coin({35, 5}, 5, 1.5 * PI, 2 * PI) +
             Coin({35, 15}, 5, 0, 0.5 * PI) + Coin({5, 15}, 5, 0.5 * PI, PI);
    for (QPointF& q : p) q = TourneAutour(q, {0, 0}, -30 * K);
    VerifieContour(Lignes(*s), p);
}

// The rotation of Part 2.1 (§ of y1) turns the whole about 0,0, after the
// frame's own turn.
TEST(Cadre, RotationDuRepere) {
    auto s = Lance("Cadre = 10, 0§90, 30, 20");
    QVector<QPointF> p;
    for (const QPointF& c : Rectangle(10, 0, 30, 20)) p << TourneAutour(c, {0, 0}, 90 * K);
    VerifieContour(Lignes(*s), p);
    EXPECT_MM(s->etat.Repere.PointX, 30);
    EXPECT_MM(s->etat.Repere.PointY, 20);
    // AngRot is the default rotation; both turns together.
    auto s2 = Lance("AngRot = 45\nCadre = 10, 0, 30, 20, , , 10");
    p.clear();
    for (const QPointF& c : Rectangle(10, 0, 30, 20))
        p << TourneAutour(TourneAutour(c, {20, 10}, -10 * K), {0, 0}, 45 * K);
    VerifieContour(Lignes(*s2), p);
}

// Corners from any coordinate forms: the second pair about the first corner.
TEST(Cadre, CoinsRelatifsEtPolaires) {
    auto s = Lance("Cadre = 10, 10, 40R, 20R");
    VerifieContour(Lignes(*s), Rectangle(10, 10, 50, 30));
    auto s2 = Lance("Cadre = 10, 10, 45°, 20");
    const double c = 10 + 20 * std::cos(45 * K), d = 10 + 20 * std::sin(45 * K);
    VerifieContour(Lignes(*s2), Rectangle(10, 10, c, d));
    // The first pair about the current point, which the last frame left on its
    // end point.
    auto s3 = Lance("Cadre = 0, 0, 5, 5\nCadre = 1R, 1R, 3R, 2R");
    VerifieContour(Lignes(*s3).mid(4), Rectangle(6, 6, 9, 8));
    auto s4 = Lance("Cadre = 10, 10, 20, 20\nCadre = , , 5R, 5R");
    VerifieContour(Lignes(*s4).mid(4), Rectangle(20, 20, 25, 25));
}

// Centring with C: centred on the smaller coordinate, x2 and y2 giving the size.
TEST(Cadre, CentrageC) {
    auto s = Lance("Cadre = 50§C, 40, 20R, 10R");
    VerifieContour(Lignes(*s), Rectangle(40, 35, 60, 45));
    EXPECT_MM(s->etat.Repere.PointX, 60);
    EXPECT_MM(s->etat.Repere.PointY, 45);
    // Absolute second corner: a = min, w = x2 - x1.
    auto s2 = Lance("Cadre = 50§c, 40, 40, 60");
    VerifieContour(Lignes(*s2), Rectangle(40 + 5, 40 - 10, 40 - 5, 40 + 10));
}

// The fill comes first, one polygon of the whole outline, then the outline.
TEST(CadreP, RemplissageAvantContour) {
    auto s = Lance("CadreP = 0, 0, 40, 20, VERT");
    const auto ops = Dessin(*s);
    ASSERT_EQ(ops.size(), 5);
    const OpSurface& poly = ops[0];
    ASSERT_EQ(poly.genre, OpSurface::Polygone);
    EXPECT_EQ(poly.couleur, 65280);
    ASSERT_TRUE(poly.remplissage.has_value());
    EXPECT_EQ(*poly.remplissage, 65280);
    const double px = s->etat.Repere.MmParPixelE;
    const auto r = Rectangle(0, 0, 40, 20);
    ASSERT_EQ(poly.points.size(), 4);
    for (int i = 0; i < 4; ++i) EXPECT_TRUE(Proche(poly.points[i], r[i], px)) << i;
    VerifieContour(Lignes(*s), r);
    EXPECT_EQ(s->pane->FillStyle, 1);
}

// On the printer the fill sets the page mark of Part 3.3 first, once a page.
TEST(CadreP, MarqueDePageImprimante) {
    auto s = LanceImprimante("CadreP = 0, 0, 40, 20, VERT\nCadreP = 50, 0, 40R, 20R, ROUGE\nNPage\n"
                             "CadreAP = 0, 0, 40, 20, 5, BLEU§BLANC");
    QVector<OpSurface::Genre> genres;
    for (const OpSurface& op : s->journal)
        if (op.genre == OpSurface::Point || op.genre == OpSurface::NouvellePage) genres << op.genre;
    EXPECT_EQ(genres, (QVector<OpSurface::Genre>{OpSurface::Point, OpSurface::NouvellePage,
                                                 OpSurface::Point}));
    const auto ops = Dessin(*s);
    const OpSurface& p = ops[0];
    ASSERT_EQ(p.genre, OpSurface::Point);
    EXPECT_MM(p.x1, s->imprimante->ScaleLeft - 1000);
    EXPECT_MM(p.y1, s->imprimante->ScaleTop + 1000);
    EXPECT_EQ(ops[1].genre, OpSurface::Polygone);
    // Outlines alone need no mark.
    auto s2 = LanceImprimante("Cadre = 0, 0, 40, 20");
    EXPECT_TRUE(Ops(*s2, OpSurface::Point).isEmpty());
}

// The linear gradient: n = max(|dR|, |dG|, |dB|) + 1 bands of equal height from
// the top down, the running colour rounded; the outline last in the first colour.
TEST(CadreP, DegradeBandesEgales) {
    auto s = LanceImprimante("CadreP = 10, 10, 50, 32, NOIR§RVB 0 0 10");
    const auto polys = Ops(*s, OpSurface::Polygone);
    ASSERT_EQ(polys.size(), 11);
    const double px = s->etat.Repere.MmParPointI;
    float b = 0;
    for (int i = 0; i < 11; ++i) {
        SCOPED_TRACE(i);
        const int bleu = int(std::nearbyint(b));
        EXPECT_EQ(polys[i].couleur, bleu * 65536);
        EXPECT_EQ(polys[i].remplissage.value_or(-2), bleu * 65536);
        b += 10.0f / 11;
        const double haut = 32 - 2.0 * i, bas = 32 - 2.0 * (i + 1);
        const QVector<QPointF> attendu = {{50, haut}, {50, bas}, {10, bas}, {10, haut}};
        ASSERT_EQ(polys[i].points.size(), 4);
        for (int j = 0; j < 4; ++j) EXPECT_TRUE(Proche(polys[i].points[j], attendu[j], px)) << j;
    }
    // The bands come first, the outline last.
    const auto l = Lignes(*s);
    VerifieContour(l, Rectangle(10, 10, 50, 32));
    EXPECT_EQ(l[0].couleur, 0);
    EXPECT_EQ(s->journal.last().genre, OpSurface::Ligne);
    // A second colour equal to the first: one band.
    auto s2 = Lance("CadreP = 10, 10, 50, 32, ROUGE§ROUGE");
    EXPECT_EQ(Ops(*s2, OpSurface::Polygone).size(), 1);
    // Cadre without P ignores the second colour.
    auto s3 = Lance("Cadre = 10, 10, 50, 32, ROUGE§BLEU");
    EXPECT_TRUE(Ops(*s3, OpSurface::Polygone).isEmpty());
}

// With rounded corners the bands follow the arcs: every band stays inside the
// outline (its pixels are rounded toward the frame's middle), the first starts
// at the top, the last ends at the bottom, and each band's upper edge is the
// lower edge of the one above, point for point.
TEST(CadreAP, DegradeSuitLesCoins) {
    for (const QString r : {"6", "-6", "6§D"}) {
        SCOPED_TRACE(r.toStdString());
        auto s = LanceImprimante("CadreAP = 10, 10, 50R, 30R, " + r + ", ROUGE§BLEU");
        const auto polys = Ops(*s, OpSurface::Polygone);
        ASSERT_EQ(polys.size(), 256);
        const double px = s->etat.Repere.MmParPointI;
        EXPECT_EQ(polys.first().couleur, 255);
        EXPECT_EQ(polys.last().couleur, RGB(1, 0, 254));
        double yMax = -1e9, yMin = 1e9;
        for (int i = 0; i < polys.size(); ++i) {
            const QVector<QPointF>& p = polys[i].points;
            for (const QPointF& q : p) {
                yMax = std::max(yMax, q.y());
                yMin = std::min(yMin, q.y());
                const QPointF local = q - QPointF(10, 10);
                if (r == QLatin1String("6"))
                    EXPECT_TRUE(DansArrondi(local, 50, 30, 6, 0.001)) << i;
                else if (r == QLatin1String("-6"))
                    for (const QPointF& c : Rectangle(0, 0, 50, 30))
                        EXPECT_GE(std::hypot(local.x() - c.x(), local.y() - c.y()), 6 - 0.001) << i;
                else
                    EXPECT_TRUE(local.x() >= 0 && local.x() <= 50 && local.y() >= 0 &&
                                local.y() <= 30);
            }
            if (i == 0) continue;
            // The top edge of this band: its first and last points, found in the band above.
            const QVector<QPointF>& dessus = polys[i - 1].points;
            EXPECT_TRUE(dessus.contains(p.first())) << i;
            EXPECT_TRUE(dessus.contains(p.last())) << i;
        }
        EXPECT_NEAR(yMax, 40, px);
        EXPECT_NEAR(yMin, 10, px);
    }
}

// The command's own line style, restored afterward.
TEST(Cadre, StyleLocalRestaure) {
    auto s = Lance("Cadre = 0, 0, 10, 10, , 1mm\nCadre = 0, 0, 10, 10");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 8);
    const int w = int(std::nearbyint(1 / s->etat.Repere.MmParPixelE));
    for (int i = 0; i < 4; ++i) EXPECT_EQ(l[i].largeur, w);
    for (int i = 4; i < 8; ++i) EXPECT_EQ(l[i].largeur, 1);
    // A dash pattern runs round the outline.
    auto s2 = Lance("Cadre = 0, 0, 10, 10, , 1§§2");
    // 40 mm in dashes of 2 and gaps of 2; a gap that ends exactly on a corner
    // is taken again on the next side (Part 2.2): 3 + 2 + 2 + 2 dashes.
    EXPECT_EQ(Lignes(*s2).size(), 9);
}

// Frames and bands on paper: a rendered PNG looked at pixel by pixel. The
// gradient leaves no gap between its bands and stays inside the rounded outline;
// the sector fills lie between their radii.
TEST(CadreAP, RenduPngSansJourEntreBandes) {
    QTemporaryDir d;
    ASSERT_TRUE(d.isValid());
    const QString prog = Programme(
        "CentreEI = 105, 150, N\n"
        "CadreAP = -80, -120, 160R, 60R, 10, ROUGE§BLEU, 0.1mm\n"
        "Arc = 30, 150, 60, N\n"
        "SectP = 0, 30, 50, 58, VERT\n"
        "SectP = 30, 70, 50, 58, JAUNE\n"
        "SectP = 70, 100, 50, 58, ROUGE\n");
    OptionsRendu o;
    o.dpi = 254; // 10 pixels a millimetre
    Reglages regl;
    const QString png = d.filePath("o.png");
    const ResultatRendu r = RendProgramme(prog, QString(), png, o, regl);
    ASSERT_EQ(r.statut, 0) << r.messages.join(" | ").toStdString();
    QImage im(png);
    ASSERT_FALSE(im.isNull());
    // Page millimetres (y up from the bottom of A4) to pixels.
    auto pixel = [&](double x, double y) {
        return QColor(im.pixel(int(x * 10), int((297 - y) * 10)));
    };
    auto blanc = [](QColor c) { return c.red() > 245 && c.green() > 245 && c.blue() > 245; };
    // The gradient spans y = 30..90 on the page, x = 25..185. Down the middle
    // column, every pixel is ink, red at the top turning to blue.
    for (int py = int((297 - 89.5) * 10); py <= int((297 - 30.5) * 10); ++py) {
        const QColor c(im.pixel(1050, py));
        ASSERT_FALSE(blanc(c)) << py;
        ASSERT_LT(c.green(), 40) << py;
    }
    EXPECT_GT(pixel(105, 89).red(), 230);
    EXPECT_LT(pixel(105, 89).blue(), 30);
    EXPECT_GT(pixel(105, 31).blue(), 230);
    EXPECT_LT(pixel(105, 31).red(), 30);
    // Along a row near the rounded top, ink between the arcs and none at the
    // frame's corner, outside the rounding.
    EXPECT_FALSE(blanc(pixel(40, 88)));
    EXPECT_TRUE(blanc(pixel(25.8, 89.2)));
    EXPECT_TRUE(blanc(pixel(184.2, 30.8)));
    EXPECT_TRUE(blanc(pixel(24, 60)));
    // Sectors about (105, 150) at radius 54: green, yellow, red; none at 45 or 62.
    auto aiguille = [&](double dev, double rayon) {
        const double a = (30 + dev * 1.2) * K; // percent of 30..150
        return pixel(105 - rayon * std::cos(a), 150 + rayon * std::sin(a));
    };
    const QColor v = aiguille(15, 54), j = aiguille(50, 54), rg = aiguille(85, 54);
    EXPECT_TRUE(v.green() > 200 && v.red() < 50 && v.blue() < 50);
    EXPECT_TRUE(j.green() > 200 && j.red() > 200 && j.blue() < 50);
    EXPECT_TRUE(rg.red() > 200 && rg.green() < 50 && rg.blue() < 50);
    EXPECT_TRUE(blanc(aiguille(50, 45)));
    EXPECT_TRUE(blanc(aiguille(50, 62)));
}

// The examples of this Part render without an error and put ink where they draw.
TEST(Cadre, ExemplesZonesEtFacade) {
    for (const QString nom : {"zones.dat", "facade.dat"}) {
        SCOPED_TRACE(nom.toStdString());
        QFile f(QStringLiteral(MIREL_SOURCE_DIR "/examples/") + nom);
        ASSERT_TRUE(f.open(QIODevice::ReadOnly));
        const QString prog = Programme(QString::fromUtf8(f.readAll()));
        QTemporaryDir d;
        OptionsRendu o;
        o.dpi = 100;
        Reglages regl;
        const ResultatRendu r = RendProgramme(prog, f.fileName(), d.filePath("o.png"), o, regl);
        ASSERT_EQ(r.statut, 0) << r.messages.join(" | ").toStdString();
        QImage im(d.filePath("o.png"));
        ASSERT_FALSE(im.isNull());
        int encre = 0;
        for (int y = 0; y < im.height(); y += 4)
            for (int x = 0; x < im.width(); x += 4)
                if (QColor(im.pixel(x, y)).lightness() < 200) ++encre;
        EXPECT_GT(encre, 500);
    }
}
