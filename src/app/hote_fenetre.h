// The `Hote` of the main window: message boxes with the buttons asked for, the
// `Input` prompt, the editor's text and its rewrites, the red marking of a
// failing line, the clipboard, event pumping with Esc, the busy state.
#pragma once

#include "app/core/hote_memoire.h"
#include "language/hote.h"

#include <QElapsedTimer>

class Form1;

class HoteFenetre : public Hote {
public:
    explicit HoteFenetre(Form1& f) : f_(f) {}

    Reponse Message(const QString& titre, const QString& texte, Boutons boutons) override;
    std::optional<QString> Saisie(const QString& titre, const QString& invite,
                                  const QString& defaut) override;
    QString TexteEditeur() const override;
    void RemplaceTexteEditeur(int debut, int longueur, const QString& texte) override;
    int MarqueErreur(int debut, int longueur) override;
    int LigneDe(int position) const override;
    int FinLigneCaret() const override;
    void ColoreLigneA(int position) override;
    QString PressePapier() const override;
    void EcritPressePapier(const QString& texte) override;
    void PompeEvenements() override;
    void DebutExecution() override;
    void FinExecution() override;
    bool Lance(const QString& commande, bool attendre) override;

protected:
    // The window's own start and end of a run, without touching the answers kept.
    void DebutRun();
    void FinRun();

private:
    Form1& f_;
    QElapsedTimer montre_; // paces the event pumping
};
