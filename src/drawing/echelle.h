// Scale definition. The commands that define and qualify the current scale
// (`Arc`, `Droite`, `DroiteV`, `Decal`, `Exposant`, `Inversion`) and the
// mapping `PosEchelle` from a position to a point, shared by the graduations,
// the values and the sectors.
#pragma once

#include "language/constantes.h"

#include <QString>

struct Etat;

// The constants of the scale code: degrees to radians, pi, and the
// deliberately shorter full turn, the program's literals.
constexpr double DegRadEchelle = Litteraux::DegRad;
constexpr double PiEchelle = Litteraux::Pi;
constexpr double DeuxPiEchelle = Litteraux::TourComplet;

// The form of the current scale, in the order of the tests of `PosEchelle`.
enum class FormeEchelle { Arc, Droite, DroiteV };

// `a1` differs from `a2`, else `x1` from `x2`, else `y1` from `y2`; when none
// holds the command fails (`ErreurProvoquee`).
FormeEchelle FormeEchelleCourante(Etat& e);
// The form's two fields: a1, a2 (degrees), x1, x2 or y1, y2 (mm).
void BornesEchelle(const Etat& e, FormeEchelle f, double& debut, double& fin);

// Distance from the drawn centre to the needle point at radius r and deviation
// a (degrees), by the law of cosines.
double DistDecal(double d, double r, double a);
// pi/2 for v >= 1, -pi/2 for v <= -1, atan(v / sqrt(1 - v^2)) otherwise.
double ArcSinus(double v);
// 100 v rounded, modulo 36000, times 0.017453293 / 100: an angle held to 0.01 degree.
double RadMod(double v);

// `PosEchelle`, first half: t of a number read from a position, a percentage
// ((p / 100)^Z) or, on a log scale, an internal value.
double PositionT(Etat& e, double nombre);
// The value on the scale of a position: the deviation in degrees on an arc, the
// millimetres along a straight scale. `brute` is the "°" form: the number is
// used as it stands.
double ValeurEchelle(Etat& e, FormeEchelle f, double nombre, bool brute);
// The same from t.
double ValeurDeT(const Etat& e, FormeEchelle f, double t);

// A point of the scale in unturned `Surface` units (the frame's offsets added,
// the scale's rotation `Rot` not applied: `TraitRot` applies it), with the
// direction b (radians) of the radius of the drawn centre through it.
struct PointEchelle {
    double x = 0, y = 0;
    double b = 0;
};

// Arc with D < 10000: the point at deviation A (radians) on the circle of
// radius rp about the drawn centre, b = (pi - A) - ArcSinus(D cos A / rp).
PointEchelle PointCercleDecal(const Etat& e, double A, double rp);
// Arc: the point at needle radius r, deviation A (radians): through
// DistDecal(D, r, a1) for D < 10000, projected on the line y = r sin(a1) for
// D >= 10000.
PointEchelle PointArc(const Etat& e, double A, double r);
// Straight scales: the point at value v (mm along the scale), distance 0.
PointEchelle PointDroit(const Etat& e, FormeEchelle f, double v);

// Commands.
void CmdArc(Etat& e);
void CmdDroite(Etat& e);
void CmdDroiteV(Etat& e);
void CmdDecal(Etat& e);
void CmdExposant(Etat& e);
void CmdInversion(Etat& e);

// Decal and the scale side are reset at the start of a run at level 1, the
// last step of the frame set-up.
void RazEchelleRun(Etat& e);
