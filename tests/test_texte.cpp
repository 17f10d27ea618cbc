// Text: Texte, TexteC, TailleP, Police. Positions that depend on the font are checked against the pane's
// measure, and against the metrics of Liberation Serif (serving "Times New Roman") within a tolerance.
#include "app/core/hote_memoire.h"
#include "app/core/rendu.h"
#include "drawing/repere.h"
#include "drawing/surface_peinte.h"
#include "language/interprete.h"
#include "shapes/texte.h"
#include "outils.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cmath>

namespace {

constexpr double PointMm = 25.4 / 72;
// Liberation Serif, in ems: the advance of "Hello" and the cell.
constexpr double EmHello = 0.72217 + 0.44385 + 0.27783 + 0.27783 + 0.5;
constexpr double EmAscent = 0.8911, EmCellule = EmAscent + 0.2163;
constexpr double ToleranceFonte = 0.01; // mm

QVector<OpSurface> Textes(const Session& s) { return Ops(s, OpSurface::Texte); }

// The texts written, as "text size+styles R angle face c colour | ...", e.g. "AB 12GI R45";
// the angle, a face other than Times New Roman and a colour other than black only when there.
std::string Decrits(const Session& s) {
    QStringList r;
    for (const OpSurface& t : Textes(s))
        r << t.texte + u' ' + QString::number(t.taille) + (t.gras ? "G" : "") + (t.italique ? "I" : "") +
                 (t.souligne ? "S" : "") + (t.angle != 0 ? " R" + QString::number(t.angle) : QString()) +
                 (t.police != "Times New Roman" ? u' ' + t.police : QString()) +
                 (t.couleur != 0 ? " c" + QString::number(t.couleur) : QString());
    return r.join(" | ").toStdString();
}

// The pane's measures with the font it has at the end of the run (Times New Roman 10).
double Largeur(Session& s, const QString& t) { return s.pane->TextWidth(t); }
double Hauteur(Session& s, const QString& t) { return -s.pane->TextHeight(t); }

// The middle ratio of the pane's font: half the capital height over the cell.
double Milieu(Session& s) {
    const MetriquesPolice m = s.pane->Metriques();
    return float((float(m.Ascent / m.Height) - m.InternalLeading / m.Height) / 2);
}

std::unique_ptr<Session> LanceAvec(const QString& prog, int patchs, int langue = 0) {
    auto s = std::make_unique<Session>(Programme(prog));
    s->regl.Patchs = patchs;
    s->regl.LangueMessages = langue;
    s->Execute();
    return s;
}

// A text's position, or the current point, against (x, y).
testing::AssertionResult En(double x1, double y1, double x, double y, double tol = 0.001) {
    if (std::abs(x1 - x) <= tol && std::abs(y1 - y) <= tol) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "(" << x1 << ", " << y1 << ") instead of (" << x << ", " << y << ")";
}
testing::AssertionResult En(const OpSurface& t, double x, double y, double e = 1e-3) { return En(t.x1, t.y1, x, y, e); }
testing::AssertionResult Pointe(const Session& s, double x, double y, double tol = 0.001) {
    return En(s.etat.Repere.PointX, s.etat.Repere.PointY, x, y, tol);
}

// The left edge and the width of the ink in an image, in millimetres (width -1 when blank).
std::pair<double, double> Encre(const QImage& im, double dpi) {
    int gauche = im.width(), droite = -1;
    for (int y = 0; y < im.height(); ++y)
        for (int x = 0; x < im.width(); ++x)
            if (qGray(im.pixel(x, y)) < 128) {
                gauche = std::min(gauche, x);
                droite = std::max(droite, x);
            }
    return {gauche * 25.4 / dpi, droite < 0 ? -1 : (droite - gauche + 1) * 25.4 / dpi};
}

} // namespace

// Size, styles and angle of each text written, and its characters.
TEST(Texte, SizeStylesAndAngleOfEachText) {
    struct Cas { const char* prog; const char* textes; int patchs = 0; };
    const Cas cas[] = {
        // R45CD: C and D trail the number; vertical, C wins over D, and X over D.
        {"Texte = 0, 0, , R45CDV,AB\nTexte = 0, 0, , R45GH,AB", "A 10 R45 | B 10 R45 | AB 10G R45"},
        {"Texte = 0, 0, , XDV,AB", "A 10 | B 10"},
        // The size follows the first "*"; "3*15" behind R is a product.
        {"Texte = 0, 0, , *2R3*15,A", "A 20 R45"}, {"Texte = 0, 0, , G * (3)C,A", "A 30G"},
        // The rotation on y turns the text, R and AngRot add to it.
        {"Texte = 10, 0§30, , R15,A\nAngRot = 20\nTexte = 0, 0, , R5,A", "A 10 R45 | A 10 R25"},
        // TailleP: a size alone clears the styles, letters set them, with or without a comma.
        {"TailleP = 14G\nTailleP = 12\nTexte = 0, 0, , ,A", "A 12"},
        {"TailleP = 12 G\nTexte = 0, 0, , ,A", "A 12G"},
        {"TailleP = 12,G\nTexte = 0, 0, , ,A\nTailleP = 11,IU\nTexte = 0, 0, , ,A", "A 12G | A 11IS"},
        {"TailleP = 14G\nTailleP = ,Hello,%W,%H\nTexte = 0, 0, , ,A", "A 14"},
        // Sizes in the format: points, a factor of the standard size, or none.
        {"Texte = 0, 0, , 14,A\nTexte = 0, 0, , *1.5,A\nTexte = 0, 0, , C,A\nTailleP = 12\nTexte = 0, 0, , *2,A",
         "A 14 | A 15 | A 10 | A 24"},
        // Style letters count with a size or a style letter at the head of the field itself.
        {"TailleP = 12G\nTexte = 0, 0, , C,A\nTexte = 0, 0, , *1,A\nTexte = 0, 0, , I,A", "A 12G | A 12 | A 12I"},
        {"TailleP = 12G\nTexte = 0, 0, , 14,A\nTexte = 0, 10, ,14,A", "A 14G | A 14"},
        // Lines below the first take the whole upper-cased field again: "C§TIMES" has I and S.
        {"Texte = 10, 50, , C§Times,A%CRB", "A 10 Times | B 10IS Times"},
        // The format's face, read back in its own spelling, and the colour hold for that text only.
        {"Texte = 0, 0, rouge, 20GIS§Courier New,A\nTexte = 0, 0, , ,B", "A 20GIS Courier New c255 | B 10"},
        {"Police = Liberation Sans\nTexte = 0, 0, , §Arial,A\nTexte = 0, 0, , ,B", "A 10 Arial | B 10 Liberation Sans"},
        // Patch bit 0 turns texts on the axes by a fifth of a degree.
        {"Texte = 0, 0, , R90,A\nTexte = 0, 0, , ,A", "A 10 R90.2 | A 10 R0.2", 1},
        // "$£" stands for a comma; "#...#" pieces are evaluated, "##" is "#".
        {"Texte = 0, 0, , ,a$£b, c", "a,b, c 10"},
        {"%A = 4\nTexte = 0, 0, , ,#%A# mm ##1\nTexte = 0, 0, , ,#", "4 mm #1 10 | # 10"},
        // A spacing of 1 writes in one piece, 0 letter by letter.
        {"Texte = 10, 10, , §§1,ABC", "ABC 10"},
        {"Texte = 10, 10, , §§0,XXX", "X 10 | X 10 | X 10"},
    };
    for (const Cas& c : cas) {
        SCOPED_TRACE(c.prog);
        auto s = LanceAvec(QString::fromUtf8(c.prog), c.patchs);
        EXPECT_EQ(Decrits(*s), c.textes);
        EXPECT_TRUE(Messages(*s).isEmpty());
    }
}

TEST(Texte, FailingFormatsAndMissingFontsShowMessages) {
    struct Cas { const char* prog; QStringList messages; int langue = 0; };
    const Cas cas[] = {
        {"Police = Times New Roman\nPolice = Arial\nPolice = arial\nPolice = Courier New\nPolice = Liberation Sans",
         {}},
        {"Police = Pas Une Police", {"Pas de police Pas Une Police"}},
        {"Police = Garamondo", {"No Garamondo font"}, 400},
        // The name in the format is upper-cased; the run goes on.
        {"Texte = 0, 0, , §Pas Une Police,A\nTexteC = 50, 50, 20, 90, , §Nulle,AB",
         {"Pas de police PAS UNE POLICE", "Pas de police NULLE"}},
        {"Texte = 10, 50, , 20§Nimportequoi,", {"Pas de police NIMPORTEQUOI"}},
        // Centred and right-justified together, or an open parenthesis in the factor, end the run.
        {"Texte = 0, 0, , CD,AB\nTexte = 0, 0, , ,B", {"Erreur dans la ligne : 1: Texte = 0, 0, , CD,AB\r\n"}},
        {"Texte = 0, 0, , *(2C,A\nTexte = 0, 0, , ,B", {"Erreur dans la ligne : 1: Texte = 0, 0, , *(2C,A\r\n"}},
    };
    for (const Cas& c : cas) {
        SCOPED_TRACE(c.prog);
        auto s = LanceAvec(QString::fromUtf8(c.prog), 0, c.langue);
        const QStringList m = Messages(*s);
        ASSERT_EQ(m.size(), c.messages.size());
        for (int i = 0; i < m.size(); ++i) EXPECT_TRUE(m[i].startsWith(c.messages[i])) << m[i].toStdString();
        if (m.value(0).startsWith("Erreur")) { EXPECT_TRUE(Textes(*s).isEmpty()); }
    }
    auto s = Lance("Police = Pas Une Police\nTexte = 0, 0, , ,B\n");
    EXPECT_NE(Textes(*s).value(0).police, QStringLiteral("Pas Une Police")); // written with a substitute
    // Police in a coded (.dmk) file shows no message.
    s->etat.NiveauCourant = 2;
    for (auto [nom, n] : {std::pair{"/tmp/code.dmk", 1}, {"/tmp/code.dat", 2}}) {
        s->etat.PileFic[2].Nom = QString::fromUtf8(nom);
        s->etat.LigneCourante = QStringLiteral("Pas Une Police");
        CmdPolice(s->etat);
        EXPECT_EQ(s->hote.Messages().size(), n) << nom;
    }
}

// A white plus far off readies the Surface before a run's first drawing; an empty text draws nothing.
TEST(Texte, FirstDrawingReadiesTheSurfaceAndTextsGiveTheirFontBack) {
    auto s = Lance("Texte = 10, 10, , 20GIS§Arial§2,\nTexte = 0, 0, rouge, 20GIS§Arial,A\nTexte = 0, 0, , ,B\n");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 4);
    EXPECT_TRUE(l[2].couleur == RGB(255, 255, 255) && En(l[2], -100.1, l[2].y1) && En(l[3], l[3].x1, 99.9));
    EXPECT_TRUE(std::abs(l[2].x2 + 99.9) < 0.001 && (s->etat.EtatOrdre & 64) == 64);
    const PoliceSurface& f = s->pane->Font;
    EXPECT_TRUE(f.Name == "Times New Roman" && f.Size == 10 && !f.Bold && !f.Italic && !f.Underline);
    EXPECT_TRUE(s->pane->ForeColor == 0 && s->pane->TextAlign() == 24);
    // An empty text still sets its size: "#" moves one 20-point line down, Y centres on that line.
    s = Lance("Texte = 10, 50, , 20#,\n");
    EXPECT_TRUE(Textes(*s).isEmpty() && (s->etat.EtatOrdre & 64) == 0 && s->pane->Font.Size == 10); // given back
    s->pane->Font.Size = 20;
    EXPECT_TRUE(Pointe(*s, 10, 50 - Hauteur(*s, "X")));
    s = Lance("Texte = 10, 50, , 20Y,\n");
    s->pane->Font.Size = 20;
    EXPECT_TRUE(Pointe(*s, 10, 50 - Milieu(*s) * Hauteur(*s, ""), 1e-4));
}

TEST(Texte, CarriageReturnsAndHashStartNewLines) {
    auto s = Lance("Texte = 10, 50, , ,%CRAB\nTexte = 10, 50, , ,A%CRB\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 3);
    const double hx = Hauteur(*s, "X");
    EXPECT_NEAR(hx, 10 * PointMm * EmCellule, ToleranceFonte);
    EXPECT_TRUE(t[0].texte == "AB" && En(t[0], 10, 50 - hx)); // a leading CR starts one line lower
    EXPECT_TRUE(En(t[1], 10, 50) && En(t[2], 10, 50 - hx));
    // A trailing CR leaves the point at the start of one more, empty, line.
    EXPECT_TRUE(Pointe(*Lance("Texte = 10, 50, , ,AB%CR\n"), 10, 50 - hx));
    // "#" moves a line down, in the text's own frame when turned.
    const auto d = Textes(*Lance("Texte = 10, 50, , ##,A\nTexte = 10, 50, , R90#,A\n"));
    ASSERT_EQ(d.size(), 2);
    EXPECT_TRUE(En(d[0], 10, 50 - 2 * hx) && En(d[1], 10 + hx, 50, 1e-4));
}

// C and X centre along, D right-justifies; Y centres across, H puts the capital height on the point.
TEST(Texte, AlignmentsAlongAndAcross) {
    const std::tuple<const char*, double, double> cas[] = {
        {"", 0, 0}, {"C", -0.5, -1}, {"X", -0.5, 0}, {"D", -1, 0}, {"Y", 0, -1}, {"H", 0, -2}};
    QString prog;
    for (const auto& [format, dx, dy] : cas) prog += QStringLiteral("Texte = 100, 50, , %1,Hello\n").arg(format);
    auto s = Lance(prog);
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 6);
    const double w = Largeur(*s, "Hello"), mh = Milieu(*s) * Hauteur(*s, "Hello");
    EXPECT_NEAR(mh, 10 * PointMm * (EmAscent - (EmCellule - 1)) / 2, ToleranceFonte);
    for (int i = 0; i < 6; ++i)
        EXPECT_TRUE(En(t[i], 100 + std::get<1>(cas[i]) * w, 50 + std::get<2>(cas[i]) * mh, 1e-4)) << i;
    EXPECT_TRUE(Pointe(*s, 100 + w, 50 - 2 * mh, 1e-4)); // the end of the last text
    // Turned, the shifts go along the text's own axes.
    EXPECT_TRUE(En(Textes(*Lance("Texte = 100, 50, , CR90,Hello\n")).value(0), 100 + mh, 50 - w / 2, 1e-4));
    // Colour N writes nothing but places the point as if it had.
    s = Lance("Texte = 10, 20, N, C,Hello\n");
    EXPECT_TRUE(Textes(*s).isEmpty() && (s->etat.EtatOrdre & 64) == 0);
    EXPECT_TRUE(Pointe(*s, 10 + w / 2, 20 - mh, 1e-4));
}

TEST(Texte, PositionFollowsTheFrameItsRotationAndTheSpacing) {
    auto s = Lance("CentreE = 50, 40, N\nCT = 10, 5, N\nTexte = 1, 2, , ,AB\nTexte = R, R, , ,C\n");
    ASSERT_EQ(Textes(*s).size(), 2);
    EXPECT_TRUE(En(Textes(*s)[0], 61, 47) && En(Textes(*s)[1], 61 + Largeur(*s, "AB"), 47)); // R: after "AB"
    const double a = 30 * 0.017453293;
    EXPECT_TRUE(En(Textes(*Lance("Texte = 10, 0§30, , ,A\n")).value(0), 10 * std::cos(a), 10 * std::sin(a), 1e-4));
    // Spacing 0: all letters on one spot, the end point still the spaced width (3 w + 2 G, G = -w).
    s = Lance("Texte = 10, 10, , §§0,XXX\n");
    for (const OpSurface& op : Textes(*s)) EXPECT_MM(op.x1, 10);
    EXPECT_MM(s->etat.Repere.PointX, 10 + Largeur(*s, "X"));
    // Spacing 2: one X width more between letters.
    s = Lance("Texte = 10, 10, , §§2,AB\n");
    ASSERT_EQ(Textes(*s).size(), 2);
    const double wx = Largeur(*s, "X");
    EXPECT_MM(Textes(*s)[1].x1, 10 + Largeur(*s, "A") + wx);
    EXPECT_MM(s->etat.Repere.PointX, 10 + Largeur(*s, "A") + Largeur(*s, "B") + wx);
}

// Vertical text: letters under each other, alone or centred (C) or ending on the point (H).
TEST(Texte, VerticalLettersStandUnderEachOther) {
    auto s = Lance("Texte = 20, 50, , V,AB\nTexte = 40, 50, , VC,AB\nTexte = 80, 50, , V§§2,AB\n"
                   "Texte = 100, 50, , V,A%CRB\nTexte = 60, 50, , VH,AB\n");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 10);
    const double base = 0.8f; // not measured in this path: the ratio of the start of the run
    const double hx = Hauteur(*s, "X");
    // First cell top on the point, C centres each letter, spacing acts on the pitch, lines overwrite, H ends on it.
    EXPECT_TRUE(En(t[0], 20, 50 - hx * base, 1e-4) && En(t[1], 20, 50 - hx * (1 + base), 1e-4));
    EXPECT_TRUE(En(t[2], 40 - Largeur(*s, "A") / 2, 50 + hx) && En(t[3], 40 - Largeur(*s, "B") / 2, 50));
    EXPECT_TRUE(std::abs(t[4].y1 - t[5].y1 - 2 * hx) < 0.001 && En(t[6], 100, t[7].y1));
    EXPECT_TRUE(En(t[8], 60, 50 + hx) && En(t[9], 60, 50) && Pointe(*s, 60, 50 - hx));
    // Turned by 90 degrees, down the column becomes rightward.
    const auto r = Textes(*Lance("Texte = 20, 50, , VBR90,AB\n"));
    ASSERT_EQ(r.size(), 2);
    EXPECT_TRUE(En(r[0], 20 + hx * base, 50, 1e-4) && En(r[1], 20 + hx * (1 + base), 50, 1e-4) && r[0].angle == 90);
}

TEST(Texte, PrinterWritesAtWholeDotsWithTheLanguagesSize) {
    auto s = LanceImprimante("Texte = 10.01, 20, , ,A\n");
    const double px = 25.4 / 600;
    EXPECT_TRUE(En(Textes(*s).value(0), std::nearbyint(10.01 / px) * px, 297 - std::nearbyint(277 / px) * px, 1e-6));
    EXPECT_EQ(Decrits(*s), "A 10");
    EXPECT_TRUE(Ops(*s, OpSurface::Point).isEmpty()); // no page mark for horizontal text
    // A turned letter gives the size back as a whole number for the next letters; Texte restores its size.
    s = LanceImprimante("Texte = 10, 10, , 10.6§§2,ABC\n");
    EXPECT_EQ(Decrits(*s), "A 10.6 | B 11 | C 11");
    EXPECT_NEAR(s->imprimante->Font.Size, 10, 1e-9);
    s->etat.Surf = s->imprimante.get();
    for (auto [avant, apres] : {std::pair{0.4, 1.0}, {12.5, 12.0}}) { // at least 1, half to even
        s->imprimante->Font.Size = avant;
        EcritRot(s->etat, 100, 100, 30, QStringLiteral("A"));
        EXPECT_DOUBLE_EQ(s->imprimante->Font.Size, apres);
    }
    // Vertical and placed texts set the page mark first, once a page.
    s = LanceImprimante("Texte = 10, 20, , V,AB\nTexteC = 100, 100, 20, 90, , ,AB\nNPage\n"
                        "TexteC = 100, 100, 20, 90, bleu, ,AB\n");
    const auto p = Ops(*s, OpSurface::Point);
    ASSERT_EQ(p.size(), 2);
    EXPECT_TRUE(En(p[0], -1000, 297 + 1000) && p[1].couleur == RGB(0, 0, 255) && Textes(*s).size() == 6);
}

TEST(Texte, TexteCGoesClockwiseRoundTheCircleAndGivesItsFormatBack) {
    auto s = Lance("TexteC = 100, 100, 30, 90, , C,XXX\n");
    auto t = Textes(*s);
    ASSERT_EQ(t.size(), 3);
    // Centred on the top: the middle letter upright, the others turned away.
    EXPECT_TRUE(std::abs(t[1].angle) < 0.051 && t[0].angle > 0 && std::abs(t[0].angle + t[2].angle) < 0.11);
    EXPECT_TRUE(t[0].x1 < t[1].x1 && t[1].x1 < t[2].x1);
    // The middle baseline: the radius less CoefMilieu (0.3 at the start of the run) x H.
    EXPECT_TRUE(En(t[1], 100 - Largeur(*s, "X") / 2, 100 + 30 - 0.3f * Hauteur(*s, "XXX"), 1e-3));
    // A = 0 is nine o'clock: the letter left of the centre, turned by almost 90.
    const OpSurface neuf = Textes(*Lance("TexteC = 100, 100, 30, 0, , B,X\n")).value(0);
    EXPECT_LT(neuf.x1, 100 - 29);
    EXPECT_TRUE(neuf.angle > 85 && neuf.angle < 90) << neuf.angle;
    // A negative radius writes on the other side.
    EXPECT_LT(Textes(*Lance("TexteC = 100, 100, -30, 90, , C,X\n")).value(0).y1, 100 - 25);
    // Spaced equal letters span the arc the spaced width takes on the middle radius.
    for (double E : {1.0, 2.5}) {
        s = Lance(QStringLiteral("TexteC = 100, 100, 30§%1, 90, , ,XXXX\n").arg(E));
        t = Textes(*s);
        ASSERT_EQ(t.size(), 4);
        const double arc = std::atan2(t[0].y1 - 100, t[0].x1 - 100) - std::atan2(t[3].y1 - 100, t[3].x1 - 100);
        EXPECT_NEAR(arc * 4 / 3, E * Largeur(*s, "XXXX") / (30 + Hauteur(*s, "XXXX") / 5.5), 1e-6) << E;
    }
    // TexteC's face stays in force after it; its size, styles and colour do not.
    s = Lance("TexteC = 100, 100, 30, 90, rouge, 20G§Arial,AB\nTexte = 0, 0, , ,C\n");
    t = Textes(*s);
    ASSERT_EQ(t.size(), 3);
    EXPECT_TRUE(t[0].gras && t[0].taille == 20 && t[0].couleur == RGB(255, 0, 0));
    EXPECT_EQ(Decrits(*s).substr(Decrits(*s).rfind('|')), "| C 10 Arial");
    // A field that isn't empty, " " included, sets all three styles.
    t = Textes(*Lance("TailleP = 12G\nTexteC = 0, 0, 20, 90, , ,AB\nTexteC = 0, 0, 20, 90, ,,AB\n"));
    ASSERT_EQ(t.size(), 4);
    EXPECT_TRUE(!t[0].gras && t[2].gras);
    // "#...#" pieces are evaluated only in a text with a "%".
    t = Textes(*Lance("%A = 4\nTexteC = 50, 50, 20, 90, , ,#2#\nTexteC = 50, 50, 20, 90, , ,#%A#\n"));
    ASSERT_EQ(t.size(), 4);
    EXPECT_TRUE(t[0].texte + t[1].texte + t[2].texte == "#2#" && t[3].texte == "4");
}

TEST(Texte, TaillePFactorMeasureAndWritingOnTheOrigin) {
    // A factor scales the standard size and stays until a size is given.
    auto s = Lance("TailleP = 12\nTailleP = *1.5\n");
    EXPECT_TRUE(s->etat.Txt.TaillePolice == 12 && s->pane->Font.Size == 18);
    s = Lance("TailleP = *2\nTailleP = 9\n");
    EXPECT_TRUE(s->etat.PileFic[1].MultiplicateurTaille == 1.0f && s->pane->Font.Size == 9);
    // Width and height of a text into variables, rounded to 2 decimals.
    s = Lance("TailleP = 14G\nTailleP = ,Hello,%W,%H\n");
    EXPECT_NEAR(Variable(*s, "%W").toDouble(), 14 * PointMm * EmHello, 0.006);
    EXPECT_NEAR(Variable(*s, "%H").toDouble(), 14 * PointMm * EmCellule, 0.006);
    // The fifth parameter writes the text with its lower edge on the origin.
    s = Lance("CentreE = 30, 40, N\nTailleP = ,Hello,,,1\n");
    const MetriquesPolice m = s->pane->Metriques();
    const double descente = (m.Height - m.Ascent) * 25.4 / 96;
    EXPECT_TRUE(En(Textes(*s).value(0), 30, 40 + descente, 1e-4));
    EXPECT_TRUE(En(s->pane->CurrentX, s->pane->CurrentY, 30 + Largeur(*s, "Hello"), 40));
}

TEST(Texte, MetricRatiosAndTheirResetEachRun) {
    // Police's second parameter stands for the internal leading, until the next Police or run.
    auto s = Lance("Police = Arial, 0.1\nTexte = 0, 0, , ,A\n");
    EXPECT_FLOAT_EQ(s->etat.Txt.CoefMilieu, (s->etat.Txt.CoefBase - 0.1f) / 2);
    EXPECT_EQ(Lance("Police = , 0.1\nPolice = Arial\n")->etat.Txt.ForceMilieu, 0);
    s->hote.SetTexte(Programme("'rien\n"));
    s->Execute();
    EXPECT_TRUE(s->etat.Txt.ForceMilieu == 0 && s->etat.Txt.CoefHaut == 0.91f);
}

TEST(Texte, SizeKeptAtZoomAndOnAScreenOfAnotherResolution) {
    Session s(Programme("Texte = 10, 10, , R30,A\n"));
    s.pane = std::make_unique<SurfaceEnregistree>(GenreSurface::Ecran, 297 / 25.4 * 120, 210 / 25.4 * 120, 25.4 / 120);
    s.pane->SetJournal(&s.journal);
    AttachePane(s.etat, s.pane.get());
    s.Execute();
    EXPECT_EQ(Decrits(s), "A 10 R30");
    // The zoom scales the font, not the millimetres.
    Session z(Programme("Texte = 10, 10, , ,Hello\n"));
    z.Execute(2.0f);
    EXPECT_EQ(Decrits(z), "Hello 20");
    EXPECT_NEAR(z.etat.Repere.PointX, 10 + 10 * PointMm * EmHello, ToleranceFonte);
}

// A word 10 mm wide on the screen is 10 mm wide in the PNG and the PDF.
TEST(Texte, OneSizeOnScreenPdfAndPng) {
    const double taille = 10 * 10 / Largeur(*Lance(""), "Mirel");
    const QString prog = QStringLiteral("Texte = 5, 10, , %1,Mirel\n").arg(taille, 0, 'f', 6);
    EXPECT_NEAR(Lance(prog)->etat.Repere.PointX - 5, 10, 1e-4);
    // What the pane shows, painted finely at 960 dpi.
    const QSizeF page(30, 40);
    QImage im(qRound(page.width() / 25.4 * 960), qRound(page.height() / 25.4 * 960), QImage::Format_RGB32);
    im.fill(Qt::white);
    Reglages regl;
    HoteMemoire hote(Programme(prog));
    Etat e;
    e.Regl = &regl;
    e.Host = &hote;
    SurfacePeinte pane(GenreSurface::Ecran, page.width() / 25.4 * 96, page.height() / 25.4 * 96, 25.4 / 96,
                       [&im](int) { return &im; }, 10, true);
    AttachePane(e, &pane);
    Visualiser(e);
    pane.EndDoc();
    const auto ecran = Encre(im, 960);
    EXPECT_TRUE(ecran.second > 9.3 && ecran.second < 10.1) << ecran.second;
    // Within 0.03 mm (0.3 %): a font rounded to 13 pixels would miss by 0.25 mm.
    QTemporaryDir dir;
    OptionsRendu o;
    o.page = page;
    o.dpi = 600;
    for (const char* f : {"t.png", "t.pdf"})
        ASSERT_EQ(RendProgramme(Programme(prog), QString(), dir.filePath(f), o, Reglages()).statut, 0);
    const auto png = Encre(QImage(dir.filePath("t.png")), 600);
    EXPECT_TRUE(En(png.first, png.second, ecran.first, ecran.second, 0.03));
    const QString pdftoppm = QStandardPaths::findExecutable("pdftoppm");
    if (pdftoppm.isEmpty()) GTEST_SKIP() << "pdftoppm is not installed";
    QProcess p;
    p.start(pdftoppm, {"-r", "1200", "-png", "-singlefile", dir.filePath("t.pdf"), dir.filePath("pdf")});
    ASSERT_TRUE(p.waitForFinished(60000));
    const auto pdf = Encre(QImage(dir.filePath("pdf.png")), 1200);
    EXPECT_TRUE(En(pdf.first, pdf.second, ecran.first, ecran.second, 0.03));
}
