#include "app/core/externes.h"

#include "app/core/config.h"
#include "language/etat.h"

#include <QDir>
#include <QFileInfo>

namespace {

constexpr int MaxCommandesExternes = 60;


void Ajoute(QList<CommandeExterne>& liste, const QString& dossier) {
    if (dossier.isEmpty()) return;
    QDir d(dossier);
    const QStringList fichiers =
        d.entryList({QStringLiteral("*.dmk")}, QDir::Files, QDir::Name | QDir::IgnoreCase);
    for (const QString& f : fichiers) {
        if (liste.size() >= MaxCommandesExternes) return;
        liste.append({QFileInfo(f).completeBaseName(), AvecBarre(dossier), d.filePath(f)});
    }
}

} // namespace

QList<CommandeExterne> ListeCommandesExternes(const QString& dossierProgramme,
                                             const QString& dossierTravail) {
    QList<CommandeExterne> l;
    Ajoute(l, dossierProgramme);
    const QString p = QDir(dossierProgramme).canonicalPath();
    const QString t = QDir(dossierTravail).canonicalPath();
    if (!dossierTravail.isEmpty() && p != t) Ajoute(l, dossierTravail);
    // A straight exchange sort: it is not stable, and the order it leaves
    // decides which of two names equal but for case is kept below.
    for (int i = 0; i < l.size() - 1; ++i)
        for (int j = i + 1; j < l.size(); ++j)
            if (QString::compare(l[j].nom, l[i].nom, Qt::CaseSensitive) < 0) l.swapItemsAt(i, j);
    // Later duplicates go.
    QList<CommandeExterne> r;
    for (const CommandeExterne& c : l) {
        bool vu = false;
        for (const CommandeExterne& d : r)
            if (d.nom.toUpper() == c.nom.toUpper()) vu = true;
        if (!vu) r.append(c);
    }
    return r;
}

void ChargeCommandesExternes(Reglages& r) {
    r.CommandesExternes.clear();
    r.FichiersExternes.clear();
    for (const CommandeExterne& c : ListeCommandesExternes(r.DossierProgramme, r.DossierTravail)) {
        r.CommandesExternes << c.nom;
        r.FichiersExternes << c.fichier;
    }
}
