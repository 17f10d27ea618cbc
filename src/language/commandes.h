// The command table, the points where a level's entry and end reach the
// drawing subsystem, and the include routines that commands call. The table
// is defined with the commands (src/app/core/commandes.cpp), the level hooks
// with the coordinate frame (src/drawing/repere.cpp), the include routines
// with file inclusion (src/app/core/inclusion.cpp); the language core only
// declares them, so that no command depends on the application.
#pragma once

#include <QString>


struct Etat;

using RoutineCommande = void (*)(Etat&);

struct Commande {
    const char* mot;          // upper case, as compared
    RoutineCommande routine;
};

// The table's entry of an upper-case keyword; null when it is none of them.
const Commande* TrouveCommande(const QString& mot);

// The drawing state at the start of a run: what every run resets.
void RazEtatDessin(Etat& e);
// Entry of a level, the part that concerns the drawing: colour, default
// angle, Trait factors, the frame set-up at level 1 or the origin below it,
// font and thickness.
void EntreeNiveauDessin(Etat& e, int niveau);
// End of a level, the part that concerns the drawing: the grey margins of a
// panned pane and the values kept for the mouse read-out.
void FinNiveauDessin(Etat& e, int niveau);
// `AppelFichier` (src/app/core/inclusion.cpp): the include routine.
// `indexExterne` is 0 for Fichier, the rank in the external list for a
// command called by name. A negative result ends the calling level.
int AppelFichier(Etat& e, int niveau, int indexExterne);
// The `Symbole` form of the include routine, for `PlotS` (inclusion.cpp):
// runs `texte` one level deeper as the file "Symbole", with `parametres` in
// the place of the parameter text of a call ("Symbole, x, y [, parameters...]";
// `Plot` passes "Symbole, 0, 0" when its symbol text already holds the
// point). Returns AppelFichier's result.
int AppelSymbole(Etat& e, int niveau, const QString& texte, const QString& parametres);
// The file that a call names (inclusion.cpp): the trimmed name as typed,
// looked up by its form: a bare name, a path without extension, or a name
// with an extension (branch 3). The first match, or the name as typed.
// `boiteNonTrouve` is set when the name reaches the "non trouvé[not founf]"
// box (branch 3, the last dot at the first character).
QString ChercheFichier(const Etat& e, const QString& nom, bool* boiteNonTrouve = nullptr,
                       QString* chemin = nullptr);
// Where a relative name "as given" is looked for (inclusion.cpp): the working
// folder (`DossierTravail`, else the process's current folder), ending in "/".
QString DossierCourant(const Etat& e);
// The file a program names for reading (inclusion.cpp), found as `Fichier`
// finds its files, so that programs written with either folder separator or
// another spelling of a name keep finding it: "\" separates folders as "/"
// does, a relative name stands in `DossierCourant`, and when no file has that
// exact name, one whose name differs only in case is taken. The name as
// given when there is none.
QString CheminLecture(const Etat& e, const QString& nom);

// Clears the graphic pane at the start of a run.
void EffacePane(Etat& e);
