// Line marks: Trait, Plus (+), X, Percer, PercerX, Voyant, Fleche,
// FlecheP.
#pragma once

struct Etat;

void CmdTrait(Etat& e);
void CmdPlus(Etat& e);   // `Plus` and `+`
void CmdX(Etat& e);
void CmdPercer(Etat& e);
void CmdPercerX(Etat& e);
void CmdVoyant(Etat& e);
void CmdFleche(Etat& e);
void CmdFlecheP(Etat& e);
