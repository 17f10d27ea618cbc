// Part 1.2: source preparation and the parameter readers.
#include "language/para.h"
#include "outils.h"

namespace {

struct Para : ::testing::Test {
    Session s{QString()};
    Etat& e = s.etat;
    void SetUp() override { e.NiveauCourant = 1; }
};

} // namespace

TEST_F(Para, ParaValDropsTwoTrailingCharacters) {
    EXPECT_EQ(ParaVal(e, "12mm", 1).value(), 12);
    EXPECT_EQ(ParaVal(e, "3R", 1).value(), 3);
    EXPECT_EQ(ParaVal(e, "7§R", 1).value(), 7);
    EXPECT_FALSE(ParaVal(e, "§R", 1).has_value());
    EXPECT_FALSE(ParaVal(e, "1,,3", 2).has_value());
    EXPECT_FALSE(ParaVal(e, "1", 2).has_value());
    EXPECT_EQ(ParaVal(e, " 4 ,5", 1).value(), 4);
}

TEST_F(Para, ParaValKeepsThePartBeforeADoubledSecondSeparator) {
    EXPECT_EQ(ParaVal(e, "5§§9", 1).value(), 5);
}

TEST_F(Para, ParaNNegativeReadsToTheEnd) {
    int n = -1;
    EXPECT_EQ(ParaN(e, "a,b", n), QStringLiteral("a,b"));
    EXPECT_EQ(n, 1); // turned positive in the caller's variable
    n = -2;
    EXPECT_EQ(ParaN(e, "a,b", n), QStringLiteral("b"));
    EXPECT_EQ(ParaN(e, "a,b,c", 2), QStringLiteral("b"));
    EXPECT_EQ(ParaN(e, "a,b", 3), QString());
    EXPECT_EQ(ParaN(e, " a , b", 2), QStringLiteral(" b")); // not trimmed
}

TEST_F(Para, NbParaCountsSeparators) {
    EXPECT_EQ(NbPara(e, ""), 0);
    EXPECT_EQ(NbPara(e, "   "), 0);
    EXPECT_EQ(NbPara(e, " ) "), 0);
    EXPECT_EQ(NbPara(e, "a,"), 2);
    EXPECT_EQ(NbPara(e, "a,b,c"), 3);
    EXPECT_EQ(NbSousPara(e, "a§b"), 2);
}

TEST_F(Para, SautePara) {
    QString t = "a,b,c";
    SautePara(e, t, 2);
    EXPECT_EQ(t, QStringLiteral("c"));
    t = "a,b";
    SautePara(e, t, 3);
    EXPECT_EQ(t, QString());
}

TEST_F(Para, SousParaSplitsOnTheSecondSeparatorOrAGivenOne) {
    EXPECT_EQ(SousPara(e, "1§2§3", 2), QStringLiteral("2"));
    EXPECT_EQ(SousPara(e, "a--b--c", 3, "--"), QStringLiteral("c"));
}

TEST_F(Para, ParaCoordCartesianRelativeAndPolar) {
    double x = 0, y = 0;
    ParaCoord(e, x, y, "10, 20", 1, 5, 7);
    EXPECT_MM(x, 10);
    EXPECT_MM(y, 20);
    ParaCoord(e, x, y, "10R, 20R", 1, 5, 7);
    EXPECT_MM(x, 15);
    EXPECT_MM(y, 27);
    ParaCoord(e, x, y, "10§R, 2", 1, 5, 7);
    EXPECT_MM(x, 15);
    EXPECT_MM(y, 2);
    ParaCoord(e, x, y, "90°, 10", 1, 5, 7);
    EXPECT_MM(x, 5);
    EXPECT_MM(y, 17);
    ParaCoord(e, x, y, ", ", 1, 5, 7);
    EXPECT_MM(x, 5);
    EXPECT_MM(y, 7);
    ParaCoord(e, x, y, "3, §45", 1, 5, 7); // y beginning with the second separator
    EXPECT_MM(x, 3);
    EXPECT_MM(y, 7);
}

TEST_F(Para, ParaCoordRefusesBadPolarForms) {
    double x = 0, y = 0;
    EXPECT_THROW(ParaCoord(e, x, y, "90°, ", 1, 0, 0), ErreurProvoquee);
    EXPECT_THROW(ParaCoord(e, x, y, "90°R, 3", 1, 0, 0), ErreurProvoquee);
    EXPECT_THROW(ParaCoord(e, x, y, "90°, 3R", 1, 0, 0), ErreurProvoquee);
    EXPECT_THROW(ParaCoord(e, x, y, "1, 3°", 1, 0, 0), ErreurProvoquee);
    EXPECT_THROW(ParaCoord(e, x, y, "1°2, 3", 1, 0, 0), ErreurProvoquee);
}

TEST_F(Para, ParaCoordAppliesTheTraitFactors) {
    double x = 0, y = 0;
    e.Repere.FacteurTraitX = 2;
    e.Repere.FacteurTraitY = 3;
    ParaCoord(e, x, y, "10R, 20", 1, 1, 1);
    EXPECT_MM(x, 21);
    EXPECT_MM(y, 60);
}

TEST_F(Para, UndefinedVariableInParaValFails) {
    EXPECT_THROW(ParaVal(e, "%Nope", 1), ErreurProvoquee);
    EXPECT_EQ(e.TexteErreur, QStringLiteral("%Nope : non initialisée / not initialized / nicht initialisiert\r\n\r\n"));
}

TEST(Etiquettes, LabelWithAColonInItsCommentIsOneLabel) {
    auto s = Lance("E1: ' note: here\nE2: ' a=b\nCT = 1, 1\n");
    const auto& t = s->etat.Etiquettes[1];
    ASSERT_EQ(t.size(), 1);
    EXPECT_EQ(t[0].Nom, QStringLiteral("E1"));
    EXPECT_EQ(t[0].Ligne, 1);
    EXPECT_EQ(t[0].Position, 1);
}

TEST(Etiquettes, DuplicateLabelFailsBeforeAnythingIsDrawn) {
    auto s = Lance("CT = 1, 1\nFin:\nCT = 2, 2\nfin:\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_TRUE(Lignes(*s).isEmpty());
    EXPECT_TRUE(Messages(*s)[0].startsWith(QStringLiteral("Erreur dans la ligne : 4: fin:")))
        << Messages(*s)[0].toStdString();
}

TEST(Etiquettes, ContinuationsAreJoinedForTheScan) {
    auto s = Lance("CT = 1, _\n  2\nLa:\n");
    ASSERT_EQ(s->etat.Etiquettes[1].size(), 1);
    EXPECT_EQ(s->etat.Etiquettes[1][0].Ligne, 3);
}

TEST(SeparateurCmd, SemicolonUntilTheLevelEnds) {
    auto s = Lance("Separateur = ;\nCT = 4; 6\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_MM(s->etat.Repere.CTx, 4);
    EXPECT_MM(s->etat.Repere.CTy, 6);
    EXPECT_EQ(s->etat.PileFic[1].Separateur1, QStringLiteral(";"));
    // The next run (or level) starts again with ",".
    s->Execute();
    EXPECT_EQ(s->etat.Separateur1, QStringLiteral(";"));
    auto t = Lance("CT = 4, 6\n");
    EXPECT_EQ(t->etat.Separateur1, QStringLiteral(","));
}

TEST(SeparateurCmd, SecondSeparatorIsTakenFirstAndEmptyFirstIsComma) {
    auto s = Lance("Separateur = , |\nCT = 4, 6|30\n");
    EXPECT_EQ(s->etat.Separateur2, QStringLiteral("|"));
    EXPECT_EQ(s->etat.Separateur1, QStringLiteral(","));
}

TEST(MotsCles, CanonicalListAndAliases) {
    EXPECT_TRUE(MotsCanoniques().contains(QStringLiteral("Bezier_aGr")));
    EXPECT_EQ(MotsCanoniques().size(), 89);
    EXPECT_EQ(AliasEditeur("SI"), QStringLiteral("If"));
    EXPECT_EQ(AliasEditeur("SIT"), QStringLiteral("IfT"));
    EXPECT_EQ(AliasEditeur("ROTANG"), QStringLiteral("AngRot"));
    EXPECT_EQ(AliasEditeur("SINON"), QStringLiteral("Else")); // over four letters: "ElseN"
}

// Part 1.2: a duplicate label fails at level entry, with no text of its own.
TEST(Etiquettes, DuplicateLabelFailsWithTheLineOnly) {
    auto s = Lance("fin:\nCT = 1, 1\nfin:\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_TRUE(Messages(*s)[0].startsWith(QStringLiteral("Erreur dans la ligne : 3: fin:\r\n\r\n%iRec\t= 1")))
        << Messages(*s)[0].toStdString();
}
