// Opening, saving and creating command files, without widgets.
//
// `LitFic`, Open, New with its templates, Save, Save as with the coded export,
// and the file list of Alt-L. The main window implements
// `FenetreFichiers`, the few things these commands ask of it: the boxes, the
// file dialogs, the editor's text, the caption, a run.
#pragma once

#include "app/core/encodage.h"
#include "language/hote.h"

#include <QSizeF>
#include <QString>
#include <QStringList>

#include <optional>
#include <random>

struct Reglages;

// --- Reading: LitFic

// What `LitFic` gives the editor: the text with every line end CR LF (each
// line read, the last one included, is followed by CR LF), the encoding it
// was read in, and the `ZoomIni` value for `ZoomDepart` and `ZoomE`.
struct TexteLu {
    QString Texte;
    Encodage Enc = Encodage::Utf8;
    float ZoomDepart = 1.0f;
};

// The first `ZoomIni` not on a comment line: its line without tabs,
// left-trimmed, not starting with "'"; the number behind the first "=" (or
// from position 8 without one); 0 gives 1. 1 when there is none.
float ZoomIniDe(const QString& texte);
// The lines of a text, each followed by CR LF (Line Input then append CR LF).
QString LignesCrLf(const QString& texte);
// `LitFic` on bytes: UTF-8 when valid, otherwise Windows-1252.
TexteLu LitFic(const QByteArray& octets);
// `LitFic` on a file; none on a read error, with the system's text.
std::optional<TexteLu> LitFic(const QString& chemin, QString* erreur = nullptr);

// --- Names and texts

inline const QString TitreBoite = QStringLiteral("Mirel");
inline const QString TexteNonCompatible = QStringLiteral("Fichier non compatible");
inline const QString MarqueFinDmk = QStringLiteral("'# Fin");

// Open's name test: the last 4 characters are ".DAT" and the 7 starting 11
// positions before the end are "UNINS00", in upper case.
bool EstDesinstalleur(const QString& nom);
// The three-language box: path, "N'est pas un fichier Mirel", "Is not a Mirel
// file", "Ist keine Mirel Datei.", on four lines.
QString MessageDesinstalleur(const QString& nom);

// The filters of the dialogs, as a piped text "label|pattern|...", and as Qt
// file dialogs take them. `decalage` is the message language's offset.
QString FiltreOuvrir(int decalage);       // 105 " (*.dat)|*.dat|" 106 " (*.*)|*.*|"
QString FiltreEnregistrer(int decalage);  // 105 " (*.dat)|*.dat|" 106 " (*.*)|*.*"
QString FiltreListe(int decalage);        // 106 " (*.*)|*.*|"
QString FiltreQt(const QString& filtre);  // "A (*.dat);;B (*.*)"
inline const QString ExtensionEnregistrer = QStringLiteral("dat");

// The folder of a path, up to its last "/" included ("\\" counts as well).
QString DossierDe(const QString& chemin);
// Save as: a file name holding 2 or more dots loses everything from its last
// dot (only the name's dots count, not the folders').
QString CoupeDeuxPoints(const QString& nom);
// Save as: a name ending in ".JPG#" asks for the coded export.
bool EstExportCode(const QString& nom);
// Save: a name ending in ".MTR" (an imported meter file) is never written over.
bool EstFichierMeter(const QString& nom);

// The template that New loads, in order: "Mirel.daN" in the working folder
// (found without regard to case), `DossierCfg` + "Mirel_" + code + ".DaN",
// the program folder + "Mirel_" + code + ".DaN", and last the template
// compiled into the program (":/strings/Mirel_" + code + ".DaN"). Empty when
// none exists.
QString CheminModele(const QString& dossierTravail, const QString& dossierCfg,
                     const QString& dossierProgramme, const QString& code);
// A file of a folder whose name equals `nom` without regard to case; empty if none.
QString TrouveSansCasse(const QString& dossier, const QString& nom);
// The key under which names compare without regard to case, as
// `TrouveSansCasse` compares them: each character folded on its own.
QString CleSansCasse(const QString& nom);

// Alt-L: the text inserted for the files chosen: one file gives its path;
// several give the folder, then each bare name, all joined by the first
// separator, so that a program can take the list apart with its text functions.
QString TexteListeFichiers(const QStringList& fichiers, const QString& separateur1);

// Writes a command text: the editor's plain text without an extra line end, in
// `enc` (which becomes UTF-8 when the text no longer fits Windows-1252),
// through a temporary file beside the target. False with the system's error
// text on failure; the old file is then intact.
bool EcritTexteCommande(const QString& chemin, const QString& texte, Encodage& enc,
                        QString* erreur = nullptr);

// Whether this build offers the coded export: the build-time setting
// MIREL_EXPORT_DMK turns it on for those who hand out coded libraries.
bool ExportDmkDisponible();

// --- The commands

// The window state that these commands read and write.
struct EtatFichiers {
    QString NomCourant;      // caption, default name of Save as
    QString FichierCourant;  // what Save writes; empty for a new text
    QString DossierFichier;  // folder of the last opened file, "/" at the end
    bool Modifie = false;
    // The last save of the text failed: `Modifie` was cleared, yet the text is
    // on no disk until a save succeeds or another text replaces it.
    bool HorsDisque = false;
    QString NomEcrit;        // the file the last command wrote under a new name (Save as), in full
    Encodage Enc = Encodage::Utf8; // encoding of the current file; new texts UTF-8
    bool ExportPermis = ExportDmkDisponible();
    std::mt19937 Ale{std::random_device{}()}; // the random bytes of the coded export
};

// What the commands ask of the window.
class FenetreFichiers {
public:
    virtual ~FenetreFichiers() = default;
    // A box titled "Mirel"; returns the button that closed it.
    virtual Reponse Message(const QString& texte, Boutons boutons) = 0;
    // The Open dialog (file must exist); empty for cancel.
    virtual QString DialogueOuvrir(const QString& dossier, const QString& filtre) = 0;
    // The Save as dialog (overwrite prompt, default extension); empty for cancel.
    virtual QString DialogueEnregistrer(const QString& nomInitial, const QString& filtre,
                                        const QString& extension) = 0;
    // Alt-L's dialog: one file, or several when `plusieurs`; empty for cancel.
    virtual QStringList DialogueListe(const QString& filtre, bool plusieurs) {
        (void)filtre, (void)plusieurs;
        return {};
    }
    virtual QString TexteEditeur() const = 0;
    // `LitFic`'s effect on the window: editor emptied and filled with the text,
    // lines coloured, caret at 0, block the first line, `ZoomE` and
    // `ZoomDepart` set, `Text1` written.
    virtual void ChargeTexte(const TexteLu& lu) = 0;
    // The printer's sheet in millimetres, upright: a meter's centre line
    // stands at its middle.
    virtual QSizeF PageImprimante() { return QSizeF(210, 297); }
    virtual void VideEditeur() = 0;
    // The caption from `NomCourant`.
    virtual void EcritLegende(const QString& nomCourant) { (void)nomCourant; }
    // Hourglass and disabled window (true), normal again (false).
    virtual void Occupe(bool occupe) { (void)occupe; }
    virtual void Visualiser() {}
    // The process changes to the folder of the file opened.
    virtual void ChangeDossier(const QString& dossier);
    // Undo reset to slot 1, count 1, and a snapshot of the new text.
    virtual void DebutAnnulation() {}
};

// The question of Open, New and Meter import: with text in the editor and
// `Modifie` set, string 118 with Yes, No, Cancel. False for Cancel (the
// command stops); Yes saves first.
bool DemandeSauvegarde(EtatFichiers& e, const Reglages& r, FenetreFichiers& f);
// Loads a chosen file: its folder becomes current, the text fills the editor,
// a run draws it. False on a read error, shown in a box with the system's
// text. The file opened at start-up passes `visualiser` false: its run comes
// once the window is shown.
bool ChargeFichier(EtatFichiers& e, FenetreFichiers& f, const QString& chemin,
                   bool visualiser = true);
// The end of a load, once the text is read: the editor gets it, the caption
// the path, a run draws it (unless `visualiser` is false), the file is the
// current one and unmodified, the undo ring starts again, the window is free.
void DonneTexte(EtatFichiers& e, FenetreFichiers& f, const QString& chemin, const TexteLu& lu,
                bool visualiser);
// `Mnu_Ouvrir`. True when a file was loaded.
bool Mnu_Ouvrir(EtatFichiers& e, const Reglages& r, FenetreFichiers& f);
// `Mnu_Nouveau`, with or without the question (false: it was cancelled).
bool Mnu_Nouveau(EtatFichiers& e, const Reglages& r, FenetreFichiers& f, bool demander = true);
// `Mnu_EnregistrerS`: Save, or Save as for a new text or a `.mtr` name.
// False when nothing was written.
bool Mnu_EnregistrerS(EtatFichiers& e, const Reglages& r, FenetreFichiers& f);
// `Mnu_Enregistrer`: Save as. False when cancelled or nothing was written.
bool Mnu_Enregistrer(EtatFichiers& e, const Reglages& r, FenetreFichiers& f);
// The coded export of a name ending in ".JPG#" (Save as). False when refused
// (box "Fichier non compatible", name back to ".dat") or not written.
bool ExportCode(EtatFichiers& e, FenetreFichiers& f, const QString& nom);
// `Mnu_Liste_Fic` (Alt-L): the text to insert at the caret, empty on cancel.
// Several files only with Ctrl held.
QString Mnu_Liste_Fic(const Reglages& r, FenetreFichiers& f, const QString& separateur1,
                      bool ctrl);
