#include "app/boites.h"

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
