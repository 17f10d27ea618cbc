// Variables: assignment, lookup and substitution.
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
    void Pose(const QString& nom, const QString& valeur) { EcritVarTxt(e, 1, nom, valeur); }
    QString Remplace(const QString& texte) { // every name known
        QString t = texte;
        EXPECT_EQ(RemplaceVar(e, t), 0) << texte.toStdString();
        return t;
    }
};

// The first message starts with the failing line and no text of its own.
void EchoueSurLaLigne(const Session& s, const QString& ligne) {
    ASSERT_EQ(s.hote.Messages().size(), 1) << Messages(s).join("|").toStdString();
    EXPECT_TRUE(Messages(s)[0].startsWith("Erreur dans la ligne : " + ligne + "\r\n\r\n%"))
        << Messages(s)[0].toStdString();
}

} // namespace

TEST(Variables, AssignmentForms) {
    const std::tuple<const char*, const char*, const char*> cas[] = {
        {"%A = 1\n%A = %A+1\n", "%A", "1+1"}, // "=" keeps the text
        {"%A = 1\n%A == %A+1\n", "%A", "2"},  // "==" evaluates
        {"%X = \" a \"\n", "%X", " a "},
        {"%B = 5\n%A =< %B\n", "%A", "%B"}, // "=<" stores the characters
        {"%T = l\"'\"an ' comment\n", "%T", "l'an"},
        {"%Rayon = 10\n%RAYON = 12\n", "%rayon", "12"},
        {"%ClipBoard = bonjour\n%X = CLIPBOARD\n", "%X", "bonjour"}};
    for (const auto& [programme, nom, valeur] : cas) {
        auto s = Lance(programme);
        EXPECT_TRUE(s->hote.Messages().isEmpty()) << programme;
        EXPECT_EQ(Variable(*s, nom), QString::fromUtf8(valeur)) << programme;
    }
    auto s = Lance("%Rayon = 10\n%RAYON = 12\nCT = %rayon, 0\n%ClipBoard = bonjour\n");
    EXPECT_EQ(s->etat.PileFic[1].NomVar[1], QStringLiteral("%Rayon")); // the first spelling stays
    EXPECT_MM(s->etat.Repere.CTx, 12);
    EXPECT_EQ(s->hote.PressePapier(), QStringLiteral("bonjour"));
}

TEST(Variables, SelfReferenceAndTooManyVariablesFailTheLine) {
    EchoueSurLaLigne(*Lance("%A =< %A\nCT = %A, 1\n"), "2: CT = %A, 1");
    QString p;
    for (int i = 1; i <= 34; ++i) p += QStringLiteral("%V%1 = %1\n").arg(i);
    auto s = Lance(p);
    EchoueSurLaLigne(*s, "34: %V34 = 34");
    EXPECT_EQ(s->etat.PileFic[1].NbVar, 33);
    // Options raises the limit of a main program, held at 64.
    p = QStringLiteral("Options#$ = Var,100,,OptMaxVar\n");
    for (int i = 1; i <= 64; ++i) p += QStringLiteral("%V%1 = %1\n").arg(i);
    s = Lance(p);
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_EQ(s->etat.PileFic[1].MaxVar, 64);
    EchoueSurLaLigne(*Lance(p + "%V65 = 1\n"), "66: %V65 = 1");
}

TEST_F(Vars, ChercheVarCutsTheNameAtItsTerminators) {
    Pose("%A", "3");
    Pose("%Long", "4");
    EXPECT_EQ(ChercheVar(e, u"%a+1", 1), 1);
    EXPECT_EQ(ChercheVar(e, u" %LONG)", 1), 2);
    EXPECT_EQ(ChercheVar(e, u"%AB", 1), 0);
    EXPECT_EQ(ChercheVar(e, u"%A§2", 1), 1);
    EXPECT_EQ(NomVar(" %Abc = 3"), QStringLiteral("%ABC"));
}

TEST_F(Vars, RemplaceVarSubstitutes) {
    for (const auto& [nom, valeur] : {std::pair{"%A", "5"}, {"%B", "%A*2"}, {"%L", "a,b,c"}, {"%S", "x§y§z"},
                                      {"%I", "2"}, {"%P", "1--2--3"}, {"%N", "%X"}, {"%W", "10"},
                                      {"%M", "%W,LEF2(\"abc\")"}, {"%Q", "%W§x"}})
        Pose(nom, QString::fromUtf8(valeur));
    const std::pair<const char*, const char*> cas[] = {
        {"1+%B", "1+5*2"}, // the value is substituted again in place
        {"%A mm", "5mm"}, {"%A AND 1", "5 AND 1"}, // a blank after a name goes with it
        {"100 % sur", "100 % sur"}, {"50%", "50%"},
        // List items: by separator, by character, by the second separator or a given one.
        {"%L(2)", "b"}, {"%L(#3)", "b"}, {"%L(#9)", ""}, {"%S(§3)", "z"}, {"%L(%I)", "b"},
        {"%P(§\"--\"2)", "2"},
        {"%L(-2)", "b,c"}, {"%S(§-2)", "y§z"}, {"%L(0)", ""}, // a negative index runs to the end, as ParaN
        // An item is read as a parameter is: its variables and text functions first.
        {"%M(1)mm", "10mm"}, {"%M(2)", "ab"}, {"%Q(§1)y", "10y"},
        {"VAR(%N)", "%X"}, // the % of the value is not substituted again
        {"%iRec", "1"}, {"%PI", "3.14159265358979"}, {"%CR", "\r"}, {"%Imp", "0"}, {"%EOF", "1"},
        {"%Pol", "Times New Roman"}};
    for (const auto& [texte, attendu] : cas) EXPECT_EQ(Remplace(texte), QString::fromUtf8(attendu)) << texte;
    // The form is "(§" whatever the second separator; its items are split on that separator.
    e.Separateur2 = "!";
    Pose("%T", QString::fromUtf8("a!b§c"));
    EXPECT_EQ(Remplace(QString::fromUtf8("%T(§2)")), QString::fromUtf8("b§c"));
    e.Separateur2 = QString::fromUtf8("§");
    EXPECT_TRUE(Remplace("%Datex").endsWith('x')); // the predefined name's end isn't checked
    Pose("%CR", "user");
    EXPECT_EQ(Remplace("%CR"), QStringLiteral("user")); // a user variable comes first
    QString inconnu = "%Inconnu+1";
    EXPECT_NE(RemplaceVar(e, inconnu), 0);
    EXPECT_EQ(inconnu, QStringLiteral("%Inconnu+1"));
}

TEST_F(Vars, RemplaceVarFailures) {
    Pose("%L", "a,b,c");
    Pose("%Long", QString(3000, u'x'));
    Pose("%C", "%D");
    Pose("%D", "%C");
    Pose("%R", "%R(1),2");
    Pose("%Blanc", "  ");
    Pose("%Sep", "%L(§\"x%Sep\"1)"); // a separator that names its own list
    // Out of the list (a blank value has no item), over 4096 characters, and
    // values referring to each other, directly or through an item.
    for (QString t : {"%L(4)", "%Blanc(§1)", "%Long+%Long", "%C+1", "%R(1)", "%L(§\"x%Sep\"1)"})
        EXPECT_THROW(RemplaceVar(e, t), ErreurProvoquee) << t.toStdString();
}

TEST_F(Vars, SharedLevelThroughTheMarker) {
    e.NiveauCourant = 2;
    EcritVarTxt(e, 2, "%IRE$#0x", "5");
    EXPECT_EQ(e.PileFic[0].NbVar, 1);
    EXPECT_EQ(e.PileFic[2].NbVar, 0);
    e.NiveauCourant = 3;
    EXPECT_EQ(Remplace("%IRE$#0x+1"), QStringLiteral("5+1"));
    EXPECT_EQ(Remplace("2+%IRE$#0nope"), QStringLiteral("2")); // the name and a final "+" go
    // The caller's level marker does nothing at level 1.
    auto s = Lance("%IRE$-1x = 5\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_EQ(s->etat.PileFic[1].NbVar + s->etat.PileFic[0].NbVar, 0);
}

TEST_F(Vars, SkippedAssignmentAndStopArg) {
    e.NiveauCourant = 2;
    EcritVarTxt(e, 2, "%P", "caller");
    e.PileFic[2].SauteVar[1] = 1;
    e.LigneCourante = " default";
    e.PileFic[2].Mot = e.NomAffecte = "%P";
    Affectation(e);
    EXPECT_EQ(e.PileFic[2].ValVar[1], QStringLiteral("caller")); // the first assignment is skipped
    Affectation(e);
    EXPECT_EQ(e.PileFic[2].ValVar[1], QStringLiteral("default")); // not the second
    e.PileFic[2].SauteVar[1] = 1;
    CmdStopArg(e);
    e.LigneCourante = " again";
    Affectation(e);
    EXPECT_EQ(e.PileFic[2].ValVar[1], QStringLiteral("again"));
}

TEST(Variables, ListeVarsLayout) {
    const QString l = ListeVars(Lance("%A = 1\n")->etat, 1);
    EXPECT_TRUE(l.startsWith("%iRec\t= 1\t%Date\t= ")) << l.toStdString();
    for (const char* morceau : {"%Fil1\t= \t%EOF\t= 1\r\n", "%EpT\t= ", "%Coul\t= RVB 000 000 000\r\n"})
        EXPECT_TRUE(l.contains(morceau)) << morceau;
    EXPECT_TRUE(l.endsWith("%AR0\t= 0\r\n%A\t= 1\r\n")) << l.toStdString();
}
