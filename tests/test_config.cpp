// Part 4.5: configuration and languages.
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

const QString V1 = QStringLiteral("0.01 ");
const QString V2 = QStringLiteral("0.02 ");

// A string table of four sections with the rows this Part reads.
TableChaines TableTest() {
    TableChaines t;
    t.AjouteSection(QStringLiteral("3\t4\n5\tFrançais\n8\tfr\n71\t&Aide\n87\tAide Mirel &V2.6\n"
                                   "121\tPatchs actifs : \n122\tEntrez un numéro\n"),
                    0);
    t.AjouteSection(QStringLiteral("5\tEnglish\n8\ten\n71\t&Help\n87\tMirel &V2.6 help\n"
                                   "121\tActive patches: \n122\tEnter a number\n"),
                    400);
    t.AjouteSection(QStringLiteral("5\tDeutsch\n8\tde\n71\t&Hilfe\n87\tMirel &V2.6 Hilfe\n"), 800);
    t.AjouteSection(QStringLiteral("5\tCastellano\n8\tes\n71\t&Ayuda\n87\tAyuda Mirel &V2.6\n"), 1200);
    return t;
}

QByteArray Lit(const QString& chemin) {
    QFile f(chemin);
    if (!f.open(QIODevice::ReadOnly)) return {};
    return f.readAll();
}

void Ecrit(const QString& chemin, const QByteArray& octets) {
    QFile f(chemin);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(octets);
}

QByteArray Lignes(const QStringList& l) { return (l.join(QStringLiteral("\r\n")) + "\r\n").toUtf8(); }

// A configuration folder with the program in it (not a foreign folder).
struct Dossiers {
    QTemporaryDir programme, travail, xdg;
    QString P() const { return programme.path() + u'/'; }
    QString T() const { return travail.path() + u'/'; }
    QString X() const { return xdg.path() + QStringLiteral("/Mirel/"); }
};

} // namespace

// --- Edge cases of Part 4.5

TEST(Config, ForeignWorkingFolderReadsProgramFolderAndRewritesNothing) {
    Dossiers d;
    const QByteArray contenu = Lignes({EnteteConfig(V1), EnteteConfig2(), "Langue = English",
                                       "LangueMenu = Deutsch", "LangueAide = English",
                                       "LangueMasq = English", "FichierDat = /x/Dial.dat",
                                       "DoubleClic = Oui", "Zmm = 1.02", "Patchs = 3"});
    Ecrit(d.P() + "Mirel.cfg", contenu);
    Ecrit(d.P() + "mirel", "ELF");
    // The working folder holds neither the program nor a configuration.
    const EmplacementConfig lieu = LocaliseConfig(d.P(), d.T(), d.X());
    EXPECT_TRUE(lieu.ProgrammeUtilisable);
    EXPECT_TRUE(lieu.EcritureInterdite);
    EXPECT_EQ(lieu.DossierCfg, d.P());
    EXPECT_EQ(lieu.DossierDepart, d.T());
    EXPECT_EQ(lieu.DossierFichier, d.T());

    const Config c = ChargeConfig(lieu, V1);
    EXPECT_EQ(c.Langue, "English");
    EXPECT_EQ(c.LangueMenu, "Deutsch");
    EXPECT_EQ(c.FichierDat, "/x/Dial.dat");
    EXPECT_TRUE(c.DoubleClic);
    EXPECT_FLOAT_EQ(c.Zmm, 1.02f);
    EXPECT_EQ(c.Patchs, 3);

    EXPECT_FALSE(EcritConfig(lieu, CleCfg::Zmm, "2", V2));
    Config copie = c;
    EXPECT_FALSE(ValideLangues({1, 1, 1, 1}, lieu, copie, TableTest(), V2).isEmpty());
    EXPECT_EQ(Lit(d.P() + "Mirel.cfg"), contenu);
    EXPECT_FALSE(QFileInfo::exists(d.P() + "Mirel$cfg.old"));
    EXPECT_FALSE(QFileInfo::exists(d.P() + "Tmp$.tst"));
    EXPECT_FALSE(QFileInfo::exists(d.T() + "Mirel.cfg"));
    EXPECT_FALSE(QFileInfo::exists(d.X()));
    EXPECT_FALSE(QFileInfo::exists(d.P() + "Mirel.DaN"));
    EXPECT_EQ(QDir(d.P()).entryList(QDir::Files).size(), 2);

    // Without a file there, the defaults are used and no file is created.
    QTemporaryDir vide;
    const EmplacementConfig lieu2 = LocaliseConfig(vide.path(), d.T(), d.X());
    EXPECT_TRUE(lieu2.EcritureInterdite);
    const Config defaut = ChargeConfig(lieu2, V1);
    EXPECT_EQ(defaut.FichierDat, "Mirel.dat");
    EXPECT_TRUE(QDir(vide.path()).entryList(QDir::Files).isEmpty());
}

TEST(Config, VersionChangeReopensLanguageDialogWithOptionsPresetFromFile) {
    Dossiers d;
    Ecrit(d.P() + "Mirel.cfg", Lignes({EnteteConfig(V1), EnteteConfig2(), "Langue = Deutsch",
                                        "LangueMenu = English", "LangueAide = Castellano",
                                        "LangueMasq = English", "FichierDat = Mirel.dat"}));
    Ecrit(d.P() + "mirel", "ELF");
    const EmplacementConfig lieu = LocaliseConfig(d.P(), d.P(), d.X());
    const Config c = ChargeConfig(lieu, V2);
    const TableChaines t = TableTest();
    EXPECT_FALSE(LanguesAChoisir(c, t, V1));
    EXPECT_TRUE(LanguesAChoisir(c, t, V2)); // line 1 names another version
    Ecrit(d.P() + "Mirel_es.chm", "");
    const DialogueLangues dlg = DialogueLangues::Prepare(c, t, d.P());
    EXPECT_EQ(dlg.Choix(), (ChoixLangues{3, 2, 4, 2}));
    // Writing a key brings the header to the current version.
    EXPECT_TRUE(EcritConfig(lieu, CleCfg::Langue, "Deutsch", V2));
    EXPECT_FALSE(LanguesAChoisir(ChargeConfig(lieu, V2), t, V2));
}

TEST(Config, PatchInput16Or0AsksAgainAndMinus1ClearsPatch1) {
    Dossiers d;
    Ecrit(d.P() + "mirel", "ELF");
    const EmplacementConfig lieu = LocaliseConfig(d.P(), d.P(), d.X());
    ChargeConfig(lieu, V1);
    const TableChaines t = TableTest();

    int p = 0;
    EXPECT_EQ(AppliqueSaisiePatch("16", p), SaisiePatch::Redemander);
    EXPECT_EQ(AppliqueSaisiePatch("0", p), SaisiePatch::Redemander);
    EXPECT_EQ(AppliqueSaisiePatch("-16", p), SaisiePatch::Redemander);
    EXPECT_EQ(AppliqueSaisiePatch("abc", p), SaisiePatch::Redemander);
    EXPECT_EQ(AppliqueSaisiePatch("", p), SaisiePatch::Quitter);
    EXPECT_EQ(p, 0);

    int patchs = 0b11; // patches 1 and 2
    QStringList reponses{"16", "0", "-1"};
    QStringList invites;
    EXPECT_TRUE(Mnu_Patchs(
        patchs,
        [&](const QString& invite) {
            invites << invite;
            return reponses.takeFirst();
        },
        t, 0, lieu, V1));
    EXPECT_EQ(invites.size(), 3);
    EXPECT_EQ(invites[0], QStringLiteral("Patchs actifs : 1,2\n\nEntrez un numéro"));
    EXPECT_EQ(patchs, 0b10);
    EXPECT_FALSE(PatchActif(patchs, 1));
    EXPECT_TRUE(PatchActif(patchs, 2));
    EXPECT_TRUE(Lit(lieu.Fichier()).contains("\r\nPatchs = 2\r\n"));
    EXPECT_EQ(ChargeConfig(lieu, V1).Patchs, 2);
}

TEST(Config, FileWithoutLangueMasqGainsItDirectlyAheadOfFichierDat) {
    Dossiers d;
    Ecrit(d.P() + "mirel", "ELF");
    Ecrit(d.P() + "Mirel.cfg", Lignes({EnteteConfig("1.00 "), EnteteConfig2(), "Langue = English",
                                        "LangueMenu = English", "LangueAide = English",
                                        "FichierDat = Dial.dat", "DoubleClic = Non", "Zmm = 1",
                                        "Patchs = 0"}));
    const EmplacementConfig lieu = LocaliseConfig(d.P(), d.P(), d.X());
    ASSERT_TRUE(EcritConfig(lieu, CleCfg::LangueMasq, "English", V1));
    EXPECT_EQ(Lit(lieu.Fichier()),
              Lignes({EnteteConfig(V1), EnteteConfig2(), "Langue = English", "LangueMenu = English",
                      "LangueAide = English", "LangueMasq = English", "FichierDat = Dial.dat",
                      "DoubleClic = Non", "Zmm = 1", "Patchs = 0"}));
}

// --- The file

TEST(Config, DefaultFileWrittenWhenMissing) {
    Dossiers d;
    Ecrit(d.P() + "mirel", "ELF");
    const EmplacementConfig lieu = LocaliseConfig(d.P(), d.P(), d.X());
    EXPECT_FALSE(lieu.EcritureInterdite);
    EXPECT_EQ(lieu.DossierCfg, d.P());
    const Config c = ChargeConfig(lieu, V1);
    EXPECT_EQ(Lit(d.P() + "Mirel.cfg"),
              QByteArray("'Fichier de configuration du Programme Mirel V0.01 \r\n"
                         "'Ne pas modifier / Do not change\r\n"
                         "Langue =\r\nLangueMenu =\r\nLangueAide =\r\nLangueMasq =\r\n"
                         "FichierDat = Mirel.dat\r\nDoubleClic = Non\r\nZmm = 1\r\nPatchs = 0\r\n"));
    EXPECT_EQ(c.Langue, "");
    EXPECT_EQ(c.FichierDat, "Mirel.dat");
    EXPECT_FALSE(c.DoubleClic);
    EXPECT_FLOAT_EQ(c.Zmm, 1.0f);
    EXPECT_FALSE(c.TailleCarCode.has_value());
    EXPECT_TRUE(LanguesAChoisir(c, TableTest(), V1));
}

TEST(Config, ReadingRuleFirstOccurrenceOfKeyWithBlankAndSign) {
    const Config c = LitConfigTexte(QStringLiteral(
        "'Fichier de configuration du Programme Mirel V0.01 \r\n"
        "'Langue = Deutsch\r\n"                 // comment: ignored
        "LangueMenu = English\r\n"              // not read as "LANGUE ="
        "  langue =   Castellano  \r\n"         // any case, anywhere, trimmed
        "x FichierDat = C:\\Dials\\My Dial.dat\r\n"
        "DoubleClic = oui\r\n"
        "TailleCarCode = 11.5\r\n"
        "Patchs = 65535\n"));                   // 16-bit; LF alone is a line end too
    EXPECT_EQ(c.Langue, "Castellano");
    EXPECT_EQ(c.LangueMenu, "English");
    EXPECT_EQ(c.LangueAide, "");
    EXPECT_EQ(c.FichierDat, "C:\\Dials\\My Dial.dat");
    EXPECT_TRUE(c.DoubleClic);
    EXPECT_FLOAT_EQ(c.Zmm, 1.0f); // no "Zmm =": 1
    ASSERT_TRUE(c.TailleCarCode.has_value());
    EXPECT_FLOAT_EQ(*c.TailleCarCode, 11.5f);
    EXPECT_EQ(c.Patchs, -1);
    EXPECT_TRUE(PatchActif(c.Patchs, 16));
    EXPECT_EQ(c.PremiereLigne, "'Fichier de configuration du Programme Mirel V0.01 ");
    EXPECT_FLOAT_EQ(LitConfigTexte("Zmm = 0").Zmm, 1.0f);
    EXPECT_FLOAT_EQ(LitConfigTexte("Zmm = 0.98").Zmm, 0.98f);
}

TEST(Config, EcritConfigRewritesKeyThroughOldCopy) {
    Dossiers d;
    Ecrit(d.P() + "mirel", "ELF");
    const EmplacementConfig lieu = LocaliseConfig(d.P(), d.P(), d.X());
    ChargeConfig(lieu, V1);
    Ecrit(d.P() + "Mirel$cfg.old", "stale");
    ASSERT_TRUE(EcritConfig(lieu, "Zmm = ", "1.5", V2));
    ASSERT_TRUE(EcritConfig(lieu, CleCfg::DoubleClic, " Oui", V2));
    ASSERT_TRUE(EcritConfig(lieu, CleCfg::Langue, "English", V2));
    ASSERT_TRUE(EcritConfig(lieu, CleCfg::TailleCarCode, "12", V2)); // absent: appended
    EXPECT_EQ(Lit(lieu.Fichier()),
              QByteArray("'Fichier de configuration du Programme Mirel V0.02 \r\n"
                         "'Ne pas modifier / Do not change\r\n"
                         "Langue = English\r\nLangueMenu =\r\nLangueAide =\r\nLangueMasq =\r\n"
                         "FichierDat = Mirel.dat\r\nDoubleClic = Oui\r\nZmm = 1.5\r\nPatchs = 0\r\n"
                         "TailleCarCode = 12\r\n"));
    EXPECT_FALSE(QFileInfo::exists(d.P() + "Mirel$cfg.old"));
    EXPECT_EQ(RemplaceCle({"h", "a", "LangueMasq = x"}, "LangueMasq =", "", V1),
              (QStringList{EnteteConfig(V1), "a", "LangueMasq ="}));
}

TEST(Config, Windows1252ConfigReadAndWrittenBackIn1252) {
    Dossiers d;
    Ecrit(d.P() + "mirel", "ELF");
    Ecrit(d.P() + "Mirel.cfg", "'Fichier de configuration du Programme Mirel V0.01 \r\nLangue = Fran\xE7" "ais\r\n");
    const EmplacementConfig lieu = LocaliseConfig(d.P(), d.P(), d.X());
    const Config c = ChargeConfig(lieu, V1);
    EXPECT_EQ(c.Langue, QStringLiteral("Français"));
    EXPECT_EQ(c.Enc, Encodage::Windows1252);
    EXPECT_EQ(IndexLangue(TableTest(), c.Langue), 1);
    ASSERT_TRUE(EcritConfig(lieu, CleCfg::Zmm, "2", V1));
    EXPECT_EQ(Lit(lieu.Fichier()),
              QByteArray("'Fichier de configuration du Programme Mirel V0.01 \r\nLangue = Fran\xE7"
                         "ais\r\nZmm = 2\r\n"));
}

// --- Location

TEST(Config, DossierTestableCreatesAndDeletesTestFile) {
    QTemporaryDir t;
    EXPECT_TRUE(DossierTestable(t.path()));
    EXPECT_FALSE(QFileInfo::exists(t.path() + "/Tmp$.tst"));
    EXPECT_FALSE(DossierTestable(t.path() + "/missing"));
    Ecrit(t.path() + "/file", "x");
    EXPECT_FALSE(DossierTestable(t.path() + "/file")); // a file is no folder
}

TEST(Config, ConfigInWorkingFolderIsUsedAndSavedThere) {
    Dossiers d;
    Ecrit(d.P() + "Mirel.cfg", Lignes({EnteteConfig(V1), "Langue = Deutsch"}));
    Ecrit(d.T() + "Mirel.cfg", Lignes({EnteteConfig(V1), "Langue = English"}));
    const EmplacementConfig lieu = LocaliseConfig(d.P(), d.T(), d.X());
    EXPECT_EQ(lieu.DossierCfg, d.T());
    EXPECT_FALSE(lieu.EcritureInterdite);
    EXPECT_EQ(ChargeConfig(lieu, V1).Langue, "English");
    EXPECT_TRUE(EcritConfig(lieu, CleCfg::Langue, "Castellano", V1));
    EXPECT_EQ(ChargeConfig(lieu, V1).Langue, "Castellano");
}

TEST(Config, WorkingFolderHoldingTheProgramIsNotForeign) {
    QTemporaryDir t;
    for (const char* nom : {"Mirel.exe", "MIREL.EXE.manifest", "Mirel.lnk", "mirel", "mirel.desktop"}) {
        QTemporaryDir w;
        Ecrit(w.path() + "/" + nom, "x");
        EXPECT_TRUE(DossierContientProgramme(w.path(), "mirel")) << nom;
        EXPECT_FALSE(LocaliseConfig(t.path(), w.path(), {}).EcritureInterdite) << nom;
    }
    QTemporaryDir w;
    Ecrit(w.path() + "/Mirel.dat", "x");
    EXPECT_FALSE(DossierContientProgramme(w.path(), "mirel"));
}

TEST(Config, UnusableProgramFolderTakesXdgFolder) {
    Dossiers d;
    const QString programme = d.P() + "missing/";
    Ecrit(d.T() + "mirel.desktop", "x");
    const EmplacementConfig lieu = LocaliseConfig(programme, d.T(), d.X());
    EXPECT_FALSE(lieu.ProgrammeUtilisable);
    EXPECT_EQ(lieu.DossierCfg, d.X());
    ChargeConfig(lieu, V1); // makes the folder and the default file
    EXPECT_TRUE(QFileInfo::exists(d.X() + "Mirel.cfg"));
    // Without an XDG folder ("APPDATA" unset) the working folder stays.
    EXPECT_EQ(LocaliseConfig(programme, d.T(), {}).DossierCfg, d.T());
}

TEST(Config, XdgFolderFollowsXdgConfigHome) {
    const QByteArray avant = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", "/tmp/xdg-test");
    EXPECT_EQ(DossierXdgMirel(), "/tmp/xdg-test/Mirel/");
    qunsetenv("XDG_CONFIG_HOME");
    EXPECT_TRUE(DossierXdgMirel().endsWith("/.config/Mirel/"));
    if (!avant.isNull()) qputenv("XDG_CONFIG_HOME", avant);
}

// --- Languages

TEST(Config, LanguageOffsetsFoundByRow5OfEachSection) {
    const TableChaines t = TableTest();
    EXPECT_EQ(NombreLangues(t), 4);
    EXPECT_EQ(IndexLangue(t, QStringLiteral("Français")), 1);
    EXPECT_EQ(IndexLangue(t, "english"), 2);
    EXPECT_EQ(IndexLangue(t, "DEUTSCH"), 3);
    EXPECT_EQ(IndexLangue(t, "Castellano"), 4);
    EXPECT_EQ(IndexLangue(t, "Russkij"), 0);
    EXPECT_EQ(IndexLangue(t, ""), 0);
    EXPECT_EQ(CodeLangue(t, 3), "de");

    Config c;
    c.Langue = "English";
    c.LangueMenu = "Deutsch";
    c.LangueAide = "Castellano";
    c.LangueMasq = "Klingon"; // unknown: unset
    c.Zmm = 0.97f;
    c.Patchs = 2;
    Reglages r;
    AppliqueConfig(c, t, r);
    EXPECT_EQ(r.LangueMessages, 400);
    EXPECT_EQ(r.LangueMenus, 800);
    EXPECT_EQ(r.LangueAide, 1200);
    EXPECT_EQ(r.LangueMasque, 0);
    EXPECT_FLOAT_EQ(r.Zmm, 0.97f);
    EXPECT_EQ(r.Patchs, 2);
    c.PremiereLigne = EnteteConfig(V1);
    EXPECT_TRUE(LanguesAChoisir(c, t, V1)); // the unknown name opens Form3
    c.LangueMasq = "english";
    EXPECT_FALSE(LanguesAChoisir(c, t, V1));

    EmplacementConfig lieu;
    lieu.DossierProgramme = "/opt/mirel/";
    lieu.DossierDepart = "/home/u/";
    lieu.DossierCfg = "/home/u/.config/Mirel/";
    AppliqueEmplacement(lieu, r);
    EXPECT_EQ(r.DossierProgramme, "/opt/mirel/");
    EXPECT_EQ(r.DossierTravail, "/home/u/");
    EXPECT_EQ(r.DossierCfg, "/home/u/.config/Mirel/");
}

TEST(Config, LanguesOfTheStandardTableFrenchSection) {
    const TableChaines& t = TableChaines::Standard();
    EXPECT_EQ(IndexLangue(t, QStringLiteral("Français")), 1);
    EXPECT_EQ(CodeLangue(t, 1), "fr");
}

TEST(Config, Form3DefaultsUnsetToFirstAndDisablesMissingHelp) {
    QTemporaryDir p;
    Ecrit(p.path() + "/Mirel_en.chm", "");
    Ecrit(p.path() + "/Mirel_de.chm", "");
    const TableChaines t = TableTest();
    Config c; // all unset
    DialogueLangues d = DialogueLangues::Prepare(c, t, p.path());
    EXPECT_EQ(d.NombreLangues(), 4);
    EXPECT_EQ(d.Choix(), (ChoixLangues{1, 1, 1, 0}));
    EXPECT_EQ(d.Legende(CadreMessages, 2), "English");
    // French help missing: only its own option is disabled.
    EXPECT_FALSE(d.Actif(CadreAide, 1));
    EXPECT_EQ(d.Legende(CadreAide, 1), "Not available");
    EXPECT_TRUE(d.Actif(CadreAide, 2));
    EXPECT_TRUE(d.Actif(CadreAide, 3));
    EXPECT_FALSE(d.Actif(CadreAide, 4));
    EXPECT_TRUE(d.Actif(CadreMasque, 4));
    EXPECT_EQ(LegendeValiderLangues, "&Valider - OK");
}

TEST(Config, Form3Cascades) {
    QTemporaryDir p;
    for (const char* f : {"/Mirel_fr.chm", "/Mirel_en.chm", "/Mirel_de.chm"}) Ecrit(p.path() + f, "");
    DialogueLangues d = DialogueLangues::Prepare(Config{}, TableTest(), p.path());
    d.Clic(CadreMessages, 2); // all four
    EXPECT_EQ(d.Choix(), (ChoixLangues{2, 2, 2, 2}));
    d.Clic(CadreMenus, 3); // menus, help, mask
    EXPECT_EQ(d.Choix(), (ChoixLangues{2, 3, 3, 3}));
    d.Clic(CadreAide, 1); // only itself
    EXPECT_EQ(d.Choix(), (ChoixLangues{2, 3, 1, 3}));
    d.Clic(CadreMasque, 2);
    EXPECT_EQ(d.Choix(), (ChoixLangues{2, 3, 1, 2}));
    d.Clic(CadreMessages, 4); // Spanish help is not available: frame 3 keeps its choice
    EXPECT_EQ(d.Choix(), (ChoixLangues{4, 4, 1, 4}));
    d.Clic(CadreAide, 4); // disabled option: nothing
    EXPECT_EQ(d.Choix(), (ChoixLangues{4, 4, 1, 4}));
}

TEST(Config, Form3OkWritesKeysAndCopiesTemplate) {
    Dossiers d;
    Ecrit(d.P() + "mirel", "ELF");
    Ecrit(d.P() + "Mirel_en.DaN", "' English template\r\nArc = 30, 150, 60\r\n");
    const EmplacementConfig lieu = LocaliseConfig(d.P(), d.P(), d.X());
    Config c = ChargeConfig(lieu, V1);
    const QString aide = ValideLangues({2, 3, 0, 4}, lieu, c, TableTest(), V1);
    EXPECT_EQ(aide, d.P() + "Mirel_es.chm");
    EXPECT_EQ(c.Langue, "English");
    EXPECT_EQ(c.LangueAide, QStringLiteral("Français")); // unset counts as language 1
    const QByteArray f = Lit(lieu.Fichier());
    EXPECT_TRUE(f.contains("\r\nLangue = English\r\nLangueMenu = Deutsch\r\nLangueAide = Fran\xC3\xA7" "ais\r\n"
                           "LangueMasq = Castellano\r\n"));
    EXPECT_EQ(Lit(d.P() + "Mirel.DaN"), "' English template\r\nArc = 30, 150, 60\r\n");
    // A template of 5 characters or less is not copied.
    Ecrit(d.P() + "Mirel_de.DaN", "'\r\n");
    ValideLangues({3, 3, 3, 3}, lieu, c, TableTest(), V1);
    EXPECT_EQ(Lit(d.P() + "Mirel.DaN"), "' English template\r\nArc = 30, 150, 60\r\n");
}

TEST(Config, Form3OkCopiesCompiledTemplateWhenProgramFolderHasNone) {
    Dossiers d;
    Ecrit(d.P() + "mirel", "ELF");
    const EmplacementConfig lieu = LocaliseConfig(d.P(), d.P(), d.X());
    Config c = ChargeConfig(lieu, V1);
    ValideLangues({1, 1, 1, 1}, lieu, c, TableTest(), V1);
    EXPECT_EQ(Lit(d.P() + "Mirel.DaN"), Lit(":/strings/Mirel_fr.DaN"));
    EXPECT_GT(Lit(":/strings/Mirel_fr.DaN").size(), 5);
}

TEST(Config, Form3OkTakesTemplateFromConfigFolderWhenProgramFolderUnusable) {
    Dossiers d;
    const QString programme = d.P() + "ro/"; // missing: not usable
    QDir().mkpath(d.X());
    Ecrit(d.X() + "Mirel_de.DaN", "' Vorlage aus dem Konfigurationsordner\r\n");
    Ecrit(d.T() + "mirel", "x");
    const EmplacementConfig lieu = LocaliseConfig(programme, d.T(), d.X());
    Config c = ChargeConfig(lieu, V1);
    ValideLangues({3, 3, 3, 3}, lieu, c, TableTest(), V1);
    EXPECT_EQ(Lit(d.X() + "Mirel.DaN"), "' Vorlage aus dem Konfigurationsordner\r\n");
}

// --- Version, help

TEST(Config, VersionText) {
    EXPECT_EQ(TexteVersion(2, 6, 0), "2.06");
    EXPECT_EQ(TexteVersion(2, 6, 1), "2.06a ");
    EXPECT_EQ(TexteVersion(1, 12, 3), "1.12c ");
    EXPECT_EQ(TexteVersionProgramme(), TexteVersion(QStringLiteral(MIREL_VERSION).section('.', 0, 0).toInt(),
                                                    QStringLiteral(MIREL_VERSION).section('.', 1, 1).toInt(),
                                                    QStringLiteral(MIREL_VERSION).section('.', 2, 2).toInt()));
    EXPECT_TRUE(VersionConforme(EnteteConfig("2.06 "), "2.06 "));
    EXPECT_FALSE(VersionConforme(EnteteConfig("2.06a "), "2.06 "));
    EXPECT_FALSE(VersionConforme("'Mirel", "2.06 "));
}

TEST(Config, HelpMenuSameAndDifferentLanguages) {
    QTemporaryDir p;
    const TableChaines t = TableTest();
    EtatMenuAide m = MenuAide({1, 2, 1, 2}, t, p.path());
    EXPECT_EQ(m.LegendeAide25, "&Help");
    EXPECT_FALSE(m.AideVisible);
    EXPECT_FALSE(m.NonDocVisible);
    QDir(p.path()).mkdir("Mirel_fr");
    Ecrit(p.path() + "/Mirel_fr/Non_Doc_fr.chm", "");
    EXPECT_TRUE(MenuAide({1, 2, 1, 2}, t, p.path()).NonDocVisible);
    m = MenuAide({1, 2, 1, 1}, t, p.path());
    EXPECT_EQ(m.LegendeAide25, "Mirel &V2.6 help");
    EXPECT_EQ(m.LegendeAide, "&Help");
    EXPECT_TRUE(m.AideVisible);
    EXPECT_FALSE(m.NonDocVisible);
}

TEST(Config, HelpCommandsFilesAndTopics) {
    const QString p = "/opt/mirel/";
    const QString f = p + "Mirel_de.chm";
    EXPECT_EQ(AideDe(CommandeAide::Aide25, f, p, "en", "de").Fichier, f);
    EXPECT_EQ(AideDe(CommandeAide::Aide, f, p, "en", "de").Fichier, "/opt/mirel/Mirel-200_en.chm");
    EXPECT_EQ(AideDe(CommandeAide::MAJ_Aide, f, p, "en", "de").Fichier, "/opt/mirel/Mirel_MAJ_de.chm");
    const DemandeAide r = AideDe(CommandeAide::ResumeSyntaxes, f, p, "en", "de");
    EXPECT_EQ(r.Fichier, "/opt/mirel/Mirel_en.chm");
    EXPECT_EQ(r.Quoi, DemandeAide::Sujet::Resume);
    EXPECT_EQ(AideDe(CommandeAide::Non_Doc, f, p, "en", "de").Fichier, "/opt/mirel/Mirel_fr/Non_Doc_fr.chm");
    const DemandeAide m = AideDe(CommandeAide::AideMot, f, p, "en", "de", "grad1");
    EXPECT_EQ(m.Fichier, "/opt/mirel/Mirel_en.chm");
    EXPECT_EQ(m.Quoi, DemandeAide::Sujet::Numero);
    EXPECT_EQ(m.Numero, 2700);
}

TEST(Config, HelpWordTopics) {
    EXPECT_EQ(SujetAide("CentreE"), 2100);
    EXPECT_EQ(SujetAide("+"), 2200);
    EXPECT_EQ(SujetAide("DemiLuneP"), 2300);
    EXPECT_EQ(SujetAide("TexteC"), 2400);
    EXPECT_EQ(SujetAide("%Rayon"), 2500);
    EXPECT_EQ(SujetAide("ZoomIniI"), 2500);
    EXPECT_EQ(SujetAide("NPage"), 2600);
    EXPECT_EQ(SujetAide("Bezier_aGr"), 2700);
    EXPECT_EQ(SujetAide("LVar"), 2800);
    EXPECT_EQ(SujetAide("!Fin"), 2900);
    EXPECT_EQ(SujetAide("Input"), 2900);
    EXPECT_EQ(SujetAide("?"), 3000);
    EXPECT_EQ(SujetAide("QA12"), 3100);
    EXPECT_EQ(SujetAide("Fichier"), 3200);
    EXPECT_EQ(SujetAide("mce_Vis"), 3200);
    EXPECT_EQ(SujetAide("Bezier"), 5000);
    EXPECT_EQ(SujetAide("TRAIT CERCLE"), 5000);
    EXPECT_EQ(SujetAide(""), 5000);
}

TEST(Config, HelpWordAroundCaret) {
    const QString t = QStringLiteral("Arc = 30, 150\r\nGrad1=5,'x\r\n");
    EXPECT_EQ(MotAide(t, 1, {}, ","), "Arc");
    EXPECT_EQ(MotAide(t, 0, {}, ","), "Arc");
    EXPECT_EQ(MotAide(t, 3, {}, ","), "Arc");
    EXPECT_EQ(MotAide(t, 7, {}, ","), "30");
    EXPECT_EQ(MotAide(t, 17, {}, ","), "Grad1");
    EXPECT_EQ(MotAide(t, 8, {}, ";"), "30,");
    EXPECT_EQ(MotAide(t, 4, {}, ","), "=");   // empty word: the character at the caret
    EXPECT_EQ(MotAide(QStringLiteral("Arc \r\n"), 4, {}, ","), " "); // a CR counts as a blank
    EXPECT_EQ(MotAide(t, 5, "Val", ","), "Val");
}

TEST(Config, CHelpCalls) {
    AppelAide a = CHelp::Show("/p/Mirel_fr.chm", CHelp::Fenetre);
    EXPECT_EQ(a.Chemin, "/p/Mirel_fr.chm>W1");
    EXPECT_EQ(a.Commande, 1);
    a = CHelp::Show("/p/Mirel_fr.chm", CHelp::Fenetre, 2700);
    EXPECT_EQ(a.Commande, 15);
    EXPECT_EQ(a.Numero, 2700);
    EXPECT_EQ(CHelp::ShowIndex("/p/a.chm", "").Chemin, "/p/a.chm");
    EXPECT_EQ(CHelp::ShowIndex("/p/a.chm", "W1").Commande, 2);
    a = CHelp::ShowSearch("/p/a.chm", "W1");
    EXPECT_EQ(a.Commande, 3);
    EXPECT_EQ(a.Requete, "TEST");
}

TEST(Config, ValLikeTheOriginal) {
    EXPECT_DOUBLE_EQ(ValVb(" 1.5 "), 1.5);
    EXPECT_DOUBLE_EQ(ValVb("1 000"), 1000);
    EXPECT_DOUBLE_EQ(ValVb("-.5x"), -0.5);
    EXPECT_DOUBLE_EQ(ValVb("2,5"), 2);
    EXPECT_DOUBLE_EQ(ValVb("1e3"), 1000);
    EXPECT_DOUBLE_EQ(ValVb("1D2"), 100);
    EXPECT_DOUBLE_EQ(ValVb("1e"), 1);
    EXPECT_DOUBLE_EQ(ValVb("&H1F"), 31);
    EXPECT_DOUBLE_EQ(ValVb("abc"), 0);
    EXPECT_DOUBLE_EQ(ValVb(""), 0);
}
