// Helpers of the window tests: boxes answered from lists, a window built on
// in-memory services and temporary folders.
#pragma once

#include "app/boites.h"
#include "app/dialogues.h"
#include "app/editeur.h"
#include "app/fenetre.h"
#include "app/pane.h"
#include "app/services.h"
#include "language/chaines.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTextBlock>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <memory>

// One box as the window asked it.
struct BoiteVue {
    QString genre; // "message", "saisie", "ouvrir", "enregistrer", "liste", "couleur", "langues"
    QString titre, texte;
    Boutons boutons = Boutons::Ok;
    Icone icone = Icone::Aucune;
};

class BoitesTest : public Boites {
public:
    std::vector<BoiteVue> vues;
    std::deque<Reponse> reponses;             // message boxes; default OK / Yes
    std::deque<std::optional<QString>> saisies; // input boxes; default: cancel
    std::deque<QString> ouvertures;           // Open dialog; default: cancel
    std::deque<QString> enregistrements;      // Save dialogs; default: cancel
    std::deque<QStringList> listes;           // Alt-L's dialog; default: cancel
    std::optional<QColor> couleur;
    std::function<void(ValeursConfig&)> langues; // Form3; default: closed

    Reponse Message(QWidget*, const QString& titre, const QString& texte, Boutons b, Icone i) override {
        vues.push_back({QStringLiteral("message"), titre, texte, b, i});
        if (!reponses.empty()) {
            const Reponse r = reponses.front();
            reponses.pop_front();
            return r;
        }
        return b == Boutons::OuiNon || b == Boutons::OuiNonAnnuler ? Reponse::Oui : Reponse::Ok;
    }
    QString annulerVu; // the Cancel text of the last input box
    std::optional<QString> Saisie(QWidget*, const QString& titre, const QString& invite,
                                  const QString& defaut, const QString& annuler) override {
        vues.push_back({QStringLiteral("saisie"), titre, invite + u'|' + defaut});
        annulerVu = annuler;
        if (saisies.empty()) return std::nullopt;
        auto r = saisies.front();
        saisies.pop_front();
        return r;
    }
    QString FichierOuvrir(QWidget*, const QString& dossier, const QString& filtre) override {
        vues.push_back({QStringLiteral("ouvrir"), dossier, filtre});
        if (ouvertures.empty()) return QString();
        const QString r = ouvertures.front();
        ouvertures.pop_front();
        return r;
    }
    QString FichierEnregistrer(QWidget*, const QString& nom, const QString& filtre,
                               const QString&) override {
        vues.push_back({QStringLiteral("enregistrer"), nom, filtre});
        if (enregistrements.empty()) return QString();
        const QString r = enregistrements.front();
        enregistrements.pop_front();
        return r;
    }
    QStringList FichiersListe(QWidget*, const QString& dossier, const QString& filtre,
                              bool plusieurs) override {
        vues.push_back({QStringLiteral("liste"), dossier,
                        filtre + (plusieurs ? QStringLiteral("|plusieurs") : QString())});
        if (listes.empty()) return {};
        const QStringList r = listes.front();
        listes.pop_front();
        return r;
    }
    std::optional<QColor> Couleur(QWidget*) override {
        vues.push_back({QStringLiteral("couleur"), {}, {}});
        return couleur;
    }
    bool Langues(QWidget*, ValeursConfig& v) override {
        vues.push_back({QStringLiteral("langues"), {}, {}});
        if (!langues) return false;
        langues(v);
        return true;
    }

    int Nombre(const QString& genre) const {
        int n = 0;
        for (const BoiteVue& b : vues) n += b.genre == genre;
        return n;
    }
    QStringList Messages() const {
        QStringList r;
        for (const BoiteVue& b : vues)
            if (b.genre == QLatin1String("message")) r << b.texte;
        return r;
    }
};

// A window on in-memory configuration (French unless told), temporary
// program and working folders, boxes answered by the test.
struct Banc {
    QTemporaryDir programme, travail;
    ConfigMemoire config;
    BoitesTest boites;
    QString imprimante = QStringLiteral("Imprimante de test");
    std::unique_ptr<Form1> f;
    QString ancienDossier = QDir::currentPath();

    Banc() {
        config.Valeurs.Langue = config.Valeurs.LangueMenu = config.Valeurs.LangueAide =
            config.Valeurs.LangueMasq = QStringLiteral("Français");
        config.Valeurs.FichierDat = QString();
    }
    ~Banc() {
        if (f) {
            f->Demarre = false; // no unload questions when the test ends
            f->close();
        }
        f.reset();
        QDir::setCurrent(ancienDossier);
    }
    ServicesFenetre Services() {
        ServicesFenetre s;
        s.config = &config;
        s.boites = &boites;
        s.nomImprimante = [this] { return imprimante; };
        s.dossierProgramme = programme.path();
        s.dossierTravail = travail.path();
        return s;
    }
    Form1& Fenetre() {
        f = std::make_unique<Form1>(Services());
        return *f;
    }
    // A file in the working folder.
    QString Fichier(const QString& nom, const QString& texte) {
        const QString chemin = travail.path() + u'/' + nom;
        QFile fi(chemin);
        fi.open(QIODevice::WriteOnly);
        fi.write(texte.toUtf8());
        return chemin;
    }
    // Starts with a program text written to a file.
    Form1& Demarre(const QString& texte, const QString& nom = QStringLiteral("essai.dat")) {
        const QString chemin = Fichier(nom, texte);
        Form1& w = Fenetre();
        w.Demarrer(chemin);
        return w;
    }
};

inline QString CrLf(const QString& lignes) {
    QString t = lignes;
    t.replace(QStringLiteral("\n"), QStringLiteral("\r\n"));
    return t;
}

// The colour of the character at a 0-based position of line `ligne`.
inline QColor CouleurLigne(const Editeur& ed, int ligne, int colonne) {
    return ed.CouleurA(ed.document()->findBlockByNumber(ligne).position() + colonne);
}

// Puts the caret at the end of line `ligne` (0-based).
inline void CurseurEnFinDeLigne(Editeur& ed, int ligne) {
    QTextCursor c(ed.document()->findBlockByNumber(ligne));
    c.movePosition(QTextCursor::EndOfBlock);
    ed.setTextCursor(c);
}

inline QString Ligne(const Editeur& ed, int ligne) {
    return ed.document()->findBlockByNumber(ligne).text();
}
