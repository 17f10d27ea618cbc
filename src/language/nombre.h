// The number-to-text form of a 32-bit float, the one the language prints
// everywhere (design.md §4): "." decimal point, no leading 0 (".5"), an
// exponent when needed ("1E+12"), at most 7 significant digits, the leading
// blank of positives trimmed. Every command that prints a number of the
// language calls it, so that texts and re-read values agree.
//
// The rules:
// - the value is rounded to 7 significant digits, a half away from zero;
// - with X the decimal exponent of the rounded value (d.dddddd × 10^X), the
//   exponent form is used when X >= 7 or X < -4: 12345678 -> "1.234568E+07",
//   0.00001 -> "1E-05"; otherwise the plain form: 1234567 -> "1234567",
//   0.0001 -> ".0001";
// - trailing zeros of the digits are dropped, and the "." with them;
// - the exponent has a sign and at least two digits;
// - zero, and minus zero, are "0".
#pragma once

#include <QString>

#include <optional>

QString StrF(float valeur);

// The same for a 64-bit float: 15 significant digits, the exponent form when
// X >= 15 or X < -4. Used for the number that `EvalTexte` gives, which is
// read back from the text as a 64-bit value.
QString StrD(double valeur);

// `ValNombre`: the number at the start of a text, read up to the first
// character that isn't part of a number; blanks are passed over, "." is the
// decimal point, "E" or "D" starts an exponent. No number gives 0.
// A value beyond the 64-bit range raises `ErreurProvoquee` (an overflow).
double ValNombre(const QString& texte);

// A plain decimal number, [sign] digits [. digits] between blanks (with
// `virgule`, a comma read as the point), read without making a string: the
// form of nearly every parameter and data value. Any other text, or more
// than 15 digits, gives none, and `ValNombre` or the expression evaluator
// takes it; both give the same value.
std::optional<double> DecimalSimple(QStringView t, bool virgule = false);
