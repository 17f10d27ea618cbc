// What the main window offers beyond its run cycle, as editors do today: the
// keys Ctrl+S, Ctrl+O, Ctrl+N, Ctrl+Q and F5, the recent files of the file
// menu (kept in "Mirel.cfg"), a command file dropped on the window, a file
// changed on disk offered for reload, a "*" in the caption while the text is
// unsaved, and Qt's own translations of the standard buttons.
#pragma once

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QStringList>

class Form1;
class QFileSystemWatcher;
class QMenu;
class QMimeData;

// --- recent files

constexpr int NombreRecents = 8;
// The list with `chemin` first, its earlier place removed, at most NombreRecents long.
QStringList AjouteRecent(const QStringList& liste, const QString& chemin);

// --- dropped files

// The command file of a drop: one local file ending in ".dat" or ".mtr" (any
// case); empty for anything else (text, several files, other names).
QString FichierDepose(const QMimeData* donnees);

// --- Qt's translations

// Installs Qt's own translations ("qt_fr", "qt_de", "qt_es") for the language
// of a section offset, owned by `proprietaire` (they go with it); English
// and unknown sections remove them. False when none was loaded.
bool TraduitQt(int decalage, QObject* proprietaire);

// --- the window's part

class UsageFenetre : public QObject {
    Q_OBJECT
public:
    explicit UsageFenetre(Form1& fenetre);

    // Opens a file the way Open does once its dialog has answered: the
    // question to save, the uninstaller's name refused, a meter file imported.
    bool Ouvre(const QString& chemin);
    // After every command of the file menu: the file joins the recent files
    // and is watched on disk; `ecrit`: the file Save as wrote, which comes
    // first among the recent files.
    void ApresCommandeFichier(const QString& ecrit = {});
    // At the window's close, with the other keys: the recent files and the
    // window's place ("Recents =", "Fenetre =").
    void EnregistreReglages();
    // At start-up: the window where it was left, when that is on a screen.
    void RestaurePlace();
    // Offers to reload the current file when it changed on disk since it was
    // loaded or saved (at most one question at a time). True when reloaded.
    bool VerifieDisque();
    // The menus' captions (string 395 for the recent files).
    void Legendes();

    QMenu* Mnu_Recents = nullptr;

protected:
    bool eventFilter(QObject* objet, QEvent* ev) override;

private:
    struct Empreinte {
        QDateTime date;
        qint64 taille = -1;
        bool operator==(const Empreinte&) const = default;
    };
    static Empreinte EmpreinteDe(const QString& chemin);
    void RemplitRecents();

    Form1& f_;
    QFileSystemWatcher* veille_;
    QString suivi_;       // the file watched
    Empreinte empreinte_; // as it stood when loaded or saved
    bool question_ = false;
};
