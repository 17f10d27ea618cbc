// Drawing surface and coordinate frame: millimetres, origins, thickness, zoom.
#include "drawing/repere.h"
#include "drawing/styles.h"
#include "outils.h"

namespace {

// The centre of cross i drawn by a centre command or CT: where its strokes meet.
QPointF CentreCroix(const QVector<OpSurface>& l, int i) {
    return {(l[2 * i].x1 + l[2 * i].x2) / 2, (l[2 * i + 1].y1 + l[2 * i + 1].y2) / 2};
}

} // namespace

// The screen is 297 x 210 mm with y upward from the bottom edge; the printer an A4 page.
TEST(Repere, FramesAreMillimetresYUpward) {
    auto s = Lance("CT = 0, 0");
    const Surface& p = *s->pane;
    EXPECT_MM(p.ScaleWidth, 297);
    EXPECT_MM(p.ScaleHeight, -210);
    EXPECT_MM(p.ScaleTop, 210);
    EXPECT_MM(p.ScaleLeft, 0);
    EXPECT_NEAR(p.VersPixel(0, 0).y(), p.HauteurPx(), 1e-6);
    auto i = LanceImprimante("CT = 0, 0");
    EXPECT_MM(i->imprimante->ScaleWidth, 210);
    EXPECT_MM(i->imprimante->ScaleTop, 297);
}

// Centre commands and CT draw crosses of half size 1 at the new origin; CT
// moves from the current origin, "R" from the current point.
TEST(Repere, OriginCommandsDrawCrosses) {
    const struct { const char* prog; bool imprimante; QVector<QPointF> centres; } cas[] = {
        {"CentreE = 50, 40\nCT = 20, 10\nCT = 10R, 5", false, {{50, 40}, {70, 50}, {80, 45}}},
        {"CentreI = 105, 148.5\nCT = 10, 0", true, {{105, 148.5}, {115, 148.5}}},
        // CentreI on screen and CentreE on the printer are passed over.
        {"CentreE = 10, 10\nCentreI = 50, 50\nCentreI = 60, 60", false, {{10, 10}}},
        {"CentreI = 10, 10\nCentreE = 50, 50\nCentreE = 60, 60", true, {{10, 10}}},
        // CentreEI acts on both; N draws no cross.
        {"CentreEI = 30, 20, N\nCT = 0, 0", false, {{30, 20}}},
        {"CentreEI = 30, 20, N\nCT = 0, 0", true, {{30, 20}}},
        // NPage clears the pane and lets the centre commands come again.
        {"CentreE = 10, 10\nNPage\nCentreE = 20, 20", false, {{10, 10}, {20, 20}}},
    };
    for (const auto& c : cas) {
        SCOPED_TRACE(c.prog);
        auto s = c.imprimante ? LanceImprimante(c.prog) : Lance(c.prog);
        EXPECT_TRUE(Messages(*s).isEmpty());
        const auto l = Lignes(*s);
        ASSERT_EQ(l.size(), 2 * c.centres.size());
        for (int i = 0; i < c.centres.size(); ++i) {
            EXPECT_MM(CentreCroix(l, i).x(), c.centres[i].x());
            EXPECT_MM(CentreCroix(l, i).y(), c.centres[i].y());
        }
        EXPECT_MM(l[0].x2 - l[0].x1, 2);
        EXPECT_EQ(l[0].largeur, 1);  // one pixel, one 600 dpi dot
    }
}

// Commands that give values to predefined or named variables.
TEST(Repere, CommandsFillVariables) {
    const struct { const char* prog; const char* nom; const char* valeur; } cas[] = {
        {"CentreEI = 30, 20, N, %X, %Y", "%X", "30"}, {"CentreEI = 30, 20, N, %X, %Y", "%Y", "20"},
        {"CT = 3, 4", "%CTx", "3"}, {"CT = 3, 4", "%CTy", "4"}, {"AngRot = 30", "%ANGR", "30"},
        {"FormatI = Landscape", "%FPay", "1"}, {"CentreE = 10, 10\n? = %X, %Y", "%Y", "0"},
        // The pen is kept in single precision: 100000.01 mm from the page's edge is 100000.0078125.
        {"CentreE = 100000, 0, N\nPlus = 0.01, 0.01, 0\n? = %X, %Y", "%X", ".0078125"},
        {"CentreE = 100000, 0, N\nPlus = 0.01, 0.01, 0\nCT = 0R, 0R, N", "%CTx", ".0078125"},
    };
    for (const auto& c : cas) EXPECT_EQ(Variable(*Lance(c.prog), c.nom), c.valeur) << c.prog;
}

// Line widths in pixels or dots: 0 is always one, millimetres are converted,
// printer dots are shown on screen in proportion.
TEST(Repere, LineWidths) {
    const char* prog = "EpaisT = 3mm\nTrait = 0, 0, 10, 0, 0\nTrait = 0, 0, 10, 0";
    for (bool imprimante : {false, true}) {
        auto s = imprimante ? LanceImprimante(prog) : Lance(prog);
        const auto l = Lignes(*s);
        ASSERT_EQ(l.size(), 2);
        EXPECT_EQ(l[0].largeur, 1);                       // the command's own 0
        EXPECT_EQ(l[1].largeur, imprimante ? 71 : 11);    // 3 mm at 600 or 96 dpi
    }
    EXPECT_NEAR(Lignes(*LanceImprimante("CT = 1, 1")).value(0).largeurMm, 25.4 / 600, 1e-9);
    EXPECT_EQ(Lignes(*Lance("EpaisT = 0\nCT = 1, 1")).value(0).largeur, 1);
    Session s{QString()};
    Etat& e = s.etat;
    e.Repere.FacteurZ = 1;
    e.Surf = s.pane.get();
    e.Repere.MmParPixelE = 0.25f;
    e.Repere.PointsParPixel = 6.25f;
    const struct { bool imprimante; float w; bool mm; int px; } cas[] = {
        {false, 3, true, 12}, {false, 25, false, 4}, {false, 0, false, 1}, {false, 0, true, 1},
        {true, 3, false, 3}, {true, 1, true, 24}, {true, 0, false, 1}, {true, 0, true, 1},
    };
    e.Repere.MmParPointI = 25.4f / 600;
    for (const auto& c : cas) {
        e.Surf = c.imprimante ? s.imprimante.get() : s.pane.get();
        EXPECT_EQ(LargeurTrait(e, c.w, c.mm), c.px) << c.imprimante << " " << c.w << " " << c.mm;
    }
}

// Where CT puts the centre: AngRot turns coordinates without their own angle
// (even 0), an angle turns counter-clockwise, a bare CT goes to the current
// point, held in the unturned frame of the command before, and "R" counts
// from the current point.
TEST(Repere, CTUnderRotations) {
    const struct { const char* prog; double x, y; } cas[] = {
        {"AngRot = 30\nCT = 10, 0§0", 10, 0}, {"AngRot = 30\nCT = 10, 0", 8.66025, 5},
        {"CT = 10, 0§90", 0, 10}, {"CT = 10, 0§90\nCT", 10, 0},
        {"Trait = 0, 0, 30, 40, , N\nCT = 5R, 5R", 35, 45},  // a line of colour N moves the pen
    };
    for (const auto& c : cas) {
        SCOPED_TRACE(c.prog);
        auto s = Lance(c.prog);
        EXPECT_TRUE(Messages(*s).isEmpty());
        EXPECT_MM(s->etat.Repere.CTx, c.x);
        EXPECT_MM(s->etat.Repere.CTy, c.y);
        EXPECT_EQ(Lignes(*s).size(), 2);  // one cross, the first CT's
    }
}

// FormatI comes first and knows its words; landscape turns the printer page only.
TEST(Repere, FormatI) {
    auto s = Lance("CT = 1, 1\nFormatI = Paysage");
    ASSERT_EQ(Messages(*s).size(), 1);
    EXPECT_TRUE(Messages(*s)[0].startsWith(QStringLiteral("Erreur dans l'ordre des commandes ligne : 2: ")));
    auto t = Lance("FormatI = Oblique");
    ASSERT_EQ(Messages(*t).size(), 1);
    EXPECT_TRUE(Messages(*t)[0].startsWith(QStringLiteral("Erreur de commande dans la ligne : 1")));
    auto p = LanceImprimante("FormatI = Paysage\nCentreI = 10, 10");
    EXPECT_TRUE(Messages(*p).isEmpty());
    EXPECT_EQ(p->imprimante->Orientation(), 2);
    EXPECT_MM(p->imprimante->ScaleWidth, 297);
    EXPECT_MM(p->imprimante->ScaleTop, 210);
    EXPECT_MM(Lance("FormatI = Landscape")->pane->ScaleWidth, 297);
}

// ZoomIni is for the next run and must come before any drawing (a centre
// command's cross is none); a zoom shows the same units larger.
TEST(Repere, Zoom) {
    auto s = Lance("CentreE = 10, 10\nZoomIni = 2\nCT = 1, 1");
    EXPECT_TRUE(Messages(*s).isEmpty());
    EXPECT_FLOAT_EQ(s->etat.Repere.ZoomDepart, 2);
    EXPECT_FLOAT_EQ(s->etat.Repere.ZoomE, 1);
    // No zoom of 0, and a negative one is its size: the view would show nothing, or the drawing mirrored.
    for (const auto& [ligne, ecran, imprimante] :
         {std::tuple{"ZoomIni = 0\nZoomIniI = 0", 1.0f, 1.0f}, {"ZoomIni = -2\nZoomIniI = -0.5", 2.0f, 0.5f}}) {
        auto z = Lance(ligne);
        EXPECT_EQ(std::pair(z->etat.Repere.ZoomDepart, z->etat.Repere.ZoomDepartI), std::pair(ecran, imprimante)) << ligne;
    }
    const auto tard = Messages(*Lance("CT = 1, 1\nZoomIni = 2"));
    ASSERT_EQ(tard.size(), 1);
    EXPECT_TRUE(tard[0].startsWith(QStringLiteral("Erreur dans l'ordre des commandes ligne : 2"))) << tard[0].toStdString();
    Session z(Programme("CentreE = 10, 10"));
    z.Execute(2.0f);
    EXPECT_MM(z.pane->ScaleWidth, 297.0 / 2);
    EXPECT_MM(Lignes(z).value(0).x1, 9);
}

// A square-ended thick line is a filled polygon plus a thin line, after one
// off-page PSet per run.
TEST(Repere, SquareEndedLineIsAPolygonAndAThinLine) {
    auto s = Lance("EpaisT = 2mm§C\nCT = 5, 5");
    const auto p = Ops(*s, OpSurface::Polygone);
    ASSERT_EQ(p.size(), 2);
    const auto pts = Ops(*s, OpSurface::Point);
    ASSERT_EQ(pts.size(), 1);
    EXPECT_LT(pts[0].x1, -900);
    EXPECT_NEAR(QPolygonF(p[0].points).boundingRect().height(), 2.0, 0.3);  // 2 mm in whole pixels
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 2);
    EXPECT_EQ(l[0].largeur, 1);
}

// RefCur keeps its values formatted; "?" writes the current point into the program.
TEST(Repere, RefCurAndQuestionMark) {
    auto r = Lance("RefCur = 12.345, 0.5§30");
    EXPECT_EQ(r->etat.Repere.RefCurX, QStringLiteral("12.35"));
    EXPECT_EQ(r->etat.Repere.RefCurY, QStringLiteral(".5"));
    EXPECT_EQ(r->etat.Repere.RefCurAngle, QStringLiteral("-30.0"));
    auto s = Lance("CT = 12.5, 7\n?\n");
    EXPECT_TRUE(s->hote.TexteModifie());
    EXPECT_EQ(s->hote.TexteEditeur(), Programme("CT = 12.5, 7\n'? =0, 0\n"));
}
