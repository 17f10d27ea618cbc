// Part 1.3: variables and substitution.
#include "language/variables.h"
#include "outils.h"

namespace {

struct Vars : ::testing::Test {
    Session s{QString()};
    Etat& e = s.etat;
    void SetUp() override {
        e.NiveauCourant = 1;
        e.PileFic[1].MaxVar = 33;
    }
    void Pose(int niveau, const QString& nom, const QString& valeur) { EcritVarTxt(e, niveau, nom, valeur); }
};

} // namespace

TEST(Variables, AssignmentWithEqualsKeepsTheText) {
    auto s = Lance("%A = 1\n%A = %A+1\n");
    EXPECT_EQ(Variable(*s, "%A"), QStringLiteral("1+1"));
}

TEST(Variables, DoubleEqualsEvaluates) {
    auto s = Lance("%A = 1\n%A == %A+1\n");
    EXPECT_EQ(Variable(*s, "%A"), QStringLiteral("2"));
}

TEST(Variables, QuotedValueKeepsItsBlanks) {
    auto s = Lance("%X = \" a \"\n");
    EXPECT_EQ(Variable(*s, "%X"), QStringLiteral(" a "));
}

TEST(Variables, LessThanStoresTheCharacters) {
    auto s = Lance("%B = 5\n%A =< %B\n");
    EXPECT_EQ(Variable(*s, "%A"), QStringLiteral("%B"));
}

TEST(Variables, ValueReferringToItselfFails) {
    auto s = Lance("%A =< %A\nCT = %A, 1\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    // No text of its own (Part 1.3): the listing of variables follows the line.
    EXPECT_TRUE(Messages(*s)[0].startsWith(
        QStringLiteral("Erreur dans la ligne : 2: CT = %A, 1\r\n\r\n%")))
        << Messages(*s)[0].toStdString();
}

TEST(Variables, ThirtyFourthVariableOfAMainProgramFails) {
    QString p;
    for (int i = 1; i <= 34; ++i) p += QStringLiteral("%V%1 = %1\n").arg(i);
    auto s = Lance(p);
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_TRUE(Messages(*s)[0].startsWith(
        QStringLiteral("Erreur dans la ligne : 34: %V34 = 34\r\n\r\n%")))
        << Messages(*s)[0].toStdString();
    EXPECT_EQ(s->etat.PileFic[1].NbVar, 33);
}

TEST(Variables, OptionsRaisesMaxVarHeldAt64) {
    QString p = QStringLiteral("Options#$ = Var,100,,OptMaxVar\n");
    for (int i = 1; i <= 64; ++i) p += QStringLiteral("%V%1 = %1\n").arg(i);
    auto s = Lance(p);
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_EQ(s->etat.PileFic[1].MaxVar, 64);
    auto t = Lance(p + QStringLiteral("%V65 = 1\n"));
    ASSERT_EQ(t->hote.Messages().size(), 1);
}

TEST(Variables, NamesCompareInUpperCaseAndKeepTheirSpelling) {
    auto s = Lance("%Rayon = 10\n%RAYON = 12\nCT = %rayon, 0\n");
    EXPECT_EQ(s->etat.PileFic[1].NbVar, 3); // %Rayon, %CTx, %CTy
    EXPECT_EQ(s->etat.PileFic[1].NomVar[1], QStringLiteral("%Rayon"));
    EXPECT_MM(s->etat.Repere.CTx, 12);
}

TEST_F(Vars, ChercheVarCutsTheNameAtItsTerminators) {
    Pose(1, "%A", "3");
    Pose(1, "%Long", "4");
    EXPECT_EQ(ChercheVar(e, "%a+1", 1), 1);
    EXPECT_EQ(ChercheVar(e, " %LONG)", 1), 2);
    EXPECT_EQ(ChercheVar(e, "%AB", 1), 0);
    EXPECT_EQ(ChercheVar(e, "%A§2", 1), 1);
    EXPECT_EQ(NomVar(" %Abc = 3"), QStringLiteral("%ABC"));
}

TEST_F(Vars, RemplaceVarSubstitutesAndRestartsInPlace) {
    Pose(1, "%A", "%B*2");
    Pose(1, "%B", "5");
    QString t = "1+%A";
    EXPECT_EQ(RemplaceVar(e, t), 0);
    EXPECT_EQ(t, QStringLiteral("1+5*2"));
}

TEST_F(Vars, RemplaceVarLeavesUnknownNamesAndSaysSo) {
    QString t = "%Inconnu+1";
    EXPECT_NE(RemplaceVar(e, t), 0);
    EXPECT_EQ(t, QStringLiteral("%Inconnu+1"));
    QString u = "100 % sur";
    EXPECT_EQ(RemplaceVar(e, u), 0); // "% " is no variable
    QString v = "50%";
    EXPECT_EQ(RemplaceVar(e, v), 0);
}

TEST_F(Vars, BlankAfterANameIsTakenWithIt) {
    Pose(1, "%A", "5");
    QString t = "%A mm";
    RemplaceVar(e, t);
    EXPECT_EQ(t, QStringLiteral("5mm"));
    QString u = "%A AND 1";
    RemplaceVar(e, u);
    EXPECT_EQ(u, QStringLiteral("5 AND 1"));
}

TEST_F(Vars, ListIndexForms) {
    Pose(1, "%L", "a,b,c");
    Pose(1, "%S", "x§y§z");
    Pose(1, "%I", "2");
    QString t = "%L(2)";
    RemplaceVar(e, t);
    EXPECT_EQ(t, QStringLiteral("b"));
    t = "%L(#3)";
    RemplaceVar(e, t);
    EXPECT_EQ(t, QStringLiteral("b")); // the 3rd character of "a,b,c"
    t = "%L(#9)";
    RemplaceVar(e, t);
    EXPECT_EQ(t, QString());
    t = "%S(§3)";
    RemplaceVar(e, t);
    EXPECT_EQ(t, QStringLiteral("z"));
    t = "%L(%I)";
    RemplaceVar(e, t);
    EXPECT_EQ(t, QStringLiteral("b"));
    Pose(1, "%P", "1--2--3");
    t = "%P(§\"--\"2)";
    RemplaceVar(e, t);
    EXPECT_EQ(t, QStringLiteral("2"));
    t = "%L(4)";
    EXPECT_THROW(RemplaceVar(e, t), ErreurProvoquee);
}

TEST_F(Vars, VarFormsAreReplacedFromTheLast) {
    Pose(1, "%N", "%X");
    QString t = "VAR(%N)";
    RemplaceVar(e, t);
    EXPECT_EQ(t, QStringLiteral("%X")); // the % of the value is not substituted again
}

TEST_F(Vars, SubstitutionLongerThan4096Fails) {
    Pose(1, "%A", QString(3000, u'x'));
    QString t = "%A+%A";
    EXPECT_THROW(RemplaceVar(e, t), ErreurProvoquee);
}

TEST_F(Vars, MutuallyReferringValuesFailInsteadOfLooping) {
    Pose(1, "%A", "%B");
    Pose(1, "%B", "%A");
    QString t = "%A+1";
    EXPECT_THROW(RemplaceVar(e, t), ErreurProvoquee);
}

TEST_F(Vars, PredefinedVariables) {
    auto lit = [&](const char* n) {
        QString t = QLatin1String(n);
        RemplaceVar(e, t);
        return t;
    };
    EXPECT_EQ(lit("%iRec"), QStringLiteral("1"));
    EXPECT_EQ(lit("%PI"), QStringLiteral("3.14159265358979"));
    EXPECT_EQ(lit("%CR"), QStringLiteral("\r"));
    EXPECT_EQ(lit("%Imp"), QStringLiteral("0"));
    EXPECT_EQ(lit("%EOF"), QStringLiteral("1"));
    EXPECT_EQ(lit("%Pol"), QStringLiteral("Times New Roman"));
    EXPECT_EQ(lit("%Datex").right(1), QStringLiteral("x")); // no check of the name's end
    Pose(1, "%CR", "user");
    EXPECT_EQ(lit("%CR"), QStringLiteral("user")); // a user variable comes first
}

TEST_F(Vars, SharedLevelThroughTheMarker) {
    e.NiveauCourant = 2;
    EcritVarTxt(e, 2, "%IRE$#0x", "5");
    EXPECT_EQ(e.PileFic[0].NbVar, 1);
    EXPECT_EQ(e.PileFic[2].NbVar, 0);
    e.NiveauCourant = 3;
    QString t = "%IRE$#0x+1";
    RemplaceVar(e, t);
    EXPECT_EQ(t, QStringLiteral("5+1"));
    QString u = "2+%IRE$#0nope";
    RemplaceVar(e, u);
    EXPECT_EQ(u, QStringLiteral("2")); // the name and its letters go, then a final "+"
}

TEST(Variables, CallerLevelMarkerDoesNothingAtLevel1) {
    auto s = Lance("%IRE$-1x = 5\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_EQ(s->etat.PileFic[1].NbVar, 0);
    EXPECT_EQ(s->etat.PileFic[0].NbVar, 0);
}

TEST(Variables, ClipboardBothWays) {
    auto s = Lance("%ClipBoard = bonjour\n%X = CLIPBOARD\n");
    EXPECT_EQ(s->hote.PressePapier(), QStringLiteral("bonjour"));
    EXPECT_EQ(Variable(*s, "%X"), QStringLiteral("bonjour"));
}

TEST(Variables, CommentInAnAssignmentKeepsQuotedApostrophes) {
    auto s = Lance("%T = l\"'\"an ' comment\n");
    EXPECT_EQ(Variable(*s, "%T"), QStringLiteral("l'an"));
}

TEST(Variables, SkippedAssignmentAndStopArg) {
    Session s(QString{});
    Etat& e = s.etat;
    e.NiveauCourant = 2;
    EcritVarTxt(e, 2, "%P", "caller");
    e.PileFic[2].SauteVar[1] = 1;
    e.LigneCourante = QStringLiteral(" default");
    e.PileFic[2].Mot = QStringLiteral("%P");
    e.NomAffecte = QStringLiteral("%P");
    Affectation(e);
    EXPECT_EQ(e.PileFic[2].ValVar[1], QStringLiteral("caller")); // the first assignment is skipped
    Affectation(e);
    EXPECT_EQ(e.PileFic[2].ValVar[1], QStringLiteral("default")); // not the second
    e.PileFic[2].SauteVar[1] = 1;
    CmdStopArg(e);
    e.LigneCourante = QStringLiteral(" again");
    Affectation(e);
    EXPECT_EQ(e.PileFic[2].ValVar[1], QStringLiteral("again"));
}

TEST(Variables, ListeVarsLayout) {
    auto s = Lance("%A = 1\n");
    const QString l = ListeVars(s->etat, 1);
    EXPECT_TRUE(l.startsWith(QStringLiteral("%iRec\t= 1\t%Date\t= ")));
    EXPECT_TRUE(l.contains(QStringLiteral("%Fil1\t= \t%EOF\t= 1\r\n")));
    EXPECT_TRUE(l.contains(QStringLiteral("%EpT\t= ")));
    EXPECT_TRUE(l.contains(QStringLiteral("%Coul\t= RVB 000 000 000\r\n")));
    EXPECT_TRUE(l.endsWith(QStringLiteral("%AR0\t= 0\r\n%A\t= 1\r\n")));
}
