// The expression evaluator, a text rewriter.
#pragma once

#include <QString>

#include <optional>

struct Etat;

// `EvalExpr(resultat, texte)`: rewrites `texte` in place until one number is
// left and returns its value; none for a text of blanks. A failure raises
// `ErreurProvoquee`. The rewritten text keeps the padding blanks (three in
// front, one behind): callers trim it. On a failure `texte` is left unchanged.
std::optional<double> EvalExpr(Etat& e, QString& texte);

// `EvalTexte`: text functions, then logic, then `EvalExpr`. The result is the
// number's text (`StrD` of the 64-bit value read from the rewritten text), or
// "1" / "0" for relations and logic. A text of blanks gives "0": its copy
// without blanks is the empty text.
QString EvalTexte(Etat& e, QString texte);

// `Vrai`: the truth of one relation.
bool Vrai(Etat& e, const QString& texte);

// `Prefixe`: scales a value by the unit prefix table; `lettre` receives the letter.
double Prefixe(double valeur, QString& lettre);

// The generator behind `ALE` and the draws: a number from 0 up to 1 (1
// excluded); a negative x first seeds the generator with x, so that a program
// can repeat a sequence.
float Rnd(Etat& e, float x = 1.0f);
// Seeds the generator with x, whatever its sign.
void AleGraine(Etat& e, float x);
