// Printing on paper: the run again with a QPrinter as the printer Surface, at
// true size, each NewPage a new sheet, the job closed at the end of the run.
// The window's print entries and `mirel print` go through here.
#pragma once

#include <QFont>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class QPrinter;
class QWidget;
struct Etat;
struct Reglages;

// The job's title: the file name without folder and extension; "Mirel" for
// a text never saved.
QString TitreTravail(const QString& chemin);

// Sets the printer for a print at true size: the job's title, the whole
// sheet without margins, and the orientation that the text's FormatI asks
// for, found by a first run that draws nothing. Gives the printer zoom the
// text starts with (its ZoomIniI, else 1), which a print without a zoom of its
// own takes.
struct EssaiImpression {
    QStringList reponses, saisies;  // answers of boxes and prompts, in order
    double delai = 2;               // the first run stops after so many seconds
    std::function<bool()> veille;   // when given, called as it goes; true stops it
};
float PrepareImprimante(QPrinter& p, const QString& texte, const QString& chemin,
                        const Reglages& reglages, const EssaiImpression& essai = {});

// One print run of `e` (host, settings and main file already set) on `p`:
// the driver runs with the printer as Surface, then the open page is ended
// and the job is closed. The pane of `e` is left as it is. False when the
// printer refused the job or failed while printing; `signalee` tells whether
// the run's own box already said so (a drawing line that met the failure);
// `limiteAtteinte` whether the run was stopped for drawing more operations
// than any drawing needs.
bool ExecuteSurImprimante(Etat& e, QPrinter& p, bool* signalee = nullptr, bool* limiteAtteinte = nullptr);

struct ResultatImpression {
    int statut = 0;       // 0 the job was accepted, 1 an error box was shown, 2 the job was refused,
                          // 3 the run was stopped before its end
    QString erreur;       // why the job was refused
    QString arret;        // why the run was stopped
    QStringList messages; // the boxes of the run, title and text
};

struct OptionsImpression {
    double delai = 0;              // a run that takes longer, in seconds, is stopped (0: none)
    float zoom = 0;                // the print's zoom (0: the text's own, as Ctrl-P prints)
    QStringList reponses, saisies; // answers of boxes and prompts, in order
};

// A whole print without a window, as `mirel print` does it: settings and a
// headless host, the printer prepared, one print run.
ResultatImpression ImprimeProgramme(const QString& texte, const QString& chemin, QPrinter& p,
                                    const Reglages& reglages, const OptionsImpression& options = {});

// The listing of the code as `mirel print --listing` prints it: status 0 or 2.
ResultatImpression ImprimeListingProgramme(const QString& texte, const QString& chemin, QPrinter& p);

// The answer of the print zoom box: none when it is not a number ("," reads
// as "."); a zoom of 0 or less prints at 1.
std::optional<float> ZoomSaisi(const QString& reponse);

// The print entries' words when no printer is installed, in the menus' language.
QString TexteSansImprimante(int langue);

// The window's print dialogs, behind one interface so that the tests answer
// them (DialoguesImpressionQt shows the real ones).
class DialoguesImpression {
public:
    virtual ~DialoguesImpression() = default;
    // The printer choice: the queue, its sheet and options; false on Cancel.
    virtual bool ChoixImprimante(QWidget* parent, QPrinter& p) = 0;
    // The listing's print dialog; with `selection` the choice of printing only
    // the selection is offered and preset (read back from p.printRange()).
    // False on Cancel.
    virtual bool ImpressionCode(QWidget* parent, QPrinter& p, bool selection) = 0;
    // The font list: outline fonts a printer draws, all fonts with `ecran`;
    // none on Cancel.
    virtual std::optional<QFont> Police(QWidget* parent, const QFont& depart, bool ecran) = 0;
};

class DialoguesImpressionQt : public DialoguesImpression {
public:
    bool ChoixImprimante(QWidget* parent, QPrinter& p) override;
    bool ImpressionCode(QWidget* parent, QPrinter& p, bool selection) override;
    std::optional<QFont> Police(QWidget* parent, const QFont& depart, bool ecran) override;
};
