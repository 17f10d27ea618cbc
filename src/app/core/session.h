// A run without a window: the settings, the headless host, the pane or the
// printer as Surface, and the run state. Used by `render`, `dump`, the tests
// and the benchmarks.
#pragma once

#include "app/core/hote_memoire.h"
#include "drawing/surface.h"
#include "language/etat.h"

#include <QDeadlineTimer>
#include <QSizeF>
#include <QString>

#include <memory>

// The resolution of the virtual printer and of the headless screen.
constexpr double DpiImprimante = 600.0;
constexpr double DpiEcran = 96.0;

// The pages known by name: "A4", "A3", "A5", "Letter", "Legal".
QStringList NomsPages();
// A page size in millimetres, portrait, from one of those names (any case) or
// "WxH"; invalid when unknown.
QSizeF TaillePage(const QString& nom);
// The sides a page given as WxH may have, in millimetres.
constexpr double PageMin = 1, PageMax = 10000;

// A page given wider than high is a landscape page: the paper becomes
// upright and the orientation landscape.
void PapierEtOrientation(QSizeF& page, bool& paysage);

// Why a headless run ended before its end: its time limit of `delai` seconds
// passed, or it drew more than `MaxOperationsRun` operations. Empty when it
// ran to its end.
QString RaisonArret(bool delaiPasse, bool limiteAtteinte, double delai);
// The end of a time limit of `delai` seconds from now; none for 0.
QDeadlineTimer EcheanceDe(double delai);

struct Session {
    Reglages regl;
    HoteMemoire hote;
    Etat etat;
    Journal journal;
    std::unique_ptr<Surface> pane;
    std::unique_ptr<Surface> imprimante;
    // The time limit of a run in seconds; 0: none.
    double delai = 0;

    // A pane of the given size in millimetres (screen kind) and a virtual
    // printer of the given page, both recording into `journal`.
    explicit Session(const QString& texte, QSizeF paneMm = QSizeF(297, 210),
                     QSizeF pageMm = QSizeF(210, 297));
    // Runs as the window's F4 does (`Visualiser`), with a zoom when not 1.
    void Execute(float zoom = 1.0f);
    // Runs with the printer as the Surface, as printing to paper does.
    void ExecuteImprimante();
    // A printer run that only looks for the sheet's final orientation: the
    // program's FormatI turns the sheet, which must be turned before a
    // printing device is made. The sheet starts in `orientation` (1 portrait,
    // 2 landscape); true when the program leaves it landscape. The trial
    // writes no file and starts no program: such a line does nothing.
    bool FiniPaysage(int orientation);
    // Why the last run was stopped before its end; empty when it was not.
    QString Arret() const;

private:
    void Prepare();
};
