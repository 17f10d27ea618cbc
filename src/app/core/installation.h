// Where the program finds its data once installed.
#pragma once

#include <QString>

// The program folder that runs see (library MCE_* files, language templates,
// help pages), ending in "/". An installed program keeps its data in
// <prefix>/share/mirel beside <prefix>/bin; a program run where it was built
// keeps it in its own folder.
QString DossierDonnees(const QString& dossierExecutable);
