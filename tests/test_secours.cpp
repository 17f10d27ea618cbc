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

QStringList Copies(const QString& etat) { return QDir(etat).entryList(QDir::Files); }

QString Contenu(const QString& chemin) {
    QFile f(chemin);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

} // namespace

TEST(Secours, CopyFollowsUnsavedTextUntilSaveOrQuit) {
    Banc b;
    QTemporaryDir etat;
    Form1& f = Fenetre(b, etat.path(), b.Fichier(QStringLiteral("essai.dat"), QString(QStringLiteral("' a\r\n")).toUtf8()));
    QTest::keyClicks(f.RTB1, "CT = 1, 1");
    QCoreApplication::processEvents();
    EXPECT_TRUE(Contenu(f.secours->Chemin()).endsWith(QStringLiteral("CT = 1, 1' a\r\n")));
    EXPECT_EQ(Copies(etat.path()).size(), 2); // the copy and its window's lock
    f.Mnu_EnregistrerS_Click();
    QCoreApplication::processEvents();
    EXPECT_TRUE(Copies(etat.path()).isEmpty());
    QTest::keyClicks(f.RTB1, "x");
    QCoreApplication::processEvents();
    EXPECT_TRUE(QFile::exists(f.secours->Chemin()));
    b.boites.reponses = {int(Reponse::Non)};
    EXPECT_TRUE(f.close());
    EXPECT_TRUE(Copies(etat.path()).isEmpty());
}

TEST(Secours, StartOffersTheCopyOfAWindowThatDidNotQuit) {
    const struct {
        const char* nom;
        Reponse reponse;
        bool fichierRecrit; // the file was written after the copy
        const char* texte;  // the editor after the start
        int questions;
    } cas[] = {
        {"taken back", Reponse::Oui, false, "CT = 2, 2' a\n", 1},
        {"declined", Reponse::Non, false, "' a\n", 1},
        {"older than its file", Reponse::Oui, true, "' b\n", 0},
    };
    for (const auto& c : cas) {
        QTemporaryDir etat;
        Banc b;
        const QString chemin = b.Fichier(QStringLiteral("essai.dat"), QString(QStringLiteral("' a\r\n")).toUtf8());
        QTest::keyClicks(Fenetre(b, etat.path(), chemin).RTB1, "CT = 2, 2");
        QCoreApplication::processEvents();
        b.f.reset(); // gone without the unload question: its copy stays
        if (c.fichierRecrit) {
            b.Fichier(QStringLiteral("essai.dat"), QString(QStringLiteral("' b\r\n")).toUtf8());
            QFile fi(chemin);
            fi.open(QIODevice::Append);
            fi.setFileTime(QDateTime::currentDateTime().addSecs(60), QFileDevice::FileModificationTime);
        }
        b.boites.reponses = {int(c.reponse)};
        Form1& f = Fenetre(b, etat.path(), chemin);
        ASSERT_EQ(b.boites.Nombre(QStringLiteral("message")), c.questions) << c.nom;
        EXPECT_EQ(f.RTB1->toPlainText(), QString::fromLatin1(c.texte)) << c.nom;
        EXPECT_EQ(f.Modifie(), c.reponse == Reponse::Oui && c.questions) << c.nom;
        EXPECT_EQ(f.FichierCourant, chemin) << c.nom;
        // Taken back, the text has this window's copy; otherwise none is left.
        QCoreApplication::processEvents();
        EXPECT_EQ(Copies(etat.path()).size(), f.Modifie() ? 2 : 0) << c.nom;
        if (c.questions) {
            const QString question = b.boites.Messages()[0];
            EXPECT_TRUE(question.startsWith(LoadResString(385).section(u'\n', 0, 0))) << c.nom;
            EXPECT_TRUE(question.contains(u'\n' + chemin + u'\n')) << c.nom;
        }
    }
}

TEST(Secours, CopyOfALivingWindowIsNotOffered) {
    QTemporaryDir etat;
    Banc a, b;
    Form1& fa = Fenetre(a, etat.path(), a.Fichier(QStringLiteral("a.dat"), QString(QStringLiteral("' a\r\n")).toUtf8()));
    QTest::keyClicks(fa.RTB1, "x");
    QCoreApplication::processEvents();
    Fenetre(b, etat.path(), b.Fichier(QStringLiteral("b.dat"), QString(QStringLiteral("' b\r\n")).toUtf8()));
    EXPECT_EQ(b.boites.Nombre(QStringLiteral("message")), 0);
    EXPECT_TRUE(QFile::exists(fa.secours->Chemin()));
}

TEST(Secours, SaveThatFailsKeepsTheWindowUntilASecondAnswer) {
    // The failure: the file's folder is gone (a removed disk), which no
    // permission of the user can overcome.
    for (const bool parLeMenu : {true, false}) {
        QTemporaryDir etat;
        Banc b;
        QDir(b.travail.path()).mkdir(QStringLiteral("disque"));
        Form1& f = Fenetre(b, etat.path(), b.Fichier(QStringLiteral("disque/essai.dat"), QString(QStringLiteral("' a\r\n")).toUtf8()));
        QTest::keyClicks(f.RTB1, "CT = 3, 3");
        QDir(b.travail.path() + QStringLiteral("/disque")).removeRecursively();
        if (parLeMenu) {
            f.Mnu_EnregistrerS_Click();
            EXPECT_FALSE(f.Modifie()); // as any Save leaves it
        } else {
            b.boites.reponses = {int(Reponse::Oui)};
            EXPECT_FALSE(f.close());
            EXPECT_EQ(b.boites.Messages()[0], LoadResString(118));
        }
        QCoreApplication::processEvents();
        EXPECT_TRUE(QFile::exists(f.secours->Chemin())) << parLeMenu;
        // The quit asks again, saying the text is not saved; Yes offers another name.
        b.boites.reponses = {int(Reponse::Annuler)};
        EXPECT_FALSE(f.close());
        EXPECT_EQ(b.boites.Messages().last(), LoadResString(384) + u'\n' + LoadResString(118));
        const QString autre = b.travail.path() + QStringLiteral("/autre.dat");
        b.boites.reponses = {int(Reponse::Oui), autre};
        EXPECT_TRUE(f.close());
        EXPECT_EQ(Contenu(autre), QStringLiteral("CT = 3, 3' a\r\n"));
        EXPECT_TRUE(Copies(etat.path()).isEmpty());
    }
}

// The window's process is killed while keys are coming in; the next start
// offers back every key typed before the kill. Under Xvfb this runs on a real
// X server (FenetreXvfb.Secours).
TEST(Secours, KilledWhileTypingOffersEveryTypedKeyBack) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    // The child process runs this test again from the top: it finds the
    // folders of its parent in the environment.
    std::optional<QTemporaryDir> tmp;
    QString racine = qEnvironmentVariable("MIREL_TEST_SECOURS");
    if (racine.isEmpty()) {
        tmp.emplace();
        racine = tmp->path();
        qputenv("MIREL_TEST_SECOURS", racine.toUtf8());
        QDir(racine).mkdir(QStringLiteral("etat"));
        QFile fi(racine + QStringLiteral("/essai.dat"));
        fi.open(QIODevice::WriteOnly);
        fi.write("' fin\r\n");
    }
    const QString etat = racine + QStringLiteral("/etat"), chemin = racine + QStringLiteral("/essai.dat");
    const QString tape = QStringLiteral("Arc = 30, 150, 60 ' cadran du voltmetre 0-300 V");
    const int avantLaFin = 40;
    EXPECT_EXIT(
        {
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
    ASSERT_EQ(b.boites.Nombre(QStringLiteral("message")), 1);
    EXPECT_TRUE(b.boites.Messages()[0].contains(chemin));
    EXPECT_EQ(f.RTB1->toPlainText().toStdString(), (tape.left(avantLaFin) + QStringLiteral("' fin\n")).toStdString());
}
