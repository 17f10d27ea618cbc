#include "app/hote_fenetre.h"

#include "app/boites.h"
#include "app/core/hote_memoire.h"
#include "app/editeur.h"
#include "app/fenetre.h"
#include "app/pane.h"
#include "language/chaines.h"

#include <QApplication>
#include <QClipboard>
#include <QTextBlock>
#include <QElapsedTimer>

Reponse HoteFenetre::Message(const QString& titre, const QString& texte, Boutons boutons) {
    const Reponse r = f_.s_.boites->Message(&f_, titre, texte, boutons, Icone::Aucune);
    f_.ReponsesDuRun.push_back({QuestionMessage(titre, texte, boutons), r, std::nullopt});
    return r;
}

std::optional<QString> HoteFenetre::Saisie(const QString& titre, const QString& invite,
                                           const QString& defaut) {
    // The Cancel button of `Input` says string 172, in the messages' language.
    std::optional<QString> r =
        f_.s_.boites->Saisie(&f_, titre, invite, defaut, LoadResString(172 + f_.regl.LangueMessages));
    f_.ReponsesDuRun.push_back({QuestionSaisie(titre, invite, defaut), Reponse::Ok, r});
    return r;
}

QString HoteFenetre::TexteEditeur() const { return f_.RTB1->TexteCrLf(); }

int HoteFenetre::FinLigneCaret() const {
    // The document position behind the caret line's end, in the CR LF text.
    const QTextBlock b = f_.RTB1->textCursor().block();
    return f_.RTB1->VersCrLf(b.position() + b.length());
}

void HoteFenetre::RemplaceTexteEditeur(int debut, int longueur, const QString& texte) {
    Editeur* ed = f_.RTB1;
    const int d0 = ed->VersDocument(debut);
    const int d1 = ed->VersDocument(debut + longueur);
    ed->Remplace(d0, d1 - d0, texte);
}

int HoteFenetre::MarqueErreur(int debut, int longueur) {
    Editeur* ed = f_.RTB1;
    const int d0 = ed->VersDocument(debut);
    const int d1 = ed->VersDocument(debut + longueur);
    ed->MarqueRouge(d0, d1 - d0);
    return ed->LigneDe(d0) + 1;
}

int HoteFenetre::LigneDe(int position) const {
    const Editeur* ed = f_.RTB1;
    return ed->LigneDe(ed->VersDocument(position)) + 1;
}

void HoteFenetre::ColoreLigneA(int position) {
    Editeur* ed = f_.RTB1;
    ed->ColoreLigneNo(ed->LigneDe(ed->VersDocument(position)));
}

QString HoteFenetre::PressePapier() const { return QGuiApplication::clipboard()->text(); }

void HoteFenetre::EcritPressePapier(const QString& texte) { QGuiApplication::clipboard()->setText(texte); }

void HoteFenetre::PompeEvenements() {
    // The commands that let events run (`Fichier`, `If`, `Goto`...) may come
    // thousands of times a second in a loop; the window is served every 15 ms
    // at most, which keeps Esc immediate without slowing the run.
    if (montre_.isValid() && montre_.elapsed() < 15) return;
    montre_.restart();
    f_.pane->update();
    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
}

void HoteFenetre::DebutExecution() {
    f_.ReponsesDuRun.clear();
    DebutRun();
}

void HoteFenetre::FinExecution() { FinRun(); }

void HoteFenetre::DebutRun() { f_.DebutRun(); }

void HoteFenetre::FinRun() { f_.FinRun(); }

bool HoteFenetre::Lance(const QString& commande, bool attendre) {
    return LanceCommande(commande, attendre, [this] { PompeEvenements(); });
}
