#include "language/chaines.h"

#include <QDir>
#include <QFile>
#include <QStringList>

#include <algorithm>

const TableChaines& TableChaines::Standard() {
    static const TableChaines table = Charge(QStringLiteral(":/strings"));
    return table;
}

int TableChaines::DecalageDeFichier(const QString& nom) {
    static const char* const codes[] = {"fr", "en", "de", "es", "ru"};
    for (int i = 0; i < 5; ++i)
        if (nom == QLatin1String(codes[i]) + QStringLiteral(".txt")) return 400 * i;
    return -1;
}

TableChaines TableChaines::Charge(const QString& dossier) {
    TableChaines t;
    const QDir dir(dossier);
    for (const QString& nom : dir.entryList({QStringLiteral("*.txt")}, QDir::Files)) {
        const int decalage = DecalageDeFichier(nom);
        if (decalage < 0) continue;
        QFile f(dir.filePath(nom));
        if (!f.open(QIODevice::ReadOnly)) continue;
        t.AjouteSection(QString::fromUtf8(f.readAll()), decalage);
    }
    return t;
}

void TableChaines::AjouteSection(const QString& contenu, int decalage) {
    const QStringList lignes = contenu.split(u'\n');
    for (QString ligne : lignes) {
        if (ligne.endsWith(u'\r')) ligne.chop(1);
        const qsizetype tab = ligne.indexOf(u'\t');
        if (tab <= 0) continue;
        bool ok = false;
        const int n = ligne.left(tab).toInt(&ok);
        if (!ok) continue;
        QString texte;
        const QString brut = ligne.mid(tab + 1);
        texte.reserve(brut.size());
        for (qsizetype i = 0; i < brut.size(); ++i) {
            if (brut[i] == u'\\' && i + 1 < brut.size()) {
                const QChar c = brut[i + 1];
                if (c == u'n') { texte += u'\n'; ++i; continue; }
                if (c == u't') { texte += u'\t'; ++i; continue; }
                if (c == u'\\') { texte += u'\\'; ++i; continue; }
            }
            texte += brut[i];
        }
        lignes_.insert(n + decalage, texte);
    }
}

QList<int> TableChaines::Numeros() const {
    QList<int> n = lignes_.keys();
    std::sort(n.begin(), n.end());
    return n;
}

QString LoadResString(int n) { return TableChaines::Standard().Texte(n); }
