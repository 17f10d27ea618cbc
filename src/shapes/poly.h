// Polygons from listed points or a point file, regular polygons, and the
// half-moon shape of a crescent.
#pragma once

#include <QPointF>
#include <QString>
#include <QVector>

#include <vector>

struct Etat;

void CmdPoly(Etat& e);
void CmdPolyP(Etat& e);
void CmdPolyR(Etat& e);
void CmdPolyRP(Etat& e);
void CmdDemiLune(Etat& e);
void CmdDemiLuneP(Etat& e);

// A data file named in a command: a name without a folder is taken from the
// folder of the command file that runs (the main file at level 1, the
// included file below it); a name without an extension gets `extension`.
QString FichierDeCommande(Etat& e, const QString& nom, const QString& extension);

// The text lines of a data file, UTF-8 when valid, else Windows-1252; CR LF,
// LF or CR end a line. False when the file can't be read.
bool LitLignesDonnees(const QString& chemin, QStringList& lignes);
// The same lines as views into `texte`, the decoded file, with no string
// made for each line: for files of many thousand lines.
bool LitLignesDonnees(const QString& chemin, QString& texte, std::vector<QStringView>& lignes);
