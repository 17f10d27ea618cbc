#include "app/core/installation.h"

#include <QDir>
#include <QFileInfo>

QString DossierDonnees(const QString& dossierExecutable) {
    const QFileInfo partage(dossierExecutable + QStringLiteral("/../share/mirel"));
    const QString dossier = partage.isDir() ? partage.canonicalFilePath() : QDir(dossierExecutable).absolutePath();
    return dossier.endsWith(u'/') ? dossier : dossier + u'/';
}
