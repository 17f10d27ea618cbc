// The settings file and the language choices, without widgets.
//
// "Mirel.cfg": its location, reading, default file and `EcritConfig`; the four
// language choices and their section offsets; the logic of the language
// dialog `Form3`, of the patch input box and of the help menu and help calls.
// The dialogs and the viewer belong to the window: they call these functions.
//
// Location: a "Mirel.cfg" in the working folder is used there; a program
// run from its build folder or its installed place keeps its settings in the
// per-user folder, the XDG configuration folder ($XDG_CONFIG_HOME, else
// ~/.config) + "/Mirel/", whatever folder it was started from. A copy of the
// program elsewhere keeps them beside itself, and writes them only when started
// from its own folder. Folders end in "/".
#pragma once

#include "app/core/encodage.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <array>
#include <functional>
#include <optional>
#include <vector>

class TableChaines;
struct Reglages;

// --- Version text and header

// The version text: major, ".", minor as two digits and, when the revision
// is not 0, the letter of that rank (1 gives "a") followed by a blank:
// "2.06a ", "2.06".
QString TexteVersion(int majeur, int mineur, int revision);
// The version text of this program (from the build's MIREL_VERSION).
QString TexteVersionProgramme();
// Line 1 of "Mirel.cfg": "'Fichier de configuration du Programme Mirel V" + version.
QString EnteteConfig(const QString& version);
// Line 2: "'Ne pas modifier / Do not change".
QString EnteteConfig2();
// The header test at start-up: line 1 contains "Mirel V" followed by exactly
// the version text.
bool VersionConforme(const QString& premiereLigne, const QString& version);

// --- The keys, as written

namespace CleCfg {
inline const QString Langue = QStringLiteral("Langue =");
inline const QString LangueMenu = QStringLiteral("LangueMenu =");
inline const QString LangueAide = QStringLiteral("LangueAide =");
inline const QString LangueMasq = QStringLiteral("LangueMasq =");
inline const QString FichierDat = QStringLiteral("FichierDat =");
inline const QString DoubleClic = QStringLiteral("DoubleClic =");
inline const QString Zmm = QStringLiteral("Zmm =");
inline const QString TailleCarCode = QStringLiteral("TailleCarCode =");
inline const QString Patchs = QStringLiteral("Patchs =");
// The recent files of the file menu, most recent first, joined by "|".
inline const QString Recents = QStringLiteral("Recents =");
// The window's live preview ("Oui"/"Non") and the export dialog's choices.
inline const QString ApercuDirect = QStringLiteral("ApercuDirect =");
inline const QString Export = QStringLiteral("Export =");
// The main window's place and size on the screen: "x y width height", then
// " max" when it was maximised.
inline const QString Fenetre = QStringLiteral("Fenetre =");
} // namespace CleCfg

// The values of "Mirel.cfg" as read.
struct Config {
    // The four language choices by name, as in the file; frame order of Form3.
    QString Langue;      // messages
    QString LangueMenu;  // menus and captions
    QString LangueAide;  // help
    QString LangueMasq;  // command dialog and help file
    QString FichierDat = QStringLiteral("Mirel.dat");
    bool DoubleClic = false;
    float Zmm = 1.0f;
    std::optional<float> TailleCarCode;
    int Patchs = 0;              // 16-bit value (sign-extended)
    QStringList Recents;         // most recent first
    bool ApercuDirect = false;
    QString Export;              // page, orientation, dpi, text as outlines (export_dialogue.h)
    QString Fenetre;             // the main window's place and size (usage_fenetre.h)
    QString PremiereLigne;       // line 1 as read (for the version test at start-up)
    Encodage Enc = Encodage::Utf8;
};

// Reads the keys of a configuration text (any line ends). Lines starting with
// "'" are ignored; a key is found anywhere in a line, case-insensitively, by
// the first occurrence of its text including " ="; the value is the rest of
// the line, trimmed. Later lines win. A zero `Zmm` ends up 1.
Config LitConfigTexte(const QString& contenu);
// The lines of the default file, written when none exists.
QStringList LignesConfigDefaut(const QString& version);
// 16-bit storage of the patch word.
int Entier16Bits(long long v);

// --- Location of the file

inline const QString NomFichierCfg = QStringLiteral("Mirel.cfg");
inline const QString NomFichierCfgAncien = QStringLiteral("Mirel$cfg.old");

struct EmplacementConfig {
    QString DossierProgramme;  // executable's folder, "/" at the end
    QString DossierDepart;     // working folder at start
    QString DossierFichier;    // starts as DossierDepart
    QString DossierCfg;        // folder of Mirel.cfg
    bool ProgrammeUtilisable = false; // the program folder is writable
    bool EcritureInterdite = false;   // started from a foreign folder: read, never written
    QString Fichier() const { return DossierCfg + NomFichierCfg; }
};

// `DossierTestable`: "Tmp$.tst" can be created in the folder (and is deleted).
// Linux does not redirect writes into protected folders, so a successful
// create is proof enough.
bool DossierTestable(const QString& dossier);
// The folder with one "/" at its end (empty stays empty).
QString AvecBarre(const QString& dossier);
// The XDG configuration folder of Mirel: $XDG_CONFIG_HOME or ~/.config, + "/Mirel/".
QString DossierXdgMirel();
// Whether the working folder holds the program ("Mirel.exe*", "Mirel.lnk",
// the executable's own name or its ".desktop" launcher), compared without
// regard to case.
bool DossierContientProgramme(const QString& dossier, const QString& nomExecutable);
// Whether the executable's folder is the program's own place: the build
// folder (its "CMakeCache.txt") or an installed "bin" beside "share/mirel".
// A copy dropped in some other folder is not.
bool ProgrammeEnPlace(const QString& dossierExecutable);
// Where "Mirel.cfg" is read and written: the working folder when it holds
// one. Else, for a program in its place (`enPlace`), the XDG folder, read and
// written from any working folder. Else the program folder when usable, or
// the XDG folder when not, and a working folder without the program is
// foreign: nothing is written.
// `dossierXdg` empty means there is no XDG folder (the working folder stays).
EmplacementConfig LocaliseConfig(const QString& dossierProgramme, const QString& dossierTravail,
                                 const QString& dossierXdg,
                                 const QString& nomExecutable = QStringLiteral("mirel"),
                                 bool enPlace = false);
// Creates the default file when missing (unless writing is forbidden: then
// the defaults are used without a file) and reads the keys.
Config ChargeConfig(const EmplacementConfig& lieu, const QString& version);

// `EcritConfig(cle, valeur)`: rewrites one key, the file going through
// "Mirel$cfg.old". The line is the key (its trailing blank optional) + " " +
// the trimmed value ("Zmm = 1.5", "DoubleClic = Oui"), or the key alone for an
// empty value. False when writing is forbidden or failed (the old file is then
// put back).
bool EcritConfig(const EmplacementConfig& lieu, const QString& cle, const QString& valeur,
                 const QString& version);
// The pure rewrite of `EcritConfig` on lines (the last empty one already dropped).
QStringList RemplaceCle(const QStringList& lignes, const QString& cle, const QString& valeur,
                        const QString& version);

// --- Languages (sections of the string table)

constexpr int PasLangue = 400;

// Entry 3 of the first section: the number of offered languages.
int NombreLangues(const TableChaines& table);
// The language index (1-based) whose entry 5 equals the name without regard
// to case; 0 for an unknown or empty name (unset).
int IndexLangue(const TableChaines& table, const QString& nom);
// Offset of a language index: (index - 1) * 400; 0 for unset.
inline int DecalageLangue(int index) { return index > 0 ? (index - 1) * PasLangue : 0; }
QString NomLangue(const TableChaines& table, int index);  // entry 5
QString CodeLangue(const TableChaines& table, int index); // entry 8: "fr", "en"...

// The four choices as language indexes, 0 for unset, in Form3's frame order.
enum CadreLangue { CadreMessages = 0, CadreMenus = 1, CadreAide = 2, CadreMasque = 3 };
using ChoixLangues = std::array<int, 4>;
ChoixLangues LanguesDeConfig(const Config& c, const TableChaines& table);
// The same choices from the section offsets of a run's settings.
ChoixLangues LanguesDeReglages(const Reglages& r);

// Fills the settings of a run: Zmm, Patchs, the four section offsets.
void AppliqueConfig(const Config& c, const TableChaines& table, Reglages& r);
// Fills the folders of the settings.
void AppliqueEmplacement(const EmplacementConfig& lieu, Reglages& r);

// At start-up Form3 must open when the header lacks the version or any
// of the four languages is unset.
bool LanguesAChoisir(const Config& c, const TableChaines& table, const QString& version);

// --- Form3, the language dialog (logic only)

inline const QString LegendeValiderLangues = QStringLiteral("&Valider - OK");

// "Mirel_" + code + ".chm": the help file of a language.
QString NomFichierAide(const QString& code);

// OK of Form3: writes the four keys, copies the template of the message
// language over "Mirel.DaN" in `DossierCfg` (when its text is longer than 5
// characters), updates the configuration values. Returns the help file:
// program folder + "Mirel_" + code of LangueMasq + ".chm". An unset choice
// counts as language 1.
QString ValideLangues(const ChoixLangues& choix, const EmplacementConfig& lieu, Config& c,
                      const TableChaines& table, const QString& version);

// --- Patches

// Prompt of the patch box: string 121, the active patch numbers joined by
// ",", two line breaks, string 122 (offset of the message language).
QString InvitePatchs(int patchs, const TableChaines& table, int decalage);
enum class SaisiePatch { Quitter, Redemander, Appliquee };
// One answer of the box: empty leaves; n with 1 <= |n| <= 15 sets bit n - 1
// (n > 0) or clears bit -n - 1 (n < 0); anything else asks again.
SaisiePatch AppliqueSaisiePatch(const QString& saisie, int& patchs);
// Whether patch n (1 to 16) is active.
inline bool PatchActif(int patchs, int n) { return n >= 1 && n <= 16 && (patchs >> (n - 1)) & 1; }
// `Mnu_Patchs`: asks through `demande` (the input box; returns "" on cancel)
// until an answer is valid or empty; a valid one updates `patchs` and writes
// "Patchs = ". Returns whether something changed.
// `ecrit` writes the value of the key (the window's configuration service).
bool Mnu_Patchs(int& patchs, const std::function<QString(const QString& invite)>& demande,
                const TableChaines& table, int decalage,
                const std::function<void(const QString& valeur)>& ecrit);
// The same, writing "Mirel.cfg" of `lieu`.
bool Mnu_Patchs(int& patchs, const std::function<QString(const QString& invite)>& demande,
                const TableChaines& table, int decalage, const EmplacementConfig& lieu,
                const QString& version);

// --- Help

struct EtatMenuAide {
    QString LegendeAide25;   // string 71 or 87
    QString LegendeAide;     // string 71
    bool AideVisible = false; // Mnu_Aide enabled and visible
    bool NonDocVisible = false;
};
// The help menu: LangueMasq == LangueMenu gives Mnu_Aide25 string 71, Mnu_Aide
// hidden and Mnu_Non_Doc when "Mirel_fr/Non_Doc_fr.chm" exists in the program
// folder; otherwise string 87, Mnu_Aide string 71 shown, Mnu_Non_Doc hidden.
EtatMenuAide MenuAide(const ChoixLangues& choix, const TableChaines& table,
                      const QString& dossierProgramme);

enum class CommandeAide { Aide25, Aide, MAJ_Aide, ResumeSyntaxes, Non_Doc, AideMot };
struct DemandeAide {
    enum class Sujet { Contenu, Resume, Numero };
    QString Fichier;
    Sujet Quoi = Sujet::Contenu;
    int Numero = 0; // topic number for Sujet::Numero
};
// The help file and topic of a help command. `fichierAide` is the file set by
// Form3 (for Mnu_Aide25); `mot` the word of Mnu_AideMot.
DemandeAide AideDe(CommandeAide commande, const QString& fichierAide, const QString& dossierProgramme,
                   const QString& codeMenu, const QString& codeMasque, const QString& mot = {});

// Mnu_AideMot's word: the selection, or the text around the 0-based caret
// between the delimiters line end, blank, "'", first separator and "="; an
// empty word takes the one character at the caret, a CR counting as a blank.
QString MotAide(const QString& texte, int curseur, const QString& selection,
                const QString& separateur1);
// The topic of a word (the table of Mnu_AideMot; 5000 for all others).
int SujetAide(const QString& mot);
// The topics of that table in order, 5000 last.
QVector<int> SujetsAide();

// `CHelp`: the call to the help viewer, as data; the window's viewer acts on it.
struct AppelAide {
    QString Chemin;        // path, + ">" + window when a window is named
    int Commande = 1;      // 1 contents, 15 topic by number, 2 index, 3 search
    int Numero = 0;
    QString Requete;       // the search query
};
namespace CHelp {
inline const QString Fenetre = QStringLiteral("W1");
AppelAide Show(const QString& fichier, const QString& fenetre, std::optional<int> numero = {});
AppelAide ShowIndex(const QString& fichier, const QString& fenetre);
AppelAide ShowSearch(const QString& fichier, const QString& fenetre);
} // namespace CHelp
