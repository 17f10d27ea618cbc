// Control flow: If blocks, one-line If, IfT, Goto and labels.
#include "outils.h"

namespace {
int Croix(const Session& s) { return int(Lignes(s).size()) / 2; }
const char* const TroisSi = "If 1 = 1 Then\nIf 1 = 1 Then\nIf 1 = 1 Then\nCT = 1, 1\nEndIf\nEndIf\nEndIf\n";
} // namespace

TEST(Flux, BranchesAndJumps) {
    // Program, origin crosses drawn, x of the last one.
    const std::tuple<QString, int, double> cas[] = {
        {"%X = 1\nIf %X>0 Then CT = 1, 2\nIf %X<0 Then CT = 5, 5\n", 1, 1},
        {"%I = 0\nE1:\n%I == %I+1\nCT = %I, 0\nIf %I < 5 Goto E1\n", 5, 5},
        {"%I = 0\nE1:\n%I == %I+1\nIf %I < 5000 Goto E1\nCT = %I, 0\n", 1, 5000},
        {"if 2 > 1 then goto Fin\nCT = 1, 1\nfin:\nCT = 2, 2\n", 1, 2},
        {"Goto 3\nCT = 1, 1\nCT = 2, 2\n", 1, 2}, // a number is a line of the editor
        {"If 1 = 1 Then\nCT = 1, 1\nElseIf 2 = 2 Then\nCT = 2, 2\nElse\nCT = 3, 3\nEndIf\n", 1, 1},
        {"If 1 = 2 Then\nCT = 1, 1\nElseIf 2 = 2 Then\nCT = 2, 2\nElse\nCT = 3, 3\nEndIf\n", 1, 2},
        {"If 1 = 2 Then\nCT = 1, 1\nElse\nCT = 3, 3\nEndIf\n", 1, 3},
        // Nothing in a skipped branch runs, nested blocks and one-line forms included.
        {"If 1 = 2 Then\nIf 1 = 1 Then CT = 9, 9\nIf 1 = 1 Goto Ailleurs\nEndIf\nCT = 1, 1\nAilleurs:\n", 1, 1},
        {"If 1 = 2 Then\nIf 1 = 1 Then\nCT = 9, 9\nElse\nCT = 8, 8\nEndIf\nEndIf\nCT = 1, 1\n", 1, 1},
        // A comment after Then, on a skipped block and on an ElseIf.
        {"If 1 = 2 Then ' a\nIf 1 = 1 Then ' b\nCT = 9, 9\nEndIf\nCT = 8, 8\nEndIf\nCT = 1, 1\n", 1, 1},
        {"If 1 = 2 Then\nCT = 9, 9\nElseIf 2 = 2 Then ' c\nCT = 2, 2\nEndIf\n", 1, 2},
        // IfT compares texts, with case.
        {"%N = abc\nIfT %N = abc Then CT = 1, 1\nIfT %N = ABC Then CT = 2, 2\nIfT \"%N\" < \"abd\" Then CT = 3, 3\n", 2, 3},
        {"%N = x\nIfT (%N = x) AND (%N <> y) Then CT = 1, 1\nIfT NOT %N = x Then CT = 2, 2\n", 1, 1},
        // Options raises the depth of the blocks.
        {QStringLiteral("Options#$ = MaxIf, 4,, OptMaxIf\n") + TroisSi +
             "If 1 = 1 Then\nIf 1 = 1 Then\nIf 1 = 1 Then\nIf 1 = 1 Then\nCT = 2, 2\nEndIf\nEndIf\nEndIf\nEndIf\n", 2, 2}};
    for (const auto& [programme, croix, x] : cas) {
        auto s = Lance(programme);
        EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
        EXPECT_EQ(Croix(*s), croix) << programme.toStdString();
        EXPECT_MM(s->etat.Repere.CTx, x) << programme.toStdString();
    }
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

// Each fails its line with one box; an open block left by the failure adds no box of its own.
TEST(Flux, MisplacedOrFailingFlowFailsTheLine) {
    const std::pair<QString, const char*> cas[] = {
        {TroisSi, "Erreur dans la ligne : 3: If 1 = 1 Then\r\n\r\n%"}, // three nested blocks
        {"Else\n", "Erreur dans la ligne : 1: Else\r\n\r\n%"},
        {"EndIf\n", "Erreur dans la ligne : 1: EndIf\r\n\r\n%"},
        {"ElseIf 1 = 1 Then\n", "Erreur dans la ligne : 1: ElseIf 1 = 1 Then\r\n\r\n%"},
        {"If 1 = 1 Then\nElse\nElseIf 1 = 1 Then\nEndIf\n", "Erreur dans la ligne : 3: "},
        {"If 1 = 1 CT = 1, 1\n", "Erreur dans la ligne : 1: "},
        {"If %Q > 1 Then\nEndIf\n", "Erreur dans la ligne : 1: If %Q > 1 Then\r\n\r\n%Q > 1 : non initialisée"},
        {"Goto Nulle\nCT = 1, 1\n", "Erreur dans la ligne : 1: "}, // at the next fetch
        {"IfT " + QStringList(14, "(a = a)").join(" AND ") + " Then CT = 1, 1\n", "Erreur dans la ligne : 1: "}};
    for (const auto& [programme, debut] : cas) {
        auto s = Lance(programme);
        ASSERT_EQ(s->hote.Messages().size(), 1) << programme.toStdString();
        EXPECT_TRUE(Messages(*s)[0].startsWith(debut)) << Messages(*s)[0].toStdString();
        EXPECT_EQ(Croix(*s), 0) << programme.toStdString();
    }
}
