// The expression evaluator: EvalExpr rewrites the text to its value, EvalTexte adds
// relations and logic, Vrai decides a condition; Prefixe and the random draw.
#include "language/erreur.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/vb.h"
#include "outils.h"

namespace {

// The rewritten text, trimmed.
std::string T(const QString& expr) {
    Etat e;
    QString t = expr;
    EvalExpr(e, t);
    return vb::Trim(t).toStdString();
}
void Reecrit(std::initializer_list<std::pair<const char*, const char*>> cas) {
    for (const auto& [expr, attendu] : cas) EXPECT_EQ(T(expr), attendu) << expr;
}

// True when the text fails the line and leaves no message text of its own.
template <typename F> bool EchoueAvec(F evalue) {
    Etat e;
    try {
        evalue(e);
    } catch (const ErreurProvoquee&) {
        EXPECT_TRUE(e.TexteErreur.isEmpty());
        return true;
    }
    return false;
}
bool Echoue(const QString& expr) {
    return EchoueAvec([&](Etat& e) { QString t = expr; EvalExpr(e, t); });
}

std::string ET(const QString& texte) {
    Etat e;
    return EvalTexte(e, texte).toStdString();
}

} // namespace

TEST(EvalExpr, SevenDigitsOnceAnOperatorApplies) {
    // A single number keeps all its digits; blanks go and names are upper-cased.
    Reecrit({{"1000000*1000000", "1E+12"}, {"0.1+0.2", ".3"}, {"100000*100", "1E+07"},
             {"3.14159265358979", "3.14159265358979"}, {"(3.14159265358979)", "3.14159265358979"},
             {"3.14159265358979*1", "3.141593"}, {"12", "12"}, {"1E3", "1E+3"}, {"1e3+1", "1001"},
             {"1.5E+10*2", "3E+10"}, {"2*1E-5", "2E-05"}, {"1E-5*2", "2E-05"}, {"1E12+1E12", "2E+12"},
             {" 1 + 2 ", "3"}, {"sin( 30 )", ".5"}, {"", "0"}});
    // The value is the number read back from the text.
    const std::pair<const char*, double> valeurs[] = {
        {"1000000*1000000", 1e12}, {"0.1+0.2", 0.3}, {"3.14159265358979", 3.14159265358979},
        {"1E3", 1000}, {"--1", 1}, {"2^3^2", 64}, {"-2^2", -4}};
    for (const auto& [expr, v] : valeurs) {
        Etat e;
        QString t = expr;
        EXPECT_EQ(EvalExpr(e, t).value(), v) << expr;
    }
    Etat e;
    QString t = "1+2", blanc = "   ";
    EvalExpr(e, t);
    EXPECT_EQ(t.toStdString(), "   3 "); // three blanks in front, one behind
    EXPECT_FALSE(EvalExpr(e, blanc).has_value());
}

TEST(EvalExpr, OperatorOrder) {
    Reecrit({// Powers from the left; a sign at the start or after an operator or "(" is the operand's.
             {"2^3^2", "64"}, {"-2^2", "-4"}, {"3*-2^2", "12"}, {"(-2^2)", "4"}, {"2^-1", ".5"},
             {"(2)^3", "8"}, {"(1+2)^2", "9"}, {"-(2)^2", "-4"}, {"2*-(1+2)^2", "-18"},
             {"(SIN(30))^2", ".25"},
             // Divisions before multiplications; 1/3 is rounded before the product.
             {"8/2/2", "2"}, {"2*3/4", "1.5"}, {"3*1/3", ".9999999"},
             {"1-2-3", "-4"}, {"2+3*4", "14"}, {"2*3+4", "10"}, {"-1.5+.5", "-1"},
             {"1--1", "2"}, {"1+-1", "0"}, {"1-+1", "0"}, {"--1", "+1"}, {"1++2", "3"}, {"0*-1", "0"},
             // MOD rounds its operands half to even, after the products.
             {"7MOD3", "1"}, {"-7MOD3", "-1"}, {"7MOD-3", "1"}, {"7.5MOD2", "0"}, {"6.5MOD4", "2"},
             {"7 mod 3+1", "2"}, {"2*7MOD4", "2"},
             // Groups, the rightmost first.
             {"(1+2)*(3+4)", "21"}, {"((1+2)*(3+(4-1)))/2", "9"}, {"-(5)", "-5"}, {"((2+3))*2", "10"}});
}

TEST(EvalExpr, FunctionsInDegrees) {
    Reecrit({{"SIN(30)*40", "20"}, {"COS(60)", ".5"}, {"TAN(45)", "1"}, {"SIN(-90)", "-1"},
             {"ASIN(2)", "90"}, {"ASIN(-1)", "-90"}, {"ASIN(.5)", "30"}, {"ACOS(-1)", "0"},
             {"ACOS(2)", "0"}, {"ACOS(0)", "90"}, {"ACOS(.5)", "60"}, {"ATAN(-1)", "-45"},
             {"SINH(1)", "1.175201"}, {"COSH(1)", "1.543081"}, {"LOG(1000)", "3"}, {"SQR(2)", "1.414214"},
             {"ABS(3-5)", "2"}, {"SGN(-3)", "-1"}, {"SGN(0)", "0"}, {"SGN(.1)", "1"}, {"FIX(-2.5)", "-2"},
             {"FIX(2.7)", "2"}, {"SQR(SQR(16))", "2"},
             // RNDn rounds to n decimals, a half to the even neighbour.
             {"RND2(1.005)", "1"}, {"RND3(3.14159)", "3.142"}, {"RND0(2.5)", "2"}, {"RND0(3.5)", "4"},
             {"RND1(0.25)", ".2"}, {"RND0(-2.5)", "-2"},
             // ARG(x,y): the angle of a point; the end of the text closes the group.
             {"ARG(1,1)", "45"}, {"ARG(-1,0)", "180"}, {"ARG(-1,1)", "135"}, {"ARG(-1,-1)", "-135"},
             {"ARG(0,-1)", "-90"}, {"ARG(0,0)", "90"}, {"ARG(1,0)", "0"}, {"ARG(1,1)*2", "90"},
             {"ARG(2-1,1+0)", "45"}, {"ARG(1,1)+ARG(-1,0)", "225"}, {"ARG(1,1", "45"}});
}

TEST(EvalExpr, FailuresFailTheLineWithoutAMessage) {
    for (const char* expr :
         {"1,5", "1,5+1", "12abc", "abc", "2*A", "A*2", "1+", "*2", "5.*2", "()", "(1A)+2", "1+2)+3", "(1+2",
          "1/0", "0/0", "5MOD0", "0^-1", "SQR(-1)", "LOG(0)", "LOG(-1)", "1E38*10", "3E38+3E38", "10^39",
          "COSH(100)", "1E39+0", "(-8)^.5", "FOO(2)", "RND(2)", "ARG(1)",
          // The power applies to the group before the function is met: "SIN900" remains.
          "SIN(30)^2"})
        EXPECT_TRUE(Echoue(expr)) << expr;
    Etat e;
    QString t = "1/0";
    EXPECT_THROW(EvalExpr(e, t), ErreurProvoquee);
    EXPECT_EQ(t.toStdString(), "1/0");
}

TEST(EvalExpr, FiftyParenthesesAtMostAndPositionsOfSixteenBits) {
    EXPECT_EQ(T(QString("(").repeated(50) + "1" + QString(")").repeated(50)), "1");
    EXPECT_TRUE(Echoue(QString("(").repeated(51) + "1" + QString(")").repeated(51)));
    // Every "(" counts, nested or not.
    EXPECT_EQ(T(QString("(1)+").repeated(49) + "(1)"), "50");
    EXPECT_TRUE(Echoue(QString("(1)+").repeated(50) + "(1)"));
    EXPECT_TRUE(Echoue(QString("1+").repeated(20000) + "1"));
}

TEST(EvalExpr, CommaEndsTheParameterInACommand) {
    auto s = Lance("CT = 1,5\n%A == 1,5\n");
    EXPECT_MM(s->etat.Repere.CTx, 1);
    EXPECT_MM(s->etat.Repere.CTy, 5);
    // The whole rest of a "==" line is one expression, which the comma fails.
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_TRUE(Messages(*s)[0].startsWith("Erreur dans la ligne : 2: %A == 1,5\r\n\r\n%iRec\t= 1\t"))
        << Messages(*s)[0].toStdString();
}

TEST(EvalExpr, AleDrawsAFractionAndANegativeArgumentSeeds) {
    Etat e, e2;
    QString t = "ALE(1)", a = "ALE(-3)", b = "ALE(-3)", c = "ALE(-3)";
    const double v = EvalExpr(e, t).value();
    EXPECT_TRUE(v >= 0 && v < 1) << v;
    EvalExpr(e, a);
    EvalExpr(e2, b);
    EvalExpr(e, c);
    EXPECT_EQ(a, b);
    EXPECT_EQ(a, c);
    // The same text draws again each time, however it is spelt.
    QString d1 = "ALE(1)", d2 = "ALE(1)", d3 = "a le (1)";
    const double x1 = EvalExpr(e, d1).value(), x2 = EvalExpr(e, d2).value(), x3 = EvalExpr(e, d3).value();
    EXPECT_TRUE(x1 != x2 && x2 != x3) << x1 << " " << x2 << " " << x3;
    const float r = Rnd(e, -7), r2 = Rnd(e);
    EXPECT_EQ(Rnd(e2, -7), r);
    EXPECT_EQ(Rnd(e2), r2);
    for (int i = 0; i < 1000; ++i) {
        const float x = Rnd(e);
        ASSERT_TRUE(x >= 0 && x < 1) << x;
    }
}

TEST(Vrai, ConditionsAndComparisons) {
    const std::pair<const char*, bool> cas[] = {
        {"", false}, {"   ", false}, {"-2", true}, {"0", false}, {"1-1", false}, {"2<1", false},
        {"2<=2", true}, {"2=<2", true}, {"2=3", false}, {"3>=2", true}, {"3=>3", true}, {"3>2", true},
        {"1<>2", true}, {"1><2", true}, {"2<>2", false}, {"1+1=2", true}, {"0.1+0.2=0.3", true},
        {"=0", true}, {"(1<2)", true}, {"(1)<(2)", true}, {"(1+1)*2=4", true}};
    for (const auto& [texte, vrai] : cas) {
        Etat e;
        EXPECT_EQ(Vrai(e, texte), vrai) << texte;
    }
    // The last comparison splits: "1<2" is no number; a doubled character fails.
    for (const char* texte : {"1<2<3", "2==2"})
        EXPECT_TRUE(EchoueAvec([&](Etat& e) { Vrai(e, texte); })) << texte;
}

TEST(EvalTexte, RelationsAndLogicGiveOneOrZero) {
    const std::pair<const char*, const char*> cas[] = {
        // Without relation, the number with 15 digits.
        {"0.1+0.2", ".3"}, {"3.14159265358979", "3.14159265358979"}, {"1E3", "1000"},
        {"1000000*1000000", "1000000000000"}, {"", "0"}, {"  ", "0"},
        {"1<2", "1"}, {"2 < 1", "0"}, {"2*3 = 6", "1"},
        {"1=1 AND 2=3", "0"}, {"1=2 OR 2=2", "1"}, {"1=2 OR 2=3", "0"}, {"1=1 XOR 2=2", "0"},
        {"1=2 XOR 1=1", "1"}, {"1=2 XOR 1=3", "0"}, {"3 > 2 and 1 < 2", "1"},
        // NOT binds first, then AND, OR, XOR.
        {"NOT 1=2", "1"}, {"NOT(1=1)", "0"}, {"NOT 1=2 AND 1=1", "1"}, {"NOT (1=1 AND 2=2)", "0"},
        {"NOT NOT 1=1", "1"}, {"NOT 0", "1"}, {"1=1 OR 1=2 AND 1=3", "1"}, {"1=2 AND 1=3 OR 1=1", "1"},
        {"1=1 XOR 1=1 OR 1=2", "0"}, {"(1=2 OR 1=3) AND 3=3", "0"}, {"3=3 AND (1=2 OR 1=1)", "1"},
        {"1=1 AND (1+1)=2", "1"}, {"(1=1 AND 2=2)=1", "1"}, {"(1=1 AND 2=3)=1", "0"},
        // The counting forms first, met again without blanks and in upper case.
        {"NBP(1,2,(3,4))", "4"}, {"INS(\"abc\",\"B\")=2", "1"}, {"nbp (a,b)+1", "3"}};
    for (const auto& [texte, attendu] : cas) EXPECT_EQ(ET(texte), attendu) << texte;
    for (const char* texte : {"NOT(1=1", "1==1", "1<<2", "1>>2"})
        EXPECT_TRUE(EchoueAvec([&](Etat& e) { EvalTexte(e, texte); })) << texte;
}

TEST(Prefixe, ScalesByTheFirstLimitReached) {
    const std::tuple<float, float, const char*> cas[] = {
        {1e18f, 1, "E"}, {3e15f, 3, "P"}, {1.5e9f, 1.5f, "G"}, {2000, 2, "k"}, {1000, 1, "k"},
        {999, 999, ""}, {1, 1, ""}, {0.5f, 500, "m"}, {1e-6f, 1, "µ"}, {4.7e-9f, 4.7f, "n"},
        {2.2e-12f, 2.2f, "p"}, {1e-15f, 1, "f"}, {1e-18f, 1, "a"},
        // Below every limit, negative or zero: unchanged, no letter.
        {5e-19f, 5e-19f, ""}, {-2000, -2000, ""}, {0, 0, ""}};
    for (const auto& [v, attendu, lettre] : cas) {
        QString l = "x";
        EXPECT_FLOAT_EQ(Prefixe(v, l), attendu) << v;
        EXPECT_EQ(l, QString::fromUtf8(lettre)) << v;
    }
}
