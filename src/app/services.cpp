#include "app/services.h"

#include "app/core/session.h"
#include "language/chaines.h"
#include "language/etat.h"
#include "language/vb.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QSaveFile>
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

QString TexteVersion(int majeur, int mineur, int revision) {
    QString t = QString::number(majeur) + u'.' + QStringLiteral("%1").arg(mineur, 2, 10, QChar(u'0'));
    if (revision > 0 && revision <= 26) t += QChar(u'a' + revision - 1) + QStringLiteral(" ");
    return t;
}

QString TexteVersionProgramme() {
    const QStringList p = QStringLiteral(MIREL_VERSION).split(u'.');
    return TexteVersion(p.value(0).toInt(), p.value(1).toInt(), p.value(2).toInt());
}

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
    Valeurs.PremiereLigne =
        QStringLiteral("'Fichier de configuration du Programme Mirel V") + TexteVersionProgramme();
}

// --- FichiersSimples

bool FichiersSimples::LitFic(const QString& chemin, QString& texte, QString& erreur) {
    return LitTexteFichier(chemin, texte, erreur);
}

bool FichiersSimples::Ecrit(const QString& chemin, const QString& texte, QString& erreur) {
    QSaveFile f(chemin);
    if (!f.open(QIODevice::WriteOnly)) {
        erreur = f.errorString();
        return false;
    }
    f.write(texte.toUtf8());
    if (!f.commit()) {
        erreur = f.errorString();
        return false;
    }
    return true;
}

QString FichiersSimples::Modele(const Reglages& r, const QString& code) {
    const QStringList essais = {
        r.DossierTravail + QStringLiteral("Mirel.daN"),
        r.DossierCfg + QStringLiteral("Mirel_") + code + QStringLiteral(".DaN"),
        r.DossierProgramme + QStringLiteral("Mirel_") + code + QStringLiteral(".DaN"),
    };
    for (const QString& f : essais)
        if (!f.isEmpty() && QFileInfo(f).isFile()) return f;
    return QString();
}

bool FichiersSimples::NomRefuse(const QString& chemin) {
    const QString n = chemin.toUpper();
    return Right(n, 4) == QLatin1String(".DAT") && Mid(n, Len(n) - 11, 7) == QLatin1String("UNINS00");
}

float FichiersSimples::ZoomDepart(const QString& texte) {
    const QString haut = texte.toUpper();
    int p = InStr(haut, QStringLiteral("ZOOMINI"));
    while (p > 0) {
        const int debut = InStrRev(texte, CrLf(), p) + (InStrRev(texte, CrLf(), p) > 0 ? 2 : 1);
        int fin = InStr(p, texte, CrLf());
        if (fin == 0) fin = Len(texte) + 1;
        const QString ligne = LTrim(Mid(texte, debut, fin - debut).remove(u'\t'));
        if (!ligne.startsWith(u'\'')) {
            const int egal = InStr(ligne, QStringLiteral("="));
            const QString v = Trim(Mid(ligne, egal > 0 ? egal + 1 : 8));
            bool ok = false;
            float z = v.toFloat(&ok);
            if (!ok) z = float(QLocale::c().toDouble(v.section(u' ', 0, 0), &ok));
            if (!ok || z == 0) z = 1;
            return z;
        }
        p = InStr(p + 1, haut, QStringLiteral("ZOOMINI"));
    }
    return 1.0f;
}
