// File inclusion (`Fichier`) and external commands.
//
// `AppelFichier` itself is declared in language/commandes.h (the command loop
// calls it for an external command); this header holds the rest: the
// commands `Fichier` and `DMKCODE`, the `Symbole` form for `Plot`, the list of
// external commands made at start-up, the file lookup, the reading of plain
// and coded command files, the comment block of the "?" form, and the header
// language of `.dmk` files that the command dialog reads.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>


#include <optional>

struct Etat;
struct Reglages;

// --- Commands

// `Fichier` = name [, x, y[§rotation] [, parameters...]]. Sets bits 8 and 64 of
// `EtatOrdre`, lets events run, and calls `AppelFichier` with index 0; a
// negative result ends the level.
void CmdFichier(Etat& e);
// `DMKCODE`: the prompt "MdP (GRI)"; with the code, the line becomes the
// template of an external command's header.
void CmdDmkCode(Etat& e);
// `AppelSymbole`, `ChercheFichier` and `DossierCourant`, which the drawing
// commands call, are declared in language/commandes.h.

// --- Fixed texts

// The code that opens the `DMKCODE` template.
inline const QString CodeDmkCode = QStringLiteral("58196");
inline const QString InviteDmkCode = QStringLiteral("MdP (GRI)");
// The lines of the template, in order.
QStringList ModeleDmkCode();
// The name of the level of a `Symbole` call.
inline const QString NomSymbole = QStringLiteral("Symbole");
// The name of record 5 that stops the whole run.
inline const QString NomBoucle = QStringLiteral("Loop");
// The deepest level (`PileFic` has 5 levels that run).
constexpr int NiveauMaxInclusion = 5;
// At most this many external commands.
constexpr int MaxCommandesExternes = 60;

// --- External commands

// The list of external commands is built by `ChargeCommandesExternes`
// (src/app/core/externes.h).

// --- File lookup and reading

// The box of branch 3: "Fichier[file] " + name + " non trouvé[not founf] !".
QString TexteNonTrouve(const QString& nom);
// The box of a coded file of wrong length, before the run stops:
// name + " : fichier codé illisible / unreadable coded file".
QString TexteCodeIllisible(const QString& nom);

// Whether a file name is a coded file: the first 3 characters of its
// extension, upper case, are "DMK".
bool EstFichierCode(const QString& nom);
enum class LectureCommande { Ok, Introuvable, LongueurFausse };
// Reads a command file whole, a coded one through the decoder; line ends
// become CR LF. None when it cannot be read. Through `cache` when there is one.
class CacheFichiers;
std::optional<QString> LitFichierCommande(const QString& nom, LectureCommande* etat = nullptr,
                                          CacheFichiers* cache = nullptr);

// Command files as last read, decoded, by full path: a file is read again
// only when its modification time or its size changed, so that a program
// that includes the same files at every run (and the live preview runs it at
// every pause in typing) reads each of them once. The text is the file's, so
// runs cannot tell a kept text from a fresh read. The settings of the runs
// (`Reglages::Fichiers`) own it.
class CacheFichiers {
public:
    std::optional<QString> Lit(const QString& nom, LectureCommande* etat = nullptr);
    // The file of a folder whose name matches `nom` without regard to case
    // (the exact spelling first), from the folder's listing as last read: a
    // folder is listed again when its modification time changed. Empty when
    // there is none.
    QString TrouveSansCasse(const QString& dossier, const QString& nom);
    void Vide();
    int Lectures() const { return lus_; }   // reads from disk since the last Vide
    int Trouves() const { return trouves_; } // texts given from the cache

private:
    struct Entree {
        qint64 date = 0; // modification time, nanoseconds
        qint64 taille = 0;
        QString texte;
    };
    struct Liste {
        qint64 date = 0;
        QHash<QString, QStringList> noms; // by `CleSansCasse`, in listing order
    };
    QHash<QString, Entree> entrees_;
    QHash<QString, Liste> listes_;
    int lus_ = 0, trouves_ = 0;
};

// --- The "?" form

// The comment block of a command text: lines from the start while they
// begin with "'", "%" or are empty, up to a line beginning "'#"; lines of the
// header language ("'$", "'@") are skipped; "%" lines get "' " in front.
QStringList BlocCommentaires(const QString& texte);
// The text the "?" form puts in the editor: "' Commentaires du fichier
// commande", a line break, "' externe " + name, a line break, then each kept
// line with its line break.
QString TexteBlocCommentaires(const QString& texte, const QString& nom);

// --- Header language of a `.dmk` file (for the command dialog)

// The marker of a language index of ",'$F,'$E,'$D,'$S,'$R" (1 French,
// 2 English, 3 German, 4 Spanish, 5 Russian); empty for any other index.
QString MarqueSection(int indexLangue);
// The section of a marker: a line that begins with the marker behind a line
// break (never the first line of the text); the description starts behind
// the three marker characters and the section runs to the next line that
// begins with "'$". The leading "'" of its further lines is removed. Lines
// are joined by "\n", like the descriptions of the string table. None when
// the marker is absent.
std::optional<QString> SectionEntete(const QString& texte, const QString& marque);
// The lookup of the dialog: the section of `langue`, then of `langueMasq`,
// then French. None when there is none (the dialog then shows string 359).
std::optional<QString> DescriptionExterne(const QString& texte, int langue, int langueMasq);
// The same for an entry of the list of external commands (1-based): its file
// read and decoded. None when the file cannot be read or has no section.
std::optional<QString> DescriptionCommandeExterne(const Reglages& r, int indexExterne, int langue,
                                                  int langueMasq);
