// Part 4.3: file inclusion and external commands (and the bullets of Parts
// 1.1, 1.2 and 1.3 that need an included file).
#include "app/core/dmk.h"
#include "app/core/encodage.h"
#include "app/core/externes.h"
#include "app/core/inclusion.h"
#include "drawing/surface.h"
#include "language/chaines.h"
#include "language/commandes.h"
#include "language/interprete.h"
#include "outils.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <random>

namespace {

// A folder of command files for one test. The main program is "main.dat"
// in it; it is also the working folder, the folder of the last opened file
// and, unless a test says otherwise, the program folder.
struct Dossier {
    QTemporaryDir d;
    QString P() const { return d.path() + u'/'; }

    QString Ecrit(const QString& nom, const QString& lignes) const {
        const QString chemin = P() + nom;
        QDir().mkpath(QFileInfo(chemin).path());
        QFile f(chemin);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(Programme(lignes).toUtf8());
        return chemin;
    }
    QString EcritDmk(const QString& nom, const QString& lignes) const {
        std::mt19937 ale(7);
        const std::optional<QByteArray> code = CodeDmk(Programme(lignes), ale);
        EXPECT_TRUE(code.has_value());
        const QString chemin = P() + nom;
        QDir().mkpath(QFileInfo(chemin).path());
        QFile f(chemin);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(*code);
        return chemin;
    }
};

// A session whose folders are those of the test folder.
std::unique_ptr<Session> Prepare(const Dossier& d, const QString& principal) {
    auto s = std::make_unique<Session>(Programme(principal));
    s->regl.DossierProgramme = d.P();
    s->regl.DossierTravail = d.P();
    s->regl.DossierFichier = d.P();
    s->etat.FichierPrincipal = d.P() + QStringLiteral("main.dat");
    return s;
}

std::unique_ptr<Session> LanceDans(const Dossier& d, const QString& principal, QStringList reponses = {}) {
    auto s = Prepare(d, principal);
    s->hote.Reponses = reponses;
    s->Execute();
    return s;
}

QString Chaine(int n) { return LoadResString(n); }

} // namespace

// --- Part 4.3, Edge cases worth testing

TEST(Inclusion, DefaultOfTheFirstVariableIsOverriddenByPosition) {
    Dossier d;
    d.Ecrit("a.dat", "%a = 1\n%IRE$-1r = %a\n");
    auto s = LanceDans(d, "Fichier = a, 10, 20, 5\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_EQ(Variable(*s, "%r"), "5");
    // Without the parameter the file's default stands.
    auto t = LanceDans(d, "Fichier = a, 10, 20\n");
    EXPECT_EQ(Variable(*t, "%r"), "1");
}

TEST(Inclusion, OmittedPositionIsTheCurrentPointAndANamedVariableIsSet) {
    Dossier d;
    d.Ecrit("a.dat", "%j = 1\n%k = 0\n%IRE$-1r = %k\n%IRE$-1rj = %j\n"
                     "%IRE$-1fx = %FicX\n%IRE$-1fy = %FicY\n%IRE$-1ox = %CEx\n%IRE$-1oy = %CEy\n");
    // Droite leaves the pen in the middle of its line: the point (30, 25).
    auto s = LanceDans(d, "Droite = 20, 40, 25\n%ox0 == %CEx\n%oy0 == %CEy\nFichier = a, , , %k=3\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_EQ(Variable(*s, "%r"), "3");
    EXPECT_EQ(Variable(*s, "%rj"), "1"); // the named field fills no slot by position
    EXPECT_EQ(Variable(*s, "%fx"), "30");
    EXPECT_EQ(Variable(*s, "%fy"), "25");
    EXPECT_MM(Variable(*s, "%ox").toDouble() - Variable(*s, "%ox0").toDouble(), 30);
    EXPECT_MM(Variable(*s, "%oy").toDouble() - Variable(*s, "%oy0").toDouble(), 25);
}

TEST(Inclusion, EmptyFirstExtraFieldFillsOnlyTheSecondSlot) {
    Dossier d;
    d.Ecrit("a.dat", "%a = 1\n%b = 2\n%IRE$-1ra = %a\n%IRE$-1rb = %b\n");
    auto s = LanceDans(d, "Fichier = a, , , , 7\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_EQ(Variable(*s, "%ra"), "1");
    EXPECT_EQ(Variable(*s, "%rb"), "7");
}

TEST(Inclusion, QuestionFormFromAnIncludedFileRunsTheFile) {
    Dossier d;
    d.Ecrit("a.dat", "' Notes of a\n%IRE$#0vu = 1\n");
    d.Ecrit("b.dat", "Fichier = a.dat, ?\n");
    auto s = LanceDans(d, "Fichier = b\n%suite = 1\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_EQ(s->etat.PileFic[0].ValVar[1], "1");
    EXPECT_EQ(Variable(*s, "%suite"), "1");
    EXPECT_FALSE(s->hote.TexteModifie());
}

TEST(Inclusion, QuestionFormAtLevel1CopiesTheCommentBlockAndStops) {
    Dossier d;
    d.Ecrit("a.dat", "' Vis de fixation\n%D = 3   ' diamètre\n\n'$FTrou;x;y\n'@C LB\n"
                     "'# Fin\n' not copied\n%IRE$#0vu = 1\n");
    auto s = LanceDans(d, "Fichier = a.dat, ?\n%suite = 1\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_TRUE(s->etat.ArretDemande);
    EXPECT_EQ(Variable(*s, "%suite"), ""); // the run ended at once
    EXPECT_EQ(s->etat.PileFic[0].NbVar, 0); // the file did not run
    EXPECT_EQ(s->hote.TexteEditeur(),
              Programme("Fichier = a.dat, ?\n' Commentaires du fichier commande\n' externe a.dat"
                        "\n' Vis de fixation\n' %D = 3   ' diamètre\n\n%suite = 1\n"));
}

TEST(Inclusion, PenFontSeparatorsAndColourAreBackAfterACall) {
    Dossier d;
    d.Ecrit("a.dat", "EpaisT = 1mm\nCouleur = Bleu\nSeparateur = :, @\nCT = 5: 5\nAngRot = 30\n");
    auto s = LanceDans(d, "EpaisT = 0.3mm\nCouleur = Rouge\nSeparateur = ;, #\nFichier = a\nCT = 1; 2\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_EQ(s->etat.Separateur1, ";");
    EXPECT_EQ(s->etat.Separateur2, "#");
    EXPECT_EQ(s->etat.PileFic[1].Separateur1, ";");
    const QVector<OpSurface> l = Lignes(*s);
    ASSERT_EQ(l.size(), 4); // the cross of the file, then the caller's
    EXPECT_EQ(l[0].couleur, RGB(0, 0, 255));
    EXPECT_EQ(l[3].couleur, RGB(255, 0, 0));
    EXPECT_LT(l[3].largeur, l[0].largeur);
    EXPECT_EQ(s->etat.Styles.CouleurDefaut, RGB(255, 0, 0));
    EXPECT_FLOAT_EQ(s->etat.Repere.AngRotDefaut, 0);
    EXPECT_MM(s->etat.Repere.CTx, 1);
}

TEST(Inclusion, FontIsBackAfterACall) {
    // No font command exists yet in this tree: the caller's font is set by
    // hand, and the entry of the called level resets it (Part 1.1 step 11).
    Dossier d;
    d.Ecrit("a.dat", "CT = 1, 1\n%IRE$-1pol = %Pol\n");
    auto s = Prepare(d, "' main\n");
    Etat& e = s->etat;
    e.Surf = s->pane.get();
    e.PileFic[1].Texte = Programme("' main\n");
    e.NiveauCourant = 1;
    e.Surf->Font.Name = "Arial";
    e.Surf->Font.Size = 21;
    e.Surf->Font.Bold = true;
    e.Surf->Font.Underline = true;
    e.Txt.TaillePolice = 21;
    e.LigneCourante = " a";
    EXPECT_EQ(AppelFichier(e, 1, 0), 0);
    EXPECT_EQ(Variable(*s, "%pol"), "Times New Roman"); // inside the file
    EXPECT_EQ(e.Surf->Font.Name, "Arial");
    EXPECT_EQ(e.Surf->Font.Size, 21);
    EXPECT_TRUE(e.Surf->Font.Bold);
    EXPECT_FALSE(e.Surf->Font.Italic);
    EXPECT_TRUE(e.Surf->Font.Underline);
    EXPECT_EQ(e.Txt.TaillePolice, 21);
    EXPECT_EQ(e.LigneCourante, " a");
    EXPECT_EQ(e.NiveauCourant, 1);
    EXPECT_TRUE(e.PileFic[2].Nom.isEmpty()); // RazCtxFic cleared the level
}

// --- Parts 1.1, 1.2, 1.3: the bullets that need an included file

TEST(Inclusion, FacteursIsIgnoredInAnIncludedFile) {
    Dossier d;
    d.Ecrit("a.dat", "Facteurs = 2\nFacteur = 3\n%IRE$-1r = 1\n");
    auto s = LanceDans(d, "Fichier = a\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_EQ(Variable(*s, "%r"), "1");
}

TEST(Inclusion, FailingIncludedFileWithOkLetsTheMainProgramGoOn) {
    Dossier d;
    d.Ecrit("a.dat", "%v = 2\nCT = %nope, 0\n%IRE$-1r = 1\n");
    auto s = LanceDans(d, "%x = 1\nFichier = a\n%suite = 1\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    const MessageEnregistre& m = s->hote.Messages()[0];
    EXPECT_EQ(m.boutons, Boutons::OkAnnuler);
    // String 114, the line of the nested file, " du fichier: ", Nom (the
    // candidate that matched, as formed: the working folder's "a.dat"), two
    // line ends, the file-not-found text (none), the listing of the variables.
    const QString debut = Chaine(114) + "CT = %nope, 0 du fichier: a.dat\r\n\r\n";
    EXPECT_TRUE(m.texte.startsWith(debut)) << m.texte.toStdString();
    EXPECT_TRUE(m.texte.contains("%v\t= 2\r\n"));
    EXPECT_EQ(m.titre, "Mirel    (nb Var=3)"); // %v and %FicX, %FicY
    EXPECT_EQ(Variable(*s, "%r"), "");       // the level ended
    EXPECT_EQ(Variable(*s, "%suite"), "1");   // the main program went on
    // The Fichier line of level 1 is marked.
    ASSERT_EQ(s->hote.Marques.size(), 1);
    EXPECT_EQ(s->hote.Marques[0].first, 8);
}

TEST(Inclusion, FailingIncludedFileWithCancelEndsTheRun) {
    Dossier d;
    d.Ecrit("a.dat", "CT = %nope, 0\n");
    d.Ecrit("b.dat", "Fichier = a\n%IRE$#0b = 1\n");
    auto s = LanceDans(d, "Fichier = b\n%suite = 1\n", {"cancel"});
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_TRUE(s->etat.ArretDemande);
    EXPECT_EQ(s->etat.PileFic[0].NbVar, 0); // b stopped too
    EXPECT_EQ(Variable(*s, "%suite"), "");
}

TEST(Inclusion, ErrorInACodedFileHidesItsInsides) {
    Dossier d;
    d.EcritDmk("a.dmk", "%secret = 1\nCT = %nope, 0\n");
    auto s = LanceDans(d, "%x = 1\nFichier = a.dmk\n%suite = 1\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_EQ(Messages(*s)[0], Chaine(114) + "2, dans le fichier: a.dmk\r\n\r\n");
    EXPECT_EQ(Variable(*s, "%suite"), "1");
}

TEST(Inclusion, SharedVariableOfOneIncludedFileIsVisibleToAnother) {
    Dossier d;
    d.Ecrit("a.dat", "%IRE$#0x = 5\n");
    d.Ecrit("b.dat", "%IRE$-1r = %IRE$#0x\n");
    auto s = LanceDans(d, "Fichier = a\nFichier = b\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_EQ(Variable(*s, "%r"), "5");
}

TEST(Inclusion, CallersParameterSurvivesTheFirstAssignmentNotTheSecond) {
    Dossier d;
    d.Ecrit("a.dat", "%a = 1\n%IRE$-1r1 = %a\n%a = 2\n%IRE$-1r2 = %a\n");
    auto parPosition = LanceDans(d, "Fichier = a, , , 5\n");
    EXPECT_EQ(Variable(*parPosition, "%r1"), "5");
    EXPECT_EQ(Variable(*parPosition, "%r2"), "2");
    auto parNom = LanceDans(d, "Fichier = a, , , %a=5\n");
    EXPECT_EQ(Variable(*parNom, "%r1"), "5");
    EXPECT_EQ(Variable(*parNom, "%r2"), "2");
    // StopArg ends the skipping.
    d.Ecrit("b.dat", "StopArg\n%a = 1\n%IRE$-1r1 = %a\n");
    auto stop = LanceDans(d, "Fichier = b, , , 5\n");
    EXPECT_EQ(Variable(*stop, "%r1"), "1");
}

TEST(Inclusion, NextLevelStartsAgainWithComma) {
    Dossier d;
    d.Ecrit("a.dat", "%p = 1\nCT = 3, 4\n%IRE$-1r = %p\n");
    auto s = LanceDans(d, "Separateur = ;\nFichier = a; 0; 0; 9\nCT = 1; 2\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_EQ(Variable(*s, "%r"), "9");
    EXPECT_EQ(s->etat.Separateur1, ";");
    EXPECT_MM(s->etat.Repere.CTx, 1);
    EXPECT_MM(s->etat.Repere.CTy, 2);
}

// --- Nesting

TEST(Inclusion, FileCallingItselfStopsAtDepth5) {
    Dossier d;
    d.Ecrit("a.dat", "Fichier = a\n");
    auto s = LanceDans(d, "Fichier = a\n%suite = 1\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    const MessageEnregistre& m = s->hote.Messages()[0];
    EXPECT_EQ(m.texte, QString(Chaine(123)).replace("%1", "5") + "\r\n(a)");
    EXPECT_EQ(m.boutons, Boutons::OkAnnuler);
    EXPECT_EQ(Variable(*s, "%suite"), "1"); // OK: the call is skipped, all levels go on
}

TEST(Inclusion, CancelOnTheSelfCallBoxEndsTheWholeRun) {
    Dossier d;
    d.Ecrit("a.dat", "Fichier = a\n%IRE$#0apres = 1\n");
    auto s = LanceDans(d, "Fichier = a\n%suite = 1\n", {"cancel"});
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_TRUE(s->etat.ArretDemande);
    EXPECT_EQ(s->etat.PileFic[0].NbVar, 0); // no level went on
    EXPECT_EQ(Variable(*s, "%suite"), "");
}

TEST(Inclusion, SixthLevelOfOtherFilesIsSkippedWithString113) {
    Dossier d;
    d.Ecrit("a.dat", "Fichier = b\n");
    d.Ecrit("b.dat", "Fichier = a\n");
    auto s = LanceDans(d, "Fichier = a\n%suite = 1\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_EQ(Messages(*s)[0], QString(Chaine(113)).replace("%1", "5") + "\r\n(a)");
    EXPECT_EQ(s->hote.Messages()[0].boutons, Boutons::Ok);
    EXPECT_EQ(Variable(*s, "%suite"), "1");
}

// --- Position, rotation, origin

TEST(Inclusion, OriginOfTheCalledFileIsTheCallersPlusXY) {
    Dossier d;
    d.Ecrit("a.dat", "%IRE$-1ox = %CEx\n%IRE$-1oy = %CEy\nCT = 0, 0\n");
    auto s = LanceDans(d, "CentreE = 40, 30, N\n%ox0 == %CEx\n%oy0 == %CEy\nFichier = a, 10, 20\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_MM(Variable(*s, "%ox").toDouble(), Variable(*s, "%ox0").toDouble() + 10);
    EXPECT_MM(Variable(*s, "%oy").toDouble(), Variable(*s, "%oy0").toDouble() + 20);
    // The cross of CT = 0, 0 of the file stands there; the caller's origin is back.
    const QVector<OpSurface> l = Lignes(*s);
    ASSERT_EQ(l.size(), 2);
    EXPECT_MM((l[0].x1 + l[0].x2) / 2, Variable(*s, "%ox0").toDouble() + 10);
    EXPECT_MM(s->etat.Repere.OrigineX, Variable(*s, "%ox0").toDouble());
}

TEST(Inclusion, RotationTurnsThePositionAndStaysReadableInFicY) {
    Dossier d;
    d.Ecrit("a.dat", "%IRE$-1ox = %CEx\n%IRE$-1oy = %CEy\n%IRE$-1fy = %FicY\n%IRE$-1ar = %AR0\n");
    auto s = LanceDans(d, "%ox0 == %CEx\n%oy0 == %CEy\nFichier = a, 10, 0§90\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_MM(Variable(*s, "%ox").toDouble() - Variable(*s, "%ox0").toDouble(), 0);
    EXPECT_MM(Variable(*s, "%oy").toDouble() - Variable(*s, "%oy0").toDouble(), 10);
    EXPECT_EQ(Variable(*s, "%fy"), "0§90");
    EXPECT_EQ(Variable(*s, "%ar"), "0"); // the § rotation is not an AngRot
}

TEST(Inclusion, AngRotPassesDownToNivAngRot) {
    Dossier d;
    d.Ecrit("a.dat", "%IRE$-1ar = %AR0\n");
    auto s = LanceDans(d, "AngRot = 30\nFichier = a\n");
    EXPECT_EQ(Variable(*s, "%ar"), "30");
    auto t = LanceDans(d, "AngRot = 30, 0\nFichier = a\n"); // NivAngRot := 1
    EXPECT_EQ(Variable(*t, "%ar"), "0");
}

TEST(Inclusion, OriginCentreAndRotationAreBackAfterACall) {
    Dossier d;
    d.Ecrit("a.dat", "CT = 50, 50\nAngRot = 45\nDroite = 0, 10, 5\n");
    auto s = LanceDans(d, "CT = 5, 6\nDroite = 0, 20, 0, N\nFichier = a, 100, 0\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_MM(s->etat.Repere.CTx, 5);
    EXPECT_MM(s->etat.Repere.CTy, 6);
    EXPECT_FLOAT_EQ(s->etat.Repere.AngRotDefaut, 0);
    EXPECT_MM(s->etat.Repere.PointX, 10); // the caller's point
    EXPECT_MM(s->etat.Repere.PointY, 0);
}

TEST(Inclusion, CentreEInAnIncludedFileActsOnlyWithoutAGivenPosition) {
    Dossier d;
    d.Ecrit("a.dat", "CentreE = 7, 8, N\n%IRE$-1ox = %CEx\n");
    auto s = LanceDans(d, "%ox0 == %CEx\nFichier = a, 10, 0\nFichier = a\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    // The second call gave no position: the file's CentreE places it.
    EXPECT_MM(Variable(*s, "%ox").toDouble(), Variable(*s, "%ox0").toDouble() + 7);
    auto t = LanceDans(d, "%ox0 == %CEx\nFichier = a, 10, 0\n");
    EXPECT_MM(Variable(*t, "%ox").toDouble(), Variable(*t, "%ox0").toDouble() + 10);
}

TEST(Inclusion, FichierSetsBits8And64OfEtatOrdre) {
    Dossier d;
    d.Ecrit("a.dat", "' nothing\n");
    auto s = LanceDans(d, "Fichier = a\n");
    EXPECT_EQ(s->etat.EtatOrdre & (8 | 64), 8 | 64);
    // so a centre command may no longer follow
    auto t = LanceDans(d, "Fichier = a\nCentreE = 1, 1\n");
    ASSERT_EQ(t->hote.Messages().size(), 1);
    EXPECT_TRUE(Messages(*t)[0].startsWith(Chaine(119)));
}

// --- Parameter forms

TEST(Inclusion, DoublePercentCopiesAllVariablesOfTheCaller) {
    Dossier d;
    d.Ecrit("a.dat", "%u = 0\n%w = 0\n%IRE$-1r = %u/%w\n");
    auto s = LanceDans(d, "%u = 4\n%w = 6\nFichier = a, , , %%\n");
    EXPECT_EQ(Variable(*s, "%r"), "4/6");
}

TEST(Inclusion, NameTakesTheCallersValueOfAnotherVariable) {
    Dossier d;
    d.Ecrit("a.dat", "%t = x\n%IRE$-1r = %t\n");
    auto s = LanceDans(d, "%autre = \"  deux mots\"\nFichier = a, , , %t=<%autre\n");
    EXPECT_EQ(Variable(*s, "%r"), "deux mots");
}

TEST(Inclusion, PositionalParametersAreSubstitutedByTheCaller) {
    Dossier d;
    d.Ecrit("a.dat", "%a = 1\n%b = 2\n%IRE$-1r = %a-%b\n");
    auto s = LanceDans(d, "%v = 12\nFichier = a, , , %v, texte\n");
    EXPECT_EQ(Variable(*s, "%r"), "12-texte");
}

// --- File lookup and reading

TEST(Inclusion, BareNameLooksForDmkThenDatInTheWorkingFolder) {
    Dossier d;
    d.Ecrit("trav/a.dat", "%IRE$-1r = dat\n");
    d.EcritDmk("trav/a.dmk", "%IRE$-1r = dmk\n");
    auto s = Prepare(d, "Fichier = a\n");
    s->regl.DossierTravail = d.P() + "trav/";
    s->regl.DossierProgramme = d.P() + "prog/";
    s->Execute();
    EXPECT_EQ(Variable(*s, "%r"), "dmk");
    EXPECT_EQ(s->etat.PileFic[2].Nom, ""); // cleared after the call
}

TEST(Inclusion, BareNameLooksInTheProgramFolderAndTheFolderOfTheFile) {
    Dossier d;
    d.Ecrit("prog/p.dat", "%IRE$-1r = prog\n");
    d.Ecrit("fic/p.dat", "%IRE$-1r = fichier\n");
    d.Ecrit("prog/q.dat", "%IRE$-1r = prog\n");
    d.EcritDmk("prog/m.dmk", "%IRE$-1r = progdmk\n");
    auto s = Prepare(d, "Fichier = p\n%p = %r\nFichier = q\n%q = %r\nFichier = m\n");
    s->regl.DossierTravail = d.P() + "trav/";
    s->regl.DossierProgramme = d.P() + "prog/";
    s->regl.DossierFichier = d.P() + "fic/";
    s->Execute();
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_EQ(Variable(*s, "%p"), "fichier"); // DossierFichier + name.dat before the program folder's
    EXPECT_EQ(Variable(*s, "%q"), "prog");
    EXPECT_EQ(Variable(*s, "%r"), "progdmk");
}

TEST(Inclusion, NameWithExtensionIsLookedForBesideTheFileThenInTheProgramFolder) {
    Dossier d;
    d.Ecrit("fic/b.txt", "%IRE$-1r = fic\n");
    d.Ecrit("prog/c.txt", "%IRE$-1r = prog\n");
    d.Ecrit("fic/sous/e.dat", "%IRE$-1r = sous\n");
    d.Ecrit("fic/chemin.dat", "%IRE$-1r = chemin\n");
    auto s = Prepare(d, "Fichier = b.txt\n%b = %r\nFichier = c.txt\n%c = %r\nFichier = sous\\e.dat\n%e = %r\n"
                        "Fichier = fic/chemin\n");
    s->regl.DossierProgramme = d.P() + "prog/";
    s->regl.DossierFichier = d.P() + "fic/";
    s->Execute();
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_EQ(Variable(*s, "%b"), "fic");
    EXPECT_EQ(Variable(*s, "%c"), "prog");
    EXPECT_EQ(Variable(*s, "%e"), "sous"); // "\" is a folder separator
    EXPECT_EQ(Variable(*s, "%r"), "chemin"); // a path without extension takes ".dat"
}

TEST(Inclusion, MissingFileFailsWithItsName) {
    Dossier d;
    auto s = LanceDans(d, "Fichier = absent\n%suite = 1\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    const QString t = Messages(*s)[0];
    EXPECT_TRUE(t.startsWith(Chaine(114) + "1: Fichier = absent\r\n\r\nabsent : fichier non trouvé [File not found]\r\n\r\n"))
        << t.toStdString();
    EXPECT_EQ(Variable(*s, "%suite"), ""); // a failure at level 1 ends the run
}

TEST(Inclusion, NotFounfBoxForANameWhoseLastDotIsItsFirstCharacter) {
    Dossier d;
    auto s = LanceDans(d, "Fichier = .\\x\n");
    ASSERT_EQ(s->hote.Messages().size(), 2);
    EXPECT_EQ(Messages(*s)[0], "Fichier[file] .\\x non trouvé[not founf] !");
    EXPECT_TRUE(Messages(*s)[1].contains(".\\x : fichier non trouvé [File not found]"));
    // Other names never reach it.
    auto t = LanceDans(d, "Fichier = x.dat\n");
    EXPECT_EQ(t->hote.Messages().size(), 1);
}

TEST(Inclusion, CodedFileIsReadThroughTheDecoder) {
    Dossier d;
    d.EcritDmk("a.dmk", "%a = 1\n%IRE$-1r = é%a\n");
    auto s = LanceDans(d, "Fichier = a.dmk, 0, 0, 2\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_EQ(Variable(*s, "%r"), "é2");
    EXPECT_TRUE(EstFichierCode("x/A.DMKX"));
    EXPECT_FALSE(EstFichierCode("x.dm"));
}

TEST(Inclusion, CodedFileOfWrongLengthStopsTheRun) {
    Dossier d;
    const QString a = d.EcritDmk("a.dmk", "%IRE$-1r = 1\n");
    QFile f(a);
    ASSERT_TRUE(f.open(QIODevice::Append));
    f.write(QByteArray(90, 'x')); // a body longer than its stored length
    f.close();
    d.Ecrit("b.dat", "Fichier = a.dmk\n%IRE$#0b = 1\n");
    auto s = LanceDans(d, "Fichier = b\n%suite = 1\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_EQ(Messages(*s)[0], "a.dmk : fichier codé illisible / unreadable coded file");
    EXPECT_TRUE(s->etat.ArretDemande);
    EXPECT_EQ(s->etat.PileFic[0].NbVar, 0);
    EXPECT_EQ(Variable(*s, "%suite"), "");
}

// --- External commands

TEST(Inclusion, ExternalCommandListIsSortedDeduplicatedAndLimited) {
    Dossier d;
    d.EcritDmk("prog/MCE_b.dmk", "' b\n");
    d.EcritDmk("prog/MCE_a.DMK", "' a\n");
    d.EcritDmk("trav/MCE_A.dmk", "' A\n");
    d.EcritDmk("trav/MCE_c.dmk", "' c\n");
    d.Ecrit("trav/MCE_d.dat", "' not a command\n");
    Reglages r;
    r.DossierProgramme = d.P() + "prog/";
    r.DossierTravail = d.P() + "trav/";
    ChargeCommandesExternes(r);
    // "MCE_A" sorts before "MCE_a": the working folder's wins.
    EXPECT_EQ(r.CommandesExternes, QStringList({"MCE_A", "MCE_b", "MCE_c"}));
    EXPECT_EQ(r.FichiersExternes[0], d.P() + "trav/MCE_A.dmk");
    // The same folder twice is listed once.
    Reglages m;
    m.DossierProgramme = m.DossierTravail = d.P() + "prog/";
    ChargeCommandesExternes(m);
    EXPECT_EQ(m.CommandesExternes, QStringList({"MCE_a", "MCE_b"}));
    // At most 60.
    Dossier g;
    for (int i = 0; i < 70; ++i) g.EcritDmk(QStringLiteral("c%1.dmk").arg(i, 2, 10, QLatin1Char('0')), "' x\n");
    Reglages n;
    n.DossierProgramme = g.P();
    ChargeCommandesExternes(n);
    EXPECT_EQ(n.CommandesExternes.size(), 60);
}

TEST(Inclusion, ExternalCommandIsCalledByItsName) {
    Dossier d;
    d.EcritDmk("MCE_Vis.dmk", "%d = 3\n%IRE$-1r = %d\n%IRE$-1x = %FicX\n%IRE$-1f = %File\n");
    auto s = Prepare(d, "mce_vis = 10, 20, 4\n");
    ChargeCommandesExternes(s->regl);
    ASSERT_EQ(s->regl.CommandesExternes, QStringList({"MCE_Vis"}));
    s->Execute();
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_EQ(Variable(*s, "%r"), "4");
    EXPECT_EQ(Variable(*s, "%x"), "10");
    EXPECT_EQ(Variable(*s, "%f"), "MCE_Vis.dmk");
    EXPECT_EQ(s->etat.EtatOrdre & (8 | 64), 8 | 64);
}

TEST(Inclusion, ExternalCommandWithQuestionMarkCopiesItsComments) {
    Dossier d;
    d.EcritDmk("MCE_Vis.dmk", "' Vis\n%d = 3\n'# Fin\nCT = 0, 0\n");
    auto s = Prepare(d, "MCE_Vis = ?\n");
    ChargeCommandesExternes(s->regl);
    s->Execute();
    EXPECT_EQ(s->hote.TexteEditeur(), Programme("MCE_Vis = ?\n' Commentaires du fichier commande\n' externe " +
                                                d.P() + "MCE_Vis.dmk\n' Vis\n' %d = 3\n"));
    EXPECT_TRUE(Lignes(*s).isEmpty());
}

// --- DMKCODE

TEST(Inclusion, DmkCodeWritesTheTemplateWithTheCode) {
    auto s = std::make_unique<Session>(Programme("%a = 1\nDMKCODE\nCT = 1, 1\n"));
    s->hote.Saisies = QStringList{"58196"};
    s->Execute();
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_EQ(s->hote.TexteEditeur(),
              Programme("%a = 1\n" + ModeleDmkCode().join("\n") + "\nCT = 1, 1\n"));
    EXPECT_EQ(Lignes(*s).size(), 2); // the run went on with the line after
    EXPECT_FALSE(s->etat.StopArgVu);   // the template's StopArg was not run
}

TEST(Inclusion, DmkCodeWithAnotherInputDoesNothing) {
    auto s = std::make_unique<Session>(Programme("DMKCODE\nCT = 1, 1\n"));
    s->hote.Saisies = QStringList{"1234"};
    s->Execute();
    EXPECT_FALSE(s->hote.TexteModifie());
    EXPECT_EQ(Lignes(*s).size(), 2);
}

// --- Header language

TEST(Inclusion, SectionsOfTheHeaderLanguage) {
    const QString t = Programme("'$FPremière ligne, jamais une section\n' notes\n'$FTrou;x;y\n'@C LB\n"
                                "'Lignes commençant par '\n'$EHole;x;y\n'@C LB\n'Lines\n'$$\nStopArg\n");
    EXPECT_EQ(SectionEntete(t, "'$F").value_or("?"), "Trou;x;y\n@C LB\nLignes commençant par '");
    EXPECT_EQ(SectionEntete(t, "'$E").value_or("?"), "Hole;x;y\n@C LB\nLines");
    EXPECT_FALSE(SectionEntete(t, "'$D").has_value());
    // Langue, then LangueMasq, then French.
    EXPECT_EQ(DescriptionExterne(t, 3, 2).value_or("?"), "Hole;x;y\n@C LB\nLines");
    EXPECT_EQ(DescriptionExterne(t, 4, 3).value_or("?"), "Trou;x;y\n@C LB\nLignes commençant par '");
    EXPECT_FALSE(DescriptionExterne(Programme("'$FOnly the first line\nCT = 0, 0\n"), 1, 1).has_value());
    EXPECT_EQ(MarqueSection(1), "'$F");
    EXPECT_EQ(MarqueSection(5), "'$R");
    EXPECT_EQ(MarqueSection(6), "");
}

TEST(Inclusion, DescriptionOfAnExternalCommandFromItsCodedFile) {
    Dossier d;
    d.EcritDmk("MCE_X.dmk", "'# Fin\n'$FCroix;x;y\n'$$\nCT = 0, 0\n");
    Reglages r;
    r.DossierProgramme = d.P();
    ChargeCommandesExternes(r);
    EXPECT_EQ(DescriptionCommandeExterne(r, 1, 2, 2).value_or("?"), "Croix;x;y");
    EXPECT_FALSE(DescriptionCommandeExterne(r, 2, 1, 1).has_value());
}

TEST(Inclusion, CommentBlockStopsAtTheFirstCommandOrAtTheEndMarker) {
    EXPECT_EQ(BlocCommentaires(Programme("' a\n%b = 1\nCT = 0, 0\n' c\n")), QStringList({"' a", "' %b = 1"}));
    EXPECT_EQ(BlocCommentaires(Programme("' a\n'$Fx\n'@C LB\n'#\n' c\n")), QStringList({"' a"}));
}

// --- The Symbole form for Plot

TEST(Inclusion, SymboleFormRunsTheGivenText) {
    Dossier d;
    auto s = Prepare(d, "' main\n");
    Etat& e = s->etat;
    e.Surf = s->pane.get();
    e.PileFic[1].Texte = Programme("' main\n");
    e.NiveauCourant = 1;
    e.LigneCourante = " garde";
    const int r = AppelSymbole(e, 1, Programme("%IRE$-1n = %File\n%IRE$-1i = %iRec\nCT = 0, 0\n"),
                               "Symbole, 0, 0");
    EXPECT_EQ(r, 0);
    EXPECT_EQ(Variable(*s, "%n"), "Symbole");
    EXPECT_EQ(Variable(*s, "%i"), "2");
    EXPECT_EQ(e.LigneCourante, " garde");
    EXPECT_EQ(Lignes(*s).size(), 2);
}

// --- The examples

TEST(Inclusion, LibraryExampleRunsWithoutAnyBox) {
    const QString dossier = QStringLiteral(MIREL_SOURCE_DIR) + "/examples/";
    QFile f(dossier + "bibliotheque.dat");
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    Encodage enc;
    auto s = std::make_unique<Session>(NormaliseFinsDeLigne(DecodeOctets(f.readAll(), enc)));
    s->regl.DossierFichier = dossier;
    s->regl.DossierTravail = dossier;
    s->etat.FichierPrincipal = dossier + "bibliotheque.dat";
    s->Execute();
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_GT(Lignes(*s).size() + Ops(*s, OpSurface::Cercle).size(), 40);
}

TEST(Inclusion, LibraryCodedFilesHoldTheirPlainText) {
    const QString dossier = QStringLiteral(MIREL_SOURCE_DIR) + "/examples/";
    for (const QString& nom : {QStringLiteral("MCE_Trou"), QStringLiteral("MCE_Platine"), QStringLiteral("MCE_Butee")}) {
        const std::optional<QString> code = LitFichierCommande(dossier + nom + ".dmk");
        const std::optional<QString> clair = LitFichierCommande(dossier + nom + ".dat");
        ASSERT_TRUE(code && clair) << nom.toStdString();
        QString c = *clair;
        while (c.endsWith(u' ') || c.endsWith(u'\n') || c.endsWith(u'\r')) c.chop(1);
        QString k = *code;
        while (k.endsWith(u' ') || k.endsWith(u'\n') || k.endsWith(u'\r')) k.chop(1);
        EXPECT_EQ(k, c) << nom.toStdString();
        EXPECT_TRUE(DescriptionExterne(*code, 2, 2).has_value());
    }
}

// Part 1.6: "Goto 12" in an included file jumps to the position of the
// editor's 12th line, counted in the included text.
TEST(Inclusion, GotoNumberInAnIncludedFileJumpsByTheEditorsLinePosition) {
    Dossier d;
    // Line 12 of the editor starts at character 34 (13 + 10 x 2 characters before it).
    // Character 34 of a.dat is the start of its 4th line; a.dat has no 12th line.
    d.Ecrit("a.dat", "Goto 12\n%IRE$-1a = 1\n'xxxxxxx\n%IRE$-1b = 2\n");
    auto s = LanceDans(d, "Fichier = a\n\n\n\n\n\n\n\n\n\n\n' fin\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_EQ(Variable(*s, "%a"), QString()); // line 2 of a.dat was jumped over
    EXPECT_EQ(Variable(*s, "%b"), QStringLiteral("2"));
}

TEST(Inclusion, PenDashesFontAndSeparatorsAreBackWhateverTheFileDid) {
    Dossier d;
    d.Ecrit("a.dat", "Police = Arial\nTailleP = 30 GIS\nEpaisT = 1mm§§0.5§0.25\nCouleur = Bleu\n"
                     "Separateur = :, @\nTexte = 5: 5: : : dedans\nCT = 5: 5\n");
    auto s = LanceDans(d, "Police = Courier New\nTailleP = 14 I\nEpaisT = 0.3mm\nCouleur = Rouge\n"
                          "Separateur = ;, #\nFichier = a\nTexte = 1; 1; ; ; dehors\nCT = 1; 2\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    const QVector<OpSurface> t = Ops(*s, OpSurface::Texte);
    ASSERT_EQ(t.size(), 2);
    EXPECT_EQ(t[0].police, "Arial");
    EXPECT_DOUBLE_EQ(t[0].taille, 30);
    EXPECT_TRUE(t[0].gras && t[0].italique && t[0].souligne);
    EXPECT_EQ(t[1].police, "Courier New");
    EXPECT_NEAR(t[1].taille, 14, 1e-6);
    EXPECT_FALSE(t[1].gras);
    EXPECT_TRUE(t[1].italique);
    EXPECT_FALSE(t[1].souligne);
    EXPECT_EQ(t[1].couleur, RGB(255, 0, 0));
    const QVector<OpSurface> l = Lignes(*s);
    ASSERT_GT(l.size(), 4); // the file's cross is dashed: more than its 2 lines
    EXPECT_EQ(l.first().largeur, 4);
    EXPECT_EQ(l.first().couleur, RGB(0, 0, 255));
    EXPECT_EQ(l[l.size() - 2].largeur, 1); // the caller's cross: 2 whole lines
    EXPECT_MM(l.last().y1, 1);
    EXPECT_MM(l.last().y2, 3);
    EXPECT_EQ(l.last().largeur, 1);
    EXPECT_EQ(l.last().couleur, RGB(255, 0, 0));
    EXPECT_EQ(s->etat.Styles.TiretL1, 0);
    EXPECT_EQ(s->etat.Styles.TiretL2, 0);
    EXPECT_EQ(s->etat.Styles.TiretL3, 0);
    EXPECT_EQ(s->etat.Separateur1, ";");
    EXPECT_EQ(s->etat.Separateur2, "#");
    EXPECT_MM(s->etat.Repere.CTx, 1);
    EXPECT_MM(s->etat.Repere.CTy, 2);
}

// Part 1.1, end of a level step 3: string 127 once per level, however many
// blocks are left open there.
TEST(Inclusion, IfLeftOpenShowsString127OncePerLevel) {
    Dossier d;
    d.Ecrit("a.dat", "If 1 = 1 Then\nIf 2 = 2 Then\n%IRE$-1r = 1\n");
    auto s = LanceDans(d, "If 1 = 1 Then\nFichier = a\n%suite = 1\n");
    ASSERT_EQ(s->hote.Messages().size(), 2) << Messages(*s).join("|").toStdString();
    EXPECT_EQ(Messages(*s)[0], QStringLiteral("Erreur : If[T] sans Endif"));
    EXPECT_EQ(Messages(*s)[1], QStringLiteral("Erreur : If[T] sans Endif"));
    EXPECT_EQ(Variable(*s, "%r"), QStringLiteral("1"));
    EXPECT_EQ(Variable(*s, "%suite"), QStringLiteral("1"));
}

// Part 4.3: lines are taken while they begin with "'", "%" or are empty; an
// indented line ends the block.
TEST(Inclusion, IndentedLineEndsTheCommentBlock) {
    EXPECT_EQ(BlocCommentaires("' a\r\n\t' b\r\n%x = 1\r\n"), QStringList{"' a"});
    EXPECT_EQ(BlocCommentaires("' a\r\n\r\n%x = 1\r\nCT = 1, 1\r\n"),
              QStringList({"' a", "", "' %x = 1"}));
}
