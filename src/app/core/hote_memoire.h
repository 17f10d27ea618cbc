// The headless `Hote`: an in-memory editor text, message boxes
// recorded and answered from a list, prompts answered from a list.
#pragma once

#include "language/hote.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

// `Shell#$` on Linux, for both hosts: the command line is
// split into a program and its arguments and started; with attendre, waited
// for while `pompe` lets the host's events run. False when it could not start.
bool LanceCommande(const QString& commande, bool attendre, const std::function<void()>& pompe);

struct MessageEnregistre {
    QString titre, texte;
    Boutons boutons = Boutons::Ok;
    Reponse reponse = Reponse::Ok;
};

class HoteMemoire : public Hote {
public:
    explicit HoteMemoire(QString texte = QString()) : texte_(std::move(texte)) {}

    Reponse Message(const QString& titre, const QString& texte, Boutons boutons) override;
    std::optional<QString> Saisie(const QString& titre, const QString& invite,
                                  const QString& defaut) override;
    QString TexteEditeur() const override { return texte_; }
    void RemplaceTexteEditeur(int debut, int longueur, const QString& texte) override;
    int MarqueErreur(int debut, int longueur) override;
    int LigneDe(int position) const override;
    QString PressePapier() const override { return pressePapier_; }
    void EcritPressePapier(const QString& texte) override { pressePapier_ = texte; }
    bool Lance(const QString& commande, bool attendre) override;
    // Headless there are no events; the calls are counted, so tests can see
    // which commands let events run.
    void PompeEvenements() override { ++Pompages; }

    void SetTexte(const QString& t) { texte_ = t; }
    bool TexteModifie() const { return modifie_; }
    const QVector<MessageEnregistre>& Messages() const { return messages_; }
    // Answers given in order; when they run out, OK (or Yes).
    QStringList Reponses;
    // Answers of the Input prompts in order; when they run out, the default.
    QStringList Saisies;
    // The red marks of failing lines: 0-based start and length.
    QVector<QPair<int, int>> Marques;
    int Pompages = 0;

private:
    QString texte_;
    QString pressePapier_;
    bool modifie_ = false;
    QVector<MessageEnregistre> messages_;
};
