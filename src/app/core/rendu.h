// `mirel render`: a run with the virtual 600 dpi printer as Surface, written
// at true size to PDF, SVG or PNG. The window's export uses it.
#pragma once

#include "app/core/hote_memoire.h"

#include <QSizeF>
#include <QString>
#include <QStringList>

struct Reglages;
struct MessageEnregistre;

struct OptionsRendu {
    double dpi = 300;              // PNG only
    QSizeF page = QSizeF(210, 297);
    bool paysage = false;
    bool texteEnContours = false;  // SVG: text written as the outlines of its glyphs
    QStringList reponses, saisies; // answers of boxes and prompts, in order
    std::vector<ReponseGardee> gardees; // an earlier run's answers, first (HoteMemoire::Gardees)
    double delai = 0;              // time limit of the run in seconds, 0 none
};

struct ResultatRendu {
    int statut = 0;                // 0 ok, 1 an error box was shown, 2 output failed,
                                   // 3 the run was stopped before its end
    QString erreur;                // why the output failed
    QString arret;                 // why the run was stopped
    QString avertissement;         // the drawing runs off the page
    QStringList fichiers;          // the files written
    QStringList messages;          // the boxes of the run, title and text
};

ResultatRendu RendProgramme(const QString& texte, const QString& cheminProgramme,
                            const QString& sortie, const OptionsRendu& options,
                            const Reglages& reglages);
