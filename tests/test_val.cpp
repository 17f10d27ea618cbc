// Part 2.5: scale values.
//
// Texts and their places come from the journal. A text's anchor is found
// back from its start with the Surface's own measures (exact, 0.001 mm), and
// the start is checked once more against the Liberation Serif metrics (the
// face that serves "Times New Roman") with a tolerance that another face
// would break.
#include "drawing/val.h"
#include "language/expr.h"
#include "outils.h"

#include <QLocale>

#include <cmath>

namespace {

constexpr double K = 0.017453293;
constexpr double PI = 3.14159265358979;
constexpr double Em10 = 10 * 25.4 / 72;   // one em of a 10 point font, mm
constexpr double EmChiffre = 0.5;         // Liberation Serif digits
constexpr double EmCellule = 0.8911 + 0.2163;
constexpr double ToleranceFonte = 0.01;   // mm

QVector<OpSurface> Textes(const Session& s) { return Ops(s, OpSurface::Texte); }

QStringList Contenus(const Session& s) {
    QStringList r;
    for (const OpSurface& t : Textes(s)) r << t.texte;
    return r;
}

// CoefMilieu of the pane's font, as MetriquesTexte computes it.
double Milieu(Session& s) {
    const MetriquesPolice m = s.pane->Metriques();
    const float base = float(m.Ascent / m.Height);
    return float((base - m.InternalLeading / m.Height) / 2);
}

// The anchor of a centred text (no justification letters): its start moved
// forward by half its width and up by c h, in the text's direction.
QPointF AncreCentree(Session& s, const OpSurface& t) {
    const double w = s.pane->TextWidth(t.texte), h = -s.pane->TextHeight(t.texte);
    const double c = Milieu(s) * h;
    const double a = t.angle * K;
    return {t.x1 + w / 2 * std::cos(a) - c * std::sin(a),
            t.y1 + w / 2 * std::sin(a) + c * std::cos(a)};
}

// Needle point at deviation a (degrees), radius r, about (0, 0).
QPointF Aiguille(double a, double r) { return {-r * std::cos(a * K), r * std::sin(a * K)}; }

void ExpectPoint(QPointF p, QPointF q) {
    EXPECT_MM(p.x(), q.x());
    EXPECT_MM(p.y(), q.y());
}

struct LocaleFixee {
    explicit LocaleFixee(const QLocale& l) { QLocale::setDefault(l); }
    ~LocaleFixee() { QLocale::setDefault(QLocale::c()); }
};

} // namespace

// --- the edge cases of Part 2.5

// Val = 5, 0, 100, 8 on a half circle writes 0, 20, ..., 100, centred 8 mm
// beyond the scale line.
TEST(Val, DemiCercleSixValeursCentrees) {
    auto s = Lance("Arc = 0, 180, 50\nVal = 5, 0, 100, 8");
    EXPECT_TRUE(Messages(*s).isEmpty());
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 6);
    EXPECT_EQ(Contenus(*s), QStringList({"0", "20", "40", "60", "80", "100"}));
    for (int i = 0; i <= 5; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(t[i].angle, 0);
        const double a = i == 0 ? 0.000001 : 0.000001 + i * (180 - 0.000001) / 5;
        ExpectPoint(AncreCentree(*s, t[i]), Aiguille(a, 58));
    }
    // The font's own numbers: "100" is 1.5 em wide, c h of the cell.
    const double c = Milieu(*s);
    EXPECT_NEAR(t[5].x1, 58 - 1.5 * EmChiffre * Em10, ToleranceFonte);
    EXPECT_NEAR(t[5].y1, -c * EmCellule * Em10, ToleranceFonte);
    EXPECT_NEAR(t[0].x1, -58 - 0.5 * EmChiffre * Em10, ToleranceFonte);
    // The pen stays at the last anchor.
    EXPECT_MM(s->etat.Repere.PointX, 58);
    EXPECT_NEAR(s->etat.Repere.PointY, 0, 0.001);
}

// Val = 5, 0§ V, 10§ V, 12: the unit " V" of Depart goes behind every value,
// the last one takes the unit of Fin; the leading blank stays.
TEST(Val, UniteDepartEtFinAvecBlanc) {
    auto s = Lance("Arc = 0, 180, 50\nVal = 5, 0§ V, 10§ V, 12");
    EXPECT_EQ(Contenus(*s), QStringList({"0 V", "2 V", "4 V", "6 V", "8 V", "10 V"}));
    // Fin's unit replaces Depart's on the last value only.
    auto s2 = Lance("Arc = 0, 180, 50\nVal = 5, 0§ V, 10§ V max, 12");
    EXPECT_EQ(Contenus(*s2), QStringList({"0 V", "2 V", "4 V", "6 V", "8 V", "10 V max"}));
    // Without a § text in Fin, the last value keeps Depart's unit.
    auto s3 = Lance("Arc = 0, 180, 50\nVal = 2, 0§mA, 10, 12");
    EXPECT_EQ(Contenus(*s3), QStringList({"0mA", "5mA", "10mA"}));
    // The spec's own line: Depart has no unit, so only the last gets " V";
    // the distance's "§ V" is an angle that reads as nothing.
    auto s4 = Lance("Arc = 0, 180, 50\nVal = 5, 0, 10§ V, 12§ V");
    EXPECT_TRUE(Messages(*s4).isEmpty());
    EXPECT_EQ(Contenus(*s4), QStringList({"0", "2", "4", "6", "8", "10 V"}));
}

TEST(Val, UniteBlancsNormalises) {
    EXPECT_EQ(NormaliseUnite("   V"), " V");
    EXPECT_EQ(NormaliseUnite(" "), "");
    EXPECT_EQ(NormaliseUnite("V "), "V ");
    auto s = Lance("Arc = 0, 180, 50\nVal = 1, 0§   dB, 10§ , 12");
    // A lone blank in Fin is an empty unit for the last value.
    EXPECT_EQ(Contenus(*s), QStringList({"0 dB", "10"}));
}

// A value list with Prem above 0 keeps its numbers: they follow the index,
// not the count of texts.
TEST(Val, PremAuDessusDeZeroGardeLesNombres) {
    auto s = Lance("Arc = 0, 180, 50\nVal = 10, 0, 100, 8, 3, 7");
    EXPECT_EQ(Contenus(*s), QStringList({"30", "40", "50", "60", "70"}));
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 5);
    for (int i = 0; i < 5; ++i)
        ExpectPoint(AncreCentree(*s, t[i]), Aiguille(0.000001 + (3 + i) * (180 - 0.000001) / 10, 58));
    EXPECT_EQ(s->etat.Val.PremVal, 3);
    EXPECT_EQ(s->etat.Val.DerVal, 7);
}

// "$£" in a Val1 text appears as a comma and doesn't split the parameter.
TEST(Val, DollarLivreDansVal1EstUneVirgule) {
    auto s = Lance("Arc = 0, 180, 50\nVal1 = 50,1$£5, 8, , 100,fin, 8");
    EXPECT_TRUE(Messages(*s).isEmpty());
    EXPECT_EQ(Contenus(*s), QStringList({"1,5", "fin"}));
    const auto t = Textes(*s);
    ExpectPoint(AncreCentree(*s, t[0]), Aiguille(90, 58));
    ExpectPoint(AncreCentree(*s, t[1]), Aiguille(180, 58));
}

// ValR on a straight scale turns the text with the relative angle plus 90.
TEST(Val, ValRSurDroiteAnglePlus90) {
    auto s = Lance("Droite = -50, 50, -30\nValR = R10, 2, 0, 10, 5");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 3);
    for (int i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        EXPECT_NEAR(t[i].angle, 100, 1e-4);
        ExpectPoint(AncreCentree(*s, t[i]), QPointF(-50 + 50 * i, -25));
    }
    // DroiteV: AngRel + 90 - AngDist as well.
    auto v = Lance("DroiteV = -50, 50, 30\nValR = , 2, 0, 10, 5");
    for (const OpSurface& o : Textes(*v)) EXPECT_NEAR(o.angle, 90, 1e-4);
    ExpectPoint(AncreCentree(*v, Textes(*v)[0]), QPointF(35, -50));
}

// With Decal, ValD aligns with the offset radius, ValR with the needle.
TEST(Val, DecalValDRayonDecaleValRAiguille) {
    auto s = Lance("Decal = -100\nArc = 60, 120, 100\nValR = , 2, 0, 10, 8\nValD = , 2, 0, 10, 8");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 6);
    const double D = 100;
    for (int i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        const double A = 60 + 30 * i;
        // ValR: at right angles to the needle.
        EXPECT_NEAR(t[i].angle, 90 - A, 1e-4);
        // ValD: at right angles to the radius of the drawn centre.
        const double rp = std::sqrt(D * D + 108 * 108 - 2 * D * 108 * std::cos((60 + 90) * K));
        const double b = (PI - A * K) - std::asin(D * std::cos(A * K) / rp);
        // The font's escapement is held to a tenth of a degree (Part 3.3).
        EXPECT_NEAR(t[3 + i].angle, 90 - (PI - b) / K, 0.05);
        // Both anchors on the circle about the drawn centre (0, -100).
        const QPointF p = AncreCentree(*s, t[3 + i]);
        EXPECT_MM(p.x(), rp * std::cos(b));
        EXPECT_MM(p.y(), -D + rp * std::sin(b));
        ExpectPoint(AncreCentree(*s, t[i]), p);
    }
    // The offset radius is steeper than the needle at the ends: smaller angles.
    EXPECT_LT(t[3].angle, t[0].angle);
    EXPECT_GT(t[3].angle, 0);
    // Without Decal both are the same.
    auto z = Lance("Arc = 60, 120, 100\nValR = , 2, 0, 10, 8\nValD = , 2, 0, 10, 8");
    const auto u = Textes(*z);
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(u[i].angle, u[3 + i].angle, 1e-4);
}

// --- the first parameter

TEST(Val, PremierParametreJustification) {
    // "BG": the anchor is the baseline's start.
    auto s = Lance("Arc = 0, 180, 50\nValR = RBG, 2, 0, 10, 8");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 3);
    EXPECT_EQ(s->etat.Val.Just, "BG");
    EXPECT_TRUE(s->etat.Val.RelDonne);
    EXPECT_MM(t[0].x1, -58);
    EXPECT_MM(t[0].y1, 0);
    EXPECT_NEAR(t[0].angle, 90, 1e-4);
    // "HD": the text hangs below the anchor and ends on it.
    auto h = Lance("Arc = 0, 180, 50\nValR = 0HD, 2, 0, 10, 8");
    const OpSurface o = Textes(*h)[1];
    EXPECT_EQ(h->etat.Val.Just, "HD");
    const double w = h->pane->TextWidth(o.texte), ht = -h->pane->TextHeight(o.texte);
    EXPECT_MM(o.x1, -w);
    EXPECT_MM(o.y1, 58 - 2 * Milieu(*h) * ht);
    // A lone letter behind the number: "45G" is 45, left-justified.
    auto g = Lance("Arc = 0, 180, 50\nValR = 45G, 2, 0, 10, 8");
    EXPECT_EQ(g->etat.Val.Just, "G");
    EXPECT_NEAR(Textes(*g)[0].angle, 45, 1e-4);
    // An empty first parameter reads as R0.
    auto r = Lance("Arc = 0, 180, 50\nValR = , 2, 0, 10, 8");
    EXPECT_NEAR(Textes(*r)[0].angle, 90, 1e-4);
    EXPECT_NEAR(Textes(*r)[1].angle, 0, 1e-4);
}

TEST(Val, LettreSeuleResteDansLAngle) {
    // A text shorter than 2 letters isn't searched: "G" goes to the evaluation.
    auto s = Lance("Arc = 0, 180, 50\nValR = G, 2, 0, 10, 8");
    EXPECT_EQ(Messages(*s).size(), 1);
    EXPECT_TRUE(Textes(*s).isEmpty());
    // A bad letter stays in the angle text: "45Q" fails there too.
    auto q = Lance("Arc = 0, 180, 50\nValR = 45Q, 2, 0, 10, 8");
    EXPECT_EQ(Messages(*q).size(), 1);
}

TEST(Val, AngleAbsoluSurDroiteVIgnoreParVal) {
    // On a DroiteV only, Val, ValR, ValD don't take an absolute angle over...
    auto s = Lance("DroiteV = -50, 50\nValR = 30, 1, 0, 10, 5");
    for (const OpSurface& o : Textes(*s)) EXPECT_NEAR(o.angle, 0, 1e-4);
    // ... but Val1R does.
    auto v = Lance("DroiteV = -50, 50\nVal1R = 30, 50, x, 5");
    EXPECT_NEAR(Textes(*v)[0].angle, 30, 1e-4);
    // On an arc the absolute angle acts.
    auto a = Lance("Arc = 0, 180, 50\nValD = -20, 1, 0, 10, 5");
    for (const OpSurface& o : Textes(*a)) EXPECT_NEAR(o.angle, -20, 1e-4);
}

// --- the linear series

TEST(Val, ModuloEnrouleLesNombres) {
    // A compass dial: 0 to 360 by 45, written modulo 360.
    auto s = Lance("Arc = 0, 360, 50\nVal = 8§360, 0, 360, 8");
    EXPECT_EQ(Contenus(*s), QStringList({"0", "45", "90", "135", "180", "225", "270", "315", "0"}));
    // Whole-number modulo, both sides rounded half-even first: 7.5 Mod 5 is
    // 8 Mod 5, 22.5 Mod 5 is 22 Mod 5.
    auto m = Lance("Arc = 0, 180, 50\nVal = 4§5, 0, 30, 8");
    EXPECT_EQ(Contenus(*m), QStringList({"0", "3", "0", "2", "0"}));
}

TEST(Val, DecimalesDuSysteme) {
    auto s = Lance("Arc = 0, 180, 50\nVal = 4, 0, 1, 8");
    EXPECT_EQ(Contenus(*s), QStringList({"0", "0.25", "0.5", "0.75", "1"}));
    LocaleFixee fr(QLocale(QLocale::French, QLocale::France));
    auto f = Lance("Arc = 0, 180, 50\nVal = 4, 0, 1, 8");
    EXPECT_EQ(Contenus(*f), QStringList({"0", "0,25", "0,5", "0,75", "1"}));
    EXPECT_EQ(DecimalSysteme(-0.5), "-0,5");
}

TEST(Val, ZeroIntervalleEstUn) {
    auto s = Lance("Arc = 0, 180, 50\nVal = 0, 0, 10, 8");
    EXPECT_EQ(Contenus(*s), QStringList({"0", "10"}));
}

// --- the log series

TEST(Val, ArrondiDemiVersLeBas) {
    EXPECT_EQ(Arrondi(2.5), 2);
    EXPECT_EQ(Arrondi(3.5), 3);
    EXPECT_EQ(Arrondi(0.5), 0);
    EXPECT_EQ(Arrondi(1.5), 1);
    EXPECT_EQ(Arrondi(-0.5), -1);
    EXPECT_EQ(Arrondi(-1.5), -2);
    EXPECT_EQ(Arrondi(2.6), 3);
    EXPECT_EQ(Arrondi(3.4), 3);
}

TEST(Val, LogTroisChiffresSignificatifs) {
    EXPECT_EQ(TexteValeurLog(123.456, ""), "123");
    EXPECT_EQ(TexteValeurLog(1.23456, ""), "1.23");
    EXPECT_EQ(TexteValeurLog(0.0123456, ""), "0.0123");
    EXPECT_EQ(TexteValeurLog(99.96, ""), "100");
    EXPECT_EQ(TexteValeurLog(316.5, ""), "316");
    EXPECT_EQ(TexteValeurLog(0, ""), "0");
    // A log scale of 3 decades: values from the position, times Depart.
    auto s = Lance("Exposant = L, 2\nArc = 0, 180, 50\nVal = 1§2, 5, , 8");
    EXPECT_EQ(Contenus(*s), QStringList({"5", "10", "50", "100", "500"}));
}

TEST(Val, LogFormesPrefixeExposantIngenieur) {
    EXPECT_EQ(TexteValeurLog(4700, "P"), "4.7k");
    EXPECT_EQ(TexteValeurLog(0.0047, " p"), "4.7m");
    EXPECT_EQ(TexteValeurLog(2.2e6, "P"), "2.2M");
    EXPECT_EQ(TexteValeurLog(5, "P"), "5");
    EXPECT_EQ(TexteValeurLog(2000, "E"), "2E3");
    EXPECT_EQ(TexteValeurLog(0.05, "E"), "5E-2");
    EXPECT_EQ(TexteValeurLog(2000, "0.0E00"), "2.0E03");
    EXPECT_EQ(TexteValeurLog(0.05, "0.0E00"), "5.0E-02");
    EXPECT_EQ(TexteValeurLog(20000, "S"), "20E3");
    EXPECT_EQ(TexteValeurLog(0.05, "S"), "50E-3");
    EXPECT_EQ(TexteValeurLog(0.0005, "S"), "500E-6");
    EXPECT_EQ(TexteValeurLog(0.001, "S"), "1E-3");
    EXPECT_EQ(TexteValeurLog(470, "S"), "470E0");
    EXPECT_EQ(TexteValeurLog(47000, "0.0S"), "47.0E3");
    // On a run: an ohmmeter in kilohms, the unit of Fin on the last value.
    auto s = Lance("Exposant = L, 3\nArc = 0, 180, 50\nVal = 1§1, 1, P§Ω, 8");
    EXPECT_EQ(Contenus(*s), QStringList({"1", "10", "100", "1kΩ"}));
}

TEST(Val, FormatNombreScientifique) {
    EXPECT_EQ(FormatNombre(12345, "0.00E+00"), "1.23E+04");
    EXPECT_EQ(FormatNombre(12345, "00.0E-0"), "12.3E3");
    EXPECT_EQ(FormatNombre(0.00012, "0.0E-00"), "1.2E-04");
    EXPECT_EQ(FormatNombre(9.99, "0.0E-0"), "1.0E1");
    EXPECT_EQ(FormatNombre(2.5, "0.00"), "2.50");
    EXPECT_EQ(FormatNombre(2, "#.##"), "2.");
    EXPECT_EQ(FormatNombre(0.5, "#.##"), ".5");
}

// --- Val1 (texts written right behind the comma: a blank there would be
// part of the text, Val.Val1TexteNonRogne)

TEST(Val, Val1ListeDePositionsEtTextes) {
    auto s = Lance("%L =< 0§50§100\nArc = 0, 180, 50\nVal1 = %L§%L,bas§milieu, 12");
    EXPECT_EQ(Contenus(*s), QStringList({"bas", "milieu", "milieu"}));
    const auto t = Textes(*s);
    ExpectPoint(AncreCentree(*s, t[0]), Aiguille(0.000001, 62));
    ExpectPoint(AncreCentree(*s, t[1]), Aiguille(90, 62));
    ExpectPoint(AncreCentree(*s, t[2]), Aiguille(180, 62));
    EXPECT_TRUE(s->etat.VarListeCourante.isEmpty());
    // A list written in one variable with the first separator.
    auto v = Lance("%T =< a,b,c\n%L =< 0§50§100\nArc = 0, 180, 50\nVal1 = %L§%L,%T, 12");
    EXPECT_EQ(Contenus(*v), QStringList({"a", "b", "c"}));
}

TEST(Val, Val1TxtEtDecimales) {
    LocaleFixee fr(QLocale(QLocale::French, QLocale::France));
    auto s = Lance("Arc = 0, 180, 50\nVal1 = 50,2.5§txt, 8, , 100,2.5, 8");
    EXPECT_EQ(Contenus(*s), QStringList({"2,5", "2.5"}));
}

TEST(Val, Val1ExpressionsEtVariables) {
    auto s = Lance("%A = 4\nArc = 0, 180, 50\nVal1 = 50,#%A*2# mA, 8, , 100°,%A, 8");
    EXPECT_EQ(Contenus(*s), QStringList({"8 mA", "4"}));
    // A deviation in degrees: 100° is at deviation 100.
    ExpectPoint(AncreCentree(*s, Textes(*s)[1]), Aiguille(100, 58));
    // An undefined variable in the text is the message of Part 1.2.
    auto u = Lance("Arc = 0, 180, 50\nVal1 = 50, %Rien, 8");
    ASSERT_EQ(Messages(*u).size(), 1);
    EXPECT_TRUE(Messages(*u)[0].contains("non initialis"));
}

TEST(Val, Val1RTangentAuCercle) {
    auto s = Lance("Arc = 0, 180, 50\nVal1R = , 25, a, 8, , 75, b, 8");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 2);
    EXPECT_NEAR(t[0].angle, 45, 1e-4);
    EXPECT_NEAR(t[1].angle, -45, 1e-4);
    ExpectPoint(AncreCentree(*s, t[0]), Aiguille(45, 58));
}

// --- colour, rotation, pen, failures

TEST(Val, CouleurNNEcritRienMaisDeplaceLePoint) {
    auto s = Lance("Arc = 0, 180, 50\nVal = 2, 0, 10, 8, , , N");
    EXPECT_TRUE(Textes(*s).isEmpty());
    EXPECT_MM(s->etat.Repere.PointX, 58);
    auto c = Lance("Arc = 0, 180, 50\nVal = 2, 0, 10, 8, , , ROUGE");
    for (const OpSurface& o : Textes(*c)) EXPECT_EQ(o.couleur, RGB(255, 0, 0));
}

TEST(Val, RotationDeLEchelle) {
    // The scale turned by 30 degrees: anchors turn about 0,0 and texts with it.
    auto s = Lance("Arc = 0, 180§30, 50\nVal = 2, 0, 10, 8");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 3);
    for (int i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        EXPECT_NEAR(t[i].angle, 30, 1e-4);
        const QPointF p = Aiguille(i == 0 ? 0.000001 : 90 * i, 58);
        const double r = 30 * K;
        ExpectPoint(AncreCentree(*s, t[i]),
                    QPointF(p.x() * std::cos(r) - p.y() * std::sin(r),
                            p.x() * std::sin(r) + p.y() * std::cos(r)));
    }
}

TEST(Val, InversionMetLesValeursDedans) {
    auto s = Lance("Arc = 0, 180, 50\nInversion\nVal = 1, 0, 10, 8");
    ExpectPoint(AncreCentree(*s, Textes(*s)[0]), Aiguille(0.000001, 42));
}

TEST(Val, OrdreAvantEchelle) {
    for (const char* k : {"Val = 5, 0, 100, 8", "ValR = , 5, 0, 100, 8", "ValD = , 5, 0, 100, 8",
                          "Val1 = 50, a, 8", "Val1R = , 50, a, 8", "Val1D = , 50, a, 8"}) {
        auto s = Lance(k);
        ASSERT_EQ(Messages(*s).size(), 1) << k;
        EXPECT_TRUE(Messages(*s)[0].contains("Erreur ordre commandes / Error odre commands")) << k;
    }
}

TEST(Val, EchelleSansFormeEchoue) {
    auto s = Lance("Arc = 30, 30, 50\nVal = 5, 0, 100, 8");
    EXPECT_EQ(Messages(*s).size(), 1);
    EXPECT_TRUE(Textes(*s).isEmpty());
}

TEST(Val, SurLImprimante) {
    auto s = LanceImprimante("CentreEI = 105, 150\nArc = 0, 180, 50\nVal = 5, 0, 100, 8");
    EXPECT_TRUE(Messages(*s).isEmpty());
    EXPECT_EQ(Contenus(*s), QStringList({"0", "20", "40", "60", "80", "100"}));
}

// The straight limit of an arc: the anchor is the projected tip of a tick.
TEST(Val, LimiteDroiteDecal10000) {
    auto s = Lance("Decal = 10000\nArc = 60, 120, 50\nVal = 2, 0, 10, 8");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 3);
    const double sy = 58 * std::sin(60 * K);
    ExpectPoint(AncreCentree(*s, t[1]), QPointF(0, sy));
    ExpectPoint(AncreCentree(*s, t[0]), QPointF(sy * std::tan(PI / 2 - (PI - 60 * K)), sy));
}

// The distance's angle on straight scales, stored negated: on a Droite the
// anchor is (X + Dist sin(-g), R + Dist cos(-g)), on a DroiteV
// (R + Dist cos(-g), Y + Dist sin(-g)), g = AngDist; ValR's text on a Droite
// turns by AngRel + 90 + AngDist, on a DroiteV by AngRel + 90 - AngDist.
TEST(Val, AngleDeDistanceSurDroites) {
    auto d = Lance("Droite = -50, 50\nValR = , 1, 0, 10, 10§30");
    const auto t = Textes(*d);
    ASSERT_EQ(t.size(), 2);
    EXPECT_EQ(d->etat.Val.AngDist, -30);
    EXPECT_NEAR(t[0].angle, 60, 1e-4);
    ExpectPoint(AncreCentree(*d, t[0]), QPointF(-50 + 10 * std::sin(30 * K), 10 * std::cos(30 * K)));
    auto v = Lance("DroiteV = -50, 50\nValR = , 1, 0, 10, 10§30");
    const auto u = Textes(*v);
    EXPECT_NEAR(u[0].angle, 120, 1e-4);
    ExpectPoint(AncreCentree(*v, u[0]), QPointF(10 * std::cos(30 * K), -50 + 10 * std::sin(30 * K)));
    // On an arc the distance's angle has no part.
    auto a = Lance("Arc = 0, 180, 50\nVal = 1, 0, 10, 8§30");
    ExpectPoint(AncreCentree(*a, Textes(*a)[0]), Aiguille(0.000001, 58));
}

// Part 2.5 step 5 trims nothing: the text keeps its leading blank.
TEST(Val, Val1TexteNonRogne) {
    auto s = Lance("Arc = 0, 180, 50\nVal1 = 50, 10, 8");
    EXPECT_EQ(Contenus(*s), QStringList({" 10"}));
    auto t = Lance("Arc = 0, 180, 50\nVal1 = 50,10, 8");
    EXPECT_EQ(Contenus(*t), QStringList({"10"}));
}
