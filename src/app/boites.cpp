#include "app/boites.h"

#include <QLocale>

std::optional<double> NombreTape(const QString& texte) {
    bool ok = false;
    const double v = QLocale::c().toDouble(QString(texte).replace(u',', u'.').trimmed(), &ok);
    if (!ok) return std::nullopt;
    return v;
}

Reponse BoitesSansPersonne::Message(QWidget*, const QString& titre, const QString& texte,
                                    Boutons boutons, Icone) {
    Vues << titre + u'\n' + texte;
    return boutons == Boutons::OuiNon || boutons == Boutons::OuiNonAnnuler ? Reponse::Oui : Reponse::Ok;
}

std::optional<QString> BoitesSansPersonne::Saisie(QWidget*, const QString& titre, const QString& invite,
                                                  const QString& defaut, const QString&) {
    Vues << titre + u'\n' + invite;
    return defaut;
}
