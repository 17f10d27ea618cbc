// Frames. `Cadre`, `CadreP`, `CadreA`, `CadreAP`: one routine told
// apart by its keyword.
#pragma once

#include <QString>

struct Etat;

void CmdCadre(Etat& e);
void CmdCadreP(Etat& e);
void CmdCadreA(Etat& e);
void CmdCadreAP(Etat& e);
// The routine of the four commands, `mot` being the keyword in upper case.
void Cadre(Etat& e, const QString& mot);

// `AjoutePoint`: stores the point (x, y) at `index` of `e.Cadre.Points`,
// turned by `angle` (radians, counter-clockwise) about (cx, cy), then by
// `rotation` (degrees, stored negated as by `LitRotation`) about the frame's
// 0,0; and the same point in device pixels, origins added, at `index` of
// `e.Cadre.PointsPixel`. The buffers grow as needed.
void AjoutePoint(Etat& e, int index, double x, double y, double cx, double cy, double angle,
                 double rotation);

