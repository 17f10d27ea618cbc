// Run state of the text commands.
#pragma once

#include <memory>

class CLogFont;

struct EtatTexte {
    float ForceBase = 0, ForceMilieu = 0, ForceHaut = 0; // overrides, 0 = measured
    float CoefBase = 0.8f;     // top of the cell to the baseline, fraction of the cell
    float CoefMilieu = 0.3f;   // middle of the capitals above the baseline
    float CoefHaut = 0.91f;    // ratio of the dimension command
    double TaillePolice = 10;  // standard character size in points (TailleP)
    float FacteurPolice = 1;   // language size to Font.Size of the Surface
    bool PageMarquee = false;  // a mark is set on the current printer page
    double X = 0, Y = 0;       // module position of PlaceTexte (Surface units)
    // The current text colour that PlaceTexte tests (-1 is N): Texte and
    // TexteC set it; the other callers of PlaceTexte (scale values,
    // dimensions, Bezier curves) set it to the colour of their text.
    int CouleurTexte = 0;
    // The module-wide CLogFont of EcritRot: a new one replaces (and frees) the last.
    std::shared_ptr<CLogFont> LogFont;
};
