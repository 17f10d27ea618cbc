// Part 3.1: circles.
#pragma once

#include <QString>

struct Etat;

// `Cercle`, `CercleP`, `CercleI`, `CerclePI`: one routine told apart by its keyword.
void CmdCercle(Etat& e);
// The routine of the four commands, also called by Plot (Part 2.8) with "CERCLEP".
void Cercle(Etat& e, const QString& mot, const QString& parametres);
// `ArcPointille`: the dashed arc of this Part, Percer (Part 2.7) and the scales
// (Part 2.3). Centre and radius in Surface units; angles in radians, negative
// for a radius line at that end; the dash lengths of the current line style.
void ArcPointille(Etat& e, double cx, double cy, double rayon, double debut, double fin,
                  int couleur, double aspect);
