// Part 1.5: text and list functions.
#pragma once

#include <QString>
#include <QVector>

struct Etat;

// `REPL`, `LEFn`, `RIGn`, `UCAS`, in place.
void FonctionsTexte(Etat& e, QString& texte);
// The counting forms of EvalTexte: `INS`, `NBP`, `NB§`, `NBCR`, `LEN`.
void FonctionsComptage(Etat& e, QString& texte);
// `TXT`, `ARRd`.
void FormatTexte(Etat& e, QString& texte);
// `#expression#` pieces.
void EvalDiese(Etat& e, QString& texte);
// The random draw without repetition (Part 1.5): n different whole numbers in
// a..b; an empty list after the message when n is too large.
QVector<int> TirageSansRepetition(Etat& e, int n, int a, int b, float graine);
