// The list of external commands, made at start-up: every coded command file
// that a program can call by its name.
#pragma once

#include <QString>
#include <QStringList>

struct Reglages;

struct CommandeExterne {
    QString nom;     // file name without extension, as found
    QString dossier; // its folder, ending in "/"
    QString fichier; // the file as found (its extension may be ".DMK")
};

// All `*.dmk` of the program folder, then of the working folder when it
// differs; at most 60 names; sorted ascending by a straight exchange sort
// (names compared case-sensitively); later duplicates,
// compared in upper case, removed: the first occurrence wins.
QList<CommandeExterne> ListeCommandesExternes(const QString& dossierProgramme,
                                             const QString& dossierTravail);
// The same, stored in the settings: names and files (folder + name + ".dmk").
void ChargeCommandesExternes(Reglages& r);
