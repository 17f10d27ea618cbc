// Part 1.4: the expression evaluator, a text rewriter.
#pragma once

#include <QString>

#include <optional>

struct Etat;

// `EvalExpr(resultat, texte)`: rewrites `texte` in place until one number is
// left and returns its value; none for a text of blanks. A failure raises
// `ErreurProvoquee`.
std::optional<double> EvalExpr(Etat& e, QString& texte);

// `EvalTexte`: text functions, then logic, then `EvalExpr`. The result is the
// number's text, or "1" / "0" for relations and logic.
QString EvalTexte(Etat& e, QString texte);

// `Vrai`: the truth of one relation.
bool Vrai(Etat& e, const QString& texte);

// `Prefixe`: scales a value by the unit prefix table; `lettre` receives the letter.
float Prefixe(float valeur, QString& lettre);
