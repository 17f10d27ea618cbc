// The dispatch table of Part 1.1 and the points where a level's entry and end
// reach the drawing subsystem. The table is defined with the commands
// (src/app/core/commandes.cpp), the level hooks by Part 2.1
// (src/drawing/repere.cpp); the language core only declares them.
#pragma once

#include <span>

struct Etat;

using RoutineCommande = void (*)(Etat&);

struct Commande {
    const char* mot;          // upper case, as compared
    RoutineCommande routine;  // null: the command's Part is not built yet
};

// The keywords in the order of the groups of Part 1.1.
std::span<const Commande> TableCommandes();

// The drawing state at the start of a run (what a run resets, Part 1.1).
void RazEtatDessin(Etat& e);
// Entry of a level, steps 7, 10 and 11 of Part 1.1 that concern the drawing:
// colour, default angle, Trait factors, the frame set-up at level 1 or the
// origin below it, font and thickness.
void EntreeNiveauDessin(Etat& e, int niveau);
// End of a level, steps 1 and 2: the grey margins of a panned pane and the
// values kept for the mouse read-out.
void FinNiveauDessin(Etat& e, int niveau);
// `AppelFichier` of Part 4.3 (src/app/core/inclusion.cpp): the include routine.
// `indexExterne` is 0 for Fichier, the rank in the external list for a
// command called by name. A negative result ends the calling level.
int AppelFichier(Etat& e, int niveau, int indexExterne);

// Visualiser step 5: clear the graphic pane.
void EffacePane(Etat& e);
