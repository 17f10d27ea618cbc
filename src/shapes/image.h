// Pictures: `Image` places a picture file on the Surface, scaled and aligned,
// or returns its size in pixels.
#pragma once

#include <QImage>
#include <QString>

struct Etat;

void CmdImage(Etat& e);

// The routine of `Image` on a parameter text ("file, x, y, size, letters"),
// so that other commands (a plot symbol) can place a picture the same way.
void Image(Etat& e, const QString& parametres);

// The picture file of a name: the program's own icon for a name ending in
// "MIREL.ICO" (any case, any folder), else the file looked up beside the main
// command file. Fails the line, with the name for the error box, when the
// file can't be read.
QImage ChargeImage(Etat& e, const QString& nom, QString& chemin);

// The program's own icon: a small dial with its needle.
QImage IconeProgramme();
