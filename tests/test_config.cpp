// "Mirel.cfg", the language choices, patches and help topics.
#include "app/core/config.h"
#include "app/core/encodage.h"

#include "language/chaines.h"
#include "language/etat.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QString V1 = "0.01 ", V2 = "0.02 ";

TableChaines TableTest() {
    TableChaines t;
    t.AjouteSection("3\t4\n5\tFrançais\n8\tfr\n71\t&Aide\n87\tAide Mirel &V2.6\n121\tActifs : \n122\tNuméro ?\n", 0);
    t.AjouteSection("5\tEnglish\n8\ten\n71\t&Help\n87\tMirel &V2.6 help\n", 400);
    t.AjouteSection("5\tDeutsch\n8\tde\n", 800);
    t.AjouteSection("5\tCastellano\n8\tes\n", 1200);
    return t;
}

QByteArray Lit(const QString& c) { QFile f(c); return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray(); }
void Ecrit(const QString& c, const QByteArray& o) { QFile f(c); ASSERT_TRUE(f.open(QIODevice::WriteOnly)); f.write(o); }
QByteArray Lignes(const QStringList& l) { return (l.join("\r\n") + "\r\n").toUtf8(); }

const QByteArray Defaut = "'Fichier de configuration du Programme Mirel V0.01 \r\n'Ne pas modifier / Do not change\r\n"
                          "Langue =\r\nLangueMenu =\r\nLangueAide =\r\nLangueMasq =\r\n"
                          "FichierDat = Mirel.dat\r\nDoubleClic = Non\r\nZmm = 1\r\nPatchs = 0\r\n";

struct Dossiers { // program (holding the program), working and XDG folders
    QTemporaryDir programme, travail, xdg;
    Dossiers() { Ecrit(P() + "mirel", "ELF"); }
    QString P() const { return programme.path() + u'/'; }
    QString T() const { return travail.path() + u'/'; }
    QString X() const { return xdg.path() + "/Mirel/"; }
    EmplacementConfig Lieu() const { return LocaliseConfig(P(), P(), X()); }
};

} // namespace

// A foreign working folder reads the program folder's file and writes nothing; one with a
// file or the program is used; without a program folder, the XDG folder, else the working one.
TEST(Config, LocationOfTheFile) {
    Dossiers d;
    const QByteArray contenu = Lignes({EnteteConfig(V1), EnteteConfig2(), "LangueMenu = Deutsch", "Zmm = 1.02"});
    Ecrit(d.P() + "Mirel.cfg", contenu);
    EmplacementConfig lieu = LocaliseConfig(d.P(), d.T(), d.X());
    EXPECT_TRUE(lieu.EcritureInterdite && lieu.DossierCfg == d.P());
    Config c = ChargeConfig(lieu, V1);
    EXPECT_TRUE(c.LangueMenu == "Deutsch" && c.Zmm == 1.02f);
    EXPECT_FALSE(EcritConfig(lieu, CleCfg::Zmm, "2", V2));
    EXPECT_FALSE(ValideLangues({1, 1, 1, 1}, lieu, c, TableTest(), V2).isEmpty());
    EXPECT_EQ(Lit(d.P() + "Mirel.cfg"), contenu);
    EXPECT_EQ(QDir(d.P()).entryList(QDir::Files).size(), 2); // no old copy, test file nor template
    EXPECT_FALSE(QFileInfo::exists(d.T() + "Mirel.cfg") || QFileInfo::exists(d.X()));
    QTemporaryDir vide;
    EXPECT_EQ(ChargeConfig(LocaliseConfig(vide.path(), d.T(), d.X()), V1).FichierDat, "Mirel.dat");
    EXPECT_TRUE(QDir(vide.path()).entryList(QDir::Files).isEmpty());
    for (const char* nom : {"Mirel.exe", "MIREL.EXE.manifest", "Mirel.lnk", "mirel", "mirel.desktop", "Mirel.dat"}) {
        QTemporaryDir w;
        Ecrit(w.path() + "/" + nom, "x");
        const bool programme = QString(nom) != "Mirel.dat";
        EXPECT_EQ(DossierContientProgramme(w.path(), "mirel"), programme) << nom;
        EXPECT_EQ(LocaliseConfig(d.P(), w.path(), {}).EcritureInterdite, !programme) << nom;
    }
    Ecrit(d.T() + "mirel.desktop", "x");
    lieu = LocaliseConfig(d.P() + "missing/", d.T(), d.X());
    EXPECT_TRUE(!lieu.ProgrammeUtilisable && lieu.DossierCfg == d.X());
    ChargeConfig(lieu, V1);
    EXPECT_EQ(Lit(d.X() + "Mirel.cfg"), Defaut);
    EXPECT_EQ(LocaliseConfig(d.P() + "missing/", d.T(), {}).DossierCfg, d.T());
    QFile::remove(d.T() + "mirel.desktop");
    Ecrit(d.T() + "Mirel.cfg", Lignes({EnteteConfig(V1), "Langue = English"}));
    lieu = LocaliseConfig(d.P(), d.T(), d.X());
    EXPECT_EQ(lieu.DossierCfg, d.T());
    EXPECT_TRUE(EcritConfig(lieu, CleCfg::Langue, "Castellano", V1) && ChargeConfig(lieu, V1).Langue == "Castellano");
    EXPECT_TRUE(DossierTestable(d.T()) && !QFileInfo::exists(d.T() + "Tmp$.tst"));
    EXPECT_FALSE(DossierTestable(d.P() + "missing") || DossierTestable(d.P() + "mirel"));
}

// A key is its text with " =" found anywhere in a line, in any case; comment
// lines are skipped; Patchs is a 16-bit word; a zero Zmm is 1.
TEST(Config, KeysAreFoundAnywhereInALine) {
    const Config c = LitConfigTexte("'Fichier de configuration du Programme Mirel V0.01 \r\n"
                                    "'Langue = Deutsch\r\n"
                                    "LangueMenu = English\r\n" // not read as "Langue ="
                                    "  langue =   Castellano  \r\n"
                                    "x FichierDat = C:\\Dials\\My Dial.dat\r\n"
                                    "DoubleClic = oui\r\nTailleCarCode = 11.5\r\nPatchs = 65535\nZmm = 0\n");
    EXPECT_EQ(QStringList({c.Langue, c.LangueMenu, c.LangueAide, c.FichierDat}),
              QStringList({"Castellano", "English", "", "C:\\Dials\\My Dial.dat"}));
    EXPECT_TRUE(c.DoubleClic && c.Zmm == 1.0f && c.TailleCarCode == 11.5f && c.Patchs == -1);
    EXPECT_EQ(c.PremiereLigne, "'Fichier de configuration du Programme Mirel V0.01 ");
    EXPECT_FLOAT_EQ(LitConfigTexte("Zmm = 0.98").Zmm, 0.98f);
}

// A missing file gets the defaults; a key's line is rewritten in place (else appended,
// LangueMasq ahead of FichierDat) through an old copy, the header brought to this version.
TEST(Config, WritingAKeyRewritesItsLineAndTheHeader) {
    Dossiers d;
    const EmplacementConfig lieu = d.Lieu();
    const Config c = ChargeConfig(lieu, V1);
    EXPECT_EQ(Lit(d.P() + "Mirel.cfg"), Defaut);
    EXPECT_TRUE(c.Langue.isEmpty() && !c.DoubleClic && !c.TailleCarCode.has_value());
    Ecrit(d.P() + "Mirel$cfg.old", "stale");
    for (auto [cle, valeur] : {std::pair{"Zmm = ", "1.5"}, {"DoubleClic =", " Oui"}, {"Langue =", "English"},
                               {"TailleCarCode =", "12"}})
        ASSERT_TRUE(EcritConfig(lieu, cle, valeur, V2));
    EXPECT_EQ(Lit(lieu.Fichier()),
              "'Fichier de configuration du Programme Mirel V0.02 \r\n'Ne pas modifier / Do not change\r\n"
              "Langue = English\r\nLangueMenu =\r\nLangueAide =\r\nLangueMasq =\r\n"
              "FichierDat = Mirel.dat\r\nDoubleClic = Oui\r\nZmm = 1.5\r\nPatchs = 0\r\nTailleCarCode = 12\r\n");
    EXPECT_FALSE(QFileInfo::exists(d.P() + "Mirel$cfg.old"));
    EXPECT_EQ(RemplaceCle({"h", "a", "LangueMasq = x"}, "LangueMasq =", "", V1),
              (QStringList{EnteteConfig(V1), "a", "LangueMasq ="}));
    Ecrit(lieu.Fichier(), Lignes({EnteteConfig("1.00 "), "LangueAide = English", "FichierDat = Dial.dat"}));
    ASSERT_TRUE(EcritConfig(lieu, CleCfg::LangueMasq, "English", V1));
    EXPECT_EQ(Lit(lieu.Fichier()),
              Lignes({EnteteConfig(V1), "LangueAide = English", "LangueMasq = English", "FichierDat = Dial.dat"}));
}

TEST(Config, Windows1252ConfigReadAndWrittenBackIn1252) {
    Dossiers d;
    Ecrit(d.P() + "Mirel.cfg", "'Fichier de configuration du Programme Mirel V0.01 \r\nLangue = Fran\xE7" "ais\r\n");
    const EmplacementConfig lieu = d.Lieu();
    const Config c = ChargeConfig(lieu, V1);
    EXPECT_TRUE(c.Langue == "Français" && c.Enc == Encodage::Windows1252);
    ASSERT_TRUE(EcritConfig(lieu, CleCfg::Zmm, "2", V1));
    EXPECT_EQ(Lit(lieu.Fichier()),
              "'Fichier de configuration du Programme Mirel V0.01 \r\nLangue = Fran\xE7" "ais\r\nZmm = 2\r\n");
}

// A language is found by its name row in any case, its offset goes to the run; an
// unknown name is unset and opens the language dialog, as does another version.
TEST(Config, LanguagesAreFoundByTheirNameRow) {
    const TableChaines t = TableTest();
    for (auto [nom, index] : {std::pair{"Français", 1}, {"english", 2}, {"DEUTSCH", 3}, {"Castellano", 4},
                              {"Russkij", 0}, {"", 0}})
        EXPECT_EQ(IndexLangue(t, nom), index) << nom;
    EXPECT_EQ(CodeLangue(t, 3), "de");
    Config c{.Langue = "English", .LangueMenu = "Deutsch", .LangueAide = "Castellano", .LangueMasq = "Klingon"};
    Reglages r;
    AppliqueConfig(c, t, r);
    EXPECT_EQ(QList<int>({r.LangueMessages, r.LangueMenus, r.LangueAide, r.LangueMasque}),
              QList<int>({400, 800, 1200, 0}));
    c.PremiereLigne = EnteteConfig(V1);
    EXPECT_TRUE(LanguesAChoisir(c, t, V1));
    c.LangueMasq = "english";
    EXPECT_TRUE(!LanguesAChoisir(c, t, V1) && LanguesAChoisir(c, t, V2));
}

// OK writes the four keys (unset: the first language) and copies the messages' template
// over "Mirel.DaN": the compiled one when the folder has none, none of 5 characters or less.
TEST(Config, LanguageDialogOkWritesKeysAndCopiesTheTemplate) {
    Dossiers d;
    const EmplacementConfig lieu = d.Lieu();
    Config c = ChargeConfig(lieu, V1);
    ValideLangues({1, 1, 1, 1}, lieu, c, TableTest(), V1);
    EXPECT_EQ(Lit(d.P() + "Mirel.DaN"), Lit(":/strings/Mirel_fr.DaN"));
    Ecrit(d.P() + "Mirel_en.DaN", "' English template\r\n");
    EXPECT_EQ(ValideLangues({2, 3, 0, 4}, lieu, c, TableTest(), V1), d.P() + "Mirel_es.chm");
    EXPECT_EQ(c.LangueAide, "Français");
    EXPECT_TRUE(Lit(lieu.Fichier()).contains("\r\nLangue = English\r\nLangueMenu = Deutsch\r\n"
                                              "LangueAide = Fran\xC3\xA7" "ais\r\nLangueMasq = Castellano\r\n"));
    EXPECT_EQ(Lit(d.P() + "Mirel.DaN"), "' English template\r\n");
    Ecrit(d.P() + "Mirel_de.DaN", "'\r\n");
    ValideLangues({3, 3, 3, 3}, lieu, c, TableTest(), V1);
    EXPECT_EQ(Lit(d.P() + "Mirel.DaN"), "' English template\r\n");
    QDir().mkpath(d.X());
    Ecrit(d.X() + "Mirel_de.DaN", "' Vorlage\r\n");
    Ecrit(d.T() + "mirel", "x");
    const EmplacementConfig ailleurs = LocaliseConfig(d.P() + "ro/", d.T(), d.X());
    ValideLangues({3, 3, 3, 3}, ailleurs, c, TableTest(), V1);
    EXPECT_EQ(Lit(d.X() + "Mirel.DaN"), "' Vorlage\r\n");
}

// A patch answer outside 1 to 15 in size asks again, an empty one leaves; the prompt lists the active ones.
TEST(Config, PatchAnswers) {
    for (auto [saisie, resultat, apres] :
         {std::tuple{"16", SaisiePatch::Redemander, 0b11}, {"0", SaisiePatch::Redemander, 0b11},
          {"-16", SaisiePatch::Redemander, 0b11}, {"abc", SaisiePatch::Redemander, 0b11},
          {"", SaisiePatch::Quitter, 0b11}, {"-1", SaisiePatch::Appliquee, 0b10},
          {"15", SaisiePatch::Appliquee, 0x4003}}) {
        int p = 0b11;
        EXPECT_EQ(AppliqueSaisiePatch(saisie, p), resultat) << saisie;
        EXPECT_EQ(p, apres) << saisie;
    }
    EXPECT_EQ(InvitePatchs(0b11, TableTest(), 0), "Actifs : 1,2\n\nNuméro ?");
}

TEST(Config, VersionText) {
    for (auto [maj, min, rev, texte] : {std::tuple{2, 6, 0, "2.06"}, {2, 6, 1, "2.06a "}, {1, 12, 3, "1.12c "},
                                        {0, 1, 0, "0.01"}})
        EXPECT_EQ(TexteVersion(maj, min, rev), texte);
    EXPECT_FALSE(VersionConforme(EnteteConfig("2.06a "), "2.06 ") || VersionConforme("'Mirel", "2.06 "));
}

// Mask and menus in one language: help string 71 and the undocumented help; else string 87 and a second entry.
TEST(Config, HelpMenuSameAndDifferentLanguages) {
    QTemporaryDir p;
    QDir(p.path()).mkdir("Mirel_fr");
    Ecrit(p.path() + "/Mirel_fr/Non_Doc_fr.chm", "");
    for (auto [masque, aide25, autre] : {std::tuple{2, "&Help", false}, {1, "Mirel &V2.6 help", true}}) {
        const EtatMenuAide m = MenuAide({1, 2, 1, masque}, TableTest(), p.path());
        EXPECT_EQ(m.LegendeAide25, aide25);
        if (autre) EXPECT_EQ(m.LegendeAide, "&Help");
        EXPECT_TRUE(m.AideVisible == autre && m.NonDocVisible == !autre);
    }
}

// The help word: the selection, else the caret's word (ends: line, blank, "'", separator, "="), else its character.
TEST(Config, HelpWordAndItsTopic) {
    const QString t = "Arc = 30, 150\r\nGrad1=5,'x\r\n";
    for (auto [texte, curseur, selection, sep, mot] :
         {std::tuple{t, 1, "", ",", "Arc"}, {t, 0, "", ",", "Arc"}, {t, 3, "", ",", "Arc"}, {t, 7, "", ",", "30"},
          {t, 17, "", ",", "Grad1"}, {t, 8, "", ";", "30,"}, {t, 4, "", ",", "="}, {"Arc \r\n", 4, "", ",", " "},
          {t, 5, "Val", ",", "Val"}})
        EXPECT_EQ(MotAide(texte, curseur, selection, sep), mot) << curseur;
    for (auto [mot, sujet] : {std::pair{"+", 2200}, {"DemiLuneP", 2300}, {"%Rayon", 2500}, {"ZoomIniI", 2500},
                              {"Bezier_aGr", 2700}, {"!Fin", 2900}, {"?", 3000}, {"QA12", 3100}, {"mce_Vis", 3200},
                              {"Bezier", 5000}, {"TRAIT CERCLE", 5000}, {"", 5000}})
        EXPECT_EQ(SujetAide(mot), sujet) << mot;
}

// Val reads the leading number: blanks skipped, "&H" hexadecimal, D as E.
TEST(Config, ValReadsTheLeadingNumber) {
    for (auto [texte, valeur] : {std::pair{" 1.5 ", 1.5}, {"1 000", 1000.0}, {"-.5x", -0.5}, {"2,5", 2.0},
                                 {"1e3", 1000.0}, {"1D2", 100.0}, {"1e", 1.0}, {"&H1F", 31.0}, {"abc", 0.0}, {"", 0.0}})
        EXPECT_DOUBLE_EQ(ValVb(texte), valeur) << texte;
}
