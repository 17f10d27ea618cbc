// The services the window needs from Parts 4.5 (configuration) and 4.2
// (command files), behind small interfaces of the window's own.
//
// The real services live in src/app/core/config.*, fichiers.*, dmk.* (another
// issue). Until they are merged, `ConfigMemoire` and `FichiersSimples` stand in
// for them: the first keeps the keys in memory, the second reads with
// `LitTexteFichier` and writes UTF-8 through QSaveFile. See docs/code.md and
// the merge notes at the end of fenetre.cpp.
#pragma once

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

// Minimal file I/O: UTF-8 or Windows-1252 in, UTF-8 out, templates looked up
// in the three places of Part 4.2.
class FichiersSimples : public FichierService {
public:
    bool LitFic(const QString& chemin, QString& texte, QString& erreur) override;
    bool Ecrit(const QString& chemin, const QString& texte, QString& erreur) override;
    QString Modele(const Reglages& r, const QString& code) override;
    bool NomRefuse(const QString& chemin) override;
    float ZoomDepart(const QString& texte) override;
};

// The name of a language section (entry 5) to its offset 0, 400, 800, 1200;
// -1 when no offered section knows it (Part 4.5).
int DecalageDeLangue(const QString& nom);
// Entry 5 of the section of an offset.
QString NomDeLangue(int decalage);
// The version text of Part 4.1: "2.06a " from 2, 6, 1; "0.01" from 0, 1, 0.
QString TexteVersion(int majeur, int mineur, int revision);
// The program's version text, from MIREL_VERSION.
QString TexteVersionProgramme();
