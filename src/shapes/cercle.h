// Circles, ellipses, arcs and sectors, and their gradients.
#pragma once

#include <QString>

#include <optional>

struct Etat;

// `Cercle`, `CercleP`, `CercleI`, `CerclePI`: one routine told apart by its keyword.
void CmdCercle(Etat& e);
// The routine of the four commands, also called by Plot with "CERCLEP".
void Cercle(Etat& e, const QString& mot, const QString& parametres);
// `ArcPointille`: the dashed arc of the circle commands, of Percer and of the
// scales. Centre and radius in Surface units; angles in radians, negative
// for a radius line at that end; the dash lengths of the current line style.
void ArcPointille(Etat& e, double cx, double cy, double rayon, double debut, double fin,
                  int couleur, double aspect);

// The angular step h of an arc of radius `rayon`:
// 1 / (sqrt(FacteurPolice) x rayon), ten times finer on the printer when the
// radius is below 10: about one point per unit of length. Also the step of the
// frames' rounded corners.
double PasArc(const Etat& e, double rayon);
// The same with a given FacteurPolice.
double PasArc(const Etat& e, double rayon, double facteurPolice);

// A colour split into red, green and blue, kept as 32-bit floats: the
// running colour of a gradient and its per-band step.
struct Teinte {
    float r = 0, g = 0, b = 0;
    Teinte() = default;
    explicit Teinte(int couleur);
    // The colour of a band: the three running values rounded to whole numbers.
    int Valeur() const;
    // One band further.
    void Avance(const Teinte& pas);
};

// The gradient's final colour of a colour parameter: the text behind the
// second separator, up to the next one. None when there is no such
// text or it is N: no gradient.
std::optional<int> CouleurFinale(Etat& e, const QString& parametre);

// Number of bands of a gradient from `couleur` to `couleur2`, both kinds: the
// whole part of the largest component difference, plus 1, or `bandes` when
// above 0; `pas` receives the per-band colour steps. Also the frames' gradient.
int NombreBandes(int couleur, int couleur2, int bandes, Teinte& pas);
