// Dimensions: `Cote`, a dimension between two points with its attachment
// lines, arrows and text.
#pragma once

struct Etat;

void CmdCote(Etat& e);
