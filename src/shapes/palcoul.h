// Colour charts of the RGB cube, for choosing colours or checking a printer:
// `PalCoul` (from mid grey to the pure hues), `PalCoul2` (every patch of an
// N x N x N cube) and `PalCoul3` (from black through the pure hues to white).
#pragma once

struct Etat;

void CmdPalCoul(Etat& e);
void CmdPalCoul2(Etat& e);
void CmdPalCoul3(Etat& e);
