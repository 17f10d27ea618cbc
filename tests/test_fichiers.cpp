// Part 4.2: command files.
#include "app/core/dmk.h"
#include "app/core/encodage.h"
#include "app/core/fichiers.h"

#include "language/chaines.h"
#include "language/etat.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

#include <gtest/gtest.h>

namespace {

QByteArray Lit(const QString& chemin) {
    QFile f(chemin);
    if (!f.open(QIODevice::ReadOnly)) return {};
    return f.readAll();
}

void Ecrit(const QString& chemin, const QByteArray& octets) {
    QFile f(chemin);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly)) << chemin.toStdString();
    f.write(octets);
}

// The window, as the commands see it: scripted dialogs and answers.
struct FenetreTest : FenetreFichiers {
    QStringList messages;
    QList<Boutons> boutons;
    QList<Reponse> reponses;          // answers in order; then OK / Yes
    QStringList ouvrir, enregistrer;  // dialog results in order; then cancel
    QStringList dossiersOuvrir, nomsInitiaux, filtres;
    QList<QStringList> listes;
    QList<bool> listesPlusieurs;
    QString editeur;
    float zoom = 0;
    QString legende = QStringLiteral("?");
    QString dossier;
    int visualisations = 0, annulations = 0, occupe = 0;

    Reponse Message(const QString& texte, Boutons b) override {
        messages << texte;
        boutons << b;
        if (!reponses.isEmpty()) return reponses.takeFirst();
        return b == Boutons::Ok || b == Boutons::OkAnnuler ? Reponse::Ok : Reponse::Oui;
    }
    QString DialogueOuvrir(const QString& d, const QString& filtre) override {
        dossiersOuvrir << d;
        filtres << filtre;
        return ouvrir.isEmpty() ? QString() : ouvrir.takeFirst();
    }
    QString DialogueEnregistrer(const QString& nom, const QString& filtre, const QString& ext) override {
        nomsInitiaux << nom;
        filtres << filtre;
        EXPECT_EQ(ext, "dat");
        return enregistrer.isEmpty() ? QString() : enregistrer.takeFirst();
    }
    QStringList DialogueListe(const QString& filtre, bool plusieurs) override {
        filtres << filtre;
        listesPlusieurs << plusieurs;
        return listes.isEmpty() ? QStringList() : listes.takeFirst();
    }
    QString TexteEditeur() const override { return editeur; }
    void ChargeTexte(const TexteLu& lu) override {
        editeur = lu.Texte;
        zoom = lu.ZoomDepart;
    }
    void VideEditeur() override { editeur.clear(); }
    void EcritLegende(const QString& nom) override { legende = nom; }
    void Occupe(bool o) override { occupe += o ? 1 : -1; }
    void Visualiser() override { ++visualisations; }
    void ChangeDossier(const QString& d) override { dossier = d; }
    void DebutAnnulation() override { ++annulations; }
};

// Folders of a session: working, configuration, program.
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
};

// Makes a folder refuse new files: chmod for an ordinary user; for root, whom
// permissions do not stop, the immutable attribute. Undone on destruction.
class DossierEnLectureSeule {
public:
    explicit DossierEnLectureSeule(const QString& d) : dossier_(d) {
        if (::geteuid() != 0) {
            QFile::setPermissions(d, QFile::ReadOwner | QFile::ExeOwner);
            chmod_ = true;
        } else {
            immuable_ = Immuable(true);
        }
        // Effective only if a probe file cannot be created.
        QFile essai(d + QStringLiteral("/probe"));
        efficace_ = !essai.open(QIODevice::WriteOnly);
        if (!efficace_) essai.remove();
    }
    ~DossierEnLectureSeule() {
        if (immuable_) Immuable(false);
        if (chmod_) QFile::setPermissions(dossier_, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    bool Efficace() const { return efficace_; }

private:
    bool Immuable(bool oui) {
        const int fd = ::open(QFile::encodeName(dossier_).constData(), O_RDONLY | O_DIRECTORY);
        if (fd < 0) return false;
        int drapeaux = 0;
        bool ok = ::ioctl(fd, FS_IOC_GETFLAGS, &drapeaux) == 0;
        if (ok) {
            drapeaux = oui ? (drapeaux | FS_IMMUTABLE_FL) : (drapeaux & ~FS_IMMUTABLE_FL);
            ok = ::ioctl(fd, FS_IOC_SETFLAGS, &drapeaux) == 0;
        }
        ::close(fd);
        return ok;
    }
    QString dossier_;
    bool chmod_ = false, immuable_ = false, efficace_ = false;
};

} // namespace

// --- Edge cases of Part 4.2

TEST(Fichiers, TextFileWithTxtExtensionOpens) {
    Session s;
    Ecrit(s.D("notes.txt"), "Arc = 30, 150, 60\r\n");
    s.fen.ouvrir << s.D("notes.txt");
    ASSERT_TRUE(Mnu_Ouvrir(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.fen.editeur, "Arc = 30, 150, 60\r\n");
    EXPECT_EQ(s.etat.FichierCourant, s.D("notes.txt"));
    EXPECT_EQ(s.etat.NomCourant, s.D("notes.txt"));
    EXPECT_EQ(s.fen.legende, s.D("notes.txt"));
    EXPECT_EQ(s.etat.DossierFichier, s.donnees.path() + u'/');
    EXPECT_EQ(s.fen.dossier, s.donnees.path() + u'/');
    EXPECT_EQ(s.fen.dossiersOuvrir, QStringList{s.regl.DossierTravail});
    EXPECT_EQ(s.fen.visualisations, 1);
    EXPECT_EQ(s.fen.annulations, 1);
    EXPECT_EQ(s.fen.occupe, 0);
    EXPECT_FALSE(s.etat.Modifie);
    EXPECT_TRUE(s.fen.messages.isEmpty());
}

TEST(Fichiers, Unins000DatIsRefused) {
    Session s;
    Ecrit(s.D("unins000.dat"), "binary");
    s.fen.editeur = "Trait = 1, 2, 3, 4\r\n";
    s.fen.ouvrir << s.D("unins000.dat");
    EXPECT_FALSE(Mnu_Ouvrir(s.etat, s.regl, s.fen));
    ASSERT_EQ(s.fen.messages.size(), 1);
    EXPECT_EQ(s.fen.messages[0], s.D("unins000.dat") +
                                     "\nN'est pas un fichier Mirel\nIs not a Mirel file\nIst keine Mirel Datei.");
    EXPECT_EQ(s.fen.editeur, "Trait = 1, 2, 3, 4\r\n");
    EXPECT_EQ(s.fen.visualisations, 0);
    EXPECT_TRUE(EstDesinstalleur("C:\\Prog\\UNINS001.DAT"));
    EXPECT_TRUE(EstDesinstalleur("unins000.Dat"));
    EXPECT_FALSE(EstDesinstalleur("unins000.txt"));
    EXPECT_FALSE(EstDesinstalleur("uninstall.dat"));
    EXPECT_FALSE(EstDesinstalleur("s000.dat"));
}

TEST(Fichiers, Unins000TxtIsAccepted) {
    Session s;
    Ecrit(s.D("unins000.txt"), "' not an uninstaller\r\n");
    s.fen.ouvrir << s.D("unins000.txt");
    ASSERT_TRUE(Mnu_Ouvrir(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.fen.editeur, "' not an uninstaller\r\n");
    EXPECT_TRUE(s.fen.messages.isEmpty());
}

TEST(Fichiers, CancelInOpenWithEmptyEditorGivesTheTemplate) {
    Session s;
    Ecrit(s.regl.DossierTravail + "mirel.dan", "' Template of the working folder\r\nZoomIni = 2\r\n");
    s.etat.FichierCourant = "old.dat";
    EXPECT_FALSE(Mnu_Ouvrir(s.etat, s.regl, s.fen)); // the dialog is cancelled
    EXPECT_EQ(s.fen.editeur, "' Template of the working folder\r\nZoomIni = 2\r\n");
    EXPECT_FLOAT_EQ(s.fen.zoom, 2.0f);
    EXPECT_EQ(s.etat.FichierCourant, "");
    EXPECT_EQ(s.etat.NomCourant, "");
    EXPECT_EQ(s.fen.visualisations, 1);
    // With text in the editor, cancel leaves it.
    s.fen.editeur = "Arc = 1, 2, 3\r\n";
    EXPECT_FALSE(Mnu_Ouvrir(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.fen.editeur, "Arc = 1, 2, 3\r\n");
}

TEST(Fichiers, SaveOfTextImportedFromMtrOpensSaveAs) {
    Session s;
    Ecrit(s.D("meter.mtr"), "MTR DATA");
    s.etat.FichierCourant = s.D("meter.mtr");
    s.etat.NomCourant = s.D("meter.mtr");
    s.etat.Modifie = true;
    s.fen.editeur = "Arc = 30, 150, 60\r\n";
    s.fen.enregistrer << s.D("meter.dat");
    ASSERT_TRUE(Mnu_EnregistrerS(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.fen.nomsInitiaux, QStringList{s.D("meter.mtr")});
    EXPECT_EQ(Lit(s.D("meter.mtr")), "MTR DATA");
    EXPECT_EQ(Lit(s.D("meter.dat")), "Arc = 30, 150, 60\r\n");
    EXPECT_EQ(s.etat.FichierCourant, s.D("meter.dat"));
    EXPECT_EQ(s.etat.NomCourant, s.D("meter.dat"));
    EXPECT_FALSE(s.etat.Modifie);
    EXPECT_TRUE(EstFichierMeter("x.MtR"));
}

TEST(Fichiers, NameWithTwoDotsInSaveAsLosesWhatFollowsTheLastDot) {
    Session s;
    s.fen.editeur = "Arc = 30, 150, 60\r\n";
    s.fen.enregistrer << s.D("dial.v2.dat");
    ASSERT_TRUE(Mnu_Enregistrer(s.etat, s.regl, s.fen));
    EXPECT_EQ(Lit(s.D("dial.v2")), "Arc = 30, 150, 60\r\n");
    EXPECT_FALSE(QFileInfo::exists(s.D("dial.v2.dat")));
    EXPECT_EQ(s.etat.NomCourant, s.D("dial.v2"));
    EXPECT_EQ(CoupeDeuxPoints("/a/b.c.d"), "/a/b.c");
    EXPECT_EQ(CoupeDeuxPoints("/a/b.dat"), "/a/b.dat");
    EXPECT_EQ(CoupeDeuxPoints("/home/u/.config/dial.dat"), "/home/u/.config/dial.dat");
    EXPECT_EQ(CoupeDeuxPoints("Cmd.JPG#.dat"), "Cmd.JPG#");
}

TEST(Fichiers, OneLineWithoutLineEndLoadsWithCrLfAndKeepsItWhenSaved) {
    Session s;
    Ecrit(s.D("one.dat"), "Arc = 30, 150, 60");
    s.fen.ouvrir << s.D("one.dat");
    ASSERT_TRUE(Mnu_Ouvrir(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.fen.editeur, "Arc = 30, 150, 60\r\n");
    ASSERT_TRUE(Mnu_EnregistrerS(s.etat, s.regl, s.fen));
    EXPECT_EQ(Lit(s.D("one.dat")), "Arc = 30, 150, 60\r\n");
}

// --- Reading

TEST(Fichiers, EveryLineEndBecomesCrLf) {
    EXPECT_EQ(LitFic(QByteArray("a\nb\rc\r\nd")).Texte, "a\r\nb\r\nc\r\nd\r\n");
    EXPECT_EQ(LitFic(QByteArray("a\n\n\r\n")).Texte, "a\r\n\r\n\r\n");
    EXPECT_EQ(LitFic(QByteArray("")).Texte, "");
    EXPECT_EQ(LitFic(QByteArray("\r\n")).Texte, "\r\n");
    EXPECT_EQ(NormaliseFinsDeLigne("x\r\r\ny"), "x\r\n\r\ny");
}

TEST(Fichiers, ZoomIniScanSkipsCommentLines) {
    EXPECT_FLOAT_EQ(LitFic(QByteArray("Arc = 1, 2, 3\r\n")).ZoomDepart, 1.0f);
    EXPECT_FLOAT_EQ(ZoomIniDe("' ZoomIni = 3\r\n\t 'ZoomIni = 4\r\n  zoomini = 2.5 ' x\r\nZoomIni = 7\r\n"), 2.5f);
    EXPECT_FLOAT_EQ(ZoomIniDe("\tZoomIni 1.5\r\n"), 1.5f); // no "=": position 8
    EXPECT_FLOAT_EQ(ZoomIniDe("ZoomIni = 0\r\nZoomIni = 4\r\n"), 1.0f); // 0 gives 1, the search ends
    EXPECT_FLOAT_EQ(ZoomIniDe("ZoomIniI = 3\r\n"), 3.0f); // ZOOMINI is found in ZOOMINII
    // The line does not start with "'": the value is what follows its first "=".
    EXPECT_FLOAT_EQ(ZoomIniDe("Trait = 5,2,3,4 ' ZoomIni = 9"), 5.0f);
}

TEST(Fichiers, Windows1252FileReadAndSavedBackIn1252) {
    Session s;
    const QByteArray octets("' Tension 0 \xE0 250 V \xB0 \xA7 \xB5" "A \x80\r\nTexte = 0, 0, ,\xE9t\xE9\r\n");
    Ecrit(s.D("ancien.dat"), octets);
    s.fen.ouvrir << s.D("ancien.dat");
    ASSERT_TRUE(Mnu_Ouvrir(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.etat.Enc, Encodage::Windows1252);
    EXPECT_EQ(s.fen.editeur, QStringLiteral("' Tension 0 à 250 V ° § µA €\r\nTexte = 0, 0, ,été\r\n"));
    ASSERT_TRUE(Mnu_EnregistrerS(s.etat, s.regl, s.fen));
    EXPECT_EQ(Lit(s.D("ancien.dat")), octets);
    // A character that Windows-1252 lacks turns the file to UTF-8 rather than lose it.
    s.fen.editeur += QStringLiteral("' Ω\r\n");
    ASSERT_TRUE(Mnu_EnregistrerS(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.etat.Enc, Encodage::Utf8);
    EXPECT_EQ(Lit(s.D("ancien.dat")), s.fen.editeur.toUtf8());
}

TEST(Fichiers, EveryWindows1252ByteRoundTripsThroughOpenAndSave) {
    Session s;
    QByteArray octets;
    for (int b = 1; b < 256; ++b)
        if (b != '\r' && b != '\n') octets += char(b);
    octets += "\r\n";
    Ecrit(s.D("cp1252.dat"), octets);
    s.fen.ouvrir << s.D("cp1252.dat");
    ASSERT_TRUE(Mnu_Ouvrir(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.etat.Enc, Encodage::Windows1252);
    EXPECT_EQ(s.fen.editeur.size(), 253 + 2);
    EXPECT_EQ(s.fen.editeur[0x80 - 3], QChar(0x20AC)); // byte 80 is the euro sign
    ASSERT_TRUE(Mnu_EnregistrerS(s.etat, s.regl, s.fen));
    EXPECT_EQ(Lit(s.D("cp1252.dat")), octets);
    for (int b = 0; b < 256; ++b) EXPECT_EQ(OctetWindows1252(CarWindows1252(uint8_t(b))), uint8_t(b));
}

TEST(Fichiers, Utf8FileSavedBackInUtf8WithItsMark) {
    Session s;
    const QByteArray utf8 = QStringLiteral("Texte = 0, 0, ,µA § °\r\n").toUtf8();
    Ecrit(s.D("u.dat"), utf8);
    s.fen.ouvrir << s.D("u.dat");
    ASSERT_TRUE(Mnu_Ouvrir(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.etat.Enc, Encodage::Utf8);
    EXPECT_EQ(s.fen.editeur, QStringLiteral("Texte = 0, 0, ,µA § °\r\n"));
    ASSERT_TRUE(Mnu_EnregistrerS(s.etat, s.regl, s.fen));
    EXPECT_EQ(Lit(s.D("u.dat")), utf8);

    Ecrit(s.D("bom.dat"), "\xEF\xBB\xBFZoomIni = 2\r\n");
    s.fen.ouvrir << s.D("bom.dat");
    ASSERT_TRUE(Mnu_Ouvrir(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.fen.editeur, "ZoomIni = 2\r\n");
    EXPECT_FLOAT_EQ(s.fen.zoom, 2.0f);
    EXPECT_EQ(s.etat.Enc, Encodage::Utf8Bom);
    ASSERT_TRUE(Mnu_EnregistrerS(s.etat, s.regl, s.fen));
    EXPECT_EQ(Lit(s.D("bom.dat")), "\xEF\xBB\xBFZoomIni = 2\r\n");
}

TEST(Fichiers, NewTextIsSavedInUtf8) {
    Session s;
    s.etat.Enc = Encodage::Windows1252; // the previous file's
    ASSERT_TRUE(Mnu_Nouveau(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.etat.Enc, Encodage::Utf8);
    s.fen.editeur = QStringLiteral("Texte = 0, 0, ,été\r\n");
    s.fen.enregistrer << s.D("neuf.dat");
    ASSERT_TRUE(Mnu_EnregistrerS(s.etat, s.regl, s.fen)); // a new text takes Save as
    EXPECT_EQ(Lit(s.D("neuf.dat")), QStringLiteral("Texte = 0, 0, ,été\r\n").toUtf8());
}

TEST(Fichiers, ReadErrorIsShownAndTextKept) {
    Session s;
    s.fen.editeur = "Arc = 1, 2, 3\r\n";
    s.fen.ouvrir << s.D("missing.dat");
    EXPECT_FALSE(Mnu_Ouvrir(s.etat, s.regl, s.fen));
    ASSERT_EQ(s.fen.messages.size(), 1);
    EXPECT_FALSE(s.fen.messages[0].isEmpty());
    EXPECT_EQ(s.fen.occupe, 0);
    EXPECT_EQ(s.fen.editeur, "Arc = 1, 2, 3\r\n");
    EXPECT_EQ(LitFic(s.D("missing.dat")), std::nullopt);
}

// --- Saving failures

TEST(Fichiers, SaveIntoReadOnlyFolderKeepsOldFileAndReportsError) {
    Session s;
    QDir(s.donnees.path()).mkdir("ro");
    const QString cible = s.D("ro/dial.dat");
    Ecrit(cible, "Arc = 1, 2, 3\r\n");
    s.etat.FichierCourant = cible;
    s.etat.NomCourant = cible;
    s.etat.Modifie = true;
    s.fen.editeur = "Arc = 30, 150, 60\r\nGrad = 1\r\n";
    DossierEnLectureSeule ro(s.D("ro"));
    if (!ro.Efficace()) GTEST_SKIP() << "this file system cannot make a folder read-only for this user";
    EXPECT_FALSE(Mnu_EnregistrerS(s.etat, s.regl, s.fen));
    ASSERT_EQ(s.fen.messages.size(), 1);
    EXPECT_FALSE(s.fen.messages[0].isEmpty());
    EXPECT_EQ(s.fen.boutons[0], Boutons::Ok);
    EXPECT_EQ(Lit(cible), "Arc = 1, 2, 3\r\n");
    EXPECT_EQ(QDir(s.D("ro")).entryList(QDir::Files | QDir::Hidden), QStringList{"dial.dat"});
    EXPECT_FALSE(s.etat.Modifie); // caption and Modifie are updated all the same
    EXPECT_EQ(s.fen.legende, cible);
}

TEST(Fichiers, SaveThatFailsWhileWritingKeepsOldFile) {
    // The file size limit makes the write itself fail half-way, for any user.
    Session s;
    const QString cible = s.D("big.dat");
    const QByteArray ancien = "Arc = 1, 2, 3\r\n";
    Ecrit(cible, ancien);
    s.etat.FichierCourant = cible;
    QString texte;
    while (texte.size() < 200000) texte += QStringLiteral("Trait = 1, 2, 3, 4\r\n");
    s.fen.editeur = texte;
    rlimit avant{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &avant), 0);
    const auto gestionnaire = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limite = avant;
    limite.rlim_cur = 16384;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limite), 0);
    const bool ok = Mnu_EnregistrerS(s.etat, s.regl, s.fen);
    ::setrlimit(RLIMIT_FSIZE, &avant);
    std::signal(SIGXFSZ, gestionnaire);
    EXPECT_FALSE(ok);
    ASSERT_EQ(s.fen.messages.size(), 1);
    EXPECT_FALSE(s.fen.messages[0].isEmpty());
    EXPECT_EQ(s.fen.messages[0], QString::fromLocal8Bit(std::strerror(EFBIG))); // "File too large"
    EXPECT_EQ(Lit(cible), ancien);
    EXPECT_EQ(QDir(s.donnees.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"big.dat"});
}

TEST(Fichiers, SaveUnderAFileInsteadOfAFolderReportsSystemError) {
    Session s;
    Ecrit(s.D("plain"), "x");
    QString erreur;
    Encodage enc = Encodage::Utf8;
    EXPECT_FALSE(EcritTexteCommande(s.D("plain/dial.dat"), "Arc = 1\r\n", enc, &erreur));
    EXPECT_FALSE(erreur.isEmpty());
    s.fen.editeur = "Arc = 1\r\n";
    s.fen.enregistrer << s.D("plain/dial.dat");
    EXPECT_FALSE(Mnu_Enregistrer(s.etat, s.regl, s.fen));
    ASSERT_EQ(s.fen.messages.size(), 1);
    EXPECT_EQ(s.fen.messages[0], erreur);
    EXPECT_EQ(Lit(s.D("plain")), "x");
}

// --- Question, New, templates

TEST(Fichiers, ModifiedTextAsksString118) {
    Session s;
    Ecrit(s.D("a.dat"), "Arc = 1, 2, 3\r\n");
    s.fen.editeur = "Trait = 1, 2, 3, 4\r\n";
    s.etat.Modifie = true;
    s.etat.FichierCourant = s.D("cur.dat");
    // Cancel stops the command.
    s.fen.reponses << Reponse::Annuler;
    s.fen.ouvrir << s.D("a.dat");
    EXPECT_FALSE(Mnu_Ouvrir(s.etat, s.regl, s.fen));
    ASSERT_EQ(s.fen.messages.size(), 1);
    EXPECT_EQ(s.fen.messages[0], LoadResString(118));
    EXPECT_EQ(s.fen.boutons[0], Boutons::OuiNonAnnuler);
    EXPECT_TRUE(s.fen.dossiersOuvrir.isEmpty());
    EXPECT_FALSE(QFileInfo::exists(s.D("cur.dat")));
    // Yes saves first.
    s.fen.reponses << Reponse::Oui;
    ASSERT_TRUE(Mnu_Ouvrir(s.etat, s.regl, s.fen));
    EXPECT_EQ(Lit(s.D("cur.dat")), "Trait = 1, 2, 3, 4\r\n");
    EXPECT_EQ(s.fen.editeur, "Arc = 1, 2, 3\r\n");
    // No goes on without saving; an unmodified text asks nothing.
    s.etat.Modifie = true;
    s.fen.reponses << Reponse::Non;
    ASSERT_TRUE(Mnu_Nouveau(s.etat, s.regl, s.fen));
    EXPECT_EQ(Lit(s.D("a.dat")), "Arc = 1, 2, 3\r\n");
    const qsizetype n = s.fen.messages.size();
    ASSERT_TRUE(Mnu_Nouveau(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.fen.messages.size(), n);
}

TEST(Fichiers, TemplateSearchOrder) {
    Session s;
    const QString t = s.regl.DossierTravail, c = s.regl.DossierCfg, p = s.regl.DossierProgramme;
    EXPECT_EQ(CheminModele(t, c, p, "fr"), ":/strings/Mirel_fr.DaN");
    EXPECT_EQ(CheminModele(t, c, p, "xx"), "");
    Ecrit(p + "Mirel_fr.DaN", "' program folder\r\n");
    EXPECT_EQ(CheminModele(t, c, p, "fr"), p + "Mirel_fr.DaN");
    Ecrit(c + "Mirel_fr.DaN", "' configuration folder\r\n");
    EXPECT_EQ(CheminModele(t, c, p, "fr"), c + "Mirel_fr.DaN");
    EXPECT_EQ(CheminModele(t, c, p, "en"), ":/strings/Mirel_en.DaN");
    Ecrit(t + "Mirel.DaN", "' working folder\r\n"); // the copy that Form3 writes
    EXPECT_EQ(CheminModele(t, c, p, "fr"), t + "Mirel.DaN");
    for (const char* code : {"fr", "en", "de", "es"})
        EXPECT_GT(Lit(QStringLiteral(":/strings/Mirel_%1.DaN").arg(code)).size(), 5) << code;
}

TEST(Fichiers, NewLoadsTemplateAndForgetsTheFile) {
    Session s;
    Ecrit(s.regl.DossierCfg + "Mirel_fr.DaN", "\tZoomIni = 1.5\r\nArc = 30, 150, 60");
    s.etat.FichierCourant = s.D("old.dat");
    s.etat.NomCourant = s.D("old.dat");
    s.fen.editeur = "x";
    ASSERT_TRUE(Mnu_Nouveau(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.fen.editeur, "\tZoomIni = 1.5\r\nArc = 30, 150, 60\r\n");
    EXPECT_FLOAT_EQ(s.fen.zoom, 1.5f);
    EXPECT_EQ(s.etat.FichierCourant, "");
    EXPECT_EQ(s.etat.NomCourant, "");
    EXPECT_EQ(s.fen.legende, "");
    EXPECT_EQ(s.fen.visualisations, 1);
    EXPECT_EQ(s.fen.occupe, 0);
    // Without any template at all the text stays empty, with no message.
    Reglages r = s.regl;
    r.LangueMessages = 1600; // the Russian stub: no template anywhere
    ASSERT_TRUE(Mnu_Nouveau(s.etat, r, s.fen, false));
    EXPECT_TRUE(s.fen.editeur.isEmpty());
    EXPECT_TRUE(s.fen.messages.isEmpty());
}

// --- Save as and the coded export

TEST(Fichiers, SaveAsCancelKeepsTheName) {
    Session s;
    s.etat.NomCourant = s.D("a.dat");
    s.etat.FichierCourant = s.D("a.dat");
    s.etat.Modifie = true;
    EXPECT_FALSE(Mnu_Enregistrer(s.etat, s.regl, s.fen));
    EXPECT_EQ(s.fen.nomsInitiaux, QStringList{s.D("a.dat")});
    EXPECT_EQ(s.etat.NomCourant, s.D("a.dat"));
    EXPECT_TRUE(s.etat.Modifie);
}

TEST(Fichiers, CodedExportWritesDmkThatDecodesToTheText) {
    Session s;
    s.etat.ExportPermis = true;
    const QString texte = QStringLiteral("' Ma commande\r\n'# Fin\r\nCercle = 0, 0, %1\r\n");
    s.fen.editeur = texte;
    s.etat.FichierCourant = s.D("MCE_Vis.dat");
    s.fen.enregistrer << s.D("MCE_Vis.JPG#.dat"); // the dialog adds its extension
    ASSERT_TRUE(Mnu_Enregistrer(s.etat, s.regl, s.fen));
    const QByteArray code = Lit(s.D("MCE_Vis.dmk"));
    ASSERT_FALSE(code.isEmpty());
    EXPECT_EQ(DecodeDmk(code).value_or("?"), texte);
    EXPECT_EQ(s.etat.NomCourant, s.D("MCE_Vis.dat"));
    EXPECT_EQ(s.fen.legende, s.D("MCE_Vis.dat"));
    EXPECT_FALSE(QFileInfo::exists(s.D("MCE_Vis.dat")));
    EXPECT_FALSE(QFileInfo::exists(s.D("MCE_Vis.JPG#")));
    EXPECT_TRUE(s.fen.messages.isEmpty());
    EXPECT_TRUE(EstExportCode("a.jpg#"));
}

TEST(Fichiers, CodedExportWithoutEndMarkerIsRefused) {
    Session s;
    s.etat.ExportPermis = true;
    s.fen.editeur = "' Ma commande\r\nCercle = 0, 0, 1\r\n";
    EXPECT_FALSE(ExportCode(s.etat, s.fen, s.D("Cmd.JPG#")));
    EXPECT_EQ(s.fen.messages, QStringList{"Fichier non compatible"});
    EXPECT_EQ(s.etat.NomCourant, s.D("Cmd.dat"));
    EXPECT_TRUE(QDir(s.donnees.path()).entryList(QDir::Files).isEmpty());
}

TEST(Fichiers, CodedExportOffOnlyInBuildsWithoutTheSetting) {
    Session s;
    s.etat.ExportPermis = false;
    s.fen.editeur = "'# Fin\r\n";
    EXPECT_FALSE(ExportCode(s.etat, s.fen, s.D("Cmd.JPG#")));
    EXPECT_EQ(s.fen.messages, QStringList{"Fichier non compatible"});
    EXPECT_EQ(s.etat.NomCourant, s.D("Cmd.dat"));
    EXPECT_TRUE(QDir(s.donnees.path()).entryList(QDir::Files).isEmpty());
#ifdef MIREL_EXPORT_DMK
    EXPECT_TRUE(ExportDmkDisponible());
#else
    EXPECT_FALSE(ExportDmkDisponible());
#endif
    EXPECT_EQ(EtatFichiers{}.ExportPermis, ExportDmkDisponible());
}

// --- Filters, file list, small helpers

TEST(Fichiers, DialogFilters) {
    const QString f105 = LoadResString(105), f106 = LoadResString(106);
    EXPECT_EQ(FiltreOuvrir(0), f105 + " (*.dat)|*.dat|" + f106 + " (*.*)|*.*|");
    EXPECT_EQ(FiltreEnregistrer(0), f105 + " (*.dat)|*.dat|" + f106 + " (*.*)|*.*");
    EXPECT_EQ(FiltreListe(0), f106 + " (*.*)|*.*|");
    EXPECT_EQ(FiltreQt("Fichiers Mirel (*.dat)|*.dat|Tous les fichiers (*.*)|*.*|"),
              "Fichiers Mirel (*.dat);;Tous les fichiers (*.*)");
}

TEST(Fichiers, FileListTextForAltL) {
    EXPECT_EQ(TexteListeFichiers({}, ","), "");
    EXPECT_EQ(TexteListeFichiers({"/d/img/a.png"}, ","), "/d/img/a.png");
    EXPECT_EQ(TexteListeFichiers({"/d/img/a.png", "/d/img/b.png", "/d/img/c d.png"}, ";"),
              "/d/img;a.png;b.png;c d.png");
    Session s;
    s.fen.listes << QStringList{"/d/a.dat", "/d/b.dat"};
    EXPECT_EQ(Mnu_Liste_Fic(s.regl, s.fen, ",", true), "/d,a.dat,b.dat");
    EXPECT_EQ(s.fen.listesPlusieurs, QList<bool>{true});
    EXPECT_EQ(s.fen.filtres.last(), FiltreListe(0));
    EXPECT_EQ(Mnu_Liste_Fic(s.regl, s.fen, ",", false), ""); // cancelled
    EXPECT_EQ(s.fen.listesPlusieurs.last(), false);
}

TEST(Fichiers, FolderOfAPath) {
    EXPECT_EQ(DossierDe("/a/b/c.dat"), "/a/b/");
    EXPECT_EQ(DossierDe("C:\\x\\y.dat"), "C:\\x\\");
    EXPECT_EQ(DossierDe("y.dat"), "");
}

TEST(Fichiers, CommittedWindows1252FileLoadsWithItsZoom) {
    Session s;
    const QString source = QStringLiteral(MIREL_SOURCE_DIR "/tests/data/fichiers/cadran_cp1252.dat");
    const QString copie = s.D("cadran.dat");
    ASSERT_TRUE(QFile::copy(source, copie));
    // The start-up file of Part 4.1: loaded without its own run.
    ASSERT_TRUE(ChargeFichier(s.etat, s.fen, copie, false));
    EXPECT_EQ(s.fen.visualisations, 0);
    EXPECT_EQ(s.etat.FichierCourant, copie);
    EXPECT_EQ(s.etat.Enc, Encodage::Windows1252);
    EXPECT_FLOAT_EQ(s.fen.zoom, 1.25f);
    EXPECT_TRUE(s.fen.editeur.startsWith(QStringLiteral("' Cadran 0 à 250 V° § µA\r\n")));
    EXPECT_TRUE(s.fen.editeur.endsWith(QStringLiteral("échelle\r\n")));
    s.fen.editeur.replace(QStringLiteral("250"), QStringLiteral("300"));
    ASSERT_TRUE(Mnu_EnregistrerS(s.etat, s.regl, s.fen));
    QByteArray attendu = Lit(source);
    attendu.replace("250", "300");
    EXPECT_EQ(Lit(copie), attendu);
}
