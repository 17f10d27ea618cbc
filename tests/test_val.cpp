// Scale values: the texts written and their anchors, to 0.001 mm. A centred
// text's anchor is found back from its start with the Surface's own measures.
#include "drawing/val.h"
#include "outils.h"

#include <QLocale>

#include <cmath>

namespace {

constexpr double K = 0.017453293;

QVector<OpSurface> Textes(const Session& s) { return Ops(s, OpSurface::Texte); }

QStringList Contenus(const Session& s) {
    QStringList r;
    for (const OpSurface& t : Textes(s)) r << t.texte;
    return r;
}

// The share of the text height between the baseline and the middle of the cell.
double Milieu(Session& s) {
    const MetriquesPolice m = s.pane->Metriques();
    return float((float(m.Ascent / m.Height) - m.InternalLeading / m.Height) / 2);
}

// The anchor of a centred text: its start moved forward by half its width and
// up to the middle of the cell, in the text's direction.
QPointF AncreCentree(Session& s, const OpSurface& t) {
    const double w = s.pane->TextWidth(t.texte), c = -Milieu(s) * s.pane->TextHeight(t.texte);
    const double a = t.angle * K;
    return {t.x1 + w / 2 * std::cos(a) - c * std::sin(a), t.y1 + w / 2 * std::sin(a) + c * std::cos(a)};
}

// Needle point at deviation a (degrees), radius r, about (0, 0): 0 left, 90 up.
QPointF N(double a, double r = 58) { return {-r * std::cos(a * K), r * std::sin(a * K)}; }

struct LocaleFixee {
    explicit LocaleFixee(const QLocale& l) { QLocale::setDefault(l); }
    ~LocaleFixee() { QLocale::setDefault(QLocale::c()); }
};

} // namespace

// The texts of a run; the centred anchors and text angles where given (one
// angle for all texts, or one each).
TEST(Val, TextsAnchorsAndAngles) {
    const QString a = QStringLiteral("Arc = 0, 180, 50\n");
    const QStringList dix = {"0", "5", "10"}, zd = {"0", "10"}, cent = {"0", "20", "40", "60", "80", "100"};
    const QPointF dd(-54, 93.53075), dm(0, 100.92324), df(54, 93.53074);  // about (0, -100)
    const struct {
        QString prog;
        QStringList textes;
        QVector<QPointF> ancres = {};
        QVector<double> angles = {};
        bool imprimante = false;
    } cas[] = {
        {a + "Val = 5, 0, 100, 8", cent, {N(0), N(36), N(72), N(108), N(144), N(180)}, {0}},
        {"CentreEI = 105, 150\n" + a + "Val = 5, 0, 100, 8", cent, {}, {}, true},
        // Numbers follow the index from the first, not the count of texts.
        {a + "Val = 10, 0, 100, 8, 3, 7", {"30", "40", "50", "60", "70"},
         {N(54), N(72), N(90), N(108), N(126)}},
        {a + "Val = 0, 0, 10, 8", zd},  // no interval is one
        {a + "Val = 4, 0, 1, 8", {"0", "0.25", "0.5", "0.75", "1"}},
        // Depart's unit behind every value, Fin's on the last; blanks kept as one.
        {a + "Val = 5, 0§ V, 10§ V, 12", {"0 V", "2 V", "4 V", "6 V", "8 V", "10 V"}},
        {a + "Val = 5, 0§ V, 10§ V max, 12", {"0 V", "2 V", "4 V", "6 V", "8 V", "10 V max"}},
        {a + "Val = 2, 0§mA, 10, 12", {"0mA", "5mA", "10mA"}},
        {a + "Val = 5, 0, 10§ V, 12§ V", {"0", "2", "4", "6", "8", "10 V"}},  // "§ V" is no angle
        {a + "Val = 1, 0§   dB, 10§ , 12", {"0 dB", "10"}},
        {a + "Val = 1, 0§V , 10, 12", {"0V ", "10V "}},
        // Whole-number modulo, both sides rounded half-even first.
        {"Arc = 0, 360, 50\nVal = 8§360, 0, 360, 8",
         {"0", "45", "90", "135", "180", "225", "270", "315", "0"}},
        {a + "Val = 4§5, 0, 30, 8", {"0", "3", "0", "2", "0"}},
        {a + "Val = 2§360, 1E20, 0, 8", {"280", "320", "0"}}, // beyond 64-bit whole numbers
        // Log scales: values from the position times Depart, prefixes on request.
        {"Exposant = L, 2\n" + a + "Val = 1§2, 5, , 8", {"5", "10", "50", "100", "500"}},
        {"Exposant = L, 3\n" + a + "Val = 1§1, 1, P§Ω, 8", {"1", "10", "100", "1kΩ"}},
        // Val1: texts right behind the comma ("$£" is a comma); a blank there is kept.
        {a + "Val1 = 50,1$£5, 8, , 100,fin, 8", {"1,5", "fin"}, {N(90), N(180)}},
        {a + "Val1 = 50, 10, 8", {" 10"}},
        {"%L =< 0§50§100\n" + a + "Val1 = %L§%L,bas§milieu, 12", {"bas", "milieu", "milieu"},
         {N(0, 62), N(90, 62), N(180, 62)}},
        {"%T =< a,b,c\n%L =< 0§50§100\n" + a + "Val1 = %L§%L,%T, 12", {"a", "b", "c"}},
        {"%A = 4\n" + a + "Val1 = 50,#%A*2# mA, 8, , 100°,%A, 8", {"8 mA", "4"}, {N(90), N(100)}},
        {a + "Val1R = , 25,a, 8, , 75,b, 8", {"a", "b"}, {N(45), N(135)}, {45, -45}},
        // The scale's rotation turns anchors and texts; Inversion puts values inside.
        {"Arc = 0, 180§30, 50\nVal = 2, 0, 10, 8", dix,
         {{-50.22947, -29}, {-29, 50.22947}, {50.22947, 29}}, {30}},
        {a + "Inversion\nVal = 1, 0, 10, 8", zd, {N(0, 42), N(180, 42)}},
        // The straight limit: anchors on the projected tips of the ticks.
        {"Decal = 10000\nArc = 60, 120, 50\nVal = 2, 0, 10, 8", dix,
         {{-29, 50.22947}, {0, 50.22947}, {29, 50.22947}}},
        // With Decal, ValR stands square to the needle, ValD to the drawn radius.
        {"Decal = -100\nArc = 60, 120, 100\nValR = , 2, 0, 10, 8", dix, {dd, dm, df}, {30, 0, -30}},
        {"Decal = -100\nArc = 60, 120, 100\nValD = , 2, 0, 10, 8", dix, {dd, dm, df}, {15.59, 0, -15.59}},
        {"Arc = 60, 120, 100\nValD = , 2, 0, 10, 8", dix, {}, {30, 0, -30}},
        // Straight scales: ValR turns by the relative angle + 90, and by the
        // distance's angle (+ on a Droite, - on a DroiteV), which moves the anchor.
        {"Droite = -50, 50, -30\nValR = R10, 2, 0, 10, 5", dix, {{-50, -25}, {0, -25}, {50, -25}}, {100}},
        {"DroiteV = -50, 50, 30\nValR = , 2, 0, 10, 5", dix, {{35, -50}, {35, 0}, {35, 50}}, {90}},
        {"Droite = -50, 50\nValR = , 1, 0, 10, 10§30", zd, {{-45, 8.66025}, {55, 8.66025}}, {60}},
        {"DroiteV = -50, 50\nValR = , 1, 0, 10, 10§30", zd, {{8.66025, -45}, {8.66025, 55}}, {120}},
        {a + "Val = 1, 0, 10, 8§30", zd, {N(0), N(180)}},  // no distance angle on an arc
        // The absolute angle: ignored by Val, ValR, ValD on a DroiteV only.
        {"DroiteV = -50, 50\nValR = 30, 1, 0, 10, 5", zd, {}, {0}},
        {"DroiteV = -50, 50\nVal1R = 30, 50,x, 5", {"x"}, {}, {30}},
        {a + "ValD = -20, 1, 0, 10, 5", zd, {}, {-20}},
        {a + "ValR = , 2, 0, 10, 8", dix, {}, {90, 0, -90}},  // empty is R0
        {a + "ValR = 45G, 2, 0, 10, 8", dix, {}, {45}},       // a letter behind the number
    };
    for (const auto& c : cas) {
        SCOPED_TRACE(c.prog.toStdString());
        auto s = c.imprimante ? LanceImprimante(c.prog) : Lance(c.prog);
        EXPECT_TRUE(Messages(*s).isEmpty());
        EXPECT_EQ(Contenus(*s), c.textes);
        const auto t = Textes(*s);
        for (int i = 0; i < c.ancres.size() && i < t.size(); ++i) {
            SCOPED_TRACE(i);
            const QPointF p = AncreCentree(*s, t[i]);
            EXPECT_MM(p.x(), c.ancres[i].x());
            EXPECT_MM(p.y(), c.ancres[i].y());
        }
        // The font's escapement is held to a tenth of a degree.
        for (int i = 0; !c.angles.isEmpty() && i < t.size(); ++i)
            EXPECT_NEAR(t[i].angle, c.angles.value(i, c.angles[0]), 0.051) << i;
    }
}

// The texts' starts match the serif face's own metrics, and the pen stays at
// the last anchor.
TEST(Val, TextsUseTheSerifFaceMetrics) {
    auto s = Lance("Arc = 0, 180, 50\nVal = 5, 0, 100, 8");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 6);
    const double em = 10 * 25.4 / 72, chiffre = 0.5, cellule = 0.8911 + 0.2163;
    EXPECT_NEAR(t[5].x1, 58 - 1.5 * chiffre * em, 0.01);
    EXPECT_NEAR(t[5].y1, -Milieu(*s) * cellule * em, 0.01);
    EXPECT_NEAR(t[0].x1, -58 - 0.5 * chiffre * em, 0.01);
    EXPECT_MM(s->etat.Repere.PointX, 58);
    EXPECT_MM(s->etat.Repere.PointY, 0);
}

// Justification letters in the first parameter: "BG" anchors the baseline's
// start, "HD" hangs the text below the anchor, ending on it.
TEST(Val, JustificationLetters) {
    auto s = Lance("Arc = 0, 180, 50\nValR = RBG, 2, 0, 10, 8");
    const auto t = Textes(*s);
    ASSERT_EQ(t.size(), 3);
    EXPECT_MM(t[0].x1, -58);
    EXPECT_MM(t[0].y1, 0);
    EXPECT_NEAR(t[0].angle, 90, 1e-4);
    auto h = Lance("Arc = 0, 180, 50\nValR = 0HD, 2, 0, 10, 8");
    const OpSurface o = Textes(*h).value(1);
    EXPECT_MM(o.x1, -h->pane->TextWidth(o.texte));
    EXPECT_MM(o.y1, 58 + 2 * Milieu(*h) * h->pane->TextHeight(o.texte));
    EXPECT_EQ(Lance("Arc = 0, 180, 50\nValR = 45G, 2, 0, 10, 8")->etat.Val.Just, "G");
}

// Failures of a value command: a lone letter isn't a justification, a bad one
// stays in the angle, an undefined variable in a text has its message.
TEST(Val, FailingParameters) {
    const struct { const char* val; const char* message; } cas[] = {
        {"ValR = G, 2, 0, 10, 8", ""}, {"ValR = 45Q, 2, 0, 10, 8", ""}, {"Val1 = 50, %Rien, 8", "non initialis"}};
    for (const auto& c : cas) {
        auto s = Lance(QStringLiteral("Arc = 0, 180, 50\n") + c.val);
        ASSERT_EQ(Messages(*s).size(), 1) << c.val;
        EXPECT_TRUE(Messages(*s)[0].contains(c.message)) << c.val;
        EXPECT_TRUE(Textes(*s).isEmpty()) << c.val;
    }
}

// Colour N writes nothing but moves the pen; a colour applies to every text.
TEST(Val, Colour) {
    auto s = Lance("Arc = 0, 180, 50\nVal = 2, 0, 10, 8, , , N");
    EXPECT_TRUE(Textes(*s).isEmpty());
    EXPECT_MM(s->etat.Repere.PointX, 58);
    auto c = Lance("Arc = 0, 180, 50\nVal = 2, 0, 10, 8, , , ROUGE");
    EXPECT_EQ(Textes(*c).size(), 3);
    for (const OpSurface& o : Textes(*c)) EXPECT_EQ(o.couleur, RGB(255, 0, 0));
}

// Numbers take the system's decimal symbol, as does a Val1 text marked "txt";
// other Val1 texts are kept as written.
TEST(Val, NumbersUseTheSystemDecimalSymbol) {
    LocaleFixee fr(QLocale(QLocale::French, QLocale::France));
    EXPECT_EQ(Contenus(*Lance("Arc = 0, 180, 50\nVal = 4, 0, 1, 8")),
              QStringList({"0", "0,25", "0,5", "0,75", "1"}));
    EXPECT_EQ(Contenus(*Lance("Arc = 0, 180, 50\nVal1 = 50,2.5§txt, 8, , 100,2.5, 8")),
              QStringList({"2,5", "2.5"}));
    EXPECT_EQ(DecimalSysteme(-0.5), "-0,5");
}

// Rounding to the nearest whole number, a half going down.
TEST(Val, RoundingHalfGoesDown) {
    const std::pair<double, double> cas[] = {{2.5, 2}, {3.5, 3}, {0.5, 0}, {1.5, 1}, {-0.5, -1},
                                             {-1.5, -2}, {2.6, 3}, {3.4, 3}};
    for (const auto& [x, r] : cas) EXPECT_EQ(Arrondi(x), r) << x;
}

// Texts of log values (three significant digits, prefixes, exponents,
// engineering form) and of number formats.
TEST(Val, NumberTexts) {
    using Fn = QString (*)(double, const QString&);
    const Fn L = TexteValeurLog, F = FormatNombre;
    const struct { Fn f; double v; const char* format; const char* texte; } cas[] = {
        {L, 123.456, "", "123"}, {L, 1.23456, "", "1.23"}, {L, 0.0123456, "", "0.0123"},
        {L, 99.96, "", "100"}, {L, 316.5, "", "316"}, {L, 0, "", "0"},
        {L, 4700, "P", "4.7k"}, {L, 0.0047, " p", "4.7m"}, {L, 2.2e6, "P", "2.2M"}, {L, 5, "P", "5"},
        {L, 9e9, "P", "9G"}, {L, 6e-13, "P", "600f"}, {L, 7e17, "P", "700P"}, // three digits still
        {L, 2000, "E", "2E3"}, {L, 0.05, "E", "5E-2"}, {L, 2000, "0.0E00", "2.0E03"},
        {L, 0.05, "0.0E00", "5.0E-02"}, {L, 20000, "S", "20E3"}, {L, 0.05, "S", "50E-3"},
        {L, 0.0005, "S", "500E-6"}, {L, 0.001, "S", "1E-3"}, {L, 470, "S", "470E0"},
        {L, 47000, "0.0S", "47.0E3"},
        {F, 12345, "0.00E+00", "1.23E+04"}, {F, 12345, "00.0E-0", "12.3E3"},
        {F, 0.00012, "0.0E-00", "1.2E-04"}, {F, 9.99, "0.0E-0", "1.0E1"}, {F, 2.5, "0.00", "2.50"},
        {F, 2, "#.##", "2."}, {F, 0.5, "#.##", ".5"},
    };
    for (const auto& c : cas) EXPECT_EQ(c.f(c.v, c.format), c.texte) << c.v << " " << c.format;
}
