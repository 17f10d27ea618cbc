// The printed listing of the code (`Imprime_Code`): a green header line, the
// lines of the editor (or of its selection) in their colours, 64 lines on each
// sheet under a top margin of three large blank lines, and a centred "- p/n -"
// footer at the bottom of each sheet.
#pragma once

#include <QDate>
#include <QString>

class QPrinter;
class QTextDocument;

constexpr int LignesListing = 64; // lines of the listing on one sheet

// The header: "Mirel: " + path, then " (Sélection) " for a selection (the
// word in `motSelection`, empty for the whole text) or two blanks, then the date.
QString EnteteListing(const QString& chemin, const QString& motSelection, const QDate& date);

// Prints the text of `doc` as the listing on `p` (its margins as they are):
// a final line break dropped, the header and an empty line at the top in
// green, one sheet per 64 lines with the footers. False when the printer
// refused the job.
bool ImprimeListing(QPrinter& p, QTextDocument& doc, const QString& entete);

// The listing of a plain command text (CR LF lines) in black, as
// `mirel print --listing` prints it. False when the printer refused the job.
bool ImprimeListingTexte(QPrinter& p, const QString& texte, const QString& chemin);
