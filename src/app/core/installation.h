// Where the program finds its data once installed, and the setup of Mirel
// for the current user (the setup menu entry).
#pragma once

#include <QDateTime>
#include <QString>

// The program folder that runs see (library MCE_* files, language templates,
// help pages), ending in "/". An installed program keeps its data in
// <prefix>/share/mirel beside <prefix>/bin; a program run where it was built
// keeps it in its own folder.
QString DossierDonnees(const QString& dossierExecutable);
// Whether the program is an installed one: <prefix>/share/mirel stands beside
// its folder.
bool ProgrammeInstalle(const QString& dossierExecutable);

// The texts of the setup.
struct TextesSetup {
    QString Titre, Dossier, Copie, Lanceur, Association, Fait, Echec;
};
// The setup command's texts in the language whose string-table offset is given.
TextesSetup TextesDuSetup(int decalage);

// Copies the files of `source` (the examples) into `dossier`, made when
// missing; a file already there is kept, since the user may have changed it.
// Returns the number copied, -1 with `erreur` set when a copy fails.
int CopieExemples(const QString& source, const QString& dossier, QString& erreur);

// Writes the user's launcher for `executable` into `dossierApplications`
// (~/.local/share/applications): opens command files given to it.
bool CreeLanceur(const QString& dossierApplications, const QString& executable, QString& erreur);

// Makes Mirel the user's program for command files (xdg-mime).
bool AssocieFichiers(QString& erreur);

// Appends "date time  text" to MirelSetup.log in `dossier`.
void JournalSetup(const QString& dossier, const QString& texte, const QDateTime& quand);
