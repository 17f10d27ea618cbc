// Run state of the scale values.
//
// The series itself (N, Prem, Der, Ind, PosCourante) runs in `EtatGrad`, the
// loop that `Val` shares with `Grad`; NbVal, PremVal, DerVal keep a copy.
#pragma once

#include <QString>

struct EtatVal {
    float TexteAng = 0;          // the text's angle for one value, degrees counter-clockwise
    float AngAbs = 0;            // absolute text angle of the first parameter; 0 if none
    float AngRel = 0;            // relative text angle (behind "R")
    bool RelDonne = false;       // the first parameter held an "R"
    QString Just;                // justification letters of the first parameter
    double Dist = 0;             // distance from the scale, times CoteGrad, mm
    double AngDist = 0;          // direction of the distance on straight scales,
                                 // degrees, stored negated
    double DepartVal = 0, FinVal = 0;
    double NbVal = 1, PremVal = 0, DerVal = 0;
    // The anchor of the last value, Surface units, turned by the scale's rotation.
    double AncreX = 0, AncreY = 0;
};
