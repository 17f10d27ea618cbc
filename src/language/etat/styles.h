// Run state of the colours and line styles.
#pragma once

struct StyleTrait {
    float EpaisCourante = 1;     // DrawWidth in device pixels, at least 1
    bool BoutCarre = false;
    float TiretL1 = 0, TiretL2 = 0, TiretL3 = 0;
};

struct EtatStyles {
    int CouleurDefaut = 0;       // 24-bit BGR, or -1 for N
    int CouleurCmd = 0;
    float EpaisCourante = 1;
    bool BoutCarre = false;
    float TiretL1 = 0, TiretL2 = 0, TiretL3 = 0;
    float TiretReste = 0;
    int TiretPhase = 0;
    float TiretFinX = 999.99f, TiretFinY = 999.99f;
    // EpaisLocal / EpaisRestaure
    StyleTrait Sauve;
    float SauveReste = 0;
    int SauvePhase = 0;
    float SauveFinX = 999.99f, SauveFinY = 999.99f;
    bool EpaisChangee = false, StyleChange = false;
};
