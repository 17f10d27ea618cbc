// Run state of the drawing surface and the coordinate frame.
#include <QString>
#pragma once

struct EtatRepere {
    float ZoomE = 1.0f;          // screen zoom, %Zoom
    float ZoomI = 1.0f;          // printer zoom
    float ZoomDepart = 1.0f;     // stored ZoomIni (screen), applied by the window
    float ZoomDepartI = 1.0f;    // stored ZoomIniI (printer), applied at the next print
    float FacteurZ = 1.0f;       // working zoom
    double FacteurX = 1.0, FacteurY = 1.0;
    float MmParPixelE = 25.4f / 96.0f; // measured at start-up
    float MmParPointI = 25.4f / 600.0f;
    float PointsParPixel = (25.4f / 96.0f) / (25.4f / 600.0f);
    double OrigineX = 0, OrigineY = 0;
    double Dx = 0, Dy = 0;       // the default origin: the centre of the drawing area
    float CTx = 0, CTy = 0;      // temporary centre
    float CTxNonTourne = 0, CTyNonTourne = 0; // the last unrotated CT pair
    float AngRotDefaut = 0;      // stored negated
    int NivAngRot = 5;
    float PointX = 0, PointY = 0;
    // LitRotation: the rotation in force for the command, whether it gave its own,
    // and the point as given before the turn.
    float RotationCmd = 0;
    bool RotationDonnee = false;
    float XNonTourne = 0, YNonTourne = 0;
    // Scale factors of Trait and Poly (SFx, SFy); 1 otherwise.
    float FacteurTraitX = 1.0f, FacteurTraitY = 1.0f;
    // Pan offsets of the view and the editor pane width in Surface units
    // when it stands beside the drawing.
    double DecalageVueX = 0, DecalageVueY = 0;
    double LargeurEditeur = 0;
    double LargeurFenetreMm = 0, HauteurFenetreMm = 0; // Wf, Hf: last measured pane size
    double DemiLargeurX = 0, DemiLargeurY = 0; // hx, hy of the square-ended line
    bool StyloInitialise = false; // the off-page PSet of square-ended lines, once per run
    bool FPay = false;           // %FPay: landscape asked by FormatI
    int OrientationImprimante = 1; // the printer's orientation at the set-up (render --landscape)
    // RefCur (texts formatted ".0#") and the values kept for the mouse read-out.
    QString RefCurX = "0", RefCurY = "0", RefCurAngle = "0";
    double CEx = 0, CEy = 0;     // reference of %CEx, %CEy on screen
    double SourisOrigineX = 0, SourisOrigineY = 0;
    float SourisAngle = 0, SourisAngleRad = 0;
    double SourisRefX = 0, SourisRefY = 0;
};
