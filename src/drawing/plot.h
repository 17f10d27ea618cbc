// Curves from the columns of a data file: a line (`Plot`), a filled surface
// (`PlotP`) or a symbol at each point (`PlotS`).
#pragma once

#include <QString>

struct Etat;

void CmdPlot(Etat& e);
void CmdPlotP(Etat& e);
void CmdPlotS(Etat& e);

// A value of a data file: a decimal comma read as a point; an "R" in it makes
// it relative, added to `precedent` (and sets `*relatif`).
double ValeurDonnee(QStringView vue, double precedent, bool* relatif = nullptr);
// A line of a data file that holds no point and is kept as it is when the
// points are moved: blank, a comment ("'EOD" too), or a pen line (STOP,
// EPAIST, COULEUR, BEZIER).
bool LigneHorsPoints(QStringView ligne);

// The symbol of `PlotS` when `%CMDSYMB` gives none or gives a refused one:
// a circle of radius 1 mm about the point.
inline const QString SymboleDefaut = QStringLiteral("Cercle=#X,#Y,1");
// The file that the "OFFSET" form writes in the current folder.
inline const QString NomPlotOffset = QStringLiteral("Plot_Offset.txt");
// The title of the box that shows the skipped lines of a data file.
inline const QString TitrePlot = QStringLiteral("Mirel-Plot  ");
