// The command dialog FrmCmd: a line taken apart into rows and put together again.
#include "outils_fenetre.h"

#include "app/commande_dialogue.h"
#include "app/core/aide.h"
#include "app/core/dmk.h"
#include "app/core/externes.h"
#include "app/impression.h"

#include <QPushButton>

namespace {

// Opens the form on line `ligne` (0-based), sets rows (0-based) to values, and
// presses OK when `ok`; returns what the form showed.
ModeleMasque Edite(Form1& f, BoitesTest& b, int ligne, const QList<std::pair<int, QString>>& valeurs, bool ok = true) {
    f.RTB1->setTextCursor(QTextCursor(f.RTB1->document()->findBlockByNumber(ligne)));
    ModeleMasque vu;
    OuvreMasque(f, b, [&](FrmCmd& d) {
        vu = d.Modele();
        for (int i = 0; i < d.ParaVal.size(); ++i) vu.Rangs[i].Valeur = d.ParaVal[i]->text();
        for (const auto& [rang, v] : valeurs) {
            d.ParaVal[rang]->setText(v);
            emit d.ParaVal[rang]->textEdited(v);
        }
        if (ok && d.ParaVal.isEmpty()) d.OK();
        else if (ok) QTest::keyClick(d.ParaVal.first(), Qt::Key_Return);
        else QTest::keyClick(&d, Qt::Key_Escape);
    });
    return vu;
}

// Presses F2 and lets `faire` act on the modal form it opens.
void F2(Form1& f, std::function<void(FrmCmd&)> faire) {
    auto agit = [faire] { if (auto* d = qobject_cast<FrmCmd*>(QApplication::activeModalWidget())) faire(*d); };
    QTimer::singleShot(0, agit);
    QTest::keyClick(f.RTB1, Qt::Key_F2);
}

} // namespace

// Open on a line, change rows, OK: the editor's line to the character.
TEST(CommandeDialogue, OkWritesTheLineBack) {
    const struct { QString ligne; QList<std::pair<int, QString>> valeurs; QString attendu; } cas[] = {
        // A colour and its second colour on their two rows, given back as they were.
        {"Cadre = 10, 20, 30, 40, Rouge§Bleu", {{6, " Rouge"}}, "Cadre = 10, 20, 30, 40, Rouge§Bleu"},
        {"Cadre = 10, 20, 30, 40, Rouge§Bleu", {{7, "Vert"}, {1, "C"}}, "Cadre = 10§C, 20, 30, 40, Rouge§Vert"},
        // Trailing values drop their separators, first and second.
        {"Cercle = 10, 20§5, 8, 0, 90, Rouge", {{7, ""}, {6, ""}, {5, ""}}, "Cercle = 10, 20§5, 8"},
        {"Cercle = 10, 20§5, 8, 0, 90, Rouge", {{2, ""}}, "Cercle = 10, 20, 8, 0, 90, Rouge"},
        {"  Arc=30,150,60   ' the scale", {{0, "30"}}, "  Arc =30,150,60   ' the scale"},
        {"Trait = 0, 0, _\n\t10, 10", {{7, " 20"}}, "Trait = 0, 0,10, 20"},
        // Keywords without "=", a polygon's empty colour row, further parameters.
        {"Goto E1", {{0, "E2"}}, "Goto E2"},
        {"Poly = 0, 0, 10, 0, 10, 10", {{0, ""}}, "Poly = 0, 0, 10, 0, 10, 10"},
        {"Poly = 0, 0, 10, 0, 10, 10", {{0, "Rouge"}}, "Poly =Rouge, 0, 0, 10, 0, 10, 10"},
        {"Texte = 5, 5, , , Un, deux", {{7, " Un, trois"}}, "Texte = 5, 5, , , Un, trois"},
        // A value of the user's that ends in the second separator keeps it.
        {"Texte = 10, 10, , , Paragraphe §", {{0, "20"}}, "Texte =20, 10, , , Paragraphe §"},
        // Variables, conditions and input keep their own joins.
        {"%d = 5", {{2, " 6"}}, "%d = 6"},
        {"%d==%a*2", {{0, "e"}, {2, "%a*3"}}, "%e==%a*3"},
        {"If %a > 3 Then Stop", {{2, "-3"}}, "If %a >-3 Then Stop"},
        {"IfT \"a=b\" = %t Goto Fin", {{4, "E2"}}, "IfT \"a=b\" = %t Goto E2"},
        {"ElseIf %a = 2 Then", {{2, "3"}}, "ElseIf %a = 3 Then"}, // no separator left behind Then
        {"Input = Diamètre ?§10, %d", {{2, "12"}}, "Input = Diamètre ?§12, %d"},
        {"Input < Nom, %n", {{0, ""}}, "Input Nom, %n"},
        {"MCE_Trou = 10, 20", {{2, " 3"}}, "MCE_Trou = 10, 20, 3"},
    };
    for (const auto& c : cas) {
        Banc b;
        QFile::copy(MIREL_SOURCE_DIR "/examples/MCE_Trou.dmk", b.programme.filePath("MCE_Trou.dmk"));
        Form1& f = b.Demarre(QString(c.ligne).replace("\n", "\r\n") + "\r\nCT = 0, 0\r\n");
        Edite(f, b.boites, 0, c.valeurs);
        EXPECT_EQ(f.RTB1->TexteCrLf(), c.attendu + "\r\nCT = 0, 0\r\n") << c.ligne.toStdString();
    }
}

// One undo level; Cancel, Esc and a form without a command change nothing.
TEST(CommandeDialogue, UndoCancelAndTheListForm) {
    Banc b;
    Form1& f = b.Demarre("Arc = 30, 150, 60\r\n' note\r\nFoo = 1\r\n");
    Edite(f, b.boites, 0, {{1, " 120"}});
    ASSERT_EQ(Ligne(*f.RTB1, 0), "Arc = 30, 120, 60");
    EXPECT_EQ(f.RTB1->textCursor().position(), 0);
    EXPECT_EQ(CouleurLigne(*f.RTB1, 0, 0), Editeur::Bleu); // the keyword is coloured again
    f.Mnu_Defaire->trigger();
    EXPECT_EQ(Ligne(*f.RTB1, 0), "Arc = 30, 150, 60");
    Edite(f, b.boites, 0, {{1, " 99"}}, false);
    EXPECT_EQ(Ligne(*f.RTB1, 0), "Arc = 30, 150, 60");
    for (int l : {1, 2, 3}) {
        const ModeleMasque m = Edite(f, b.boites, l, {});
        EXPECT_TRUE(m.Rangs.isEmpty() && !m.Valide && m.Commentaire.contains("Liste des commandes externes: "));
    }
    EXPECT_EQ(Edite(f, b.boites, 2, {}).Titre, "Foo = 1"); // an unknown line shows itself
    EXPECT_EQ(f.RTB1->TexteCrLf(), "Arc = 30, 150, 60\r\n' note\r\nFoo = 1\r\n");
}

// A first separator other than "," that the line uses: the question, and its
// answer; a comment or an unknown keyword opens the list form without it.
TEST(CommandeDialogue, ChangedSeparatorIsAskedFor) {
    for (const bool oui : {false, true}) {
        Banc b;
        Form1& f = b.Demarre("Arc = 30; 150; 60\r\n' x; y\r\nFoo = 1; 2\r\n");
        f.e.Separateur1 = ";";
        b.boites.vues.clear(); // the run's error box: the line is wrong for ","
        b.boites.reponses = {int(oui ? Reponse::Oui : Reponse::Non)};
        const ModeleMasque m = Edite(f, b.boites, 0, {}, false);
        EXPECT_EQ(b.boites.Messages(), QStringList{"ATTENTION: Remplacer/replace Separateur \";\" par/by \",\" ?"});
        EXPECT_EQ(m.Rangs[0].Valeur, oui ? " 30; 150; 60" : " 30");
        b.boites.vues.clear();
        Edite(f, b.boites, 1, {}, false);
        Edite(f, b.boites, 2, {}, false);
        EXPECT_TRUE(b.boites.Messages().isEmpty());
    }
}

// F2 opens the modal form on the line; Enter without a change is Cancel.
TEST(CommandeDialogue, F2OpensTheModalForm) {
    Banc b;
    Form1& f = b.Demarre("Couleur = Rouge\r\n");
    QString titre;
    F2(f, [&](FrmCmd& d) {
        titre = d.windowTitle() + (d.Cmd_OK->isEnabled() ? " (OK on)" : "");
        QTest::keyClick(&d, Qt::Key_Return);
    });
    EXPECT_EQ(titre, "Commande Couleur = Rouge");
    EXPECT_EQ(f.RTB1->TexteCrLf(), "Couleur = Rouge\r\n");
    // Alt-C, typed in the focused row, gives it the chosen colour, always spelt "RVB".
    b.boites.couleur = QColor(1, 2, 3);
    F2(f, [](FrmCmd& d) {
        QTest::keyClick(d.ParaVal.value(0), Qt::Key_C, Qt::AltModifier);
        QTest::keyClick(&d, Qt::Key_Enter);
    });
    EXPECT_EQ(f.RTB1->TexteCrLf(), "Couleur =RVB 1 2 3\r\n");
    // Alt-P goes through the window's font list; Ctrl asks for screen fonts.
    struct Polices : DialoguesImpression {
        bool ecran = false;
        bool ChoixImprimante(QWidget*, QPrinter&) override { return false; }
        bool ImpressionCode(QWidget*, QPrinter&, bool) override { return false; }
        std::optional<QFont> Police(QWidget*, const QFont&, bool e) override { return ecran = e, QFont("Arial"); }
    };
    auto* polices = new Polices;
    f.DialoguesImp.reset(polices);
    F2(f, [](FrmCmd& d) {
        QTest::keyClick(&d, Qt::Key_P, Qt::AltModifier | Qt::ControlModifier);
        QTest::keyClick(&d, Qt::Key_Enter);
    });
    EXPECT_TRUE(f.RTB1->TexteCrLf() == "Couleur =Arial\r\n" && polices->ecran) << f.RTB1->TexteCrLf().toStdString();
}

// Bezier control vectors become Angle°, Length; a vector given so stays.
TEST(CommandeDialogue, BezierVectorsBecomePolar) {
    const Reglages r;
    const ModeleMasque m = ConstruitMasque("Bezier = N, , , 5, 5, 5, 15, 50, 0, 10°, 5, 60, 60, -1, 0", r, 0, ",", "§");
    const QStringList attendu = {" 5", " 5", "90.0°", "10.0", " 50", " 0", " 10°", " 5"};
    for (int i = 0; i < attendu.size(); ++i) EXPECT_EQ(m.Rangs[8 + i].Valeur, attendu[i]) << i;
    EXPECT_EQ(ConstruitMasque("Bezier_aGr = N, , , 0, 0, -10, 0", r, 0, ",", "§").Rangs[16].Valeur, "180.0°");
}

// Every described command in every language: each parameter and sub-parameter
// lands on its own row, and OK without a change gives the line back.
TEST(CommandeDialogue, EveryDescribedCommandRoundTrips) {
    Reglages r;
    QTemporaryDir dossier;
    for (const char* n : {"MCE_Trou", "MCE_Butee", "MCE_Platine"})
        QFile::copy(QString(MIREL_SOURCE_DIR "/examples/") + n + ".dmk", dossier.filePath(QString(n) + ".dmk"));
    // A header whose second parameter has a blank description still gives that parameter a row.
    std::mt19937 ale(1);
    QFile vide(dossier.filePath("MCE_Vide.dmk"));
    ASSERT_TRUE(vide.open(QIODevice::WriteOnly));
    vide.write(CodeDmk("' Vide\r\n'$FVide;a; ;c\r\n'$$\r\nStop\r\n", ale).value_or(""));
    vide.close();
    r.DossierProgramme = r.DossierTravail = dossier.path() + '/';
    ChargeCommandesExternes(r);
    ASSERT_EQ(r.CommandesExternes.size(), 4);
    EXPECT_EQ(AssembleLigne(ConstruitMasque("MCE_Vide = 1, 2, 3", r, 0, ",", "§")), "MCE_Vide = 1, 2, 3");
    QStringList mots = r.CommandesExternes;
    for (const RangeeSyntaxe& s : RangeesSyntaxe())
        for (const QString& m : QString::fromLatin1(s.Mots).split(' '))
            if (!QStringList{"COM", "SUITE", "%", "IF", "IFT", "ELSE", "ELSEIF", "ELSEIFT", "INPUT", "GOTO"}.contains(m))
                mots << m;
    for (int d : {0, 400, 800, 1200}) // the dialog's texts, one section per language
        for (const QString& mot : mots) {
            // The rows of the form on the line's own keyword, then a line with a value for each of them.
            const ModeleMasque vide = ConstruitMasque(mot + " =", r, d, ",", "§");
            ASSERT_TRUE(vide.Valide) << mot.toStdString() << d;
            QStringList params;
            for (const RangMasque& g : vide.Rangs) {
                if (g.Libelle.trimmed() == "[...]") break;
                const QString v = QString("v%1.%2").arg(g.Champ).arg(params.size() > g.Champ ? 1 : 0);
                if (params.size() <= g.Champ) params << v;
                else params[g.Champ] += "§" + v;
            }
            const QString ligne = mot + " =" + params.join(",");
            const ModeleMasque m = ConstruitMasque(ligne, r, d, ",", "§");
            for (const RangMasque& g : m.Rangs)
                if (g.Libelle.trimmed() != "[...]")
                    EXPECT_TRUE(g.Valeur.startsWith(QString("v%1.").arg(g.Champ))) << ligne.toStdString();
            EXPECT_EQ(AssembleLigne(m), ligne) << d;
        }
}
