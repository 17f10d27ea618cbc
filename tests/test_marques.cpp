// Part 2.7: line marks.
#include "outils.h"

#include <cmath>

namespace {

constexpr double DegRad = 0.017453293;

QVector<OpSurface> Dessin(const Session& s) {
    QVector<OpSurface> r;
    for (const OpSurface& op : s.journal)
        if (op.genre != OpSurface::Effacement) r.append(op);
    return r;
}

void AttendLigne(const OpSurface& l, double x1, double y1, double x2, double y2) {
    EXPECT_EQ(l.genre, OpSurface::Ligne);
    EXPECT_MM(l.x1, x1);
    EXPECT_MM(l.y1, y1);
    EXPECT_MM(l.x2, x2);
    EXPECT_MM(l.y2, y2);
}

void AttendPoint(Session& s, double x, double y) {
    EXPECT_MM(s.etat.Repere.PointX, x);
    EXPECT_MM(s.etat.Repere.PointY, y);
}

} // namespace

// --- edge cases of Part 2.7

TEST(Marques, PlusSansXYMarqueLePointCourant) {
    auto s = Lance("Trait = 0,0,10,5\nPlus = , , 2");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 3);
    AttendLigne(l[1], 8, 5, 12, 5);
    AttendLigne(l[2], 10, 3, 10, 7);
    AttendPoint(*s, 10, 5);
    EXPECT_EQ(s->etat.EtatOrdre & 64, 64);
}

TEST(Marques, TraitSansXYContinueDuDernierPoint) {
    auto s = Lance("Trait = 0,0,10,5\nTrait = , , 20, 5");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 2);
    AttendLigne(l[1], 10, 5, 20, 5);
    AttendPoint(*s, 20, 5);
}

TEST(Marques, TraitRelatifEnchaineEtFacteursSFxSFy) {
    // x R chains from the last point; SFx 2 and SFy 3 scale the relative
    // values too.
    auto s = Lance("Trait = 1§2§3, 1, 1R, 1R, , , 1R, 0R, 0R, 2R\nTrait = , , 1R, 1R");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 4);
    AttendLigne(l[0], 2, 3, 4, 6);
    AttendLigne(l[1], 4, 6, 6, 6);
    AttendLigne(l[2], 6, 6, 6, 12);
    // The factors are back to 1 after the command.
    AttendLigne(l[3], 6, 12, 7, 13);
    EXPECT_EQ(s->etat.Repere.FacteurTraitX, 1);
    EXPECT_EQ(s->etat.Repere.FacteurTraitY, 1);
    // A factor of 0 reads as 1.
    auto t = Lance("Trait = 0§0§2, 0, 1R, 1R");
    AttendLigne(Lignes(*t)[0], 0, 0, 1, 2);
}

TEST(Marques, Trait90DegresDixVersLeHaut) {
    auto s = Lance("Trait = 0, 0, 90°, 10");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 1);
    AttendLigne(l[0], 0, 0, 0, 10);
    auto t = Lance("Trait = 5, 5, 180°, 10, , , 270°, 2");
    AttendLigne(Lignes(*t)[0], 5, 5, -5, 5);
    AttendLigne(Lignes(*t)[1], -5, 5, -5, 3);
}

TEST(Marques, PercerDiametreZeroDeplaceLePinceau) {
    auto s = Lance("Trait = 0,0,5,5\nPercer = 10,10,0\nPercerX = 12,12,0");
    EXPECT_EQ(Dessin(*s).size(), 1);
    AttendPoint(*s, 12, 12);
    auto t = Lance("Percer = 10,10,0\nTrait = , , 1R, 0R");
    AttendLigne(Lignes(*t)[0], 10, 10, 11, 10);
}

TEST(Marques, FlecheLongueurZeroDeplaceLePinceau) {
    auto s = Lance("Fleche = 10,10,45,0\nFlecheP = 12,12,45,0");
    EXPECT_TRUE(Dessin(*s).isEmpty());
    AttendPoint(*s, 12, 12);
    auto t = Lance("Fleche = 10,10,45,0\nTrait = , , 1R, 0R");
    AttendLigne(Lignes(*t)[0], 10, 10, 11, 10);
}

// --- more of Part 2.7

TEST(Marques, TraitLongueurDansUneVariable) {
    auto s = Lance("Trait = 0, 0§§%L, 3, 4, , , 3, 10");
    EXPECT_EQ(Lignes(*s).size(), 2);
    EXPECT_EQ(Variable(*s, "%L"), QStringLiteral("11"));
}

TEST(Marques, TraitTourneParSonAngle) {
    // The points turn about 0,0; the current point is given back unturned.
    auto s = Lance("Trait = 10, 0§90, 20, 0, , , 20R, 0R");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 2);
    AttendLigne(l[0], 0, 10, 0, 20);
    AttendLigne(l[1], 0, 20, 0, 40);
    AttendPoint(*s, 40, 0);
}

TEST(Marques, TraitStyleEtCouleur) {
    auto s = Lance("Trait = 0,0,10,0,13,ROUGE,10,10\nTrait = 0,0,1,0");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 3);
    EXPECT_EQ(l[0].couleur, 255);
    EXPECT_EQ(l[1].couleur, 255);
    EXPECT_EQ(l[0].largeur, 2);
    EXPECT_EQ(l[2].couleur, 0);
    EXPECT_EQ(l[2].largeur, 1);
}

TEST(Marques, PlusRapportXY) {
    auto s = Lance("Plus = 10,10,4§2,BLEU");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 2);
    AttendLigne(l[0], 6, 10, 14, 10);
    AttendLigne(l[1], 10, 8, 10, 12);
    EXPECT_EQ(l[0].couleur, 16711680);
    // "+" is the same command.
    auto t = Lance("+ = 10,10,4§2,BLEU");
    AttendLigne(Lignes(*t)[1], 10, 8, 10, 12);
}

TEST(Marques, PlusAngleDuSigne) {
    // The sign turns counter-clockwise with its own angle and the command's.
    auto s = Lance("Plus = 0,0,2,,,30");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 2);
    const double c = 2 * std::cos(30 * DegRad), sn = 2 * std::sin(30 * DegRad);
    AttendLigne(l[0], c, sn, -c, -sn);
    AttendLigne(l[1], sn, -c, -sn, c);
    auto t = Lance("Plus = 0,0§30,2");
    AttendLigne(Lignes(*t)[0], c, sn, -c, -sn);
}

TEST(Marques, XEstUnPlusTourneDe45) {
    auto s = Lance("X = 0,0,2");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 2);
    const double d = 2 * std::cos(45 * DegRad);
    AttendLigne(l[0], d, -d, -d, d);
    AttendLigne(l[1], -d, -d, d, d);
}

TEST(Marques, PercerCercleEtCroix) {
    auto s = Lance("Percer = 10,10,8,ROUGE");
    const auto d = Dessin(*s);
    ASSERT_EQ(d.size(), 3);
    EXPECT_EQ(d[0].genre, OpSurface::Cercle);
    EXPECT_MM(d[0].x1, 10);
    EXPECT_MM(d[0].y1, 10);
    EXPECT_MM(d[0].r, 4);
    EXPECT_EQ(d[0].couleur, 255);
    AttendLigne(d[1], 6, 10, 14, 10);
    AttendLigne(d[2], 10, 6, 10, 14);
    // PercerX turns the cross by 45°.
    auto x = Lance("PercerX = 0,0,4");
    const double k = 2 * std::cos(0.785398185);
    AttendLigne(Lignes(*x)[0], k, -k, -k, k);
}

TEST(Marques, PercerPointilleParArcPointille) {
    auto s = Lance("Percer = 0,0,20,,1§§2§1");
    const auto c = Ops(*s, OpSurface::Cercle);
    ASSERT_GT(c.size(), 10u);
    EXPECT_NEAR(*c[0].debut, 0, 1e-9);
    EXPECT_NEAR(*c[0].fin, 0.2, 1e-6);
    EXPECT_NEAR(*c[1].debut, 0.3, 1e-6);
}

TEST(Marques, VoyantDisqueType1) {
    auto s = Lance("Couleur = BLEU\nVoyant = 10,10,8,1,ROUGE");
    const auto d = Dessin(*s);
    ASSERT_EQ(d.size(), 2);
    EXPECT_EQ(d[0].genre, OpSurface::Cercle);
    EXPECT_MM(d[0].r, 4);
    EXPECT_EQ(*d[0].remplissage, 255);
    EXPECT_EQ(d[0].couleur, 255);
    EXPECT_EQ(d[0].largeur, 1);
    // The outline, in the default colour.
    EXPECT_EQ(d[1].couleur, 16711680);
    EXPECT_FALSE(d[1].remplissage.has_value());
    EXPECT_EQ(s->pane->FillStyle, 1);
    AttendPoint(*s, 10, 10);
}

TEST(Marques, VoyantQuartiers) {
    auto s = Lance("Voyant = 10,10,8,2,VERT");
    const auto d = Dessin(*s);
    ASSERT_EQ(d.size(), 3);
    // Quarters 0-90° and 180-270° filled; a direction of 0 is -0.001.
    EXPECT_NEAR(*d[0].debut, -0.001, 1e-12);
    EXPECT_NEAR(*d[0].fin, -90 * DegRad, 1e-9);
    EXPECT_NEAR(*d[1].debut, -180 * DegRad, 1e-9);
    EXPECT_NEAR(*d[1].fin, -270 * DegRad, 1e-9);
    EXPECT_EQ(*d[0].remplissage, 65280);
    EXPECT_EQ(*d[1].remplissage, 65280);
    EXPECT_FALSE(d[2].debut.has_value());
    EXPECT_EQ(d[2].couleur, 0);
    // Types 3, 4 and above: 90, 45, 135.
    auto t3 = Lance("Voyant = 10,10,8,3,VERT");
    EXPECT_NEAR(*Dessin(*t3)[0].debut, -90 * DegRad, 1e-9);
    auto t4 = Lance("Voyant = 10,10,8,4,VERT");
    EXPECT_NEAR(*Dessin(*t4)[0].debut, -45 * DegRad, 1e-9);
    auto t9 = Lance("Voyant = 10,10,8,9,VERT");
    EXPECT_NEAR(*Dessin(*t9)[0].debut, -135 * DegRad, 1e-9);
    // Colour N draws nothing.
    auto n = Lance("Voyant = 10,10,8,2,N");
    EXPECT_TRUE(Dessin(*n).isEmpty());
}

TEST(Marques, VoyantYVidePrendCourantY) {
    auto s = Lance("Trait = 0,0,3,7\nVoyant = 20, , 4, 1");
    const auto c = Ops(*s, OpSurface::Cercle);
    ASSERT_EQ(c.size(), 2);
    EXPECT_MM(c[0].x1, 20);
    EXPECT_MM(c[0].y1, 7);
}

TEST(Marques, FlechePointeOuverte) {
    auto s = Lance("Fleche = 10,10,0,5");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 2);
    const double c = 5 * std::cos(30 * DegRad);
    AttendLigne(l[0], 10, 10, 10 - c, 7.5);
    AttendLigne(l[1], 10, 10, 10 - c, 12.5);
    AttendPoint(*s, 10, 10);
    // The opening is parameter 6; the default length is 1.
    auto t = Lance("Fleche = 0,0,90,,,90");
    const double k = std::cos(45 * DegRad);
    AttendLigne(Lignes(*t)[0], 0, 0, k, -k);
    AttendLigne(Lignes(*t)[1], 0, 0, -k, -k);
}

TEST(Marques, FlechePPleineEtContour) {
    auto s = LanceImprimante("FlecheP = 10,10,0,5,,,ROUGE");
    const auto d = Dessin(*s);
    ASSERT_EQ(d.size(), 4); // the pen's PSet, the polygon, two barbs
    EXPECT_EQ(d[0].genre, OpSurface::Point);
    EXPECT_EQ(d[1].genre, OpSurface::Polygone);
    ASSERT_EQ(d[1].points.size(), 3);
    EXPECT_NEAR(d[1].points[0].x(), 10, 25.4 / 600);
    EXPECT_NEAR(d[1].points[0].y(), 10, 25.4 / 600);
    EXPECT_NEAR(d[1].points[1].y(), 7.5, 25.4 / 600);
    EXPECT_EQ(*d[1].remplissage, 255);
    EXPECT_EQ(d[2].genre, OpSurface::Ligne);
    EXPECT_EQ(d[3].couleur, 255);
}

TEST(Marques, FlecheTourneAvecAngRot) {
    auto s = Lance("AngRot = 90\nFleche = 0,0,0,5");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 2);
    AttendLigne(l[0], 0, 0, 2.5, -5 * std::sin(120 * DegRad));
    AttendLigne(l[1], 0, 0, -2.5, -5 * std::sin(60 * DegRad));
}
