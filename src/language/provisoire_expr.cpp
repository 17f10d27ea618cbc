// PROVISIONAL — delete this whole file when Part 1.2 (para.cpp) and Part 1.3
// (variables.cpp) land. Minimal stand-ins for the four routines that Parts 1.4
// and 1.5 call, so that their tests link meanwhile. They are weak symbols:
// the real definitions take precedence when both are linked.
#include "language/etat.h"
#include "language/para.h"
#include "language/variables.h"
#include "language/vb.h"

namespace {

int CompteSeparateurs(const QString& texte, const QString& sep) {
    const QString t = vb::Trim(texte);
    const int n = sep.isEmpty() ? 0 : int(texte.count(sep));
    return t.isEmpty() || t == u")" ? n : n + 1;
}

// Slot of the variable whose name starts texte at pos, the longest first.
int Trouve(const CtxFic& c, const QString& texte, int pos) {
    int meilleur = 0;
    for (int i = 1; i <= c.NbVar; ++i) {
        const QString& nom = c.NomVar[i];
        if (!nom.isEmpty() && texte.mid(pos, nom.size()).compare(nom, Qt::CaseInsensitive) == 0 &&
            (meilleur == 0 || nom.size() > c.NomVar[meilleur].size()))
            meilleur = i;
    }
    return meilleur;
}

} // namespace

__attribute__((weak)) int NbPara(Etat& e, const QString& texte) {
    return CompteSeparateurs(texte, e.Separateur1);
}

__attribute__((weak)) int NbSousPara(Etat& e, const QString& texte) {
    return CompteSeparateurs(texte, e.Separateur2);
}

__attribute__((weak)) bool LitVar(Etat& e, int niveau, const QString& nom, QString& valeur) {
    const CtxFic& c = e.PileFic[niveau];
    for (int i = 1; i <= c.NbVar; ++i) {
        if (c.NomVar[i].compare(nom, Qt::CaseInsensitive) == 0) {
            valeur = c.ValVar[i];
            return true;
        }
    }
    return false;
}

// Plain names of the level, and %IRE$#0 names of level 0; nothing else.
__attribute__((weak)) int RemplaceVar(Etat& e, QString& texte) {
    int restes = 0;
    for (int pos = int(texte.indexOf(u'%')); pos >= 0; pos = int(texte.indexOf(u'%', pos))) {
        const bool partage = texte.mid(pos, 7).compare(u"%IRE$#0", Qt::CaseInsensitive) == 0;
        const int debut = partage ? pos + 6 : pos;
        const CtxFic& c = e.PileFic[partage ? 0 : e.NiveauCourant];
        QString reste = texte.mid(debut);
        if (partage) reste[0] = u'%';
        if (const int i = Trouve(c, reste, 0)) {
            texte.replace(pos, debut - pos + c.NomVar[i].size(), c.ValVar[i]);
        } else {
            ++restes;
            ++pos;
        }
    }
    return restes;
}
