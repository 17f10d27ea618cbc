// Part 2.6: sectors. `Sect` outlines and `SectP` fills a band along the
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

// A `Surface` point in device pixels, as the fills through `hDC` take them
// (Part 2.1: px = FacteurX x / m, py = FacteurY (H - y) / m, rounded to whole
// pixels; m is `MmParPointI` on the printer, `MmParPixelE` on screen). Shared
// with the shapes of subsystem 3 (`PointsPixel`). With `arrondi` false, the
// exact position before the rounding.
QPointF PixelDevice(const Etat& e, double x, double y, bool arrondi = true);
