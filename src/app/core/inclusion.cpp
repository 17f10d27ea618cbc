// Part 4.3: file inclusion and external commands. Provisional until issue 10.
#include "language/commandes.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/vb.h"

int AppelFichier(Etat& e, int, int) {
    e.TexteErreur = QStringLiteral("FICHIER : commande pas encore disponible / command not yet available") +
                    vb::CrLf() + vb::CrLf();
    throw ErreurProvoquee("non disponible");
}
