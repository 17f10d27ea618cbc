// Part 1.6: control flow.
#include "outils.h"

namespace {
int Croix(const Session& s) { return int(Lignes(s).size()) / 2; }
} // namespace

TEST(Flux, ThirdNestedBlockFailsUnderDefaultMaxSi) {
    const char* trois = "If 1 = 1 Then\nIf 1 = 1 Then\nIf 1 = 1 Then\nCT = 1, 1\nEndIf\nEndIf\nEndIf\n";
    auto s = Lance(trois);
    ASSERT_GE(s->hote.Messages().size(), 1);
    EXPECT_TRUE(Messages(*s)[0].startsWith(QStringLiteral("Erreur dans la ligne : 3: ")));
    auto t = Lance(QStringLiteral("Options#$ = MaxIf, 4,, OptMaxIf\n") + trois +
                   "If 1 = 1 Then\nIf 1 = 1 Then\nIf 1 = 1 Then\nIf 1 = 1 Then\nCT = 2, 2\nEndIf\nEndIf\nEndIf\nEndIf\n");
    EXPECT_TRUE(t->hote.Messages().isEmpty()) << Messages(*t).join("|").toStdString();
    EXPECT_EQ(Croix(*t), 2);
}

TEST(Flux, ThenCommandRunsAsALineOfItsOwn) {
    auto s = Lance("%X = 1\nIf %X>0 Then CT = 1, 2\nIf %X<0 Then CT = 5, 5\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_EQ(Croix(*s), 1);
    EXPECT_MM(s->etat.Repere.CTy, 2);
}

TEST(Flux, IfGotoToAnEarlierLabelLoops) {
    auto s = Lance("%I = 0\nE1:\n%I == %I+1\nCT = %I, 0\nIf %I < 5 Goto E1\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_EQ(Croix(*s), 5);
    EXPECT_EQ(Variable(*s, "%I"), QStringLiteral("5"));
}

TEST(Flux, ThenGotoIsAcceptedAndCaseDoesNotMatter) {
    auto s = Lance("if 2 > 1 then goto Fin\nCT = 1, 1\nfin:\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_EQ(Croix(*s), 0);
}

TEST(Flux, GotoNumberIsALineOfTheEditor) {
    auto s = Lance("Goto 3\nCT = 1, 1\nCT = 2, 2\n");
    EXPECT_EQ(Croix(*s), 1);
    EXPECT_MM(s->etat.Repere.CTx, 2);
}

TEST(Flux, AfterATrueIfTheElseBranchesAreSkipped) {
    auto s = Lance("If 1 = 1 Then\nCT = 1, 1\nElseIf 2 = 2 Then\nCT = 2, 2\nElse\nCT = 3, 3\nEndIf\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_EQ(Croix(*s), 1);
    EXPECT_MM(s->etat.Repere.CTx, 1);
    auto t = Lance("If 1 = 2 Then\nCT = 1, 1\nElseIf 2 = 2 Then\nCT = 2, 2\nElse\nCT = 3, 3\nEndIf\n");
    EXPECT_EQ(Croix(*t), 1);
    EXPECT_MM(t->etat.Repere.CTx, 2);
    auto u = Lance("If 1 = 2 Then\nCT = 1, 1\nElse\nCT = 3, 3\nEndIf\n");
    EXPECT_MM(u->etat.Repere.CTx, 3);
}

TEST(Flux, OneLineIfInASkippedBranchChangesNothing) {
    auto s = Lance("If 1 = 2 Then\nIf 1 = 1 Then CT = 9, 9\nIf 1 = 1 Goto Ailleurs\nEndIf\nCT = 1, 1\nAilleurs:\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_EQ(Croix(*s), 1);
    EXPECT_MM(s->etat.Repere.CTx, 1);
}

TEST(Flux, BlockInsideSkippedCodeIsPassedOver) {
    auto s = Lance("If 1 = 2 Then\nIf 1 = 1 Then\nCT = 9, 9\nElse\nCT = 8, 8\nEndIf\nEndIf\nCT = 1, 1\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_EQ(Croix(*s), 1);
}

TEST(Flux, ElseAndEndIfOutsideABlockFail) {
    EXPECT_EQ(Lance("Else\n")->hote.Messages().size(), 1);
    EXPECT_EQ(Lance("EndIf\n")->hote.Messages().size(), 1);
    EXPECT_EQ(Lance("ElseIf 1 = 1 Then\n")->hote.Messages().size(), 1);
    // ElseIf after Else fails the line; the handler ends the level, so the
    // block left open gives no string 127 (Part 1.1, end of a level).
    auto s = Lance("If 1 = 1 Then\nElse\nElseIf 1 = 1 Then\nEndIf\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_TRUE(Messages(*s)[0].startsWith(QStringLiteral("Erreur dans la ligne : 3: ")));
}

TEST(Flux, IfWithNeitherThenNorGotoFails) {
    auto s = Lance("If 1 = 1 CT = 1, 1\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
}

TEST(Flux, UndefinedVariableInAConditionFailsWithTheMessage) {
    auto s = Lance("If %Q > 1 Then\nEndIf\n");
    ASSERT_GE(s->hote.Messages().size(), 1);
    EXPECT_TRUE(Messages(*s)[0].contains(QStringLiteral("%Q > 1 : non initialisée")));
}

TEST(Flux, UnknownLabelFailsAtTheNextFetch) {
    auto s = Lance("Goto Nulle\nCT = 1, 1\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_EQ(Croix(*s), 0);
}

TEST(Flux, IfTComparesTexts) {
    auto s = Lance("%N = abc\nIfT %N = abc Then CT = 1, 1\nIfT %N = ABC Then CT = 2, 2\nIfT \"%N\" < \"abd\" Then CT = 3, 3\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_EQ(Croix(*s), 2);
    auto t = Lance("%N = x\nIfT (%N = x) AND (%N <> y) Then CT = 1, 1\nIfT NOT %N = x Then CT = 2, 2\n");
    EXPECT_EQ(Croix(*t), 1);
}

TEST(Flux, ManyRoundsOfALoop) {
    auto s = Lance("%I = 0\nE1:\n%I == %I+1\nIf %I < 5000 Goto E1\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_EQ(Variable(*s, "%I"), QStringLiteral("5000"));
}

// Part 1.6: the depth limit fails the line, with no text of its own; the
// handler ends the level, so no string 127 follows (Part 1.1).
TEST(Flux, ThirdNestedBlockFailsWithTheLineOnly) {
    auto s = Lance("If 1 = 1 Then\nIf 1 = 1 Then\nIf 1 = 1 Then\nCT = 1, 1\nEndIf\nEndIf\nEndIf\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_TRUE(Messages(*s)[0].startsWith(
        QStringLiteral("Erreur dans la ligne : 3: If 1 = 1 Then\r\n\r\n%")))
        << Messages(*s)[0].toStdString();
    EXPECT_TRUE(Lignes(*s).isEmpty()); // the CT inside never ran
}

TEST(Flux, ThenCercleRunsAsALineOfItsOwn) {
    auto s = Lance("%X = 1\nIf %X>0 Then Cercle = 1,2,3\nIf %X<0 Then Cercle = 5,5,5\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    const auto c = Ops(*s, OpSurface::Cercle);
    ASSERT_EQ(c.size(), 1);
    EXPECT_MM(c[0].x1, 1);
    EXPECT_MM(c[0].y1, 2);
    EXPECT_MM(c[0].r, 3);
    EXPECT_FALSE(c[0].debut.has_value());
}
