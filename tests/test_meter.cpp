// Meter import: the program a .mtr file becomes, line by line; its run; the
// files it refuses; the window's command and the command line.
#include "outils.h"
#include "outils_fenetre.h"

#include "app/core/meter.h"
#include "app/fenetre.h"
#include "app/editeur.h"

#include <QProcess>

namespace {

const QString Plaque = QStringLiteral("100 70 10 8 80 90 50 A 3 6 2 1 60 50 1.5 0.3 0.2 %1 %2 0 %3 VOLTS  DC\r\n");
const QString Echelle1 = QStringLiteral("10 5 0 0 10 1 30 35 V\r\n");
const QString Echelle2 = QStringLiteral("5  2 0 .1  2.5 2 30 20 mA  x 10\r\n");

QString Mtr(const QString& f18, const QString& f19, const QString& f21, const QString& echelles) {
    return Plaque.arg(f18, f19, f21) + echelles;
}

ImportMeter Importe(const QString& texte) {
    return ImporteMeter(texte, QStringLiteral("/m/a.mtr"), QSizeF(210, 297), 0);
}

} // namespace

TEST(Meter, OneScaleLineByLine) {
    const ImportMeter im = Importe(Mtr("0", "N", "-", Echelle1));
    EXPECT_TRUE(im.Erreur.isEmpty());
    EXPECT_EQ(im.Texte.split(QStringLiteral("\r\n")),
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
}

TEST(Meter, ScalesVariantsAndInversion) {
    struct Cas {
        QString f18, f19, f21;
        QStringList presentes, absentes;
        int inversions;
    } cas[] = {
        // Inversion after each scale ranked below F18; the second scale's
        // exponent, radius and values; "V" asks for ValD.
        {"2", "N", "V",
         {"Inversion", "Exposant = .5", "Arc = 45, 135, 25.1, Noir", "ValD = , 2.5, .1, 2.6, 6",
          "Texte = 0, 10, , *1GX, mA x 10"},
         {"Val = "},
         1},
        {"0", "N", "B", {"ValR = , 2, 0, 10, 6"}, {}, 0},
        // "Y" in F19: no values.
        {"1", "Y", "-", {}, {"Val"}, 0},
    };
    for (const Cas& c : cas) {
        SCOPED_TRACE(c.f21.toStdString());
        const ImportMeter im = Importe(Mtr(c.f18, c.f19, c.f21, Echelle1 + QStringLiteral("\r\n") + Echelle2));
        const QStringList l = im.Texte.split(QStringLiteral("\r\n"));
        for (const QString& p : c.presentes) EXPECT_TRUE(l.contains(p)) << p.toStdString();
        for (const QString& a : c.absentes)
            for (const QString& x : l) EXPECT_FALSE(x.startsWith(a)) << x.toStdString();
        EXPECT_EQ(l.count(QStringLiteral("Inversion")), c.inversions);
    }
    // "N" in F8 hides the arc line.
    const QString sansArc = Importe(Mtr("0", "N", "-", Echelle1).replace(" A ", " N ")).Texte;
    EXPECT_TRUE(sansArc.contains("Arc = 45, 135, 25.1, n\r\n"));
}

TEST(Meter, FilesItRefuses) {
    // Too few fields on the first line: an empty text and no message.
    for (const QString& t : {QStringLiteral(""), QStringLiteral("100 70 10\r\n10 5 0 0 10 1 30 35 V"),
                             QString::fromLatin1("\x01\x7f\xff ELF \x02")}) {
        const ImportMeter im = Importe(t);
        EXPECT_TRUE(im.Texte.isEmpty());
        EXPECT_TRUE(im.Erreur.isEmpty());
    }
    struct Cas {
        QString echelles, erreur;
    } cas[] = {
        {"10 5 0 x 10 1 30 35 V", "Fichier .mtr illisible, ligne 2 : nombre attendu à la place de \"x\""},
        {"\r\n10 5 0 0", "Fichier .mtr illisible, ligne 3 : trop peu de champs"},
        {"10 5 0 0 10 0 30 35 V", "Fichier .mtr illisible, ligne 2 : échelle impossible à construire"},
        {"10 5 0 0 10 1 -20 35 V", "Fichier .mtr illisible, ligne 2 : échelle impossible à construire"},
    };
    for (const Cas& c : cas) {
        const ImportMeter im = Importe(Mtr("0", "N", "-", c.echelles));
        EXPECT_TRUE(im.Texte.isEmpty());
        EXPECT_TRUE(im.Erreur.startsWith(c.erreur)) << im.Erreur.toStdString();
    }
}

TEST(Meter, WindowImportsAndNeverSavesOverTheMeterFile) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("Cercle = 0, 0, 10\r\n"));
    const QString mtr = b.Fichier(QStringLiteral("galva.mtr"), Mtr("0", "N", "-", Echelle1).toUtf8());
    b.boites.reponses << mtr;
    f.Mnu_OuvrirMeter_Click();
    EXPECT_TRUE(f.RTB1->TexteCrLf().contains(QStringLiteral("Arc = 45, 135, 25.1, Noir")));
    EXPECT_EQ(f.FichierCourant, mtr);
    EXPECT_FALSE(f.Modifie());
    // Save asks for a new name rather than writing over the meter file.
    f.Mnu_EnregistrerS_Click();
    EXPECT_EQ(b.boites.vues.back().genre, QStringLiteral("enregistrer"));
    // A malformed file: a box, and the editor as it was.
    const QString avant = f.RTB1->TexteCrLf();
    b.boites.reponses << b.Fichier(QStringLiteral("faux.mtr"), Mtr("0", "N", "-", "1 2").toUtf8());
    f.Mnu_OuvrirMeter_Click();
    EXPECT_TRUE(b.boites.vues.back().texte.contains(QStringLiteral("trop peu de champs")));
    EXPECT_EQ(f.RTB1->TexteCrLf(), avant);
}

TEST(Meter, CommandLineImportsBeforeTheRun) {
    QTemporaryDir d;
    QFile fi(d.filePath("a.mtr"));
    ASSERT_TRUE(fi.open(QIODevice::WriteOnly));
    fi.write(Mtr("0", "N", "-", Echelle1).toUtf8());
    fi.close();
    QProcess p;
    p.start(QStringLiteral(MIREL_BINARY), {"dump", d.filePath("a.mtr"), "--page", "A3"});
    ASSERT_TRUE(p.waitForFinished(30000));
    EXPECT_EQ(p.exitCode(), 0);
    const QString sortie = QString::fromUtf8(p.readAllStandardOutput());
    // The centre line of an A3 portrait printer page.
    EXPECT_TRUE(sortie.contains(QStringLiteral("CentreI = 149, 180, bleu")));
}
