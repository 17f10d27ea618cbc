// Text and list functions.
#pragma once

#include <QString>
#include <QVector>

struct Etat;

// `REPL`, `LEFn`, `RIGn`, `UCAS`, in place.
void FonctionsTexte(Etat& e, QString& texte);
// The counting forms of EvalTexte: `INS`, `NBP`, `NB§`, `NBCR`, `LEN`.
void FonctionsComptage(Etat& e, QString& texte);
// The `NBP(` forms alone, from the last to the first (the innermost first).
void RemplaceNbp(Etat& e, QString& texte);
// `TXT`, `ARRd`.
void FormatTexte(Etat& e, QString& texte);
// `#expression#` pieces.
void EvalDiese(Etat& e, QString& texte);
// The random draw without repetition: n different whole numbers in
// a..b; an empty list after the message when n is too large.
QVector<int> TirageSansRepetition(Etat& e, int n, int a, int b, float graine);

// Upper case character by character, so that positions in the upper-case
// working copy (expressions, text functions) stay those of the text itself;
// accents are upper-cased ("é" -> "É").
QString Majuscules(const QString& texte);

// Replaces the characters debut..fin (1-based, inclusive) by par, in place;
// a text beyond 16-bit positions is an overflow.
void Remplace(QString& t, int debut, int fin, const QString& par);

// The 1-based position of the ")" that matches the "(" at pos, inner
// parentheses being counted; 0 when it stays open.
int ParentheseFermante(const QString& texte, int pos);
