// `Form1`, the main window and the run cycle.
//
// The drawing pane fills the client area; the editor `RTB1` stands over its
// right side, the status fields `Text1` to `Text4` left of the editor's bottom
// edge. Every run redraws from the editor's text (`Visualiser`) into
// an image of the pane (see pane.h).
#pragma once

#include "app/boites.h"
#include "app/core/fichiers.h"
#include "app/core/hote_memoire.h"
#include "app/services.h"
#include "language/etat.h"

#include <QMainWindow>
#include <QPointer>

#include <functional>
#include <memory>

class DialoguesImpression;
class Editeur;
class FenetreAide;
class Form2;
class FrmDessin;
class HoteFenetre;
class Pane;
class QAction;
class QLabel;
class QMenu;
class QPrinter;
class Recherche;
class Secours;
class UsageFenetre;
class Apercu;

// What the window is built on: the configuration service, the boxes, the
// printer lookup and the two folders. A null configuration gets the in-memory
// stand-in of services.h; null boxes the real widgets.
struct ServicesFenetre {
    ServiceConfig* config = nullptr;
    Boites* boites = nullptr;
    // The printer's device name, asked at start-up; empty when none is configured.
    std::function<QString()> nomImprimante;
    QString dossierProgramme; // default: the executable's folder
    QString dossierTravail;   // default: the current folder
    // Where the recovery copies of unsaved text are kept (DossierSecoursStandard
    // for the real program); empty: none are kept.
    QString dossierSecours;
};

// The mouse read-out: the pointer's offsets from the reference point R, its
// distance T from R and its angle, shown in Text2 and Text3.
struct LectureSouris {
    double dx = 0, dy = 0;    // the point about R, turned by minus RefCurRad
    double rayon = 0;         // T
    double angle = 0;         // degrees
};
LectureSouris CalculeLecture(double x, double y, double rx, double ry, double refCurRad);
// One number of Text2 by the zoom: "###0", "##0.0", "##0.00".
QString FormatZoom(double v, float zoomE);
QString TexteText2(double dx, double dy, float zoomE);
QString TexteText3(double angle, double rayon, bool angleA);
// The formats "##0.#°" and "##0.#" of the double click on Text3.
QString FormatDiese(double v);

class Form1 : public QMainWindow {
    Q_OBJECT
public:
    explicit Form1(ServicesFenetre s = {});
    ~Form1() override;

    // Start-up, in twelve numbered stages. `ligneCommande` is the command line
    // after the program's name. False when the program must stop.
    bool Demarrer(const QString& ligneCommande);

    // --- application state
    QString NomCourant, FichierCourant, DossierDepart, DossierFichier;
    bool Demarre = false;
    float RatioCode = 3.3f;
    double RefCurX = 0, RefCurY = 0;    // Surface units
    float RefCurAngle = 0, RefCurRad = 0;
    double SourisX = 0, SourisY = 0;
    double AltX = 0, AltY = 0;
    bool AngleA = false;
    LectureSouris DerniereLecture;
    QString Version;
    QString NomImprimante;
    bool ImprimantePdf = false;      // no printer configured: Qt's PDF printer stands in
    bool DessinOuvert = false;       // the freehand drawing tool FrmDessin is open (`Mnu_Dessin` disabled)
    int NombreExecutions = 0;        // runs started by the window (tests, benchmarks)
    // What the user answered to the boxes and prompts of the window's last
    // run, in order: a redraw of the view gives the same answers again
    // without asking.
    std::vector<ReponseGardee> ReponsesDuRun;
    ValeursConfig Config;
    UsageFenetre* Usage = nullptr;   // keys, recent files, drops, reload, the caption's "*"
    Apercu* VueApercu = nullptr;     // the view menu and the live preview

    Reglages regl;
    Etat e;

    // --- widgets
    Editeur* RTB1 = nullptr;
    Pane* pane = nullptr;
    QLabel* Text1 = nullptr;
    QLabel* Text2 = nullptr;
    QLabel* Text3 = nullptr;
    QLabel* Text4 = nullptr;
    Form2* form2 = nullptr;
    Recherche* recherche = nullptr;   // the undo ring and FrmFind
    FrmDessin* dessin = nullptr;      // the freehand drawing tool (F9), made at its first use
    std::unique_ptr<Secours> secours; // the recovery copy; what a failed save left
    QWidget* zone = nullptr;

    // --- menus (each one's object name is its member's name)
    QMenu *Mnu_Fichier, *Mnu_Edition, *Mnu_Options, *Mnu_Help;
    QAction *Mnu_Ouvrir, *Mnu_Nouveau, *Mnu_OuvrirMeter, *Mnu_EnregistrerS, *Mnu_Enregistrer,
        *Mnu_Imprimante, *Mnu_Imprimer, *Mnu_ImprimerZoom, *Mnu_ImprimerCode, *Mnu_ExportPdf,
        *Mnu_ExportSvg, *Mnu_ExportPng, *Mnu_Quitter;
    QAction *Mnu_Couper, *Mnu_Copier, *Mnu_Coller, *Mnu_Supprimer, *Mnu_Selectionner,
        *Mnu_Defaire, *Mnu_Refaire, *Mnu_Rechercher;
    QAction *Mnu_Masque, *Mnu_Dessin, *Mnu_Visualiser, *Mnu_Zoom, *Mnu_RefCurseur;
    QAction *Mnu_DblClick, *Mnu_Code, *Mnu_AgrandirCode, *Mnu_IniCode, *Mnu_TaillCar,
        *Mnu_CentreCurseur, *Mnu_Patchs, *Mnu_Langue, *Mnu_Setup, *Mnu_Couleur, *Mnu_Polices,
        *Mnu_Liste_Fic;
    QAction *Mnu_Aide25, *Mnu_Aide, *Mnu_AideMot, *Mnu_ResumeSyntaxes, *Mnu_MAJ_Aide,
        *Mnu_AProposDe, *Mnu_Non_Doc;

    // --- operations
    void Visualiser();              // F4: a run of the whole text
    void RelanceSansZoom();         // the run of the zoom dialog: zoom kept
    void Positionner(Qt::KeyboardModifiers mods);
    void AfficheMenus();
    void EcritCaption();
    void Dispose();                 // lays out the editor and the fields for the window's size
    void Lecture(QPointF pixel, Qt::MouseButtons boutons, Qt::KeyboardModifiers mods);
    void Clic(QPointF pixel, Qt::MouseButton bouton, Qt::KeyboardModifiers mods);
    void DoubleClic(QPointF pixel, Qt::KeyboardModifiers mods);
    void InsereCoordonnees();
    void BasculeAngleA();           // double click on Text3
    void BulleSyntaxe();            // Alt-F2
    void Aide(CommandeAide commande); // the help menu and Shift-F2
    FenetreAide* FenetreDAide() const { return aide_; }
    bool AppliqueRefCur(const QString& champ); // Form5's OK
    void RefCurOrigine();           // Ctrl-F8
    void ZoomDepartRun();           // Ctrl-F7
    void LitFic(const TexteLu& lu);    // the editor half of LitFic
    QString TexteCaption() const;
    // The Surface point under a pane pixel (the last run's mapping).
    QPointF VersSurface(QPointF pixel) const;
    QPointF VersPixel(double x, double y) const;
    // The editor's width in Surface units when it stands beside the drawing.
    double LargeurEditeurUnites() const;
    // The start of every run on the pane: a new image attached to the run,
    // the editor's width in it.
    void PreparePane();
    // The end of every run on the pane: the mouse read-out takes the
    // reference point and angle the run left, and the freehand drawing under
    // way goes back on the cleared pane.
    void FinRunPane();
    // The current file becomes the run's main file (%File, %Path, Open's lookup).
    void FixeFichierPrincipal();
    bool Modifie() const;
    void SetModifie(bool m);
    // A run, or a print getting ready (its first run, on a session of its
    // own), holds the window.
    bool EnExecution() const { return e.ExecutionEnCours || filtreExecution_; }

public slots:
    void Mnu_Ouvrir_Click();
    void Mnu_OuvrirMeter_Click();
    void Mnu_Nouveau_Click();
    void Mnu_EnregistrerS_Click();
    void Mnu_Enregistrer_Click();
    void Mnu_Liste_Fic_Click();
    void Mnu_Patchs_Click();
    void Mnu_Quitter_Click();
    void Mnu_Zoom_Click();
    void Mnu_RefCurseur_Click();
    void Mnu_Code_Click();
    void Mnu_AgrandirCode_Click();
    void Mnu_IniCode_Click();
    void Mnu_TaillCar_Click();
    void Mnu_CentreCurseur_Click();
    void Mnu_Couleur_Click();
    void Mnu_Langue_Click();
    void Mnu_Setup_Click();
    void Mnu_AProposDe_Click();
    void Exporte(const QString& extension);
    // Ctrl-P: a print at the text's own printer zoom (ZoomIni).
    void Mnu_Imprimer_Click();
    // One print of the text on `cible` (the chosen printer when null), then
    // the screen drawn again. False when the printer refused the job.
    bool Imprimer(QPrinter* cible = nullptr);
    // The chosen printer's sheet in millimetres, upright.
    QSizeF PapierImprimante();
    // Ctrl-Shift-P: a print at a zoom asked for, offered again the next time.
    void Mnu_ImprimerZoom_Click();
    // The printer choice: the queue and sheet of the next prints.
    void Mnu_Imprimante_Click();
    // Alt-P: a font name inserted at the caret.
    void Mnu_Polices_Click();
    // The listing of the code, or of the selection. False when cancelled or refused.
    bool Imprime_Code();
    // The print entries on, or off and saying that no printer is installed,
    // after their texts are set.
    void AfficheEntreesImpression();

public:
    float ZoomImpression = 1;                      // the last zoom of Ctrl-Shift-P
    std::unique_ptr<QPrinter> ImprimanteChoisie;   // the queue and sheet of the prints
    std::unique_ptr<DialoguesImpression> DialoguesImp; // the print and font dialogs

protected:
    bool eventFilter(QObject* objet, QEvent* ev) override;
    void closeEvent(QCloseEvent* ev) override;
    void keyPressEvent(QKeyEvent* ev) override;

private:
    friend class HoteFenetre;
    friend class UsageFenetre;
    friend class Apercu;        // the view menu, the live preview
    friend class DialogueExport;
    void Debut(const QString& ligneCommande);
    void ConstruitMenus();
    void AppliqueLangues();
    // The OK of the language dialog Form3: the four keys written,
    // the languages applied, the template copied.
    void EnregistreLangues();
    void TailleCarCode(double taille);
    bool ToucheFenetre(QKeyEvent* ev); // true when swallowed
    bool PrepareExecution();        // what F4 and the zoom dialog's run start with
    void DebutRun();
    void FinRun();
    // A close asked during a run or a print: queued now; true when it was.
    bool FermeSiDemandee();
    void Occupe(bool oui);
    // The unload question (string 118): false keeps the window open.
    bool AccepteFermeture();
    // Start-up: the copies of unsaved text that other windows left, offered back.
    void ReprendSecours();
    // Runs a command file command (src/app/core/fichiers) on this window: its
    // names and `Modifie` go in and come back.
    class PontFichiers;
    bool CommandeFichier(const std::function<bool(EtatFichiers&, FenetreFichiers&)>& commande);
    void Reglee(QLabel* l, const QColor& fond, const QColor& texte);
    void MajText4();
    QString Chaine(int n) const;    // messages' language
    QString ChaineMenu(int n) const; // menus' language

    ServicesFenetre s_;
    std::unique_ptr<ServiceConfig> configPropre_;
    std::unique_ptr<Boites> boitesPropres_;
    std::unique_ptr<HoteFenetre> hote_;
    FenetreAide* aide_ = nullptr;   // the help viewer, made at its first use
    EtatFichiers fichiers_;         // the encoding of the current file, the export's draw
    bool fermetureDemandee_ = false;
    bool filtreExecution_ = false;
};
