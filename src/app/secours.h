// Never losing typed text: the recovery copy of a text that is not on disk,
// and what the window knows of a Save that failed.
//
// While the editor's text differs from its file, a copy of it is kept in the
// user's state folder, rewritten (atomically, through a temporary file) at
// each key released in the editor, as soon as the editor is idle after any
// other change, and at every run. A save, a loaded file and a clean quit
// remove it. Each window holds a lock beside its
// copy, so that a copy whose window still lives is never offered elsewhere;
// a copy whose window was killed is offered at the next start.
#pragma once

#include <QDateTime>
#include <QString>
#include <QTimer>

#include <memory>

class Editeur;
class QLockFile;

// The folder of the copies: "mirel" in the XDG state folder ($XDG_STATE_HOME,
// else ~/.local/state).
QString DossierSecoursStandard();

// A copy left by a window that ended without saving its text.
struct CopieSecours {
    QString Chemin;         // the copy's own file
    QString Fichier, Nom;   // the file Save writes and the caption's name, empty for a new text
    QString Texte;          // the editor's text, lines ended by CR LF
    QDateTime Date;         // when the copy was last written
    std::shared_ptr<QLockFile> Verrou; // held while the copy is being offered
};

class Secours {
public:
    // `dossier` empty: no copy is kept (a text off the disk still counts).
    // `fichier` and `nom` are the window's current names, read at each write;
    // `horsDisque` its flag of a text that a failed save left off the disk.
    Secours(Editeur* ed, QString dossier, const QString& fichier, const QString& nom,
            const bool& horsDisque);
    ~Secours();

    // There is text, and it is modified or not on disk.
    bool ARisque() const;
    // Writes the copy when there is something to keep, removes it otherwise.
    void Ecrit();
    // Removes this window's copy and its lock.
    void Supprime();
    // This window's copy.
    QString Chemin() const { return base_ + QStringLiteral(".txt"); }

    // The copies of windows that ended without saving, newest first: those
    // whose window is gone and which are not older than their file. Copies
    // older than their file are removed.
    QList<CopieSecours> Abandonnees() const;
    // Removes a copy once its text was taken back or declined.
    static void Jette(CopieSecours& c);

private:
    Editeur* ed_;
    QString dossier_, base_;
    const QString& fichier_;
    const QString& nom_;
    const bool& horsDisque_;
    QByteArray ecrit_; // what the copy holds
    std::unique_ptr<QLockFile> verrou_;
    QTimer minuteur_;
};
