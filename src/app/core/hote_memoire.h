// The headless `Hote`: an in-memory editor text, message boxes
// recorded and answered from a list, prompts answered from a list.
#pragma once

#include "language/hote.h"

#include <QDeadlineTimer>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <optional>
#include <vector>

// `Shell#$` on Linux, for both hosts: the command line is
// split into a program and its arguments and started; with attendre, waited
// for while `pompe` lets the host's events run. False when it could not start.
bool LanceCommande(const QString& commande, bool attendre, const std::function<void()>& pompe);

// An answer given in a run, with its question: a later run of the same
// program can be answered the same way.
struct ReponseGardee {
    QString question; // the kind, title, text and buttons or default asked
    Reponse reponse = Reponse::Ok;
    std::optional<QString> saisie;
};
// How a box or a prompt is told apart in the answers a run keeps.
QString QuestionMessage(const QString& titre, const QString& texte, Boutons boutons);
QString QuestionSaisie(const QString& titre, const QString& invite, const QString& defaut);

// The answers of an earlier run handed out in order, while each question
// asked is the one kept next; from the first other question on, none.
class SuiteGardee {
public:
    const ReponseGardee* Suivante(const std::vector<ReponseGardee>& gardees, const QString& question);

private:
    size_t rang_ = 0;
    bool ecart_ = false;
};

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
    bool EcriturePermise() override;
    // Headless there are no events; the calls are counted, so tests can see
    // which commands let events run. They are also where a run with a time
    // limit is stopped, as Esc stops it in the window.
    void PompeEvenements() override;

    void SetTexte(const QString& t) { texte_ = t; }
    bool TexteModifie() const { return modifie_; }
    const QVector<MessageEnregistre>& Messages() const { return messages_; }
    // The answers of an earlier run, given while each question is the one
    // kept next; from the first other question on, the lists below answer.
    std::vector<ReponseGardee> Gardees;
    // Answers given in order; when they run out, OK (or Yes).
    QStringList Reponses;
    // Answers of the Input prompts in order; when they run out, the default.
    QStringList Saisies;
    // The red marks of failing lines: 0-based start and length.
    QVector<QPair<int, int>> Marques;
    int Pompages = 0;
    // The stop of a run that takes too long: once `Echeance` has passed, or
    // at the pump `ArretAuPompage` (when above 0), `*Arret` is set and
    // `Expire` tells why; `PompageArret` is the pump that stopped it.
    bool* Arret = nullptr;
    QDeadlineTimer Echeance{QDeadlineTimer::Forever};
    // Called at each pump when set: a window watching a run of its own
    // serves its events there, and a true answer stops the run as Esc does.
    std::function<bool()> Veille;
    int ArretAuPompage = 0;
    bool Expire = false;
    int PompageArret = 0;
    // A trial run, which only looks at the drawing's set-up: it writes no
    // file and starts no program, and goes on past the lines that would.
    bool SansEffets = false;

private:
    SuiteGardee suite_;
    QString texte_;
    QString pressePapier_;
    bool modifie_ = false;
    QVector<MessageEnregistre> messages_;
};
