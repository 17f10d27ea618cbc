// Seeded random programs through the whole interpreter: only boxes may come out
// of a run; no crash, no exception, no hang (the host stops endless loops); a
// second run draws what the first drew.
#include "outils.h"

#include <random>

TEST(FuzzProgrammes, OnlyBoxesComeOutOfARun) {
    static const QStringList lignes = {
        "%A = 1", "%A == %A+1", "%B =< %A", "%C = \"x\"", "%A =< %A", "%L = 1,2,3", "%N == NBP(%L)",
        "If %A > 2 Then", "If %A < 5 Goto E1", "If %A = 1 Then CT = 1, 1", "IfT %C = x Then",
        "ElseIf %A = 3 Then", "Else", "EndIf", "E1:", "E2:", "Goto E1", "Goto E2", "Goto 3", "Goto Nulle",
        "Stop", "!", "CT = %A, 2", "CT", "CT = 5R, 3§45", "CentreE = 10, 10", "AngRot = 30", "FormatI = Portrait",
        "Separateur = ;", "Separateur", "EpaisT = 2mm§C§1§2", "Couleur = ROUGE", "? = %X, %Y", "?",
        "RefCur = 1, 2", "NPage", "Options#$ = MaxIf,4,,OptMaxIf", "%T = LEF2(\"abc\")", "%U = #1+#",
        "If (1 AND 0) OR NOT 1 Then", "If 1 == 1 Then", "If Then", "_", "CT = 1, _", "' comment",
        "Inconnu = 1", "Facteur = 2", "%A(", "%IRE$#0z = 4", "ListeVar = v", "Input = x?§3, %I"};
    struct HoteBorne : HoteMemoire {
        Etat* e = nullptr;
        int pompes = 0;
        using HoteMemoire::HoteMemoire;
        void PompeEvenements() override {
            if (++pompes > 2000) e->ArretDemande = true;
        }
    };
    std::mt19937 g(7u);
    std::uniform_int_distribution<int> nombre(1, 25), choix(0, int(lignes.size()) - 1);
    for (int tour = 0; tour < 400; ++tour) {
        QString p;
        for (int n = nombre(g); n > 0; --n) p += lignes[choix(g)] + "\r\n";
        HoteBorne h(p);
        Session s(p);
        h.e = &s.etat;
        s.etat.Host = &h;
        EXPECT_NO_THROW(s.Execute()) << p.toStdString();
        EXPECT_FALSE(s.etat.ExecutionEnCours) << p.toStdString();
        // The same run again, with the lines and expressions it has met known,
        // draws the same and shows the same boxes.
        const QByteArray dessin = QJsonDocument(DumpJson(s)).toJson();
        const QVector<MessageEnregistre> boites = h.Messages();
        s.journal.clear();
        h.pompes = 0;
        s.Execute();
        EXPECT_EQ(QJsonDocument(DumpJson(s)).toJson(), dessin) << p.toStdString();
        EXPECT_EQ(h.Messages().size(), 2 * boites.size()) << p.toStdString();
        for (qsizetype i = 0; i < boites.size() && i + boites.size() < h.Messages().size(); ++i)
            EXPECT_EQ(h.Messages()[i + boites.size()].texte, boites[i].texte) << p.toStdString();
    }
}
