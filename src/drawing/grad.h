// Graduations. `Grad` draws a regular series of ticks on the current scale,
// `Grad1` ticks at named positions. The series loop and the tick's geometry
// are shared with the values written along the scale.
#pragma once

#include "drawing/echelle.h"

#include <QString>
#include <QStringList>

#include <functional>

struct Etat;

// The two ends of a tick of length L (mm, CoteGrad already applied) at the
// scale value v (deviation in degrees on an arc, mm on a straight scale), in
// unturned Surface units. `angTick` (radians) acts on straight scales only.
void ExtremitesTick(Etat& e, FormeEchelle f, double v, double L, double angTick,
                    PointEchelle& base, PointEchelle& bout);

// The series of `Grad` (linear, power or log), in two
// halves so that a command reads its other parameters between them, as `Grad`
// and `Val` do. `LitSerie` reads the number (or the log interval with its
// `§` parts) from parameter `nNombre` of `ligne`, the first and last from
// `nPrem` and `nDer`, into `e.Grad`. `ParcourtSerie` runs the loop and calls
// `action` with the scale value of each tick (degrees of deviation on an arc,
// mm on a straight scale), `e.Grad.Ind` and `e.Grad.PosCourante` set.
void LitSerie(Etat& e, const QString& ligne, int nNombre, int nPrem, int nDer);
using ActionSerie = std::function<void(Etat&, double valeur)>;
void ParcourtSerie(Etat& e, FormeEchelle f, const ActionSerie& action);

// `Mantisse`(v): v as mantissa and decade. The bounds are strict: a value
// above 10 is divided, one below 1 multiplied until it is above 1, so 10
// stays a mantissa of 10 and a value below 1 that lands on exactly 1 goes on
// to 10.
void Mantisse(float v, float& mantisse, int& decade);

// The list of a position parameter `Pos§%Liste` (Grad1, Val1): the items of
// the list variable, empty when there is none (or it doesn't exist at the
// current level). `nom` receives the variable's name.
QStringList ListePosition(Etat& e, const QString& parametre1, QString& nom);
// A position parameter: its number, and whether its text ends in "°".
double LitPosition(Etat& e, const QString& texte, int n, bool& brute);

// The groups of four parameters of `Grad1` and `Val1`: each group once, or
// once for each item of the list variable of its position, that item being
// the list's current one meanwhile. `action` gets the group's text (its position
// is parameter 1), the round i (0-based), the position and its "°" flag.
using ActionGroupe = std::function<void(Etat&, const QString& groupe, int i, double pos, bool brute)>;
void ParcourtGroupes(Etat& e, QString texte, const ActionGroupe& action);

void CmdGrad(Etat& e);
void CmdGrad1(Etat& e);
