// The window's view (fit, wheel, drag, resize), the live preview, the
// included-file cache and the export dialog's choices.
#include "outils_fenetre.h"

#include "app/apercu.h"
#include "app/core/inclusion.h"
#include "app/export_dialogue.h"
#include "app/usage_fenetre.h"
#include "drawing/surface.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QSpinBox>
#include <QWheelEvent>

#include <sys/time.h>

namespace {

Apercu& ApercuDe(Form1& f) { return *f.VueApercu; }

// The visible part of the pane: left of the editor.
QRectF Visible(Form1& f) {
    return QRectF(0, 0, f.pane->width() - (f.Mnu_Code->isChecked() ? f.RTB1->width() : 0), f.pane->height());
}

// The drawing's own coordinates (about the level-1 origin) under a pane pixel.
QPointF Dessin(Form1& f, QPointF pixel) {
    return f.VersSurface(pixel) - QPointF(f.e.Repere.SourisOrigineX, f.e.Repere.SourisOrigineY);
}

void Molette(Form1& f, QPointF pixel, int pas) {
    QWheelEvent ev(pixel, f.pane->mapToGlobal(pixel), QPoint(), QPoint(0, pas), Qt::NoButton, Qt::NoModifier,
                   Qt::NoScrollPhase, false);
    QApplication::sendEvent(f.pane, &ev);
}

double Ecart(QPointF a, QPointF b) { return QLineF(a, b).length(); }

void Glisse(Form1& f, QPointF de, QPointF a, Qt::KeyboardModifiers mods = Qt::NoModifier) {
    QTest::mousePress(f.pane, Qt::LeftButton, mods, de.toPoint());
    QMouseEvent bouge(QEvent::MouseMove, a, f.pane->mapToGlobal(a), Qt::NoButton, Qt::LeftButton, mods);
    QApplication::sendEvent(f.pane, &bouge);
    QTest::mouseRelease(f.pane, Qt::LeftButton, mods, a.toPoint());
}

// Types at the end of the text and lets the live run come.
void Tape(Form1& f, const QString& texte) {
    f.RTB1->moveCursor(QTextCursor::End);
    const QStringList lignes = texte.split("\r\n");
    for (int i = 0; i < lignes.size(); ++i) {
        if (i > 0) QTest::keyClick(f.RTB1, Qt::Key_Return);
        QTest::keyClicks(f.RTB1, lignes[i]);
    }
}

// Every live run rewrites the pane's status line (empty when it ran to its
// end): a mark left there tells whether one came since.
void Marque(Form1& f) { f.pane->EcritEtat("*", 0); }
bool RunDirect(Form1& f) { return f.pane->TexteEtat() != "*"; }

} // namespace

// Every example opens whole in the default window, off its true size only as
// far as needed.
TEST(Vue, ExamplesOpenWholeInTheDefaultWindow) {
    const QStringList noms =
        QDir(MIREL_SOURCE_DIR "/examples").entryList({"*.dat"}, QDir::Files, QDir::Name).filter(QRegularExpression("^(?!MCE_)"));
    ASSERT_GE(noms.size(), 6);
    for (const QString& nom : noms) {
        Banc b;
        Form1& f = b.Fenetre();
        f.Demarrer(QStringLiteral(MIREL_SOURCE_DIR "/examples/") + nom);
        QTest::qWait(100);
        const QRectF encre = f.pane->Encre();
        EXPECT_TRUE(!encre.isEmpty() && Visible(f).adjusted(-3, -3, 3, 3).contains(encre) &&
                    f.pane->EchelleVue() >= 1.0 && b.boites.Messages().isEmpty())
            << nom.toStdString();
    }
    // So does a file opened after the view was moved down for another drawing.
    Banc b;
    Form1& f = b.Fenetre();
    f.Demarrer(QStringLiteral(MIREL_SOURCE_DIR "/examples/voltmetre.dat"));
    QTest::qWait(100);
    Glisse(f, QPointF(200, 100), QPointF(200, 400));
    f.Usage->Ouvre(QStringLiteral(MIREL_SOURCE_DIR "/examples/bibliotheque.dat"));
    QTest::qWait(100);
    EXPECT_TRUE(Visible(f).adjusted(-3, -3, 3, 3).contains(f.pane->Encre()))
        << f.pane->Encre().top() << " " << f.pane->Encre().bottom() << " " << Visible(f).bottom();
}

// The wheel keeps the drawing's point under the pointer and the program's
// zoom; a plain drag moves the drawing with the pointer; Alt-drag does not pan.
TEST(Vue, WheelZoomsAboutThePointerAndDragPans) {
    Banc b;
    Form1& f = b.Demarre("CentreE = 60, 60\r\nCercle = 0, 0, 20\r\n");
    const QPointF souris(150, 200), avant = Dessin(f, souris);
    for (int pas : {120, 240, -360}) {
        const double echelle = f.pane->EchelleVue();
        Molette(f, souris, pas);
        EXPECT_NEAR(f.pane->EchelleVue(), echelle * std::pow(1.2, -pas / 120.0), 1e-9);
        EXPECT_LT(Ecart(Dessin(f, souris), avant), 0.01) << pas;
    }
    const int runs = f.NombreExecutions;
    const QPointF de(100, 100), a(160, 130), sous = Dessin(f, de);
    Glisse(f, de, a);
    EXPECT_EQ(f.NombreExecutions, runs + 1);
    EXPECT_LT(Ecart(Dessin(f, a), sous), 0.01);
    Glisse(f, a, de, Qt::AltModifier);
    EXPECT_EQ(f.NombreExecutions, runs + 1);
    // F7's zoom survives the view's redraws; F4 resets it and keeps the view.
    f.e.Repere.ZoomE = 2;
    Molette(f, souris, 120);
    EXPECT_EQ(f.e.Repere.ZoomE, 2.0f);
    const double echelle = f.pane->EchelleVue();
    QTest::keyClick(f.RTB1, Qt::Key_F4);
    EXPECT_TRUE(f.e.Repere.ZoomE == 1.0f && f.pane->EchelleVue() == echelle);
}

// Fit: the drawing fills the visible part, larger or smaller, centred;
// a resize redraws at the new size.
TEST(Vue, FitTheDrawingAndResizeRedraws) {
    Banc b;
    Form1& f = b.Demarre("Cadre = 10, 10, 30, 20\r\n");
    for (const char* texte : {"Cadre = 10, 10, 30, 20\r\n", "Cadre = -100, -50, 400, 500\r\n"}) {
        f.RTB1->ChargeTexte(texte);
        f.Visualiser();
        ApercuDe(f).Mnu_Ajuster->trigger();
        const QRectF v = Visible(f), encre = f.pane->Encre();
        EXPECT_TRUE(v.contains(encre)) << texte;
        // Filled along one side to the margin, centred on the other.
        EXPECT_GT(std::max(encre.width() / v.width(), encre.height() / v.height()), 0.9) << texte;
        EXPECT_LT(Ecart(encre.center(), v.center()), 2) << texte;
    }
    const int runs = f.NombreExecutions;
    f.resize(f.width() - 150, f.height() - 80);
    QTest::qWait(ApercuDe(f).MinuterieTaille.interval() + 100);
    EXPECT_EQ(f.NombreExecutions, runs + 1);
    EXPECT_EQ(f.pane->surface()->LargeurPx(), f.pane->width());
}

// A redraw of the view (wheel, drag, resize) starts from the current point 0, 0, answers the prompt and the
// box as the user did at F4 without asking, and passes the writes; a question the last run did not ask
// stops it and says so.
TEST(Vue, ViewRedrawsAnswerAsTheUserDid) {
    Banc b;
    b.boites.reponses = {"4"};
    Form1& f = b.Demarre("Input = Rayon ?§10, %r\r\nOpenA = vue.txt\r\nPrintA = ab\r\nCercle = 30R, 30R, %r\r\nfoo = 2\r\n");
    const auto verifie = [&](const char* quoi) {
        const QRectF encre = f.pane->Encre();
        const QPointF centre = Dessin(f, encre.center()), coin = Dessin(f, encre.topRight()) - Dessin(f, encre.bottomLeft());
        EXPECT_LT(Ecart(centre, QPointF(30, 30)), 0.3) << quoi << " " << centre.x() << ", " << centre.y();
        EXPECT_NEAR(coin.x(), 8, 0.6) << quoi;
        EXPECT_EQ(std::pair(b.boites.Nombre("saisie"), b.boites.Nombre("message")), std::pair(1, 1)) << quoi;
        EXPECT_EQ(f.pane->TexteEtat(), "") << quoi;
    };
    verifie("F4");
    Molette(f, QPointF(150, 200), 120);
    verifie("wheel");
    Glisse(f, QPointF(100, 100), QPointF(130, 120));
    verifie("drag");
    f.resize(f.width() - 150, f.height() - 80);
    QTest::qWait(ApercuDe(f).MinuterieTaille.interval() + 100);
    verifie("resize");
    QFile ecrit(b.travail.filePath("vue.txt")); // written by F4 only
    EXPECT_TRUE(ecrit.open(QIODevice::ReadOnly) && ecrit.readAll() == "ab");
    f.RTB1->ChargeTexte("Input = Autre ?§10, %r\r\nCercle = 30R, 30R, %r\r\n");
    Molette(f, QPointF(150, 200), 120);
    EXPECT_EQ(b.boites.Nombre("saisie"), 1);
    EXPECT_TRUE(f.pane->TexteEtat().contains("1")) << f.pane->TexteEtat().toStdString();
}

// A live run opens no box and no prompt, writes nothing, leaves the text and
// the caret alone; it stops at such a line and says where and why.
TEST(Vue, LiveRunStopsWhereItWouldAskOrWrite) {
    const struct { QString programme, raison; int ligne; } cas[] = {
        {"Cercle = 50, 50, 10\r\nfoo = 2\r\nCercle = 50, 50, 20\r\n", "foo = 2", 2},
        {"Fichier = absent, 0, 0\r\n", "Fichier = absent, 0, 0 : absent : fichier non trouvé", 1}, // the box's reason too
        {"Cercle = 50, 50, 10\r\nInput = Valeur ?, %A\r\n", "INPUT", 2},
        {"ListeVar\r\n", "LISTEVAR", 1},
        {"Cercle = 50, 50, 10\r\nOpenA = sortie.txt\r\nPrintA = x\r\n", "OPENA", 2},
        {"OpenA = sortie.txt,,Kill\r\n", "OPENA", 1},
        {"Shell#$ = true, JPG#\r\n", "SHELL#$", 1},
        {"Cercle = 50, 50, 10\r\n?\r\n", "?", 2},
        {"Cercle = 50, 50, 10\r\n%CLIPBOARD = vu en direct\r\n", "%CLIPBOARD", 2},
        {"Plot = mesure§59, 1, 2, 0, 1, 10, 1, 0.25§OFFSET\r\n", "PLOT", 1},
        // A comma forgotten: a chart of 8180 levels, stopped inside by the time limit.
        {"Cercle = 50, 50, 10\r\nPalCoul3 = 8 180, 80\r\n", "trop long", 2},
    };
    for (const auto& c : cas) {
        Banc b;
        QFile mesure(b.travail.filePath("mesure.txt")); // the data of the Plot line
        mesure.open(QIODevice::WriteOnly);
        mesure.write("1;2\r\n");
        mesure.close();
        Form1& f = b.Demarre("");
        ApercuDe(f).Mnu_ApercuDirect->trigger();
        Tape(f, c.programme);
        const int caret = f.RTB1->textCursor().position();
        QTest::qWait(Apercu::DelaiDirect + 150);
        EXPECT_TRUE(QTest::qWaitFor([&f] { return !f.pane->TexteEtat().isEmpty(); }, 3000));
        const QString etat = f.pane->TexteEtat();
        EXPECT_TRUE(etat.contains(QString("ligne %1 (").arg(c.ligne)) && etat.contains(c.raison)) << etat.toStdString();
        // One run: its own marks in the text start no other.
        EXPECT_TRUE(!ApercuDe(f).Minuterie.isActive() && b.boites.vues.empty() &&
                    f.RTB1->textCursor().position() == caret && f.RTB1->TexteCrLf() == c.programme &&
                    !QFileInfo::exists(b.travail.filePath("sortie.txt")) &&
                    !QFileInfo::exists(b.travail.filePath("Plot_Offset.txt")) &&
                    QGuiApplication::clipboard()->text() != "vu en direct")
            << etat.toStdString();
        // Only an error line is red, as F4 marks it.
        EXPECT_EQ(CouleurLigne(*f.RTB1, c.ligne - 1, 0) == QColor(255, 0, 0), c.raison.contains(" = ")) << c.ligne;
        // Undo changes the text as typing does: the preview follows it.
        QTest::keyClick(f.RTB1, Qt::Key_Z, Qt::ControlModifier);
        EXPECT_TRUE(ApercuDe(f).Minuterie.isActive());
    }
    // Nothing to undo: no run.
    Banc b;
    Form1& f = b.Demarre("Cercle = 50, 50, 10\r\n");
    ApercuDe(f).Mnu_ApercuDirect->trigger();
    QTest::keyClick(f.RTB1, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(ApercuDe(f).Minuterie.isActive());
    // A prompt answered at the last F4 is answered so again: the preview goes on below it.
    Banc b2;
    b2.boites.reponses = {"4"};
    Form1& g = b2.Demarre("Input = Rayon ?§10, %r\r\nCercle = 30, 30, %r\r\n");
    ApercuDe(g).Mnu_ApercuDirect->trigger();
    Marque(g);
    Tape(g, "\r\nCercle = 60, 30, %r");
    EXPECT_TRUE(QTest::qWaitFor([&g] { return RunDirect(g); }, 3000));
    EXPECT_EQ(g.pane->TexteEtat(), "");
    EXPECT_NEAR(Dessin(g, g.pane->Encre().topRight()).x(), 64, 0.5);
    EXPECT_EQ(b2.boites.Nombre("saisie"), 1);
}

// The live preview runs once typing pauses, is kept in the settings, and is
// off by default; an edit by the program (colouring, loading) is no typing.
TEST(Vue, LivePreviewRunsAfterTypingPausesAndIsRemembered) {
    Banc b;
    Form1& f = b.Demarre("ZoomIniI = 2\r\nCercle = 50, 50, 10\r\n");
    Apercu& a = ApercuDe(f);
    Marque(f);
    Tape(f, "Cercle = 50, 50, 20\r\n");
    QTest::qWait(Apercu::DelaiDirect + 100);
    EXPECT_FALSE(RunDirect(f));
    a.Mnu_ApercuDirect->trigger();
    EXPECT_TRUE(b.config.Ecritures.contains("ApercuDirect = Oui"));
    Marque(f);
    for (const char c : std::string("Cercle = 50, 50, 30")) QTest::keyClick(f.RTB1, c, {}, 50); // 20 a second
    EXPECT_FALSE(RunDirect(f));
    QTest::qWait(Apercu::DelaiDirect + 100);
    EXPECT_TRUE(f.pane->TexteEtat().isEmpty() && !a.Minuterie.isActive()) << f.pane->TexteEtat().toStdString();
    // The print zoom follows the text as at F4: a ZoomIniI commented out is no longer in force.
    EXPECT_EQ(f.e.Repere.ZoomDepartI, 2.0f);
    f.RTB1->moveCursor(QTextCursor::Start);
    QTest::keyClick(f.RTB1, '\'');
    QTest::qWait(Apercu::DelaiDirect + 100);
    EXPECT_EQ(f.e.Repere.ZoomDepartI, 1.0f);
    Marque(f);
    f.RTB1->Cmd_Ctrl_K();
    QTest::qWait(Apercu::DelaiDirect + 100);
    EXPECT_FALSE(RunDirect(f));
    a.Mnu_ApercuDirect->trigger();
    EXPECT_TRUE(b.config.Ecritures.contains("ApercuDirect = Non"));
    const Config c = LitConfigTexte("'x\r\nApercuDirect = Oui\r\nExport = A3;Paysage;150;Contours\r\n");
    EXPECT_TRUE(c.ApercuDirect && c.Export == "A3;Paysage;150;Contours");
    Banc b2; // the settings read at start-up turn it on
    b2.config.Pose(CleCfg::ApercuDirect, "Oui");
    EXPECT_TRUE(ApercuDe(b2.Demarre("CT = 1, 1\r\n")).Mnu_ApercuDirect->isChecked());
}

// An included file is read once while unchanged; a change of its size or
// time is read at the next run.
TEST(Vue, IncludedFilesAreReadOnceWhileUnchanged) {
    QTemporaryDir d;
    const QString inclus = d.filePath("inclus.dat");
    auto ecrit = [&](const QByteArray& t, int avance = 0) {
        QFile fi(inclus);
        fi.open(QIODevice::WriteOnly);
        fi.write(t);
        fi.flush();
        if (avance) fi.setFileTime(QDateTime::currentDateTime().addSecs(avance), QFileDevice::FileModificationTime);
    };
    ecrit("Cercle = 0, 0, 5\r\n");
    const auto cache = std::make_shared<CacheFichiers>();
    const QString appel = "Fichier = " + inclus;
    const QString deuxAppels = appel + ", 10, 10\r\n" + appel + ", 30, 10\r\n";
    auto lance = [&](const QString& programme) {
        auto s = std::make_unique<Session>(Programme(programme));
        s->regl.Fichiers = cache;
        s->Execute();
        return s;
    };
    auto rayons = [&](const QString& programme) {
        QVector<double> r;
        for (const OpSurface& op : Ops(*lance(programme), OpSurface::Cercle)) r << op.r;
        return r;
    };
    for (int fois : {1, 2}) EXPECT_EQ(rayons(deuxAppels), (QVector<double>{5, 5})) << fois;
    // Read once; looked at once in each run.
    EXPECT_TRUE(cache->Lectures() == 1 && cache->Trouves() == 1);
    // A run that writes the file between two calls includes what it wrote.
    EXPECT_EQ(rayons(appel + "\r\nOpenA = " + inclus + "\r\nPrintA = Cercle = 0, 0, 9\r\nOpenA =\r\n" + appel + "\r\n"),
              (QVector<double>{5, 5, 9}));
    // A program started without waiting writes it while the run goes on.
    {
        struct PlusTard : HoteMemoire {
            std::function<void()> ecrit;
            bool lance = false;
            int pompes = 0;
            using HoteMemoire::HoteMemoire;
            bool Lance(const QString&, bool) override { return lance = true; }
            void PompeEvenements() override {
                if (lance && ++pompes == 2) ecrit(); // each call lets events through first
            }
        };
        const QString p = "Shell#$ = prog, JPG#, 0\r\n" + deuxAppels;
        Session s(p);
        PlusTard h(p);
        h.ecrit = [&] { ecrit("Cercle = 0, 0, 8\r\n"); };
        s.etat.Host = &h;
        s.regl.Fichiers = cache;
        s.Execute();
        QVector<double> r;
        for (const OpSurface& op : Ops(s, OpSurface::Cercle)) r << op.r;
        EXPECT_EQ(r, (QVector<double>{5, 9, 8}));
    }
    ecrit("Cercle = 0, 0, 17\r\n");
    EXPECT_EQ(rayons(deuxAppels), (QVector<double>{17, 17}));
    ecrit("Cercle = 0, 0, 18\r\n", 5); // the same size: the time tells
    EXPECT_EQ(rayons(deuxAppels), (QVector<double>{18, 18}));
    EXPECT_EQ(cache->Lectures(), 5);
    QFile::remove(inclus);
    EXPECT_TRUE(Messages(*lance(deuxAppels)).value(0).contains("fichier non trouvé"));
}

// Names found without regard to case from the folder's listing, kept while
// the folder's time is unchanged: the exact spelling wins, a file added or
// removed later is seen, and a run finds a bare name through it.
TEST(Vue, FolderListingsAnswerLookupsWhileUnchanged) {
    QTemporaryDir d;
    auto cree = [&](const QString& n) { QFile(d.filePath(n)).open(QIODevice::WriteOnly); };
    auto date = [&](int secondes) { // the folder as if changed that long ago
        const timeval t[2] = {{time(nullptr) - secondes, 0}, {time(nullptr) - secondes, 0}};
        utimes(QFile::encodeName(d.path()).constData(), t);
    };
    for (const char* n : {"Trou.DAT", "a.dat", "A.dat"}) cree(n);
    date(120);
    const auto cache = std::make_shared<CacheFichiers>();
    for (int fois : {1, 2}) {
        EXPECT_EQ(cache->TrouveSansCasse(d.path(), "trou.dat"), d.filePath("Trou.DAT")) << fois;
        EXPECT_EQ(cache->TrouveSansCasse(d.path(), "A.dat"), d.filePath("A.dat")) << fois;
        EXPECT_EQ(cache->TrouveSansCasse(d.path(), "a.dat"), d.filePath("a.dat")) << fois;
    }
    cree("Neuf.dat");
    date(60);
    EXPECT_EQ(cache->TrouveSansCasse(d.path(), "NEUF.DAT"), d.filePath("Neuf.dat"));
    QFile::remove(d.filePath("Neuf.dat"));
    date(30);
    EXPECT_EQ(cache->TrouveSansCasse(d.path(), "neuf.dat"), QString());
    {
        QFile f(d.filePath("Trou.DAT"));
        f.open(QIODevice::WriteOnly);
        f.write("Cercle = 0, 0, 4\r\n");
    }
    date(10);
    auto s = std::make_unique<Session>(Programme("Fichier = trou, 5, 5\r\n"));
    s->regl.DossierTravail = d.path() + '/';
    s->regl.Fichiers = cache;
    s->Execute();
    EXPECT_EQ(Ops(*s, OpSurface::Cercle).size(), 1);
}

// The export's choices: read back from the settings, and what they do to
// the files: the page and its orientation, the PNG's dpi, SVG text as outlines.
TEST(Vue, ExportChoicesReachTheFiles) {
    const struct { QString texte, lu; } cas[] = {
        {"A3;Paysage;150;Contours", "A3;Paysage;150;Contours"}, {"letter;portrait;72", "Letter;Portrait;72;Texte"},
        {"B9;Paysage;99999", "A4;Paysage;300;Texte"},           {"", "A4;Portrait;300;Texte"}};
    for (const auto& c : cas) EXPECT_EQ(TexteChoixExport(ChoixExportDe(c.texte)), c.lu) << c.texte.toStdString();
    // The dialog: preset from the choices, only the fields of its format on.
    DialogueExport d(nullptr, 400, "png", ChoixExportDe("A3;Paysage;150;Contours"));
    EXPECT_TRUE(d.Dpi->isEnabled() && !d.Contours->isEnabled() && d.Orientation->currentText() == "Landscape");
    d.Page->setCurrentText("Letter");
    d.Dpi->setValue(600);
    EXPECT_EQ(TexteChoixExport(d.Choix()), "Letter;Paysage;600;Contours");
    Banc b;
    Form1& f = b.Demarre("Texte = 20, 20, , , Mirel\r\nCercle = 50, 50, 10\r\n");
    for (bool contours : {false, true}) {
        f.Config.Export = TexteChoixExport({"A5", true, 100, contours});
        b.boites.reponses = {b.travail.filePath("e.svg"), b.travail.filePath("e.png")};
        f.Exporte("svg");
        f.Exporte("png");
        QFile svg(b.travail.filePath("e.svg"));
        const QByteArray t = svg.open(QIODevice::ReadOnly) ? svg.readAll() : QByteArray();
        EXPECT_TRUE(t.contains("width=\"210mm\" height=\"148mm\"")) << t.left(300).toStdString();
        // The word "Mirel" as text, or as the path of its outlines.
        EXPECT_EQ(t.contains("<text"), !contours);
        EXPECT_EQ(t.count("<path"), contours ? 1 : 0);
        EXPECT_EQ(QImage(b.travail.filePath("e.png")).size(), QSize(827, 583)); // 210 x 148 mm at 100 dpi
    }
    EXPECT_TRUE(b.config.Ecritures.contains("Export = A5;Paysage;100;Contours"));
    // A drawing that its page cuts is written, and a box says so.
    EXPECT_TRUE(b.boites.Messages().isEmpty());
    f.RTB1->setPlainText("Cercle = 200, 50, 30\n");
    b.boites.reponses = {b.travail.filePath("c.pdf")};
    f.Exporte("pdf");
    EXPECT_TRUE(QFile::exists(b.travail.filePath("c.pdf")));
    EXPECT_TRUE(b.boites.Messages().value(0).startsWith("Le dessin déborde")) << b.boites.Messages().join('|').toStdString();
    // The export's run answers the program's questions as the user did in the window's last run.
    b.boites.reponses = {"Jauge"};
    f.RTB1->setPlainText("Input = Nom§abc, %n\nTexte = 20, 20, , , %n\n");
    QTest::keyClick(f.RTB1, Qt::Key_F4);
    b.boites.reponses = {b.travail.filePath("q.svg")};
    f.Config.Export = TexteChoixExport({"A5", true, 100, false});
    f.Exporte("svg");
    QFile q(b.travail.filePath("q.svg"));
    const QByteArray qt = q.open(QIODevice::ReadOnly) ? q.readAll() : QByteArray();
    EXPECT_TRUE(qt.contains("Jauge</text>"));
    // Edited since, the text is answered while its questions are those of that run; then defaults.
    for (const auto& [texte, attendu] : {std::pair{"Input = Nom§abc, %n\nTexte = 30, 30, , , %n\n", "Jauge</text>"},
                                         {"Input = Autre§xyz, %m\nTexte = 20, 20, , , %m\n", "xyz</text>"}}) {
        f.RTB1->setPlainText(texte);
        b.boites.reponses = {b.travail.filePath("r.svg")};
        f.Exporte("svg");
        QFile r(b.travail.filePath("r.svg"));
        EXPECT_TRUE(r.open(QIODevice::ReadOnly) && r.readAll().contains(attendu)) << texte;
    }
    // The accelerators: none of the window's own keys.
    EXPECT_EQ(f.Mnu_ExportPdf->shortcut(), QKeySequence("Ctrl+E"));
    EXPECT_EQ(f.Mnu_ExportSvg->shortcut(), QKeySequence("Ctrl+Shift+E"));
    EXPECT_EQ(f.Mnu_ExportPng->shortcut(), QKeySequence("Ctrl+Alt+E"));
}
