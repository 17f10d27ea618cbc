// Variables and substitution.
#pragma once

#include <QString>

struct Etat;

// 1-based slot of the variable named at the start of texte at that level, or 0.
int ChercheVar(Etat& e, QStringView texte, int niveau);
// Reduces a left-hand side to a name: upper case, trim, cut at "=" then " ".
QString NomVar(const QString& texte);
// Creates or fills a variable at `NiveauCourant`; the slot goes to index.
void CreeVar(Etat& e, const QString& nom, const QString& valeur, int& index);
// CreeVar with the value stored as it stands (LVar, Input).
void CreeVarBrute(Etat& e, const QString& nom, const QString& valeur);
void EcritVarNum(Etat& e, int niveau, const QString& nom, double valeur);
void EcritVarTxt(Etat& e, int niveau, const QString& nom, const QString& valeur);
// The value of a variable at a level, if it exists.
bool LitVar(Etat& e, int niveau, const QString& nom, QString& valeur);
// Substitutes in place; 0, or non-zero when an undefined variable is left.
int RemplaceVar(Etat& e, QString& texte);
// The value of a predefined variable whose name starts texte (at the "%"),
// with the length of the name; false when none matches.
bool VarPredefinie(Etat& e, QStringView texte, QString& valeur, int& longueur);
void RazCtxFic(Etat& e, int niveau);
void RazVars(Etat& e, int niveau);
// An assignment line (keyword beginning with "%").
void Affectation(Etat& e);
// `StopArg`.
void CmdStopArg(Etat& e);
// `ListeVars(niveau)`: the variable listing of the error box and of ListeVar.
QString ListeVars(Etat& e, int niveau);
// The failure text of an undefined variable.
QString TexteNonInitialisee(const QString& nom);
// Fails the line on the undefined variable (or the text holding it) `nom`:
// its text goes to the error box.
[[noreturn]] void EchecNonInitialisee(Etat& e, const QString& nom);
