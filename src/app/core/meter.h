// Meter import: a `.mtr` file, the description of a meter scale written by a
// scale-design tool, becomes an equivalent command program.
#pragma once

#include "app/core/fichiers.h"

#include <QSizeF>
#include <QString>

struct Reglages;

// What an import gives: the program, or the reason the file can't be read.
// A first line of too few fields is rejected silently: empty text, no reason.
struct ImportMeter {
    QString Texte;
    QString Erreur;
};

// The program for the `.mtr` text `contenu` read from `chemin`. `page` is the
// printer's page in millimetres (the printer's centre line); `langue` the
// offset of the messages' language in the string table.
ImportMeter ImporteMeter(const QString& contenu, const QString& chemin, QSizeF page, int langue);

// A `.mtr` file into the window: the editor gets the program at zoom 1, the
// caption the path, a run draws it (unless `visualiser` is false), and the
// file becomes the current one, unmodified; Save will ask for a new name. On
// a read error or a malformed file, a box says why and the editor stays as
// it was.
bool ChargeMeter(EtatFichiers& e, const Reglages& r, FenetreFichiers& f, const QString& chemin,
                 bool visualiser = true);
// A file opened by its path (recent files, a dropped file, a reload, the
// start-up file): a `.mtr` file is imported, any other loaded as a text.
bool ChargeSelonType(EtatFichiers& e, const Reglages& r, FenetreFichiers& f, const QString& chemin,
                     bool visualiser = true);
// `Mnu_OuvrirMeter`: the question, the Open dialog for `.mtr` files, the import.
bool Mnu_OuvrirMeter(EtatFichiers& e, const Reglages& r, FenetreFichiers& f);
