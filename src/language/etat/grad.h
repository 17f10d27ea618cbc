// Run state of the graduations: the ticks of a scale.
//
// The loop values of the last `Grad` (and `Val`, which runs the same loop)
// stay readable after the command.
#pragma once

struct EtatGrad {
    double N = 1;                // number of intervals
    double L = 0;                // tick length times CoteGrad, mm
    double AngTick = 0;          // tick angle, radians (straight scales)
    double Prem = 0, Der = 0;    // first and last tick number
    int Ind = 0;                 // 16-bit tick number
    float PosCourante = 0;       // position t of the tick, 0 to 1 of the scale

    // Log scales.
    float LogInterv = 1;
    float LogFinDecade = 10;
    float LogDebDecade = 1;
    float MantPrem = 1, MantDer = 1, MantCour = 1, MantSuiv = 1, Pas = 0;
    int DecPrem = 0, DecDer = 0, DecCour = 0; // 16-bit

    // The tip of the last tick (Surface units, turned): where the pen ends,
    // also for a Grad1 tick of length 0.
    double BoutX = 0, BoutY = 0;
};
