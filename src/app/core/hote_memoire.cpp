#include "app/core/hote_memoire.h"

#include <QProcess>

namespace {

Reponse ReponseDe(const QString& mot, Boutons boutons) {
    const QString m = mot.trimmed().toLower();
    if (m == QLatin1String("cancel")) return Reponse::Annuler;
    if (m == QLatin1String("no")) return Reponse::Non;
    if (m == QLatin1String("yes")) return Reponse::Oui;
    if (m == QLatin1String("ok")) return Reponse::Ok;
    return boutons == Boutons::OuiNon || boutons == Boutons::OuiNonAnnuler ? Reponse::Oui : Reponse::Ok;
}

} // namespace

QString QuestionMessage(const QString& titre, const QString& texte, Boutons boutons) {
    return QStringLiteral("message\n%1\n%2\n%3").arg(titre, texte).arg(int(boutons));
}

QString QuestionSaisie(const QString& titre, const QString& invite, const QString& defaut) {
    return QStringLiteral("saisie\n%1\n%2\n%3").arg(titre, invite, defaut);
}

const ReponseGardee* SuiteGardee::Suivante(const std::vector<ReponseGardee>& gardees, const QString& question) {
    if (ecart_ || rang_ >= gardees.size()) return nullptr;
    if (gardees[rang_].question != question) {
        ecart_ = true;
        return nullptr;
    }
    return &gardees[rang_++];
}

Reponse HoteMemoire::Message(const QString& titre, const QString& texte, Boutons boutons) {
    const int i = int(messages_.size());
    const ReponseGardee* g = suite_.Suivante(Gardees, QuestionMessage(titre, texte, boutons));
    Reponse r = g ? g->reponse : ReponseDe(i < Reponses.size() ? Reponses[i] : QString(), boutons);
    // An answer the box doesn't offer falls back to its first button.
    if (boutons == Boutons::Ok) r = Reponse::Ok;
    if (boutons == Boutons::OkAnnuler && r != Reponse::Annuler) r = Reponse::Ok;
    if (boutons == Boutons::OuiNon && r != Reponse::Non) r = Reponse::Oui;
    messages_.append({titre, texte, boutons, r});
    return r;
}

void HoteMemoire::PompeEvenements() {
    ++Pompages;
    if (!Arret) return;
    if (Veille && Veille()) *Arret = true;
    if (Echeance.hasExpired() || (ArretAuPompage > 0 && Pompages >= ArretAuPompage)) {
        if (!Expire) PompageArret = Pompages;
        *Arret = true;
        Expire = true;
    }
}

std::optional<QString> HoteMemoire::Saisie(const QString& titre, const QString& invite, const QString& defaut) {
    if (const ReponseGardee* g = suite_.Suivante(Gardees, QuestionSaisie(titre, invite, defaut))) return g->saisie;
    if (Saisies.isEmpty()) return defaut;
    return Saisies.takeFirst();
}

void HoteMemoire::RemplaceTexteEditeur(int debut, int longueur, const QString& texte) {
    texte_.replace(debut, longueur, texte);
    modifie_ = true;
}

int HoteMemoire::MarqueErreur(int debut, int longueur) {
    Marques.append({debut, longueur});
    return LigneDe(debut);
}

int HoteMemoire::LigneDe(int position) const {
    if (position < 0) position = 0;
    return int(texte_.left(position).count(QStringLiteral("\r\n"))) + 1;
}

bool HoteMemoire::Lance(const QString& commande, bool attendre) {
    if (SansEffets) return false;
    return LanceCommande(commande, attendre, [this] { PompeEvenements(); });
}

bool HoteMemoire::EcriturePermise() { return !SansEffets; }

bool LanceCommande(const QString& commande, bool attendre, const std::function<void()>& pompe) {
    QStringList args = QProcess::splitCommand(commande);
    if (args.isEmpty()) return false;
    const QString prog = args.takeFirst();
    if (!attendre) return QProcess::startDetached(prog, args);
    // Events are pumped until the process has ended, so the window stays
    // responsive while the program waits.
    QProcess p;
    p.start(prog, args);
    if (!p.waitForStarted()) return false;
    while (!p.waitForFinished(15))
        if (pompe) pompe();
    return true;
}
