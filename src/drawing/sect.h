// Sectors. `Sect` outlines and `SectP` fills a band along the
// current scale between two positions.
#pragma once

#include <QPointF>
#include <QVector>

struct Etat;

void CmdSect(Etat& e);
void CmdSectP(Etat& e);

// The outline of a band in unturned `Surface` units (the frame's offsets added,
// the scale's rotation not applied), closed: the d1 edge from p1 to p2, the d2
// edge from p2 back to p1, and the first point again. `n` receives the steps
// along an arc edge (4 on the straight forms).
QVector<QPointF> ContourSect(Etat& e, double p1, bool brut1, double p2, bool brut2, double d1,
                             double d2, int& n);
