// The catenary: `Chain` solves and draws a hanging chain or wire between the
// current point and a second point, with or without a load, and hands the
// results back in variables.
#pragma once

struct Etat;

void CmdChain(Etat& e);
