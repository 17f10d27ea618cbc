// Dovetails: the outline of the tails and the return lines of each keyword.
#include "outils.h"

#include <cmath>

namespace {

const double Tg9 = std::tan(0.157079637); // the default slope of the flanks

} // namespace

// One tail of height 10 on a pitch of 100: default slope and ratio, the base
// narrower than the top, the last stroke ending on the second point.
TEST(Queues, UneQueueParDefaut) {
    auto s = Lance("QA = 0, 0, 100, 0, 1, 10");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 5);
    const double x[][4] = {{0, 0, 25 + 5 * Tg9, 0},
                           {25 + 5 * Tg9, 0, 25 - 5 * Tg9, 10},
                           {25 - 5 * Tg9, 10, 75 + 5 * Tg9, 10},
                           {75 + 5 * Tg9, 10, 75 - 5 * Tg9, 0},
                           {75 - 5 * Tg9, 0, 100, 0}};
    for (int i = 0; i < 5; ++i) {
        SCOPED_TRACE(i);
        EXPECT_MM(l[i].x1, x[i][0]);
        EXPECT_MM(l[i].y1, x[i][1]);
        EXPECT_MM(l[i].x2, x[i][2]);
        EXPECT_MM(l[i].y2, x[i][3]);
    }
    EXPECT_MM(s->etat.Repere.PointX, 100);
}

// The digits of the keyword choose the return lines: "1" downward from the
// base corners, "2" upward from the top corners, of the wood's thickness.
TEST(Queues, LignesDeRetourSelonLeMotCle) {
    for (const auto& [mot, n1, n2] : {std::tuple{"QA", 0, 0}, std::tuple{"QA1", 6, 0},
                                      std::tuple{"QA2", 0, 6}, std::tuple{"QA12", 6, 6}}) {
        SCOPED_TRACE(mot);
        auto s = Lance(QString("%1 = 0, 0, 100, 0, 2, 10§4").arg(mot));
        const auto l = Lignes(*s);
        ASSERT_EQ(l.size(), 10 + n1 + n2);
        int bas = 0, haut = 0;
        for (int i = 10; i < l.size(); ++i) {
            EXPECT_MM(l[i].x2, l[i].x1);
            const bool versLeBas = l[i].y2 < l[i].y1;
            EXPECT_MM(l[i].y2, versLeBas ? l[i].y1 - 4 : l[i].y1 + 4);
            EXPECT_MM(versLeBas ? l[i].y1 : l[i].y1 - 10, 0);
            (versLeBas ? bas : haut)++;
        }
        EXPECT_EQ(bas, n1);
        EXPECT_EQ(haut, n2);
    }
}

// A fractional number starts the first tail half its fraction of a pitch
// further; a slope and ratio given replace the defaults; the rotation turns
// the whole about 0,0.
TEST(Queues, DecalageRapportPenteEtRotation) {
    auto s = Lance("QA = 0, 0, 70, 0, 3.5, 10, 0, 40\nQA = 0, 0§90, 100, 0, 1, 10");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 3 * 5 + 5);
    // Pitch 20: the first tail 0.3 + 0.25 pitches along, square flanks.
    EXPECT_MM(l[0].x2, 11);
    EXPECT_MM(l[1].x2, 11);
    EXPECT_MM(l[2].x2, 19);
    EXPECT_MM(l[14].x2, 70);
    // Turned by 90 degrees, the row runs up the y axis, the tails to its left.
    EXPECT_MM(l[15].x2, 0);
    EXPECT_MM(l[15].y2, 25 + 5 * Tg9);
    EXPECT_MM(l[16].x2, -10);
    EXPECT_MM(l[19].y2, 100);
}

TEST(Queues, NombreNulEchoue) {
    auto s = Lance("QA = 0, 0, 100, 0, 0, 10");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_TRUE(Lignes(*s).isEmpty());
}
