// The main window: start-up, runs and keys, the mouse read-out, dialogs, files.
#include "outils_fenetre.h"

#include "app/core/externes.h"
#include "app/impression.h"
#include "drawing/surface.h"
#include "language/etat.h"
#include "language/hote.h"

#include <QClipboard>
#include <QMenuBar>
#include <QMouseEvent>
#include <QRegularExpression>

namespace {

void Souris(QWidget* w, QEvent::Type type, QPointF p, Qt::MouseButtons b = {}, Qt::KeyboardModifiers m = {}) {
    QMouseEvent ev(type, p, w->mapToGlobal(p), type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, b, m);
    QApplication::sendEvent(w, &ev);
}
void Bouge(Form1& f, QPointF p, Qt::MouseButtons b = {}) { Souris(f.pane, QEvent::MouseMove, p, b); }
void DoubleClic(Form1& f, QPointF p, Qt::KeyboardModifiers m = {}) {
    Souris(f.pane, QEvent::MouseButtonDblClick, p, Qt::LeftButton, m);
}

// Runs `action` on the modal dialog of type D once it is open.
template <class D> void QuandOuvert(std::function<void(D*)> action) {
    auto* minuteur = new QTimer;
    QObject::connect(minuteur, &QTimer::timeout, [minuteur, action] {
        if (auto* d = qobject_cast<D*>(QApplication::activeModalWidget()))
            minuteur->stop(), minuteur->deleteLater(), action(d);
    });
    minuteur->start(10);
}

bool Encre(const QImage& im) {
    for (int y = 0; y < im.height(); ++y)
        for (int x = 0; x < im.width(); ++x)
            if (qGray(im.pixel(x, y)) < 200) return true;
    return false;
}

bool Apparie(const char* motif, const QString& texte) { return QRegularExpression(motif).match(texte).hasMatch(); }

const QString Croix = "CentreE = 100, 80\r\nCT = 10, 10\r\n";

} // namespace

TEST(Fenetre, CaptionMenusAndStatusFields) {
    Banc b;
    Form1& f = b.Demarre("CT = 1, 1\r\n");
    EXPECT_EQ(f.windowTitle(), "Mirel  V" + TexteVersionProgramme() + "   Fichier: " + b.travail.path() + "/essai.dat");
    f.Version = "2.06a ";
    f.NomCourant.clear();
    EXPECT_EQ(f.TexteCaption(), "Mirel  V2.06a ");
    EXPECT_EQ(f.Mnu_Couper->text(), "Couper" + QString(24, u' ') + "\tCtrl-X");
    EXPECT_FALSE(f.Mnu_Aide->isVisible()); // mask and menus in one language: one help entry
    for (QAction* a : {f.Mnu_Masque, f.Mnu_Dessin, f.Mnu_Polices, f.Mnu_Ouvrir, f.Mnu_Imprimer, f.Mnu_Visualiser,
                       f.Mnu_Zoom, f.Mnu_RefCurseur, f.Mnu_TaillCar, f.Mnu_Couleur, f.Mnu_ExportPdf, f.Mnu_Patchs,
                       f.Mnu_Liste_Fic})
        EXPECT_TRUE(a->isVisible() && a->isEnabled()) << a->objectName().toStdString();
    EXPECT_TRUE(b.boites.vues.empty() && f.NombreExecutions == 1 && f.RTB1->TexteCrLf() == "CT = 1, 1\r\n");
    // Text1 to Text4 stand right to left, left of the editor, at the bottom.
    QLabel* champs[] = {f.Text1, f.Text2, f.Text3, f.Text4};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(champs[i]->geometry().right() + 1, i == 0 ? f.RTB1->x() : champs[i - 1]->x());
    EXPECT_EQ(f.Text1->geometry().bottom() + 1, f.zone->height());
    EXPECT_EQ(f.Text1->text(), "L 1/2"); // the empty line behind the last CR LF counts
    EXPECT_EQ(f.Text4->text(), "1 : 1  0  ");
    EXPECT_TRUE(TexteAPropos(0, "0.01").contains("Version : 0.01"));
}

// The command line's file (quotes removed), else the last one, else Open; cancelled: the template.
TEST(Fenetre, StartUpFile) {
    for (auto [ligne, dernier, charge] : {std::tuple{"\"@mon cadr\"an.dat\"", "", true}, {"", "@mon cadran.dat", true},
                                          {"@absent.dat", "", false}, {"", "", false}}) {
        Banc b;
        const QString chemin = b.Fichier("mon cadran.dat", "CT = 2, 2\r\n");
        b.Fichier("Mirel.daN", "' modèle\r\n");
        b.config.Pose(CleCfg::FichierDat, QString(dernier).replace("@", b.travail.path() + "/"));
        Form1& f = b.Fenetre();
        f.Demarrer(QString(ligne).replace("@", b.travail.path() + "/"));
        EXPECT_EQ(b.boites.Nombre("ouvrir"), charge ? 0 : 1) << ligne;
        EXPECT_EQ(f.FichierCourant, charge ? chemin : QString()) << ligne;
        EXPECT_EQ(f.RTB1->TexteCrLf(), charge ? "CT = 2, 2\r\n" : "' modèle\r\n");
        EXPECT_TRUE(!f.Modifie() && f.DossierFichier == b.travail.path() + u'/');
    }
}

// Without a printer, Qt's PDF printer stands in; export writes PDF, SVG and PNG.
TEST(Fenetre, NoPrinterStartsWithThePdfPrinterAndExportWritesFiles) {
    Banc b;
    b.imprimante.clear();
    Form1& f = b.Demarre(Croix);
    EXPECT_TRUE(f.ImprimantePdf && Encre(f.pane->image()));
    for (const char* ext : {"pdf", "svg", "png"}) {
        b.boites.reponses = {b.travail.filePath("export.") + ext};
        f.Exporte(ext);
        EXPECT_GT(QFileInfo(b.travail.filePath("export.") + ext).size(), 0) << ext;
    }
    EXPECT_TRUE(b.boites.Messages().isEmpty() && Encre(QImage(b.travail.filePath("export.png"))));
}

// The language dialog, preset from the file, opens on an unset language or another version; its choice applies.
TEST(Fenetre, LanguageDialog) {
    const QString entete = "'Fichier de configuration du Programme Mirel V";
    for (auto [version, ouvre] : {std::pair{QString("2.05"), 1}, {TexteVersionProgramme() + " (copie)", 0}}) {
        Banc b;
        b.config.Lignes[0] = entete + version;
        b.Demarre("CT = 1, 1\r\n");
        EXPECT_EQ(b.boites.Nombre("langues"), ouvre) << version.toStdString();
        EXPECT_EQ(b.config.Ecritures.contains("Langue = Français"), ouvre == 1); // closed: the file's choice
    }
    Banc b;
    b.config.Pose(CleCfg::Langue, QString());
    b.config.Pose(CleCfg::LangueAide, "Castellano");
    for (const QString& cle : {CleCfg::LangueMenu, CleCfg::LangueMasq}) b.config.Pose(cle, "English");
    ValeursConfig vu;
    b.boites.langues = [&vu](ValeursConfig& v) { vu = v, v.Langue = "English"; };
    Form1& f = b.Demarre("CT = 1, 1\r\n");
    EXPECT_EQ(QStringList({vu.Langue, vu.LangueMenu, vu.LangueAide, vu.LangueMasq}).join(u','),
              ",English,Castellano,English");
    EXPECT_TRUE(b.config.Ecritures.contains("Langue = English") && f.regl.LangueMessages == 400);
    b.boites.langues = [](ValeursConfig& v) { v.Langue = v.LangueMenu = v.LangueAide = v.LangueMasq = "Deutsch"; };
    f.Mnu_Langue->trigger();
    EXPECT_EQ(f.Mnu_Fichier->title(), LoadResString(810));
    EXPECT_EQ(f.Text1->toolTip(), LoadResString(930));
}

// Unset languages start on the first (the mask's stays unset); messages and menus cascade rightwards.
TEST(Fenetre, LanguageDialogWidgetsCascade) {
    Form3 d(nullptr, ValeursConfig());
    const std::tuple<int, int, const char*> clics[] = {
        {0, -1, "Français,Français,Français,"}, {0, 1, "English,English,English,English"},
        {1, 2, "English,Deutsch,Deutsch,Deutsch"}, {2, 0, "English,Deutsch,Français,Deutsch"},
        {3, 3, "English,Deutsch,Français,Castellano"}};
    for (auto [cadre, langue, attendu] : clics) {
        if (langue >= 0) d.Option(cadre, langue)->click();
        const ValeursConfig c = d.Choix(ValeursConfig());
        EXPECT_EQ(QStringList({c.Langue, c.LangueMenu, c.LangueAide, c.LangueMasq}).join(u','), attendu);
    }
}

// External commands of both folders, sorted; a later name equal in upper case goes.
TEST(Fenetre, ExternalCommandsAreSortedAndLaterDuplicatesGo) {
    QTemporaryDir prog, trav;
    for (const char* n : {"b.dmk", "A.dmk", "mce.dmk", "notes.txt"}) QFile(prog.filePath(n)).open(QIODevice::WriteOnly);
    for (const char* n : {"a.dmk", "c.dmk", "MCE.dmk"}) QFile(trav.filePath(n)).open(QIODevice::WriteOnly);
    QStringList noms;
    for (const CommandeExterne& c : ListeCommandesExternes(prog.path(), trav.path()))
        noms << c.nom + (c.dossier == trav.path() + u'/' ? "/t" : "/p");
    EXPECT_EQ(noms, (QStringList{"A/p", "MCE/t", "b/p", "c/t"}));
}

// F4 and the menu run, after colouring the line under edit; Input's Cancel; CentreCurseur's pointer.
TEST(Fenetre, F4RunsAfterColouringTheLineUnderEdit) {
    Banc b;
    Form1& f = b.Demarre(Croix);
    QTest::keyClick(f.RTB1, Qt::Key_F4);
    f.Mnu_Visualiser->trigger();
    QTest::keyClick(f.pane, Qt::Key_F4);
    EXPECT_TRUE(f.RTB1->TexteCrLf() == Croix && f.NombreExecutions == 4);
    QTest::keyClick(f.RTB1, Qt::Key_End, Qt::ControlModifier);
    QTest::keyClicks(f.RTB1, "ct = 5, 5");
    QTest::keyClick(f.RTB1, Qt::Key_F4);
    EXPECT_TRUE(Ligne(*f.RTB1, 2) == "CT = 5, 5" && CouleurLigne(*f.RTB1, 2, 0) == Editeur::Bleu);
    EXPECT_FLOAT_EQ(f.e.Repere.CTx, 5);
    f.Mnu_CentreCurseur_Click();
    const QPoint milieu((f.zone->width() - f.RTB1->width()) / 2, f.zone->height() / 2);
    EXPECT_EQ(QCursor::pos(), f.zone->mapToGlobal(milieu));
    f.RTB1->ChargeTexte("Input = Rayon, %R\r\n");
    f.Visualiser();
    EXPECT_EQ(b.boites.annulerVu, LoadResString(172));
}

// Esc stops a run, a loop of lines or a single command that draws for long (a
// comma forgotten: a chart of 8180 levels); meanwhile the window is busy: wait
// cursor, menus off, keys swallowed.
TEST(Fenetre, EscStopsARun) {
    for (const QString programme : {"boucle:\r\nCT = 1, 1\r\nGoto boucle\r\n", "PalCoul3 = 8 180, 80\r\n"}) {
        Banc b;
        const QString chemin = b.Fichier("boucle.dat", programme.toUtf8());
        Form1& f = b.Fenetre();
        QTimer minuteur; // Esc once the command loop runs: the run's preparation clears an earlier one
        QObject::connect(&minuteur, &QTimer::timeout, &f, [&] {
            if (!f.e.ExecutionEnCours || f.e.NiveauCourant != 1) return;
            minuteur.stop();
            EXPECT_EQ(QApplication::overrideCursor() ? QApplication::overrideCursor()->shape() : -1, Qt::WaitCursor);
            EXPECT_FALSE(f.menuBar()->isEnabled() || f.Mnu_Visualiser->isEnabled());
            QTest::keyClick(f.RTB1, Qt::Key_F4); // swallowed: a run is in progress
            QTest::keyClick(f.RTB1, Qt::Key_A);  // the disabled window takes no text
            EXPECT_EQ(f.NombreExecutions, 1);
            QTest::keyClick(f.RTB1, Qt::Key_Escape);
        });
        minuteur.start(50);
        f.Demarrer(chemin);
        EXPECT_TRUE(f.e.ArretDemande && f.RTB1->TexteCrLf() == programme);
        EXPECT_TRUE(f.menuBar()->isEnabled() && f.Mnu_Visualiser->isEnabled() && !QApplication::overrideCursor());
        EXPECT_TRUE(b.boites.Messages().isEmpty());
    }
}

// Closing asks to save (Cancel stays), writes the keys, removes the drawing's file; Alt-F4 closes.
TEST(Fenetre, UnloadAsksToSaveAndWritesTheKeys) {
    Banc b;
    Form1& f = b.Demarre(Croix);
    f.SetModifie(true);
    b.boites.reponses = {int(Reponse::Annuler)};
    EXPECT_FALSE(f.close());
    EXPECT_EQ(b.boites.Messages(), QStringList{LoadResString(118)});
    EXPECT_TRUE(b.boites.vues.back().boutons == Boutons::OuiNonAnnuler && b.config.Ecritures.isEmpty());
    const QString dessin = b.Fichier("$Dessin_tmp.txt", "1 2");
    f.Mnu_DblClick->setChecked(true);
    f.RTB1->ChargeTexte(""); // an empty text asks nothing, even modified
    f.SetModifie(true);
    QTest::keyClick(f.RTB1, Qt::Key_F4, Qt::AltModifier);
    EXPECT_TRUE(!f.isVisible() && b.boites.Messages().size() == 1 && !QFileInfo::exists(dessin));
    EXPECT_TRUE(b.config.Ecritures.contains("FichierDat =" + f.FichierCourant) &&
                b.config.Ecritures.contains("DoubleClic = Oui"));
    EXPECT_EQ(QDir::currentPath() + u'/', f.DossierDepart);
}

// The pane's image has the screen's pixel ratio; a resize reaches the drawing at the next run.
TEST(Fenetre, PaneImageFollowsTheDevicePixelRatioAndTheNextRunTheSize) {
    Banc b;
    Form1& f = b.Demarre(Croix);
    const double dpr = f.pane->devicePixelRatioF();
    if (qEnvironmentVariable("QT_SCALE_FACTOR") == "2") EXPECT_EQ(dpr, 2.0);
    const QImage image = f.pane->image();
    EXPECT_TRUE(image.devicePixelRatio() == dpr && image.width() == int(std::ceil(f.pane->width() * dpr)));
    EXPECT_NEAR(f.e.Repere.LargeurFenetreMm, f.pane->width() * 25.4 / f.pane->logicalDpiX(), 1e-3);
    f.resize(f.width() - 200, f.height() - 100);
    QApplication::processEvents();
    EXPECT_TRUE(f.NombreExecutions == 1 && f.pane->image() == image);
    EXPECT_EQ(f.RTB1->width(), int(f.zone->width() / f.RatioCode));
    f.Visualiser();
    EXPECT_NE(f.pane->image().size(), image.size());
}

// A failing line is red, through another run and Ctrl-K, until edited; the box names it.
TEST(Fenetre, FailingLineIsMarkedRedAndTheBoxNamesIt) {
    Banc b;
    Form1& f = b.Demarre("CT = 1, 1\r\nfoo = 2\r\nCT = 2, 2\r\n");
    EXPECT_EQ(b.boites.Messages(), QStringList{LoadResString(124) + "2: foo = 2\r\n"});
    EXPECT_EQ(f.RTB1->LigneCaret(), 1);
    QTest::keyClick(f.RTB1, Qt::Key_F4);
    QTest::keyClick(f.RTB1, Qt::Key_K, Qt::ControlModifier);
    for (auto [ligne, col, couleur] : {std::tuple{1, 0, Editeur::Rouge}, {1, 6, Editeur::Rouge}, {0, 0, Editeur::Bleu}})
        EXPECT_EQ(CouleurLigne(*f.RTB1, ligne, col), couleur);
    CurseurEnFinDeLigne(*f.RTB1, 1);
    QTest::keyClick(f.RTB1, Qt::Key_3);
    EXPECT_TRUE(CouleurLigne(*f.RTB1, 1, 0) == Editeur::Noir && f.Modifie());
}

// "?" rewrites its line (marking the text modified); a file's "?" block goes behind the caret's line.
TEST(Fenetre, QuestionMarkRewritesTheEditor) {
    Banc b;
    b.Fichier("c.dat", "' Note\r\n");
    Form1& f = b.Demarre("CentreE = 10, 10\r\nCT = 5, 5\r\n?\r\n");
    EXPECT_TRUE(Ligne(*f.RTB1, 2) == "'? =0, 0" && CouleurLigne(*f.RTB1, 2, 0) == Editeur::Vert);
    f.RTB1->ChargeTexte("CT = 5, 5\r\n?\r\nFichier = c, ?\r\nTrait = 0,0,2,2\r\n");
    f.SetModifie(false);
    f.RTB1->setTextCursor(QTextCursor(f.RTB1->document()->findBlockByNumber(3)));
    f.Visualiser();
    EXPECT_EQ(f.RTB1->TexteCrLf(), "CT = 5, 5\r\n'? =0, 0\r\nFichier = c, ?\r\nTrait = 0,0,2,2\r\n"
                                   "' Commentaires du fichier commande\r\n' externe c.dat\r\n' Note\r\n");
    EXPECT_TRUE(f.Modifie());
}

// The read-out: angle 0 within 0.05 of the reference, its formats, and the fields under the mouse.
TEST(Fenetre, MouseExactlyOnTheReferenceReadsZeroAndTheReadOutFollowsRefCurAltZoomAndButtons) {
    for (auto [x, y, angle] : {std::tuple{10.03, 20.03, 0.0}, {11.0, 21.0, 45.0}, {9.0, 21.0, 135.0},
                               {10.0, 25.0, 90.0}, {10.0, 15.0, 270.0}, {11.0, 19.0, -45.0}})
        EXPECT_NEAR(CalculeLecture(x, y, 10, 20, 0).angle, angle, 1e-9) << x << " " << y; // within 0.05: 0
    EXPECT_EQ(CalculeLecture(10, 20, 10, 20, 0.3).rayon, 0);
    for (auto [v, zoom, texte] : {std::tuple{12.345, 0.49f, "12"}, {12.345, 0.5f, "12.3"}, {12.345, 4.99f, "12.3"},
                                  {12.345, 5.0f, "12.35"}, {-2.5, 0.1f, "-3"}})
        EXPECT_EQ(FormatZoom(v, zoom), texte) << zoom;
    EXPECT_EQ(FormatDiese(12), "12.");
    // The read-out is in the axes of RefCur, turned; with Alt, about the last Alt click, on green.
    Banc b;
    Form1& f = b.Demarre("CentreE = 100, 80\r\nRefCur = 10, 0§90\r\n");
    EXPECT_NEAR(f.RefCurAngle, -90, 1e-6);
    const QPointF px = f.VersPixel(f.RefCurX, f.RefCurY + 5);
    Bouge(f, px);
    const QStringList v = f.Text2->text().split("  ");
    ASSERT_EQ(v.size(), 2);
    EXPECT_TRUE(std::abs(v[0].toDouble() - 5) < 0.2 && std::abs(v[1].toDouble()) < 0.2) << v.join('|').toStdString();
    EXPECT_EQ(f.Text2->palette().color(QPalette::Window), QColor(Qt::white));
    Souris(f.pane, QEvent::MouseButtonPress, px, Qt::LeftButton, Qt::AltModifier);
    Souris(f.pane, QEvent::MouseMove, px, Qt::NoButton, Qt::AltModifier);
    EXPECT_TRUE(f.Text2->text() == "0.0  0.0" && f.Text2->palette().color(QPalette::Window) == QColor(200, 255, 200));
    const QPointF r = f.VersSurface(QPointF(200, 150));
    std::tie(f.RefCurX, f.RefCurY) = std::pair(r.x(), r.y());
    f.RefCurAngle = f.RefCurRad = 0;
    Bouge(f, QPointF(200, 150));
    EXPECT_TRUE(f.Text3->text() == "T 0.0°  0.0" && f.Text2->text() == "0.0  0.0");
    Bouge(f, QPointF(250, 100)); // up and right: 45°
    EXPECT_TRUE(f.Text3->text().startsWith("T 45.0°"));
    Souris(f.Text3, QEvent::MouseButtonDblClick, QPointF(3, 3), Qt::LeftButton); // clockwise from north
    EXPECT_TRUE(f.Text3->text().startsWith("A 135.°")) << f.Text3->text().toStdString();
    Bouge(f, QPointF(250, 100));
    EXPECT_TRUE(f.Text3->text().startsWith("A 135.0°"));
    // With the left button, the position against the pan, in red.
    f.e.Repere.DecalageVueX = 3;
    f.e.Repere.DecalageVueY = 4;
    Bouge(f, QPointF(100, 100), Qt::LeftButton);
    EXPECT_TRUE(f.Text2->palette().color(QPalette::WindowText) == Qt::red &&
                f.Text2->text() == TexteText2(f.SourisX - 3, f.SourisY - 4, 1));
    Bouge(f, QPointF(100, 100));
    EXPECT_EQ(f.Text2->palette().color(QPalette::WindowText), QColor(Qt::black));
    f.e.Repere.ZoomE = 5; // two decimals from zoom 5
    f.RelanceSansZoom();
    Bouge(f, QPointF(100, 100));
    EXPECT_TRUE(Apparie("^-?\\d+\\.\\d\\d  -?\\d+\\.\\d\\d$", f.Text2->text())) << f.Text2->text().toStdString();
}

// A double click or F6 centres the point under the mouse; Ctrl-F6 clears.
TEST(Fenetre, DoubleClickPansAndF6PositionsTheView) {
    Banc b;
    Form1& f = b.Demarre(Croix);
    const QPointF p = f.VersSurface(QPointF(120, 90));
    const double ux = p.x() - f.e.Repere.SourisOrigineX, uy = p.y() - f.e.Repere.SourisOrigineY;
    DoubleClic(f, QPointF(120, 90));
    EXPECT_NEAR(f.e.Repere.DecalageVueX, ux, 1e-9);
    EXPECT_NEAR(f.e.Repere.DecalageVueY, uy, 1e-9);
    const Surface* s = f.pane->surface();
    EXPECT_NEAR(f.e.Repere.OrigineX + ux, (s->ScaleWidth - f.LargeurEditeurUnites()) / 2, 1e-6);
    EXPECT_NEAR(f.e.Repere.OrigineY + uy, -s->ScaleHeight / 2, 1e-6);
    DoubleClic(f, f.VersPixel(f.e.Repere.OrigineX + ux, f.e.Repere.OrigineY + uy)); // there already
    EXPECT_TRUE(std::abs(f.e.Repere.DecalageVueX - ux) < 0.2 && f.RTB1->TexteCrLf() == Croix);
    QTest::keyClick(f.RTB1, Qt::Key_F6, Qt::ControlModifier);
    EXPECT_EQ(QPointF(f.e.Repere.DecalageVueX, f.e.Repere.DecalageVueY), QPointF(0, 0));
    Bouge(f, QPointF(150, 120));
    QTest::keyClick(f.RTB1, Qt::Key_F6);
    EXPECT_NE(f.e.Repere.DecalageVueX, 0);
    EXPECT_EQ(f.NombreExecutions, 5);
}

// Ctrl or the double-click menu inserts the point at the caret, with a blue cross and no run.
TEST(Fenetre, InsertionWithCtrlOrTheMenuAndTheBlueCross) {
    Banc b;
    Form1& f = b.Demarre("CentreE = 50, 50\r\nCT = 1, 1\r\nPlus = 1, 1\r\nTrait = ");
    CurseurEnFinDeLigne(*f.RTB1, 2);
    const QImage avant = f.pane->image();
    DoubleClic(f, QPointF(300, 300), Qt::ControlModifier);
    EXPECT_TRUE(Ligne(*f.RTB1, 2).startsWith("Plus = 1, 1, "));
    const QImage im = f.pane->image();
    const QColor centre = im.pixelColor(QPoint(300, 300) * im.devicePixelRatio());
    EXPECT_TRUE(centre.blue() > 150 && centre.red() < 120 && im != avant);
    f.Mnu_DblClick->setChecked(true);
    CurseurEnFinDeLigne(*f.RTB1, 3);
    for (QPointF p : {QPointF(100, 100), QPointF(140, 100), QPointF(140, 60)}) DoubleClic(f, p);
    const char* trait = "^Trait = -?\\d+\\.\\d,-?\\d+\\.\\d, -?\\d+\\.\\d,-?\\d+\\.\\d, -?\\d+\\.\\d,-?\\d+\\.\\d,,$";
    EXPECT_TRUE(Apparie(trait, Ligne(*f.RTB1, 3))) << Ligne(*f.RTB1, 3).toStdString();
    EXPECT_TRUE(f.NombreExecutions == 1 && f.Modifie());
}

// F7's zoom (a comma as decimal point, a run even on Esc); F4 runs at zoom 1, Ctrl-F7 at ZoomIni's.
TEST(Fenetre, ZoomDialogOnF7) {
    Banc b;
    Form1& f = b.Demarre("' ZoomIni = 9\r\nZoomIni = 2\r\nCT = 1, 1\r\n");
    QString titre;
    QuandOuvert<Form4>([&](Form4* d) {
        titre = d->windowTitle();
        d->Text1->setText("2,5"), d->Text2->setText("1.1");
        QTest::keyClick(d, Qt::Key_Return);
    });
    QTest::keyClick(f.RTB1, Qt::Key_F7);
    EXPECT_EQ(titre, "Mirel   Zoom   (F7, Ctrl-F7)");
    EXPECT_FLOAT_EQ(f.e.Repere.FacteurZ, 2.5f * 1.1f);
    EXPECT_TRUE(b.config.Ecritures.contains("Zmm = 1.1"));
    QTest::keyClick(f.RTB1, Qt::Key_F4);
    EXPECT_FLOAT_EQ(f.e.Repere.ZoomE, 1.0f);
    QuandOuvert<Form4>([](Form4* d) { d->Text1->setText("3"); QTest::keyClick(d, Qt::Key_Escape); });
    QTest::keyClick(f.RTB1, Qt::Key_F7);
    EXPECT_FLOAT_EQ(f.e.Repere.ZoomE, 1.0f);
    QTest::keyClick(f.RTB1, Qt::Key_F7, Qt::ControlModifier);
    EXPECT_TRUE(f.e.Repere.ZoomE == 2.0f && f.NombreExecutions == 5);
    Form4 d(&f, 0, 1.0f, 1.0f, &b.boites);
    d.Text1->setText("abc");
    EXPECT_FALSE(d.Valide());
    EXPECT_EQ(b.boites.Messages(), QStringList{"Valeur non numérique\r\nNo numeric value"});
    d.Text1->setText("0"), d.Text2->setText("0"); // zero values are 1, unchanged
    EXPECT_TRUE(d.Valide() && d.ZoomE == 1.0f && !d.ZmmChange && d.Text1->text() == "1");
    d.Text1->setText(" 2,5 ");
    EXPECT_TRUE(d.Valide() && d.ZoomE == 2.5f);
    // The printing zoom's box: a decimal comma, no zoom beyond a float's range.
    for (auto [tape, zoom] : {std::pair<const char*, std::optional<float>>{"1,5", 1.5f}, {" 3 ", 3.0f},
                              {"-2", 1.0f}, {"1e50", std::nullopt}, {"1e-50", std::nullopt}, {"x", std::nullopt}})
        EXPECT_EQ(ZoomSaisi(tape), zoom) << tape;
}

// F8's reference about the frame origin ("z": the pane's corner); Ctrl-F8 clears it.
TEST(Fenetre, ReferenceDialogOnF8) {
    Banc b;
    Form1& f = b.Demarre(Croix);
    const double ox = f.e.Repere.SourisOrigineX, oy = f.e.Repere.SourisOrigineY;
    QStringList vus;
    for (const char* saisie : {"10, 20§30", ""}) {
        QuandOuvert<Form5>([&, saisie](Form5* d) {
            vus << d->windowTitle() << d->Text1->text();
            if (*saisie) d->Text1->setText(saisie);
            QTest::keyClick(d, *saisie ? Qt::Key_F8 : Qt::Key_Escape);
        });
        QTest::keyClick(f.RTB1, Qt::Key_F8);
    }
    const QString titre = "Mirel   RefCur   (F8, Ctrl-F8)";
    EXPECT_EQ(vus, QStringList({titre, "0, 0", titre, "10, 20§30"}));
    const auto Ref = [&f] { return std::pair{QPointF(f.RefCurX, f.RefCurY), double(f.RefCurAngle)}; };
    EXPECT_TRUE(Ref() == std::pair(QPointF(ox + 10, oy + 20), -30.0));
    QTest::keyClick(f.RTB1, Qt::Key_F8, Qt::ControlModifier);
    EXPECT_TRUE(Ref() == std::pair(QPointF(ox, oy), 0.0));
    EXPECT_FALSE(f.AppliqueRefCur("10 20"));
    EXPECT_EQ(b.boites.Messages(), QStringList{LoadResString(166)});
    EXPECT_TRUE(f.AppliqueRefCur("5,7z") && Ref() == std::pair(QPointF(5, 7), 0.0));
    EXPECT_TRUE(f.AppliqueRefCur("") && Ref() == std::pair(QPointF(ox, oy), 0.0));
}

// The code's font size stays within 6 and 24 points; the code widens up to the
// window's width; the patch box lists the active patches and asks again on 16 and 0.
TEST(Fenetre, OptionsCodeSizeWidthAndPatches) {
    Banc b;
    b.config.Pose(CleCfg::TailleCarCode, "3");
    b.config.Pose(CleCfg::Patchs, "3");
    Form1& f = b.Demarre(Croix);
    EXPECT_EQ(f.RTB1->font().pointSizeF(), 6);
    for (auto [saisie, taille, ecrit] : {std::tuple{QVariant("30"), 24, "TailleCarCode = 24"},
                                         {"0", 24, ""}, {"abc", 24, ""}, {QVariant(), 24, ""},
                                         {"3", 6, "TailleCarCode = 6"}}) {
        const qsizetype ecritures = b.config.Ecritures.size();
        b.boites.reponses = {saisie};
        f.Mnu_TaillCar_Click();
        EXPECT_EQ(f.RTB1->font().pointSizeF(), taille);
        EXPECT_EQ(b.config.Ecritures.mid(ecritures), *ecrit ? QStringList{ecrit} : QStringList());
    }
    EXPECT_EQ(b.boites.vues.back().titre + "|" + b.boites.vues.back().texte.section(u'|', 1), "Taille car. code|24");
    const int avant = f.RTB1->width();
    f.Mnu_AgrandirCode_Click();
    EXPECT_GT(f.RTB1->width(), avant);
    for (int i = 0; i < 20; ++i) f.Mnu_AgrandirCode_Click();
    EXPECT_LE(f.RTB1->width(), f.zone->width());
    f.Mnu_IniCode_Click();
    EXPECT_TRUE(f.RTB1->width() == avant && f.NombreExecutions == 2);
    b.boites.reponses = {"16", "0", "-1"};
    f.Mnu_Patchs->trigger();
    EXPECT_EQ(b.boites.Nombre("saisie"), 8);
    EXPECT_TRUE(b.config.Ecritures.contains("Patchs = 2") && f.regl.Patchs == 2);
}

// The edit menu works through the editor's keys; Code hides the editor and its fields.
TEST(Fenetre, EditAndCodeMenus) {
    Banc b;
    Form1& f = b.Demarre("CT = 1, 1\r\nCT = 2, 2\r\n");
    f.Mnu_Selectionner->trigger();
    f.Mnu_Copier->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "CT = 1, 1\nCT = 2, 2\n");
    f.Mnu_Supprimer->trigger();
    EXPECT_TRUE(f.RTB1->document()->isEmpty());
    f.Mnu_Coller->trigger();
    EXPECT_TRUE(f.RTB1->TexteCrLf() == "CT = 1, 1\r\nCT = 2, 2\r\n" && CouleurLigne(*f.RTB1, 1, 0) == Editeur::Bleu);
    f.Mnu_Selectionner->trigger();
    f.Mnu_Couper->trigger();
    EXPECT_TRUE(f.RTB1->document()->isEmpty());
    f.Mnu_Code->trigger();
    EXPECT_FALSE(f.RTB1->isVisible() || f.Text1->isVisible() || f.Text3->isVisible() || !f.Text4->isVisible());
    EXPECT_EQ(f.LargeurEditeurUnites(), 0);
    f.Mnu_Code->trigger();
    EXPECT_TRUE(f.RTB1->isVisible());
}

// Alt-C inserts "RVB r g b" ("RGB" in English) and Alt-L the path at the caret,
// without a run; Alt-F2 shows the line's syntax until the next key (ElseIf has none).
TEST(Fenetre, AltKeysInsertColourAndPathAndShowTheSyntax) {
    Banc b;
    Form1& f = b.Demarre("Couleur = \r\nFichier = \r\nArc = 30, 150, 60\r\nElseIf %A = 1 Then\r\n");
    CurseurEnFinDeLigne(*f.RTB1, 0);
    b.boites.couleur = QColor(10, 20, 30);
    QTest::keyClick(f.RTB1, Qt::Key_C, Qt::AltModifier);
    f.regl.LangueMasque = 400;
    f.Mnu_Couleur_Click();
    EXPECT_EQ(Ligne(*f.RTB1, 0), "Couleur = RVB 10 20 30RGB 10 20 30");
    CurseurEnFinDeLigne(*f.RTB1, 1);
    b.boites.reponses = {QStringList{"/dossier/trou.dat"}};
    QTest::keyClick(f.RTB1, Qt::Key_L, Qt::AltModifier);
    EXPECT_TRUE(b.boites.vues.back().texte.startsWith(LoadResString(106) + " (*.*)"));
    f.Mnu_Liste_Fic->trigger();
    EXPECT_EQ(Ligne(*f.RTB1, 1), "Fichier = /dossier/trou.dat");
    EXPECT_TRUE(b.boites.Nombre("liste") == 2 && f.NombreExecutions == 1);
    f.RTB1->setTextCursor(QTextCursor(f.RTB1->document()->findBlockByNumber(2)));
    QTest::keyClick(f.RTB1, Qt::Key_F2, Qt::AltModifier);
    EXPECT_TRUE(f.form2->isVisible());
    EXPECT_EQ(f.form2->Texte(), LoadResString(400 + 203) + u'\n'); // in the mask's language
    EXPECT_TRUE(QRect(f.mapToGlobal(QPoint(0, 0)), f.size()).contains(f.form2->geometry()));
    QTest::keyClick(f.RTB1, Qt::Key_Down);
    EXPECT_FALSE(f.form2->isVisible());
    QTest::keyClick(f.RTB1, Qt::Key_F2, Qt::AltModifier);
    EXPECT_EQ(f.form2->Texte(), LoadResString(400 + 241) + u'\n');
}

// Save as cuts after the last of two dots and keeps Windows-1252; it names the text, while Save
// still writes the file that was opened; a failed save still clears Modifie.
TEST(Fenetre, SaveAsAndSave) {
    Banc b;
    Form1& f = b.Fenetre();
    f.Demarrer(b.Fichier("ancien.dat", "Texte = 1, 1, , , \xe9t\xe9\r\n"));
    EXPECT_EQ(Ligne(*f.RTB1, 0), "Texte = 1, 1, , , été");
    b.boites.reponses = {b.travail.filePath("copie.v2.dat")};
    QTest::keyClick(f.RTB1, Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(f.NomCourant == b.travail.filePath("copie.v2") && !f.Modifie());
    f.RTB1->InsereTexte("' à");
    EXPECT_TRUE(f.Modifie());
    f.Mnu_EnregistrerS_Click();
    QFile copie(b.travail.filePath("ancien.dat"));
    EXPECT_TRUE(copie.open(QIODevice::ReadOnly) && copie.readAll() == "' \xe0Texte = 1, 1, , , \xe9t\xe9\r\n");
    EXPECT_FALSE(f.Modifie());
    f.FichierCourant = b.travail.filePath("absent/essai.dat");
    f.RTB1->InsereTexte("CT = 3, 3\r\n");
    f.Mnu_EnregistrerS_Click();
    EXPECT_TRUE(b.boites.Messages().size() == 1 && !b.boites.Messages()[0].isEmpty() && !f.Modifie());
    // The caption still says the text is not on disk.
    EXPECT_TRUE(f.windowTitle().startsWith('*')) << f.windowTitle().toStdString();
}

// Open moves the run's folder (includes, New's template); %File and %Path name the main file.
TEST(Fenetre, OpenMovesTheWorkingFolderOfTheRun) {
    Banc b;
    QTemporaryDir autre;
    for (auto [nom, texte] : {std::pair{"lib.dat", "%IRE$#0vu = 1\r\n"}, {"Mirel.daN", "' other template\r\n"},
                              {"main.dat", "Fichier = lib\r\n%f = %File\r\n%p = %Path\r\n"}})
        if (QFile fi(autre.filePath(nom)); fi.open(QIODevice::WriteOnly)) fi.write(texte);
    Form1& f = b.Demarre("' start\r\n");
    b.boites.reponses = {autre.filePath("main.dat")};
    f.Mnu_Ouvrir_Click();
    EXPECT_TRUE(b.boites.Messages().isEmpty()) << b.boites.Messages().join("|").toStdString();
    EXPECT_EQ(f.e.PileFic[0].NbVar, 1);
    EXPECT_EQ(f.e.PileFic[1].ValVar[1] + u'|' + f.e.PileFic[1].ValVar[2],
              "main.dat|" + QDir(autre.path()).absolutePath() + u'/');
    b.boites.reponses = {autre.filePath("b.dat")};
    f.Mnu_Enregistrer_Click();
    f.RelanceSansZoom(); // the zoom dialog's run
    EXPECT_EQ(f.e.PileFic[1].ValVar[1], "b.dat");
    f.Mnu_Nouveau_Click();
    EXPECT_EQ(f.RTB1->TexteCrLf(), "' other template\r\n");
}
