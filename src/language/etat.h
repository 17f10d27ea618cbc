// The run state: one struct, passed explicitly to every routine (design.md §4).
//
// The run-wide names live here, grouped by the subsystem that owns them.
// Each drawing subsystem keeps its own group in a header of
// src/language/etat/, so that work on one does not touch the others. No Qt
// GUI type appears here: the state is plain data; `Surface` and `Hote` are
// reached through pointers.
#pragma once

#include "language/etat/cadre.h"
#include "language/etat/cercle.h"
#include "language/etat/echelle.h"
#include "language/etat/grad.h"
#include "language/etat/inclusion.h"
#include "language/etat/repere.h"
#include "language/etat/styles.h"
#include "language/etat/texte.h"
#include "language/etat/val.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <random>

class Surface;
class Hote;
class QFile;

// Size of the variable arrays of a level (at most 64 slots; index 0 unused).
constexpr int MaxVarAbsolu = 64;
// Levels of `PileFic`: 0 shared variables, 1 main program, 2 to 5 included files, 6 spare.
constexpr int NbNiveaux = 7;
// Depth of the `If` blocks kept per level (5 flags each).
constexpr int NbSi = 5;

// `ParamFichier` of `CtxFic`: what the include mechanism keeps.
// The pen of a caller is saved in its own record before a call and put back
// on return; FicX, FicY are the position a level was called at.
struct ParamFichier {
    int DrawWidth = 0;
    float TiretL1 = 0, TiretL2 = 0, TiretL3 = 0;
    bool BoutCarre = false;
    QString NomPolice;
    float TaillePolice = 0;
    QString Style;        // "B", "I", "U" letters of the saved font
    int Couleur = 0;
    int CouleurCmd = 0;   // the colour of the command in force, with Couleur
    double TailleStandard = 0; // the standard size of TailleP behind Font.Size
    // The two 32-bit floats initialised to 999.99: the x, y given by the
    // caller to this level; 999.99 in both when it gave none (read by
    // `CentreE` in an included file).
    float FicX = 999.99f;
    float FicY = 999.99f;
};

// One level of `PileFic`: a program text being run and its local state.
struct CtxFic {
    QString Nom;
    QString Texte;
    int Pos = 0;          // 16-bit, checked through Entier16 where it moves
    int FinLigne = 0;
    QString Mot;
    QString Ligne;
    int PosDebut = 0;
    int PosFin = 0;
    std::optional<double> DecalX, DecalY;
    float TextePos[2] = {0, 0};
    float CoefExposant = 1.0f;
    float EpaisDefaut = 0;
    QString CommandeExt;
    float ParamExt[2] = {0, 0};
    float CoefTaille = 1.0f;
    QString FichierExt = QStringLiteral("0");
    int Reserve1 = 0;
    int NbVar = 0;
    bool EchelleLog = false;
    std::array<QString, MaxVarAbsolu + 1> NomVar;   // 1-based
    std::array<QString, MaxVarAbsolu + 1> ValVar;   // 1-based
    std::array<uint8_t, MaxVarAbsolu + 1> SauteVar{}; // 1-based
    ParamFichier Param;
    QString FicDonnees;
    int NumFicDonnees = 0;
    QString LigneLue;
    QString LigneBrute;
    QString MarqueDebut, MarqueFin;
    QChar CarCommentaire = u'\'';
    int NivSi = 0;
    std::array<bool, NbSi + 1> SauteSi{};      // 1-based by depth
    std::array<bool, NbSi + 1> ElseVu{};
    std::array<bool, NbSi + 1> BrancheFaite{};
    int DebutLocales = 0;
    int MaxVar = 33;
    int MaxSi = 2;
    int32_t MaxPlot = 50100;
    QString Separateur1 = QStringLiteral(",");
    QString Separateur2 = QStringLiteral("§");
    float AngleDefaut = 0;
    // Fields that the commands keep per level.
    float MultiplicateurTaille = 1.0f; // the last *k of TailleP
    float CTx = 0, CTy = 0;            // CT values, restored after an include
    std::optional<double> CentreX, CentreY; // x, y of the centre command, saved
    std::shared_ptr<QFile> Donnees;    // the open data file of `Open`
    QString LigneBruteThen;            // the raw physical line, for the Then rule
};

// One row of the label table.
struct Etiquette {
    QString Nom;     // upper case
    int Ligne = 0;   // 16-bit line count
    int32_t Position = 0;
};

class CacheFichiers;

// The settings that outlive runs. The application fills them from
// "Mirel.cfg"; a run only reads them.
struct Reglages {
    float Zmm = 1.0f;               // "Zmm =", %FCmm
    double TaillePoliceDefaut = 10; // configured default character size in points
    int Patchs = 0;                 // "Patchs =", 16-bit options word
    int LangueMessages = 0;         // section offset of messages: 0, 400, 800, 1200
    int LangueMenus = 0;
    int LangueAide = 0;
    int LangueMasque = 0;
    QString DossierProgramme;       // folder of the executable, ending in "/"
    QString DossierTravail;         // working folder, ending in "/"
    QString DossierCfg;             // folder of Mirel.cfg, ending in "/"
    QString DossierFichier;         // folder of the last opened file, ending in "/"
    QStringList CommandesExternes;  // names of the external commands, at most 60
    QStringList FichiersExternes;   // their files (full paths), same order
    // Included command files kept between runs while unchanged on disk (the
    // window's runs); none: every run reads them from disk.
    std::shared_ptr<CacheFichiers> Fichiers;
};

// The run-wide state: the level stack, the language's tables and the drawing state.
// What runs keep of what they met, by key: emptied whole when full, so that
// it stays small whatever the program (what is still met is kept again).
template <class Cle, class Valeur, qsizetype Max>
struct Connus : QHash<Cle, Valeur> {
    typename QHash<Cle, Valeur>::iterator Garde(const Cle& cle, Valeur valeur) {
        if (this->size() >= Max) this->clear();
        return this->insert(cle, std::move(valeur));
    }
};

struct Etat {
    // --- the run and its levels
    std::array<CtxFic, NbNiveaux> PileFic;
    int NiveauCourant = 0;
    bool ArretDemande = false;
    int CommandesEnCours = 0;       // commands under way, nested by Fichier (a stop may end them)
    int EtatOrdre = 0;
    QString TexteErreur;
    QString LigneCourante;
    QString OperAffect;
    QString NomAffecte;             // the name of an assignment line, as written
    QString FichierPrincipal;       // path of the main program (%File, %Path), empty if unsaved
    bool ExecutionEnCours = false;  // a run is in progress (the Visualiser menu is disabled)
    int ErreursAffichees = 0;       // error boxes shown in this run (exit status of dump, render)
    bool FinNiveauDemandee = false; // a command ends its level (Stop, a cancelled box...)
    int NumFicPrintA = 0;           // file number of OpenA, 0 = none
    std::shared_ptr<QFile> FicPrintA;
    bool FichierNonTrouve = false;  // the flag Open leaves for the error box
    QString NomFichierNonTrouve;

    // The longest line or expression whose reading is kept: the few thousand
    // kept stay within a few megabytes.
    static constexpr int LongueurMaxConnue = 256;
    // What the fetch of a logical line found from a position of a text: the
    // positions after it, whether it found a line (or the end), the raw
    // physical line when one was read, the logical line.
    struct LigneLue {
        int Pos = 0, FinLigne = 0, PosDebut = 0;
        bool Trouvee = false, Brute = false;
        QString LigneBruteThen, Ligne;
    };
    // The lines read of a text, by their starting position; the entry keeps
    // the text.
    struct LignesDuTexte {
        QString Texte;
        QHash<int, LigneLue> Lignes;
    };
    Connus<const QChar*, LignesDuTexte, 16> TextesLus;
    // The classification of the lines met, by their text: the keyword as
    // found, the name and operator of an assignment, the rest of the line.
    struct LigneClassee {
        QString Mot, NomAffecte, OperAffect, Reste;
    };
    Connus<QString, LigneClassee, 4096> LignesClassees;

    // --- parameters and labels
    QString Separateur1 = QStringLiteral(",");
    QString Separateur2 = QStringLiteral("§");
    std::array<QVector<Etiquette>, NbNiveaux> Etiquettes; // the label table, per level
    // The label tables of the texts last scanned without fault: the same
    // texts are entered at every run, an included one at every call.
    Connus<QString, QVector<Etiquette>, 16> EtiquettesConnues;
    // The included files found and read in this run, by the name of their
    // call: forgotten when a run starts and whenever the run writes a file or
    // starts a program, which may change them.
    struct FichierVu {
        QString nom, texte;
        bool boite = false; // the lookup's "not found" box, shown at each call
    };
    QHash<QString, FichierVu> FichiersVus;
    // A program started without waiting may write files at any time: the run
    // then keeps no included file.
    bool ProgrammeEnCours = false;
    void DisqueTouche() { FichiersVus.clear(); }

    // --- variables
    bool StopArgVu = false;          // `StopArg` ends the skipping for the rest of the run
    QString VarListeCourante;        // the list variable being stepped by Grad1/Val1
    QString ItemListeCourant;        // its current item
    int ItemsEnCours = 0;            // list items being substituted within one another

    // --- expressions
    std::mt19937 Ale{12345u};        // generator behind ALE and the draws
    // Expressions evaluated, by their text without blanks in upper case: the
    // number and the rewritten text (a few thousand at most).
    struct ExpressionConnue {
        double valeur = 0;
        QString texte;
    };
    Connus<QString, ExpressionConnue, 4096> ExpressionsConnues;

    // --- control flow
    int EntreeSi = 0;

    // --- drawing
    EtatRepere Repere;
    EtatStyles Styles;
    Echelle Ech;
    EtatGrad Grad;
    EtatVal Val;
    EtatTexte Txt;
    EtatCercle Cercle;
    EtatCadre Cadre;
    EtatInclusion Inclusion;

    // --- Settings and the outside world
    Reglages* Regl = nullptr;        // owned by the application
    Surface* Surf = nullptr;         // the current drawing target
    Surface* Pane = nullptr;         // the graphic pane of the window (or its headless stand-in)
    Hote* Host = nullptr;            // the editor, message boxes, events

    CtxFic& Ctx() { return PileFic[NiveauCourant]; }
    CtxFic& Ctx(int niveau) { return PileFic[niveau]; }
};
