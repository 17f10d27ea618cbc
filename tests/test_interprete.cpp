// The run: lines, continuations, comments, and the boxes that end a run.
#include "language/chaines.h"
#include "language/interprete.h"
#include "outils.h"

namespace {
// The crosses of the origin commands: two strokes each.
int Croix(const Session& s) { return int(Lignes(s).size()) / 2; }
} // namespace

TEST(Interprete, LinesThatRun) {
    // Program, crosses drawn, position of the last one.
    const std::tuple<QString, int, double, double> cas[] = {
        {"", 0, 0, 0},
        {"CentreE = 10, 10\r\nCT = 5, 5", 2, 5, 5}, // the last line needs no CR LF
        {"_\nCT = 3, 4\n", 1, 3, 4},                 // a lone "_" joins the next line
        {"CT = 1, 1\n_\nCT = 3, 4\n", 2, 3, 4},
        {"%C =< CT = 4, 6\n%C\n", 1, 4, 6}, // a variable holding a command line
        {"If 1 = 1 Then\nStop\nEndIf\nCT = 1, 1\n", 0, 0, 0}, // Stop ends the level, no box for the If
        {"CT = 1, 1\n! fin\nCT = 2, 2\n", 1, 1, 1}};
    for (const auto& [programme, croix, x, y] : cas) {
        auto s = Lance(programme);
        EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
        EXPECT_EQ(Croix(*s), croix) << programme.toStdString();
        EXPECT_MM(s->etat.Repere.CTx, x) << programme.toStdString();
        EXPECT_MM(s->etat.Repere.CTy, y) << programme.toStdString();
        EXPECT_FALSE(s->etat.ExecutionEnCours);
    }
    EXPECT_EQ(Lance("")->etat.NiveauCourant, 0); // an empty editor enters no level
}

TEST(Interprete, OneBoxEndsTheRun) {
    // Program, the box's text (whole, or its start), crosses drawn before it.
    const std::tuple<QString, QString, bool, int> cas[] = {
        {"CT = 1, 1\nCT = 5, _", "Erreur dans la ligne : 2: CT = 5,", false, 1},
        {"CT = 1, 1\n_", "Erreur dans la ligne : 2: \r\n\r\n", false, 1},
        {"E1:\nGoto E1 ' a=b\n", "Erreur de commande dans la ligne : 2: Goto E1 ' a=b\r\n", true, 0},
        {"Bidule = 3\nCT = 1, 1\n", "Erreur de commande dans la ligne : 1: Bidule = 3\r\n", true, 0},
        {"Facteurs = 2\nCT = 1, 1\n", "Erreur de commande dans la ligne : 1: Facteurs = 2\r\n", true, 0},
        {"CentreE = 10, 10\nCentreE = 20, 20\n",
         "Erreur dans l'ordre des commandes ligne : 2: CentreE = 20, 20\r\n" + LoadResString(161) + "\r\n", true, 1},
        {"If 1 = 1 Then\nCT = 1, 1\n", "Erreur : If[T] sans Endif", true, 1},
        {"If 1 = 1 Then\nCT = %Q, 1\nEndIf\n", "Erreur dans la ligne : 2: CT = %Q, 1\r\n\r\n%Q : non initialisée", false, 0},
        {"%Inconnu\n", "Erreur dans la ligne : 1: %Inconnu\r\n\r\n%Inconnu : non initialisée", false, 0}};
    for (const auto& [programme, texte, entier, croix] : cas) {
        auto s = Lance(programme);
        ASSERT_EQ(s->hote.Messages().size(), 1) << Messages(*s).join("|").toStdString();
        if (entier) EXPECT_EQ(Messages(*s)[0], texte);
        else EXPECT_TRUE(Messages(*s)[0].startsWith(texte)) << Messages(*s)[0].toStdString();
        EXPECT_EQ(Croix(*s), croix) << programme.toStdString();
        EXPECT_FALSE(s->etat.ExecutionEnCours);
    }
}

TEST(Interprete, ErrorBoxTitleCountsVariablesAndTheLineIsMarked) {
    auto s = Lance("%A = 1\n%B = 2\nCT = %C, 1\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_EQ(s->hote.Messages()[0].titre, QStringLiteral("Mirel    (nb Var=2)"));
    EXPECT_TRUE(Messages(*s)[0].contains("%A\t= 1\r\n%B\t= 2\r\n"));
    ASSERT_EQ(s->hote.Marques.size(), 1);
    EXPECT_EQ(s->hote.Marques[0].first, 16); // start of line 3, 0-based
    EXPECT_EQ(s->hote.Marques[0].second, 10);
}

TEST(Interprete, CommentIsCutButTexteKeepsItsApostrophe) {
    // The failing command is the last line: LigneCourante holds what the classification left.
    EXPECT_EQ(Lance("Droite = 1,2 ' x")->etat.LigneCourante, QStringLiteral(" 1,2 "));
    EXPECT_EQ(Lance("Texte = 1,2,It's")->etat.LigneCourante, QStringLiteral(" 1,2,It's"));
}

TEST(Interprete, PositionsAbove32767Overflow) {
    QString t;
    while (t.size() < 33000) t += QStringLiteral("' padding padding padding padding\r\n");
    Session s(t + "CT = 1, 1\r\n");
    s.Execute();
    EXPECT_EQ(s.hote.Messages().size(), 1);
    EXPECT_EQ(Croix(s), 0);
}

TEST(Interprete, ArretDemandeEndsTheRunQuietly) {
    const QString p = Programme("CT = 1, 1\nE:\nGoto E\n");
    struct Arret : HoteMemoire {
        Etat* e = nullptr;
        int tours = 0;
        using HoteMemoire::HoteMemoire;
        void PompeEvenements() override {
            if (++tours > 1000) e->ArretDemande = true;
        }
    } hote(p);
    Session s(p);
    hote.e = &s.etat;
    s.etat.Host = &hote;
    s.Execute();
    EXPECT_GT(hote.tours, 1000);
    EXPECT_TRUE(hote.Messages().isEmpty());
    EXPECT_FALSE(s.etat.ExecutionEnCours);
}
