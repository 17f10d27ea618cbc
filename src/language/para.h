// The parameter readers. Every command takes its parameters from
// `LigneCourante` through these routines. Indexes are 1-based; a negative
// index reads to the end of the text (and `ParaN` turns it positive in the
// caller's variable).
#pragma once

#include <QString>

#include <optional>

struct Etat;

QString ParaN(Etat& e, const QString& texte, int& n);
QString ParaN(Etat& e, const QString& texte, int&& n);
QString ParaBrut(Etat& e, const QString& texte, int n);
QString SousPara(Etat& e, const QString& texte, int n);
QString SousPara(Etat& e, const QString& texte, int n, const QString& sep);
// The number of parameter `n`, or none when it is missing or empty.
std::optional<double> ParaVal(Etat& e, const QString& texte, int n);
// `ParaVal` with the missing value read as 0.
double ParaVal0(Etat& e, const QString& texte, int n);
// A number written in a parameter or sub-field, evaluated; `defaut` when the
// text is empty or blank.
double ValeurOuDefaut(Etat& e, const QString& texte, double defaut);
// A number of a sub-field read as `ParaVal` reads a parameter: a variable
// left undefined fails with its name, a unit after the number is dropped;
// `defaut` when the text is empty or blank.
double ValeurChamp(Etat& e, const QString& texte, double defaut);
// The same for sub-field n of `texte` (second separator), substituted.
double SousValeur(Etat& e, const QString& texte, int n, double defaut);
// `ParaCoord`: the point of the parameters n and n + 1 about (refX, refY).
void ParaCoord(Etat& e, double& x, double& y, const QString& texte, int n, double refX,
               double refY);
int NbPara(Etat& e, const QString& texte);
int NbSousPara(Etat& e, const QString& texte);
// The number of sub-parameters of `texte` split on `sep`: none in a blank text or ")".
int NbSousPara(const QString& texte, const QString& sep);
// Drops the first n parameters of texte, in place.
void SautePara(Etat& e, QString& texte, int n);

// The raw piece n of a text split on sep (1-based; negative: to the end).
// No substitution. Shared by the readers above.
QString Piece(const QString& texte, int n, const QString& sep);

// The `Separateur` command.
void CmdSeparateur(Etat& e);

// Labels.
void ScanEtiquettes(Etat& e, int niveau);
int LigneEtiquette(const Etat& e, const QString& nom, int niveau);

// The canonical keyword list and the editor aliases, for the editor.
const QStringList& MotsCanoniques();
// "SI" -> "If", "SIT" -> "IfT", "ROTANG" -> "AngRot", "SINON" -> "Else".
QString AliasEditeur(const QString& motMajuscule);
