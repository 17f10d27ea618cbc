#include "app/fenetre.h"

#include "app/core/aide.h"
#include "app/core/fichiers.h"
#include "app/core/meter.h"

#include "app/core/externes.h"
#include "app/core/inclusion.h"
#include "app/core/installation.h"
#include "app/core/rendu.h"
#include "app/aide_fenetre.h"
#include "app/commande_dialogue.h"
#include "app/dessin.h"
#include "app/apercu.h"
#include "app/export_dialogue.h"
#include "app/dialogues.h"
#include "app/editeur.h"
#include "app/hote_fenetre.h"
#include "app/impression.h"
#include "app/pane.h"
#include "app/recherche.h"
#include "app/secours.h"
#include "app/usage_fenetre.h"
#include "drawing/repere.h"
#include "drawing/surface.h"
#include "language/chaines.h"
#include "language/constantes.h"
#include "language/erreur.h"
#include "language/interprete.h"
#include "language/nombre.h"
#include "language/para.h"
#include "language/vb.h"

#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QMenuBar>
#include <QPrinter>
#include <QPrinterInfo>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTextBlock>

#include <cmath>
#include <type_traits>

using namespace vb;

namespace {

constexpr float DegRad = float(Litteraux::DegRad);
static_assert(DegRad == 0.017453293f);
constexpr double Pi = Litteraux::Pi;

// Half away from zero, so that the read-out's last digit rounds as people
// round by hand (2.5 gives 3, -2.5 gives -3).
QString Fixe(double v, int decimales) {
    const double p = std::pow(10.0, decimales);
    double r = std::round(v * p) / p;
    if (r == 0) r = std::signbit(v) && std::round(v * p) != 0 ? -0.0 : 0.0;
    return QString::number(r, 'f', decimales);
}

QString Pad30(const QString& t) { return t + QString(std::max(0, 30 - int(t.size())), u' '); }

QString UnTab(QString t) {
    while (t.contains(QStringLiteral("\t\t"))) t.replace(QStringLiteral("\t\t"), QStringLiteral("\t"));
    return t;
}


// The caption of an export entry.
QString TexteExport(int langue, const QString& format) { return LoadResString(377 + langue).arg(format); }

} // namespace

// --- the mouse read-out

LectureSouris CalculeLecture(double x, double y, double rx, double ry, double refCurRad) {
    LectureSouris l;
    const double x0 = x - rx, y0 = y - ry;
    const double r = -refCurRad;
    l.dx = x0 * std::cos(r) + y0 * std::sin(r);
    l.dy = -x0 * std::sin(r) + y0 * std::cos(r);
    l.rayon = std::sqrt(l.dx * l.dx + l.dy * l.dy);
    if (l.rayon < 0.05) {
        l.angle = 0;
    } else if (float(l.dx) != 0) {
        l.angle = std::atan(l.dy / l.dx) * 180 / Pi;
        if (l.dx < 0) l.angle += 180;
    } else {
        l.angle = l.dy < 0 ? 270 : 90;
    }
    return l;
}

QString FormatZoom(double v, float zoomE) {
    const int d = zoomE < 0.5f ? 0 : (zoomE < 5.0f ? 1 : 2);
    return Fixe(v, d).replace(u',', u'.');
}

QString TexteText2(double dx, double dy, float zoomE) {
    return FormatZoom(dx, zoomE) + QStringLiteral("  ") + FormatZoom(dy, zoomE);
}

QString TexteText3(double angle, double rayon, bool angleA) {
    const double a = angleA ? 180 - angle : angle;
    return (angleA ? QStringLiteral("A ") : QStringLiteral("T ")) + Fixe(a, 1) + QStringLiteral("°  ") +
           Fixe(rayon, 1);
}

QString FormatDiese(double v) {
    // "##0.#": one decimal at most; the point stays when the decimal is 0 ("12.").
    QString t = Fixe(v, 1);
    if (t.endsWith(QLatin1String(".0"))) t.chop(1);
    return t;
}

// --- the window

Form1::Form1(ServicesFenetre s) : s_(std::move(s)) {
    if (!s_.config) {
        configPropre_ = std::make_unique<ConfigMemoire>();
        s_.config = configPropre_.get();
    }
    if (!s_.boites) {
        boitesPropres_ = std::make_unique<BoitesQt>();
        s_.boites = boitesPropres_.get();
    }
    if (!s_.nomImprimante) s_.nomImprimante = [] { return QPrinterInfo::defaultPrinterName(); };
    if (s_.dossierProgramme.isEmpty()) s_.dossierProgramme = DossierDonnees(QCoreApplication::applicationDirPath());
    if (s_.dossierTravail.isEmpty()) s_.dossierTravail = QDir::currentPath();
    regl.DossierProgramme = AvecBarre(s_.dossierProgramme);
    regl.DossierTravail = AvecBarre(s_.dossierTravail);
    regl.Fichiers = std::make_shared<CacheFichiers>();
    DossierDepart = regl.DossierTravail;
    DossierFichier = DossierDepart;

    setObjectName(QStringLiteral("Form1"));
    hote_ = std::make_unique<HoteFenetre>(*this);
    e.Regl = &regl;
    e.Host = hote_.get();

    zone = new QWidget(this);
    zone->setObjectName(QStringLiteral("zone"));
    setCentralWidget(zone);
    pane = new Pane(zone);
    pane->setObjectName(QStringLiteral("pane"));
    RTB1 = new Editeur(zone);
    RTB1->setObjectName(QStringLiteral("RTB1"));
    RTB1->CommandesExternes = &regl.CommandesExternes;
    RTB1->setFont(Editeur::Police());
    for (QLabel** t : {&Text1, &Text2, &Text3, &Text4}) {
        *t = new QLabel(zone);
        (*t)->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        (*t)->setAutoFillBackground(true);
        (*t)->setMargin(1);
        (*t)->installEventFilter(this);
        Reglee(*t, Qt::white, Qt::black);
    }
    Text1->setObjectName(QStringLiteral("Text1"));
    Text2->setObjectName(QStringLiteral("Text2"));
    Text3->setObjectName(QStringLiteral("Text3"));
    Text4->setObjectName(QStringLiteral("Text4"));
    form2 = new Form2(this);
    secours = std::make_unique<Secours>(RTB1, s_.dossierSecours, FichierCourant, NomCourant,
                                        fichiers_.HorsDisque);
    ConstruitMenus();
    Usage = new UsageFenetre(*this);

    zone->installEventFilter(this);
    RTB1->installEventFilter(this);
    pane->installEventFilter(this);

    connect(pane, &Pane::sourisBouge, this, &Form1::Lecture);
    connect(pane, &Pane::sourisClic, this, &Form1::Clic);
    connect(pane, &Pane::sourisDoubleClic, this, &Form1::DoubleClic);
    connect(RTB1, &Editeur::ligneChangee, this,
            [this](int l, int n) { Text1->setText(QStringLiteral("L %1/%2").arg(l).arg(n)); });
    connect(RTB1, &Editeur::bulleSyntaxe, this, &Form1::BulleSyntaxe);
    connect(RTB1, &Editeur::resumeSyntaxes, this, [this] { Aide(CommandeAide::ResumeSyntaxes); });
    connect(RTB1, &Editeur::arret, this, [this] { e.ArretDemande = true; });
    connect(RTB1, &Editeur::toucheRelachee, this, [this](int k, Qt::KeyboardModifiers) {
        if (k != Qt::Key_F2 && k != Qt::Key_Alt && form2->isVisible()) form2->hide();
        MajText4();
    });
    connect(RTB1, &Editeur::sourisEnfoncee, this, [this] { unsetCursor(); });
    connect(RTB1, &Editeur::sourisRelachee, this, [this] {
        if (form2->isVisible()) form2->hide();
    });

    VueApercu = new Apercu(*this);
    DialogueExport::Raccourcis(*this);

    resize(1100, 720);
    EcritCaption();
    MajText4();
    Dispose();
}

Form1::~Form1() {
    if (filtreExecution_) qApp->removeEventFilter(this);
    e.Host = nullptr;
    e.Pane = e.Surf = nullptr;
}

QString Form1::Chaine(int n) const { return LoadResString(n + regl.LangueMessages); }
QString Form1::ChaineMenu(int n) const { return LoadResString(n + regl.LangueMenus); }

bool Form1::Modifie() const { return RTB1->Modifie; }
void Form1::SetModifie(bool m) { RTB1->Modifie = m; }

void Form1::Reglee(QLabel* l, const QColor& fond, const QColor& texte) {
    QPalette p = l->palette();
    p.setColor(QPalette::Window, fond);
    p.setColor(QPalette::WindowText, texte);
    l->setPalette(p);
}

void Form1::MajText4() {
    const AnneauAnnulation& a = recherche->Annulation;
    Text4->setText(QStringLiteral("%1 : %2  %3  ").arg(a.UndoSlot).arg(a.UndoNb).arg(a.RedoNb));
}

// --- menus

void Form1::ConstruitMenus() {
    QMenuBar* mb = menuBar();
    auto action = [this](QMenu* m, const char* nom, auto slot, bool actif = true) {
        QAction* a = m ? m->addAction(QString()) : menuBar()->addAction(QString());
        a->setObjectName(QString::fromLatin1(nom));
        a->setEnabled(actif);
        if constexpr (!std::is_same_v<decltype(slot), std::nullptr_t>)
            connect(a, &QAction::triggered, this, slot);
        return a;
    };
    Mnu_Fichier = mb->addMenu(QString());
    Mnu_Fichier->setObjectName(QStringLiteral("Mnu_Fichier"));
    Mnu_Ouvrir = action(Mnu_Fichier, "Mnu_Ouvrir", &Form1::Mnu_Ouvrir_Click);
    Mnu_Nouveau = action(Mnu_Fichier, "Mnu_Nouveau", &Form1::Mnu_Nouveau_Click);
    Mnu_OuvrirMeter = action(Mnu_Fichier, "Mnu_OuvrirMeter", &Form1::Mnu_OuvrirMeter_Click);
    Mnu_Fichier->addSeparator();
    Mnu_EnregistrerS = action(Mnu_Fichier, "Mnu_EnregistrerS", &Form1::Mnu_EnregistrerS_Click);
    Mnu_Enregistrer = action(Mnu_Fichier, "Mnu_Enregistrer", &Form1::Mnu_Enregistrer_Click);
    Mnu_Fichier->addSeparator();
    Mnu_Imprimante = action(Mnu_Fichier, "Mnu_Imprimante", &Form1::Mnu_Imprimante_Click);
    Mnu_Imprimer = action(Mnu_Fichier, "Mnu_Imprimer", &Form1::Mnu_Imprimer_Click);
    Mnu_ImprimerZoom = action(Mnu_Fichier, "Mnu_ImprimerZoom", &Form1::Mnu_ImprimerZoom_Click);
    Mnu_ImprimerCode = action(Mnu_Fichier, "Mnu_ImprimerCode", [this] { Imprime_Code(); });
    DialoguesImp = std::make_unique<DialoguesImpressionQt>();
    Mnu_Fichier->addSeparator();
    Mnu_ExportPdf = action(Mnu_Fichier, "Mnu_ExportPdf", [this] { Exporte(QStringLiteral("pdf")); });
    Mnu_ExportSvg = action(Mnu_Fichier, "Mnu_ExportSvg", [this] { Exporte(QStringLiteral("svg")); });
    Mnu_ExportPng = action(Mnu_Fichier, "Mnu_ExportPng", [this] { Exporte(QStringLiteral("png")); });
    Mnu_Fichier->addSeparator();
    Mnu_Quitter = action(Mnu_Fichier, "Mnu_Quitter", &Form1::Mnu_Quitter_Click);

    Mnu_Edition = mb->addMenu(QString());
    Mnu_Edition->setObjectName(QStringLiteral("Mnu_Edition"));
    // The edit entries send their key stroke to the editor ("^X", "{DELETE}"...).
    auto touche = [this](Qt::Key k, Qt::KeyboardModifiers m) {
        return [this, k, m] {
            QKeyEvent appui(QEvent::KeyPress, k, m);
            QApplication::sendEvent(RTB1, &appui);
            QKeyEvent relache(QEvent::KeyRelease, k, m);
            QApplication::sendEvent(RTB1, &relache);
        };
    };
    Mnu_Couper = action(Mnu_Edition, "Mnu_Couper", touche(Qt::Key_X, Qt::ControlModifier));
    Mnu_Copier = action(Mnu_Edition, "Mnu_Copier", touche(Qt::Key_C, Qt::ControlModifier));
    Mnu_Coller = action(Mnu_Edition, "Mnu_Coller", touche(Qt::Key_V, Qt::ControlModifier));
    Mnu_Supprimer = action(Mnu_Edition, "Mnu_Supprimer", touche(Qt::Key_Delete, Qt::NoModifier));
    Mnu_Selectionner = action(Mnu_Edition, "Mnu_Selectionner", touche(Qt::Key_A, Qt::ControlModifier));
    Mnu_Edition->addSeparator();
    Mnu_Defaire = action(Mnu_Edition, "Mnu_Defaire", nullptr);
    Mnu_Refaire = action(Mnu_Edition, "Mnu_Refaire", nullptr);
    Mnu_Rechercher = action(Mnu_Edition, "Mnu_Rechercher", nullptr);
    recherche = new Recherche(RTB1, Mnu_Defaire, Mnu_Refaire, Mnu_Rechercher, this);
    connect(recherche, &Recherche::etatChange, this, &Form1::MajText4);

    Mnu_Masque = action(nullptr, "Mnu_Masque", [this] { OuvreMasque(*this, *s_.boites); });
    connect(RTB1, &Editeur::masque, Mnu_Masque, &QAction::trigger);
    Mnu_Dessin = action(nullptr, "Mnu_Dessin", [this] { Mnu_Dessin_Click(*this, s_.boites); });
    Mnu_Visualiser = action(nullptr, "Mnu_Visualiser", [this] { Visualiser(); });
    Mnu_Zoom = action(nullptr, "Mnu_Zoom", &Form1::Mnu_Zoom_Click);
    Mnu_RefCurseur = action(nullptr, "Mnu_RefCurseur", &Form1::Mnu_RefCurseur_Click);

    Mnu_Options = mb->addMenu(QString());
    Mnu_Options->setObjectName(QStringLiteral("Mnu_Options"));
    Mnu_DblClick = action(Mnu_Options, "Mnu_DblClick", nullptr);
    Mnu_DblClick->setCheckable(true);
    Mnu_Code = action(Mnu_Options, "Mnu_Code", &Form1::Mnu_Code_Click);
    Mnu_Code->setCheckable(true);
    Mnu_Code->setChecked(true);
    Mnu_AgrandirCode = action(Mnu_Options, "Mnu_AgrandirCode", &Form1::Mnu_AgrandirCode_Click);
    Mnu_IniCode = action(Mnu_Options, "Mnu_IniCode", &Form1::Mnu_IniCode_Click);
    Mnu_TaillCar = action(Mnu_Options, "Mnu_TaillCar", &Form1::Mnu_TaillCar_Click);
    Mnu_CentreCurseur = action(Mnu_Options, "Mnu_CentreCurseur", &Form1::Mnu_CentreCurseur_Click);
    Mnu_Options->addSeparator();
    Mnu_Patchs = action(Mnu_Options, "Mnu_Patchs", &Form1::Mnu_Patchs_Click);
    Mnu_Langue = action(Mnu_Options, "Mnu_Langue", &Form1::Mnu_Langue_Click);
    Mnu_Setup = action(Mnu_Options, "Mnu_Setup", &Form1::Mnu_Setup_Click);
    Mnu_Options->addSeparator();
    Mnu_Couleur = action(Mnu_Options, "Mnu_Couleur", &Form1::Mnu_Couleur_Click);
    Mnu_Polices = action(Mnu_Options, "Mnu_Polices", &Form1::Mnu_Polices_Click);
    Mnu_Liste_Fic = action(Mnu_Options, "Mnu_Liste_Fic", [this] { Mnu_Liste_Fic_Click(); });
    // These accelerators reach their entries from anywhere in the window; Ctrl is
    // read at the click (several files for Alt-L, screen fonts for Alt-P).
    Mnu_Couleur->setShortcut(QKeySequence(Qt::ALT | Qt::Key_C));
    Mnu_Polices->setShortcuts({QKeySequence(Qt::ALT | Qt::Key_P), QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_P)});
    Mnu_Liste_Fic->setShortcuts({QKeySequence(Qt::ALT | Qt::Key_L), QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_L)});

    Mnu_Help = mb->addMenu(QString());
    Mnu_Help->setObjectName(QStringLiteral("Mnu_Help"));
    Mnu_Aide25 = action(Mnu_Help, "Mnu_Aide25", [this] { Aide(CommandeAide::Aide25); });
    Mnu_Aide = action(Mnu_Help, "Mnu_Aide", [this] { Aide(CommandeAide::Aide); });
    Mnu_AideMot = action(Mnu_Help, "Mnu_AideMot", [this] { Aide(CommandeAide::AideMot); });
    Mnu_ResumeSyntaxes = action(Mnu_Help, "Mnu_ResumeSyntaxes", [this] { Aide(CommandeAide::ResumeSyntaxes); });
    Mnu_MAJ_Aide = action(Mnu_Help, "Mnu_MAJ_Aide", [this] { Aide(CommandeAide::MAJ_Aide); });
    Mnu_Help->addSeparator();
    Mnu_AProposDe = action(Mnu_Help, "Mnu_AProposDe", &Form1::Mnu_AProposDe_Click);
    Mnu_Non_Doc = action(Mnu_Help, "Mnu_Non_Doc", [this] { Aide(CommandeAide::Non_Doc); });
    AfficheMenus();
}

void Form1::AfficheMenus() {
    Mnu_Fichier->setTitle(ChaineMenu(10));
    Mnu_Ouvrir->setText(ChaineMenu(11));
    Mnu_Nouveau->setText(ChaineMenu(12));
    Mnu_OuvrirMeter->setText(ChaineMenu(13));
    Mnu_EnregistrerS->setText(ChaineMenu(14));
    Mnu_Enregistrer->setText(UnTab(ChaineMenu(15) + QStringLiteral("\t\tCtrl-Shift+S")));
    Mnu_Imprimante->setText(ChaineMenu(16));
    Mnu_Imprimer->setText(ChaineMenu(17));
    Mnu_ImprimerZoom->setText(UnTab(ChaineMenu(78) + QStringLiteral("\t\tCtrl-Shift+P")));
    Mnu_ImprimerCode->setText(ChaineMenu(18));
    Mnu_ExportPdf->setText(TexteExport(regl.LangueMenus, QStringLiteral("PDF")));
    Mnu_ExportSvg->setText(TexteExport(regl.LangueMenus, QStringLiteral("SVG")));
    Mnu_ExportPng->setText(TexteExport(regl.LangueMenus, QStringLiteral("PNG")));
    Mnu_Quitter->setText(ChaineMenu(19));
    Mnu_Edition->setTitle(ChaineMenu(20));
    Mnu_Couper->setText(Pad30(ChaineMenu(21)) + QStringLiteral("\tCtrl-X"));
    Mnu_Copier->setText(Pad30(ChaineMenu(22)) + QStringLiteral("\tCtrl-C"));
    Mnu_Coller->setText(Pad30(ChaineMenu(23)) + QStringLiteral("\tCtrl-V"));
    Mnu_Supprimer->setText(ChaineMenu(24));
    Mnu_Selectionner->setText(Pad30(ChaineMenu(25)) + QStringLiteral("\tCtrl-A"));
    Mnu_Defaire->setText(ChaineMenu(26));
    Mnu_Refaire->setText(ChaineMenu(27));
    Mnu_Rechercher->setText(ChaineMenu(28));
    recherche->Find->Legendes(regl.LangueMenus);
    Mnu_Masque->setText(ChaineMenu(51) + QStringLiteral(" (F2)"));
    Mnu_Dessin->setText(ChaineMenu(38) + QStringLiteral(" (F9)"));
    Mnu_Visualiser->setText(ChaineMenu(37) + QStringLiteral(" (F4)"));
    Mnu_Zoom->setText(ChaineMenu(73) + QStringLiteral(" (F7)"));
    Mnu_RefCurseur->setText(ChaineMenu(74) + QStringLiteral(" (F8)"));
    Mnu_Options->setTitle(ChaineMenu(60));
    Mnu_DblClick->setText(ChaineMenu(61));
    Mnu_Code->setText(ChaineMenu(62));
    Mnu_AgrandirCode->setText(ChaineMenu(76));
    Mnu_IniCode->setText(ChaineMenu(77));
    Mnu_TaillCar->setText(ChaineMenu(82));
    Mnu_CentreCurseur->setText(ChaineMenu(79));
    Mnu_Patchs->setText(ChaineMenu(80));
    Mnu_Langue->setText(ChaineMenu(63));
    Mnu_Setup->setText(ChaineMenu(64));
    Mnu_Couleur->setText(ChaineMenu(75));
    Mnu_Polices->setText(ChaineMenu(40));
    Mnu_Liste_Fic->setText(ChaineMenu(83));
    Mnu_Help->setTitle(ChaineMenu(70));
    // The help menu: one entry when the command dialog and the menus share a
    // language.
    const EtatMenuAide aide = MenuAide(LanguesDeReglages(regl), TableChaines::Standard(), regl.DossierProgramme);
    Mnu_Aide25->setText(aide.LegendeAide25);
    Mnu_Aide->setText(ChaineMenu(71));
    Mnu_Aide->setVisible(aide.AideVisible);
    Mnu_Non_Doc->setVisible(aide.NonDocVisible);
    Mnu_AideMot->setText(ChaineMenu(81));
    Mnu_ResumeSyntaxes->setText(ChaineMenu(84));
    Mnu_MAJ_Aide->setText(ChaineMenu(88));
    Mnu_AProposDe->setText(ChaineMenu(72));
    Text1->setToolTip(ChaineMenu(130));
    Text2->setToolTip(ChaineMenu(131));
    Text3->setToolTip(ChaineMenu(132));
    AfficheEntreesImpression();
    if (Usage) Usage->Legendes();
    if (VueApercu) VueApercu->Legendes();
}

QString Form1::TexteCaption() const {
    QString t = QStringLiteral("Mirel  V") + Version;
    if (!NomCourant.isEmpty()) t += QStringLiteral("   ") + Chaine(110) + QStringLiteral(": ") + NomCourant;
    return t;
}

// A "*" ahead while the text is unsaved: modified, or not on disk since a
// save failed.
void Form1::EcritCaption() {
    setWindowTitle((Modifie() || fichiers_.HorsDisque ? QStringLiteral("*") : QString()) + TexteCaption());
}

// --- layout

void Form1::Dispose() {
    const int W = zone->width(), H = zone->height();
    pane->setGeometry(0, 0, W, H);
    const int we = std::max(1, int(W / RatioCode));
    RTB1->setGeometry(W - we, 0, we, H);
    const QFontMetrics fm(Text1->font());
    const float z = e.Repere.ZoomE;
    const QString exemple2 = z < 0.5f ? QStringLiteral("-999 -999")
                             : z < 5.0f ? QStringLiteral("-999.9 -999.9")
                                        : QStringLiteral("-999.99 -999.99");
    const int h = fm.height() + 6;
    int x = W - we;
    const struct { QLabel* l; QString exemple; } champs[] = {
        {Text1, QStringLiteral("L 999/999")},
        {Text2, exemple2},
        {Text3, QStringLiteral("T -888.8° -999.9")},
        {Text4, QStringLiteral("99 : 99  99  ")}};
    for (const auto& c : champs) {
        const int w = fm.horizontalAdvance(c.exemple) + 12;
        x -= w;
        c.l->setGeometry(x, H - h, w, h);
        c.l->raise();
    }
    RTB1->raise();
}

double Form1::LargeurEditeurUnites() const {
    if (!Mnu_Code->isChecked()) return 0;
    const double fz = double(regl.Zmm) * e.Repere.ZoomE;
    return RTB1->width() * pane->MmParPixelVue() / (fz > 0 ? fz : 1);
}

// --- start-up

bool Form1::Demarrer(const QString& ligneCommande) {
    // 1. The printer: where none is configured, Qt's PDF printer stands in.
    // (The hourglass of steps 1 and 2 lasts no time here; the runs show their own.)
    NomImprimante = s_.nomImprimante ? s_.nomImprimante() : QString();
    if (NomImprimante.isEmpty()) {
        NomImprimante = QStringLiteral("PDF");
        ImprimantePdf = true;
    }
    // Without a printer the print entries are off (the menus' texts, step 9);
    // the exports remain.
    // 2. Measures: the virtual 600 dpi printer and the screen.
    SurfaceEnregistree imprimante(GenreSurface::Imprimante, 210 / 25.4 * 600, 297 / 25.4 * 600,
                                  25.4 / 600);
    MesureImprimante(e, imprimante);
    if (RatioCode == 0) RatioCode = 3.3f;
    Version = TexteVersionProgramme();
    // The settings are read before the window shows, so that it opens where
    // it was left (step 4 takes them from there).
    Config = s_.config->Lit(regl);
    Usage->RestaurePlace();
    // 3.
    show();
    pane->Prepare();
    AttachePane(e, pane->surface());
    Debut(ligneCommande);
    ReprendSecours();
    // 12.
    RTB1->PositionRecherche = -1;
    Visualiser();
    recherche->Annulation.Initialise();
    MajText4();
    return true;
}

void Form1::Debut(const QString& ligneCommande) {
    // 4.
    e.Ale.seed(QRandomGenerator::global()->generate());
    FermeFichiers(e);
    DossierDepart = regl.DossierTravail;
    AppliqueLangues();
    regl.Zmm = Config.Zmm == 0 ? 1.0f : Config.Zmm;
    regl.Patchs = Config.Patchs;
    Mnu_DblClick->setChecked(Config.DoubleClic.trimmed().toUpper() == QLatin1String("OUI"));
    VueApercu->Mnu_ApercuDirect->setChecked(Config.ApercuDirect);
    if (Config.TailleCarCode) TailleCarCode(*Config.TailleCarCode);
    // 5. Tab stops at 2, 4, 6, 8, 10 mm (the form's unit) and on.
    RTB1->setTabStopDistance(2.0 / pane->MmParPixel());
    // 7. The version of line 1, then the four languages.
    const bool versionOk = VersionConforme(Config.PremiereLigne, Version);
    // A new version opens Form3 preset with the file's languages.
    if (!versionOk || DecalageDeLangue(Config.Langue) < 0 || DecalageDeLangue(Config.LangueMenu) < 0 ||
        DecalageDeLangue(Config.LangueAide) < 0 || DecalageDeLangue(Config.LangueMasq) < 0) {
        ValeursConfig v = Config;
        QApplication::setOverrideCursor(Qt::ArrowCursor);
        if (s_.boites->Langues(this, v)) Config = v;
        QApplication::restoreOverrideCursor();
        // Unset languages that the dialog left unset default to the first one.
        for (QString* l : {&Config.Langue, &Config.LangueMenu, &Config.LangueAide, &Config.LangueMasq})
            if (DecalageDeLangue(*l) < 0) *l = NomDeLangue(0);
        EnregistreLangues();
    }
    // 8.
    ChargeCommandesExternes(regl);
    // 9.
    Demarre = true;
    AfficheMenus();
    // 10.
    QString nom = ligneCommande;
    if (!nom.trimmed().isEmpty()) {
        nom.remove(u'"');
        nom = nom.trimmed();
        NomCourant = nom;
        EcritCaption();
    } else {
        nom = Config.FichierDat;
    }
    // 11.
    bool charge = false;
    if (!nom.isEmpty() && QFileInfo(nom).isFile()) {
        const QString chemin = QFileInfo(nom).absoluteFilePath();
        // Its run comes at step 12; a meter file is imported.
        charge = CommandeFichier([this, &chemin](EtatFichiers& ef, FenetreFichiers& p) {
            return ChargeSelonType(ef, regl, p, chemin, false);
        });
    }
    if (!charge) Mnu_Ouvrir_Click();
    EcritCaption();
    SetModifie(false);
}

void Form1::AppliqueLangues() {
    auto decalage = [](const QString& n) { return std::max(0, DecalageDeLangue(n)); };
    regl.LangueMessages = decalage(Config.Langue);
    regl.LangueMenus = decalage(Config.LangueMenu);
    regl.LangueAide = decalage(Config.LangueAide);
    regl.LangueMasque = decalage(Config.LangueMasq);
    // Qt's own buttons (Yes, No, Cancel, the file dialogs) in the messages' language.
    TraduitQt(regl.LangueMessages, this);
}

void Form1::LitFic(const TexteLu& lu) {
    RTB1->ChargeTexte(lu.Texte);
    e.Repere.ZoomDepart = lu.ZoomDepart;
    e.Repere.ZoomE = e.Repere.ZoomDepart;
    RTB1->MajLigne();
    if (VueApercu) VueApercu->ApresChargement();
}

// --- runs

// What both runs of the window start with; false while a run is under way.
bool Form1::PrepareExecution() {
    if (e.ExecutionEnCours) return false;
    ++NombreExecutions;
    FixeFichierPrincipal();
    return true;
}

// The main file of %File, %Path and of Open's lookup.
void Form1::FixeFichierPrincipal() {
    e.FichierPrincipal = NomCourant.isEmpty() ? QString() : QFileInfo(NomCourant).absoluteFilePath();
}

void Form1::Visualiser() {
    if (PrepareExecution()) ::Visualiser(e);
}

void Form1::RelanceSansZoom() {
    if (!PrepareExecution()) return;
    FermeFichiers(e);
    LanceExecution(e);
}

void Form1::Occupe(bool oui) {
    if (oui) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        if (!filtreExecution_) qApp->installEventFilter(this);
        filtreExecution_ = true;
        menuBar()->setEnabled(false);
    } else {
        if (filtreExecution_) qApp->removeEventFilter(this);
        filtreExecution_ = false;
        menuBar()->setEnabled(true);
        QApplication::restoreOverrideCursor();
    }
}

void Form1::DebutRun() {
    Occupe(true);
    Mnu_Visualiser->setEnabled(false);
    Mnu_Zoom->setEnabled(false);
    Mnu_RefCurseur->setEnabled(false);
    // The pending colouring first, so the run reads the keywords as shown.
    RTB1->VideLigneSale();
    secours->Ecrit();
    PreparePane();
}

void Form1::PreparePane() {
    if (pane->Prepare()) AttachePane(e, pane->surface());
    e.Repere.LargeurEditeur = LargeurEditeurUnites();
}

void Form1::FinRunPane() {
    RefCurX = e.Repere.SourisRefX;
    RefCurY = e.Repere.SourisRefY;
    RefCurAngle = e.Repere.RefCurAngle.toFloat();
    RefCurRad = RefCurAngle * DegRad;
    // A run clears the pane: the freehand drawing under way goes back on it.
    if (DessinOuvert && dessin) dessin->ApresRun();
}

void Form1::FinRun() {
    Mnu_Visualiser->setEnabled(true);
    Mnu_Zoom->setEnabled(true);
    Mnu_RefCurseur->setEnabled(true);
    Occupe(false);
    FinRunPane();
    pane->update();
    Dispose();
    if (Mnu_Code->isChecked()) RTB1->setFocus();
    FermeSiDemandee();
}

bool Form1::FermeSiDemandee() {
    if (!fermetureDemandee_) return false;
    fermetureDemandee_ = false;
    QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
    return true;
}

// --- the mouse

QPointF Form1::VersSurface(QPointF pixel) const {
    const Surface* s = pane->surface();
    if (!s) return {};
    return s->DepuisPixel(pixel.x(), pixel.y());
}

QPointF Form1::VersPixel(double x, double y) const {
    const Surface* s = pane->surface();
    if (!s) return {};
    return s->VersPixel(x, y);
}

void Form1::Lecture(QPointF pixel, Qt::MouseButtons boutons, Qt::KeyboardModifiers mods) {
    if (!pane->surface()) return;
    const QPointF p = VersSurface(pixel);
    SourisX = p.x();
    SourisY = p.y();
    const bool alt = mods & Qt::AltModifier;
    const double rx = alt ? AltX : RefCurX, ry = alt ? AltY : RefCurY;
    Reglee(Text2, alt ? QColor(200, 255, 200) : QColor(Qt::white), Qt::black);
    const LectureSouris l = CalculeLecture(SourisX, SourisY, rx, ry, RefCurRad);
    DerniereLecture = l;
    if ((boutons & Qt::LeftButton) && !DessinOuvert) {
        Reglee(Text2, alt ? QColor(200, 255, 200) : QColor(Qt::white), Qt::red);
        Text2->setText(TexteText2(SourisX - e.Repere.DecalageVueX, SourisY - e.Repere.DecalageVueY,
                                  e.Repere.ZoomE));
    } else {
        Text2->setText(TexteText2(l.dx, l.dy, e.Repere.ZoomE));
    }
    Text3->setText(TexteText3(l.angle, l.rayon, AngleA));
    MajText4();
}

void Form1::Clic(QPointF pixel, Qt::MouseButton, Qt::KeyboardModifiers mods) {
    if (mods & Qt::AltModifier) {
        const QPointF p = VersSurface(pixel);
        AltX = p.x();
        AltY = p.y();
    }
}

void Form1::BasculeAngleA() {
    AngleA = !AngleA;
    const double a = AngleA ? 180 - DerniereLecture.angle : DerniereLecture.angle;
    Text3->setText((AngleA ? QStringLiteral("A ") : QStringLiteral("T ")) + FormatDiese(a) +
                   QStringLiteral("°  ") + FormatDiese(DerniereLecture.rayon));
}

void Form1::DoubleClic(QPointF pixel, Qt::KeyboardModifiers mods) {
    Lecture(pixel, Qt::NoButton, mods);
    const bool ctrl = mods & Qt::ControlModifier;
    if (!Mnu_DblClick->isChecked() && !(ctrl && !DessinOuvert)) {
        Positionner(mods);
        const int largeur = zone->width() - (Mnu_Code->isChecked() ? RTB1->width() : 0);
        QCursor::setPos(pane->mapToGlobal(QPoint(largeur / 2, pane->height() / 2)));
        return;
    }
    InsereCoordonnees();
}

void Form1::InsereCoordonnees() {
    const QString sep = e.Separateur1.isEmpty() ? QStringLiteral(",") : e.Separateur1;
    QString t = Text2->text();
    const int b = int(t.indexOf(u' '));
    if (b >= 0) t.replace(b, 1, sep);
    const int d = int(t.lastIndexOf(u' '));
    if (d >= 0) t.remove(d, 1);
    // The mark: the axes of a turned reference, then a blue cross.
    if (Surface* s = pane->surface()) {
        const int largeur = s->DrawWidth;
        if (RefCurAngle != 0) {
            const double a = -RefCurRad;
            const LectureSouris l = CalculeLecture(SourisX, SourisY, RefCurX, RefCurY, RefCurRad);
            const double fx = RefCurX + l.dx * std::cos(a), fy = RefCurY + l.dx * std::sin(a);
            s->DrawWidth = 1;
            s->Line(RefCurX, RefCurY, fx, fy, RGB(255, 128, 64));
            s->Line(fx, fy, SourisX, SourisY, RGB(255, 128, 64));
        }
        s->DrawWidth = 2;
        const double m = 1.5;
        s->Line(SourisX - m, SourisY, SourisX + m, SourisY, RGB(0, 0, 255));
        s->Line(SourisX, SourisY - m, SourisX, SourisY + m, RGB(0, 0, 255));
        s->DrawWidth = largeur;
        pane->update();
    }
    // The caret's left side.
    QTextCursor c = RTB1->textCursor();
    const int debut = c.selectionStart();
    const QTextBlock bloc = RTB1->document()->findBlock(debut);
    const QString doc = RTB1->document()->toRawText();
    int i = debut - 1;
    while (i >= 0 && (doc[i] == u' ' || doc[i] == u'\t')) --i;
    if (i >= 0) {
        const QString trouve = doc.mid(i, 1);
        if (trouve != QLatin1String("=") && trouve != QLatin1String("'") && trouve != sep)
            t = sep + u' ' + t;
    }
    const QString avant = bloc.text().left(debut - bloc.position());
    if (Trim(bloc.text()).toUpper().startsWith(QLatin1String("TRAIT")) && avant.count(sep) == 3)
        t += QStringLiteral(",,");
    RTB1->InsereTexte(t);
}

void Form1::Positionner(Qt::KeyboardModifiers mods) {
    if (DessinOuvert) return;
    const Surface* s = pane->surface();
    EtatRepere& r = e.Repere;
    // The frame's point: the origin of the last run's frame, as level 1 left
    // it at its end, so that the mouse point comes to the default centre.
    const double ox = r.SourisOrigineX, oy = r.SourisOrigineY;
    if (mods & Qt::ControlModifier) {
        r.DecalageVueX = r.DecalageVueY = 0;
    } else if (s && (mods & Qt::ShiftModifier)) {
        const double largeur = s->ScaleWidth - LargeurEditeurUnites();
        r.DecalageVueX = SourisX - ox + largeur / 2;
        r.DecalageVueY = SourisY - oy - s->ScaleHeight / 2;
    } else {
        r.DecalageVueX = SourisX - ox;
        r.DecalageVueY = SourisY - oy;
    }
    Visualiser();
}

// --- dialogs of the window

void Form1::Mnu_Zoom_Click() {
    if (e.ExecutionEnCours) return;
    Form4 f(this, regl.LangueMenus, e.Repere.ZoomE, regl.Zmm, s_.boites);
    if (f.exec() == QDialog::Accepted) {
        e.Repere.ZoomE = f.ZoomE;
        if (f.ZmmChange) {
            regl.Zmm = f.Zmm;
            s_.config->EcritConfig(QStringLiteral("Zmm ="), u' ' + QLocale::c().toString(f.Zmm));
        }
    }
    pane->update();
    RelanceSansZoom();
    unsetCursor();
    if (Mnu_Code->isChecked()) RTB1->setFocus();
}

void Form1::ZoomDepartRun() {
    if (e.ExecutionEnCours) return;
    e.Repere.ZoomE = e.Repere.ZoomDepart;
    RelanceSansZoom();
    unsetCursor();
    if (Mnu_Code->isChecked()) RTB1->setFocus();
}

bool Form1::AppliqueRefCur(const QString& champ) {
    QString t = champ.trimmed().isEmpty() ? QStringLiteral("0,0§0") : champ;
    if (!t.contains(u',')) {
        s_.boites->Message(this, QStringLiteral("Mirel"), Chaine(166), Boutons::Ok, Icone::Exclamation);
        return false;
    }
    const QString s1 = e.Separateur1, s2 = e.Separateur2;
    e.Separateur1 = QStringLiteral(",");
    e.Separateur2 = QStringLiteral("§");
    double x = 0, y = 0, angle = 0;
    bool ok = true;
    try {
        x = ParaVal(e, t, 1).value_or(0);
        y = ParaVal(e, t, 2).value_or(0);
        QString reste = Piece(t, 2, e.Separateur1);
        reste.remove(u'Z').remove(u'z');
        const int p = InStr(reste, e.Separateur2);
        if (p > 0) {
            const QString a = Trim(Mid(reste, p + 1));
            if (!a.isEmpty()) angle = -ParaVal(e, a, 1).value_or(0);
        }
    } catch (const std::exception&) {
        ok = false;
    }
    e.Separateur1 = s1;
    e.Separateur2 = s2;
    e.TexteErreur.clear();
    if (!ok) {
        s_.boites->Message(this, QStringLiteral("Mirel"), Chaine(166), Boutons::Ok, Icone::Exclamation);
        return false;
    }
    const Surface* s = pane->surface();
    if (t.contains(u'Z', Qt::CaseInsensitive)) {
        // Relative to the lower left corner of the pane; no rotation.
        const double coinX = s ? s->ScaleLeft : 0, coinY = s ? s->ScaleTop + s->ScaleHeight : 0;
        RefCurX = coinX + x;
        RefCurY = coinY + y;
        RefCurAngle = 0;
    } else {
        RefCurX = e.Repere.SourisOrigineX + x;
        RefCurY = e.Repere.SourisOrigineY + y;
        RefCurAngle = float(angle);
    }
    RefCurRad = RefCurAngle * DegRad;
    if (dessin) dessin->MajRefCur();
    return true;
}

void Form1::Mnu_RefCurseur_Click() {
    if (e.ExecutionEnCours) return;
    QString champ = StrF(float(RefCurX - e.Repere.SourisOrigineX)) + QStringLiteral(", ") +
                    StrF(float(RefCurY - e.Repere.SourisOrigineY));
    if (RefCurAngle != 0) champ += QStringLiteral("§") + StrF(-RefCurAngle);
    Form5 f(this, regl.LangueMenus, champ, [this](const QString& t) { return AppliqueRefCur(t); });
    f.exec();
    if (Mnu_Code->isChecked()) RTB1->setFocus();
}

void Form1::RefCurOrigine() {
    RefCurX = e.Repere.SourisOrigineX;
    RefCurY = e.Repere.SourisOrigineY;
    RefCurAngle = 0;
    RefCurRad = 0;
    if (dessin) dessin->MajRefCur();
}

// The help commands on the generated pages of core/aide.
// `Mnu_AideMot` opens at the topic of the word at the caret.
void Form1::Aide(CommandeAide commande) {
    QString mot;
    if (commande == CommandeAide::AideMot) {
        const QTextCursor c = RTB1->textCursor();
        mot = MotAide(RTB1->toPlainText(), c.position(), c.selectedText(), e.Separateur1);
    }
    if (!aide_) aide_ = new FenetreAide(this);
    if (const QString fichier = FichierAideExterne(commande, regl); !fichier.isEmpty())
        aide_->OuvreFichier(fichier);
    else
        aide_->Montre(PageDe(commande, regl, mot));
}

void Form1::BulleSyntaxe() {
    const int n = RangSyntaxe(RTB1->MotSyntaxeCaret());
    const QString texte = LoadResString(n + regl.LangueMasque) + u'\n';
    const QRect cr = RTB1->cursorRect();
    const QPoint global = RTB1->viewport()->mapToGlobal(cr.bottomLeft() + QPoint(0, 2));
    form2->Montre(texte, global, QRect(mapToGlobal(QPoint(0, 0)), size()));
}

// --- Options

void Form1::Mnu_Code_Click() {
    const bool vu = Mnu_Code->isChecked();
    for (QWidget* w : {static_cast<QWidget*>(RTB1), static_cast<QWidget*>(Text1),
                       static_cast<QWidget*>(Text2), static_cast<QWidget*>(Text3)})
        w->setVisible(vu);
    if (vu) RTB1->setFocus();
}

void Form1::Mnu_AgrandirCode_Click() {
    if (RTB1->width() * 1.3 < zone->width()) {
        RatioCode /= 1.2f;
        Dispose();
    }
}

void Form1::Mnu_IniCode_Click() {
    RatioCode = 3.3f;
    Dispose();
    Visualiser();
}

void Form1::Mnu_CentreCurseur_Click() {
    int largeur = zone->width();
    if (Mnu_Code->isChecked()) largeur -= RTB1->width();
    QCursor::setPos(zone->mapToGlobal(QPoint(largeur / 2, zone->height() / 2)));
}

void Form1::TailleCarCode(double taille) {
    if (!(taille > 0)) return;
    taille = std::clamp(taille, 6.0, 24.0);
    RTB1->setUpdatesEnabled(false);
    QFont f = RTB1->font();
    f.setPointSizeF(taille);
    RTB1->setFont(f);
    RTB1->setTabStopDistance(2.0 / pane->MmParPixel());
    RTB1->Cmd_Ctrl_K();
    RTB1->setUpdatesEnabled(true);
    QFont ft = Text1->font();
    ft.setPointSizeF(std::max(6.0, taille * 0.9));
    for (QLabel* l : {Text1, Text2, Text3, Text4}) l->setFont(ft);
    Dispose();
}

void Form1::Mnu_TaillCar_Click() {
    QString titre = ChaineMenu(82);
    titre.remove(u'&');
    const QString actuel = QLocale::c().toString(RTB1->font().pointSizeF());
    const std::optional<QString> r = s_.boites->Saisie(this, titre, titre, actuel, Chaine(172));
    if (!r) return;
    const std::optional<double> tape = NombreTape(*r);
    if (!tape || !(*tape > 0)) return;
    const double v = std::clamp(*tape, 6.0, 24.0);
    TailleCarCode(v);
    s_.config->EcritConfig(QStringLiteral("TailleCarCode ="), u' ' + QLocale::c().toString(v));
}

void Form1::Mnu_Couleur_Click() {
    const std::optional<QColor> c = s_.boites->Couleur(this);
    if (!c) return;
    const QString mot = regl.LangueMasque == 0 ? QStringLiteral("RVB ") : QStringLiteral("RGB ");
    RTB1->InsereTexte(mot + QStringLiteral("%1 %2 %3").arg(c->red()).arg(c->green()).arg(c->blue()));
}

void Form1::Mnu_Langue_Click() {
    ValeursConfig v = Config;
    if (!s_.boites->Langues(this, v)) return;
    Config = v;
    EnregistreLangues();
    AfficheMenus();
    EcritCaption();
}

// The setup for the current user: a working folder, then each step asked,
// done, confirmed and logged with the date in MirelSetup.log of that folder.
void Form1::Mnu_Setup_Click() {
    const TextesSetup t = TextesDuSetup(regl.LangueMenus);
    const std::optional<QString> choix =
        s_.boites->Saisie(this, t.Titre, t.Dossier, QDir::home().filePath(QStringLiteral("Mirel")), QString());
    if (!choix || choix->trimmed().isEmpty()) return;
    const QString dossier = QDir(QDir::cleanPath(choix->trimmed())).absolutePath();
    auto etape = [&](const QString& question, const std::function<bool(QString&)>& faire) {
        if (s_.boites->Message(this, t.Titre, question, Boutons::OuiNon, Icone::Question) != Reponse::Oui) return;
        QString erreur;
        const bool ok = faire(erreur);
        const QString compte = ok ? t.Fait.arg(question) : t.Echec.arg(question + u' ' + erreur);
        JournalSetup(dossier, compte, QDateTime::currentDateTime());
        s_.boites->Message(this, t.Titre, compte, Boutons::Ok, ok ? Icone::Information : Icone::Exclamation);
    };
    etape(t.Copie.arg(dossier), [&](QString& erreur) {
        return CopieExemples(regl.DossierProgramme + QStringLiteral("examples"), dossier, erreur) >= 0;
    });
    etape(t.Lanceur, [&](QString& erreur) {
        return CreeLanceur(QStandardPaths::writableLocation(QStandardPaths::ApplicationsLocation),
                           QCoreApplication::applicationFilePath(), erreur);
    });
    etape(t.Association, AssocieFichiers);
}

void Form1::EnregistreLangues() {
    s_.config->EcritConfig(QStringLiteral("Langue ="), u' ' + Config.Langue);
    s_.config->EcritConfig(QStringLiteral("LangueMenu ="), u' ' + Config.LangueMenu);
    s_.config->EcritConfig(QStringLiteral("LangueAide ="), u' ' + Config.LangueAide);
    s_.config->EcritConfig(QStringLiteral("LangueMasq ="), u' ' + Config.LangueMasq);
    AppliqueLangues();
    s_.config->LanguesValidees(regl);
}

// The patch box: asks until the answer is valid or empty.
void Form1::Mnu_Patchs_Click() {
    int patchs = regl.Patchs;
    auto demande = [this](const QString& invite) {
        return s_.boites->Saisie(this, TitreBoite, invite, QString(), Chaine(172)).value_or(QString());
    };
    auto ecrit = [this](const QString& valeur) {
        s_.config->EcritConfig(QStringLiteral("Patchs ="), u' ' + valeur);
    };
    if (::Mnu_Patchs(patchs, demande, TableChaines::Standard(), regl.LangueMessages, ecrit))
        regl.Patchs = Config.Patchs = patchs;
}

void Form1::Mnu_AProposDe_Click() { AProposDe(this, regl.LangueMenus, Version); }

// --- files: the commands of src/app/core/fichiers on this window

// What those commands ask of the window: its boxes and file dialogs, the
// editor's text, the caption, the busy state, a run, the undo reset.
class Form1::PontFichiers : public FenetreFichiers {
public:
    explicit PontFichiers(Form1& fenetre) : f(fenetre) {}
    Reponse Message(const QString& texte, Boutons b) override {
        const Icone i = b == Boutons::OuiNonAnnuler ? Icone::Question : Icone::Exclamation;
        return f.s_.boites->Message(&f, TitreBoite, texte, b, i);
    }
    QString DialogueOuvrir(const QString& dossier, const QString& filtre) override {
        return f.s_.boites->FichierOuvrir(&f, dossier, FiltreQt(filtre));
    }
    QString DialogueEnregistrer(const QString& nomInitial, const QString& filtre,
                                const QString& extension) override {
        return f.s_.boites->FichierEnregistrer(&f, nomInitial, FiltreQt(filtre), extension);
    }
    QStringList DialogueListe(const QString& filtre, bool plusieurs) override {
        return f.s_.boites->FichiersListe(&f, f.DossierFichier, FiltreQt(filtre), plusieurs);
    }
    QString TexteEditeur() const override { return f.RTB1->TexteCrLf(); }
    void ChargeTexte(const TexteLu& lu) override { f.LitFic(lu); }
    QSizeF PageImprimante() override { return f.PapierImprimante(); }
    void VideEditeur() override { f.RTB1->ChargeTexte(QString()); }
    void EcritLegende(const QString& nomCourant) override {
        f.NomCourant = nomCourant;
        f.EcritCaption();
    }
    void Occupe(bool oui) override { f.Occupe(oui); }
    // Opening a file: the process's folder, and with it the working folder and
    // the file's folder of the runs (the lookup of included files, New's
    // template).
    void ChangeDossier(const QString& dossier) override {
        FenetreFichiers::ChangeDossier(dossier);
        if (!dossier.isEmpty()) f.regl.DossierTravail = f.regl.DossierFichier = dossier;
    }
    void Visualiser() override { f.Visualiser(); }
    void DebutAnnulation() override {
        f.recherche->Annulation.Initialise();
        f.MajText4();
    }

private:
    Form1& f;
};

bool Form1::CommandeFichier(const std::function<bool(EtatFichiers&, FenetreFichiers&)>& commande) {
    fichiers_.NomEcrit.clear();
    fichiers_.NomCourant = NomCourant;
    fichiers_.FichierCourant = FichierCourant;
    fichiers_.DossierFichier = DossierFichier;
    fichiers_.Modifie = Modifie();
    PontFichiers pont(*this);
    const bool r = commande(fichiers_, pont);
    NomCourant = fichiers_.NomCourant;
    FichierCourant = fichiers_.FichierCourant;
    DossierFichier = fichiers_.DossierFichier;
    SetModifie(fichiers_.Modifie);
    Usage->ApresCommandeFichier(fichiers_.NomEcrit);
    EcritCaption();
    secours->Ecrit(); // a text put on disk needs its copy no more
    return r;
}

void Form1::Mnu_Ouvrir_Click() {
    if (e.ExecutionEnCours) return;
    CommandeFichier([this](EtatFichiers& ef, FenetreFichiers& p) { return ::Mnu_Ouvrir(ef, regl, p); });
}

void Form1::Mnu_OuvrirMeter_Click() {
    if (e.ExecutionEnCours) return;
    CommandeFichier([this](EtatFichiers& ef, FenetreFichiers& p) { return ::Mnu_OuvrirMeter(ef, regl, p); });
}

void Form1::Mnu_Nouveau_Click() {
    if (e.ExecutionEnCours) return;
    CommandeFichier([this](EtatFichiers& ef, FenetreFichiers& p) { return ::Mnu_Nouveau(ef, regl, p); });
}

void Form1::Mnu_EnregistrerS_Click() {
    CommandeFichier([this](EtatFichiers& ef, FenetreFichiers& p) { return ::Mnu_EnregistrerS(ef, regl, p); });
}

void Form1::Mnu_Enregistrer_Click() {
    CommandeFichier([this](EtatFichiers& ef, FenetreFichiers& p) { return ::Mnu_Enregistrer(ef, regl, p); });
}

// Alt-L: the names chosen go in at the caret as selected text; nothing runs.
void Form1::Mnu_Liste_Fic_Click() {
    if (e.ExecutionEnCours) return;
    const bool ctrl = QApplication::keyboardModifiers() & Qt::ControlModifier;
    PontFichiers pont(*this);
    const QString t = ::Mnu_Liste_Fic(regl, pont, e.Separateur1, ctrl);
    if (!t.isEmpty()) RTB1->InsereTexte(t);
}

void Form1::Exporte(const QString& extension) { DialogueExport::Exporte(*this, extension); }

void Form1::Mnu_Quitter_Click() { close(); }

// --- keys

bool Form1::ToucheFenetre(QKeyEvent* ev) {
    const int k = ev->key();
    const Qt::KeyboardModifiers m =
        ev->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
    switch (k) {
    case Qt::Key_F4:
        if (m == Qt::NoModifier) {
            Visualiser();
            return true;
        }
        if (m == Qt::AltModifier) {
            Mnu_Quitter_Click();
            return true;
        }
        return false;
    case Qt::Key_F6:
    case Qt::Key_F12:
        Positionner(m);
        return true;
    case Qt::Key_F7:
        if (m & Qt::ControlModifier) ZoomDepartRun();
        else Mnu_Zoom_Click();
        return true;
    case Qt::Key_F8:
        if (m & Qt::ControlModifier) RefCurOrigine();
        else Mnu_RefCurseur_Click();
        return true;
    case Qt::Key_F9:
        if (Mnu_Dessin->isEnabled()) Mnu_Dessin->trigger();
        return true;
    case Qt::Key_Semicolon:
        // While drawing, ";" hands the keyboard back to the drawing tool.
        if (!dessin || !dessin->EnDessin()) return false;
        dessin->ReprendClavier();
        return true;
    case Qt::Key_Escape:
        e.ArretDemande = true;
        return false;
    case Qt::Key_S:
        if (m == (Qt::ControlModifier | Qt::ShiftModifier)) {
            Mnu_Enregistrer_Click();
            return true;
        }
        return false;
    case Qt::Key_P:
        if (m == (Qt::ControlModifier | Qt::ShiftModifier)) {
            if (Mnu_ImprimerZoom->isEnabled()) Mnu_ImprimerZoom->trigger();
            return true;
        }
        return false;
    default:
        return false;
    }
}

void Form1::keyPressEvent(QKeyEvent* ev) {
    if (!ToucheFenetre(ev)) QMainWindow::keyPressEvent(ev);
}

bool Form1::eventFilter(QObject* objet, QEvent* ev) {
    // During a run the window is disabled: its input goes nowhere, but Esc
    // asks for the stop (ArretDemande).
    if (filtreExecution_ && objet->isWidgetType() && static_cast<QWidget*>(objet)->window() == this) {
        switch (ev->type()) {
        case QEvent::KeyPress:
            if (static_cast<QKeyEvent*>(ev)->key() == Qt::Key_Escape) e.ArretDemande = true;
            return true;
        case QEvent::KeyRelease:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::Wheel:
        case QEvent::Shortcut:
        case QEvent::ShortcutOverride:
        case QEvent::ContextMenu:
            return true;
        default:
            break;
        }
    }
    if (objet == zone && ev->type() == QEvent::Resize) {
        if (!isMinimized()) Dispose();
        return false;
    }
    if (objet == Text3 && ev->type() == QEvent::MouseButtonDblClick) {
        BasculeAngleA();
        return true;
    }
    if ((objet == RTB1 || objet == pane) && ev->type() == QEvent::KeyPress)
        return ToucheFenetre(static_cast<QKeyEvent*>(ev));
    return QMainWindow::eventFilter(objet, ev);
}

// --- shutdown

void Form1::closeEvent(QCloseEvent* ev) {
    // A run, or a print getting ready, ends first; the window closes after it.
    if (EnExecution()) {
        e.ArretDemande = true;
        fermetureDemandee_ = true;
        ev->ignore();
        return;
    }
    if (Demarre) {
        if (!AccepteFermeture()) {
            ev->ignore();
            return;
        }
        s_.config->EcritConfig(QStringLiteral("FichierDat ="), FichierCourant);
        s_.config->EcritConfig(QStringLiteral("DoubleClic ="),
                               Mnu_DblClick->isChecked() ? QStringLiteral(" Oui") : QStringLiteral(" Non"));
        Usage->EnregistreReglages();
        form2->hide();
        recherche->Find->hide();
        QDir::setCurrent(DossierDepart);
    }
    const QString travailDessin = regl.DossierTravail + NomTravailDessin;
    if (QFileInfo::exists(travailDessin)) QFile::remove(travailDessin);
    secours->Supprime();
    ev->accept();
}
