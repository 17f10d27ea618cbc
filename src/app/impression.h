// Printing on paper: the run again with a QPrinter as the printer Surface, at
// true size, each NewPage a new sheet, the job closed at the end of the run.
// The window's print entries and `mirel print` go through here.
#pragma once

#include <QString>
#include <QStringList>

class QPrinter;
struct Etat;
struct Reglages;

// The job's title: the file name without folder and extension; "Mirel" for
// a text never saved.
QString TitreTravail(const QString& chemin);

// Sets the printer for a print at true size: the job's title, the whole
// sheet without margins, and the orientation that the text's FormatI asks
// for, found by a first run that draws nothing.
void PrepareImprimante(QPrinter& p, const QString& texte, const QString& chemin,
                       const Reglages& reglages);

// One print run of `e` (host, settings and main file already set) on `p`:
// the driver runs with the printer as Surface, then the open page is ended
// and the job is closed. The pane of `e` is left as it is. False when the
// printer refused the job or failed while printing.
bool ExecuteSurImprimante(Etat& e, QPrinter& p);

struct ResultatImpression {
    int statut = 0;       // 0 the job was accepted, 1 an error box was shown, 2 the job was refused
    QString erreur;       // why the job was refused
    QStringList messages; // the boxes of the run, title and text
};

// A whole print without a window, as `mirel print` does it: settings and a
// headless host, the printer prepared, one print run. `delai` in seconds
// stops a run that takes longer (0: none).
ResultatImpression ImprimeProgramme(const QString& texte, const QString& chemin, QPrinter& p,
                                    const Reglages& reglages, double delai = 0);
