// Helpers of the window tests: boxes answered from a list, a window on in-memory services.
#pragma once

#include "outils.h"

#include "app/dialogues.h"
#include "app/editeur.h"
#include "app/fenetre.h"
#include "app/pane.h"
#include "language/chaines.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTimer>

#include <functional>

// One box as the window asked it.
struct BoiteVue {
    QString genre; // "message", "saisie", "ouvrir", "enregistrer", "liste", "couleur", "langues"
    QString titre, texte;
    Boutons boutons = Boutons::Ok;
    Icone icone = Icone::Aucune;
    bool nonParDefaut = false; // a question whose Yes loses work
};

// Boxes answered in order from one list (a Reponse as an int, a text, a list
// of files); with the list empty a box is cancelled, a message box answers OK or Yes.
class BoitesTest : public Boites {
public:
    std::vector<BoiteVue> vues;
    QVariantList reponses;
    std::optional<QColor> couleur;
    std::function<void(ValeursConfig&)> langues; // the language dialog; unset: closed
    QString annulerVu;                           // the Cancel text of the last input box

    QVariant Vue(const BoiteVue& v) {
        vues.push_back(v);
        return v.genre == "couleur" || v.genre == "langues" || reponses.isEmpty() ? QVariant() : reponses.takeFirst();
    }
    Reponse Message(QWidget*, const QString& titre, const QString& texte, Boutons b, Icone i) override {
        const QVariant r = Vue({"message", titre, texte, b, i});
        if (r.isValid()) return Reponse(r.toInt());
        return b == Boutons::OuiNon || b == Boutons::OuiNonAnnuler ? Reponse::Oui : Reponse::Ok;
    }
    Reponse QuestionRisquee(QWidget* p, const QString& titre, const QString& texte) override {
        const Reponse r = Message(p, titre, texte, Boutons::OuiNon, Icone::Question);
        vues.back().nonParDefaut = true;
        return r;
    }
    std::optional<QString> Saisie(QWidget*, const QString& titre, const QString& invite, const QString& defaut,
                                  const QString& annuler) override {
        annulerVu = annuler;
        const QVariant r = Vue({"saisie", titre, invite + u'|' + defaut});
        return r.isValid() ? std::optional(r.toString()) : std::nullopt;
    }
    QString FichierOuvrir(QWidget*, const QString& dossier, const QString& filtre) override {
        return Vue({"ouvrir", dossier, filtre}).toString();
    }
    QString FichierEnregistrer(QWidget*, const QString& nom, const QString& filtre, const QString&) override {
        return Vue({"enregistrer", nom, filtre}).toString();
    }
    QStringList FichiersListe(QWidget*, const QString& dossier, const QString& filtre, bool plusieurs) override {
        return Vue({"liste", dossier, filtre + (plusieurs ? "|plusieurs" : "")}).toStringList();
    }
    std::optional<QColor> Couleur(QWidget*) override {
        Vue({"couleur"});
        return couleur;
    }
    bool Langues(QWidget*, ValeursConfig& v) override {
        Vue({"langues"});
        if (langues) langues(v);
        return bool(langues);
    }
    int Nombre(const QString& genre) const {
        return int(std::count_if(vues.begin(), vues.end(), [&](const BoiteVue& b) { return b.genre == genre; }));
    }
    QStringList Messages() const {
        QStringList r;
        for (const BoiteVue& b : vues)
            if (b.genre == "message") r << b.texte;
        return r;
    }
};

// A window on in-memory configuration (French), temporary program and working folders.
struct Banc {
    // The working folder's name holds a comma and a blank, as users' folders may.
    QTemporaryDir programme, travail{QDir::tempPath() + "/mirel, essai-XXXXXX"};
    ConfigMemoire config;
    BoitesTest boites;
    QString imprimante = "Imprimante de test";
    std::unique_ptr<Form1> f;
    QString ancienDossier = QDir::currentPath();
    QString secours; // the folder of the recovery copy; empty: none kept

    Banc() {
        for (const QString& cle : {CleCfg::Langue, CleCfg::LangueMenu, CleCfg::LangueAide, CleCfg::LangueMasq})
            config.Pose(cle, "Français");
        config.Pose(CleCfg::FichierDat, QString());
    }
    ~Banc() {
        if (f) f->Demarre = false; // no unload questions when the test ends
        f.reset();
        QDir::setCurrent(ancienDossier);
    }
    Form1& Fenetre() {
        ServicesFenetre s;
        s.config = &config;
        s.boites = &boites;
        s.nomImprimante = [this] { return imprimante; };
        s.dossierProgramme = programme.path();
        s.dossierTravail = travail.path();
        s.dossierSecours = secours;
        f = std::make_unique<Form1>(s);
        return *f;
    }
    // A file in the working folder.
    QString Fichier(const QString& nom, const QByteArray& octets) {
        QFile fi(travail.filePath(nom));
        fi.open(QIODevice::WriteOnly);
        fi.write(octets);
        return fi.fileName();
    }
    // Starts with a program text written to a file.
    Form1& Demarre(const QString& texte, const QString& nom = "essai.dat") {
        const QString chemin = Fichier(nom, texte.toUtf8());
        Fenetre().Demarrer(chemin);
        return *f;
    }
};

// The colour of the character at a 0-based position of line `ligne`.
// Serves events until `condition` holds or `ms` have passed; whether it held.
// (Qt's QTRY macros only return from the test when they fail: GoogleTest
// would not see it.)
inline bool Attend(const std::function<bool()>& condition, int ms = 3000) {
    for (QElapsedTimer t; !condition();) {
        if (!t.isValid()) t.start();
        if (t.elapsed() > ms) return false;
        QTest::qWait(10);
    }
    return true;
}

inline QColor CouleurLigne(const Editeur& ed, int ligne, int colonne) {
    return ed.CouleurA(ed.document()->findBlockByNumber(ligne).position() + colonne);
}

// Puts the caret at the end of line `ligne` (0-based).
inline void CurseurEnFinDeLigne(Editeur& ed, int ligne) {
    QTextCursor c(ed.document()->findBlockByNumber(ligne));
    c.movePosition(QTextCursor::EndOfBlock);
    ed.setTextCursor(c);
}

inline QString Ligne(const Editeur& ed, int ligne) { return ed.document()->findBlockByNumber(ligne).text(); }
