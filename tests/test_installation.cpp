// The setup menu entry and the data folder of an installed program.
#include "outils_fenetre.h"

#include "app/core/installation.h"

#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

namespace {

QString Lit(const QString& chemin) {
    QFile f(chemin);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

void Ecrit(const QString& chemin, const QByteArray& octets) {
    QDir().mkpath(QFileInfo(chemin).path());
    QFile f(chemin);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(octets);
}

} // namespace

// An installed program (bin/ beside share/mirel) reads its data from
// share/mirel; one run from its build folder reads it beside itself.
TEST(Installation, DataFolderOfAnInstalledAndABuiltProgram) {
    QTemporaryDir d;
    for (const char* dossier : {"usr/bin", "build", "usr/share/mirel"}) QDir().mkpath(d.filePath(dossier));
    const QString racine = QFileInfo(d.path()).canonicalFilePath();
    EXPECT_EQ(DossierDonnees(d.filePath("usr/bin")), racine + "/usr/share/mirel/");
    EXPECT_EQ(DossierDonnees(d.filePath("build")), d.filePath("build") + "/");
}

// Each step is asked, and only a step answered Yes is done, confirmed and
// logged with the date; the examples already in the folder are kept.
TEST(Installation, SetupAsksEachStepAndLogsWhatItDid) {
    QTemporaryDir xdg;
    const QByteArray ancien = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", xdg.path().toUtf8());
    Banc b;
    Ecrit(b.programme.filePath("examples/voltmetre.dat"), "Arc = 40, 140, 60\n");
    Ecrit(b.programme.filePath("examples/MCE_Trou.dmk"), "coded\n");
    const QString dossier = b.travail.filePath("mes dessins");
    Ecrit(dossier + "/voltmetre.dat", "' my own dial\n");
    Form1& f = b.Fenetre();

    const int oui = int(Reponse::Oui), non = int(Reponse::Non), ok = int(Reponse::Ok);
    struct Cas { const char* nom; QVariantList reponses; int lignesJournal; bool exemples, lanceur; };
    for (const Cas& c : {Cas{"folder cancelled", {}, 0, false, false},
                         Cas{"every step refused", {dossier, non, non, non}, 0, false, false},
                         Cas{"examples and launcher", {dossier, oui, ok, oui, ok, non}, 2, true, true}}) {
        SCOPED_TRACE(c.nom);
        b.boites.vues.clear();
        b.boites.reponses = c.reponses;
        f.Mnu_Setup->trigger();
        const QStringList journal = Lit(dossier + "/MirelSetup.log").split('\n', Qt::SkipEmptyParts);
        EXPECT_EQ(journal.size(), c.lignesJournal);
        EXPECT_EQ(QFileInfo::exists(dossier + "/MCE_Trou.dmk"), c.exemples);
        EXPECT_EQ(QFileInfo::exists(xdg.filePath("applications/org.mirel.Mirel.desktop")), c.lanceur);
    }
    qputenv("XDG_DATA_HOME", ancien);

    // The menus are French: the questions and the log are too.
    const QStringList journal = Lit(dossier + "/MirelSetup.log").split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(journal.size(), 2);
    EXPECT_TRUE(QRegularExpression("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d  Fait : ").match(journal[0]).hasMatch())
        << journal[0].toStdString();
    EXPECT_TRUE(journal[0].endsWith("Copier les exemples dans " + dossier + " ?"));
    EXPECT_EQ(Lit(dossier + "/voltmetre.dat"), "' my own dial\n");

    // The launcher starts this program and is valid.
    const QString lanceur = xdg.filePath("applications/org.mirel.Mirel.desktop");
    EXPECT_TRUE(Lit(lanceur).contains("\nExec=" + QCoreApplication::applicationFilePath() + " %f\n"));
    const QString valide = QStandardPaths::findExecutable("desktop-file-validate");
    if (!valide.isEmpty()) { EXPECT_EQ(QProcess::execute(valide, {lanceur}), 0); }
}

// A copy that cannot be made is a failed step, said and logged.
TEST(Installation, ExamplesMissingIsAFailedStep) {
    QString erreur;
    QTemporaryDir d;
    EXPECT_EQ(CopieExemples(d.filePath("nowhere"), d.filePath("cible"), erreur), -1);
    EXPECT_EQ(erreur, d.filePath("nowhere") + ": no such folder");
}
