// Part 2.1: drawing surface and coordinate frame.
#include "drawing/repere.h"
#include "drawing/styles.h"
#include "language/para.h"
#include "outils.h"

namespace {

// The centre of the cross drawn by a centre command or CT: the crossing of its
// two strokes.
QPointF CentreCroix(const QVector<OpSurface>& l, int i) {
    return {(l[2 * i].x1 + l[2 * i].x2) / 2, (l[2 * i + 1].y1 + l[2 * i + 1].y2) / 2};
}

} // namespace

TEST(Repere, ScreenFrameIsMillimetresYUpward) {
    auto s = Lance("CT = 0, 0\n");
    const Surface& p = *s->pane;
    EXPECT_EQ(p.ScaleMode(), 6);
    EXPECT_MM(p.ScaleWidth, 297);
    EXPECT_MM(p.ScaleHeight, -210);
    EXPECT_MM(p.ScaleTop, 210);
    EXPECT_MM(p.ScaleLeft, 0);
    const QPointF px = p.VersPixel(0, 0);
    EXPECT_NEAR(px.y(), p.HauteurPx(), 1e-6); // y = 0 at the bottom edge
}

TEST(Repere, OriginCommandsDrawCrossesAtTheRightMillimetres) {
    const char* prog = "CentreE = 50, 40\nCT = 20, 10\nCT = 10R, 5\n";
    auto s = Lance(prog);
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 6);
    EXPECT_MM(CentreCroix(l, 0).x(), 50);
    EXPECT_MM(CentreCroix(l, 0).y(), 40);
    EXPECT_MM(CentreCroix(l, 1).x(), 70);
    EXPECT_MM(CentreCroix(l, 1).y(), 50);
    EXPECT_MM(CentreCroix(l, 2).x(), 80);
    EXPECT_MM(CentreCroix(l, 2).y(), 45);
    EXPECT_MM(l[0].x1, 49); // half size 1
    EXPECT_MM(l[0].x2, 51);
    EXPECT_EQ(l[0].largeur, 1);
}

TEST(Repere, PrinterFrameAndCentreI) {
    auto s = LanceImprimante("CentreI = 105, 148.5\nCT = 10, 0\n");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 4);
    EXPECT_MM(CentreCroix(l, 0).x(), 105);
    EXPECT_MM(CentreCroix(l, 0).y(), 148.5);
    EXPECT_MM(CentreCroix(l, 1).x(), 115);
    EXPECT_MM(s->imprimante->ScaleWidth, 210);
    EXPECT_MM(s->imprimante->ScaleTop, 297);
    // The default printer thickness: one 600 dpi dot.
    EXPECT_EQ(l[0].largeur, 1);
    EXPECT_NEAR(l[0].largeurMm, 25.4 / 600, 1e-9);
}

TEST(Repere, CentreIOnScreenAndCentreEOnPrinterAreSkipped) {
    auto s = Lance("CentreE = 10, 10\nCentreI = 50, 50\nCentreI = 60, 60\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_EQ(Lignes(*s).size(), 2);
    EXPECT_MM(s->etat.Repere.OrigineX, 10);
    auto p = LanceImprimante("CentreI = 10, 10\nCentreE = 50, 50\nCentreE = 60, 60\n");
    EXPECT_TRUE(p->hote.Messages().isEmpty());
    EXPECT_MM(p->etat.Repere.OrigineX, 10);
}

TEST(Repere, CentreEIActsOnBothTargets) {
    auto s = Lance("CentreEI = 30, 20, N, %X, %Y\n");
    EXPECT_MM(s->etat.Repere.OrigineX, 30);
    EXPECT_TRUE(Lignes(*s).isEmpty()); // N: no cross
    EXPECT_EQ(Variable(*s, "%X"), QStringLiteral("30"));
    EXPECT_EQ(Variable(*s, "%Y"), QStringLiteral("20"));
    auto p = LanceImprimante("CentreEI = 30, 20\n");
    EXPECT_MM(p->etat.Repere.OrigineX, 30);
}

TEST(Repere, ZeroThicknessIsOnePixel) {
    auto s = Lance("EpaisT = 0\nCT = 1, 1\n");
    const auto l = Lignes(*s);
    ASSERT_FALSE(l.isEmpty());
    EXPECT_EQ(l[0].largeur, 1);
}

TEST(Repere, ThicknessInMillimetresOnScreen) {
    Session s{QString()};
    Etat& e = s.etat;
    e.Surf = s.pane.get();
    e.Repere.MmParPixelE = 0.25f;
    e.Repere.FacteurZ = 1;
    EXPECT_EQ(LargeurTrait(e, 3, true), 12);
    // Printer dots on screen: shown in proportion.
    e.Repere.PointsParPixel = 6.25f;
    EXPECT_EQ(LargeurTrait(e, 25, false), 4);
    e.Surf = s.imprimante.get();
    e.Repere.MmParPointI = 25.4f / 600;
    EXPECT_EQ(LargeurTrait(e, 3, false), 3);
    EXPECT_EQ(LargeurTrait(e, 1, true), 24); // 1 mm = 23.6 dots
}

TEST(Repere, AngRotThenZeroSubParameterIsAGivenAngle) {
    auto s = Lance("AngRot = 30\nCT = 10, 0§0\n");
    EXPECT_MM(s->etat.Repere.CTx, 10);
    EXPECT_MM(s->etat.Repere.CTy, 0);
    auto t = Lance("AngRot = 30\nCT = 10, 0\n");
    EXPECT_MM(t->etat.Repere.CTx, 10 * std::cos(30 * 0.017453293));
    EXPECT_MM(t->etat.Repere.CTy, 10 * std::sin(30 * 0.017453293));
    EXPECT_EQ(Variable(*t, "%ANGR"), QStringLiteral("30"));
}

TEST(Repere, LitRotationTurnsCounterClockwise) {
    Session s{QString()};
    Etat& e = s.etat;
    double x = 10, y = 0;
    LitRotation(e, "0§90", x, y);
    EXPECT_MM(x, 0);
    EXPECT_MM(y, 10);
    EXPECT_TRUE(e.Repere.RotationDonnee);
    EXPECT_FLOAT_EQ(e.Repere.RotationCmd, -90);
    EXPECT_MM(e.Repere.XNonTourne, 10);
}

TEST(Repere, SegmentWithColourNMovesThePen) {
    Session s{QString()};
    Etat& e = s.etat;
    e.Surf = s.pane.get();
    e.Surf->SetScaleMode(6);
    Segment(e, 0, 0, 30, 40, -1);
    EXPECT_TRUE(s.journal.isEmpty());
    EXPECT_MM(e.Surf->CurrentX, 30);
    EXPECT_MM(e.Surf->CurrentY, 40);
    MajPointCourant(e, 0);
    EXPECT_MM(e.Repere.PointX, 30);
    EXPECT_MM(e.Repere.PointY, 40);
    // A following R-relative coordinate starts from the end of the undrawn segment.
    double x = 0, y = 0;
    e.NiveauCourant = 1;
    ParaCoord(e, x, y, "5R, 5R", 1, e.Repere.PointX, e.Repere.PointY);
    EXPECT_MM(x, 35);
    EXPECT_MM(y, 45);
}

TEST(Repere, CTWithoutParametersAfterARotatedCommand) {
    // CT = 10, 0§90 moves the centre along the turned axes to (0, 10); the
    // current point in the command's unturned frame is then (10, 0) from the
    // old centre, so a bare CT moves the centre there.
    auto s = Lance("CT = 10, 0§90\nCT\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_MM(s->etat.Repere.CTx, 10);
    EXPECT_MM(s->etat.Repere.CTy, 0);
    EXPECT_EQ(Lignes(*s).size(), 2); // no cross without parameters
}

TEST(Repere, CTSetsPredefinedVariablesAndOrderBit) {
    auto s = Lance("CT = 3, 4\n");
    EXPECT_EQ(Variable(*s, "%CTx"), QStringLiteral("3"));
    EXPECT_EQ(Variable(*s, "%CTy"), QStringLiteral("4"));
    EXPECT_EQ(s->etat.EtatOrdre, 4 | 64);
}

TEST(Repere, FormatIMustComeFirst) {
    auto s = Lance("CT = 1, 1\nFormatI = Paysage\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_TRUE(Messages(*s)[0].startsWith(QStringLiteral("Erreur dans l'ordre des commandes ligne : 2: ")));
    auto t = Lance("FormatI = Oblique\n");
    ASSERT_EQ(t->hote.Messages().size(), 1);
    EXPECT_TRUE(Messages(*t)[0].startsWith(QStringLiteral("Erreur de commande dans la ligne : 1")));
}

TEST(Repere, FormatILandscapeTurnsThePrinterPage) {
    auto s = LanceImprimante("FormatI = Paysage\nCentreI = 10, 10\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_EQ(s->imprimante->Orientation(), 2);
    EXPECT_MM(s->imprimante->ScaleWidth, 297);
    EXPECT_MM(s->imprimante->ScaleTop, 210);
    EXPECT_EQ(Variable(*s, "%FPay"), QStringLiteral("1"));
    auto e = Lance("FormatI = Landscape\n");
    EXPECT_EQ(Variable(*e, "%FPay"), QStringLiteral("1"));
    EXPECT_MM(e->pane->ScaleWidth, 297); // on screen nothing else changes
}

TEST(Repere, ZoomIniAfterDrawingFails) {
    auto s = Lance("ZoomIni = 2\nCT = 1, 1\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_FLOAT_EQ(s->etat.Repere.ZoomDepart, 2);
    EXPECT_FLOAT_EQ(s->etat.Repere.ZoomE, 1); // not for the run in progress
    auto t = Lance("CT = 1, 1\nZoomIni = 2\n");
    ASSERT_EQ(t->hote.Messages().size(), 1);
}

TEST(Repere, ZoomShowsFewerUnitsAcrossThePane) {
    Session s(Programme("CentreE = 10, 10\n"));
    s.Execute(2.0f);
    EXPECT_MM(s.pane->ScaleWidth, 297.0 / 2);
    const auto l = Lignes(s);
    ASSERT_EQ(l.size(), 2);
    EXPECT_MM(l[0].x1, 9); // the same Surface units, shown twice as large
}

TEST(Repere, SquareEndedLineIsAPolygonAndAThinLine) {
    auto s = Lance("EpaisT = 2mm§C\nCT = 5, 5\n");
    const auto p = Ops(*s, OpSurface::Polygone);
    ASSERT_EQ(p.size(), 2); // one per stroke of the cross
    const auto pts = Ops(*s, OpSurface::Point);
    ASSERT_EQ(pts.size(), 1); // the off-page PSet, once per run
    EXPECT_LT(pts[0].x1, -900);
    // The first stroke: from x = 4 to 6 at y = 5, 2 mm wide: corners at y = 4 and 6.
    double ymin = 1e9, ymax = -1e9;
    for (const QPointF& q : p[0].points) {
        ymin = std::min(ymin, q.y());
        ymax = std::max(ymax, q.y());
    }
    EXPECT_NEAR(ymax - ymin, 2.0, 0.3); // rounded to whole pixels
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 2);
    EXPECT_EQ(l[0].largeur, 1);
}

TEST(Repere, NPageClearsThePaneAndResetsTheOrder) {
    auto s = Lance("CentreE = 10, 10\nNPage\nCentreE = 20, 20\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_MM(s->etat.Repere.OrigineX, 20);
}

TEST(Repere, RefCurFormatsItsValues) {
    auto s = Lance("RefCur = 12.345, 0.5§30\n");
    EXPECT_EQ(s->etat.Repere.RefCurX, QStringLiteral("12.35"));
    EXPECT_EQ(s->etat.Repere.RefCurY, QStringLiteral(".5"));
    EXPECT_EQ(s->etat.Repere.RefCurAngle, QStringLiteral("-30.0"));
}

TEST(Repere, QuestionMarkRewritesTheLineOrFillsVariables) {
    auto s = Lance("CT = 12.5, 7\n?\n");
    EXPECT_TRUE(s->hote.TexteModifie());
    EXPECT_EQ(s->hote.TexteEditeur(), Programme("CT = 12.5, 7\n'? =0, 0\n"));
    auto t = Lance("CentreE = 10, 10\n? = %X, %Y\n");
    EXPECT_EQ(Variable(*t, "%X"), QStringLiteral("0"));
    EXPECT_EQ(Variable(*t, "%Y"), QStringLiteral("0"));
}

TEST(Repere, ThicknessZeroIsOnePixelEvenAfterAThickDefault) {
    const char* prog = "EpaisT = 3mm\nTrait = 0, 0, 10, 0, 0\nTrait = 0, 0, 10, 0\n";
    auto s = Lance(prog);
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 2);
    EXPECT_EQ(l[0].largeur, 1);  // the command's own "0"
    EXPECT_EQ(l[1].largeur, 11); // the default, 3 mm at 96 dpi
    auto p = LanceImprimante(prog);
    const auto lp = Lignes(*p);
    ASSERT_EQ(lp.size(), 2);
    EXPECT_EQ(lp[0].largeur, 1);
    EXPECT_EQ(lp[1].largeur, 71); // 3 mm at 600 dpi
    // The conversion itself, on both targets, in dots and in millimetres.
    Session u{QString()};
    Etat& e = u.etat;
    e.Repere.FacteurZ = 1;
    e.Surf = u.pane.get();
    EXPECT_EQ(LargeurTrait(e, 0, false), 1);
    EXPECT_EQ(LargeurTrait(e, 0, true), 1);
    e.Surf = u.imprimante.get();
    EXPECT_EQ(LargeurTrait(e, 0, false), 1);
    EXPECT_EQ(LargeurTrait(e, 0, true), 1);
}
