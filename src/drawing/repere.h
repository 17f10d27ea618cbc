// The drawing surface's frame, the line primitive and the origin commands.
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

// The frame set-up of a run at level 1: printer orientation, zoom factors,
// user window, default origin, the first file's offset and the scale reset.
void MiseEnPlaceRepere(Etat& e);
// The printer's user window alone, after FormatI turned the page.
void EchelleImprimante(Etat& e);

// `LitRotation(texte, x, y)`: the rotation of a command from the `§` part of
// its y parameter, or `AngRotDefaut`; turns x, y about 0,0.
void LitRotation(Etat& e, const QString& texte, double& x, double& y);
// The same turn by a rotation in degrees as stored (negated), about 0,0.
void Tourne(double rotation, double& x, double& y);
// The turn that `TraitRot` applies first: a `Surface` point turned by `rotation`
// (degrees, counter-clockwise) about the frame's centre (OrigineX + CTx,
// OrigineY + CTy). Also the scale's `Rot` (graduations, sectors) and the
// text's rotation. False, and the point untouched, when the angle is 0.
bool TourneAutourCentre(const Etat& e, double rotation, double& x, double& y);
// A polygon in device pixels filled in one colour straight on the device:
// ForeColor and FillColor := couleur, FillStyle := 0, so that it has no
// outline of another colour (the thick lines of `Segment`; the fills of
// sectors, marks, circles and frames). FillStyle stays 0: the caller sets it
// back.
void PolygoneRempli(Etat& e, const QVector<QPointF>& pixels, int couleur);
// The off-page `PSet` of a colour at (ScaleLeft - 1000, ScaleTop + 1000): it
// readies the target's pen before a direct device call (lines, sectors, text).
void PSetHorsPage(Etat& e, int couleur);
// Once per run, before the first square-ended line or filled mark: the
// off-page `PSet`.
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
// A `Surface` point in device pixels, as the direct device fills take them
// (px = FacteurX x / m, py = FacteurY (H - y) / m, rounded to whole pixels).
// The one conversion of `Segment`, `Sect`, the marks, the
// shapes' `PointsPixel` and the printer's text. With `arrondi` false, the exact
// position before the rounding.
QPointF PixelDevice(const Etat& e, double x, double y, bool arrondi = true);

// Commands.
void CmdFormatI(Etat& e);
// A starting zoom as ZoomIni gives it, on the command's line or when the file
// is read: a size, so 0 counts as 1 and a negative one as its size (else the
// view would show nothing, or the drawing mirrored off the pane).
float ZoomDepartDe(double valeur);
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
// negated, which makes the error report show the command-order message.
[[noreturn]] void ErreurOrdre(Etat& e);
// The scale commands before a scale: "Erreur ordre commandes / Error odre commands".
void VerifieEchelle(Etat& e);
