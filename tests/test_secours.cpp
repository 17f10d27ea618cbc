// Nothing typed is lost: the recovery copy of unsaved text, and the quit
// that follows a save that failed.
#include "outils.h"
#include "outils_fenetre.h"

#include "app/secours.h"

#include <csignal>
#include <optional>
#include <unistd.h>

namespace {

// A window on `chemin` whose unsaved text is kept in the folder `etat`.
Form1& Fenetre(Banc& b, const QString& etat, const QString& chemin) {
    b.secours = etat;
    b.Fenetre().Demarrer(chemin);
    return *b.f;
}

// A window on a new file `nom` holding `texte`.
Form1& Fenetre(Banc& b, const QString& etat, const QString& nom, const char* texte) {
    return Fenetre(b, etat, b.Fichier(nom, texte));
}

int Copies(const QString& etat) {
    QCoreApplication::processEvents();
    return QDir(etat).entryList(QDir::Files).size();
}

QString Contenu(const QString& chemin) {
    QFile f(chemin);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

} // namespace

TEST(Secours, CopyFollowsUnsavedTextUntilSaveOrQuit) {
    Banc b;
    QTemporaryDir etat;
    Form1& f = Fenetre(b, etat.path(), "essai.dat", "' a\r\n");
    QTest::keyClicks(f.RTB1, "CT = 1, 1");
    EXPECT_EQ(Copies(etat.path()), 2); // the copy and its window's lock
    EXPECT_TRUE(Contenu(f.secours->Chemin()).endsWith("CT = 1, 1' a\r\n"));
    f.Mnu_EnregistrerS_Click();
    EXPECT_EQ(Copies(etat.path()), 0);
    QTest::keyClicks(f.RTB1, "x");
    EXPECT_EQ(Copies(etat.path()), 2);
    b.boites.reponses = {int(Reponse::Non)};
    EXPECT_TRUE(f.close());
    EXPECT_EQ(Copies(etat.path()), 0);
}

// A copy older than its file is offered still, unless the file holds its text: another program
// may have written the file since.
TEST(Secours, StartOffersTheCopyOfAWindowThatDidNotQuit) {
    for (auto [nom, reponse, fichierRecrit, texte, questions] :
         {std::tuple{"taken back", Reponse::Oui, "", "CT = 2, 2' a\n", 1}, {"declined", Reponse::Non, "", "' a\n", 1},
          {"older than its file, which holds its text", Reponse::Oui, "CT = 2, 2' a\r\n", "CT = 2, 2' a\n", 0},
          {"older than its file, which holds another text", Reponse::Oui, "' b\r\n", "CT = 2, 2' a\n", 1}}) {
        QTemporaryDir etat;
        Banc b;
        QTest::keyClicks(Fenetre(b, etat.path(), "essai.dat", "' a\r\n").RTB1, "CT = 2, 2");
        QCoreApplication::processEvents();
        const QString chemin = b.travail.filePath("essai.dat");
        b.f.reset(); // gone without the unload question: its copy stays
        if (*fichierRecrit) {
            b.Fichier("essai.dat", fichierRecrit);
            QFile fi(chemin);
            fi.open(QIODevice::Append);
            fi.setFileTime(QDateTime::currentDateTime().addSecs(60), QFileDevice::FileModificationTime);
        }
        b.boites.reponses = {int(reponse)};
        Form1& f = Fenetre(b, etat.path(), chemin);
        ASSERT_EQ(b.boites.Nombre("message"), questions) << nom;
        EXPECT_EQ(f.RTB1->toPlainText(), texte) << nom;
        EXPECT_EQ(f.Modifie(), reponse == Reponse::Oui && questions) << nom;
        EXPECT_EQ(f.FichierCourant, chemin) << nom;
        // Taken back, the text has this window's copy; otherwise none is left.
        EXPECT_EQ(Copies(etat.path()), f.Modifie() ? 2 : 0) << nom;
        if (questions) {
            EXPECT_TRUE(b.boites.Messages()[0].startsWith(LoadResString(385).section(u'\n', 0, 0))) << nom;
            EXPECT_TRUE(b.boites.Messages()[0].contains(u'\n' + chemin + u'\n')) << nom;
        }
    }
}

TEST(Secours, CopyOfALivingWindowIsNotOffered) {
    QTemporaryDir etat;
    Banc a, b;
    QTest::keyClicks(Fenetre(a, etat.path(), "a.dat", "' a\r\n").RTB1, "x");
    QCoreApplication::processEvents();
    Fenetre(b, etat.path(), "b.dat", "' b\r\n");
    EXPECT_EQ(b.boites.Nombre("message"), 0);
    EXPECT_TRUE(QFile::exists(a.f->secours->Chemin()));
}

namespace {

// A window on a file whose text is then typed in, and whose folder is then
// gone (a removed disk): no permission can overcome that.
Form1& DisqueRetire(Banc& b, const QString& etat) {
    QDir(b.travail.path()).mkdir("disque");
    Form1& f = Fenetre(b, etat, "disque/essai.dat", "' a\r\n");
    QTest::keyClicks(f.RTB1, "CT = 3, 3");
    QDir(b.travail.path() + "/disque").removeRecursively();
    return f;
}

} // namespace

TEST(Secours, SaveThatFailsKeepsTheWindowUntilASecondAnswer) {
    for (const bool parLeMenu : {true, false}) {
        QTemporaryDir etat;
        Banc b;
        Form1& f = DisqueRetire(b, etat.path());
        if (parLeMenu) {
            f.Mnu_EnregistrerS_Click();
            EXPECT_FALSE(f.Modifie()); // as any Save leaves it
        } else {
            b.boites.reponses = {int(Reponse::Oui)};
            EXPECT_FALSE(f.close());
            EXPECT_EQ(b.boites.Messages()[0], LoadResString(118));
        }
        EXPECT_EQ(Copies(etat.path()), 2) << parLeMenu;
        // Open and New ask before they replace the text; Cancel keeps it.
        for (auto commande : {&Form1::Mnu_Ouvrir_Click, &Form1::Mnu_Nouveau_Click}) {
            b.boites.reponses = {int(Reponse::Annuler)};
            (f.*commande)();
            EXPECT_EQ(b.boites.Messages().last(), LoadResString(118));
            EXPECT_EQ(f.RTB1->TexteCrLf(), "CT = 3, 3' a\r\n");
        }
        // The quit asks again, saying the text is not saved; Yes offers another name.
        b.boites.reponses = {int(Reponse::Annuler)};
        EXPECT_FALSE(f.close());
        EXPECT_EQ(b.boites.Messages().last(), LoadResString(384) + u'\n' + LoadResString(118));
        const QString autre = b.travail.path() + "/autre.dat";
        b.boites.reponses = {int(Reponse::Oui), autre};
        EXPECT_TRUE(f.close());
        EXPECT_EQ(Contenu(autre), "CT = 3, 3' a\r\n");
        EXPECT_EQ(Copies(etat.path()), 0);
    }
}

// The disk comes back: a save made when Open asks puts the text on disk, and
// the quit no longer asks about it although the Open was then cancelled.
TEST(Secours, SaveMadeWhenOpenAsksEndsTheFailedSavesQuestion) {
    QTemporaryDir etat;
    Banc b;
    Form1& f = DisqueRetire(b, etat.path());
    f.Mnu_EnregistrerS_Click();
    QDir(b.travail.path()).mkdir("disque");
    b.boites.reponses = {int(Reponse::Oui), QString()};
    f.Mnu_Ouvrir_Click();
    EXPECT_EQ(Contenu(b.travail.path() + "/disque/essai.dat"), "CT = 3, 3' a\r\n");
    const int avant = b.boites.Messages().size();
    EXPECT_TRUE(f.close());
    EXPECT_EQ(b.boites.Messages().size(), avant);
    EXPECT_EQ(Copies(etat.path()), 0);
}

// The window's process is killed while keys are coming in; the next start
// offers back every key typed before the kill. Also run under Xvfb.
TEST(Secours, KilledWhileTypingOffersEveryTypedKeyBack) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    // The child runs this test again from the top and finds its parent's folders in the environment.
    std::optional<QTemporaryDir> tmp;
    QString racine = qEnvironmentVariable("MIREL_TEST_SECOURS");
    if (racine.isEmpty()) {
        racine = tmp.emplace().path();
        qputenv("MIREL_TEST_SECOURS", racine.toUtf8());
        QDir(racine).mkdir("etat");
        QFile fi(racine + "/essai.dat");
        fi.open(QIODevice::WriteOnly);
        fi.write("' fin\r\n");
    }
    const QString etat = racine + "/etat", chemin = racine + "/essai.dat";
    const QString tape = "Arc = 30, 150, 60 ' cadran du voltmetre 0-300 V";
    const int avantLaFin = 40;
    EXPECT_EXIT(
        {
            // The killed child cannot remove its folders: they go under the parent's.
            QDir(racine).mkdir("tmp");
            qputenv("TMPDIR", (racine + "/tmp").toUtf8());
            Banc b;
            Form1& f = Fenetre(b, etat, chemin);
            int n = 0;
            QTimer t;
            QObject::connect(&t, &QTimer::timeout, [&] {
                QTest::keyClick(f.RTB1, tape[n++].toLatin1());
                if (n == avantLaFin) ::kill(::getpid(), SIGKILL); // right after a key, more to come
            });
            t.start(5);
            QEventLoop().exec();
        },
        ::testing::KilledBySignal(SIGKILL), "");
    qunsetenv("MIREL_TEST_SECOURS");
    Banc b;
    Form1& f = Fenetre(b, etat, chemin);
    ASSERT_EQ(b.boites.Nombre("message"), 1);
    EXPECT_TRUE(b.boites.Messages()[0].contains(chemin));
    EXPECT_EQ(f.RTB1->toPlainText().toStdString(), (tape.left(avantLaFin) + "' fin\n").toStdString());
}
