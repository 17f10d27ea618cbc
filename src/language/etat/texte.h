// Run state of Part 3.3: text.
#pragma once

struct EtatTexte {
    float ForceBase = 0, ForceMilieu = 0, ForceHaut = 0; // overrides, 0 = measured
    float CoefBase = 0.8f;     // top of the cell to the baseline, fraction of the cell
    float CoefMilieu = 0.3f;   // middle of the capitals above the baseline
    float CoefHaut = 0.91f;    // ratio of the dimension command
    double TaillePolice = 10;  // standard character size in points (TailleP)
    float FacteurPolice = 1;   // language size to Font.Size of the Surface
    bool PageMarquee = false;  // a mark is set on the current printer page
    double X = 0, Y = 0;       // module position of PlaceTexte
};
