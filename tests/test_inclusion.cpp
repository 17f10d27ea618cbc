// File inclusion (Fichier), external commands, coded files and the header language.
#include "app/core/dmk.h"
#include "app/core/externes.h"
#include "app/core/inclusion.h"
#include "language/chaines.h"
#include "outils.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <vector>

namespace {

using Paires = std::vector<std::pair<QString, QString>>;

// A folder of command files, with the main file "main.dat". A name ending in ".dmk" is coded.
struct Dossier {
    QTemporaryDir d;
    QString P() const { return d.path() + u'/'; }
    void Ecrit(const Paires& fichiers) const {
        for (const auto& [nom, lignes] : fichiers) {
            QDir().mkpath(QFileInfo(P() + nom).path());
            QFile f(P() + nom);
            ASSERT_TRUE(f.open(QIODevice::WriteOnly));
            std::mt19937 ale(7);
            const QString t = Programme(lignes);
            f.write(nom.endsWith(".dmk", Qt::CaseInsensitive) ? *CodeDmk(t, ale) : t.toUtf8());
        }
    }
};

// Runs a program there; the working, program and last-opened folders may be sub-folders.
std::unique_ptr<Session> LanceDans(const Dossier& d, const QString& principal, QStringList reponses = {},
                                   const QString& trav = "", const QString& prog = "", const QString& fic = "") {
    auto s = std::make_unique<Session>(Programme(principal));
    s->regl.DossierTravail = d.P() + trav;
    s->regl.DossierProgramme = d.P() + prog;
    s->regl.DossierFichier = d.P() + fic;
    s->etat.FichierPrincipal = d.P() + "main.dat";
    s->hote.Reponses = reponses;
    ChargeCommandesExternes(s->regl);
    s->Execute();
    return s;
}

// Records what a file sees of its call: %FicX, %FicY, its origin, its AngRot.
const QString Position = "%IRE$-1fx = %FicX\n%IRE$-1fy = %FicY\n%IRE$-1ox = %CEx\n%IRE$-1oy = %CEy\n%IRE$-1ar = %AR0\n";
// The caller's origin before the call, and the file's origin relative to it after (to 0.001 mm).
const QString Avant = "%ox0 == %CEx\n%oy0 == %CEy\n";
const QString Ecart = "%dx == RND3(%ox - %ox0)\n%dy == RND3(%oy - %oy0)\n";

} // namespace

// Each program calls files: the variables passed back ("%a=1;%b=x"), the boxes of a failing call, how far the run goes.
TEST(Inclusion, CallsPassVariablesBackOrShowTheirFailure) {
    enum Fin { Continue, FinNiveau1, Arret }; // the main program goes on; its run ends; the whole run stops
    struct Cas {
        const char* quoi;
        Paires fichiers;
        QString principal, attendus;
        QStringList messages = {}; // a message ending in "*" is the start of the text
        Boutons boutons = Boutons::Ok;
        Fin fin = Continue;
        QStringList reponses = {};
    };
    const QString introuvable = " : fichier non trouvé [File not found]\r\n\r\n*", c114 = LoadResString(114);
    const QString auto5 = QString(LoadResString(123)).replace("%1", "5") + "\r\n(a)";
    const std::vector<Cas> cas = {
        {"a parameter by position overrides the file's first assignment", {{"a.dat", "%a = 1\n%IRE$-1r = %a\n"}},
         "Fichier = a, 10, 20, 5\n%p = %r\nFichier = a, 10, 20\n", "%p=5;%r=1"},
        {"an empty first extra field fills only the second slot",
         {{"a.dat", "%a = 1\n%b = 2\n%IRE$-1ra = %a\n%IRE$-1rb = %b\n"}}, "Fichier = a, , , , 7\n", "%ra=1;%rb=7"},
        {"a named field fills no slot by position; an omitted position is the current point",
         {{"a.dat", "%j = 1\n%k = 0\n%IRE$-1r = %k\n%IRE$-1rj = %j\n" + Position}},
         "Droite = 20, 40, 25\n" + Avant + "Fichier = a, , , %k=3\n" + Ecart, "%r=3;%rj=1;%fx=30;%fy=25;%dx=30;%dy=25"},
        {"the called file's origin is the caller's plus x, y", {{"p.dat", Position}},
         "CentreE = 40, 30, N\n" + Avant + "Fichier = p, 10, 20\n" + Ecart, "%dx=10;%dy=20"},
        {"a rotation turns the position, stays readable in %FicY and is no AngRot", {{"p.dat", Position}},
         Avant + "Fichier = p, 10, 0§90\n" + Ecart, "%dx=0;%dy=10;%fy=0§90;%ar=0"},
        {"AngRot passes down only to the levels its second field allows", {{"p.dat", Position}},
         "AngRot = 30\nFichier = p\n%a1 = %ar\nAngRot = 30, 0\nFichier = p\n", "%a1=30;%ar=0"},
        {"CentreE in a called file places it only when the call gives no position",
         {{"a.dat", "CentreE = 7, 8, N\n%IRE$-1ox = %CEx\n%IRE$-1oy = %CEy\n"}},
         Avant + "Fichier = a, 10, 0\n%d1 == RND3(%ox - %ox0)\nFichier = a\n" + Ecart, "%d1=10;%dx=7"},
        {"rotation and current point are the caller's again after a call",
         {{"a.dat", "CT = 50, 50\nAngRot = 45\nDroite = 0, 10, 5\n"}, {"p.dat", Position}},
         "Droite = 0, 20, 0, N\nFichier = a, 100, 0\n%a0 = %AR0\nFichier = p\n", "%a0=0;%fx=10;%fy=0"},
        {"the caller's parameter survives the file's first assignment, not the second, unless StopArg",
         {{"a.dat", "%a = 1\n%IRE$-1r1 = %a\n%a = 2\n%IRE$-1r2 = %a\n"}, {"b.dat", "StopArg\n%a = 1\n%IRE$-1s = %a\n"}},
         "Fichier = a, , , 5\n%p1 = %r1\n%p2 = %r2\nFichier = a, , , %a=5\nFichier = b, , , 5\n",
         "%p1=5;%p2=2;%r1=5;%r2=2;%s=1"},
        {"%% copies all the caller's variables", {{"a.dat", "%u = 0\n%w = 0\n%IRE$-1r = %u/%w\n"}},
         "%u = 4\n%w = 6\nFichier = a, , , %%\n", "%r=4/6"},
        {"%t=<%v passes the caller's value of another variable", {{"a.dat", "%t = x\n%IRE$-1r = %t\n"}},
         "%v = \"  deux mots\"\nFichier = a, , , %t=<%v\n", "%r=deux mots"},
        {"positional parameters are substituted by the caller, to an empty value too",
         {{"a.dat", "%a = 1\n%b = 2\n%c = 3\n%IRE$-1r = %a-%b-%c\n"}},
         "%v = 12\n%e = \"\"\nFichier = a, , , %v, texte, %e\n", "%r=12-texte-"},
        {"a called level starts again with the comma as separator", {{"a.dat", "%p = 1\nCT = 3, 4\n%IRE$-1r = %p\n"}},
         "Separateur = ;\nFichier = a; 0; 0; 9\nCT = 1; 2\n", "%r=9"},
        {"Facteurs is ignored in a called file", {{"a.dat", "Facteurs = 2\nFacteur = 3\n%IRE$-1r = 1\n"}},
         "Fichier = a\n", "%r=1"},
        {"a shared variable of one called file is visible to another",
         {{"a.dat", "%IRE$#0x = 5\n"}, {"b.dat", "%IRE$-1r = %IRE$#0x\n"}}, "Fichier = a\nFichier = b\n", "%r=5"},
        {"a VAR( form written to the caller's or the shared level takes the called file's value",
         {{"a.dat", "%a = 5\n%IRE$#0x = VAR(%a)+1\n%IRE$-1y = VAR(%a)+1\n"}}, "%a = 9\nFichier = a\n%r = %IRE$#0x\n",
         "%r=5+1;%y=5+1"},
        {"a coded file is read through the decoder", {{"a.dmk", "%a = 1\n%IRE$-1r = é%a\n"}},
         "Fichier = a.dmk, 0, 0, 2\n", "%r=é2"},
        {"the question form in a called file runs the named file, the \"?\" read as an x of 0",
         {{"a.dat", "' Notes of a\n%IRE$#0vu = %FicX\n"}, {"b.dat", "Trait = 0, 0, 30, 40\nFichier = a.dat, ?\n"}},
         "Fichier = b\n%vu = %IRE$#0vu\n", "%vu=0"},
        {"an external command is called by its name in any case",
         {{"MCE_Vis.dmk", "%d = 3\n%IRE$-1r = %d\n%IRE$-1x = %FicX\n%IRE$-1f = %File\n"}}, "mce_vis = 10, 20, 4\n",
         "%r=4;%x=10;%f=MCE_Vis.dmk"},
        {"Goto n in a file jumps to the start of the editor's line n (12: character 34, a.dat's 4th line)",
         {{"a.dat", "Goto 12\n%IRE$-1a = 1\n'xxxxxxx\n%IRE$-1b = 2\n"}}, "Fichier = a\n\n\n\n\n\n\n\n\n\n\n' fin\n",
         "%a=;%b=2"},
        {"a failing file: OK ends its level, the main program goes on",
         {{"a.dat", "CT = %nope, 0\n%IRE$-1r = 1\n"}}, "Fichier = a\n", "%r=",
         {c114 + "CT = %nope, 0 du fichier: a.dat\r\n\r\n*"}, Boutons::OkAnnuler},
        {"a failing file: Cancel ends the run", {{"a.dat", "CT = %nope\n"}, {"b.dat", "Fichier = a\n%IRE$#0b = 1\n"}},
         "Fichier = b\n", "", {c114 + "*"}, Boutons::OkAnnuler, Arret, {"cancel"}},
        {"an error in a coded file hides its insides", {{"a.dmk", "%secret = 1\nCT = %nope, 0\n"}},
         "%x = 1\nFichier = a.dmk\n", "", {c114 + "2, dans le fichier: a.dmk\r\n\r\n"}, Boutons::OkAnnuler},
        {"a file calling itself stops at depth 5; OK skips the call", {{"a.dat", "Fichier = a\n"}}, "Fichier = a\n",
         "", {auto5}, Boutons::OkAnnuler},
        {"a file calling itself: Cancel ends the whole run", {{"a.dat", "Fichier = a\n%IRE$#0b = 1\n"}},
         "Fichier = a\n", "", {auto5}, Boutons::OkAnnuler, Arret, {"cancel"}},
        {"a sixth level of other files is skipped", {{"a.dat", "Fichier = b\n"}, {"b.dat", "Fichier = a\n"}},
         "Fichier = a\n", "", {QString(LoadResString(113)).replace("%1", "5") + "\r\n(a)"}},
        {"a missing file is named", {}, "Fichier = absent\n", "",
         {c114 + "1: Fichier = absent\r\n\r\nabsent" + introuvable}, Boutons::Ok, FinNiveau1},
        {"a name whose last dot is its first character also gets the not-found box", {}, "Fichier = .\\x\n", "",
         {"Fichier[file] .\\x non trouvé[not founf] !", c114 + "1: Fichier = .\\x\r\n\r\n.\\x" + introuvable},
         Boutons::Ok, FinNiveau1},
        {"other names never get the not-found box", {}, "Fichier = x.dat\n", "",
         {c114 + "1: Fichier = x.dat\r\n\r\nx.dat" + introuvable}, Boutons::Ok, FinNiveau1},
        {"an unreadable coded file stops the run",
         {{"a.dmkx", "%IRE$-1r = 1\n"}, {"b.dat", "Fichier = a.dmkx\n%IRE$#0b = 1\n"}}, "Fichier = b\n", "",
         {"a.dmkx : fichier codé illisible / unreadable coded file"}, Boutons::Ok, Arret},
        {"an If left open shows its box once per level, and the run goes on",
         {{"a.dat", "If 1 = 1 Then\nIf 2 = 2 Then\n%IRE$-1r = 1\n"}}, "If 1 = 1 Then\nFichier = a\n", "%r=1",
         {"Erreur : If[T] sans Endif", "Erreur : If[T] sans Endif"}},
        {"no centre command may follow a call", {{"a.dat", "' nothing\n"}}, "Fichier = a\nCentreE = 1, 1\n", "",
         {LoadResString(119) + "*"}, Boutons::Ok, FinNiveau1},
        {"nor an external command", {{"MCE_X.dmk", "' nothing\n"}}, "MCE_X\nCentreE = 1, 1\n", "",
         {LoadResString(119) + "*"}, Boutons::Ok, FinNiveau1},
    };
    for (const Cas& c : cas) {
        SCOPED_TRACE(c.quoi);
        Dossier d;
        d.Ecrit(c.fichiers);
        auto s = LanceDans(d, c.principal + "%suite = 1\n", c.reponses);
        const QStringList m = Messages(*s);
        ASSERT_EQ(m.size(), c.messages.size()) << m.join("|").toStdString();
        for (int i = 0; i < m.size(); ++i)
            EXPECT_EQ(c.messages[i].endsWith(u'*') ? m[i].left(c.messages[i].size() - 1) + "*" : m[i], c.messages[i]);
        if (!m.isEmpty()) EXPECT_EQ(s->hote.Messages()[0].boutons, c.boutons);
        EXPECT_EQ(Variable(*s, "%suite"), c.fin == Continue ? "1" : "");
        EXPECT_EQ(s->etat.ArretDemande, c.fin == Arret);
        if (c.fin == Arret) EXPECT_EQ(s->etat.PileFic[0].NbVar, 0); // no level went on
        for (const QString& paire : c.attendus.split(u';', Qt::SkipEmptyParts))
            EXPECT_EQ(Variable(*s, paire.section(u'=', 0, 0)), paire.section(u'=', 1)) << paire.toStdString();
        EXPECT_FALSE(s->hote.TexteModifie());
        if (m.isEmpty()) EXPECT_EQ(s->etat.EtatOrdre & (8 | 64), 8 | 64); // a call counts as drawing
    }
}

TEST(Inclusion, FailureBoxOfACalledFileListsItsVariablesAndMarksTheCall) {
    Dossier d;
    d.Ecrit({{"a.dat", "%v = 2\nCT = %nope, 0\n"}});
    auto s = LanceDans(d, "%x = 1\nFichier = a\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_TRUE(Messages(*s)[0].contains("\r\n%v\t= 2\r\n")) << Messages(*s)[0].toStdString();
    EXPECT_EQ(s->hote.Messages()[0].titre, "Mirel    (nb Var=3)"); // %v, %FicX and %FicY
    ASSERT_EQ(s->hote.Marques.size(), 1);
    EXPECT_EQ(s->hote.Marques[0].first, 8); // the Fichier line of level 1 is marked
}

// A bare name: working folder .dmk then .dat, program folder .dmk, the last opened file's folder
// .dat, program folder .dat. A name with an extension: beside the last opened file, then the program folder.
TEST(Inclusion, FileLookupOrder) {
    Dossier d;
    const Paires cas = {{"a", "trav/a.dmk"}, {"b", "trav/b.dat"},  {"m", "prog/m.dmk"},
                        {"p", "fic/p.dat"},  {"q", "prog/q.dat"},  {"b.txt", "fic/b.txt"},
                        {"c.txt", "prog/c.txt"}, {"sous\\e.dat", "fic/sous/e.dat"}, {"ch/e", "trav/ch/e.dat"}};
    QStringList fichiers = {"trav/a.dat", "prog/b.dmk", "fic/m.dat", "prog/p.dat", "prog/b.txt"}; // found later
    for (const auto& [nom, f] : cas) fichiers << f;
    for (const QString& f : fichiers) d.Ecrit({{f, "%IRE$-1r = " + f + "\n"}});
    QString principal;
    for (size_t i = 0; i < cas.size(); ++i) principal += QString("Fichier = %1\n%v%2 = %r\n").arg(cas[i].first).arg(i);
    auto s = LanceDans(d, principal, {}, "trav/", "prog/", "fic/");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    for (size_t i = 0; i < cas.size(); ++i)
        EXPECT_EQ(Variable(*s, QString("%v%1").arg(i)), cas[i].second) << cas[i].first.toStdString();
    EXPECT_EQ(s->etat.PileFic[2].Nom, ""); // the level is cleared after the call
}

// Pen, dashes, colour, font, separators and centre: the file's own inside, the caller's after.
TEST(Inclusion, StylesAreTheCallersAgainAfterACall) {
    Dossier d;
    d.Ecrit({{"a.dat", "%IRE$-1pol = %Pol\nPolice = Arial\nTailleP = 30 GIS\nEpaisT = 1mm§§0.5§0.25\n"
                       "Couleur = Bleu\nSeparateur = :, @\nTexte = 5: 5: : : dedans\nCT = 5: 5\n"}});
    auto s = LanceDans(d, "Police = Courier New\nTailleP = 14 I\nEpaisT = 0.3mm\nCouleur = Rouge\nSeparateur = ;, #\n"
                          "CT = 1; 2; N\nFichier = a\nTexte = 1; 1; ; ; dehors\nDroite = 0; 10; 0\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_EQ(Variable(*s, "%pol"), "Times New Roman"); // a level starts with the default font
    const QVector<OpSurface> t = Ops(*s, OpSurface::Texte);
    ASSERT_EQ(t.size(), 2);
    const auto police = [](const OpSurface& o) {
        return std::tuple(o.police, std::lround(o.taille), o.gras, o.italique, o.souligne, o.couleur);
    };
    EXPECT_EQ(police(t[0]), std::tuple(QString("Arial"), 30L, true, true, true, RGB(0, 0, 255)));
    EXPECT_EQ(police(t[1]), std::tuple(QString("Courier New"), 14L, false, true, false, RGB(255, 0, 0)));
    const QVector<OpSurface> l = Lignes(*s);
    ASSERT_GT(l.size(), 3); // the file's cross is dashed: more than its 2 lines
    EXPECT_EQ(std::pair(l.first().largeur, l.first().couleur), std::pair(4, RGB(0, 0, 255)));
    EXPECT_EQ(std::pair(l.last().largeur, l.last().couleur), std::pair(1, RGB(255, 0, 0)));
    EXPECT_MM(l.last().x1, 1); // the caller's whole line from its centre (1, 2)
    EXPECT_MM(l.last().x2, 11);
    EXPECT_MM(l.last().y1, 2);
    EXPECT_EQ(s->etat.Separateur1 + s->etat.Separateur2, ";#");
}

// "Fichier = name, ?" and "MCE_x = ?" at level 1 copy the file's comment block (comments, variables and empty
// lines up to a command, an indented line or "'#") after the line, and stop the run before anything is drawn.
TEST(Inclusion, QuestionFormAtLevel1CopiesTheCommentBlockAndStops) {
    Dossier d;
    d.Ecrit({{"a.dat", "' Vis\n%D = 3   ' diamètre\n\n'$FTrou;x;y\n'@C LB\n'# Fin\n' not copied\nCT = 0, 0\n"},
             {"MCE_Vis.dmk", "' Vis\n%d = 3\n'# Fin\nCT = 0, 0\n"}});
    const QString entete = "' Commentaires du fichier commande\n' externe ";
    const Paires cas = {
        {"Fichier = a.dat, ?\n%suite = 1\n",
         "Fichier = a.dat, ?\n" + entete + "a.dat\n' Vis\n' %D = 3   ' diamètre\n\n%suite = 1\n"},
        {"MCE_Vis = ?\n", "MCE_Vis = ?\n" + entete + d.P() + "MCE_Vis.dmk\n' Vis\n' %d = 3\n"}};
    for (const auto& [principal, editeur] : cas) {
        auto s = LanceDans(d, principal);
        EXPECT_TRUE(s->hote.Messages().isEmpty());
        EXPECT_TRUE(s->etat.ArretDemande);
        EXPECT_TRUE(Lignes(*s).isEmpty());
        EXPECT_EQ(s->hote.TexteEditeur(), Programme(editeur));
    }
    EXPECT_EQ(BlocCommentaires(Programme("' a\n%b = 1\nCT = 0, 0\n' c\n")), QStringList({"' a", "' %b = 1"}));
    EXPECT_EQ(BlocCommentaires(Programme("' a\n\t' b\n%x = 1\n")), QStringList({"' a"}));
}

// Every .dmk of the program folder, then of the working folder; sorted case-sensitively; a later name equal
// in upper case is dropped; at most 60. Each one's description comes from its header.
TEST(Inclusion, ExternalCommandListIsSortedDeduplicatedAndLimited) {
    Dossier d, g;
    d.Ecrit({{"prog/MCE_b.dmk", "' b\n"}, {"prog/MCE_a.DMK", "' a\n"}, {"trav/MCE_c.dmk", "' c\n"},
             {"trav/MCE_A.dmk", "'# Fin\n'$FCroix;x;y\n'$$\nCT = 0, 0\n"}, {"trav/MCE_d.dat", "' not a command\n"}});
    Reglages r;
    r.DossierProgramme = d.P() + "prog/";
    r.DossierTravail = d.P() + "trav/";
    ChargeCommandesExternes(r);
    EXPECT_EQ(r.CommandesExternes, QStringList({"MCE_A", "MCE_b", "MCE_c"}));
    EXPECT_EQ(r.FichiersExternes[0], d.P() + "trav/MCE_A.dmk");
    EXPECT_EQ(DescriptionCommandeExterne(r, 1, 2, 2).value_or("?"), "Croix;x;y");
    EXPECT_FALSE(DescriptionCommandeExterne(r, 2, 1, 1).has_value());
    r.DossierTravail = r.DossierProgramme; // the same folder twice is listed once
    ChargeCommandesExternes(r);
    EXPECT_EQ(r.CommandesExternes, QStringList({"MCE_a", "MCE_b"}));
    for (int i = 0; i < 70; ++i) g.Ecrit({{QString("c%1.dmk").arg(i, 2, 10, QLatin1Char('0')), "' x\n"}});
    r.DossierProgramme = r.DossierTravail = g.P();
    ChargeCommandesExternes(r);
    EXPECT_EQ(r.CommandesExternes.size(), 60);
}

// DMKCODE with the right code puts the coded-file template in its place, and the run goes on after it.
TEST(Inclusion, DmkCodeInsertsTheTemplateOnlyForTheCode) {
    for (const QString saisie : {"58196", "1234"}) {
        Session s(Programme("%a = 1\nDMKCODE\nCT = 1, 1\n"));
        s.hote.Saisies = QStringList{saisie};
        s.Execute();
        EXPECT_TRUE(s.hote.Messages().isEmpty());
        EXPECT_EQ(Lignes(s).size(), 2);
        EXPECT_FALSE(s.etat.StopArgVu); // the template's StopArg was not run
        const QString modele = saisie == "1234" ? "DMKCODE" : ModeleDmkCode().join("\n");
        EXPECT_EQ(s.hote.TexteEditeur(), Programme("%a = 1\n" + modele + "\nCT = 1, 1\n"));
    }
}

// A section runs from its marker to the next "'$" line, never from the first line; the user's
// language, then the masks' language, then French.
TEST(Inclusion, HeaderSectionsGiveTheDescriptionInTheUsersLanguage) {
    const QString t = Programme("'$FPremière ligne, jamais une section\n' notes\n'$FTrou;x;y\n'@C LB\n"
                                "'Lignes commençant par '\n'$EHole;x;y\n'@C LB\n'Lines\n'$$\nStopArg\n");
    const QString fr = "Trou;x;y\n@C LB\nLignes commençant par '", en = "Hole;x;y\n@C LB\nLines";
    EXPECT_EQ(SectionEntete(t, "'$E").value_or("?"), en);
    EXPECT_FALSE(SectionEntete(t, "'$D").has_value());
    EXPECT_EQ(DescriptionExterne(t, 3, 2).value_or("?"), en);
    EXPECT_EQ(DescriptionExterne(t, 4, 3).value_or("?"), fr);
    EXPECT_FALSE(DescriptionExterne(Programme("'$FOnly the first line\nCT = 0, 0\n"), 1, 1).has_value());
}

// The library's coded commands decode to their plain copies, which a change of the coding would break.
TEST(Inclusion, LibraryCodedFilesHoldTheirPlainText) {
    const QString dossier = QStringLiteral(MIREL_SOURCE_DIR) + "/examples/";
    for (const QString nom : {"MCE_Trou", "MCE_Platine", "MCE_Butee"}) {
        const QString code = LitFichierCommande(dossier + nom + ".dmk").value_or(""),
                      clair = LitFichierCommande(dossier + nom + ".dat").value_or("?");
        EXPECT_EQ(code.trimmed(), clair.trimmed()) << nom.toStdString();
        EXPECT_TRUE(DescriptionExterne(code, 2, 2).has_value());
    }
}
