// Provisional: Part 3.1 lands with issue 4.
#include "shapes/cercle.h"

#include "drawing/surface.h"
#include "language/etat.h"

void CmdCercle(Etat&) {}
void Cercle(Etat&, const QString&, const QString&) {}
void ArcPointille(Etat& e, double cx, double cy, double rayon, double debut, double fin,
                  int couleur, double aspect) {
    if (e.Surf) e.Surf->Circle(cx, cy, rayon, couleur, debut, fin, aspect);
}
