// The window's modal questions: message boxes, input boxes, file and colour
// dialogs, the language dialog. One interface, so that the tests answer them
// without a human (BoitesQt shows the real widgets).
#pragma once

#include "language/hote.h"

#include <QColor>
#include <QString>
#include <QStringList>

#include <optional>

class QWidget;
struct ChoixExport;
struct ValeursConfig;

enum class Icone { Aucune, Information, Exclamation, Critique, Question };

class Boites {
public:
    virtual ~Boites() = default;
    virtual Reponse Message(QWidget* parent, const QString& titre, const QString& texte,
                            Boutons boutons, Icone icone = Icone::Aucune) = 0;
    // A Yes or No question whose Yes throws the user's work away: Enter answers No.
    virtual Reponse QuestionRisquee(QWidget* parent, const QString& titre, const QString& texte) {
        return Message(parent, titre, texte, Boutons::OuiNon, Icone::Question);
    }
    // An input box; none when cancelled. `annuler` is the Cancel button's
    // text (string 172 for the `Input` command), the platform's when empty.
    virtual std::optional<QString> Saisie(QWidget* parent, const QString& titre,
                                          const QString& invite, const QString& defaut,
                                          const QString& annuler) = 0;
    // The Open dialog; empty when cancelled.
    virtual QString FichierOuvrir(QWidget* parent, const QString& dossier, const QString& filtre) = 0;
    // The Save as dialog with overwrite prompt; empty when cancelled.
    virtual QString FichierEnregistrer(QWidget* parent, const QString& nomInitial,
                                       const QString& filtre, const QString& suffixe) = 0;
    // Alt-L's dialog: one existing file, or several when
    // `plusieurs`; empty when cancelled.
    virtual QStringList FichiersListe(QWidget* parent, const QString& dossier, const QString& filtre,
                                      bool plusieurs) = 0;
    // The colour dialog; none when cancelled.
    virtual std::optional<QColor> Couleur(QWidget* parent) = 0;
    // The export dialog on `choix` (page, orientation, dpi, text as outlines)
    // for `format`; false when cancelled. Boxes that no person answers (the
    // tests, `--screenshot`) export with the choices as they stand.
    virtual bool Export(QWidget*, int /*langue*/, const QString& /*format*/, ChoixExport&) { return true; }
    // `Form3`, the language dialog: edits the four language names; false on close.
    virtual bool Langues(QWidget* parent, ValeursConfig& v) = 0;
};

class BoitesQt : public Boites {
public:
    Reponse Message(QWidget* parent, const QString& titre, const QString& texte, Boutons boutons,
                    Icone icone) override;
    Reponse QuestionRisquee(QWidget* parent, const QString& titre, const QString& texte) override;
    std::optional<QString> Saisie(QWidget* parent, const QString& titre, const QString& invite,
                                  const QString& defaut, const QString& annuler) override;
    QString FichierOuvrir(QWidget* parent, const QString& dossier, const QString& filtre) override;
    QString FichierEnregistrer(QWidget* parent, const QString& nomInitial, const QString& filtre,
                               const QString& suffixe) override;
    QStringList FichiersListe(QWidget* parent, const QString& dossier, const QString& filtre,
                              bool plusieurs) override;
    std::optional<QColor> Couleur(QWidget* parent) override;
    bool Export(QWidget* parent, int langue, const QString& format, ChoixExport& choix) override;
    bool Langues(QWidget* parent, ValeursConfig& v) override;
};

// A number typed in a box: blanks around it, a decimal point or comma. None
// when the text is no number.
std::optional<double> NombreTape(const QString& texte);

// The boxes of a window that nobody watches (`--screenshot`): answered as
// `mirel dump` answers them. Message boxes get OK (Yes), input boxes their
// default, file and colour dialogs are cancelled, the language dialog is
// taken as it is preset. Every box is kept, titre and text, for the log.
class BoitesSansPersonne : public Boites {
public:
    Reponse Message(QWidget* parent, const QString& titre, const QString& texte, Boutons boutons,
                    Icone icone) override;
    std::optional<QString> Saisie(QWidget* parent, const QString& titre, const QString& invite,
                                  const QString& defaut, const QString& annuler) override;
    QString FichierOuvrir(QWidget*, const QString&, const QString&) override { return {}; }
    QString FichierEnregistrer(QWidget*, const QString&, const QString&, const QString&) override {
        return {};
    }
    QStringList FichiersListe(QWidget*, const QString&, const QString&, bool) override { return {}; }
    std::optional<QColor> Couleur(QWidget*) override { return std::nullopt; }
    bool Langues(QWidget*, ValeursConfig&) override { return true; }

    QStringList Vues;
};
