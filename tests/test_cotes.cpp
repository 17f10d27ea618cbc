// Dimensions: the lines, arrows and text of `Cote`.
#include "outils.h"

#include <cmath>

namespace {
struct Segment { double x1, y1, x2, y2; };

void AttendLignes(const Session& s, const std::vector<Segment>& attendues) {
    const auto l = Lignes(s);
    ASSERT_EQ(l.size(), int(attendues.size()));
    for (int i = 0; i < l.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_MM(l[i].x1, attendues[i].x1);
        EXPECT_MM(l[i].y1, attendues[i].y1);
        EXPECT_MM(l[i].x2, attendues[i].x2);
        EXPECT_MM(l[i].y2, attendues[i].y2);
    }
}

const double C30 = std::cos(30 * 0.017453293), S30 = std::sin(30 * 0.017453293), C45 = 2 * std::cos(0.785398);
} // namespace

// The distance centred above the line at 8 mm, its baseline 30 % of an "X"
// above it, attachment lines, arrows of 1 mm at 60 degrees; the current point
// ends at the far end of the text.
TEST(Cotes, DistanceAuDessusDeLaLigneAvecFlechesAuxDeuxBouts) {
    auto s = Lance("Cote = 0,0,100,0,10,8,,,,,,,,,,,%Dist mm");
    AttendLignes(*s, {{0, 0, 0, 10}, {100, 0, 100, 10}, {0, 8, 100, 8}, {0, 8, C30, 8 + S30}, {0, 8, C30, 8 - S30},
                      {100, 8, 100 - C30, 8 - S30}, {100, 8, 100 - C30, 8 + S30}});
    const auto t = Ops(*s, OpSurface::Texte);
    ASSERT_EQ(t.size(), 1);
    EXPECT_EQ(t[0].texte, "100 mm");
    const double W = s->pane->TextWidth("100 mm"), H = -s->pane->TextHeight("X");
    EXPECT_MM(t[0].x1, 50 - W / 2);
    EXPECT_MM(t[0].y1, 8 + 0.3 * H);
    EXPECT_MM(s->etat.Repere.PointX, 50 + W / 2);
    EXPECT_TRUE(Messages(*s).isEmpty());
}

// Which ends get attachment lines and arrows, their length and direction.
TEST(Cotes, BoutsFlechesEtLigneProlongee) {
    const struct { const char* ligne; std::vector<Segment> lignes; } cas[] = {
        // Only end 1, arrows of 2 mm at 90 degrees.
        {"Cote = 0,0,50,0,5,4,,,2§1,,90,,,,N,,X",
         {{0, 0, 0, 5}, {0, 4, 50, 4}, {0, 4, C45, 4 + C45}, {0, 4, C45, 4 - C45}}},
        // Length 0: no arrows; the start of each attachment line left out.
        {"Cote = 0,0,50,0,5§2,4,,,0,,,,,,N,,X", {{0, 2, 0, 5}, {50, 2, 50, 5}, {0, 4, 50, 4}}},
        // "-": arrows turned outward.
        {"Cote = 0,0,50,0,0,4,,,-§2,,,,,,N,,X",
         {{50, 0, 50, 0}, {0, 4, 50, 4}, {50, 4, 50 + C30, 4 + S30}, {50, 4, 50 + C30, 4 - S30}}},
        // Two equal points: the direction is 0 and it still draws.
        {"Cote = 5,5,5,5,0,3,,,0,,,,,,N,,X", {{5, 5, 5, 5}, {5, 5, 5, 5}, {5, 8, 5, 8}}},
    };
    for (const auto& c : cas) {
        SCOPED_TRACE(c.ligne);
        auto s = Lance(c.ligne);
        AttendLignes(*s, c.lignes);
        EXPECT_TRUE(Ops(*s, OpSurface::Texte).isEmpty());
    }
    // A text at 150 % (or -50 %) lies beyond the points; the line reaches it with an "I" to spare.
    for (const auto& [px, debut, fin] : {std::tuple{150, 0.0, 1.0}, std::tuple{-50, 100.0, -1.0}}) {
        auto s = Lance(QString("Cote = 0,0,100,0,0,4,N§NOIR,,0,,,,%1,,,,12.5").arg(px));
        const auto l = Lignes(*s);
        ASSERT_EQ(l.size(), 1);
        EXPECT_MM(l[0].x1, debut);
        EXPECT_MM(l[0].x2, px + fin * (s->pane->TextWidth("12.5") / 2 + s->pane->TextWidth("I")));
    }
}

// The rotation turns points, arrows and text about 0,0; filled arrows are
// polygons; the text takes the first colour that draws; the run's font returns.
TEST(Cotes, RotationFlechesPleinesEtCouleurs) {
    auto s = Lance("Cote = 0,0§90,40,0,0,5,N,,2,P,,ROUGE,,,,*2G,%DIST");
    EXPECT_TRUE(Lignes(*s).isEmpty());
    const auto p = Ops(*s, OpSurface::Polygone);
    ASSERT_EQ(p.size(), 2);
    for (const OpSurface& o : p) {
        EXPECT_EQ(o.points.size(), 3);
        EXPECT_EQ(o.couleur, RGB(255, 0, 0));
    }
    const auto t = Ops(*s, OpSurface::Texte);
    ASSERT_EQ(t.size(), 1);
    EXPECT_EQ(t[0].texte, "40");
    EXPECT_EQ(t[0].couleur, RGB(255, 0, 0));
    EXPECT_NEAR(t[0].angle, 90, 1e-3);
    EXPECT_TRUE(t[0].gras);
    EXPECT_LT(t[0].x1, -5); // left of the dimension line at x = -5
    EXPECT_FALSE(s->pane->Font.Bold);
    EXPECT_DOUBLE_EQ(s->pane->Font.Size, 10);
    // An unknown font is reported and the text still written; an empty line draws nothing.
    s = Lance("Cote = 0,0,10,0,0,2,,,,,,,,,,*1§NoSuchFontZ,X\nCote =");
    EXPECT_EQ(Messages(*s), QStringList({QStringLiteral("Pas de police NoSuchFontZ")}));
    EXPECT_EQ(Ops(*s, OpSurface::Texte).size(), 1);
}
