// Text. The commands `Texte`, `TexteC`, `Police`, `TailleP`, and the
// measuring and placing routines that other commands call (scale values,
// dimensions, Bezier graduations).
#pragma once

#include <QString>

struct Etat;
class Surface;
struct PoliceSurface;

// `MetriquesTexte`: CoefBase, CoefMilieu, CoefHaut from the outline metrics of
// the Surface's font, or from ForceBase, ForceMilieu, ForceHaut when not 0.
void MetriquesTexte(Etat& e);

// `EcritRot(x, y, angle, text)`: writes text with the current Font turned by
// angle degrees. On the printer x, y are device pixels (see CoordDevice); on
// the screen they are not used and the text starts at CurrentX, CurrentY.
void EcritRot(Etat& e, double x, double y, double angle, const QString& texte);

// `PlaceTexte(W, H, angle, text, letters, rot)`: places one text of width W
// and height H (positive, measured by the caller) about the module position
// e.Txt.X, e.Txt.Y (which the caller sets, with CurrentX, CurrentY), with the
// alignment letters G, D, B, H. Leaves X, Y and CurrentX, CurrentY at the far
// end of the text. Nothing happens when e.Txt.CouleurTexte is N (-1).
void PlaceTexte(Etat& e, double W, double H, double angle, const QString& texte,
                const QString& lettres, double rot);

// Device coordinates of a Surface point on the printer: `PixelDevice`, not
// rounded.
void CoordDevice(Etat& e, double x, double y, double& xd, double& yd);
// The page mark: on the printer, a PSet off the sheet, once per page, before
// the first direct device call (text, and the polygons of the shapes).
void MarquePage(Etat& e, int couleur);

// `ExprTexte`: the "#expression#" pieces of a text, left to right.
void ExprTexte(Etat& e, QString& texte);
// The factor reading of `*k`: blanks are removed from champ, and a "*(...)"
// is evaluated and removed; otherwise the leading number behind the first "*".
double LitFacteur(Etat& e, QString& champ);
// The leading number of a text: "1.5C" gives 1.5.
double NombreEnTete(const QString& texte);

// Sets Font.Name as the drawing object does; true when the name read back
// differs from the one asked, without regard to case (string 112 is due).
bool ChangeNomPolice(Etat& e, const QString& nom);

// The font name sub-field of a text's format: the font set, box 112 when the
// name served differs.
void PoliceDuFormat(Etat& e, const QString& nom);
// The size from a text's format field: "*k" (k times the current size), or a
// leading number.
void TailleDepuisFormat(Etat& e, QString& format);
// The style letters of a text's format field: they count when the field
// starts with one of "*0123456789." or holds one of S, U, I, G, B.
void StylesTexte(Surface& s, const QString& format);
// The font's name, size and styles back as they were before a command.
void RetablitPolice(Surface& s, const PoliceSurface& garde);

void CmdTailleP(Etat& e);
void CmdPolice(Etat& e);
void CmdTexte(Etat& e);
void CmdTexteC(Etat& e);
