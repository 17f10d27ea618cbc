// Chains of cubic Bezier curves: outlined (`Bezier`), filled (`BezierP`), or
// carrying graduations and texts placed by the angle seen from 0,0
// (`Bezier_aGr`), a free-form scale.
#pragma once

struct Etat;

void CmdBezier(Etat& e);
void CmdBezierP(Etat& e);
void CmdBezierAGr(Etat& e);
