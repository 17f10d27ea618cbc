// The colour charts, run on the 600 dpi printer whose pixels are small next to the cells.
#include "outils_peint.h"

#include "drawing/repere.h"
#include "drawing/surface_peinte.h"

#include <QImage>

namespace {
QVector<OpSurface> Cellules(const Session& s) { return Ops(s, OpSurface::Polygone); }

// A cell by its index in drawing order: lower left corner, fill and outline colour.
struct Cellule { int index; double x, y; int r, v, b; };
} // namespace

// Levels made even and at least 4; a pair of faces draws 2 N + 1 columns, the next starting on its last.
TEST(PalCoul, LevelsAndCellCount) {
    const struct { const char* ligne; int cellules; } cas[] = {
        {"PalCoul3 = 4", 27 * 9}, {"PalCoul3 = 5", 27 * 9}, {"PalCoul3 = 1", 27 * 9}, {"PalCoul3 =", 27 * 9},
        {"PalCoul3 = 7.6", 51 * 17}, {"PalCoul = 6", 39 * 7}, {"PalCoul2 = 0", 1 + 64}, {"PalCoul2 = 9", 1 + 512}};
    for (const auto& c : cas) {
        SCOPED_TRACE(c.ligne);
        auto s = LanceImprimante(c.ligne);
        EXPECT_TRUE(Messages(*s).isEmpty());
        EXPECT_EQ(Cellules(*s).size(), c.cellules);
    }
    EXPECT_EQ(Messages(*LanceImprimante("PalCoul2 = 40000")).size(), 1);
}

TEST(PalCoul, CellsAndColours) {
    const struct { const char* programme; std::vector<Cellule> cellules; } cas[] = {
        // Black, pure hue, white up a column; across: red, yellow, green, cyan, blue, magenta, red. 4 x 10 mm.
        {"CentreI = 20, 30, N\nPalCoul3 = 4, 100, 90",
         {{0, 20, 30, 0, 0, 0}, {2, 20, 50, 128, 0, 0}, {4, 20, 70, 255, 0, 0}, {6, 20, 90, 255, 128, 128},
          {8, 20, 110, 255, 255, 255}, {9 * 4 + 4, 36, 70, 255, 255, 0}, {9 * 5 + 4, 40, 70, 191, 255, 0},
          {9 * 9 + 4, 52, 70, 0, 255, 0}, {9 * 13 + 4, 68, 70, 0, 255, 255}, {9 * 17 + 4, 84, 70, 0, 0, 255},
          {9 * 22 + 4, 100, 70, 255, 0, 255}, {9 * 26 + 4, 116, 70, 255, 0, 0}}},
        // From mid grey up to the pure hue, one half only.
        {"PalCoul = 4, 100, 50",
         {{0, 0, 0, 127, 127, 127}, {1, 0, 10, 159, 95, 95}, {4, 0, 40, 255, 0, 0}, {5 * 6 + 4, 24, 40, 127, 255, 0}}},
        // Patches 9 x 1 mm: red picks the band (upper half in the right block), green the row, blue the column.
        {"PalCoul2 = 4, 80, 40",
         {{0, 0, 0, 0, 0, 0}, {1, 9, 1, 63, 63, 63}, {1 + 16 + 4 + 1, 18, 7, 127, 127, 127},
          {1 + 32 + 4 + 3, 80, 2, 191, 127, 255}}},
        // Width 0 counts as 180; a turned chart turns about 0,0.
        {"PalCoul2 = 4, 0, 40", {{1 + 32, 0.55 * 180 + 0.9 * 22.5, 1, 191, 63, 63}}},
        {"CentreI = 100, 100, N\nPalCoul2 = 4, 80, 40§90", {{1, 99, 109, 63, 63, 63}}},
    };
    for (const auto& c : cas) {
        const auto cells = Cellules(*LanceImprimante(c.programme));
        for (const Cellule& a : c.cellules) {
            SCOPED_TRACE(QString("%1 #%2").arg(c.programme).arg(a.index).toStdString());
            ASSERT_LT(a.index, cells.size());
            const OpSurface& op = cells[a.index];
            ASSERT_EQ(op.points.size(), 4);
            EXPECT_NEAR(op.points[0].x(), a.x, 0.05);
            EXPECT_NEAR(op.points[0].y(), a.y, 0.05);
            EXPECT_EQ(op.remplissage.value_or(-1), RGB(a.r, a.v, a.b));
            EXPECT_EQ(op.couleur, RGB(a.r, a.v, a.b));
        }
    }
    // A patch's upper right corner; the four black strokes round a cube chart.
    const OpSurface p = Cellules(*LanceImprimante(cas[2].programme))[1];
    EXPECT_NEAR(p.points[2].x(), 18, 0.05);
    EXPECT_NEAR(p.points[2].y(), 2, 0.05);
    auto s = LanceImprimante(cas[0].programme);
    ASSERT_EQ(Lignes(*s).size(), 4);
    const OpSurface t = Lignes(*s).back();
    EXPECT_EQ(t.couleur, 0);
    EXPECT_MM(t.x1, 20);
    EXPECT_MM(t.y1, 120);
    EXPECT_MM(t.y2, 30);
}

// A pane that only paints skips the patches the next row covers, with the same picture.
TEST(PalCoul, HiddenPatchesSkippedWithoutChange) {
    auto peint = [](bool enregistre) {
        Session s(Programme("CentreE = 10, 10, N\nPalCoul2 = 24, 270, 190"));
        return PeintEcran(s, enregistre);
    };
    const QImage tout = peint(true), visible = peint(false);
    int encre = 0, differents = 0, ecart = 0;
    for (int y = 0; y < tout.height(); ++y)
        for (int x = 0; x < tout.width(); ++x) {
            const QRgb c = tout.pixel(x, y), v = visible.pixel(x, y);
            encre += c != qRgb(255, 255, 255);
            differents += c != v;
            for (int k : {qRed(c) - qRed(v), qGreen(c) - qGreen(v), qBlue(c) - qBlue(v)})
                ecart = std::max(ecart, std::abs(k));
        }
    // Only the soft edges of the thin patches may differ, by a level at most.
    EXPECT_GT(encre, 100000);
    EXPECT_LT(differents, encre / 100);
    EXPECT_LE(ecart, 1);
}

// Rectangles on whole pixels of the pane go a quicker way than other
// polygons, with the same pixels as the polygons a hair off the pixel grid:
// either corner first, outlines of 1 to 3 pixels, no height, and a cell
// after one it shares a side with (where a gradient's seam is mended).
TEST(PalCoul, RectanglesOnWholePixelsPaintAsPolygons) {
    auto peint = [](double decalage) {
        QImage im(60, 40, QImage::Format_RGB32);
        im.fill(Qt::white);
        SurfacePeinte s(GenreSurface::Ecran, 60, 40, 25.4 / DpiEcran, [&](int) -> QPaintDevice* { return &im; });
        s.FillStyle = 0;
        const struct { double x, y, w, h; bool verticalDabord; int largeur, couleur; } cas[] = {
            {5, 5, 10, 6, false, 1, RGB(200, 30, 30)}, {15, 5, 10, 6, true, 1, RGB(30, 200, 30)},
            {5, 11, 20, 0, false, 1, RGB(30, 30, 200)}, {30, 20, 7, 12, false, 3, RGB(120, 60, 0)},
            {37, 20, 5, 12, true, 2, RGB(0, 90, 160)}};
        for (const auto& c : cas) {
            s.DrawWidth = c.largeur;
            s.ForeColor = s.FillColor = c.couleur;
            const double x = c.x + decalage, y = c.y + decalage, X = x + c.w, Y = y + c.h;
            s.Polygon(c.verticalDabord ? QVector<QPointF>{{x, y}, {x, Y}, {X, Y}, {X, y}}
                                       : QVector<QPointF>{{x, y}, {X, y}, {X, Y}, {x, Y}});
        }
        s.EndDoc();
        return im;
    };
    const QImage rapide = peint(0), polygones = peint(1e-7);
    int ecart = 0;
    for (int y = 0; y < rapide.height(); ++y)
        for (int x = 0; x < rapide.width(); ++x) {
            const QRgb a = rapide.pixel(x, y), b = polygones.pixel(x, y);
            for (int k : {qRed(a) - qRed(b), qGreen(a) - qGreen(b), qBlue(a) - qBlue(b)})
                ecart = std::max(ecart, std::abs(k));
        }
    EXPECT_LE(ecart, 1);
    EXPECT_EQ(rapide.pixel(10, 8), qRgb(200, 30, 30));
    EXPECT_EQ(rapide.pixel(20, 8), qRgb(30, 200, 30));
}
