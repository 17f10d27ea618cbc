// The editing tools of the editor `RTB1`: the undo ring and `FrmFind`, the
// modeless find and replace dialog.
//
// Undo keeps 21 full copies of the text (`RTB2`), each with its colours, its
// caret and its selection. The copies are taken when keys are released, so
// that a run of typing, a run of Backspace or Delete, or Enter becomes one
// level; insertions by menu or dialog take a level of their own.
#pragma once

#include <QDialog>
#include <QList>
#include <QRgb>
#include <QSet>
#include <QString>

#include <array>

class Editeur;
class QAction;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

// The key code that the undo logic classifies: letters and digits as their
// upper-case character, the named keys by their usual virtual-key numbers
// (8 Backspace, 13 Enter, 108 keypad Enter, 33 to 40 the moves, 46 Delete,
// 112 on the function keys...), 0 for any other key.
int CodeTouche(int cleQt);
// The shift state: 1 Shift, 2 Ctrl, 4 Alt.
int EtatShift(Qt::KeyboardModifiers mods);

// One level of the ring: the plain text, its coloured runs, the caret and
// the selection's length.
struct CopieTexte {
    struct Plage {
        int debut, longueur;
        QRgb couleur;
    };
    QString Texte;
    QList<Plage> Couleurs;
    int Debut = 0, Longueur = 0; // UndoDebut, UndoLong
};

class AnneauAnnulation {
public:
    static constexpr int Taille = 21;
    AnneauAnnulation(Editeur* ed, QAction* defaire, QAction* refaire);

    int UndoSlot = 1, UndoNb = 1, RedoNb = 0; // UndoNb 1: nothing to undo
    int DerTouche = 0, DerShift = 0;          // the last key classified
    bool SansSnap = false;                    // the current level goes on
    int LongueurCoupe = -1;                   // the text's length at Ctrl-X key down

    // A fresh text: slot 1, one level, nothing to redo, and its copy.
    void Initialise();
    // Copies the text, caret and selection into the current slot.
    void Snapshot();
    // The copy of a key that continues or begins a run: a new level when
    // none is under way.
    void SnapshotAvance(int touche, int shift);
    void NouveauNiveau();
    // The key-up classification. False for the keys that move the caret
    // (page, Home, End, arrows): the find position is then dropped.
    // `appuiVu` is false for the release of a key pressed elsewhere (the Enter
    // that closed a dialog), which changes nothing here.
    bool ToucheRelachee(int touche, int shift, bool appuiVu);
    // An insertion by menu or dialog: a level of its own, which typing continues.
    void Insertion();
    // Each true when a copy of the text was brought back.
    bool Mnu_Defaire();
    bool Mnu_Refaire();
    const CopieTexte& Copie(int slot) const { return RTB2[slot]; }

private:
    // The copy of a key that ends a run (Backspace, Delete, Enter): the next
    // key begins a level, and nothing is left to redo.
    void FinDeSerie(int touche, int shift);
    void Restaure();
    Editeur* ed_;
    QAction* defaire_;
    QAction* refaire_;
    std::array<CopieTexte, Taille> RTB2;
};

// `FrmFind`: find next, replace, replace all and the translation of colour
// words, always on top of the window.
class FrmFind : public QDialog {
    Q_OBJECT
public:
    FrmFind(QWidget* fenetre, Editeur* ed, AnneauAnnulation& anneau);

    QLabel *Label1, *Label2, *Compte; // Compte: the count of Replace all
    QLineEdit *Text1, *Text2;         // find, replace with
    QCheckBox *Check1, *Check2;       // whole word, match case
    QPushButton *Suivant, *Remplacer, *RemplacerTout, *Annuler;

    int FindDepart = 0; // where the caret returns when nothing is found
    int FindNb = 0;     // searches since the find text last changed
    int FindFlags = 0;  // 2 whole word, 4 match case

    // The captions, in the menus' language.
    void Legendes(int langueMenus);
    // `Mnu_Rechercher` and Ctrl-F: the selection becomes the find text, and
    // the dialog shows.
    void Montre();
    // F3 in the editor: find next, or the dialog when there is nothing to find.
    void F3();
    void Suivant_Click();
    void Remplacer_Click();
    void RemplacerTout_Click();
    // The caret moved: the count is cleared, Replace waits for a new match.
    void EffaceCompte();

signals:
    void niveauPris(); // a replacement took an undo level

protected:
    void keyPressEvent(QKeyEvent* ev) override;
    bool eventFilter(QObject* objet, QEvent* ev) override;
    void changeEvent(QEvent* ev) override;

private:
    bool Touche(QKeyEvent* ev); // true when the dialog's keys used it
    void RemplaceSelection();
    int BoucleRemplacement();   // the replacements of Replace all
    void Traduction(const QStringList& paires);
    Editeur* ed_;
    AnneauAnnulation& anneau_;
    int longueurTrouvee_ = 0;   // the length of the text that stands at the find position
};

// The editor's keys, the Edit menu's entries and the two tools, wired together.
class Recherche : public QObject {
    Q_OBJECT
public:
    Recherche(Editeur* ed, QAction* defaire, QAction* refaire, QAction* rechercher, QWidget* fenetre);
    AnneauAnnulation Annulation;
    FrmFind* Find;

signals:
    void etatChange();     // the undo counters changed (Text4)
    void texteRemplace();  // the user's text replaced at once: undo, redo, the command dialog's OK

protected:
    bool eventFilter(QObject* objet, QEvent* ev) override;

private:
    Editeur* ed_;
    QSet<int> appuyees_; // keys pressed in the editor and not yet released
    bool appuiVu_ = true;
};
