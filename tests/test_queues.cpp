// Dovetails: the outline of the tails and the return lines of each keyword.
#include "outils.h"

#include <cmath>

const double Tg9 = std::tan(0.157079637); // the default slope of the flanks

// One tail of height 10 on a pitch of 100: the base narrower than the top, the
// last stroke ending on the second point; a count below 1 has no whole tail
// and draws nothing; a count of 0 fails the line.
TEST(Queues, UneQueueParDefaut) {
    auto s = Lance("QA = 0, 0, 100, 0, 1, 10");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 5);
    const double a = 25 + 5 * Tg9, b = 25 - 5 * Tg9, c = 75 + 5 * Tg9, d = 75 - 5 * Tg9;
    const double x[][4] = {{0, 0, a, 0}, {a, 0, b, 10}, {b, 10, c, 10}, {c, 10, d, 0}, {d, 0, 100, 0}};
    for (int i = 0; i < 5; ++i) {
        SCOPED_TRACE(i);
        EXPECT_MM(l[i].x1, x[i][0]);
        EXPECT_MM(l[i].y1, x[i][1]);
        EXPECT_MM(l[i].x2, x[i][2]);
        EXPECT_MM(l[i].y2, x[i][3]);
    }
    EXPECT_MM(s->etat.Repere.PointX, 100);
    s = Lance("QA = 0, 0, 100, 0, 0.5, 10");
    EXPECT_TRUE(Lignes(*s).isEmpty() && Messages(*s).isEmpty());
    EXPECT_MM(s->etat.Repere.PointX, 100);
    s = Lance("QA = 0, 0, 100, 0, 0, 10");
    EXPECT_EQ(Messages(*s).size(), 1);
    EXPECT_TRUE(Lignes(*s).isEmpty());
}

// "1" draws return lines down from the base corners, "2" up from the top
// corners, as long as the wood is thick.
TEST(Queues, LignesDeRetourSelonLeMotCle) {
    for (const auto& [mot, n1, n2] : {std::tuple{"QA", 0, 0}, {"QA1", 6, 0}, {"QA2", 0, 6}, {"QA12", 6, 6}}) {
        SCOPED_TRACE(mot);
        const auto l = Lignes(*Lance(QString("%1 = 0, 0, 100, 0, 2, 10§4").arg(mot)));
        ASSERT_EQ(l.size(), 10 + n1 + n2);
        int bas = 0;
        for (int i = 10; i < l.size(); ++i) {
            const bool versLeBas = l[i].y2 < l[i].y1;
            EXPECT_MM(l[i].x2, l[i].x1);
            EXPECT_MM(l[i].y2, l[i].y1 + (versLeBas ? -4 : 4));
            EXPECT_MM(l[i].y1, versLeBas ? 0 : 10);
            bas += versLeBas;
        }
        EXPECT_EQ(bas, n1);
    }
}

// A fractional count moves the first tail by half its fraction of a pitch; a
// slope and ratio replace the defaults; the rotation turns all about 0,0.
TEST(Queues, DecalageRapportPenteEtRotation) {
    const auto l = Lignes(*Lance("QA = 0, 0, 70, 0, 3.5, 10, 0, 40\nQA = 0, 0§90, 100, 0, 1, 10"));
    ASSERT_EQ(l.size(), 3 * 5 + 5);
    // Pitch 20: the first tail 0.3 + 0.25 pitches along, square flanks.
    EXPECT_MM(l[0].x2, 11);
    EXPECT_MM(l[1].x2, 11);
    EXPECT_MM(l[2].x2, 19);
    EXPECT_MM(l[14].x2, 70);
    // The row runs up the y axis, the tails to its left.
    EXPECT_MM(l[15].x2, 0);
    EXPECT_MM(l[15].y2, 25 + 5 * Tg9);
    EXPECT_MM(l[16].x2, -10);
    EXPECT_MM(l[19].y2, 100);
}
