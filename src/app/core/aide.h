// The help pages, without widgets.
//
// The help menu's viewer is a `QTextBrowser` fed with pages generated from
// the string table, so the help always matches the commands and languages
// shipped: the one-line syntax of each command (rows 201 to 264) and its
// parameter description (rows 301 to 370, in the command dialog's grammar),
// grouped by the topics of `Mnu_AideMot` (2100 to 3200, 5000).
#pragma once

#include "app/core/config.h"

#include <QString>
#include <QStringList>

class TableChaines;

// The syntax rows: each row's keywords, in upper case, as the help lookup
// of a keyword finds them.
struct RangeeSyntaxe {
    int Syntaxe;      // 201 to 264
    int Description;  // its parameter description, 301 to 370 (`Masque` table)
    const char* Mots; // the keywords, separated by blanks
};
const QVector<RangeeSyntaxe>& RangeesSyntaxe();

// A parameter description (rows 301 to 370, the "'$" sections of external
// commands) taken apart: the ";" fields of its head ("title;param;param$sub"),
// then, after a line "@C xy" (x the comment's alignment L/C/R, y B for
// bold), the comment's lines, up to a line "@I" that names the picture.
struct DescriptionParametres {
    QString Tete, Commentaire;
    QString Gras; // the two letters of "@C"
    QString Image;
};
DescriptionParametres DecoupeDescription(const QString& description);

// The syntax row of a keyword in upper case: 248 for a "%" variable, 241 (the
// unknown command) for a keyword without a row.
int RangSyntaxe(const QString& mot);

// The anchor of a topic in the contents page ("s2700").
QString AncreSujet(int sujet);

// The first dial of the getting-started page, one command a line.
const QStringList& PremierCadran();

// The contents page in the language section `decalage`: the getting-started
// section (a first dial in five lines, each explained; rows 396, 397), then
// under the heading of row 399 every command under its topic, with its
// syntax line and its parameters.
QString PageContenu(const TableChaines& table, int decalage);
// The update notes (`Mnu_MAJ_Aide`): the title and items of row 398.
QString PageNouveautes(const TableChaines& table, int decalage);
// The summary page: every syntax line, each linked to its topic.
QString PageResume(const TableChaines& table, int decalage);

// What the viewer shows for a help command: the page and the anchor to show.
// `Aide25` is in the command dialog's language, the others in the menus'.
struct PageAide {
    QString Html;
    QString Ancre; // empty: the top
};
PageAide PageDe(CommandeAide commande, const Reglages& r, const QString& mot = {});

// The help file that `Mnu_MAJ_Aide` and `Mnu_Non_Doc` name ("Mirel_MAJ_" +
// mask code + ".chm", "Mirel_fr/Non_Doc_fr.chm" in the program folder), when it
// exists: it goes to the desktop's viewer for its type. None for the other
// commands, whose pages are generated, and for a missing file (`Mnu_MAJ_Aide`
// then shows the update notes).
QString FichierAideExterne(CommandeAide commande, const Reglages& r);
