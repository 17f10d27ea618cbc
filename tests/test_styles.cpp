// Part 2.2: colours and line styles, and the dash cut of TraitRot (Part 2.1).
#include "outils.h"

#include "drawing/repere.h"
#include "drawing/styles.h"

#include <cmath>

namespace {

// A session whose screen pane has the given millimetres per pixel.
std::unique_ptr<Session> SessionPane(const QString& lignes, double mmParPixel) {
    auto s = std::make_unique<Session>(Programme(lignes));
    s->pane = std::make_unique<SurfaceEnregistree>(GenreSurface::Ecran, 297 / mmParPixel,
                                                   210 / mmParPixel, mmParPixel);
    s->pane->SetJournal(&s->journal);
    AttachePane(s->etat, s->pane.get());
    s->Execute();
    return s;
}

// The drawn pieces of a run, as (x1, y1, x2, y2).
struct Piece { double x1, y1, x2, y2; };
QVector<Piece> Pieces(const Session& s) {
    QVector<Piece> r;
    for (const OpSurface& op : Lignes(s)) r.append({op.x1, op.y1, op.x2, op.y2});
    return r;
}

void AttendPieces(const Session& s, const QVector<Piece>& attendu) {
    const QVector<Piece> p = Pieces(s);
    ASSERT_EQ(p.size(), attendu.size());
    for (qsizetype i = 0; i < p.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_MM(p[i].x1, attendu[i].x1);
        EXPECT_MM(p[i].y1, attendu[i].y1);
        EXPECT_MM(p[i].x2, attendu[i].x2);
        EXPECT_MM(p[i].y2, attendu[i].y2);
    }
}

} // namespace

// --- LitCouleur

TEST(Styles, CouleurRougeSeparateurBleuLitRouge) {
    Etat e;
    EXPECT_EQ(LitCouleur(e, QStringLiteral("ROUGE§BLEU")), 255);
    // In a plain command the part behind the separator is ignored.
    auto s = Lance("Cercle = 0,0,10,,,ROUGE§BLEU");
    const auto c = Ops(*s, OpSurface::Cercle);
    ASSERT_EQ(c.size(), 1);
    EXPECT_EQ(c[0].couleur, 255);
    EXPECT_TRUE(Ops(*s, OpSurface::Polygone).isEmpty());
}

TEST(Styles, CouleurRvbMinuscules) {
    Etat e;
    EXPECT_EQ(LitCouleur(e, QStringLiteral("rvb 100 255 100")), 6618980);
    EXPECT_EQ(LitCouleur(e, QStringLiteral("RGB 100 255 100")), 6618980);
}

TEST(Styles, CouleurRvbPlusieursBlancs) {
    Etat e;
    EXPECT_EQ(LitCouleur(e, QStringLiteral("RVB   100    255  100")), 6618980);
    EXPECT_EQ(LitCouleur(e, QStringLiteral("  RVB 1 2 3 ")), 1 + 2 * 256 + 3 * 65536);
}

TEST(Styles, CouleurTableDesNoms) {
    Etat e;
    EXPECT_EQ(LitCouleur(e, "noir"), 0);
    EXPECT_EQ(LitCouleur(e, "RED"), 255);
    EXPECT_EQ(LitCouleur(e, "vert"), 65280);
    EXPECT_EQ(LitCouleur(e, "Jaune"), 65535);
    EXPECT_EQ(LitCouleur(e, "BLUE"), 16711680);
    EXPECT_EQ(LitCouleur(e, "CYAN"), 16776960);
    EXPECT_EQ(LitCouleur(e, "VIOLET"), 16776960); // as the table stands
    EXPECT_EQ(LitCouleur(e, "MAGENTA"), 16711935);
    EXPECT_EQ(LitCouleur(e, "blanc"), 16777215);
    EXPECT_EQ(LitCouleur(e, "n"), -1);
    EXPECT_EQ(LitCouleur(e, "ROUGE/BLEU"), 255); // "/" when there is no second separator
    EXPECT_EQ(LitCouleur(e, "BLEU, 3, 4"), 16711680);
    EXPECT_FALSE(LitCouleur(e, "").has_value());
    EXPECT_FALSE(LitCouleur(e, "ORANGE").has_value());
}

TEST(Styles, CouleurInconnueDonneLaCouleurParDefaut) {
    auto s = Lance("Couleur = BLEU\nTrait = 0,0,10,0,,ORANGE\nTrait = 0,0,10,0,, ");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 2);
    EXPECT_EQ(l[0].couleur, 16711680);
    EXPECT_EQ(l[1].couleur, 16711680);
    EXPECT_EQ(Variable(*s, "%Coul"), QStringLiteral("BLEU"));
}

TEST(Styles, CouleurNDeplaceLePinceau) {
    auto s = Lance("Couleur = N\nTrait = 0,0,10,5\nTrait = 1R,1R,5,0,,ROUGE");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 1);
    EXPECT_MM(l[0].x1, 11);
    EXPECT_MM(l[0].y1, 6);
}

// --- thickness

TEST(Styles, EpaisT3mmDonne12PixelsAvecMmParPixel025) {
    auto s = SessionPane("EpaisT = 3 mm\nTrait = 0,0,10,0", 0.25);
    EXPECT_EQ(s->etat.Styles.EpaisCourante, 12);
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 1);
    EXPECT_EQ(l[0].largeur, 12);
}

TEST(Styles, EpaisTEnPointsImprimante) {
    // 6 printer dots: 6 on paper, 6 / 6.25 rounded to 1 on a 96 dpi screen.
    auto s = LanceImprimante("EpaisT = 6\nTrait = 0,0,10,0");
    EXPECT_EQ(Lignes(*s)[0].largeur, 6);
    auto e = Lance("EpaisT = 13\nTrait = 0,0,10,0");
    EXPECT_EQ(Lignes(*e)[0].largeur, 2);
}

TEST(Styles, EpaisTSansParametreRecritLaLigne) {
    auto s = SessionPane("EpaisT = 3mm\nEpaisT", 0.25);
    EXPECT_EQ(s->hote.TexteEditeur(),
              Programme("EpaisT = 3mm\nEpaisT 12  ' 3.mm"));
    auto t = Lance("EpaisT");
    EXPECT_EQ(t->hote.TexteEditeur(), Programme("EpaisT 1  ' .26mm"));
}

TEST(Styles, EpaisLocalEstRestaure) {
    auto s = Lance("EpaisT = 1§§2\nTrait = 0,0,10,0,13§§0\nTrait = 0,5,3,5");
    AttendPieces(*s, {{0, 0, 10, 0}, {0, 5, 2, 5}});
    const auto l = Lignes(*s);
    EXPECT_EQ(l[0].largeur, 2);
    EXPECT_EQ(l[1].largeur, 1);
}

TEST(Styles, BoutCarreDessineUnPolygone) {
    auto s = LanceImprimante("EpaisT = 20§C\nTrait = 0,0,10,0");
    const auto p = Ops(*s, OpSurface::Polygone);
    ASSERT_EQ(p.size(), 1);
    ASSERT_EQ(p[0].points.size(), 4);
    // Half a width of 20 dots on each side of the line.
    const double demi = 10 * 25.4 / 600;
    EXPECT_NEAR(p[0].points[0].y(), -demi, 25.4 / 600);
    EXPECT_NEAR(p[0].points[1].y(), demi, 25.4 / 600);
    EXPECT_EQ(Lignes(*s).size(), 1);
    EXPECT_EQ(Lignes(*s)[0].largeur, 1);
}

TEST(Styles, StyleSansL1FinitLesTirets) {
    // A style part without L1 reads L1 as 0: the command's line is solid.
    auto s = Lance("EpaisT = 1§§2\nTrait = 0,0,5,0,1§R\nTrait = 0,5,5,5");
    AttendPieces(*s, {{0, 0, 5, 0}, {0, 5, 2, 5}, {4, 5, 5, 5}});
}

// --- the dash pattern

TEST(Styles, TiretsEnMillimetres) {
    // L1 2, gap 1, L3 3, gap 1; the pattern runs on across the corner. A gap
    // that ends exactly on a vertex ends the routine in its phase (Part 2.2,
    // phase 1), so the next segment starts with a whole gap again.
    auto s = Lance("EpaisT = 1§§2§1§3\nTrait = 0,0,10,0,,,10,5,10,14");
    AttendPieces(*s, {{0, 0, 2, 0},
                      {3, 0, 6, 0},
                      {7, 0, 9, 0},
                      // 9 to 10 is a gap ending on the corner; a gap again
                      {10, 1, 10, 4},   // L3
                      // 4 to 5 a gap ending on the corner; a gap again
                      {10, 6, 10, 8},   // L1
                      {10, 9, 10, 12},  // L3
                      {10, 13, 10, 14}}); // L1 cut at the end, 1 left
    EXPECT_MM(s->etat.Styles.TiretFinX, 10);
    EXPECT_MM(s->etat.Styles.TiretFinY, 14);
    EXPECT_MM(s->etat.Styles.TiretReste, 1);
}

TEST(Styles, TiretsEcartFiniSurLeSommetSeRepete) {
    auto s = Lance("EpaisT = 1§§2§1§3\nTrait = 0,0,10,0\nTrait = 10,0,20,0");
    AttendPieces(*s, {{0, 0, 2, 0}, {3, 0, 6, 0}, {7, 0, 9, 0}, {11, 0, 14, 0}, {15, 0, 17, 0}, {18, 0, 20, 0}});
}

TEST(Styles, TiretsL2EtL3AbsentsPrennentL1) {
    auto s = Lance("EpaisT = 1§§2\nTrait = 0,0,9,0");
    AttendPieces(*s, {{0, 0, 2, 0}, {4, 0, 6, 0}, {8, 0, 9, 0}});
    EXPECT_MM(s->etat.Styles.TiretReste, 1);
    EXPECT_EQ(s->etat.Styles.TiretPhase, 0);
}

TEST(Styles, TiretsSuiteDUnTraitAuSuivant) {
    // A Trait that starts where the last ended continues the piece in progress,
    // within 0.01 mm.
    auto s = Lance("EpaisT = 1§§2§1\nTrait = 0,0,1,0\nTrait = 1.005,0,6,0");
    AttendPieces(*s, {{0, 0, 1, 0}, {1.005, 0, 2.005, 0}, {3.005, 0, 5.005, 0}});
}

TEST(Styles, TiretsSegmentEloigneRecommenceAL1) {
    auto s = Lance("EpaisT = 1§§2§1\nTrait = 0,0,1,0\nTrait = 1.02,0,6,0");
    AttendPieces(*s, {{0, 0, 1, 0}, {1.02, 0, 3.02, 0}, {4.02, 0, 6, 0}});
    auto t = Lance("EpaisT = 1§§2§1\nTrait = 0,0,1,0\nTrait = 1,0.5,6,0.5");
    EXPECT_MM(Lignes(*t)[1].x1, 1);
    EXPECT_MM(Lignes(*t)[1].x2, 3);
}

TEST(Styles, TiretDeLongueurZeroRedonneTraitPlein) {
    auto s = Lance("EpaisT = 1§§2\nTrait = 0,0,5,0\nEpaisT = 1§§0\nTrait = 0,5,10,5");
    AttendPieces(*s, {{0, 0, 2, 0}, {4, 0, 5, 0}, {0, 5, 10, 5}});
    EXPECT_EQ(s->etat.Styles.TiretL1, 0);
}

TEST(Styles, TiretsDiagonale) {
    // 3-4-5 triangle: pieces along the unit vector (0.6, 0.8), 9.5 mm long.
    auto s = Lance("EpaisT = 1§§2§1§1\nTrait = 0,0,5.7,7.6");
    AttendPieces(*s, {{0, 0, 1.2, 1.6}, {1.8, 2.4, 2.4, 3.2}, {3, 4, 4.2, 5.6}, {4.8, 6.4, 5.4, 7.2}});
}

TEST(Styles, TiretLigneDeLongueurNulleUnSeulSegment) {
    auto s = Lance("EpaisT = 1§§2\nTrait = 3,3,3,3");
    AttendPieces(*s, {{3, 3, 3, 3}});
}

// Part 2.2: trimmed, upper-cased, cut; no second trim.
TEST(Styles, CouleurSansSecondRognage) {
    Session u{QString()};
    EXPECT_EQ(LitCouleur(u.etat, QStringLiteral("ROUGE §BLEU")), std::nullopt);
    EXPECT_EQ(LitCouleur(u.etat, QStringLiteral(" Rouge§Bleu")), 255);
}
