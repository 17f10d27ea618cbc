// Colours, line thickness and dash patterns.
#pragma once

#include <QString>

#include <optional>

struct Etat;

// `LitCouleur`: a colour value (BGR), -1 for N, or none for an empty or
// unknown text.
std::optional<int> LitCouleur(Etat& e, const QString& texte);
// The colour of a command's parameter: an empty (trimmed) parameter means
// `CouleurDefaut`; an unknown word gives none, drawn as the default.
int CouleurParametre(Etat& e, const QString& parametre);
// A parameter that is the colour N itself, blanks and case aside: the
// commands that then draw nothing (the origin's cross, the scale, Sect).
bool EstCouleurN(const QString& parametre);
// The thickness rule: `DrawWidth` in device pixels of a thickness
// t in printer dots, or in millimetres.
int LargeurTrait(Etat& e, double t, bool mm);
// Reads a thickness text ("3", "0.5mm", an expression) into device pixels.
int LitEpaisseur(Etat& e, const QString& texte);

void CmdCouleur(Etat& e);
void CmdEpaisT(Etat& e);
void EpaisLocal(Etat& e, const QString& texte);
void EpaisRestaure(Etat& e);

// The dash pattern, the core of TraitRot for a segment from
// (x1, y1) to (x2, y2) in Surface units.
void TraitTirete(Etat& e, double x1, double y1, double x2, double y2, int couleur);
