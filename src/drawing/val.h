// Scale values. `Val`, `ValR`, `ValD` write the numbers of a scale at the
// graduation positions (the series loop of `Grad`); `Val1`, `Val1R`, `Val1D`
// write chosen texts at chosen positions. Positions come from `PosEchelle`,
// the text goes through `PlaceTexte`.
#pragma once

#include "drawing/echelle.h"

#include <QString>

struct Etat;

// `Arrondi`(x): the nearest whole number, a half going down (an even whole
// part by the half-even rule, an odd one by rounding x + 1 and taking 1 off).
double Arrondi(double x);

// The plain decimal form of the system: the `Str` form of a number with a
// leading 0 and the locale's decimal symbol. `StrD` digits
// for a 64-bit value, `StrF` digits for a 32-bit one.
QString DecimalSysteme(double v);
QString DecimalSystemeF(float v);

// The text of a value on a log scale, rounded to three significant digits,
// then written as Fin (before `§`) asks: with a unit prefix (P), an exponent
// (E), an exponent that is a multiple of 3 (S), or plain. Without the unit.
QString TexteValeurLog(double v, const QString& fin);

// A number format reduced to what `Val` writes:
// "0", "#", "." placeholders, and a scientific part "E-" or "E+" with its
// exponent digits. The decimal symbol is the locale's.
QString FormatNombre(double v, const QString& format);
// The same with a point as the decimal symbol whatever the locale, for the
// texts that are programs or data files.
QString FormatNombrePoint(double v, const QString& format);

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
