// The colour charts: how many cells, where each one lies and its colour, the
// frame round the faces, the defaults and the turned chart. Run on the
// 600 dpi printer, whose device pixels are small next to the cells.
#include "outils.h"

#include "drawing/repere.h"
#include "drawing/surface_peinte.h"

#include <QImage>

namespace {

QVector<OpSurface> Cellules(const Session& s) { return Ops(s, OpSurface::Polygone); }

// A cell's lower left corner and its fill and outline colour.
struct Cellule {
    int index;
    double x, y;
    int r, v, b;
};

void ExpectCellules(const Session& s, std::initializer_list<Cellule> attendues) {
    const auto c = Cellules(s);
    for (const Cellule& a : attendues) {
        SCOPED_TRACE(a.index);
        ASSERT_LT(a.index, c.size());
        const OpSurface& op = c[a.index];
        ASSERT_EQ(op.points.size(), 4);
        EXPECT_NEAR(op.points[0].x(), a.x, 0.05);
        EXPECT_NEAR(op.points[0].y(), a.y, 0.05);
        EXPECT_EQ(op.remplissage.value_or(-1), RGB(a.r, a.v, a.b));
        EXPECT_EQ(op.couleur, RGB(a.r, a.v, a.b));
    }
}

} // namespace

// Levels made even and at least 4; the number of cells of each chart. A pair
// of faces draws 2 N + 1 columns and the next pair starts on its last one.
TEST(PalCoul, LevelsAndCellCount) {
    const struct {
        const char* ligne;
        int cellules;
    } cas[] = {
        {"PalCoul3 = 4", 27 * 9},  {"PalCoul3 = 5", 27 * 9}, {"PalCoul3 = 1", 27 * 9},
        {"PalCoul3 =", 27 * 9},    {"PalCoul3 = 7.6", 51 * 17}, {"PalCoul = 6", 39 * 7},
        {"PalCoul2 = 0", 1 + 64},  {"PalCoul2 = 9", 1 + 512},
    };
    for (const auto& c : cas) {
        SCOPED_TRACE(c.ligne);
        auto s = LanceImprimante(c.ligne);
        EXPECT_TRUE(Messages(*s).isEmpty());
        EXPECT_EQ(Cellules(*s).size(), c.cellules);
    }
    EXPECT_EQ(Messages(*LanceImprimante("PalCoul2 = 40000")).size(), 1);
}

// From black through the pure hue to white up a column; the hues run red,
// yellow, green, cyan, blue, magenta and back to red across the faces.
// 100 x 90 mm with N = 4: cells of 4 x 10 mm.
TEST(PalCoul, CubeFaces) {
    auto s = LanceImprimante("CentreI = 20, 30, N\nPalCoul3 = 4, 100, 90");
    ExpectCellules(*s, {
                           {0, 20, 30, 0, 0, 0},
                           {2, 20, 50, 128, 0, 0},
                           {4, 20, 70, 255, 0, 0},
                           {6, 20, 90, 255, 128, 128},
                           {8, 20, 110, 255, 255, 255},
                           {9 * 4 + 4, 36, 70, 255, 255, 0},
                           {9 * 5 + 4, 40, 70, 191, 255, 0},
                           {9 * 8 + 4, 52, 70, 0, 255, 0},
                           {9 * 9 + 4, 52, 70, 0, 255, 0},
                           {9 * 13 + 4, 68, 70, 0, 255, 255},
                           {9 * 17 + 4, 84, 70, 0, 0, 255},
                           {9 * 22 + 4, 100, 70, 255, 0, 255},
                           {9 * 26 + 4, 116, 70, 255, 0, 0},
                       });
    // Four black strokes round the 100 x 90 block.
    const auto l = Lignes(*s);
    ASSERT_GE(l.size(), 4);
    const QPointF coins[] = {{20, 30}, {120, 30}, {120, 120}, {20, 120}};
    for (int i = 0; i < 4; ++i) {
        const OpSurface& t = l[l.size() - 4 + i];
        EXPECT_EQ(t.couleur, 0);
        EXPECT_MM(t.x1, coins[i].x());
        EXPECT_MM(t.y1, coins[i].y());
        EXPECT_MM(t.x2, coins[(i + 1) % 4].x());
        EXPECT_MM(t.y2, coins[(i + 1) % 4].y());
    }
}

// From mid grey up to the pure hue, one half only: 100 x 50 mm, cells 4 x 10.
TEST(PalCoul, GreyFaces) {
    auto s = LanceImprimante("PalCoul = 4, 100, 50");
    ExpectCellules(*s, {
                           {0, 0, 0, 127, 127, 127},
                           {1, 0, 10, 159, 95, 95},
                           {4, 0, 40, 255, 0, 0},
                           {5 * 6 + 4, 24, 40, 127, 255, 0},
                       });
    EXPECT_MM(Lignes(*s).back().y1, 50);
}

// Every colour as a patch 9 x 1 mm (80 x 40 mm, N = 4): red picks the band,
// the upper half of the bands in the right block, green the row, blue the
// column. Width 0 counts as 180.
TEST(PalCoul, PatchTable) {
    auto s = LanceImprimante("PalCoul2 = 4, 80, 40");
    ExpectCellules(*s, {
                           {0, 0, 0, 0, 0, 0},
                           {1, 9, 1, 63, 63, 63},
                           {1 + 16 + 4 + 1, 18, 5 + 2, 127, 127, 127},
                           {1 + 32 + 4 + 3, 80, 2, 191, 127, 255},
                       });
    const auto c = Cellules(*s);
    EXPECT_NEAR(c[1].points[2].x() - c[1].points[0].x(), 9, 0.05);
    EXPECT_NEAR(c[1].points[2].y() - c[1].points[0].y(), 1, 0.05);
    EXPECT_TRUE(Lignes(*s).isEmpty());

    s = LanceImprimante("PalCoul2 = 4, 0, 40");
    EXPECT_NEAR(Cellules(*s)[1 + 32].points[0].x(), 0.55 * 180 + 0.9 * 22.5, 0.05);
}

// A turned chart stays a grid of parallelograms about 0,0, each in one colour.
TEST(PalCoul, TurnedChart) {
    auto s = LanceImprimante("CentreI = 100, 100, N\nPalCoul2 = 4, 80, 40§90");
    const auto c = Cellules(*s);
    // The patch (9, 1) to (18, 2) a quarter turn counter-clockwise.
    const QPointF attendus[] = {{99, 109}, {99, 118}, {98, 118}, {98, 109}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_NEAR(c[1].points[i].x(), attendus[i].x(), 0.05) << i;
        EXPECT_NEAR(c[1].points[i].y(), attendus[i].y(), 0.05) << i;
    }
    EXPECT_EQ(c[1].remplissage.value_or(-1), RGB(63, 63, 63));
}

// A pane that only paints skips the patches that the next row covers, and
// the picture stays the one that every patch makes.
TEST(PalCoul, HiddenPatchesSkippedWithoutChange) {
    auto peint = [](bool enregistre) {
        Session s(Programme("CentreE = 10, 10, N\nPalCoul2 = 24, 270, 190"));
        const double w = 297 / 25.4 * DpiEcran, h = 210 / 25.4 * DpiEcran;
        QImage im(int(w), int(h), QImage::Format_RGB32);
        im.fill(Qt::white);
        Journal j;
        {
            SurfacePeinte pane(GenreSurface::Ecran, w, h, 25.4 / DpiEcran,
                               [&](int) -> QPaintDevice* { return &im; });
            if (enregistre) pane.SetJournal(&j);
            AttachePane(s.etat, &pane);
            s.Execute();
        }
        EXPECT_EQ(j.size(), enregistre ? 3 + 24 * 24 * 24 : 0);
        return im;
    };
    const QImage tout = peint(true), visible = peint(false);
    int encre = 0, differents = 0, ecart = 0;
    for (int y = 0; y < tout.height(); ++y)
        for (int x = 0; x < tout.width(); ++x) {
            const QRgb c = tout.pixel(x, y), v = visible.pixel(x, y);
            if (c != qRgb(255, 255, 255)) ++encre;
            if (c == v) continue;
            ++differents;
            ecart = std::max({ecart, std::abs(qRed(c) - qRed(v)), std::abs(qGreen(c) - qGreen(v)),
                              std::abs(qBlue(c) - qBlue(v))});
        }
    // Only the soft edges of the thin patches may differ, by a level at most.
    EXPECT_GT(encre, 100000);
    EXPECT_LT(differents, encre / 100);
    EXPECT_LE(ecart, 1);
}
