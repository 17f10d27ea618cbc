// The configuration service the window needs, behind a small interface of
// the window's own, so that tests and benchmarks run on keys in memory.
// (Command files are the commands of src/app/core/fichiers, which the window
// runs through `Form1::PontFichiers`.)
//
// `ConfigFichier` is the real one, over src/app/core/config.*. `ConfigMemoire`
// keeps the keys in memory, for the tests and the benchmarks.
#pragma once

#include "app/core/config.h"
#include "app/core/encodage.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

struct Reglages;

// The keys of "Mirel.cfg" that the window reads.
struct ValeursConfig {
    QString PremiereLigne;       // line 1 of the file, for the version test at start-up
    QString Langue, LangueMenu, LangueAide, LangueMasq; // language names (entry 5), or empty
    QString FichierDat = QStringLiteral("Mirel.dat");
    QString DoubleClic = QStringLiteral("Non");
    float Zmm = 1.0f;
    std::optional<double> TailleCarCode;
    int Patchs = 0;
    QStringList Recents; // the file menu's recent files, most recent first
    bool ApercuDirect = false; // the live preview is on
    QString Export;            // the export dialog's last choices (export_dialogue.h)
    QString Fenetre;           // the main window's place and size (usage_fenetre.h)
};

class ServiceConfig {
public:
    virtual ~ServiceConfig() = default;
    // At start-up: names the file, determines DossierCfg (written into the
    // folders of `r`), creates the default file when there is none, reads it.
    virtual ValeursConfig Lit(Reglages& r) = 0;
    // `EcritConfig(cle, valeur)`: rewrites one key ("Zmm =", "FichierDat =", ...).
    virtual void EcritConfig(const QString& cle, const QString& valeur) = 0;
    // After Form3's OK wrote the four language keys: help file, help menu,
    // template copy.
    virtual void LanguesValidees(const Reglages&) {}
};


// In-memory configuration: the lines of a settings file that is never read
// from or written to disk. The languages start from the system locale
// (French, German, Spanish, else English).
class ConfigMemoire : public ServiceConfig {
public:
    ConfigMemoire();
    ValeursConfig Lit(Reglages& r) override;
    void EcritConfig(const QString& cle, const QString& valeur) override;
    // Rewrites one key, as EcritConfig does, without recording it.
    void Pose(const QString& cle, const QString& valeur);

    QStringList Lignes;
    // Every EcritConfig call, "key" + "value", in order (the tests read it).
    QStringList Ecritures;
};

// "Mirel.cfg" on disk: located, created when missing, read and
// rewritten key by key.
class ConfigFichier : public ServiceConfig {
public:
    // Whether the program runs from its build folder or installed place
    // (the settings then live in the XDG folder); unset: asked of the
    // executable's folder at `Lit`.
    std::optional<bool> EnPlace;

    ValeursConfig Lit(Reglages& r) override;
    void EcritConfig(const QString& cle, const QString& valeur) override;
    void LanguesValidees(const Reglages& r) override;

private:
    EmplacementConfig lieu_;
    Config config_;
};


// The name of a language section (entry 5) to its offset 0, 400, 800, 1200;
// -1 when no offered section knows it.
int DecalageDeLangue(const QString& nom);
// Entry 5 of the section of an offset.
QString NomDeLangue(int decalage);
