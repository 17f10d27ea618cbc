// Part 1.4: the expression evaluator (EvalExpr, EvalTexte, Vrai, Prefixe, ALE).
#include "language/erreur.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/vb.h"
#include "outils.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

// The rewritten text, trimmed, as std::string so that a failure prints it.
std::string T(const QString& expression) {
    Etat e;
    QString t = expression;
    EvalExpr(e, t);
    return vb::Trim(t).toStdString();
}

double V(const QString& expression) {
    Etat e;
    QString t = expression;
    return EvalExpr(e, t).value();
}

// True when EvalExpr fails the line, and leaves no message behind.
bool Echoue(const QString& expression) {
    Etat e;
    QString t = expression;
    try {
        EvalExpr(e, t);
    } catch (const ErreurProvoquee&) {
        EXPECT_TRUE(e.TexteErreur.isEmpty());
        return true;
    }
    return false;
}

std::string ET(const QString& texte) {
    Etat e;
    return EvalTexte(e, texte).toStdString();
}

bool EchoueTexte(const QString& texte) {
    Etat e;
    try {
        EvalTexte(e, texte);
    } catch (const ErreurProvoquee&) {
        EXPECT_TRUE(e.TexteErreur.isEmpty());
        return true;
    }
    return false;
}

bool Vr(const QString& texte) {
    Etat e;
    return Vrai(e, texte);
}

QString Repete(const QString& s, int n) { return s.repeated(n); }

} // namespace

// ---- Edge cases worth testing (Part 1.4)

TEST(EvalExpr, MillionTimesMillionGives1E12AsText) {
    EXPECT_EQ(T("1000000*1000000"), "1E+12");
    EXPECT_EQ(V("1000000*1000000"), 1e12);
}

TEST(EvalExpr, PointOnePlusPointTwoGivesPoint3) {
    EXPECT_EQ(T("0.1+0.2"), ".3");
    EXPECT_EQ(V("0.1+0.2"), 0.3);
}

TEST(EvalExpr, PowersFromTheLeft) {
    EXPECT_EQ(T("2^3^2"), "64");
    EXPECT_EQ(V("2^3^2"), 64);
}

TEST(EvalExpr, MinusTwoSquaredIsMinusFourAtTheStart) {
    EXPECT_EQ(T("-2^2"), "-4");
    EXPECT_EQ(V("-2^2"), -4);
}

TEST(EvalExpr, ThreeTimesMinusTwoSquaredIsTwelve) {
    EXPECT_EQ(T("3*-2^2"), "12");
    EXPECT_EQ(T("(-2^2)"), "4"); // after "(" the "-" belongs to the operand too
}

TEST(EvalExpr, DivisionsBeforeMultiplications) {
    EXPECT_EQ(T("8/2/2"), "2");
    EXPECT_EQ(T("2*3/4"), "1.5");
    // 1/3 is rounded to 7 digits before the product: not 1.
    EXPECT_EQ(T("3*1/3"), ".9999999");
}

TEST(EvalExpr, CommaIsNoDecimalPoint) {
    EXPECT_TRUE(Echoue("1,5"));
    EXPECT_TRUE(Echoue("1,5+1"));
}

TEST(EvalExpr, RightGroupRewrittenFirst) {
    EXPECT_EQ(T("(1+2)*(3+4)"), "21");
    EXPECT_EQ(T("((1+2)*(3+(4-1)))/2"), "9");
}

TEST(EvalExpr, AcosOfMinusOneIsZero) { EXPECT_EQ(T("ACOS(-1)"), "0"); }

TEST(EvalExpr, RndIsRounding) {
    EXPECT_EQ(T("RND2(1.005)"), "1");
    EXPECT_EQ(T("RND3(3.14159)"), "3.142");
    EXPECT_EQ(T("RND0(2.5)"), "2"); // a half goes to the even neighbour
    EXPECT_EQ(T("RND0(3.5)"), "4");
    EXPECT_EQ(T("RND1(0.25)"), ".2");
    EXPECT_EQ(T("RND0(-2.5)"), "-2");
}

TEST(EvalExpr, LogOfThousandIsThree) { EXPECT_EQ(T("LOG(1000)"), "3"); }

TEST(EvalExpr, LettersFail) {
    EXPECT_TRUE(Echoue("12abc"));
    EXPECT_TRUE(Echoue("abc"));
}

TEST(EvalExpr, OneE3IsThousand) {
    EXPECT_EQ(V("1E3"), 1000);
    EXPECT_EQ(T("1E3"), "1E+3"); // a single number isn't rewritten, but gets its "+"
    EXPECT_EQ(T("1e3+1"), "1001");
}

// ---- Failure handling (Part 1.4): each case fails the line, no message

TEST(EvalExprEchec, LetterWhereNumberExpected) {
    EXPECT_TRUE(Echoue("2*A"));
    EXPECT_TRUE(Echoue("A*2"));
    EXPECT_TRUE(Echoue("1+"));
    EXPECT_TRUE(Echoue("*2"));
    EXPECT_TRUE(Echoue("5.*2")); // the left scan starts on a digit
    EXPECT_TRUE(Echoue("()"));
}

TEST(EvalExprEchec, DivisionByZero) {
    EXPECT_TRUE(Echoue("1/0"));
    EXPECT_TRUE(Echoue("0/0"));
    EXPECT_TRUE(Echoue("5MOD0"));
    EXPECT_TRUE(Echoue("0^-1"));
}

TEST(EvalExprEchec, NumberNotClosedInTheMiddle) {
    EXPECT_TRUE(Echoue("(1A)+2"));
    EXPECT_TRUE(Echoue("1+2)+3"));
    EXPECT_TRUE(Echoue("(1+2"));
}

TEST(EvalExprEchec, MoreThanFiftyParentheses) {
    // Nested...
    EXPECT_EQ(T(Repete("(", 50) + "1" + Repete(")", 50)), "1");
    EXPECT_TRUE(Echoue(Repete("(", 51) + "1" + Repete(")", 51)));
    // ...or not: the stack counts every "(", not the depth.
    EXPECT_EQ(T(Repete("(1)+", 49) + "(1)"), "50");
    EXPECT_TRUE(Echoue(Repete("(1)+", 50) + "(1)"));
}

TEST(EvalExprEchec, SquareRootAndLogOutOfRange) {
    EXPECT_TRUE(Echoue("SQR(-1)"));
    EXPECT_TRUE(Echoue("LOG(0)"));
    EXPECT_TRUE(Echoue("LOG(-1)"));
}

TEST(EvalExprEchec, FloatOverflow) {
    EXPECT_TRUE(Echoue("1E38*10"));
    EXPECT_TRUE(Echoue("3E38+3E38"));
    EXPECT_TRUE(Echoue("10^39"));
    EXPECT_TRUE(Echoue("COSH(100)"));
    EXPECT_TRUE(Echoue("1E39+0"));
    EXPECT_TRUE(Echoue("(-8)^.5")); // no real result
}

TEST(EvalExprEchec, NotWithUnclosedParenthesis) { EXPECT_TRUE(EchoueTexte("NOT(1=1")); }

TEST(EvalExprEchec, DoubledComparisonCharacter) {
    EXPECT_TRUE(EchoueTexte("1==1"));
    EXPECT_TRUE(EchoueTexte("1<<2"));
    EXPECT_TRUE(EchoueTexte("1>>2"));
    Etat e;
    EXPECT_THROW(Vrai(e, "2==2"), ErreurProvoquee);
}

TEST(EvalExprEchec, TextLeftUnchangedOnFailure) {
    Etat e;
    QString t = "1/0";
    EXPECT_THROW(EvalExpr(e, t), ErreurProvoquee);
    EXPECT_EQ(t.toStdString(), "1/0");
}

TEST(EvalExprEchec, PositionsAreSixteenBits) {
    EXPECT_TRUE(Echoue(Repete("1+", 20000) + "1"));
}

// ---- The rewriting, step by step

TEST(EvalExpr, EmptyTextIsZero) {
    Etat e;
    QString t;
    EXPECT_EQ(EvalExpr(e, t), 0.0);
    EXPECT_EQ(vb::Trim(t).toStdString(), "0");
}

TEST(EvalExpr, BlankTextHasNoValue) {
    Etat e;
    QString t = "   ";
    EXPECT_FALSE(EvalExpr(e, t).has_value());
}

TEST(EvalExpr, PaddedWithThreeBlanksInFrontAndOneBehind) {
    Etat e;
    QString t = "1+2";
    EvalExpr(e, t);
    EXPECT_EQ(t.toStdString(), "   3 ");
}

TEST(EvalExpr, BlanksRemovedAndUpperCased) {
    EXPECT_EQ(T(" 1 + 2 "), "3");
    EXPECT_EQ(T("sin( 30 )"), ".5");
}

TEST(EvalExpr, SingleNumberKeepsAllItsDigits) {
    EXPECT_EQ(T("3.14159265358979"), "3.14159265358979");
    EXPECT_EQ(V("3.14159265358979"), 3.14159265358979);
    EXPECT_EQ(T("12"), "12");
    EXPECT_EQ(T("(3.14159265358979)"), "3.14159265358979");
    // As soon as an operator applies, 7 digits remain.
    EXPECT_EQ(T("3.14159265358979*1"), "3.141593");
}

TEST(EvalExpr, Signs) {
    EXPECT_EQ(T("1--1"), "2");
    EXPECT_EQ(T("1+-1"), "0");
    EXPECT_EQ(T("1-+1"), "0");
    EXPECT_EQ(T("--1"), "+1");
    EXPECT_EQ(V("--1"), 1);
    EXPECT_EQ(T("1++2"), "3");
    EXPECT_EQ(T("0*-1"), "0");
}

TEST(EvalExpr, AdditionsFromTheLeft) {
    EXPECT_EQ(T("1-2-3"), "-4");
    EXPECT_EQ(T("2+3*4"), "14");
    EXPECT_EQ(T("2*3+4"), "10");
    EXPECT_EQ(T("-1.5+.5"), "-1");
}

TEST(EvalExpr, ExponentsInNumbers) {
    EXPECT_EQ(T("1.5E+10*2"), "3E+10");
    EXPECT_EQ(T("2*1E-5"), "2E-05");
    EXPECT_EQ(T("1E-5*2"), "2E-05");
    EXPECT_EQ(T("1E12+1E12"), "2E+12");
    EXPECT_EQ(T("100000*100"), "1E+07");
    EXPECT_EQ(T("2^-1"), ".5");
}

TEST(EvalExpr, Modulo) {
    EXPECT_EQ(T("7MOD3"), "1");
    EXPECT_EQ(T("-7MOD3"), "-1");
    EXPECT_EQ(T("7MOD-3"), "1");
    EXPECT_EQ(T("7.5MOD2"), "0"); // 7.5 rounds to 8
    EXPECT_EQ(T("6.5MOD4"), "2"); // 6.5 rounds to 6
    EXPECT_EQ(T("7 mod 3+1"), "2");
    EXPECT_EQ(T("2*7MOD4"), "2"); // 14 MOD 4: the product goes first
}

TEST(EvalExpr, PowerOfAGroup) {
    EXPECT_EQ(T("(2)^3"), "8");
    EXPECT_EQ(T("(1+2)^2"), "9");
    EXPECT_EQ(T("-(2)^2"), "-4");
    EXPECT_EQ(T("2*-(1+2)^2"), "-18");
}

TEST(EvalExpr, PowerAfterAFunctionTakesTheGroupAlone) {
    // Step 11 comes before step 12: SIN(30)^2 powers the group and leaves
    // "SIN900", a letter where a number is expected.
    EXPECT_TRUE(Echoue("SIN(30)^2"));
    EXPECT_EQ(T("(SIN(30))^2"), ".25");
}

TEST(EvalExpr, ParenthesesRemoved) {
    EXPECT_EQ(T("(5)"), "5");
    EXPECT_EQ(T("-(5)"), "-5");
    EXPECT_EQ(T("((2+3))*2"), "10");
}

TEST(EvalExpr, Trigonometry) {
    EXPECT_EQ(T("SIN(30)"), ".5");
    EXPECT_EQ(T("SIN(30)*40"), "20");
    EXPECT_EQ(T("COS(60)"), ".5");
    EXPECT_EQ(T("COS(0)"), "1");
    EXPECT_EQ(T("TAN(45)"), "1");
    EXPECT_EQ(T("SIN(-90)"), "-1");
}

TEST(EvalExpr, InverseTrigonometryInDegrees) {
    EXPECT_EQ(T("ASIN(1)"), "90");
    EXPECT_EQ(T("ASIN(2)"), "90");
    EXPECT_EQ(T("ASIN(-1)"), "-90");
    EXPECT_EQ(T("ASIN(.5)"), "30");
    EXPECT_EQ(T("ACOS(1)"), "0");
    EXPECT_EQ(T("ACOS(2)"), "0");
    EXPECT_EQ(T("ACOS(0)"), "90");
    EXPECT_EQ(T("ACOS(.5)"), "60");
    EXPECT_EQ(T("ATAN(1)"), "45");
    EXPECT_EQ(T("ATAN(-1)"), "-45");
}

TEST(EvalExpr, OtherFunctions) {
    EXPECT_EQ(T("SINH(0)"), "0");
    EXPECT_EQ(T("COSH(0)"), "1");
    EXPECT_EQ(T("SINH(1)"), "1.175201");
    EXPECT_EQ(T("COSH(1)"), "1.543081");
    EXPECT_EQ(T("LOG(100)"), "2");
    EXPECT_EQ(T("SQR(16)"), "4");
    EXPECT_EQ(T("SQR(2)"), "1.414214");
    EXPECT_EQ(T("ABS(-3)"), "3");
    EXPECT_EQ(T("ABS(3-5)"), "2");
    EXPECT_EQ(T("SGN(-3)"), "-1");
    EXPECT_EQ(T("SGN(0)"), "0");
    EXPECT_EQ(T("SGN(.1)"), "1");
    EXPECT_EQ(T("FIX(-2.5)"), "-2");
    EXPECT_EQ(T("FIX(2.7)"), "2");
    EXPECT_EQ(T("SQR(SQR(16))"), "2");
}

TEST(EvalExpr, UnknownFunctionLeavesLetters) {
    EXPECT_TRUE(Echoue("FOO(2)"));
    EXPECT_TRUE(Echoue("RND(2)")); // RND needs its digit
}

TEST(EvalExpr, Arg) {
    EXPECT_EQ(T("ARG(1,1)"), "45");
    EXPECT_EQ(T("ARG(1,0)"), "0");
    EXPECT_EQ(T("ARG(-1,0)"), "180");
    EXPECT_EQ(T("ARG(-1,1)"), "135");
    EXPECT_EQ(T("ARG(-1,-1)"), "-135");
    EXPECT_EQ(T("ARG(0,-1)"), "-90");
    EXPECT_EQ(T("ARG(0,1)"), "90");
    EXPECT_EQ(T("ARG(0,0)"), "90");
    EXPECT_EQ(T("ARG(1,1)*2"), "90");
    EXPECT_EQ(T("ARG(2-1,1+0)"), "45");
    EXPECT_EQ(T("ARG(1,1)+ARG(-1,0)"), "225");
    EXPECT_EQ(T("ARG(1,1"), "45"); // closed by the end of the text
    EXPECT_TRUE(Echoue("ARG(1)"));
}

TEST(EvalExpr, AleGivesAFractionAndSeedsWithNegatives) {
    Etat e;
    QString t = "ALE(1)";
    const double v = EvalExpr(e, t).value();
    EXPECT_GE(v, 0);
    EXPECT_LT(v, 1);
    EXPECT_FALSE(t.contains(u','));

    Etat e1, e2;
    QString a = "ALE(-3)", b = "ALE(-3)";
    EvalExpr(e1, a);
    EvalExpr(e2, b);
    EXPECT_EQ(a, b);
    QString c = "ALE(-3)";
    EvalExpr(e1, c); // seeding again gives the same number again
    EXPECT_EQ(a, c);
}

TEST(Rnd, SeededSequenceRepeats) {
    Etat e1, e2;
    const float a = Rnd(e1, -7);
    const float b = Rnd(e1);
    EXPECT_EQ(Rnd(e2, -7), a);
    EXPECT_EQ(Rnd(e2), b);
    for (int i = 0; i < 1000; ++i) {
        const float r = Rnd(e1);
        ASSERT_GE(r, 0.0f);
        ASSERT_LT(r, 1.0f);
    }
}

// ---- Vrai

TEST(Vrai, EmptyIsFalse) {
    EXPECT_FALSE(Vr(""));
    EXPECT_FALSE(Vr("   "));
}

TEST(Vrai, NumberIsTrueWhenNotZero) {
    EXPECT_TRUE(Vr("1"));
    EXPECT_TRUE(Vr("-2"));
    EXPECT_FALSE(Vr("0"));
    EXPECT_FALSE(Vr("1-1"));
}

TEST(Vrai, Comparisons) {
    EXPECT_TRUE(Vr("1<2"));
    EXPECT_FALSE(Vr("2<1"));
    EXPECT_TRUE(Vr("2<=2"));
    EXPECT_TRUE(Vr("2=<2"));
    EXPECT_TRUE(Vr("2=2"));
    EXPECT_FALSE(Vr("2=3"));
    EXPECT_TRUE(Vr("3>=2"));
    EXPECT_TRUE(Vr("3=>3"));
    EXPECT_TRUE(Vr("3>2"));
    EXPECT_TRUE(Vr("1<>2"));
    EXPECT_TRUE(Vr("1><2"));
    EXPECT_FALSE(Vr("2<>2"));
    EXPECT_TRUE(Vr("1+1=2"));
    EXPECT_TRUE(Vr("0.1+0.2=0.3"));
    EXPECT_TRUE(Vr("=0")); // the empty side counts as 0
}

TEST(Vrai, EnclosingParenthesesRemoved) {
    EXPECT_TRUE(Vr("(1<2)"));
    EXPECT_TRUE(Vr("(1)<(2)")); // not one pair around the whole text
    EXPECT_TRUE(Vr("(1+1)*2=4"));
}

TEST(Vrai, LastComparisonSplits) {
    Etat e;
    EXPECT_THROW(Vrai(e, "1<2<3"), ErreurProvoquee); // left side "1<2" is no number
}

// ---- EvalTexte

TEST(EvalTexte, NumberWithoutRelation) {
    EXPECT_EQ(ET("1+1"), "2");
    EXPECT_EQ(ET("0.1+0.2"), ".3");
    EXPECT_EQ(ET("3.14159265358979"), "3.14159265358979");
    EXPECT_EQ(ET("1E3"), "1000");
    // The 64-bit value read from "1E+12", printed with 15 digits.
    EXPECT_EQ(ET("1000000*1000000"), "1000000000000");
    EXPECT_EQ(ET(""), "0");
    EXPECT_EQ(ET("  "), "0"); // its copy without blanks is the empty text
}

TEST(EvalTexte, RelationGivesOneOrZero) {
    EXPECT_EQ(ET("1<2"), "1");
    EXPECT_EQ(ET("2 < 1"), "0");
    EXPECT_EQ(ET("2*3 = 6"), "1");
}

TEST(EvalTexte, Logic) {
    EXPECT_EQ(ET("1=1 AND 2=2"), "1");
    EXPECT_EQ(ET("1=1 AND 2=3"), "0");
    EXPECT_EQ(ET("1=2 OR 2=2"), "1");
    EXPECT_EQ(ET("1=2 OR 2=3"), "0");
    EXPECT_EQ(ET("1=1 XOR 2=2"), "0");
    EXPECT_EQ(ET("1=1 XOR 1=2"), "1");
    EXPECT_EQ(ET("1=2 XOR 1=1"), "1");
    EXPECT_EQ(ET("1=2 XOR 1=3"), "0");
    EXPECT_EQ(ET("3 > 2 and 1 < 2"), "1");
}

TEST(EvalTexte, NotBindsFirst) {
    EXPECT_EQ(ET("NOT 1=2"), "1");
    EXPECT_EQ(ET("NOT(1=1)"), "0");
    EXPECT_EQ(ET("NOT 1=2 AND 1=1"), "1");
    EXPECT_EQ(ET("NOT (1=1 AND 2=2)"), "0");
    EXPECT_EQ(ET("NOT NOT 1=1"), "1");
    EXPECT_EQ(ET("NOT 0"), "1");
}

TEST(EvalTexte, AndBeforeOrBeforeXor) {
    EXPECT_EQ(ET("1=1 OR 1=2 AND 1=3"), "1");
    EXPECT_EQ(ET("1=2 AND 1=3 OR 1=1"), "1");
    EXPECT_EQ(ET("1=1 XOR 1=1 OR 1=2"), "0");
}

TEST(EvalTexte, ParenthesesGroupLogic) {
    EXPECT_EQ(ET("(1=1 OR 1=2) AND 3=3"), "1");
    EXPECT_EQ(ET("(1=2 OR 1=3) AND 3=3"), "0");
    EXPECT_EQ(ET("3=3 AND (1=2 OR 1=1)"), "1");
    EXPECT_EQ(ET("1=1 AND (1+1)=2"), "1");
}

TEST(EvalTexte, LogicResultIsANumberInAComparison) {
    EXPECT_EQ(ET("(1=1 AND 2=2)=1"), "1");
    EXPECT_EQ(ET("(1=1 AND 2=3)=1"), "0");
}

TEST(EvalTexte, CountingFormsFirst) {
    EXPECT_EQ(ET("NBP(1,2,(3,4))"), "4");
    EXPECT_EQ(ET("INS(\"abc\",\"B\")=2"), "1");
    EXPECT_EQ(ET("nbp (a,b)+1"), "3"); // met again without blanks, in upper case
}

// ---- Prefixe

TEST(Prefixe, ScalesByTheFirstLimitReached) {
    QString l;
    EXPECT_EQ(Prefixe(1.5e9f, l), 1.5f);
    EXPECT_EQ(l.toStdString(), "G");
    EXPECT_EQ(Prefixe(2000, l), 2.0f);
    EXPECT_EQ(l.toStdString(), "k");
    EXPECT_EQ(Prefixe(1000, l), 1.0f);
    EXPECT_EQ(l.toStdString(), "k");
    EXPECT_EQ(Prefixe(999, l), 999.0f);
    EXPECT_EQ(l.toStdString(), "");
    EXPECT_EQ(Prefixe(1, l), 1.0f);
    EXPECT_EQ(l.toStdString(), "");
    EXPECT_EQ(Prefixe(0.5f, l), 500.0f);
    EXPECT_EQ(l.toStdString(), "m");
    EXPECT_EQ(Prefixe(1e-6f, l), 1.0f);
    EXPECT_EQ(l, QStringLiteral("µ"));
    EXPECT_EQ(Prefixe(4.7e-9f, l), 4.7f);
    EXPECT_EQ(l.toStdString(), "n");
    EXPECT_EQ(Prefixe(1e18f, l), 1.0f);
    EXPECT_EQ(l.toStdString(), "E");
    EXPECT_EQ(Prefixe(3e15f, l), 3.0f);
    EXPECT_EQ(l.toStdString(), "P");
    EXPECT_FLOAT_EQ(Prefixe(2.2e-12f, l), 2.2f);
    EXPECT_EQ(l.toStdString(), "p");
    EXPECT_FLOAT_EQ(Prefixe(1e-15f, l), 1.0f);
    EXPECT_EQ(l.toStdString(), "f");
    EXPECT_FLOAT_EQ(Prefixe(1e-18f, l), 1.0f);
    EXPECT_EQ(l.toStdString(), "a");
}

TEST(Prefixe, BelowAllLimitsOrNegativeUnchanged) {
    QString l = "x";
    EXPECT_EQ(Prefixe(5e-19f, l), 5e-19f);
    EXPECT_EQ(l.toStdString(), "");
    EXPECT_EQ(Prefixe(-2000, l), -2000.0f);
    EXPECT_EQ(l.toStdString(), "");
    EXPECT_EQ(Prefixe(0, l), 0.0f);
    EXPECT_EQ(l.toStdString(), "");
}

// Part 1.4: a comma is no decimal point; in a command it ends the parameter.
TEST(EvalExpr, CommaEndsTheParameterInACommand) {
    // "1,5" is two parameters, not one and a half.
    auto s = Lance("CT = 1,5\n%A == 1,5\n");
    EXPECT_MM(s->etat.Repere.CTx, 1);
    EXPECT_MM(s->etat.Repere.CTy, 5);
    // The whole rest of a "==" line is one expression: there the comma fails the
    // evaluator, which leaves no text of its own in the box.
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_TRUE(Messages(*s)[0].startsWith(
        QStringLiteral("Erreur dans la ligne : 2: %A == 1,5\r\n\r\n%iRec\t= 1\t")))
        << Messages(*s)[0].toStdString();
}
