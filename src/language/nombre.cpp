// Provisional until Part 1.4 lands (issue 3).
#include "language/nombre.h"

QString StrF(float valeur) { return QString::number(valeur, 'g', 7); }
