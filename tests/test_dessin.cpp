// The freehand drawing tool: strokes drawn on the pane with the mouse become
// a data file and a Plot line that draws them again.
#include "outils_fenetre.h"

#include "app/dessin.h"
#include "drawing/surface.h"
#include "drawing/val.h"

#include <QClipboard>
#include <QMouseEvent>
#include <QPushButton>

namespace {

// The pane's pixel of a point given in millimetres from RefCur.
QPointF Pixel(Form1& f, QPointF mm) { return f.VersPixel(f.RefCurX + mm.x(), f.RefCurY + mm.y()); }

void Souris(Form1& f, QEvent::Type type, QPointF mm, Qt::MouseButton bouton, Qt::MouseButtons boutons,
            Qt::KeyboardModifiers mods) {
    QMouseEvent ev(type, Pixel(f, mm), f.pane->mapToGlobal(Pixel(f, mm)), bouton, boutons, mods);
    QApplication::sendEvent(f.pane, &ev);
}
void Clic(Form1& f, QPointF mm, Qt::KeyboardModifiers mods, Qt::MouseButton b = Qt::LeftButton) {
    Souris(f, QEvent::MouseButtonPress, mm, b, b, mods);
    Souris(f, QEvent::MouseButtonRelease, mm, b, {}, mods);
}
void Glisse(Form1& f, QPointF mm) { Souris(f, QEvent::MouseMove, mm, Qt::NoButton, Qt::LeftButton, Qt::ShiftModifier); }

QStringList LignesFichier(const QString& chemin) {
    QFile fi(chemin);
    fi.open(QIODevice::ReadOnly);
    return QString::fromUtf8(fi.readAll()).split("\r\n");
}

// Something dark on the pane at, or a pixel next to, a point in millimetres from RefCur.
bool Encre(Form1& f, QPointF mm) {
    const QImage im = f.pane->image();
    const QPoint p = (Pixel(f, mm) * im.devicePixelRatio()).toPoint();
    for (int i = 0; i < 9; ++i)
        if (qGray(im.pixel(p + QPoint(i % 3 - 1, i / 3 - 1))) < 128) return true;
    return false;
}

struct Outil {
    Banc b;
    Form1& f;
    FrmDessin* d;
    QString donnees; // the file of the second OK's box, as it was shown
    FrmDessin::Choix choix = FrmDessin::Choix::Ajouter;
    bool ajoutPermis = true;

    explicit Outil(const QString& existant = {}) : f([&]() -> Form1& {
        if (!existant.isEmpty()) b.Fichier("Dessin.txt", existant.toUtf8());
        return b.Demarre("CentreE = 100, 80\r\n");
    }()) {
        QTest::keyClick(f.RTB1, Qt::Key_F9);
        d = f.findChild<FrmDessin*>();
        d->FrmMsgBox = [this](const QString& t, bool ajout) { donnees = t; ajoutPermis = ajout; return choix; };
    }
    QString Chemin(const QString& nom) const { return b.travail.filePath(nom); }
};

} // namespace

TEST(Dessin, NumberFormatsAndStraightSegments) {
    const struct { const char* champ; double v; const char* texte; } formats[] = {
        {"A", 3.1, "3.1"},  {"A", 3, "3.0"},     {"A", 2.456, "2.46"}, {" 0 ", 2.5, "3"},
        {"1", -1.25, "-1.3"}, {"2", 1, "1.00"}, {"x", -0.004, "0.0"}};
    for (const auto& c : formats)
        EXPECT_EQ(FormatNombrePoint(c.v, FormatDecimales(c.champ)), c.texte) << c.champ << " " << c.v;
    // The right button keeps a segment horizontal, vertical or at 45 degrees.
    const struct { QPointF ici, fin; } segments[] = {
        {{10, 1}, {10, 0}}, {{1, 10}, {0, 10}}, {{4, -3}, {4, -4}}, {{-4, 3}, {-4, 4}}, {{0, 7}, {0, 7}}};
    for (const auto& s : segments)
        EXPECT_LT(QLineF(ContraintSegment({5, 5}, QPointF(5, 5) + s.ici), QPointF(5, 5) + s.fin).length(), 0.001);
}

// Distance and smoothing are held to their ranges, and the fields but the name lock.
TEST(Dessin, SettingsAreLimited) {
    const struct { QString distance, lissage, distanceLue, lissageLu; } cas[] = {
        {"25", "-1", "20", "0"}, {"-3", "12", "0", "10"}, {"2,5", "3", "2.5", "3"}};
    for (const auto& c : cas) {
        Outil o;
        o.d->TxtDistance->setText(c.distance);
        o.d->TxtLissage->setText(c.lissage);
        o.d->CmdOK->click();
        EXPECT_EQ(o.d->TxtDistance->text() + ' ' + o.d->TxtLissage->text(), c.distanceLue + ' ' + c.lissageLu);
        EXPECT_TRUE(o.d->TxtCouleur->isReadOnly() && !o.d->TxtNom->isReadOnly() && o.d->CmdOK->text() == "Enregistrer");
        o.d->CmdOK->click();
        EXPECT_EQ(QGuiApplication::clipboard()->text(), QString("Plot = Dessin.txt§59,1,2§%1,1,1,,1").arg(c.lissageLu));
    }
}

// The gestures: a press starts a stroke, dragging adds points a distance
// apart, Alt-clicks continue the stroke (the right button straightens it), a
// plain click starts another; Backspace takes the last point off. The file
// then draws the same strokes through its Plot line.
TEST(Dessin, StrokesBecomeTheDataFileAndItsPlotLine) {
    Outil o;
    Form1& f = o.f;
    o.d->TxtDistance->setText("5");
    o.d->CmdOK->click();
    ASSERT_TRUE(o.d->EnDessin() && f.DessinOuvert && !f.Mnu_Dessin->isEnabled() && !f.Mnu_Ouvrir->isEnabled() &&
                !f.pane->NavigationActive());
    const int runs = f.NombreExecutions;
    Souris(f, QEvent::MouseButtonPress, {10, 5}, Qt::LeftButton, Qt::LeftButton, Qt::ShiftModifier);
    Glisse(f, {12, 5});   // nearer than 5 mm: no point
    Glisse(f, {16, 5});
    Souris(f, QEvent::MouseButtonRelease, {16, 5}, Qt::LeftButton, {}, Qt::ShiftModifier);
    Clic(f, {16, 15}, Qt::ShiftModifier | Qt::AltModifier);
    Clic(f, {26, 16}, Qt::ShiftModifier | Qt::AltModifier, Qt::RightButton);
    Clic(f, {50, 50}, Qt::NoModifier); // without Shift the tool takes nothing
    Clic(f, {40, 40}, Qt::ShiftModifier);
    Clic(f, {60, 40}, Qt::ShiftModifier | Qt::AltModifier);
    EXPECT_TRUE(Encre(f, {13, 5}));
    // Every run while drawing puts the strokes back on the new picture: F4,
    // the run of the view's starting zoom, the menu's run.
    QTest::keyClick(f.RTB1, Qt::Key_F4);
    EXPECT_TRUE(Encre(f, {21, 15}));
    QTest::keyClick(f.pane, Qt::Key_F7, Qt::ControlModifier);
    EXPECT_TRUE(Encre(f, {16, 10}));
    f.Mnu_Visualiser->trigger();
    EXPECT_TRUE(Encre(f, {13, 5}));
    QTest::keyClick(f.RTB1, Qt::Key_Semicolon);
    EXPECT_TRUE(o.d->Label10->text() == "KeyCode = 59" && f.RTB1->TexteCrLf() == "CentreE = 100, 80\r\n");
    EXPECT_TRUE(Encre(f, {50, 40}));
    QTest::keyClick(o.d, Qt::Key_Backspace); // drawn over in the background colour
    EXPECT_FALSE(Encre(f, {50, 40}));
    QTest::keyClick(f.RTB1, Qt::Key_F8, Qt::ControlModifier); // RefCur changed from the window
    EXPECT_EQ(o.d->Label10->text(), "RefCur = 0, 0");

    o.d->CmdOK->click();
    const QStringList l = LignesFichier(o.Chemin("Dessin.txt"));
    EXPECT_TRUE(l[0].startsWith("' Fichier de données dessin pour Mirel / Drawing data file for Mirel "));
    EXPECT_EQ(l.mid(1), QStringList({"10.0; 5.0", "16.0; 5.0", "16.0; 15.0", "26.0; 15.0", "'EOD", "40.0; 40.0", ""}));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "Plot = Dessin.txt§59,1,2§0,1,1,,1");
    EXPECT_TRUE(!f.DessinOuvert && f.Mnu_Dessin->isEnabled() && f.Mnu_Ouvrir->isEnabled() && !o.d->isVisible() &&
                !QFile::exists(o.d->CheminTravail()) && f.pane->NavigationActive());
    EXPECT_EQ(f.NombreExecutions, runs + 4);

    Session s(Programme("CT = 20, 10, N\n" + QGuiApplication::clipboard()->text()));
    s.etat.FichierPrincipal = o.Chemin("essai.dat");
    s.Execute();
    QStringList traits; // less the CT's 20, 10
    for (const OpSurface& t : Lignes(s))
        traits << QString::asprintf("%g %g %g %g", t.x1 - 20, t.y1 - 10, t.x2 - 20, t.y2 - 10);
    EXPECT_EQ(traits, QStringList({"10 5 16 5", "16 5 16 15", "16 15 26 15"})) << Messages(s).join("|").toStdString();
}

// A file of that name: its points and strokes are announced; Yes goes on with it
// (shown again, replaced at the end), No starts a new one added to it at the end.
TEST(Dessin, ExistingFileLoadedOrAddedTo) {
    const QString existant = "' en-tête\r\n0; 0\r\n10; 0\r\n'EOD\r\n20; 20\r\nr5; r0\r\n'EOD\r\n";
    for (const bool oui : {true, false}) {
        Outil o(existant);
        o.b.boites.reponses = {int(oui ? Reponse::Oui : Reponse::Non)};
        o.choix = oui ? FrmDessin::Choix::Remplacer : FrmDessin::Choix::Ajouter;
        o.d->CmdOK->click();
        EXPECT_EQ(o.b.boites.Messages(),
                  QStringList{"Un fichier Dessin.txt de données existe et contient 3 points en 2 tracés.\n"
                  "   Charger ces données et continuer le dessin ?"});
        EXPECT_EQ(Encre(o.f, {5, 0}), oui);
        Clic(o.f, {30, 20}, Qt::ShiftModifier | Qt::AltModifier); // no open stroke: a new one
        o.d->CmdOK->click();
        EXPECT_EQ(o.donnees, "Le fichier Dessin.txt existe déjà et contient 3 points en 2 tracés.");
        EXPECT_EQ(o.ajoutPermis, !oui);
        const QStringList l = LignesFichier(o.Chemin("Dessin.txt"));
        EXPECT_EQ(l.mid(0, 7), existant.split("\r\n").mid(0, 7));
        EXPECT_EQ(l.value(7).startsWith("' Fichier de données dessin"), !oui);
        const QStringList fin = oui ? QStringList({"30.0; 20.0", ""}) : QStringList({"30.0; 20.0", "'EOD '", ""});
        EXPECT_EQ(l.mid(oui ? 7 : 8), fin);
    }
}

// Relative points: each after a stroke's first against the one before. Cancel
// at the file's box keeps drawing; Cancel of the tool drops the work file.
TEST(Dessin, RelativePointsAndCancel) {
    Outil o("' x\r\n1; 1\r\n");
    o.b.boites.reponses = {int(Reponse::Non)};
    o.d->TxtNom->setText("  ");
    o.d->TxtDecimales->setText("1");
    o.d->TxtRelatif->setText("o");
    o.d->CmdOK->click();
    Clic(o.f, {1.04, -2}, Qt::ShiftModifier);
    o.choix = FrmDessin::Choix::Annuler;
    o.d->CmdOK->click();
    Clic(o.f, {4.5, 2.26}, Qt::ShiftModifier | Qt::AltModifier);
    Clic(o.f, {4.5, 7.26}, Qt::ShiftModifier | Qt::AltModifier);
    EXPECT_EQ(LignesFichier(o.d->CheminTravail()).mid(1), QStringList({"1.0; -2.0", "r3.5; r4.3", "r0.0; r5.0", ""}));
    const int runs = o.f.NombreExecutions;
    QTest::keyClick(o.d, Qt::Key_Escape);
    EXPECT_FALSE(QFile::exists(o.d->CheminTravail()) || o.d->isVisible() || o.f.DessinOuvert);
    EXPECT_EQ(LignesFichier(o.Chemin("Dessin.txt")), QStringList({"' x", "1; 1", ""}));
    EXPECT_EQ(o.f.NombreExecutions, runs + 1);
    QTest::keyClick(o.f.RTB1, Qt::Key_F9);
    EXPECT_TRUE(o.d->isVisible() && o.d->TxtNom->text() == "  " && o.d->CmdOK->text() == "OK");
}
