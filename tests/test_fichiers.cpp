// Command files: Open, New, Save, Save as, the coded export, encodings and Alt-L.
#include "app/core/dmk.h"
#include "app/core/encodage.h"
#include "app/core/fichiers.h"
#include "language/chaines.h"
#include "language/etat.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <cerrno>
#include <csignal>
#include <cstring>

#include <gtest/gtest.h>

namespace {

QByteArray Lit(const QString& chemin) {
    QFile f(chemin);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void Ecrit(const QString& chemin, const QByteArray& octets) {
    QFile f(chemin);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly)) << chemin.toStdString();
    f.write(octets);
}

// The window as the commands see it: answers and dialog results are taken in
// order, then OK / Yes and cancel.
struct FenetreTest : FenetreFichiers {
    QStringList messages, ouvrir, enregistrer, dossiersOuvrir, nomsInitiaux;
    QList<Boutons> boutons;
    QList<Reponse> reponses;
    QString editeur, legende = "?", dossier;
    float zoom = 0;
    int visualisations = 0, annulations = 0, occupe = 0;

    template <class T> static T Prend(QList<T>& l) { return l.isEmpty() ? T() : l.takeFirst(); }
    Reponse Message(const QString& texte, Boutons b) override {
        messages << texte, boutons << b;
        if (!reponses.isEmpty()) return reponses.takeFirst();
        return b == Boutons::Ok || b == Boutons::OkAnnuler ? Reponse::Ok : Reponse::Oui;
    }
    QString DialogueOuvrir(const QString& d, const QString&) override {
        dossiersOuvrir << d;
        return Prend(ouvrir);
    }
    QString DialogueEnregistrer(const QString& nom, const QString&, const QString& ext) override {
        EXPECT_EQ(ext, "dat");
        nomsInitiaux << nom;
        return Prend(enregistrer);
    }
    QString TexteEditeur() const override { return editeur; }
    void ChargeTexte(const TexteLu& lu) override { editeur = lu.Texte, zoom = lu.ZoomDepart; }
    void VideEditeur() override { editeur.clear(); }
    void EcritLegende(const QString& nom) override { legende = nom; }
    void Occupe(bool o) override { occupe += o ? 1 : -1; }
    void Visualiser() override { ++visualisations; }
    void ChangeDossier(const QString& d) override { dossier = d; }
    void DebutAnnulation() override { ++annulations; }
};

// The working, configuration and program folders, and a folder of data files.
struct Session {
    QTemporaryDir travail, cfg, programme, donnees;
    Reglages regl;
    EtatFichiers etat;
    FenetreTest fen;
    Session() {
        regl.DossierTravail = travail.path() + u'/';
        regl.DossierCfg = cfg.path() + u'/';
        regl.DossierProgramme = programme.path() + u'/';
        etat.DossierFichier = regl.DossierTravail;
        etat.Ale.seed(42);
    }
    QString D(const QString& nom) const { return donnees.path() + u'/' + nom; }
    QStringList Courant() const { return {etat.FichierCourant, etat.NomCourant, fen.legende}; }
    std::tuple<int, int, int> Compteurs() const { return {fen.visualisations, fen.annulations, fen.occupe}; }
};

} // namespace

// Cancel with an empty editor loads the template, with text it does nothing; a chosen file
// becomes the current one; an uninstaller's data file or a read error shows a box.
TEST(Fichiers, OpenLoadsTheChosenFileOrTheTemplate) {
    Session s;
    Ecrit(s.regl.DossierTravail + "mirel.dan", "' Template\r\nZoomIni = 2\r\n");
    s.etat.FichierCourant = "old.dat";
    EXPECT_FALSE(Mnu_Ouvrir(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.fen.editeur, "' Template\r\nZoomIni = 2\r\n");
    EXPECT_FLOAT_EQ(s.fen.zoom, 2.0f);
    EXPECT_EQ(s.Courant(), QStringList(3, ""));
    EXPECT_EQ(s.fen.dossiersOuvrir, QStringList{s.regl.DossierTravail});
    EXPECT_EQ(s.fen.visualisations, 1); // the template is run at once
    const int vues = s.fen.visualisations, annulations = s.fen.annulations;
    Ecrit(s.D("notes.txt"), "Arc = 30, 150, 60\r\n");
    s.fen.ouvrir << s.D("notes.txt");
    ASSERT_TRUE(Mnu_Ouvrir(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.fen.editeur, "Arc = 30, 150, 60\r\n");
    EXPECT_EQ(s.Courant(), QStringList(3, s.D("notes.txt")));
    EXPECT_EQ(std::pair(s.etat.DossierFichier, s.fen.dossier), std::pair(s.D(""), s.D(""))); // the file's folder
    EXPECT_EQ(s.Compteurs(), std::tuple(vues + 1, annulations + 1, 0));
    EXPECT_FALSE(s.etat.Modifie);
    EXPECT_FALSE(Mnu_Ouvrir(s.etat, s.regl, s.fen));
    Ecrit(s.D("unins000.dat"), "binary");
    s.fen.ouvrir << s.D("unins000.dat") << s.D("missing.dat");
    EXPECT_FALSE(Mnu_Ouvrir(s.etat, s.regl, s.fen));
    EXPECT_FALSE(Mnu_Ouvrir(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.fen.editeur, "Arc = 30, 150, 60\r\n");
    EXPECT_EQ(s.Compteurs(), std::tuple(vues + 1, annulations + 1, 0));
    ASSERT_EQ(s.fen.messages.size(), 2);
    EXPECT_EQ(s.fen.messages[0], s.D("unins000.dat") +
                                     "\nN'est pas un fichier Mirel\nIs not a Mirel file\nIst keine Mirel Datei.");
    EXPECT_FALSE(s.fen.messages[1].isEmpty());
    for (const auto& [nom, refuse] : {std::pair{"C:\\Prog\\UNINS001.DAT", true}, {"unins000.Dat", true},
                                      {"unins000.txt", false}, {"uninstall.dat", false}, {"s000.dat", false}})
        EXPECT_EQ(EstDesinstalleur(nom), refuse) << nom;
}

// Every line end becomes CR LF, the last line's included. The zoom is that of the first
// ZoomIni line not starting with "'": what follows its first "=" (or position 8), as a size, else 1.
TEST(Fichiers, ReadingNormalisesLineEndsAndFindsTheZoom) {
    const std::pair<QByteArray, QString> fins[] = {{"a\nb\rc\r\nd", "a\r\nb\r\nc\r\nd\r\n"}, {"\n\r\n", "\r\n\r\n"},
                                                   {"", ""}, {"\r\n", "\r\n"}, {"Arc", "Arc\r\n"}};
    for (const auto& [octets, texte] : fins) EXPECT_EQ(LitFic(octets).Texte, texte) << octets.toStdString();
    EXPECT_EQ(NormaliseFinsDeLigne("x\r\r\ny"), "x\r\n\r\ny");
    const std::pair<QString, float> zooms[] = {
        {"Arc = 1\r\n", 1.0f}, {"' ZoomIni = 3\r\n\t 'ZoomIni = 4\r\n  zoomini = 2.5 ' x\r\nZoomIni = 7\r\n", 2.5f},
        {"\tZoomIni 1.5\r\n", 1.5f}, {"ZoomIni = 0\r\nZoomIni = 4\r\n", 1.0f}, {"ZoomIniI = 3\r\n", 3.0f},
        {"Trait = 5,2,3,4 ' ZoomIni = 9", 5.0f}, {"ZoomIni = -2\r\n", 2.0f}};
    for (const auto& [texte, zoom] : zooms) EXPECT_FLOAT_EQ(ZoomIniDe(texte), zoom) << texte.toStdString();
}

// The start-up load (no run of its own); a file is saved back in its encoding (UTF-16 files
// have their byte order mark, an 8-bit file behind a UTF-8 mark keeps it), but a character that Windows-1252 lacks turns it to UTF-8 rather
// than lose it.
TEST(Fichiers, LoadAndSaveKeepTheFilesEncoding) {
    QByteArray cp1252;
    for (int b = 1; b < 256; ++b)
        if (b != '\r' && b != '\n') cp1252 += char(b);
    const std::tuple<QByteArray, Encodage, QString, float> cas[] = {
        {Lit(MIREL_SOURCE_DIR "/tests/data/fichiers/cadran_cp1252.dat"), Encodage::Windows1252,
         "' Cadran 0 à 250 V° § µA\r\n", 1.25f},
        {cp1252 + "\r\n", Encodage::Windows1252, "", 1.0f},
        {QString("Texte = 0, 0, ,µA § °\r\n").toUtf8(), Encodage::Utf8, "Texte = 0, 0, ,µA § °\r\n", 1.0f},
        {"\xEF\xBB\xBFZoomIni = 2\r\n", Encodage::Utf8Bom, "ZoomIni = 2\r\n", 2.0f},
        // A UTF-8 mark before 8-bit text: the mark is not part of line 1.
        {"\xEF\xBB\xBFZoomIni = 2 ' caf\xE9\r\n", Encodage::Windows1252Bom, "ZoomIni = 2 ' café\r\n", 2.0f},
        {QByteArray("\xFF\xFEZ\0o\0o\0m\0I\0n\0i\0=\0\x33\0\r\0\n\0", 24), Encodage::Utf16Le, "ZoomIni=3\r\n", 3.0f},
        {QByteArray("\xFE\xFF\0Z\0o\0o\0m\0I\0n\0i\0=\0\x34\0\r\0\n", 24), Encodage::Utf16Be, "ZoomIni=4\r\n", 4.0f}};
    // What each encoding writes of a text.
    auto octetsDe = [](Encodage enc, const QString& t) {
        if (enc == Encodage::Utf16Le || enc == Encodage::Utf16Be) {
            QByteArray b = enc == Encodage::Utf16Le ? "\xFF\xFE" : "\xFE\xFF";
            for (QChar c : t) {
                const char bas = char(c.unicode() & 0xFF), haut = char(c.unicode() >> 8);
                b.append(enc == Encodage::Utf16Le ? bas : haut).append(enc == Encodage::Utf16Le ? haut : bas);
            }
            return b;
        }
        return (enc == Encodage::Utf8Bom ? "\xEF\xBB\xBF" : "") + t.toUtf8();
    };
    for (const auto& [octets, enc, debut, zoom] : cas) {
        Session s;
        Ecrit(s.D("f.dat"), octets);
        ASSERT_TRUE(ChargeFichier(s.etat, s.fen, s.D("f.dat"), false));
        EXPECT_EQ(std::tuple(s.etat.FichierCourant, s.etat.Enc, s.fen.zoom, s.fen.visualisations),
                  std::tuple(s.D("f.dat"), enc, zoom, 0));
        EXPECT_TRUE(s.fen.editeur.startsWith(debut)) << s.fen.editeur.toStdString();
        ASSERT_TRUE(Mnu_EnregistrerS(s.etat, s.regl, s.fen));
        EXPECT_EQ(Lit(s.D("f.dat")), octets);
        if (debut.isEmpty()) EXPECT_EQ(s.fen.editeur.mid(0x80 - 3, 1), "€"); // byte 80
        s.fen.editeur += "' Ω\r\n";
        ASSERT_TRUE(Mnu_EnregistrerS(s.etat, s.regl, s.fen));
        const Encodage apres = enc == Encodage::Windows1252      ? Encodage::Utf8
                               : enc == Encodage::Windows1252Bom ? Encodage::Utf8Bom
                                                                 : enc;
        EXPECT_EQ(s.etat.Enc, apres);
        EXPECT_EQ(Lit(s.D("f.dat")), octetsDe(s.etat.Enc, s.fen.editeur));
    }
}

// Save of a meter file takes Save as, which offers the name with ".dat" (Enter
// must not write over the meter file); Save as drops what follows the last dot
// of a name that has two and changes the name shown, not the file Save
// writes; cancel keeps the name and the modified state.
TEST(Fichiers, SaveAsTakesMeterFilesAndCutsAfterTheLastOfTwoDots) {
    Session s;
    Ecrit(s.D("meter.mtr"), "MTR DATA");
    s.etat.FichierCourant = s.etat.NomCourant = s.D("meter.mtr");
    s.etat.Modifie = true;
    s.fen.editeur = "Arc = 30, 150, 60\r\n";
    s.fen.enregistrer << s.D("dial.v2.dat");
    ASSERT_TRUE(Mnu_EnregistrerS(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.fen.nomsInitiaux, QStringList{s.D("meter.dat")});
    EXPECT_EQ(Lit(s.D("meter.mtr")), "MTR DATA");
    EXPECT_EQ(Lit(s.D("dial.v2")), "Arc = 30, 150, 60\r\n");
    EXPECT_FALSE(QFileInfo::exists(s.D("dial.v2.dat")));
    EXPECT_EQ(s.Courant(), (QStringList{s.D("meter.mtr"), s.D("dial.v2"), s.D("dial.v2")}));
    EXPECT_FALSE(s.etat.Modifie);
    s.etat.Modifie = true;
    EXPECT_FALSE(Mnu_Enregistrer(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.fen.nomsInitiaux.last(), s.D("dial.v2"));
    EXPECT_EQ(s.Courant(), (QStringList{s.D("meter.mtr"), s.D("dial.v2"), s.D("dial.v2")}));
    EXPECT_TRUE(s.etat.Modifie);
    EXPECT_TRUE(EstFichierMeter("x.MtR"));
    for (const auto& [nom, coupe] : {std::pair{"/a/b.c.d", "/a/b.c"}, {"/a/b.dat", "/a/b.dat"}, {"C.JPG#.d", "C.JPG#"},
                                     {"/u/.config/dial.dat", "/u/.config/dial.dat"}})
        EXPECT_EQ(CoupeDeuxPoints(nom), coupe);
}

// The write fails half-way (file size limit): the old file stays whole, no temporary file is
// left, the system's text is shown; caption and modified state are updated all the same.
// Nor can a file be created under a plain file.
TEST(Fichiers, FailedSaveKeepsTheOldFileAndShowsTheSystemsText) {
    Session s;
    const QString cible = s.D("big.dat");
    Ecrit(cible, "Arc = 1, 2, 3\r\n");
    s.etat.FichierCourant = s.etat.NomCourant = cible;
    s.etat.Modifie = true;
    while (s.fen.editeur.size() < 200000) s.fen.editeur += "Trait = 1, 2, 3, 4\r\n";
    rlimit avant{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &avant), 0);
    const auto gestionnaire = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limite{16384, avant.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limite), 0);
    const bool ok = Mnu_EnregistrerS(s.etat, s.regl, s.fen);
    ::setrlimit(RLIMIT_FSIZE, &avant);
    std::signal(SIGXFSZ, gestionnaire);
    EXPECT_FALSE(ok);
    EXPECT_EQ(s.fen.messages, QStringList{QString::fromLocal8Bit(std::strerror(EFBIG))});
    EXPECT_EQ(s.fen.boutons, QList<Boutons>{Boutons::Ok});
    EXPECT_EQ(Lit(cible), "Arc = 1, 2, 3\r\n");
    EXPECT_EQ(QDir(s.donnees.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"big.dat"});
    EXPECT_FALSE(s.etat.Modifie);
    EXPECT_EQ(s.fen.legende, cible);
    s.fen.enregistrer << s.D("big.dat/dial.dat");
    EXPECT_FALSE(Mnu_Enregistrer(s.etat, s.regl, s.fen));
    ASSERT_EQ(s.fen.messages.size(), 2);
    EXPECT_FALSE(s.fen.messages[1].isEmpty());
    EXPECT_EQ(Lit(cible), "Arc = 1, 2, 3\r\n");
}

// A modified text asks string 118: Cancel stops, Yes saves first (and stops when the text is not saved),
// No goes on.
TEST(Fichiers, ModifiedTextAsksWhetherToSaveFirst) {
    Session s;
    Ecrit(s.D("a.dat"), "Arc = 1, 2, 3\r\n");
    s.fen.editeur = "Trait = 1, 2, 3, 4\r\n";
    s.etat.Modifie = true;
    s.etat.FichierCourant = s.D("cur.dat");
    s.fen.reponses << Reponse::Annuler << Reponse::Oui << Reponse::Non;
    s.fen.ouvrir << s.D("a.dat");
    EXPECT_FALSE(Mnu_Ouvrir(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.fen.messages, QStringList{LoadResString(118)});
    EXPECT_EQ(s.fen.boutons[0], Boutons::OuiNonAnnuler);
    EXPECT_TRUE(s.fen.dossiersOuvrir.isEmpty());
    EXPECT_FALSE(QFileInfo::exists(s.D("cur.dat")));
    ASSERT_TRUE(Mnu_Ouvrir(s.etat, s.regl, s.fen));
    EXPECT_EQ(Lit(s.D("cur.dat")), "Trait = 1, 2, 3, 4\r\n");
    EXPECT_EQ(s.fen.editeur, "Arc = 1, 2, 3\r\n");
    s.etat.Modifie = true;
    ASSERT_TRUE(Mnu_Nouveau(s.etat, s.regl, s.fen));
    EXPECT_EQ(Lit(s.D("a.dat")), "Arc = 1, 2, 3\r\n");
    ASSERT_TRUE(Mnu_Nouveau(s.etat, s.regl, s.fen)); // an unmodified text asks nothing
    EXPECT_EQ(s.fen.messages.size(), 3);
    // Yes whose save does not happen (Save as cancelled, a write that fails) stops the command: the
    // text stays.
    s.fen.editeur = "Cercle = 0, 0, 5\r\n";
    s.etat.Modifie = true;
    s.etat.FichierCourant.clear();
    s.fen.reponses << Reponse::Oui << Reponse::Oui;
    s.fen.ouvrir << s.D("a.dat");
    EXPECT_FALSE(Mnu_Ouvrir(s.etat, s.regl, s.fen));
    s.fen.enregistrer << s.D("absent/b.dat");
    EXPECT_FALSE(Mnu_Nouveau(s.etat, s.regl, s.fen, true));
    EXPECT_EQ(s.fen.editeur, "Cercle = 0, 0, 5\r\n");
}

// The template of New: the working folder's copy, the configuration folder's,
// the program folder's, then the built-in template of the language.
TEST(Fichiers, NewLoadsTheTemplateAndForgetsTheFile) {
    Session s;
    const QString t = s.regl.DossierTravail, c = s.regl.DossierCfg, p = s.regl.DossierProgramme;
    EXPECT_EQ(CheminModele(t, c, p, "fr"), ":/strings/Mirel_fr.DaN");
    EXPECT_EQ(CheminModele(t, c, p, "xx"), "");
    Ecrit(p + "Mirel_fr.DaN", "' program folder\r\n");
    EXPECT_EQ(CheminModele(t, c, p, "fr"), p + "Mirel_fr.DaN");
    Ecrit(c + "Mirel_fr.DaN", "' configuration folder\r\n");
    EXPECT_EQ(CheminModele(t, c, p, "fr"), c + "Mirel_fr.DaN");
    EXPECT_EQ(CheminModele(t, c, p, "en"), ":/strings/Mirel_en.DaN");
    Ecrit(t + "Mirel.DaN", "' working folder\r\n");
    EXPECT_EQ(CheminModele(t, c, p, "fr"), t + "Mirel.DaN");
    for (const char* code : {"fr", "en", "de", "es"})
        EXPECT_GT(Lit(QStringLiteral(":/strings/Mirel_%1.DaN").arg(code)).size(), 5) << code;
    // New loads it, forgets the file, and its text is saved (as) in UTF-8.
    Ecrit(t + "Mirel.DaN", "\tZoomIni = 1.5\r\nArc = 30, 150, 60");
    s.etat.FichierCourant = s.etat.NomCourant = s.D("old.dat");
    s.etat.Enc = Encodage::Windows1252;
    ASSERT_TRUE(Mnu_Nouveau(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.fen.editeur, "\tZoomIni = 1.5\r\nArc = 30, 150, 60\r\n");
    EXPECT_FLOAT_EQ(s.fen.zoom, 1.5f);
    EXPECT_EQ(s.Courant(), QStringList(3, ""));
    EXPECT_EQ(std::pair(s.fen.visualisations, s.fen.occupe), std::pair(1, 0));
    s.fen.editeur = "Texte = 0, 0, ,été\r\n";
    s.fen.enregistrer << s.D("neuf.dat");
    ASSERT_TRUE(Mnu_EnregistrerS(s.etat, s.regl, s.fen));
    EXPECT_EQ(Lit(s.D("neuf.dat")), QString("Texte = 0, 0, ,été\r\n").toUtf8());
    QFile::remove(t + "Mirel.DaN");
    Reglages r = s.regl;
    r.LangueMessages = 1600; // a language without any template: an empty text, no message
    ASSERT_TRUE(Mnu_Nouveau(s.etat, r, s.fen, false));
    EXPECT_TRUE(s.fen.editeur.isEmpty());
    EXPECT_TRUE(s.fen.messages.isEmpty());
}

// Save as "name.JPG#" writes "name.dmk", coded, and keeps "name.dat" as the name; without
// the end marker, or in a build without the export, the box says so and nothing is written.
TEST(Fichiers, CodedExportNeedsTheEndMarkerAndPermission) {
    const QString bon = "' Ma commande\r\n'# Fin\r\nCercle = 0, 0, %1\r\n";
    for (const auto& [permis, texte] : {std::pair{true, bon}, {true, "' Ma commande\r\nCercle = 0, 0, 1\r\n"},
                                        {false, "'# Fin\r\n"}}) {
        Session s;
        s.etat.ExportPermis = permis;
        s.fen.editeur = texte;
        s.fen.enregistrer << s.D("Cmd.JPG#.dat"); // the dialog adds its extension
        EXPECT_EQ(Mnu_Enregistrer(s.etat, s.regl, s.fen), texte == bon);
        EXPECT_EQ(s.etat.NomCourant, s.D("Cmd.dat"));
        EXPECT_EQ(QDir(s.donnees.path()).entryList(QDir::Files), texte == bon ? QStringList{"Cmd.dmk"} : QStringList());
        EXPECT_EQ(s.fen.messages, texte == bon ? QStringList() : QStringList{"Fichier non compatible"});
        if (texte == bon) EXPECT_EQ(DecodeDmk(Lit(s.D("Cmd.dmk"))).value_or("?"), bon);
    }
}

// Alt-L's text: one file as its path, several as the folder then the names. The dialogs' filters.
TEST(Fichiers, FileListTextAndFilters) {
    EXPECT_EQ(TexteListeFichiers({}, ","), "");
    EXPECT_EQ(TexteListeFichiers({"/d/img/a.png"}, ","), "/d/img/a.png");
    EXPECT_EQ(TexteListeFichiers({"/d/i/a.png", "/d/i/b.png", "/d/i/c d.png"}, ";"), "/d/i;a.png;b.png;c d.png");
    const QString f105 = LoadResString(105), f106 = LoadResString(106);
    EXPECT_EQ(FiltreOuvrir(0), f105 + " (*.dat)|*.dat|" + f106 + " (*.*)|*.*|");
    EXPECT_EQ(FiltreEnregistrer(0), f105 + " (*.dat)|*.dat|" + f106 + " (*.*)|*.*");
    EXPECT_EQ(FiltreQt("Fichiers Mirel (*.dat)|*.dat|Tous les fichiers (*.*)|*.*|"),
              "Fichiers Mirel (*.dat);;Tous les fichiers (*.*)");
}
