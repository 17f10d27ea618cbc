// Part 3.3: text.
//
// Positions come from the journal. Where a position depends on the font, the
// test checks it twice: exactly against the Surface's own measure, and against
// the Liberation Serif metrics (the face that serves "Times New Roman") with a
// tolerance that another face would break.
#include "app/core/hote_memoire.h"
#include "app/core/rendu.h"
#include "drawing/repere.h"
#include "drawing/surface_peinte.h"
#include "language/interprete.h"
#include "shapes/clogfont.h"
#include "shapes/texte.h"
#include "outils.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cmath>

namespace {

constexpr double PointMm = 25.4 / 72;      // one point in millimetres
// Liberation Serif, in ems: advance widths and the cell.
constexpr double EmHello = 0.72217 + 0.44385 + 0.27783 + 0.27783 + 0.5; // "Hello"
constexpr double EmX = 0.72217;
constexpr double EmAscent = 0.8911, EmDescent = 0.2163;
constexpr double EmCellule = EmAscent + EmDescent;
constexpr double ToleranceFonte = 0.01;    // mm: any other face misses it

QVector<OpSurface> Textes(const Session& s) { return Ops(s, OpSurface::Texte); }

// The pane's measures with the font of the end of the run (Times New Roman 10).
double Largeur(Session& s, const QString& t) { return s.pane->TextWidth(t); }
double Hauteur(Session& s, const QString& t) { return -s.pane->TextHeight(t); }

// The ratios of a font as MetriquesTexte computes them, on the pane.
void Ratios(Session& s, double& base, double& milieu) {
    const MetriquesPolice m = s.pane->Metriques();
    base = float(m.Ascent / m.Height);
    milieu = float((base - m.InternalLeading / m.Height) / 2);
}

std::unique_ptr<Session> LanceAvec(const QString& prog, int patchs, int langue = 0) {
    auto s = std::make_unique<Session>(Programme(prog));
    s->regl.Patchs = patchs;
    s->regl.LangueMessages = langue;
    s->Execute();
    return s;
}

} // namespace

// --- the edge cases of Part 3.3

TEST(Texte, EmptyTextWritesNothingButFontIsSetAndRestored) {
    auto s = Lance("Texte = 10, 10, , 20GIS§Arial§2,\nTexte = 10, 10, , 20GIS§Arial§2\n");
    EXPECT_TRUE(Textes(*s).isEmpty());
    EXPECT_EQ(s->etat.EtatOrdre & 64, 0);
    // The white plus sign readies the Surface, since nothing is drawn yet.
    EXPECT_EQ(Lignes(*s).size(), 4);
    const PoliceSurface& f = s->pane->Font;
    EXPECT_EQ(f.Name, QStringLiteral("Times New Roman"));
    EXPECT_DOUBLE_EQ(f.Size, 10);
    EXPECT_FALSE(f.Bold);
    EXPECT_FALSE(f.Italic);
    EXPECT_FALSE(f.Underline);
    EXPECT_EQ(s->pane->TextAlign(), 24);
}

// Empty text: the font of the format is still set (name, size) and the
// alignments still move the point; all is given back after the command.
TEST(Texte, EmptyTextStillSetsTheFontAndTheAlignments) {
    // The font name sub-field is set: a missing face shows string 112.
    auto s = Lance("Texte = 10, 50, , 20§Nimportequoi,\n");
    EXPECT_EQ(Messages(*s), QStringList({QStringLiteral("Pas de police NIMPORTEQUOI")}));
    EXPECT_TRUE(Textes(*s).isEmpty());
    EXPECT_EQ(s->etat.EtatOrdre & 64, 0);
    EXPECT_EQ(s->pane->Font.Name, QStringLiteral("Times New Roman"));
    // The size is set: "#" moves the point one 20-point line down.
    auto t = Lance("Texte = 10, 50, , 20#,\n");
    EXPECT_TRUE(Textes(*t).isEmpty());
    EXPECT_TRUE(Messages(*t).isEmpty());
    EXPECT_DOUBLE_EQ(t->pane->Font.Size, 10); // given back
    t->pane->Font.Size = 20;
    const double hx20 = Hauteur(*t, "X");
    EXPECT_NEAR(hx20, 20 * PointMm * EmCellule, ToleranceFonte);
    EXPECT_MM(t->etat.Repere.PointX, 10);
    EXPECT_MM(t->etat.Repere.PointY, 50 - hx20);
    // The across alignment acts with the empty line's height (one cell).
    auto y = Lance("Texte = 10, 50, , 20Y,\n");
    EXPECT_TRUE(Textes(*y).isEmpty());
    y->pane->Font.Size = 20;
    double base = 0, milieu = 0;
    Ratios(*y, base, milieu);
    EXPECT_MM(y->etat.Repere.PointX, 10);
    EXPECT_NEAR(y->etat.Repere.PointY, 50 - milieu * Hauteur(*y, ""), 1e-4);
    EXPECT_EQ(y->pane->TextAlign(), 24);
}

TEST(Texte, TextEndingInCrGivesOneMoreEmptyLine) {
    auto s = Lance("Texte = 10, 50, , ,AB%CR\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 1);
    EXPECT_EQ(t[0].texte, QStringLiteral("AB"));
    // The empty second line leaves the current point one line lower, at its start.
    const double hx = Hauteur(*s, "X");
    EXPECT_MM(s->etat.Repere.PointX, 10);
    EXPECT_MM(s->etat.Repere.PointY, 50 - hx);
    EXPECT_NEAR(hx, 10 * PointMm * EmCellule, ToleranceFonte);
}

TEST(Texte, TextStartingWithCrStartsOneLineLower) {
    auto s = Lance("Texte = 10, 50, , ,%CRAB\nTexte = 10, 50, , ,A%CRB\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 3);
    const double hx = Hauteur(*s, "X");
    EXPECT_EQ(t[0].texte, QStringLiteral("AB"));
    EXPECT_MM(t[0].x1, 10);
    EXPECT_MM(t[0].y1, 50 - hx);
    EXPECT_MM(t[1].y1, 50);
    EXPECT_EQ(t[2].texte, QStringLiteral("B"));
    EXPECT_MM(t[2].x1, 10);
    EXPECT_MM(t[2].y1, 50 - hx);
}

TEST(Texte, ColourNComputesPositionsAndWritesNothing) {
    auto s = Lance("Texte = 10, 20, N, C,Hello\n");
    EXPECT_TRUE(Textes(*s).isEmpty());
    EXPECT_EQ(s->etat.EtatOrdre & 64, 0);
    double base = 0, milieu = 0;
    Ratios(*s, base, milieu);
    const double w = Largeur(*s, "Hello");
    // Centred: the end point is half a width right of the point, half a capital lower.
    EXPECT_MM(s->etat.Repere.PointX, 10 + w / 2);
    EXPECT_NEAR(s->etat.Repere.PointY, 20 - milieu * Hauteur(*s, "Hello"), 1e-4);
}

TEST(Texte, RWithTrailingLettersEvaluatesTheNumber) {
    // R45CD: C and D are the trailing letters; in a vertical text C wins over D.
    auto s = Lance("Texte = 0, 0, , R45CDV,AB\nTexte = 0, 0, , R45GH,AB\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 3);
    for (const OpSurface& op : t) EXPECT_DOUBLE_EQ(op.angle, 45);
    EXPECT_TRUE(t[2].gras);
}

// "3*15" is a product for the evaluator of Part 1.4.
TEST(Texte, FactorInFrontAndStarBehindRIsAProductInTheAngle) {
    auto s = Lance("Texte = 0, 0, , *2R3*15,A\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 1);
    EXPECT_DOUBLE_EQ(t[0].angle, 45);
    EXPECT_DOUBLE_EQ(t[0].taille, 20); // the factor is the number behind the first "*"
}

TEST(Texte, FactorComesFromTheFirstStar) {
    // What the evaluator-free tree can show of the bullet above: the size is
    // read behind the first "*" and stops at the R.
    auto s = Lance("Texte = 0, 0, , *2R45,A\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 1);
    EXPECT_DOUBLE_EQ(t[0].angle, 45);
    EXPECT_DOUBLE_EQ(t[0].taille, 20);
}

TEST(Texte, RotationOnYWithoutRTurnsTheText) {
    auto s = Lance("Texte = 10, 0§30, , ,A\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 1);
    EXPECT_DOUBLE_EQ(t[0].angle, 30);
    EXPECT_NEAR(t[0].x1, 10 * std::cos(30 * 0.017453293), 1e-4);
    EXPECT_NEAR(t[0].y1, 10 * std::sin(30 * 0.017453293), 1e-4);
}

TEST(Texte, RotationOnYAndRAdd) {
    auto s = Lance("Texte = 10, 0§30, , R15,A\nAngRot = 20\nTexte = 0, 0, , R5,A\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 2);
    EXPECT_DOUBLE_EQ(t[0].angle, 45);
    EXPECT_DOUBLE_EQ(t[1].angle, 25); // AngRot turns the text as the § does
}

TEST(Texte, TaillePTwelveLeavesNoStyle) {
    auto s = Lance("TailleP = 14G\nTailleP = 12\nTexte = 0, 0, , ,A\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 1);
    EXPECT_DOUBLE_EQ(t[0].taille, 12);
    EXPECT_FALSE(t[0].gras);
    EXPECT_DOUBLE_EQ(s->etat.Txt.TaillePolice, 12);
}

TEST(Texte, TaillePTwelveGIsBold) {
    auto s = Lance("TailleP = 12 G\nTexte = 0, 0, , ,A\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 1);
    EXPECT_DOUBLE_EQ(t[0].taille, 12);
    EXPECT_TRUE(t[0].gras);
    EXPECT_FALSE(t[0].italique);
}

TEST(Texte, TaillePSizeAndStyleApartIsTheSame) {
    auto s = Lance("TailleP = 12,G\nTexte = 0, 0, , ,A\nTailleP = 11,IU\nTexte = 0, 0, , ,A\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 2);
    EXPECT_DOUBLE_EQ(t[0].taille, 12);
    EXPECT_TRUE(t[0].gras);
    EXPECT_DOUBLE_EQ(t[1].taille, 11);
    EXPECT_FALSE(t[1].gras);
    EXPECT_TRUE(t[1].italique);
    EXPECT_TRUE(t[1].souligne);
}

TEST(Texte, TaillePWithEmptySizeMeasuresWithTheCurrentFontAndClearsStyles) {
    auto s = Lance("TailleP = 14G\nTailleP = ,Hello,%W,%H\nTexte = 0, 0, , ,A\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 1);
    EXPECT_DOUBLE_EQ(t[0].taille, 14);
    EXPECT_FALSE(t[0].gras);
    const double w = 14 * PointMm * EmHello, h = 14 * PointMm * EmCellule;
    EXPECT_NEAR(Variable(*s, "%W").toDouble(), w, 0.006); // rounded to 2 decimals
    EXPECT_NEAR(Variable(*s, "%H").toDouble(), h, 0.006);
    s->pane->Font.Size = 14;
    EXPECT_EQ(Variable(*s, "%W"), QString::number(std::nearbyint(Largeur(*s, "Hello") * 100) / 100));
}

TEST(Texte, EspacementOneIsNormalAndWritesInOnePiece) {
    auto s = Lance("Texte = 10, 10, , §§1,ABC\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 1);
    EXPECT_EQ(t[0].texte, QStringLiteral("ABC"));
}

TEST(Texte, EspacementZeroMakesAllLettersOverlap) {
    auto s = Lance("Texte = 10, 10, , §§0,XXX\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 3);
    for (const OpSurface& op : t) {
        EXPECT_EQ(op.texte, QStringLiteral("X"));
        EXPECT_MM(op.x1, 10);
    }
    // The end point stays the spaced width: 3 w + 2 G with G = -w.
    EXPECT_MM(s->etat.Repere.PointX, 10 + Largeur(*s, "X"));
}

TEST(Texte, EspacementTwoAddsOneXWidthBetweenLetters) {
    auto s = Lance("Texte = 10, 10, , §§2,AB\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 2);
    EXPECT_MM(t[1].x1, 10 + Largeur(*s, "A") + Largeur(*s, "X"));
    EXPECT_MM(s->etat.Repere.PointX, 10 + Largeur(*s, "A") + Largeur(*s, "B") + Largeur(*s, "X"));
}

TEST(Texte, OnThePrinterTheSizeComesBackFromARotatedLetterAsAWholeNumber) {
    auto s = LanceImprimante("Texte = 10, 10, , 10.6§§2,ABC\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 3);
    // The first letter is written at 10.6 points; EcritRot gives the size back
    // as a 16-bit integer, with which the next letters are measured and written.
    EXPECT_NEAR(t[0].taille, 10.6, 1e-6);
    EXPECT_NEAR(t[1].taille, 11, 1e-6);
    EXPECT_NEAR(t[2].taille, 11, 1e-6);
    // Texte restores its size at the end.
    EXPECT_NEAR(s->imprimante->Font.Size, 10, 1e-9);

    s->etat.Surf = s->imprimante.get();
    s->imprimante->Font.Size = 0.4;
    EcritRot(s->etat, 100, 100, 30, QStringLiteral("A"));
    EXPECT_DOUBLE_EQ(s->imprimante->Font.Size, 1); // at least 1
    s->imprimante->Font.Size = 12.5;
    EcritRot(s->etat, 100, 100, 30, QStringLiteral("A"));
    EXPECT_DOUBLE_EQ(s->imprimante->Font.Size, 12); // half to even
}

TEST(Texte, TexteCWithEspacementKeepsTheTotalArc) {
    for (double E : {1.0, 2.5}) {
        const QString prog = QStringLiteral("TexteC = 100, 100, 30§%1, 90, , ,XXXX\n").arg(E);
        auto s = Lance(prog);
        const auto t = Textes(*s);
        ASSERT_EQ(t.size(), 4);
        const double W = Largeur(*s, "XXXX"), H = Hauteur(*s, "XXXX");
        const double M = 30 + H / 5.5;
        // Equal letters: their starts sit at one polar angle from their
        // middles, so the steps between starts are the steps between middles.
        double total = 0;
        for (int i = 1; i < 4; ++i) {
            const double a0 = std::atan2(t[i - 1].y1 - 100, t[i - 1].x1 - 100);
            const double a1 = std::atan2(t[i].y1 - 100, t[i].x1 - 100);
            total += a0 - a1; // clockwise
        }
        EXPECT_NEAR(total * 4 / 3, E * W / M, 1e-6) << "E = " << E;
    }
}

// --- measuring

TEST(Texte, MetriquesTexteTakesTheRatiosFromTheFont) {
    auto s = Lance("Police = Times New Roman\n");
    const EtatTexte& t = s->etat.Txt;
    const double L = (EmCellule - 1) / EmCellule; // internal leading over the cell
    EXPECT_NEAR(t.CoefBase, EmAscent / EmCellule, 0.002);
    EXPECT_NEAR(t.CoefMilieu, (EmAscent / EmCellule - L) / 2, 0.002);
    EXPECT_FLOAT_EQ(t.CoefHaut, t.CoefBase);
}

TEST(Texte, ForcedRatiosReplaceTheMeasuredOnes) {
    auto s = Lance("");
    Etat& e = s->etat;
    e.Surf = s->pane.get();
    e.Txt.ForceBase = 0.7f;
    e.Txt.ForceHaut = 0.9f;
    MetriquesTexte(e);
    EXPECT_FLOAT_EQ(e.Txt.CoefBase, 0.7f);
    EXPECT_FLOAT_EQ(e.Txt.CoefHaut, 0.9f);
    const MetriquesPolice m = s->pane->Metriques();
    EXPECT_FLOAT_EQ(e.Txt.CoefMilieu, float((0.7f - m.InternalLeading / m.Height) / 2));
    e.Txt.ForceMilieu = 0.25f;
    MetriquesTexte(e);
    EXPECT_FLOAT_EQ(e.Txt.CoefMilieu, 0.25f);
}

TEST(Texte, RatiosAreResetAtTheStartOfEachRun) {
    auto s = Lance("Police = , 0.1\n");
    EXPECT_NE(s->etat.Txt.ForceMilieu, 0);
    s->hote.SetTexte(Programme("'rien\n"));
    s->Execute();
    EXPECT_EQ(s->etat.Txt.ForceMilieu, 0);
    EXPECT_FLOAT_EQ(s->etat.Txt.CoefHaut, 0.91f);
}

// --- CLogFont

TEST(Texte, CLogFontFillsTheFontRecord) {
    PoliceSurface f;
    f.Name = QStringLiteral("Times New Roman");
    f.Size = 10;
    f.Bold = true;
    f.Charset = 255;
    CLogFont lf;
    lf.SetLogFont(&f);
    lf.SetRotation(45);
    const EnregistrementPolice& r = lf.Enregistrement();
    EXPECT_EQ(r.lfHeight, -13); // 10 x 96 / 72 = 13.33
    EXPECT_EQ(r.lfWidth, 0);
    EXPECT_EQ(r.lfEscapement, 450);
    EXPECT_EQ(r.lfOrientation, 450);
    EXPECT_EQ(r.lfWeight, 700);
    EXPECT_EQ(r.lfCharSet, 0);   // 255 while turned
    EXPECT_EQ(r.lfOutPrecision, 7);
    EXPECT_EQ(r.lfQuality, 2);
    EXPECT_EQ(r.lfFaceName, QStringLiteral("Times New Roman"));
    ASSERT_TRUE(lf.Handle());
    EXPECT_DOUBLE_EQ(lf.Handle()->Escapement, 45);
    EXPECT_NEAR(lf.Handle()->HauteurPx, 13.3333, 1e-3);
    EXPECT_TRUE(lf.Handle()->Bold);

    lf.SetRotation(360.5f); // whole part a multiple of 360
    EXPECT_EQ(lf.Enregistrement().lfOutPrecision, 0);
    EXPECT_EQ(lf.Enregistrement().lfCharSet, 255);
    EXPECT_EQ(lf.Enregistrement().lfEscapement, 3605);
}

TEST(Texte, CLogFontOwnsACopyAndCutsTheFaceName) {
    PoliceSurface f;
    f.Name = QString(40, u'a');
    f.Size = 12;
    CLogFont lf;
    lf.SetLogFont(&f);
    f.Size = 30;
    EXPECT_DOUBLE_EQ(lf.LogFont()->Size, 12);
    EXPECT_EQ(lf.Enregistrement().lfFaceName.size(), 31);
    lf.SetLogFont(nullptr);
    EXPECT_FALSE(lf.LogFont());
    EXPECT_FALSE(lf.Handle());
    lf.SetRotation(10); // no font: no handle
    EXPECT_FALSE(lf.Handle());
}

TEST(Texte, CLogFontNudgesAxisEscapementsWithPatchBit0) {
    PoliceSurface f;
    CLogFont sans(0), avec(1);
    sans.SetLogFont(&f);
    avec.SetLogFont(&f);
    EXPECT_EQ(avec.Enregistrement().lfEscapement, 2); // rotation 0
    for (float r : {-270.f, -180.f, -90.f, 90.f, 180.f, 270.f}) {
        sans.SetRotation(r);
        avec.SetRotation(r);
        EXPECT_EQ(sans.Enregistrement().lfEscapement, int(r * 10));
        EXPECT_EQ(avec.Enregistrement().lfEscapement, int(r * 10) + 2);
        EXPECT_EQ(avec.Enregistrement().lfOrientation, int(r * 10) + 2);
    }
    avec.SetRotation(360);
    EXPECT_EQ(avec.Enregistrement().lfEscapement, 3600);
    avec.SetRotation(45);
    EXPECT_EQ(avec.Enregistrement().lfEscapement, 450);
}

TEST(Texte, PatchBit0TurnsAxisTextsByAFifthOfADegree) {
    auto s = LanceAvec("Texte = 0, 0, , R90,A\nTexte = 0, 0, , ,A\n", 1);
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 2);
    EXPECT_NEAR(t[0].angle, 90.2, 1e-9);
    EXPECT_NEAR(t[1].angle, 0.2, 1e-9);
}

TEST(Texte, RotatedTextKeepsItsSizeOnAScreenOfAnotherResolution) {
    // The desktop of CLogFont is the screen itself: 120 dpi here.
    Session s(Programme("Texte = 10, 10, , R30,A\n"));
    s.pane = std::make_unique<SurfaceEnregistree>(GenreSurface::Ecran, 297 / 25.4 * 120,
                                                  210 / 25.4 * 120, 25.4 / 120);
    s.pane->SetJournal(&s.journal);
    AttachePane(s.etat, s.pane.get());
    s.Execute();
    const auto t = Textes(s);
    ASSERT_EQ(t.size(), 1);
    EXPECT_NEAR(t[0].taille, 10, 1e-9);
    EXPECT_DOUBLE_EQ(t[0].angle, 30);
}

// --- Police

TEST(Texte, PoliceFindsTheMetricCompatibleFaces) {
    auto s = Lance("Police = Times New Roman\nPolice = Arial\nPolice = arial\nPolice = Courier New\n"
                   "Police = Liberation Sans\nTexte = 0, 0, , §Arial,A\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join(u'|').toStdString();
    EXPECT_EQ(s->pane->Font.Name, QStringLiteral("Liberation Sans"));
}

TEST(Texte, PoliceOfAMissingFontShowsString112AndGoesOn) {
    auto s = Lance("Police = Pas Une Police\nTexte = 0, 0, , ,A\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_EQ(Messages(*s)[0], QStringLiteral("Pas de police Pas Une Police"));
    ASSERT_EQ(Textes(*s).size(), 1); // the run went on with the substitute
    EXPECT_NE(Textes(*s)[0].police, QStringLiteral("Pas Une Police"));
    auto en = LanceAvec("Police = Garamondo\n", 0, 400);
    ASSERT_EQ(en->hote.Messages().size(), 1);
    EXPECT_EQ(Messages(*en)[0], QStringLiteral("No Garamondo font"));
}

TEST(Texte, TexteAndTexteCShowString112ForAMissingFont) {
    auto s = Lance("Texte = 0, 0, , §Pas Une Police,A\nTexteC = 50, 50, 20, 90, , §Nulle,AB\n");
    ASSERT_EQ(s->hote.Messages().size(), 2);
    EXPECT_EQ(Messages(*s)[0], QStringLiteral("Pas de police PAS UNE POLICE"));
    EXPECT_EQ(Messages(*s)[1], QStringLiteral("Pas de police NULLE"));
}

TEST(Texte, PoliceInACodedFileShowsNoMessage) {
    auto s = Lance("");
    Etat& e = s->etat;
    e.Surf = s->pane.get();
    e.NiveauCourant = 2;
    e.PileFic[2].Nom = QStringLiteral("/tmp/code.dmk");
    e.LigneCourante = QStringLiteral("Pas Une Police");
    CmdPolice(e);
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    e.PileFic[2].Nom = QStringLiteral("/tmp/code.dat");
    CmdPolice(e);
    EXPECT_EQ(s->hote.Messages().size(), 1);
}

TEST(Texte, PoliceSecondParameterStandsForTheInternalLeading) {
    auto s = Lance("Police = Arial, 0.1\n");
    const EtatTexte& t = s->etat.Txt;
    EXPECT_FLOAT_EQ(t.ForceMilieu, (t.CoefBase - 0.1f) / 2);
    auto u = Lance("Police = , 0.1\nPolice = Arial\n");
    EXPECT_EQ(u->etat.Txt.ForceMilieu, 0);
}

// --- ExprTexte and the factor reading

TEST(Texte, ExprTexteResolvesTheHashPieces) {
    auto s = Lance("%A = 7\n");
    Etat& e = s->etat;
    e.NiveauCourant = 1;
    auto expr = [&](QString t) {
        ExprTexte(e, t);
        return t;
    };
    EXPECT_EQ(expr("#3# mm"), QStringLiteral("3 mm"));
    EXPECT_EQ(expr("a##b"), QStringLiteral("a#b"));
    EXPECT_EQ(expr("##3##"), QStringLiteral("#3#"));
    EXPECT_EQ(expr("a#b"), QStringLiteral("a#b"));
    EXPECT_EQ(expr("x=#%A# y=#2#"), QStringLiteral("x=7 y=2"));
    // A "#" right behind IRE$ does not close the piece.
    EXPECT_EQ(expr("u#IRE$#v"), QStringLiteral("u#IRE$#v"));
}

TEST(Texte, ExprTexteEvaluatesExpressions) {
    auto s = Lance("");
    QString t = QStringLiteral("#1+2# mm");
    ExprTexte(s->etat, t);
    EXPECT_EQ(t, QStringLiteral("3 mm"));
}

TEST(Texte, TexteAppliesExprTexteToItsText) {
    auto s = Lance("%A = 4\nTexte = 0, 0, , ,#%A# mm ##1\nTexte = 0, 0, , ,#\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 2);
    EXPECT_EQ(t[0].texte, QStringLiteral("4 mm #1"));
    EXPECT_EQ(t[1].texte, QStringLiteral("#"));
}

TEST(Texte, TexteCAppliesExprTexteOnlyWithAPercent) {
    auto s = Lance("%A = 4\nTexteC = 50, 50, 20, 90, , ,#2#\nTexteC = 50, 50, 20, 90, , ,#%A#\n");
    QString a, b;
    const auto t = Textes(*s);
    for (int i = 0; i < 3; ++i) a += t[i].texte;
    ASSERT_EQ(t.size(), 4);
    EXPECT_EQ(a, QStringLiteral("#2#"));
    EXPECT_EQ(t[3].texte, QStringLiteral("4"));
}

TEST(Texte, FactorReading) {
    auto s = Lance("");
    Etat& e = s->etat;
    QString f = QStringLiteral("*1.5C");
    EXPECT_DOUBLE_EQ(LitFacteur(e, f), 1.5);
    EXPECT_EQ(f, QStringLiteral("*1.5C"));
    f = QStringLiteral(" * 2 C ");
    EXPECT_DOUBLE_EQ(LitFacteur(e, f), 2);
    EXPECT_EQ(f, QStringLiteral("*2C"));
    f = QStringLiteral("G*(3)C");
    EXPECT_DOUBLE_EQ(LitFacteur(e, f), 3);
    EXPECT_EQ(f, QStringLiteral("GC"));
    f = QStringLiteral("*(3C");
    EXPECT_THROW(LitFacteur(e, f), ErreurProvoquee);
    EXPECT_DOUBLE_EQ(NombreEnTete("12G"), 12);
    EXPECT_DOUBLE_EQ(NombreEnTete(".5"), 0.5);
    EXPECT_DOUBLE_EQ(NombreEnTete("R45"), 0);
    EXPECT_DOUBLE_EQ(NombreEnTete("2D"), 2);
    EXPECT_DOUBLE_EQ(NombreEnTete("1E2X"), 100);
    EXPECT_DOUBLE_EQ(NombreEnTete("-3"), -3);
}

TEST(Texte, UnmatchedParenthesisInTheFactorFailsTheLine) {
    auto s = Lance("Texte = 0, 0, , *(2C,A\nTexte = 0, 0, , ,B\n");
    EXPECT_EQ(s->hote.Messages().size(), 1);
    EXPECT_TRUE(Textes(*s).isEmpty());
}

// --- Texte: sizes, styles, alignments

TEST(Texte, SizesFromTheFormat) {
    auto s = Lance("Texte = 0, 0, , 14,A\nTexte = 0, 0, , *1.5,A\nTexte = 0, 0, , C,A\n"
                   "TailleP = 12\nTexte = 0, 0, , *2,A\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 4);
    EXPECT_DOUBLE_EQ(t[0].taille, 14);
    EXPECT_DOUBLE_EQ(t[1].taille, 15);
    EXPECT_DOUBLE_EQ(t[2].taille, 10);
    EXPECT_DOUBLE_EQ(t[3].taille, 24);
    EXPECT_DOUBLE_EQ(s->pane->Font.Size, 12);
}

TEST(Texte, StyleLettersCountOnlyWithASizeOrAStyleLetter) {
    auto s = Lance("TailleP = 12G\nTexte = 0, 0, , C,A\nTexte = 0, 0, , *1,A\nTexte = 0, 0, , I,A\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 3);
    EXPECT_TRUE(t[0].gras);  // "C" alone keeps the current style
    EXPECT_FALSE(t[1].gras); // "*1" clears it
    EXPECT_FALSE(t[2].gras);
    EXPECT_TRUE(t[2].italique);
    EXPECT_TRUE(s->pane->Font.Bold); // given back after each Texte
}

TEST(Texte, AlignmentsAlongAndAcross) {
    auto s = Lance("Texte = 100, 50, , ,Hello\nTexte = 100, 50, , C,Hello\nTexte = 100, 50, , X,Hello\n"
                   "Texte = 100, 50, , D,Hello\nTexte = 100, 50, , Y,Hello\nTexte = 100, 50, , H,Hello\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 6);
    double base = 0, milieu = 0;
    Ratios(*s, base, milieu);
    const double w = Largeur(*s, "Hello"), h = Hauteur(*s, "Hello");
    EXPECT_NEAR(w, 10 * PointMm * EmHello, ToleranceFonte);
    EXPECT_NEAR(milieu * h, 10 * PointMm * (EmAscent - (EmCellule - 1)) / 2, ToleranceFonte);
    EXPECT_MM(t[0].x1, 100);
    EXPECT_MM(t[0].y1, 50);
    EXPECT_MM(t[1].x1, 100 - w / 2);
    EXPECT_NEAR(t[1].y1, 50 - milieu * h, 1e-4);
    EXPECT_MM(t[2].x1, 100 - w / 2);
    EXPECT_MM(t[2].y1, 50);
    EXPECT_MM(t[3].x1, 100 - w);
    EXPECT_MM(t[4].x1, 100);
    EXPECT_NEAR(t[4].y1, 50 - milieu * h, 1e-4);
    EXPECT_NEAR(t[5].y1, 50 - 2 * milieu * h, 1e-4);
    // The current point is the end of the last text.
    EXPECT_NEAR(s->etat.Repere.PointX, 100 + w, 1e-4);
    EXPECT_NEAR(s->etat.Repere.PointY, 50 - 2 * milieu * h, 1e-4);
}

TEST(Texte, RotatedCentredTextShiftsAlongItsOwnAxes) {
    auto s = Lance("Texte = 100, 50, , CR90,Hello\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 1);
    double base = 0, milieu = 0;
    Ratios(*s, base, milieu);
    const double w = Largeur(*s, "Hello"), h = Hauteur(*s, "Hello");
    const double a = 90 * 0.017453293;
    EXPECT_NEAR(t[0].x1, 100 - w / 2 * std::cos(a) + milieu * h * std::sin(a), 1e-4);
    EXPECT_NEAR(t[0].y1, 50 - w / 2 * std::sin(a) - milieu * h * std::cos(a), 1e-4);
    EXPECT_DOUBLE_EQ(t[0].angle, 90);
}

TEST(Texte, CentredAndRightJustifiedTogetherFailTheLine) {
    auto s = Lance("Texte = 0, 0, , CD,AB\n");
    EXPECT_EQ(s->hote.Messages().size(), 1);
    EXPECT_TRUE(Textes(*s).isEmpty());
    auto v = Lance("Texte = 0, 0, , XDV,AB\n"); // vertical: X wins
    EXPECT_TRUE(v->hote.Messages().isEmpty());
    EXPECT_EQ(Textes(*v).size(), 2);
}

TEST(Texte, HashMovesTheLineOneLineDown) {
    auto s = Lance("Texte = 10, 50, , ##,A\nTexte = 10, 50, , R90#,A\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 2);
    const double hx = Hauteur(*s, "X");
    EXPECT_MM(t[0].y1, 50 - 2 * hx);
    EXPECT_MM(t[1].x1, 10 + hx); // "down" in the text's own frame
    EXPECT_NEAR(t[1].y1, 50, 1e-4);
}

TEST(Texte, FontOfTheFormatIsGivenBack) {
    auto s = Lance("Texte = 0, 0, , 20GIS§Courier New,A\nTexte = 0, 0, , ,B\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 2);
    EXPECT_EQ(t[0].police, QStringLiteral("Courier New")); // read back in its own spelling
    EXPECT_TRUE(t[0].gras && t[0].italique && t[0].souligne);
    EXPECT_EQ(t[1].police, QStringLiteral("Times New Roman"));
    EXPECT_FALSE(t[1].gras || t[1].italique || t[1].souligne);
    EXPECT_DOUBLE_EQ(t[1].taille, 10);
}

TEST(Texte, FirstDrawingDrawsTheWhitePlusOnce) {
    auto s = Lance("Texte = 0, 0, , ,A\nTexte = 0, 0, , ,B\n");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 2);
    EXPECT_EQ(l[0].couleur, RGB(255, 255, 255));
    EXPECT_MM((l[0].x1 + l[0].x2) / 2, -100);
    EXPECT_MM(l[0].x2 - l[0].x1, 0.2);
    EXPECT_MM(l[1].y1, 99.9);
    EXPECT_EQ(s->etat.EtatOrdre & 64, 64);
}

TEST(Texte, TextAndCurrentPointFollowTheFrameOrigin) {
    auto s = Lance("CentreE = 50, 40, N\nCT = 10, 5, N\nTexte = 1, 2, , ,AB\nTexte = R, R, , ,C\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 2);
    EXPECT_MM(t[0].x1, 61);
    EXPECT_MM(t[0].y1, 47);
    EXPECT_MM(t[1].x1, 61 + Largeur(*s, "AB")); // R-relative: from the end of "AB"
    EXPECT_MM(t[1].y1, 47);
}

TEST(Texte, ColourAndDefaultColour) {
    auto s = Lance("Texte = 0, 0, rouge, ,A\nTexte = 0, 0, , ,B\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 2);
    EXPECT_EQ(t[0].couleur, RGB(255, 0, 0));
    EXPECT_EQ(t[1].couleur, 0);
    EXPECT_EQ(s->pane->ForeColor, 0);
}

TEST(Texte, DollarPoundStandsForAComma) {
    auto s = Lance("Texte = 0, 0, , ,a$£b, c\n");
    ASSERT_EQ(Textes(*s).size(), 1);
    EXPECT_EQ(Textes(*s)[0].texte, QStringLiteral("a,b, c"));
}

// --- vertical text

TEST(Texte, VerticalLettersStandUnderEachOther) {
    auto s = Lance("Texte = 20, 50, , V,AB\nTexte = 40, 50, , VC,AB\nTexte = 60, 50, , VH,AB\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 6);
    // The vertical path does not measure: CoefBase is still that of the start of the run.
    const double base = 0.8f;
    const double hx = Hauteur(*s, "X");
    EXPECT_MM(t[0].x1, 20);
    EXPECT_NEAR(t[0].y1, 50 - hx * base, 1e-4); // the first cell's top on the reference
    EXPECT_NEAR(t[1].y1, 50 - hx * (1 + base), 1e-4);
    EXPECT_MM(t[2].x1, 40 - Largeur(*s, "A") / 2); // each letter centred on its own
    EXPECT_MM(t[3].x1, 40 - Largeur(*s, "B") / 2);
    EXPECT_MM(t[2].y1, 50 + hx);      // (i - 1) - n/2 with n = 2
    EXPECT_MM(t[3].y1, 50);
    EXPECT_MM(t[4].y1, 50 + hx);      // H: the last letter's baseline on the reference
    EXPECT_MM(t[5].y1, 50);
    // The loop goes one pitch further than the letters: the current point.
    EXPECT_MM(s->etat.Repere.PointY, 50 - hx);
}

TEST(Texte, VerticalSpacingActsOnThePitchAndLinesOverwrite) {
    auto s = Lance("Texte = 20, 50, , V§§2,AB\nTexte = 40, 50, , V,A%CRB\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 4);
    const double hx = Hauteur(*s, "X");
    EXPECT_MM(t[0].y1 - t[1].y1, 2 * hx);
    EXPECT_MM(t[2].y1, t[3].y1); // "#" has no effect in the vertical path
    EXPECT_MM(t[2].x1, 40);
    EXPECT_MM(t[3].x1, 40);
}

TEST(Texte, VerticalTextTurnsAboutItsPoint) {
    auto s = Lance("Texte = 20, 50, , VBR90,AB\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 2);
    const double base = 0.8f; // not measured in the vertical path
    const double hx = Hauteur(*s, "X");
    // Down the column becomes rightward once turned by 90 degrees.
    EXPECT_NEAR(t[0].x1, 20 + hx * base, 1e-4);
    EXPECT_NEAR(t[0].y1, 50, 1e-4);
    EXPECT_NEAR(t[1].x1, 20 + hx * (1 + base), 1e-4);
    EXPECT_DOUBLE_EQ(t[0].angle, 90);
}

// --- the printer

TEST(Texte, PrinterWritesAtWholeDevicePixels) {
    auto s = LanceImprimante("Texte = 10.01, 20, , ,A\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 1);
    const double px = 25.4 / 600;
    EXPECT_NEAR(t[0].x1, std::nearbyint(10.01 / px) * px, 1e-6);
    EXPECT_NEAR(t[0].y1, 297 - std::nearbyint((297 - 20) / px) * px, 1e-6);
    EXPECT_NEAR(t[0].taille, 10, 1e-6); // the size of the language, not the device's
    EXPECT_TRUE(Ops(*s, OpSurface::Point).isEmpty()); // no page mark for horizontal text
}

TEST(Texte, PrinterPageMarkOnceAPageForVerticalAndPlacedText) {
    auto s = LanceImprimante("Texte = 10, 20, , V,AB\nTexteC = 100, 100, 20, 90, , ,AB\nNPage\n"
                             "TexteC = 100, 100, 20, 90, bleu, ,AB\n");
    const auto p = Ops(*s, OpSurface::Point);
    ASSERT_EQ(p.size(), 2);
    EXPECT_MM(p[0].x1, -1000);
    EXPECT_MM(p[0].y1, 297 + 1000);
    EXPECT_EQ(p[1].couleur, RGB(0, 0, 255));
    EXPECT_EQ(Textes(*s).size(), 6);
}

TEST(Texte, PrinterAndScreenPlaceTextAlike) {
    const char* prog = "Texte = 50, 60, , CR30,Mirel\nTexteC = 100, 100, 25, 90, , C,ABC\n";
    auto e = Lance(prog);
    auto i = LanceImprimante(prog);
    const auto te = Textes(*e), ti = Textes(*i);
    ASSERT_EQ(te.size(), ti.size());
    for (int k = 0; k < te.size(); ++k) {
        EXPECT_NEAR(te[k].x1, ti[k].x1, 0.03) << k; // half a 600 dpi dot, and the sizes round
        EXPECT_NEAR(te[k].y1, ti[k].y1, 0.03) << k;
        EXPECT_NEAR(te[k].angle, ti[k].angle, 1e-9);
    }
}

// --- TexteC

TEST(Texte, TexteCGoesClockwiseRoundTheCircle) {
    auto s = Lance("TexteC = 100, 100, 30, 90, , C,XXX\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 3);
    // Centred on the top: the middle letter upright, the others turned away.
    EXPECT_NEAR(t[1].angle, 0, 0.051);
    EXPECT_GT(t[0].angle, 0);
    EXPECT_LT(t[2].angle, 0);
    EXPECT_NEAR(t[0].angle, -t[2].angle, 0.11);
    EXPECT_LT(t[0].x1, t[1].x1);
    EXPECT_LT(t[1].x1, t[2].x1);
    // The middle letter's baseline: the radius less CoefMilieu x H (centred
    // across), with the ratio of the last text measured: here the 0.3 of the
    // start of the run, since MetriquesTexte comes after (step 8).
    const double H = Hauteur(*s, "XXX");
    EXPECT_NEAR(t[1].y1, 100 + 30 - 0.3f * H, 1e-4);
    EXPECT_NEAR(t[1].x1, 100 - Largeur(*s, "X") / 2, 1e-3);
}

TEST(Texte, TexteCStartsAtTheAngleFromNineOClock) {
    auto s = Lance("TexteC = 100, 100, 30, 0, , B,X\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 1);
    // A = 0 is the 9 o'clock point; the letter stands left of the centre, turned by 90.
    EXPECT_LT(t[0].x1, 100 - 29);
    EXPECT_NEAR(t[0].angle, 90 - std::round(0.5 * Largeur(*s, "X") / (30 + Hauteur(*s, "X") / 5.5) / 0.0174532925 * 10) / 10, 0.11);
}

TEST(Texte, TexteCKeepsItsFontNameAndGivesTheRestBack) {
    auto s = Lance("TexteC = 100, 100, 30, 90, rouge, 20G§Arial,AB\nTexte = 0, 0, , ,C\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 3);
    EXPECT_TRUE(t[0].gras);
    EXPECT_DOUBLE_EQ(t[0].taille, 20);
    EXPECT_EQ(t[0].couleur, RGB(255, 0, 0));
    EXPECT_EQ(t[2].police.toUpper(), QStringLiteral("ARIAL")); // the §Police stays in force
    EXPECT_FALSE(t[2].gras);
    EXPECT_DOUBLE_EQ(t[2].taille, 10);
    EXPECT_EQ(t[2].couleur, 0);
}

TEST(Texte, TexteCWithNegativeRadiusWritesOnTheOtherSide) {
    auto s = Lance("TexteC = 100, 100, -30, 90, , C,X\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 1);
    EXPECT_LT(t[0].y1, 100 - 25);
}

// --- PlaceTexte

TEST(Texte, PlaceTexteAlignsAndChains) {
    auto s = Lance("");
    Etat& e = s->etat;
    e.Surf = s->pane.get();
    s->journal.clear();
    auto place = [&](double x, double y, const QString& lettres, double angle = 0, double rot = 0) {
        e.Txt.X = x;
        e.Txt.Y = y;
        e.Surf->CurrentX = x;
        e.Surf->CurrentY = y;
        PlaceTexte(e, 10, 4, angle, QStringLiteral("A"), lettres, rot);
    };
    place(50, 50, "gb"); // letters in either case
    EXPECT_MM(s->journal.last().x1, 50);
    EXPECT_MM(s->journal.last().y1, 50);
    EXPECT_MM(e.Txt.X, 60);
    EXPECT_MM(e.Surf->CurrentX, 60);
    place(50, 50, "DB");
    EXPECT_MM(s->journal.last().x1, 40);
    EXPECT_MM(e.Txt.X, 50);
    const double c = e.Txt.CoefMilieu * 4;
    place(50, 50, "");
    EXPECT_MM(s->journal.last().x1, 45);
    EXPECT_MM(s->journal.last().y1, 50 - c);
    EXPECT_MM(e.Txt.X, 55);
    EXPECT_MM(e.Txt.Y, 50 - c);
    place(50, 50, "GH");
    EXPECT_MM(s->journal.last().y1, 50 - 2 * c);
    place(50, 50, "GB", 0, 90); // turned about the origin, and the text with it
    EXPECT_NEAR(s->journal.last().x1, -50, 1e-4);
    EXPECT_NEAR(s->journal.last().y1, 50, 1e-4);
    EXPECT_DOUBLE_EQ(s->journal.last().angle, 90);
    EXPECT_NEAR(e.Txt.Y, 60, 1e-4);
    const int n = int(s->journal.size());
    e.Txt.CouleurTexte = -1;
    place(50, 50, "GB");
    EXPECT_EQ(s->journal.size(), n);
    EXPECT_MM(e.Txt.X, 50); // nothing moves
}

// --- TailleP

TEST(Texte, TaillePFactorKeepsTheStandardSize) {
    auto s = Lance("TailleP = 12\nTailleP = *1.5\n");
    EXPECT_DOUBLE_EQ(s->etat.Txt.TaillePolice, 12);
    EXPECT_DOUBLE_EQ(s->pane->Font.Size, 18);
    EXPECT_FLOAT_EQ(s->etat.PileFic[1].MultiplicateurTaille, 1.5f);
    auto z = Lance("TailleP = *2\nTailleP = 9\n");
    EXPECT_FLOAT_EQ(z->etat.PileFic[1].MultiplicateurTaille, 1.0f);
    EXPECT_DOUBLE_EQ(z->pane->Font.Size, 9);
}

TEST(Texte, TaillePFifthParameterWritesOnTheOrigin) {
    auto s = Lance("CentreE = 30, 40, N\nTailleP = ,Hello,,,1\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 1);
    const MetriquesPolice m = s->pane->Metriques();
    const double descente = (m.Height - m.Ascent) * 25.4 / 96;
    EXPECT_MM(t[0].x1, 30);
    EXPECT_NEAR(t[0].y1, 40 + descente, 1e-4); // the lower edge on the origin
    EXPECT_NEAR(descente, 10 * PointMm * EmDescent, ToleranceFonte);
    EXPECT_MM(s->pane->CurrentX, 30 + Largeur(*s, "Hello"));
    EXPECT_MM(s->pane->CurrentY, 40);
    EXPECT_EQ(s->pane->TextAlign(), 24);
}

TEST(Texte, ZoomScalesTheFontNotTheMillimetres) {
    auto s = std::make_unique<Session>(Programme("Texte = 10, 10, , ,Hello\n"));
    s->Execute(2.0f);
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 1);
    EXPECT_DOUBLE_EQ(t[0].taille, 20);
    EXPECT_NEAR(s->etat.Repere.PointX, 10 + 10 * PointMm * EmHello, ToleranceFonte);
}

// --- one size on every target

namespace {

// The ink's horizontal extent of an image, in pixels.
bool Encre(const QImage& im, int& gauche, int& droite) {
    gauche = im.width();
    droite = -1;
    for (int y = 0; y < im.height(); ++y)
        for (int x = 0; x < im.width(); ++x)
            if (qGray(im.pixel(x, y)) < 128) {
                gauche = std::min(gauche, x);
                droite = std::max(droite, x);
            }
    return droite >= 0;
}

// The program painted on a screen-kind Surface (96 dpi, zoom 1) onto an image
// of the given resolution: what the pane shows, measured finely.
QImage PeintEcran(const QString& prog, QSizeF mm, double dpiImage) {
    QImage im(qRound(mm.width() / 25.4 * dpiImage), qRound(mm.height() / 25.4 * dpiImage),
              QImage::Format_RGB32);
    im.fill(Qt::white);
    Reglages regl;
    HoteMemoire hote(Programme(prog));
    Etat e;
    e.Regl = &regl;
    e.Host = &hote;
    SurfacePeinte pane(GenreSurface::Ecran, mm.width() / 25.4 * 96, mm.height() / 25.4 * 96, 25.4 / 96,
                       [&im](int) { return &im; }, dpiImage / 96, true);
    AttachePane(e, &pane);
    Visualiser(e);
    pane.EndDoc();
    return im;
}

} // namespace

TEST(Texte, OneSizeOnScreenPdfAndPng) {
    // A word 10 mm wide on the screen at zoom 1.
    auto mesure = Lance("");
    const double taille = 10 * 10 / Largeur(*mesure, "Mirel");
    const QString prog = QStringLiteral("Texte = 5, 10, , %1,Mirel\n").arg(taille, 0, 'f', 6);
    auto ecran = Lance(prog);
    ASSERT_EQ(Textes(*ecran).size(), 1);
    EXPECT_NEAR(ecran->etat.Repere.PointX - 5, 10, 1e-4);

    const QSizeF page(30, 40);
    int g = 0, d = 0;
    ASSERT_TRUE(Encre(PeintEcran(prog, page, 960), g, d));
    const double encreEcran = (d - g + 1) * 25.4 / 960, gaucheEcran = g * 25.4 / 960;
    EXPECT_GT(encreEcran, 9.3);
    EXPECT_LT(encreEcran, 10.1);

    QTemporaryDir dir;
    OptionsRendu o;
    o.page = page;
    o.dpi = 600;
    const QString png = dir.filePath("t.png"), pdf = dir.filePath("t.pdf");
    ASSERT_EQ(RendProgramme(Programme(prog), QString(), png, o, Reglages()).statut, 0);
    ASSERT_EQ(RendProgramme(Programme(prog), QString(), pdf, o, Reglages()).statut, 0);
    QImage imPng(png);
    ASSERT_TRUE(Encre(imPng, g, d));
    EXPECT_NEAR((d - g + 1) * 25.4 / 600, encreEcran, 0.03); // 0.3 %: a 13 px font would miss by 0.25 mm
    EXPECT_NEAR(g * 25.4 / 600, gaucheEcran, 0.03);

    const QString pdftoppm = QStandardPaths::findExecutable("pdftoppm");
    if (pdftoppm.isEmpty()) GTEST_SKIP() << "pdftoppm is not installed";
    QProcess p;
    p.start(pdftoppm, {"-r", "1200", "-png", "-singlefile", pdf, dir.filePath("pdf")});
    ASSERT_TRUE(p.waitForFinished(60000));
    QImage imPdf(dir.filePath("pdf.png"));
    ASSERT_FALSE(imPdf.isNull());
    ASSERT_TRUE(Encre(imPdf, g, d));
    EXPECT_NEAR((d - g + 1) * 25.4 / 1200, encreEcran, 0.03);
    EXPECT_NEAR(g * 25.4 / 1200, gaucheEcran, 0.03);
}

// Part 3.3 steps 5 and 13: the lines below the first take the whole
// upper-cased format field again, "#" behind; so "C§Times" gives the second
// line the letters I and S of "TIMES".
TEST(Texte, LaterLinesTakeTheWholeFormatFieldAgain) {
    auto s = Lance("Texte = 10, 50, , C§Times,A%CRB\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 2);
    EXPECT_FALSE(t[0].italique);
    EXPECT_FALSE(t[0].souligne);
    EXPECT_TRUE(t[1].italique);
    EXPECT_TRUE(t[1].souligne);
    EXPECT_FALSE(t[1].gras);
    EXPECT_DOUBLE_EQ(t[1].angle, 0);
}

// The style rule tests the field as it stands: " 14" starts with a blank.
TEST(Texte, StyleLettersNeedTheFieldItselfToStartWithTheSize) {
    auto s = Lance("TailleP = 12G\nTexte = 0, 0, , 14,A\nTexte = 0, 10, ,14,A\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 2);
    EXPECT_DOUBLE_EQ(t[0].taille, 14);
    EXPECT_TRUE(t[0].gras);  // " 14": styles kept
    EXPECT_FALSE(t[1].gras); // "14": styles set from the field
}

// TexteC step 6: a field that isn't empty (" " included) sets all three styles.
TEST(Texte, TexteCBlankFormatFieldStillSetsTheStyles) {
    auto s = Lance("TailleP = 12G\nTexteC = 0, 0, 20, 90, , ,AB\nTexteC = 0, 0, 20, 90, ,,AB\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 4);
    EXPECT_FALSE(t[0].gras); // " " isn't empty
    EXPECT_TRUE(t[2].gras);  // "" keeps the current style
}
