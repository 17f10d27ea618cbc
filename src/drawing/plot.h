// Curves from the columns of a data file: a line (`Plot`), a filled surface
// (`PlotP`) or a symbol at each point (`PlotS`).
#pragma once

#include <QString>

struct Etat;

void CmdPlot(Etat& e);
void CmdPlotP(Etat& e);
void CmdPlotS(Etat& e);

// The symbol of `PlotS` when `%CMDSYMB` gives none or gives a refused one:
// a circle of radius 1 mm about the point.
inline const QString SymboleDefaut = QStringLiteral("Cercle=#X,#Y,1");
// The file that the "OFFSET" form writes in the current folder.
inline const QString NomPlotOffset = QStringLiteral("Plot_Offset.txt");
// The title of the box that shows the skipped lines of a data file.
inline const QString TitrePlot = QStringLiteral("Mirel-Plot  ");
