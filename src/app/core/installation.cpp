#include "app/core/installation.h"

#include "language/chaines.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSaveFile>

namespace {
QString DossierPartage(const QString& dossierExecutable) {
    return dossierExecutable + QStringLiteral("/../share/mirel");
}
} // namespace

bool ProgrammeInstalle(const QString& dossierExecutable) {
    return QFileInfo(DossierPartage(dossierExecutable)).isDir();
}

QString DossierDonnees(const QString& dossierExecutable) {
    const QString dossier = ProgrammeInstalle(dossierExecutable)
                                ? QFileInfo(DossierPartage(dossierExecutable)).canonicalFilePath()
                                : QDir(dossierExecutable).absolutePath();
    return dossier.endsWith(u'/') ? dossier : dossier + u'/';
}

TextesSetup TextesDuSetup(int decalage) {
    auto t = [decalage](int n) { return LoadResString(n + decalage); };
    return {t(387), t(388), t(389), t(390), t(391), t(392), t(393)};
}

int CopieExemples(const QString& source, const QString& dossier, QString& erreur) {
    const QDir src(source);
    if (!src.exists()) {
        erreur = source + QStringLiteral(": no such folder");
        return -1;
    }
    if (!QDir().mkpath(dossier)) {
        erreur = dossier + QStringLiteral(": cannot be made");
        return -1;
    }
    int copies = 0;
    for (const QFileInfo& f : src.entryInfoList(QDir::Files, QDir::Name)) {
        const QString cible = QDir(dossier).filePath(f.fileName());
        if (QFileInfo::exists(cible)) continue;
        if (!QFile::copy(f.absoluteFilePath(), cible)) {
            erreur = cible + QStringLiteral(": cannot be written");
            return -1;
        }
        ++copies;
    }
    return copies;
}

bool CreeLanceur(const QString& dossierApplications, const QString& executable, QString& erreur) {
    if (!QDir().mkpath(dossierApplications)) {
        erreur = dossierApplications + QStringLiteral(": cannot be made");
        return false;
    }
    // A path with spaces is quoted, as the Exec key requires.
    QString exec = executable;
    if (exec.contains(u' ')) exec = u'"' + exec + u'"';
    const QString texte = QStringLiteral(
        "[Desktop Entry]\n"
        "Type=Application\n"
        "Name=Mirel\n"
        "Comment=Draw the scales of analogue meters and dials at true size\n"
        "Comment[fr]=Dessiner à l'échelle les cadrans des appareils de mesure analogiques\n"
        "Comment[de]=Skalen analoger Messgeräte und Zifferblätter maßstabsgetreu zeichnen\n"
        "Comment[es]=Dibujar a tamaño real las escalas de instrumentos analógicos y esferas\n"
        "Exec=%1 %f\n"
        "Icon=org.mirel.Mirel\n"
        "Terminal=false\n"
        "Categories=Graphics;Engineering;\n"
        "MimeType=text/x-mirel;\n").arg(exec);
    QSaveFile f(QDir(dossierApplications).filePath(QStringLiteral("org.mirel.Mirel.desktop")));
    if (!f.open(QIODevice::WriteOnly) || f.write(texte.toUtf8()) < 0 || !f.commit()) {
        erreur = f.fileName() + QStringLiteral(": ") + f.errorString();
        return false;
    }
    return true;
}

bool AssocieFichiers(QString& erreur) {
    QProcess p;
    p.start(QStringLiteral("xdg-mime"),
            {QStringLiteral("default"), QStringLiteral("org.mirel.Mirel.desktop"), QStringLiteral("text/x-mirel")});
    if (!p.waitForFinished(30000) || p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0) {
        erreur = QStringLiteral("xdg-mime: ") +
                 (p.error() == QProcess::FailedToStart ? p.errorString()
                                                       : QString::fromLocal8Bit(p.readAllStandardError()).trimmed());
        return false;
    }
    return true;
}

void JournalSetup(const QString& dossier, const QString& texte, const QDateTime& quand) {
    QDir().mkpath(dossier);
    QFile f(QDir(dossier).filePath(QStringLiteral("MirelSetup.log")));
    if (!f.open(QIODevice::WriteOnly | QIODevice::Append)) return;
    f.write((quand.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) + QStringLiteral("  ") + texte + u'\n').toUtf8());
}
