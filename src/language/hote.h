// `Hote`: how a run reaches the user and the editor (design.md §4).
//
// The main window implements it with widgets; `HoteMemoire` (headless) records
// the boxes, answers from a list and works on an in-memory editor text.
#pragma once

#include <QString>

#include <optional>

enum class Boutons { Ok, OkAnnuler, OuiNon, OuiNonAnnuler };
enum class Reponse { Ok, Annuler, Oui, Non };

class Hote {
public:
    virtual ~Hote() = default;

    // A message box; returns the button that closed it.
    virtual Reponse Message(const QString& titre, const QString& texte, Boutons boutons) = 0;
    // The `Input` prompt: none when cancelled.
    virtual std::optional<QString> Saisie(const QString& titre, const QString& invite,
                                          const QString& defaut) = 0;

    // The editor `RTB1`: its whole text (lines ended by CR LF).
    virtual QString TexteEditeur() const = 0;
    // Replaces `longueur` characters at the 0-based position `debut` of the
    // editor text by `texte` (the rewrites of `?`, `EpaisT`, `Arc` "?", `DMKCODE`,
    // the "?" form of `Fichier`).
    virtual void RemplaceTexteEditeur(int debut, int longueur, const QString& texte) = 0;
    // Colours `longueur` characters at the 0-based `debut` red and leaves the
    // caret there, to show the line of a failure. Returns the editor line of
    // the selection, counted from 1.
    virtual int MarqueErreur(int debut, int longueur) = 0;
    // The editor line (from 1) of the 0-based position.
    virtual int LigneDe(int position) const = 0;
    // The 0-based position behind the CR LF that ends the caret's line; -1
    // where there is no caret (headless). The "?" form of `Fichier` puts its
    // block there.
    virtual int FinLigneCaret() const { return -1; }
    // Redo the colouring of the line at the 0-based position (after a rewrite).
    virtual void ColoreLigneA(int) {}

    // Clipboard.
    virtual QString PressePapier() const = 0;
    virtual void EcritPressePapier(const QString& texte) = 0;

    // Let interface events run at the points where a run yields. The window
    // may set the run's `ArretDemande` from here (Esc).
    virtual void PompeEvenements() {}
    // Busy state of a run: pointer, disabled window.
    virtual void DebutExecution() {}
    virtual void FinExecution() {}

    // Asked by `OpenA` before it opens a file for writing or deletes one;
    // false: it does neither and the command ends there.
    virtual bool EcriturePermise() { return true; }

    // `Shell#$`: starts a command line; with attendre, waits for it.
    virtual bool Lance(const QString& commande, bool attendre) = 0;
};
