#include "app/services.h"

#include "app/core/fichiers.h"
#include "language/chaines.h"
#include "language/etat.h"
#include "language/vb.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QStringList>

using namespace vb;

int DecalageDeLangue(const QString& nom) {
    const QString n = Trim(nom).toUpper();
    if (n.isEmpty()) return -1;
    const int offertes = LoadResString(3).toInt();
    for (int i = 0; i < offertes; ++i)
        if (LoadResString(5 + 400 * i).toUpper() == n) return 400 * i;
    return -1;
}

QString NomDeLangue(int decalage) { return LoadResString(5 + decalage); }

namespace {

// The values a window starts from, as the settings file gives them.
ValeursConfig ValeursDe(const Config& c) {
    ValeursConfig v;
    v.PremiereLigne = c.PremiereLigne;
    v.Langue = c.Langue;
    v.LangueMenu = c.LangueMenu;
    v.LangueAide = c.LangueAide;
    v.LangueMasq = c.LangueMasq;
    v.FichierDat = c.FichierDat;
    v.DoubleClic = c.DoubleClic ? QStringLiteral("Oui") : QStringLiteral("Non");
    v.Zmm = c.Zmm;
    if (c.TailleCarCode) v.TailleCarCode = *c.TailleCarCode;
    v.Patchs = c.Patchs;
    v.Recents = c.Recents;
    v.ApercuDirect = c.ApercuDirect;
    v.Export = c.Export;
    v.Fenetre = c.Fenetre;
    return v;
}

} // namespace

// --- ConfigMemoire

ConfigMemoire::ConfigMemoire() : Lignes(LignesConfigDefaut(TexteVersionProgramme())) {
    const QString l = QLocale::system().name().left(2);
    int d = 400;
    if (l == QLatin1String("fr")) d = 0;
    else if (l == QLatin1String("de")) d = 800;
    else if (l == QLatin1String("es")) d = 1200;
    for (const QString& cle : {CleCfg::Langue, CleCfg::LangueMenu, CleCfg::LangueAide, CleCfg::LangueMasq})
        Pose(cle, NomDeLangue(d));
}

void ConfigMemoire::Pose(const QString& cle, const QString& valeur) {
    Lignes = RemplaceCle(Lignes, cle, valeur, TexteVersionProgramme());
}

ValeursConfig ConfigMemoire::Lit(Reglages& r) {
    if (r.DossierCfg.isEmpty()) r.DossierCfg = r.DossierTravail;
    return ValeursDe(LitConfigTexte(Lignes.join(CrLf())));
}

void ConfigMemoire::EcritConfig(const QString& cle, const QString& valeur) {
    Ecritures << cle + valeur;
    Pose(cle, valeur);
}

// --- ConfigFichier

ValeursConfig ConfigFichier::Lit(Reglages& r) {
    if (!EnPlace) EnPlace = ProgrammeEnPlace(QCoreApplication::applicationDirPath());
    lieu_ = LocaliseConfig(AvecBarre(r.DossierProgramme), AvecBarre(r.DossierTravail), DossierXdgMirel(),
                           QStringLiteral("mirel"), *EnPlace);
    config_ = ChargeConfig(lieu_, TexteVersionProgramme());
    AppliqueEmplacement(lieu_, r);
    return ValeursDe(config_);
}

void ConfigFichier::EcritConfig(const QString& cle, const QString& valeur) {
    ::EcritConfig(lieu_, cle, valeur, TexteVersionProgramme());
}

void ConfigFichier::LanguesValidees(const Reglages& r) {
    // The keys are written already; what remains of Form3's OK is the
    // template copy, which ValideLangues does with the choices of the file.
    const TableChaines& t = TableChaines::Standard();
    config_ = ChargeConfig(lieu_, TexteVersionProgramme());
    ChoixLangues choix = LanguesDeConfig(config_, t);
    ValideLangues(choix, lieu_, config_, t, TexteVersionProgramme());
    (void)r;
}

