// Part 2.1: the drawing surface's frame, the line primitive and the origin
// commands.
#pragma once

#include <QPointF>
#include <QString>
#include <QVector>

struct Etat;
class Surface;

// Attaches the pane (screen kind) and measures MmParPixelE, PointsParPixel.
void AttachePane(Etat& e, Surface* pane);
// Measures MmParPointI from a printer surface (and PointsParPixel).
void MesureImprimante(Etat& e, const Surface& imprimante);

// The frame set-up of a run at level 1 (steps 1 to 5).
void MiseEnPlaceRepere(Etat& e);
// Step 2 alone, after FormatI turned the printer's page.
void EchelleImprimante(Etat& e);

// `LitRotation(texte, x, y)`: the rotation of a command from the `§` part of
// its y parameter, or `AngRotDefaut`; turns x, y about 0,0.
void LitRotation(Etat& e, const QString& texte, double& x, double& y);
// The same turn by a rotation in degrees as stored (negated), about 0,0.
void Tourne(double rotation, double& x, double& y);
// The turn of `TraitRot` step 1: a `Surface` point turned by `rotation`
// (degrees, counter-clockwise) about the frame's centre (OrigineX + CTx,
// OrigineY + CTy). Also the scale's `Rot` (Parts 2.4, 2.6) and the text's
// rotation (Part 3.3). False, and the point untouched, when the angle is 0.
bool TourneAutourCentre(const Etat& e, double rotation, double& x, double& y);
// A polygon in device pixels filled in one colour through `hDC`: ForeColor
// and FillColor := couleur, FillStyle := 0, so that it has no outline of
// another colour (`Segment` step 3; the fills of Parts 2.6, 2.7, 3.1, 3.2).
// FillStyle stays 0: the caller sets it back.
void PolygoneRempli(Etat& e, const QVector<QPointF>& pixels, int couleur);
// The off-page `PSet` of a colour at (ScaleLeft - 1000, ScaleTop + 1000): it
// readies the target's pen before a direct device call (Parts 2.1, 2.6, 3.3).
void PSetHorsPage(Etat& e, int couleur);
// Once per run, before the first square-ended line or filled mark: the
// off-page `PSet` (Algorithms, `TraitRot` step 3; Part 2.7).
void InitialiseStylo(Etat& e, int couleur);
// The only way to stroke a line (Surface units, rotation in degrees).
void TraitRot(Etat& e, double x1, double y1, double x2, double y2, double rotation, int couleur);
void Segment(Etat& e, double x1, double y1, double x2, double y2, int couleur);
void DessinePlus(Etat& e, double x, double y, double s, double a, int couleur, double k);
void MajPointCourant(Etat& e, double angle);
// The point of a command, parameters 1 and 2 of `l`: read with `ParaCoord`
// against (PointX, PointY), turned by `LitRotation` (which keeps the command's
// rotation), the origin and the temporary centre added. In Surface units.
QPointF LitPointCommande(Etat& e, const QString& l);
// Surface point of a user point: the origin and the temporary centre added.
double VersSurfaceX(const Etat& e, double x);
double VersSurfaceY(const Etat& e, double y);
// m, the millimetres of one device pixel of the target: `MmParPointI` on the
// printer, `MmParPixelE` on screen.
float MmParPointCible(const Etat& e);
// A `Surface` point in device pixels, as the fills through `hDC` take them
// (Algorithms, step 3: px = FacteurX x / m, py = FacteurY (H - y) / m, rounded
// to whole pixels). The one conversion of `Segment`, `Sect`, the marks, the
// shapes' `PointsPixel` and the printer's text. With `arrondi` false, the exact
// position before the rounding.
QPointF PixelDevice(const Etat& e, double x, double y, bool arrondi = true);

// Commands.
void CmdFormatI(Etat& e);
void CmdZoomIni(Etat& e);
void CmdZoomIniI(Etat& e);
void CmdFacteur(Etat& e);
void CmdCentreE(Etat& e);
void CmdCentreI(Etat& e);
void CmdCentreEI(Etat& e);
void CmdCT(Etat& e);
void CmdAngRot(Etat& e);
void CmdNPage(Etat& e);
void CmdRefCur(Etat& e);
void CmdPoint(Etat& e); // `?`

// The order failure of FormatI, ZoomIni and the centre commands: EtatOrdre is
// negated, which picks the order box (Part 1.1).
[[noreturn]] void ErreurOrdre(Etat& e);
// The scale commands before a scale: "Erreur ordre commandes / Error odre commands".
void VerifieEchelle(Etat& e);
