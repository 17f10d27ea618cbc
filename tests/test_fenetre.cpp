// Part 4.1: the main window and the run cycle.
#include "outils_fenetre.h"

#include "app/core/externes.h"
#include "drawing/surface.h"
#include "language/etat.h"
#include "language/hote.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QMenuBar>
#include <QMouseEvent>
#include <QRegularExpression>
#include <QTextBlock>

namespace {

void Souris(QWidget* w, QEvent::Type type, QPointF p, Qt::MouseButton bouton = Qt::NoButton,
            Qt::MouseButtons boutons = Qt::NoButton, Qt::KeyboardModifiers mods = Qt::NoModifier) {
    QMouseEvent ev(type, p, w->mapToGlobal(p), bouton, boutons, mods);
    QApplication::sendEvent(w, &ev);
}

void Bouge(Form1& f, QPointF p, Qt::MouseButtons b = Qt::NoButton, Qt::KeyboardModifiers m = Qt::NoModifier) {
    Souris(f.pane, QEvent::MouseMove, p, Qt::NoButton, b, m);
}

void DoubleClic(Form1& f, QPointF p, Qt::KeyboardModifiers m = Qt::NoModifier) {
    Souris(f.pane, QEvent::MouseButtonDblClick, p, Qt::LeftButton, Qt::LeftButton, m);
}

// Runs `action` on the first visible dialog of type D once it is open.
template <class D>
void QuandOuvert(std::function<void(D*)> action) {
    auto* minuteur = new QTimer;
    minuteur->setInterval(10);
    QObject::connect(minuteur, &QTimer::timeout, [minuteur, action] {
        for (QWidget* w : QApplication::topLevelWidgets()) {
            if (auto* d = qobject_cast<D*>(w); d && d->isVisible()) {
                minuteur->stop();
                minuteur->deleteLater();
                action(d);
                return;
            }
        }
    });
    minuteur->start();
}

int Encre(const QImage& im) {
    int n = 0;
    for (int y = 0; y < im.height(); ++y)
        for (int x = 0; x < im.width(); ++x)
            if (qGray(im.pixel(x, y)) < 200) ++n;
    return n;
}

const char* const Croix = "CentreE = 100, 80\nCT = 10, 10\n";

} // namespace

// --- version, caption, menus

TEST(Fenetre, VersionText) {
    EXPECT_EQ(TexteVersion(2, 6, 1), QStringLiteral("2.06a "));
    EXPECT_EQ(TexteVersion(2, 6, 0), QStringLiteral("2.06"));
    EXPECT_EQ(TexteVersion(0, 1, 0), QStringLiteral("0.01"));
    EXPECT_EQ(TexteVersion(1, 12, 3), QStringLiteral("1.12c "));
}

TEST(Fenetre, CaptionRule) {
    Banc b;
    Form1& f = b.Fenetre();
    f.Version = QStringLiteral("2.06a ");
    EXPECT_EQ(f.TexteCaption(), QStringLiteral("Mirel  V2.06a "));
    f.NomCourant = QStringLiteral("/tmp/x.dat");
    EXPECT_EQ(f.TexteCaption(), QStringLiteral("Mirel  V2.06a    Fichier: /tmp/x.dat"));
    Form1& g = b.Demarre(QStringLiteral("CT = 1, 1\r\n"));
    EXPECT_EQ(g.windowTitle(), QStringLiteral("Mirel  V") + TexteVersionProgramme() +
                                   QStringLiteral("   Fichier: ") + b.travail.path() +
                                   QStringLiteral("/essai.dat"));
}

TEST(Fenetre, MenusTakeTheirCaptionsFromTheStringTable) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("CT = 1, 1\r\n"));
    EXPECT_EQ(f.Mnu_Fichier->title(), QStringLiteral("&Fichier"));
    EXPECT_EQ(f.Mnu_Ouvrir->text(), QStringLiteral("&Ouvrir"));
    EXPECT_EQ(f.Mnu_Enregistrer->text(), QStringLiteral("En&registrer sous\tCtrl-Shift+S"));
    EXPECT_EQ(f.Mnu_Couper->text(), QStringLiteral("Couper") + QString(24, u' ') + QStringLiteral("\tCtrl-X"));
    EXPECT_EQ(f.Mnu_Supprimer->text(), LoadResString(24));
    EXPECT_EQ(f.Mnu_Visualiser->text(), QStringLiteral("&Visualiser (F4)"));
    EXPECT_EQ(f.Mnu_Zoom->text(), QStringLiteral("&Zoom (F7)"));
    EXPECT_EQ(f.Mnu_RefCurseur->text(), QStringLiteral("&RefCur (F8)"));
    EXPECT_EQ(f.Mnu_Masque->text(), QStringLiteral("&Masque (F2)"));
    EXPECT_EQ(f.Mnu_Dessin->text(), QStringLiteral("&Dessin (F9)"));
    EXPECT_EQ(f.Mnu_Couleur->text(), QStringLiteral("&Couleur"));
    EXPECT_EQ(f.Mnu_AProposDe->text(), QStringLiteral("A propos de &Mirel"));
    EXPECT_EQ(f.Mnu_Help->title(), QStringLiteral("&Aide..."));
    // Same language for mask and menus: one help entry.
    EXPECT_EQ(f.Mnu_Aide25->text(), QStringLiteral("&Aide"));
    EXPECT_FALSE(f.Mnu_Aide->isVisible());
    // The entries of later Parts stay visible and disabled.
    for (QAction* a : {f.Mnu_Masque, f.Mnu_Dessin, f.Mnu_Imprimer, f.Mnu_OuvrirMeter, f.Mnu_Defaire,
                       f.Mnu_Rechercher, f.Mnu_Polices}) {
        EXPECT_TRUE(a->isVisible()) << a->objectName().toStdString();
        EXPECT_FALSE(a->isEnabled()) << a->objectName().toStdString();
    }
    for (QAction* a : {f.Mnu_Ouvrir, f.Mnu_Visualiser, f.Mnu_Zoom, f.Mnu_RefCurseur, f.Mnu_TaillCar,
                       f.Mnu_Couleur, f.Mnu_ExportPdf, f.Mnu_Patchs, f.Mnu_Liste_Fic})
        EXPECT_TRUE(a->isEnabled()) << a->objectName().toStdString();
}

TEST(Fenetre, MenusInEnglishAndHelpEntriesWhenMaskLanguageDiffers) {
    Banc b;
    b.config.Valeurs.LangueMenu = QStringLiteral("English");
    Form1& f = b.Demarre(QStringLiteral("CT = 1, 1\r\n"));
    EXPECT_EQ(f.Mnu_Fichier->title(), QStringLiteral("&File"));
    EXPECT_EQ(f.Mnu_Visualiser->text(), LoadResString(437) + QStringLiteral(" (F4)"));
    EXPECT_EQ(f.Mnu_Aide25->text(), LoadResString(487));
    EXPECT_TRUE(f.Mnu_Aide->isVisible());
    EXPECT_EQ(f.Mnu_ExportPdf->text(), QStringLiteral("E&xport to PDF..."));
}

TEST(Fenetre, StatusFieldTooltipsAreRows130To132) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("CT = 1, 1\r\n"));
    EXPECT_EQ(f.Text1->toolTip(), LoadResString(130));
    EXPECT_EQ(f.Text2->toolTip(), LoadResString(131));
    EXPECT_EQ(f.Text3->toolTip(), LoadResString(132));
    EXPECT_EQ(f.Text1->text(), QStringLiteral("L 1/2")); // the empty line behind the last CR LF counts
    EXPECT_EQ(f.Text4->text(), QStringLiteral("1 : 1  0  "));
    // Text1 to Text4 stand right to left, left of the editor, at the bottom.
    EXPECT_EQ(f.Text1->geometry().right() + 1, f.RTB1->x());
    EXPECT_EQ(f.Text2->geometry().right() + 1, f.Text1->x());
    EXPECT_EQ(f.Text3->geometry().right() + 1, f.Text2->x());
    EXPECT_EQ(f.Text4->geometry().right() + 1, f.Text3->x());
    EXPECT_EQ(f.Text1->geometry().bottom() + 1, f.zone->height());
}

TEST(Fenetre, AboutBoxText) {
    const QString t = TexteAPropos(0, QStringLiteral("0.01"));
    EXPECT_TRUE(t.startsWith(QStringLiteral("Mirel\n")));
    EXPECT_TRUE(t.contains(QStringLiteral("Version : 0.01")));
    EXPECT_TRUE(t.contains(LoadResString(102) + QStringLiteral(" : ") + LoadResString(9)));
    EXPECT_TRUE(t.contains(LoadResString(103)));
}

// --- start-up

TEST(Fenetre, NoPrinterConfiguredStartsWithThePdfPrinter) {
    // The spec's program stops after a two-language box; design.md makes Qt's
    // PDF printer take the printer's place, and the program starts.
    Banc b;
    b.imprimante.clear();
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    EXPECT_TRUE(f.ImprimantePdf);
    EXPECT_EQ(f.NomImprimante, QStringLiteral("PDF"));
    EXPECT_TRUE(f.isVisible());
    EXPECT_TRUE(f.Demarre);
    EXPECT_EQ(b.boites.Nombre(QStringLiteral("message")), 0);
    EXPECT_EQ(f.NombreExecutions, 1);
    EXPECT_GT(Encre(f.pane->image()), 0);
}

TEST(Fenetre, StartUpLoadsTheLastFileOfTheConfiguration) {
    Banc b;
    b.config.Valeurs.FichierDat = b.Fichier(QStringLiteral("dernier.dat"), QStringLiteral("CT = 1, 1\r\n"));
    Form1& f = b.Fenetre();
    f.Demarrer(QString());
    EXPECT_EQ(f.FichierCourant, b.config.Valeurs.FichierDat);
    EXPECT_EQ(f.RTB1->TexteCrLf(), QStringLiteral("CT = 1, 1\r\n"));
    EXPECT_EQ(b.boites.Nombre(QStringLiteral("ouvrir")), 0);
    EXPECT_FALSE(f.Modifie());
    EXPECT_EQ(f.NombreExecutions, 1);
    EXPECT_EQ(f.DossierFichier, b.travail.path() + u'/');
}

TEST(Fenetre, MissingFileOnTheCommandLineOpensTheOpenDialog) {
    Banc b;
    Form1& f = b.Fenetre();
    const QString absent = b.travail.path() + QStringLiteral("/absent.dat");
    f.Demarrer(absent);
    EXPECT_EQ(b.boites.Nombre(QStringLiteral("ouvrir")), 1);
    EXPECT_TRUE(f.FichierCourant.isEmpty());
    EXPECT_NE(f.NomCourant, absent);
}

TEST(Fenetre, QuotesAnywhereInTheCommandLineAreRemoved) {
    Banc b;
    const QString chemin = b.Fichier(QStringLiteral("mon cadran.dat"), QStringLiteral("CT = 2, 2\r\n"));
    QString ligne = chemin;
    ligne.insert(0, u'"');
    ligne.insert(ligne.size() - 6, u'"');
    ligne += u'"';
    Form1& f = b.Fenetre();
    f.Demarrer(ligne);
    EXPECT_EQ(f.FichierCourant, chemin);
    EXPECT_EQ(f.RTB1->TexteCrLf(), QStringLiteral("CT = 2, 2\r\n"));
    EXPECT_EQ(b.boites.Nombre(QStringLiteral("ouvrir")), 0);
}

TEST(Fenetre, CancelledOpenAtStartGivesTheTemplate) {
    Banc b;
    b.Fichier(QStringLiteral("Mirel.daN"), QStringLiteral("' modèle\r\nCT = 0, 0\r\n"));
    Form1& f = b.Fenetre();
    f.Demarrer(QString());
    EXPECT_EQ(b.boites.Nombre(QStringLiteral("ouvrir")), 1);
    EXPECT_EQ(f.RTB1->TexteCrLf(), QStringLiteral("' modèle\r\nCT = 0, 0\r\n"));
    EXPECT_TRUE(f.FichierCourant.isEmpty());
    EXPECT_TRUE(f.NomCourant.isEmpty());
    EXPECT_FALSE(f.Modifie());
}

TEST(Fenetre, UnsetLanguageOpensForm3AndWritesTheFourKeys) {
    Banc b;
    b.config.Valeurs.Langue.clear();
    b.boites.langues = [](ValeursConfig& v) {
        v.Langue = v.LangueMenu = v.LangueAide = v.LangueMasq = QStringLiteral("English");
    };
    Form1& f = b.Demarre(QStringLiteral("CT = 1, 1\r\n"));
    EXPECT_EQ(b.boites.Nombre(QStringLiteral("langues")), 1);
    EXPECT_TRUE(b.config.Ecritures.contains(QStringLiteral("Langue = English")));
    EXPECT_TRUE(b.config.Ecritures.contains(QStringLiteral("LangueMasq = English")));
    EXPECT_EQ(f.regl.LangueMessages, 400);
    EXPECT_EQ(f.regl.LangueMenus, 400);
    EXPECT_EQ(f.Mnu_Fichier->title(), QStringLiteral("&File"));
}

TEST(Fenetre, VersionChangeInLineOneOpensForm3) {
    Banc b;
    b.config.Valeurs.PremiereLigne = QStringLiteral("'Fichier de configuration du Programme Mirel V2.05");
    b.Demarre(QStringLiteral("CT = 1, 1\r\n"));
    EXPECT_EQ(b.boites.Nombre(QStringLiteral("langues")), 1);
    // Closed without a choice: the unset language takes the first one.
    EXPECT_TRUE(b.config.Ecritures.contains(QStringLiteral("Langue = Français")));
}

TEST(Fenetre, Form3CascadesFromTheFirstTwoFrames) {
    ValeursConfig v;
    v.Langue = v.LangueMenu = v.LangueAide = v.LangueMasq = QStringLiteral("Français");
    Form3 d(nullptr, v);
    d.Option(0, 2)->click(); // German messages: all four follow
    ValeursConfig c = d.Choix(v);
    EXPECT_EQ(c.LangueMenu, QStringLiteral("Deutsch"));
    EXPECT_EQ(c.LangueMasq, QStringLiteral("Deutsch"));
    d.Option(1, 1)->click(); // English menus: help and mask follow
    c = d.Choix(v);
    EXPECT_EQ(c.Langue, QStringLiteral("Deutsch"));
    EXPECT_EQ(c.LangueAide, QStringLiteral("English"));
    d.Option(3, 3)->click(); // the mask alone
    c = d.Choix(v);
    EXPECT_EQ(c.LangueAide, QStringLiteral("English"));
    EXPECT_EQ(c.LangueMasq, QStringLiteral("Castellano"));
}

TEST(Fenetre, ExternalCommandsAreSortedAndLaterDuplicatesGo) {
    QTemporaryDir prog, trav;
    for (const char* n : {"b.dmk", "A.dmk", "mce.dmk", "notes.txt"}) QFile(prog.filePath(n)).open(QIODevice::WriteOnly);
    for (const char* n : {"a.dmk", "c.dmk", "MCE.dmk"}) QFile(trav.filePath(n)).open(QIODevice::WriteOnly);
    const QList<CommandeExterne> l = ListeCommandesExternes(prog.path(), trav.path());
    QStringList noms;
    for (const CommandeExterne& c : l) noms << c.nom;
    // Sorted: A, MCE (working), a, b, c, mce; "a" and "mce" come later than
    // a name equal in upper case, so they go: the working folder's MCE wins.
    EXPECT_EQ(noms, (QStringList{"A", "MCE", "b", "c"}));
    EXPECT_EQ(l[0].dossier, prog.path() + u'/');
    EXPECT_EQ(l[1].dossier, trav.path() + u'/');
}

// --- runs, keys, busy state

TEST(Fenetre, F4AndTheMenuRun) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    EXPECT_EQ(f.NombreExecutions, 1);
    QTest::keyClick(f.RTB1, Qt::Key_F4);
    EXPECT_EQ(f.NombreExecutions, 2);
    f.Mnu_Visualiser->trigger();
    EXPECT_EQ(f.NombreExecutions, 3);
    QTest::keyClick(f.pane, Qt::Key_F4);
    EXPECT_EQ(f.NombreExecutions, 4);
    EXPECT_GT(Encre(f.pane->image()), 0);
    EXPECT_EQ(f.RTB1->TexteCrLf(), QString::fromLatin1(Croix).replace("\n", "\r\n")); // F4 typed nothing
}

TEST(Fenetre, EscStopsARun) {
    Banc b;
    const QString chemin = b.Fichier(QStringLiteral("boucle.dat"),
                                     QStringLiteral("boucle:\r\nCT = 1, 1\r\nGoto boucle\r\n"));
    Form1& f = b.Fenetre();
    bool occupe = false, menus = true, visualiser = true;
    int executionsPendant = -1;
    // Esc once the command loop runs (an Esc during the preparation of a run
    // is cleared by Visualiser step 7, as in the original).
    QTimer minuteur;
    minuteur.setInterval(50);
    QObject::connect(&minuteur, &QTimer::timeout, &f, [&] {
        if (!f.e.ExecutionEnCours || f.e.NiveauCourant != 1) return;
        minuteur.stop();
        occupe = QApplication::overrideCursor() && QApplication::overrideCursor()->shape() == Qt::WaitCursor;
        menus = f.menuBar()->isEnabled();
        visualiser = f.Mnu_Visualiser->isEnabled();
        QTest::keyClick(f.RTB1, Qt::Key_F4); // swallowed: a run is in progress
        QTest::keyClick(f.RTB1, Qt::Key_A);  // the disabled window takes no text
        executionsPendant = f.NombreExecutions;
        QTest::keyClick(f.RTB1, Qt::Key_Escape);
    });
    minuteur.start();
    QElapsedTimer montre;
    montre.start();
    f.Demarrer(chemin);
    EXPECT_LT(montre.elapsed(), 20000);
    EXPECT_TRUE(f.e.ArretDemande);
    EXPECT_TRUE(occupe);
    EXPECT_FALSE(menus);
    EXPECT_FALSE(visualiser);
    EXPECT_EQ(executionsPendant, 1);
    EXPECT_EQ(f.RTB1->TexteCrLf(), QStringLiteral("boucle:\r\nCT = 1, 1\r\nGoto boucle\r\n"));
    EXPECT_TRUE(f.menuBar()->isEnabled());
    EXPECT_TRUE(f.Mnu_Visualiser->isEnabled());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_TRUE(b.boites.Messages().isEmpty());
}

TEST(Fenetre, F4AppliesThePendingColouringFirst) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("CentreE = 100, 80\r\n"));
    QTest::keyClick(f.RTB1, Qt::Key_Down);
    QTest::keyClicks(f.RTB1, "ct = 5, 5");
    EXPECT_TRUE(f.RTB1->LigneSale);
    const int avant = int(f.e.Repere.CTx);
    QTest::keyClick(f.RTB1, Qt::Key_F4);
    EXPECT_EQ(Ligne(*f.RTB1, 1), QStringLiteral("CT = 5, 5"));
    EXPECT_EQ(CouleurLigne(*f.RTB1, 1, 0), Editeur::Bleu);
    EXPECT_FALSE(f.RTB1->LigneSale);
    EXPECT_EQ(avant, 0);
    EXPECT_FLOAT_EQ(f.e.Repere.CTx, 5);
}

TEST(Fenetre, KeysOfLaterPartsAreSwallowed) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    const QString texte = f.RTB1->TexteCrLf();
    QTest::keyClick(f.RTB1, Qt::Key_F9);
    QTest::keyClick(f.RTB1, Qt::Key_P, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(f.RTB1, Qt::Key_F2);
    EXPECT_EQ(f.RTB1->TexteCrLf(), texte);
    EXPECT_EQ(f.NombreExecutions, 1);
    EXPECT_TRUE(b.boites.vues.empty());
}

TEST(Fenetre, CentreCurseurPutsThePointerInTheMiddleOfTheDrawing) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    f.Mnu_CentreCurseur_Click();
    const QPoint attendu =
        f.zone->mapToGlobal(QPoint((f.zone->width() - f.RTB1->width()) / 2, f.zone->height() / 2));
    EXPECT_EQ(QCursor::pos(), attendu);
}

TEST(Fenetre, HostClipboardAndPrompt) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    f.e.Host->EcritPressePapier(QStringLiteral("RVB 1 2 3"));
    EXPECT_EQ(f.e.Host->PressePapier(), QStringLiteral("RVB 1 2 3"));
    b.boites.saisies = {QStringLiteral("42")};
    EXPECT_EQ(f.e.Host->Saisie(QStringLiteral("t"), QStringLiteral("Valeur ?"), QStringLiteral("1")),
              std::optional<QString>(QStringLiteral("42")));
    EXPECT_EQ(f.e.Host->Message(QStringLiteral("Mirel"), QStringLiteral("x"), Boutons::OkAnnuler), Reponse::Ok);
    EXPECT_EQ(b.boites.vues.back().boutons, Boutons::OkAnnuler);
    EXPECT_EQ(f.e.Host->LigneDe(0), 1);
    EXPECT_EQ(f.e.Host->LigneDe(int(QStringLiteral("CentreE = 100, 80\r\n").size())), 2);
}

TEST(Fenetre, AltF4Quits) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    ASSERT_TRUE(f.isVisible());
    QTest::keyClick(f.RTB1, Qt::Key_F4, Qt::AltModifier);
    EXPECT_FALSE(f.isVisible());
    EXPECT_TRUE(b.config.Ecritures.contains(QStringLiteral("DoubleClic = Non")));
}

TEST(Fenetre, ResizeDoesNotRerun) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    const QSize avant = f.pane->image().size();
    const QImage image = f.pane->image();
    f.resize(f.width() - 200, f.height() - 100);
    QApplication::processEvents();
    EXPECT_EQ(f.NombreExecutions, 1);
    EXPECT_EQ(f.pane->image(), image);
    // The editor follows at once, the drawing at the next run.
    EXPECT_EQ(f.RTB1->width(), int(f.zone->width() / f.RatioCode));
    f.Visualiser();
    EXPECT_NE(f.pane->image().size(), avant);
}

TEST(Fenetre, PaneImageFollowsTheDevicePixelRatio) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    const double dpr = f.pane->devicePixelRatioF();
    if (qEnvironmentVariable("QT_SCALE_FACTOR") == QLatin1String("2")) EXPECT_EQ(dpr, 2.0);
    EXPECT_EQ(f.pane->image().devicePixelRatio(), dpr);
    EXPECT_EQ(f.pane->image().width(), int(std::ceil(f.pane->width() * dpr)));
    EXPECT_NEAR(f.e.Repere.MmParPixelE, 25.4 / f.pane->logicalDpiX(), 1e-6);
    EXPECT_NEAR(f.e.Repere.LargeurFenetreMm, f.pane->width() * 25.4 / f.pane->logicalDpiX(), 1e-3);
}

TEST(Fenetre, FailingLineIsMarkedRedAndTheBoxNamesIt) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("CT = 1, 1\r\nfoo = 2\r\nCT = 2, 2\r\n"));
    ASSERT_EQ(b.boites.Messages().size(), 1);
    EXPECT_EQ(b.boites.Messages()[0], LoadResString(124) + QStringLiteral("2: foo = 2\r\n"));
    EXPECT_EQ(f.RTB1->LigneCaret(), 1);
    EXPECT_EQ(CouleurLigne(*f.RTB1, 1, 0), Editeur::Rouge);
    EXPECT_EQ(CouleurLigne(*f.RTB1, 1, 6), Editeur::Rouge);
    EXPECT_EQ(CouleurLigne(*f.RTB1, 0, 0), Editeur::Bleu);
    // Red until edited: F4 again keeps it red.
    QTest::keyClick(f.RTB1, Qt::Key_F4);
    EXPECT_EQ(CouleurLigne(*f.RTB1, 1, 0), Editeur::Rouge);
}

TEST(Fenetre, QuestionMarkRewritesTheEditorLine) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("CentreE = 10, 10\r\nCT = 5, 5\r\n?\r\n"));
    EXPECT_EQ(Ligne(*f.RTB1, 2), QStringLiteral("'? =0, 0"));
    EXPECT_EQ(CouleurLigne(*f.RTB1, 2, 0), Editeur::Vert);
    // The start-up clears Modifie after its run; a later run's rewrite sets it.
    f.RTB1->ChargeTexte(QStringLiteral("CT = 5, 5\r\n?\r\n"));
    f.SetModifie(false);
    f.Visualiser();
    EXPECT_EQ(Ligne(*f.RTB1, 1), QStringLiteral("'? =0, 0"));
    EXPECT_TRUE(f.Modifie());
}

// --- the mouse

TEST(Fenetre, ZoomOfExactlyHalfShowsOneDecimalAndFiveShowsTwo) {
    EXPECT_EQ(FormatZoom(12.345, 0.49f), QStringLiteral("12"));
    EXPECT_EQ(FormatZoom(12.345, 0.5f), QStringLiteral("12.3"));
    EXPECT_EQ(FormatZoom(12.345, 4.99f), QStringLiteral("12.3"));
    EXPECT_EQ(FormatZoom(12.345, 5.0f), QStringLiteral("12.35"));
    EXPECT_EQ(FormatZoom(-2.5, 0.1f), QStringLiteral("-3"));
    EXPECT_EQ(TexteText2(1, -2, 1), QStringLiteral("1.0  -2.0"));
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    for (float z : {0.5f, 5.0f}) {
        f.e.Repere.ZoomE = z;
        f.RelanceSansZoom();
        Bouge(f, QPointF(100, 100));
        const QString attendu = z == 0.5f ? QStringLiteral("^-?\\d+\\.\\d  -?\\d+\\.\\d$")
                                          : QStringLiteral("^-?\\d+\\.\\d\\d  -?\\d+\\.\\d\\d$");
        EXPECT_TRUE(QRegularExpression(attendu).match(f.Text2->text()).hasMatch())
            << z << " " << f.Text2->text().toStdString();
    }
}

TEST(Fenetre, MouseExactlyOnTheReferenceShowsAngleZero) {
    const LectureSouris l = CalculeLecture(10, 20, 10, 20, 0.3);
    EXPECT_EQ(l.angle, 0);
    EXPECT_EQ(l.rayon, 0);
    EXPECT_EQ(CalculeLecture(10.03, 20.03, 10, 20, 0).angle, 0); // T below 0.05
    EXPECT_NEAR(CalculeLecture(11, 21, 10, 20, 0).angle, 45, 1e-9);
    EXPECT_NEAR(CalculeLecture(9, 21, 10, 20, 0).angle, 135, 1e-9);
    EXPECT_EQ(CalculeLecture(10, 25, 10, 20, 0).angle, 90);
    EXPECT_EQ(CalculeLecture(10, 15, 10, 20, 0).angle, 270);
    EXPECT_NEAR(CalculeLecture(11, 19, 10, 20, 0).angle, -45, 1e-9);
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    const QPointF r = f.VersSurface(QPointF(200, 150));
    f.RefCurX = r.x();
    f.RefCurY = r.y();
    Bouge(f, QPointF(200, 150));
    EXPECT_EQ(f.Text3->text(), QStringLiteral("T 0.0°  0.0"));
    EXPECT_EQ(f.Text2->text(), QStringLiteral("0.0  0.0"));
}

TEST(Fenetre, ReadOutAboutRefCurTurnedAndAboutTheAltPoint) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("CentreE = 100, 80\r\nRefCur = 10, 0§90\r\n"));
    EXPECT_NEAR(f.RefCurX, f.e.Repere.SourisOrigineX + 10, 1e-6);
    EXPECT_NEAR(f.RefCurAngle, -90, 1e-6);
    // A point 5 mm above the reference reads (5, 0) in axes turned by 90°.
    const QPointF px = f.VersPixel(f.RefCurX, f.RefCurY + 5);
    Bouge(f, px);
    const QStringList v = f.Text2->text().split(QStringLiteral("  "));
    ASSERT_EQ(v.size(), 2);
    EXPECT_NEAR(v[0].toDouble(), 5, 0.2);
    EXPECT_NEAR(v[1].toDouble(), 0, 0.2);
    EXPECT_EQ(f.Text2->palette().color(QPalette::Window), QColor(Qt::white));
    // Alt: the last Alt click is the reference, on a green back.
    Souris(f.pane, QEvent::MouseButtonPress, px, Qt::LeftButton, Qt::LeftButton, Qt::AltModifier);
    Bouge(f, px, Qt::NoButton, Qt::AltModifier);
    EXPECT_EQ(f.Text2->text(), QStringLiteral("0.0  0.0"));
    EXPECT_EQ(f.Text2->palette().color(QPalette::Window), QColor(200, 255, 200));
}

TEST(Fenetre, LeftButtonShowsThePositionAgainstThePanInRed) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    f.e.Repere.DecalageVueX = 3;
    f.e.Repere.DecalageVueY = 4;
    Bouge(f, QPointF(100, 100), Qt::LeftButton);
    EXPECT_EQ(f.Text2->palette().color(QPalette::WindowText), QColor(Qt::red));
    EXPECT_EQ(f.Text2->text(), TexteText2(f.SourisX - 3, f.SourisY - 4, 1));
    Bouge(f, QPointF(100, 100));
    EXPECT_EQ(f.Text2->palette().color(QPalette::WindowText), QColor(Qt::black));
}

TEST(Fenetre, DoubleClickOnText3TogglesThePolarConvention) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    f.RefCurX = f.VersSurface(QPointF(100, 100)).x();
    f.RefCurY = f.VersSurface(QPointF(100, 100)).y();
    Bouge(f, QPointF(150, 50)); // up and right: 45°
    EXPECT_TRUE(f.Text3->text().startsWith(QStringLiteral("T 45.0°")));
    Souris(f.Text3, QEvent::MouseButtonDblClick, QPointF(3, 3), Qt::LeftButton, Qt::LeftButton);
    EXPECT_TRUE(f.AngleA);
    EXPECT_TRUE(f.Text3->text().startsWith(QStringLiteral("A 135.°"))) << f.Text3->text().toStdString();
    Bouge(f, QPointF(150, 50));
    EXPECT_TRUE(f.Text3->text().startsWith(QStringLiteral("A 135.0°")));
    EXPECT_EQ(FormatDiese(12), QStringLiteral("12."));
    EXPECT_EQ(FormatDiese(12.34), QStringLiteral("12.3"));
}

TEST(Fenetre, DoubleClickPansWhenDblClickIsUnchecked) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    ASSERT_FALSE(f.Mnu_DblClick->isChecked());
    const QPointF p = f.VersSurface(QPointF(120, 90));
    // The user point under the mouse (CentreE = 100, 80).
    const double ux = p.x() - f.e.Repere.SourisOrigineX, uy = p.y() - f.e.Repere.SourisOrigineY;
    DoubleClic(f, QPointF(120, 90));
    EXPECT_EQ(f.NombreExecutions, 2);
    EXPECT_NEAR(f.e.Repere.DecalageVueX, ux, 1e-9);
    EXPECT_NEAR(f.e.Repere.DecalageVueY, uy, 1e-9);
    // That point is now at the centre of the visible drawing.
    const Surface* s = f.pane->surface();
    EXPECT_NEAR(f.e.Repere.OrigineX + ux, (s->ScaleWidth - f.LargeurEditeurUnites()) / 2, 1e-6);
    EXPECT_NEAR(f.e.Repere.OrigineY + uy, -s->ScaleHeight / 2, 1e-6);
    // A second double click at the same place changes nothing.
    DoubleClic(f, f.VersPixel(f.e.Repere.OrigineX + ux, f.e.Repere.OrigineY + uy));
    EXPECT_NEAR(f.e.Repere.DecalageVueX, ux, 0.2);
    EXPECT_EQ(f.RTB1->TexteCrLf(), QString::fromLatin1(Croix).replace("\n", "\r\n"));
}

TEST(Fenetre, PositionnerWithCtrlClearsThePanAndWithShiftFollowsItsFormula) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    Bouge(f, QPointF(150, 120));
    QTest::keyClick(f.RTB1, Qt::Key_F6);
    EXPECT_NE(f.e.Repere.DecalageVueX, 0);
    const double dx = f.e.Repere.SourisOrigineX, dy = f.e.Repere.SourisOrigineY;
    const double sx = f.SourisX, sy = f.SourisY;
    const Surface* s = f.pane->surface();
    QTest::keyClick(f.RTB1, Qt::Key_F12, Qt::ShiftModifier);
    EXPECT_NEAR(f.e.Repere.DecalageVueX, sx - dx + (s->ScaleWidth - f.LargeurEditeurUnites()) / 2, 1e-6);
    EXPECT_NEAR(f.e.Repere.DecalageVueY, sy - dy - s->ScaleHeight / 2, 1e-6);
    QTest::keyClick(f.RTB1, Qt::Key_F6, Qt::ControlModifier);
    EXPECT_EQ(f.e.Repere.DecalageVueX, 0);
    EXPECT_EQ(f.e.Repere.DecalageVueY, 0);
    EXPECT_EQ(f.NombreExecutions, 4);
}

TEST(Fenetre, ThirdDoubleClickInsertionOnATraitLineGetsTwoCommas) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("CentreE = 50, 50\r\nTrait = "));
    f.Mnu_DblClick->setChecked(true);
    CurseurEnFinDeLigne(*f.RTB1, 1);
    for (QPointF p : {QPointF(100, 100), QPointF(140, 100), QPointF(140, 60)}) DoubleClic(f, p);
    EXPECT_EQ(f.NombreExecutions, 1);
    const QString l = Ligne(*f.RTB1, 1);
    const QRegularExpression forme(
        QStringLiteral("^Trait = -?\\d+\\.\\d,-?\\d+\\.\\d, -?\\d+\\.\\d,-?\\d+\\.\\d, -?\\d+\\.\\d,-?\\d+\\.\\d,,$"));
    EXPECT_TRUE(forme.match(l).hasMatch()) << l.toStdString();
    EXPECT_TRUE(f.Modifie());
}

TEST(Fenetre, InsertionWithCtrlAndTheBlueCross) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("CentreE = 50, 50\r\nCT = 1, 1\r\nPlus = 1, 1"));
    CurseurEnFinDeLigne(*f.RTB1, 2);
    const QImage avant = f.pane->image();
    DoubleClic(f, QPointF(300, 300), Qt::ControlModifier);
    EXPECT_EQ(f.NombreExecutions, 1);
    EXPECT_TRUE(Ligne(*f.RTB1, 2).startsWith(QStringLiteral("Plus = 1, 1, ")));
    // The blue cross is on the pane.
    const QImage im = f.pane->image();
    const QColor centre = im.pixelColor(int(300 * im.devicePixelRatio()), int(300 * im.devicePixelRatio()));
    EXPECT_GT(centre.blue(), 150);
    EXPECT_LT(centre.red(), 120);
    EXPECT_NE(im, avant);
}

// --- the dialogs

TEST(Fenetre, ZoomDialogOnF7) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    QString titre;
    QuandOuvert<Form4>([&](Form4* d) {
        titre = d->windowTitle();
        d->Text1->setText(QStringLiteral("2,5"));
        d->Text2->setText(QStringLiteral("1.1"));
        QTest::keyClick(d, Qt::Key_Return);
    });
    QTest::keyClick(f.RTB1, Qt::Key_F7);
    EXPECT_EQ(titre, QStringLiteral("Mirel   Zoom   (F7, Ctrl-F7)"));
    EXPECT_FLOAT_EQ(f.e.Repere.ZoomE, 2.5f);
    EXPECT_FLOAT_EQ(f.regl.Zmm, 1.1f);
    EXPECT_FLOAT_EQ(f.e.Repere.FacteurZ, 2.5f * 1.1f);
    EXPECT_TRUE(b.config.Ecritures.contains(QStringLiteral("Zmm = 1.1")));
    EXPECT_EQ(f.NombreExecutions, 2);
    // F4 runs at zoom 1 again (Visualiser step 4).
    QTest::keyClick(f.RTB1, Qt::Key_F4);
    EXPECT_FLOAT_EQ(f.e.Repere.ZoomE, 1.0f);
}

TEST(Fenetre, ZoomDialogRefusesANonNumericValueAndEscChangesNothing) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    Form4 d(&f, 0, 1.0f, 1.0f, &b.boites);
    d.Text1->setText(QStringLiteral("abc"));
    EXPECT_FALSE(d.Valide());
    ASSERT_EQ(b.boites.Messages().size(), 1);
    EXPECT_EQ(b.boites.Messages()[0], QStringLiteral("Valeur non numérique\r\nNo numeric value"));
    EXPECT_EQ(b.boites.vues.back().icone, Icone::Exclamation);
    d.Text1->setText(QStringLiteral("0"));
    d.Text2->setText(QStringLiteral("0"));
    EXPECT_TRUE(d.Valide());
    EXPECT_EQ(d.ZoomE, 1.0f);
    EXPECT_FALSE(d.ZmmChange);
    EXPECT_EQ(d.Text1->text(), QStringLiteral("1"));
    QuandOuvert<Form4>([](Form4* d) {
        d->Text1->setText(QStringLiteral("3"));
        QTest::keyClick(d, Qt::Key_Escape);
    });
    QTest::keyClick(f.RTB1, Qt::Key_F7);
    EXPECT_FLOAT_EQ(f.e.Repere.ZoomE, 1.0f);
    EXPECT_EQ(f.NombreExecutions, 2); // the run follows the dialog in any case
}

TEST(Fenetre, CtrlF7RunsAtTheZoomOfZoomIni) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("' ZoomIni = 9\r\nZoomIni = 2\r\nCT = 1, 1\r\n"));
    EXPECT_FLOAT_EQ(f.e.Repere.ZoomDepart, 2.0f);
    QTest::keyClick(f.RTB1, Qt::Key_F7, Qt::ControlModifier);
    EXPECT_FLOAT_EQ(f.e.Repere.ZoomE, 2.0f);
    EXPECT_FLOAT_EQ(f.e.Repere.FacteurZ, 2.0f);
    EXPECT_EQ(f.NombreExecutions, 2);
}

TEST(Fenetre, ReferenceDialogOnF8) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    const double ox = f.e.Repere.SourisOrigineX, oy = f.e.Repere.SourisOrigineY;
    QString titre, champ;
    QuandOuvert<Form5>([&](Form5* d) {
        titre = d->windowTitle();
        champ = d->Text1->text();
        d->Text1->setText(QStringLiteral("10, 20§30"));
        QTest::keyClick(d, Qt::Key_F8);
    });
    QTest::keyClick(f.RTB1, Qt::Key_F8);
    EXPECT_EQ(titre, QStringLiteral("Mirel   RefCur   (F8, Ctrl-F8)"));
    EXPECT_EQ(champ, QStringLiteral("0, 0"));
    EXPECT_NEAR(f.RefCurX, ox + 10, 1e-6);
    EXPECT_NEAR(f.RefCurY, oy + 20, 1e-6);
    EXPECT_FLOAT_EQ(f.RefCurAngle, -30);
    // The field shows the reference back, with the angle.
    QuandOuvert<Form5>([&](Form5* d) {
        champ = d->Text1->text();
        QTest::keyClick(d, Qt::Key_Escape);
    });
    QTest::keyClick(f.RTB1, Qt::Key_F8);
    EXPECT_EQ(champ, QStringLiteral("10, 20§30"));
    // Ctrl-F8: back to the frame origin.
    QTest::keyClick(f.RTB1, Qt::Key_F8, Qt::ControlModifier);
    EXPECT_NEAR(f.RefCurX, ox, 1e-6);
    EXPECT_EQ(f.RefCurAngle, 0);
}

TEST(Fenetre, ReferenceFieldRules) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    const double ox = f.e.Repere.SourisOrigineX;
    EXPECT_FALSE(f.AppliqueRefCur(QStringLiteral("10 20")));
    ASSERT_EQ(b.boites.Messages().size(), 1);
    EXPECT_EQ(b.boites.Messages()[0], LoadResString(166));
    EXPECT_TRUE(f.AppliqueRefCur(QString()));
    EXPECT_NEAR(f.RefCurX, ox, 1e-6);
    EXPECT_TRUE(f.AppliqueRefCur(QStringLiteral("5,7z")));
    EXPECT_NEAR(f.RefCurX, 5, 1e-6); // from the lower left corner of the pane
    EXPECT_NEAR(f.RefCurY, 7, 1e-6);
    EXPECT_EQ(f.RefCurAngle, 0);
}

TEST(Fenetre, TailleCarCodeIsLimitedTo6And24) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    const double depart = f.RTB1->font().pointSizeF();
    b.boites.saisies = {QStringLiteral("3")};
    f.Mnu_TaillCar_Click();
    EXPECT_EQ(f.RTB1->font().pointSizeF(), 6);
    EXPECT_EQ(b.boites.vues.back().titre, QStringLiteral("Taille car. code"));
    EXPECT_EQ(b.boites.vues.back().texte.section(u'|', 1), QStringLiteral("%1").arg(depart));
    EXPECT_TRUE(b.config.Ecritures.contains(QStringLiteral("TailleCarCode = 6")));
    b.boites.saisies = {QStringLiteral("30")};
    f.Mnu_TaillCar_Click();
    EXPECT_EQ(f.RTB1->font().pointSizeF(), 24);
    const int ecritures = int(b.config.Ecritures.size());
    b.boites.saisies = {QStringLiteral("0")};
    f.Mnu_TaillCar_Click();
    b.boites.saisies = {QStringLiteral("abc")};
    f.Mnu_TaillCar_Click();
    b.boites.saisies = {std::nullopt};
    f.Mnu_TaillCar_Click();
    EXPECT_EQ(f.RTB1->font().pointSizeF(), 24);
    EXPECT_EQ(b.config.Ecritures.size(), ecritures);
    // The configuration key is limited alike.
    Banc c;
    c.config.Valeurs.TailleCarCode = 3;
    Form1& g = c.Demarre(QString::fromLatin1(Croix));
    EXPECT_EQ(g.RTB1->font().pointSizeF(), 6);
}

TEST(Fenetre, WiderCodeAndInitCode) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    const int avant = f.RTB1->width();
    f.Mnu_AgrandirCode_Click();
    EXPECT_FLOAT_EQ(f.RatioCode, 3.3f / 1.2f);
    EXPECT_GT(f.RTB1->width(), avant);
    for (int i = 0; i < 20; ++i) f.Mnu_AgrandirCode_Click();
    EXPECT_LE(f.RTB1->width() * 1.3, f.zone->width() * 1.3 / 1.0); // stops before the window
    EXPECT_GE(f.RTB1->width() * 1.3 / 1.2, f.zone->width() / 1.3 - 2);
    f.Mnu_IniCode_Click();
    EXPECT_FLOAT_EQ(f.RatioCode, 3.3f);
    EXPECT_EQ(f.RTB1->width(), avant);
    EXPECT_EQ(f.NombreExecutions, 2);
}

TEST(Fenetre, EditMenuSendsTheKeyStrokes) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("CT = 1, 1\r\nCT = 2, 2\r\n"));
    f.Mnu_Selectionner->trigger();
    EXPECT_TRUE(f.RTB1->textCursor().hasSelection());
    f.Mnu_Copier->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("CT = 1, 1\nCT = 2, 2\n"));
    f.Mnu_Supprimer->trigger();
    EXPECT_TRUE(f.RTB1->document()->isEmpty());
    f.Mnu_Coller->trigger();
    EXPECT_EQ(f.RTB1->TexteCrLf(), QStringLiteral("CT = 1, 1\r\nCT = 2, 2\r\n"));
    EXPECT_EQ(CouleurLigne(*f.RTB1, 1, 0), Editeur::Bleu);
    f.Mnu_Selectionner->trigger();
    f.Mnu_Couper->trigger();
    EXPECT_TRUE(f.RTB1->document()->isEmpty());
}

TEST(Fenetre, CodeMenuHidesAndShowsTheEditor) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    f.Mnu_Code->trigger();
    EXPECT_FALSE(f.RTB1->isVisible());
    EXPECT_FALSE(f.Text1->isVisible());
    EXPECT_FALSE(f.Text3->isVisible());
    EXPECT_TRUE(f.Text4->isVisible());
    EXPECT_EQ(f.LargeurEditeurUnites(), 0);
    f.Mnu_Code->trigger();
    EXPECT_TRUE(f.RTB1->isVisible());
}

TEST(Fenetre, ColourDialogInsertsRvbOrRgb) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("Couleur = "));
    CurseurEnFinDeLigne(*f.RTB1, 0);
    b.boites.couleur = QColor(10, 20, 30);
    f.Mnu_Couleur_Click();
    EXPECT_EQ(Ligne(*f.RTB1, 0), QStringLiteral("Couleur = RVB 10 20 30"));
    f.regl.LangueMasque = 400;
    f.Mnu_Couleur_Click();
    EXPECT_EQ(Ligne(*f.RTB1, 0), QStringLiteral("Couleur = RVB 10 20 30RGB 10 20 30"));
}

TEST(Fenetre, SyntaxTipOnAltF2) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("Arc = 30, 150, 60\r\n"));
    QTest::keyClick(f.RTB1, Qt::Key_F2, Qt::AltModifier);
    EXPECT_TRUE(f.form2->isVisible());
    EXPECT_EQ(f.form2->Texte(), LoadResString(203) + u'\n');
    EXPECT_TRUE(f.geometry().contains(f.form2->geometry()) ||
                QRect(f.mapToGlobal(QPoint(0, 0)), f.size()).contains(f.form2->geometry()));
    QTest::keyClick(f.RTB1, Qt::Key_Right);
    EXPECT_FALSE(f.form2->isVisible());
}

// --- files, export, unload

TEST(Fenetre, SaveAsCutsAfterTheLastOfTwoDotsAndSaveWritesTheSameFile) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    const QString cible = b.travail.path() + QStringLiteral("/copie.v2.dat");
    b.boites.enregistrements = {cible};
    QTest::keyClick(f.RTB1, Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    const QString ecrit = b.travail.path() + QStringLiteral("/copie.v2");
    EXPECT_TRUE(QFileInfo::exists(ecrit));
    EXPECT_EQ(f.NomCourant, ecrit);
    EXPECT_FALSE(f.Modifie());
    QTest::keyClick(f.RTB1, Qt::Key_End);
    QTest::keyClick(f.RTB1, Qt::Key_Return);
    QTest::keyClicks(f.RTB1, "CT = 2, 2");
    EXPECT_TRUE(f.Modifie());
    f.Mnu_EnregistrerS_Click();
    QFile fi(ecrit);
    ASSERT_TRUE(fi.open(QIODevice::ReadOnly));
    EXPECT_TRUE(QString::fromUtf8(fi.readAll()).contains(QStringLiteral("CT = 2, 2")));
    EXPECT_FALSE(f.Modifie());
}

TEST(Fenetre, OpenRefusesAnUninstallersData) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    b.boites.ouvertures = {b.Fichier(QStringLiteral("unins000.dat"), QStringLiteral("x"))};
    f.Mnu_Ouvrir_Click();
    ASSERT_EQ(b.boites.Messages().size(), 1);
    EXPECT_TRUE(b.boites.Messages()[0].endsWith(QStringLiteral("Ist keine Mirel Datei.")));
    EXPECT_TRUE(f.RTB1->TexteCrLf().startsWith(QStringLiteral("CentreE")));
    b.boites.ouvertures = {b.Fichier(QStringLiteral("unins000.txt"), QStringLiteral("CT = 3, 3"))};
    f.Mnu_Ouvrir_Click();
    EXPECT_EQ(f.RTB1->TexteCrLf(), QStringLiteral("CT = 3, 3\r\n"));
    EXPECT_EQ(f.NombreExecutions, 2);
}

TEST(Fenetre, ExportWritesPdfSvgAndPng) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    for (const QString ext : {QStringLiteral("pdf"), QStringLiteral("svg"), QStringLiteral("png")}) {
        const QString sortie = b.travail.path() + QStringLiteral("/export.") + ext;
        b.boites.enregistrements = {sortie};
        f.Exporte(ext);
        EXPECT_TRUE(QFileInfo(sortie).size() > 0) << ext.toStdString();
    }
    EXPECT_TRUE(b.boites.Messages().isEmpty());
    QImage png(b.travail.path() + QStringLiteral("/export.png"));
    EXPECT_GT(Encre(png), 0);
}

TEST(Fenetre, EmptyTextUnloadAsksNothingEvenIfModified) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral(""));
    f.RTB1->ChargeTexte(QString());
    f.SetModifie(true);
    EXPECT_TRUE(f.close());
    EXPECT_EQ(b.boites.Nombre(QStringLiteral("message")), 0);
    EXPECT_TRUE(b.config.Ecritures.contains(QStringLiteral("DoubleClic = Non")));
}

TEST(Fenetre, UnloadAsksToSaveAndWritesTheKeys) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    f.SetModifie(true);
    b.boites.reponses = {Reponse::Annuler};
    EXPECT_FALSE(f.close());
    EXPECT_TRUE(f.isVisible());
    ASSERT_EQ(b.boites.Messages().size(), 1);
    EXPECT_EQ(b.boites.Messages()[0], LoadResString(118));
    EXPECT_EQ(b.boites.vues.back().boutons, Boutons::OuiNonAnnuler);
    EXPECT_TRUE(b.config.Ecritures.isEmpty());
    const QString dessin = b.travail.path() + QStringLiteral("/$Dessin_tmp.txt");
    b.Fichier(QStringLiteral("$Dessin_tmp.txt"), QStringLiteral("1 2"));
    f.Mnu_DblClick->setChecked(true);
    b.boites.reponses = {Reponse::Non};
    EXPECT_TRUE(f.close());
    EXPECT_TRUE(b.config.Ecritures.contains(QStringLiteral("FichierDat =") + f.FichierCourant));
    EXPECT_TRUE(b.config.Ecritures.contains(QStringLiteral("DoubleClic = Oui")));
    EXPECT_FALSE(QFileInfo::exists(dessin));
    EXPECT_EQ(QDir::currentPath() + u'/', f.DossierDepart);
}

TEST(Fenetre, LanguageMenuRewritesTheCaptions) {
    Banc b;
    Form1& f = b.Demarre(QString::fromLatin1(Croix));
    b.boites.langues = [](ValeursConfig& v) {
        v.Langue = v.LangueMenu = v.LangueAide = v.LangueMasq = QStringLiteral("Deutsch");
    };
    f.Mnu_Langue->trigger();
    EXPECT_EQ(f.regl.LangueMenus, 800);
    EXPECT_EQ(f.Mnu_Fichier->title(), LoadResString(810));
    EXPECT_EQ(f.Text1->toolTip(), LoadResString(930));
    EXPECT_TRUE(b.config.Ecritures.contains(QStringLiteral("LangueMenu = Deutsch")));
}

// --- Part 4.2 through the window: the commands of src/app/core/fichiers

TEST(Fenetre, SaveOfAMeterImportOpensSaveAs) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("CT = 1, 1\r\n"));
    const QString mtr = b.Fichier(QStringLiteral("cadran.mtr"), QStringLiteral("MTR DATA"));
    f.FichierCourant = mtr; // as the Meter import leaves it (Part 4.8)
    f.NomCourant = mtr;
    const QString dat = b.travail.path() + QStringLiteral("/cadran.dat");
    b.boites.enregistrements = {dat};
    f.Mnu_EnregistrerS_Click();
    ASSERT_EQ(b.boites.Nombre(QStringLiteral("enregistrer")), 1);
    EXPECT_EQ(b.boites.vues.back().titre, mtr); // initial name: NomCourant
    QFile m(mtr);
    ASSERT_TRUE(m.open(QIODevice::ReadOnly));
    EXPECT_EQ(m.readAll(), QByteArray("MTR DATA"));
    QFile d(dat);
    ASSERT_TRUE(d.open(QIODevice::ReadOnly));
    EXPECT_EQ(d.readAll(), QByteArray("CT = 1, 1\r\n"));
    EXPECT_EQ(f.NomCourant, dat);
    EXPECT_FALSE(f.Modifie());
}

TEST(Fenetre, OneLineWithoutLineEndLoadsWithCrLfAndSaveKeepsIt) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("CT = 1, 1"));
    EXPECT_EQ(f.RTB1->TexteCrLf(), QStringLiteral("CT = 1, 1\r\n"));
    EXPECT_EQ(f.RTB1->document()->blockCount() - 1, 1);
    f.Mnu_EnregistrerS_Click();
    QFile fi(f.FichierCourant);
    ASSERT_TRUE(fi.open(QIODevice::ReadOnly));
    EXPECT_EQ(fi.readAll(), QByteArray("CT = 1, 1\r\n"));
}

// A Windows-1252 file (the original's files) is saved back in Windows-1252.
TEST(Fenetre, Windows1252FileIsSavedBackInItsEncoding) {
    Banc b;
    const QString chemin = b.travail.path() + QStringLiteral("/ancien.dat");
    {
        QFile fi(chemin);
        ASSERT_TRUE(fi.open(QIODevice::WriteOnly));
        fi.write(QByteArray("Texte = 1, 1, , , \xe9t\xe9\r\n"));
    }
    Form1& f = b.Fenetre();
    f.Demarrer(chemin);
    EXPECT_EQ(Ligne(*f.RTB1, 0), QStringLiteral("Texte = 1, 1, , , été"));
    f.RTB1->InsereTexte(QStringLiteral("' à\r\n"));
    f.Mnu_EnregistrerS_Click();
    QFile fi(chemin);
    ASSERT_TRUE(fi.open(QIODevice::ReadOnly));
    EXPECT_TRUE(fi.readAll().contains(QByteArray("' \xe0\r\n")));
}

// A failed save shows the system's error in a box; caption and Modifie are
// updated all the same (Part 4.2, Failure handling). (The old file kept
// intact: Fichiers.SaveIntoReadOnlyFolderKeepsOldFileAndReportsError.)
TEST(Fenetre, FailedSaveShowsTheSystemsError) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("CT = 1, 1\r\n"));
    f.FichierCourant = b.travail.path() + QStringLiteral("/absent/essai.dat");
    f.RTB1->InsereTexte(QStringLiteral("CT = 2, 2\r\n"));
    ASSERT_TRUE(f.Modifie());
    f.Mnu_EnregistrerS_Click();
    ASSERT_EQ(b.boites.Messages().size(), 1);
    EXPECT_FALSE(b.boites.Messages()[0].isEmpty());
    EXPECT_FALSE(QFileInfo::exists(f.FichierCourant));
    EXPECT_FALSE(f.Modifie());
}

// Alt-L (Part 4.2): one file gives its path at the caret; with Ctrl several
// files give the folder then each name, joined by the first separator.
TEST(Fenetre, FileListInsertsThePathsAtTheCaretWithoutARun) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("Fichier = \r\n"));
    const int runs = f.NombreExecutions;
    CurseurEnFinDeLigne(*f.RTB1, 0);
    b.boites.listes = {{QStringLiteral("/dossier/trou.dat")}};
    f.Mnu_Liste_Fic->trigger();
    EXPECT_EQ(Ligne(*f.RTB1, 0), QStringLiteral("Fichier = /dossier/trou.dat"));
    ASSERT_EQ(b.boites.Nombre(QStringLiteral("liste")), 1);
    EXPECT_TRUE(b.boites.vues.back().texte.startsWith(LoadResString(106) + QStringLiteral(" (*.*)")));
    EXPECT_EQ(f.NombreExecutions, runs); // the text is not run
    // Cancel inserts nothing.
    f.Mnu_Liste_Fic->trigger();
    EXPECT_EQ(Ligne(*f.RTB1, 0), QStringLiteral("Fichier = /dossier/trou.dat"));
}

TEST(Fenetre, VersionChangeOpensForm3PresetFromTheFile) {
    Banc b;
    b.config.Valeurs.Langue = QStringLiteral("Deutsch");
    b.config.Valeurs.LangueMenu = QStringLiteral("English");
    b.config.Valeurs.LangueAide = QStringLiteral("Castellano");
    b.config.Valeurs.LangueMasq = QStringLiteral("English");
    b.config.Valeurs.PremiereLigne = QStringLiteral("'Fichier de configuration du Programme Mirel V2.05");
    ValeursConfig vu;
    b.boites.langues = [&vu](ValeursConfig& v) { vu = v; };
    Form1& f = b.Demarre(QStringLiteral("CT = 1, 1\r\n"));
    EXPECT_EQ(b.boites.Nombre(QStringLiteral("langues")), 1);
    EXPECT_EQ(vu.Langue, QStringLiteral("Deutsch"));
    EXPECT_EQ(vu.LangueMenu, QStringLiteral("English"));
    EXPECT_EQ(vu.LangueAide, QStringLiteral("Castellano"));
    EXPECT_EQ(vu.LangueMasq, QStringLiteral("English"));
    EXPECT_TRUE(b.config.Ecritures.contains(QStringLiteral("Langue = Deutsch")));
    EXPECT_EQ(f.regl.LangueMessages, 800);
}

// Part 4.5: 16 and 0 ask again; a valid number sets its patch and is written.
TEST(Fenetre, PatchMenuAsksForANumber) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("CT = 1, 1\r\n"));
    ASSERT_TRUE(f.Mnu_Patchs->isEnabled());
    b.boites.saisies = {QStringLiteral("16"), QStringLiteral("0"), QStringLiteral("2")};
    f.Mnu_Patchs->trigger();
    EXPECT_EQ(b.boites.Nombre(QStringLiteral("saisie")), 3);
    EXPECT_EQ(b.boites.vues.back().texte.section(u'|', 0, 0),
              LoadResString(121) + QStringLiteral("\n\n") + LoadResString(122));
    EXPECT_TRUE(b.config.Ecritures.contains(QStringLiteral("Patchs = 2")));
    EXPECT_EQ(f.regl.Patchs, 2);
    // "-2" clears it again; an empty answer leaves.
    b.boites.saisies = {QStringLiteral("-2")};
    f.Mnu_Patchs->trigger();
    EXPECT_EQ(f.regl.Patchs, 0);
    b.boites.saisies = {QStringLiteral("")};
    f.Mnu_Patchs->trigger();
    EXPECT_EQ(f.regl.Patchs, 0);
}

// --- second reading of Parts 4.1, 4.2, 4.3

// Open step 3: the runs look for included files and New for its template in
// the opened file's folder.
TEST(Fenetre, OpenMovesTheWorkingFolderOfTheRun) {
    Banc b;
    QTemporaryDir autre;
    auto ecrit = [&](const QString& nom, const QByteArray& t) {
        QFile fi(autre.filePath(nom));
        fi.open(QIODevice::WriteOnly);
        fi.write(t);
    };
    ecrit("lib.dat", "%IRE$#0vu = 1\r\n");
    ecrit("Mirel.daN", "' other template\r\n");
    ecrit("main.dat", "Fichier = lib\r\n%f = %File\r\n%p = %Path\r\n");
    Form1& f = b.Demarre(QStringLiteral("' start\r\n"));
    b.boites.ouvertures = {autre.filePath("main.dat")};
    f.Mnu_Ouvrir_Click();
    EXPECT_TRUE(b.boites.Messages().isEmpty()) << b.boites.Messages().join("|").toStdString();
    EXPECT_EQ(f.e.PileFic[0].NbVar, 1);
    // %File and %Path name the main file (Part 1.3).
    EXPECT_EQ(f.e.PileFic[1].ValVar[1], QStringLiteral("main.dat"));
    EXPECT_EQ(f.e.PileFic[1].ValVar[2], QDir(autre.path()).absolutePath() + u'/');
    f.Mnu_Nouveau_Click();
    EXPECT_EQ(f.RTB1->TexteCrLf(), QStringLiteral("' other template\r\n"));
}

// Part 4.1: the accelerators Alt-C and Alt-L reach their dialogs from the editor.
TEST(Fenetre, AltCAndAltLReachTheirDialogs) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("Couleur = \r\n"));
    CurseurEnFinDeLigne(*f.RTB1, 0);
    b.boites.couleur = QColor(10, 20, 30);
    QTest::keyClick(f.RTB1, Qt::Key_C, Qt::AltModifier);
    EXPECT_EQ(b.boites.Nombre(QStringLiteral("couleur")), 1);
    EXPECT_EQ(Ligne(*f.RTB1, 0), QStringLiteral("Couleur = RVB 10 20 30"));
    QTest::keyClick(f.RTB1, Qt::Key_L, Qt::AltModifier);
    EXPECT_EQ(b.boites.Nombre(QStringLiteral("liste")), 1);
}

// Start-up step 7: line 1 has only to contain "Mirel V" and the version.
TEST(Fenetre, VersionFoundInsideLineOneOpensNoForm3) {
    Banc b;
    b.config.Valeurs.PremiereLigne = QStringLiteral("'Fichier de configuration du Programme Mirel V") +
                                     TexteVersionProgramme() + QStringLiteral(" (copie)");
    b.Demarre(QStringLiteral("CT = 1, 1\r\n"));
    EXPECT_EQ(b.boites.Nombre(QStringLiteral("langues")), 0);
}

// The syntax tip reduces "If " and "Ift " only: an ElseIf line has no row.
TEST(Fenetre, SyntaxTipOnAnElseIfLineIsTheUnknownRow) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("ElseIf %A = 1 Then\r\n"));
    QTest::keyClick(f.RTB1, Qt::Key_F2, Qt::AltModifier);
    EXPECT_EQ(f.form2->Texte(), LoadResString(241) + u'\n');
}

TEST(Fenetre, SyntaxTipIsTheTextPlusFivePixels) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("Arc = 30, 150, 60\r\n"));
    QTest::keyClick(f.RTB1, Qt::Key_F2, Qt::AltModifier);
    const QFontMetrics fm(QFont(QStringLiteral("Times New Roman"), 12));
    EXPECT_EQ(f.form2->size(), fm.size(0, f.form2->Texte()) + QSize(5, 5));
}

// Part 4.3: the "?" block goes in behind the caret's line.
TEST(Fenetre, QuestionFormBlockGoesBehindTheCaretsLine) {
    Banc b;
    b.Fichier(QStringLiteral("c.dat"), QStringLiteral("' Note\r\n"));
    Form1& f = b.Demarre(QStringLiteral("Trait = 0,0,1,1\r\nFichier = c\r\nTrait = 0,0,2,2\r\n"));
    QTextCursor c(f.RTB1->document()->findBlockByNumber(1));
    c.movePosition(QTextCursor::EndOfBlock);
    c.insertText(QStringLiteral(", ?"));
    f.RTB1->setTextCursor(QTextCursor(f.RTB1->document()->findBlockByNumber(2)));
    f.Visualiser();
    EXPECT_EQ(Ligne(*f.RTB1, 2), QStringLiteral("Trait = 0,0,2,2"));
    EXPECT_EQ(Ligne(*f.RTB1, 3), QStringLiteral("' Commentaires du fichier commande"));
    EXPECT_EQ(Ligne(*f.RTB1, 4), QStringLiteral("' externe c.dat"));
    EXPECT_EQ(Ligne(*f.RTB1, 5), QStringLiteral("' Note"));
}

// Part 1.7: the Cancel button of Input says string 172.
TEST(Fenetre, InputCancelButtonIsString172) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("Input = Rayon, %R\r\n"));
    f.Visualiser();
    EXPECT_GE(b.boites.Nombre(QStringLiteral("saisie")), 1);
    EXPECT_EQ(b.boites.annulerVu, LoadResString(172));
    EXPECT_EQ(LoadResString(172), QStringLiteral("Annuler"));
}

// Both runs of the window (F4 and the zoom dialog's) name the main file.
TEST(Fenetre, ZoomDialogRunNamesTheMainFileToo) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("%f = %File\r\n"), QStringLiteral("a.dat"));
    EXPECT_EQ(f.e.PileFic[1].ValVar[1], QStringLiteral("a.dat"));
    b.boites.enregistrements = {b.travail.path() + QStringLiteral("/b.dat")};
    f.Mnu_Enregistrer_Click();
    f.RelanceSansZoom();
    EXPECT_EQ(f.e.PileFic[1].ValVar[1], QStringLiteral("b.dat"));
}
