// Part 2.3: scale definition. Expected values are worked out here from the
// spec's formulas (its constants included), not taken from the code.
#include "outils.h"

#include <cmath>

namespace {

constexpr double K = 0.017453293; // the spec's degrees to radians
constexpr double PI = 3.14159265358979;

// Needle point at deviation a (degrees) and radius r about (0, 0): deviation 0
// points left, 90 up.
QPointF Aiguille(double a, double r) { return {-r * std::cos(a * K), r * std::sin(a * K)}; }

QVector<OpSurface> Cercles(const Session& s) { return Ops(s, OpSurface::Cercle); }

bool Contient(const QStringList& l, const QString& t) {
    for (const QString& m : l)
        if (m.contains(t)) return true;
    return false;
}

} // namespace

// Arc = 0, 180, 50: a half circle over the top, left to right, with the zero
// end replaced by 0.000001.
TEST(Echelle, ArcDemiCercleParLeHaut) {
    auto s = Lance("Arc = 0, 180, 50\nGrad1 = 0, 5, , , 100, 5");
    EXPECT_EQ(s->etat.Ech.a1, 0.000001);
    EXPECT_EQ(s->etat.Ech.a2, 180);
    const auto c = Cercles(*s);
    ASSERT_EQ(c.size(), 1);
    EXPECT_MM(c[0].x1, 0);
    EXPECT_MM(c[0].y1, 0);
    EXPECT_MM(c[0].r, 50);
    // RadMod(540 - 0.000001) = 18000 hundredths; RadMod(540 - 180) = 0.
    ASSERT_TRUE(c[0].debut && c[0].fin);
    EXPECT_NEAR(*c[0].debut, 0, 1e-12);
    EXPECT_NEAR(*c[0].fin, 18000 * K / 100, 1e-12);
    // Position 0 % is at the left, 100 % at the right.
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 2);
    EXPECT_MM(l[0].x1, -50);
    EXPECT_MM(l[0].y1, 0);
    EXPECT_MM(l[1].x1, 50);
    EXPECT_MM(l[1].y1, 0);
    EXPECT_EQ(s->etat.EtatOrdre & 96, 96);
}

// Arc = 180, 0, 50 is drawn the same, but positions run from right to left.
TEST(Echelle, ArcInverseMemeTraceSensContraire) {
    auto s = Lance("Arc = 180, 0, 50\nGrad1 = 0, 5, , , 25, 5");
    EXPECT_EQ(s->etat.Ech.a2, 0.000001);
    const auto c = Cercles(*s);
    ASSERT_EQ(c.size(), 1);
    EXPECT_NEAR(*c[0].debut, 0, 1e-12);
    EXPECT_NEAR(*c[0].fin, 18000 * K / 100, 1e-12);
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 2);
    EXPECT_MM(l[0].x1, 50);
    EXPECT_MM(l[0].y1, 0);
    // 25 % of 180 -> 0: deviation 135, up and to the right.
    const QPointF p = Aiguille(180 - 0.25 * (180 - 0.000001), 50);
    EXPECT_MM(l[1].x1, p.x());
    EXPECT_MM(l[1].y1, p.y());
}

// Decal = -200 with Arc = 60, 120, 100: a flatter arc about a centre 200
// below the needle's axis; "?" writes its Cercle into the line as a comment.
TEST(Echelle, DecalMoins200ArcPlusPlatEtSonCercle) {
    auto s = Lance("Decal = -200\nArc = 60, 120, 100, , ?");
    const double D = 200, R = 100;
    EXPECT_EQ(s->etat.Ech.D, D);
    const double rp = std::sqrt(D * D + R * R - 2 * D * R * std::cos((60 + 90) * K));
    // AngDebut: |a1| < 90, pi - q; AngFin by ArcSinus.
    const double q = std::atan((D + R * std::sin(60 * K)) / (R * std::cos(60 * K)));
    const double angDebut = PI - q;
    const double v = D * std::sin(120 * K + PI / 2) / rp;
    const double angFin = PI - 120 * K - std::atan(v / std::sqrt(1 - v * v));
    const auto c = Cercles(*s);
    ASSERT_EQ(c.size(), 1);
    EXPECT_MM(c[0].x1, 0);
    EXPECT_MM(c[0].y1, -200);
    EXPECT_MM(c[0].r, rp);
    EXPECT_NEAR(*c[0].debut, angFin, 1e-9);
    EXPECT_NEAR(*c[0].fin, angDebut, 1e-9);
    // Both ends lie on the needle's rays at 60 and 120.
    const double xd = rp * std::cos(angDebut), yd = -200 + rp * std::sin(angDebut);
    EXPECT_NEAR(std::atan2(yd, xd), PI - 60 * K, 1e-7);
    const double xf = rp * std::cos(angFin), yf = -200 + rp * std::sin(angFin);
    EXPECT_NEAR(std::atan2(yf, xf), PI - 120 * K, 1e-7);
    // The flatter arc: its radius is far larger than the needle's.
    EXPECT_GT(rp, 2.5 * R);
    // The editor's line keeps the equivalent Cercle as a comment, numbers in
    // the format "##0.##" (r with a blank before it).
    auto f = [](double x) {
        QString t = QString::number(std::abs(std::round(x * 100) / 100), 'f', 2);
        while (t.endsWith(u'0')) t.chop(1);
        return (x < 0 ? QStringLiteral("-") : QString()) + t;
    };
    const QString attendu = QStringLiteral("Arc = 60, 120, 100,   'Cercle = 0., -200., ") + u' ' +
                            f(rp) + QStringLiteral(", ") + f(angFin / K) + QStringLiteral(", ") +
                            f(angDebut / K);
    EXPECT_EQ(s->hote.TexteEditeur().split(QStringLiteral("\r\n"))[1], attendu);
    EXPECT_EQ(f(rp), QStringLiteral("290.93"));
}

// The same arc gives its Cercle to a %CMD variable and its length to another.
TEST(Echelle, DecalParametre5Variables) {
    auto s = Lance("Decal = -200\nArc = 60, 120, 100, , %CMDa\nArc = 60, 120, 100, , %Long");
    EXPECT_TRUE(Variable(*s, "%CMDa").startsWith(QStringLiteral("Cercle = 0., -200.,  290.93, ")));
    const double rp = std::sqrt(200.0 * 200 + 100 * 100 - 2 * 200 * 100 * std::cos(150 * K));
    const double q = std::atan((200 + 100 * std::sin(60 * K)) / (100 * std::cos(60 * K)));
    const double v = 200 * std::sin(120 * K + PI / 2) / rp;
    const double angFin = PI - 120 * K - std::atan(v / std::sqrt(1 - v * v));
    EXPECT_NEAR(Variable(*s, "%Long").toDouble(), std::abs(PI - q - angFin) * rp, 1e-3);
    // Without Decal the parameter does nothing.
    auto s2 = Lance("Arc = 60, 120, 100, , %Long");
    EXPECT_TRUE(Variable(*s2, "%Long").isEmpty());
}

// Decal: %DECAL holds the opposite of what was written, the cross colour is
// kept, and the cross is drawn at the drawn centre.
TEST(Echelle, DecalVariablesEtCroix) {
    auto s = Lance("Decal = -200, rouge\nArc = 60, 120, 100");
    EXPECT_EQ(Variable(*s, "%DECAL"), QStringLiteral("200"));
    EXPECT_EQ(Variable(*s, "%CouleurDECAL").trimmed(), QStringLiteral("rouge"));
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 2); // the cross of half size 1 at (0, -200)
    EXPECT_MM(l[0].x1, -1);
    EXPECT_MM(l[0].y1, -200);
    EXPECT_MM(l[0].x2, 1);
    EXPECT_MM(l[1].y1, -201);
    EXPECT_MM(l[1].y2, -199);
    EXPECT_EQ(l[0].couleur, 255);
    // N: no cross.
    auto s2 = Lance("Decal = -200, N\nArc = 60, 120, 100");
    EXPECT_EQ(Lignes(*s2).size(), 0);
}

// Decal = 10000 makes the scale straight, and |offset| >= 10000 in either sign
// does.
TEST(Echelle, Decal10000EchelleDroite) {
    for (const char* decal : {"10000", "-10000", "25000", "-25000"}) {
        auto s = Lance(QStringLiteral("Decal = %1\nArc = 60, 120, 100\nGrad1 = 50, 10").arg(decal));
        SCOPED_TRACE(decal);
        EXPECT_EQ(Cercles(*s).size(), 0);
        EXPECT_GE(s->etat.Ech.D, 10000);
        const auto l = Lignes(*s);
        ASSERT_EQ(l.size(), 2);
        const double y = 100 * std::sin(60 * K);
        EXPECT_MM(l[0].x1, -100 * std::cos(60 * K));
        EXPECT_MM(l[0].y1, y);
        EXPECT_MM(l[0].x2, y * std::tan((120 - 90) * K));
        EXPECT_MM(l[0].y2, y);
        // The tick at 50 % (deviation 90) stands upright, pointing at the axis.
        EXPECT_MM(l[1].x1, 0);
        EXPECT_MM(l[1].y1, y);
        EXPECT_MM(l[1].x2, 0);
        EXPECT_MM(l[1].y2, 110 * std::sin(60 * K));
    }
}

// The straight limit projects ticks along the needle's ray onto y = R sin(a1).
TEST(Echelle, LimiteDroiteProjetteLesPositions) {
    auto s = Lance("Decal = 10000\nArc = 60, 120, 100, N\nGrad1 = 0, 10, , , 25, 10");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 2);
    const double y = 100 * std::sin(60 * K), yt = 110 * std::sin(60 * K);
    const double A = (60 + 0.25 * 60) * K, f = PI - A;
    EXPECT_MM(l[1].x1, y * std::tan(PI / 2 - f));
    EXPECT_MM(l[1].y1, y);
    EXPECT_MM(l[1].x2, yt * std::tan(PI / 2 - f));
    EXPECT_MM(l[1].y2, yt);
    // "?" composes the Trait of the line.
    auto s2 = Lance("Decal = 10000\nArc = 60, 120, 100, , %CMD");
    EXPECT_EQ(Variable(*s2, "%CMD"), QStringLiteral("Trait = -50., 86.6, 50., 86.6"));
}

// Exposant = 2 puts 50 % at a quarter of the deviation.
TEST(Echelle, ExposantDeuxCinquantePourCentAuQuart) {
    auto s = Lance("Exposant = 2\nArc = 0, 180, 50\nGrad1 = 50, 5");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 1);
    const QPointF p = Aiguille(0.000001 + 0.25 * (180 - 0.000001), 50);
    EXPECT_MM(l[0].x1, p.x());
    EXPECT_MM(l[0].y1, p.y());
    EXPECT_FLOAT_EQ(s->etat.PileFic[1].CoefExposant, 2.0f);
}

// Exposant = L, 2: 1 to 100 with 10 at the middle.
TEST(Echelle, ExposantLDeuxDecadesDixAuMilieu) {
    auto s = Lance("Exposant = L, 2\nArc = 0, 180, 50\nGrad1 = 1, 5, , , 10, 5, , , 100, 5");
    const Echelle& ech = s->etat.Ech;
    EXPECT_EQ(ech.NbDecades, 2);
    EXPECT_EQ(ech.LogDebut, 1.0f);
    EXPECT_EQ(ech.LogFin, 1.0f);
    EXPECT_DOUBLE_EQ(ech.DecadesTotal, 2);
    EXPECT_TRUE(s->etat.PileFic[1].EchelleLog);
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 3);
    EXPECT_MM(l[0].x1, -50);
    const QPointF m = Aiguille(0.000001 + 0.5 * (180 - 0.000001), 50);
    EXPECT_MM(l[1].x1, m.x());
    EXPECT_MM(l[1].y1, m.y());
    EXPECT_MM(l[2].x1, 50);
}

// Exposant = L, 0, 2, 8: 2 to 8 in one decade, positions by ln of the ratio.
TEST(Echelle, ExposantLDeuxAHuitUneDecade) {
    auto s = Lance("Exposant = L, 0, 2, 8\nDroite = 0, 100\nGrad1 = 2, 5, , , 3, 5, , , 4, 5, , , 8, 5");
    EXPECT_EQ(s->etat.Ech.NbDecades, 0);
    EXPECT_NEAR(s->etat.Ech.DecadesTotal, std::log(4.0) / std::log(10.0), 1e-12);
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 5); // the line, then 4 ticks
    EXPECT_MM(l[1].x1, 0);
    EXPECT_MM(l[2].x1, 100 * std::log(3.0 / 2) / std::log(8.0 / 2));
    EXPECT_MM(l[3].x1, 50);
    EXPECT_MM(l[4].x1, 100);
}

// Inversion = 5 flips the side, like no parameter; 1 and -1 set it.
TEST(Echelle, InversionCinqCommeSansParametre) {
    auto s = Lance("Inversion = 5\nArc = 0, 180, 50\nGrad1 = 50, 5");
    EXPECT_EQ(s->etat.Ech.CoteGrad, -1);
    auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 1);
    EXPECT_MM(l[0].y1, 50);
    EXPECT_MM(l[0].y2, 45);
    EXPECT_EQ(Lance("Inversion")->etat.Ech.CoteGrad, -1);
    EXPECT_EQ(Lance("Inversion\nInversion")->etat.Ech.CoteGrad, 1);
    EXPECT_EQ(Lance("Inversion = -1\nInversion = -1")->etat.Ech.CoteGrad, -1);
    EXPECT_EQ(Lance("Inversion = -1\nInversion = 1")->etat.Ech.CoteGrad, 1);
}

// Droite: the R form of the end, the line, the pen at the middle.
TEST(Echelle, DroiteFormeRStylo) {
    auto s = Lance("Droite = 10, 80R, 5");
    const Echelle& ech = s->etat.Ech;
    EXPECT_EQ(ech.x1, 10);
    EXPECT_EQ(ech.x2, 90);
    EXPECT_EQ(ech.R, 5);
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 1);
    EXPECT_MM(l[0].x1, 10);
    EXPECT_MM(l[0].y1, 5);
    EXPECT_MM(l[0].x2, 90);
    EXPECT_MM(l[0].y2, 5);
    EXPECT_MM(s->etat.Repere.PointX, 50);
    EXPECT_MM(s->etat.Repere.PointY, 5);
    EXPECT_MM(s->pane->CurrentX, 50);
}

// Droite with a rotation: the line and the pen turned counter-clockwise.
TEST(Echelle, DroiteRotation) {
    auto s = Lance("Droite = 0, 100§90, 10");
    EXPECT_EQ(s->etat.Ech.Rot, 90);
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 1);
    EXPECT_MM(l[0].x1, -10);
    EXPECT_MM(l[0].y1, 0);
    EXPECT_MM(l[0].x2, -10);
    EXPECT_MM(l[0].y2, 100);
    // Pen: m = 50, t = -90 degrees.
    const double t = -90 * K;
    EXPECT_MM(s->pane->CurrentX, 50 * std::cos(t) + 10 * std::sin(t));
    EXPECT_MM(s->pane->CurrentY, -50 * std::sin(t) + 10 * std::cos(t));
    // Given back in the unturned frame.
    EXPECT_MM(s->etat.Repere.PointX, 50);
    EXPECT_MM(s->etat.Repere.PointY, 10);
}

// DroiteV: the vertical scale at x = R, colour N defines it without drawing.
TEST(Echelle, DroiteVCouleurN) {
    auto s = Lance("DroiteV = -20, 40, 30, N\nGrad1 = 50, 4");
    EXPECT_EQ(s->etat.Ech.y1, -20);
    EXPECT_EQ(s->etat.Ech.y2, 40);
    EXPECT_FALSE(s->etat.Ech.TraceEchelle);
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 1);
    EXPECT_MM(l[0].x1, 30);
    EXPECT_MM(l[0].y1, 10);
    EXPECT_MM(l[0].x2, 34);
    EXPECT_MM(l[0].y2, 10);
}

// An arc clears the straight fields; a straight scale clears the arc and Decal.
TEST(Echelle, UneSeuleFormeVivante) {
    auto s = Lance("Decal = -50\nArc = 30, 150, 60\nDroite = 0, 50");
    EXPECT_EQ(s->etat.Ech.a1, 0);
    EXPECT_EQ(s->etat.Ech.a2, 0);
    EXPECT_EQ(s->etat.Ech.D, 0);
    EXPECT_EQ(s->etat.Ech.x2, 50);
    auto s2 = Lance("Droite = 0, 50\nArc = 30, 150, 60");
    EXPECT_EQ(s2->etat.Ech.x1, 0);
    EXPECT_EQ(s2->etat.Ech.x2, 0);
}

// A wide decentred scale keeps its centre within half the radius.
TEST(Echelle, DecalBorneSurArcLarge) {
    auto s = Lance("Decal = -80\nArc = -30, 210, 100");
    EXPECT_EQ(s->etat.Ech.D, 50);
    auto s2 = Lance("Decal = 80\nArc = -30, 210, 100");
    EXPECT_EQ(s2->etat.Ech.D, -50);
}

// Arc with a rotation: the arc's ends and the ticks turn with it.
TEST(Echelle, ArcRotationTourneLesTraits) {
    auto s = Lance("Arc = 0, 180§30, 50\nGrad1 = 0, 5");
    EXPECT_EQ(s->etat.Ech.Rot, 30);
    const auto c = Cercles(*s);
    ASSERT_EQ(c.size(), 1);
    EXPECT_NEAR(*c[0].debut, 3000 * K / 100, 1e-12);
    EXPECT_NEAR(*c[0].fin, 21000 * K / 100, 1e-12);
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 1);
    EXPECT_MM(l[0].x1, 50 * std::cos(210 * K));
    EXPECT_MM(l[0].y1, 50 * std::sin(210 * K));
}

// Decal and the scale side are reset at the start of a run.
TEST(Echelle, RazAuDebutDuRun) {
    auto s = Lance("Decal = -200\nInversion");
    EXPECT_EQ(s->etat.Ech.D, 200);
    EXPECT_EQ(s->etat.Ech.CoteGrad, -1);
    s->hote.SetTexte(Programme("Arc = 0, 180, 50"));
    s->journal.clear();
    s->Execute();
    EXPECT_EQ(s->etat.Ech.D, 0);
    EXPECT_EQ(s->etat.Ech.CoteGrad, 1);
    EXPECT_MM(Cercles(*s).value(0).r, 50);
}

// The order failure of the scale commands before any scale.
TEST(Echelle, OrdreCommandesAvantEchelle) {
    for (const char* cmd : {"Grad = 10, 5", "Grad1 = 50, 5"}) {
        auto s = Lance(cmd);
        SCOPED_TRACE(cmd);
        EXPECT_TRUE(Contient(Messages(*s), QStringLiteral("Erreur ordre commandes / Error odre commands")));
        EXPECT_EQ(Lignes(*s).size(), 0);
    }
}

// All ends equal: no valid form, the next Grad fails.
TEST(Echelle, BornesEgalesEchouent) {
    for (const char* prog : {"Arc = 30, 30, 50\nGrad = 10, 5", "Droite = 10, 10\nGrad = 10, 5",
                             "DroiteV = 5, 5\nGrad1 = 50, 5", "Arc = 0, 0, 50\nGrad = 2, 5"}) {
        auto s = Lance(prog);
        SCOPED_TRACE(prog);
        EXPECT_EQ(Messages(*s).size(), 1);
        EXPECT_EQ(Lignes(*s).size(), QString(prog).startsWith("Droite") ? 1 : 0);
    }
}

// RadMod keeps AngDebut, AngFin within 0 to 6.283185 (Part 2.3): Rot + 540 - a
// below 0 gives an angle past 180 degrees, never a negative one (a radius line).
TEST(Echelle, RadModToujoursDansUnTour) {
    auto s = Lance("Arc = 0, 600, 50");
    const auto c = Cercles(*s);
    ASSERT_EQ(c.size(), 1);
    ASSERT_TRUE(c[0].debut && c[0].fin);
    EXPECT_NEAR(*c[0].debut, 30000 * K / 100, 1e-12); // RadMod(-60) = 300
    EXPECT_NEAR(*c[0].fin, 18000 * K / 100, 1e-12);   // RadMod(540) = 180
    auto s2 = Lance("Arc = 250, 290§-300, 50");
    const auto c2 = Cercles(*s2);
    ASSERT_EQ(c2.size(), 1);
    ASSERT_TRUE(c2[0].debut && c2[0].fin);
    EXPECT_NEAR(*c2[0].debut, 31000 * K / 100, 1e-12); // RadMod(-50) = 310
    EXPECT_NEAR(*c2[0].fin, 35000 * K / 100, 1e-12);   // RadMod(-10) = 350
}
