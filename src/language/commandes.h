// The command table and the points where a level's entry and end reach the
// drawing subsystem. The table is defined with the commands
// (src/app/core/commandes.cpp), the level hooks with the coordinate frame
// (src/drawing/repere.cpp); the language core only declares them.
#pragma once

#include <span>

struct Etat;

using RoutineCommande = void (*)(Etat&);

struct Commande {
    const char* mot;          // upper case, as compared
    RoutineCommande routine;  // null: the command is not built yet
};

// The keywords, grouped by kind of command.
std::span<const Commande> TableCommandes();

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

// Clears the graphic pane at the start of a run.
void EffacePane(Etat& e);
