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

// --- ConfigMemoire

ConfigMemoire::ConfigMemoire() {
    const QString l = QLocale::system().name().left(2);
    int d = 400;
    if (l == QLatin1String("fr")) d = 0;
    else if (l == QLatin1String("de")) d = 800;
    else if (l == QLatin1String("es")) d = 1200;
    Valeurs.Langue = Valeurs.LangueMenu = Valeurs.LangueAide = Valeurs.LangueMasq = NomDeLangue(d);
    Valeurs.PremiereLigne =
        QStringLiteral("'Fichier de configuration du Programme Mirel V") + TexteVersionProgramme();
}

ValeursConfig ConfigMemoire::Lit(Reglages& r) {
    if (r.DossierCfg.isEmpty()) r.DossierCfg = r.DossierTravail;
    return Valeurs;
}

void ConfigMemoire::EcritConfig(const QString& cle, const QString& valeur) {
    Ecritures << cle + valeur;
    const QString c = cle.toUpper();
    const QString v = Trim(valeur);
    if (c == QLatin1String("LANGUE =")) Valeurs.Langue = v;
    else if (c == QLatin1String("LANGUEMENU =")) Valeurs.LangueMenu = v;
    else if (c == QLatin1String("LANGUEAIDE =")) Valeurs.LangueAide = v;
    else if (c == QLatin1String("LANGUEMASQ =")) Valeurs.LangueMasq = v;
    else if (c == QLatin1String("FICHIERDAT =")) Valeurs.FichierDat = v;
    else if (c == QLatin1String("DOUBLECLIC =")) Valeurs.DoubleClic = v;
    else if (c == QLatin1String("ZMM =")) Valeurs.Zmm = v.toFloat();
    else if (c == QLatin1String("TAILLECARCODE =")) Valeurs.TailleCarCode = v.toDouble();
    else if (c == QLatin1String("PATCHS =")) Valeurs.Patchs = v.toInt();
    else if (c == QLatin1String("RECENTS =")) Valeurs.Recents = v.split(u'|', Qt::SkipEmptyParts);
    else if (c == QLatin1String("APERCUDIRECT =")) Valeurs.ApercuDirect = UCase(v) == u"OUI";
    else if (c == QLatin1String("EXPORT =")) Valeurs.Export = v;
    Valeurs.PremiereLigne =
        QStringLiteral("'Fichier de configuration du Programme Mirel V") + TexteVersionProgramme();
}

// --- ConfigFichier

ValeursConfig ConfigFichier::Lit(Reglages& r) {
    if (!EnPlace) EnPlace = ProgrammeEnPlace(QCoreApplication::applicationDirPath());
    lieu_ = LocaliseConfig(AvecBarre(r.DossierProgramme), AvecBarre(r.DossierTravail), DossierXdgMirel(),
                           QStringLiteral("mirel"), *EnPlace);
    config_ = ChargeConfig(lieu_, TexteVersionProgramme());
    AppliqueEmplacement(lieu_, r);
    ValeursConfig v;
    v.PremiereLigne = config_.PremiereLigne;
    v.Langue = config_.Langue;
    v.LangueMenu = config_.LangueMenu;
    v.LangueAide = config_.LangueAide;
    v.LangueMasq = config_.LangueMasq;
    v.FichierDat = config_.FichierDat;
    v.DoubleClic = config_.DoubleClic ? QStringLiteral("Oui") : QStringLiteral("Non");
    v.Zmm = config_.Zmm;
    if (config_.TailleCarCode) v.TailleCarCode = *config_.TailleCarCode;
    v.Patchs = config_.Patchs;
    v.Recents = config_.Recents;
    v.ApercuDirect = config_.ApercuDirect;
    v.Export = config_.Export;
    return v;
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

