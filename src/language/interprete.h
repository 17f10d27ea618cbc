// The run driver and the command loop.
#pragma once

struct Etat;

// `Visualiser`: resets the run, puts the editor's text in level 1 and runs it.
void Visualiser(Etat& e);
// The run without the zoom reset of Visualiser: the path of the zoom dialog
// and of the print commands. `cible` replaces the pane as the Surface (the
// printer).
class Surface;
void LanceExecution(Etat& e, Surface* cible = nullptr);
// `Interprete(niveau)`: the command loop for one level.
void Interprete(Etat& e, int& niveau);
// Closes every file the run opened (at the start of a run and when it is stopped).
void FermeFichiers(Etat& e);
// The line number in the editor of the current line (for messages).
int LigneEditeurCourante(Etat& e);

class QString;
// The reason an error box gives for a file that a line did not find: its name
// and "fichier non trouvé"; empty for other errors.
QString RaisonNonTrouve(const Etat& e);
// Rewrites the current line of level 1 in the editor (the "?" forms, EpaisT):
// the new text replaces the physical line, the record's Texte is read back
// and FinLigne, PosFin and Pos follow the new length; the line is recoloured.
void RecritLigneEditeur(Etat& e, const QString& nouveau);
