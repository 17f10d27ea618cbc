// Parameter readers, labels, the separators and the keyword aliases.
#include "language/para.h"
#include "outils.h"

namespace {

struct Para : ::testing::Test {
    Session s{QString()};
    Etat& e = s.etat;
    void SetUp() override { e.NiveauCourant = 1; }
};

} // namespace

TEST_F(Para, ReadersSplitOnTheSeparators) {
    // ParaVal drops up to two trailing unit characters ("mm", "R", "§R").
    const std::tuple<const char*, int, std::optional<double>> cas[] = {
        {"12mm", 1, 12}, {"3R", 1, 3}, {"7§R", 1, 7}, {"§R", 1, {}}, {"1,,3", 2, {}}, {"1", 2, {}},
        {" 4 ,5", 1, 4}, {"5§§9", 1, 5}};
    for (const auto& [texte, n, v] : cas) EXPECT_EQ(ParaVal(e, texte, n), v) << texte;
    int n = -1; // a negative number reads to the end, and is turned positive
    EXPECT_EQ(ParaN(e, "a,b", n), QStringLiteral("a,b"));
    EXPECT_EQ(n, 1);
    n = -2;
    EXPECT_EQ(ParaN(e, "a,b", n), QStringLiteral("b"));
    EXPECT_EQ(ParaN(e, "a,b", 3), QString());
    EXPECT_EQ(ParaN(e, " a , b", 2), QStringLiteral(" b")); // not trimmed
    for (const auto& [texte, nb] : {std::pair{"", 0}, {"   ", 0}, {" ) ", 0}, {"a,", 2}, {"a,b,c", 3}})
        EXPECT_EQ(NbPara(e, texte), nb) << texte;
    EXPECT_EQ(NbSousPara(e, "a§b"), 2);
    QString t = "a,b,c", u = "a,b";
    SautePara(e, t, 2);
    SautePara(e, u, 3);
    EXPECT_EQ(t + u, QStringLiteral("c"));
    EXPECT_EQ(SousPara(e, "1§2§3", 2), QStringLiteral("2"));
    EXPECT_EQ(SousPara(e, "a--b--c", 3, "--"), QStringLiteral("c"));
    EXPECT_THROW(ParaVal(e, "%Nope", 1), ErreurProvoquee);
    EXPECT_EQ(e.TexteErreur, QStringLiteral("%Nope : non initialisée / not initialized / nicht initialisiert\r\n\r\n"));
}

TEST_F(Para, ParaCoordCartesianRelativeAndPolar) {
    // From the reference point (5, 7).
    const std::tuple<const char*, double, double> cas[] = {
        {"10, 20", 10, 20}, {"10R, 20R", 15, 27}, {"10§R, 2", 15, 2}, {"90°, 10", 5, 17}, {", ", 5, 7},
        {"3, §45", 3, 7}, // a y beginning with the second separator is no value
        {"1R, 2R§0", 6, 9}}; // a relative y keeps its "R" before a rotation
    for (const auto& [texte, x0, y0] : cas) {
        double x = 0, y = 0;
        ParaCoord(e, x, y, texte, 1, 5, 7);
        EXPECT_MM(x, x0) << texte;
        EXPECT_MM(y, y0) << texte;
    }
    double x = 0, y = 0;
    for (const char* texte : {"90°, ", "90°R, 3", "90°, 3R", "1, 3°", "1°2, 3"})
        EXPECT_THROW(ParaCoord(e, x, y, texte, 1, 0, 0), ErreurProvoquee) << texte;
    // The factors of the stroke apply to the relative form and to the absolute one.
    e.Repere.FacteurTraitX = 2;
    e.Repere.FacteurTraitY = 3;
    ParaCoord(e, x, y, "10R, 20", 1, 1, 1);
    EXPECT_MM(x, 21);
    EXPECT_MM(y, 60);
}

TEST(Etiquettes, ScanOfTheLabels) {
    // A colon in the comment doesn't make a second label; continuations are joined.
    auto s = Lance("E1: ' note: here\nE2: ' a=b\nCT = 1, _\n  2\nLa:\n");
    const auto& t = s->etat.Etiquettes[1];
    ASSERT_EQ(t.size(), 2);
    EXPECT_EQ(t[0].Nom, QStringLiteral("E1"));
    EXPECT_EQ(t[0].Ligne, 1);
    EXPECT_EQ(t[0].Position, 1);
    EXPECT_EQ(t[1].Ligne, 5);
    // A duplicate label fails at the entry of the level, before anything is drawn.
    s = Lance("CT = 1, 1\nFin:\nCT = 2, 2\nfin:\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_TRUE(Lignes(*s).isEmpty());
    EXPECT_TRUE(Messages(*s)[0].startsWith("Erreur dans la ligne : 4: fin:\r\n\r\n%iRec\t= 1"))
        << Messages(*s)[0].toStdString();
}

TEST(SeparateurCmd, ChangesTheSeparatorsUntilTheLevelEnds) {
    auto s = Lance("Separateur = ;\nCT = 4; 6\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_MM(s->etat.Repere.CTx, 4);
    EXPECT_MM(s->etat.Repere.CTy, 6);
    EXPECT_EQ(s->etat.PileFic[1].Separateur1, QStringLiteral(";"));
    EXPECT_EQ(Lance("CT = 4, 6\n")->etat.Separateur1, QStringLiteral(",")); // a new run starts again
    // The second separator is taken first; an empty first one is the comma.
    s = Lance("Separateur = , |\nCT = 4, 6|30\n");
    EXPECT_EQ(s->etat.Separateur2, QStringLiteral("|"));
    EXPECT_EQ(s->etat.Separateur1, QStringLiteral(","));
    // A variable's name is upper-cased before it is cut at the separators: a
    // lower-case letter as separator cuts no name.
    s = Lance("Separateur = x\n%x = Trait = 1x2x3x4\n%x\n%x = Trait = 5x6x7x8\n%x\n");
    EXPECT_TRUE(Messages(*s).isEmpty()) << Messages(*s).join('|').toStdString();
    EXPECT_EQ(s->etat.PileFic[1].NbVar, 1);
    EXPECT_EQ(Ops(*s, OpSurface::Ligne).size(), 2);
}

TEST(MotsCles, EditorAliases) {
    EXPECT_TRUE(MotsCanoniques().contains(QStringLiteral("Bezier_aGr")));
    const std::pair<const char*, const char*> cas[] = {
        {"SI", "If"}, {"SIT", "IfT"}, {"ROTANG", "AngRot"}, {"SINON", "Else"}}; // not "ElseN"
    for (const auto& [alias, mot] : cas) EXPECT_EQ(AliasEditeur(alias), QString(mot)) << alias;
}
