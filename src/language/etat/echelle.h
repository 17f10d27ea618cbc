// Run state of the scale definition: the scale record Echelle.
//
// The form of the scale is told by its fields, with no separate kind: `a1`
// differs from `a2` (arc), else `x1` from `x2` (Droite), else `y1` from `y2`
// (DroiteV); all equal is no valid scale. The law (`Z`, `EstLog`) lives in the
// level's `CtxFic` as `CoefExposant` and `EchelleLog`.
#pragma once

#include <optional>

struct Echelle {
    double a1 = 0, a2 = 0;       // deviations of an arc's ends, degrees (0 left, 90 up)
    double x1 = 0, x2 = 0;       // ends of a Droite, mm
    double y1 = 0, y2 = 0;       // ends of a DroiteV, mm
    double R = 0;                // Arc: radius; Droite: y of the line; DroiteV: its x
    double Rg = 0;               // arcs: the needle radius ticks are measured from
    double D = 0;                // decentring: minus the Decal value; 0 when none
    double RpDebut = 0, RpFin = 0; // drawn centre to the ends of the arc
    double AngDebut = 0, AngFin = 0; // directions of the drawn arc's ends, radians
    double Rot = 0;              // the scale's rotation, degrees counter-clockwise
    double RotRad = 0;           // Rot times 0.017453293
    int CoteGrad = 1;            // 16-bit: side of the graduations, 1 or -1
    std::optional<int> CouleurDecal; // colour of the cross at the drawn centre, none for N
    bool TraceEchelle = true;    // false: colour N, the scale is defined but not drawn

    // Exposant = L (the exponent and the log flag are in CtxFic).
    int NbDecades = 0;           // 16-bit
    float LogDebut = 1, LogFin = 1;
    double DecadesTotal = 0;
};
