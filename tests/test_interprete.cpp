// Part 1.1: run driver and command loop.
#include "language/chaines.h"
#include "language/interprete.h"
#include "outils.h"

namespace {

// The crosses of the origin commands: two strokes each.
int Croix(const Session& s) { return int(Lignes(s).size()) / 2; }

} // namespace

TEST(Interprete, EmptyEditorDoesNothing) {
    auto s = Lance("");
    EXPECT_TRUE(Lignes(*s).isEmpty());
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_FALSE(s->etat.ExecutionEnCours);
    EXPECT_EQ(s->etat.NiveauCourant, 0); // Interprete never entered a level
}

TEST(Interprete, LastLineWithoutCrLfIsExecuted) {
    Session s(QStringLiteral("CentreE = 10, 10\r\nCT = 5, 5"));
    s.Execute();
    EXPECT_EQ(Croix(s), 2);
    EXPECT_MM(s.etat.Repere.CTx, 5);
}

TEST(Interprete, LoneUnderscoreIsAContinuationMarker) {
    // A line that is exactly "_" is taken as " _": it joins the next line.
    auto t = Lance("_\nCT = 3, 4\n");
    EXPECT_TRUE(t->hote.Messages().isEmpty());
    EXPECT_MM(t->etat.Repere.CTx, 3);
    EXPECT_MM(t->etat.Repere.CTy, 4);
}

TEST(Interprete, TextEndingInAContinuationFailsOnThatLine) {
    auto s = Lance("CT = 1, 1\nCT = 5, _");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_TRUE(Messages(*s)[0].startsWith(QStringLiteral("Erreur dans la ligne : 2: ")));
    EXPECT_EQ(s->etat.ErreursAffichees, 1);
}

TEST(Interprete, CommentIsCutButTexteKeepsItsApostrophe) {
    // The failing command (not built yet, or drawing) is the last line, so
    // LigneCourante still holds what the classification left.
    auto s = Lance("Droite = 1,2 ' x");
    EXPECT_EQ(s->etat.LigneCourante, QStringLiteral(" 1,2 "));
    auto t = Lance("Texte = 1,2,It's");
    EXPECT_EQ(t->etat.LigneCourante, QStringLiteral(" 1,2,It's"));
}

TEST(Interprete, GotoWithEqualsInCommentIsACommandError) {
    auto s = Lance("E1:\nGoto E1 ' a=b\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_EQ(Messages(*s)[0], QStringLiteral("Erreur de commande dans la ligne : 2: Goto E1 ' a=b\r\n"));
    EXPECT_EQ(s->etat.PileFic[1].Mot, QStringLiteral("GOTO E1 ' A"));
}

TEST(Interprete, FacteursFailsInAMainProgram) {
    auto s = Lance("Facteurs = 2\nCT = 1, 1\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    // A failure of the line, deliberately (Part 1.1), not a command error.
    EXPECT_EQ(s->hote.Messages()[0].titre, QStringLiteral("Mirel    (nb Var=0)"));
    EXPECT_TRUE(Messages(*s)[0].startsWith(QStringLiteral("Erreur dans la ligne : 1: Facteurs = 2\r\n\r\n%iRec\t= 1")))
        << Messages(*s)[0].toStdString();
    EXPECT_EQ(Croix(*s), 0); // the run ended there
}

TEST(Interprete, SecondCentreEFailsWithTheOrderBox) {
    auto s = Lance("CentreE = 10, 10\nCentreE = 20, 20\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    const QString attendu = QStringLiteral("Erreur dans l'ordre des commandes ligne : 2: CentreE = 20, 20\r\n") +
                            LoadResString(161) + QStringLiteral("\r\n");
    EXPECT_EQ(Messages(*s)[0], attendu);
    EXPECT_LT(s->etat.EtatOrdre, 0);
    EXPECT_EQ(Croix(*s), 1);
}

TEST(Interprete, IfLeftOpenShowsString127Once) {
    auto s = Lance("If 1 = 1 Then\nCT = 1, 1\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_EQ(Messages(*s)[0], QStringLiteral("Erreur : If[T] sans Endif"));
}

TEST(Interprete, ErrorBoxTitleCountsVariables) {
    auto s = Lance("%A = 1\n%B = 2\nCT = %C, 1\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_EQ(s->hote.Messages()[0].titre, QStringLiteral("Mirel    (nb Var=2)"));
    const QString t = Messages(*s)[0];
    EXPECT_TRUE(t.startsWith(QStringLiteral("Erreur dans la ligne : 3: CT = %C, 1\r\n\r\n%C : non initialisée / not initialized / nicht initialisiert\r\n\r\n")))
        << t.toStdString();
    EXPECT_TRUE(t.contains(QStringLiteral("%A\t= 1\r\n%B\t= 2\r\n")));
}

TEST(Interprete, FailingLineIsMarkedInTheEditor) {
    auto s = Lance("CT = 1, 1\nCT = %Z, 1\nCT = 2, 2\n");
    ASSERT_EQ(s->hote.Marques.size(), 1);
    EXPECT_EQ(s->hote.Marques[0].first, 11);  // start of line 2, 0-based
    EXPECT_EQ(s->hote.Marques[0].second, 10); // "CT = %Z, 1"
}

TEST(Interprete, UnknownKeywordIsACommandErrorAndEndsTheRun) {
    auto s = Lance("Bidule = 3\nCT = 1, 1\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_EQ(Messages(*s)[0], QStringLiteral("Erreur de commande dans la ligne : 1: Bidule = 3\r\n"));
    EXPECT_EQ(Croix(*s), 0);
}

TEST(Interprete, CommandOfAPartNotBuiltFailsWithItsName) {
    auto s = Lance("Chain = 1, 2\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_TRUE(Messages(*s)[0].contains(QStringLiteral("CHAIN : commande pas encore disponible")));
}

TEST(Interprete, PositionsAbove32767Overflow) {
    QString t;
    while (t.size() < 33000) t += QStringLiteral("' padding padding padding padding\r\n");
    t += QStringLiteral("CT = 1, 1\r\n");
    Session s(t);
    s.Execute();
    ASSERT_EQ(s.hote.Messages().size(), 1);
    EXPECT_EQ(Croix(s), 0);
}

TEST(Interprete, StoredCommandLine) {
    auto s = Lance("%C =< CT = 4, 6\n%C\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_MM(s->etat.Repere.CTx, 4);
    EXPECT_MM(s->etat.Repere.CTy, 6);
    auto u = Lance("%Inconnu\n");
    ASSERT_EQ(u->hote.Messages().size(), 1);
    EXPECT_TRUE(Messages(*u)[0].contains(QStringLiteral("%Inconnu : non initialisée")));
}

TEST(Interprete, StopEndsTheLevelWithoutTheIfBox) {
    auto s = Lance("If 1 = 1 Then\nStop\nEndIf\nCT = 1, 1\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_EQ(Croix(*s), 0);
    auto t = Lance("CT = 1, 1\n! fin\nCT = 2, 2\n");
    EXPECT_EQ(Croix(*t), 1);
}

TEST(Interprete, ArretDemandeEndsTheRunQuietly) {
    Session s(Programme("CT = 1, 1\nE:\nGoto E\n"));
    struct Arret : HoteMemoire {
        Etat* e = nullptr;
        int tours = 0;
        using HoteMemoire::HoteMemoire;
        void PompeEvenements() override {
            if (e && ++tours > 1000) e->ArretDemande = true;
        }
    } hote(Programme("CT = 1, 1\nE:\nGoto E\n"));
    hote.e = &s.etat;
    s.etat.Host = &hote;
    s.Execute();
    EXPECT_GT(hote.tours, 1000);
    EXPECT_TRUE(hote.Messages().isEmpty());
    EXPECT_FALSE(s.etat.ExecutionEnCours);
}

TEST(Interprete, LoneUnderscoreAtTheEndIsAnUnfinishedContinuation) {
    // Skipping the "_" would end the run quietly; as a continuation marker it
    // leaves the text ending in a continuation: a failure of that line.
    auto s = Lance("CT = 1, 1\n_");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_TRUE(Messages(*s)[0].startsWith(QStringLiteral("Erreur dans la ligne : 2: \r\n\r\n")))
        << Messages(*s)[0].toStdString();
    EXPECT_EQ(Croix(*s), 1);
    // In the middle of the text it joins the next line, which runs.
    auto t = Lance("CT = 1, 1\n_\nCT = 3, 4\n");
    EXPECT_TRUE(t->hote.Messages().isEmpty());
    EXPECT_MM(t->etat.Repere.CTx, 3);
    EXPECT_MM(t->etat.Repere.CTy, 4);
}

// Part 1.1: after a run-time failure the handler ends the level; the steps of
// a normal end (string 127 among them) don't follow.
TEST(Interprete, FailureInsideABlockShowsOnlyItsOwnBox) {
    auto s = Lance("If 1 = 1 Then\nCT = %Q, 1\nEndIf\n");
    ASSERT_EQ(s->hote.Messages().size(), 1) << Messages(*s).join("|").toStdString();
    EXPECT_TRUE(Messages(*s)[0].startsWith(QStringLiteral("Erreur dans la ligne : 2: CT = %Q, 1\r\n\r\n%Q : non initialisée")))
        << Messages(*s)[0].toStdString();
    EXPECT_FALSE(s->etat.ExecutionEnCours);
}
