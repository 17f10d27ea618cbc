// Run state of file inclusion.
#pragma once

#include <QString>

struct EtatInclusion {
    // The flag of one character that a call sets before reading its file
    // ("F"); the `Symbole` form of `Plot` leaves it as it was.
    QString Drapeau;
    // The `Symbole` form: the text that `Plot` gives the next level.
    QString TexteSymbole;
};
