// Settings kept from any folder, Qt's buttons, standard keys, recent files, drops, reload, help.
#include "outils_fenetre.h"

#include "app/aide_fenetre.h"
#include "app/usage_fenetre.h"

#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QTextBrowser>
#include <QUrl>

namespace {

// A drag of files (of their names as text when `texte`) dropped on a widget; the file opens once the drag has ended.
void Depose(QWidget* cible, const QStringList& chemins, bool texte = false) {
    QMimeData m;
    for (const QString& c : chemins) texte ? m.setText(c) : m.setUrls(m.urls() << QUrl::fromLocalFile(c));
    QDragEnterEvent entree(QPoint(50, 50), Qt::CopyAction, &m, Qt::LeftButton, Qt::NoModifier);
    QDropEvent depot(QPointF(50, 50), Qt::CopyAction, &m, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(cible, &entree), QApplication::sendEvent(cible, &depot);
    QApplication::processEvents();
}

} // namespace

// Started twice from a foreign folder: a program in its place asks the languages once and keeps
// them, with the recent files and the window's size, in the XDG folder; a copy elsewhere only
// reads, so it asks again.
TEST(FenetreUsage, SettingsKeptWhenStartedFromAForeignFolder) {
    const QByteArray ancien = qgetenv("XDG_CONFIG_HOME");
    for (bool enPlace : {true, false}) {
        QTemporaryDir xdg;
        qputenv("XDG_CONFIG_HOME", xdg.path().toUtf8());
        Banc b;
        b.boites.langues = [](ValeursConfig& v) { v.Langue = v.LangueMenu = v.LangueAide = v.LangueMasq = "Deutsch"; };
        const QString fichier = b.Fichier("cadran.dat", "CT = 1, 1\r\n");
        for (int demarrage = 0; demarrage < 2; ++demarrage) {
            ConfigFichier config;
            config.EnPlace = enPlace;
            Form1 f(ServicesFenetre{&config, &b.boites, [] { return QString("Imprimante"); }, b.programme.path(), b.travail.path(), {}});
            f.Demarrer("");
            if (demarrage == 0) {
                f.Usage->Ouvre(fichier);
                f.setGeometry(40, 50, 700, 500);
            } else {
                EXPECT_EQ(f.Config.Recents, enPlace ? QStringList{fichier} : QStringList{});
                EXPECT_EQ(f.size(), enPlace ? QSize(700, 500) : QSize(1100, 720));
            }
            EXPECT_EQ(f.regl.LangueMenus, 800);
            f.close(); // the recent files are written with the other keys
        }
        EXPECT_EQ(b.boites.Nombre("langues"), enPlace ? 1 : 2) << enPlace;
        EXPECT_EQ(QFileInfo::exists(xdg.filePath("Mirel/Mirel.cfg")), enPlace);
        EXPECT_FALSE(QFileInfo::exists(b.travail.filePath("Mirel.cfg")) || QFileInfo::exists(b.programme.filePath("Mirel.cfg")));
    }
    qputenv("XDG_CONFIG_HOME", ancien);
    // A size kept from a larger screen, or damaged, is brought back to the screen; values that are
    // no numbers leave the default.
    const QSize ecran = QGuiApplication::primaryScreen()->availableGeometry().size();
    for (const auto& [valeur, attendue] : {std::pair{" 0 0 40000 30000", ecran}, {" 0 0 800 abc", QSize(1100, 720)},
                                           {" 99999999999 0 800 600", QSize(1100, 720)},
                                           {" -200 0 700 500", QSize(700, 500)}}) {
        Banc b;
        b.config.Pose(CleCfg::Fenetre, valeur);
        EXPECT_EQ(b.Demarre("").size(), attendue) << valeur;
    }
    QTemporaryDir d;
    for (const char* dossier : {"build", "usr/bin", "usr/share/mirel", "copie"}) QDir(d.path()).mkpath(dossier);
    QFile(d.filePath("build/CMakeCache.txt")).open(QIODevice::WriteOnly);
    for (auto [dossier, enPlace] : {std::pair{"build", true}, {"usr/bin", true}, {"copie", false}})
        EXPECT_EQ(ProgrammeEnPlace(d.filePath(dossier)), enPlace) << dossier;
}

// Qt's standard buttons follow the messages' language while the window lives.
TEST(FenetreUsage, QtButtonsSpeakTheMessagesLanguage) {
    auto oui = [] { return QMessageBox(QMessageBox::Question, "", "", QMessageBox::Yes).button(QMessageBox::Yes)->text(); };
    const QString anglais = oui();
    for (auto [langue, attendu] : {std::pair{"Français", "&Oui"}, {"Deutsch", "&Ja"}, {"Castellano", "&Sí"}, {"English", "&Yes"}}) {
        Banc b;
        b.config.Pose(CleCfg::Langue, langue);
        b.Demarre("CT = 1, 1\r\n");
        EXPECT_EQ(oui(), attendu) << langue;
    }
    EXPECT_EQ(oui(), anglais);
}

// Ctrl+S, F5, Ctrl+N, Ctrl+O and Ctrl+Q, with the caption's "*"; the recent files, most recent
// first, eight at most, each entry opening its file.
TEST(FenetreUsage, StandardKeysRecentFilesAndTheCaptionsStar) {
    Banc b;
    Form1& f = b.Demarre("CT = 1, 1\r\n");
    const QString chemin = f.FichierCourant;
    QTest::keyClicks(f.RTB1, "'");
    QApplication::processEvents();
    EXPECT_TRUE(f.windowTitle().startsWith("*Mirel  V"));
    const struct { Qt::Key touche; Qt::KeyboardModifiers mods; int executions, boites; bool nomCourant; } cas[] = {
        {Qt::Key_S, Qt::ControlModifier, 0, 0, true}, {Qt::Key_F5, Qt::NoModifier, 1, 0, true},
        {Qt::Key_N, Qt::ControlModifier, 1, 0, false}, {Qt::Key_O, Qt::ControlModifier, 0, 1, false}};
    for (const auto& c : cas) {
        const int executions = f.NombreExecutions, boites = int(b.boites.vues.size());
        QTest::keyClick(f.RTB1, c.touche, c.mods);
        EXPECT_EQ(f.NombreExecutions - executions, c.executions) << c.touche;
        EXPECT_EQ(int(b.boites.vues.size()) - boites, c.boites) << c.touche;
        EXPECT_TRUE(f.NomCourant == chemin == c.nomCourant && !f.windowTitle().startsWith('*')) << c.touche;
    }
    EXPECT_TRUE(LitFic(chemin)->Texte.startsWith("'CT = 1, 1"));
    const QString autre = b.Fichier("autre.dat", "CT = 2, 2\r\n");
    f.Usage->Ouvre(autre);
    emit f.Usage->Mnu_Recents->aboutToShow();
    const QList<QAction*> entrees = f.Usage->Mnu_Recents->actions();
    ASSERT_EQ(entrees.size(), 2);
    EXPECT_TRUE(entrees[0]->text().endsWith(autre) && entrees[1]->text().endsWith(chemin));
    entrees[1]->trigger();
    EXPECT_EQ(f.FichierCourant, chemin);
    QStringList liste;
    for (int i = 0; i < 10; ++i) liste = AjouteRecent(liste, QString::number(i % 9));
    EXPECT_EQ(liste, (QStringList{"0", "8", "7", "6", "5", "4", "3", "2"}));
    // Save as puts its file first among the recent files, and an export is named after it.
    const QString copie = QFileInfo(chemin).absolutePath() + "/copie.dat";
    b.boites.reponses = {copie};
    f.Mnu_Enregistrer->trigger();
    EXPECT_EQ(f.Config.Recents.value(0), copie);
    b.boites.reponses.clear();
    f.Exporte("pdf");
    ASSERT_EQ(b.boites.vues.back().genre, "enregistrer");
    EXPECT_EQ(b.boites.vues.back().titre, QFileInfo(chemin).absolutePath() + "/copie.pdf");
    // So does a new text saved under a name when Ctrl+N asks to save it; a file opened next comes first.
    QTest::keyClick(f.RTB1, Qt::Key_N, Qt::ControlModifier);
    QTest::keyClicks(f.RTB1, "' neuf");
    const QString neuf = QFileInfo(chemin).absolutePath() + "/neuf.dat";
    b.boites.reponses = {int(Reponse::Oui), neuf};
    QTest::keyClick(f.RTB1, Qt::Key_N, Qt::ControlModifier);
    ASSERT_TRUE(QFileInfo::exists(neuf));
    EXPECT_EQ(f.Config.Recents.value(0), neuf);
    QTest::keyClicks(f.RTB1, "' encore");
    const QString neuf2 = QFileInfo(chemin).absolutePath() + "/neuf2.dat";
    b.boites.reponses = {int(Reponse::Oui), neuf2, autre};
    QTest::keyClick(f.RTB1, Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(f.Config.Recents.mid(0, 3), (QStringList{autre, neuf2, neuf}));
    QTest::keyClick(f.RTB1, Qt::Key_Q, Qt::ControlModifier);
    EXPECT_TRUE(!f.isVisible() &&
                b.config.Ecritures.contains("Recents = " + autre + "|" + neuf2 + "|" + neuf + "|" + copie + "|" + chemin))
        << b.config.Ecritures.filter("Recents").join('\n').toStdString();
}

// A dropped .dat or .mtr file opens as Open opens it, over the editor as well as the drawing,
// asking first to save a modified text; other drops open nothing.
TEST(FenetreUsage, DroppedCommandFileOpensAfterTheSaveQuestion) {
    Banc b;
    Form1& f = b.Demarre("CT = 1, 1\r\n");
    const QString dat = b.Fichier("Autre.DAT", "CT = 3, 3\r\n");
    for (auto [refuses, texte] : {std::pair{QStringList{b.Fichier("notes.txt", "x")}, false},
                                  {QStringList{dat, dat}, false}, {QStringList{dat}, true}}) {
        Depose(&f, refuses, texte);
        EXPECT_TRUE(b.boites.vues.empty() && f.FichierCourant.endsWith("essai.dat"));
    }
    f.SetModifie(true);
    b.boites.reponses = {int(Reponse::Non)};
    Depose(f.RTB1->viewport(), {dat});
    EXPECT_EQ(b.boites.Messages(), QStringList{LoadResString(118)});
    EXPECT_TRUE(f.FichierCourant == dat && f.RTB1->TexteCrLf() == "CT = 3, 3\r\n");
    QMimeData mtr;
    mtr.setUrls({QUrl::fromLocalFile("/x/galva.MTR")});
    EXPECT_EQ(FichierDepose(&mtr), "/x/galva.MTR");
}

// A file changed on disk is offered once for reload, as soon as the change is seen; Yes reloads
// it, No keeps the text. The window's own save is no change. With changes not saved, the question
// says they would be lost, and Enter answers No.
TEST(FenetreUsage, FileChangedOnDiskOffersReload) {
    for (const auto& [r, modifie] : {std::pair{Reponse::Oui, false}, {Reponse::Non, false}, {Reponse::Non, true}}) {
        Banc b;
        Form1& f = b.Demarre("CT = 1, 1\r\n");
        f.Mnu_EnregistrerS_Click();
        EXPECT_FALSE(f.Usage->VerifieDisque());
        if (modifie) f.RTB1->InsereTexte("' x");
        QTextCursor c = f.RTB1->textCursor();
        c.setPosition(4);
        f.RTB1->setTextCursor(c);
        const QString texte = f.RTB1->TexteCrLf();
        b.Fichier("essai.dat", "CT = 2, 2\r\nCT = 3, 3\r\n");
        b.boites.reponses = {int(r)};
        ASSERT_TRUE(Attend([&] { return b.boites.Messages().size() == 1; })); // the watch on the file asks
        EXPECT_FALSE(f.Usage->VerifieDisque());
        const QString question = b.boites.Messages().value(0);
        EXPECT_TRUE(question.startsWith(f.FichierCourant + "\na été modifié sur le disque"));
        EXPECT_EQ(question.contains("perdre"), modifie) << question.toStdString();
        EXPECT_EQ(b.boites.vues.back().nonParDefaut, modifie);
        EXPECT_EQ(f.RTB1->TexteCrLf(), r == Reponse::Oui ? "CT = 2, 2\r\nCT = 3, 3\r\n" : texte);
        EXPECT_EQ(f.RTB1->textCursor().position(), 4); // where the user was, reloaded or not
    }
    // A file deleted on disk is no change to offer, but its text is then on no disk: not saved.
    Banc b;
    Form1& f = b.Demarre("CT = 1, 1\r\n");
    f.Mnu_EnregistrerS_Click();
    QCoreApplication::processEvents();
    ASSERT_FALSE(f.Modifie());
    ASSERT_TRUE(QFile::remove(f.FichierCourant));
    EXPECT_TRUE(Attend([&] { return f.Modifie(); }));
    EXPECT_TRUE(f.windowTitle().startsWith('*') && b.boites.Messages().isEmpty());
    // The window's own box for such a question.
    QTimer::singleShot(0, [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Return); });
    EXPECT_EQ(BoitesQt().QuestionRisquee(&f, "Mirel", "?"), Reponse::Non);
}

// The help opens on the first dial, which draws without a message, then the reference; Esc
// closes it. The update notes are a page of their own unless their file exists; the undocumented
// commands' file goes to the desktop's viewer.
TEST(FenetreUsage, HelpOpensOnAFirstDialAndClosesOnEsc) {
    Banc b;
    Form1& f = b.Demarre(PremierCadran().join("\r\n") + "\r\n");
    EXPECT_TRUE(b.boites.Messages().isEmpty() && (f.e.EtatOrdre & 64));
    f.Mnu_Aide25->trigger();
    FenetreAide* aide = f.FenetreDAide();
    const QString h = aide->Navigateur()->toHtml();
    EXPECT_LT(h.indexOf("Val = 10, 0, 100, 11"), h.indexOf(LoadResString(399)));
    EXPECT_LT(h.indexOf(LoadResString(399)), h.indexOf("name=\"s2100\""));
    ASSERT_TRUE(aide->isVisible());
    QTest::keyClick(aide->Navigateur(), Qt::Key_Escape);
    EXPECT_FALSE(aide->isVisible());
    QStringList ouverts;
    aide->Ouvreur = [&](const QString& c) { return ouverts << c, true; };
    f.Mnu_MAJ_Aide->trigger();
    EXPECT_TRUE(aide->Navigateur()->toPlainText().contains(LoadResString(398).section('\n', 0, 0)));
    QDir(b.programme.path()).mkpath("Mirel_fr");
    const QStringList fichiers{b.programme.filePath("Mirel_MAJ_fr.chm"), b.programme.filePath("Mirel_fr/Non_Doc_fr.chm")};
    for (const QString& nom : fichiers) QFile(nom).open(QIODevice::WriteOnly);
    f.AfficheMenus();
    EXPECT_TRUE(f.Mnu_Non_Doc->isVisible() && f.Mnu_Non_Doc->isEnabled() && f.Mnu_MAJ_Aide->isEnabled());
    f.Mnu_MAJ_Aide->trigger();
    f.Mnu_Non_Doc->trigger();
    EXPECT_EQ(ouverts, fichiers);
}
