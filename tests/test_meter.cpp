// Meter import: the program a .mtr file becomes, line by line; its run; the
// files it refuses; the window's command and the command line.
#include "outils.h"
#include "outils_fenetre.h"

#include "app/core/meter.h"
#include "app/fenetre.h"
#include "app/editeur.h"

#include <QPrinter>
#include <QProcess>

namespace {

const QString Echelle1 = "10 5 0 0 10 1 30 35 V\r\n";
const QString Echelle2 = "5  2 0 .1  2.5 2 30 20 mA  x 10\r\n";

// A plate line with fields 18, 19 and 21, then the scale lines.
QString Mtr(const QString& echelles = Echelle1, const QString& f18 = "0", const QString& f19 = "N",
            const QString& f21 = "-") {
    return QString("100 70 10 8 80 90 50 A 3 6 2 1 60 50 1.5 0.3 0.2 %1 %2 0 %3 VOLTS  DC\r\n").arg(f18, f19, f21) +
           echelles;
}

ImportMeter Importe(const QString& texte) { return ImporteMeter(texte, "/m/a.mtr", QSizeF(210, 297), 0); }

} // namespace

TEST(Meter, OneScaleLineByLine) {
    const ImportMeter im = Importe(Mtr());
    EXPECT_TRUE(im.Erreur.isEmpty());
    EXPECT_EQ(im.Texte.split("\r\n"),
              QStringList({"'Importation du fichier ", "'/m/a.mtr", "", "ZoomIni = 1  'Selon PC", "",
                           "CentreE = 60, 50, bleu", "CentreI = 105, 119, bleu",
                           "Cadre = -50, -10, 50, 60, cyan", "Cercle = -40, -2, 1,,, cyan",
                           "Cercle = 40, -2, 1,,, cyan", "", "'Police = Arial",
                           "TailleP = 6G   'Change taille tous textes",
                           "Texte = 0, 50,, *1.5GX, VOLTS DC", "", "Decal = -50, rouge", "",
                           "TailleP = *0.8G", "", "Exposant = 1", "Arc = 45, 135, 25.1, Noir",
                           "Grad = 10, 6, , , .3mm, noir", "Grad = 0, 3, , , .2mm, noir",
                           "Val = 2, 0, 10, 6", "Texte = 0, 25, , *1GX, V", "", ""}));
    // The run draws the plate, the arc and its ticks without a box.
    auto s = Lance(im.Texte);
    EXPECT_TRUE(Messages(*s).isEmpty());
    EXPECT_GT(Lignes(*s).size(), 20);
    // 21 fields and a blank: more than 20 blanks, a plate without a title.
    EXPECT_TRUE(Importe(Mtr().section(' ', 0, 20) + " \r\n" + Echelle1).Texte.contains("Texte = 0, 50,, *1.5GX, \r\n"));
    // "N" in F8 hides the arc line.
    EXPECT_TRUE(Importe(Mtr().replace(" A ", " N ")).Texte.contains("Arc = 45, 135, 25.1, n\r\n"));
}

TEST(Meter, ScalesVariantsAndInversion) {
    struct Cas {
        QString f18, f19, f21;
        QStringList presentes, absentes;
    } cas[] = {
        // Inversion after each scale ranked below F18; the second scale's
        // exponent, radius and values; "V" asks for ValD.
        {"2", "N", "V",
         {"Inversion", "Exposant = .5", "Arc = 45, 135, 25.1, Noir", "ValD = , 2.5, .1, 2.6, 6",
          "Texte = 0, 10, , *1GX, mA x 10"},
         {"Val = "}},
        {"0", "N", "B", {"ValR = , 2, 0, 10, 6"}, {"Inversion"}},
        {"1", "Y", "-", {}, {"Val", "Inversion"}}, // "Y" in F19: no values
    };
    for (const Cas& c : cas) {
        SCOPED_TRACE(c.f21.toStdString());
        const QStringList l = Importe(Mtr(Echelle1 + "\r\n" + Echelle2, c.f18, c.f19, c.f21)).Texte.split("\r\n");
        for (const QString& p : c.presentes) EXPECT_TRUE(p == "Inversion" ? l.count(p) == 1 : l.contains(p)) << p.toStdString();
        for (const QString& a : c.absentes)
            for (const QString& x : l) EXPECT_FALSE(x.startsWith(a)) << x.toStdString();
    }
    // Without values, their count of divisions (here 0) is not read.
    const ImportMeter sansValeurs = Importe(Mtr("10 0 0 0 10 1 30 35 V\r\n", "0", "Y"));
    EXPECT_TRUE(sansValeurs.Erreur.isEmpty()) << sansValeurs.Erreur.toStdString();
    EXPECT_TRUE(sansValeurs.Texte.contains("Grad = 10, 6, , , .3mm, noir"));
}

TEST(Meter, FilesItRefuses) {
    // Too few fields on the first line: an empty text and no message.
    for (auto [texte, erreur] : {std::pair{QString(), ""}, {"100 70 10\r\n" + Echelle1, ""},
                                 {Mtr().section(' ', 0, 20) + "\r\n" + Echelle1, ""}, // 21 fields, 20 blanks
                                 {QString::fromLatin1("\x01\x7f\xff ELF \x02"), ""},
                                 {Mtr("10 5 0 x 10 1 30 35 V"), "ligne 2 : nombre attendu à la place de \"x\""},
                                 {Mtr("\r\n10 5 0 0"), "ligne 3 : trop peu de champs"},
                                 {Mtr("10 5 0 0 10 0 30 35 V"), "ligne 2 : échelle impossible à construire"},
                                 {Mtr("10 5 0 0 10 1 -20 35 V"), "ligne 2 : échelle impossible à construire"}}) {
        const ImportMeter im = Importe(texte);
        EXPECT_TRUE(im.Texte.isEmpty());
        EXPECT_TRUE(*erreur ? im.Erreur.startsWith("Fichier .mtr illisible, " + QString(erreur)) : im.Erreur.isEmpty())
            << im.Erreur.toStdString();
    }
}

TEST(Meter, WindowImportsAndKeepsTheEditorOnAMalformedFile) {
    Banc b;
    Form1& f = b.Demarre("Cercle = 0, 0, 10\r\n");
    const QString mtr = b.Fichier("galva.mtr", Mtr().toUtf8());
    b.boites.reponses << mtr;
    f.ImprimanteChoisie = std::make_unique<QPrinter>();
    f.ImprimanteChoisie->setPageSize(QPageSize(QPageSize::Letter));
    f.Mnu_OuvrirMeter_Click();
    ASSERT_EQ(b.boites.vues.back().genre, "ouvrir");
    EXPECT_EQ(b.boites.vues.back().texte, "Fichiers Meter (*.mtr);;Tous les fichiers (*.*)");
    EXPECT_TRUE(f.RTB1->TexteCrLf().contains("Arc = 45, 135, 25.1, Noir"));
    EXPECT_TRUE(f.RTB1->TexteCrLf().contains("CentreI = 108, ")); // the centre of the chosen printer's sheet
    EXPECT_EQ(f.FichierCourant, mtr);
    EXPECT_FALSE(f.Modifie());
    // A malformed file: a box, and the editor as it was.
    const QString avant = f.RTB1->TexteCrLf();
    b.boites.reponses << b.Fichier("faux.mtr", Mtr("1 2").toUtf8());
    f.Mnu_OuvrirMeter_Click();
    EXPECT_TRUE(b.boites.vues.back().texte.contains("trop peu de champs"));
    EXPECT_EQ(f.RTB1->TexteCrLf(), avant);
}

TEST(Meter, CommandLineImportsBeforeTheRun) {
    Banc b;
    QProcess p;
    p.start(MIREL_BINARY, {"dump", b.Fichier("a.mtr", Mtr().toUtf8()), "--page", "A3"});
    ASSERT_TRUE(p.waitForFinished(30000));
    EXPECT_EQ(p.exitCode(), 0);
    // The centre line of an A3 portrait printer page.
    EXPECT_TRUE(p.readAllStandardOutput().contains("CentreI = 149, 180, bleu"));
}
