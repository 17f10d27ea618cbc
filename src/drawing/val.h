// Part 2.5: scale values. `Val`, `ValR`, `ValD` write the numbers of a scale
// at the graduation positions of Part 2.4 (the series loop of `Grad`);
// `Val1`, `Val1R`, `Val1D` write chosen texts at chosen positions. Positions
// come from `PosEchelle` (Part 2.3), the text goes through `PlaceTexte`
// (Part 3.3).
#pragma once

#include "drawing/echelle.h"

#include <QString>

struct Etat;

// `Arrondi`(x): the nearest whole number, a half going down (an even whole
// part by the half-even rule, an odd one by rounding x + 1 and taking 1 off).
double Arrondi(double x);

// The plain decimal form of the system (the original's CStr): the `Str` form
// of Part 1.4 with a leading 0 and the locale's decimal symbol. `StrD` digits
// for a 64-bit value, `StrF` digits for a 32-bit one.
QString DecimalSysteme(double v);
QString DecimalSystemeF(float v);

// The text of a value on a log scale (Part 2.5, steps 2 to 6) from the value
// before rounding and the Fin parameter (before `§`), without the unit.
QString TexteValeurLog(double v, const QString& fin);

// A number format of the original's `Format` reduced to what `Val` writes:
// "0", "#", "." placeholders, and a scientific part "E-" or "E+" with its
// exponent digits. The decimal symbol is the locale's.
QString FormatNombre(double v, const QString& format);

// The unit of a value: a leading blank kept as one blank, a lone blank empty.
QString NormaliseUnite(const QString& u);

// `ValText(w, h, angle, texte, just, rotation)`: one text about the anchor
// held in e.Txt.X, e.Txt.Y (and CurrentX, CurrentY), unturned, with the
// colour in e.Txt.CouleurTexte. The anchor and the text turn with rotation.
void ValText(Etat& e, double w, double h, double angle, const QString& texte,
             const QString& just, double rotation);

void CmdVal(Etat& e);
void CmdValR(Etat& e);
void CmdValD(Etat& e);
void CmdVal1(Etat& e);
void CmdVal1R(Etat& e);
void CmdVal1D(Etat& e);
