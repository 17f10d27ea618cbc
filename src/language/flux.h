// Control flow: If blocks, Goto, Stop.
#pragma once

#include <QString>

struct Etat;

// The `If` filter, before dispatch: true when the line is to be executed.
bool FiltreSi(Etat& e);
void EntreeSi(Etat& e);
void CmdIf(Etat& e);
void CmdElseIf(Etat& e);
void CmdIfT(Etat& e);
void CmdElseIfT(Etat& e);
void CmdElse(Etat& e);
void CmdEndIf(Etat& e);
void CmdGoto(Etat& e);
void CmdStop(Etat& e);
// The truth of a condition of `IfT` by the text relation.
bool RelationTexte(Etat& e, const QString& condition);
// Pos of the start of the editor's line `numero` (from 1), as Goto takes it.
int PositionLigneEditeur(Etat& e, int numero);
