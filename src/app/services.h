// The services the window needs from Parts 4.5 (configuration) and 4.2
// (command files), behind small interfaces of the window's own.
//
// `ConfigFichier` and `FichiersDisque` are the real ones, over the services of
// src/app/core/config.* and fichiers.*. `ConfigMemoire` keeps the keys in
// memory, for the tests and the benchmarks.
#pragma once

#include "app/core/config.h"
#include "app/core/encodage.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

struct Reglages;

// The keys of "Mirel.cfg" that the window reads (Part 4.5, Data model).
struct ValeursConfig {
    QString PremiereLigne;       // line 1 of the file, for the version test (Debut step 7)
    QString Langue, LangueMenu, LangueAide, LangueMasq; // language names (entry 5), or empty
    QString FichierDat = QStringLiteral("Mirel.dat");
    QString DoubleClic = QStringLiteral("Non");
    float Zmm = 1.0f;
    std::optional<double> TailleCarCode;
    int Patchs = 0;
};

class ServiceConfig {
public:
    virtual ~ServiceConfig() = default;
    // Debut step 4: names the file, determines DossierCfg (written into the
    // folders of `r`), creates the default file when there is none, reads it.
    virtual ValeursConfig Lit(Reglages& r) = 0;
    // `EcritConfig(cle, valeur)`: rewrites one key ("Zmm =", "FichierDat =", ...).
    virtual void EcritConfig(const QString& cle, const QString& valeur) = 0;
    // After Form3's OK wrote the four language keys: help file, help menu,
    // template copy (Part 4.5, "On OK").
    virtual void LanguesValidees(const Reglages&) {}
};

class FichierService {
public:
    virtual ~FichierService() = default;
    // The text of a command file, lines ended by CR LF (the reading half of `LitFic`).
    virtual bool LitFic(const QString& chemin, QString& texte, QString& erreur) = 0;
    // Save: the editor's plain text over the file (Part 4.2, Save).
    virtual bool Ecrit(const QString& chemin, const QString& texte, QString& erreur) = 0;
    // New: the path of the first template found (Part 4.2, New), or empty.
    // `code` is string 8 of the messages' language ("fr", "en"...).
    virtual QString Modele(const Reglages& r, const QString& code) = 0;
    // Open step 2: an uninstaller's data file ("UNINS00?.DAT") is refused.
    virtual bool NomRefuse(const QString& chemin) = 0;
    // `LitFic`'s last step: the first uncommented ZoomIni value, 1 when none.
    virtual float ZoomDepart(const QString& texte) = 0;
};

// In-memory configuration: nothing is read from or written to disk. The
// languages start from the system locale (French, German, Spanish, else English).
class ConfigMemoire : public ServiceConfig {
public:
    ConfigMemoire();
    ValeursConfig Lit(Reglages& r) override;
    void EcritConfig(const QString& cle, const QString& valeur) override;

    ValeursConfig Valeurs;
    // Every EcritConfig call, "key" + "value", in order (the tests read it).
    QStringList Ecritures;
};

// "Mirel.cfg" on disk (Part 4.5): located, created when missing, read and
// rewritten key by key.
class ConfigFichier : public ServiceConfig {
public:
    ValeursConfig Lit(Reglages& r) override;
    void EcritConfig(const QString& cle, const QString& valeur) override;
    void LanguesValidees(const Reglages& r) override;

private:
    EmplacementConfig lieu_;
    Config config_;
};

// Command files (Part 4.2): `LitFic` (UTF-8 or Windows-1252), saved back in
// the encoding they were read in through a temporary file, templates.
class FichiersDisque : public FichierService {
public:
    bool LitFic(const QString& chemin, QString& texte, QString& erreur) override;
    bool Ecrit(const QString& chemin, const QString& texte, QString& erreur) override;
    QString Modele(const Reglages& r, const QString& code) override;
    bool NomRefuse(const QString& chemin) override;
    float ZoomDepart(const QString& texte) override;

private:
    QHash<QString, Encodage> encodages_; // of each file read, for its save
};

// The name of a language section (entry 5) to its offset 0, 400, 800, 1200;
// -1 when no offered section knows it (Part 4.5).
int DecalageDeLangue(const QString& nom);
// Entry 5 of the section of an offset.
QString NomDeLangue(int decalage);
